// Integer types that forms write by name carry type information of their own name.
#include "platform/vcl/IntTypes.h"

#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/ShortCuts.h"

#include <gtest/gtest.h>

namespace {

TEST(IntTypes, IntegerTypesCarryTheirOwnNames) {
  const TTypeInfo* color = TypeInfoOf(static_cast<TColor*>(nullptr));
  EXPECT_EQ(color->Kind, tkInteger);
  EXPECT_EQ(std::string(color->Name), "TColor");
  EXPECT_EQ(color->OrdType, otSLong);
  const TTypeInfo* shortCut = TypeInfoOf(static_cast<TShortCut*>(nullptr));
  EXPECT_EQ(std::string(shortCut->Name), "TShortCut");
  EXPECT_EQ(shortCut->MinValue, 0);
  EXPECT_EQ(shortCut->MaxValue, 65535);
  const TTypeInfo* cursor = TypeInfoOf(static_cast<TCursor*>(nullptr));
  EXPECT_EQ(std::string(cursor->Name), "TCursor");
  EXPECT_EQ(cursor->MinValue, -32768);
}

}  // namespace
