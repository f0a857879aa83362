// The media player's row of buttons: which show, which answer a click.
#include "platform/vcl/MPlayer.h"

#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class MPlayerTest : public lumora::test::TFormFixture {
protected:
  // The middle of the `n`th button shown.
  static QPoint ButtonCentre(TMediaPlayer* player, int n, int shown) {
    const int w = (player->Width() - 1) / shown;
    return QPoint(n * w + w / 2, player->Height() / 2);
  }
};

}  // namespace

TEST_F(MPlayerTest, NineButtonsShareTheWidthInTheirOrder) {
  auto* player = Make<TMediaPlayer>("MediaPlayer1", form, 8, 8, 253, 30);
  const int w = (253 - 1) / 9;
  EXPECT_EQ(player->ButtonAt(w / 2), static_cast<int>(TMPBtnType::btPlay));
  EXPECT_EQ(player->ButtonAt(w * 2 + 1), static_cast<int>(TMPBtnType::btStop));
  EXPECT_EQ(player->ButtonAt(w * 8 + 1), static_cast<int>(TMPBtnType::btEject));
  // Hiding buttons gives the rest the width.
  player->SetVisibleButtons(TButtonSet{TMPBtnType::btPlay, TMPBtnType::btStop});
  EXPECT_EQ(player->ButtonAt(10), static_cast<int>(TMPBtnType::btPlay));
  EXPECT_EQ(player->ButtonAt(200), static_cast<int>(TMPBtnType::btStop));
  EXPECT_EQ(player->ButtonAt(300), -1);
}

TEST_F(MPlayerTest, WithoutADeviceTheButtonsAnswerNothing) {
  auto* player = Make<TMediaPlayer>("MediaPlayer1", form, 8, 8, 253, 30);
  int clicks = 0;
  player->OnClick = [&](TObject*, TMPBtnType, bool&) { ++clicks; };
  ShowForm();
  QTest::mouseClick(player->Widget(), Qt::LeftButton, Qt::NoModifier, ButtonCentre(player, 0, 9));
  EXPECT_EQ(clicks, 0);
  EXPECT_FALSE(player->ButtonEnabled(TMPBtnType::btPlay));
}

TEST_F(MPlayerTest, EnabledButtonsReportTheirClicks) {
  auto* player = Make<TMediaPlayer>("MediaPlayer1", form, 8, 8, 253, 30);
  player->SetAutoEnable(false);
  player->SetEnabledButtons(TButtonSet{TMPBtnType::btPlay, TMPBtnType::btEject});
  std::vector<TMPBtnType> clicked;
  std::vector<TMPBtnType> posted;
  player->OnClick = [&](TObject*, TMPBtnType b, bool&) { clicked.push_back(b); };
  player->OnPostClick = [&](TObject*, TMPBtnType b) { posted.push_back(b); };
  ShowForm();
  QTest::mouseClick(player->Widget(), Qt::LeftButton, Qt::NoModifier, ButtonCentre(player, 0, 9));
  QTest::mouseClick(player->Widget(), Qt::LeftButton, Qt::NoModifier, ButtonCentre(player, 2, 9));
  QTest::mouseClick(player->Widget(), Qt::LeftButton, Qt::NoModifier, ButtonCentre(player, 8, 9));
  EXPECT_EQ(clicked, (std::vector<TMPBtnType>{TMPBtnType::btPlay, TMPBtnType::btEject}));
  EXPECT_EQ(posted, clicked);
}

TEST_F(MPlayerTest, DisabledButtonsAreGreyAndEnabledOnesDarker) {
  auto* player = Make<TMediaPlayer>("MediaPlayer1", form, 8, 8, 253, 30);
  player->SetAutoEnable(false);
  player->SetEnabledButtons(TButtonSet{TMPBtnType::btPlay});
  player->SetColoredButtons(TButtonSet{});
  ShowForm();
  const QImage image = player->Widget()->grab().toImage();
  const int w = (253 - 1) / 9;
  // The darkest pixel of each button's face.
  auto darkest = [&](int n) {
    int least = 255 * 3;
    for (int x = n * w + 3; x < (n + 1) * w - 3; ++x) {
      for (int y = 3; y < 27; ++y) {
        const QColor c(image.pixel(x, y));
        least = std::min(least, c.red() + c.green() + c.blue());
      }
    }
    return least;
  };
  EXPECT_LT(darkest(0), darkest(2));
}
