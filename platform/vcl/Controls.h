#pragma once
// Controls: TControl, TWinControl, TGraphicControl, TCustomControl. Every control owns a
// Qt widget once it has a parent: a windowed control a widget of its kind, a graphic
// control a light widget that paints the control (kept below its windowed siblings, as
// graphic controls are painted on their parent). Positions and sizes are the control's
// own (Left, Top, Width, Height in the parent's client area) and follow the alignment
// and anchor rules of AlignRules.h; Qt layouts are not used.
//
// Widgets are found by their control's component Name (objectName), so tests and
// programs can reach them. A widget is freed exactly once: by its control, unless Qt
// freed it first with a parent widget.

#include "platform/rtti/Classes.h"
#include "platform/vcl/AlignRules.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/IntTypes.h"
#include "platform/vcl/Messages.h"
#include "platform/vcl/ShortCuts.h"
#include "platform/vcl/Types.h"

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <string>
#include <vector>

class QEvent;
class QMouseEvent;
class QPainter;
class QWidget;

class TControl;
class TWinControl;
class TCustomForm;
class TPopupMenu;
class TDragObject;
class TDragDockObject;
class TWidgetBridge;

LUMORA_ENUM_INFO(TAlign, alNone, alTop, alBottom, alLeft, alRight, alClient)
LUMORA_ENUM_INFO(TAnchorKind, akLeft, akTop, akRight, akBottom)
LUMORA_SET(TAnchors, TAnchorKind)

// Mouse pointers by number; the predefined ones are negative.
LUMORA_INTEGER_TYPE(TCursor, std::int16_t, otSWord, -32768, 32767)
constexpr TCursor crDefault = TCursor(0);
constexpr TCursor crNone = TCursor(-1);
constexpr TCursor crArrow = TCursor(-2);
constexpr TCursor crCross = TCursor(-3);
constexpr TCursor crIBeam = TCursor(-4);
constexpr TCursor crSizeNESW = TCursor(-6);
constexpr TCursor crSizeNS = TCursor(-7);
constexpr TCursor crSizeNWSE = TCursor(-8);
constexpr TCursor crSizeWE = TCursor(-9);
constexpr TCursor crUpArrow = TCursor(-10);
constexpr TCursor crHourGlass = TCursor(-11);
constexpr TCursor crDrag = TCursor(-12);
constexpr TCursor crNoDrop = TCursor(-13);
constexpr TCursor crHSplit = TCursor(-14);
constexpr TCursor crVSplit = TCursor(-15);
constexpr TCursor crMultiDrag = TCursor(-16);
constexpr TCursor crSQLWait = TCursor(-17);
constexpr TCursor crNo = TCursor(-18);
constexpr TCursor crAppStart = TCursor(-19);
constexpr TCursor crHelp = TCursor(-20);
constexpr TCursor crHandPoint = TCursor(-21);
constexpr TCursor crSizeAll = TCursor(-22);
constexpr TCursor crSize = TCursor(-22);
bool CursorToIdent(long cursor, std::string& ident);
bool IdentToCursor(std::string_view ident, long& cursor);
// The Qt shape of a cursor (the arrow for cursors that have none).
Qt::CursorShape CursorToQt(TCursor cursor);

LUMORA_ENUM(TDragMode, dmManual, dmAutomatic)
LUMORA_ENUM(TDragKind, dkDrag, dkDock)
LUMORA_ENUM(TDragState, dsDragEnter, dsDragLeave, dsDragMove)
LUMORA_ENUM(TBiDiMode, bdLeftToRight, bdRightToLeft, bdRightToLeftNoAlign, bdRightToLeftReadingOnly)
LUMORA_ENUM(TImeMode, imDisable, imClose, imOpen, imDontCare, imSAlpha, imAlpha, imHira, imSKata, imKata, imChinese,
            imSHanguel, imHanguel)
using TImeName = std::string;
LUMORA_ENUM(TScrollBarKind, sbHorizontal, sbVertical)
LUMORA_ENUM(TBevelCut, bvNone, bvLowered, bvRaised, bvSpace)
LUMORA_ENUM(TBevelKind, bkNone, bkTile, bkSoft, bkFlat)
LUMORA_ENUM(TBevelEdge, beLeft, beTop, beRight, beBottom)
LUMORA_SET(TBevelEdges, TBevelEdge)

// The border style of a control: bsNone or bsSingle (the values a form's border style
// starts with).
enum class TBorderStyle : std::uint8_t {};
const TTypeInfo* TypeInfoOf(TBorderStyle*);
LUMORA_ENUM(TFormBorderStyle, bsNone, bsSingle, bsSizeable, bsDialog, bsToolWindow, bsSizeToolWin)
constexpr TBorderStyle BorderStyleOf(TFormBorderStyle s) { return static_cast<TBorderStyle>(s); }

// Behaviour flags of a control class.
enum TControlStyleItem {
  csAcceptsControls, csCaptureMouse, csDesignInteractive, csClickEvents, csFramed, csSetCaption, csOpaque,
  csDoubleClicks, csFixedWidth, csFixedHeight, csNoDesignVisible, csReplicatable, csNoStdEvents, csDisplayDragImage,
  csReflector, csActionClient, csMenuEvents
};
using TControlStyle = TSet<TControlStyleItem>;

// What a control is doing now.
enum TControlStateItem {
  csLButtonDown, csClicked, csPalette, csReadingState, csAlignmentNeeded, csFocusing, csCreating, csPaintCopy,
  csCustomPaint, csDestroyingHandle, csDocking
};
using TControlState = TSet<TControlStateItem>;

LUMORA_EVENT(TCanResizeEvent, void(TObject* Sender, int& NewWidth, int& NewHeight, bool& Resize))
LUMORA_EVENT(TConstrainedResizeEvent, void(TObject* Sender, int& MinWidth, int& MinHeight, int& MaxWidth, int& MaxHeight))
LUMORA_EVENT(TDragDropEvent, void(TObject* Sender, TObject* Source, int X, int Y))
LUMORA_EVENT(TDragOverEvent, void(TObject* Sender, TObject* Source, int X, int Y, TDragState State, bool& Accept))
// Ending a drag or a dock has the shape of a drop: (Sender, Target, X, Y).
using TEndDragEvent = TDragDropEvent;
LUMORA_EVENT(TStartDragEvent, void(TObject* Sender, TDragObject*& DragObject))
LUMORA_EVENT(TStartDockEvent, void(TObject* Sender, TDragDockObject*& DragObject))
LUMORA_EVENT(TDockDropEvent, void(TObject* Sender, TDragDockObject* Source, int X, int Y))
LUMORA_EVENT(TDockOverEvent, void(TObject* Sender, TDragDockObject* Source, int X, int Y, TDragState State, bool& Accept))
LUMORA_EVENT(TGetSiteInfoEvent, void(TObject* Sender, TControl* DockClient, TRect& InfluenceRect, TPoint MousePos, bool& CanDock))
LUMORA_EVENT(TUnDockEvent, void(TObject* Sender, TControl* Client, TWinControl* NewTarget, bool& Allow))
LUMORA_EVENT(TMouseWheelEvent, void(TObject* Sender, TShiftState Shift, int WheelDelta, TPoint MousePos, bool& Handled))
LUMORA_EVENT(TMouseWheelUpDownEvent, void(TObject* Sender, TShiftState Shift, TPoint MousePos, bool& Handled))

// The component an action list holds; controls link to one through their Action.
class TBasicAction : public TComponent {
  LUMORA_CLASS(TBasicAction, TComponent)
public:
  explicit TBasicAction(TComponent* owner);
  ~TBasicAction() override;
  // Runs OnExecute; false when there is none.
  virtual bool Execute();
  // Runs OnUpdate; false when there is none.
  virtual bool Update();
  TNotifyEvent OnExecute;
  TNotifyEvent OnUpdate;
  // The controls and menu items linked to this action hear of its changes.
  void RegisterClient(TComponent* client);
  void UnRegisterClient(TComponent* client);

protected:
  // Tells every client to take over the action's values again.
  void Change();
  std::vector<TComponent*> FClients;
};

// Size limits of a control; 0 is no limit.
class TSizeConstraints : public TPersistent {
  LUMORA_CLASS(TSizeConstraints, TPersistent)
public:
  explicit TSizeConstraints(TControl* control = nullptr) : FControl(control) {}
  void Assign(TPersistent* source) override;
  int MaxHeight() const { return FLimits.MaxHeight; }
  void SetMaxHeight(int value);
  int MaxWidth() const { return FLimits.MaxWidth; }
  void SetMaxWidth(int value);
  int MinHeight() const { return FLimits.MinHeight; }
  void SetMinHeight(int value);
  int MinWidth() const { return FLimits.MinWidth; }
  void SetMinWidth(int value);
  const TSizeLimits& Limits() const { return FLimits; }
  TNotifyEvent OnChange;

private:
  void Changed();
  TControl* FControl;
  TSizeLimits FLimits;
};

// Converts between Qt's modifiers and buttons and a shift state.
TShiftState ShiftStateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons = Qt::NoButton);
// The shift state of a key message's key data (Alt from the data, Shift and Ctrl from
// the key being handled).
TShiftState KeyDataToShiftState(LPARAM keyData);

class TControl : public TComponent {
  LUMORA_CLASS(TControl, TComponent)
public:
  explicit TControl(TComponent* owner);
  ~TControl() override;

  // ---- Position and size, in the parent's client area
  int Left() const { return FLeft; }
  void SetLeft(int value) { SetBounds(value, FTop, FWidth, FHeight); }
  int Top() const { return FTop; }
  void SetTop(int value) { SetBounds(FLeft, value, FWidth, FHeight); }
  int Width() const { return FWidth; }
  void SetWidth(int value) { SetBounds(FLeft, FTop, value, FHeight); }
  int Height() const { return FHeight; }
  void SetHeight(int value) { SetBounds(FLeft, FTop, FWidth, value); }
  // Moves and sizes the control in one step (within its constraints), then realigns.
  virtual void SetBounds(int left, int top, int width, int height);
  TRect BoundsRect() const { return Bounds(FLeft, FTop, FWidth, FHeight); }
  void SetBoundsRect(const TRect& r) { SetBounds(r.Left, r.Top, r.Width(), r.Height()); }
  // The area children are placed in, in the control's own coordinates.
  virtual TRect ClientRect() const;
  int ClientWidth() const { return ClientRect().Width(); }
  void SetClientWidth(int value);
  int ClientHeight() const { return ClientRect().Height(); }
  void SetClientHeight(int value);
  // Converts between this control's client coordinates and the screen's.
  TPoint ClientToScreen(TPoint p) const;
  TPoint ScreenToClient(TPoint p) const;

  TAlign Align() const { return FAlign; }
  void SetAlign(TAlign value);
  TAnchors Anchors() const { return FAnchors; }
  void SetAnchors(TAnchors value);
  TSizeConstraints* Constraints() const { return FConstraints; }
  void SetConstraints(TSizeConstraints* value) { FConstraints->Assign(value); }
  bool AutoSize() const { return FAutoSize; }
  virtual void SetAutoSize(bool value);

  // ---- Text: Caption and Text are the same value ('&' marks an accelerator)
  const std::string& Caption() const { return FText; }
  void SetCaption(const std::string& value) { SetText(value); }
  virtual std::string Text() const { return FText; }
  virtual void SetText(const std::string& value);
  // The text as Unicode, in the code page of the control's font.
  QString UnicodeText() const;

  // ---- Looks
  TFont* Font() const { return FFont; }
  void SetFont(TFont* value) { FFont->Assign(value); }
  TColor Color() const { return FColor; }
  void SetColor(TColor value);
  bool ParentFont() const { return FParentFont; }
  void SetParentFont(bool value);
  bool ParentColor() const { return FParentColor; }
  void SetParentColor(bool value);
  TCursor Cursor() const { return FCursor; }
  void SetCursor(TCursor value);
  bool IsFontStored() const { return !FParentFont; }
  bool IsColorStored() const { return !FParentColor; }

  // ---- State
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);
  void Show() { SetVisible(true); }
  void Hide() { SetVisible(false); }
  // Visible here and in every parent up to a form that is shown.
  bool Showing() const;
  bool Enabled() const { return FEnabled; }
  virtual void SetEnabled(bool value);
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& value);
  bool ShowHint() const { return FShowHint; }
  void SetShowHint(bool value);
  bool ParentShowHint() const { return FParentShowHint; }
  void SetParentShowHint(bool value);
  bool IsShowHintStored() const { return !FParentShowHint; }
  TPopupMenu* PopupMenu() const { return FPopupMenu; }
  void SetPopupMenu(TPopupMenu* value);
  TBasicAction* Action() const { return FAction; }
  void SetAction(TBasicAction* value);
  // Takes over an action's caption, enabled state, ... (TCustomAction does this).
  virtual void ActionChange(TBasicAction* sender, bool checkDefaults);

  // Stored for the form; they change nothing on this platform.
  TDragMode DragMode() const { return FDragMode; }
  void SetDragMode(TDragMode value) { FDragMode = value; }
  TCursor DragCursor() const { return FDragCursor; }
  void SetDragCursor(TCursor value) { FDragCursor = value; }
  TDragKind DragKind() const { return FDragKind; }
  void SetDragKind(TDragKind value) { FDragKind = value; }
  TBiDiMode BiDiMode() const { return FBiDiMode; }
  void SetBiDiMode(TBiDiMode value);
  bool ParentBiDiMode() const { return FParentBiDiMode; }
  void SetParentBiDiMode(bool value);
  bool IsBiDiModeStored() const { return !FParentBiDiMode; }
  int HelpContext() const { return FHelpContext; }
  void SetHelpContext(int value) { FHelpContext = value; }
  // A form marked as a control (frames read into forms); streamed as IsControl.
  bool IsControl() const { return FIsControl; }
  void SetIsControl(bool value) { FIsControl = value; }

  TControlStyle ControlStyle() const { return FControlStyle; }
  void SetControlStyle(TControlStyle value) { FControlStyle = value; }
  TControlState ControlState() const { return FControlState; }
  void SetControlState(TControlState value) { FControlState = value; }

  // ---- Parent
  TWinControl* Parent() const { return FParent; }
  virtual void SetParent(TWinControl* parent);
  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override;
  void SetParentComponent(TComponent* parent) override;

  // ---- Widget
  // The widget, or none before the control has one.
  QWidget* Widget() const { return FWidget.data(); }
  bool HandleAllocated() const { return !FWidget.isNull(); }
  // The widget, made now if need be (a control without a parent has none: returns none).
  QWidget* Handle();
  void HandleNeeded();

  // ---- Z-order and painting
  void BringToFront();
  void SendToBack();
  void Invalidate();
  void Repaint();
  void Update();
  void Refresh() { Repaint(); }

  // ---- Messages
  // Every message of the control passes here first; the base hands design-state input
  // to the form's designer, then dispatches.
  virtual void WndProc(TMessage& message);
  // Handles one message by number (the base knows none).
  virtual void Dispatch(TMessage& message);
  LRESULT Perform(std::uint32_t msg, WPARAM wParam = 0, LPARAM lParam = 0);

  // ---- What input does (each raises its event)
  virtual void Click();
  virtual void DblClick();
  virtual void MouseDown(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseMove(TShiftState shift, int x, int y);
  virtual void MouseUp(TMouseButton button, TShiftState shift, int x, int y);

  // The control's answer to an accelerator key (Alt and a letter) pressed on its form:
  // true when its caption has that accelerator and it acted on it.
  virtual bool DialogChar(Word key);

  // ---- Design state
  // Whether the control is being designed: it takes no input, and hidden controls show.
  bool Designing() const { return ComponentState().Contains(csDesigning); }
  // Sets or clears design state on this control and every control it contains.
  virtual void SetDesignState(bool designing);

  // ---- Scaling
  // Scales position, size and font by m/d (a form read at another resolution).
  virtual void ScaleBy(int m, int d);

  // The parent's font or colour changed (when this control follows it).
  virtual void ParentFontChanged();
  virtual void ParentColorChanged();

  void Loaded() override;
  // IsControl; the designer position of TComponent is not streamed, as Left and Top are
  // real properties of a control.
  void DefineProperties(TFiler& filer) override;

  TNotifyEvent OnClick;
  TNotifyEvent OnDblClick;
  TMouseEvent OnMouseDown;
  TMouseMoveEvent OnMouseMove;
  TMouseEvent OnMouseUp;
  TNotifyEvent OnResize;
  TCanResizeEvent OnCanResize;
  TConstrainedResizeEvent OnConstrainedResize;
  TDragDropEvent OnDragDrop;
  TDragOverEvent OnDragOver;
  TEndDragEvent OnEndDock;
  TEndDragEvent OnEndDrag;
  TStartDockEvent OnStartDock;
  TStartDragEvent OnStartDrag;

  // ---- For the layer's own use
  // The control whose widget (or a widget inside it) `widget` is, or none.
  static TControl* FindControl(const QObject* widget);
  // The widget whose coordinates mouse messages use (the client area of a form).
  virtual QWidget* InputWidget() const { return Widget(); }
  // Input reaching a widget, handled as the control's messages; true swallows the event.
  virtual bool WidgetEvent(QObject* watched, QEvent* event);
  // Paints a control that draws itself (graphic controls, custom controls).
  virtual void Paint(QPainter& painter);
  // The anchor rules were taken from the current position (after loading or a move).
  void UpdateAnchorRules();
  // Where the control goes when its parent's client area has this size.
  TRect AnchoredBounds(TSize parentClient) const;
  // Sets the bounds the alignment gives, without re-recording the anchor rules.
  void SetAlignedBounds(const TRect& r);
  // Makes the widget now that the parent has one.
  virtual void CreateWidget();
  // Pushes every value to the widget.
  virtual void UpdateWidget();
  virtual void UpdateWidgetGeometry();
  virtual void UpdateWidgetVisibility();
  virtual void UpdateWidgetFont();
  virtual void UpdateWidgetColors();
  virtual void UpdateWidgetText();
  // Whether the widget is shown: Visible, or designing (unless the class hides then).
  bool WidgetShouldShow() const;

protected:
  // Sets the widget this control owns (events, name, font, colours and position follow).
  void AdoptWidget(QWidget* widget);
  // Frees the widget (its children went with their controls before).
  void DestroyWidget();

  virtual void FontChanged();
  virtual void ColorChanged();
  virtual void TextChanged();
  virtual void VisibleChanged();
  virtual void EnabledChanged();
  virtual void Resize();
  // The size this control wants when AutoSize is on; false when it has no opinion.
  virtual bool CanAutoSize(int& newWidth, int& newHeight);
  // Applies AutoSize now.
  virtual void AdjustSize();
  // Lets OnCanResize and the constraints have their say on a new size.
  virtual bool CanResize(int& newWidth, int& newHeight);
  void ConstrainedResize(int& minWidth, int& minHeight, int& maxWidth, int& maxHeight);
  // Asks the parent to realign, when this control is aligned or anchored.
  virtual void RequestAlign();
  // Whether mouse clicks make OnClick here (controls whose widget reports its own clicks
  // say no).
  virtual bool ClicksFromMouse() const;

  TWinControl* FParent = nullptr;
  int FLeft = 0;
  int FTop = 0;
  int FWidth = 0;
  int FHeight = 0;
  TAlign FAlign = alNone;
  TAnchors FAnchors{akLeft, akTop};
  TSizeConstraints* FConstraints;
  bool FAutoSize = false;
  std::string FText;
  TFont* FFont;
  TColor FColor = clWindow;
  bool FParentFont = true;
  bool FParentColor = true;
  bool FVisible = true;
  bool FEnabled = true;
  std::string FHint;
  bool FShowHint = false;
  bool FParentShowHint = true;
  TCursor FCursor = crDefault;
  TPopupMenu* FPopupMenu = nullptr;
  TBasicAction* FAction = nullptr;
  TDragMode FDragMode = dmManual;
  TCursor FDragCursor = crDrag;
  TDragKind FDragKind = dkDrag;
  TBiDiMode FBiDiMode = bdLeftToRight;
  bool FParentBiDiMode = true;
  int FHelpContext = 0;
  bool FIsControl = false;
  TControlStyle FControlStyle{csCaptureMouse, csClickEvents, csSetCaption, csDoubleClicks};
  TControlState FControlState;
  QPointer<QWidget> FWidget;
  TWidgetBridge* FBridge = nullptr;
  // Anchor rules: the bounds and the parent's client size they were taken with.
  TRect FAnchorBounds;
  TSize FAnchorParentSize;
  bool FAnchoring = false;
  bool FInSetBounds = false;

  friend class TWinControl;
  friend class TWidgetBridge;
  void Notification(TComponent* component, TOperation operation) override;
  // The widget takes the component's name, so that it can be found by it.
  void ChangeName(const std::string& name) override;
};

class TWinControl : public TControl {
  LUMORA_CLASS(TWinControl, TControl)
public:
  explicit TWinControl(TComponent* owner);
  ~TWinControl() override;

  // ---- Children: graphic controls first, then windowed ones, each in insertion order
  int ControlCount() const { return static_cast<int>(FControls.size() + FWinControls.size()); }
  TControl* Controls(int index) const;
  void InsertControl(TControl* control);
  void RemoveControl(TControl* control);
  bool ContainsControl(TControl* control) const;
  // The direct child control of that name, or none.
  TControl* FindChildControl(std::string_view name) const;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;

  // ---- Alignment
  // Places every aligned and anchored child again.
  void Realign();
  void DisableAlign() { ++FAlignLevel; }
  void EnableAlign();
  bool AlignDisabled() const { return FAlignLevel > 0; }
  // Places the children; `changing` is the child being moved, if any.
  virtual void AlignControls(TControl* changing, TRect& rect);
  // The part of the client area that aligned children share (the client rectangle
  // less borders and bevels).
  virtual void AdjustClientRect(TRect& rect) const;
  int BorderWidth() const { return FBorderWidth; }
  void SetBorderWidth(int value);

  // ---- Focus and tabs
  int TabOrder() const;
  void SetTabOrder(int value);
  bool TabStop() const { return FTabStop; }
  void SetTabStop(bool value);
  // The windowed children in tab order.
  std::vector<TWinControl*> TabList() const;
  bool Focused() const;
  bool CanFocus() const;
  virtual void SetFocus();

  bool Ctl3D() const { return FCtl3D; }
  void SetCtl3D(bool value);
  bool ParentCtl3D() const { return FParentCtl3D; }
  void SetParentCtl3D(bool value);
  bool IsCtl3DStored() const { return !FParentCtl3D; }
  TImeMode ImeMode() const { return FImeMode; }
  void SetImeMode(TImeMode value) { FImeMode = value; }
  const TImeName& ImeName() const { return FImeName; }
  void SetImeName(const TImeName& value) { FImeName = value; }
  bool DockSite() const { return FDockSite; }
  void SetDockSite(bool value) { FDockSite = value; }
  bool UseDockManager() const { return FUseDockManager; }
  void SetUseDockManager(bool value) { FUseDockManager = value; }

  // ---- Widgets
  // The widget children's widgets live in (the control's own widget unless it has an
  // inner client area, as forms and scroll boxes do).
  virtual QWidget* ClientWidget() const;
  // Where the client area's origin is in the client widget: inside the border, which
  // is not part of the client area.
  virtual TPoint ClientWidgetOffset() const;
  // The client area: the control less its border width and its frame.
  TRect ClientRect() const override;
  // Width of the frame around the client area (a single border), besides BorderWidth.
  virtual int FrameSize() const { return 0; }
  // What lies between the control's edge and its client area: the border width and
  // the frame (panels draw their border width inside the client area instead).
  virtual int NonClientInset() const { return FBorderWidth + FrameSize(); }

  // ---- Keys (each raises its event; set the key to 0 to take it)
  virtual void KeyDown(Word& key, TShiftState shift);
  virtual void KeyUp(Word& key, TShiftState shift);
  virtual void KeyPress(char& key);
  virtual void DoEnter();
  virtual void DoExit();

  void SetDesignState(bool designing) override;
  void ScaleBy(int m, int d) override;
  void Loaded() override;
  void ParentFontChanged() override;
  void ParentColorChanged() override;
  void CreateWidget() override;
  void UpdateWidget() override;
  void UpdateWidgetGeometry() override;
  // Puts the children's widgets in tab order.
  void UpdateTabOrder();

  TNotifyEvent OnEnter;
  TNotifyEvent OnExit;
  TKeyEvent OnKeyDown;
  TKeyPressEvent OnKeyPress;
  TKeyEvent OnKeyUp;
  TDockDropEvent OnDockDrop;
  TDockOverEvent OnDockOver;
  TGetSiteInfoEvent OnGetSiteInfo;
  TUnDockEvent OnUnDock;

protected:
  void FontChanged() override;
  void ColorChanged() override;
  void Resize() override;
  // Puts a child's widget into this control's client widget.
  virtual void AttachChildWidget(TControl* child);
  // The windowed children sorted by TabOrder.
  std::vector<TWinControl*> FWinControls;
  std::vector<TControl*> FControls;
  std::vector<TWinControl*> FTabList;
  int FBorderWidth = 0;
  bool FTabStop = false;
  bool FCtl3D = true;
  bool FParentCtl3D = true;
  TImeMode FImeMode = imDontCare;
  TImeName FImeName;
  bool FDockSite = false;
  bool FUseDockManager = false;
  int FAlignLevel = 0;
  bool FAlignPending = false;
  bool FAligning = false;
  int FTabOrderRead = -1;

  friend class TControl;
};

// A control that paints itself on its parent and has no window of its own.
class TGraphicControl : public TControl {
  LUMORA_CLASS(TGraphicControl, TControl)
public:
  explicit TGraphicControl(TComponent* owner);
  void CreateWidget() override;
};

// A windowed control that paints itself.
class TCustomControl : public TWinControl {
  LUMORA_CLASS(TCustomControl, TWinControl)
public:
  explicit TCustomControl(TComponent* owner);
  void CreateWidget() override;
};

// The form a control is on, or none.
TCustomForm* GetParentForm(TControl* control);
// The '&' accelerator of a caption turned into Qt's notation ("&&" stays a literal '&').
QString CaptionToQt(const QString& caption, bool showAccelChar = true);
// The text of a caption without its accelerator marks.
QString StripAccelChars(const QString& caption);
// Whether `key` is the accelerator of `caption` (Alt+key presses it).
bool IsAccel(Word key, const std::string& caption);
