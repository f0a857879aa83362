#include "platform/vcl/Dialogs.h"

#include "platform/vcl/Clipbrd.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
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

TEST(Clipboard, TextRoundTripsAsEightBitText) {
  Clipboard()->SetAsText("Caf\xe9 \x80");
  EXPECT_TRUE(Clipboard()->HasText());
  EXPECT_EQ(Clipboard()->AsText(), "Caf\xe9 \x80");
  Clipboard()->Clear();
  EXPECT_EQ(Clipboard()->AsText(), "");
}
