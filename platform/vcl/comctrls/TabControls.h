#pragma once
// Tab controls and page controls.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <vector>

class TCustomTabControl;
class TPageControl;
class TTabSheet;

LUMORA_ENUM(TTabPosition, tpTop, tpBottom, tpLeft, tpRight)
LUMORA_ENUM(TTabStyle, tsTabs, tsButtons, tsFlatButtons)
// (Sender, AllowChange): the shape of TCloseQueryEvent.
using TTabChangingEvent = TCloseQueryEvent;
LUMORA_EVENT(TDrawTabEvent, void(TCustomTabControl* Control, int TabIndex, TRect Rect, bool Active))
LUMORA_EVENT(TTabGetImageEvent, void(TObject* Sender, int TabIndex, int& ImageIndex))

// A row of tabs above (or beside) a display area. The tabs are painted in the classic
// manner; a click on a tab selects it (OnChanging may refuse, OnChange follows).
class TCustomTabControl : public TWinControl {
  LUMORA_CLASS(TCustomTabControl, TWinControl)
public:
  explicit TCustomTabControl(TComponent* owner);
  ~TCustomTabControl() override;

  TStrings* Tabs() const { return FTabs; }
  void SetTabs(TStrings* value) { FTabs->Assign(value); }
  // The selected tab (-1 for none); setting it raises no event.
  int TabIndex() const { return FTabIndex; }
  virtual void SetTabIndex(int value);
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  bool HotTrack() const { return FHotTrack; }
  void SetHotTrack(bool value) { FHotTrack = value; }
  bool MultiLine() const { return FMultiLine; }
  void SetMultiLine(bool value);
  bool MultiSelect() const { return FMultiSelect; }
  void SetMultiSelect(bool value) { FMultiSelect = value; }
  bool OwnerDraw() const { return FOwnerDraw; }
  void SetOwnerDraw(bool value);
  bool RaggedRight() const { return FRaggedRight; }
  void SetRaggedRight(bool value);
  bool ScrollOpposite() const { return FScrollOpposite; }
  void SetScrollOpposite(bool value) { FScrollOpposite = value; }
  TTabStyle Style() const { return FStyle; }
  void SetStyle(TTabStyle value);
  short TabHeight() const { return FTabHeight; }
  void SetTabHeight(short value);
  TTabPosition TabPosition() const { return FTabPosition; }
  void SetTabPosition(TTabPosition value);
  short TabWidth() const { return FTabWidth; }
  void SetTabWidth(short value);

  // Where the pages go, in the control's coordinates.
  TRect DisplayRect() const;
  // The rectangle of tab `index` in the control's coordinates (empty outside the range).
  TRect TabRect(int index) const;
  // The tab at a point of the control, or -1.
  int IndexOfTabAt(int x, int y) const;
  // The number of tab rows.
  int RowCount() const;

  TNotifyEvent OnChange;
  TTabChangingEvent OnChanging;
  TDrawTabEvent OnDrawTab;
  TTabGetImageEvent OnGetImageIndex;

  void AdjustClientRect(TRect& rect) const override;
  void Paint(QPainter& painter) override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void Notification(TComponent* component, TOperation operation) override;
  void CreateWidget() override;

protected:
  // OnChanging's answer to leaving the selected tab.
  virtual bool CanChange();
  // The selection changed through the user: raises OnChange.
  virtual void Change();
  // The image shown on tab `tabIndex` (the tab's index; OnGetImageIndex may change it).
  virtual int GetImageIndex(int tabIndex);
  // The user picked tab `index`: asks CanChange, selects it and raises Change.
  void SelectTabByUser(int index);
  // The tabs changed: lay them out and realign the pages.
  void TabsChanged();
  void FontChanged() override;
  void Resize() override;

  TStringList* FTabs;
  int FTabIndex = -1;
  bool FUpdatingTabs = false;

private:
  struct TTabLayout {
    std::vector<TRect> Tabs;  // in the control's coordinates, before the selected row moves
    std::vector<int> Row;     // the row of each tab
    int Rows = 1;
    int RowHeight = 0;
  };
  // The size of the strip the tabs need, given the current tabs, font and width.
  TTabLayout Layout() const;
  int TabRowHeight() const;
  bool Buttons() const { return FStyle != tsTabs; }
  bool Vertical() const { return FTabPosition == tpLeft || FTabPosition == tpRight; }

  TCustomImageList* FImages = nullptr;
  bool FHotTrack = false;
  bool FMultiLine = false;
  bool FMultiSelect = false;
  bool FOwnerDraw = false;
  bool FRaggedRight = false;
  bool FScrollOpposite = false;
  TTabStyle FStyle = tsTabs;
  short FTabHeight = 0;
  TTabPosition FTabPosition = tpTop;
  short FTabWidth = 0;
};

class TTabControl : public TCustomTabControl {
  LUMORA_CLASS(TTabControl, TCustomTabControl)
public:
  explicit TTabControl(TComponent* owner) : TCustomTabControl(owner) {}
};

// One page of a page control; its tab shows its Caption.
class TTabSheet : public TWinControl {
  LUMORA_CLASS(TTabSheet, TWinControl)
public:
  explicit TTabSheet(TComponent* owner);
  ~TTabSheet() override;

  TPageControl* PageControl() const { return FPageControl; }
  void SetPageControl(TPageControl* value);
  // The position among the pages of the page control (-1 without one).
  int PageIndex() const;
  void SetPageIndex(int value);
  // The index of the page's tab among the visible tabs (-1 when its tab is hidden).
  int TabIndex() const;
  bool TabVisible() const { return FTabVisible; }
  void SetTabVisible(bool value);
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);

  TNotifyEvent OnShow;
  TNotifyEvent OnHide;

  void SetParent(TWinControl* parent) override;
  void Paint(QPainter& painter) override;
  void CreateWidget() override;

protected:
  friend class TPageControl;
  void TextChanged() override;
  void DoShow();
  void DoHide();

private:
  TPageControl* FPageControl = nullptr;
  bool FTabVisible = true;
  int FImageIndex = 0;
};

// Pages (tab sheets) with a tab each; the active page shows.
class TPageControl : public TCustomTabControl {
  LUMORA_CLASS(TPageControl, TCustomTabControl)
public:
  explicit TPageControl(TComponent* owner);
  ~TPageControl() override;

  int PageCount() const { return static_cast<int>(FPages.size()); }
  // The page at `index`; EListError outside the range.
  TTabSheet* Pages(int index) const;
  TTabSheet* ActivePage() const { return FActivePage; }
  void SetActivePage(TTabSheet* page);
  int ActivePageIndex() const;
  void SetActivePageIndex(int value);
  // The next (or previous) page after `current`, wrapping around; with `checkTabVisible`
  // only pages whose tab shows count. None when there is none.
  TTabSheet* FindNextPage(TTabSheet* current, bool goForward, bool checkTabVisible) const;
  // Activates the next page as a click on its tab would (OnChanging may refuse).
  void SelectNextPage(bool goForward);

  void SetTabIndex(int value) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Loaded() override;

protected:
  friend class TTabSheet;
  void Change() override;
  int GetImageIndex(int tabIndex) override;
  void InsertPage(TTabSheet* page);
  void RemovePage(TTabSheet* page);
  void MovePage(TTabSheet* page, int index);
  // Rebuilds the tabs from the pages whose tab shows.
  void UpdateTabs();
  void ChangeActivePage(TTabSheet* page);

private:
  std::vector<TTabSheet*> FPages;
  TTabSheet* FActivePage = nullptr;
};
