#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Values.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <limits>

namespace {

using Writes = std::function<void(TValueWriter&)>;

// "TPF0", then object Form1: TForm1 with the given properties and children.
std::string FormStream(const Writes& properties, const Writes& children = {}) {
  std::string out;
  TValueWriter w(out);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TForm1", "Form1");
  if (properties) properties(w);
  w.WriteListEnd();
  if (children) children(w);
  w.WriteListEnd();
  return out;
}

// A stream with one property.
std::string PropertyStream(std::string_view name, const Writes& value) {
  return FormStream([&](TValueWriter& w) {
    w.WriteShortString(name);
    value(w);
  });
}

// Lines joined with CR LF, each ended by one.
std::string Lines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (std::string_view line : lines) {
    text.append(line);
    text.append("\r\n");
  }
  return text;
}

// The text of a form with the given property lines (already indented).
std::string FormText(std::initializer_list<std::string_view> propertyLines) {
  std::string text = "object Form1: TForm1\r\n";
  for (std::string_view line : propertyLines) {
    text.append(line);
    text.append("\r\n");
  }
  text.append("end\r\n");
  return text;
}

// Binary -> text gives `text`, and text -> binary gives `binary` back.
void ExpectBothWays(const std::string& binary, const std::string& text) {
  EXPECT_EQ(ObjectBinaryToText(binary), text);
  EXPECT_EQ(ObjectTextToBinary(text), binary);
}

TEST(ObjectText, SmallestForm) {
  ExpectBothWays(FormStream({}), Lines({"object Form1: TForm1", "end"}));
}

TEST(ObjectText, ComponentKeywordsNamesAndPositions) {
  const std::string binary = FormStream({}, [](TValueWriter& w) {
    w.WriteComponentHeader(0, -1, "TButton", "");
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteComponentHeader(ffInherited, -1, "TPanel", "Panel1");
    w.WriteListEnd();
    w.WriteComponentHeader(ffInline, -1, "TFrame2", "Frame21");
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteComponentHeader(ffInherited | ffChildPos, 2, "TEdit", "Edit1");
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteComponentHeader(ffChildPos, 300, "TEdit", "Edit2");
    w.WriteListEnd();
    w.WriteListEnd();
  });
  ExpectBothWays(binary, Lines({
                             "object Form1: TForm1",
                             "  object TButton",
                             "  end",
                             "  inherited Panel1: TPanel",
                             "    inline Frame21: TFrame2",
                             "    end",
                             "  end",
                             "  inherited Edit1: TEdit [2]",
                             "  end",
                             "  object Edit2: TEdit [300]",
                             "  end",
                             "end",
                         }));
}

TEST(ObjectText, ClassNamesUpTo255Characters) {
  const std::string longClass(250, 'C');
  const std::string text = Lines({"object Form1: TForm1", "  object Long1: " + longClass, "  end", "end"});
  const std::string binary = ObjectTextToBinary(text);
  EXPECT_EQ(ObjectBinaryToText(binary), text);
  EXPECT_EQ(ObjectBinaryToText(ObjectTextToBinary("object " + longClass + " end")), Lines({"object " + longClass, "end"}));
}

TEST(ObjectText, InheritedAndInlineBothSetWritesInherited) {
  // The text cannot say both; reading it back keeps only the inherited flag.
  const std::string binary = FormStream({}, [](TValueWriter& w) {
    w.WriteComponentHeader(ffInherited | ffInline, -1, "TFrame3", "Frame31");
    w.WriteListEnd();
    w.WriteListEnd();
  });
  const std::string text = ObjectBinaryToText(binary);
  EXPECT_EQ(text, Lines({"object Form1: TForm1", "  inherited Frame31: TFrame3", "  end", "end"}));
}

TEST(ObjectText, RootPrefixes) {
  std::string binary;
  TValueWriter w(binary);
  w.WriteSignature();
  w.WriteComponentHeader(ffInherited, -1, "TForm2", "Form2");
  w.WriteListEnd();
  w.WriteListEnd();
  ExpectBothWays(binary, Lines({"inherited Form2: TForm2", "end"}));
  // Keywords in any case.
  EXPECT_EQ(ObjectTextToBinary("INHERITED Form2: TForm2 END"), binary);
}

TEST(ObjectText, IntegersOfEveryWidth) {
  const std::int64_t values[] = {0, -1, 127, -128, 128, -129, 32767, -32768, 32768, -32769,
                                 std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min(),
                                 std::int64_t{1} << 31, -(std::int64_t{1} << 31) - 1,
                                 std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()};
  for (std::int64_t v : values) {
    const std::string line = "  Tag = " + std::to_string(v);
    ExpectBothWays(PropertyStream("Tag", [&](TValueWriter& w) { w.WriteInteger(v); }), FormText({line}));
  }
}

TEST(ObjectText, HexIntegersInText) {
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Tag = $FF"})),
            PropertyStream("Tag", [](TValueWriter& w) { w.WriteInteger(255); }));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Color = $00FF00FF"})),
            PropertyStream("Color", [](TValueWriter& w) { w.WriteInteger(0xFF00FF); }));
}

TEST(ObjectText, ExtendedFloats) {
  ExpectBothWays(PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(1.5L); }), FormText({"  Scale = 1.5"}));
  ExpectBothWays(PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(-2.25L); }),
                 FormText({"  Scale = -2.25"}));
  ExpectBothWays(PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(1e20L); }), FormText({"  Scale = 1E20"}));
  ExpectBothWays(PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(1.5e-7L); }),
                 FormText({"  Scale = 1.5E-7"}));
  ExpectBothWays(PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(0.1L); }), FormText({"  Scale = 0.1"}));
}

TEST(ObjectText, LaterDelphiFloatsWithEighteenDecimalsAreRead) {
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Scale = 1.500000000000000000"})),
            PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(1.5L); }));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Scale = 1.000000000000000000"})),
            PropertyStream("Scale", [](TValueWriter& w) { w.WriteExtended(1.0L); }));
}

TEST(ObjectText, AFloatThatNeedsMoreThanFifteenDigitsComesBackExactly) {
  const long double third = 1.0L / 3;
  const std::string binary = PropertyStream("Ratio", [&](TValueWriter& w) { w.WriteExtended(third); });
  const std::string text = ObjectBinaryToText(binary);
  EXPECT_NE(text, FormText({"  Ratio = 0.333333333333333"}));
  EXPECT_EQ(ObjectTextToBinary(text), binary);
}

TEST(ObjectText, IntegralExtendedIsWrittenAsDelphiDoesAndReadsAsAnInteger) {
  // Delphi writes 1.0 as "1": the text no longer says it was a float.
  const std::string binary = PropertyStream("Value", [](TValueWriter& w) { w.WriteExtended(1.0L); });
  EXPECT_EQ(ObjectBinaryToText(binary), FormText({"  Value = 1"}));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Value = 1"})),
            PropertyStream("Value", [](TValueWriter& w) { w.WriteInteger(1); }));
  // With the original stream as reference, the float comes back.
  EXPECT_EQ(ObjectTextToBinary(ObjectBinaryToText(binary), binary), binary);
}

TEST(ObjectText, SingleCurrencyDateDouble) {
  ExpectBothWays(PropertyStream("S", [](TValueWriter& w) { w.WriteSingle(1.5f); }), FormText({"  S = 1.5s"}));
  ExpectBothWays(PropertyStream("S", [](TValueWriter& w) { w.WriteSingle(0.1f); }),
                 FormText({"  S = 0.100000001490116s"}));
  // Currency: the text shows the stored integer, the value times 10000.
  ExpectBothWays(PropertyStream("C", [](TValueWriter& w) { w.WriteCurrency(15000); }), FormText({"  C = 15000c"}));
  ExpectBothWays(PropertyStream("C", [](TValueWriter& w) { w.WriteCurrency(-5); }), FormText({"  C = -5c"}));
  ExpectBothWays(PropertyStream("C", [](TValueWriter& w) { w.WriteCurrency(std::numeric_limits<std::int64_t>::max()); }),
                 FormText({"  C = 9.223372036854775807E18c"}));
  ExpectBothWays(PropertyStream("D", [](TValueWriter& w) { w.WriteDate(36526.5); }), FormText({"  D = 36526.5d"}));
  ExpectBothWays(PropertyStream("D", [](TValueWriter& w) { w.WriteDate(37400.620631446799962); }),
                 FormText({"  D = 37400.6206314468d"}));
  // A double has no suffix of its own: it comes back as an extended of the same value.
  const std::string doubleStream = PropertyStream("X", [](TValueWriter& w) { w.WriteDouble(2.5); });
  EXPECT_EQ(ObjectBinaryToText(doubleStream), FormText({"  X = 2.5"}));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  X = 2.5"})),
            PropertyStream("X", [](TValueWriter& w) { w.WriteExtended(2.5L); }));
  // Upper-case suffixes are read too.
  EXPECT_EQ(ObjectTextToBinary(FormText({"  S = 1.5S"})),
            PropertyStream("S", [](TValueWriter& w) { w.WriteSingle(1.5f); }));
}

TEST(ObjectText, Int64Value) {
  ExpectBothWays(PropertyStream("Big", [](TValueWriter& w) { w.WriteInteger(5000000000LL); }),
                 FormText({"  Big = 5000000000"}));
}

TEST(ObjectText, EmptyValuesOfEveryKind) {
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString(""); }), FormText({"  Caption = ''"}));
  ExpectBothWays(PropertyStream("Items", [](TValueWriter& w) {
                   w.WriteListBegin();
                   w.WriteListEnd();
                 }),
                 FormText({"  Items = ()"}));
  ExpectBothWays(PropertyStream("Style", [](TValueWriter& w) {
                   w.WriteSetBegin();
                   w.WriteSetEnd();
                 }),
                 FormText({"  Style = []"}));
  ExpectBothWays(PropertyStream("Columns", [](TValueWriter& w) {
                   w.WriteCollectionBegin();
                   w.WriteListEnd();
                 }),
                 FormText({"  Columns = <>"}));
  ExpectBothWays(PropertyStream("Data", [](TValueWriter& w) { w.WriteBinary(""); }), FormText({"  Data = {}"}));
  // An empty identifier leaves nothing after "= ".
  ExpectBothWays(FormStream([](TValueWriter& w) {
                   w.WriteShortString("Kind");
                   w.WriteValue(vaIdent);
                   w.WriteShortString("");
                   w.WriteShortString("Left");
                   w.WriteInteger(3);
                 }),
                 FormText({"  Kind = ", "  Left = 3"}));
  ExpectBothWays(PropertyStream("Kind",
                                [](TValueWriter& w) {
                                  w.WriteValue(vaIdent);
                                  w.WriteShortString("");
                                }),
                 FormText({"  Kind = "}));
  // Empty wide kinds read as '' and come back as the 8-bit kind (or as themselves with a reference).
  for (const Writes& wide : {Writes([](TValueWriter& w) { w.WriteWideString(u""); }),
                             Writes([](TValueWriter& w) { w.WriteUTF8String(""); }),
                             Writes([](TValueWriter& w) { w.WriteLString(""); })}) {
    const std::string binary = PropertyStream("Text", wide);
    EXPECT_EQ(ObjectBinaryToText(binary), FormText({"  Text = ''"}));
    EXPECT_EQ(ObjectTextToBinary(ObjectBinaryToText(binary), binary), binary);
  }
}

TEST(ObjectText, QuotesAndControlCharactersBecomeCodes) {
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("it's"); }),
                 FormText({"  Caption = 'it'#39's'"}));
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("a\r\nb"); }),
                 FormText({"  Caption = 'a'#13#10'b'"}));
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("'"); }),
                 FormText({"  Caption = #39"}));
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString(std::string("\0\x01", 2)); }),
                 FormText({"  Caption = #0#1"}));
  // '' inside quotes is read as one apostrophe.
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Caption = 'it''s'"})),
            PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("it's"); }));
}

TEST(ObjectText, EightBitCharactersStayRaw) {
  ExpectBothWays(PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("Caf\xE9 \xFF"); }),
                 FormText({"  Caption = 'Caf\xE9 \xFF'"}));
}

TEST(ObjectText, WideStringsUseCodesAboveAscii) {
  // Wide text beyond ASCII is written as codes and read back as UTF-8, as later Delphi versions store it.
  const std::string utf8 = PropertyStream("Caption", [](TValueWriter& w) { w.WriteUTF8String("Caf\xC3\xA9 \xD0\x96"); });
  ExpectBothWays(utf8, FormText({"  Caption = 'Caf'#233' '#1046"}));
  const std::string wide = PropertyStream("Caption", [](TValueWriter& w) { w.WriteWideString(u"Caf\u00e9 \u0416"); });
  EXPECT_EQ(ObjectBinaryToText(wide), FormText({"  Caption = 'Caf'#233' '#1046"}));
  EXPECT_EQ(ObjectTextToBinary(ObjectBinaryToText(wide)), utf8);
  EXPECT_EQ(ObjectTextToBinary(ObjectBinaryToText(wide), wide), wide);
  // A character outside the basic plane is two UTF-16 codes.
  const std::string emoji = PropertyStream("Caption", [](TValueWriter& w) { w.WriteUTF8String("\xF0\x9F\x98\x80"); });
  ExpectBothWays(emoji, FormText({"  Caption = #55357#56832"}));
  // ASCII-only wide text is plain 8-bit text.
  EXPECT_EQ(ObjectBinaryToText(PropertyStream("Caption", [](TValueWriter& w) { w.WriteWideString(u"abc"); })),
            FormText({"  Caption = 'abc'"}));
}

TEST(ObjectText, LongStringLineSplitting) {
  const std::string a63(63, 'a'), a64(64, 'a'), a65(65, 'a');
  // 64 characters stay on the property line.
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a64); }),
                 FormText({"  Caption = '" + a64 + "'"}));
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a63); }),
                 FormText({"  Caption = '" + a63 + "'"}));
  // 65 start on a new line, 64 to a line.
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a65); }),
                 FormText({"  Caption = ", "    '" + a64 + "' +", "    'a'"}));
  // 130: two full lines and the rest.
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a64 + a64 + "bb"); }),
                 FormText({"  Caption = ", "    '" + a64 + "' +", "    '" + a64 + "' +", "    'bb'"}));
  // Exactly 128: no empty last piece.
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a64 + a64); }),
                 FormText({"  Caption = ", "    '" + a64 + "' +", "    '" + a64 + "'"}));
}

TEST(ObjectText, LongStringWithACodeAtTheBoundary) {
  const std::string a63(63, 'a');
  // The code is the 64th character: the line breaks after it.
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a63 + "\r" + "b"); }),
                 FormText({"  Caption = ", "    '" + a63 + "'#13 +", "    'b'"}));
  // The code is the 65th character: it starts the next line.
  const std::string a64(64, 'a');
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a64 + "\r" + "b"); }),
                 FormText({"  Caption = ", "    '" + a64 + "' +", "    #13'b'"}));
  // Codes one after another count one character each.
  const std::string a62(62, 'a');
  ExpectBothWays(PropertyStream("Caption", [&](TValueWriter& w) { w.WriteString(a62 + "\r\n\t" + "b"); }),
                 FormText({"  Caption = ", "    '" + a62 + "'#13#10 +", "    #9'b'"}));
  // An 8-bit long string (more than 255 characters) splits the same way.
  const std::string big(300, 'x');
  const std::string x64(64, 'x');
  ExpectBothWays(PropertyStream("Hint", [&](TValueWriter& w) { w.WriteString(big); }),
                 FormText({"  Hint = ", "    '" + x64 + "' +", "    '" + x64 + "' +", "    '" + x64 + "' +",
                           "    '" + x64 + "' +", "    '" + std::string(44, 'x') + "'"}));
}

TEST(ObjectText, ShortLongStringComesBackAsShortStringUnlessReferenced) {
  const std::string binary = PropertyStream("Caption", [](TValueWriter& w) { w.WriteLString("abc"); });
  EXPECT_EQ(ObjectBinaryToText(binary), FormText({"  Caption = 'abc'"}));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Caption = 'abc'"})),
            PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("abc"); }));
  EXPECT_EQ(ObjectTextToBinary(ObjectBinaryToText(binary), binary), binary);
}

TEST(ObjectText, PlusContinuationsJoinPieces) {
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Caption = ", "    'abc' +", "    'def'#13 +", "      #10'g'"})),
            PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("abcdef\r\ng"); }));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Caption = 'a'+'b'  +  'c'"})),
            PropertyStream("Caption", [](TValueWriter& w) { w.WriteString("abc"); }));
}

TEST(ObjectText, BinaryData) {
  ExpectBothWays(PropertyStream("Data", [](TValueWriter& w) { w.WriteBinary("\x01\x02"); }), FormText({"  Data = {0102}"}));
  std::string b31, b32, b33;
  for (int i = 0; i < 33; ++i) {
    const char c = static_cast<char>(i * 7 + 200);
    if (i < 31) b31 += c;
    if (i < 32) b32 += c;
    b33 += c;
  }
  auto hex = [](const std::string& s) {
    std::string out;
    const char* digits = "0123456789ABCDEF";
    for (unsigned char c : s) {
      out += digits[c >> 4];
      out += digits[c & 15];
    }
    return out;
  };
  ExpectBothWays(PropertyStream("Data", [&](TValueWriter& w) { w.WriteBinary(b31); }),
                 FormText({"  Data = {" + hex(b31) + "}"}));
  ExpectBothWays(PropertyStream("Data", [&](TValueWriter& w) { w.WriteBinary(b32); }),
                 FormText({"  Data = {", "    " + hex(b32) + "}"}));
  ExpectBothWays(PropertyStream("Data", [&](TValueWriter& w) { w.WriteBinary(b33); }),
                 FormText({"  Data = {", "    " + hex(b32), "    " + hex(b33.substr(32)) + "}"}));
  // Lower-case digits and blanks between pairs (even inside one) are read.
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Data = {0a 0B", "  c", "D}"})),
            PropertyStream("Data", [](TValueWriter& w) { w.WriteBinary("\x0A\x0B\xCD"); }));
  // The closing brace may stand on its own line.
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Data = {", "    0102", "  }"})),
            PropertyStream("Data", [](TValueWriter& w) { w.WriteBinary("\x01\x02"); }));
}

TEST(ObjectText, ListsNestAndStringsInListsSplit) {
  ExpectBothWays(PropertyStream("Items.Strings",
                                [](TValueWriter& w) {
                                  w.WriteListBegin();
                                  w.WriteString("First");
                                  w.WriteString("Second");
                                  w.WriteListEnd();
                                }),
                 FormText({"  Items.Strings = (", "    'First'", "    'Second')"}));
  const std::string a65(65, 'a');
  ExpectBothWays(PropertyStream("Values",
                                [&](TValueWriter& w) {
                                  w.WriteListBegin();
                                  w.WriteInteger(1);
                                  w.WriteListBegin();
                                  w.WriteIdent("x");
                                  w.WriteString(a65);
                                  w.WriteListEnd();
                                  w.WriteListBegin();
                                  w.WriteListEnd();
                                  w.WriteListEnd();
                                }),
                 FormText({"  Values = (", "    1", "    (", "      x", "      ", "        '" + std::string(64, 'a') +
                           "' +", "        'a')", "    ())"}));
}

TEST(ObjectText, Sets) {
  ExpectBothWays(PropertyStream("Font.Style",
                                [](TValueWriter& w) {
                                  w.WriteSetBegin();
                                  w.WriteSetElement("fsBold");
                                  w.WriteSetEnd();
                                }),
                 FormText({"  Font.Style = [fsBold]"}));
  ExpectBothWays(PropertyStream("Anchors",
                                [](TValueWriter& w) {
                                  w.WriteSetBegin();
                                  w.WriteSetElement("akLeft");
                                  w.WriteSetElement("akTop");
                                  w.WriteSetElement("akRight");
                                  w.WriteSetEnd();
                                }),
                 FormText({"  Anchors = [akLeft, akTop, akRight]"}));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Anchors = [ akLeft ,akTop ]"})),
            PropertyStream("Anchors", [](TValueWriter& w) {
              w.WriteSetBegin();
              w.WriteSetElement("akLeft");
              w.WriteSetElement("akTop");
              w.WriteSetEnd();
            }));
}

TEST(ObjectText, CollectionsWithAndWithoutOrderIndexes) {
  const std::string binary = PropertyStream("Columns", [](TValueWriter& w) {
    w.WriteCollectionBegin();
    w.WriteListBegin();
    w.WriteShortString("Caption");
    w.WriteString("Name");
    w.WriteShortString("Width");
    w.WriteInteger(120);
    w.WriteListEnd();
    w.WriteInteger(2);
    w.WriteListBegin();
    w.WriteShortString("Width");
    w.WriteInteger(60);
    w.WriteListEnd();
    w.WriteListBegin();
    w.WriteListEnd();
    w.WriteListEnd();
  });
  ExpectBothWays(binary, FormText({"  Columns = <", "    item", "      Caption = 'Name'", "      Width = 120", "    end",
                                   "    item [2]", "      Width = 60", "    end", "    item", "    end>"}));
  // Nested collection inside an item.
  const std::string nested = PropertyStream("Bands", [](TValueWriter& w) {
    w.WriteCollectionBegin();
    w.WriteListBegin();
    w.WriteShortString("Items");
    w.WriteCollectionBegin();
    w.WriteListBegin();
    w.WriteShortString("Tag");
    w.WriteInteger(1);
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
  });
  ExpectBothWays(nested, FormText({"  Bands = <", "    item", "      Items = <", "        item", "          Tag = 1",
                                   "        end>", "    end>"}));
  // "item" and "end" in any case.
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Columns = <", "    ITEM", "      Caption = 'Name'", "      Width = 120",
                                         "    End", "    Item [2]", "      Width = 60", "    END", "    item", "    end>"})),
            binary);
}

TEST(ObjectText, IdentifiersTrueFalseNil) {
  ExpectBothWays(PropertyStream("Color", [](TValueWriter& w) { w.WriteIdent("clBtnFace"); }),
                 FormText({"  Color = clBtnFace"}));
  ExpectBothWays(PropertyStream("DataSource", [](TValueWriter& w) { w.WriteIdent("Form2.DataSource1"); }),
                 FormText({"  DataSource = Form2.DataSource1"}));
  ExpectBothWays(PropertyStream("Controller", [](TValueWriter& w) { w.WriteIdent(".Owner"); }),
                 FormText({"  Controller = .Owner"}));
  ExpectBothWays(PropertyStream("Visible", [](TValueWriter& w) { w.WriteBoolean(true); }), FormText({"  Visible = True"}));
  ExpectBothWays(PropertyStream("Visible", [](TValueWriter& w) { w.WriteBoolean(false); }),
                 FormText({"  Visible = False"}));
  ExpectBothWays(PropertyStream("PopupMenu", [](TValueWriter& w) { w.WriteValue(vaNil); }),
                 FormText({"  PopupMenu = nil"}));
  for (const char* spelling : {"true", "TRUE", "tRuE"}) {
    EXPECT_EQ(ObjectTextToBinary(FormText({std::string("  Visible = ") + spelling})),
              PropertyStream("Visible", [](TValueWriter& w) { w.WriteBoolean(true); }));
  }
  for (const char* spelling : {"false", "FALSE", "fAlSe"}) {
    EXPECT_EQ(ObjectTextToBinary(FormText({std::string("  Visible = ") + spelling})),
              PropertyStream("Visible", [](TValueWriter& w) { w.WriteBoolean(false); }));
  }
  for (const char* spelling : {"NIL", "Nil", "nIL"}) {
    EXPECT_EQ(ObjectTextToBinary(FormText({std::string("  PopupMenu = ") + spelling})),
              PropertyStream("PopupMenu", [](TValueWriter& w) { w.WriteValue(vaNil); }));
  }
}

TEST(ObjectText, DottedPropertyNames) {
  ExpectBothWays(PropertyStream("Picture.Data.Extra", [](TValueWriter& w) { w.WriteInteger(1); }),
                 FormText({"  Picture.Data.Extra = 1"}));
  EXPECT_EQ(ObjectTextToBinary(FormText({"  Font . Name = 'Arial'"})),
            PropertyStream("Font.Name", [](TValueWriter& w) { w.WriteString("Arial"); }));
}

TEST(ObjectText, TextLayoutIsFree) {
  const std::string binary = FormStream(
      [](TValueWriter& w) {
        w.WriteShortString("Left");
        w.WriteInteger(8);
      },
      [](TValueWriter& w) {
        w.WriteComponentHeader(0, -1, "TButton", "Button1");
        w.WriteListEnd();
        w.WriteListEnd();
      });
  EXPECT_EQ(ObjectTextToBinary("object Form1: TForm1\n  Left = 8\n  object Button1: TButton\n  end\nend\n"), binary);
  EXPECT_EQ(ObjectTextToBinary("  \r\n\tobject Form1 : TForm1 Left=8 object Button1:TButton end end"), binary);
  EXPECT_EQ(ObjectTextToBinary("\xEF\xBB\xBFobject Form1: TForm1\r\n  Left = 8\r\n  object Button1: TButton\r\n  end\r\nend"),
            binary);
  EXPECT_EQ(ObjectTextToBinary("object Form1: TForm1\r  Left = 8\r  object Button1: TButton\r  end\rend\r\n\r\n  "), binary);
}

TEST(ObjectText, ControlBytesInAnIdentifierAreKeptAsTheyStand) {
  // Some Delphi versions wrote memory garbage for an empty identifier.
  const std::string garbage("neVisible\x0F" "vne\x00\x90\xC8", 16);
  const std::string binary = PropertyStream("Header.Style", [&](TValueWriter& w) {
    w.WriteValue(vaIdent);
    w.WriteShortString(garbage);
  });
  ExpectBothWays(binary, FormText({"  Header.Style = " + garbage}));
}

TEST(ObjectText, ResourceFiles) {
  const std::string text = FormText({"  Left = 8"});
  const std::string resource = ObjectTextToResource(text);
  const std::string stream = ObjectTextToBinary(text);
  EXPECT_EQ(resource, MakeResHeader("TFORM1", static_cast<std::uint32_t>(stream.size())) + stream);
  EXPECT_EQ(ObjectResourceToText(resource), text);
  // The class name comes from the root component, after any prefix.
  const std::string inherited = ObjectTextToResource("inherited Form2: TForm2 [3] end");
  EXPECT_EQ(inherited.substr(0, 11), std::string("\xFF\x0A\x00TFORM2\x00\x30\x10", 11));
  EXPECT_EQ(StreamRootClassName(ObjectTextToBinary("inherited Form2: TForm2 [3] end")), "TForm2");
}

TEST(ObjectText, StreamOverloadsReadFromThePosition) {
  const std::string text = FormText({"  Left = 8"});
  TMemoryStream input("junk" + text);
  input.SetPosition(4);
  TMemoryStream binary;
  ObjectTextToBinary(input, binary);
  EXPECT_EQ(binary.DataString(), ObjectTextToBinary(text));
  binary.SetPosition(0);
  TStringStream back;
  ObjectBinaryToText(binary, back);
  EXPECT_EQ(back.DataString(), text);

  TStringStream textInput(text);
  TMemoryStream resource;
  ObjectTextToResource(textInput, resource);
  EXPECT_EQ(resource.DataString(), ObjectTextToResource(text));
  resource.SetPosition(0);
  TMemoryStream textOutput;
  ObjectResourceToText(resource, textOutput);
  EXPECT_EQ(textOutput.DataString(), text);
}

TEST(ObjectText, ReferenceKeepsTypesOnlyWhereTheTextIsUnchanged) {
  const std::string original = FormStream(
      [](TValueWriter& w) {
        w.WriteShortString("Value");
        w.WriteExtended(1.0L);
        w.WriteShortString("Text");
        w.WriteWideString(u"");
      },
      [](TValueWriter& w) {
        w.WriteComponentHeader(0, -1, "TEdit", "");
        w.WriteShortString("Value");
        w.WriteExtended(2.0L);
        w.WriteListEnd();
        w.WriteListEnd();
      });
  std::string text = ObjectBinaryToText(original);
  EXPECT_EQ(ObjectTextToBinary(text, original), original);
  // An edited value takes the type its new text gives.
  const std::size_t at = text.find("Value = 1");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 9, "Value = 3");
  const std::string edited = ObjectTextToBinary(text, original);
  EXPECT_EQ(edited, FormStream(
                        [](TValueWriter& w) {
                          w.WriteShortString("Value");
                          w.WriteInteger(3);
                          w.WriteShortString("Text");
                          w.WriteWideString(u"");
                        },
                        [](TValueWriter& w) {
                          w.WriteComponentHeader(0, -1, "TEdit", "");
                          w.WriteShortString("Value");
                          w.WriteExtended(2.0L);
                          w.WriteListEnd();
                          w.WriteListEnd();
                        }));
  // A damaged reference is used as far as it reads; one that is no stream at all changes nothing.
  const std::string unedited = ObjectBinaryToText(original);
  EXPECT_EQ(ObjectTextToBinary(unedited, original.substr(0, original.size() - 3)), original);
  EXPECT_EQ(ObjectTextToBinary(unedited, "junk"), ObjectTextToBinary(unedited));
}

TEST(FormFileFormat, DetectedFromContent) {
  EXPECT_EQ(DetectFormFileFormat(ObjectTextToResource("object A: TA end")), TFormFileFormat::Resource);
  EXPECT_EQ(DetectFormFileFormat(ObjectTextToBinary("object A: TA end")), TFormFileFormat::Stream);
  EXPECT_EQ(DetectFormFileFormat("object A: TA end"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat("  \r\n\tOBJECT A: TA end"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat("Inherited A: TA end"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat("inline A: TA end"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat("\xEF\xBB\xBFobject A: TA end"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat("objection"), TFormFileFormat::Unknown);
  EXPECT_EQ(DetectFormFileFormat("object"), TFormFileFormat::Text);
  EXPECT_EQ(DetectFormFileFormat(""), TFormFileFormat::Unknown);
  EXPECT_EQ(DetectFormFileFormat("\xFF\xD8\xFF\xE0"), TFormFileFormat::Unknown);
  EXPECT_EQ(DetectFormFileFormat("TODO"), TFormFileFormat::Unknown);
  EXPECT_EQ(DetectFormFileFormat("unit Unit1;"), TFormFileFormat::Unknown);
}

}  // namespace
