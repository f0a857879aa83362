#include "platform/vcl/CheckLst.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"

#include <QListWidget>
#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one

#include "platform/vcl/Menus.h"

namespace {

// What an item carries besides the program's object: its check state and whether it
// can be checked. It rides in the object slot of the item, so that it stays with the
// item when the list is sorted or items move.
class TCheckItemData : public TObject {
public:
  TObject* Object = nullptr;
  TCheckBoxState State = cbUnchecked;
  bool Enabled = true;
};

}  // namespace

// The items of a check list box: the object each item shows to the program is its own;
// the check state is kept beside it.
class TCheckListStrings : public TStringList {
  LUMORA_CLASS(TCheckListStrings, TStringList)
public:
  TCheckListStrings() = default;
  ~TCheckListStrings() override { FreeData(); }

  int AddObject(const std::string& s, TObject* object) override {
    auto* data = object ? new TCheckItemData() : nullptr;
    if (data) data->Object = object;
    const int before = Count();
    const int index = TStringList::AddObject(s, data);
    if (Count() == before) delete data;  // a duplicate that the list ignored
    return index;
  }
  void Delete(int index) override {
    TCheckItemData* data = Data(index);
    TStringList::Delete(index);
    delete data;
  }
  void Clear() override {
    std::vector<TCheckItemData*> doomed;
    for (int i = 0; i < Count(); ++i) doomed.push_back(Data(i));
    TStringList::Clear();
    for (TCheckItemData* d : doomed) delete d;
  }

  // The data of item `index`, made when `create` and there is none.
  TCheckItemData* Data(int index, bool create = false) {
    auto* data = static_cast<TCheckItemData*>(TStringList::GetObject(index));
    if (!data && create) {
      data = new TCheckItemData();
      // Only the object slot changes: the list's change event would refill the widget.
      const TNotifyEvent onChange = OnChange;
      OnChange = nullptr;
      TStringList::PutObject(index, data);
      OnChange = onChange;
    }
    return data;
  }
  const TCheckItemData* Data(int index) const { return static_cast<TCheckItemData*>(TStringList::GetObject(index)); }

protected:
  TObject* GetObject(int index) const override {
    const TCheckItemData* data = Data(index);
    return data ? data->Object : nullptr;
  }
  void PutObject(int index, TObject* object) override {
    if (TCheckItemData* data = Data(index)) {
      data->Object = object;
      return;
    }
    if (object) Data(index, true)->Object = object;
  }

private:
  void FreeData() {
    for (int i = 0; i < Count(); ++i) delete Data(i);
  }
};

LUMORA_CLASS_IMPL(TCheckListStrings) {}

namespace {
TCheckListStrings* CheckItems(TStrings* items) { return static_cast<TCheckListStrings*>(items); }
}  // namespace

// ---------------------------------------------------------------------------------------
// TCheckListBox

LUMORA_CLASS_IMPL(TCheckListBox) {
  PublishControlProperties(c, {"Align"});
  c.Property("AllowGrayed", &TCheckListBox::AllowGrayed, &TCheckListBox::SetAllowGrayed).Default(false);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TCheckListBox::BorderStyle, &TCheckListBox::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color"});
  c.Property("Columns", &TCheckListBox::Columns, &TCheckListBox::SetColumns).Default(0);
  PublishControlProperties(c, {"Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("Flat", &TCheckListBox::Flat, &TCheckListBox::SetFlat).Default(true);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("IntegralHeight", &TCheckListBox::IntegralHeight, &TCheckListBox::SetIntegralHeight).Default(false);
  c.Property("ItemHeight", &TCheckListBox::ItemHeight, &TCheckListBox::SetItemHeight).Default(16);
  c.Property("Items", &TCheckListBox::Items, &TCheckListBox::SetItems);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint"});
  c.Property("Sorted", &TCheckListBox::Sorted, &TCheckListBox::SetSorted).Default(false);
  c.Property("Style", &TCheckListBox::Style, &TCheckListBox::SetStyle).Default(lbStandard);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("TabWidth", &TCheckListBox::TabWidth, &TCheckListBox::SetTabWidth).Default(0);
  PublishControlProperties(c, {"Visible", "OnClick"});
  c.Property("OnClickCheck", &TCheckListBox::OnClickCheck, &TCheckListBox::OnClickCheck);
  PublishControlProperties(c, {"OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawItem", &TCheckListBox::OnDrawItem, &TCheckListBox::OnDrawItem);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("OnMeasureItem", &TCheckListBox::OnMeasureItem, &TCheckListBox::OnMeasureItem);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TCheckListBox::TCheckListBox(TComponent* owner) : TCustomListBox(owner) {
  // The items keep their check states beside the program's objects.
  FItems->OnChange = nullptr;
  delete FItems;
  FItems = new TCheckListStrings();
  FItems->OnChange = [this](TObject*) { ItemsChanged(); };
}

void TCheckListBox::CreateWidget() {
  TCustomListBox::CreateWidget();
  QListWidget* l = List();
  if (!l) return;
  QObject::connect(l, &QListWidget::itemChanged, l, [this](QListWidgetItem* item) {
    TMessageLoop::Instance().Guarded([&] {
      if (FFilling) return;
      QListWidget* list = List();
      const int index = list ? list->row(item) : -1;
      if (index < 0 || index >= FItems->Count()) return;
      TCheckBoxState state = item->checkState() == Qt::Checked            ? cbChecked
                             : item->checkState() == Qt::PartiallyChecked ? cbGrayed
                                                                          : cbUnchecked;
      if (state == cbGrayed && !FAllowGrayed) state = cbChecked;
      if (state == State(index)) return;
      CheckItems(FItems)->Data(index, true)->State = state;
      UpdateItem(index);
      // The item whose box was clicked becomes the selected one, then the check is told.
      if (list->currentRow() != index) list->setCurrentRow(index);
      ClickCheck();
    });
  });
}

void TCheckListBox::FillWidget() {
  TCustomListBox::FillWidget();
  for (int i = 0; i < FItems->Count(); ++i) UpdateItem(i);
}

void TCheckListBox::UpdateItem(int index) {
  QListWidget* l = List();
  if (!l) return;
  QListWidgetItem* item = l->item(index);
  if (!item) return;
  const bool was = FFilling;
  FFilling = true;
  const TCheckItemData* data = CheckItems(FItems)->Data(index);
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
  if (FAllowGrayed) flags |= Qt::ItemIsUserTristate;
  if (!data || data->Enabled) flags |= Qt::ItemIsEnabled;
  item->setFlags(flags);
  const TCheckBoxState state = data ? data->State : cbUnchecked;
  item->setCheckState(state == cbChecked ? Qt::Checked : state == cbGrayed ? Qt::PartiallyChecked : Qt::Unchecked);
  FFilling = was;
}

TCheckBoxState TCheckListBox::State(int index) const {
  if (index < 0 || index >= FItems->Count()) {
    throw EStringListError(Format(RtlConsts::SListIndexError, index));
  }
  const TCheckItemData* data = CheckItems(FItems)->Data(index);
  return data ? data->State : cbUnchecked;
}

void TCheckListBox::SetState(int index, TCheckBoxState value) {
  if (index < 0 || index >= FItems->Count()) {
    throw EStringListError(Format(RtlConsts::SListIndexError, index));
  }
  if (State(index) == value) return;
  CheckItems(FItems)->Data(index, true)->State = value;
  UpdateItem(index);
}

bool TCheckListBox::ItemEnabled(int index) const {
  if (index < 0 || index >= FItems->Count()) {
    throw EStringListError(Format(RtlConsts::SListIndexError, index));
  }
  const TCheckItemData* data = CheckItems(FItems)->Data(index);
  return !data || data->Enabled;
}

void TCheckListBox::SetItemEnabled(int index, bool value) {
  if (ItemEnabled(index) == value) return;
  CheckItems(FItems)->Data(index, true)->Enabled = value;
  UpdateItem(index);
}

void TCheckListBox::SetAllowGrayed(bool value) {
  if (FAllowGrayed == value) return;
  FAllowGrayed = value;
  if (!value) {
    for (int i = 0; i < FItems->Count(); ++i) {
      if (State(i) == cbGrayed) CheckItems(FItems)->Data(i, true)->State = cbUnchecked;
    }
  }
  UpdateWidgetText();
}

void TCheckListBox::SetFlat(bool value) {
  FFlat = value;
  Invalidate();
}

void TCheckListBox::ClickCheck() {
  if (OnClickCheck && !ComponentState().Contains(csLoading)) OnClickCheck(this);
}
