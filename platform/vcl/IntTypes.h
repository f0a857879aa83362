#pragma once
// Integer types that forms write by name (Color = clBtnFace, Cursor = crHandPoint,
// Font.Charset = RUSSIAN_CHARSET). Each is a distinct C++ type, so that its properties
// carry type information of its own name; RegisterIntegerConsts gives it the table that
// turns the names into numbers and back.

#include "platform/rtti/TypInfo.h"

#include <cstdint>

namespace vcl_detail {
TTypeInfo MakeIntegerInfo(const char* name, TOrdType ordType, std::int64_t minValue, std::int64_t maxValue);
}

// Declares `Name` as an integer type with its own type information.
#define LUMORA_INTEGER_TYPE(Name, Underlying, OrdType, MinValue, MaxValue)                         \
  enum Name : Underlying {};                                                                       \
  inline const TTypeInfo* TypeInfoOf(Name*) {                                                      \
    static const TTypeInfo info = ::vcl_detail::MakeIntegerInfo(#Name, OrdType, MinValue, MaxValue); \
    return &info;                                                                                  \
  }
