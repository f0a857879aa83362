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

#include <QPainter>
#include <QHeaderView>
#include <QIcon>
#include <QPixmap>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QWidget>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// List views

namespace {

TListItem* ListItemFrom(const QTreeWidgetItem* row) {
  return row ? static_cast<TListItem*>(row->data(0, Qt::UserRole).value<void*>()) : nullptr;
}

QIcon IconOf(TCustomImageList* images, int index) {
  if (!images || index < 0 || index >= images->Count()) return QIcon();
  return QIcon(QPixmap::fromImage(images->Image(index)));
}

Qt::Alignment AlignmentOf(TAlignment a) {
  return (a == taRightJustify ? Qt::AlignRight : a == taCenter ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter;
}

// Draws the cells of a list view: the selection only on the first column unless the
// whole row is selected, and grid lines between the cells when asked.
class TListCellDelegate : public QStyledItemDelegate {
public:
  TListCellDelegate(TCustomListView* list, QObject* parent) : QStyledItemDelegate(parent), FList(list) {}
  void Detach() { FList = nullptr; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem opt = option;
    if (FList && !FList->RowSelect() && index.column() > 0) opt.state &= ~QStyle::State_Selected;
    if (FList && FList->HideSelection() && !(opt.state & QStyle::State_HasFocus) && opt.widget &&
        !opt.widget->hasFocus()) {
      opt.state &= ~QStyle::State_Selected;
    }
    opt.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, opt, index);
    if (FList && FList->GridLines() && FList->ViewStyle() == vsReport) {
      painter->save();
      painter->setPen(ColorToQColor(clBtnFace));
      const QRect r = option.rect;
      painter->drawLine(r.right(), r.top(), r.right(), r.bottom());
      painter->drawLine(r.left(), r.bottom(), r.right(), r.bottom());
      painter->restore();
    }
  }

private:
  TCustomListView* FList;
};

}  // namespace

// ---- TListColumn, TListColumns

LUMORA_CLASS_IMPL(TListColumn) {
  c.Property("Alignment", &TListColumn::Alignment, &TListColumn::SetAlignment).Default(taLeftJustify);
  c.Property("AutoSize", &TListColumn::AutoSize, &TListColumn::SetAutoSize).Default(false);
  c.Property("Caption", &TListColumn::Caption, &TListColumn::SetCaption);
  c.Property("ImageIndex", &TListColumn::ImageIndex, &TListColumn::SetImageIndex).Default(-1);
  c.Property("MaxWidth", &TListColumn::MaxWidth, &TListColumn::SetMaxWidth).Default(0);
  c.Property("MinWidth", &TListColumn::MinWidth, &TListColumn::SetMinWidth).Default(0);
  c.Property("Tag", &TListColumn::Tag, &TListColumn::SetTag).Default(0);
  c.Property("Width", &TListColumn::Width, &TListColumn::SetWidth).Default(50);
}

// The item joins its collection once its own fields exist: joining tells the list view.
TListColumn::TListColumn(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void TListColumn::Assign(TPersistent* source) {
  if (auto* col = dynamic_cast<TListColumn*>(source)) {
    FAlignment = col->FAlignment;
    FAutoSize = col->FAutoSize;
    FCaption = col->FCaption;
    FImageIndex = col->FImageIndex;
    FMaxWidth = col->FMaxWidth;
    FMinWidth = col->FMinWidth;
    FTag = col->FTag;
    FWidth = col->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

void TListColumn::DefineProperties(TFiler& filer) {
  TCollectionItem::DefineProperties(filer);
  // A self-sizing column also keeps how it sizes itself.
  filer.DefineProperty(
      "WidthType",
      [this](TReader& reader) {
        if (reader.NextValue() == vaList) {
          reader.ReadListBegin();
          while (!reader.EndOfList()) FWidth = reader.ReadInteger();
          reader.ReadListEnd();
        } else {
          FWidth = reader.ReadInteger();
        }
        Changed(false);
      },
      [this](TWriter& writer) {
        writer.WriteListBegin();
        writer.WriteInteger(FWidth);
        writer.WriteListEnd();
      },
      FWidth < 0);
}

std::string TListColumn::GetDisplayName() const {
  return FCaption.empty() ? TCollectionItem::GetDisplayName() : FCaption;
}

void TListColumn::SetAlignment(TAlignment value) {
  FAlignment = value;
  Changed(false);
}

void TListColumn::SetAutoSize(bool value) {
  FAutoSize = value;
  Changed(false);
}

void TListColumn::SetCaption(const std::string& value) {
  FCaption = value;
  Changed(false);
}

void TListColumn::SetImageIndex(int value) {
  FImageIndex = value;
  Changed(false);
}

void TListColumn::SetMaxWidth(int value) {
  FMaxWidth = std::max(value, 0);
  Changed(false);
}

void TListColumn::SetMinWidth(int value) {
  FMinWidth = std::max(value, 0);
  Changed(false);
}

int TListColumn::Width() const { return FWidth; }

void TListColumn::SetWidth(int value) {
  if (value < ColumnHeaderWidth) value = ColumnHeaderWidth;
  if (value >= 0) {
    if (FMinWidth > 0) value = std::max(value, FMinWidth);
    if (FMaxWidth > 0) value = std::min(value, FMaxWidth);
  }
  FWidth = value;
  Changed(false);
}

LUMORA_CLASS_IMPL(TListColumns) {}

TListColumns::TListColumns(TCustomListView* owner) : TCollection(TListColumn::StaticClass()), FOwner(owner) {}

TPersistent* TListColumns::GetOwner() { return FOwner; }

void TListColumns::Update(TCollectionItem*) { FOwner->ColumnsChanged(); }

// ---- TListItem

LUMORA_CLASS_IMPL(TListItem) {}

TListItem::TListItem(TListItems* owner) : FOwner(owner) {
  FSubItems = new TStringList();
  FSubItems->OnChange = [this](TObject*) { Changed(ctText); };
}

TListItem::~TListItem() {
  FSubItems->OnChange = nullptr;
  delete FSubItems;
}

TCustomListView* TListItem::ListView() const { return FOwner ? FOwner->Owner() : nullptr; }

int TListItem::Index() const { return FOwner ? FOwner->IndexOf(this) : -1; }

void TListItem::Changed(TItemChange change) {
  TCustomListView* list = ListView();
  if (!list || Index() < 0) return;
  list->ItemChanged(this);
  list->Change(this, change);
}

void TListItem::SetCaption(const std::string& value) {
  if (FCaption == value) return;
  FCaption = value;
  Changed(ctText);
  if (TCustomListView* list = ListView(); list && (list->SortType() == stText || list->SortType() == stBoth)) {
    list->AlphaSort();
  }
}

int TListItem::SubItemImages(int index) const {
  return index >= 0 && index < static_cast<int>(FSubItemImages.size()) ? FSubItemImages[index] : -1;
}

void TListItem::SetSubItemImages(int index, int value) {
  if (index < 0 || index >= FSubItems->Count()) throw EListError(Format("List index out of bounds (%d)", index));
  if (static_cast<int>(FSubItemImages.size()) <= index) FSubItemImages.resize(index + 1, -1);
  FSubItemImages[index] = value;
  Changed(ctImage);
}

void TListItem::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  Changed(ctImage);
}

void TListItem::SetStateIndex(int value) {
  if (FStateIndex == value) return;
  FStateIndex = value;
  Changed(ctState);
}

void TListItem::SetChecked(bool value) {
  if (FChecked == value) return;
  FChecked = value;
  Changed(ctState);
}

void TListItem::SetSelected(bool value) {
  if (FSelected == value) return;
  TCustomListView* list = ListView();
  if (list && !list->MultiSelect() && value) {
    for (TListItem* other : FOwner->FItems) {
      if (other != this && other->FSelected) other->SetSelected(false);
    }
  }
  FSelected = value;
  if (list) {
    list->ItemChanged(this);
    list->Change(this, ctState);
    list->DoSelectItem(this, value);
  }
}

bool TListItem::Focused() const {
  TCustomListView* list = ListView();
  return list && list->ItemFocused() == this;
}

void TListItem::SetFocused(bool value) {
  TCustomListView* list = ListView();
  if (!list) return;
  if (value) {
    list->SetItemFocused(this);
  } else if (Focused()) {
    list->SetItemFocused(nullptr);
  }
}

void TListItem::Delete() { FOwner->Delete(Index()); }

void TListItem::MakeVisible(bool) {
  TCustomListView* list = ListView();
  if (!list || !list->ListWidget()) return;
  if (QTreeWidgetItem* row = list->ListWidget()->topLevelItem(Index())) list->ListWidget()->scrollToItem(row);
}

TRect TListItem::DisplayRect(TDisplayCode code) const {
  TCustomListView* list = ListView();
  QTreeWidget* w = list ? list->ListWidget() : nullptr;
  if (!w) return TRect{};
  QTreeWidgetItem* row = w->topLevelItem(Index());
  if (!row) return TRect{};
  QRect r = w->visualItemRect(row);
  if (code != drBounds && list->ViewStyle() == vsReport && w->columnCount() > 0) {
    r.setWidth(w->columnWidth(0));
  }
  return Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
}

void TListItem::Assign(TPersistent* source) {
  if (auto* item = dynamic_cast<TListItem*>(source)) {
    FCaption = item->FCaption;
    FData = item->FData;
    FImageIndex = item->FImageIndex;
    FStateIndex = item->FStateIndex;
    FOverlayIndex = item->FOverlayIndex;
    FSubItemImages = item->FSubItemImages;
    FChecked = item->FChecked;
    FSubItems->Assign(item->FSubItems);
    Changed(ctText);
    return;
  }
  TPersistent::Assign(source);
}

// ---- TListItems

LUMORA_CLASS_IMPL(TListItems) {}

TListItems::TListItems(TCustomListView* owner) : FOwner(owner) {}

TListItems::~TListItems() {
  for (TListItem* item : FItems) delete item;
  FItems.clear();
}

TPersistent* TListItems::GetOwner() { return FOwner; }

TListItem* TListItems::Item(int index) const {
  if (index < 0 || index >= Count()) throw EListError(Format("List index out of bounds (%d)", index));
  return FItems[index];
}

int TListItems::IndexOf(const TListItem* item) const {
  const auto it = std::find(FItems.begin(), FItems.end(), item);
  return it == FItems.end() ? -1 : static_cast<int>(it - FItems.begin());
}

TListItem* TListItems::Add() { return Insert(Count()); }

TListItem* TListItems::Insert(int index) {
  index = std::clamp(index, 0, Count());
  auto* item = new TListItem(this);
  FItems.insert(FItems.begin() + index, item);
  if (FOwner) {
    FOwner->ItemAdded(item);
    FOwner->InsertItem(item);
  }
  return item;
}

void TListItems::Delete(int index) {
  TListItem* item = Item(index);
  if (FOwner) {
    FOwner->Delete(item);
    FOwner->ItemRemoving(item);
  }
  FItems.erase(FItems.begin() + index);
  delete item;
}

void TListItems::Clear() {
  if (FItems.empty()) return;
  if (FOwner && !FOwner->ComponentState().Contains(csDestroying)) {
    for (TListItem* item : FItems) FOwner->Delete(item);
  }
  std::vector<TListItem*> items;
  items.swap(FItems);
  if (FOwner) FOwner->RebuildItems();
  for (TListItem* item : items) delete item;
}

void TListItems::SetCount(int value) {
  value = std::max(value, 0);
  BeginUpdate();
  while (Count() > value) Delete(Count() - 1);
  while (Count() < value) {
    TListItem* item = Add();
    if (FOwner && FOwner->OwnerData() && FOwner->OnData) FOwner->OnData(FOwner, item);
  }
  EndUpdate();
}

void TListItems::BeginUpdate() {
  if (FUpdateCount++ == 0 && FOwner && FOwner->ListWidget()) FOwner->ListWidget()->setUpdatesEnabled(false);
}

void TListItems::EndUpdate() {
  if (FUpdateCount == 0) return;
  if (--FUpdateCount == 0 && FOwner && FOwner->ListWidget()) FOwner->ListWidget()->setUpdatesEnabled(true);
}

void TListItems::Assign(TPersistent* source) {
  if (auto* items = dynamic_cast<TListItems*>(source)) {
    if (items == this) return;
    BeginUpdate();
    Clear();
    for (TListItem* from : items->FItems) Add()->Assign(from);
    EndUpdate();
    return;
  }
  TPersistent::Assign(source);
}

void TListItems::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  const bool hasData = Count() > 0 && !(FOwner && FOwner->OwnerData());
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, hasData);
}

void TListItems::ReadData(TStream& stream) {
  // The size of the whole value, the number of items, then each item: image, state image,
  // overlay, number of sub-items, data, the caption and the sub-items as short strings.
  // Later versions add the sub-items' images, two bytes each.
  struct TParsed {
    std::int32_t Image, State, Overlay, Data;
    std::string Caption;
    std::vector<std::string> SubItems;
    std::vector<int> SubImages;
  };
  const std::string data = stream.ReadRest();
  std::size_t pos = 0;
  GetInt32(data, pos);  // the size, which the data's own length says as well
  const std::int32_t count = GetInt32(data, pos);
  if (count < 0 || static_cast<std::size_t>(count) > (data.size() - pos) / 21) throw EReadError(RtlConsts::SReadError);
  std::vector<TParsed> parsed(count);
  std::size_t subItems = 0;
  for (TParsed& p : parsed) {
    p.Image = GetInt32(data, pos);
    p.State = GetInt32(data, pos);
    p.Overlay = GetInt32(data, pos);
    const std::int32_t subCount = GetInt32(data, pos);
    p.Data = GetInt32(data, pos);
    p.Caption = GetShortString(data, pos);
    if (subCount < 0 || static_cast<std::size_t>(subCount) > data.size() - pos) throw EReadError(RtlConsts::SReadError);
    for (int j = 0; j < subCount; ++j) p.SubItems.push_back(GetShortString(data, pos));
    subItems += static_cast<std::size_t>(subCount);
  }
  const bool images = subItems > 0 && data.size() - pos == 2 * subItems;
  if (images) {
    for (TParsed& p : parsed) {
      for (std::size_t j = 0; j < p.SubItems.size(); ++j) {
        const auto v = static_cast<std::int16_t>(static_cast<unsigned char>(data[pos]) |
                                                 (static_cast<unsigned char>(data[pos + 1]) << 8));
        p.SubImages.push_back(v);
        pos += 2;
      }
    }
  }
  BeginUpdate();
  Clear();
  FSubItemImagesStreamed = images;
  const TSortType sort = FOwner ? FOwner->FSortType : stNone;
  if (FOwner) FOwner->FSortType = stNone;
  for (TParsed& p : parsed) {
    TListItem* item = new TListItem(this);
    item->FCaption = std::move(p.Caption);
    item->FImageIndex = p.Image;
    item->FStateIndex = p.State;
    item->FOverlayIndex = p.Overlay;
    item->FData = reinterpret_cast<void*>(static_cast<std::uintptr_t>(static_cast<std::uint32_t>(p.Data)));
    item->FSubItems->OnChange = nullptr;
    for (const std::string& s : p.SubItems) item->FSubItems->Add(s);
    item->FSubItems->OnChange = [item](TObject*) { item->Changed(ctText); };
    item->FSubItemImages = std::move(p.SubImages);
    FItems.push_back(item);
  }
  if (FOwner) {
    FOwner->FSortType = sort;
    FOwner->RebuildItems();
  }
  EndUpdate();
}

void TListItems::WriteData(TStream& stream) const {
  std::string body;
  PutInt32(body, Count());
  for (const TListItem* item : FItems) {
    PutInt32(body, item->FImageIndex);
    PutInt32(body, item->FStateIndex);
    PutInt32(body, item->FOverlayIndex);
    PutInt32(body, item->FSubItems->Count());
    PutInt32(body, static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(item->FData)));
    PutShortString(body, item->FCaption);
    for (int j = 0; j < item->FSubItems->Count(); ++j) PutShortString(body, item->FSubItems->Strings(j));
  }
  if (FSubItemImagesStreamed) {
    for (const TListItem* item : FItems) {
      for (int j = 0; j < item->FSubItems->Count(); ++j) {
        const auto v = static_cast<std::uint16_t>(static_cast<std::int16_t>(item->SubItemImages(j)));
        body += static_cast<char>(v & 0xFF);
        body += static_cast<char>(v >> 8);
      }
    }
  }
  std::string out;
  PutInt32(out, static_cast<std::int32_t>(body.size() + 4));
  out += body;
  stream.WriteBuffer(out);
}

// ---- TIconOptions

LUMORA_CLASS_IMPL(TIconOptions) {
  c.Property("Arrangement", &TIconOptions::Arrangement, &TIconOptions::SetArrangement).Default(iaTop);
  c.Property("AutoArrange", &TIconOptions::AutoArrange, &TIconOptions::SetAutoArrange).Default(false);
  c.Property("WrapText", &TIconOptions::WrapText, &TIconOptions::SetWrapText).Default(true);
}

void TIconOptions::Assign(TPersistent* source) {
  if (auto* o = dynamic_cast<TIconOptions*>(source)) {
    FArrangement = o->FArrangement;
    FAutoArrange = o->FAutoArrange;
    FWrapText = o->FWrapText;
    return;
  }
  TPersistent::Assign(source);
}

// ---- TCustomListView

LUMORA_CLASS_IMPL(TCustomListView) {}

TCustomListView::TCustomListView(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks};
  FWidth = 250;
  FHeight = 150;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FColumns = new TListColumns(this);
  FListItems = new TListItems(this);
  FIconOptions = new TIconOptions(this);
}

TCustomListView::~TCustomListView() {
  Destroying();
  if (QTreeWidget* w = ListWidget()) {
    if (auto* d = dynamic_cast<TListCellDelegate*>(w->itemDelegate())) d->Detach();
  }
  FSyncing = true;
  DestroyWidget();
  delete FListItems;
  FListItems = nullptr;
  delete FColumns;
  FColumns = nullptr;
  delete FIconOptions;
}

QTreeWidget* TCustomListView::ListWidget() const { return qobject_cast<QTreeWidget*>(Widget()); }

void TCustomListView::CreateWidget() {
  auto* w = new QTreeWidget();
  w->setFocusPolicy(Qt::StrongFocus);
  w->setRootIsDecorated(false);
  w->setUniformRowHeights(true);
  w->setItemsExpandable(false);
  w->setAllColumnsShowFocus(true);
  w->setItemDelegate(new TListCellDelegate(this, w));
  w->header()->setStretchLastSection(false);
  w->header()->setSectionsMovable(false);
  w->header()->setSectionsClickable(true);
  QObject::connect(w, &QTreeWidget::itemSelectionChanged, w, [this] {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([this] { SelectionFromWidget(); });
  });
  QObject::connect(w, &QTreeWidget::itemChanged, w, [this](QTreeWidgetItem* row, int column) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TListItem* item = ListItemFrom(row);
      if (!item) return;
      if (FCheckboxes && column == 0) {
        const bool checked = row->checkState(0) == Qt::Checked;
        if (checked != item->FChecked) {
          item->FChecked = checked;
          Change(item, ctState);
        }
      }
      const std::string text = FFont->FromUnicode(row->text(0));
      if (column == 0 && text != item->FCaption) Edit(item, text);
    });
  });
  QObject::connect(w->header(), &QHeaderView::sectionClicked, w, [this](int section) {
    TMessageLoop::Instance().Guarded([&] {
      if (section >= 0 && section < FColumns->Count() && FColumnClick && !Designing()) ColClick(FColumns->Items(section));
    });
  });
  AdoptWidget(w);
  ColumnsChanged();
  RebuildItems();
}

void TCustomListView::UpdateWidgetText() {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  w->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  w->setSelectionMode(FMultiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
  w->setSelectionBehavior(QAbstractItemView::SelectRows);
  w->setEditTriggers(FReadOnly ? QAbstractItemView::NoEditTriggers
                               : QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
  w->setHeaderHidden(FViewStyle != vsReport || !FShowColumnHeaders);
  w->header()->setSectionsClickable(FColumnClick);
  TCustomImageList* images = FViewStyle == vsIcon ? FLargeImages : FSmallImages;
  w->setIconSize(images ? QSize(images->Width(), images->Height()) : QSize(0, 0));
  w->viewport()->update();
}

void TCustomListView::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  QTreeWidget* w = ListWidget();
  if (!w) return;
  QPalette pal = w->palette();
  pal.setColor(QPalette::Active, QPalette::Highlight, ColorToQColor(clHighlight));
  pal.setColor(QPalette::Active, QPalette::HighlightedText, ColorToQColor(clHighlightText));
  pal.setColor(QPalette::Inactive, QPalette::Highlight, ColorToQColor(clBtnFace));
  pal.setColor(QPalette::Inactive, QPalette::HighlightedText, ColorToQColor(clBtnText));
  w->setPalette(pal);
}

void TCustomListView::ColumnsChanged() {
  QTreeWidget* w = ListWidget();
  if (!w || !FColumns) return;
  const bool was = FSyncing;
  FSyncing = true;
  const int columns = FViewStyle == vsReport ? std::max(1, FColumns->Count()) : 1;
  w->setColumnCount(columns);
  QStringList labels;
  for (int i = 0; i < FColumns->Count() && FViewStyle == vsReport; ++i) {
    TListColumn* col = FColumns->Items(i);
    labels << StripAccelChars(FFont->ToUnicode(col->Caption()));
  }
  if (FViewStyle == vsReport) {
    w->setHeaderLabels(labels);
    for (int i = 0; i < FColumns->Count(); ++i) {
      TListColumn* col = FColumns->Items(i);
      w->headerItem()->setTextAlignment(i, AlignmentOf(col->Alignment()));
      if (col->WidthType() < 0 || col->AutoSize()) {
        w->header()->setSectionResizeMode(i, QHeaderView::ResizeToContents);
      } else {
        w->header()->setSectionResizeMode(i, QHeaderView::Interactive);
        w->setColumnWidth(i, col->Width());
      }
    }
  } else {
    w->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  }
  FSyncing = was;
  // Alignment of the cells follows the columns.
  if (FViewStyle == vsReport) {
    for (int r = 0; r < w->topLevelItemCount(); ++r) {
      for (int i = 0; i < FColumns->Count(); ++i) {
        w->topLevelItem(r)->setTextAlignment(i, AlignmentOf(FColumns->Items(i)->Alignment()));
      }
    }
  }
}

namespace {
void FillRow(TCustomListView* list, QTreeWidgetItem* row, TListItem* item) {
  row->setData(0, Qt::UserRole, QVariant::fromValue<void*>(item));
  row->setText(0, list->Font()->ToUnicode(item->Caption()));
  TCustomImageList* images = list->ViewStyle() == vsIcon ? list->LargeImages() : list->SmallImages();
  row->setIcon(0, IconOf(images, item->ImageIndex()));
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (!list->ReadOnly()) flags |= Qt::ItemIsEditable;
  if (list->Checkboxes()) {
    flags |= Qt::ItemIsUserCheckable;
    row->setCheckState(0, item->Checked() ? Qt::Checked : Qt::Unchecked);
  }
  row->setFlags(flags);
  if (list->ViewStyle() == vsReport) {
    const int columns = std::max(1, list->Columns()->Count());
    for (int j = 1; j < columns; ++j) {
      const QString text = j - 1 < item->SubItems()->Count() ? list->Font()->ToUnicode(item->SubItems()->Strings(j - 1))
                                                             : QString();
      row->setText(j, text);
      row->setIcon(j, IconOf(list->SmallImages(), item->SubItemImages(j - 1)));
      if (j < list->Columns()->Count()) row->setTextAlignment(j, AlignmentOf(list->Columns()->Items(j)->Alignment()));
    }
    if (list->Columns()->Count() > 0) row->setTextAlignment(0, AlignmentOf(list->Columns()->Items(0)->Alignment()));
  }
  row->setSelected(item->Selected());
}
}  // namespace

void TCustomListView::RebuildItems() {
  QTreeWidget* w = ListWidget();
  if (!w || !FListItems) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->clear();
  FItemsWidget = w;
  QList<QTreeWidgetItem*> rows;
  rows.reserve(FListItems->Count());
  for (TListItem* item : FListItems->FItems) {
    auto* row = new QTreeWidgetItem();
    row->setData(0, Qt::UserRole, QVariant::fromValue<void*>(item));
    rows.push_back(row);
  }
  w->addTopLevelItems(rows);
  for (int i = 0; i < rows.size(); ++i) FillRow(this, rows[i], FListItems->FItems[i]);
  FSyncing = was;
}

void TCustomListView::ItemAdded(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  const bool was = FSyncing;
  FSyncing = true;
  auto* row = new QTreeWidgetItem();
  w->insertTopLevelItem(item->Index(), row);
  FillRow(this, row, item);
  FSyncing = was;
}

void TCustomListView::ItemChanged(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  QTreeWidgetItem* row = w->topLevelItem(item->Index());
  if (!row || ListItemFrom(row) != item) return;
  const bool was = FSyncing;
  FSyncing = true;
  FillRow(this, row, item);
  FSyncing = was;
}

void TCustomListView::ItemRemoving(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  const bool was = FSyncing;
  FSyncing = true;
  delete w->takeTopLevelItem(item->Index());
  FSyncing = was;
}

void TCustomListView::SelectionFromWidget() {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  // Items that lose the selection hear of it first, then those that gain it.
  std::vector<TListItem*> lost;
  std::vector<TListItem*> gained;
  for (int i = 0; i < w->topLevelItemCount(); ++i) {
    QTreeWidgetItem* row = w->topLevelItem(i);
    TListItem* item = ListItemFrom(row);
    if (!item) continue;
    if (row->isSelected() != item->FSelected) (row->isSelected() ? gained : lost).push_back(item);
  }
  for (TListItem* item : lost) {
    item->FSelected = false;
    Change(item, ctState);
    DoSelectItem(item, false);
  }
  for (TListItem* item : gained) {
    item->FSelected = true;
    Change(item, ctState);
    DoSelectItem(item, true);
  }
}

TListItem* TCustomListView::Selected() const {
  for (TListItem* item : FListItems->FItems) {
    if (item->FSelected) return item;
  }
  return nullptr;
}

void TCustomListView::SetSelected(TListItem* item) {
  for (TListItem* other : FListItems->FItems) {
    if (other != item && other->FSelected) other->SetSelected(false);
  }
  if (item) item->SetSelected(true);
}

TListItem* TCustomListView::ItemFocused() const {
  QTreeWidget* w = ListWidget();
  if (!w) return Selected();
  return ListItemFrom(w->currentItem());
}

void TCustomListView::SetItemFocused(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->setCurrentItem(item ? w->topLevelItem(item->Index()) : nullptr, 0, QItemSelectionModel::NoUpdate);
  FSyncing = was;
}

int TCustomListView::SelCount() const {
  int n = 0;
  for (TListItem* item : FListItems->FItems) n += item->FSelected ? 1 : 0;
  return n;
}

TListItem* TCustomListView::TopItem() const {
  QTreeWidget* w = ListWidget();
  if (!w) return FListItems->Count() > 0 ? FListItems->Item(0) : nullptr;
  return ListItemFrom(w->itemAt(1, 1));
}

TListItem* TCustomListView::GetItemAt(int x, int y) const {
  QTreeWidget* w = ListWidget();
  if (!w) return nullptr;
  return ListItemFrom(w->itemAt(x, y));
}

TListItem* TCustomListView::FindCaption(int startIndex, const std::string& value, bool partial, bool inclusive,
                                        bool wrap) const {
  const int count = FListItems->Count();
  if (count == 0) return nullptr;
  int i = inclusive ? startIndex : startIndex + 1;
  for (int n = 0; n < count; ++n, ++i) {
    if (i >= count) {
      if (!wrap) return nullptr;
      i = 0;
    }
    if (i < 0) continue;
    const std::string& caption = FListItems->FItems[i]->FCaption;
    if (partial ? CompareText(caption.substr(0, value.size()), value) == 0 : CompareText(caption, value) == 0) {
      return FListItems->FItems[i];
    }
  }
  return nullptr;
}

bool TCustomListView::AlphaSort() {
  std::stable_sort(FListItems->FItems.begin(), FListItems->FItems.end(), [this](TListItem* a, TListItem* b) {
    if (OnCompare) {
      int result = 0;
      OnCompare(this, a, b, 0, result);
      return result < 0;
    }
    return CompareText(a->FCaption, b->FCaption) < 0;
  });
  RebuildItems();
  return true;
}

void TCustomListView::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomListView::SetCheckboxes(bool value) {
  FCheckboxes = value;
  RebuildItems();
}

void TCustomListView::SetColumnClick(bool value) {
  FColumnClick = value;
  UpdateWidgetText();
}

void TCustomListView::SetGridLines(bool value) {
  FGridLines = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetHideSelection(bool value) {
  FHideSelection = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetLargeImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FLargeImages, value)) return;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetSmallImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FSmallImages, value)) return;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetStateImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FStateImages, value)) return;
}

void TCustomListView::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation != opRemove) return;
  // One list may serve as several of these: forget it everywhere before redrawing, as
  // it is half destroyed by now.
  bool changed = false;
  if (component == FLargeImages) FLargeImages = nullptr, changed = true;
  if (component == FSmallImages) FSmallImages = nullptr, changed = true;
  if (component == FStateImages) FStateImages = nullptr;
  if (changed) {
    UpdateWidgetText();
    RebuildItems();
  }
}

void TCustomListView::SetMultiSelect(bool value) {
  FMultiSelect = value;
  UpdateWidgetText();
}

void TCustomListView::SetOwnerData(bool value) {
  if (FOwnerData == value) return;
  FOwnerData = value;
  if (value) FListItems->Clear();
}

void TCustomListView::SetReadOnly(bool value) {
  FReadOnly = value;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetRowSelect(bool value) {
  FRowSelect = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetShowColumnHeaders(bool value) {
  FShowColumnHeaders = value;
  UpdateWidgetText();
}

void TCustomListView::SetSortType(TSortType value) {
  if (FSortType == value) return;
  FSortType = value;
  if ((value == stText || value == stBoth) && !Loading(this)) AlphaSort();
}

void TCustomListView::SetViewStyle(TViewStyle value) {
  if (FViewStyle == value) return;
  FViewStyle = value;
  UpdateWidgetText();
  ColumnsChanged();
  RebuildItems();
}

void TCustomListView::Loaded() {
  TWinControl::Loaded();
  ColumnsChanged();
  if (FSortType == stText || FSortType == stBoth) AlphaSort();
}

bool TCustomListView::CanChange(TListItem* item, TItemChange change) {
  bool allow = true;
  if (OnChanging && !Loading(this)) OnChanging(this, item, change, allow);
  return allow;
}

void TCustomListView::Change(TListItem* item, TItemChange change) {
  if (OnChange && !Loading(this) && FListItems && FListItems->FUpdateCount == 0) OnChange(this, item, change);
}

void TCustomListView::DoSelectItem(TListItem* item, bool selected) {
  if (OnSelectItem && !Loading(this)) OnSelectItem(this, item, selected);
}

void TCustomListView::ColClick(TListColumn* column) {
  if (OnColumnClick) OnColumnClick(this, column);
}

bool TCustomListView::CanEdit(TListItem* item) {
  bool allow = true;
  if (OnEditing) OnEditing(this, item, allow);
  return allow;
}

void TCustomListView::Edit(TListItem* item, const std::string& text) {
  std::string s = text;
  if (OnEdited) OnEdited(this, item, s);
  item->SetCaption(s);
}

void TCustomListView::Delete(TListItem* item) {
  if (OnDeletion && !ComponentState().Contains(csDestroying)) OnDeletion(this, item);
}

void TCustomListView::InsertItem(TListItem* item) {
  if (OnInsert && !Loading(this)) OnInsert(this, item);
}

LUMORA_CLASS_IMPL(TListView) {
  PublishControlProperties(c, {"Action", "Align"});
  c.Property("AllocBy", &TListView::AllocBy, &TListView::SetAllocBy).Default(0);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TListView::BorderStyle, &TListView::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth"});
  c.Property("Checkboxes", &TListView::Checkboxes, &TListView::SetCheckboxes).Default(false);
  PublishControlProperties(c, {"Color"});
  c.Property("Columns", &TListView::Columns, &TListView::SetColumns);
  c.Property("ColumnClick", &TListView::ColumnClick, &TListView::SetColumnClick).Default(true);
  PublishControlProperties(c, {"Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("FlatScrollBars", &TListView::FlatScrollBars, &TListView::SetFlatScrollBars).Default(false);
  c.Property("FullDrag", &TListView::FullDrag, &TListView::SetFullDrag).Default(false);
  c.Property("GridLines", &TListView::GridLines, &TListView::SetGridLines).Default(false);
  c.Property("HideSelection", &TListView::HideSelection, &TListView::SetHideSelection).Default(true);
  c.Property("HotTrack", &TListView::HotTrack, &TListView::SetHotTrack).Default(false);
  c.Property("HotTrackStyles", &TListView::HotTrackStyles, &TListView::SetHotTrackStyles).NoDefault();
  c.Property("IconOptions", &TListView::IconOptions, &TListView::SetIconOptions);
  c.Property("Items", &TListView::Items, &TListView::SetItems);
  c.Property("LargeImages", &TListView::LargeImages, &TListView::SetLargeImages);
  c.Property("MultiSelect", &TListView::MultiSelect, &TListView::SetMultiSelect).Default(false);
  c.Property("OwnerData", &TListView::OwnerData, &TListView::SetOwnerData).Default(false);
  c.Property("OwnerDraw", &TListView::OwnerDraw, &TListView::SetOwnerDraw).Default(false);
  c.Property("ReadOnly", &TListView::ReadOnly, &TListView::SetReadOnly).Default(false);
  c.Property("RowSelect", &TListView::RowSelect, &TListView::SetRowSelect).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowColumnHeaders", &TListView::ShowColumnHeaders, &TListView::SetShowColumnHeaders).Default(true);
  c.Property("ShowWorkAreas", &TListView::ShowWorkAreas, &TListView::SetShowWorkAreas).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("SmallImages", &TListView::SmallImages, &TListView::SetSmallImages);
  c.Property("SortType", &TListView::SortType, &TListView::SetSortType).Default(stNone);
  c.Property("StateImages", &TListView::StateImages, &TListView::SetStateImages);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("ViewStyle", &TListView::ViewStyle, &TListView::SetViewStyle).Default(vsIcon);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TListView::OnChange, &TListView::OnChange);
  c.Property("OnChanging", &TListView::OnChanging, &TListView::OnChanging);
  PublishControlProperties(c, {"OnClick"});
  c.Property("OnColumnClick", &TListView::OnColumnClick, &TListView::OnColumnClick);
  c.Property("OnColumnDragged", &TListView::OnColumnDragged, &TListView::OnColumnDragged);
  c.Property("OnColumnRightClick", &TListView::OnColumnRightClick, &TListView::OnColumnRightClick);
  c.Property("OnCompare", &TListView::OnCompare, &TListView::OnCompare);
  c.Property("OnCustomDraw", &TListView::OnCustomDraw, &TListView::OnCustomDraw);
  c.Property("OnCustomDrawItem", &TListView::OnCustomDrawItem, &TListView::OnCustomDrawItem);
  c.Property("OnCustomDrawSubItem", &TListView::OnCustomDrawSubItem, &TListView::OnCustomDrawSubItem);
  c.Property("OnData", &TListView::OnData, &TListView::OnData);
  c.Property("OnDataFind", &TListView::OnDataFind, &TListView::OnDataFind);
  c.Property("OnDataHint", &TListView::OnDataHint, &TListView::OnDataHint);
  c.Property("OnDataStateChange", &TListView::OnDataStateChange, &TListView::OnDataStateChange);
  PublishControlProperties(c, {"OnDblClick"});
  c.Property("OnDeletion", &TListView::OnDeletion, &TListView::OnDeletion);
  c.Property("OnDrawItem", &TListView::OnDrawItem, &TListView::OnDrawItem);
  c.Property("OnEdited", &TListView::OnEdited, &TListView::OnEdited);
  c.Property("OnEditing", &TListView::OnEditing, &TListView::OnEditing);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnGetImageIndex", &TListView::OnGetImageIndex, &TListView::OnGetImageIndex);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnInfoTip", &TListView::OnInfoTip, &TListView::OnInfoTip);
  c.Property("OnInsert", &TListView::OnInsert, &TListView::OnInsert);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize"});
  c.Property("OnSelectItem", &TListView::OnSelectItem, &TListView::OnSelectItem);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}
