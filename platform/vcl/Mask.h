#pragma once
// Edits with an edit mask: the text is typed into the mask's places one character at a
// time, each checked against its mask character, with the literals of the mask shown in
// between and the places not yet filled shown as the blank character.
//
// An edit mask has up to three fields separated by ';': the mask, then '1' when the
// literals are part of Text ('0' when they are not; '1' by default), then the blank
// character ('_' by default). Mask characters: L letter, l optional letter, A letter or
// digit, a optional letter or digit, C any character, c optional any character, 0 digit,
// 9 optional digit, # optional digit or sign, > upper case from here, < lower case from
// here, <> no case change, \ the next character is a literal, ! optional places blank at
// the left rather than the right, : and / the time and date separators, _ a blank
// literal. Any other character is a literal.

#include "platform/rtti/Classes.h"
#include "platform/vcl/StdCtrls.h"

#include <string>
#include <string_view>
#include <vector>

// One place of a parsed edit mask.
struct TMaskPlace {
  bool Literal = false;
  char Char = 0;       // the literal, or the mask character of an input place
  char Case = 0;       // '>' upper, '<' lower, 0 as typed
};

struct TParsedMask {
  std::vector<TMaskPlace> Places;
  bool SaveLiterals = true;
  char Blank = '_';
  bool LeadingBlanks = false;  // '!'
  bool Empty() const { return Places.empty(); }
};

TParsedMask ParseEditMask(std::string_view editMask);
// Whether `ch` fits an input place (after its case change); false for literals.
bool MaskCharFits(const TMaskPlace& place, char ch);
// The character as a place takes it (its case changed).
char MaskCased(const TMaskPlace& place, char ch);
// The edit text of `value` under `editMask` (literals and blanks in place), as Text sets it.
std::string FormatMaskText(std::string_view editMask, std::string_view value);

class TCustomMaskEdit : public TCustomEdit {
  LUMORA_CLASS(TCustomMaskEdit, TCustomEdit)
public:
  explicit TCustomMaskEdit(TComponent* owner);

  const std::string& EditMask() const { return FEditMask; }
  void SetEditMask(const std::string& value);
  bool IsMasked() const { return !FMask.Empty(); }
  // What the edit shows: the literals, the characters typed, blanks where none is.
  std::string EditText() const { return TCustomEdit::Text(); }
  void SetEditText(const std::string& value);
  // Without a mask the edit's text; with one, the places' characters (blanks as spaces),
  // the literals only when the mask saves them.
  std::string Text() const override;
  void SetText(const std::string& value) override;
  // Whether every required place is filled.
  bool IsComplete() const;

  void KeyDown(Word& key, TShiftState shift) override;
  void KeyPress(char& key) override;

private:
  // The first input place at or after `pos` (or before it, going back), or -1.
  int NextInputPlace(int pos) const;
  int PreviousInputPlace(int pos) const;
  void PutEditText(const std::string& editText, int cursor);

  std::string FEditMask;
  TParsedMask FMask;
};

class TMaskEdit : public TCustomMaskEdit {
  LUMORA_CLASS(TMaskEdit, TCustomMaskEdit)
public:
  explicit TMaskEdit(TComponent* owner) : TCustomMaskEdit(owner) {}
};
