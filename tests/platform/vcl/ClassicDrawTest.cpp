// Drawing in the classic manner: edges, focus rectangles, and captions with their
// accelerators, alignment, word wrap and disabled look.
#include "platform/vcl/ClassicDraw.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

namespace {

QImage Canvas(int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(ColorToQColor(clBtnFace));
  return image;
}

QColor C(TColor color) { return ColorToQColor(color); }

// The columns in which the image has a pixel of `color`.
std::vector<int> ColumnsWith(const QImage& image, const QColor& color) {
  std::vector<int> columns;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      if (image.pixelColor(x, y) == color) {
        columns.push_back(x);
        break;
      }
    }
  }
  return columns;
}

TEST(ClassicDraw, ARaisedEdgeIsLightAboveAndDarkBelowAndShrinksTheRect) {
  QImage image = Canvas(20, 20);
  QRect r(0, 0, 20, 20);
  {
    QPainter p(&image);
    DrawRaisedEdge(p, r);
  }
  EXPECT_EQ(r, QRect(2, 2, 16, 16));
  EXPECT_EQ(image.pixelColor(0, 5), C(cl3DLight));
  EXPECT_EQ(image.pixelColor(19, 5), C(cl3DDkShadow));
  EXPECT_EQ(image.pixelColor(1, 5), C(clBtnHighlight));
  EXPECT_EQ(image.pixelColor(18, 5), C(clBtnShadow));
  EXPECT_EQ(image.pixelColor(10, 10), C(clBtnFace));
}

TEST(ClassicDraw, ASunkenEdgeIsTheOtherWayRound) {
  QImage image = Canvas(20, 20);
  QRect r(0, 0, 20, 20);
  {
    QPainter p(&image);
    DrawSunkenEdge(p, r);
  }
  EXPECT_EQ(image.pixelColor(5, 0), C(clBtnShadow));
  EXPECT_EQ(image.pixelColor(5, 19), C(clBtnHighlight));
  EXPECT_EQ(image.pixelColor(5, 1), C(cl3DDkShadow));
  EXPECT_EQ(image.pixelColor(5, 18), C(cl3DLight));
}

TEST(ClassicDraw, TheFocusRectangleDotsEveryOtherPixel) {
  QImage image = Canvas(10, 6);
  {
    QPainter p(&image);
    DrawFocusRect(p, QRect(0, 0, 10, 6), Qt::black);
  }
  EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(1, 0), C(clBtnFace));
  EXPECT_EQ(image.pixelColor(2, 0), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(0, 2), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(4, 3), C(clBtnFace));  // inside stays
}

TEST(ClassicDraw, TheDesignFrameIsADashedOutlineOfTheWholeControl) {
  QImage image = Canvas(40, 20);
  {
    QPainter p(&image);
    DrawDesignFrame(p, 40, 20);
  }
  // Dashes along every edge, with gaps between them.
  auto dashesAndGaps = [&](QPoint from, QPoint step, int count) {
    std::pair<int, int> result{0, 0};
    for (int i = 0; i < count; ++i, from += step) (image.pixelColor(from) == QColor(Qt::black) ? result.first : result.second)++;
    return result;
  };
  for (const auto& [from, step, count] : {std::tuple{QPoint(0, 0), QPoint(1, 0), 40}, std::tuple{QPoint(0, 19), QPoint(1, 0), 40},
                                          std::tuple{QPoint(0, 0), QPoint(0, 1), 20}, std::tuple{QPoint(39, 0), QPoint(0, 1), 20}}) {
    const auto [dashes, gaps] = dashesAndGaps(from, step, count);
    EXPECT_GE(dashes, count / 2) << from.x() << "," << from.y();
    EXPECT_GT(gaps, 0) << from.x() << "," << from.y();
  }
  // Nothing inside.
  for (int y = 1; y < 19; ++y)
    for (int x = 1; x < 39; ++x) ASSERT_EQ(image.pixelColor(x, y), C(clBtnFace)) << x << "," << y;
}

TEST(ClassicDraw, AnAcceleratorIsUnderlinedAndADoubleAmpersandIsOne) {
  const QFont font(QStringLiteral("Sans Serif"), 10);
  TCaptionLayout layout;
  const QSize plain = MeasureText(font, QStringLiteral("Open"), layout, 0);
  EXPECT_EQ(MeasureText(font, QStringLiteral("&Open"), layout, 0), plain);
  EXPECT_GT(MeasureText(font, QStringLiteral("A&&B"), layout, 0).width(),
            MeasureText(font, QStringLiteral("AB"), layout, 0).width());
  layout.ShowAccelChar = false;
  EXPECT_GT(MeasureText(font, QStringLiteral("&Open"), layout, 0).width(), plain.width());
  // Empty text measures like a blank line.
  EXPECT_EQ(MeasureText(font, QString(), TCaptionLayout{}, 0).height(), plain.height());
}

TEST(ClassicDraw, WordWrapBreaksAtBlanksWithinTheWidth) {
  const QFont font(QStringLiteral("Sans Serif"), 10);
  TCaptionLayout layout;
  const QSize one = MeasureText(font, QStringLiteral("word"), layout, 0);
  layout.WordWrap = true;
  const QSize three = MeasureText(font, QStringLiteral("word word word"), layout, one.width() + 2);
  EXPECT_EQ(three.height(), 3 * one.height());
  EXPECT_LE(three.width(), one.width() + 2);
  EXPECT_EQ(MeasureText(font, QStringLiteral("a\r\nb\nc"), TCaptionLayout{}, 0).height(), 3 * one.height());
}

TEST(ClassicDraw, CaptionsAlignAndDisabledOnesAreEmbossed) {
  QFont font(QStringLiteral("Sans Serif"), 10);
  font.setStyleStrategy(QFont::NoAntialias);  // whole pixels, to look at their colours
  TCaptionLayout layout;
  layout.HAlign = TTextHAlign::Right;
  QImage right = Canvas(200, 30);
  {
    QPainter p(&right);
    DrawCaption(p, QRect(0, 0, 200, 30), font, QStringLiteral("Text"), layout, Qt::black);
  }
  const std::vector<int> ink = ColumnsWith(right, Qt::black);
  ASSERT_FALSE(ink.empty());
  EXPECT_GT(ink.front(), 150);
  layout.HAlign = TTextHAlign::Left;
  layout.Disabled = true;
  QImage disabled = Canvas(200, 30);
  {
    QPainter p(&disabled);
    DrawCaption(p, QRect(0, 0, 200, 30), font, QStringLiteral("Text"), layout, Qt::black);
  }
  EXPECT_TRUE(ColumnsWith(disabled, Qt::black).empty());
  EXPECT_FALSE(ColumnsWith(disabled, C(clBtnShadow)).empty());
  EXPECT_FALSE(ColumnsWith(disabled, C(clBtnHighlight)).empty());
  EXPECT_LT(ColumnsWith(disabled, C(clBtnShadow)).front(), 50);
}

}  // namespace
