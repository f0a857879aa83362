#include "platform/vcl/Keys.h"

#include <iterator>

namespace {

struct KeyPair {
  int Qt;
  int Vk;
};

// Keys off the letter and digit rows.
constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, VK_BACK},   {Qt::Key_Tab, VK_TAB},         {Qt::Key_Backtab, VK_TAB},
    {Qt::Key_Clear, VK_CLEAR},      {Qt::Key_Return, VK_RETURN},   {Qt::Key_Enter, VK_RETURN},
    {Qt::Key_Shift, VK_SHIFT},      {Qt::Key_Control, VK_CONTROL}, {Qt::Key_Alt, VK_MENU},
    {Qt::Key_AltGr, VK_MENU},       {Qt::Key_Pause, VK_PAUSE},     {Qt::Key_CapsLock, VK_CAPITAL},
    {Qt::Key_Escape, VK_ESCAPE},    {Qt::Key_Space, VK_SPACE},     {Qt::Key_PageUp, VK_PRIOR},
    {Qt::Key_PageDown, VK_NEXT},    {Qt::Key_End, VK_END},         {Qt::Key_Home, VK_HOME},
    {Qt::Key_Left, VK_LEFT},        {Qt::Key_Up, VK_UP},           {Qt::Key_Right, VK_RIGHT},
    {Qt::Key_Down, VK_DOWN},        {Qt::Key_Select, VK_SELECT},   {Qt::Key_Printer, VK_PRINT},
    {Qt::Key_Execute, VK_EXECUTE},  {Qt::Key_Print, VK_SNAPSHOT},  {Qt::Key_Insert, VK_INSERT},
    {Qt::Key_Delete, VK_DELETE},    {Qt::Key_Help, VK_HELP},       {Qt::Key_Meta, VK_LWIN},
    {Qt::Key_Super_L, VK_LWIN},     {Qt::Key_Super_R, VK_RWIN},    {Qt::Key_Menu, VK_APPS},
    {Qt::Key_NumLock, VK_NUMLOCK},  {Qt::Key_ScrollLock, VK_SCROLL},
    // Punctuation of a US layout, shifted or not, on its key.
    {Qt::Key_Semicolon, VK_OEM_1},  {Qt::Key_Colon, VK_OEM_1},     {Qt::Key_Equal, VK_OEM_PLUS},
    {Qt::Key_Plus, VK_OEM_PLUS},    {Qt::Key_Comma, VK_OEM_COMMA}, {Qt::Key_Less, VK_OEM_COMMA},
    {Qt::Key_Minus, VK_OEM_MINUS},  {Qt::Key_Underscore, VK_OEM_MINUS}, {Qt::Key_Period, VK_OEM_PERIOD},
    {Qt::Key_Greater, VK_OEM_PERIOD}, {Qt::Key_Slash, VK_OEM_2},   {Qt::Key_Question, VK_OEM_2},
    {Qt::Key_QuoteLeft, VK_OEM_3},  {Qt::Key_AsciiTilde, VK_OEM_3}, {Qt::Key_BracketLeft, VK_OEM_4},
    {Qt::Key_BraceLeft, VK_OEM_4},  {Qt::Key_Backslash, VK_OEM_5}, {Qt::Key_Bar, VK_OEM_5},
    {Qt::Key_BracketRight, VK_OEM_6}, {Qt::Key_BraceRight, VK_OEM_6}, {Qt::Key_Apostrophe, VK_OEM_7},
    {Qt::Key_QuoteDbl, VK_OEM_7},
    // Shifted digits.
    {Qt::Key_Exclam, '1'},          {Qt::Key_At, '2'},             {Qt::Key_NumberSign, '3'},
    {Qt::Key_Dollar, '4'},          {Qt::Key_Percent, '5'},        {Qt::Key_AsciiCircum, '6'},
    {Qt::Key_Ampersand, '7'},       {Qt::Key_Asterisk, '8'},       {Qt::Key_ParenLeft, '9'},
    {Qt::Key_ParenRight, '0'},
};

constexpr KeyPair kKeypad[] = {
    {Qt::Key_Asterisk, VK_MULTIPLY}, {Qt::Key_Plus, VK_ADD},  {Qt::Key_Minus, VK_SUBTRACT},
    {Qt::Key_Period, VK_DECIMAL},    {Qt::Key_Comma, VK_DECIMAL}, {Qt::Key_Slash, VK_DIVIDE},
};

}  // namespace

int VirtualKeyFromQt(int key, Qt::KeyboardModifiers modifiers) {
  if (modifiers & Qt::KeypadModifier) {
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return VK_NUMPAD0 + (key - Qt::Key_0);
    for (const auto& k : kKeypad) {
      if (k.Qt == key) return k.Vk;
    }
  }
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return 'A' + (key - Qt::Key_A);
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return '0' + (key - Qt::Key_0);
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return VK_F1 + (key - Qt::Key_F1);
  for (const auto& k : kKeys) {
    if (k.Qt == key) return k.Vk;
  }
  return 0;
}

int QtKeyFromVirtualKey(int vk, bool* keypad) {
  if (keypad) *keypad = false;
  if (vk >= 'A' && vk <= 'Z') return Qt::Key_A + (vk - 'A');
  if (vk >= '0' && vk <= '9') return Qt::Key_0 + (vk - '0');
  if (vk >= VK_F1 && vk <= VK_F24) return Qt::Key_F1 + (vk - VK_F1);
  if (vk >= VK_NUMPAD0 && vk <= VK_NUMPAD9) {
    if (keypad) *keypad = true;
    return Qt::Key_0 + (vk - VK_NUMPAD0);
  }
  for (const auto& k : kKeypad) {
    if (k.Vk == vk) {
      if (keypad) *keypad = true;
      return k.Qt;
    }
  }
  // The first pair of a virtual key is its unshifted Qt key.
  for (const auto& k : kKeys) {
    if (k.Vk == vk) return k.Qt;
  }
  return 0;
}
