#include "platform/vcl/IntTypes.h"

namespace vcl_detail {
TTypeInfo MakeIntegerInfo(const char* name, TOrdType ordType, std::int64_t minValue, std::int64_t maxValue) {
  TTypeInfo info;
  info.Kind = tkInteger;
  info.Name = name;
  info.OrdType = ordType;
  info.MinValue = minValue;
  info.MaxValue = maxValue;
  return info;
}
}  // namespace vcl_detail
