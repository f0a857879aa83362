#include "platform/streaming/FloatText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

std::string Text(long double value, TFloatKind kind = TFloatKind::Extended) {
  std::string out;
  AppendFloatText(out, value, kind);
  return out;
}

bool SameExtended(long double a, long double b) { return std::memcmp(&a, &b, 10) == 0; }

TEST(FloatText, GeneralFormatWithFifteenDigits) {
  EXPECT_EQ(FormatGeneral(1.5L, 15), "1.5");
  EXPECT_EQ(FormatGeneral(0.1L, 15), "0.1");
  EXPECT_EQ(FormatGeneral(100.0L, 15), "100");
  EXPECT_EQ(FormatGeneral(-2.25L, 15), "-2.25");
  EXPECT_EQ(FormatGeneral(0, 15), "0");
  EXPECT_EQ(FormatGeneral(1e20L, 15), "1E20");
  EXPECT_EQ(FormatGeneral(1.5e-7L, 15), "1.5E-7");
  EXPECT_EQ(FormatGeneral(-1.5e-7L, 15), "-1.5E-7");
  EXPECT_EQ(FormatGeneral(1.0L / 3, 15), "0.333333333333333");
  EXPECT_EQ(FormatGeneral(2.0L / 3, 15), "0.666666666666667");
}

TEST(FloatText, FixedBetweenOneHundredThousandthAndOneE15) {
  EXPECT_EQ(FormatGeneral(1e14L, 15), "100000000000000");
  EXPECT_EQ(FormatGeneral(999999999999999.0L, 15), "999999999999999");
  EXPECT_EQ(FormatGeneral(1e15L, 15), "1E15");
  EXPECT_EQ(FormatGeneral(0.0001L, 15), "0.0001");
  EXPECT_EQ(FormatGeneral(0.00001L, 15), "0.00001");
  EXPECT_EQ(FormatGeneral(0.000001L, 15), "1E-6");
  EXPECT_EQ(FormatGeneral(0.0000123L, 15), "0.0000123");
  // Rounding to 15 digits can carry into a new digit and so into scientific notation.
  EXPECT_EQ(FormatGeneral(999999999999999.9L, 15), "1E15");
}

TEST(FloatText, SpecialValues) {
  EXPECT_EQ(FormatGeneral(std::numeric_limits<long double>::infinity(), 15), "INF");
  EXPECT_EQ(FormatGeneral(-std::numeric_limits<long double>::infinity(), 15), "-INF");
  EXPECT_EQ(FormatGeneral(std::numeric_limits<long double>::quiet_NaN(), 15), "NAN");
}

TEST(FloatText, FifteenDigitsWhenTheyReadBack) {
  EXPECT_EQ(Text(1.5L), "1.5");
  EXPECT_EQ(Text(0.1L), "0.1");
  EXPECT_EQ(Text(37400.6206314468L), "37400.6206314468");
}

TEST(FloatText, MoreDigitsWhenFifteenLoseBits) {
  // 1/3 in 80 bits needs more than 15 digits to come back.
  const long double third = 1.0L / 3;
  const std::string text = Text(third);
  EXPECT_NE(text, "0.333333333333333");
  long double back = 0;
  ASSERT_TRUE(ParseFloatText(text, back));
  EXPECT_TRUE(SameExtended(back, third)) << text;
  EXPECT_LE(text.size(), 2u + 21u);
  // The shortest such text: one digit fewer does not read back.
  EXPECT_EQ(text, FormatGeneral(third, static_cast<int>(text.size()) - 2));
  long double shorter = 0;
  ParseFloatText(FormatGeneral(third, static_cast<int>(text.size()) - 3), shorter);
  EXPECT_FALSE(SameExtended(shorter, third));
}

TEST(FloatText, EveryKindReadsBackExactly) {
  const double date = 37400.620631446799962;  // a time of day needs 17 digits as a double
  const std::string dateText = Text(date, TFloatKind::Date);
  long double back = 0;
  ASSERT_TRUE(ParseFloatText(dateText, back));
  EXPECT_EQ(static_cast<double>(back), date) << dateText;

  const float single = 0.1f;
  const std::string singleText = Text(single, TFloatKind::Single);
  EXPECT_EQ(singleText, "0.100000001490116");
  ASSERT_TRUE(ParseFloatText(singleText, back));
  EXPECT_EQ(static_cast<float>(back), single);

  // Currency text is the stored integer (value times 10000).
  EXPECT_EQ(Text(15000, TFloatKind::Currency), "15000");
  const long long big = 9223372036854775807LL;
  const std::string bigText = Text(static_cast<long double>(big), TFloatKind::Currency);
  ASSERT_TRUE(ParseFloatText(bigText, back));
  EXPECT_EQ(std::llrintl(back), big) << bigText;

  const double dbl = 0.1;
  const std::string doubleText = Text(dbl, TFloatKind::Double);
  EXPECT_EQ(doubleText, "0.1");
}

TEST(FloatText, NegativeZeroKeepsItsSign) {
  EXPECT_EQ(Text(-0.0L), "-0");
  long double back = 1;
  ASSERT_TRUE(ParseFloatText("-0", back));
  EXPECT_TRUE(std::signbit(back));
}

TEST(FloatText, ParsesEveryNotationAndRefusesOthers) {
  long double v = 0;
  EXPECT_TRUE(ParseFloatText("1.000000000000000000", v));
  EXPECT_EQ(v, 1.0L);
  EXPECT_TRUE(ParseFloatText("-2E-7", v));
  EXPECT_EQ(v, -2e-7L);
  EXPECT_TRUE(ParseFloatText("1e+3", v));
  EXPECT_EQ(v, 1000.0L);
  EXPECT_TRUE(ParseFloatText("5.", v));
  EXPECT_EQ(v, 5.0L);
  for (const char* bad : {"", "-", ".", "1E", "1,5", "abc", "1.5x", "0x10", "nan", "inf"}) {
    EXPECT_FALSE(ParseFloatText(bad, v)) << bad;
  }
}

}  // namespace
