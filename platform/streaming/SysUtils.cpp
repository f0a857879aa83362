#include "platform/streaming/SysUtils.h"

#include <cstdio>
#include <limits>

namespace sysutils_detail {

std::string FormatArgs(std::string_view format, const FormatArg* args, std::size_t count) {
  std::string out;
  out.reserve(format.size() + 16 * count);
  std::size_t next = 0;
  for (std::size_t i = 0; i < format.size(); ++i) {
    char c = format[i];
    if (c != '%') {
      out += c;
      continue;
    }
    std::size_t start = i++;
    if (i < format.size() && format[i] == '%') {
      out += '%';
      continue;
    }
    std::string directive = "%";
    while (i < format.size() && (format[i] == '-' || format[i] == '.' || (format[i] >= '0' && format[i] <= '9')))
      directive += format[i++];
    if (i >= format.size() || next >= count) {
      out.append(format.substr(start, i - start + (i < format.size() ? 1 : 0)));
      continue;
    }
    char conv = format[i];
    const FormatArg& a = args[next++];
    char buf[128];
    switch (conv) {
      case 'd':
      case 'u':
      case 'x':
      case 'X': {
        long long v = a.kind == FormatArg::Int ? a.i : a.kind == FormatArg::UInt ? static_cast<long long>(a.u) : static_cast<long long>(a.f);
        directive += "ll";
        directive += conv;
        std::snprintf(buf, sizeof buf, directive.c_str(), v);
        out += buf;
        break;
      }
      case 'g':
      case 'f':
      case 'e': {
        double v = a.kind == FormatArg::Float ? a.f : a.kind == FormatArg::Int ? static_cast<double>(a.i) : static_cast<double>(a.u);
        directive += conv;
        std::snprintf(buf, sizeof buf, directive.c_str(), v);
        out += buf;
        break;
      }
      case 's':
      default: {
        std::string text;
        if (a.kind == FormatArg::Text) text = std::string(a.s);
        else if (a.kind == FormatArg::Int) text = std::to_string(a.i);
        else if (a.kind == FormatArg::UInt) text = std::to_string(a.u);
        else text = std::to_string(a.f);
        if (directive.size() > 1) {
          // Width and precision on text: pad or cut as printf would.
          std::size_t dot = directive.find('.');
          bool left = directive.size() > 1 && directive[1] == '-';
          std::string widthPart = directive.substr(left ? 2 : 1, dot == std::string::npos ? std::string::npos : dot - (left ? 2 : 1));
          std::size_t width = widthPart.empty() ? 0 : std::stoul(widthPart);
          if (dot != std::string::npos) {
            std::string precPart = directive.substr(dot + 1);
            std::size_t prec = precPart.empty() ? 0 : std::stoul(precPart);
            if (text.size() > prec) text.resize(prec);
          }
          if (text.size() < width) {
            if (left) text.append(width - text.size(), ' ');
            else text.insert(0, width - text.size(), ' ');
          }
        }
        out += text;
        break;
      }
    }
  }
  return out;
}

}  // namespace sysutils_detail

std::string UpperCase(std::string_view s) {
  std::string r(s);
  for (char& c : r)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return r;
}

std::string LowerCase(std::string_view s) {
  std::string r(s);
  for (char& c : r)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return r;
}

int CompareText(std::string_view a, std::string_view b) {
  std::size_t n = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < n; ++i) {
    unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
    if (x >= 'a' && x <= 'z') x = static_cast<unsigned char>(x - 32);
    if (y >= 'a' && y <= 'z') y = static_cast<unsigned char>(y - 32);
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool SameText(std::string_view a, std::string_view b) { return a.size() == b.size() && CompareText(a, b) == 0; }

std::string Trim(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && static_cast<unsigned char>(s[b]) <= ' ') ++b;
  while (e > b && static_cast<unsigned char>(s[e - 1]) <= ' ') --e;
  return std::string(s.substr(b, e - b));
}

std::string IntToStr(long long value) { return std::to_string(value); }

bool TryStrToInt(std::string_view s, long long& value) {
  std::string t = Trim(s);
  std::size_t i = 0;
  bool neg = false;
  if (i < t.size() && (t[i] == '-' || t[i] == '+')) neg = t[i++] == '-';
  int base = 10;
  if (i < t.size() && t[i] == '$') {
    base = 16;
    ++i;
  } else if (i + 1 < t.size() && t[i] == '0' && (t[i + 1] == 'x' || t[i + 1] == 'X')) {
    base = 16;
    i += 2;
  }
  if (i >= t.size()) return false;
  unsigned long long acc = 0;
  const unsigned long long limit = neg ? 9223372036854775808ULL : 9223372036854775807ULL;
  for (; i < t.size(); ++i) {
    char c = t[i];
    int d;
    if (c >= '0' && c <= '9') d = c - '0';
    else if (base == 16 && c >= 'a' && c <= 'f') d = c - 'a' + 10;
    else if (base == 16 && c >= 'A' && c <= 'F') d = c - 'A' + 10;
    else return false;
    if (acc > (limit - static_cast<unsigned>(d)) / static_cast<unsigned>(base)) return false;
    acc = acc * static_cast<unsigned>(base) + static_cast<unsigned>(d);
  }
  value = neg ? static_cast<long long>(0 - acc) : static_cast<long long>(acc);
  return true;
}

long long StrToInt(std::string_view s) {
  long long v;
  if (!TryStrToInt(s, v)) throw EConvertError(Format("'%s' is not a valid integer value", s));
  return v;
}
