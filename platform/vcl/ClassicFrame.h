#pragma once
// The classic window frame drawn by the program: border, caption bar with the icon, the
// caption and the minimise, maximise and close buttons, as a form's BorderStyle and
// BorderIcons say. lumora-form-png draws it around a form's picture; a form that asks for
// it (TCustomForm::SetClassicFrame) gets it around its window instead of the window
// system's frame, with its system menu (SystemMenu.h) opening from the icon, from
// Alt+Space and from a right click on the caption. Moving and sizing are the window
// system's (QWindow::startSystemMove / startSystemResize).

#include "platform/vcl/Messages.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>

class QPainter;
class TCustomForm;

// Where the parts of the frame lie, in window coordinates.
struct TClassicFrameLayout {
  int Border = 0;     // width of the border on each side
  int Caption = 0;    // height of the caption bar with its bottom line
  QRect Bar;          // the caption bar
  QRect Icon;         // the system menu's icon; empty when the window has none
  QRect MinButton;    // empty when absent
  QRect MaxButton;
  QRect CloseButton;
  bool MinEnabled = false;
  bool MaxEnabled = false;
  QRect Text;         // where the caption's text goes
};

// The parts of the frame of `form` drawn at `size` (the window's outer size).
TClassicFrameLayout ClassicFrameLayout(const TCustomForm* form, QSize size);

// What lies under a point of the window.
enum class TFrameHit {
  Client, Caption, SysMenu, MinButton, MaxButton, CloseButton,
  Left, Right, Top, Bottom, TopLeft, TopRight, BottomLeft, BottomRight
};

// Draws the border and the caption bar of `form` over a window of `size`; the inside
// (menu bar and client area) is left alone. An inactive window has the inactive
// caption's colours; `pressed` is the caption button held down, drawn sunken.
void DrawClassicFrame(QPainter& p, const TCustomForm* form, QSize size, bool active,
                      TFrameHit pressed = TFrameHit::Client);

// The frame of a form's window: a widget under the menu bar and the client area that
// covers the whole window, draws the frame and answers the mouse on it.
class TClassicFrame : public QWidget {
  Q_OBJECT
public:
  TClassicFrame(TCustomForm* form, QWidget* window);
  // Forgets the form (it is being destroyed).
  void Detach() { FForm = nullptr; }
  TCustomForm* Form() const { return FForm; }

  TFrameHit HitTest(QPoint windowPos) const;
  TClassicFrameLayout Layout() const;
  // Opens the system menu below the icon (Alt+Space, a click on the icon) or at a
  // screen point (a right click on the caption).
  void PopupSystemMenu();
  void PopupSystemMenu(QPoint globalPos);
  // Moves (Caption) or sizes (BottomRight) the window by the arrow keys and the mouse
  // until Enter or a click keeps it, or Esc puts it back: the menu's Move and Size,
  // where no mouse button is down for the window system to follow.
  void BeginKeyboardDrag(TFrameHit kind);
  bool KeyboardDragging() const { return FKeyboardDrag; }
  void DragKey(int key);
  void EndKeyboardDrag(bool keep);

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void UpdateCursor(TFrameHit hit);
  // Moves or sizes the window by hand where the window system cannot (the offscreen one).
  void DragTo(QPoint globalPos);

  TCustomForm* FForm;
  TFrameHit FPressed = TFrameHit::Client;   // the caption button held down
  bool FPressedInside = false;
  TFrameHit FDragging = TFrameHit::Client;  // a move or size done by hand
  bool FKeyboardDrag = false;
  QPoint FDragStart;
  QRect FDragGeometry;
  QPoint FKeyOffset;  // what the arrow keys added
};

// The frame of a form's window, or none when the window has the window system's frame.
TClassicFrame* ClassicFrameOf(const TCustomForm* form);

// What the window does with a window command that nothing else took (the default of
// WM_SYSCOMMAND): SC_CLOSE asks the form to close (WM_CLOSE), the others minimise,
// maximise, restore, move, size or open the system menu.
void DefaultSysCommand(TCustomForm* form, WPARAM command);

// Posts a window command to the form, as the frame's buttons and the system menu do.
void PostSysCommand(TCustomForm* form, WPARAM command);
