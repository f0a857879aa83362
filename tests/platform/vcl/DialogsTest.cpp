#include "platform/vcl/Dialogs.h"

#include "tests/platform/vcl/FormFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {
class DialogsTest : public ::testing::Test {
protected:
  void SetUp() override { Reset(); }
  void TearDown() override { Reset(); }
  static void Reset() {
    ClearNextAnswers();
    ClearAskedQuestions();
    SetUserQuestionHook(nullptr);
    SetDefaultDialogCaption("");
  }
};

// Clicks the button with `caption` of the message box that is up, once it is up.
void ClickWhenShown(const QString& caption, QString* seenText = nullptr) {
  QTimer::singleShot(0, [caption, seenText] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    if (seenText) *seenText = box->windowTitle() + QLatin1Char('|') + box->text();
    for (QAbstractButton* b : box->buttons()) {
      if (b->text() == caption) {
        b->click();
        return;
      }
    }
    ADD_FAILURE() << "no button " << caption.toStdString();
    box->reject();
  });
}
}  // namespace

TEST_F(DialogsTest, QueuedAnswersAreTakenInOrder) {
  PushNextAnswer(mrNo);
  PushNextAnswer(mrYes);
  EXPECT_EQ(PendingAnswers(), 2);
  EXPECT_EQ(MessageDlg("Save changes?", mtConfirmation, mbYesNoCancel), mrNo);
  EXPECT_EQ(MessageDlg("Really?", mtWarning, mbOKCancel), mrYes);
  EXPECT_EQ(PendingAnswers(), 0);
  ASSERT_EQ(AskedQuestions().size(), 2u);
  const TUserQuestion& q = AskedQuestions()[0];
  EXPECT_FALSE(q.IsMessageBox);
  EXPECT_EQ(q.Caption, "Confirm");
  EXPECT_EQ(q.Text, "Save changes?");
  EXPECT_EQ(q.DlgType, mtConfirmation);
  EXPECT_EQ(q.Buttons, mbYesNoCancel);
  EXPECT_EQ(AskedQuestions()[1].Caption, "Warning");
}

TEST_F(DialogsTest, HookAnswersWhatIsNotQueued) {
  SetUserQuestionHook([](const TUserQuestion& q) { return q.IsMessageBox ? IDRETRY : mrAbort; });
  PushNextAnswer(IDOK);
  EXPECT_EQ(MessageBoxQuestion("first", "Lumora", MB_OK), IDOK);
  EXPECT_EQ(MessageBoxQuestion("Sorry!!!\rHelp system in work...", "Lumora", MB_ICONINFORMATION), IDRETRY);
  EXPECT_EQ(MessageDlg("x", mtError, mbAbortRetryIgnore), mrAbort);
  ASSERT_EQ(AskedQuestions().size(), 3u);
  EXPECT_TRUE(AskedQuestions()[1].IsMessageBox);
  EXPECT_EQ(AskedQuestions()[1].Flags, MB_ICONINFORMATION);
  EXPECT_EQ(AskedQuestions()[1].Caption, "Lumora");
  EXPECT_EQ(AskedQuestions()[2].Caption, "Error");
}

TEST_F(DialogsTest, ShowMessageUsesTheApplicationTitle) {
  SetDefaultDialogCaption("Lumora");
  PushNextAnswer(mrOk);
  ShowMessage("Hello");
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Caption, "Lumora");
  EXPECT_EQ(AskedQuestions()[0].Buttons, MsgDlgButton(mbOK));
}

TEST_F(DialogsTest, RealMessageDialogIsAnsweredByItsButtons) {
  QString seen;
  ClickWhenShown(QStringLiteral("&No"), &seen);
  EXPECT_EQ(MessageDlg("Save changes?", mtConfirmation, mbYesNoCancel), mrNo);
  EXPECT_EQ(seen, QStringLiteral("Confirm|Save changes?"));
  ClickWhenShown(QStringLiteral("Cancel"));
  EXPECT_EQ(MessageDlg("Save changes?", mtConfirmation, mbYesNoCancel), mrCancel);
}

TEST_F(DialogsTest, RealMessageBoxShowsEightBitTextAndAnswersWithIds) {
  QString seen;
  ClickWhenShown(QStringLiteral("&Retry"), &seen);
  EXPECT_EQ(MessageBoxQuestion("Fehler: Gr\xfc\xdf" "e", "Lumora", MB_RETRYCANCEL | MB_ICONSTOP), IDRETRY);
  EXPECT_EQ(seen, QString::fromUtf8("Lumora|Fehler: Grüße"));
}

namespace {

// The dialog components of a form.
class DialogComponentsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(DialogComponentsTest, FileDialogsTakeTheNextQueuedName) {
  auto* open = new TOpenDialog(form);
  open->SetFilter("Delphi DFM-files|*.dfm");
  PushNextFileName("/tmp/a.dfm");
  PushNextFileName("");
  EXPECT_TRUE(open->Execute());
  EXPECT_EQ(open->FileName(), "/tmp/a.dfm");
  EXPECT_EQ(open->Files()->Count(), 1);
  EXPECT_FALSE(open->Execute());
  EXPECT_EQ(open->FileName(), "/tmp/a.dfm");
  SetFileDialogHook([](TOpenDialog& d) {
    d.SetFileName(d.Saving() ? "saved.txt" : "opened.txt");
    return true;
  });
  auto* save = new TSaveDialog(form);
  EXPECT_TRUE(save->Execute());
  EXPECT_EQ(save->FileName(), "saved.txt");
  SetFileDialogHook(nullptr);
}

TEST_F(DialogComponentsTest, FindDialogRaisesOnFindWithItsOptions) {
  auto* find = new TFindDialog(form);
  find->SetFindText("needle");
  std::string found;
  TFindOptions options;
  find->OnFind = [&](TObject*) {
    found = find->FindText();
    options = find->Options();
  };
  ASSERT_TRUE(find->Execute());
  QDialog* dialog = find->Dialog();
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))->setChecked(true);
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("FindNext")), Qt::LeftButton);
  EXPECT_EQ(found, "needle");
  EXPECT_TRUE(options.Contains(frMatchCase));
  EXPECT_TRUE(options.Contains(frFindNext));
  EXPECT_TRUE(options.Contains(frDown));
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Cancel")), Qt::LeftButton);
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(DialogComponentsTest, ReplaceDialogRaisesOnReplace) {
  auto* replace = new TReplaceDialog(form);
  replace->SetFindText("a");
  replace->SetReplaceText("b");
  int replaced = 0;
  bool all = false;
  replace->OnReplace = [&](TObject*) {
    ++replaced;
    all = replace->Options().Contains(frReplaceAll);
  };
  replace->Execute();
  QTest::mouseClick(replace->Dialog()->findChild<QPushButton*>(QStringLiteral("ReplaceAll")), Qt::LeftButton);
  EXPECT_EQ(replaced, 1);
  EXPECT_TRUE(all);
  EXPECT_EQ(replace->ReplaceText(), "b");
}
