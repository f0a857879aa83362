#include "platform/vcl/Clipbrd.h"

#include "platform/vcl/Charsets.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace {
QClipboard* SystemClipboard() {
  return QGuiApplication::instance() ? QGuiApplication::clipboard() : nullptr;
}
}  // namespace

std::string TClipboard::AsText() const {
  QClipboard* c = SystemClipboard();
  return c ? UnicodeToAnsi(c->text()) : std::string();
}

void TClipboard::SetAsText(const std::string& text) {
  if (QClipboard* c = SystemClipboard()) c->setText(AnsiToUnicode(text));
}

bool TClipboard::HasText() const {
  QClipboard* c = SystemClipboard();
  const QMimeData* data = c ? c->mimeData() : nullptr;
  return data && data->hasText();
}

void TClipboard::Clear() {
  if (QClipboard* c = SystemClipboard()) c->clear();
}

TClipboard* Clipboard() {
  static TClipboard clipboard;
  return &clipboard;
}
