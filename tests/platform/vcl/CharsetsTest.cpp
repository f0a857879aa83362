#include "platform/vcl/Charsets.h"

#include <gtest/gtest.h>

namespace {
std::string AllBytes() {
  std::string s;
  for (int i = 1; i < 256; ++i) s.push_back(static_cast<char>(i));
  return s;
}
}  // namespace

TEST(Charsets, CodePagesOfTheCommonCharsets) {
  EXPECT_EQ(CharsetToCodePage(ANSI_CHARSET), 1252);
  EXPECT_EQ(CharsetToCodePage(DEFAULT_CHARSET), 1252);
  EXPECT_EQ(CharsetToCodePage(RUSSIAN_CHARSET), 1251);
  EXPECT_EQ(CharsetToCodePage(EASTEUROPE_CHARSET), 1250);
  EXPECT_EQ(CharsetToCodePage(GB2312_CHARSET), 936);
  EXPECT_EQ(CharsetToCodePage(CHINESEBIG5_CHARSET), 950);
  EXPECT_EQ(CharsetToCodePage(SHIFTJIS_CHARSET), 932);
  EXPECT_EQ(CharsetToCodePage(GREEK_CHARSET), 1253);
  EXPECT_EQ(CharsetToCodePage(TFontCharset(123)), 1252);
}

TEST(Charsets, WesternBytesShowAsTheirCharacters) {
  EXPECT_EQ(AnsiToUnicode("Caf\xe9 \x80 \x93x\x94"), QString::fromUtf8("Café € “x”"));
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("Café € “x”")), "Caf\xe9 \x80 \x93x\x94");
}

TEST(Charsets, RussianHungarianAndChineseTextUseTheirCodePages) {
  EXPECT_EQ(AnsiToUnicode("\xcf\xf0\xe8\xe2\xe5\xf2", RUSSIAN_CHARSET), QString::fromUtf8("Привет"));
  EXPECT_EQ(AnsiToUnicode("Bet\xfbt\xedpus \xf5", EASTEUROPE_CHARSET), QString::fromUtf8("Betűtípus ő"));
  EXPECT_EQ(AnsiToUnicode("\xd6\xd0\xce\xc4", GB2312_CHARSET), QString::fromUtf8("中文"));
  EXPECT_EQ(AnsiToUnicode("\xa4\xa4\xa4\xe5", CHINESEBIG5_CHARSET), QString::fromUtf8("中文"));
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("中文"), GB2312_CHARSET), "\xd6\xd0\xce\xc4");
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("Őr"), EASTEUROPE_CHARSET), "\xd5r");
}

TEST(Charsets, EveryByteSurvivesTheRoundTripInEverySingleByteCodePage) {
  const std::string bytes = AllBytes();
  for (TFontCharset cs : {ANSI_CHARSET, DEFAULT_CHARSET, SYMBOL_CHARSET, RUSSIAN_CHARSET, EASTEUROPE_CHARSET,
                          GREEK_CHARSET, TURKISH_CHARSET, HEBREW_CHARSET, ARABIC_CHARSET, BALTIC_CHARSET,
                          VIETNAMESE_CHARSET, THAI_CHARSET, OEM_CHARSET, MAC_CHARSET}) {
    SCOPED_TRACE(static_cast<int>(cs));
    EXPECT_EQ(UnicodeToAnsi(AnsiToUnicode(bytes, cs), cs), bytes);
  }
}

TEST(Charsets, DoubleByteTextShowsTheSameAfterARoundTrip) {
  // Some double-byte codes are duplicates of others and come back as the preferred code;
  // what is shown never changes, and every pair of a lead and a trail byte survives.
  const std::string bytes = AllBytes();
  for (TFontCharset cs : {GB2312_CHARSET, CHINESEBIG5_CHARSET, SHIFTJIS_CHARSET, HANGEUL_CHARSET}) {
    SCOPED_TRACE(static_cast<int>(cs));
    const QString shown = AnsiToUnicode(bytes, cs);
    EXPECT_EQ(AnsiToUnicode(UnicodeToAnsi(shown, cs), cs), shown);
  }
  const std::string japanese = "\x93\xfa\x96\x7b\x8c\xea";  // 日本語
  EXPECT_EQ(AnsiToUnicode(japanese, SHIFTJIS_CHARSET), QString::fromUtf8("日本語"));
  EXPECT_EQ(UnicodeToAnsi(AnsiToUnicode(japanese, SHIFTJIS_CHARSET), SHIFTJIS_CHARSET), japanese);
}

TEST(Charsets, UndefinedBytesAndBrokenDoubleByteTextRoundTrip) {
  // 0x81 is not a character of Windows-1252; a lone lead byte ends this GBK text.
  const std::string western = "a\x81" "b\x8d";
  EXPECT_EQ(UnicodeToAnsi(AnsiToUnicode(western)), western);
  const std::string chinese = "\xd6\xd0\xce";
  const QString shown = AnsiToUnicode(chinese, GB2312_CHARSET);
  EXPECT_EQ(shown.left(1), QString::fromUtf8("中"));
  EXPECT_EQ(UnicodeToAnsi(shown, GB2312_CHARSET), chinese);
}

TEST(Charsets, CharactersOutsideTheCodePageBecomeQuestionMarks) {
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("a中b")), "a?b");
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("x😀y")), "x?y");
  EXPECT_EQ(UnicodeToAnsi(QString::fromUtf8("Ж"), EASTEUROPE_CHARSET), "?");
}

TEST(Charsets, BytesOfACharacterTheCodePageHasTwiceComeBackAsThemselves) {
  // Shift-JIS has the IBM extension rows twice (NEC's copy at 0xED.., IBM's at 0xFA..).
  for (const std::string& bytes : {std::string("\xED\xEE"), std::string("\xFB\x4D"), std::string("a\xED\xEE\x82\xA0" "b")}) {
    const QString text = AnsiToUnicode(bytes, SHIFTJIS_CHARSET);
    EXPECT_EQ(UnicodeToAnsi(text, SHIFTJIS_CHARSET), bytes);
  }
  // Every pair of bytes of the double-byte code pages survives.
  for (const TFontCharset charset : {SHIFTJIS_CHARSET, GB2312_CHARSET, HANGEUL_CHARSET, CHINESEBIG5_CHARSET}) {
    std::string all;
    for (int lead = 0x81; lead <= 0xFE; ++lead) {
      for (int trail = 0x40; trail <= 0xFE; trail += 7) {
        all += static_cast<char>(lead);
        all += static_cast<char>(trail);
      }
    }
    EXPECT_EQ(UnicodeToAnsi(AnsiToUnicode(all, charset), charset), all) << static_cast<int>(charset);
  }
}

TEST(Charsets, EmptyAndPlainAsciiText) {
  EXPECT_TRUE(AnsiToUnicode("").isEmpty());
  EXPECT_EQ(UnicodeToAnsi(QString()), "");
  EXPECT_EQ(AnsiToUnicode("Button1", RUSSIAN_CHARSET), QStringLiteral("Button1"));
  const std::string withNul("a\0b", 3);
  EXPECT_EQ(UnicodeToAnsi(AnsiToUnicode(withNul)), withNul);
}

TEST(Charsets, CharsetNames) {
  std::string name;
  ASSERT_TRUE(CharsetToIdent(204, name));
  EXPECT_EQ(name, "RUSSIAN_CHARSET");
  ASSERT_TRUE(CharsetToIdent(1, name));
  EXPECT_EQ(name, "DEFAULT_CHARSET");
  EXPECT_FALSE(CharsetToIdent(3, name));
  long value = 0;
  ASSERT_TRUE(IdentToCharset("EASTEUROPE_CHARSET", value));
  EXPECT_EQ(value, 238);
  ASSERT_TRUE(IdentToCharset("gb2312_charset", value));
  EXPECT_EQ(value, 134);
  EXPECT_FALSE(IdentToCharset("LATIN_CHARSET", value));
}
