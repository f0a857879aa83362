// Date-time pickers read from form text as real forms give them, shown as they should be,
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

#include <QDateTimeEdit>

#include <gtest/gtest.h>

using namespace lumora::test;

TEST_F(ComCtrlsTest, ADateTimePickerShowsItsDateAndKeepsItsTime) {
  Read(MiscForm);
  auto* picker = Find<TDateTimePicker>("DateTimePicker1");
  EXPECT_DOUBLE_EQ(picker->Date(), 36161.75);
  int changes = 0;
  picker->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QDateTimeEdit* e = picker->Editor();
  ASSERT_NE(e, nullptr);
  // Day 36161 is the first of January 1999.
  EXPECT_EQ(e->date(), QDate(1999, 1, 1));
  EXPECT_TRUE(e->calendarPopup());
  e->setDate(QDate(1999, 1, 2));
  EXPECT_DOUBLE_EQ(picker->Date(), 36162.75);
  EXPECT_EQ(changes, 1);
  picker->SetTime(0.5);
  EXPECT_DOUBLE_EQ(picker->DateTime(), 36162.5);
  picker->SetKind(dtkTime);
  EXPECT_EQ(e->time(), QTime(12, 0));
  EXPECT_FALSE(e->calendarPopup());
  // Nothing of it is lost in writing.
  picker->SetKind(dtkDate);
  picker->SetDateTime(36161.75);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "DateTimePicker1"), ObjectBlock(Crlf(MiscForm), "DateTimePicker1"));
}
