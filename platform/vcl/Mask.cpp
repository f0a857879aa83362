#include "platform/vcl/Mask.h"

#include "platform/vcl/Keys.h"
#include "platform/vcl/Publish.h"

#include <QLineEdit>
#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one

#include "platform/vcl/Menus.h"

#include <cctype>

namespace {

bool IsInputChar(char c) {
  switch (c) {
    case 'L': case 'l': case 'A': case 'a': case 'C': case 'c': case '0': case '9': case '#': return true;
    default: return false;
  }
}

bool IsRequired(char c) { return c == 'L' || c == 'A' || c == 'C' || c == '0'; }

}  // namespace

TParsedMask ParseEditMask(std::string_view editMask) {
  TParsedMask result;
  // The fields: mask ; save literals ; blank. A ';' escaped by '\' belongs to the mask.
  std::string_view mask = editMask;
  std::size_t split = std::string_view::npos;
  for (std::size_t i = 0; i < editMask.size(); ++i) {
    if (editMask[i] == '\\') {
      ++i;
    } else if (editMask[i] == ';') {
      split = i;
      break;
    }
  }
  if (split != std::string_view::npos) {
    mask = editMask.substr(0, split);
    std::string_view rest = editMask.substr(split + 1);
    const std::size_t second = rest.find(';');
    const std::string_view save = rest.substr(0, second);
    if (!save.empty()) result.SaveLiterals = save[0] != '0';
    if (second != std::string_view::npos && second + 1 < rest.size()) result.Blank = rest[second + 1];
  }
  char caseMode = 0;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    const char c = mask[i];
    TMaskPlace place;
    switch (c) {
      case '!': result.LeadingBlanks = true; continue;
      case '>':
        if (i + 1 < mask.size() && mask[i + 1] == '<') {
          caseMode = 0;
          ++i;
        } else {
          caseMode = '>';
        }
        continue;
      case '<':
        if (i + 1 < mask.size() && mask[i + 1] == '>') {
          caseMode = 0;
          ++i;
        } else {
          caseMode = '<';
        }
        continue;
      case '\\':
        if (i + 1 >= mask.size()) continue;
        place.Literal = true;
        place.Char = mask[++i];
        break;
      case '_':
        place.Literal = true;
        place.Char = ' ';
        break;
      default:
        place.Literal = !IsInputChar(c);
        place.Char = c;
        break;
    }
    place.Case = caseMode;
    result.Places.push_back(place);
  }
  return result;
}

char MaskCased(const TMaskPlace& place, char ch) {
  if (place.Case == '>') return static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
  if (place.Case == '<') return static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return ch;
}

bool MaskCharFits(const TMaskPlace& place, char ch) {
  if (place.Literal) return false;
  const auto u = static_cast<unsigned char>(ch);
  // Characters above ASCII count as letters, as in the code pages forms are written in.
  const bool letter = std::isalpha(u) || u >= 0x80;
  const bool digit = std::isdigit(u) != 0;
  switch (place.Char) {
    case 'L': case 'l': return letter;
    case 'A': case 'a': return letter || digit;
    case 'C': case 'c': return u >= 0x20;
    case '0': case '9': return digit;
    case '#': return digit || ch == '+' || ch == '-';
    default: return false;
  }
}

std::string FormatMaskText(std::string_view editMask, std::string_view value) {
  const TParsedMask mask = ParseEditMask(editMask);
  if (mask.Empty()) return std::string(value);
  std::string out;
  std::size_t v = 0;
  if (mask.SaveLiterals) {
    // The value holds the literals in their places.
    for (std::size_t i = 0; i < mask.Places.size(); ++i) {
      const TMaskPlace& p = mask.Places[i];
      if (p.Literal) {
        out += p.Char;
      } else if (i < value.size() && value[i] != ' ' && MaskCharFits(p, value[i])) {
        out += MaskCased(p, value[i]);
      } else {
        out += mask.Blank;
      }
    }
    return out;
  }
  int inputs = 0;
  for (const TMaskPlace& p : mask.Places) inputs += p.Literal ? 0 : 1;
  // Optional places blank at the left with '!': the value fills the last places.
  std::size_t skip = 0;
  if (mask.LeadingBlanks && value.size() < static_cast<std::size_t>(inputs)) skip = inputs - value.size();
  for (const TMaskPlace& p : mask.Places) {
    if (p.Literal) {
      out += p.Char;
    } else if (skip > 0) {
      --skip;
      out += mask.Blank;
    } else if (v < value.size()) {
      const char ch = value[v++];
      out += ch != ' ' && MaskCharFits(p, ch) ? MaskCased(p, ch) : mask.Blank;
    } else {
      out += mask.Blank;
    }
  }
  return out;
}

// ---------------------------------------------------------------------------------------
// TCustomMaskEdit

LUMORA_CLASS_IMPL(TCustomMaskEdit) {}

TCustomMaskEdit::TCustomMaskEdit(TComponent* owner) : TCustomEdit(owner) {}

void TCustomMaskEdit::SetEditMask(const std::string& value) {
  if (FEditMask == value) return;
  const std::string text = Text();
  FEditMask = value;
  FMask = ParseEditMask(value);
  TCustomEdit::SetText(IsMasked() ? FormatMaskText(FEditMask, text) : text);
}

void TCustomMaskEdit::SetEditText(const std::string& value) {
  if (!IsMasked()) {
    TCustomEdit::SetText(value);
    return;
  }
  // Each place keeps what fits it.
  std::string edit;
  for (std::size_t i = 0; i < FMask.Places.size(); ++i) {
    const TMaskPlace& p = FMask.Places[i];
    if (p.Literal) {
      edit += p.Char;
    } else if (i < value.size() && value[i] != FMask.Blank && MaskCharFits(p, value[i])) {
      edit += MaskCased(p, value[i]);
    } else {
      edit += FMask.Blank;
    }
  }
  TCustomEdit::SetText(edit);
}

std::string TCustomMaskEdit::Text() const {
  const std::string edit = TCustomEdit::Text();
  if (!IsMasked()) return edit;
  std::string out;
  for (std::size_t i = 0; i < FMask.Places.size(); ++i) {
    const TMaskPlace& p = FMask.Places[i];
    const char ch = i < edit.size() ? edit[i] : FMask.Blank;
    if (p.Literal) {
      if (FMask.SaveLiterals) out += p.Char;
    } else {
      out += ch == FMask.Blank ? ' ' : ch;
    }
  }
  return out;
}

void TCustomMaskEdit::SetText(const std::string& value) {
  TCustomEdit::SetText(IsMasked() ? FormatMaskText(FEditMask, value) : value);
}

bool TCustomMaskEdit::IsComplete() const {
  const std::string edit = TCustomEdit::Text();
  for (std::size_t i = 0; i < FMask.Places.size(); ++i) {
    const TMaskPlace& p = FMask.Places[i];
    if (!p.Literal && IsRequired(p.Char) && (i >= edit.size() || edit[i] == FMask.Blank)) return false;
  }
  return true;
}

int TCustomMaskEdit::NextInputPlace(int pos) const {
  for (int i = std::max(pos, 0); i < static_cast<int>(FMask.Places.size()); ++i)
    if (!FMask.Places[i].Literal) return i;
  return -1;
}

int TCustomMaskEdit::PreviousInputPlace(int pos) const {
  for (int i = std::min(pos, static_cast<int>(FMask.Places.size()) - 1); i >= 0; --i)
    if (!FMask.Places[i].Literal) return i;
  return -1;
}

void TCustomMaskEdit::PutEditText(const std::string& editText, int cursor) {
  if (editText != TCustomEdit::Text()) {
    TCustomEdit::SetText(editText);
    SetModified(true);
  }
  if (QLineEdit* e = LineEdit()) e->setCursorPosition(std::max(cursor, 0));
}

void TCustomMaskEdit::KeyDown(Word& key, TShiftState shift) {
  TCustomEdit::KeyDown(key, shift);
  if (!IsMasked() || key == 0 || ReadOnly()) return;
  QLineEdit* e = LineEdit();
  if (!e) return;
  // Deleting blanks places; the literals and the other places stay where they are.
  if (key == VK_DELETE || key == VK_BACK) {
    std::string edit = TCustomEdit::Text();
    int from = e->hasSelectedText() ? e->selectionStart() : e->cursorPosition();
    int to = e->hasSelectedText() ? from + e->selectedText().size() : from + 1;
    if (!e->hasSelectedText() && key == VK_BACK) {
      const int place = PreviousInputPlace(from - 1);
      if (place < 0) {
        key = 0;
        return;
      }
      from = place;
      to = place + 1;
    }
    for (int i = from; i < to && i < static_cast<int>(edit.size()); ++i)
      if (!FMask.Places[i].Literal) edit[i] = FMask.Blank;
    PutEditText(edit, from);
    key = 0;
  }
}

void TCustomMaskEdit::KeyPress(char& key) {
  TCustomEdit::KeyPress(key);
  if (!IsMasked() || key == 0 || static_cast<unsigned char>(key) < 0x20) return;
  QLineEdit* e = LineEdit();
  if (!e || ReadOnly()) {
    key = 0;
    return;
  }
  std::string edit = TCustomEdit::Text();
  int pos = e->hasSelectedText() ? e->selectionStart() : e->cursorPosition();
  if (e->hasSelectedText()) {
    const int end = pos + e->selectedText().size();
    for (int i = pos; i < end && i < static_cast<int>(edit.size()); ++i)
      if (!FMask.Places[i].Literal) edit[i] = FMask.Blank;
  }
  // A typed literal moves past that literal; any other character fills the next place.
  if (pos < static_cast<int>(FMask.Places.size()) && FMask.Places[pos].Literal && FMask.Places[pos].Char == key) {
    PutEditText(edit, pos + 1);
    key = 0;
    return;
  }
  const int place = NextInputPlace(pos);
  if (place >= 0 && MaskCharFits(FMask.Places[place], key)) {
    edit[place] = MaskCased(FMask.Places[place], key);
    int next = NextInputPlace(place + 1);
    PutEditText(edit, next < 0 ? place + 1 : next);
  }
  key = 0;
}

LUMORA_CLASS_IMPL(TMaskEdit) {
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoSelect", &TMaskEdit::AutoSelect, &TMaskEdit::SetAutoSelect).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode"});
  c.Property("BorderStyle", &TMaskEdit::BorderStyle, &TMaskEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("CharCase", &TMaskEdit::CharCase, &TMaskEdit::SetCharCase).Default(ecNormal);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("EditMask", &TMaskEdit::EditMask, &TMaskEdit::SetEditMask);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("MaxLength", &TMaskEdit::MaxLength, &TMaskEdit::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PasswordChar", &TMaskEdit::PasswordChar, &TMaskEdit::SetPasswordChar).Default(0);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TMaskEdit::ReadOnly, &TMaskEdit::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Text", "Visible"});
  c.Property("OnChange", &TMaskEdit::OnChange, &TMaskEdit::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("AutoSize").Default(true);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}
