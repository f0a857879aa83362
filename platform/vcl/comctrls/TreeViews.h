#pragma once
// Tree views: nodes, the node list and the control.
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
class QTreeWidgetItem;
class TCustomTreeView;
class TTreeNode;
class TTreeNodes;

LUMORA_ENUM(TNodeAttachMode, naAdd, naAddFirst, naAddChild, naAddChildFirst, naInsert)
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
