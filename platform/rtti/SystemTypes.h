#pragma once
// The runtime's value types that have no direct C++ twin: a date-time that is a
// double but its own type, a currency held as a scaled 64-bit integer, the 64-bit
// integer kept in a float register (Comp) and the short string of at most 255 bytes.

#include <cmath>
#include <cstdint>
#include <string>

using Word = std::uint16_t;
using Byte = std::uint8_t;

// Days since 1899-12-30; the fraction is the time of day.
struct TDateTime {
  double Value = 0;
  constexpr TDateTime() = default;
  constexpr TDateTime(double value) : Value(value) {}
  constexpr operator double() const { return Value; }
};

// A fixed-point amount with four decimals, stored as the value times 10000.
struct Currency {
  std::int64_t Scaled = 0;
  constexpr Currency() = default;
  // The currency nearest to `value` (halves go to the even neighbour).
  static Currency FromValue(long double value) { return FromScaled(std::llrint(value * 10000.0L)); }
  static constexpr Currency FromScaled(std::int64_t scaled) {
    Currency c;
    c.Scaled = scaled;
    return c;
  }
  long double Value() const { return static_cast<long double>(Scaled) / 10000.0L; }
  friend constexpr bool operator==(Currency a, Currency b) { return a.Scaled == b.Scaled; }
};

// A 64-bit integer that the type information treats as a float.
struct Comp {
  std::int64_t Value = 0;
  friend constexpr bool operator==(Comp a, Comp b) { return a.Value == b.Value; }
};

// An 8-bit string of at most 255 bytes; longer text is cut when assigned.
struct ShortString {
  std::string Value;
  ShortString() = default;
  ShortString(std::string text) : Value(std::move(text)) {
    if (Value.size() > 255) Value.resize(255);
  }
  friend bool operator==(const ShortString& a, const ShortString& b) { return a.Value == b.Value; }
};
