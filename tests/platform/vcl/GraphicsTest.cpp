#include "platform/vcl/Graphics.h"

#include "platform/streaming/SysUtils.h"

#include <gtest/gtest.h>

TEST(Colors, SystemColoursResolveToTheClassicScheme) {
  EXPECT_EQ(ColorToRGB(clBtnFace), 0xC8D0D4u);
  EXPECT_EQ(ColorToRGB(clWindow), 0xFFFFFFu);
  EXPECT_EQ(ColorToRGB(clWindowText), 0x000000u);
  EXPECT_EQ(ColorToRGB(clHighlight), 0x6A240Au);
  EXPECT_EQ(ColorToRGB(clBtnShadow), 0x808080u);
  EXPECT_EQ(ColorToRGB(clInfoBk), 0xE1FFFFu);
  EXPECT_EQ(ColorToRGB(clRed), 0x0000FFu);
  EXPECT_EQ(ColorToRGB(TColor(0x00123456)), 0x123456u);
  EXPECT_EQ(static_cast<std::uint32_t>(clBtnFace), 0x8000000Fu);
}

TEST(Colors, QtColoursHaveRedGreenBlueInTheRightPlaces) {
  EXPECT_EQ(ColorToQColor(clRed), QColor(255, 0, 0));
  EXPECT_EQ(ColorToQColor(clNavy), QColor(0, 0, 128));
  EXPECT_EQ(ColorToQColor(clBtnFace), QColor(0xD4, 0xD0, 0xC8));
  EXPECT_EQ(ColorToQColor(TColor(0x00804020)), QColor(0x20, 0x40, 0x80));
  EXPECT_EQ(QColorToColor(QColor(0x20, 0x40, 0x80)), 0x00804020);
  EXPECT_EQ(ColorToQColor(clNone), QColor(255, 255, 255));
}

TEST(Colors, NamesAndHexText) {
  EXPECT_EQ(ColorToString(clRed), "clRed");
  EXPECT_EQ(ColorToString(clBtnFace), "clBtnFace");
  EXPECT_EQ(ColorToString(clNone), "clNone");
  EXPECT_EQ(ColorToString(clSilver), "clSilver");  // clLtGray has the same value
  EXPECT_EQ(ColorToString(TColor(0x00FF8000)), "$00FF8000");
  EXPECT_EQ(ColorToString(TColor(0x00C0DCC0)), "$00C0DCC0");  // later versions' clMoneyGreen is not written
  EXPECT_EQ(StringToColor("clWindow"), clWindow);
  EXPECT_EQ(StringToColor("clwindowtext"), clWindowText);
  EXPECT_EQ(StringToColor("$00FF8000"), 0x00FF8000);
  EXPECT_EQ(StringToColor("255"), clRed);
  EXPECT_EQ(StringToColor("clMoneyGreen"), clMoneyGreen);
  EXPECT_EQ(StringToColor("$80000005"), clWindow);
  EXPECT_THROW(StringToColor("clNoSuchColour"), EConvertError);
}

TEST(Colors, IdentTablesForStreaming) {
  std::string ident;
  EXPECT_TRUE(ColorToIdent(clInfoBk, ident));
  EXPECT_EQ(ident, "clInfoBk");
  EXPECT_FALSE(ColorToIdent(clHotLight, ident));
  long value = 0;
  EXPECT_TRUE(IdentToColor("clHotLight", value));
  EXPECT_EQ(value, static_cast<long>(clHotLight));
  EXPECT_TRUE(IdentToColor("clDefault", value));
  EXPECT_EQ(value, clDefault);
  EXPECT_FALSE(IdentToColor("Red", value));
}
