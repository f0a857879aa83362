// The main form framework: the application's errors, keys and idle time go through the
// main form; errors are shown together at the next idle.
#include "shell/Frm_Main.h"

#include "foundation/ApEvent.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "resources/ResStrings.h"
#include "tests/support/Errors.h"

#include <QApplication>
#include <algorithm>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class TTestMainForm : public TCustomMainForm {
  LUMORA_CLASS(TTestMainForm, TCustomMainForm)
public:
  explicit TTestMainForm(TComponent* owner) : TCustomMainForm(owner) { CreateMainForm(); }
  ~TTestMainForm() override { DestroyMainForm(); }
  std::vector<std::string> Calls;
  std::vector<Word> KeysSeen;
  Word SwallowKey = 0;
  using TCustomMainForm::SetCloseOnEsc;

protected:
  void FirstIdleHook() override { Calls.push_back("first"); }
  void IdleHook(bool&) override {
    if (Calls.size() < 20) Calls.push_back("idle");
  }
  void KeyPreviewHook(Word& Key, TShiftState) override {
    KeysSeen.push_back(Key);
    if (Key == SwallowKey) Key = 0;
  }
};

class TOtherMainForm : public TCustomMainForm {
  LUMORA_CLASS(TOtherMainForm, TCustomMainForm)
public:
  explicit TOtherMainForm(TComponent* owner) : TCustomMainForm(owner) { CreateMainForm(); }
  ~TOtherMainForm() override { DestroyMainForm(); }
};

}  // namespace

LUMORA_CLASS_IMPL(TTestMainForm) {}
LUMORA_CLASS_IMPL(TOtherMainForm) {}

namespace {

void RunFor(int ms) {
  QEventLoop loop;
  QTimer::singleShot(ms, &loop, &QEventLoop::quit);
  loop.exec();
}

class FrmMainTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    Application->SetTitle("Lumora");
    FinalizeApEvent();
    ClearAskedQuestions();
    ClearNextAnswers();
    SetUserQuestionHook([](const TUserQuestion&) { return IDOK; });
    form = new TTestMainForm(Application);
    form->SetBounds(40, 40, 300, 200);
  }
  void TearDown() override {
    delete form;
    FinalizeApEvent();
    SetUserQuestionHook(nullptr);
    ClearAskedQuestions();
  }
  std::vector<TUserQuestion> ErrorBoxes() {
    std::vector<TUserQuestion> boxes;
    for (const TUserQuestion& q : AskedQuestions())
      if (q.IsMessageBox && (q.Flags & MB_ICONMASK) == MB_ICONSTOP) boxes.push_back(q);
    return boxes;
  }
  void Activate(TCustomForm* f) {
    f->Show();
    QApplication::setActiveWindow(f->Widget());
    QApplication::processEvents();
  }
  TTestMainForm* form = nullptr;
};

}  // namespace

TEST_F(FrmMainTest, TakesOverTheApplicationsEvents) {
  EXPECT_TRUE(static_cast<bool>(Application->OnIdle));
  EXPECT_TRUE(static_cast<bool>(Application->OnException));
  EXPECT_TRUE(static_cast<bool>(Application->OnMessage));
  EXPECT_TRUE(static_cast<bool>(ShowErrorHook));
  EXPECT_FALSE(form->CloseOnEsc());
  EXPECT_TRUE(form->FirstIdle());
}

TEST_F(FrmMainTest, TwoIdenticalErrorsGiveOneLineInOneBox) {
  DeferError("Class TButton not found");
  DeferError("Class TButton not found");
  RunFor(50);
  auto boxes = ErrorBoxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].Text, "Class TButton not found");
  EXPECT_EQ(boxes[0].Caption, "Lumora");
  EXPECT_EQ(boxes[0].Flags, MB_OK | MB_ICONSTOP);
}

TEST_F(FrmMainTest, ThreeDifferentErrorsGiveOneBoxWithThreeLines) {
  DeferError("one");
  DeferError("two");
  DeferError("three");
  RunFor(50);
  auto boxes = ErrorBoxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].Text, "one\ntwo\nthree");
}

TEST_F(FrmMainTest, AnErrorOfAHandlerIsShownAtTheNextIdleNotWhereItArose) {
  auto* button = new TButton(form);
  button->SetName("Button1");
  button->SetParent(form);
  button->SetBounds(10, 10, 75, 25);
  int clicks = 0;
  button->OnClick = [&](TObject*) {
    ++clicks;
    throw EConvertError("'abc' is not a valid integer value");
  };
  Activate(form);
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  // Nothing shown yet: the error waits in the queue.
  EXPECT_TRUE(ErrorBoxes().empty());
  ASSERT_NE(DeferredErrors(), nullptr);
  EXPECT_EQ(DeferredErrors()->Count(), 1);
  RunFor(50);
  auto boxes = ErrorBoxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].Text, "'abc' is not a valid integer value");
}

TEST_F(FrmMainTest, FirstIdleHookRunsOnceBeforeTheFirstIdleHook) {
  RunFor(30);
  ASSERT_GE(form->Calls.size(), 2u);
  EXPECT_EQ(form->Calls[0], "first");
  EXPECT_EQ(form->Calls[1], "idle");
  EXPECT_EQ(std::count(form->Calls.begin(), form->Calls.end(), "first"), 1);
  EXPECT_FALSE(form->FirstIdle());
  RunFor(30);
  EXPECT_EQ(std::count(form->Calls.begin(), form->Calls.end(), "first"), 1);
}

TEST_F(FrmMainTest, KeysOfAnotherFormPassTheHookFirstThenThatFormsShortcuts) {
  Activate(form);
  auto* other = new TForm(Application);
  other->SetName("LiveForm1");
  other->SetBounds(100, 100, 300, 200);
  auto* edit = new TEdit(other);
  edit->SetName("Edit1");
  edit->SetParent(other);
  edit->SetBounds(8, 8, 120, 21);
  auto* menu = new TMainMenu(other);
  menu->SetName("MainMenu1");
  auto* top = new TMenuItem(other);
  top->SetCaption("&View");
  menu->Items()->Add(top);
  auto* item = new TMenuItem(other);
  item->SetName("ViewText");
  item->SetCaption("View as &Text");
  item->SetShortCut(MakeShortCut(VK_F12, 0));
  std::vector<std::string> order;
  item->OnClick = [&](TObject*) { order.push_back("shortcut"); };
  top->Add(item);
  other->SetMenu(menu);
  Activate(other);
  edit->SetFocus();
  QApplication::processEvents();

  form->KeysSeen.clear();
  QTest::keyClick(edit->Widget(), Qt::Key_F12);
  ASSERT_FALSE(form->KeysSeen.empty());
  EXPECT_EQ(form->KeysSeen.front(), VK_F12);
  EXPECT_EQ(order.size(), 1u);

  // A key the hook clears never reaches the form's shortcuts.
  form->SwallowKey = VK_F12;
  QTest::keyClick(edit->Widget(), Qt::Key_F12);
  EXPECT_EQ(order.size(), 1u);
  delete other;
}

TEST_F(FrmMainTest, TypedCharactersAreNotTakenForShortcuts) {
  // 'r' types the code of F3 as a character; it must not run an F3 command.
  auto* other = new TForm(Application);
  other->SetBounds(100, 100, 300, 200);
  auto* edit = new TEdit(other);
  edit->SetParent(other);
  edit->SetBounds(8, 8, 120, 21);
  auto* menu = new TMainMenu(other);
  auto* top = new TMenuItem(other);
  top->SetCaption("&File");
  menu->Items()->Add(top);
  auto* item = new TMenuItem(other);
  item->SetCaption("Open");
  item->SetShortCut(MakeShortCut(VK_F3, 0));
  int runs = 0;
  item->OnClick = [&](TObject*) { ++runs; };
  top->Add(item);
  other->SetMenu(menu);
  Activate(other);
  edit->SetFocus();
  QApplication::processEvents();
  QTest::keyClicks(edit->Widget(), "r");
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(edit->Text(), "r");
  delete other;
}

TEST_F(FrmMainTest, EscClosesTheFormOnlyWhenAsked) {
  auto* edit = new TEdit(form);
  edit->SetParent(form);
  edit->SetBounds(8, 8, 120, 21);
  form->SetKeyPreview(true);
  Activate(form);
  edit->SetFocus();
  int closes = 0;
  form->OnClose = [&](TObject*, TCloseAction& action) {
    ++closes;
    action = caNone;
  };
  QTest::keyClick(edit->Widget(), Qt::Key_Escape);
  EXPECT_EQ(closes, 0);
  form->SetCloseOnEsc(true);
  QTest::keyClick(edit->Widget(), Qt::Key_Escape);
  EXPECT_EQ(closes, 1);
}

TEST_F(FrmMainTest, ASecondMainFormOfTheSameClassIsRefused) {
  EXPECT_EQ(lumora::test::MessageOf<Exception>([] { new TTestMainForm(Application); }),
            "Cannot have more than one instance 'TTestMainForm' per application");
  // The first one still has the application's events.
  DeferError("still mine");
  RunFor(50);
  ASSERT_EQ(ErrorBoxes().size(), 1u);
  EXPECT_EQ(ErrorBoxes()[0].Caption, "Lumora");
  EXPECT_FALSE(form->Calls.empty());
  // A main form of another class may live beside it.
  auto* other = new TOtherMainForm(Application);
  delete other;
  form->Calls.clear();
  RunFor(30);
  EXPECT_FALSE(form->Calls.empty());
}

TEST_F(FrmMainTest, TheEventsGoBackWhenTheFormIsGone) {
  delete form;
  form = nullptr;
  EXPECT_FALSE(static_cast<bool>(Application->OnIdle));
  EXPECT_FALSE(static_cast<bool>(Application->OnMessage));
  EXPECT_FALSE(static_cast<bool>(Application->OnException));
  EXPECT_FALSE(static_cast<bool>(ShowErrorHook));
}
