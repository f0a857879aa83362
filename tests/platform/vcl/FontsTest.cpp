#include "platform/vcl/Graphics.h"

#include "tests/support/Corpus.h"

#include <QFontInfo>
#include <QFontMetrics>

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>

namespace {

TFontRequest Request(const char* name, int height, bool bold = false) {
  TFontRequest s;
  s.Name = name;
  s.Height = height;
  s.Bold = bold;
  return s;
}

int Cell(const char* name, int height) { return FontCellHeight(ResolveFont(Request(name, height))); }

}  // namespace

TEST(Fonts, ClassicNamesMapToInstalledFamilies) {
  RegisterClassicFonts();
  EXPECT_EQ(QFontInfo(ResolveFont(Request("MS Sans Serif", -11))).family(), QStringLiteral("MS Sans Serif"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("Tahoma", -11))).family(), QStringLiteral("Tahoma"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("Arial", -13))).family(), QStringLiteral("Liberation Sans"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("Times New Roman", -16))).family(), QStringLiteral("Liberation Serif"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("Courier New", -13))).family(), QStringLiteral("Liberation Mono"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("System", -13))).family(), QStringLiteral("System"));
  EXPECT_EQ(QFontInfo(ResolveFont(Request("MS Shell Dlg 2", -11))).family(), QStringLiteral("Tahoma"));
  EXPECT_FALSE(QFontInfo(ResolveFont(Request("No Such Font At All", -11))).family().isEmpty());
}

TEST(Fonts, CellHeightsMatchTheClassicMetrics) {
  // What the form designer stores as TextHeight for these fonts at 96 pixels per inch.
  EXPECT_EQ(Cell("MS Sans Serif", -11), 13);
  EXPECT_EQ(Cell("MS Sans Serif", -10), 13);
  EXPECT_EQ(Cell("Tahoma", -10), 12);
  EXPECT_EQ(Cell("Tahoma", -11), 13);
  EXPECT_EQ(Cell("Tahoma", -12), 14);
  EXPECT_EQ(Cell("Tahoma", -13), 16);
  EXPECT_EQ(Cell("System", -13), 16);
  EXPECT_NEAR(Cell("Arial", -11), 14, 1);
  EXPECT_NEAR(Cell("Arial", -12), 15, 1);
  EXPECT_NEAR(Cell("Arial", -13), 16, 1);
  EXPECT_NEAR(Cell("Courier New", -12), 15, 1);
}

// Every form of the corpus stores the cell height of its font (TextHeight); ours must be
// within a pixel of it for the fonts we stand in for, or captions would not fit.
TEST(Fonts, FormTextHeightsOfTheCorpusAreMet) {
  LUMORA_REQUIRE_CORPUS();
  const std::regex prop(R"(^  ([A-Za-z.]+) = (.*)$)");
  int checked = 0, close = 0;
  std::map<std::string, int> misses;
  for (const auto& path : lumora::test::CorpusFiles("text", ".dfm")) {
    std::ifstream in(path, std::ios::binary);
    std::string line;
    std::getline(in, line);
    std::map<std::string, std::string> header;
    while (std::getline(in, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (line.rfind("  object ", 0) == 0 || line.rfind("  inherited ", 0) == 0 || line.rfind("  inline ", 0) == 0) break;
      std::smatch m;
      if (std::regex_match(line, m, prop)) header[m[1]] = m[2];
    }
    const std::string name = header["Font.Name"];
    if (name.size() < 3 || name.front() != '\'' || header["PixelsPerInch"] != "96" || header["TextHeight"].empty() ||
        header["Font.Height"].empty()) {
      continue;
    }
    TFontRequest request;
    request.Name = name.substr(1, name.size() - 2);
    request.Height = std::stoi(header["Font.Height"]);
    request.Bold = header["Font.Style"].find("fsBold") != std::string::npos;
    const int expected = std::stoi(header["TextHeight"]);
    const int ours = FontCellHeight(ResolveFont(request));
    ++checked;
    if (std::abs(ours - expected) <= 1) {
      ++close;
    } else {
      ++misses[request.Name + " " + std::to_string(request.Height) + ": " + std::to_string(ours) + " for " +
               std::to_string(expected)];
    }
  }
  for (const auto& [what, count] : misses) std::printf("  text height off: %s (%d forms)\n", what.c_str(), count);
  std::printf("  %d of %d form fonts within a pixel\n", close, checked);
  EXPECT_GT(checked, 700);
  EXPECT_GE(close * 100, checked * 97);
}

TEST(Fonts, PositiveHeightIsTheCellHeight) {
  const QFont f = ResolveFont(Request("Arial", 16));
  EXPECT_NEAR(FontCellHeight(f), 16, 1);
  EXPECT_LT(f.pixelSize(), 16);
}

TEST(Fonts, StylesAreKept) {
  TFontRequest s = Request("Arial", -12, true);
  s.Italic = true;
  s.Underline = true;
  const QFont f = ResolveFont(s);
  EXPECT_TRUE(f.bold());
  EXPECT_TRUE(f.italic());
  EXPECT_TRUE(f.underline());
  EXPECT_FALSE(f.strikeOut());
  EXPECT_EQ(f.pixelSize(), 12);
}
