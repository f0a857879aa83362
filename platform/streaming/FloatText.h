#pragma once
// Floats in form text: written in the "general" format with 15 significant digits
// ('.' as decimal separator whatever the locale) when that reads back to the same
// value, otherwise with the fewest digits (up to 21) that do; read with the C locale.

#include <cstdint>
#include <string>
#include <string_view>

// Which value type a float comes from or goes to.
enum class TFloatKind {
  Extended,  // vaExtended: 80 bits, no suffix
  Double,    // vaDouble: written without suffix, read back as vaExtended
  Single,    // vaSingle: suffix 's'
  Currency,  // vaCurrency: the stored 64-bit integer (value times 10000), suffix 'c'
  Date,      // vaDate: a double, suffix 'd'
};

// `value` with `digits` significant digits in the general format ("1.5", "100", "1E20",
// "1.5E-7", "NAN", "INF", "-INF"); the digits are rounded, trailing zeros dropped.
std::string FormatGeneral(long double value, int digits);

// Appends the text of a float of `kind` (without its suffix) to `out`. For Currency,
// `value` is the stored 64-bit integer as a long double.
void AppendFloatText(std::string& out, long double value, TFloatKind kind);

// Parses a float as the form text writes it ("1.5", "-2E-7", "1.000000000000000000");
// false when `text` is not a whole number in that notation.
bool ParseFloatText(std::string_view text, long double& value);
