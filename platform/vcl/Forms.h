#pragma once
// Forms, scroll boxes and frames; the application object over Qt's event loop and the
// screen come with them (Application.h). A form is a top-level Qt window whose inner
// widget is its client area (below the menu bar); its Width and Height include the
// classic window frame and caption, as the form's stream gives them, so ClientWidth and
// ClientHeight come out as designed.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/Application.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/Messages.h"

#include <QMenuBar>
#include <QPointer>

#include <string>
#include <vector>

class QEventLoop;
class QMenuBar;
class QWidget;
class TFormWidget;

LUMORA_ENUM(TBorderIcon, biSystemMenu, biMinimize, biMaximize, biHelp)
LUMORA_SET(TBorderIcons, TBorderIcon)
LUMORA_ENUM(TPosition, poDesigned, poDefault, poDefaultPosOnly, poDefaultSizeOnly, poScreenCenter, poDesktopCenter,
            poMainFormCenter, poOwnerFormCenter)
LUMORA_ENUM(TWindowState, wsNormal, wsMinimized, wsMaximized)
LUMORA_ENUM(TFormStyle, fsNormal, fsMDIChild, fsMDIForm, fsStayOnTop)
LUMORA_ENUM(TPrintScale, poNone, poProportional, poPrintToFit)
LUMORA_ENUM(TDefaultMonitor, dmDesktop, dmPrimary, dmMainForm, dmActiveForm)
LUMORA_ENUM(TScrollBarStyle, ssRegular, ssFlat, ssHotTrack)

// A key message as a form's shortcut handler sees it.
struct TWMKey {
  std::uint32_t Msg = WM_KEYDOWN;
  Word CharCode = 0;
  LPARAM KeyData = 0;
  LRESULT Result = 0;
};

LUMORA_EVENT(TShortCutEvent, void(TWMKey& Msg, bool& Handled))

// Private messages the controls layer posts to itself.
constexpr std::uint32_t CM_BASE = 0xB000;
constexpr std::uint32_t CM_RELEASE = CM_BASE + 33;

// What a form designer does with the form it designs.
class IDesignerNotify {
public:
  virtual ~IDesignerNotify() = default;
  virtual void Modified() = 0;
  virtual void Notification(TPersistent* component, TOperation operation) = 0;
};

class IDesigner : public IDesignerNotify {
public:
  virtual TCustomForm* GetCustomForm() = 0;
  virtual void SetCustomForm(TCustomForm* form) = 0;
  virtual bool GetIsControl() = 0;
  virtual void SetIsControl(bool value) = 0;
  // Whether the designer takes `message` of `sender` (a control of its form); a message
  // taken goes no further.
  virtual bool IsDesignMsg(TControl* sender, TMessage& message) = 0;
  virtual void PaintGrid() = 0;
  virtual void ValidateRename(TComponent* component, const std::string& currentName, const std::string& newName) = 0;
};

// A scroll bar of a form or scroll box.
class TControlScrollBar : public TPersistent {
  LUMORA_CLASS(TControlScrollBar, TPersistent)
public:
  TControlScrollBar(TWinControl* control = nullptr, TScrollBarKind kind = sbHorizontal)
      : FControl(control), FKind(kind) {}
  void Assign(TPersistent* source) override;
  TScrollBarKind Kind() const { return FKind; }
  int ButtonSize() const { return FButtonSize; }
  void SetButtonSize(int value) { FButtonSize = value; }
  TColor Color() const { return FColor; }
  void SetColor(TColor value) { FColor = value; }
  int Increment() const { return FIncrement; }
  void SetIncrement(int value) { FIncrement = value; }
  int Margin() const { return FMargin; }
  void SetMargin(int value) { FMargin = value; }
  bool ParentColor() const { return FParentColor; }
  void SetParentColor(bool value) { FParentColor = value; }
  int Position() const { return FPosition; }
  void SetPosition(int value);
  int Range() const { return FRange; }
  void SetRange(int value);
  int Size() const { return FSize; }
  void SetSize(int value) { FSize = value; }
  TScrollBarStyle Style() const { return FStyle; }
  void SetStyle(TScrollBarStyle value) { FStyle = value; }
  int ThumbSize() const { return FThumbSize; }
  void SetThumbSize(int value) { FThumbSize = value; }
  bool Tracking() const { return FTracking; }
  void SetTracking(bool value) { FTracking = value; }
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);

private:
  TWinControl* FControl;
  TScrollBarKind FKind;
  int FButtonSize = 0;
  TColor FColor = clBtnHighlight;
  int FIncrement = 8;
  int FMargin = 0;
  bool FParentColor = true;
  int FPosition = 0;
  int FRange = 0;
  int FSize = 0;
  TScrollBarStyle FStyle = ssRegular;
  int FThumbSize = 0;
  bool FTracking = false;
  bool FVisible = true;
};

class TScrollingWinControl : public TWinControl {
  LUMORA_CLASS(TScrollingWinControl, TWinControl)
public:
  explicit TScrollingWinControl(TComponent* owner);
  ~TScrollingWinControl() override;
  bool AutoScroll() const { return FAutoScroll; }
  void SetAutoScroll(bool value);
  TControlScrollBar* HorzScrollBar() const { return FHorzScrollBar; }
  void SetHorzScrollBar(TControlScrollBar* value) { FHorzScrollBar->Assign(value); }
  TControlScrollBar* VertScrollBar() const { return FVertScrollBar; }
  void SetVertScrollBar(TControlScrollBar* value) { FVertScrollBar->Assign(value); }
  // Scrolls so that `control` is in view.
  void ScrollInView(TControl* control);

protected:
  TControlScrollBar* FHorzScrollBar;
  TControlScrollBar* FVertScrollBar;
  bool FAutoScroll = true;
};

// A bordered area whose children scroll.
class TScrollBox : public TScrollingWinControl {
  LUMORA_CLASS(TScrollBox, TScrollingWinControl)
public:
  explicit TScrollBox(TComponent* owner);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  QWidget* ClientWidget() const override;
  TPoint ClientWidgetOffset() const override { return Point(FBorderWidth, FBorderWidth); }
  int FrameSize() const override;
  void CreateWidget() override;
  void UpdateWidgetColors() override;
  void AlignControls(TControl* changing, TRect& rect) override;
  // Makes the scrolled area as large as the children or the ranges need.
  void UpdateScrollRange();

private:
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  QPointer<QWidget> FInner;
};

class TCustomFrame : public TScrollingWinControl {
  LUMORA_CLASS(TCustomFrame, TScrollingWinControl)
public:
  explicit TCustomFrame(TComponent* owner);
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  TComponent* GetChildOwner() override { return this; }
  void CreateWidget() override;
};

class TFrame : public TCustomFrame {
  LUMORA_CLASS(TFrame, TCustomFrame)
public:
  explicit TFrame(TComponent* owner) : TCustomFrame(owner) {}
};

// What becomes of a form that is closed.
class TCustomForm : public TScrollingWinControl {
  LUMORA_CLASS(TCustomForm, TScrollingWinControl)
public:
  // A form without the components of a form resource (CreateNew).
  explicit TCustomForm(TComponent* owner);
  ~TCustomForm() override;

  // ---- Window
  TFormBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TFormBorderStyle value);
  TBorderIcons BorderIcons() const { return FBorderIcons; }
  void SetBorderIcons(TBorderIcons value);
  TPosition Position() const { return FPosition; }
  void SetPosition(TPosition value) { FPosition = value; }
  TWindowState WindowState() const { return FWindowState; }
  void SetWindowState(TWindowState value);
  TFormStyle FormStyle() const { return FFormStyle; }
  void SetFormStyle(TFormStyle value);
  TMainMenu* Menu() const { return FMenu; }
  void SetMenu(TMainMenu* value);
  TIcon* Icon() const { return FIcon; }
  void SetIcon(TIcon* value) { FIcon->Assign(value); }
  bool KeyPreview() const { return FKeyPreview; }
  void SetKeyPreview(bool value) { FKeyPreview = value; }
  TWinControl* ActiveControl() const { return FActiveControl; }
  void SetActiveControl(TWinControl* value);
  bool OldCreateOrder() const { return FOldCreateOrder; }
  void SetOldCreateOrder(bool value) { FOldCreateOrder = value; }
  const std::string& HelpFile() const { return FHelpFile; }
  void SetHelpFile(const std::string& value) { FHelpFile = value; }
  TPrintScale PrintScale() const { return FPrintScale; }
  void SetPrintScale(TPrintScale value) { FPrintScale = value; }
  TDefaultMonitor DefaultMonitor() const { return FDefaultMonitor; }
  void SetDefaultMonitor(TDefaultMonitor value) { FDefaultMonitor = value; }
  TMenuItem* WindowMenu() const { return FWindowMenu; }
  void SetWindowMenu(TMenuItem* value) { FWindowMenu = value; }
  TMenuItem* ObjectMenuItem() const { return FObjectMenuItem; }
  void SetObjectMenuItem(TMenuItem* value) { FObjectMenuItem = value; }

  // ---- Resolution: the form is scaled to the screen when read at another one
  bool Scaled() const { return FScaled; }
  void SetScaled(bool value) { FScaled = value; }
  int PixelsPerInch() const { return FPixelsPerInch; }
  void SetPixelsPerInch(int value);
  int TextHeight() const { return FTextHeight; }
  void SetTextHeight(int value) { FTextHeight = value; }

  // ---- The classic frame around the client area
  // Width of the border on each side and height of the caption and of the menu bar.
  int FrameWidth() const;
  int CaptionHeight() const;
  int MenuHeight() const;
  TRect ClientRect() const override;
  QWidget* ClientWidget() const override;
  TPoint ClientWidgetOffset() const override { return Point(FBorderWidth, FBorderWidth); }
  // The size of the window's inside: below the menu bar, border width included.
  QSize WindowClientSize() const;

  // ---- A frame drawn by the program (ClassicFrame.h) instead of the window system's:
  // the window is the whole form, its caption bar and system menu included.
  bool ClassicFrame() const { return FClassicFrame; }
  void SetClassicFrame(bool value);
  // Where the menu bar and the client area begin in the window, and how large they are
  // together in a window of `windowSize`: past the drawn frame, or the whole window.
  QPoint WindowInsideOffset() const;
  QSize WindowInsideSize(QSize windowSize) const;

  // ---- Showing and closing
  void Show();
  void Hide();
  // Runs the form modally; returns its ModalResult.
  virtual int ShowModal();
  TModalResult ModalResult() const { return FModalResult; }
  void SetModalResult(TModalResult value);
  bool Modal() const { return FModalLoop != nullptr; }
  // Asks OnCloseQuery, then OnClose decides: hide (the default), free, minimise or nothing.
  void Close();
  virtual bool CloseQuery();
  // Frees the form once the messages already queued for it have been handled.
  void Release();
  bool Active() const { return FActive; }
  void BringToFront();
  void SetFocus() override;
  // Gives the focus to the first control in tab order.
  void SelectFirst();
  // Moves the focus to the next (or previous) control in tab order.
  void SelectNext(TWinControl* current, bool forward = true);

  // ---- Keys
  // The form's shortcut handling: OnShortCut, its menu, its action lists.
  virtual bool IsShortCut(TWMKey& message);

  // ---- Design
  IDesigner* Designer() const { return FDesigner; }
  void SetDesigner(IDesigner* value) { FDesigner = value; }
  // Puts the form, its controls and its other components in design state, or takes them out.
  void SetDesignState(bool designing) override;

  // ---- Events of the form
  TNotifyEvent OnActivate;
  TNotifyEvent OnCreate;
  TNotifyEvent OnDeactivate;
  TNotifyEvent OnDestroy;
  TNotifyEvent OnHide;
  TNotifyEvent OnPaint;
  TNotifyEvent OnShow;
  TCloseEvent OnClose;
  TCloseQueryEvent OnCloseQuery;
  TShortCutEvent OnShortCut;
  TMouseWheelEvent OnMouseWheel;
  TMouseWheelUpDownEvent OnMouseWheelDown;
  TMouseWheelUpDownEvent OnMouseWheelUp;

  // Runs OnCreate (forms of the program call it when they have read their components).
  virtual void DoCreate();
  virtual void DoDestroy();
  virtual void DoShow();
  virtual void DoHide();
  virtual void DoClose(TCloseAction& action);
  virtual void Activate();
  virtual void Deactivate();

  // ---- For the layer's own use
  void Dispatch(TMessage& message) override;
  void SetBounds(int left, int top, int width, int height) override;
  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetVisibility() override;
  void UpdateWidgetGeometry() override;
  void UpdateWidgetColors() override;
  void Loaded() override;
  void Paint(QPainter& painter) override;
  // The menu changed (its bar follows).
  void MenuChanged(TMainMenu* menu);
  // The Qt window resized to this client size (by the user or the window manager).
  void WindowResized(int clientWidth, int clientHeight);
  void WindowActivated(bool active);
  // The window system minimised, maximised or restored the window.
  void WindowStateChanged(TWindowState state);
  void WindowShown(bool shown);
  // The Qt window was asked to close; the form decides.
  void WindowCloseRequested();
  void Notification(TComponent* component, TOperation operation) override;
  QWidget* InputWidget() const override;
  // PixelsPerInch and TextHeight (and IgnoreFontProperty of old forms, read only).
  void DefineProperties(TFiler& filer) override;
  // The controls, then the components that have no parent (menus, dialogs, lists).
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  // ClientWidth and ClientHeight as a stream sets them: the client area below the menu,
  // applied once the menu is known.
  void SetFormClientWidth(int value);
  void SetFormClientHeight(int value);
  int FormClientWidth() const { return ClientWidth(); }
  int FormClientHeight() const { return ClientHeight(); }

protected:
  void VisibleChanged() override;
  void Resize() override;

private:
  void ApplyWindowFlags();
  void ApplyPosition();
  void LayoutWindow();
  void CloseModal();

  TFormBorderStyle FBorderStyle = bsSizeable;
  TBorderIcons FBorderIcons{biSystemMenu, biMinimize, biMaximize};
  TPosition FPosition = poDesigned;
  TWindowState FWindowState = wsNormal;
  TFormStyle FFormStyle = fsNormal;
  TMainMenu* FMenu = nullptr;
  TIcon* FIcon;
  bool FKeyPreview = false;
  TWinControl* FActiveControl = nullptr;
  bool FOldCreateOrder = false;
  std::string FHelpFile;
  TPrintScale FPrintScale = poProportional;
  TDefaultMonitor FDefaultMonitor = dmActiveForm;
  TMenuItem* FWindowMenu = nullptr;
  TMenuItem* FObjectMenuItem = nullptr;
  bool FScaled = true;
  int FPixelsPerInch = 96;
  int FTextHeight = 0;
  TModalResult FModalResult = mrNone;
  QEventLoop* FModalLoop = nullptr;
  bool FActive = false;
  bool FShownOnce = false;
  bool FResizingWindow = false;
  bool FShowPending = false;
  bool FClassicFrame = false;
  int FClientWidthRead = -1;
  int FClientHeightRead = -1;
  IDesigner* FDesigner = nullptr;
  QPointer<QWidget> FClient;
  QPointer<QMenuBar> FMenuBar;
};

class TForm : public TCustomForm {
  LUMORA_CLASS(TForm, TCustomForm)
public:
  explicit TForm(TComponent* owner) : TCustomForm(owner) {}
};


// Posts or sends a message to a control's window (made if need be).
bool PostMessage(TWinControl* control, std::uint32_t msg, WPARAM wParam = 0, LPARAM lParam = 0);
LRESULT SendMessage(TWinControl* control, std::uint32_t msg, WPARAM wParam = 0, LPARAM lParam = 0);

// The control under a screen point (disabled ones too when `allowDisabled`), or none.
TControl* FindDragTarget(TPoint pos, bool allowDisabled);

void RegisterFormsClasses();
