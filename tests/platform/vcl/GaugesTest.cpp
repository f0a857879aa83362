// Gauges: the percentage of Progress between MinValue and MaxValue, drawn as bars, a
// pie or a needle, with the figure written over them.
#include "platform/vcl/Gauges.h"

#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

class GaugesTest : public lumora::test::TFormFixture {
protected:
  TGauge* MakeGauge(TGaugeKind kind, int width, int height) {
    auto* gauge = new TGauge(form);
    gauge->SetName("Gauge1");
    gauge->SetParent(form);
    gauge->SetBounds(8, 8, width, height);
    gauge->SetKind(kind);
    gauge->SetForeColor(clNavy);
    gauge->SetBackColor(clWhite);
    return gauge;
  }
  // The gauge as it paints itself.
  static QImage Draw(TGauge* gauge) {
    QImage image(gauge->Width(), gauge->Height(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter p(&image);
    gauge->Paint(p);
    return image;
  }
  static QRgb Rgb(const QImage& image, int x, int y) { return image.pixel(x, y) & 0xFFFFFF; }
  static QRgb RgbOf(TColor c) { return ColorToQColor(c).rgb() & 0xFFFFFF; }
};

}  // namespace

TEST_F(GaugesTest, ProgressIsKeptInItsRangeAndGivesThePercentage) {
  TGauge* gauge = MakeGauge(gkHorizontalBar, 200, 20);
  gauge->SetMinValue(50);
  gauge->SetMaxValue(150);
  gauge->SetProgress(75);
  EXPECT_EQ(gauge->PercentDone(), 25);
  gauge->AddProgress(500);
  EXPECT_EQ(gauge->Progress(), 150);
  EXPECT_EQ(gauge->PercentDone(), 100);
  gauge->SetProgress(-3);
  EXPECT_EQ(gauge->Progress(), 50);
  gauge->SetMaxValue(50);
  EXPECT_EQ(gauge->PercentDone(), 0);
}

TEST_F(GaugesTest, AHorizontalBarFillsItsShareAndWritesThePercentage) {
  TGauge* gauge = MakeGauge(gkHorizontalBar, 202, 22);
  gauge->SetShowText(false);
  gauge->SetProgress(40);
  QImage image = Draw(gauge);
  // A black single border, then 40% of the inside in the fore colour.
  EXPECT_EQ(Rgb(image, 0, 10), RgbOf(clBlack));
  EXPECT_EQ(Rgb(image, 1, 10), RgbOf(clNavy));
  EXPECT_EQ(Rgb(image, 80, 10), RgbOf(clNavy));
  EXPECT_EQ(Rgb(image, 82, 10), RgbOf(clWhite));
  EXPECT_EQ(Rgb(image, 199, 10), RgbOf(clWhite));
  // The figure, "40%", in the fore colour over the back colour and in the back colour
  // over the bar.
  gauge->SetShowText(true);
  image = Draw(gauge);
  int inkOnBack = 0;
  for (int x = 82; x < 200; ++x)
    for (int y = 1; y < 21; ++y) inkOnBack += Rgb(image, x, y) == RgbOf(clNavy) ? 1 : 0;
  EXPECT_GT(inkOnBack, 10);
  gauge->SetShowText(false);
  gauge->SetProgress(0);
  image = Draw(gauge);
  for (int x = 82; x < 200; ++x)
    for (int y = 1; y < 21; ++y) ASSERT_EQ(Rgb(image, x, y), RgbOf(clWhite)) << x << "," << y;
}

TEST_F(GaugesTest, AVerticalBarFillsFromTheBottom) {
  TGauge* gauge = MakeGauge(gkVerticalBar, 22, 102);
  gauge->SetShowText(false);
  gauge->SetProgress(30);
  const QImage image = Draw(gauge);
  EXPECT_EQ(Rgb(image, 10, 100), RgbOf(clNavy));
  EXPECT_EQ(Rgb(image, 10, 72), RgbOf(clNavy));
  EXPECT_EQ(Rgb(image, 10, 68), RgbOf(clWhite));
  EXPECT_EQ(Rgb(image, 10, 2), RgbOf(clWhite));
}

TEST_F(GaugesTest, APieFillsClockwiseFromTwelve) {
  TGauge* gauge = MakeGauge(gkPie, 101, 101);
  gauge->SetShowText(false);
  gauge->SetBorderStyle(BorderStyleOf(bsNone));
  gauge->SetProgress(25);
  const QImage image = Draw(gauge);
  // The upper right quarter is done; the others are not.
  EXPECT_EQ(Rgb(image, 70, 30), RgbOf(clNavy));
  EXPECT_EQ(Rgb(image, 30, 30), RgbOf(clWhite));
  EXPECT_EQ(Rgb(image, 70, 70), RgbOf(clWhite));
}

TEST_F(GaugesTest, TheTextKindWritesOnlyTheFigure) {
  TGauge* gauge = MakeGauge(gkText, 100, 30);
  gauge->SetProgress(100);
  const QImage image = Draw(gauge);
  int ink = 0;
  int back = 0;
  for (int x = 1; x < 99; ++x) {
    for (int y = 1; y < 29; ++y) {
      ink += Rgb(image, x, y) == RgbOf(clNavy) ? 1 : 0;
      back += Rgb(image, x, y) == RgbOf(clWhite) ? 1 : 0;
    }
  }
  EXPECT_GT(ink, 10);
  EXPECT_GT(back, ink);
}
