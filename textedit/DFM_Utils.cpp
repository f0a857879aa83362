#include "textedit/DFM_Utils.h"

#include <algorithm>
#include <climits>

namespace {

// The only places that touch the list itself, so that another line container needs
// only these.
int FormLineCount(const TFormLines& Lines) {
  return Lines.size() > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(Lines.size());
}
std::string_view FormLineAt(const TFormLines& Lines, int Index) { return Lines[static_cast<std::size_t>(Index)]; }
void SetFormLine(TFormLines& Lines, int Index, std::string Text) {
  Lines[static_cast<std::size_t>(Index)] = std::move(Text);
}
void MoveFormLine(TFormLines& Lines, int From, int To) {
  Lines[static_cast<std::size_t>(To)] = std::move(Lines[static_cast<std::size_t>(From)]);
}
void TruncateFormLines(TFormLines& Lines, int Count) { Lines.resize(static_cast<std::size_t>(Count)); }

// The character at a one-based position; outside the line it reads as code 0, which is
// neither blank nor part of a word, so every scan stops there.
unsigned char CharAt(std::string_view Line, int Pos) {
  if (Pos < 1 || static_cast<std::size_t>(Pos) > Line.size()) return 0;
  return static_cast<unsigned char>(Line[static_cast<std::size_t>(Pos) - 1]);
}

bool IsBlank(unsigned char C) { return C == 9 || C == 32; }

// Copy(Line, Pos, Count) with the runtime's clamping.
std::string_view CopyFrom(std::string_view Line, int Pos, int Count) {
  if (Pos < 1) Pos = 1;
  if (static_cast<std::size_t>(Pos) > Line.size()) return {};
  return Line.substr(static_cast<std::size_t>(Pos) - 1, static_cast<std::size_t>(Count));
}

constexpr int MaxRest = 255;

}  // namespace

bool SkipBlanks(std::string_view Line, int& Pos, int& EndPos) {
  if (EndPos < 0) EndPos = static_cast<int>(std::min<std::size_t>(Line.size(), INT_MAX));
  while (Pos <= EndPos && IsBlank(CharAt(Line, Pos))) ++Pos;
  return Pos <= EndPos;
}

bool IsFormWordDelimiter(unsigned char C) {
  if (C <= 32) return true;
  switch (C) {
    case '!': case '"': case '\'': case '(': case ')': case '*': case '+': case ',': case '-':
    case '.': case '/': case ':': case ';': case '<': case '>': case '?': case '[': case '\\':
    case ']': case '^': case '`': case '{': case '|': case '}':
      return true;
    default:
      return false;
  }
}

bool ScanWord(std::string_view Line, int& Pos, int& EndPos) {
  if (EndPos < 0) EndPos = static_cast<int>(std::min<std::size_t>(Line.size(), INT_MAX));
  const int Start = Pos;
  while (Pos <= EndPos && !IsFormWordDelimiter(CharAt(Line, Pos))) ++Pos;
  return Pos != Start;
}

int FormLineKind(std::string_view Word) {
  // Checked in this order; the first match wins.
  static constexpr struct {
    std::string_view Keyword;
    int Kind;
  } Keywords[] = {{"END", flkEnd}, {"OBJECT", flkObject}, {"INHERITED", flkInherited}, {"ITEM", flkItem}};
  for (const auto& K : Keywords) {
    if (Word.size() != K.Keyword.size()) continue;
    bool Same = true;
    for (std::size_t i = 0; i < Word.size() && Same; ++i) {
      char C = Word[i];
      if (C >= 'a' && C <= 'z') C = static_cast<char>(C - 'a' + 'A');
      Same = C == K.Keyword[i];
    }
    if (Same) return K.Kind;
  }
  return flkNone;
}

int TFormLineVector::Count() const { return FormLineCount(FLines); }

std::string_view TFormLineVector::Line(int Index) const { return FormLineAt(FLines, Index); }

int WalkFormText(const TFormLines& Lines, TFormNodeHandle Parent, int StartLine, std::intptr_t Context,
                 const TFormPropertyCallback& PropertyCallback, const TFormNodeCallback& NodeCallback) {
  return WalkFormText(TFormLineVector(Lines), Parent, StartLine, Context, PropertyCallback, NodeCallback);
}

int WalkFormText(const TFormLineSource& Lines, TFormNodeHandle Parent, int StartLine, std::intptr_t Context,
                 const TFormPropertyCallback& PropertyCallback, const TFormNodeCallback& NodeCallback) {
  // Each block is walked as a level of its own; the levels are kept on a list rather
  // than on the call stack, so that no nesting depth can exhaust the stack.
  struct TLevel {
    TFormNodeHandle Parent;
    std::intptr_t Context;
    bool Silent;  // a block under "no node": no callbacks at all
  };
  std::vector<TLevel> Levels{{Parent, Context, false}};
  const int Count = Lines.Count();
  int I = StartLine < 0 ? 0 : StartLine;

  for (;;) {
    int LevelResult = -1;
    while (LevelResult < 0) {
      if (I >= Count) {
        LevelResult = I;
        break;
      }
      const TLevel Level = Levels.back();
      const std::string_view Line = Lines.Line(I);
      int Pos = 1, EndPos = -1;
      if (!SkipBlanks(Line, Pos, EndPos) || Pos >= static_cast<int>(Line.size())) {
        ++I;
        continue;
      }
      const int WordStart = Pos;
      const int Kind = ScanWord(Line, Pos, EndPos) ? FormLineKind(Line.substr(WordStart - 1, Pos - WordStart))
                                                   : flkNone;
      if (Kind != flkNone) {
        TFormNodeHandle Handle = Level.Parent;
        if (!Level.Silent && NodeCallback) {
          SkipBlanks(Line, Pos, EndPos);
          Handle = NodeCallback(Kind, Level.Parent, I, Level.Context, CopyFrom(Line, Pos, MaxRest));
        }
        if (Kind == flkEnd) {
          LevelResult = I;
          break;
        }
        const bool NoNode = Handle == NoFormNode;
        Levels.push_back({Handle, NoNode ? 0 : Level.Context, Level.Silent || NoNode});
        ++I;  // the block's contents start on the next line
        continue;
      }
      if (!Level.Silent && PropertyCallback)
        PropertyCallback(Level.Parent, I, CopyFrom(Line, WordStart, MaxRest), Level.Context);
      ++I;
    }
    if (Levels.size() == 1) return LevelResult;
    // Back in the enclosing level: it goes on after the line that ended the block.
    Levels.pop_back();
    I = LevelResult + 1;
  }
}

void SuppressBinaryData(TFormLines& Lines) {
  // One pass that keeps the surviving lines at the front (Kept of them) and drops the rest
  // at the end, rather than deleting line by line: a picture can be thousands of lines.
  bool InBlock = false;
  std::string Replacement;
  const int Count = FormLineCount(Lines);
  int Kept = 0;
  for (int I = 0; I < Count; ++I) {
    const std::string_view Line = FormLineAt(Lines, I);
    if (!InBlock) {
      const std::size_t Eq = Line.find('=');
      if (Eq != std::string_view::npos) {
        int P = static_cast<int>(Eq) + 2;  // one-based, just after the "="
        int EndPos = -1;
        SkipBlanks(Line, P, EndPos);
        if (CharAt(Line, P) == '{') {
          Replacement = std::string(Line.substr(0, static_cast<std::size_t>(P)));
          Replacement += " BINARY DATA SUPPRESSED }";
          InBlock = true;
        }
      }
    }
    if (InBlock) {
      if (Line.find('}') == std::string_view::npos) continue;  // dropped
      SetFormLine(Lines, Kept++, std::move(Replacement));
      InBlock = false;
      continue;
    }
    if (Kept != I) MoveFormLine(Lines, I, Kept);
    ++Kept;
  }
  TruncateFormLines(Lines, Kept);
}

bool DecodeStringLiteral(std::string_view Line, int& StartPos, int& Length, std::string& Value) {
  Value.clear();
  Length = 0;
  std::size_t Found = Line.find('\'');
  if (Found == std::string_view::npos) Found = Line.find('#');
  if (Found == std::string_view::npos) {
    StartPos = 0;
    return false;
  }
  StartPos = static_cast<int>(Found) + 1;
  int P = StartPos;
  for (;;) {
    const unsigned char C = CharAt(Line, P);
    if (C == '#') {
      ++P;
      unsigned N = 0;  // only the code modulo 256 matters
      while (CharAt(Line, P) >= '0' && CharAt(Line, P) <= '9') {
        N = (N * 10 + (CharAt(Line, P) - '0')) % 256;
        ++P;
      }
      Value += static_cast<char>(N);
    } else if (C == '\'') {
      ++P;
      for (;;) {
        if (static_cast<std::size_t>(P) > Line.size()) break;
        const unsigned char Q = CharAt(Line, P);
        if (Q == 10 || Q == 13) break;
        if (Q == '\'') {
          ++P;
          if (CharAt(Line, P) != '\'') break;
        }
        Value += static_cast<char>(Q);
        ++P;
      }
    } else {
      break;
    }
  }
  Length = P - StartPos;
  return true;
}

std::string EncodeStringLiteral(std::string_view Text) {
  std::string Result;
  Result.reserve(Text.size() + 2);
  bool InQuote = false;
  bool AfterCode = true;
  for (const char Ch : Text) {
    const unsigned char C = static_cast<unsigned char>(Ch);
    if (C >= 32 && C != '\'') {
      if (AfterCode) Result += '\'';
      Result += Ch;
      InQuote = true;
      AfterCode = false;
    } else {
      if (InQuote) Result += '\'';
      Result += '#';
      Result += std::to_string(C);
      InQuote = false;
      AfterCode = true;
    }
  }
  if (InQuote) Result += '\'';
  return Result;
}
