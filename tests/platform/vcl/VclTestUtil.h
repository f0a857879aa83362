#pragma once
// Readable failure messages for the controls layer's value types.

#include "platform/vcl/Types.h"

#include <ostream>

inline void PrintTo(const TRect& r, std::ostream* os) {
  *os << "Bounds(" << r.Left << ", " << r.Top << ", " << r.Width() << ", " << r.Height() << ")";
}

inline void PrintTo(const TPoint& p, std::ostream* os) { *os << "Point(" << p.X << ", " << p.Y << ")"; }
