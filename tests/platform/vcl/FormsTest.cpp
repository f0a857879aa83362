// Forms built in code: their frame and menu bar, shortcuts, messages, closing and modal
// results, and forms read at another resolution.
#include "platform/vcl/Forms.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

class FormsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(FormsTest, ClientAreaIsTheFormLessItsClassicFrame) {
  // A sizeable window: 4-pixel borders and a 19-pixel caption.
  EXPECT_EQ(form->ClientWidth(), 392);
  EXPECT_EQ(form->ClientHeight(), 273);
  form->SetBorderStyle(bsDialog);
  EXPECT_EQ(form->ClientWidth(), 394);
  EXPECT_EQ(form->ClientHeight(), 275);
  form->SetBorderStyle(bsNone);
  EXPECT_EQ(form->ClientWidth(), 400);
  form->SetClientHeight(100);
  EXPECT_EQ(form->Height(), 100);
}

TEST_F(FormsTest, AMenuTakesItsBarFromTheClientArea) {
  auto* menu = new TMainMenu(form);
  auto* file = new TMenuItem(form);
  file->SetCaption("&File");
  menu->Items()->Add(file);
  form->SetMenu(menu);
  EXPECT_EQ(form->ClientHeight(), 273 - 19);
  ShowForm();
  ASSERT_NE(form->Widget()->findChild<QMenuBar*>(), nullptr);
  EXPECT_EQ(form->ClientWidget()->geometry(), QRect(0, 19, 392, 254));
}

namespace {
// A designer that records what its form's controls were sent.
class RecordingDesigner : public IDesigner {
public:
  std::vector<std::pair<TControl*, std::uint32_t>> Seen;
  void Modified() override {}
  void Notification(TPersistent*, TOperation) override {}
  TCustomForm* GetCustomForm() override { return nullptr; }
  void SetCustomForm(TCustomForm*) override {}
  bool GetIsControl() override { return false; }
  void SetIsControl(bool) override {}
  bool IsDesignMsg(TControl* sender, TMessage& message) override {
    Seen.emplace_back(sender, message.Msg);
    return true;
  }
  void PaintGrid() override {}
  void ValidateRename(TComponent*, const std::string&, const std::string&) override {}
};
}  // namespace

TEST_F(FormsTest, DesignStateInputGoesToTheFormsDesigner) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  RecordingDesigner designer;
  form->SetDesigner(&designer);
  ShowForm();
  form->SetDesignState(true);
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  button->Widget()->setFocus();
  QTest::keyClick(button->Widget(), Qt::Key_Space);
  form->SetDesigner(nullptr);
  bool down = false, up = false, key = false;
  for (const auto& [sender, msg] : designer.Seen) {
    EXPECT_EQ(sender, button);
    down |= msg == WM_LBUTTONDOWN;
    up |= msg == WM_LBUTTONUP;
    key |= msg == WM_KEYDOWN;
  }
  EXPECT_TRUE(down);
  EXPECT_TRUE(up);
  EXPECT_TRUE(key);
}

TEST_F(FormsTest, MenuShortcutsOfTheFormRunTheirItems) {
  auto* menu = new TMainMenu(form);
  auto* file = new TMenuItem(form);
  file->SetCaption("&File");
  auto* open = new TMenuItem(form);
  open->SetName("mi_Open");
  open->SetCaption("&Open");
  open->SetShortCut(TextToShortCut("Ctrl+O"));
  auto* exitItem = new TMenuItem(form);
  exitItem->SetCaption("E&xit");
  exitItem->SetShortCut(TextToShortCut("Alt+X"));
  exitItem->SetEnabled(false);
  menu->Items()->Add(file);
  file->Add(open);
  file->Add(exitItem);
  form->SetMenu(menu);
  auto* edit = Make<TEdit>("Edit1", form, 8, 8, 100, 21);
  int opened = 0, exited = 0;
  open->OnClick = [&](TObject* sender) {
    EXPECT_EQ(sender, open);
    ++opened;
  };
  exitItem->OnClick = [&](TObject*) { ++exited; };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  // A disabled item's shortcut does nothing.
  QTest::keyClick(edit->Widget(), Qt::Key_X, Qt::AltModifier);
  EXPECT_EQ(exited, 0);
  exitItem->SetEnabled(true);
  QTest::keyClick(edit->Widget(), Qt::Key_X, Qt::AltModifier);
  EXPECT_EQ(exited, 1);
  // The menu shows the shortcut after the caption.
  EXPECT_EQ(open->QtAction()->text(), QStringLiteral("&Open\tCtrl+O"));
  EXPECT_EQ(edit->Text(), "");
}

namespace {
class MessageForm : public TForm {
public:
  explicit MessageForm(TComponent* owner) : TForm(owner) {}
  std::vector<std::pair<std::uint32_t, WPARAM>> Got;
  void Dispatch(TMessage& m) override {
    if (m.Msg >= WM_USER || m.Msg == 9426 || m.Msg == 100) {
      Got.emplace_back(m.Msg, m.WParam);
      m.Result = 1;
      return;
    }
    TForm::Dispatch(m);
  }
};
}  // namespace

TEST_F(FormsTest, PrivateMessagesPostedToAFormArriveFromTheLoop) {
  auto* f = new MessageForm(Application);
  PostMessage(f, 9426, 1);
  PostMessage(f, 100, 2);
  EXPECT_TRUE(f->Got.empty());
  Application->ProcessMessages();
  ASSERT_EQ(f->Got.size(), 2u);
  EXPECT_EQ(f->Got[0], std::make_pair(std::uint32_t(9426), WPARAM(1)));
  EXPECT_EQ(f->Got[1], std::make_pair(std::uint32_t(100), WPARAM(2)));
  EXPECT_EQ(SendMessage(f, WM_USER + 5, 7), 1);
  EXPECT_EQ(f->Got.back().first, WM_USER + 5u);
  // A message for a form that is freed before it arrives is dropped.
  PostMessage(f, WM_USER + 6);
  delete f;
  Application->ProcessMessages();
}

TEST_F(FormsTest, CloseAsksOnCloseQueryAndOnCloseDecides) {
  bool allow = false;
  TCloseAction action = caHide;
  int queries = 0;
  form->OnCloseQuery = [&](TObject*, bool& canClose) {
    ++queries;
    canClose = allow;
  };
  form->OnClose = [&](TObject*, TCloseAction& a) { a = action; };
  ShowForm();
  form->Close();
  EXPECT_EQ(queries, 1);
  EXPECT_TRUE(form->Visible());
  allow = true;
  action = caNone;
  form->Close();
  EXPECT_TRUE(form->Visible());
  action = caHide;
  form->Close();
  EXPECT_FALSE(form->Visible());

  auto* other = new TForm(Application);
  QPointer<QWidget> otherWidget = other->Widget();
  other->OnClose = [](TObject*, TCloseAction& a) { a = caFree; };
  other->Show();
  other->Close();
  EXPECT_FALSE(otherWidget.isNull());  // freed only once queued messages are handled
  Application->ProcessMessages();
  EXPECT_TRUE(otherWidget.isNull());
}

TEST_F(FormsTest, ShowModalReturnsTheModalResultOfTheButtonPressed) {
  auto* ok = Make<TButton>("OK", form, 8, 8, 75, 25);
  ok->SetModalResult(mrOk);
  QTimer::singleShot(0, [ok] { QTest::mouseClick(ok->Widget(), Qt::LeftButton); });
  EXPECT_EQ(form->ShowModal(), mrOk);
  EXPECT_FALSE(form->Visible());
  // Closing a modal form cancels it.
  QTimer::singleShot(0, [this] { form->Close(); });
  EXPECT_EQ(form->ShowModal(), mrCancel);
}

TEST_F(FormsTest, FormsReadAtAnotherResolutionAreScaledToTheScreen) {
  // Read as a stream would set it: designed at 120 pixels per inch.
  form->IncludeState(csLoading);
  form->SetPixelsPerInch(120);
  auto* button = Make<TButton>(form, 100, 50, 75, 25);
  form->Loaded();
  button->Loaded();
  EXPECT_EQ(form->PixelsPerInch(), 96);
  EXPECT_EQ(button->BoundsRect(), Bounds(80, 40, 60, 20));
}
