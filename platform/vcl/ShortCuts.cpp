#include "platform/vcl/ShortCuts.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Keys.h"

#include <iterator>

namespace {

struct KeyName {
  int Key;
  const char* Name;
};

constexpr KeyName kKeyNames[] = {
    {VK_BACK, "BkSp"},   {VK_TAB, "Tab"},     {VK_RETURN, "Enter"}, {VK_ESCAPE, "Esc"},     {VK_SPACE, "Space"},
    {VK_PRIOR, "PgUp"},  {VK_NEXT, "PgDn"},   {VK_END, "End"},      {VK_HOME, "Home"},      {VK_LEFT, "Left"},
    {VK_UP, "Up"},       {VK_RIGHT, "Right"}, {VK_DOWN, "Down"},    {VK_INSERT, "Ins"},     {VK_DELETE, "Del"},
    {VK_PAUSE, "Pause"}, {VK_CAPITAL, "Caps Lock"}, {VK_NUMLOCK, "Num Lock"}, {VK_SCROLL, "Scroll Lock"},
    {VK_MULTIPLY, "Num *"}, {VK_ADD, "Num +"}, {VK_SUBTRACT, "Num -"}, {VK_DECIMAL, "Num Del"},
    {VK_DIVIDE, "Num /"}, {VK_OEM_1, ";"},    {VK_OEM_PLUS, "="},   {VK_OEM_COMMA, ","},    {VK_OEM_MINUS, "-"},
    {VK_OEM_PERIOD, "."}, {VK_OEM_2, "/"},    {VK_OEM_3, "`"},      {VK_OEM_4, "["},        {VK_OEM_5, "\\"},
    {VK_OEM_6, "]"},     {VK_OEM_7, "'"},
};

constexpr const char* kShift = "Shift+";
constexpr const char* kCtrl = "Ctrl+";
constexpr const char* kAlt = "Alt+";

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (text.size() > prefix.size() && SameText(text.substr(0, prefix.size()), prefix)) {
    text.remove_prefix(prefix.size());
    return true;
  }
  return false;
}

}  // namespace

std::string KeyToText(int key) {
  key &= 0xFF;
  if ((key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9')) return std::string(1, static_cast<char>(key));
  if (key >= VK_F1 && key <= VK_F24) return "F" + std::to_string(key - VK_F1 + 1);
  if (key >= VK_NUMPAD0 && key <= VK_NUMPAD9) return "Num " + std::to_string(key - VK_NUMPAD0);
  for (const auto& k : kKeyNames) {
    if (k.Key == key) return k.Name;
  }
  return {};
}

std::string ShortCutToText(TShortCut shortCut) {
  const std::string key = KeyToText(shortCut & 0xFF);
  if (key.empty()) return {};
  std::string text;
  if (shortCut & scShift) text += kShift;
  if (shortCut & scCtrl) text += kCtrl;
  if (shortCut & scAlt) text += kAlt;
  return text + key;
}

TShortCut TextToShortCut(std::string_view text) {
  int modifiers = 0;
  for (;;) {
    if (TakePrefix(text, kShift)) {
      modifiers |= scShift;
    } else if (TakePrefix(text, kCtrl)) {
      modifiers |= scCtrl;
    } else if (TakePrefix(text, kAlt)) {
      modifiers |= scAlt;
    } else {
      break;
    }
  }
  if (text.empty()) return scNone;
  for (int key = 0x08; key <= 0xFF; ++key) {
    const std::string name = KeyToText(key);
    if (!name.empty() && SameText(name, text)) return MakeShortCut(key, modifiers);
  }
  return scNone;
}

QKeySequence ShortCutToKeySequence(TShortCut shortCut) {
  bool keypad = false;
  const int key = QtKeyFromVirtualKey(shortCut & 0xFF, &keypad);
  if (key == 0) return {};
  Qt::KeyboardModifiers modifiers;
  if (shortCut & scShift) modifiers |= Qt::ShiftModifier;
  if (shortCut & scCtrl) modifiers |= Qt::ControlModifier;
  if (shortCut & scAlt) modifiers |= Qt::AltModifier;
  if (keypad) modifiers |= Qt::KeypadModifier;
  return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key)));
}

TShortCut ShortCutFromQt(int qtKey, Qt::KeyboardModifiers modifiers) {
  const int vk = VirtualKeyFromQt(qtKey, modifiers);
  if (vk == 0) return scNone;
  int bits = 0;
  if (modifiers & Qt::ShiftModifier) bits |= scShift;
  if (modifiers & Qt::ControlModifier) bits |= scCtrl;
  if (modifiers & Qt::AltModifier) bits |= scAlt;
  return MakeShortCut(vk, bits);
}
