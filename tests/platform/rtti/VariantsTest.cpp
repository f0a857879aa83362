#include "platform/rtti/Variants.h"

#include "platform/streaming/SysUtils.h"

#include <gtest/gtest.h>

namespace {
template <class F>
std::string CastMessage(F&& f) {
  try {
    f();
  } catch (const EVariantError& e) {
    return e.Message();
  }
  return "(nothing raised)";
}
}  // namespace

TEST(VariantTest, TypeCodesAreTheRuntimes) {
  EXPECT_EQ(varEmpty, 0);
  EXPECT_EQ(varNull, 1);
  EXPECT_EQ(varSmallint, 2);
  EXPECT_EQ(varInteger, 3);
  EXPECT_EQ(varSingle, 4);
  EXPECT_EQ(varDouble, 5);
  EXPECT_EQ(varCurrency, 6);
  EXPECT_EQ(varDate, 7);
  EXPECT_EQ(varBoolean, 11);
  EXPECT_EQ(varInt64, 20);
  EXPECT_EQ(varString, 256);

  EXPECT_EQ(VarType(Variant()), varEmpty);
  EXPECT_EQ(VarType(Null()), varNull);
  EXPECT_EQ(VarType(Variant(short(1))), varSmallint);
  EXPECT_EQ(VarType(Variant(1)), varInteger);
  EXPECT_EQ(VarType(Variant(1.5f)), varSingle);
  EXPECT_EQ(VarType(Variant(1.5)), varDouble);
  EXPECT_EQ(VarType(Variant(Currency::FromScaled(1))), varCurrency);
  EXPECT_EQ(VarType(Variant(TDateTime(1))), varDate);
  EXPECT_EQ(VarType(Variant(true)), varBoolean);
  EXPECT_EQ(VarType(Variant(1LL)), varInt64);
  EXPECT_EQ(VarType(Variant("x")), varString);
  EXPECT_TRUE(VarIsEmpty(Unassigned()));
  EXPECT_TRUE(VarIsNull(Null()));
  EXPECT_FALSE(VarIsNull(Variant()));
}

TEST(VariantTest, ToText) {
  EXPECT_EQ(VarToStr(Variant()), "");
  EXPECT_EQ(VarToStr(Null()), "");
  EXPECT_EQ(VarToStr(Variant(-12)), "-12");
  EXPECT_EQ(VarToStr(Variant(short(7))), "7");
  EXPECT_EQ(VarToStr(Variant(1LL << 40)), "1099511627776");
  EXPECT_EQ(VarToStr(Variant(2.5)), "2.5");
  EXPECT_EQ(VarToStr(Variant(0.1)), "0.1");
  EXPECT_EQ(VarToStr(Variant(1e20)), "1E20");
  EXPECT_EQ(VarToStr(Variant(1.5e-7)), "1.5E-7");
  EXPECT_EQ(VarToStr(Variant(100.0)), "100");
  EXPECT_EQ(VarToStr(Variant(2.7f)), "2.70000004768372");
  EXPECT_EQ(VarToStr(Variant(Currency::FromScaled(12345))), "1.2345");
  EXPECT_EQ(VarToStr(Variant(true)), "True");
  EXPECT_EQ(VarToStr(Variant(false)), "False");
  EXPECT_EQ(VarToStr(Variant(TDateTime(36526.5))), "2000-01-01 12:00:00");
  EXPECT_EQ(VarToStr(Variant(TDateTime(36526))), "2000-01-01");
  EXPECT_EQ(VarToStr(Variant(TDateTime(0.25))), "06:00:00");
  EXPECT_EQ(VarToStr(Variant(TDateTime(0))), "1899-12-30");
  EXPECT_EQ(CastMessage([] { Null().AsString(); }), "Invalid variant type conversion");
}

TEST(VariantTest, FromText) {
  EXPECT_EQ(Variant("180").AsInteger(), 180);
  EXPECT_EQ(Variant(" -3 ").AsInteger(), -3);
  EXPECT_EQ(Variant("$FF").AsInteger(), 255);
  EXPECT_EQ(Variant("2.5").AsInteger(), 2);  // halves go to the even neighbour
  EXPECT_EQ(Variant("3.5").AsInteger(), 4);
  EXPECT_EQ(Variant("2.5").AsDouble(), 2.5);
  EXPECT_EQ(Variant("1E3").AsDouble(), 1000.0);
  EXPECT_EQ(Variant("12").AsDouble(), 12.0);
  EXPECT_TRUE(Variant("1").AsBoolean());
  EXPECT_FALSE(Variant("0").AsBoolean());
  EXPECT_TRUE(Variant("true").AsBoolean());
  EXPECT_FALSE(Variant("FALSE").AsBoolean());
  EXPECT_TRUE(Variant("-1").AsBoolean());
  EXPECT_EQ(Variant("1.5").AsCurrency().Scaled, 15000);
  EXPECT_EQ(Variant("2000-01-01").AsDate().Value, 36526.0);
  EXPECT_EQ(Variant("2000-01-01 06:00").AsDate().Value, 36526.25);
  EXPECT_EQ(Variant("1899-12-29 12:00:00").AsDate().Value, -1.5);
  EXPECT_EQ(Variant("18:00").AsDate().Value, 0.75);
  EXPECT_EQ(Variant("36526.5").AsDate().Value, 36526.5);
  EXPECT_EQ(Variant("9223372036854775807").AsInt64(), 9223372036854775807LL);

  EXPECT_EQ(CastMessage([] { Variant("abc").AsInteger(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("").AsInteger(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("1,5").AsDouble(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("0x").AsDouble(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("inf").AsDouble(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("yes").AsBoolean(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("2000-02-30").AsDate(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("25:00").AsDate(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("3000000000").AsInteger(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant("99999").AsSmallint(); }), "Invalid variant type conversion");
}

TEST(VariantTest, BetweenTypes) {
  EXPECT_EQ(Variant().AsInteger(), 0);
  EXPECT_FALSE(Variant().AsBoolean());
  EXPECT_EQ(Variant(true).AsInteger(), -1);
  EXPECT_EQ(Variant(false).AsInteger(), 0);
  EXPECT_EQ(Variant(2.7f).AsInteger(), 3);
  EXPECT_EQ(Variant(Currency::FromScaled(25000)).AsInteger(), 2);
  EXPECT_EQ(Variant(7).AsDouble(), 7.0);
  EXPECT_TRUE(Variant(0.5).AsBoolean());
  EXPECT_EQ(Variant(3).AsType(varString), Variant("3"));
  EXPECT_EQ(Variant("3").AsType(varSmallint), Variant(short(3)));
  EXPECT_EQ(Variant(1.25).AsType(varCurrency), Variant(Currency::FromScaled(12500)));
  EXPECT_EQ(Variant("1").AsType(varBoolean), Variant(true));
  EXPECT_EQ(Variant(5).AsType(varEmpty), Variant());
  EXPECT_EQ(VarAsType(Variant(5), varInt64), Variant(5LL));
  EXPECT_EQ(CastMessage([] { Null().AsInteger(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant(1e300).AsInteger(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant(1e300).AsSingle(); }), "Invalid variant type conversion");
  EXPECT_EQ(CastMessage([] { Variant(300).AsType(varByte); }), "Invalid variant type conversion");
}

TEST(VariantTest, EqualityIsTypeAndValue) {
  EXPECT_EQ(Variant(1), Variant(1));
  EXPECT_NE(Variant(1), Variant(1LL));
  EXPECT_NE(Variant(1), Variant("1"));
  EXPECT_EQ(Null(), Null());
  EXPECT_NE(Null(), Variant());
  EXPECT_EQ(Variant("a"), Variant(std::string("a")));
}

TEST(VariantTest, FloatTextHelpers) {
  long double v;
  EXPECT_TRUE(TryStrToFloat("1.5", v));
  EXPECT_EQ(v, 1.5L);
  EXPECT_TRUE(TryStrToFloat("-.5", v));
  EXPECT_EQ(v, -0.5L);
  EXPECT_FALSE(TryStrToFloat(".", v));
  EXPECT_FALSE(TryStrToFloat("1e", v));
  EXPECT_FALSE(TryStrToFloat("nan", v));
  EXPECT_EQ(FloatToStr(-2.25L), "-2.25");
  EXPECT_EQ(FloatToStr(123456789012345678.0L), "1.23456789012346E17");
  EXPECT_EQ(FloatToStr(0.0001L), "0.0001");
  EXPECT_EQ(FloatToStr(0.00001L), "1E-5");
}
