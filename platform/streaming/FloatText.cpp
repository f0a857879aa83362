#include "platform/streaming/FloatText.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale.h>

namespace {

// Numbers are always read with '.' as the separator, whatever locale the program runs in.
locale_t CLocale() {
  static const locale_t loc = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return loc;
}

bool SameExtended(long double a, long double b) {
  return std::memcmp(&a, &b, 10) == 0;
}

template <class T>
bool SameBits(T a, T b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

// Whether `text` reads back to exactly `value` for a float of `kind`.
bool ReadsBack(const std::string& text, long double value, TFloatKind kind) {
  long double parsed = 0;
  if (!ParseFloatText(text, parsed)) return false;
  switch (kind) {
    case TFloatKind::Extended: return SameExtended(parsed, value);
    case TFloatKind::Double:
    case TFloatKind::Date: return SameBits(static_cast<double>(parsed), static_cast<double>(value));
    case TFloatKind::Single: return SameBits(static_cast<float>(parsed), static_cast<float>(value));
    case TFloatKind::Currency:
      if (!(parsed > -9.3e18L && parsed < 9.3e18L)) return false;
      return std::llrintl(parsed) == static_cast<long long>(value);
  }
  return false;
}

}  // namespace

std::string FormatGeneral(long double value, int digits) {
  if (std::isnan(value)) return "NAN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  if (value == 0) return std::signbit(value) ? "-0" : "0";
  if (digits < 1) digits = 1;
  if (digits > 30) digits = 30;

  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*Le", digits - 1, value);
  // Pick the digits and the exponent out of "-d.ddde+XX", ignoring the separator.
  char mant[40];
  int n = 0;
  const char* p = buf;
  const bool negative = *p == '-';
  if (negative) ++p;
  for (; *p && *p != 'e' && *p != 'E'; ++p)
    if (*p >= '0' && *p <= '9' && n < 39) mant[n++] = *p;
  int exponent = (*p == 'e' || *p == 'E') ? std::atoi(p + 1) : 0;
  while (n > 1 && mant[n - 1] == '0') --n;

  std::string out;
  if (negative) out.push_back('-');
  if (exponent >= -5 && exponent < 15) {
    if (exponent >= 0) {
      for (int i = 0; i <= exponent; ++i) out.push_back(i < n ? mant[i] : '0');
      if (n > exponent + 1) {
        out.push_back('.');
        out.append(mant + exponent + 1, static_cast<std::size_t>(n - exponent - 1));
      }
    } else {
      out.append("0.");
      out.append(static_cast<std::size_t>(-exponent - 1), '0');
      out.append(mant, static_cast<std::size_t>(n));
    }
  } else {
    out.push_back(mant[0]);
    if (n > 1) {
      out.push_back('.');
      out.append(mant + 1, static_cast<std::size_t>(n - 1));
    }
    out.push_back('E');
    if (exponent < 0) {
      out.push_back('-');
      exponent = -exponent;
    }
    out.append(std::to_string(exponent));
  }
  return out;
}

void AppendFloatText(std::string& out, long double value, TFloatKind kind) {
  std::string text = FormatGeneral(value, 15);
  if (!ReadsBack(text, value, kind)) {
    for (int digits = 16; digits <= 21; ++digits) {
      std::string longer = FormatGeneral(value, digits);
      if (ReadsBack(longer, value, kind)) {
        text = std::move(longer);
        break;
      }
    }
  }
  out.append(text);
}

bool ParseFloatText(std::string_view text, long double& value) {
  // Only the plain notation: sign, digits, optional fraction, optional exponent.
  char buf[128];
  if (text.empty() || text.size() >= sizeof buf) {
    // A very long digit string is still a number; fall back to a heap copy.
    if (text.empty()) return false;
  }
  std::size_t i = 0;
  if (text[i] == '-' || text[i] == '+') ++i;
  std::size_t digits = 0;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++digits;
  }
  if (digits == 0) return false;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    std::size_t expDigits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i, ++expDigits;
    if (expDigits == 0) return false;
  }
  if (i != text.size()) return false;
  std::string heap;
  const char* c;
  if (text.size() < sizeof buf) {
    std::memcpy(buf, text.data(), text.size());
    buf[text.size()] = '\0';
    c = buf;
  } else {
    heap.assign(text);
    c = heap.c_str();
  }
  char* end = nullptr;
  value = strtold_l(c, &end, CLocale());
  return end == c + text.size();
}
