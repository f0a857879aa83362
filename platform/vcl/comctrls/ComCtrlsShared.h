#pragma once
// Helpers the families of the common controls share; only their own sources include this.

#include "platform/rtti/Component.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/Types.h"
#include "platform/vcl/ControlWidgets.h"

#include <QColor>
#include <QPainter>
#include <QPen>
#include <QRect>

#include <algorithm>
#include <cstdint>
#include <string>

// A line one pixel wide, drawn as a filled rectangle so that it stays on its pixels
// under any transformation.
inline void HLine(QPainter& p, int x0, int x1, int y, const QColor& c) {
  if (x1 > x0) p.fillRect(QRect(x0, y, x1 - x0, 1), c);
}
inline void VLine(QPainter& p, int x, int y0, int y1, const QColor& c) {
  if (y1 > y0) p.fillRect(QRect(x, y0, 1, y1 - y0), c);
}

inline QRect ToQRect(const TRect& r) { return QRect(r.Left, r.Top, r.Width(), r.Height()); }

inline std::int32_t GetInt32(const std::string& data, std::size_t& pos) {
  if (data.size() - pos < 4) throw EReadError(RtlConsts::SReadError);
  std::uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(data[pos + i]);
  pos += 4;
  return static_cast<std::int32_t>(v);
}

inline void PutInt32(std::string& out, std::int32_t value) {
  const auto v = static_cast<std::uint32_t>(value);
  for (int i = 0; i < 4; ++i) out += static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A short string (length byte and at most 255 bytes).
inline std::string GetShortString(const std::string& data, std::size_t& pos) {
  if (pos >= data.size()) throw EReadError(RtlConsts::SReadError);
  const std::size_t length = static_cast<unsigned char>(data[pos]);
  if (data.size() - pos - 1 < length) throw EReadError(RtlConsts::SReadError);
  std::string s = data.substr(pos + 1, length);
  pos += 1 + length;
  return s;
}

inline void PutShortString(std::string& out, const std::string& s) {
  const std::size_t length = std::min<std::size_t>(s.size(), 255);
  out += static_cast<char>(length);
  out.append(s, 0, length);
}
