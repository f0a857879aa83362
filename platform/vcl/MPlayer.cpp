#include "platform/vcl/MPlayer.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>
#include <QPolygon>

#include "platform/vcl/Menus.h"

using enum TMPBtnType;

namespace {

constexpr TButtonSet kAllButtons =
    TButtonSet{btPlay, btPause, btStop, btNext, btPrev, btStep, btBack, btRecord, btEject};

// The colour of a button's glyph when it is coloured.
QColor GlyphColour(TMPBtnType b) {
  switch (b) {
    case btPlay: return QColor(0, 128, 0);
    case btPause: return QColor(128, 128, 0);
    case btStop: return QColor(128, 0, 0);
    case btRecord: return QColor(255, 0, 0);
    default: return QColor(0, 0, 128);
  }
}

// The glyph of a button, drawn around the centre (cx, cy).
void DrawGlyph(QPainter& p, TMPBtnType b, int cx, int cy, const QColor& c) {
  p.setPen(Qt::NoPen);
  p.setBrush(c);
  auto triangleRight = [&](int x) { p.drawPolygon(QPolygon({QPoint(x, cy - 4), QPoint(x + 4, cy), QPoint(x, cy + 4)})); };
  auto triangleLeft = [&](int x) { p.drawPolygon(QPolygon({QPoint(x + 4, cy - 4), QPoint(x, cy), QPoint(x + 4, cy + 4)})); };
  switch (b) {
    case btPlay: p.drawPolygon(QPolygon({QPoint(cx - 3, cy - 5), QPoint(cx + 3, cy), QPoint(cx - 3, cy + 5)})); break;
    case btPause:
      p.drawRect(cx - 4, cy - 4, 2, 9);
      p.drawRect(cx + 1, cy - 4, 2, 9);
      break;
    case btStop: p.drawRect(cx - 4, cy - 4, 8, 8); break;
    case btNext:
      triangleRight(cx - 4);
      p.drawRect(cx + 1, cy - 4, 2, 9);
      break;
    case btPrev:
      p.drawRect(cx - 4, cy - 4, 2, 9);
      triangleLeft(cx - 1);
      break;
    case btStep:
      triangleRight(cx - 5);
      triangleRight(cx);
      break;
    case btBack:
      triangleLeft(cx - 5);
      triangleLeft(cx);
      break;
    case btRecord: p.drawEllipse(QPoint(cx, cy), 4, 4); break;
    case btEject:
      p.drawPolygon(QPolygon({QPoint(cx - 5, cy + 1), QPoint(cx, cy - 4), QPoint(cx + 5, cy + 1)}));
      p.drawRect(cx - 5, cy + 3, 10, 2);
      break;
  }
  p.setBrush(Qt::NoBrush);
}

}  // namespace

LUMORA_CLASS_IMPL(TMediaPlayer) {
  c.Property("ColoredButtons", &TMediaPlayer::ColoredButtons, &TMediaPlayer::SetColoredButtons).Default(kAllButtons);
  PublishControlProperties(c, {"Enabled", "Visible"});
  c.Property("EnabledButtons", &TMediaPlayer::EnabledButtons, &TMediaPlayer::SetEnabledButtons).Default(kAllButtons);
  c.Property("VisibleButtons", &TMediaPlayer::VisibleButtons, &TMediaPlayer::SetVisibleButtons).Default(kAllButtons);
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoEnable", &TMediaPlayer::AutoEnable, &TMediaPlayer::SetAutoEnable).Default(true);
  c.Property("AutoOpen", &TMediaPlayer::AutoOpen, &TMediaPlayer::SetAutoOpen).Default(false);
  c.Property("AutoRewind", &TMediaPlayer::AutoRewind, &TMediaPlayer::SetAutoRewind).Default(true);
  PublishControlProperties(c, {"Constraints"});
  c.Property("DeviceType", &TMediaPlayer::DeviceType, &TMediaPlayer::SetDeviceType).Default(dtAutoSelect);
  c.Property("Display", &TMediaPlayer::Display, &TMediaPlayer::SetDisplay);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode"});
  c.Property("FileName", &TMediaPlayer::FileName, &TMediaPlayer::SetFileName);
  PublishControlProperties(c, {"ParentShowHint", "PopupMenu"});
  c.Property("Shareable", &TMediaPlayer::Shareable, &TMediaPlayer::SetShareable).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("OnClick", &TMediaPlayer::OnClick, &TMediaPlayer::OnClick);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnNotify", &TMediaPlayer::OnNotify, &TMediaPlayer::OnNotify);
  c.Property("OnPostClick", &TMediaPlayer::OnPostClick, &TMediaPlayer::OnPostClick);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TMediaPlayer::TMediaPlayer(TComponent* owner)
    : TCustomControl(owner), FColoredButtons(kAllButtons), FEnabledButtons(kAllButtons), FVisibleButtons(kAllButtons) {
  FWidth = 253;
  FHeight = 30;
  FTabStop = true;
}

void TMediaPlayer::SetColoredButtons(TButtonSet value) { FColoredButtons = value; Invalidate(); }
void TMediaPlayer::SetEnabledButtons(TButtonSet value) { FEnabledButtons = value; Invalidate(); }
void TMediaPlayer::SetVisibleButtons(TButtonSet value) { FVisibleButtons = value; Invalidate(); }
void TMediaPlayer::SetAutoEnable(bool value) { FAutoEnable = value; Invalidate(); }

void TMediaPlayer::SetDisplay(TWinControl* value) {
  if (FDisplay) FDisplay->RemoveFreeNotification(this);
  FDisplay = value;
  if (value) value->FreeNotification(this);
}

void TMediaPlayer::Notification(TComponent* component, TOperation operation) {
  TCustomControl::Notification(component, operation);
  if (operation == opRemove && component == FDisplay) FDisplay = nullptr;
}

std::vector<TMPBtnType> TMediaPlayer::Shown() const {
  std::vector<TMPBtnType> shown;
  for (int b = static_cast<int>(btPlay); b <= static_cast<int>(btEject); ++b)
    if (FVisibleButtons.Contains(static_cast<TMPBtnType>(b))) shown.push_back(static_cast<TMPBtnType>(b));
  return shown;
}

bool TMediaPlayer::ButtonEnabled(TMPBtnType button) const {
  if (!FEnabled) return false;
  // Without an open device the player enables nothing by itself while running.
  if (!Designing() && FAutoEnable) return false;
  return FEnabledButtons.Contains(button);
}

int TMediaPlayer::ButtonAt(int x) const {
  const auto shown = Shown();
  if (shown.empty()) return -1;
  const int w = (FWidth - 1) / static_cast<int>(shown.size());
  const int i = w > 0 ? x / w : -1;
  return i >= 0 && i < static_cast<int>(shown.size()) ? static_cast<int>(shown[i]) : -1;
}

void TMediaPlayer::Paint(QPainter& p) {
  p.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(clBtnFace));
  const auto shown = Shown();
  if (shown.empty()) return;
  const int w = (FWidth - 1) / static_cast<int>(shown.size());
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const TMPBtnType b = shown[i];
    QRect r(static_cast<int>(i) * w, 0, w + 1, FHeight);
    // A black outline shared with the neighbour, a raised face inside.
    p.setPen(ColorToQColor(clWindowFrame));
    p.drawRect(r.adjusted(0, 0, -1, -1));
    QRect face = r.adjusted(1, 1, -1, -1);
    const bool down = FPressed == static_cast<int>(b);
    if (down) {
      Frame3D(p, face, ColorToQColor(clBtnShadow), ColorToQColor(clBtnHighlight));
    } else {
      Frame3D(p, face, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
    }
    const int cx = r.left() + r.width() / 2 + (down ? 1 : 0), cy = r.top() + r.height() / 2 + (down ? 1 : 0);
    if (ButtonEnabled(b)) {
      DrawGlyph(p, b, cx, cy, FColoredButtons.Contains(b) ? GlyphColour(b) : QColor(0, 0, 0));
    } else {
      // Embossed: white one pixel down and right, then grey.
      DrawGlyph(p, b, cx + 1, cy + 1, ColorToQColor(clBtnHighlight));
      DrawGlyph(p, b, cx, cy, ColorToQColor(clBtnShadow));
    }
  }
}

void TMediaPlayer::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseDown(button, shift, x, y);
  const int b = ButtonAt(x);
  if (button != mbLeft || b < 0 || !ButtonEnabled(static_cast<TMPBtnType>(b))) return;
  FPressed = b;
  Invalidate();
}

void TMediaPlayer::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseUp(button, shift, x, y);
  if (FPressed < 0) return;
  const auto b = static_cast<TMPBtnType>(FPressed);
  FPressed = -1;
  Invalidate();
  if (ButtonAt(x) != static_cast<int>(b)) return;
  bool doDefault = true;
  if (OnClick) OnClick(this, b, doDefault);
  if (OnPostClick) OnPostClick(this, b);
}
