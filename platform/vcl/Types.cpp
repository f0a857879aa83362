#include "platform/vcl/Types.h"

#include <cstdlib>

int MulDiv(int a, int b, int c) {
  if (c == 0) return 0;
  const long long p = static_cast<long long>(a) * b;
  const long long half = std::llabs(static_cast<long long>(c)) / 2;
  const bool negative = (p < 0) != (c < 0);
  const long long q = (std::llabs(p) + half) / std::llabs(static_cast<long long>(c));
  return static_cast<int>(negative ? -q : q);
}
