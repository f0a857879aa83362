#pragma once
// Drawing in the classic Windows manner: 3D frames and bevels, etched lines, and text
// laid out as the form designer laid it out (alignment, word wrap, '&' accelerators,
// the embossed look of disabled text).

#include "platform/vcl/Graphics.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

// A frame of `width` pixels along the inside of `rect`: `topLeft` on the top and left
// edges, `bottomRight` on the others. `rect` shrinks by the frame.
void Frame3D(QPainter& p, QRect& rect, const QColor& topLeft, const QColor& bottomRight, int width = 1);

// The classic edges: sunken (3D edit border), raised (button), etched (group box).
void DrawSunkenEdge(QPainter& p, QRect& rect);
void DrawRaisedEdge(QPainter& p, QRect& rect);
void DrawEtchedRect(QPainter& p, const QRect& rect);
// The dotted frame of the focused item: every other pixel of the rectangle's edge.
void DrawFocusRect(QPainter& p, const QRect& rect, const QColor& color);

// The dashed outline that shows the extent of a control while it is designed (one
// that is invisible at run time, or shows nothing of its own).
void DrawDesignFrame(QPainter& p, int width, int height);

enum class TTextHAlign { Left, Right, Center };
enum class TTextVAlign { Top, Center, Bottom };

struct TCaptionLayout {
  TTextHAlign HAlign = TTextHAlign::Left;
  TTextVAlign VAlign = TTextVAlign::Top;
  bool WordWrap = false;
  bool ShowAccelChar = true;  // '&' underlines the next character; "&&" is one '&'
  bool Disabled = false;      // embossed in the highlight and shadow colours
};

// The size the text takes (the cell height of the font per line); with word wrap the
// lines break at `maxWidth`. Empty text measures like one blank.
QSize MeasureText(const QFont& font, const QString& text, const TCaptionLayout& layout, int maxWidth);

// Draws the text inside `rect` in `color`.
void DrawCaption(QPainter& p, const QRect& rect, const QFont& font, const QString& text, const TCaptionLayout& layout,
                 const QColor& color);
