#include "platform/vcl/Messages.h"

#include <QCoreApplication>

QEvent::Type TPostedMessageEvent::EventType() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

bool PostMessage(QObject* target, std::uint32_t msg, WPARAM wParam, LPARAM lParam) {
  if (!target) return false;
  TMessage m;
  m.Msg = msg;
  m.WParam = wParam;
  m.LParam = lParam;
  QCoreApplication::postEvent(target, new TPostedMessageEvent(m));
  return true;
}

LRESULT SendMessage(QObject* target, std::uint32_t msg, WPARAM wParam, LPARAM lParam) {
  if (!target) return 0;
  TMessage m;
  m.Msg = msg;
  m.WParam = wParam;
  m.LParam = lParam;
  TPostedMessageEvent event(m);
  QCoreApplication::sendEvent(target, &event);
  return event.Message.Result;
}
