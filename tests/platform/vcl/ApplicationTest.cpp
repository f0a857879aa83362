// The application object and the screen: the hooks around the event loop, the key
// pipeline every input event goes through, errors, the title, the active form.
#include "platform/vcl/Application.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ApplicationTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(ApplicationTest, ApplicationMessageHookSeesKeysBeforeTheFormAndItsControls) {
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

TEST_F(ApplicationTest, KeyHandlersCanTakeAKeyOrChangeACharacter) {
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

TEST_F(ApplicationTest, EnterAndEscPressTheDefaultAndCancelButtons) {
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

TEST_F(ApplicationTest, AnExceptionInAClickHandlerReachesOnException) {
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

TEST_F(ApplicationTest, WithoutOnExceptionTheErrorIsShownInAMessageBox) {
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

TEST_F(ApplicationTest, TheScreenKnowsTheActiveFormAndShowsTheHourglass) {
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

TEST_F(ApplicationTest, ApplicationTitleAndExeName) {
  Application->SetTitle("Lumora");
  EXPECT_EQ(Application->Title(), "Lumora");
  EXPECT_NE(Application->ExeName().find("ApplicationTest"), std::string::npos);
  PushNextAnswer(IDYES);
  EXPECT_EQ(Application->MessageBox("Save changes?", "", MB_YESNOCANCEL), IDYES);
  EXPECT_EQ(AskedQuestions().back().Caption, "Lumora");
}

TEST_F(ApplicationTest, IdleRunsWhenTheLoopHasNothingToDo) {
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

TEST_F(ApplicationTest, RunEndsWhenTheMainFormCloses) {
  Application->SetMainForm(form);
  QTimer::singleShot(0, [this] { form->Close(); });
  Application->Run();
  EXPECT_TRUE(Application->Terminated());
  Application->SetMainForm(nullptr);
}
