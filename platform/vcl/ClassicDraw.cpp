#include "platform/vcl/ClassicDraw.h"

#include <QFontMetrics>
#include <QRegularExpression>

#include <vector>

void Frame3D(QPainter& p, QRect& rect, const QColor& topLeft, const QColor& bottomRight, int width) {
  for (int i = 0; i < width && rect.width() > 0 && rect.height() > 0; ++i) {
    const int l = rect.left(), t = rect.top(), r = rect.right(), b = rect.bottom();
    p.setPen(topLeft);
    p.drawLine(l, b, l, t);
    p.drawLine(l, t, r, t);
    p.setPen(bottomRight);
    p.drawLine(r, t, r, b);
    p.drawLine(r, b, l, b);
    rect.adjust(1, 1, -1, -1);
  }
}

void DrawSunkenEdge(QPainter& p, QRect& rect) {
  Frame3D(p, rect, ColorToQColor(clBtnShadow), ColorToQColor(clBtnHighlight));
  Frame3D(p, rect, ColorToQColor(cl3DDkShadow), ColorToQColor(cl3DLight));
}

void DrawRaisedEdge(QPainter& p, QRect& rect) {
  Frame3D(p, rect, ColorToQColor(cl3DLight), ColorToQColor(cl3DDkShadow));
  Frame3D(p, rect, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
}

void DrawEtchedRect(QPainter& p, const QRect& rect) {
  QRect outer = rect.adjusted(1, 1, 0, 0);
  Frame3D(p, outer, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnHighlight));
  QRect inner = rect.adjusted(0, 0, -1, -1);
  Frame3D(p, inner, ColorToQColor(clBtnShadow), ColorToQColor(clBtnShadow));
}

namespace {

struct Line {
  QString Text;
  int Underline = -1;  // index of the accelerator character in Text
};

// Splits the text into lines at line breaks and, with word wrap, at blanks.
std::vector<Line> LayoutLines(const QFont& font, const QString& text, const TCaptionLayout& layout, int maxWidth) {
  // The accelerator marks come out first; the underline goes with the character.
  QString plain;
  int underline = -1;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (layout.ShowAccelChar && text[i] == QLatin1Char('&')) {
      if (i + 1 < text.size() && text[i + 1] == QLatin1Char('&')) {
        plain += QLatin1Char('&');
        ++i;
      } else if (i + 1 < text.size()) {
        underline = static_cast<int>(plain.size());
      }
      continue;
    }
    plain += text[i];
  }
  const QFontMetrics fm(font);
  std::vector<Line> lines;
  int offset = 0;
  auto push = [&](const QString& s, int start) {
    Line line;
    line.Text = s;
    if (underline >= start && underline < start + s.size()) line.Underline = underline - start;
    lines.push_back(line);
  };
  static const QRegularExpression lineBreak(QStringLiteral("\r\n|\n|\r"));
  const QStringList paragraphs = plain.split(lineBreak);
  for (const QString& para : paragraphs) {
    if (!layout.WordWrap || maxWidth <= 0 || fm.horizontalAdvance(para) <= maxWidth) {
      push(para, offset);
      offset += static_cast<int>(para.size()) + 1;
      continue;
    }
    int start = 0;
    while (start < para.size()) {
      int end = start;
      int lastBreak = -1;
      while (end < para.size()) {
        if (para[end] == QLatin1Char(' ')) lastBreak = end;
        if (fm.horizontalAdvance(para.mid(start, end - start + 1)) > maxWidth) break;
        ++end;
      }
      if (end >= para.size()) {
        push(para.mid(start), offset + start);
        break;
      }
      // Break after the last blank that fits; a word longer than the line is cut.
      const int cut = lastBreak >= start ? lastBreak : std::max(end, start + 1);
      push(para.mid(start, cut - start), offset + start);
      start = cut;
      while (start < para.size() && para[start] == QLatin1Char(' ')) ++start;
    }
    offset += static_cast<int>(para.size()) + 1;
  }
  return lines;
}

}  // namespace

QSize MeasureText(const QFont& font, const QString& text, const TCaptionLayout& layout, int maxWidth) {
  const QFontMetrics fm(font);
  const int cell = FontCellHeight(font);
  QString t = text;
  if (t.isEmpty() || (layout.ShowAccelChar && t == QLatin1String("&"))) t += QLatin1Char(' ');
  const auto lines = LayoutLines(font, t, layout, maxWidth);
  int width = 0;
  for (const auto& l : lines) width = std::max(width, fm.horizontalAdvance(l.Text));
  return QSize(width, cell * static_cast<int>(lines.size()));
}

void DrawCaption(QPainter& p, const QRect& rect, const QFont& font, const QString& text, const TCaptionLayout& layout,
                 const QColor& color) {
  const auto lines = LayoutLines(font, text, layout, rect.width());
  const QFontMetrics fm(font);
  const int cell = FontCellHeight(font);
  // The baseline sits where the classic cell puts it: the cell's ascent below its top.
  const int extra = cell - (fm.ascent() + fm.descent());
  const int ascent = fm.ascent() + std::max(0, extra - extra / 3);
  const int total = cell * static_cast<int>(lines.size());
  int y = rect.top();
  if (layout.VAlign == TTextVAlign::Center) y += (rect.height() - total) / 2;
  if (layout.VAlign == TTextVAlign::Bottom) y += rect.height() - total;
  p.save();
  p.setFont(font);
  p.setClipRect(rect);
  for (const auto& line : lines) {
    const int w = fm.horizontalAdvance(line.Text);
    int x = rect.left();
    if (layout.HAlign == TTextHAlign::Right) x = rect.right() + 1 - w;
    if (layout.HAlign == TTextHAlign::Center) x = rect.left() + (rect.width() - w) / 2;
    auto draw = [&](int dx, int dy, const QColor& c) {
      p.setPen(c);
      p.drawText(x + dx, y + ascent + dy, line.Text);
      if (line.Underline >= 0 && line.Underline < line.Text.size()) {
        const int ux = x + dx + fm.horizontalAdvance(line.Text.left(line.Underline));
        const int uw = fm.horizontalAdvance(line.Text.at(line.Underline));
        const int uy = y + ascent + dy + 1;
        p.drawLine(ux, uy, ux + uw - 1, uy);
      }
    };
    if (layout.Disabled) {
      draw(1, 1, ColorToQColor(clBtnHighlight));
      draw(0, 0, ColorToQColor(clBtnShadow));
    } else {
      draw(0, 0, color);
    }
    y += cell;
  }
  p.restore();
}

void DrawDesignFrame(QPainter& p, int width, int height) {
  p.save();
  p.setPen(QPen(Qt::black, 1, Qt::DashLine));
  p.setBrush(Qt::NoBrush);
  p.drawRect(0, 0, width - 1, height - 1);
  p.restore();
}

void DrawFocusRect(QPainter& p, const QRect& rect, const QColor& color) {
  if (rect.width() <= 0 || rect.height() <= 0) return;
  p.save();
  p.setPen(Qt::NoPen);
  const QBrush brush(color);
  auto dot = [&](int x, int y) {
    if (((x - rect.left()) + (y - rect.top())) % 2 == 0) p.fillRect(x, y, 1, 1, brush);
  };
  for (int x = rect.left(); x <= rect.right(); ++x) {
    dot(x, rect.top());
    dot(x, rect.bottom());
  }
  for (int y = rect.top() + 1; y < rect.bottom(); ++y) {
    dot(rect.left(), y);
    dot(rect.right(), y);
  }
  p.restore();
}
