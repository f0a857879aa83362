#include "platform/vcl/AlignRules.h"

#include <algorithm>

void ConstrainSize(const TSizeLimits& limits, int& width, int& height) {
  if (limits.MinWidth > 0 && width < limits.MinWidth) {
    width = limits.MinWidth;
  } else if (limits.MaxWidth > 0 && width > limits.MaxWidth) {
    width = limits.MaxWidth;
  }
  if (limits.MinHeight > 0 && height < limits.MinHeight) {
    height = limits.MinHeight;
  } else if (limits.MaxHeight > 0 && height > limits.MaxHeight) {
    height = limits.MaxHeight;
  }
}

namespace {

// Whether `a` goes before `b` among controls of the same alignment.
bool InsertBefore(const TRect& a, const TRect& b, TAlign align) {
  switch (align) {
    case alTop: return a.Top < b.Top;
    case alBottom: return a.Bottom >= b.Bottom;
    case alLeft: return a.Left < b.Left;
    case alRight: return a.Right >= b.Right;
    default: return false;
  }
}

}  // namespace

std::vector<TRect> AlignRects(const TRect& clientRect, const std::vector<TAlignItem>& items, int changing) {
  std::vector<TRect> result;
  result.reserve(items.size());
  for (const auto& item : items) result.push_back(item.Bounds);

  TRect rest = clientRect;
  std::vector<int> order;
  for (TAlign align : {alTop, alBottom, alLeft, alRight, alClient}) {
    order.clear();
    const bool changingHere = changing >= 0 && changing < static_cast<int>(items.size()) &&
                              items[changing].Align == align && items[changing].Participates;
    if (changingHere) order.push_back(changing);
    for (int i = 0; i < static_cast<int>(items.size()); ++i) {
      const auto& item = items[i];
      if (item.Align != align || !item.Participates || i == changing) continue;
      auto pos = order.begin();
      while (pos != order.end() && !InsertBefore(item.Bounds, items[*pos].Bounds, align)) ++pos;
      order.insert(pos, i);
    }
    for (int i : order) {
      const auto& item = items[i];
      int left = item.Bounds.Left;
      int top = item.Bounds.Top;
      int width = item.Bounds.Width();
      int height = item.Bounds.Height();
      switch (align) {
        case alTop:
          left = rest.Left;
          top = rest.Top;
          width = rest.Width();
          break;
        case alBottom:
          left = rest.Left;
          top = rest.Bottom - height;
          width = rest.Width();
          break;
        case alLeft:
          left = rest.Left;
          top = rest.Top;
          height = rest.Height();
          break;
        case alRight:
          left = rest.Right - width;
          top = rest.Top;
          height = rest.Height();
          break;
        case alClient:
          left = rest.Left;
          top = rest.Top;
          width = rest.Width();
          height = rest.Height();
          break;
        default: break;
      }
      width = std::max(width, 0);
      height = std::max(height, 0);
      ConstrainSize(item.Constraints, width, height);
      result[i] = Bounds(left, top, width, height);
      // The strip taken is the size the control really got.
      switch (align) {
        case alTop: rest.Top += height; break;
        case alBottom: rest.Bottom -= height; break;
        case alLeft: rest.Left += width; break;
        case alRight: rest.Right -= width; break;
        default: break;
      }
    }
  }
  return result;
}

namespace {

void AnchorAxis(int origin, int extent, bool nearEdge, bool farEdge, int originalParent, int newParent, int& newOrigin,
                int& newExtent) {
  newOrigin = origin;
  newExtent = extent;
  if (originalParent <= 0) return;
  const int delta = newParent - originalParent;
  if (nearEdge && farEdge) {
    newExtent = std::max(0, extent + delta);
  } else if (farEdge) {
    newOrigin = origin + delta;
  } else if (!nearEdge) {
    newOrigin = MulDiv(origin + extent / 2, newParent, originalParent) - extent / 2;
  }
}

}  // namespace

TRect AnchorRect(const TRect& original, TAnchorBits anchors, TSize originalParent, TSize newParent,
                 const TSizeLimits& limits) {
  int left, width, top, height;
  AnchorAxis(original.Left, original.Width(), anchors & AnchorBit(akLeft), anchors & AnchorBit(akRight),
             originalParent.cx, newParent.cx, left, width);
  AnchorAxis(original.Top, original.Height(), anchors & AnchorBit(akTop), anchors & AnchorBit(akBottom),
             originalParent.cy, newParent.cy, top, height);
  ConstrainSize(limits, width, height);
  return Bounds(left, top, width, height);
}
