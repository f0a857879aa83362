#pragma once
// Reading forms with the common controls in tests: the reader's messages are collected
// instead of raised, event bindings are dropped, and the pixels of a control's widget
// can be looked at.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Graphics.h"
#include "tests/support/StandardPackage.h"

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace lumora::test {

// Reads form text into `form`; returns the reader's messages (none when all went well).
inline std::vector<std::string> ReadFormText(TComponent* form, std::string_view text) {
  std::vector<std::string> errors;
  ReadComponentFromText(form, text, [&](TReader& reader) {
    reader.OnError = [&](TReader*, const std::string& message, bool& handled) {
      errors.push_back(message);
      handled = true;
    };
    reader.OnFindMethod = [](TReader*, const std::string&, TMethod& method, bool& error) {
      method = TMethod();
      error = false;
    };
  });
  return errors;
}

// Form text lines joined with CR LF, as the converters write them.
inline std::string Crlf(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

// The block "object <name>: ..." ... "end" of a component in form text (its own lines
// and those of its children), or '' when it is not there.
inline std::string ObjectBlock(const std::string& text, const std::string& name) {
  const std::string head = "object " + name + ":";
  const std::size_t start = text.find(head);
  if (start == std::string::npos) return {};
  const std::size_t lineStart = text.rfind('\n', start);
  const std::size_t indentStart = lineStart == std::string::npos ? 0 : lineStart + 1;
  const std::string indent = text.substr(indentStart, start - indentStart);
  const std::string closing = "\n" + indent + "end";
  std::size_t pos = start;
  while (true) {
    pos = text.find(closing, pos);
    if (pos == std::string::npos) return {};
    const std::size_t after = pos + closing.size();
    if (after >= text.size() || text[after] == '\r' || text[after] == '\n') return text.substr(indentStart, after - indentStart);
    pos = after;
  }
}

// What a widget shows, pixel by pixel.
inline QImage Grab(QWidget* widget) { return widget->grab().toImage(); }

inline QColor Pixel(const QImage& image, int x, int y) { return image.pixelColor(x, y); }

inline QColor Classic(TColor color) { return ColorToQColor(color); }

// Pixels of the image inside `r` that are darker than the face colour (text, lines).
inline int DarkPixels(const QImage& image, const QRect& r) {
  int n = 0;
  for (int y = std::max(0, r.top()); y <= std::min(image.height() - 1, r.bottom()); ++y) {
    for (int x = std::max(0, r.left()); x <= std::min(image.width() - 1, r.right()); ++x) {
      if (image.pixelColor(x, y).lightness() < 90) ++n;
    }
  }
  return n;
}

}  // namespace lumora::test
