#include "platform/vcl/Buttons.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

// ---------------------------------------------------------------------------------------
// Glyphs and their layout

TGlyphLayout CalcButtonLayout(const QRect& client, QSize glyph, QSize text, TButtonLayout layout, int margin,
                              int spacing) {
  const bool horizontal = layout == blGlyphLeft || layout == blGlyphRight;
  const int clientLen = horizontal ? client.width() : client.height();
  const int glyphLen = horizontal ? glyph.width() : glyph.height();
  const int textLen = horizontal ? text.width() : text.height();
  if (glyph.isEmpty() || text.isEmpty()) spacing = 0;
  if (margin == -1) {
    if (spacing == -1) {
      const int total = glyphLen + textLen;
      margin = (clientLen - total) / 3;
      spacing = margin;
    } else {
      const int total = glyphLen + spacing + textLen;
      margin = (clientLen - total + 1) / 2;
    }
  } else if (spacing == -1) {
    const int total = clientLen - (margin + glyphLen);
    spacing = (total - textLen) / 2;
  }
  TGlyphLayout out;
  // Centred across the other axis.
  auto centre = [](int outer, int inner) { return (outer - inner + 1) / 2; };
  int gx = 0, gy = 0, tx = 0, ty = 0;
  switch (layout) {
    case blGlyphLeft:
      gx = margin;
      tx = gx + glyph.width() + spacing;
      gy = centre(client.height(), glyph.height());
      ty = centre(client.height(), text.height());
      break;
    case blGlyphRight:
      gx = client.width() - margin - glyph.width();
      tx = gx - spacing - text.width();
      gy = centre(client.height(), glyph.height());
      ty = centre(client.height(), text.height());
      break;
    case blGlyphTop:
      gy = margin;
      ty = gy + glyph.height() + spacing;
      gx = centre(client.width(), glyph.width());
      tx = centre(client.width(), text.width());
      break;
    case blGlyphBottom:
      gy = client.height() - margin - glyph.height();
      ty = gy - spacing - text.height();
      gx = centre(client.width(), glyph.width());
      tx = centre(client.width(), text.width());
      break;
  }
  out.Glyph = QRect(client.left() + gx, client.top() + gy, glyph.width(), glyph.height());
  out.Text = QRect(client.left() + tx, client.top() + ty, text.width(), text.height());
  return out;
}

QImage GlyphImage(TBitmap* glyph, int numGlyphs, TButtonState state) {
  if (!glyph || glyph->Empty()) return {};
  const QImage all = glyph->TransparentImage();
  if (all.isNull()) return {};
  numGlyphs = std::clamp(numGlyphs, 1, 4);
  const int w = all.width() / numGlyphs;
  int index = static_cast<int>(state);
  if (index >= numGlyphs) index = state == bsExclusive && numGlyphs > 2 ? 2 : 0;
  QImage image = all.copy(index * w, 0, w, all.height()).convertToFormat(QImage::Format_ARGB32);
  if (state == bsDisabled && numGlyphs < 2) {
    // No disabled image: the dark pixels embossed in highlight and shadow.
    QImage out(image.width() + 1, image.height() + 1, QImage::Format_ARGB32);
    out.fill(Qt::transparent);
    const QRgb hi = ColorToQColor(clBtnHighlight).rgb();
    const QRgb sh = ColorToQColor(clBtnShadow).rgb();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QRgb p = image.pixel(x, y);
        if (qAlpha(p) < 128 || qGray(p) >= 192) continue;
        out.setPixel(x + 1, y + 1, hi);
      }
    }
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QRgb p = image.pixel(x, y);
        if (qAlpha(p) < 128 || qGray(p) >= 192) continue;
        out.setPixel(x, y, sh);
      }
    }
    return out;
  }
  return image;
}

namespace {

// The pictures of the kinds of bit buttons, drawn in the spirit of the classic ones.
QImage KindGlyph(TBitBtnKind kind, bool enabled) {
  QImage image(18, 18, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  if (kind == bkCustom) return {};
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing, true);
  auto color = [&](QColor c) { return enabled ? c : ColorToQColor(clBtnShadow); };
  QPen pen;
  pen.setWidth(3);
  pen.setCapStyle(Qt::RoundCap);
  switch (kind) {
    case bkOK:
    case bkYes:
    case bkAll:
      pen.setColor(color(QColor(0, 128, 0)));
      p.setPen(pen);
      p.drawLine(3, 9, 7, 14);
      p.drawLine(7, 14, 15, 3);
      if (kind == bkAll) p.drawLine(1, 5, 5, 9);
      break;
    case bkCancel:
    case bkAbort:
      pen.setColor(color(QColor(192, 0, 0)));
      p.setPen(pen);
      p.drawLine(4, 4, 14, 14);
      p.drawLine(14, 4, 4, 14);
      break;
    case bkNo:
      pen.setColor(color(QColor(192, 0, 0)));
      p.setPen(pen);
      p.drawEllipse(3, 3, 12, 12);
      p.drawLine(5, 13, 13, 5);
      break;
    case bkHelp: {
      QFont f(QStringLiteral("Liberation Serif"));
      f.setPixelSize(16);
      f.setBold(true);
      p.setFont(f);
      p.setPen(color(QColor(0, 0, 128)));
      p.drawText(QRect(0, 0, 18, 18), Qt::AlignCenter, QStringLiteral("?"));
      break;
    }
    case bkClose:
      p.setPen(QPen(color(QColor(0, 0, 0)), 1));
      p.setBrush(color(QColor(128, 128, 0)));
      p.drawRect(5, 2, 8, 14);
      p.setBrush(color(QColor(255, 255, 0)));
      p.drawEllipse(10, 8, 2, 2);
      break;
    case bkRetry:
      pen.setColor(color(QColor(0, 128, 0)));
      p.setPen(pen);
      p.drawArc(3, 3, 12, 12, 30 * 16, 300 * 16);
      p.drawLine(15, 4, 15, 8);
      p.drawLine(15, 8, 11, 8);
      break;
    case bkIgnore:
      pen.setColor(color(QColor(0, 0, 128)));
      p.setPen(pen);
      p.drawLine(3, 14, 15, 4);
      p.drawLine(15, 4, 10, 4);
      p.drawLine(15, 4, 15, 9);
      break;
    default: break;
  }
  return image;
}

struct KindInfo {
  const char* Caption;
  TModalResult Result;
};

constexpr KindInfo kKinds[] = {
    {"", mrNone},      {"OK", mrOk},         {"Cancel", mrCancel}, {"&Help", mrNone},     {"&Yes", mrYes},      {"&No", mrNo},
    {"&Close", mrNone}, {"Abort", mrAbort}, {"&Retry", mrRetry}, {"&Ignore", mrIgnore}, {"&All", mrAll},
};

void PaintFace(QPainter& p, const QRect& client, TControl* c, const QImage& glyph, TButtonLayout layout, int margin,
               int spacing, bool enabled, QPoint offset) {
  const QFont& font = c->Font()->Handle();
  const QString text = c->UnicodeText();
  TCaptionLayout caption;
  caption.Disabled = !enabled;
  const QSize textSize = text.isEmpty() ? QSize() : MeasureText(font, text, caption, 0);
  const QSize glyphSize = glyph.isNull() ? QSize() : glyph.size();
  TGlyphLayout l = CalcButtonLayout(client, glyphSize, textSize, layout, margin, spacing);
  l.Glyph.translate(offset);
  l.Text.translate(offset);
  if (!glyph.isNull()) p.drawImage(l.Glyph.topLeft(), glyph);
  if (!text.isEmpty()) DrawCaption(p, l.Text, font, text, caption, ColorToQColor(c->Font()->Color()));
}

}  // namespace

// ---------------------------------------------------------------------------------------
// TBitBtn

LUMORA_CLASS_IMPL(TBitBtn) {
  PublishControlProperties(c, {"Action", "Anchors", "BiDiMode"});
  c.Property("Cancel", &TBitBtn::Cancel, &TBitBtn::SetCancel).Default(false);
  c.Property("Caption", &TBitBtn::Caption, &TBitBtn::SetCaption).Stored(&TBitBtn::IsCustomCaption);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Default", &TBitBtn::Default, &TBitBtn::SetDefault).Default(false);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("Glyph", &TBitBtn::Glyph, &TBitBtn::SetGlyph).Stored(&TBitBtn::IsCustomGlyph);
  c.Property("Kind", &TBitBtn::Kind, &TBitBtn::SetKind).Default(bkCustom);
  c.Property("Layout", &TBitBtn::Layout, &TBitBtn::SetLayout).Default(blGlyphLeft);
  c.Property("Margin", &TBitBtn::Margin, &TBitBtn::SetMargin).Default(-1);
  c.Property("ModalResult", &TBitBtn::ModalResult, &TBitBtn::SetModalResult).Default(0);
  c.Property("NumGlyphs", &TBitBtn::NumGlyphs, &TBitBtn::SetNumGlyphs).Default(1);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
  c.Property("Style", &TBitBtn::Style, &TBitBtn::SetStyle).Default(bsAutoDetect);
  c.Property("Spacing", &TBitBtn::Spacing, &TBitBtn::SetSpacing).Default(4);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible", "OnClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TBitBtn::TBitBtn(TComponent* owner) : TButton(owner) {
  FGlyph = new TBitmap();
  FGlyph->OnChange = [this](TObject*) {
    if (!FSettingKind) FGlyphChanged = true;
    Invalidate();
  };
}

TBitBtn::~TBitBtn() {
  DestroyWidget();
  delete FGlyph;
}

void TBitBtn::CreateWidget() {
  auto* b = new TOwnerDrawButton(this);
  b->setAutoDefault(false);
  b->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(b, &QPushButton::clicked, b, [this] { TMessageLoop::Instance().Guarded([this] { Click(); }); });
  AdoptWidget(b);
}

void TBitBtn::UpdateWidgetText() {
  if (auto* b = qobject_cast<QPushButton*>(Widget())) {
    // The face is painted here; Qt keeps the accelerator off its shortcut map.
    b->setText(QString());
    b->setDefault(Default());
    b->update();
  }
}

bool TBitBtn::IsCustomCaption() const { return FKind == bkCustom || FText != kKinds[FKind].Caption; }

void TBitBtn::SetKind(TBitBtnKind value) {
  if (FKind == value) return;
  FKind = value;
  if (value != bkCustom) {
    FSettingKind = true;
    if (!ComponentState().Contains(csLoading) || FText.empty() || FText == Name()) SetCaption(kKinds[value].Caption);
    SetModalResult(kKinds[value].Result);
    if (value == bkOK || value == bkYes) SetDefault(true);
    if (value == bkCancel || value == bkNo) SetCancel(true);
    FSettingKind = false;
  }
  Invalidate();
}

void TBitBtn::SetLayout(TButtonLayout value) {
  FLayout = value;
  Invalidate();
}

void TBitBtn::SetMargin(int value) {
  FMargin = std::max(value, -1);
  Invalidate();
}

void TBitBtn::SetNumGlyphs(int value) {
  FNumGlyphs = std::clamp(value, 1, 4);
  Invalidate();
}

void TBitBtn::SetSpacing(int value) {
  FSpacing = value;
  Invalidate();
}

void TBitBtn::Click() {
  if (FKind == bkClose) {
    if (TCustomForm* form = GetParentForm(this)) {
      form->Close();
      return;
    }
  }
  TButton::Click();
}

void TBitBtn::Paint(QPainter& p) {
  auto* b = qobject_cast<QPushButton*>(Widget());
  const bool down = b && b->isDown();
  QImage glyph = GlyphImage(FGlyph, FNumGlyphs, !FEnabled ? bsDisabled : down ? bsDown : bsUp);
  if (glyph.isNull() && FKind != bkCustom) glyph = KindGlyph(FKind, FEnabled);
  const QRect client(2, 2, FWidth - 4, FHeight - 4);
  PaintFace(p, client, this, glyph, FLayout, FMargin, FSpacing, FEnabled, down ? QPoint(1, 1) : QPoint());
  if (b && b->hasFocus()) {
    DrawFocusRect(p, QRect(4, 4, FWidth - 8, FHeight - 8), ColorToQColor(clBtnText));
  }
}

// ---------------------------------------------------------------------------------------
// TSpeedButton

LUMORA_CLASS_IMPL(TSpeedButton) {
  PublishControlProperties(c, {"Action"});
  c.Property("AllowAllUp", &TSpeedButton::AllowAllUp, &TSpeedButton::SetAllowAllUp).Default(false);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Constraints"});
  c.Property("GroupIndex", &TSpeedButton::GroupIndex, &TSpeedButton::SetGroupIndex).Default(0);
  c.Property("Down", &TSpeedButton::Down, &TSpeedButton::SetDown).Default(false);
  PublishControlProperties(c, {"Caption", "Enabled"});
  c.Property("Flat", &TSpeedButton::Flat, &TSpeedButton::SetFlat).Default(false);
  PublishControlProperties(c, {"Font"});
  c.Property("Glyph", &TSpeedButton::Glyph, &TSpeedButton::SetGlyph);
  c.Property("Layout", &TSpeedButton::Layout, &TSpeedButton::SetLayout).Default(blGlyphLeft);
  c.Property("Margin", &TSpeedButton::Margin, &TSpeedButton::SetMargin).Default(-1);
  c.Property("NumGlyphs", &TSpeedButton::NumGlyphs, &TSpeedButton::SetNumGlyphs).Default(1);
  PublishControlProperties(c, {"ParentFont", "ParentShowHint", "ParentBiDiMode", "PopupMenu", "ShowHint"});
  c.Property("Spacing", &TSpeedButton::Spacing, &TSpeedButton::SetSpacing).Default(4);
  c.Property("Transparent", &TSpeedButton::Transparent, &TSpeedButton::SetTransparent).Default(true);
  PublishControlProperties(c, {"Visible", "OnClick", "OnDblClick", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
}

TSpeedButton::TSpeedButton(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csDoubleClicks};
  FWidth = 23;
  FHeight = 22;
  FGlyph = new TBitmap();
  FGlyph->OnChange = [this](TObject*) { Invalidate(); };
}

TSpeedButton::~TSpeedButton() {
  DestroyWidget();
  delete FGlyph;
}

void TSpeedButton::SetAllowAllUp(bool value) {
  FAllowAllUp = value;
  UpdateExclusive();
}

void TSpeedButton::SetDown(bool value) {
  if (FGroupIndex == 0) value = false;
  if (FDown == value) return;
  if (FDown && !FAllowAllUp && !ComponentState().Contains(csLoading)) {
    // The last button down of a group stays down unless the group allows all up.
    bool another = false;
    if (FParent) {
      for (int i = 0; i < FParent->ControlCount(); ++i) {
        auto* b = dynamic_cast<TSpeedButton*>(FParent->Controls(i));
        if (b && b != this && b->FGroupIndex == FGroupIndex && b->FDown) another = true;
      }
    }
    if (!another) return;
  }
  FDown = value;
  if (value) UpdateExclusive();
  Invalidate();
}

void TSpeedButton::UpdateExclusive() {
  if (FGroupIndex == 0 || !FParent) return;
  for (int i = 0; i < FParent->ControlCount(); ++i) {
    auto* b = dynamic_cast<TSpeedButton*>(FParent->Controls(i));
    if (!b || b == this || b->FGroupIndex != FGroupIndex) continue;
    if (FDown && b->FDown) {
      b->FDown = false;
      b->Invalidate();
    }
    b->FAllowAllUp = FAllowAllUp;
  }
}

void TSpeedButton::SetFlat(bool value) {
  FFlat = value;
  Invalidate();
}

void TSpeedButton::SetGroupIndex(int value) {
  FGroupIndex = value;
  UpdateExclusive();
}

void TSpeedButton::SetLayout(TButtonLayout value) {
  FLayout = value;
  Invalidate();
}

void TSpeedButton::SetMargin(int value) {
  FMargin = std::max(value, -1);
  Invalidate();
}

void TSpeedButton::SetNumGlyphs(int value) {
  FNumGlyphs = std::clamp(value, 1, 4);
  Invalidate();
}

void TSpeedButton::SetSpacing(int value) {
  FSpacing = value;
  Invalidate();
}

void TSpeedButton::SetTransparent(bool value) {
  FTransparent = value;
  Invalidate();
}

void TSpeedButton::Click() { TGraphicControl::Click(); }

bool TSpeedButton::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
    FMouseInside = event->type() == QEvent::Enter;
    if (FFlat) Invalidate();
  }
  return TGraphicControl::WidgetEvent(watched, event);
}

void TSpeedButton::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TGraphicControl::MouseDown(button, shift, x, y);
  if (button != mbLeft || !FEnabled) return;
  FDragging = true;
  FPressed = true;
  Invalidate();
}

void TSpeedButton::MouseMove(TShiftState shift, int x, int y) {
  TGraphicControl::MouseMove(shift, x, y);
  if (!FDragging) return;
  const bool inside = x >= 0 && y >= 0 && x < FWidth && y < FHeight;
  if (inside != FPressed) {
    FPressed = inside;
    Invalidate();
  }
}

void TSpeedButton::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (FDragging && button == mbLeft) {
    FDragging = false;
    const bool inside = x >= 0 && y >= 0 && x < FWidth && y < FHeight;
    FPressed = false;
    if (inside) {
      if (FGroupIndex != 0) SetDown(!FDown);
      Invalidate();
      Click();
    } else {
      Invalidate();
    }
  }
  TGraphicControl::MouseUp(button, shift, x, y);
}

void TSpeedButton::Paint(QPainter& p) {
  QRect r(0, 0, FWidth, FHeight);
  const bool sunken = FPressed || FDown;
  if (!FTransparent || !FFlat) p.fillRect(r, ColorToQColor(clBtnFace));
  if (FFlat) {
    if (sunken) {
      Frame3D(p, r, ColorToQColor(clBtnShadow), ColorToQColor(clBtnHighlight));
    } else if (FMouseInside && FEnabled) {
      Frame3D(p, r, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
    }
  } else if (sunken) {
    Frame3D(p, r, ColorToQColor(cl3DDkShadow), ColorToQColor(clBtnHighlight));
    Frame3D(p, r, ColorToQColor(clBtnShadow), ColorToQColor(cl3DLight));
  } else {
    DrawRaisedEdge(p, r);
  }
  if (FDown && !FPressed) {
    // A button held down shows a dithered face.
    QBrush dither(ColorToQColor(clBtnHighlight), Qt::Dense4Pattern);
    p.fillRect(QRect(2, 2, FWidth - 4, FHeight - 4), dither);
  }
  const TButtonState state = !FEnabled ? bsDisabled : FPressed ? bsDown : FDown ? bsExclusive : bsUp;
  const QImage glyph = GlyphImage(FGlyph, FNumGlyphs, state);
  PaintFace(p, QRect(0, 0, FWidth, FHeight), this, glyph, FLayout, FMargin, FSpacing, FEnabled,
            sunken ? QPoint(1, 1) : QPoint());
}
