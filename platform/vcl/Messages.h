#pragma once
// Window messages as the program knows them: numbers, the message record, and posting or
// sending a message to a window. Posted messages travel as Qt events, so they are handled
// in the order they were posted, from the event loop, after the poster has returned.

#include <QEvent>
#include <QPointer>

#include <cstdint>

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

// A message as a window procedure sees it.
struct TMessage {
  std::uint32_t Msg = 0;
  WPARAM WParam = 0;
  LPARAM LParam = 0;
  LRESULT Result = 0;
};

// A queued message as the application's message hook sees it.
struct TMsg {
  QObject* hwnd = nullptr;  // the widget the message is for
  std::uint32_t message = 0;
  WPARAM wParam = 0;
  LPARAM lParam = 0;
};

constexpr std::uint32_t WM_NULL = 0x0000;
constexpr std::uint32_t WM_DESTROY = 0x0002;
constexpr std::uint32_t WM_SIZE = 0x0005;
constexpr std::uint32_t WM_ACTIVATE = 0x0006;
constexpr std::uint32_t WM_SETFOCUS = 0x0007;
constexpr std::uint32_t WM_KILLFOCUS = 0x0008;
constexpr std::uint32_t WM_SETTEXT = 0x000C;
constexpr std::uint32_t WM_PAINT = 0x000F;
constexpr std::uint32_t WM_CLOSE = 0x0010;
constexpr std::uint32_t WM_QUIT = 0x0012;
constexpr std::uint32_t WM_SHOWWINDOW = 0x0018;
constexpr std::uint32_t WM_KEYFIRST = 0x0100;
constexpr std::uint32_t WM_KEYDOWN = 0x0100;
constexpr std::uint32_t WM_KEYUP = 0x0101;
constexpr std::uint32_t WM_CHAR = 0x0102;
constexpr std::uint32_t WM_SYSKEYDOWN = 0x0104;
constexpr std::uint32_t WM_SYSKEYUP = 0x0105;
constexpr std::uint32_t WM_SYSCHAR = 0x0106;
constexpr std::uint32_t WM_KEYLAST = 0x0108;
constexpr std::uint32_t WM_COMMAND = 0x0111;
constexpr std::uint32_t WM_SYSCOMMAND = 0x0112;
constexpr std::uint32_t WM_TIMER = 0x0113;
constexpr std::uint32_t WM_MOUSEFIRST = 0x0200;
constexpr std::uint32_t WM_MOUSEMOVE = 0x0200;
constexpr std::uint32_t WM_LBUTTONDOWN = 0x0201;
constexpr std::uint32_t WM_LBUTTONUP = 0x0202;
constexpr std::uint32_t WM_LBUTTONDBLCLK = 0x0203;
constexpr std::uint32_t WM_RBUTTONDOWN = 0x0204;
constexpr std::uint32_t WM_RBUTTONUP = 0x0205;
constexpr std::uint32_t WM_RBUTTONDBLCLK = 0x0206;
constexpr std::uint32_t WM_MBUTTONDOWN = 0x0207;
constexpr std::uint32_t WM_MBUTTONUP = 0x0208;
constexpr std::uint32_t WM_MBUTTONDBLCLK = 0x0209;
constexpr std::uint32_t WM_MOUSEWHEEL = 0x020A;
constexpr std::uint32_t WM_MOUSELAST = 0x020A;
constexpr std::uint32_t WM_USER = 0x0400;

// Window commands (WM_SYSCOMMAND's wParam): the system menu's items and the frame's buttons.
constexpr WPARAM SC_SIZE = 0xF000;
constexpr WPARAM SC_MOVE = 0xF010;
constexpr WPARAM SC_MINIMIZE = 0xF020;
constexpr WPARAM SC_MAXIMIZE = 0xF030;
constexpr WPARAM SC_CLOSE = 0xF060;
constexpr WPARAM SC_KEYMENU = 0xF100;
constexpr WPARAM SC_RESTORE = 0xF120;

// Key data (lParam) bits of key messages.
constexpr LPARAM KF_ALTDOWN_BIT = LPARAM(1) << 29;
constexpr LPARAM KF_REPEAT_BIT = LPARAM(1) << 30;
constexpr LPARAM KF_UP_BIT = LPARAM(1) << 31;

// Message box flags and answers.
constexpr unsigned MB_OK = 0x00;
constexpr unsigned MB_OKCANCEL = 0x01;
constexpr unsigned MB_ABORTRETRYIGNORE = 0x02;
constexpr unsigned MB_YESNOCANCEL = 0x03;
constexpr unsigned MB_YESNO = 0x04;
constexpr unsigned MB_RETRYCANCEL = 0x05;
constexpr unsigned MB_ICONHAND = 0x10;
constexpr unsigned MB_ICONSTOP = 0x10;
constexpr unsigned MB_ICONERROR = 0x10;
constexpr unsigned MB_ICONQUESTION = 0x20;
constexpr unsigned MB_ICONEXCLAMATION = 0x30;
constexpr unsigned MB_ICONWARNING = 0x30;
constexpr unsigned MB_ICONASTERISK = 0x40;
constexpr unsigned MB_ICONINFORMATION = 0x40;
constexpr unsigned MB_DEFBUTTON1 = 0x000;
constexpr unsigned MB_DEFBUTTON2 = 0x100;
constexpr unsigned MB_DEFBUTTON3 = 0x200;
constexpr unsigned MB_TYPEMASK = 0x0F;
constexpr unsigned MB_ICONMASK = 0xF0;
constexpr unsigned MB_DEFMASK = 0xF00;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// Modal results of forms and message dialogs.
using TModalResult = int;
constexpr TModalResult mrNone = 0;
constexpr TModalResult mrOk = IDOK;
constexpr TModalResult mrCancel = IDCANCEL;
constexpr TModalResult mrAbort = IDABORT;
constexpr TModalResult mrRetry = IDRETRY;
constexpr TModalResult mrIgnore = IDIGNORE;
constexpr TModalResult mrYes = IDYES;
constexpr TModalResult mrNo = IDNO;
constexpr TModalResult mrAll = mrNo + 1;
constexpr TModalResult mrNoToAll = mrAll + 1;
constexpr TModalResult mrYesToAll = mrNoToAll + 1;

// The Qt event that carries a posted or sent message.
class TPostedMessageEvent : public QEvent {
public:
  explicit TPostedMessageEvent(const TMessage& message) : QEvent(EventType()), Message(message) {}
  static QEvent::Type EventType();
  TMessage Message;
};

// Queues a message for `target`; it is handled from the event loop. A target that is gone
// by then never sees it. False when there is no target.
bool PostMessage(QObject* target, std::uint32_t msg, WPARAM wParam = 0, LPARAM lParam = 0);

// Hands a message to `target` at once and returns its result (0 when nothing handled it).
LRESULT SendMessage(QObject* target, std::uint32_t msg, WPARAM wParam = 0, LPARAM lParam = 0);
