// Animations read from form text as real forms give them, shown as they should be,
// and answering the mouse and the keys.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/platform/vcl/comctrls/ComCtrlsFixture.h"

#include <gtest/gtest.h>

using namespace lumora::test;

TEST_F(ComCtrlsTest, AnimationsAndTheRestReadWithoutErrors) {
  Read(MiscForm);
  auto* animate = Find<TAnimate>("Animate1");
  EXPECT_EQ(animate->CommonAVI(), aviFindFile);
  EXPECT_EQ(animate->StopFrame(), 8);
  EXPECT_FALSE(animate->Active());
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "HeaderControl1"), ObjectBlock(Crlf(MiscForm), "HeaderControl1"));
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "UpDown1"), ObjectBlock(Crlf(MiscForm), "UpDown1"));
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "HotKey1"), ObjectBlock(Crlf(MiscForm), "HotKey1"));
}
