#include "textedit/DFM_Utils.h"

#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace {

// ---------------------------------------------------------------- SkipBlanks

TEST(SkipBlanks, StopsAtTheFirstNonBlankAndSetsEndPos) {
  int Pos = 1, EndPos = -1;
  EXPECT_TRUE(SkipBlanks("  \tabc", Pos, EndPos));
  EXPECT_EQ(Pos, 4);
  EXPECT_EQ(EndPos, 6);
}

TEST(SkipBlanks, AllBlankOrEmptyLineHasNothingLeft) {
  int Pos = 1, EndPos = -1;
  EXPECT_FALSE(SkipBlanks(" \t  ", Pos, EndPos));
  EXPECT_EQ(Pos, 5);
  EXPECT_EQ(EndPos, 4);

  Pos = 1, EndPos = -1;
  EXPECT_FALSE(SkipBlanks("", Pos, EndPos));
  EXPECT_EQ(Pos, 1);
  EXPECT_EQ(EndPos, 0);
}

TEST(SkipBlanks, HonoursAGivenEndPos) {
  int Pos = 2, EndPos = 4;
  EXPECT_FALSE(SkipBlanks("a   b", Pos, EndPos));
  EXPECT_EQ(Pos, 5);
  EXPECT_EQ(EndPos, 4);

  Pos = 2, EndPos = 5;
  EXPECT_TRUE(SkipBlanks("a   b", Pos, EndPos));
  EXPECT_EQ(Pos, 5);
}

TEST(SkipBlanks, OnlyTabAndSpaceAreBlank) {
  int Pos = 1, EndPos = -1;
  EXPECT_TRUE(SkipBlanks("\r\n x", Pos, EndPos));
  EXPECT_EQ(Pos, 1);
  Pos = 1, EndPos = -1;
  EXPECT_TRUE(SkipBlanks("\x0b x", Pos, EndPos));
  EXPECT_EQ(Pos, 1);
}

TEST(SkipBlanks, PositionsBeyondTheLineStopTheScan) {
  int Pos = 10, EndPos = -1;
  EXPECT_FALSE(SkipBlanks("ab", Pos, EndPos));
  EXPECT_EQ(Pos, 10);
  // An EndPos past the line stops at the end of the line, as at a terminating zero.
  Pos = 2, EndPos = 40;
  EXPECT_TRUE(SkipBlanks("a  ", Pos, EndPos));
  EXPECT_EQ(Pos, 4);
}

// ---------------------------------------------------------------- ScanWord

TEST(ScanWord, ReadsTheFirstWordOfALine) {
  int Pos = 1, EndPos = -1;
  EXPECT_TRUE(ScanWord("object Form1: TForm1", Pos, EndPos));
  EXPECT_EQ(Pos, 7);
  EXPECT_EQ(EndPos, 20);

  Pos = 1, EndPos = -1;
  EXPECT_TRUE(ScanWord("end>", Pos, EndPos));
  EXPECT_EQ(Pos, 4);

  Pos = 8, EndPos = -1;
  EXPECT_TRUE(ScanWord("object Form1: TForm1", Pos, EndPos));
  EXPECT_EQ(Pos, 13);
}

TEST(ScanWord, FalseWhenStartingOnADelimiter) {
  int Pos = 1, EndPos = -1;
  EXPECT_FALSE(ScanWord("(abc", Pos, EndPos));
  EXPECT_EQ(Pos, 1);
  EXPECT_EQ(EndPos, 4);

  Pos = 1, EndPos = -1;
  EXPECT_FALSE(ScanWord("", Pos, EndPos));
  EXPECT_EQ(Pos, 1);
}

TEST(ScanWord, EveryDelimiterEndsAWord) {
  const std::string Delimiters = "!\"'()*+,-./:;<>?[\\]^`{|}";
  for (char D : Delimiters) {
    std::string Line = std::string("ab") + D + "cd";
    int Pos = 1, EndPos = -1;
    EXPECT_TRUE(ScanWord(Line, Pos, EndPos)) << Line;
    EXPECT_EQ(Pos, 3) << Line;
    EXPECT_TRUE(IsFormWordDelimiter(static_cast<unsigned char>(D))) << D;
  }
  for (int C = 0; C <= 32; ++C) {
    std::string Line = "ab";
    Line += static_cast<char>(C);
    Line += "cd";
    int Pos = 1, EndPos = -1;
    EXPECT_TRUE(ScanWord(Line, Pos, EndPos)) << C;
    EXPECT_EQ(Pos, 3) << C;
  }
}

TEST(ScanWord, WordCharactersIncludeSignsAndHighCharacters) {
  std::string Line = "Ab9#$%&=_~@";
  Line += static_cast<char>(127);
  Line += static_cast<char>(128);
  Line += static_cast<char>(233);
  Line += static_cast<char>(255);
  int Pos = 1, EndPos = -1;
  EXPECT_TRUE(ScanWord(Line, Pos, EndPos));
  EXPECT_EQ(Pos, static_cast<int>(Line.size()) + 1);

  // "=" belongs to words: a property written without blanks is one word.
  Pos = 1, EndPos = -1;
  EXPECT_TRUE(ScanWord("Left=10 ", Pos, EndPos));
  EXPECT_EQ(Pos, 8);

  int Words = 0;
  for (int C = 0; C < 256; ++C)
    if (!IsFormWordDelimiter(static_cast<unsigned char>(C))) ++Words;
  // 26 + 26 letters, 10 digits, # $ % & = _ ~ @, and 127..255.
  EXPECT_EQ(Words, 26 + 26 + 10 + 8 + 129);
}

TEST(ScanWord, StopsAtEndPos) {
  int Pos = 1, EndPos = 3;
  EXPECT_TRUE(ScanWord("abcdef", Pos, EndPos));
  EXPECT_EQ(Pos, 4);
  EXPECT_EQ(EndPos, 3);
}

// ---------------------------------------------------------------- FormLineKind

TEST(FormLineKind, KeywordsInAnyCase) {
  EXPECT_EQ(FormLineKind("end"), flkEnd);
  EXPECT_EQ(FormLineKind("END"), 4);
  EXPECT_EQ(FormLineKind("End"), 4);
  EXPECT_EQ(FormLineKind("object"), flkObject);
  EXPECT_EQ(FormLineKind("OBJECT"), 1);
  EXPECT_EQ(FormLineKind("Object"), 1);
  EXPECT_EQ(FormLineKind("inherited"), flkInherited);
  EXPECT_EQ(FormLineKind("INHERITED"), 2);
  EXPECT_EQ(FormLineKind("item"), flkItem);
  EXPECT_EQ(FormLineKind("iTeM"), 3);
}

TEST(FormLineKind, AnythingElseIsNone) {
  EXPECT_EQ(FormLineKind(""), flkNone);
  EXPECT_EQ(FormLineKind("inline"), 0);
  EXPECT_EQ(FormLineKind("ends"), 0);
  EXPECT_EQ(FormLineKind("en"), 0);
  EXPECT_EQ(FormLineKind("objects"), 0);
  EXPECT_EQ(FormLineKind("items"), 0);
  EXPECT_EQ(FormLineKind("end>"), 0);
  EXPECT_EQ(FormLineKind(" end"), 0);
  EXPECT_EQ(FormLineKind("Left"), 0);
}

// ---------------------------------------------------------------- WalkFormText

// Records what the walker reports, one string per call.
struct TWalkLog {
  std::vector<std::string> Calls;
  TFormNodeHandle NextHandleBase = 100;  // a node's handle is 100 + its line index

  static std::string H(TFormNodeHandle Handle) {
    return Handle == NoFormNode ? std::string("none") : std::to_string(Handle);
  }

  TFormNodeCallback Nodes() {
    return [this](int Kind, TFormNodeHandle Parent, int LineIndex, std::intptr_t Context, std::string_view Rest) {
      Calls.push_back("N" + std::to_string(Kind) + " p=" + H(Parent) + " l=" + std::to_string(LineIndex) +
                      " c=" + std::to_string(Context) + " [" + std::string(Rest) + "]");
      return NextHandleBase + static_cast<TFormNodeHandle>(LineIndex);
    };
  }
  TFormPropertyCallback Properties() {
    return [this](TFormNodeHandle Parent, int LineIndex, std::string_view Rest, std::intptr_t Context) {
      Calls.push_back("P p=" + H(Parent) + " l=" + std::to_string(LineIndex) + " c=" + std::to_string(Context) +
                      " [" + std::string(Rest) + "]");
    };
  }
};

const TFormLines SampleForm = {
    "object Form1: TForm1",          // 0
    "  Left = 192",                  // 1
    "  Caption = 'Form1'",           // 2
    "  object Button1: TButton",     // 3
    "    Left = 8",                  // 4
    "  end",                         // 5
    "  Columns = <",                 // 6
    "    item",                      // 7
    "      Width = 60",              // 8
    "    end>",                      // 9
    "end",                           // 10
};

TEST(WalkFormText, ReportsNestedBlocksAndProperties) {
  TWalkLog Log;
  // The top level goes on after the root's end and runs off the end of the list.
  EXPECT_EQ(WalkFormText(SampleForm, 7, 0, 42, Log.Properties(), Log.Nodes()), 11);
  const std::vector<std::string> Expected = {
      "N1 p=7 l=0 c=42 [Form1: TForm1]",
      "P p=100 l=1 c=42 [Left = 192]",
      "P p=100 l=2 c=42 [Caption = 'Form1']",
      "N1 p=100 l=3 c=42 [Button1: TButton]",
      "P p=103 l=4 c=42 [Left = 8]",
      "N4 p=103 l=5 c=42 []",
      "P p=100 l=6 c=42 [Columns = <]",
      "N3 p=100 l=7 c=42 []",
      "P p=107 l=8 c=42 [Width = 60]",
      "N4 p=107 l=9 c=42 [>]",
      "N4 p=100 l=10 c=42 []",
  };
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, InheritedAndNestedItemBlocks) {
  const TFormLines Lines = {
      "inherited Frame2: TFrame2",        // 0
      "  inherited Panel1: TPanel",       // 1
      "    Items = <",                    // 2
      "      item",                       // 3
      "        Sub = <",                  // 4
      "          item",                   // 5
      "            Tag = 1",              // 6
      "          end>",                   // 7
      "      end",                        // 8
      "      item",                       // 9
      "      end>",                       // 10
      "  end",                            // 11
      "end",                              // 12
      "object Other: TForm",              // 13
      "end",                              // 14
  };
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, NoFormNode, 0, 0, Log.Properties(), Log.Nodes()), 15);
  const std::vector<std::string> Expected = {
      "N2 p=none l=0 c=0 [Frame2: TFrame2]",
      "N2 p=100 l=1 c=0 [Panel1: TPanel]",
      "P p=101 l=2 c=0 [Items = <]",
      "N3 p=101 l=3 c=0 []",
      "P p=103 l=4 c=0 [Sub = <]",
      "N3 p=103 l=5 c=0 []",
      "P p=105 l=6 c=0 [Tag = 1]",
      "N4 p=105 l=7 c=0 [>]",
      "N4 p=103 l=8 c=0 []",
      "N3 p=101 l=9 c=0 []",
      "N4 p=109 l=10 c=0 [>]",
      "N4 p=101 l=11 c=0 []",
      "N4 p=100 l=12 c=0 []",
      "N1 p=none l=13 c=0 [Other: TForm]",
      "N4 p=113 l=14 c=0 []",
  };
  EXPECT_EQ(Log.Calls, Expected);

  // Walking a block's contents returns the index of the end line that closes it.
  TWalkLog Inside;
  EXPECT_EQ(WalkFormText(Lines, 5, 1, 0, Inside.Properties(), Inside.Nodes()), 12);
  ASSERT_EQ(Inside.Calls.size(), 12u);
  EXPECT_EQ(Inside.Calls[0], "N2 p=5 l=1 c=0 [Panel1: TPanel]");
  EXPECT_EQ(Inside.Calls[11], "N4 p=5 l=12 c=0 []");
}

TEST(WalkFormText, AnEndWithoutBlockEndsTheLevel) {
  const TFormLines Lines = {"end", "object A: TA", "end"};
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, 1, 0, 0, Log.Properties(), Log.Nodes()), 0);
  EXPECT_EQ(Log.Calls, std::vector<std::string>{"N4 p=1 l=0 c=0 []"});
}

TEST(WalkFormText, AMissingEndRunsToTheLastLine) {
  const TFormLines Lines = {"object A: TA", "  Left = 1", "  object B: TB", "    Top = 2"};
  TWalkLog Log;
  // The innermost level runs off at 4; each enclosing level steps one past the index it gets back.
  EXPECT_EQ(WalkFormText(Lines, 1, 0, 0, Log.Properties(), Log.Nodes()), 6);
  const std::vector<std::string> Expected = {
      "N1 p=1 l=0 c=0 [A: TA]",
      "P p=100 l=1 c=0 [Left = 1]",
      "N1 p=100 l=2 c=0 [B: TB]",
      "P p=102 l=3 c=0 [Top = 2]",
  };
  EXPECT_EQ(Log.Calls, Expected);

  // A level with no block at all returns the number of lines.
  TWalkLog Flat;
  EXPECT_EQ(WalkFormText({"  Left = 1", "  Top = 2"}, 1, 0, 0, Flat.Properties(), Flat.Nodes()), 2);
  EXPECT_EQ(WalkFormText({}, 1, 0, 0, Flat.Properties(), Flat.Nodes()), 0);
  EXPECT_EQ(WalkFormText({"a", "b"}, 1, 5, 0, Flat.Properties(), Flat.Nodes()), 5);
}

TEST(WalkFormText, SingleCharacterAndBlankLinesAreIgnored) {
  const TFormLines Lines = {
      "object A: TA",  // 0
      "  >",           // 1: a lone ">"
      "e",             // 2: a one-letter word
      "    x",         // 3
      "",              // 4
      "   \t ",        // 5
      "  ab",          // 6: two characters count
      "  )",           // 7
      "end",           // 8
  };
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, 1, 0, 0, Log.Properties(), Log.Nodes()), 9);
  const std::vector<std::string> Expected = {
      "N1 p=1 l=0 c=0 [A: TA]",
      "P p=100 l=6 c=0 [ab]",
      "N4 p=100 l=8 c=0 []",
  };
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, KeywordsInAnyCaseAndTabIndentation) {
  const TFormLines Lines = {
      "OBJECT A: TA",         // 0
      "\tObject B: TB",       // 1
      "\t\tItem",             // 2
      "\t\tEND",              // 3
      "\tEnd",                // 4
      "\t Inherited C: TC",   // 5
      "  eNd",                // 6
      "END",                  // 7
  };
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, 1, 0, 0, Log.Properties(), Log.Nodes()), 8);
  const std::vector<std::string> Expected = {
      "N1 p=1 l=0 c=0 [A: TA]",       "N1 p=100 l=1 c=0 [B: TB]", "N3 p=101 l=2 c=0 []",
      "N4 p=102 l=3 c=0 []",          "N4 p=101 l=4 c=0 []",      "N2 p=100 l=5 c=0 [C: TC]",
      "N4 p=105 l=6 c=0 []",          "N4 p=100 l=7 c=0 []",
  };
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, OtherLinesGoToThePropertyCallbackFromTheirFirstCharacter) {
  const TFormLines Lines = {
      "  Items.Strings = (",
      "    'First'",
      "    #13'x')",
      "  inline Frame1: TFrame1",  // not a block keyword of the walker
      "  Picture.Data = {",
      "    0102}",
      "  ObjectName = 'a'",
      "\tend_of = 1",
  };
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, 3, 0, 9, Log.Properties(), Log.Nodes()), 8);
  const std::vector<std::string> Expected = {
      "P p=3 l=0 c=9 [Items.Strings = (]", "P p=3 l=1 c=9 ['First']",
      "P p=3 l=2 c=9 [#13'x')]",           "P p=3 l=3 c=9 [inline Frame1: TFrame1]",
      "P p=3 l=4 c=9 [Picture.Data = {]",  "P p=3 l=5 c=9 [0102}]",
      "P p=3 l=6 c=9 [ObjectName = 'a']",  "P p=3 l=7 c=9 [end_of = 1]",
  };
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, RestIsCutAt255Characters) {
  const std::string Long(300, 'x');
  const TFormLines Lines = {"object " + Long, "  Caption = " + Long, "end"};
  std::vector<std::string> Rests;
  WalkFormText(
      Lines, 0, 0, 0,
      [&](TFormNodeHandle, int, std::string_view Rest, std::intptr_t) { Rests.emplace_back(Rest); },
      [&](int Kind, TFormNodeHandle, int, std::intptr_t, std::string_view Rest) {
        if (Kind != flkEnd) Rests.emplace_back(Rest);
        return TFormNodeHandle(1);
      });
  ASSERT_EQ(Rests.size(), 2u);
  EXPECT_EQ(Rests[0], std::string(255, 'x'));
  EXPECT_EQ(Rests[1], ("Caption = " + Long).substr(0, 255));
}

TEST(WalkFormText, WithoutNodeCallbackTheParentStays) {
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(SampleForm, 7, 0, 3, Log.Properties(), nullptr), 11);
  const std::vector<std::string> Expected = {
      "P p=7 l=1 c=3 [Left = 192]",   "P p=7 l=2 c=3 [Caption = 'Form1']", "P p=7 l=4 c=3 [Left = 8]",
      "P p=7 l=6 c=3 [Columns = <]",  "P p=7 l=8 c=3 [Width = 60]",
  };
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, WithoutPropertyCallbackOnlyNodes) {
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(SampleForm, 7, 0, 0, nullptr, Log.Nodes()), 11);
  EXPECT_EQ(Log.Calls.size(), 6u);
  for (const auto& Call : Log.Calls) EXPECT_EQ(Call[0], 'N') << Call;
  EXPECT_EQ(WalkFormText(SampleForm, 7, 0, 0, nullptr, nullptr), 11);
}

TEST(WalkFormText, ABlockUnderNoNodeIsPassedOverSilently) {
  const TFormLines Lines = {
      "object Form1: TForm1",       // 0
      "  Left = 1",                 // 1
      "  object Skip: TPanel",      // 2: the callback answers "no node"
      "    Top = 2",                // 3
      "    object Inner: TButton",  // 4
      "      Tag = 3",              // 5
      "    end",                    // 6
      "  end",                      // 7
      "  Width = 4",                // 8
      "end",                        // 9
  };
  std::vector<std::string> Calls;
  auto Nodes = [&](int Kind, TFormNodeHandle Parent, int LineIndex, std::intptr_t, std::string_view) {
    Calls.push_back("N" + std::to_string(Kind) + " l=" + std::to_string(LineIndex) + " p=" +
                    TWalkLog::H(Parent));
    return LineIndex == 2 ? NoFormNode : TFormNodeHandle(50 + LineIndex);
  };
  auto Props = [&](TFormNodeHandle Parent, int LineIndex, std::string_view, std::intptr_t) {
    Calls.push_back("P l=" + std::to_string(LineIndex) + " p=" + TWalkLog::H(Parent));
  };
  EXPECT_EQ(WalkFormText(Lines, 1, 0, 0, Props, Nodes), 10);
  const std::vector<std::string> Expected = {"N1 l=0 p=1", "P l=1 p=50", "N1 l=2 p=50",
                                             "P l=8 p=50", "N4 l=9 p=50"};
  EXPECT_EQ(Calls, Expected);
}

TEST(WalkFormText, NoNodeAsRootWithoutNodeCallbackKeepsOnlyTopLevelLines) {
  const TFormLines Lines = {"  Left = 1", "object A: TA", "  Top = 2", "end", "  Width = 3"};
  TWalkLog Log;
  EXPECT_EQ(WalkFormText(Lines, NoFormNode, 0, 5, Log.Properties(), nullptr), 5);
  const std::vector<std::string> Expected = {"P p=none l=0 c=5 [Left = 1]", "P p=none l=4 c=5 [Width = 3]"};
  EXPECT_EQ(Log.Calls, Expected);
}

TEST(WalkFormText, DeepNestingDoesNotExhaustTheStack) {
  const int Depth = 200000;
  TFormLines Lines;
  Lines.reserve(2 * Depth);
  for (int i = 0; i < Depth; ++i) Lines.push_back("object A: TA");
  for (int i = 0; i < Depth; ++i) Lines.push_back("end");
  int Nodes = 0, Ends = 0;
  auto Count = [&](int Kind, TFormNodeHandle, int, std::intptr_t, std::string_view) {
    (Kind == flkEnd ? Ends : Nodes)++;
    return TFormNodeHandle(1);
  };
  EXPECT_EQ(WalkFormText(Lines, 0, 0, 0, nullptr, Count), 2 * Depth);
  EXPECT_EQ(Nodes, Depth);
  EXPECT_EQ(Ends, Depth);

  // Without any end every level runs off the end of the list.
  Lines.resize(Depth);
  Nodes = Ends = 0;
  EXPECT_EQ(WalkFormText(Lines, 0, 0, 0, nullptr, Count), 2 * Depth);
  EXPECT_EQ(Nodes, Depth);
  EXPECT_EQ(Ends, 0);
}

// ---------------------------------------------------------------- SuppressBinaryData

TEST(SuppressBinaryData, OneLineValueIsReplacedInPlace) {
  TFormLines Lines = {"object A: TImage", "  Data = {0102}", "  Empty = {}", "end"};
  SuppressBinaryData(Lines);
  const TFormLines Expected = {"object A: TImage", "  Data = { BINARY DATA SUPPRESSED }",
                               "  Empty = { BINARY DATA SUPPRESSED }", "end"};
  EXPECT_EQ(Lines, Expected);
}

TEST(SuppressBinaryData, MultiLineValueBecomesOneLineWithItsIndentation) {
  TFormLines Lines = {
      "object Image1: TImage",
      "  Picture.Data = {",
      "    07544269746D617036030000424D360300000000000036000000280000001000",
      "    000010000000010018000000000000030000C30E0000C30E0000000000000000",
      "    0000}",
      "  Glyph.Data = {",
      "    0102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F20",
      "    21}",
      "  Left = 8",
      "end",
  };
  SuppressBinaryData(Lines);
  const TFormLines Expected = {
      "object Image1: TImage",
      "  Picture.Data = { BINARY DATA SUPPRESSED }",
      "  Glyph.Data = { BINARY DATA SUPPRESSED }",
      "  Left = 8",
      "end",
  };
  EXPECT_EQ(Lines, Expected);
}

TEST(SuppressBinaryData, KeepsWhatStandsBeforeTheBrace) {
  TFormLines Lines = {"Data ={", "00}", "\tData =\t {AB}", "A = B = {01}", "X=  {"};
  SuppressBinaryData(Lines);
  // Only the first "=" counts, so "A = B = {01}" stays; the last brace never closes.
  const TFormLines Expected = {"Data ={ BINARY DATA SUPPRESSED }", "\tData =\t { BINARY DATA SUPPRESSED }",
                               "A = B = {01}"};
  EXPECT_EQ(Lines, Expected);
}

TEST(SuppressBinaryData, ANeverClosedBraceDeletesToTheEnd) {
  TFormLines Lines = {"object A: TImage", "  Picture.Data = {", "    0102", "    0304", "  Left = 8", "end"};
  SuppressBinaryData(Lines);
  EXPECT_EQ(Lines, TFormLines{"object A: TImage"});
}

TEST(SuppressBinaryData, OtherLinesStayAsTheyAre) {
  const TFormLines Original = {
      "object A: TForm",
      "  Caption = '{x}'",
      "  Items.Strings = (",
      "    '{abc}')",
      "{ not a value }",
      "  Caption = 'a' {",
      "  Hint = ",
      "    '=' + ",
      "    '{'",
      "",
      "end",
  };
  TFormLines Lines = Original;
  SuppressBinaryData(Lines);
  EXPECT_EQ(Lines, Original);

  TFormLines Empty;
  SuppressBinaryData(Empty);
  EXPECT_TRUE(Empty.empty());
}

// ---------------------------------------------------------------- DecodeStringLiteral

struct TDecoded {
  bool Ok;
  int StartPos;
  int Length;
  std::string Value;
};

TDecoded Decode(std::string_view Line) {
  TDecoded D{false, -1, -1, "stale"};
  D.Ok = DecodeStringLiteral(Line, D.StartPos, D.Length, D.Value);
  return D;
}

TEST(DecodeStringLiteral, DoubledApostropheIsOne) {
  const TDecoded D = Decode("Caption = 'it''s'");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, "it's");
  EXPECT_EQ(D.StartPos, 11);
  EXPECT_EQ(D.Length, 7);
}

TEST(DecodeStringLiteral, CodesBetweenQuotedRuns) {
  const TDecoded D = Decode("Caption = 'a'#13#10'b'");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, "a\r\nb");
  EXPECT_EQ(D.StartPos, 11);
  EXPECT_EQ(D.Length, 12);

  const TDecoded E = Decode("  'b'#67#0'd'");
  EXPECT_EQ(E.Value, std::string("bC\0d", 4));
  EXPECT_EQ(E.StartPos, 3);
  EXPECT_EQ(E.Length, 11);
}

TEST(DecodeStringLiteral, LeadingCodesBeforeAQuotedRunAreLost) {
  const TDecoded D = Decode("Caption = #13'abc'");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, "abc");
  EXPECT_EQ(D.StartPos, 14);
  EXPECT_EQ(D.Length, 5);
}

TEST(DecodeStringLiteral, CodesOnlyWhenTheLineHasNoApostrophe) {
  const TDecoded D = Decode("Caption = #13#10");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, "\r\n");
  EXPECT_EQ(D.StartPos, 11);
  EXPECT_EQ(D.Length, 6);

  const TDecoded Big = Decode("X = #321#99999999999999999999");
  EXPECT_EQ(Big.Value, std::string("A\xff"));  // codes modulo 256
  EXPECT_EQ(Big.Length, 25);
}

TEST(DecodeStringLiteral, HashWithoutDigitsAndHexCodes) {
  const TDecoded D = Decode("X = #");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, std::string(1, '\0'));
  EXPECT_EQ(D.StartPos, 5);
  EXPECT_EQ(D.Length, 1);

  const TDecoded Hex = Decode("X = #$0D#65");
  EXPECT_TRUE(Hex.Ok);
  EXPECT_EQ(Hex.Value, std::string(1, '\0'));
  EXPECT_EQ(Hex.Length, 1);

  const TDecoded Dollar = Decode("X = $FF");
  EXPECT_FALSE(Dollar.Ok);
}

TEST(DecodeStringLiteral, EmptyAndUnclosedConstants) {
  const TDecoded Empty = Decode("Caption = ''");
  EXPECT_TRUE(Empty.Ok);
  EXPECT_EQ(Empty.Value, "");
  EXPECT_EQ(Empty.Length, 2);

  const TDecoded Open = Decode("Caption = 'abc");
  EXPECT_TRUE(Open.Ok);
  EXPECT_EQ(Open.Value, "abc");
  EXPECT_EQ(Open.Length, 4);

  const TDecoded Lone = Decode("'");
  EXPECT_TRUE(Lone.Ok);
  EXPECT_EQ(Lone.Value, "");
  EXPECT_EQ(Lone.StartPos, 1);
  EXPECT_EQ(Lone.Length, 1);
}

TEST(DecodeStringLiteral, ALineBreakInsideQuotesEndsTheRun) {
  const TDecoded Cr = Decode("X = 'ab\rcd'");
  EXPECT_EQ(Cr.Value, "ab");
  EXPECT_EQ(Cr.Length, 3);
  const TDecoded Lf = Decode("X = 'ab\ncd'");
  EXPECT_EQ(Lf.Value, "ab");
  EXPECT_EQ(Lf.Length, 3);
}

TEST(DecodeStringLiteral, OnlyTheFirstLineOfAContinuedConstant) {
  const TDecoded D = Decode("    'first part' +");
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, "first part");
  EXPECT_EQ(D.Length, 12);

  const TDecoded Two = Decode("X = 'a' + 'b'");
  EXPECT_EQ(Two.Value, "a");
  EXPECT_EQ(Two.Length, 3);

  const TDecoded Gap = Decode("X = 'a' #13");
  EXPECT_EQ(Gap.Value, "a");
  EXPECT_EQ(Gap.Length, 3);
}

TEST(DecodeStringLiteral, NoConstantOnTheLine) {
  for (const char* Line : {"Left = 10", "", "end", "Font.Style = [fsBold]"}) {
    const TDecoded D = Decode(Line);
    EXPECT_FALSE(D.Ok) << Line;
    EXPECT_EQ(D.StartPos, 0) << Line;
    EXPECT_EQ(D.Length, 0) << Line;
    EXPECT_EQ(D.Value, "") << Line;
  }
}

TEST(DecodeStringLiteral, HighCharactersAreCopiedAsTheyAre) {
  const TDecoded D = Decode("Caption = '\xc1rv\xedzt\xfbr\xf5'");
  EXPECT_EQ(D.Value, "\xc1rv\xedzt\xfbr\xf5");
}

// ---------------------------------------------------------------- EncodeStringLiteral

TEST(EncodeStringLiteral, ApostropheIsAlwaysACode) {
  EXPECT_EQ(EncodeStringLiteral("it's"), "'it'#39's'");
  EXPECT_EQ(EncodeStringLiteral("'"), "#39");
  EXPECT_EQ(EncodeStringLiteral("''"), "#39#39");
  EXPECT_EQ(EncodeStringLiteral("'a'"), "#39'a'#39");
}

TEST(EncodeStringLiteral, ControlCharactersBecomeCodes) {
  EXPECT_EQ(EncodeStringLiteral("a\r\nb"), "'a'#13#10'b'");
  EXPECT_EQ(EncodeStringLiteral("\tx"), "#9'x'");
  EXPECT_EQ(EncodeStringLiteral(std::string(1, '\0')), "#0");
  EXPECT_EQ(EncodeStringLiteral("x\x1f"), "'x'#31");
}

TEST(EncodeStringLiteral, PlainAndEmptyTexts) {
  EXPECT_EQ(EncodeStringLiteral(""), "");
  EXPECT_EQ(EncodeStringLiteral("abc"), "'abc'");
  EXPECT_EQ(EncodeStringLiteral(" "), "' '");
  EXPECT_EQ(EncodeStringLiteral("\x7f\xe9t\xe9"), "'\x7f\xe9t\xe9'");
}

TEST(EncodeStringLiteral, DecodingGivesTheTextBack) {
  std::string Text = "A";
  for (int C = 0; C < 256; ++C) Text += static_cast<char>(C);
  Text += "it's";
  const std::string Line = "  Caption = " + EncodeStringLiteral(Text);
  const TDecoded D = Decode(Line);
  EXPECT_TRUE(D.Ok);
  EXPECT_EQ(D.Value, Text);
  EXPECT_EQ(D.StartPos, 13);
  EXPECT_EQ(D.Length, static_cast<int>(Line.size()) - 12);
}

}  // namespace

// ---------------------------------------------------------------- real files and random lines

namespace {

TFormLines SplitFormLines(const std::string& Text) {
  TFormLines Lines;
  std::size_t Start = 0;
  for (std::size_t I = 0; I < Text.size(); ++I) {
    if (Text[I] == '\n') {
      std::size_t End = I;
      if (End > Start && Text[End - 1] == '\r') --End;
      Lines.push_back(Text.substr(Start, End - Start));
      Start = I + 1;
    }
  }
  if (Start < Text.size()) Lines.push_back(Text.substr(Start));
  return Lines;
}

// The first word of a line, in lower case.
std::string FirstWord(const std::string& Line) {
  std::size_t P = Line.find_first_not_of(" \t");
  if (P == std::string::npos) return {};
  std::size_t E = P;
  while (E < Line.size() && !IsFormWordDelimiter(static_cast<unsigned char>(Line[E]))) ++E;
  std::string W = Line.substr(P, E - P);
  for (char& C : W) C = static_cast<char>(std::tolower(static_cast<unsigned char>(C)));
  return W;
}

}  // namespace

TEST(FormTextOnRealFiles, WalkerAndCollapserAgreeWithTheLines) {
  LUMORA_REQUIRE_CORPUS();
  const auto Files = lumora::test::CorpusFiles("text");
  ASSERT_FALSE(Files.empty());
  for (const auto& File : Files) {
    const TFormLines Lines = SplitFormLines(lumora::test::ReadFileBytes(File));
    int Opens = 0, Ends = 0, Inlines = 0, Binaries = 0;
    for (const auto& L : Lines) {
      const std::string W = FirstWord(L);
      const std::size_t Eq = L.find('=');
      if (Eq != std::string::npos && L.find_first_not_of(" \t", Eq + 1) != std::string::npos &&
          L[L.find_first_not_of(" \t", Eq + 1)] == '{')
        ++Binaries;
      if (L.find_first_not_of(" \t") == std::string::npos || L.find_first_not_of(" \t") + 1 >= L.size()) continue;
      if (W == "object" || W == "inherited" || W == "item") ++Opens;
      if (W == "end") ++Ends;
      if (W == "inline") ++Inlines;
    }
    int NodeOpens = 0, NodeEnds = 0;
    const int Last = WalkFormText(Lines, 1, 0, 0, nullptr,
                                  [&](int Kind, TFormNodeHandle, int, std::intptr_t, std::string_view) {
                                    (Kind == flkEnd ? NodeEnds : NodeOpens)++;
                                    return TFormNodeHandle(2);
                                  });
    if (Inlines == 0) {
      // Every keyword line is reported once, and the file is walked to its end; each block
      // still open there (a damaged file) adds one as its level returns.
      EXPECT_EQ(NodeOpens, Opens) << File;
      EXPECT_EQ(NodeEnds, Ends) << File;
      if (Opens >= Ends) {
        EXPECT_EQ(Last, static_cast<int>(Lines.size()) + Opens - Ends) << File;
      }
    } else {
      // The walker does not know "inline": a frame's end closes its parent's block, and the
      // end that follows stops the walk early.
      EXPECT_LE(NodeOpens, Opens) << File;
      EXPECT_LT(Last, static_cast<int>(Lines.size())) << File;
    }
    TFormLines Collapsed = Lines;
    SuppressBinaryData(Collapsed);
    int Suppressed = 0;
    for (const auto& L : Collapsed)
      if (L.ends_with("{ BINARY DATA SUPPRESSED }")) ++Suppressed;
    EXPECT_EQ(Suppressed, Binaries) << File;
    EXPECT_LE(Collapsed.size(), Lines.size()) << File;
    // Collapsing leaves the block structure as it was.
    int CollapsedOpens = 0;
    WalkFormText(Collapsed, 1, 0, 0, nullptr, [&](int Kind, TFormNodeHandle, int, std::intptr_t, std::string_view) {
      if (Kind != flkEnd) ++CollapsedOpens;
      return TFormNodeHandle(2);
    });
    EXPECT_EQ(CollapsedOpens, NodeOpens) << File;
  }
}

TEST(FormTextOnRandomLines, NoRoutineReadsOutsideTheLine) {
  // Pieces of form text and odd bytes, glued at random: every routine must stay within the
  // line and keep its promises, whatever it is given.
  const std::vector<std::string> Pieces = {"object", "end", "item", "inherited", "END>", " ", "\t", "'", "''", "#",
                                           "#13", "#$0D", "=", "{", "}", "0102", "<", ">", "(", ")", "+", "A",
                                           std::string(1, '\0'), "\r", "\n", "\xff", "\x80", "Caption", ": T"};
  unsigned Seed = 12345;
  auto Next = [&] {
    Seed = Seed * 1103515245u + 12345u;
    return (Seed >> 16) & 0x7fff;
  };
  TFormLines Lines;
  for (int I = 0; I < 3000; ++I) {
    std::string L;
    const unsigned Count = Next() % 12;
    for (unsigned J = 0; J < Count; ++J) L += Pieces[Next() % Pieces.size()];
    Lines.push_back(L);
  }
  for (const auto& L : Lines) {
    int StartPos = -1, Length = -1;
    std::string Value;
    if (DecodeStringLiteral(L, StartPos, Length, Value)) {
      EXPECT_GE(StartPos, 1);
      EXPECT_GE(Length, 1);
      EXPECT_LE(StartPos + Length - 1, static_cast<int>(L.size()));
      EXPECT_LE(Value.size(), static_cast<std::size_t>(Length));
    } else {
      EXPECT_EQ(StartPos, 0);
    }
    int Pos = 1, EndPos = -1;
    SkipBlanks(L, Pos, EndPos);
    ScanWord(L, Pos, EndPos);
    EXPECT_LE(Pos, static_cast<int>(L.size()) + 1);

    std::string Text = "x" + L;
    const TDecoded D = Decode("X = " + EncodeStringLiteral(Text));
    EXPECT_EQ(D.Value, Text);
  }
  int Calls = 0;
  const int Last = WalkFormText(
      Lines, 0, 0, 0, [&](TFormNodeHandle, int, std::string_view Rest, std::intptr_t) {
        EXPECT_LE(Rest.size(), 255u);
        ++Calls;
      },
      [&](int Kind, TFormNodeHandle, int LineIndex, std::intptr_t, std::string_view Rest) {
        EXPECT_GE(Kind, 1);
        EXPECT_LE(Kind, 4);
        EXPECT_LT(LineIndex, static_cast<int>(Lines.size()));
        EXPECT_LE(Rest.size(), 255u);
        ++Calls;
        return TFormNodeHandle(LineIndex % 7 == 0 ? NoFormNode : 1);
      });
  EXPECT_GE(Last, 0);
  EXPECT_GT(Calls, 0);
  TFormLines Collapsed = Lines;
  SuppressBinaryData(Collapsed);
  EXPECT_LE(Collapsed.size(), Lines.size());
}
