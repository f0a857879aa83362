#pragma once
// Where aligned and anchored controls go inside their parent: the rules of the form
// format's controls, as a pure function over rectangles so that they can be checked
// without widgets.
//
// Aligned controls take their place in this order: alTop, alBottom, alLeft, alRight,
// alClient. Within one alignment they are ordered by position (top edge for alTop,
// bottom edge for alBottom, left edge for alLeft, right edge for alRight), ties kept in
// the order of the parent's control list, and each takes its strip off the remaining
// rectangle. alClient controls all fill what is left.

#include "platform/vcl/Types.h"

#include <cstdint>
#include <vector>

enum TAlign : std::uint8_t { alNone, alTop, alBottom, alLeft, alRight, alClient };

// The edges a control keeps its distance to when its parent is resized.
enum TAnchorKind : std::uint8_t { akLeft, akTop, akRight, akBottom };
using TAnchorBits = std::uint8_t;  // 1 << TAnchorKind
constexpr TAnchorBits AnchorBit(TAnchorKind k) { return static_cast<TAnchorBits>(1u << k); }
constexpr TAnchorBits kDefaultAnchors = AnchorBit(akLeft) | AnchorBit(akTop);

// Size limits; 0 means no limit.
struct TSizeLimits {
  int MinWidth = 0;
  int MinHeight = 0;
  int MaxWidth = 0;
  int MaxHeight = 0;
};

// A size brought within the limits: the minimum first, then the maximum.
void ConstrainSize(const TSizeLimits& limits, int& width, int& height);

struct TAlignItem {
  TAlign Align = alNone;
  TRect Bounds;           // current bounds, in the parent's client coordinates
  TSizeLimits Constraints;
  bool Participates = true;  // visible (or shown because the form is being designed)
};

// New bounds for every item. Items that are alNone or do not participate keep theirs.
// `changing` names the item that is being moved or sized, which goes first among
// items of its alignment that tie with it; -1 for none.
std::vector<TRect> AlignRects(const TRect& clientRect, const std::vector<TAlignItem>& items, int changing = -1);

// Where an unaligned control goes when its parent's client area changes from
// `originalParent` to `newParent`, given its bounds `original` at the time the parent had
// the original size. Anchored to both opposite edges it stretches; to the far edge only,
// it moves with it; to neither, its centre keeps its proportional place.
TRect AnchorRect(const TRect& original, TAnchorBits anchors, TSize originalParent, TSize newParent,
                 const TSizeLimits& limits = {});
