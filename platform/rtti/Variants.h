#pragma once
// The variant: one value of a few scalar types, with the type codes the runtime gives
// them and conversions between them and to and from text. A conversion that cannot be
// made raises EVariantError "Invalid variant type conversion".

#include "platform/rtti/SystemTypes.h"

#include <cstdint>
#include <string>
#include <string_view>

using TVarType = std::uint16_t;

inline constexpr TVarType varEmpty = 0x0000;
inline constexpr TVarType varNull = 0x0001;
inline constexpr TVarType varSmallint = 0x0002;
inline constexpr TVarType varInteger = 0x0003;
inline constexpr TVarType varSingle = 0x0004;
inline constexpr TVarType varDouble = 0x0005;
inline constexpr TVarType varCurrency = 0x0006;
inline constexpr TVarType varDate = 0x0007;
inline constexpr TVarType varOleStr = 0x0008;
inline constexpr TVarType varBoolean = 0x000B;
inline constexpr TVarType varByte = 0x0011;
inline constexpr TVarType varInt64 = 0x0014;
inline constexpr TVarType varString = 0x0100;
inline constexpr TVarType varTypeMask = 0x0FFF;

class Variant {
public:
  // An empty (unassigned) variant.
  Variant() noexcept { FData.i64 = 0; }
  Variant(bool value) : FType(varBoolean) { FData.b = value; }
  Variant(short value) : FType(varSmallint) { FData.i16 = value; }
  Variant(int value) : FType(varInteger) { FData.i32 = value; }
  Variant(long value) : FType(varInt64) { FData.i64 = value; }
  Variant(long long value) : FType(varInt64) { FData.i64 = value; }
  Variant(unsigned char value) : FType(varByte) { FData.i32 = value; }
  Variant(unsigned value) : FType(varInt64) { FData.i64 = value; }
  Variant(unsigned long value) : FType(varInt64) { FData.i64 = static_cast<std::int64_t>(value); }
  Variant(float value) : FType(varSingle) { FData.f = value; }
  Variant(double value) : FType(varDouble) { FData.d = value; }
  Variant(long double value) : FType(varDouble) { FData.d = static_cast<double>(value); }
  Variant(Currency value) : FType(varCurrency) { FData.i64 = value.Scaled; }
  Variant(TDateTime value) : FType(varDate) { FData.d = value.Value; }
  Variant(const char* text) : FType(varString), FStr(text ? text : "") { FData.i64 = 0; }
  Variant(std::string text) : FType(varString), FStr(std::move(text)) { FData.i64 = 0; }
  Variant(std::string_view text) : FType(varString), FStr(text) { FData.i64 = 0; }

  // The null variant (a value that is known to be missing).
  static Variant Null() {
    Variant v;
    v.FType = varNull;
    return v;
  }

  TVarType VarType() const noexcept { return FType; }
  bool IsEmpty() const noexcept { return FType == varEmpty; }
  bool IsNull() const noexcept { return FType == varNull; }

  // Conversions. Empty converts to 0, False or ''; Null converts to nothing (EVariantError).
  // Text converts to numbers in the program's notation ('.' decimals, $hex integers),
  // to booleans from True/False (any case) or a number (non-zero is True), to dates from
  // yyyy-mm-dd[ hh:nn[:ss[.zzz]]], hh:nn[:ss] or a number of days.
  // Floats become integers by rounding halves to even; True becomes -1.
  short AsSmallint() const;
  int AsInteger() const;
  std::int64_t AsInt64() const;
  float AsSingle() const;
  double AsDouble() const;
  long double AsExtended() const;
  Currency AsCurrency() const;
  TDateTime AsDate() const;
  bool AsBoolean() const;
  // Text: integers in decimal, floats with 15 significant digits, currency with up to
  // four decimals, dates as yyyy-mm-dd hh:nn:ss, booleans as True/False, Empty as ''.
  std::string AsString() const;

  // The value converted to `type` (one of the codes above).
  Variant AsType(TVarType type) const;

  // Same type and same value.
  friend bool operator==(const Variant& a, const Variant& b) noexcept;

private:
  TVarType FType = varEmpty;
  union {
    bool b;
    std::int16_t i16;
    std::int32_t i32;
    std::int64_t i64;
    float f;
    double d;
  } FData;
  std::string FStr;
};

inline TVarType VarType(const Variant& v) { return v.VarType(); }
inline bool VarIsEmpty(const Variant& v) { return v.IsEmpty(); }
inline bool VarIsNull(const Variant& v) { return v.IsNull(); }
// The text of a variant; Empty and Null give ''.
std::string VarToStr(const Variant& v);
inline Variant VarAsType(const Variant& v, TVarType type) { return v.AsType(type); }
inline Variant Unassigned() { return Variant(); }
inline Variant Null() { return Variant::Null(); }

// Text conversions the variant uses, for whoever needs the same notation.
// A float with 15 significant digits, '.' as separator ("2.5", "1E20", "1.5E-7").
std::string FloatToStr(long double value);
// Parses a float in that notation (blanks around it are allowed); false otherwise.
bool TryStrToFloat(std::string_view text, long double& value);
// yyyy-mm-dd, then " hh:nn:ss" when there is a time (only the time when the date is 0).
std::string DateTimeToStr(TDateTime value);
bool TryStrToDateTime(std::string_view text, TDateTime& value);
