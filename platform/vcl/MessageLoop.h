#pragma once
// The program's side of Qt's event loop: the idle pass, the application-wide look at every
// key message before any window gets it, delivery of posted messages, and the one place
// where exceptions thrown by handlers are caught so that none escapes the loop.
// TApplication builds its events on these hooks.

#include "platform/vcl/Messages.h"

#include <QApplication>
#include <QKeyEvent>
#include <QObject>
#include <QPointer>

#include <exception>
#include <functional>

class TMessageLoop : public QObject {
  Q_OBJECT
public:
  // The loop of this process; created on first use (a QApplication must exist).
  static TMessageLoop& Instance();
  static bool Exists();

  // Called when the event queue has drained, once per pass. Leaving `done` false asks for
  // another pass as soon as the queue has been looked at again.
  std::function<void(bool& done)> OnIdle;

  // Sees each key message (WM_KEYDOWN, WM_CHAR, WM_KEYUP and their WM_SYS forms) once,
  // before any window; setting `handled` swallows it.
  std::function<void(TMsg& msg, bool& handled)> OnMessage;

  // Sees each input event after OnMessage let it pass (keys once, mouse events at every
  // widget they reach); returning true swallows it. The controls use it for design state,
  // key preview and menu shortcuts.
  std::function<bool(QObject* receiver, QEvent* event)> OnInput;

  // Delivers a posted or sent message to the control behind `receiver`; true when taken.
  std::function<bool(QObject* receiver, TMessage& message)> OnWindowMessage;

  // Receives every exception that a handler let escape. Without it, the exception is
  // written to standard error.
  std::function<void(std::exception_ptr error)> OnException;

  // Runs `fn`, handing any exception it throws to HandleException.
  template <class Fn>
  void Guarded(Fn&& fn) {
    try {
      fn();
    } catch (...) {
      HandleException(std::current_exception());
    }
  }

  void HandleException(std::exception_ptr error);

  // The modifiers of the key message being looked at (or of the last one), for the shift
  // state of key data.
  Qt::KeyboardModifiers KeyModifiers() const { return FKeyModifiers; }

  // Sends `event` to `receiver` past every hook (an event the program made itself).
  bool SendUnfiltered(QObject* receiver, QEvent* event);

  // Number of idle passes so far.
  long long IdleCount() const { return FIdleCount; }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  TMessageLoop();
  void AboutToBlock();
  bool IsRepeatDelivery(QObject* receiver, QEvent* event);
  bool HandleKey(QObject* receiver, QKeyEvent* event);

  bool FInIdle = false;
  int FBypass = 0;
  long long FIdleCount = 0;
  Qt::KeyboardModifiers FKeyModifiers;
  const QEvent* FLastKey = nullptr;
  // What the last key event was: an event made at the address of the last one is new
  // unless it is the same kind of event for the same key.
  int FLastKeyType = 0;
  int FLastKeyCode = 0;
  int FLastKeyModifiers = 0;
  QPointer<QObject> FLastKeyReceiver;
};

// Runs a handler the way the event loop runs one: an exception goes to the application.
inline void Guard(const std::function<void()>& fn) { TMessageLoop::Instance().Guarded(fn); }

// A QApplication whose event delivery catches every exception and hands it to the
// message loop, for programs that own their QApplication.
class TQtApplication : public QApplication {
public:
  TQtApplication(int& argc, char** argv);
  bool notify(QObject* receiver, QEvent* event) override;
};

// Converts a key event's modifiers into the key data bits of a key message.
LPARAM KeyDataOf(Qt::KeyboardModifiers modifiers, bool up, bool autoRepeat);
