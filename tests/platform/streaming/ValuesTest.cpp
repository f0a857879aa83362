#include "platform/streaming/Values.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using lumora::test::MessageOf;

namespace {

TEST(ValueWriter, IntegersTakeTheSmallestType) {
  struct Case {
    std::int64_t value;
    TValueType type;
    std::size_t size;
  };
  const Case cases[] = {
      {0, vaInt8, 2},
      {-128, vaInt8, 2},
      {127, vaInt8, 2},
      {128, vaInt16, 3},
      {-129, vaInt16, 3},
      {32767, vaInt16, 3},
      {-32768, vaInt16, 3},
      {32768, vaInt32, 5},
      {-32769, vaInt32, 5},
      {std::numeric_limits<std::int32_t>::max(), vaInt32, 5},
      {std::numeric_limits<std::int32_t>::min(), vaInt32, 5},
      {std::int64_t{1} << 31, vaInt64, 9},
      {std::numeric_limits<std::int64_t>::min(), vaInt64, 9},
  };
  for (const Case& c : cases) {
    std::string out;
    TValueWriter(out).WriteInteger(c.value);
    ASSERT_EQ(out.size(), c.size) << c.value;
    EXPECT_EQ(static_cast<TValueType>(out[0]), c.type) << c.value;
    TValueReader reader(out);
    EXPECT_EQ(reader.ReadInt64(), c.value);
    EXPECT_TRUE(reader.AtEnd());
  }
}

TEST(ValueReader, ReadIntegerAcceptsTheThreeSmallTypesOnly) {
  std::string out;
  TValueWriter w(out);
  w.WriteInteger(5);
  w.WriteInteger(1000);
  w.WriteInteger(100000);
  w.WriteInteger(std::int64_t{1} << 40);
  TValueReader r(out);
  EXPECT_EQ(r.ReadInteger(), 5);
  EXPECT_EQ(r.ReadInteger(), 1000);
  EXPECT_EQ(r.ReadInteger(), 100000);
  EXPECT_EQ(MessageOf<EReadError>([&] { r.ReadInteger(); }), "Invalid property value");
}

TEST(ValueWriter, StringKindsFollowLengthAndContent) {
  std::string out;
  TValueWriter w(out);
  w.WriteString(std::string(255, 'a'));
  w.WriteString(std::string(256, 'b'));
  w.WriteWideString(u"\u0436x");
  w.WriteUTF8String("\xD0\xB6");
  TValueReader r(out);
  EXPECT_EQ(r.NextValue(), vaString);
  EXPECT_EQ(r.ReadString(), std::string(255, 'a'));
  EXPECT_EQ(r.NextValue(), vaLString);
  EXPECT_EQ(r.ReadString(), std::string(256, 'b'));
  EXPECT_EQ(r.NextValue(), vaWString);
  EXPECT_EQ(r.ReadString(), "\xD0\xB6x");
  EXPECT_EQ(r.NextValue(), vaUTF8String);
  EXPECT_EQ(r.ReadWideString(), u"\u0436");
  EXPECT_TRUE(r.AtEnd());
}

TEST(ValueWriter, IdentsTrueFalseNilInAnyCase) {
  std::string out;
  TValueWriter w(out);
  w.WriteIdent("TRUE");
  w.WriteIdent("false");
  w.WriteIdent("NIL");
  w.WriteIdent("clBtnFace");
  EXPECT_EQ(out.substr(0, 3), std::string("\x09\x08\x0D"));
  TValueReader r(out);
  EXPECT_EQ(r.ReadIdent(), "True");
  EXPECT_EQ(r.ReadIdent(), "False");
  EXPECT_EQ(r.ReadIdent(), "nil");
  EXPECT_EQ(r.ReadIdent(), "clBtnFace");
}

TEST(ValueWriter, ShortStringLongerThan255IsRefused) {
  std::string out;
  TValueWriter w(out);
  EXPECT_THROW(w.WriteShortString(std::string(256, 'x')), EWriteError);
  EXPECT_THROW(w.WriteIdent(std::string(256, 'x')), EWriteError);
}

TEST(ValueReaderWriter, FloatsOfEveryKind) {
  std::string out;
  TValueWriter w(out);
  w.WriteExtended(1.5L);
  w.WriteSingle(0.25f);
  w.WriteCurrency(15000);
  w.WriteDate(36526.5);
  w.WriteDouble(-2.75);
  TValueReader r(out);
  EXPECT_EQ(r.ReadFloat(), 1.5L);
  EXPECT_EQ(r.ReadSingle(), 0.25f);
  EXPECT_EQ(r.ReadCurrency(), 15000);
  EXPECT_EQ(r.ReadDate(), 36526.5);
  EXPECT_EQ(r.ReadDouble(), -2.75);
  EXPECT_TRUE(r.AtEnd());
  // Extended is stored in 10 bytes: type byte + 10.
  EXPECT_EQ(out.size(), 11u + 5 + 9 + 9 + 9);
}

TEST(ValueReader, FloatAcceptsIntegers) {
  std::string out;
  TValueWriter(out).WriteInteger(7);
  TValueReader r(out);
  EXPECT_EQ(r.ReadFloat(), 7.0L);
}

TEST(ValueReaderWriter, BinarySetListCollectionAndComponentHeader) {
  std::string out;
  TValueWriter w(out);
  w.WriteBinary(std::string("\x00\x01\x02", 3));
  w.WriteSetBegin();
  w.WriteSetElement("fsBold");
  w.WriteSetElement("fsItalic");
  w.WriteSetEnd();
  w.WriteListBegin();
  w.WriteInteger(1);
  w.WriteListEnd();
  w.WriteComponentHeader(ffInherited | ffChildPos, 3, "TButton", "Button1");
  TValueReader r(out);
  EXPECT_EQ(r.ReadBinary(), std::string("\x00\x01\x02", 3));
  r.ReadSetBegin();
  EXPECT_EQ(r.ReadSetElement(), "fsBold");
  EXPECT_EQ(r.ReadSetElement(), "fsItalic");
  EXPECT_EQ(r.ReadSetElement(), "");
  r.ReadListBegin();
  EXPECT_FALSE(r.EndOfList());
  EXPECT_EQ(r.ReadInteger(), 1);
  EXPECT_TRUE(r.EndOfList());
  r.ReadListEnd();
  TFilerFlags flags;
  std::int32_t pos;
  std::string_view cls, name;
  r.ReadComponentHeader(flags, pos, cls, name);
  EXPECT_EQ(flags, ffInherited | ffChildPos);
  EXPECT_EQ(pos, 3);
  EXPECT_EQ(cls, "TButton");
  EXPECT_EQ(name, "Button1");
  EXPECT_TRUE(r.AtEnd());
}

TEST(ValueWriter, NoPrefixWithoutFlags) {
  std::string out;
  TValueWriter(out).WriteComponentHeader(0, -1, "TForm1", "Form1");
  EXPECT_EQ(out, "\x06TForm1\x05" "Form1");
}

TEST(ValueWriter, ALongClassNameGetsAnEmptyPrefix) {
  // Its length byte (0xF0 or more) would otherwise read as a prefix.
  const std::string longClass(240, 'T');
  std::string out;
  TValueWriter(out).WriteComponentHeader(0, -1, longClass, "A");
  EXPECT_EQ(out.substr(0, 2), "\xF0\xF0");
  TValueReader r(out);
  TFilerFlags flags;
  std::int32_t pos;
  std::string_view cls, name;
  r.ReadComponentHeader(flags, pos, cls, name);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(cls, longClass);
  EXPECT_EQ(name, "A");
  std::string shorter;
  TValueWriter(shorter).WriteComponentHeader(0, -1, std::string(239, 'T'), "A");
  EXPECT_EQ(shorter[0], '\xEF');
}

TEST(ValueReader, SkipValueSkipsEveryType) {
  std::string out;
  TValueWriter w(out);
  w.WriteListBegin();
  w.WriteInteger(1);
  w.WriteInteger(300);
  w.WriteInteger(70000);
  w.WriteInteger(std::int64_t{1} << 40);
  w.WriteExtended(2.5L);
  w.WriteString("s");
  w.WriteLString("long");
  w.WriteIdent("id");
  w.WriteBoolean(false);
  w.WriteBoolean(true);
  w.WriteBinary("bin");
  w.WriteSetBegin();
  w.WriteSetElement("a");
  w.WriteSetEnd();
  w.WriteIdent("nil");
  w.WriteCollectionBegin();
  w.WriteInteger(2);
  w.WriteListBegin();
  w.WriteShortString("Width");
  w.WriteInteger(5);
  w.WriteListEnd();
  w.WriteListBegin();
  w.WriteListEnd();
  w.WriteListEnd();
  w.WriteSingle(1);
  w.WriteCurrency(1);
  w.WriteDate(1);
  w.WriteWideString(u"w");
  w.WriteUTF8String("u");
  w.WriteDouble(1);
  w.WriteListEnd();
  w.WriteInteger(42);
  TValueReader r(out);
  r.SkipValue();
  EXPECT_EQ(r.ReadInteger(), 42);
  EXPECT_TRUE(r.AtEnd());
}

TEST(ValueReader, UnknownTypeByteIsNamed) {
  const std::string bytes("\x16", 1);
  TValueReader r(bytes);
  EXPECT_EQ(MessageOf<EReadError>([&] { r.SkipValue(); }), "Invalid value type 22");
}

TEST(ValueReader, DataEndingInsideAValueIsAReadError) {
  const std::string cases[] = {
      std::string("\x03\x01", 2),                 // int16 cut
      std::string("\x05\x00\x00", 3),             // extended cut
      std::string("\x06\x05" "abc", 5),           // short string cut
      std::string("\x0C\x10\x00\x00\x00" "ab", 7),  // long string cut
      std::string("\x12\x02\x00\x00\x00" "a", 6),   // wide string cut
      std::string("\x01\x02\x01", 3),             // list without end
      std::string("\x0B\x01" "a", 3),             // set without end
      std::string("\x0E\x01", 2),                 // collection item without end
      std::string(),                              // nothing at all
  };
  for (const std::string& bytes : cases) {
    TValueReader r(bytes);
    EXPECT_EQ(MessageOf<EReadError>([&] { r.SkipValue(); }), "Stream read error") << testing::PrintToString(bytes);
  }
}

TEST(ValueReader, AbsurdLengthsFailBeforeAnyAllocation) {
  // 4 GB claimed by a binary, a long string and a wide string in a 9-byte stream.
  for (char type : {'\x0A', '\x0C', '\x12', '\x14'}) {
    std::string bytes(1, type);
    bytes += std::string("\xFF\xFF\xFF\xFF", 4);
    bytes += "abcd";
    TValueReader r(bytes);
    EXPECT_EQ(MessageOf<EReadError>([&] { r.SkipValue(); }), "Stream read error");
  }
}

TEST(ValueReader, NestingIsBounded) {
  std::string bytes(5000, '\x01');
  bytes += std::string(5000, '\x00');
  TValueReader r(bytes);
  EXPECT_EQ(MessageOf<EReadError>([&] { r.SkipValue(); }), "Nesting too deep (more than 1000 levels)");
  std::string fine(900, '\x01');
  fine += std::string(900, '\x00');
  TValueReader ok(fine);
  ok.SkipValue();
  EXPECT_TRUE(ok.AtEnd());
}

TEST(ValueReader, SignatureIsChecked) {
  TValueReader good(std::string_view("TPF0"));
  good.ReadSignature();
  EXPECT_TRUE(good.AtEnd());
  TValueReader bad(std::string_view("TPF1"));
  EXPECT_EQ(MessageOf<EInvalidImage>([&] { bad.ReadSignature(); }), "Invalid stream format");
  TValueReader shortOne(std::string_view("TP"));
  EXPECT_THROW(shortOne.ReadSignature(), EInvalidImage);
}

TEST(ValueReader, WrongTypesGiveInvalidPropertyValue) {
  const std::string intValue("\x02\x01", 2);
  EXPECT_EQ(MessageOf<EReadError>([&] { TValueReader(intValue).ReadString(); }), "Invalid property value");
  EXPECT_EQ(MessageOf<EReadError>([&] { TValueReader(intValue).ReadIdent(); }), "Invalid property value");
  EXPECT_EQ(MessageOf<EReadError>([&] { TValueReader(intValue).ReadBoolean(); }), "Invalid property value");
  EXPECT_EQ(MessageOf<EReadError>([&] { TValueReader(intValue).ReadBinary(); }), "Invalid property value");
}

TEST(Utf, WideAndUtf8ConvertBothWays) {
  const std::u16string wide = u"a\u00e9\u0436\U0001F600";
  const std::string utf8 = WideToUtf8(wide);
  EXPECT_EQ(utf8, "a\xC3\xA9\xD0\xB6\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf8ToWide(utf8), wide);
  // A lone surrogate survives; an invalid byte stands for itself.
  EXPECT_EQ(Utf8ToWide(WideToUtf8(u"\xD800x")), u"\xD800x");
  EXPECT_EQ(Utf8ToWide("\xE9t\xE9"), u"\u00e9t\u00e9");
}

}  // namespace
