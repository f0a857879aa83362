#pragma once
// The Qt widgets behind controls that paint themselves, and the event filter that turns
// a widget's input into its control's messages. Internal to the controls layer.

#include "platform/rtti/Component.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/MessageLoop.h"

#include <QColor>
#include <QObject>
#include <QWidget>


class TControl;

// Whether the component is being read from a stream.
inline bool Loading(const TComponent* c) { return c->ComponentState().Contains(csLoading); }

// A colour of the classic palette (clBtnFace, ...) or an RGB colour, to paint with.
inline QColor Sys(TColor c) { return ColorToQColor(c); }

// Hands the events of a control's widgets to the control.
class TWidgetBridge : public QObject {
public:
  explicit TWidgetBridge(TControl* control) : FControl(control) {}
  // Watches `widget` too (an inner part of a compound widget).
  void Watch(QWidget* widget);
  // Forgets the control (it is being destroyed).
  void Detach() { FControl = nullptr; }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  TControl* FControl;
};

// The widget of a control that paints itself: paints through TControl::Paint.
class TPaintedWidget : public QWidget {
public:
  TPaintedWidget(TControl* control, bool opaque);
  void Detach() { FControl = nullptr; }
  TControl* Control() const { return FControl; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  TControl* FControl;
};

#include <QPushButton>

// A push button whose face the control paints (bit buttons): the bevel is Qt's, the
// glyph and caption are the control's.
class TOwnerDrawButton : public QPushButton {
public:
  explicit TOwnerDrawButton(TControl* control) : FControl(control) {}
  void Detach() { FControl = nullptr; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  TControl* FControl;
};
