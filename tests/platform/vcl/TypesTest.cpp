// The value types of the controls layer.
#include "platform/vcl/Types.h"

#include <gtest/gtest.h>

TEST(Types, MulDivRoundsHalvesAwayFromZero) {
  EXPECT_EQ(MulDiv(3, 1, 2), 2);
  EXPECT_EQ(MulDiv(-3, 1, 2), -2);
  EXPECT_EQ(MulDiv(10, 96, 72), 13);
  EXPECT_EQ(MulDiv(8, 96, 72), 11);
  EXPECT_EQ(MulDiv(1, 2, 0), 0);
}
