#include "platform/vcl/Gauges.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"
#include <QPainterPath>

#include <algorithm>
#include <cmath>

LUMORA_CLASS_IMPL(TGauge) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("BackColor", &TGauge::BackColor, &TGauge::SetBackColor).Default(clWhite);
  c.Property("BorderStyle", &TGauge::BorderStyle, &TGauge::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Enabled"});
  c.Property("ForeColor", &TGauge::ForeColor, &TGauge::SetForeColor).Default(clBlack);
  PublishControlProperties(c, {"Font"});
  c.Property("Kind", &TGauge::Kind, &TGauge::SetKind).Default(gkHorizontalBar);
  c.Property("MinValue", &TGauge::MinValue, &TGauge::SetMinValue).Default(0);
  c.Property("MaxValue", &TGauge::MaxValue, &TGauge::SetMaxValue).Default(100);
  PublishControlProperties(c, {"ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("Progress", &TGauge::Progress, &TGauge::SetProgress).NoDefault();
  c.Property("ShowText", &TGauge::ShowText, &TGauge::SetShowText).Default(true);
  PublishControlProperties(c, {"ShowHint", "Visible", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp", "OnStartDrag"});
}

TGauge::TGauge(TComponent* owner) : TGraphicControl(owner) {
  FWidth = 100;
  FHeight = 100;
}

void TGauge::SetKind(TGaugeKind value) {
  FKind = value;
  Invalidate();
}
void TGauge::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  Invalidate();
}
void TGauge::SetForeColor(TColor value) {
  FForeColor = value;
  Invalidate();
}
void TGauge::SetBackColor(TColor value) {
  FBackColor = value;
  Invalidate();
}
void TGauge::SetShowText(bool value) {
  FShowText = value;
  Invalidate();
}

// The range's ends move Progress inside it; Progress stays inside the range.
void TGauge::SetMinValue(int value) {
  FMinValue = value;
  if (!ComponentState().Contains(csLoading)) FProgress = std::max(FProgress, FMinValue);
  Invalidate();
}
void TGauge::SetMaxValue(int value) {
  FMaxValue = value;
  if (!ComponentState().Contains(csLoading)) FProgress = std::min(FProgress, FMaxValue);
  Invalidate();
}
void TGauge::SetProgress(int value) {
  if (!ComponentState().Contains(csLoading)) value = std::clamp(value, FMinValue, std::max(FMinValue, FMaxValue));
  FProgress = value;
  Invalidate();
}

int TGauge::PercentDone() const {
  const long long range = static_cast<long long>(FMaxValue) - FMinValue;
  if (range <= 0) return 0;
  return static_cast<int>((static_cast<long long>(FProgress) - FMinValue) * 100 / range);
}

void TGauge::Paint(QPainter& p) {
  QRect r(0, 0, FWidth, FHeight);
  if (FBorderStyle == BorderStyleOf(bsSingle)) {
    p.setPen(ColorToQColor(clBlack));
    p.setBrush(Qt::NoBrush);
    p.drawRect(r.adjusted(0, 0, -1, -1));
    r.adjust(1, 1, -1, -1);
  }
  if (r.isEmpty()) return;
  const QColor fore = ColorToQColor(FForeColor);
  const QColor back = ColorToQColor(FBackColor);
  const int percent = std::clamp(PercentDone(), 0, 100);
  QRect done;  // where the fore colour lies, for the text's inverse
  switch (FKind) {
    case gkText:
      p.fillRect(r, back);
      break;
    case gkHorizontalBar:
      p.fillRect(r, back);
      done = QRect(r.left(), r.top(), r.width() * percent / 100, r.height());
      p.fillRect(done, fore);
      break;
    case gkVerticalBar: {
      p.fillRect(r, back);
      const int h = r.height() * percent / 100;
      done = QRect(r.left(), r.bottom() + 1 - h, r.width(), h);
      p.fillRect(done, fore);
      break;
    }
    case gkPie:
    case gkNeedle: {
      p.fillRect(r, ColorToQColor(Color()));
      p.setRenderHint(QPainter::Antialiasing, false);
      const QRect ellipse = r.adjusted(0, 0, -1, -1);
      p.setPen(ColorToQColor(clBlack));
      p.setBrush(back);
      if (FKind == gkPie) {
        p.drawEllipse(ellipse);
        if (percent > 0) {
          p.setBrush(fore);
          // Clockwise from twelve o'clock.
          p.drawPie(ellipse, 90 * 16, -percent * 360 * 16 / 100);
        }
      } else {
        // The upper half of the ellipse, the needle from its centre.
        const QRect full(r.left(), r.top(), r.width() - 1, (r.height() - 1) * 2);
        p.drawPie(full, 0, 180 * 16);
        const double angle = M_PI * (1.0 - percent / 100.0);
        const QPointF centre(full.center().x(), r.bottom());
        p.setPen(fore);
        p.drawLine(centre, QPointF(centre.x() + std::cos(angle) * full.width() / 2.0,
                                   centre.y() - std::sin(angle) * (full.height() / 2.0)));
      }
      break;
    }
  }
  if (!FShowText) return;
  const QString text = QString::number(percent) + "%";
  p.setFont(Font()->Handle());
  p.save();
  p.setClipRect(r);
  p.setPen(fore);
  p.drawText(r, Qt::AlignCenter, text);
  if (!done.isEmpty()) {
    // Over the filled part the text takes the background colour.
    p.setClipRect(done);
    p.setPen(back);
    p.drawText(r, Qt::AlignCenter, text);
  }
  p.restore();
}
