#pragma once
// Small stateless routines over form text held one line per item: a word scanner, a
// classifier of a line's first word, a walker over the object / inherited / item ... end
// nesting, a routine that collapses binary values to one line, and the reading and
// writing of string constants. Positions are one-based character indexes into a line.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The lines of a form text, one per item. Every routine below reaches the list only
// through the few accessors at the top of DFM_Utils.cpp.
using TFormLines = std::vector<std::string>;

// Read access to the lines of a form text wherever they are held (a vector, a string
// list, an editor's buffer), so that walking a large text never copies it.
class TFormLineSource {
public:
  virtual ~TFormLineSource() = default;
  virtual int Count() const = 0;
  // The line at Index (0 <= Index < Count) without its line end. The view stays valid
  // until the next call of Line on the same source.
  virtual std::string_view Line(int Index) const = 0;
};

// The lines of a TFormLines as a line source.
class TFormLineVector : public TFormLineSource {
public:
  explicit TFormLineVector(const TFormLines& Lines) : FLines(Lines) {}
  int Count() const override;
  std::string_view Line(int Index) const override;

private:
  const TFormLines& FLines;
};

// Kinds of a line's first word (FormLineKind).
constexpr int flkNone = 0;
constexpr int flkObject = 1;
constexpr int flkInherited = 2;
constexpr int flkItem = 3;
constexpr int flkEnd = 4;

// An opaque handle that the walker passes to its callbacks (a tree node for the editor).
using TFormNodeHandle = std::uintptr_t;
// The handle with all bits set: no node. A block opened under it is passed over silently.
constexpr TFormNodeHandle NoFormNode = ~TFormNodeHandle(0);

// Called for each object / inherited / item / end line with the rest of the line after
// the keyword (at most 255 characters); returns the parent for the block's contents.
// It is called for end lines too and must ignore them.
using TFormNodeCallback =
    std::function<TFormNodeHandle(int Kind, TFormNodeHandle Parent, int LineIndex, std::intptr_t Context,
                                  std::string_view Rest)>;
// Called for every other non-trivial line with the line from its first word (at most 255 characters).
using TFormPropertyCallback =
    std::function<void(TFormNodeHandle Parent, int LineIndex, std::string_view Rest, std::intptr_t Context)>;

// Advances Pos over tabs and spaces while Pos <= EndPos; a negative EndPos is first set to
// the line's length. True when a non-blank character remains (Pos <= EndPos).
// Characters outside the line read as code 0.
bool SkipBlanks(std::string_view Line, int& Pos, int& EndPos);

// Advances Pos while Pos <= EndPos and the character at Pos belongs to a word; EndPos as
// for SkipBlanks. True when Pos moved.
bool ScanWord(std::string_view Line, int& Pos, int& EndPos);

// Whether a character delimits words: codes 0 to 32 and ! " ' ( ) * + , - . / : ; < > ? [ \ ] ^ ` { | }.
bool IsFormWordDelimiter(unsigned char C);

// flkEnd, flkObject, flkInherited or flkItem for those keywords in any case, else flkNone.
int FormLineKind(std::string_view Word);

// Walks the lines from StartLine, reporting block lines to NodeCallback and other lines to
// PropertyCallback (either may be empty), descending into each block until its end line.
// Returns the index of the last line consumed: the end line that closed this level, or
// past the last line when the level runs off the end.
int WalkFormText(const TFormLineSource& Lines, TFormNodeHandle Parent, int StartLine, std::intptr_t Context,
                 const TFormPropertyCallback& PropertyCallback, const TFormNodeCallback& NodeCallback);
int WalkFormText(const TFormLines& Lines, TFormNodeHandle Parent, int StartLine, std::intptr_t Context,
                 const TFormPropertyCallback& PropertyCallback, const TFormNodeCallback& NodeCallback);

// Replaces every binary value ("Name = { ... }", on one line or many) by the one line
// "Name = { BINARY DATA SUPPRESSED }". A brace that is never closed drops every line after it.
void SuppressBinaryData(TFormLines& Lines);

// Reads the string constant of a property line: quoted runs ('' is one apostrophe) and
// #nnn codes. StartPos is the first apostrophe, or the first "#" when the line has no
// apostrophe; Length counts the characters read. False (StartPos 0) when the line holds neither.
bool DecodeStringLiteral(std::string_view Line, int& StartPos, int& Length, std::string& Value);

// Writes Text as a string constant of form text: printable runs in quotes, apostrophes
// and control characters as #nnn. An empty text gives an empty result.
std::string EncodeStringLiteral(std::string_view Text);
