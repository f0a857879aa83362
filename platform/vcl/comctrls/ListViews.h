#pragma once
// List views: columns, items and the control.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/comctrls/ViewTypes.h"

#include <QPointer>

#include <string>
#include <vector>

class QTreeWidget;
class TCustomListView;
class TListItem;
class TListColumn;

LUMORA_ENUM(TViewStyle, vsIcon, vsSmallIcon, vsList, vsReport)
LUMORA_ENUM(TIconArrangement, iaTop, iaLeft)
LUMORA_ENUM(TListHotTrackStyle, htHandPoint, htUnderlineCold, htUnderlineHot)
LUMORA_SET(TListHotTrackStyles, TListHotTrackStyle)
LUMORA_ENUM(TItemChange, ctText, ctImage, ctState)
LUMORA_ENUM(TItemState, isNone, isCut, isDropHilited, isFocused, isSelected, isActivating)
LUMORA_SET(TItemStates, TItemState)
LUMORA_ENUM(TItemFind, ifData, ifPartialString, ifExactString, ifNearest)
LUMORA_ENUM(TSearchDirection, sdLeft, sdRight, sdAbove, sdBelow, sdAll)
LUMORA_ENUM(TDisplayCode, drBounds, drIcon, drLabel, drSelectBounds)
// A column's width: a number of pixels, or one of these.
constexpr int ColumnHeaderWidth = -2;
constexpr int ColumnTextWidth = -1;

LUMORA_EVENT(TLVNotifyEvent, void(TObject* Sender, TListItem* Item))
using TLVDeletedEvent = TLVNotifyEvent;
using TLVOwnerDataEvent = TLVNotifyEvent;
LUMORA_EVENT(TLVChangeEvent, void(TObject* Sender, TListItem* Item, TItemChange Change))
LUMORA_EVENT(TLVChangingEvent, void(TObject* Sender, TListItem* Item, TItemChange Change, bool& AllowChange))
LUMORA_EVENT(TLVColumnClickEvent, void(TObject* Sender, TListColumn* Column))
LUMORA_EVENT(TLVColumnRClickEvent, void(TObject* Sender, TListColumn* Column, TPoint Point))
LUMORA_EVENT(TLVCompareEvent, void(TObject* Sender, TListItem* Item1, TListItem* Item2, int Data, int& Compare))
LUMORA_EVENT(TLVCustomDrawEvent, void(TCustomListView* Sender, TRect ARect, bool& DefaultDraw))
LUMORA_EVENT(TLVCustomDrawItemEvent, void(TCustomListView* Sender, TListItem* Item, TCustomDrawState State,
                                          bool& DefaultDraw))
LUMORA_EVENT(TLVCustomDrawSubItemEvent, void(TCustomListView* Sender, TListItem* Item, int SubItem,
                                             TCustomDrawState State, bool& DefaultDraw))
LUMORA_EVENT(TLVDrawItemEvent, void(TCustomListView* Sender, TListItem* Item, TRect Rect, TOwnerDrawState State))
LUMORA_EVENT(TLVEditingEvent, void(TObject* Sender, TListItem* Item, bool& AllowEdit))
LUMORA_EVENT(TLVEditedEvent, void(TObject* Sender, TListItem* Item, std::string& S))
using TLVInfoTipEvent = TLVEditedEvent;
LUMORA_EVENT(TLVSelectItemEvent, void(TObject* Sender, TListItem* Item, bool Selected))
LUMORA_EVENT(TLVOwnerDataHintEvent, void(TObject* Sender, int StartIndex, int EndIndex))
LUMORA_EVENT(TLVOwnerDataFindEvent, void(TObject* Sender, TItemFind Find, const std::string& FindString,
                                         TPoint FindPosition, void* FindData, int StartIndex,
                                         TSearchDirection Direction, bool Wrap, int& Index))
LUMORA_EVENT(TLVOwnerDataStateChangeEvent, void(TObject* Sender, int StartIndex, int EndIndex, TItemStates OldState,
                                                TItemStates NewState))

class TListColumn : public TCollectionItem {
  LUMORA_CLASS(TListColumn, TCollectionItem)
public:
  explicit TListColumn(TCollection* collection);
  void Assign(TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;

  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  bool AutoSize() const { return FAutoSize; }
  void SetAutoSize(bool value);
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& value);
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  int MaxWidth() const { return FMaxWidth; }
  void SetMaxWidth(int value);
  int MinWidth() const { return FMinWidth; }
  void SetMinWidth(int value);
  int Tag() const { return FTag; }
  void SetTag(int value) { FTag = value; }
  // Pixels; ColumnTextWidth and ColumnHeaderWidth size the column to its content.
  int Width() const;
  void SetWidth(int value);
  // The width as set (before the widget sized a self-sizing column).
  int WidthType() const { return FWidth; }

protected:
  std::string GetDisplayName() const override;

private:
  TAlignment FAlignment = taLeftJustify;
  bool FAutoSize = false;
  std::string FCaption;
  int FImageIndex = -1;
  int FMaxWidth = 0;
  int FMinWidth = 0;
  int FTag = 0;
  int FWidth = 50;
};

class TListColumns : public TCollection {
  LUMORA_CLASS(TListColumns, TCollection)
public:
  explicit TListColumns(TCustomListView* owner);
  TListColumn* Add() { return static_cast<TListColumn*>(TCollection::Add()); }
  TListColumn* Items(int index) const { return static_cast<TListColumn*>(TCollection::Items(index)); }
  TCustomListView* Owner() const { return FOwner; }
  TPersistent* GetOwner() override;

protected:
  void Update(TCollectionItem* item) override;

private:
  TCustomListView* FOwner;
};

class TListItems;

// One item of a list view: a caption, the texts of the other columns and images.
class TListItem : public TPersistent {
  LUMORA_CLASS(TListItem, TPersistent)
public:
  explicit TListItem(TListItems* owner);
  ~TListItem() override;

  TListItems* Owner() const { return FOwner; }
  TCustomListView* ListView() const;
  int Index() const;
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& value);
  // The texts of the columns after the first.
  TStrings* SubItems() const { return FSubItems; }
  void SetSubItems(TStrings* value) { FSubItems->Assign(value); }
  int SubItemImages(int index) const;
  void SetSubItemImages(int index, int value);
  void* Data() const { return FData; }
  void SetData(void* value) { FData = value; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  int StateIndex() const { return FStateIndex; }
  void SetStateIndex(int value);
  int OverlayIndex() const { return FOverlayIndex; }
  void SetOverlayIndex(int value) { FOverlayIndex = value; }
  bool Checked() const { return FChecked; }
  void SetChecked(bool value);
  bool Selected() const { return FSelected; }
  void SetSelected(bool value);
  bool Focused() const;
  void SetFocused(bool value);
  void Delete();
  void MakeVisible(bool partialOK);
  // The item's rectangle in the list view's client area; empty while it does not show.
  TRect DisplayRect(TDisplayCode code) const;
  void Assign(TPersistent* source) override;

private:
  friend class TListItems;
  friend class TCustomListView;
  void Changed(TItemChange change);

  TListItems* FOwner;
  std::string FCaption;
  TStringList* FSubItems;
  std::vector<int> FSubItemImages;
  void* FData = nullptr;
  int FImageIndex = -1;
  int FStateIndex = -1;
  int FOverlayIndex = -1;
  bool FChecked = false;
  bool FSelected = false;
};

// The items of a list view. Streams them as the binary property Data.
class TListItems : public TPersistent {
  LUMORA_CLASS(TListItems, TPersistent)
public:
  explicit TListItems(TCustomListView* owner);
  ~TListItems() override;

  TCustomListView* Owner() const { return FOwner; }
  int Count() const { return static_cast<int>(FItems.size()); }
  // A list view with OwnerData has as many items as it is told (OnData fills them).
  void SetCount(int value);
  // The item at `index`; EListError outside the range.
  TListItem* Item(int index) const;
  TListItem* operator[](int index) const { return Item(index); }
  TListItem* Add();
  TListItem* Insert(int index);
  void Delete(int index);
  void Clear();
  int IndexOf(const TListItem* item) const;
  void BeginUpdate();
  void EndUpdate();

  void Assign(TPersistent* source) override;
  TPersistent* GetOwner() override;
  void DefineProperties(TFiler& filer) override;
  void ReadData(TStream& stream);
  void WriteData(TStream& stream) const;

private:
  friend class TListItem;
  friend class TCustomListView;
  std::vector<TListItem*> FItems;
  TCustomListView* FOwner;
  int FUpdateCount = 0;
  // Whether the data read had the images of the sub-items after the items, as later
  // versions write; they are written back then.
  bool FSubItemImagesStreamed = false;
};

// How icons are arranged in the icon views.
class TIconOptions : public TPersistent {
  LUMORA_CLASS(TIconOptions, TPersistent)
public:
  explicit TIconOptions(TCustomListView* owner = nullptr) : FOwner(owner) {}
  void Assign(TPersistent* source) override;
  TIconArrangement Arrangement() const { return FArrangement; }
  void SetArrangement(TIconArrangement value) { FArrangement = value; }
  bool AutoArrange() const { return FAutoArrange; }
  void SetAutoArrange(bool value) { FAutoArrange = value; }
  bool WrapText() const { return FWrapText; }
  void SetWrapText(bool value) { FWrapText = value; }

private:
  TCustomListView* FOwner;
  TIconArrangement FArrangement = iaTop;
  bool FAutoArrange = false;
  bool FWrapText = true;
};

// Items in rows with columns (report view) or as a list of captions with their icons.
class TCustomListView : public TWinControl {
  LUMORA_CLASS(TCustomListView, TWinControl)
public:
  explicit TCustomListView(TComponent* owner);
  ~TCustomListView() override;

  TListColumns* Columns() const { return FColumns; }
  void SetColumns(TListColumns* value) { FColumns->Assign(value); }
  TListColumn* Column(int index) const { return FColumns->Items(index); }
  TListItems* Items() const { return FListItems; }
  void SetItems(TListItems* value) { FListItems->Assign(value); }
  TIconOptions* IconOptions() const { return FIconOptions; }
  void SetIconOptions(TIconOptions* value) { FIconOptions->Assign(value); }

  // The first selected item, or none; setting it selects only that item.
  TListItem* Selected() const;
  void SetSelected(TListItem* item);
  TListItem* ItemFocused() const;
  void SetItemFocused(TListItem* item);
  int SelCount() const;
  TListItem* TopItem() const;
  TListItem* GetItemAt(int x, int y) const;
  // The first item from `startIndex` whose caption is `value` (or begins with it, when
  // `partial`), or none.
  TListItem* FindCaption(int startIndex, const std::string& value, bool partial, bool inclusive, bool wrap) const;
  // Sorts the items by caption (OnCompare decides when set).
  bool AlphaSort();
  void Clear() { FListItems->Clear(); }

  int AllocBy() const { return FAllocBy; }
  void SetAllocBy(int value) { FAllocBy = value; }
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  bool Checkboxes() const { return FCheckboxes; }
  void SetCheckboxes(bool value);
  bool ColumnClick() const { return FColumnClick; }
  void SetColumnClick(bool value);
  bool FlatScrollBars() const { return FFlatScrollBars; }
  void SetFlatScrollBars(bool value) { FFlatScrollBars = value; }
  bool FullDrag() const { return FFullDrag; }
  void SetFullDrag(bool value) { FFullDrag = value; }
  bool GridLines() const { return FGridLines; }
  void SetGridLines(bool value);
  bool HideSelection() const { return FHideSelection; }
  void SetHideSelection(bool value);
  bool HotTrack() const { return FHotTrack; }
  void SetHotTrack(bool value) { FHotTrack = value; }
  TListHotTrackStyles HotTrackStyles() const { return FHotTrackStyles; }
  void SetHotTrackStyles(TListHotTrackStyles value) { FHotTrackStyles = value; }
  TCustomImageList* LargeImages() const { return FLargeImages; }
  void SetLargeImages(TCustomImageList* value);
  TCustomImageList* SmallImages() const { return FSmallImages; }
  void SetSmallImages(TCustomImageList* value);
  TCustomImageList* StateImages() const { return FStateImages; }
  void SetStateImages(TCustomImageList* value);
  bool MultiSelect() const { return FMultiSelect; }
  void SetMultiSelect(bool value);
  bool OwnerData() const { return FOwnerData; }
  void SetOwnerData(bool value);
  bool OwnerDraw() const { return FOwnerDraw; }
  void SetOwnerDraw(bool value) { FOwnerDraw = value; }
  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool value);
  bool RowSelect() const { return FRowSelect; }
  void SetRowSelect(bool value);
  bool ShowColumnHeaders() const { return FShowColumnHeaders; }
  void SetShowColumnHeaders(bool value);
  bool ShowWorkAreas() const { return FShowWorkAreas; }
  void SetShowWorkAreas(bool value) { FShowWorkAreas = value; }
  TSortType SortType() const { return FSortType; }
  void SetSortType(TSortType value);
  TViewStyle ViewStyle() const { return FViewStyle; }
  void SetViewStyle(TViewStyle value);

  TLVChangeEvent OnChange;
  TLVChangingEvent OnChanging;
  TLVColumnClickEvent OnColumnClick;
  TNotifyEvent OnColumnDragged;
  TLVColumnRClickEvent OnColumnRightClick;
  TLVCompareEvent OnCompare;
  TLVCustomDrawEvent OnCustomDraw;
  TLVCustomDrawItemEvent OnCustomDrawItem;
  TLVCustomDrawSubItemEvent OnCustomDrawSubItem;
  TLVOwnerDataEvent OnData;
  TLVOwnerDataFindEvent OnDataFind;
  TLVOwnerDataHintEvent OnDataHint;
  TLVOwnerDataStateChangeEvent OnDataStateChange;
  TLVDeletedEvent OnDeletion;
  TLVDrawItemEvent OnDrawItem;
  TLVEditedEvent OnEdited;
  TLVEditingEvent OnEditing;
  TLVNotifyEvent OnGetImageIndex;
  TLVInfoTipEvent OnInfoTip;
  TLVDeletedEvent OnInsert;
  TLVSelectItemEvent OnSelectItem;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetColors() override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

  // ---- For the layer's own use
  QTreeWidget* ListWidget() const;
  // Puts the columns into the widget's header again.
  void ColumnsChanged();

protected:
  friend class TListItem;
  friend class TListItems;
  bool ClicksFromMouse() const override { return true; }
  virtual bool CanChange(TListItem* item, TItemChange change);
  virtual void Change(TListItem* item, TItemChange change);
  virtual void DoSelectItem(TListItem* item, bool selected);
  virtual void ColClick(TListColumn* column);
  virtual bool CanEdit(TListItem* item);
  virtual void Edit(TListItem* item, const std::string& text);
  virtual void Delete(TListItem* item);
  virtual void InsertItem(TListItem* item);

  void ItemAdded(TListItem* item);
  void ItemChanged(TListItem* item);
  void ItemRemoving(TListItem* item);
  void RebuildItems();
  // The selection of the widget taken into the items (and their events raised).
  void SelectionFromWidget();

private:
  TListColumns* FColumns;
  TListItems* FListItems;
  TIconOptions* FIconOptions;
  int FAllocBy = 0;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  bool FCheckboxes = false;
  bool FColumnClick = true;
  bool FFlatScrollBars = false;
  bool FFullDrag = false;
  bool FGridLines = false;
  bool FHideSelection = true;
  bool FHotTrack = false;
  TListHotTrackStyles FHotTrackStyles;
  TCustomImageList* FLargeImages = nullptr;
  TCustomImageList* FSmallImages = nullptr;
  TCustomImageList* FStateImages = nullptr;
  bool FMultiSelect = false;
  bool FOwnerData = false;
  bool FOwnerDraw = false;
  bool FReadOnly = false;
  bool FRowSelect = false;
  bool FShowColumnHeaders = true;
  bool FShowWorkAreas = false;
  TSortType FSortType = stNone;
  TViewStyle FViewStyle = vsIcon;
  bool FSyncing = false;
  QPointer<QWidget> FItemsWidget;
};

class TListView : public TCustomListView {
  LUMORA_CLASS(TListView, TCustomListView)
public:
  explicit TListView(TComponent* owner) : TCustomListView(owner) {}
};
