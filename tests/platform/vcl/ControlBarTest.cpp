// Control bars: each control in a band with a grab bar, moved along and between rows by
// dragging that bar.
#include "platform/vcl/ControlBar.h"

#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class ControlBarTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    bar = Make<TControlBar>("ControlBar1", form, 0, 0, 300, 60);
    panel = Make<TPanel>("Panel1", bar, 20, 2, 80, 22);
    ShowForm();
    inset = (bar->Width() - bar->ClientWidth()) / 2;
  }
  // Presses at `from`, moves with the button held to `to`, releases there (bar coordinates).
  void Drag(QPoint from, QPoint to) {
    QWidget* w = bar->Widget();
    QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), w->mapToGlobal(QPointF(to)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(w, &move);
    QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, to);
  }
  // A point on the panel's grab bar.
  QPoint Grab() const { return QPoint(inset + panel->Left() - 6, inset + panel->Top() + 10); }
  TControlBar* bar = nullptr;
  TPanel* panel = nullptr;
  int inset = 0;
};

}  // namespace

TEST_F(ControlBarTest, DraggingTheGrabBarMovesTheBandAlongItsRow) {
  const QPoint from = Grab();
  Drag(from, from + QPoint(100, 0));
  EXPECT_EQ(panel->Left(), 120);
  EXPECT_EQ(panel->Top(), 2);
  // The grab bar never leaves the bar's left edge.
  const QPoint again = Grab();
  Drag(again, again - QPoint(500, 0));
  EXPECT_EQ(bar->BandRect(panel).Left, 0);
}

TEST_F(ControlBarTest, ABandDraggedDownSnapsToTheNextRow) {
  const QPoint from = Grab();
  Drag(from, from + QPoint(0, bar->RowSize() - 4));
  EXPECT_EQ(panel->Top(), bar->RowSize() + 2);
  EXPECT_EQ(panel->Left(), 20);
}

TEST_F(ControlBarTest, TheProgramMayRefuseADragOrChangeWhereTheBandGoes) {
  bar->OnBandDrag = [](TObject*, TControl*, bool& drag) { drag = false; };
  const QPoint from = Grab();
  Drag(from, from + QPoint(100, 0));
  EXPECT_EQ(panel->Left(), 20);
  bar->OnBandDrag = nullptr;
  bar->OnBandMove = [](TObject*, TControl*, TRect& r) {
    const int w = r.Width();
    r.Left = 50;
    r.Right = 50 + w;
  };
  Drag(from, from + QPoint(100, 0));
  EXPECT_EQ(panel->Left(), 50);
}

TEST_F(ControlBarTest, PressingOutsideAGrabBarMovesNothing) {
  Drag(QPoint(inset + 250, inset + 10), QPoint(inset + 200, inset + 40));
  EXPECT_EQ(panel->Left(), 20);
  EXPECT_EQ(panel->Top(), 2);
  bar->SetAutoDrag(false);
  const QPoint from = Grab();
  Drag(from, from + QPoint(100, 0));
  EXPECT_EQ(panel->Left(), 20);
}

TEST_F(ControlBarTest, TheGrabBarIsDrawnLeftOfTheControl) {
  const QImage image = bar->Widget()->grab().toImage();
  const QPoint g = Grab();
  // Raised lines: both the highlight and the shadow colours appear across the grab bar.
  bool light = false;
  bool dark = false;
  for (int x = g.x() - 5; x < g.x() + 5; ++x) {
    const QRgb c = image.pixel(x, g.y()) & 0xFFFFFF;
    light = light || c == (ColorToQColor(clBtnHighlight).rgb() & 0xFFFFFF);
    dark = dark || c == (ColorToQColor(clBtnShadow).rgb() & 0xFFFFFF);
  }
  EXPECT_TRUE(light);
  EXPECT_TRUE(dark);
}
