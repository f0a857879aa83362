// Radio groups, splitters and timers driven as a person drives them.
#include "platform/vcl/ExtCtrls.h"

#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QEventLoop>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ExtCtrlsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(ExtCtrlsTest, RadioGroupsArrangeTheirButtonsAndReportTheChoice) {
  auto* group = Make<TRadioGroup>(form, 8, 8, 200, 100);
  group->Items()->Add("North");
  group->Items()->Add("South");
  group->Items()->Add("East");
  group->SetColumns(2);
  group->SetItemIndex(2);
  ASSERT_EQ(group->ButtonCount(), 3);
  EXPECT_TRUE(group->Buttons(2)->Checked());
  // Two columns: two buttons in the first, one in the second.
  EXPECT_EQ(group->Buttons(0)->Left(), 8);
  EXPECT_EQ(group->Buttons(2)->Left(), 8 + (200 - 10) / 2);
  int clicks = 0;
  group->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(group->Buttons(1)->Widget(), Qt::LeftButton);
  EXPECT_EQ(group->ItemIndex(), 1);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(group->Buttons(2)->Checked());
  // The buttons are the group's: a form writes none of them.
  int children = 0;
  group->GetChildren([&](TComponent*) { ++children; }, form);
  EXPECT_EQ(children, 0);
}

TEST_F(ExtCtrlsTest, SplittersResizeTheControlBesideThem) {
  auto* left = Make<TPanel>(form, 0, 0, 100, 10);
  left->SetAlign(alLeft);
  auto* splitter = Make<TSplitter>(form, 100, 0, 3, 10);
  splitter->SetAlign(alLeft);
  auto* rest = Make<TPanel>(form, 0, 0, 10, 10);
  rest->SetAlign(alClient);
  EXPECT_EQ(splitter->FindControl(), left);
  ShowForm();
  QWidget* w = splitter->Widget();
  QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, QPoint(1, 50));
  QCursor::setPos(w->mapToGlobal(QPoint(1, 50)));
  QTest::mouseMove(w, QPoint(41, 50));
  QCursor::setPos(w->mapToGlobal(QPoint(41, 50)));
  QMouseEvent move(QEvent::MouseMove, QPointF(41, 50), w->mapToGlobal(QPointF(41, 50)), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(w, &move);
  QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, QPoint(41, 50));
  EXPECT_GT(left->Width(), 100);
  EXPECT_EQ(rest->Left(), left->Width() + 3);
}

TEST_F(ExtCtrlsTest, TimersRunTheirEventWhileEnabled) {
  auto* timer = new TTimer(form);
  int ticks = 0;
  timer->SetInterval(5);
  timer->SetOnTimer([&](TObject*) { ++ticks; });
  QEventLoop loop;
  QTimer::singleShot(60, &loop, &QEventLoop::quit);
  loop.exec();
  EXPECT_GE(ticks, 3);
  timer->SetEnabled(false);
  const int stopped = ticks;
  QTimer::singleShot(30, &loop, &QEventLoop::quit);
  loop.exec();
  EXPECT_EQ(ticks, stopped);
}
