#pragma once
// Menu shortcuts as 16-bit values: the virtual key in the low byte, 0x2000 Shift,
// 0x4000 Ctrl, 0x8000 Alt. Their text is what menus show ("Ctrl+C", "Shift+Del", "F12").

#include "platform/vcl/IntTypes.h"

#include <QKeySequence>

#include <cstdint>
#include <string>
#include <string_view>

LUMORA_INTEGER_TYPE(TShortCut, std::uint16_t, otUWord, 0, 65535)

constexpr int scShift = 0x2000;
constexpr int scCtrl = 0x4000;
constexpr int scAlt = 0x8000;
constexpr TShortCut scNone = TShortCut(0);

// A shortcut from a virtual key and the modifier bits above.
constexpr TShortCut MakeShortCut(int key, int modifiers) {
  return static_cast<TShortCut>((key & 0xFF) | (modifiers & (scShift | scCtrl | scAlt)));
}

// "Shift+Ctrl+Alt+Key" with the modifiers that are set, in that order; empty for 0 or a
// key without a name.
std::string ShortCutToText(TShortCut shortCut);

// The inverse of ShortCutToText; modifiers in any order and any letter case. 0 when the
// text names no key.
TShortCut TextToShortCut(std::string_view text);

// The name of a virtual key alone ("Esc", "PgDn", "F5", "A"), empty when it has none.
std::string KeyToText(int key);

// The Qt key sequence of a shortcut, for showing it in Qt menus.
QKeySequence ShortCutToKeySequence(TShortCut shortCut);

// The shortcut that a key event with these modifiers gives.
TShortCut ShortCutFromQt(int qtKey, Qt::KeyboardModifiers modifiers);
