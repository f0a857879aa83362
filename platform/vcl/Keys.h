#pragma once
// Virtual key codes as key messages carry them, and their mapping from Qt key events.

#include <QKeyEvent>

#include <cstdint>

constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_CANCEL = 0x03;
constexpr int VK_MBUTTON = 0x04;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_CLEAR = 0x0C;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_PAUSE = 0x13;
constexpr int VK_CAPITAL = 0x14;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_SELECT = 0x29;
constexpr int VK_PRINT = 0x2A;
constexpr int VK_EXECUTE = 0x2B;
constexpr int VK_SNAPSHOT = 0x2C;
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_HELP = 0x2F;
constexpr int VK_LWIN = 0x5B;
constexpr int VK_RWIN = 0x5C;
constexpr int VK_APPS = 0x5D;
constexpr int VK_NUMPAD0 = 0x60;
constexpr int VK_NUMPAD9 = 0x69;
constexpr int VK_MULTIPLY = 0x6A;
constexpr int VK_ADD = 0x6B;
constexpr int VK_SEPARATOR = 0x6C;
constexpr int VK_SUBTRACT = 0x6D;
constexpr int VK_DECIMAL = 0x6E;
constexpr int VK_DIVIDE = 0x6F;
constexpr int VK_F1 = 0x70;
constexpr int VK_F2 = 0x71;
constexpr int VK_F3 = 0x72;
constexpr int VK_F4 = 0x73;
constexpr int VK_F5 = 0x74;
constexpr int VK_F6 = 0x75;
constexpr int VK_F7 = 0x76;
constexpr int VK_F8 = 0x77;
constexpr int VK_F9 = 0x78;
constexpr int VK_F10 = 0x79;
constexpr int VK_F11 = 0x7A;
constexpr int VK_F12 = 0x7B;
constexpr int VK_F24 = 0x87;
constexpr int VK_NUMLOCK = 0x90;
constexpr int VK_SCROLL = 0x91;
constexpr int VK_OEM_1 = 0xBA;       // ;
constexpr int VK_OEM_PLUS = 0xBB;    // =
constexpr int VK_OEM_COMMA = 0xBC;   // ,
constexpr int VK_OEM_MINUS = 0xBD;   // -
constexpr int VK_OEM_PERIOD = 0xBE;  // .
constexpr int VK_OEM_2 = 0xBF;       // /
constexpr int VK_OEM_3 = 0xC0;       // `
constexpr int VK_OEM_4 = 0xDB;       // [
constexpr int VK_OEM_5 = 0xDC;       // backslash
constexpr int VK_OEM_6 = 0xDD;       // ]
constexpr int VK_OEM_7 = 0xDE;       // '

// The virtual key of a Qt key event (a US keyboard layout for the punctuation keys);
// 0 for keys without one.
int VirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers);
inline int VirtualKeyOf(const QKeyEvent& e) { return VirtualKeyFromQt(e.key(), e.modifiers()); }

// The Qt key of a virtual key, and whether it sits on the numeric keypad.
int QtKeyFromVirtualKey(int vk, bool* keypad = nullptr);
