#include "platform/rtti/Variants.h"

#include "platform/rtti/RttiConsts.h"
#include "platform/streaming/SysUtils.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {

[[noreturn]] void CastError() { throw EVariantError(RttiConsts::SInvalidVarCast); }

// Rounds halves to the even neighbour, as the runtime's conversions do.
long double RoundEven(long double v) { return std::nearbyint(v); }

std::int64_t FloatToInt64(long double v) {
  if (!std::isfinite(v)) CastError();
  const long double r = RoundEven(v);
  if (r < -9223372036854775808.0L || r >= 9223372036854775808.0L) CastError();
  return static_cast<std::int64_t>(r);
}

std::int64_t TextToInt64(std::string_view text) {
  long long i;
  if (TryStrToInt(text, i)) return i;
  long double f;
  if (TryStrToFloat(text, f)) return FloatToInt64(f);
  CastError();
}

long double TextToFloat(std::string_view text) {
  long double f;
  if (TryStrToFloat(text, f)) return f;
  long long i;
  if (TryStrToInt(text, i)) return static_cast<long double>(i);
  CastError();
}

bool TextToBool(std::string_view text) {
  const std::string t = Trim(text);
  if (SameText(t, "True")) return true;
  if (SameText(t, "False")) return false;
  long long i;
  if (TryStrToInt(t, i)) return i != 0;
  long double f;
  if (TryStrToFloat(t, f)) return f != 0;
  CastError();
}

// Days since 1899-12-30 <-> civil date, proleptic Gregorian calendar.
long long DaysFromCivil(long long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  const long long unixDays = era * 146097 + static_cast<long long>(doe) - 719468;
  return unixDays + 25569;  // 1970-01-01 is day 25569
}

void CivilFromDays(long long days, long long& y, unsigned& m, unsigned& d) {
  long long z = days - 25569 + 719468;
  const long long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  y = static_cast<long long>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = doy - (153 * mp + 2) / 5 + 1;
  m = mp < 10 ? mp + 3 : mp - 9;
  y += m <= 2;
}

bool ReadDigits(std::string_view s, std::size_t& i, int minCount, int maxCount, long long& value) {
  int n = 0;
  value = 0;
  while (i < s.size() && n < maxCount && s[i] >= '0' && s[i] <= '9') {
    value = value * 10 + (s[i] - '0');
    ++i;
    ++n;
  }
  return n >= minCount;
}

bool ParseTime(std::string_view s, std::size_t& i, double& fraction) {
  long long h, n, sec = 0, ms = 0;
  if (!ReadDigits(s, i, 1, 2, h) || i >= s.size() || s[i] != ':') return false;
  ++i;
  if (!ReadDigits(s, i, 2, 2, n)) return false;
  if (i < s.size() && s[i] == ':') {
    ++i;
    if (!ReadDigits(s, i, 2, 2, sec)) return false;
    if (i < s.size() && s[i] == '.') {
      ++i;
      std::size_t start = i;
      if (!ReadDigits(s, i, 1, 3, ms)) return false;
      for (std::size_t k = i - start; k < 3; ++k) ms *= 10;
    }
  }
  if (h > 23 || n > 59 || sec > 59) return false;
  fraction = static_cast<double>(((h * 60 + n) * 60 + sec) * 1000 + ms) / 86400000.0;
  return true;
}

}  // namespace

std::string FloatToStr(long double value) {
  if (std::isnan(value)) return "NAN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15Lg", value);
  std::string s(buf);
  const std::size_t e = s.find('e');
  if (e == std::string::npos) return s;
  // 1e+20 -> 1E20, 1.5e-07 -> 1.5E-7
  std::string mantissa = s.substr(0, e);
  std::string exponent = s.substr(e + 1);
  bool negative = false;
  if (!exponent.empty() && (exponent[0] == '+' || exponent[0] == '-')) {
    negative = exponent[0] == '-';
    exponent.erase(0, 1);
  }
  while (exponent.size() > 1 && exponent[0] == '0') exponent.erase(0, 1);
  return mantissa + "E" + (negative ? "-" : "") + exponent;
}

bool TryStrToFloat(std::string_view text, long double& value) {
  const std::string t = Trim(text);
  if (t.empty()) return false;
  // Only digits, one sign, '.', and an exponent: no hex floats, no inf/nan words, no locale.
  std::size_t i = 0;
  if (t[i] == '+' || t[i] == '-') ++i;
  bool digits = false;
  while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i, digits = true;
  if (i < t.size() && t[i] == '.') {
    ++i;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i, digits = true;
  }
  if (!digits) return false;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
    ++i;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    bool expDigits = false;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i, expDigits = true;
    if (!expDigits) return false;
  }
  if (i != t.size()) return false;
  errno = 0;
  char* end = nullptr;
  const long double v = std::strtold(t.c_str(), &end);
  if (end != t.c_str() + t.size() || !std::isfinite(v)) return false;
  value = v;
  return true;
}

std::string DateTimeToStr(TDateTime value) {
  double v = value.Value;
  if (!std::isfinite(v) || std::fabs(v) > 2958466.0 * 2) return FloatToStr(v);
  long long days = static_cast<long long>(std::trunc(v));
  long long ms = std::llround(std::fabs(v - static_cast<double>(days)) * 86400000.0);
  if (ms >= 86400000) {
    ms -= 86400000;
    days += v < 0 ? -1 : 1;
  }
  char buf[64];
  std::string out;
  if (days != 0 || ms == 0) {
    long long y;
    unsigned m, d;
    CivilFromDays(days, y, m, d);
    std::snprintf(buf, sizeof buf, "%04lld-%02u-%02u", y, m, d);
    out = buf;
  }
  if (ms != 0) {
    const long long secs = ms / 1000;
    std::snprintf(buf, sizeof buf, "%02lld:%02lld:%02lld", secs / 3600, secs / 60 % 60, secs % 60);
    if (!out.empty()) out += ' ';
    out += buf;
    if (ms % 1000 != 0) {
      std::snprintf(buf, sizeof buf, ".%03lld", ms % 1000);
      out += buf;
    }
  }
  return out;
}

bool TryStrToDateTime(std::string_view text, TDateTime& value) {
  const std::string t = Trim(text);
  std::size_t i = 0;
  long long y, m, d;
  std::size_t save = i;
  if (ReadDigits(t, i, 4, 4, y) && i < t.size() && t[i] == '-') {
    ++i;
    if (!ReadDigits(t, i, 1, 2, m) || i >= t.size() || t[i] != '-') return false;
    ++i;
    if (!ReadDigits(t, i, 1, 2, d)) return false;
    if (m < 1 || m > 12 || d < 1) return false;
    static const int monthDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
    if (d > monthDays[m - 1] || (m == 2 && d == 29 && !leap)) return false;
    double days = static_cast<double>(DaysFromCivil(y, static_cast<unsigned>(m), static_cast<unsigned>(d)));
    double fraction = 0;
    if (i < t.size()) {
      if (t[i] != ' ' && t[i] != 'T') return false;
      ++i;
      if (!ParseTime(t, i, fraction) || i != t.size()) return false;
    }
    value = TDateTime(days < 0 ? days - fraction : days + fraction);
    return true;
  }
  i = save;
  double fraction;
  if (ParseTime(t, i, fraction) && i == t.size()) {
    value = TDateTime(fraction);
    return true;
  }
  long double f;
  if (TryStrToFloat(t, f)) {
    value = TDateTime(static_cast<double>(f));
    return true;
  }
  return false;
}

short Variant::AsSmallint() const {
  const std::int64_t v = AsInt64();
  if (v < -32768 || v > 32767) CastError();
  return static_cast<short>(v);
}

int Variant::AsInteger() const {
  const std::int64_t v = AsInt64();
  if (v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max()) CastError();
  return static_cast<int>(v);
}

std::int64_t Variant::AsInt64() const {
  switch (FType) {
    case varEmpty: return 0;
    case varSmallint: return FData.i16;
    case varInteger:
    case varByte: return FData.i32;
    case varInt64: return FData.i64;
    case varSingle: return FloatToInt64(FData.f);
    case varDouble:
    case varDate: return FloatToInt64(FData.d);
    case varCurrency: return FloatToInt64(static_cast<long double>(FData.i64) / 10000.0L);
    case varBoolean: return FData.b ? -1 : 0;
    case varString: return TextToInt64(FStr);
    default: CastError();
  }
}

long double Variant::AsExtended() const {
  switch (FType) {
    case varEmpty: return 0;
    case varSmallint: return FData.i16;
    case varInteger:
    case varByte: return FData.i32;
    case varInt64: return static_cast<long double>(FData.i64);
    case varSingle: return FData.f;
    case varDouble:
    case varDate: return FData.d;
    case varCurrency: return static_cast<long double>(FData.i64) / 10000.0L;
    case varBoolean: return FData.b ? -1 : 0;
    case varString: return TextToFloat(FStr);
    default: CastError();
  }
}

double Variant::AsDouble() const { return static_cast<double>(AsExtended()); }

float Variant::AsSingle() const {
  const long double v = AsExtended();
  if (std::isfinite(v) && std::fabs(v) > std::numeric_limits<float>::max()) CastError();
  return static_cast<float>(v);
}

Currency Variant::AsCurrency() const {
  if (FType == varCurrency) return Currency::FromScaled(FData.i64);
  const long double v = AsExtended();
  if (!std::isfinite(v) || std::fabs(v) >= 922337203685477.5807L) CastError();
  return Currency::FromValue(v);
}

TDateTime Variant::AsDate() const {
  if (FType == varString) {
    TDateTime d;
    if (!TryStrToDateTime(FStr, d)) CastError();
    return d;
  }
  return TDateTime(AsDouble());
}

bool Variant::AsBoolean() const {
  switch (FType) {
    case varEmpty: return false;
    case varBoolean: return FData.b;
    case varString: return TextToBool(FStr);
    default: return AsExtended() != 0;
  }
}

std::string Variant::AsString() const {
  switch (FType) {
    case varEmpty: return "";
    case varSmallint: return IntToStr(FData.i16);
    case varInteger:
    case varByte: return IntToStr(FData.i32);
    case varInt64: return IntToStr(FData.i64);
    case varSingle: return FloatToStr(FData.f);
    case varDouble: return FloatToStr(FData.d);
    case varCurrency: return FloatToStr(static_cast<long double>(FData.i64) / 10000.0L);
    case varDate: return DateTimeToStr(TDateTime(FData.d));
    case varBoolean: return FData.b ? "True" : "False";
    case varString: return FStr;
    default: CastError();
  }
}

Variant Variant::AsType(TVarType type) const {
  if (type == FType) return *this;
  switch (type) {
    case varEmpty: return Variant();
    case varNull: return Variant::Null();
    case varSmallint: return Variant(AsSmallint());
    case varInteger: return Variant(AsInteger());
    case varSingle: return Variant(AsSingle());
    case varDouble: return Variant(AsDouble());
    case varCurrency: return Variant(AsCurrency());
    case varDate: return Variant(AsDate());
    case varBoolean: return Variant(AsBoolean());
    case varByte: {
      const std::int64_t v = AsInt64();
      if (v < 0 || v > 255) CastError();
      return Variant(static_cast<unsigned char>(v));
    }
    case varInt64: return Variant(static_cast<long long>(AsInt64()));
    case varString: return Variant(AsString());
    default: CastError();
  }
}

bool operator==(const Variant& a, const Variant& b) noexcept {
  if (a.FType != b.FType) return false;
  switch (a.FType) {
    case varEmpty:
    case varNull: return true;
    case varBoolean: return a.FData.b == b.FData.b;
    case varSmallint: return a.FData.i16 == b.FData.i16;
    case varInteger:
    case varByte: return a.FData.i32 == b.FData.i32;
    case varInt64:
    case varCurrency: return a.FData.i64 == b.FData.i64;
    case varSingle: return a.FData.f == b.FData.f;
    case varDouble:
    case varDate: return a.FData.d == b.FData.d;
    case varString: return a.FStr == b.FStr;
    default: return false;
  }
}

std::string VarToStr(const Variant& v) {
  if (v.IsEmpty() || v.IsNull()) return "";
  return v.AsString();
}
