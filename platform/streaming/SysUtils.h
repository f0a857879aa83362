#pragma once
// The runtime's exception classes and the small text helpers every layer uses.
// Errors are exceptions carrying a message text; the class says the error's role.

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>

// Root of every error the program raises on purpose.
class Exception : public std::exception {
public:
  explicit Exception(std::string message) : FMessage(std::move(message)) {}
  const std::string& Message() const noexcept { return FMessage; }
  void SetMessage(std::string message) { FMessage = std::move(message); }
  const char* what() const noexcept override { return FMessage.c_str(); }

private:
  std::string FMessage;
};

#define LUMORA_DECLARE_EXCEPTION(Name, Base) \
  class Name : public Base {                 \
  public:                                    \
    using Base::Base;                        \
  };

LUMORA_DECLARE_EXCEPTION(EConvertError, Exception)      // text that is not a number, a date, ...
LUMORA_DECLARE_EXCEPTION(EParserError, Exception)       // form text that does not parse ("... on line N")
LUMORA_DECLARE_EXCEPTION(EStreamError, Exception)       // streams and files
LUMORA_DECLARE_EXCEPTION(EFCreateError, EStreamError)   // a file that cannot be created
LUMORA_DECLARE_EXCEPTION(EFOpenError, EStreamError)     // a file that cannot be opened
LUMORA_DECLARE_EXCEPTION(EFilerError, EStreamError)     // reading or writing components
LUMORA_DECLARE_EXCEPTION(EReadError, EFilerError)       // a stream that ends early or holds a bad value
LUMORA_DECLARE_EXCEPTION(EWriteError, EFilerError)
LUMORA_DECLARE_EXCEPTION(EClassNotFound, EFilerError)   // a class name the registry does not know
LUMORA_DECLARE_EXCEPTION(EInvalidImage, EFilerError)    // no resource header or no signature
LUMORA_DECLARE_EXCEPTION(EMethodNotFound, EFilerError)
LUMORA_DECLARE_EXCEPTION(EInvalidOperation, Exception)
LUMORA_DECLARE_EXCEPTION(EListError, Exception)
LUMORA_DECLARE_EXCEPTION(EStringListError, Exception)
LUMORA_DECLARE_EXCEPTION(EComponentError, Exception)
LUMORA_DECLARE_EXCEPTION(EPropertyError, Exception)
LUMORA_DECLARE_EXCEPTION(EVariantError, Exception)
LUMORA_DECLARE_EXCEPTION(EOutOfResources, Exception)

namespace sysutils_detail {
struct FormatArg {
  enum Kind { Int, UInt, Float, Text } kind;
  long long i = 0;
  unsigned long long u = 0;
  double f = 0;
  std::string_view s;
};

template <class T>
FormatArg MakeArg(const T& v) {
  FormatArg a{FormatArg::Int, 0, 0, 0, {}};
  if constexpr (std::is_same_v<T, bool>) {
    a.i = v ? 1 : 0;
  } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
    a.i = static_cast<long long>(v);
  } else if constexpr (std::is_integral_v<T>) {
    a.kind = FormatArg::UInt;
    a.u = static_cast<unsigned long long>(v);
  } else if constexpr (std::is_enum_v<T>) {
    a.i = static_cast<long long>(v);
  } else if constexpr (std::is_floating_point_v<T>) {
    a.kind = FormatArg::Float;
    a.f = static_cast<double>(v);
  } else {
    a.kind = FormatArg::Text;
    a.s = std::string_view(v);
  }
  return a;
}

std::string FormatArgs(std::string_view format, const FormatArg* args, std::size_t count);
}  // namespace sysutils_detail

// Fills a message template the way the runtime's resource strings expect:
// %s text, %d signed, %u unsigned, %x hex, %g float, %% a percent sign. Width and
// precision ("%.2d", "%8s") are honoured. A missing argument leaves the directive as is.
template <class... Args>
std::string Format(std::string_view format, const Args&... args) {
  if constexpr (sizeof...(Args) == 0) {
    return sysutils_detail::FormatArgs(format, nullptr, 0);
  } else {
    const sysutils_detail::FormatArg packed[] = {sysutils_detail::MakeArg(args)...};
    return sysutils_detail::FormatArgs(format, packed, sizeof...(Args));
  }
}

// ASCII-only case mapping, as the runtime's UpperCase/LowerCase/CompareText do.
std::string UpperCase(std::string_view s);
std::string LowerCase(std::string_view s);
int CompareText(std::string_view a, std::string_view b);   // <0, 0, >0 ignoring ASCII case
bool SameText(std::string_view a, std::string_view b);
std::string Trim(std::string_view s);                     // drops characters <= ' ' at both ends
std::string IntToStr(long long value);
long long StrToInt(std::string_view s);                   // decimal or $hex; EConvertError otherwise
bool TryStrToInt(std::string_view s, long long& value);
