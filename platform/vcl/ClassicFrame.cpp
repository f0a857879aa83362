#include "platform/vcl/ClassicFrame.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/SystemMenu.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>

namespace {

// The caption buttons: minimise, maximise, restore, close.
enum class TGlyph { Minimize, Maximize, Restore, Close };

void DrawCaptionButton(QPainter& p, const QRect& r, TGlyph kind, bool enabled, bool pressed) {
  QRect edge = r;
  if (pressed) {
    // Held down: the edge turned inside out, the glyph one pixel down and right.
    Frame3D(p, edge, ColorToQColor(cl3DDkShadow), ColorToQColor(clBtnHighlight));
    Frame3D(p, edge, ColorToQColor(clBtnShadow), ColorToQColor(cl3DLight));
  } else {
    DrawRaisedEdge(p, edge);
  }
  p.fillRect(edge, ColorToQColor(clBtnFace));
  p.save();
  if (pressed) p.translate(1, 1);
  auto glyph = [&](const QColor& color) {
    p.setPen(color);
    const int cx = r.center().x(), cy = r.center().y();
    switch (kind) {
      case TGlyph::Minimize: p.fillRect(QRect(r.left() + 4, r.bottom() - 4, 6, 2), color); break;
      case TGlyph::Maximize:
        p.drawRect(QRect(r.left() + 3, r.top() + 2, 8, 8));
        p.drawLine(r.left() + 3, r.top() + 3, r.left() + 11, r.top() + 3);
        break;
      case TGlyph::Restore:
        // Two windows, the back one up and to the right.
        p.drawRect(QRect(r.left() + 5, r.top() + 2, 5, 5));
        p.drawLine(r.left() + 5, r.top() + 3, r.left() + 10, r.top() + 3);
        p.fillRect(QRect(r.left() + 3, r.top() + 5, 6, 6), ColorToQColor(clBtnFace));
        p.drawRect(QRect(r.left() + 3, r.top() + 5, 5, 5));
        p.drawLine(r.left() + 3, r.top() + 6, r.left() + 8, r.top() + 6);
        break;
      case TGlyph::Close:
        for (int d = 0; d < 2; ++d) {
          p.drawLine(cx - 3 + d, cy - 3, cx + 3 + d, cy + 3);
          p.drawLine(cx - 3 + d, cy + 3, cx + 3 + d, cy - 3);
        }
        break;
    }
  };
  if (!enabled) {
    // Embossed: the glyph in white one pixel down and right, then in grey.
    p.save();
    p.translate(1, 1);
    glyph(ColorToQColor(clBtnHighlight));
    p.restore();
  }
  glyph(ColorToQColor(enabled ? clBtnText : clGrayText));
  p.restore();
}

// Alt+Space opens the system menu of a window with a drawn frame and Alt+F4 closes it,
// whatever the window's controls do with keys.
class TFrameKeys : public QObject {
public:
  static void Install() {
    static TFrameKeys* keys = nullptr;
    if (!keys) keys = new TFrameKeys(QCoreApplication::instance());
    // Installed again, the filter goes first, before the program's own look at keys.
    QCoreApplication::instance()->installEventFilter(keys);
  }

protected:
  explicit TFrameKeys(QObject* parent) : QObject(parent) {}
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
    auto* key = static_cast<QKeyEvent*>(event);
    // A move or size by keys takes every key until it ends.
    if (auto* frame = qobject_cast<TClassicFrame*>(QWidget::keyboardGrabber()); frame && frame->KeyboardDragging()) {
      if (event->type() == QEvent::KeyPress) frame->DragKey(key->key());
      return true;
    }
    if (event->type() != QEvent::KeyPress) return false;
    const Qt::KeyboardModifiers mods = key->modifiers() & ~Qt::KeypadModifier;
    const bool altSpace = key->key() == Qt::Key_Space && mods == Qt::AltModifier;
    const bool altF4 = key->key() == Qt::Key_F4 && mods == Qt::AltModifier;
    if (!altSpace && !altF4) return false;
    TClassicFrame* frame = FrameOf(watched);
    if (!frame || !frame->Form()) return false;
    if (altSpace) {
      frame->PopupSystemMenu();
    } else {
      PostSysCommand(frame->Form(), SC_CLOSE);
    }
    return true;
  }

private:
  static TClassicFrame* FrameOf(QObject* watched) {
    QWidget* window = nullptr;
    if (watched->isWidgetType()) {
      window = static_cast<QWidget*>(watched)->window();
    } else if (watched->isWindowType()) {
      for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->windowHandle() == watched) window = w;
      }
    }
    return window ? window->findChild<TClassicFrame*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
  }
};

Qt::Edges EdgesOf(TFrameHit hit) {
  switch (hit) {
    case TFrameHit::Left: return Qt::LeftEdge;
    case TFrameHit::Right: return Qt::RightEdge;
    case TFrameHit::Top: return Qt::TopEdge;
    case TFrameHit::Bottom: return Qt::BottomEdge;
    case TFrameHit::TopLeft: return Qt::TopEdge | Qt::LeftEdge;
    case TFrameHit::TopRight: return Qt::TopEdge | Qt::RightEdge;
    case TFrameHit::BottomLeft: return Qt::BottomEdge | Qt::LeftEdge;
    case TFrameHit::BottomRight: return Qt::BottomEdge | Qt::RightEdge;
    default: return {};
  }
}

bool IsSizeable(const TCustomForm* form) {
  return (form->BorderStyle() == bsSizeable || form->BorderStyle() == bsSizeToolWin) &&
         form->WindowState() == wsNormal;
}

bool CanMaximize(const TCustomForm* form) {
  return form->BorderStyle() == bsSizeable && form->BorderIcons().Contains(biSystemMenu) &&
         form->BorderIcons().Contains(biMaximize);
}

}  // namespace

TClassicFrameLayout ClassicFrameLayout(const TCustomForm* form, QSize size) {
  TClassicFrameLayout l;
  l.Border = form->FrameWidth();
  l.Caption = form->CaptionHeight();
  if (l.Caption <= 0) return l;
  const int fw = l.Border;
  l.Bar = QRect(fw, fw, size.width() - 2 * fw, l.Caption - 1);
  const bool small = l.Caption < 19;
  const TBorderIcons icons = form->BorderIcons();
  int textLeft = l.Bar.left() + 3;
  if (icons.Contains(biSystemMenu) && form->BorderStyle() != bsDialog && !small) {
    const int iconSize = 16;
    l.Icon = QRect(l.Bar.left() + 1, l.Bar.top() + (l.Bar.height() - iconSize) / 2, iconSize, iconSize);
    textLeft = l.Icon.right() + 3;
  }
  // Buttons from the right: close, then maximise and minimise with a gap.
  const int bw = small ? 12 : 16, bh = small ? 10 : 14;
  int buttonsLeft = l.Bar.right();
  if (icons.Contains(biSystemMenu)) {
    l.CloseButton = QRect(l.Bar.right() - bw, l.Bar.top() + (l.Bar.height() - bh) / 2, bw, bh);
    buttonsLeft = l.CloseButton.left();
    const bool minMax = !small && form->BorderStyle() != bsDialog &&
                        (icons.Contains(biMinimize) || icons.Contains(biMaximize));
    if (minMax) {
      l.MaxButton = QRect(l.CloseButton.left() - 2 - bw, l.CloseButton.top(), bw, bh);
      l.MinButton = QRect(l.MaxButton.left() - bw, l.CloseButton.top(), bw, bh);
      l.MaxEnabled = icons.Contains(biMaximize) && form->BorderStyle() == bsSizeable;
      l.MinEnabled = icons.Contains(biMinimize);
      buttonsLeft = l.MinButton.left();
    }
  }
  l.Text = QRect(textLeft, l.Bar.top(), std::max(0, buttonsLeft - textLeft - 2), l.Bar.height());
  return l;
}

void DrawClassicFrame(QPainter& p, const TCustomForm* form, QSize size, bool active, TFrameHit pressed) {
  const TClassicFrameLayout l = ClassicFrameLayout(form, size);
  if (l.Border > 0) {
    QRect frame(QPoint(0, 0), size);
    DrawRaisedEdge(p, frame);
    // Between the edge and the inside, the border is the face colour.
    const QColor face = ColorToQColor(clBtnFace);
    const int inner = l.Border - 2;
    if (inner > 0) {
      p.fillRect(QRect(2, 2, size.width() - 4, inner), face);
      p.fillRect(QRect(2, size.height() - 2 - inner, size.width() - 4, inner), face);
      p.fillRect(QRect(2, 2, inner, size.height() - 4), face);
      p.fillRect(QRect(size.width() - 2 - inner, 2, inner, size.height() - 4), face);
    }
  }
  if (l.Caption <= 0) return;
  // The line under the caption bar.
  p.fillRect(QRect(l.Bar.left(), l.Bar.bottom() + 1, l.Bar.width(), 1), ColorToQColor(clBtnFace));
  QLinearGradient gradient(l.Bar.topLeft(), l.Bar.topRight());
  gradient.setColorAt(0, ColorToQColor(active ? clActiveCaption : clInactiveCaption));
  gradient.setColorAt(1, ColorToQColor(active ? clGradientActiveCaption : clGradientInactiveCaption));
  p.fillRect(l.Bar, gradient);
  if (!l.Icon.isEmpty()) {
    TIcon* icon = form->Icon();
    if (icon && !icon->Empty() && !icon->Image().isNull()) {
      p.drawImage(l.Icon, icon->Image());
    } else {
      // The default application icon: a small window.
      p.fillRect(l.Icon.adjusted(1, 2, -1, -2), Qt::white);
      p.setPen(Qt::black);
      p.drawRect(l.Icon.adjusted(1, 2, -2, -3));
      p.fillRect(QRect(l.Icon.left() + 2, l.Icon.top() + 3, l.Icon.width() - 4, 2), ColorToQColor(clActiveCaption));
    }
  }
  if (!l.CloseButton.isEmpty()) DrawCaptionButton(p, l.CloseButton, TGlyph::Close, true, pressed == TFrameHit::CloseButton);
  if (!l.MaxButton.isEmpty()) {
    const TGlyph glyph = form->WindowState() == wsMaximized ? TGlyph::Restore : TGlyph::Maximize;
    DrawCaptionButton(p, l.MaxButton, glyph, l.MaxEnabled, pressed == TFrameHit::MaxButton);
  }
  if (!l.MinButton.isEmpty()) DrawCaptionButton(p, l.MinButton, TGlyph::Minimize, l.MinEnabled, pressed == TFrameHit::MinButton);
  TFontRequest request;
  request.Name = "Tahoma";
  request.Height = -11;
  request.Bold = true;
  TCaptionLayout layout;
  layout.ShowAccelChar = false;
  layout.VAlign = TTextVAlign::Center;
  DrawCaption(p, l.Text, ResolveFont(request), form->UnicodeText(), layout,
              ColorToQColor(active ? clCaptionText : clInactiveCaptionText));
}

// ---------------------------------------------------------------------------------------
// TClassicFrame

TClassicFrame::TClassicFrame(TCustomForm* form, QWidget* window) : QWidget(window), FForm(form) {
  setObjectName(QStringLiteral("ClassicFrame"));
  setAttribute(Qt::WA_OpaquePaintEvent, false);
  setMouseTracking(true);
  TFrameKeys::Install();
}

TClassicFrameLayout TClassicFrame::Layout() const {
  return FForm ? ClassicFrameLayout(FForm, size()) : TClassicFrameLayout();
}

TFrameHit TClassicFrame::HitTest(QPoint pos) const {
  if (!FForm) return TFrameHit::Client;
  const TClassicFrameLayout l = Layout();
  if (l.CloseButton.contains(pos)) return TFrameHit::CloseButton;
  if (l.MaxButton.contains(pos)) return TFrameHit::MaxButton;
  if (l.MinButton.contains(pos)) return TFrameHit::MinButton;
  if (l.Icon.contains(pos)) return TFrameHit::SysMenu;
  if (IsSizeable(FForm) && l.Border > 0) {
    // The corners reach along the edges as far as the caption bar is high.
    const int corner = std::max(l.Caption, 16);
    const bool left = pos.x() < l.Border, right = pos.x() >= width() - l.Border;
    const bool top = pos.y() < l.Border, bottom = pos.y() >= height() - l.Border;
    const bool nearLeft = pos.x() < corner, nearRight = pos.x() >= width() - corner;
    const bool nearTop = pos.y() < corner, nearBottom = pos.y() >= height() - corner;
    if ((top && nearLeft) || (left && nearTop)) return TFrameHit::TopLeft;
    if ((top && nearRight) || (right && nearTop)) return TFrameHit::TopRight;
    if ((bottom && nearLeft) || (left && nearBottom)) return TFrameHit::BottomLeft;
    if ((bottom && nearRight) || (right && nearBottom)) return TFrameHit::BottomRight;
    if (left) return TFrameHit::Left;
    if (right) return TFrameHit::Right;
    if (top) return TFrameHit::Top;
    if (bottom) return TFrameHit::Bottom;
  }
  if (l.Caption > 0 && pos.y() >= l.Border && pos.y() < l.Border + l.Caption) return TFrameHit::Caption;
  return TFrameHit::Client;
}

void TClassicFrame::paintEvent(QPaintEvent*) {
  if (!FForm) return;
  QPainter p(this);
  DrawClassicFrame(p, FForm, size(), window()->isActiveWindow(), FPressedInside ? FPressed : TFrameHit::Client);
}

void TClassicFrame::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange) update();
}

void TClassicFrame::UpdateCursor(TFrameHit hit) {
  switch (hit) {
    case TFrameHit::Left:
    case TFrameHit::Right: setCursor(Qt::SizeHorCursor); break;
    case TFrameHit::Top:
    case TFrameHit::Bottom: setCursor(Qt::SizeVerCursor); break;
    case TFrameHit::TopLeft:
    case TFrameHit::BottomRight: setCursor(Qt::SizeFDiagCursor); break;
    case TFrameHit::TopRight:
    case TFrameHit::BottomLeft: setCursor(Qt::SizeBDiagCursor); break;
    default: unsetCursor(); break;
  }
}

void TClassicFrame::PopupSystemMenu() {
  const TClassicFrameLayout l = Layout();
  const QPoint below = l.Icon.isEmpty() ? QPoint(l.Bar.left(), l.Bar.bottom() + 1) : QPoint(l.Icon.left(), l.Bar.bottom() + 1);
  PopupSystemMenu(mapToGlobal(below));
}

void TClassicFrame::PopupSystemMenu(QPoint globalPos) {
  if (!FForm) return;
  if (TSystemMenu* menu = GetSystemMenu(FForm)) menu->Popup(globalPos);
}

void TClassicFrame::BeginKeyboardDrag(TFrameHit kind) {
  if (!FForm || FKeyboardDrag) return;
  FKeyboardDrag = true;
  FDragging = kind;
  FDragStart = QCursor::pos();
  FDragGeometry = window()->geometry();
  FKeyOffset = QPoint();
  grabKeyboard();
  grabMouse(kind == TFrameHit::Caption ? Qt::SizeAllCursor : Qt::SizeFDiagCursor);
}

void TClassicFrame::DragKey(int key) {
  constexpr int step = 8;
  switch (key) {
    case Qt::Key_Left: FKeyOffset.rx() -= step; break;
    case Qt::Key_Right: FKeyOffset.rx() += step; break;
    case Qt::Key_Up: FKeyOffset.ry() -= step; break;
    case Qt::Key_Down: FKeyOffset.ry() += step; break;
    case Qt::Key_Return:
    case Qt::Key_Enter: EndKeyboardDrag(true); return;
    case Qt::Key_Escape: EndKeyboardDrag(false); return;
    default: return;
  }
  DragTo(FDragStart + FKeyOffset);
}

void TClassicFrame::EndKeyboardDrag(bool keep) {
  if (!FKeyboardDrag) return;
  FKeyboardDrag = false;
  releaseKeyboard();
  releaseMouse();
  if (!keep) window()->setGeometry(FDragGeometry);
  FDragging = TFrameHit::Client;
}

void TClassicFrame::mousePressEvent(QMouseEvent* event) {
  if (!FForm) return;
  if (FKeyboardDrag) {
    EndKeyboardDrag(true);
    return;
  }
  const QPoint pos = event->position().toPoint();
  const TFrameHit hit = HitTest(pos);
  if (event->button() == Qt::RightButton) {
    if (hit == TFrameHit::Caption || hit == TFrameHit::SysMenu) PopupSystemMenu(event->globalPosition().toPoint());
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  switch (hit) {
    case TFrameHit::SysMenu: PopupSystemMenu(); return;
    case TFrameHit::MinButton:
    case TFrameHit::MaxButton:
    case TFrameHit::CloseButton: {
      const TClassicFrameLayout l = Layout();
      if ((hit == TFrameHit::MinButton && !l.MinEnabled) || (hit == TFrameHit::MaxButton && !l.MaxEnabled)) return;
      FPressed = hit;
      FPressedInside = true;
      update();
      return;
    }
    case TFrameHit::Caption: {
      if (FForm->WindowState() == wsMaximized) return;
      QWindow* handle = window()->windowHandle();
      if (handle && handle->startSystemMove()) return;
      FDragging = hit;
      break;
    }
    case TFrameHit::Client: return;
    default: {
      QWindow* handle = window()->windowHandle();
      if (handle && handle->startSystemResize(EdgesOf(hit))) return;
      FDragging = hit;
      break;
    }
  }
  FDragStart = event->globalPosition().toPoint();
  FDragGeometry = window()->geometry();
  FKeyOffset = QPoint();
}

void TClassicFrame::DragTo(QPoint globalPos) {
  const QPoint d = globalPos - FDragStart;
  QRect g = FDragGeometry;
  if (FDragging == TFrameHit::Caption) {
    window()->move(g.topLeft() + d);
    return;
  }
  if (!FForm || FForm->WindowState() != wsNormal) return;
  const Qt::Edges edges = EdgesOf(FDragging);
  if (edges & Qt::LeftEdge) g.setLeft(g.left() + d.x());
  if (edges & Qt::RightEdge) g.setRight(g.right() + d.x());
  if (edges & Qt::TopEdge) g.setTop(g.top() + d.y());
  if (edges & Qt::BottomEdge) g.setBottom(g.bottom() + d.y());
  window()->setGeometry(g);
}

void TClassicFrame::mouseMoveEvent(QMouseEvent* event) {
  if (!FForm) return;
  const QPoint pos = event->position().toPoint();
  if (FDragging != TFrameHit::Client) {
    DragTo(event->globalPosition().toPoint() + FKeyOffset);
    return;
  }
  if (FPressed != TFrameHit::Client) {
    const bool inside = HitTest(pos) == FPressed;
    if (inside != FPressedInside) {
      FPressedInside = inside;
      update();
    }
    return;
  }
  UpdateCursor(HitTest(pos));
}

void TClassicFrame::mouseReleaseEvent(QMouseEvent* event) {
  if (!FForm || FKeyboardDrag || event->button() != Qt::LeftButton) return;
  FDragging = TFrameHit::Client;
  const TFrameHit pressed = FPressed;
  const bool inside = FPressedInside && HitTest(event->position().toPoint()) == pressed;
  FPressed = TFrameHit::Client;
  FPressedInside = false;
  update();
  if (!inside) return;
  switch (pressed) {
    case TFrameHit::CloseButton: PostSysCommand(FForm, SC_CLOSE); break;
    case TFrameHit::MinButton: PostSysCommand(FForm, SC_MINIMIZE); break;
    case TFrameHit::MaxButton:
      PostSysCommand(FForm, FForm->WindowState() == wsMaximized ? SC_RESTORE : SC_MAXIMIZE);
      break;
    default: break;
  }
}

void TClassicFrame::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!FForm || event->button() != Qt::LeftButton) return;
  const TFrameHit hit = HitTest(event->position().toPoint());
  if (hit == TFrameHit::SysMenu) {
    // A double click on the icon closes, as the menu's bold item says.
    if (QMenu* menu = GetSystemMenu(FForm)->ShownMenu()) menu->close();
    PostSysCommand(FForm, SC_CLOSE);
  } else if (hit == TFrameHit::Caption) {
    if (FForm->WindowState() == wsMaximized) {
      PostSysCommand(FForm, SC_RESTORE);
    } else if (CanMaximize(FForm)) {
      PostSysCommand(FForm, SC_MAXIMIZE);
    }
  } else {
    // Another press on a button.
    mousePressEvent(event);
  }
}

TClassicFrame* ClassicFrameOf(const TCustomForm* form) {
  QWidget* window = form ? form->Widget() : nullptr;
  return window ? window->findChild<TClassicFrame*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

void PostSysCommand(TCustomForm* form, WPARAM command) {
  if (form && form->Widget()) ::PostMessage(static_cast<QObject*>(form->Widget()), WM_SYSCOMMAND, command);
}

void DefaultSysCommand(TCustomForm* form, WPARAM command) {
  QWidget* window = form->Widget();
  switch (command & 0xFFF0) {
    case SC_CLOSE: form->Perform(WM_CLOSE); break;
    case SC_MINIMIZE:
      if (form->BorderIcons().Contains(biMinimize)) form->SetWindowState(wsMinimized);
      break;
    case SC_MAXIMIZE:
      if (CanMaximize(form)) form->SetWindowState(wsMaximized);
      break;
    case SC_RESTORE: form->SetWindowState(wsNormal); break;
    case SC_MOVE:
    case SC_SIZE: {
      const bool move = (command & 0xFFF0) == SC_MOVE;
      if (!window || (move ? form->WindowState() != wsNormal : !IsSizeable(form))) break;
      // Where windows cannot place themselves, only the window system can move them.
      QWindow* handle = window->windowHandle();
      if (QGuiApplication::platformName() == QLatin1String("wayland") && handle) {
        if (move) {
          handle->startSystemMove();
        } else {
          handle->startSystemResize(Qt::RightEdge | Qt::BottomEdge);
        }
      } else if (TClassicFrame* frame = ClassicFrameOf(form)) {
        frame->BeginKeyboardDrag(move ? TFrameHit::Caption : TFrameHit::BottomRight);
      }
      break;
    }
    case SC_KEYMENU:
      if (TClassicFrame* frame = ClassicFrameOf(form)) frame->PopupSystemMenu();
      break;
    default: break;
  }
}
