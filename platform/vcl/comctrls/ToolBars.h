#pragma once
// Tool bars and cool bars, on a windowed control with edges.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <string>
#include <vector>

class TToolBar;
class TToolButton;
class TCoolBar;

LUMORA_ENUM(TEdgeBorder, ebLeft, ebTop, ebRight, ebBottom)
LUMORA_SET(TEdgeBorders, TEdgeBorder)
LUMORA_ENUM(TEdgeStyle, esNone, esRaised, esLowered)
LUMORA_ENUM(TToolButtonStyle, tbsButton, tbsCheck, tbsDropDown, tbsSeparator, tbsDivider)

// A windowed control with edges drawn along some of its sides, outside its client area.
class TToolWindow : public TWinControl {
  LUMORA_CLASS(TToolWindow, TWinControl)
public:
  explicit TToolWindow(TComponent* owner);
  TEdgeBorders EdgeBorders() const { return FEdgeBorders; }
  void SetEdgeBorders(TEdgeBorders value);
  TEdgeStyle EdgeInner() const { return FEdgeInner; }
  void SetEdgeInner(TEdgeStyle value);
  TEdgeStyle EdgeOuter() const { return FEdgeOuter; }
  void SetEdgeOuter(TEdgeStyle value);

  // The width of the edges on each side (and the border width).
  TRect NonClientMargins() const;
  TRect ClientRect() const override;
  TPoint ClientWidgetOffset() const override;
  // Draws the edges inside `rect` of the control.
  void PaintEdges(QPainter& painter);

protected:
  void EdgesChanged();
  TEdgeBorders FEdgeBorders;
  TEdgeStyle FEdgeInner = esRaised;
  TEdgeStyle FEdgeOuter = esLowered;
};

// A button of a tool bar (or a separator between them). The tool bar places it.
class TToolButton : public TGraphicControl {
  LUMORA_CLASS(TToolButton, TGraphicControl)
public:
  explicit TToolButton(TComponent* owner);
  ~TToolButton() override;

  bool AllowAllUp() const { return FAllowAllUp; }
  void SetAllowAllUp(bool value) { FAllowAllUp = value; }
  bool Down() const { return FDown; }
  void SetDown(bool value);
  TPopupMenu* DropdownMenu() const { return FDropdownMenu; }
  void SetDropdownMenu(TPopupMenu* value);
  bool Grouped() const { return FGrouped; }
  void SetGrouped(bool value) { FGrouped = value; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  bool Indeterminate() const { return FIndeterminate; }
  void SetIndeterminate(bool value);
  bool Marked() const { return FMarked; }
  void SetMarked(bool value);
  TMenuItem* MenuItem() const { return FMenuItem; }
  void SetMenuItem(TMenuItem* value);
  TToolButtonStyle Style() const { return FStyle; }
  void SetStyle(TToolButtonStyle value);
  bool Wrap() const { return FWrap; }
  void SetWrap(bool value);
  bool IsWidthStored() const { return FStyle == tbsSeparator || FStyle == tbsDivider; }
  // The position among the tool bar's buttons (-1 off a tool bar).
  int Index() const;
  // Whether the mouse is held down on the button now.
  bool Pressed() const { return FPressed; }

  TToolBar* ToolBar() const;
  void SetParent(TWinControl* parent) override;
  void Paint(QPainter& painter) override;
  void Click() override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;
  void ActionChange(TBasicAction* sender, bool checkDefaults) override;
  void Notification(TComponent* component, TOperation operation) override;
  // Shows the drop-down menu below the button.
  bool CheckMenuDropdown();

protected:
  void TextChanged() override;
  void VisibleChanged() override;
  void EnabledChanged() override;
  void RequestLayout();

private:
  bool FAllowAllUp = false;
  bool FDown = false;
  TPopupMenu* FDropdownMenu = nullptr;
  bool FGrouped = false;
  int FImageIndex = -1;
  bool FIndeterminate = false;
  bool FMarked = false;
  TMenuItem* FMenuItem = nullptr;
  TToolButtonStyle FStyle = tbsButton;
  bool FWrap = false;
  bool FPressed = false;
  bool FHot = false;
};

// A bar of tool buttons (and other controls) placed side by side from its left edge,
// wrapped to new rows when they do not fit.
class TToolBar : public TToolWindow {
  LUMORA_CLASS(TToolBar, TToolWindow)
public:
  explicit TToolBar(TComponent* owner);
  ~TToolBar() override;

  int ButtonCount() const;
  // The control at position `index` of the bar (buttons and other controls alike).
  TControl* ButtonControls(int index) const;
  // The tool button at position `index`, or none when that control is not a button.
  TToolButton* Buttons(int index) const;
  int RowCount() const { return FRowCount; }

  int ButtonHeight() const { return FButtonHeight; }
  void SetButtonHeight(int value);
  int ButtonWidth() const { return FButtonWidth; }
  void SetButtonWidth(int value);
  TCustomImageList* DisabledImages() const { return FDisabledImages; }
  void SetDisabledImages(TCustomImageList* value);
  TCustomImageList* HotImages() const { return FHotImages; }
  void SetHotImages(TCustomImageList* value);
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  bool Flat() const { return FFlat; }
  void SetFlat(bool value);
  int Indent() const { return FIndent; }
  void SetIndent(int value);
  bool List() const { return FList; }
  void SetList(bool value);
  bool ShowCaptions() const { return FShowCaptions; }
  void SetShowCaptions(bool value);
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  bool Wrapable() const { return FWrapable; }
  void SetWrapable(bool value);

  void AlignControls(TControl* changing, TRect& rect) override;
  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void Notification(TComponent* component, TOperation operation) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void Loaded() override;
  // Places the buttons again (after a change to one of them).
  void ArrangeButtons();

protected:
  friend class TToolButton;
  bool CanAutoSize(int& newWidth, int& newHeight) override;
  void FontChanged() override;
  // The width a button takes in the bar.
  int ButtonExtent(TControl* control) const;
  // Brings the list of buttons up to date with the controls the bar holds.
  void SyncButtons();

private:
  std::vector<TControl*> FButtons;
  int FButtonHeight = 22;
  int FButtonWidth = 23;
  TCustomImageList* FDisabledImages = nullptr;
  TCustomImageList* FHotImages = nullptr;
  TCustomImageList* FImages = nullptr;
  bool FFlat = false;
  int FIndent = 0;
  bool FList = false;
  bool FShowCaptions = false;
  bool FTransparent = false;
  bool FWrapable = true;
  int FRowCount = 1;
  bool FArranging = false;
};

// ---------------------------------------------------------------------------------------
// Cool bars

class TCoolBand : public TCollectionItem {
  LUMORA_CLASS(TCoolBand, TCollectionItem)
public:
  explicit TCoolBand(TCollection* collection);
  ~TCoolBand() override;
  void Assign(TPersistent* source) override;
  TCoolBar* CoolBar() const;
  TBitmap* Bitmap() const { return FBitmap; }
  void SetBitmap(TBitmap* value) { FBitmap->Assign(value); }
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  bool Break() const { return FBreak; }
  void SetBreak(bool value);
  TColor Color() const { return FColor; }
  void SetColor(TColor value);
  TWinControl* Control() const { return FControl; }
  void SetControl(TWinControl* value);
  bool FixedBackground() const { return FFixedBackground; }
  void SetFixedBackground(bool value) { FFixedBackground = value; }
  bool FixedSize() const { return FFixedSize; }
  void SetFixedSize(bool value);
  bool HorizontalOnly() const { return FHorizontalOnly; }
  void SetHorizontalOnly(bool value) { FHorizontalOnly = value; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  int MinHeight() const { return FMinHeight; }
  void SetMinHeight(int value);
  int MinWidth() const { return FMinWidth; }
  void SetMinWidth(int value);
  bool ParentBitmap() const { return FParentBitmap; }
  void SetParentBitmap(bool value) { FParentBitmap = value; }
  bool ParentColor() const { return FParentColor; }
  void SetParentColor(bool value);
  bool IsColorStored() const { return !FParentColor; }
  const std::string& Text() const { return FText; }
  void SetText(const std::string& value);
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);
  int Width() const { return FWidth; }
  void SetWidth(int value);
  // Where the band is, in the cool bar's client area (after the bar was laid out).
  TRect BandRect() const { return FRect; }

protected:
  std::string GetDisplayName() const override;

private:
  friend class TCoolBar;
  TBitmap* FBitmap;
  TBorderStyle FBorderStyle = BorderStyleOf(bsNone);
  bool FBreak = true;
  TColor FColor = clBtnFace;
  TWinControl* FControl = nullptr;
  bool FFixedBackground = true;
  bool FFixedSize = false;
  bool FHorizontalOnly = false;
  int FImageIndex = -1;
  int FMinHeight = 25;
  int FMinWidth = 0;
  bool FParentBitmap = true;
  bool FParentColor = true;
  std::string FText;
  bool FVisible = true;
  int FWidth = 0;
  TRect FRect;
};

class TCoolBands : public TCollection {
  LUMORA_CLASS(TCoolBands, TCollection)
public:
  explicit TCoolBands(TCoolBar* coolBar);
  TCoolBand* Add() { return static_cast<TCoolBand*>(TCollection::Add()); }
  TCoolBand* Items(int index) const { return static_cast<TCoolBand*>(TCollection::Items(index)); }
  TCoolBar* CoolBar() const { return FCoolBar; }
  TPersistent* GetOwner() override;
  // The band that holds `control`, or none.
  TCoolBand* FindBand(TControl* control) const;

protected:
  void Update(TCollectionItem* item) override;

private:
  TCoolBar* FCoolBar;
};

// Bands in rows, each with a gripper, a text and a control (often a tool bar).
class TCoolBar : public TToolWindow {
  LUMORA_CLASS(TCoolBar, TToolWindow)
public:
  explicit TCoolBar(TComponent* owner);
  ~TCoolBar() override;
  TCoolBands* Bands() const { return FBands; }
  void SetBands(TCoolBands* value) { FBands->Assign(value); }
  TBorderStyle BandBorderStyle() const { return FBandBorderStyle; }
  void SetBandBorderStyle(TBorderStyle value);
  TBitmap* Bitmap() const { return FBitmap; }
  void SetBitmap(TBitmap* value) { FBitmap->Assign(value); }
  bool FixedOrder() const { return FFixedOrder; }
  void SetFixedOrder(bool value) { FFixedOrder = value; }
  bool FixedSize() const { return FFixedSize; }
  void SetFixedSize(bool value);
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  bool ShowText() const { return FShowText; }
  void SetShowText(bool value);
  bool Vertical() const { return FVertical; }
  void SetVertical(bool value);
  int RowCount() const { return FRowCount; }
  // Places the bands and their controls.
  void ArrangeBands();

  TNotifyEvent OnChange;

  void AlignControls(TControl* changing, TRect& rect) override;
  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;
  // How far a band's control stands from the band's left edge.
  int BandIndent(const TCoolBand* band) const;

private:
  TCoolBands* FBands;
  TBorderStyle FBandBorderStyle = BorderStyleOf(bsSingle);
  TBitmap* FBitmap;
  bool FFixedOrder = false;
  bool FFixedSize = false;
  TCustomImageList* FImages = nullptr;
  bool FShowText = true;
  bool FVertical = false;
  int FRowCount = 0;
  bool FArranging = false;
};
