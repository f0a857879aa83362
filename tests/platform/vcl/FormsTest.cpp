// Forms and controls built in code: where they go, what input does to them, and the
// application's hooks around them.
#include "platform/vcl/Forms.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/StandardPackage.h"
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

class FormsTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    form = new TForm(Application);
    form->SetName("TestForm");
    form->SetBounds(10, 10, 400, 300);
  }
  void TearDown() override {
    delete form;
    Application->OnMessage = nullptr;
    Application->OnException = nullptr;
    Application->OnIdle = nullptr;
    ClearNextAnswers();
    SetUserQuestionHook(nullptr);
  }
  // Shows the form and lets it become the active window.
  void ShowForm() {
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  template <class T>
  T* Make(const char* name, TWinControl* parent, int left, int top, int width, int height) {
    auto* c = new T(form);
    c->SetName(name);
    c->SetParent(parent);
    c->SetBounds(left, top, width, height);
    return c;
  }
  QRect WidgetRect(TControl* c) { return c->Widget()->geometry(); }
  TForm* form = nullptr;
};

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

TEST_F(FormsTest, AlignedControlsFillTheirParentInOrder) {
  auto* top = Make<TPanel>("Top", form, 0, 0, 10, 41);
  auto* bottom = Make<TPanel>("Bottom", form, 0, 0, 10, 30);
  auto* left = Make<TPanel>("Left", form, 0, 0, 100, 10);
  auto* client = Make<TMemo>("Client", form, 0, 0, 10, 10);
  top->SetAlign(alTop);
  bottom->SetAlign(alBottom);
  left->SetAlign(alLeft);
  client->SetAlign(alClient);
  EXPECT_EQ(top->BoundsRect(), Bounds(0, 0, 392, 41));
  EXPECT_EQ(bottom->BoundsRect(), Bounds(0, 243, 392, 30));
  EXPECT_EQ(left->BoundsRect(), Bounds(0, 41, 100, 202));
  EXPECT_EQ(client->BoundsRect(), Bounds(100, 41, 292, 202));
  // The widgets are where the controls are.
  EXPECT_EQ(WidgetRect(client), QRect(100, 41, 292, 202));
  // Resizing the form realigns.
  form->SetWidth(500);
  EXPECT_EQ(top->Width(), 492);
  EXPECT_EQ(client->BoundsRect(), Bounds(100, 41, 392, 202));
  // Hiding an aligned control gives its room to the others.
  top->SetVisible(false);
  EXPECT_EQ(left->BoundsRect(), Bounds(0, 0, 100, 243));
}

TEST_F(FormsTest, ChildrenOfABorderedPanelAlignInsideTheBorder) {
  auto* panel = Make<TPanel>("Panel1", form, 8, 8, 200, 100);
  panel->SetBorderWidth(4);
  auto* inner = Make<TButton>("Inner", panel, 0, 0, 75, 25);
  inner->SetAlign(alClient);
  // Outer bevel raised (1 pixel) and a 4-pixel border.
  EXPECT_EQ(inner->BoundsRect(), Bounds(5, 5, 190, 90));
}

TEST_F(FormsTest, AnchoredControlsFollowTheEdgesTheyAreAnchoredTo) {
  auto* ok = Make<TButton>("OK", form, 300, 240, 75, 25);
  ok->SetAnchors(TAnchors{akRight, akBottom});
  auto* edit = Make<TEdit>("Edit1", form, 8, 8, 376, 21);
  edit->SetAnchors(TAnchors{akLeft, akTop, akRight});
  auto* fixed = Make<TLabel>("Fixed", form, 8, 40, 50, 13);
  form->SetBounds(10, 10, 500, 350);
  EXPECT_EQ(ok->BoundsRect(), Bounds(400, 290, 75, 25));
  EXPECT_EQ(edit->BoundsRect(), Bounds(8, 8, 476, 21));
  EXPECT_EQ(fixed->Left(), 8);
  EXPECT_EQ(WidgetRect(ok), QRect(400, 290, 75, 25));
}

TEST_F(FormsTest, ConstraintsBoundTheSize) {
  auto* panel = Make<TPanel>("Panel1", form, 0, 0, 100, 100);
  panel->Constraints()->SetMaxWidth(150);
  panel->Constraints()->SetMinHeight(50);
  panel->SetBounds(0, 0, 400, 10);
  EXPECT_EQ(panel->Width(), 150);
  EXPECT_EQ(panel->Height(), 50);
  panel->SetAlign(alClient);
  EXPECT_EQ(panel->BoundsRect(), Bounds(0, 0, 150, 273));
}

TEST_F(FormsTest, ControlsTakeTheirParentsFontUntilTheyHaveTheirOwn) {
  auto* label = Make<TLabel>("Label1", form, 8, 8, 50, 13);
  auto* edit = Make<TEdit>("Edit1", form, 8, 30, 100, 21);
  form->Font()->SetName("Arial");
  form->Font()->SetHeight(-13);
  EXPECT_EQ(label->Font()->Name(), "Arial");
  EXPECT_TRUE(label->ParentFont());
  edit->Font()->SetStyle(TFontStyles{fsBold});
  EXPECT_FALSE(edit->ParentFont());
  form->Font()->SetHeight(-16);
  EXPECT_EQ(label->Font()->Height(), -16);
  EXPECT_EQ(edit->Font()->Height(), -13);
  // An edit's height follows its font: the cell height and the 3D border.
  EXPECT_EQ(edit->Height(), FontCellHeight(edit->Font()->Handle()) + 8);
}

TEST_F(FormsTest, LabelsSizeThemselvesToTheirCaption) {
  auto* label = Make<TLabel>("Label1", form, 8, 8, 100, 30);
  label->SetCaption("&Name:");
  const QFontMetrics fm(label->Font()->Handle());
  EXPECT_EQ(label->Width(), fm.horizontalAdvance(QStringLiteral("Name:")));
  EXPECT_EQ(label->Height(), 13);
  auto* right = Make<TLabel>("Right", form, 100, 40, 80, 13);
  right->SetAutoSize(false);
  right->SetAlignment(taRightJustify);
  right->SetAutoSize(true);
  right->SetCaption("x");
  // Right-aligned labels keep their right edge.
  EXPECT_EQ(right->Left() + right->Width(), 180);
}

TEST_F(FormsTest, WidgetsAreNamedAfterTheirComponents) {
  Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* panel = Make<TPanel>("Panel1", form, 8, 40, 200, 100);
  Make<TEdit>("Edit1", panel, 8, 8, 100, 21);
  EXPECT_NE(form->Widget()->findChild<QPushButton*>(QStringLiteral("Button1")), nullptr);
  EXPECT_NE(form->Widget()->findChild<QLineEdit*>(QStringLiteral("Edit1")), nullptr);
  EXPECT_EQ(form->Widget()->objectName(), QStringLiteral("TestForm"));
}

TEST_F(FormsTest, FreeingControlsFreesTheirWidgetsOnce) {
  auto* panel = Make<TPanel>("Panel1", form, 8, 40, 200, 100);
  auto* edit = Make<TEdit>("Edit1", panel, 8, 8, 100, 21);
  QPointer<QWidget> editWidget = edit->Widget();
  QPointer<QWidget> panelWidget = panel->Widget();
  delete panel;  // takes the edit with it
  EXPECT_TRUE(editWidget.isNull());
  EXPECT_TRUE(panelWidget.isNull());
  EXPECT_EQ(form->ComponentCount(), 0);
  // A widget Qt already freed is not freed again.
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  delete button->Widget();
  EXPECT_FALSE(button->HandleAllocated());
  delete button;
}

TEST_F(FormsTest, ClicksAndKeysReachControls) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  int clicks = 0, changes = 0;
  button->OnClick = [&](TObject* sender) {
    EXPECT_EQ(sender, button);
    ++clicks;
  };
  edit->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  edit->SetFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("abc"));
  EXPECT_EQ(edit->Text(), "abc");
  EXPECT_EQ(changes, 3);
}

TEST_F(FormsTest, DesignStateTakesNoInputAndShowsHiddenControls) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  auto* hidden = Make<TLabel>("Hidden", form, 8, 70, 50, 13);
  hidden->SetVisible(false);
  int clicks = 0, mouseDowns = 0;
  button->OnClick = [&](TObject*) { ++clicks; };
  button->OnMouseDown = [&](TObject*, TMouseButton, TShiftState, int, int) { ++mouseDowns; };
  ShowForm();
  EXPECT_FALSE(hidden->Widget()->isVisible());

  form->SetDesignState(true);
  EXPECT_TRUE(button->Designing());
  EXPECT_TRUE(hidden->Widget()->isVisible());
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  edit->Widget()->setFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("xyz"));
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(mouseDowns, 0);
  EXPECT_EQ(edit->Text(), "");

  form->SetDesignState(false);
  EXPECT_FALSE(hidden->Widget()->isVisible());
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  QTest::keyClicks(edit->Widget(), QStringLiteral("xyz"));
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(mouseDowns, 1);
  EXPECT_EQ(edit->Text(), "xyz");
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

TEST_F(FormsTest, ApplicationMessageHookSeesKeysBeforeTheFormAndItsControls) {
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  std::vector<std::string> order;
  Application->OnMessage = [&](TMsg& msg, bool& handled) {
    if (msg.message == WM_KEYDOWN) order.push_back("message " + std::to_string(msg.wParam));
    // The hook swallows Q; the edit never sees it.
    if (msg.wParam == 'Q') handled = true;
  };
  form->SetKeyPreview(true);
  form->OnKeyDown = [&](TObject*, Word& key, TShiftState) { order.push_back("form " + std::to_string(key)); };
  edit->OnKeyDown = [&](TObject*, Word& key, TShiftState) { order.push_back("edit " + std::to_string(key)); };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_A);
  QTest::keyClick(edit->Widget(), Qt::Key_Q);
  ASSERT_EQ(order.size(), 4u);
  EXPECT_EQ(order[0], "message 65");
  EXPECT_EQ(order[1], "form 65");
  EXPECT_EQ(order[2], "edit 65");
  EXPECT_EQ(order[3], "message 81");
  EXPECT_EQ(edit->Text(), "a");
}

TEST_F(FormsTest, KeyHandlersCanTakeAKeyOrChangeACharacter) {
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  edit->OnKeyDown = [](TObject*, Word& key, TShiftState) {
    if (key == 'X') key = 0;
  };
  edit->OnKeyPress = [](TObject*, char& key) {
    if (key == 'b') key = 'B';
    if (key == '1') key = 0;
  };
  ShowForm();
  edit->SetFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("axb1c"));
  EXPECT_EQ(edit->Text(), "aBc");
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

TEST_F(FormsTest, EnterAndEscPressTheDefaultAndCancelButtons) {
  auto* edit = Make<TEdit>("Edit1", form, 8, 8, 100, 21);
  auto* ok = Make<TButton>("OK", form, 8, 40, 75, 25);
  auto* cancel = Make<TButton>("Cancel", form, 90, 40, 75, 25);
  ok->SetDefault(true);
  cancel->SetCancel(true);
  std::vector<std::string> pressed;
  ok->OnClick = [&](TObject*) { pressed.push_back("ok"); };
  cancel->OnClick = [&](TObject*) { pressed.push_back("cancel"); };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_Return);
  QTest::keyClick(edit->Widget(), Qt::Key_Escape);
  ASSERT_EQ(pressed.size(), 2u);
  EXPECT_EQ(pressed[0], "ok");
  EXPECT_EQ(pressed[1], "cancel");
}

TEST_F(FormsTest, AnExceptionInAClickHandlerReachesOnException) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  button->OnClick = [](TObject*) { throw EConvertError("'abc' is not a valid integer value"); };
  std::string caught;
  TObject* from = nullptr;
  Application->OnException = [&](TObject* sender, Exception* e) {
    from = sender;
    caught = e->Message();
  };
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  EXPECT_EQ(caught, "'abc' is not a valid integer value");
  EXPECT_NE(from, nullptr);
}

TEST_F(FormsTest, WithoutOnExceptionTheErrorIsShownInAMessageBox) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  button->OnClick = [](TObject*) { throw EPropertyError("Invalid property value"); };
  Application->SetTitle("Lumora");
  PushNextAnswer(IDOK);
  ClearAskedQuestions();
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  ASSERT_EQ(AskedQuestions().size(), 1u);
  // The message gets its full stop.
  EXPECT_EQ(AskedQuestions()[0].Text, "Invalid property value.");
  EXPECT_EQ(AskedQuestions()[0].Caption, "Lumora");
  EXPECT_EQ(AskedQuestions()[0].Flags, MB_OK | MB_ICONSTOP);
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

TEST_F(FormsTest, TheScreenKnowsTheActiveFormAndShowsTheHourglass) {
  ShowForm();
  EXPECT_EQ(Screen->ActiveForm(), form);
  EXPECT_GT(Screen->Width(), 0);
  EXPECT_GT(Screen->Height(), 0);
  EXPECT_EQ(Screen->PixelsPerInch(), 96);
  Screen->SetCursor(crHourGlass);
  ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  Screen->SetCursor(crDefault);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  bool found = false;
  for (int i = 0; i < Screen->FormCount(); ++i) found |= Screen->Forms(i) == form;
  EXPECT_TRUE(found);
}

TEST_F(FormsTest, ApplicationTitleAndExeName) {
  Application->SetTitle("Lumora");
  EXPECT_EQ(Application->Title(), "Lumora");
  EXPECT_NE(Application->ExeName().find("FormsTest"), std::string::npos);
  PushNextAnswer(IDYES);
  EXPECT_EQ(Application->MessageBox("Save changes?", "", MB_YESNOCANCEL), IDYES);
  EXPECT_EQ(AskedQuestions().back().Caption, "Lumora");
}

TEST_F(FormsTest, IdleRunsWhenTheLoopHasNothingToDo) {
  int idles = 0;
  Application->OnIdle = [&](TObject*, bool& done) {
    ++idles;
    done = idles >= 3;
  };
  QEventLoop loop;
  QTimer::singleShot(50, &loop, &QEventLoop::quit);
  loop.exec();
  EXPECT_GE(idles, 3);
  EXPECT_LE(idles, 6);
}

TEST_F(FormsTest, RunEndsWhenTheMainFormCloses) {
  Application->SetMainForm(form);
  QTimer::singleShot(0, [this] { form->Close(); });
  Application->Run();
  EXPECT_TRUE(Application->Terminated());
  Application->SetMainForm(nullptr);
}
