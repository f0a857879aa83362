#pragma once
// Points, sizes and rectangles in the runtime's shape: a rectangle keeps its right and
// bottom edges (exclusive), as window rectangles do.

#include <cstdint>

struct TPoint {
  int X = 0;
  int Y = 0;
  friend bool operator==(const TPoint&, const TPoint&) = default;
};

struct TSize {
  int cx = 0;
  int cy = 0;
  friend bool operator==(const TSize&, const TSize&) = default;
};

struct TRect {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;
  int Width() const { return Right - Left; }
  int Height() const { return Bottom - Top; }
  friend bool operator==(const TRect&, const TRect&) = default;
};

inline TPoint Point(int x, int y) { return TPoint{x, y}; }
inline TRect Rect(int left, int top, int right, int bottom) { return TRect{left, top, right, bottom}; }
inline TRect Bounds(int left, int top, int width, int height) { return TRect{left, top, left + width, top + height}; }

// a * b / c rounded to the nearest integer, halves away from zero; 0 when c is 0.
int MulDiv(int a, int b, int c);
