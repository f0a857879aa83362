#pragma once
// The common controls: tab controls and page controls, status bars, tree views, rich
// edits, list views, tool bars, progress bars, track bars, up-down buttons, header
// controls, date-time pickers, animations, hot keys and cool bars. Each publishes what
// its Delphi 4 counterpart publishes, with the same defaults, and streams the data its
// counterpart streams itself (tree nodes and list items as binary Data).
//
// Controls whose look depends on the classic metrics (tabs, status panels, tool bars,
// headers) paint themselves; the others stand on a Qt widget of their kind (tree
// widget, text edit, progress bar, slider, ...).

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <QPointer>

#include <memory>
#include <string>
#include <vector>

class QTextDocument;
class QTextEdit;
class QTreeWidget;
class QTreeWidgetItem;
class QTreeWidget;
class QProgressBar;
class QSlider;
class QDateTimeEdit;

class TCustomTabControl;
class TPageControl;
class TTabSheet;
class TStatusBar;
class TStatusPanel;
class TCustomTreeView;
class TTreeNode;
class TTreeNodes;
class TCustomListView;
class TListItem;
class TListColumn;
class TToolBar;
class TToolButton;
class THeaderControl;
class THeaderSection;
class TCoolBar;

// ---------------------------------------------------------------------------------------
// Tab controls and page controls

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

// ---------------------------------------------------------------------------------------
// Status bars

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
// Tree views

LUMORA_ENUM(TSortType, stNone, stData, stText, stBoth)
LUMORA_ENUM(TNodeAttachMode, naAdd, naAddFirst, naAddChild, naAddChildFirst, naInsert)
LUMORA_ENUM(TCustomDrawStateItem, cdsSelected, cdsGrayed, cdsDisabled, cdsChecked, cdsFocused, cdsDefault, cdsHot,
            cdsMarked, cdsIndeterminate)
LUMORA_SET(TCustomDrawState, TCustomDrawStateItem)
LUMORA_EVENT(TTVChangedEvent, void(TObject* Sender, TTreeNode* Node))
// (Sender, Node, Allow): changing the selection, expanding, collapsing, editing.
LUMORA_EVENT(TTVChangingEvent, void(TObject* Sender, TTreeNode* Node, bool& AllowChange))
using TTVExpandedEvent = TTVChangedEvent;
using TTVExpandingEvent = TTVChangingEvent;
using TTVCollapsingEvent = TTVChangingEvent;
using TTVEditingEvent = TTVChangingEvent;
LUMORA_EVENT(TTVEditedEvent, void(TObject* Sender, TTreeNode* Node, std::string& S))
LUMORA_EVENT(TTVCompareEvent, void(TObject* Sender, TTreeNode* Node1, TTreeNode* Node2, int Data, int& Compare))
LUMORA_EVENT(TTVCustomDrawEvent, void(TCustomTreeView* Sender, TRect ARect, bool& DefaultDraw))
LUMORA_EVENT(TTVCustomDrawItemEvent, void(TCustomTreeView* Sender, TTreeNode* Node, TCustomDrawState State,
                                          bool& DefaultDraw))

// One node of a tree view: a text, images and a pointer of the program's, with child
// nodes of its own. Its parent (or the node list, for a top node) owns it.
class TTreeNode : public TPersistent {
  LUMORA_CLASS(TTreeNode, TPersistent)
public:
  explicit TTreeNode(TTreeNodes* owner);
  ~TTreeNode() override;

  TTreeNodes* Owner() const { return FOwner; }
  TCustomTreeView* TreeView() const;
  TTreeNode* Parent() const { return FParent; }
  int Count() const { return static_cast<int>(FChildren.size()); }
  // The child at `index`; EListError outside the range.
  TTreeNode* Item(int index) const;
  // The position among its siblings.
  int Index() const;
  // The position in the whole tree, counted in tree order.
  int AbsoluteIndex() const;
  // 0 for a top node.
  int Level() const;
  bool HasChildren() const { return !FChildren.empty() || FHasChildren; }
  void SetHasChildren(bool value);

  const std::string& Text() const { return FText; }
  void SetText(const std::string& value);
  void* Data() const { return FData; }
  void SetData(void* value) { FData = value; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  int SelectedIndex() const { return FSelectedIndex; }
  void SetSelectedIndex(int value);
  int StateIndex() const { return FStateIndex; }
  void SetStateIndex(int value);
  int OverlayIndex() const { return FOverlayIndex; }
  void SetOverlayIndex(int value) { FOverlayIndex = value; }

  bool Expanded() const { return FExpanded; }
  void SetExpanded(bool value);
  void Expand(bool recurse);
  void Collapse(bool recurse);
  bool Selected() const;
  void SetSelected(bool value);
  bool Focused() const { return Selected(); }
  // Whether every parent is expanded.
  bool IsVisible() const;
  // Expands the parents and scrolls the node into view.
  void MakeVisible();
  // The node's row in the widget, in the tree view's client coordinates (text only or
  // the whole row); empty while it is not shown.
  TRect DisplayRect(bool textOnly) const;

  TTreeNode* GetFirstChild() const { return FChildren.empty() ? nullptr : FChildren.front(); }
  TTreeNode* GetLastChild() const { return FChildren.empty() ? nullptr : FChildren.back(); }
  TTreeNode* GetNextSibling() const;
  TTreeNode* GetPrevSibling() const;
  // The next node in tree order (children first), or none.
  TTreeNode* GetNext() const;
  TTreeNode* GetPrev() const;
  // The next node that shows (its parents expanded), or none.
  TTreeNode* GetNextVisible() const;
  bool HasAsParent(const TTreeNode* node) const;

  // Frees the node and everything below it.
  void Delete();
  void DeleteChildren();
  // Moves the node (with its children) as `mode` says relative to `destination`.
  void MoveTo(TTreeNode* destination, TNodeAttachMode mode);
  // Starts editing the text in place; false when the tree is read-only or refuses.
  bool EditText();
  void Assign(TPersistent* source) override;

  // ---- For the layer's own use
  QTreeWidgetItem* WidgetItem() const;

private:
  friend class TTreeNodes;
  friend class TCustomTreeView;
  TTreeNodes* FOwner;
  TTreeNode* FParent = nullptr;
  std::vector<TTreeNode*> FChildren;
  std::string FText;
  void* FData = nullptr;
  int FImageIndex = 0;
  int FSelectedIndex = 0;
  int FStateIndex = -1;
  int FOverlayIndex = -1;
  bool FExpanded = false;
  bool FHasChildren = false;
  QTreeWidgetItem* FItem = nullptr;
};

// The nodes of a tree view. Streams them as the binary property Data.
class TTreeNodes : public TPersistent {
  LUMORA_CLASS(TTreeNodes, TPersistent)
public:
  explicit TTreeNodes(TCustomTreeView* owner);
  ~TTreeNodes() override;

  TCustomTreeView* Owner() const { return FOwner; }
  // The number of nodes in the whole tree.
  int Count() const { return FCount; }
  // The node at position `index` in tree order; EListError outside the range.
  TTreeNode* Item(int index) const;
  TTreeNode* GetFirstNode() const { return FRoots.empty() ? nullptr : FRoots.front(); }
  // The top nodes.
  int RootCount() const { return static_cast<int>(FRoots.size()); }

  // A new last sibling of `sibling` (a new top node without one).
  TTreeNode* Add(TTreeNode* sibling, const std::string& s) { return AddObject(sibling, s, nullptr); }
  TTreeNode* AddObject(TTreeNode* sibling, const std::string& s, void* data);
  TTreeNode* AddFirst(TTreeNode* sibling, const std::string& s) { return AddObjectFirst(sibling, s, nullptr); }
  TTreeNode* AddObjectFirst(TTreeNode* sibling, const std::string& s, void* data);
  // A new last child of `parent` (a new top node without one).
  TTreeNode* AddChild(TTreeNode* parent, const std::string& s) { return AddChildObject(parent, s, nullptr); }
  TTreeNode* AddChildObject(TTreeNode* parent, const std::string& s, void* data);
  TTreeNode* AddChildFirst(TTreeNode* parent, const std::string& s) { return AddChildObjectFirst(parent, s, nullptr); }
  TTreeNode* AddChildObjectFirst(TTreeNode* parent, const std::string& s, void* data);
  // A new node just before `sibling` (a new last top node without one).
  TTreeNode* Insert(TTreeNode* sibling, const std::string& s) { return InsertObject(sibling, s, nullptr); }
  TTreeNode* InsertObject(TTreeNode* sibling, const std::string& s, void* data);
  void Delete(TTreeNode* node);
  void Clear();
  // Counted: the widget is redrawn once at the last EndUpdate.
  void BeginUpdate();
  void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }

  void Assign(TPersistent* source) override;
  TPersistent* GetOwner() override;
  void DefineProperties(TFiler& filer) override;
  // The nodes as the binary Data property holds them.
  void ReadData(TStream& stream);
  void WriteData(TStream& stream) const;

private:
  friend class TTreeNode;
  friend class TCustomTreeView;
  TTreeNode* InsertNode(TTreeNode* parent, int index, const std::string& s, void* data);
  void Unlink(TTreeNode* node);
  void Link(TTreeNode* node, TTreeNode* parent, int index);
  // Where a new child of `parent` goes when the tree keeps its nodes sorted.
  int SortedIndex(TTreeNode* parent, const std::string& s) const;
  std::vector<TTreeNode*>& Siblings(TTreeNode* parent) { return parent ? parent->FChildren : FRoots; }

  TCustomTreeView* FOwner;
  std::vector<TTreeNode*> FRoots;
  int FCount = 0;
  int FUpdateCount = 0;
};

class TCustomTreeView : public TWinControl {
  LUMORA_CLASS(TCustomTreeView, TWinControl)
public:
  explicit TCustomTreeView(TComponent* owner);
  ~TCustomTreeView() override;

  TTreeNodes* Items() const { return FTreeNodes; }
  void SetItems(TTreeNodes* value) { FTreeNodes->Assign(value); }
  // The selected node, or none. Selecting a node (also in code) raises OnChange.
  TTreeNode* Selected() const { return FSelected; }
  void SetSelected(TTreeNode* node);
  // The top node that shows, or none.
  TTreeNode* TopItem() const;
  // The node at a point of the client area, or none.
  TTreeNode* GetNodeAt(int x, int y) const;
  void FullExpand();
  void FullCollapse();
  // Sorts every level by text (OnCompare decides when set).
  bool AlphaSort();
  bool IsEditing() const;

  bool AutoExpand() const { return FAutoExpand; }
  void SetAutoExpand(bool value) { FAutoExpand = value; }
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  int ChangeDelay() const { return FChangeDelay; }
  void SetChangeDelay(int value) { FChangeDelay = value; }
  bool HideSelection() const { return FHideSelection; }
  void SetHideSelection(bool value);
  bool HotTrack() const { return FHotTrack; }
  void SetHotTrack(bool value) { FHotTrack = value; }
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  TCustomImageList* StateImages() const { return FStateImages; }
  void SetStateImages(TCustomImageList* value);
  int Indent() const { return FIndent; }
  void SetIndent(int value);
  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool value);
  bool RightClickSelect() const { return FRightClickSelect; }
  void SetRightClickSelect(bool value) { FRightClickSelect = value; }
  bool RowSelect() const { return FRowSelect; }
  void SetRowSelect(bool value);
  bool ShowButtons() const { return FShowButtons; }
  void SetShowButtons(bool value);
  bool ShowLines() const { return FShowLines; }
  void SetShowLines(bool value);
  bool ShowRoot() const { return FShowRoot; }
  void SetShowRoot(bool value);
  TSortType SortType() const { return FSortType; }
  void SetSortType(TSortType value);
  bool ToolTips() const { return FToolTips; }
  void SetToolTips(bool value) { FToolTips = value; }

  TTVChangedEvent OnChange;
  TTVChangingEvent OnChanging;
  TTVExpandedEvent OnCollapsed;
  TTVCollapsingEvent OnCollapsing;
  TTVCompareEvent OnCompare;
  TTVCustomDrawEvent OnCustomDraw;
  TTVCustomDrawItemEvent OnCustomDrawItem;
  TTVExpandedEvent OnDeletion;
  TTVEditedEvent OnEdited;
  TTVEditingEvent OnEditing;
  TTVExpandingEvent OnExpanding;
  TTVExpandedEvent OnExpanded;
  TTVExpandedEvent OnGetImageIndex;
  TTVExpandedEvent OnGetSelectedIndex;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetColors() override;
  void Notification(TComponent* component, TOperation operation) override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;

  // ---- For the layer's own use
  QTreeWidget* TreeWidget() const;
  TTreeNode* NodeOfItem(QTreeWidgetItem* item) const;

protected:
  friend class TTreeNode;
  friend class TTreeNodes;
  bool ClicksFromMouse() const override { return true; }
  virtual bool CanChange(TTreeNode* node);
  virtual void Change(TTreeNode* node);
  virtual bool CanExpand(TTreeNode* node);
  virtual void Expand(TTreeNode* node);
  virtual bool CanCollapse(TTreeNode* node);
  virtual void Collapse(TTreeNode* node);
  virtual bool CanEdit(TTreeNode* node);
  virtual void Edit(TTreeNode* node, const std::string& text);
  virtual void Delete(TTreeNode* node);

  // The widget item of a node is made (or refreshed) when the widget exists.
  void NodeAdded(TTreeNode* node);
  void NodeChanged(TTreeNode* node);
  void NodeRemoving(TTreeNode* node);
  void RebuildItems();
  bool ItemsValid() const { return !FItemsWidget.isNull(); }

private:
  TTreeNodes* FTreeNodes;
  TTreeNode* FSelected = nullptr;
  bool FAutoExpand = false;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  int FChangeDelay = 0;
  bool FHideSelection = true;
  bool FHotTrack = false;
  TCustomImageList* FImages = nullptr;
  TCustomImageList* FStateImages = nullptr;
  int FIndent = 19;
  bool FReadOnly = false;
  bool FRightClickSelect = false;
  bool FRowSelect = false;
  bool FShowButtons = true;
  bool FShowLines = true;
  bool FShowRoot = true;
  TSortType FSortType = stNone;
  bool FToolTips = true;
  bool FSyncing = false;
  QPointer<QWidget> FItemsWidget;  // the widget the nodes' items belong to
};

class TTreeView : public TCustomTreeView {
  LUMORA_CLASS(TTreeView, TCustomTreeView)
public:
  explicit TTreeView(TComponent* owner) : TCustomTreeView(owner) {}
};

// ---------------------------------------------------------------------------------------
// Rich edits

LUMORA_ENUM(TNumberingStyle, nsNone, nsBullet)
LUMORA_ENUM(TAttributeType, atSelected, atDefaultText)
LUMORA_ENUM(TSearchType, stWholeWord, stMatchCase)
LUMORA_SET(TSearchTypes, TSearchType)
LUMORA_EVENT(TRichEditResizeEvent, void(TObject* Sender, TRect Rect))
LUMORA_EVENT(TRichEditProtectChange, void(TObject* Sender, int StartPos, int EndPos, bool& AllowChange))
// (Sender, NumObjects, NumChars, SaveClipboard): the shape of TRichEditProtectChange.
using TRichEditSaveClipboard = TRichEditProtectChange;

class TCustomRichEdit;

// The character formatting of a rich edit's selection (SelAttributes) or of its text
// by default (DefAttributes).
class TTextAttributes : public TPersistent {
  LUMORA_CLASS(TTextAttributes, TPersistent)
public:
  TTextAttributes(TCustomRichEdit* richEdit, TAttributeType type);
  void Assign(TPersistent* source) override;

  TFontCharset Charset() const;
  void SetCharset(TFontCharset value);
  TColor Color() const;
  void SetColor(TColor value);
  TFontName Name() const;
  void SetName(const TFontName& value);
  TFontPitch Pitch() const;
  void SetPitch(TFontPitch value);
  // Points.
  int Size() const;
  void SetSize(int value);
  // Pixels at the screen's resolution.
  int Height() const;
  void SetHeight(int value);
  TFontStyles Style() const;
  void SetStyle(TFontStyles value);
  bool Protected() const { return false; }

private:
  TCustomRichEdit* FRichEdit;
  TAttributeType FType;
};

// The paragraph formatting of the paragraphs the selection touches.
class TParaAttributes : public TPersistent {
  LUMORA_CLASS(TParaAttributes, TPersistent)
public:
  explicit TParaAttributes(TCustomRichEdit* richEdit) : FRichEdit(richEdit) {}
  void Assign(TPersistent* source) override;
  TAlignment Alignment() const;
  void SetAlignment(TAlignment value);
  int FirstIndent() const;
  void SetFirstIndent(int value);
  int LeftIndent() const;
  void SetLeftIndent(int value);
  int RightIndent() const;
  void SetRightIndent(int value);
  TNumberingStyle Numbering() const;
  void SetNumbering(TNumberingStyle value);

private:
  TCustomRichEdit* FRichEdit;
};

// A memo of formatted text. Its lines are the paragraphs of its document, which lives
// as long as the control (the widget shows it while it exists). Positions count one
// character per paragraph break.
class TCustomRichEdit : public TCustomMemo {
  LUMORA_CLASS(TCustomRichEdit, TCustomMemo)
public:
  explicit TCustomRichEdit(TComponent* owner);
  ~TCustomRichEdit() override;

  TStrings* Lines() const { return FLines; }
  void SetLines(TStrings* value) { FLines->Assign(value); }
  TTextAttributes* SelAttributes() const { return FSelAttributes; }
  void SetSelAttributes(TTextAttributes* value) { FSelAttributes->Assign(value); }
  TTextAttributes* DefAttributes() const { return FDefAttributes; }
  void SetDefAttributes(TTextAttributes* value) { FDefAttributes->Assign(value); }
  TParaAttributes* Paragraph() const { return FParagraph; }

  bool HideScrollBars() const { return FHideScrollBars; }
  void SetHideScrollBars(bool value);
  bool PlainText() const { return FPlainText; }
  void SetPlainText(bool value) { FPlainText = value; }

  std::string Text() const override;
  void SetText(const std::string& value) override;
  int GetTextLen() const;
  int SelStart() const;
  void SetSelStart(int value);
  int SelLength() const;
  void SetSelLength(int value);
  std::string SelText() const;
  void SetSelText(const std::string& value);
  void SelectAll();
  void ClearSelection();
  void CopyToClipboard();
  void CutToClipboard();
  void PasteFromClipboard();
  // Where `text` occurs from `startPos` within `length` characters, or -1.
  int FindText(const std::string& text, int startPos, int length, TSearchTypes options) const;
  bool Modified() const;
  void SetModified(bool value);
  bool CanUndo() const;
  void Undo();
  // Forgets what could be undone.
  void ClearUndo();

  // ---- What the edit control's messages answer
  // The line (paragraph) of a character position.
  int LineFromChar(int pos) const;
  // The first character of a line; -1 for the caret's line; -1 past the last line.
  int LineIndex(int line) const;
  int LineLength(int line) const;
  // The first line that shows at the top.
  int FirstVisibleLine() const;
  // Scrolls by whole lines (up for negative counts).
  void LineScroll(int lines);
  // The character nearest to a point of the client area.
  int CharFromPos(TPoint point) const;

  TNotifyEvent OnSelectionChange;
  TRichEditProtectChange OnProtectChange;
  TRichEditResizeEvent OnResizeRequest;
  TRichEditSaveClipboard OnSaveClipboard;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetColors() override;

  // ---- For the layer's own use
  QTextDocument* Document() const { return FDocument; }
  QTextEdit* TextEdit() const;

protected:
  friend class TTextAttributes;
  friend class TParaAttributes;
  friend class TRichEditStrings;
  virtual void SelectionChange();
  void FontChanged() override;
  // The document's text changed (by the user or in code).
  void DocumentChanged();
  // Replaces the whole text; the caret goes to its start.
  void ReplaceText(const QString& text);

private:
  QTextDocument* FDocument;
  TStrings* FLines;
  TTextAttributes* FSelAttributes;
  TTextAttributes* FDefAttributes;
  TParaAttributes* FParagraph;
  bool FHideScrollBars = true;
  bool FPlainText = false;
  int FSelStart = 0;   // the selection while there is no widget
  int FSelLength = 0;
  bool FChanging = false;
};

class TRichEdit : public TCustomRichEdit {
  LUMORA_CLASS(TRichEdit, TCustomRichEdit)
public:
  explicit TRichEdit(TComponent* owner) : TCustomRichEdit(owner) {}
};

// ---------------------------------------------------------------------------------------
// List views

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

// ---------------------------------------------------------------------------------------
// Tool bars

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
// Progress bars, track bars, up-down buttons, hot keys

LUMORA_ENUM(TProgressBarOrientation, pbHorizontal, pbVertical)

// A bar that fills from Min to Max as Position grows, in blocks unless Smooth.
class TProgressBar : public TWinControl {
  LUMORA_CLASS(TProgressBar, TWinControl)
public:
  explicit TProgressBar(TComponent* owner);
  int Min() const { return FMin; }
  void SetMin(int value);
  int Max() const { return FMax; }
  void SetMax(int value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  int Step() const { return FStep; }
  void SetStep(int value) { FStep = value; }
  bool Smooth() const { return FSmooth; }
  void SetSmooth(bool value);
  TProgressBarOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TProgressBarOrientation value);
  // Advances by Step (by `delta`), wrapping to Min past Max as the platform's bar does.
  void StepIt();
  void StepBy(int delta);
  // The part of the bar that shows as done, in pixels along the bar.
  int FilledLength() const;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;

private:
  int FMin = 0;
  int FMax = 100;
  int FPosition = 0;
  int FStep = 10;
  bool FSmooth = false;
  TProgressBarOrientation FOrientation = pbHorizontal;
};

LUMORA_ENUM(TTrackBarOrientation, trHorizontal, trVertical)
LUMORA_ENUM(TTickMark, tmBottomRight, tmTopLeft, tmBoth)
LUMORA_ENUM(TTickStyle, tsNone, tsAuto, tsManual)

// A slider over a range, with tick marks.
class TTrackBar : public TWinControl {
  LUMORA_CLASS(TTrackBar, TWinControl)
public:
  explicit TTrackBar(TComponent* owner);
  int Frequency() const { return FFrequency; }
  void SetFrequency(int value);
  int LineSize() const { return FLineSize; }
  void SetLineSize(int value);
  int Max() const { return FMax; }
  void SetMax(int value);
  int Min() const { return FMin; }
  void SetMin(int value);
  TTrackBarOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TTrackBarOrientation value);
  int PageSize() const { return FPageSize; }
  void SetPageSize(int value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  int SelEnd() const { return FSelEnd; }
  void SetSelEnd(int value);
  int SelStart() const { return FSelStart; }
  void SetSelStart(int value);
  bool SliderVisible() const { return FSliderVisible; }
  void SetSliderVisible(bool value);
  int ThumbLength() const { return FThumbLength; }
  void SetThumbLength(int value) { FThumbLength = value; }
  TTickMark TickMarks() const { return FTickMarks; }
  void SetTickMarks(TTickMark value);
  TTickStyle TickStyle() const { return FTickStyle; }
  void SetTickStyle(TTickStyle value);

  TNotifyEvent OnChange;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  QSlider* Slider() const;

protected:
  bool ClicksFromMouse() const override { return false; }
  virtual void Changed();

private:
  int FFrequency = 1;
  int FLineSize = 1;
  int FMax = 10;
  int FMin = 0;
  TTrackBarOrientation FOrientation = trHorizontal;
  int FPageSize = 2;
  int FPosition = 0;
  int FSelEnd = 0;
  int FSelStart = 0;
  bool FSliderVisible = true;
  int FThumbLength = 20;
  TTickMark FTickMarks = tmBottomRight;
  TTickStyle FTickStyle = tsAuto;
  bool FSyncing = false;
};

LUMORA_ENUM(TUDAlignButton, udLeft, udRight)
LUMORA_ENUM(TUDOrientation, udHorizontal, udVertical)
LUMORA_ENUM(TUDBtnType, btNext, btPrev)
// (Sender, AllowChange): the shape of TCloseQueryEvent.
using TUDChangingEvent = TCloseQueryEvent;
LUMORA_EVENT(TUDClickEvent, void(TObject* Sender, TUDBtnType Button))

// Two arrow buttons that step a number, shown in an associated control when there is one.
class TCustomUpDown : public TWinControl {
  LUMORA_CLASS(TCustomUpDown, TWinControl)
public:
  explicit TCustomUpDown(TComponent* owner);
  TUDAlignButton AlignButton() const { return FAlignButton; }
  void SetAlignButton(TUDAlignButton value) { FAlignButton = value; }
  bool ArrowKeys() const { return FArrowKeys; }
  void SetArrowKeys(bool value) { FArrowKeys = value; }
  TWinControl* Associate() const { return FAssociate; }
  void SetAssociate(TWinControl* value);
  int Increment() const { return FIncrement; }
  void SetIncrement(int value) { FIncrement = value; }
  int Max() const { return FMax; }
  void SetMax(int value);
  int Min() const { return FMin; }
  void SetMin(int value);
  TUDOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TUDOrientation value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  bool Thousands() const { return FThousands; }
  void SetThousands(bool value);
  bool Wrap() const { return FWrap; }
  void SetWrap(bool value) { FWrap = value; }
  // The button at a point: btNext is the upper (right) half.
  TUDBtnType ButtonAt(int x, int y) const;
  // What a click on a button does: steps, shows the number, raises OnClick.
  void ButtonClick(TUDBtnType button);

  TUDChangingEvent OnChanging;
  TUDClickEvent OnClick;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  bool ClicksFromMouse() const override { return false; }
  virtual bool CanChange();
  // Shows the position in the associated control.
  void UpdateAssociate();

private:
  TUDAlignButton FAlignButton = udRight;
  bool FArrowKeys = true;
  TWinControl* FAssociate = nullptr;
  int FIncrement = 1;
  int FMax = 100;
  int FMin = 0;
  TUDOrientation FOrientation = udVertical;
  int FPosition = 0;
  bool FThousands = true;
  bool FWrap = false;
  int FPressed = -1;
};

class TUpDown : public TCustomUpDown {
  LUMORA_CLASS(TUpDown, TCustomUpDown)
public:
  explicit TUpDown(TComponent* owner) : TCustomUpDown(owner) {}
};

LUMORA_ENUM(THKModifier, hkShift, hkCtrl, hkAlt, hkExt)
LUMORA_SET(THKModifiers, THKModifier)
LUMORA_ENUM(THKInvalidKey, hcNone, hcShift, hcCtrl, hcAlt, hcShiftCtrl, hcShiftAlt, hcCtrlAlt, hcShiftCtrlAlt)
LUMORA_SET(THKInvalidKeys, THKInvalidKey)

// An edit that shows a key combination and takes the next one the user presses.
class TCustomHotKey : public TWinControl {
  LUMORA_CLASS(TCustomHotKey, TWinControl)
public:
  explicit TCustomHotKey(TComponent* owner);
  TShortCut HotKey() const { return FHotKey; }
  void SetHotKey(TShortCut value);
  THKInvalidKeys InvalidKeys() const { return FInvalidKeys; }
  void SetInvalidKeys(THKInvalidKeys value) { FInvalidKeys = value; }
  THKModifiers Modifiers() const { return FModifiers; }
  void SetModifiers(THKModifiers value) { FModifiers = value; }

  TNotifyEvent OnChange;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  // The key pressed (with its modifiers) becomes the hot key.
  void KeyDown(Word& key, TShiftState shift) override;

private:
  TShortCut FHotKey = TShortCut(0x8041);
  THKInvalidKeys FInvalidKeys{hcNone, hcShift};
  THKModifiers FModifiers{hkAlt};
};

class THotKey : public TCustomHotKey {
  LUMORA_CLASS(THotKey, TCustomHotKey)
public:
  explicit THotKey(TComponent* owner) : TCustomHotKey(owner) {}
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

// ---------------------------------------------------------------------------------------
// Dates and times, animations

LUMORA_ENUM(TDTCalAlignment, dtaLeft, dtaRight)
LUMORA_ENUM(TDateTimeKind, dtkDate, dtkTime)
LUMORA_ENUM(TDTDateMode, dmComboBox, dmUpDown)
LUMORA_ENUM(TDTDateFormat, dfShort, dfLong)
LUMORA_ENUM(TCalDayOfWeek, dowMonday, dowTuesday, dowWednesday, dowThursday, dowFriday, dowSaturday, dowSunday,
            dowLocaleDefault)
LUMORA_EVENT(TDTParseInputEvent, void(TObject* Sender, const std::string& UserString, TDateTime& DateAndTime,
                                      bool& AllowChange))

// The colours of a month calendar.
class TMonthCalColors : public TPersistent {
  LUMORA_CLASS(TMonthCalColors, TPersistent)
public:
  TMonthCalColors() = default;
  void Assign(TPersistent* source) override;
  TColor BackColor() const { return FBackColor; }
  void SetBackColor(TColor value) { FBackColor = value; }
  TColor TextColor() const { return FTextColor; }
  void SetTextColor(TColor value) { FTextColor = value; }
  TColor TitleBackColor() const { return FTitleBackColor; }
  void SetTitleBackColor(TColor value) { FTitleBackColor = value; }
  TColor TitleTextColor() const { return FTitleTextColor; }
  void SetTitleTextColor(TColor value) { FTitleTextColor = value; }
  TColor MonthBackColor() const { return FMonthBackColor; }
  void SetMonthBackColor(TColor value) { FMonthBackColor = value; }
  TColor TrailingTextColor() const { return FTrailingTextColor; }
  void SetTrailingTextColor(TColor value) { FTrailingTextColor = value; }

private:
  TColor FBackColor = clWindow;
  TColor FTextColor = clWindowText;
  TColor FTitleBackColor = clActiveCaption;
  TColor FTitleTextColor = clWhite;
  TColor FMonthBackColor = clWhite;
  TColor FTrailingTextColor = clInactiveCaptionText;
};

// A date or a time in an edit, with a drop-down calendar or up-down arrows.
class TDateTimePicker : public TWinControl {
  LUMORA_CLASS(TDateTimePicker, TWinControl)
public:
  explicit TDateTimePicker(TComponent* owner);
  ~TDateTimePicker() override;
  // The whole value (days since 30 December 1899; the fraction is the time of day).
  TDateTime DateTime() const { return FDateTime; }
  void SetDateTime(TDateTime value);
  TDateTime Date() const { return FDateTime; }
  // Takes the day of `value`, keeping the time.
  void SetDate(TDateTime value);
  TDateTime Time() const { return FDateTime; }
  // Takes the time of `value`, keeping the day.
  void SetTime(TDateTime value);
  TDTCalAlignment CalAlignment() const { return FCalAlignment; }
  void SetCalAlignment(TDTCalAlignment value) { FCalAlignment = value; }
  TMonthCalColors* CalColors() const { return FCalColors; }
  void SetCalColors(TMonthCalColors* value) { FCalColors->Assign(value); }
  bool Checked() const { return FChecked; }
  void SetChecked(bool value);
  TDTDateFormat DateFormat() const { return FDateFormat; }
  void SetDateFormat(TDTDateFormat value);
  TDTDateMode DateMode() const { return FDateMode; }
  void SetDateMode(TDTDateMode value);
  TDateTimeKind Kind() const { return FKind; }
  void SetKind(TDateTimeKind value);
  TDateTime MaxDate() const { return FMaxDate; }
  void SetMaxDate(TDateTime value);
  TDateTime MinDate() const { return FMinDate; }
  void SetMinDate(TDateTime value);
  bool ParseInput() const { return FParseInput; }
  void SetParseInput(bool value) { FParseInput = value; }
  bool ShowCheckbox() const { return FShowCheckbox; }
  void SetShowCheckbox(bool value) { FShowCheckbox = value; }

  TNotifyEvent OnChange;
  TNotifyEvent OnCloseUp;
  TNotifyEvent OnDropDown;
  TDTParseInputEvent OnUserInput;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  QDateTimeEdit* Editor() const;

protected:
  bool ClicksFromMouse() const override { return false; }
  bool CanAutoSize(int& newWidth, int& newHeight) override;

private:
  TDateTime FDateTime;
  TDTCalAlignment FCalAlignment = dtaLeft;
  TMonthCalColors* FCalColors;
  bool FChecked = true;
  TDTDateFormat FDateFormat = dfShort;
  TDTDateMode FDateMode = dmComboBox;
  TDateTimeKind FKind = dtkDate;
  TDateTime FMaxDate;
  TDateTime FMinDate;
  bool FParseInput = false;
  bool FShowCheckbox = false;
  bool FSyncing = false;
};

// A month's calendar; the user picks a day.
class TMonthCalendar : public TWinControl {
  LUMORA_CLASS(TMonthCalendar, TWinControl)
public:
  explicit TMonthCalendar(TComponent* owner);
  ~TMonthCalendar() override;
  TDateTime Date() const { return FDate; }
  void SetDate(TDateTime value);
  TDateTime EndDate() const { return FEndDate; }
  void SetEndDate(TDateTime value) { FEndDate = value; }
  TMonthCalColors* CalColors() const { return FCalColors; }
  void SetCalColors(TMonthCalColors* value) { FCalColors->Assign(value); }
  TCalDayOfWeek FirstDayOfWeek() const { return FFirstDayOfWeek; }
  void SetFirstDayOfWeek(TCalDayOfWeek value);
  TDateTime MaxDate() const { return FMaxDate; }
  void SetMaxDate(TDateTime value);
  TDateTime MinDate() const { return FMinDate; }
  void SetMinDate(TDateTime value);
  int MaxSelectRange() const { return FMaxSelectRange; }
  void SetMaxSelectRange(int value) { FMaxSelectRange = value; }
  bool MultiSelect() const { return FMultiSelect; }
  void SetMultiSelect(bool value) { FMultiSelect = value; }
  bool ShowToday() const { return FShowToday; }
  void SetShowToday(bool value);
  bool ShowTodayCircle() const { return FShowTodayCircle; }
  void SetShowTodayCircle(bool value) { FShowTodayCircle = value; }
  bool WeekNumbers() const { return FWeekNumbers; }
  void SetWeekNumbers(bool value);

  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  bool ClicksFromMouse() const override { return false; }

private:
  TDateTime FDate;
  TDateTime FEndDate;
  TMonthCalColors* FCalColors;
  TCalDayOfWeek FFirstDayOfWeek = dowLocaleDefault;
  TDateTime FMaxDate;
  TDateTime FMinDate;
  int FMaxSelectRange = 31;
  bool FMultiSelect = false;
  bool FShowToday = true;
  bool FShowTodayCircle = true;
  bool FWeekNumbers = false;
  bool FSyncing = false;
};

LUMORA_ENUM(TCommonAVI, aviNone, aviFindFolder, aviFindFile, aviFindComputer, aviCopyFiles, aviCopyFile,
            aviRecycleFile, aviEmptyRecycle, aviDeleteFile)

// An animation area. The clips of the platform's animation control are not available
// here: it shows its frame (and, when active, a moving mark) where the clip would play.
class TAnimate : public TWinControl {
  LUMORA_CLASS(TAnimate, TWinControl)
public:
  explicit TAnimate(TComponent* owner);
  bool Active() const { return FActive; }
  void SetActive(bool value);
  bool Center() const { return FCenter; }
  void SetCenter(bool value) { FCenter = value; }
  TCommonAVI CommonAVI() const { return FCommonAVI; }
  void SetCommonAVI(TCommonAVI value);
  const std::string& FileName() const { return FFileName; }
  void SetFileName(const std::string& value);
  bool Open() const { return FOpen; }
  void SetOpen(bool value);
  int Repetitions() const { return FRepetitions; }
  void SetRepetitions(int value) { FRepetitions = value; }
  int StartFrame() const { return FStartFrame; }
  void SetStartFrame(int value) { FStartFrame = value; }
  int StopFrame() const { return FStopFrame; }
  void SetStopFrame(int value) { FStopFrame = value; }
  bool Timers() const { return FTimers; }
  void SetTimers(bool value) { FTimers = value; }
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  void Play(int fromFrame, int toFrame, int count);
  void Stop();

  TNotifyEvent OnClose;
  TNotifyEvent OnOpen;
  TNotifyEvent OnStart;
  TNotifyEvent OnStop;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void Loaded() override;

private:
  bool FActive = false;
  bool FCenter = true;
  TCommonAVI FCommonAVI = aviNone;
  std::string FFileName;
  bool FOpen = false;
  int FRepetitions = 0;
  int FStartFrame = 1;
  int FStopFrame = 0;
  bool FTimers = false;
  bool FTransparent = true;
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

// Registers the classes of this unit.
void RegisterComCtrlsClasses();
