#include "platform/vcl/MessageLoop.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Keys.h"

#include <QAbstractEventDispatcher>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <cstdio>

namespace {
TMessageLoop* gLoop = nullptr;
}

TMessageLoop& TMessageLoop::Instance() {
  if (!gLoop) gLoop = new TMessageLoop();
  return *gLoop;
}

bool TMessageLoop::Exists() { return gLoop != nullptr; }

TMessageLoop::TMessageLoop() {
  QCoreApplication* app = QCoreApplication::instance();
  // The loop lives as long as the QApplication.
  setParent(app);
  connect(this, &QObject::destroyed, [] { gLoop = nullptr; });
  if (app) app->installEventFilter(this);
  if (auto* dispatcher = QAbstractEventDispatcher::instance()) {
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &TMessageLoop::AboutToBlock);
  }
}

void TMessageLoop::HandleException(std::exception_ptr error) {
  if (OnException) {
    try {
      OnException(error);
      return;
    } catch (...) {
      // An error in the error handler has nowhere left to go but the log.
      error = std::current_exception();
    }
  }
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
  } catch (...) {
    std::fprintf(stderr, "unknown exception\n");
  }
}

void TMessageLoop::AboutToBlock() {
  if (FInIdle) return;
  FInIdle = true;
  ++FIdleCount;
  bool done = true;
  Guarded([&] {
    if (OnIdle) OnIdle(done);
  });
  FInIdle = false;
  // Not done: wake the loop at once so that another pass follows.
  if (!done) QTimer::singleShot(0, this, [] {});
}

bool TMessageLoop::IsRepeatDelivery(QObject* receiver, QEvent* event) {
  // Qt hands one key event to the window and then to the focus widget and its parents;
  // the message was looked at on its first stop.
  const auto* key = static_cast<const QKeyEvent*>(event);
  const int modifiers = static_cast<int>(key->modifiers().toInt());
  if (event == FLastKey && FLastKeyReceiver && event->type() == FLastKeyType && key->key() == FLastKeyCode &&
      modifiers == FLastKeyModifiers) {
    QObject* last = FLastKeyReceiver.data();
    if (receiver->isWidgetType()) {
      auto* w = static_cast<QWidget*>(receiver);
      if (last->isWindowType()) {
        if (w->window()->windowHandle() == last) return true;
      } else if (last->isWidgetType()) {
        auto* lastWidget = static_cast<QWidget*>(last);
        if (w != lastWidget && w->isAncestorOf(lastWidget)) {
          FLastKeyReceiver = receiver;
          return true;
        }
      }
    }
  }
  FLastKey = event;
  FLastKeyReceiver = receiver;
  FLastKeyType = event->type();
  FLastKeyCode = key->key();
  FLastKeyModifiers = modifiers;
  return false;
}

LPARAM KeyDataOf(Qt::KeyboardModifiers modifiers, bool up, bool autoRepeat) {
  LPARAM data = 1;  // repeat count
  if (modifiers & Qt::AltModifier) data |= KF_ALTDOWN_BIT;
  if (autoRepeat || up) data |= KF_REPEAT_BIT;
  if (up) data |= KF_UP_BIT;
  return data;
}

bool TMessageLoop::HandleKey(QObject* receiver, QKeyEvent* event) {
  FKeyModifiers = event->modifiers();
  if (!OnMessage) return false;
  QObject* target = receiver;
  if (receiver->isWindowType()) {
    if (QWidget* focus = QApplication::focusWidget()) target = focus;
  }
  const bool up = event->type() == QEvent::KeyRelease;
  const bool alt = (event->modifiers() & Qt::AltModifier) && !(event->modifiers() & Qt::ControlModifier);
  bool handled = false;
  const int vk = VirtualKeyOf(*event);
  if (vk != 0) {
    TMsg msg;
    msg.hwnd = target;
    msg.message = up ? (alt ? WM_SYSKEYUP : WM_KEYUP) : (alt ? WM_SYSKEYDOWN : WM_KEYDOWN);
    msg.wParam = static_cast<WPARAM>(vk);
    msg.lParam = KeyDataOf(event->modifiers(), up, event->isAutoRepeat());
    OnMessage(msg, handled);
    if (handled) return true;
  }
  if (!up && !event->text().isEmpty()) {
    const QChar ch = event->text().at(0);
    if (ch.unicode() < 0x100) {
      TMsg msg;
      msg.hwnd = target;
      msg.message = alt ? WM_SYSCHAR : WM_CHAR;
      msg.wParam = ch.unicode();
      msg.lParam = KeyDataOf(event->modifiers(), false, event->isAutoRepeat());
      OnMessage(msg, handled);
    }
  }
  return handled;
}

bool TMessageLoop::SendUnfiltered(QObject* receiver, QEvent* event) {
  ++FBypass;
  const bool result = QCoreApplication::sendEvent(receiver, event);
  --FBypass;
  return result;
}

bool TMessageLoop::eventFilter(QObject* watched, QEvent* event) {
  if (FBypass > 0) return false;
  const QEvent::Type type = event->type();
  if (type == TPostedMessageEvent::EventType()) {
    bool taken = false;
    Guarded([&] {
      if (OnWindowMessage) taken = OnWindowMessage(watched, static_cast<TPostedMessageEvent*>(event)->Message);
    });
    return taken;
  }
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
      if (IsRepeatDelivery(watched, event)) return false;
      bool swallow = false;
      Guarded([&] {
        swallow = HandleKey(watched, static_cast<QKeyEvent*>(event));
        if (!swallow && OnInput) swallow = OnInput(watched, event);
      });
      return swallow;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::HoverEnter:
    case QEvent::HoverLeave:
    case QEvent::HoverMove:
    case QEvent::Shortcut: {
      if (!OnInput || !watched->isWidgetType()) return false;
      bool swallow = false;
      Guarded([&] { swallow = OnInput(watched, event); });
      return swallow;
    }
    default: return false;
  }
}

TQtApplication::TQtApplication(int& argc, char** argv) : QApplication(argc, argv) {}

bool TQtApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (...) {
    TMessageLoop::Instance().HandleException(std::current_exception());
    return false;
  }
}
