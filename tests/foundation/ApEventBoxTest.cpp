#include "foundation/ApEvent.h"
#include "foundation/ApEventBox.h"
#include "platform/vcl/Dialogs.h"

#include <gtest/gtest.h>

TEST(ApEventBox, DeferredErrorsAreShownInOneErrorBox) {
  FinalizeApEvent();
  ShowErrorHook = nullptr;
  UseErrorMessageBox();
  ClearAskedQuestions();
  PushNextAnswer(IDOK);
  DeferError("Class TButton not found");
  DeferError("Property Foo does not exist");
  DeferError("Class TButton not found");
  DoApplicationIdle();
  ASSERT_EQ(AskedQuestions().size(), 1u);
  const TUserQuestion& q = AskedQuestions()[0];
  EXPECT_TRUE(q.IsMessageBox);
  EXPECT_EQ(q.Caption, "Error");
  EXPECT_EQ(q.Text, "Class TButton not found\nProperty Foo does not exist");
  EXPECT_EQ(q.Flags, MB_OK | MB_ICONERROR);
  EXPECT_EQ(PendingAnswers(), 0);
  FinalizeApEvent();
}

TEST(ApEventBox, LinkingTheLibraryInstallsTheBox) {
  EXPECT_TRUE(static_cast<bool>(DefaultErrorBox));
}
