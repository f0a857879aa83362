#pragma once
// Status bars and header controls: a row of panels or sections painted in the classic manner.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <string>

class TStatusBar;
class TStatusPanel;
class THeaderControl;
class THeaderSection;

LUMORA_ENUM(TStatusPanelStyle, psText, psOwnerDraw)
LUMORA_ENUM(TStatusPanelBevel, pbNone, pbLowered, pbRaised)
LUMORA_EVENT(TDrawPanelEvent, void(TStatusBar* StatusBar, TStatusPanel* Panel, TRect Rect))

class TStatusPanel : public TCollectionItem {
  LUMORA_CLASS(TStatusPanel, TCollectionItem)
public:
  explicit TStatusPanel(TCollection* collection);
  void Assign(TPersistent* source) override;

  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  TStatusPanelBevel Bevel() const { return FBevel; }
  void SetBevel(TStatusPanelBevel value);
  TBiDiMode BiDiMode() const { return FBiDiMode; }
  void SetBiDiMode(TBiDiMode value);
  bool ParentBiDiMode() const { return FParentBiDiMode; }
  void SetParentBiDiMode(bool value);
  bool IsBiDiModeStored() const { return !FParentBiDiMode; }
  TStatusPanelStyle Style() const { return FStyle; }
  void SetStyle(TStatusPanelStyle value);
  const std::string& Text() const { return FText; }
  void SetText(const std::string& value);
  int Width() const { return FWidth; }
  void SetWidth(int value);

protected:
  std::string GetDisplayName() const override;

private:
  TAlignment FAlignment = taLeftJustify;
  TStatusPanelBevel FBevel = pbLowered;
  TBiDiMode FBiDiMode = bdLeftToRight;
  bool FParentBiDiMode = true;
  TStatusPanelStyle FStyle = psText;
  std::string FText;
  int FWidth = 50;
};

class TStatusPanels : public TCollection {
  LUMORA_CLASS(TStatusPanels, TCollection)
public:
  explicit TStatusPanels(TStatusBar* statusBar);
  TStatusPanel* Add() { return static_cast<TStatusPanel*>(TCollection::Add()); }
  TStatusPanel* Items(int index) const { return static_cast<TStatusPanel*>(TCollection::Items(index)); }
  TPersistent* GetOwner() override;

protected:
  void Update(TCollectionItem* item) override;

private:
  TStatusBar* FStatusBar;
};

// A bar of panels along the bottom of a form. Each panel shows its text inside a bevel;
// the last one stretches to the bar's end; with SimplePanel one text fills the bar.
class TStatusBar : public TWinControl {
  LUMORA_CLASS(TStatusBar, TWinControl)
public:
  explicit TStatusBar(TComponent* owner);
  ~TStatusBar() override;

  TStatusPanels* Panels() const { return FPanels; }
  void SetPanels(TStatusPanels* value) { FPanels->Assign(value); }
  bool SimplePanel() const { return FSimplePanel; }
  void SetSimplePanel(bool value);
  const std::string& SimpleText() const { return FSimpleText; }
  void SetSimpleText(const std::string& value);
  bool SizeGrip() const { return FSizeGrip; }
  void SetSizeGrip(bool value);
  bool AutoHint() const { return FAutoHint; }
  void SetAutoHint(bool value) { FAutoHint = value; }
  bool UseSystemFont() const { return FUseSystemFont; }
  void SetUseSystemFont(bool value) { FUseSystemFont = value; }

  // Where panel `index` is drawn (its bevel included), in the bar's coordinates.
  TRect PanelRect(int index) const;
  // Whether the size grip shows (a sizeable form and SizeGrip).
  bool GripShowing() const;

  TDrawPanelEvent OnDrawPanel;
  TNotifyEvent OnHint;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  // Panel changes repaint the bar.
  void PanelsChanged();

private:
  TStatusPanels* FPanels;
  bool FSimplePanel = false;
  std::string FSimpleText;
  bool FSizeGrip = true;
  bool FAutoHint = false;
  bool FUseSystemFont = true;
};

// ---------------------------------------------------------------------------------------
// Header controls

LUMORA_ENUM(THeaderSectionStyle, hsText, hsOwnerDraw)
LUMORA_ENUM(THeaderStyle, hsButtons, hsFlat)
LUMORA_ENUM(TSectionTrackState, tsTrackBegin, tsTrackMove, tsTrackEnd)
LUMORA_EVENT(TSectionNotifyEvent, void(THeaderControl* HeaderControl, THeaderSection* Section))
LUMORA_EVENT(TSectionTrackEvent, void(THeaderControl* HeaderControl, THeaderSection* Section, int Width,
                                      TSectionTrackState State))
LUMORA_EVENT(TSectionDragEvent, void(TObject* Sender, THeaderSection* FromSection, THeaderSection* ToSection,
                                     bool& AllowDrag))
LUMORA_EVENT(TDrawSectionEvent, void(THeaderControl* HeaderControl, THeaderSection* Section, TRect Rect,
                                     bool Pressed))

class THeaderSection : public TCollectionItem {
  LUMORA_CLASS(THeaderSection, TCollectionItem)
public:
  explicit THeaderSection(TCollection* collection);
  void Assign(TPersistent* source) override;
  bool AllowClick() const { return FAllowClick; }
  void SetAllowClick(bool value) { FAllowClick = value; }
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  bool AutoSize() const { return FAutoSize; }
  void SetAutoSize(bool value);
  TBiDiMode BiDiMode() const { return FBiDiMode; }
  void SetBiDiMode(TBiDiMode value);
  bool ParentBiDiMode() const { return FParentBiDiMode; }
  void SetParentBiDiMode(bool value) { FParentBiDiMode = value; }
  bool IsBiDiModeStored() const { return !FParentBiDiMode; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  int MaxWidth() const { return FMaxWidth; }
  void SetMaxWidth(int value);
  int MinWidth() const { return FMinWidth; }
  void SetMinWidth(int value);
  THeaderSectionStyle Style() const { return FStyle; }
  void SetStyle(THeaderSectionStyle value);
  const std::string& Text() const { return FText; }
  void SetText(const std::string& value);
  int Width() const { return FWidth; }
  void SetWidth(int value);
  // The left and right edges in the header.
  int Left() const;
  int Right() const { return Left() + FWidth; }

protected:
  std::string GetDisplayName() const override;

private:
  bool FAllowClick = true;
  TAlignment FAlignment = taLeftJustify;
  bool FAutoSize = false;
  TBiDiMode FBiDiMode = bdLeftToRight;
  bool FParentBiDiMode = true;
  int FImageIndex = -1;
  int FMaxWidth = 10000;
  int FMinWidth = 0;
  THeaderSectionStyle FStyle = hsText;
  std::string FText;
  int FWidth = 50;
};

class THeaderSections : public TCollection {
  LUMORA_CLASS(THeaderSections, TCollection)
public:
  explicit THeaderSections(THeaderControl* header);
  THeaderSection* Add() { return static_cast<THeaderSection*>(TCollection::Add()); }
  THeaderSection* Items(int index) const { return static_cast<THeaderSection*>(TCollection::Items(index)); }
  TPersistent* GetOwner() override;

protected:
  void Update(TCollectionItem* item) override;

private:
  THeaderControl* FHeader;
};

// Column headings side by side; a click on one raises OnSectionClick, dragging the
// edge between two resizes the one on the left.
class THeaderControl : public TWinControl {
  LUMORA_CLASS(THeaderControl, TWinControl)
public:
  explicit THeaderControl(TComponent* owner);
  ~THeaderControl() override;
  THeaderSections* Sections() const { return FSections; }
  void SetSections(THeaderSections* value) { FSections->Assign(value); }
  bool DragReorder() const { return FDragReorder; }
  void SetDragReorder(bool value) { FDragReorder = value; }
  bool FullDrag() const { return FFullDrag; }
  void SetFullDrag(bool value) { FFullDrag = value; }
  bool HotTrack() const { return FHotTrack; }
  void SetHotTrack(bool value) { FHotTrack = value; }
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  THeaderStyle Style() const { return FStyle; }
  void SetStyle(THeaderStyle value);
  // The section at a point, or none.
  THeaderSection* SectionAt(int x) const;

  TDrawSectionEvent OnDrawSection;
  TSectionNotifyEvent OnSectionClick;
  TSectionNotifyEvent OnSectionResize;
  TSectionTrackEvent OnSectionTrack;
  TSectionDragEvent OnSectionDrag;
  TNotifyEvent OnSectionEndDrag;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void Notification(TComponent* component, TOperation operation) override;
  void SectionsChanged();

protected:
  bool ClicksFromMouse() const override { return false; }

private:
  THeaderSections* FSections;
  bool FDragReorder = false;
  bool FFullDrag = true;
  bool FHotTrack = false;
  TCustomImageList* FImages = nullptr;
  THeaderStyle FStyle = hsButtons;
  THeaderSection* FPressed = nullptr;
  THeaderSection* FTracking = nullptr;
  int FTrackOrigin = 0;
  int FTrackStart = 0;
};
