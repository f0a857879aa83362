#include "platform/streaming/SysUtils.h"

#include <gtest/gtest.h>

TEST(Format, FillsTextAndNumbers) {
  EXPECT_EQ(Format("Class %s not found", "TFoo"), "Class TFoo not found");
  EXPECT_EQ(Format("List index [%d] out of bounds...", 5), "List index [5] out of bounds...");
  EXPECT_EQ(Format("Error reading %s.%s: %s", std::string("Button1"), "Foo", "Property Foo does not exist"),
            "Error reading Button1.Foo: Property Foo does not exist");
  EXPECT_EQ(Format("%s on line %d", "Identifier expected", 12), "Identifier expected on line 12");
}

TEST(Format, KeepsPercentAndMissingArguments) {
  EXPECT_EQ(Format("100%% done"), "100% done");
  EXPECT_EQ(Format("%s and %s", "one"), "one and %s");
  EXPECT_EQ(Format("[%4d|%-3s|%.2s]", 7, "a", "xyz"), "[   7|a  |xy]");
  EXPECT_EQ(Format("%x", 255u), "ff");
}

TEST(Exceptions, CarryTheirMessageAndRole) {
  try {
    throw EClassNotFound("Class TFoo not found");
  } catch (const EFilerError& e) {
    EXPECT_EQ(e.Message(), "Class TFoo not found");
    EXPECT_STREQ(e.what(), "Class TFoo not found");
  }
  EXPECT_THROW(throw EInvalidImage("Invalid stream format"), EStreamError);
  EXPECT_THROW(throw EParserError("x"), Exception);
}

TEST(TextHelpers, CaseAndNumbers) {
  EXPECT_EQ(UpperCase("Form1 \xe9"), "FORM1 \xe9");
  EXPECT_EQ(CompareText("object", "OBJECT"), 0);
  EXPECT_LT(CompareText("abc", "ABD"), 0);
  EXPECT_TRUE(SameText("TButton", "tbutton"));
  EXPECT_EQ(Trim("  a b \t"), "a b");
  EXPECT_EQ(StrToInt("$FF"), 255);
  EXPECT_EQ(StrToInt(" -12 "), -12);
  EXPECT_EQ(StrToInt("-9223372036854775808"), INT64_MIN);
  EXPECT_THROW(StrToInt("12a"), EConvertError);
  EXPECT_THROW(StrToInt("9223372036854775808"), EConvertError);
  try {
    StrToInt("abc");
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), "'abc' is not a valid integer value");
  }
}
