#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/comctrls/ComCtrlsShared.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"
#include "platform/rtti/Writer.h"

#include <QEvent>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QWidget>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// Tree views: the widget

namespace {

// Nodes nest at most this deep in a stream; deeper data is taken as damaged.
constexpr int MaxNodeNesting = 1000;

TTreeNode* NodeFromItem(const QTreeWidgetItem* item) {
  return item ? static_cast<TTreeNode*>(item->data(0, Qt::UserRole).value<void*>()) : nullptr;
}

// Paints a row of a tree view as the classic control does: images, then the text with
// the selection drawn behind the text only.
class TTreeItemDelegate : public QStyledItemDelegate {
public:
  TTreeItemDelegate(TCustomTreeView* tree, QObject* parent) : QStyledItemDelegate(parent), FTree(tree) {}
  void Detach() { FTree = nullptr; }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!FTree) return QStyledItemDelegate::sizeHint(option, index);
    const QFontMetrics fm(option.font);
    int height = fm.height() + 3;
    int width = fm.horizontalAdvance(index.data(Qt::DisplayRole).toString()) + 4;
    if (TCustomImageList* images = FTree->StateImages()) {
      height = std::max(height, images->Height());
      width += images->Width();
    }
    if (TCustomImageList* images = FTree->Images()) {
      height = std::max(height, images->Height());
      width += images->Width() + 1;
    }
    return QSize(width, height);
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!FTree) return;
    auto* item = static_cast<QTreeWidgetItem*>(index.internalPointer());
    TTreeNode* node = item ? NodeFromItem(item) : nullptr;
    if (!node) return;
    const QRect r = option.rect;
    const bool selected = option.state & QStyle::State_Selected;
    const bool active = option.state & QStyle::State_Active && option.state & QStyle::State_HasFocus;
    const bool focusedView = FTree->TreeWidget() && FTree->TreeWidget()->hasFocus();
    int x = r.left();
    if (TCustomImageList* images = FTree->StateImages(); images && node->StateIndex() > 0) {
      images->Draw(*painter, x, r.top() + (r.height() - images->Height()) / 2, node->StateIndex(), FTree->Enabled());
      x += images->Width();
    }
    if (TCustomImageList* images = FTree->Images()) {
      const int image = selected ? node->SelectedIndex() : node->ImageIndex();
      if (image >= 0 && image < images->Count()) {
        images->Draw(*painter, x, r.top() + (r.height() - images->Height()) / 2, image, FTree->Enabled());
      }
      x += images->Width() + 1;
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    const QFontMetrics fm(option.font);
    QRect textRect(x, r.top(), fm.horizontalAdvance(text) + 4, r.height());
    if (FTree->RowSelect()) textRect.setRight(r.right());
    QColor color = ColorToQColor(FTree->Font()->Color());
    if (!FTree->Enabled()) color = ColorToQColor(clGrayText);
    const bool showSelection = selected && (focusedView || !FTree->HideSelection());
    if (showSelection) {
      painter->fillRect(textRect, ColorToQColor(focusedView ? clHighlight : clBtnFace));
      color = ColorToQColor(focusedView ? clHighlightText : clBtnText);
    }
    painter->save();
    painter->setFont(option.font);
    painter->setPen(color);
    painter->drawText(textRect.adjusted(2, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter->restore();
    if (selected && focusedView && option.state & QStyle::State_HasFocus) DrawFocusRect(*painter, textRect, Sys(clWindowText));
    (void)active;
  }

private:
  TCustomTreeView* FTree;
};

// The tree widget of a tree view: dotted lines and plus/minus boxes in the classic manner,
// and label editing only when the control allows it.
class TClassicTreeWidget : public QTreeWidget {
public:
  explicit TClassicTreeWidget(TCustomTreeView* tree) : FTree(tree) {}
  void Detach() {
    FTree = nullptr;
    if (auto* d = dynamic_cast<TTreeItemDelegate*>(itemDelegate())) d->Detach();
  }
  bool Editing() const { return state() == QAbstractItemView::EditingState; }

protected:
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override {
    if (!FTree) return;
    const int indent = indentation();
    int depth = 0;
    for (QModelIndex i = index.parent(); i.isValid(); i = i.parent()) ++depth;
    const bool root = rootIsDecorated();
    const int columns = depth + (root ? 1 : 0);
    const int left = rect.right() + 1 - columns * indent;
    const int midY = rect.top() + rect.height() / 2;
    const QColor line = ColorToQColor(clBtnShadow);
    painter->save();
    painter->fillRect(rect, palette().color(QPalette::Base));
    auto dotV = [&](int x, int y0, int y1) {
      for (int y = y0; y < y1; ++y) {
        if (((x + y) & 1) == 0) painter->fillRect(QRect(x, y, 1, 1), line);
      }
    };
    auto dotH = [&](int x0, int x1, int y) {
      for (int x = x0; x < x1; ++x) {
        if (((x + y) & 1) == 0) painter->fillRect(QRect(x, y, 1, 1), line);
      }
    };
    // Ancestors: a line through the row where an ancestor has a sibling below.
    QModelIndex node = index;
    for (int level = depth; level >= 0; --level) {
      const int column = root ? level : level - 1;
      if (column < 0) break;
      const int cx = left + column * indent + indent / 2;
      const bool hasNext = node.sibling(node.row() + 1, 0).isValid();
      if (level == depth) {
        if (FTree->ShowLines()) {
          const bool first = !node.parent().isValid() && node.row() == 0;
          dotV(cx, first ? midY : rect.top(), hasNext ? rect.bottom() + 1 : midY + 1);
          dotH(cx, left + (column + 1) * indent, midY);
        }
        if (FTree->ShowButtons() && model()->hasChildren(node)) {
          const QRect box(cx - 4, midY - 4, 9, 9);
          painter->fillRect(box, ColorToQColor(clWindow));
          painter->setPen(line);
          painter->drawRect(box.adjusted(0, 0, -1, -1));
          painter->setPen(ColorToQColor(clWindowText));
          painter->drawLine(cx - 2, midY, cx + 2, midY);
          if (!isExpanded(node)) painter->drawLine(cx, midY - 2, cx, midY + 2);
        }
      } else if (FTree->ShowLines() && hasNext) {
        dotV(cx, rect.top(), rect.bottom() + 1);
      }
      node = node.parent();
    }
    painter->restore();
  }

  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override {
    if (!FTree || trigger == QAbstractItemView::NoEditTriggers) return QTreeWidget::edit(index, trigger, event);
    if (trigger != QAbstractItemView::AllEditTriggers && !(editTriggers() & trigger)) return false;
    TTreeNode* node = NodeFromItem(itemFromIndex(index));
    if (!node || !node->EditText()) return false;
    return QTreeWidget::edit(index, trigger, event);
  }

private:
  TCustomTreeView* FTree;
};

}  // namespace

// ---------------------------------------------------------------------------------------
// TTreeNode

LUMORA_CLASS_IMPL(TTreeNode) {}

TTreeNode::TTreeNode(TTreeNodes* owner) : FOwner(owner) {}

TTreeNode::~TTreeNode() {
  TCustomTreeView* tree = TreeView();
  // The children's widget items go with this node's item.
  for (TTreeNode* child : FChildren) {
    child->FItem = nullptr;
    delete child;
  }
  FChildren.clear();
  if (FItem && tree && tree->ItemsValid()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    delete FItem;
    tree->FSyncing = was;
  }
  FItem = nullptr;
}

TCustomTreeView* TTreeNode::TreeView() const { return FOwner ? FOwner->Owner() : nullptr; }

QTreeWidgetItem* TTreeNode::WidgetItem() const {
  TCustomTreeView* tree = TreeView();
  return tree && tree->ItemsValid() ? FItem : nullptr;
}

TTreeNode* TTreeNode::Item(int index) const {
  if (index < 0 || index >= Count()) throw EListError(Format("List index out of bounds (%d)", index));
  return FChildren[index];
}

int TTreeNode::Index() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const auto it = std::find(siblings.begin(), siblings.end(), this);
  return it == siblings.end() ? -1 : static_cast<int>(it - siblings.begin());
}

int TTreeNode::AbsoluteIndex() const {
  int index = 0;
  for (const TTreeNode* n = GetPrev(); n; n = n->GetPrev()) ++index;
  return index;
}

int TTreeNode::Level() const {
  int level = 0;
  for (const TTreeNode* p = FParent; p; p = p->FParent) ++level;
  return level;
}

void TTreeNode::SetHasChildren(bool value) {
  FHasChildren = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  TCustomTreeView* tree = TreeView();
  if (!tree) return;
  tree->NodeChanged(this);
  if (tree->SortType() == stText || tree->SortType() == stBoth) {
    // The node takes its sorted place among its siblings.
    std::vector<TTreeNode*>& siblings = FOwner->Siblings(FParent);
    siblings.erase(std::find(siblings.begin(), siblings.end(), this));
    const int index = FOwner->SortedIndex(FParent, FText);
    siblings.insert(siblings.begin() + index, this);
    if (QTreeWidgetItem* item = WidgetItem()) {
      const bool was = tree->FSyncing;
      tree->FSyncing = true;
      const bool expanded = item->isExpanded();
      QTreeWidgetItem* parentItem = item->parent();
      QTreeWidget* widget = tree->TreeWidget();
      if (parentItem) {
        parentItem->takeChild(parentItem->indexOfChild(item));
        parentItem->insertChild(index, item);
      } else {
        widget->takeTopLevelItem(widget->indexOfTopLevelItem(item));
        widget->insertTopLevelItem(index, item);
      }
      item->setExpanded(expanded);
      if (tree->Selected() == this) widget->setCurrentItem(item);
      tree->FSyncing = was;
    }
  }
}

void TTreeNode::SetImageIndex(int value) {
  FImageIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetSelectedIndex(int value) {
  FSelectedIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetStateIndex(int value) {
  FStateIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetExpanded(bool value) {
  if (value) {
    Expand(false);
  } else {
    Collapse(false);
  }
}

void TTreeNode::Expand(bool recurse) {
  TCustomTreeView* tree = TreeView();
  if (!FExpanded && HasChildren() && (!tree || tree->CanExpand(this))) {
    FExpanded = true;
    if (tree) {
      if (QTreeWidgetItem* item = WidgetItem()) {
        const bool was = tree->FSyncing;
        tree->FSyncing = true;
        item->setExpanded(true);
        tree->FSyncing = was;
      }
      tree->Expand(this);
    }
  }
  if (recurse) {
    for (TTreeNode* child : FChildren) child->Expand(true);
  }
}

void TTreeNode::Collapse(bool recurse) {
  TCustomTreeView* tree = TreeView();
  if (FExpanded && (!tree || tree->CanCollapse(this))) {
    FExpanded = false;
    if (tree) {
      if (QTreeWidgetItem* item = WidgetItem()) {
        const bool was = tree->FSyncing;
        tree->FSyncing = true;
        item->setExpanded(false);
        tree->FSyncing = was;
      }
      tree->Collapse(this);
    }
  }
  if (recurse) {
    for (TTreeNode* child : FChildren) child->Collapse(true);
  }
}

bool TTreeNode::Selected() const {
  TCustomTreeView* tree = TreeView();
  return tree && tree->Selected() == this;
}

void TTreeNode::SetSelected(bool value) {
  TCustomTreeView* tree = TreeView();
  if (!tree) return;
  if (value) {
    tree->SetSelected(this);
  } else if (tree->Selected() == this) {
    tree->SetSelected(nullptr);
  }
}

bool TTreeNode::IsVisible() const {
  for (const TTreeNode* p = FParent; p; p = p->FParent) {
    if (!p->FExpanded) return false;
  }
  return true;
}

void TTreeNode::MakeVisible() {
  for (TTreeNode* p = FParent; p; p = p->FParent) p->Expand(false);
  if (QTreeWidgetItem* item = WidgetItem()) TreeView()->TreeWidget()->scrollToItem(item);
}

TRect TTreeNode::DisplayRect(bool textOnly) const {
  QTreeWidgetItem* item = WidgetItem();
  if (!item || !IsVisible()) return TRect{};
  QTreeWidget* widget = TreeView()->TreeWidget();
  QRect r = widget->visualItemRect(item);
  if (textOnly) {
    const QFontMetrics fm(widget->font());
    int x = r.left();
    if (TCustomImageList* images = TreeView()->StateImages(); images && FStateIndex > 0) x += images->Width();
    if (TCustomImageList* images = TreeView()->Images()) x += images->Width() + 1;
    r = QRect(x, r.top(), fm.horizontalAdvance(item->text(0)) + 4, r.height());
  }
  return Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
}

TTreeNode* TTreeNode::GetNextSibling() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const int index = Index();
  return index >= 0 && index + 1 < static_cast<int>(siblings.size()) ? siblings[index + 1] : nullptr;
}

TTreeNode* TTreeNode::GetPrevSibling() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const int index = Index();
  return index > 0 ? siblings[index - 1] : nullptr;
}

TTreeNode* TTreeNode::GetNext() const {
  if (!FChildren.empty()) return FChildren.front();
  for (const TTreeNode* n = this; n; n = n->FParent) {
    if (TTreeNode* next = n->GetNextSibling()) return next;
  }
  return nullptr;
}

TTreeNode* TTreeNode::GetPrev() const {
  TTreeNode* prev = GetPrevSibling();
  if (!prev) return FParent;
  while (!prev->FChildren.empty()) prev = prev->FChildren.back();
  return prev;
}

TTreeNode* TTreeNode::GetNextVisible() const {
  if (!IsVisible()) return nullptr;
  if (FExpanded && !FChildren.empty()) return FChildren.front();
  for (const TTreeNode* n = this; n; n = n->FParent) {
    if (TTreeNode* next = n->GetNextSibling()) return next;
  }
  return nullptr;
}

bool TTreeNode::HasAsParent(const TTreeNode* node) const {
  if (!node) return false;
  for (const TTreeNode* p = FParent; p; p = p->FParent) {
    if (p == node) return true;
  }
  return false;
}

void TTreeNode::Delete() { FOwner->Delete(this); }

void TTreeNode::DeleteChildren() {
  while (!FChildren.empty()) FOwner->Delete(FChildren.back());
}

void TTreeNode::MoveTo(TTreeNode* destination, TNodeAttachMode mode) {
  if (destination == this || (destination && destination->HasAsParent(this))) return;
  TTreeNode* parent = nullptr;
  int index = 0;
  switch (mode) {
    case naAdd:
      parent = destination ? destination->FParent : nullptr;
      index = -1;
      break;
    case naAddFirst:
      parent = destination ? destination->FParent : nullptr;
      index = 0;
      break;
    case naAddChild:
      parent = destination;
      index = -1;
      break;
    case naAddChildFirst:
      parent = destination;
      index = 0;
      break;
    case naInsert:
      parent = destination ? destination->FParent : nullptr;
      index = destination ? destination->Index() : -1;
      break;
  }
  TCustomTreeView* tree = TreeView();
  const bool selected = tree && tree->Selected() == this;
  FOwner->Unlink(this);
  if (index < 0 || index > static_cast<int>(FOwner->Siblings(parent).size())) {
    index = static_cast<int>(FOwner->Siblings(parent).size());
  } else if (mode == naInsert && destination) {
    index = destination->Index();
  }
  FOwner->Link(this, parent, index);
  if (tree && selected && tree->TreeWidget() && WidgetItem()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    tree->TreeWidget()->setCurrentItem(FItem);
    tree->FSyncing = was;
  }
}

bool TTreeNode::EditText() {
  TCustomTreeView* tree = TreeView();
  if (!tree || tree->ReadOnly() || !tree->CanEdit(this)) return false;
  return true;
}

void TTreeNode::Assign(TPersistent* source) {
  if (auto* node = dynamic_cast<TTreeNode*>(source)) {
    SetText(node->FText);
    FData = node->FData;
    FImageIndex = node->FImageIndex;
    FSelectedIndex = node->FSelectedIndex;
    FStateIndex = node->FStateIndex;
    FOverlayIndex = node->FOverlayIndex;
    FHasChildren = node->FHasChildren;
    if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
    return;
  }
  TPersistent::Assign(source);
}

// ---------------------------------------------------------------------------------------
// TTreeNodes

LUMORA_CLASS_IMPL(TTreeNodes) {}

TTreeNodes::TTreeNodes(TCustomTreeView* owner) : FOwner(owner) {}

TTreeNodes::~TTreeNodes() {
  for (TTreeNode* node : FRoots) {
    node->FItem = nullptr;
    delete node;
  }
  FRoots.clear();
}

TPersistent* TTreeNodes::GetOwner() { return FOwner; }

TTreeNode* TTreeNodes::Item(int index) const {
  if (index < 0 || index >= FCount) throw EListError(Format("List index out of bounds (%d)", index));
  TTreeNode* node = GetFirstNode();
  for (int i = 0; i < index && node; ++i) node = node->GetNext();
  return node;
}

namespace {
int SubtreeSize(const TTreeNode* node) {
  int n = 0;
  std::vector<const TTreeNode*> stack{node};
  while (!stack.empty()) {
    const TTreeNode* t = stack.back();
    stack.pop_back();
    ++n;
    for (int i = 0; i < t->Count(); ++i) stack.push_back(t->Item(i));
  }
  return n;
}
}  // namespace

void TTreeNodes::Unlink(TTreeNode* node) {
  if (FOwner) FOwner->NodeRemoving(node);
  std::vector<TTreeNode*>& siblings = Siblings(node->FParent);
  const auto it = std::find(siblings.begin(), siblings.end(), node);
  if (it != siblings.end()) siblings.erase(it);
  FCount -= SubtreeSize(node);
  TTreeNode* parent = node->FParent;
  node->FParent = nullptr;
  if (parent && parent->FChildren.empty()) {
    parent->FExpanded = false;
    if (FOwner) FOwner->NodeChanged(parent);
  }
}

void TTreeNodes::Link(TTreeNode* node, TTreeNode* parent, int index) {
  std::vector<TTreeNode*>& siblings = Siblings(parent);
  index = std::clamp(index, 0, static_cast<int>(siblings.size()));
  siblings.insert(siblings.begin() + index, node);
  node->FParent = parent;
  FCount += SubtreeSize(node);
  if (FOwner) FOwner->NodeAdded(node);
}

int TTreeNodes::SortedIndex(TTreeNode* parent, const std::string& s) const {
  const std::vector<TTreeNode*>& siblings = parent ? parent->FChildren : FRoots;
  int index = 0;
  while (index < static_cast<int>(siblings.size()) && CompareText(siblings[index]->FText, s) <= 0) ++index;
  return index;
}

TTreeNode* TTreeNodes::InsertNode(TTreeNode* parent, int index, const std::string& s, void* data) {
  auto* node = new TTreeNode(this);
  node->FText = s;
  node->FData = data;
  if (FOwner && (FOwner->SortType() == stText || FOwner->SortType() == stBoth)) index = SortedIndex(parent, s);
  Link(node, parent, index);
  return node;
}

TTreeNode* TTreeNodes::AddObject(TTreeNode* sibling, const std::string& s, void* data) {
  TTreeNode* parent = sibling ? sibling->FParent : nullptr;
  return InsertNode(parent, static_cast<int>(Siblings(parent).size()), s, data);
}

TTreeNode* TTreeNodes::AddObjectFirst(TTreeNode* sibling, const std::string& s, void* data) {
  return InsertNode(sibling ? sibling->FParent : nullptr, 0, s, data);
}

TTreeNode* TTreeNodes::AddChildObject(TTreeNode* parent, const std::string& s, void* data) {
  return InsertNode(parent, static_cast<int>(Siblings(parent).size()), s, data);
}

TTreeNode* TTreeNodes::AddChildObjectFirst(TTreeNode* parent, const std::string& s, void* data) {
  return InsertNode(parent, 0, s, data);
}

TTreeNode* TTreeNodes::InsertObject(TTreeNode* sibling, const std::string& s, void* data) {
  if (!sibling) return AddObject(nullptr, s, data);
  return InsertNode(sibling->FParent, sibling->Index(), s, data);
}

void TTreeNodes::Delete(TTreeNode* node) {
  if (!node || node->FOwner != this) return;
  TCustomTreeView* tree = FOwner;
  const bool destroying = !tree || tree->ComponentState().Contains(csDestroying);
  // The selection moves to a neighbour when its node goes.
  TTreeNode* selected = tree ? tree->FSelected : nullptr;
  TTreeNode* newSelection = selected;
  if (selected && (selected == node || selected->HasAsParent(node))) {
    newSelection = node->GetNextSibling();
    if (!newSelection) newSelection = node->GetPrevSibling();
    if (!newSelection) newSelection = node->FParent;
    tree->FSelected = nullptr;
  }
  if (tree && !destroying && tree->OnDeletion) {
    std::vector<TTreeNode*> doomed;
    std::vector<TTreeNode*> stack{node};
    while (!stack.empty()) {
      TTreeNode* t = stack.back();
      stack.pop_back();
      doomed.push_back(t);
      for (TTreeNode* c : t->FChildren) stack.push_back(c);
    }
    for (auto it = doomed.rbegin(); it != doomed.rend(); ++it) tree->Delete(*it);
  }
  Unlink(node);
  delete node;
  if (tree && !destroying && newSelection != selected) tree->SetSelected(newSelection);
}

void TTreeNodes::Clear() {
  if (FRoots.empty()) return;
  TCustomTreeView* tree = FOwner;
  const bool destroying = !tree || tree->ComponentState().Contains(csDestroying);
  const bool hadSelection = tree && tree->FSelected;
  if (tree) tree->FSelected = nullptr;
  if (tree && !destroying && tree->OnDeletion) {
    for (TTreeNode* n = GetFirstNode(); n; n = n->GetNext()) tree->Delete(n);
  }
  // The widget drops all its items at once; the nodes forget theirs.
  if (tree && tree->ItemsValid()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    tree->TreeWidget()->clear();
    tree->FSyncing = was;
  }
  std::vector<TTreeNode*> roots;
  roots.swap(FRoots);
  FCount = 0;
  for (TTreeNode* node : roots) {
    node->FItem = nullptr;
    delete node;
  }
  if (hadSelection && !destroying && tree->OnChange) tree->OnChange(tree, nullptr);
}

void TTreeNodes::BeginUpdate() {
  if (FUpdateCount++ == 0 && FOwner && FOwner->TreeWidget()) FOwner->TreeWidget()->setUpdatesEnabled(false);
}

void TTreeNodes::EndUpdate() {
  if (FUpdateCount == 0) return;
  if (--FUpdateCount == 0 && FOwner && FOwner->TreeWidget()) FOwner->TreeWidget()->setUpdatesEnabled(true);
}

void TTreeNodes::Assign(TPersistent* source) {
  if (auto* nodes = dynamic_cast<TTreeNodes*>(source)) {
    TMemoryStream stream;
    nodes->WriteData(stream);
    stream.SetPosition(0);
    ReadData(stream);
    return;
  }
  TPersistent::Assign(source);
}

void TTreeNodes::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, FCount > 0);
}

void TTreeNodes::ReadData(TStream& stream) {
  // Each node: the size of its record, then image, selected image, state image, overlay,
  // data, number of children and the text as a short string; its children follow it.
  struct TParsed {
    int Parent;
    std::int32_t Image, Selected, State, Overlay, Data;
    std::string Text;
  };
  const std::string data = stream.ReadRest();
  std::size_t pos = 0;
  const std::int32_t rootCount = GetInt32(data, pos);
  if (rootCount < 0) throw EReadError(RtlConsts::SReadError);
  std::vector<TParsed> parsed;
  struct TLevel {
    int Parent;
    std::int32_t Left;
  };
  std::vector<TLevel> stack{{-1, rootCount}};
  while (!stack.empty()) {
    if (stack.back().Left == 0) {
      stack.pop_back();
      continue;
    }
    --stack.back().Left;
    const int parent = stack.back().Parent;
    const std::int32_t size = GetInt32(data, pos);
    // The record is at least six numbers and the text's length byte, at most 255 bytes more.
    if (size < 25 || size > 280 || data.size() - pos < static_cast<std::size_t>(size)) {
      throw EReadError(RtlConsts::SReadError);
    }
    const std::size_t end = pos + static_cast<std::size_t>(size);
    TParsed p;
    p.Parent = parent;
    p.Image = GetInt32(data, pos);
    p.Selected = GetInt32(data, pos);
    p.State = GetInt32(data, pos);
    p.Overlay = GetInt32(data, pos);
    p.Data = GetInt32(data, pos);
    const std::int32_t children = GetInt32(data, pos);
    p.Text = GetShortString(data, pos);
    if (pos > end) throw EReadError(RtlConsts::SReadError);
    pos = end;
    // Every child takes at least 29 bytes: a count beyond that is damage.
    if (children < 0 || static_cast<std::size_t>(children) > (data.size() - pos) / 29) {
      throw EReadError(RtlConsts::SReadError);
    }
    parsed.push_back(std::move(p));
    if (children > 0) {
      if (static_cast<int>(stack.size()) > MaxNodeNesting) throw EReadError(RtlConsts::SReadError);
      stack.push_back({static_cast<int>(parsed.size()) - 1, children});
    }
  }
  // Everything read: only now do the old nodes go.
  BeginUpdate();
  Clear();
  std::vector<TTreeNode*> made;
  made.reserve(parsed.size());
  const TSortType sort = FOwner ? FOwner->SortType() : stNone;
  if (FOwner) FOwner->FSortType = stNone;  // the stream's order stands
  for (const TParsed& p : parsed) {
    TTreeNode* parent = p.Parent >= 0 ? made[p.Parent] : nullptr;
    TTreeNode* node = InsertNode(parent, static_cast<int>(Siblings(parent).size()), p.Text,
                                 reinterpret_cast<void*>(static_cast<std::uintptr_t>(static_cast<std::uint32_t>(p.Data))));
    node->FImageIndex = p.Image;
    node->FSelectedIndex = p.Selected;
    node->FStateIndex = p.State;
    node->FOverlayIndex = p.Overlay;
    made.push_back(node);
  }
  if (FOwner) FOwner->FSortType = sort;
  if (FOwner) FOwner->RebuildItems();
  EndUpdate();
}

void TTreeNodes::WriteData(TStream& stream) const {
  std::string out;
  PutInt32(out, static_cast<std::int32_t>(FRoots.size()));
  std::vector<const TTreeNode*> stack(FRoots.rbegin(), FRoots.rend());
  while (!stack.empty()) {
    const TTreeNode* node = stack.back();
    stack.pop_back();
    const std::size_t length = std::min<std::size_t>(node->FText.size(), 255);
    PutInt32(out, static_cast<std::int32_t>(25 + length));
    PutInt32(out, node->FImageIndex);
    PutInt32(out, node->FSelectedIndex);
    PutInt32(out, node->FStateIndex);
    PutInt32(out, node->FOverlayIndex);
    PutInt32(out, static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(node->FData)));
    PutInt32(out, node->Count());
    PutShortString(out, node->FText);
    for (auto it = node->FChildren.rbegin(); it != node->FChildren.rend(); ++it) stack.push_back(*it);
  }
  stream.WriteBuffer(out);
}

// ---------------------------------------------------------------------------------------
// TCustomTreeView

LUMORA_CLASS_IMPL(TCustomTreeView) {}

TCustomTreeView::TCustomTreeView(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks};
  FWidth = 121;
  FHeight = 97;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FTreeNodes = new TTreeNodes(this);
}

TCustomTreeView::~TCustomTreeView() {
  Destroying();
  if (auto* w = dynamic_cast<TClassicTreeWidget*>(Widget())) w->Detach();
  FSyncing = true;
  DestroyWidget();
  delete FTreeNodes;
  FTreeNodes = nullptr;
}

QTreeWidget* TCustomTreeView::TreeWidget() const { return qobject_cast<QTreeWidget*>(Widget()); }

TTreeNode* TCustomTreeView::NodeOfItem(QTreeWidgetItem* item) const { return NodeFromItem(item); }

void TCustomTreeView::CreateWidget() {
  auto* w = new TClassicTreeWidget(this);
  w->setFocusPolicy(Qt::StrongFocus);
  w->setHeaderHidden(true);
  w->setColumnCount(1);
  w->setUniformRowHeights(true);
  w->setSelectionMode(QAbstractItemView::SingleSelection);
  w->setExpandsOnDoubleClick(true);
  w->setItemDelegate(new TTreeItemDelegate(this, w));
  w->header()->setStretchLastSection(false);
  w->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  QObject::connect(w, &QTreeWidget::itemSelectionChanged, w, [this] {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      QTreeWidget* tw = TreeWidget();
      if (!tw) return;
      const QList<QTreeWidgetItem*> items = tw->selectedItems();
      TTreeNode* node = items.isEmpty() ? nullptr : NodeFromItem(items.front());
      if (node == FSelected) return;
      if (!CanChange(node)) {
        // Refused: the old selection comes back.
        FSyncing = true;
        QTreeWidgetItem* old = FSelected ? FSelected->WidgetItem() : nullptr;
        if (old) {
          tw->setCurrentItem(old);
        } else {
          tw->clearSelection();
        }
        FSyncing = false;
        return;
      }
      FSelected = node;
      Change(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemExpanded, w, [this](QTreeWidgetItem* item) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node || node->FExpanded) return;
      if (!CanExpand(node)) {
        FSyncing = true;
        item->setExpanded(false);
        FSyncing = false;
        return;
      }
      node->FExpanded = true;
      Expand(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemCollapsed, w, [this](QTreeWidgetItem* item) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node || !node->FExpanded) return;
      if (!CanCollapse(node)) {
        FSyncing = true;
        item->setExpanded(true);
        FSyncing = false;
        return;
      }
      node->FExpanded = false;
      Collapse(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemChanged, w, [this](QTreeWidgetItem* item, int) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node) return;
      std::string text = FFont->FromUnicode(item->text(0));
      if (text == node->FText) return;
      Edit(node, text);
    });
  });
  AdoptWidget(w);
  RebuildItems();
}

void TCustomTreeView::UpdateWidgetText() {
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  w->setIndentation(FIndent);
  w->setRootIsDecorated(FShowRoot && (FShowLines || FShowButtons));
  w->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  w->setEditTriggers(FReadOnly ? QAbstractItemView::NoEditTriggers
                               : QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
  w->setMouseTracking(FHotTrack);
  w->viewport()->update();
}

void TCustomTreeView::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  if (QWidget* w = Widget()) w->update();
}

namespace {
QTreeWidgetItem* MakeItem(TCustomTreeView* tree, TTreeNode* node) {
  auto* item = new QTreeWidgetItem();
  item->setData(0, Qt::UserRole, QVariant::fromValue<void*>(node));
  item->setText(0, tree->Font()->ToUnicode(node->Text()));
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
  if (node->HasChildren() && node->Count() == 0) item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  return item;
}
}  // namespace

void TCustomTreeView::RebuildItems() {
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->clear();
  FItemsWidget = w;
  // Items are made top-down, then expanded once they are in the widget.
  std::vector<TTreeNode*> expanded;
  std::vector<std::pair<TTreeNode*, QTreeWidgetItem*>> stack;
  for (auto it = FTreeNodes->FRoots.rbegin(); it != FTreeNodes->FRoots.rend(); ++it) stack.push_back({*it, nullptr});
  QList<QTreeWidgetItem*> tops;
  while (!stack.empty()) {
    auto [node, parentItem] = stack.back();
    stack.pop_back();
    QTreeWidgetItem* item = MakeItem(this, node);
    node->FItem = item;
    if (parentItem) {
      parentItem->addChild(item);
    } else {
      tops.push_back(item);
    }
    if (node->FExpanded) expanded.push_back(node);
    for (auto it = node->FChildren.rbegin(); it != node->FChildren.rend(); ++it) stack.push_back({*it, item});
  }
  w->addTopLevelItems(tops);
  for (TTreeNode* node : expanded) node->FItem->setExpanded(true);
  if (FSelected && FSelected->FItem) w->setCurrentItem(FSelected->FItem);
  FSyncing = was;
}

void TCustomTreeView::NodeAdded(TTreeNode* node) {
  if (!ItemsValid()) return;
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  std::vector<TTreeNode*> expanded;
  std::vector<std::pair<TTreeNode*, QTreeWidgetItem*>> stack{{node, nullptr}};
  while (!stack.empty()) {
    auto [n, parentItem] = stack.back();
    stack.pop_back();
    QTreeWidgetItem* item = MakeItem(this, n);
    n->FItem = item;
    if (parentItem) {
      parentItem->addChild(item);
    } else if (n->FParent && n->FParent->FItem) {
      // A node added last (the common case) needs no search for its place.
      QTreeWidgetItem* parent = n->FParent->FItem;
      parent->insertChild(n->FParent->FChildren.back() == n ? parent->childCount() : n->Index(), item);
      parent->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    } else {
      w->insertTopLevelItem(FTreeNodes->FRoots.back() == n ? w->topLevelItemCount() : n->Index(), item);
    }
    if (n->FExpanded) expanded.push_back(n);
    for (auto it = n->FChildren.rbegin(); it != n->FChildren.rend(); ++it) stack.push_back({*it, item});
  }
  for (TTreeNode* n : expanded) n->FItem->setExpanded(true);
  if (node->FParent && node->FParent->FItem) node->FParent->FItem->setExpanded(node->FParent->FExpanded);
  FSyncing = was;
}

void TCustomTreeView::NodeChanged(TTreeNode* node) {
  QTreeWidgetItem* item = node->WidgetItem();
  if (!item) return;
  const bool was = FSyncing;
  FSyncing = true;
  item->setText(0, FFont->ToUnicode(node->FText));
  item->setChildIndicatorPolicy(node->HasChildren() && node->Count() == 0
                                    ? QTreeWidgetItem::ShowIndicator
                                    : QTreeWidgetItem::DontShowIndicatorWhenChildless);
  if (item->isExpanded() != node->FExpanded) item->setExpanded(node->FExpanded);
  FSyncing = was;
  if (QTreeWidget* w = TreeWidget()) w->viewport()->update();
}

void TCustomTreeView::NodeRemoving(TTreeNode* node) {
  QTreeWidgetItem* item = node->WidgetItem();
  if (!item) return;
  const bool was = FSyncing;
  FSyncing = true;
  // The item leaves the widget with its children; the nodes keep none.
  delete item;
  std::vector<TTreeNode*> stack{node};
  while (!stack.empty()) {
    TTreeNode* n = stack.back();
    stack.pop_back();
    n->FItem = nullptr;
    for (TTreeNode* c : n->FChildren) stack.push_back(c);
  }
  FSyncing = was;
}

void TCustomTreeView::SetSelected(TTreeNode* node) {
  if (node && node->FOwner != FTreeNodes) return;
  if (node == FSelected) return;
  if (!CanChange(node)) return;
  FSelected = node;
  if (QTreeWidget* w = TreeWidget()) {
    const bool was = FSyncing;
    FSyncing = true;
    if (node && node->WidgetItem()) {
      w->setCurrentItem(node->FItem);
    } else {
      w->setCurrentItem(nullptr);
    }
    FSyncing = was;
  }
  Change(node);
}

TTreeNode* TCustomTreeView::TopItem() const {
  QTreeWidget* w = TreeWidget();
  if (!w || !ItemsValid()) return FTreeNodes->GetFirstNode();
  return NodeFromItem(w->itemAt(1, 1));
}

TTreeNode* TCustomTreeView::GetNodeAt(int x, int y) const {
  QTreeWidget* w = TreeWidget();
  if (!w || !ItemsValid()) return nullptr;
  return NodeFromItem(w->itemAt(x, y));
}

void TCustomTreeView::FullExpand() {
  for (TTreeNode* node : FTreeNodes->FRoots) node->Expand(true);
}

void TCustomTreeView::FullCollapse() {
  for (TTreeNode* node : FTreeNodes->FRoots) node->Collapse(true);
}

bool TCustomTreeView::AlphaSort() {
  auto compare = [this](TTreeNode* a, TTreeNode* b) {
    if (OnCompare) {
      int result = 0;
      OnCompare(this, a, b, 0, result);
      return result < 0;
    }
    return CompareText(a->FText, b->FText) < 0;
  };
  std::vector<std::vector<TTreeNode*>*> lists{&FTreeNodes->FRoots};
  while (!lists.empty()) {
    std::vector<TTreeNode*>* list = lists.back();
    lists.pop_back();
    std::stable_sort(list->begin(), list->end(), compare);
    for (TTreeNode* n : *list) lists.push_back(&n->FChildren);
  }
  RebuildItems();
  return true;
}

bool TCustomTreeView::IsEditing() const {
  auto* w = dynamic_cast<TClassicTreeWidget*>(Widget());
  return w && w->Editing();
}

void TCustomTreeView::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetHideSelection(bool value) {
  FHideSelection = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomTreeView::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  if (QTreeWidget* w = TreeWidget()) w->doItemsLayout();
}

void TCustomTreeView::SetStateImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FStateImages, value)) return;
  if (QTreeWidget* w = TreeWidget()) w->doItemsLayout();
}

void TCustomTreeView::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation != opRemove) return;
  // The same list may be both: forget it in both before laying out again.
  bool changed = false;
  if (component == FImages) FImages = nullptr, changed = true;
  if (component == FStateImages) FStateImages = nullptr, changed = true;
  if (QTreeWidget* w = TreeWidget(); w && changed) w->doItemsLayout();
}

void TCustomTreeView::SetIndent(int value) {
  FIndent = std::max(value, 0);
  UpdateWidgetText();
}

void TCustomTreeView::SetReadOnly(bool value) {
  FReadOnly = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetRowSelect(bool value) {
  FRowSelect = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomTreeView::SetShowButtons(bool value) {
  FShowButtons = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetShowLines(bool value) {
  FShowLines = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetShowRoot(bool value) {
  FShowRoot = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetSortType(TSortType value) {
  if (FSortType == value) return;
  FSortType = value;
  if ((value == stText || value == stBoth) && !Loading(this)) AlphaSort();
}

bool TCustomTreeView::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && FRightClickSelect && !Designing()) {
    auto* e = static_cast<QMouseEvent*>(event);
    if (e->button() == Qt::RightButton && watched == (TreeWidget() ? TreeWidget()->viewport() : nullptr)) {
      if (TTreeNode* node = GetNodeAt(e->position().toPoint().x(), e->position().toPoint().y())) SetSelected(node);
    }
  }
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    if (QTreeWidget* w = TreeWidget()) w->viewport()->update();
  }
  return TWinControl::WidgetEvent(watched, event);
}

bool TCustomTreeView::CanChange(TTreeNode* node) {
  bool allow = true;
  if (OnChanging && !Loading(this)) OnChanging(this, node, allow);
  return allow;
}

void TCustomTreeView::Change(TTreeNode* node) {
  if (OnChange && !Loading(this)) OnChange(this, node);
}

bool TCustomTreeView::CanExpand(TTreeNode* node) {
  bool allow = true;
  if (OnExpanding && !Loading(this)) OnExpanding(this, node, allow);
  return allow;
}

void TCustomTreeView::Expand(TTreeNode* node) {
  if (OnExpanded && !Loading(this)) OnExpanded(this, node);
}

bool TCustomTreeView::CanCollapse(TTreeNode* node) {
  bool allow = true;
  if (OnCollapsing && !Loading(this)) OnCollapsing(this, node, allow);
  return allow;
}

void TCustomTreeView::Collapse(TTreeNode* node) {
  if (OnCollapsed && !Loading(this)) OnCollapsed(this, node);
}

bool TCustomTreeView::CanEdit(TTreeNode* node) {
  bool allow = true;
  if (OnEditing) OnEditing(this, node, allow);
  return allow;
}

void TCustomTreeView::Edit(TTreeNode* node, const std::string& text) {
  std::string s = text;
  if (OnEdited) OnEdited(this, node, s);
  node->SetText(s);
}

void TCustomTreeView::Delete(TTreeNode* node) {
  if (OnDeletion) OnDeletion(this, node);
}

LUMORA_CLASS_IMPL(TTreeView) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoExpand", &TTreeView::AutoExpand, &TTreeView::SetAutoExpand).Default(false);
  PublishControlProperties(c, {"BiDiMode"});
  c.Property("BorderStyle", &TTreeView::BorderStyle, &TTreeView::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth"});
  c.Property("ChangeDelay", &TTreeView::ChangeDelay, &TTreeView::SetChangeDelay).Default(0);
  PublishControlProperties(c, {"Color", "Ctl3D", "Constraints", "DragKind", "DragCursor", "DragMode", "Enabled",
                               "Font"});
  c.Property("HideSelection", &TTreeView::HideSelection, &TTreeView::SetHideSelection).Default(true);
  c.Property("HotTrack", &TTreeView::HotTrack, &TTreeView::SetHotTrack).Default(false);
  c.Property("Images", &TTreeView::Images, &TTreeView::SetImages);
  c.Property("Indent", &TTreeView::Indent, &TTreeView::SetIndent);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TTreeView::ReadOnly, &TTreeView::SetReadOnly).Default(false);
  c.Property("RightClickSelect", &TTreeView::RightClickSelect, &TTreeView::SetRightClickSelect).Default(false);
  c.Property("RowSelect", &TTreeView::RowSelect, &TTreeView::SetRowSelect).Default(false);
  c.Property("ShowButtons", &TTreeView::ShowButtons, &TTreeView::SetShowButtons).Default(true);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("ShowLines", &TTreeView::ShowLines, &TTreeView::SetShowLines).Default(true);
  c.Property("ShowRoot", &TTreeView::ShowRoot, &TTreeView::SetShowRoot).Default(true);
  c.Property("SortType", &TTreeView::SortType, &TTreeView::SetSortType).Default(stNone);
  c.Property("StateImages", &TTreeView::StateImages, &TTreeView::SetStateImages);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("ToolTips", &TTreeView::ToolTips, &TTreeView::SetToolTips).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TTreeView::OnChange, &TTreeView::OnChange);
  c.Property("OnChanging", &TTreeView::OnChanging, &TTreeView::OnChanging);
  PublishControlProperties(c, {"OnClick"});
  c.Property("OnCollapsed", &TTreeView::OnCollapsed, &TTreeView::OnCollapsed);
  c.Property("OnCollapsing", &TTreeView::OnCollapsing, &TTreeView::OnCollapsing);
  c.Property("OnCompare", &TTreeView::OnCompare, &TTreeView::OnCompare);
  c.Property("OnCustomDraw", &TTreeView::OnCustomDraw, &TTreeView::OnCustomDraw);
  c.Property("OnCustomDrawItem", &TTreeView::OnCustomDrawItem, &TTreeView::OnCustomDrawItem);
  PublishControlProperties(c, {"OnDblClick"});
  c.Property("OnDeletion", &TTreeView::OnDeletion, &TTreeView::OnDeletion);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnEdited", &TTreeView::OnEdited, &TTreeView::OnEdited);
  c.Property("OnEditing", &TTreeView::OnEditing, &TTreeView::OnEditing);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnExpanding", &TTreeView::OnExpanding, &TTreeView::OnExpanding);
  c.Property("OnExpanded", &TTreeView::OnExpanded, &TTreeView::OnExpanded);
  c.Property("OnGetImageIndex", &TTreeView::OnGetImageIndex, &TTreeView::OnGetImageIndex);
  c.Property("OnGetSelectedIndex", &TTreeView::OnGetSelectedIndex, &TTreeView::OnGetSelectedIndex);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDock", "OnStartDrag"});
  // The nodes come last: reading them may ask for the image events above.
  c.Property("Items", &TTreeView::Items, &TTreeView::SetItems);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}
