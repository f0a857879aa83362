#include "platform/rtti/Collection.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>

LUMORA_CLASS_IMPL(TCollection) {}
LUMORA_CLASS_IMPL(TOwnedCollection) {}
LUMORA_CLASS_IMPL(TCollectionItem) {}

namespace {
[[noreturn]] void IndexError(int index) { throw EListError(Format(RtlConsts::SListIndexError, index)); }
}  // namespace

// ---- TCollection ------------------------------------------------------------------------

TCollection::TCollection(TClass itemClass) : FItemClass(itemClass) {}

TCollection::~TCollection() {
  // No Update calls while going away: the derived parts are gone already.
  FUpdateCount = 1;
  while (!FItems.empty()) delete FItems.back();
}

TCollectionItem* TCollection::Add() {
  if (!FItemClass) throw EInvalidOperation(RtlConsts::SInvalidOperation);
  return FItemClass->CreateItem(this);
}

TCollectionItem* TCollection::Insert(int index) {
  if (index < 0 || index > Count()) IndexError(index);
  TCollectionItem* item = Add();
  item->SetIndex(index);
  return item;
}

void TCollection::Clear() {
  if (FItems.empty()) return;
  BeginUpdate();
  while (!FItems.empty()) delete FItems.back();
  EndUpdate();
}

void TCollection::Delete(int index) { delete Items(index); }

TCollectionItem* TCollection::FindItemID(int id) const {
  for (TCollectionItem* item : FItems)
    if (item->FID == id) return item;
  return nullptr;
}

TCollectionItem* TCollection::Items(int index) const {
  if (index < 0 || index >= Count()) IndexError(index);
  return FItems[static_cast<std::size_t>(index)];
}

void TCollection::SetItems(int index, TCollectionItem* value) { Items(index)->Assign(value); }

void TCollection::BeginUpdate() { ++FUpdateCount; }

void TCollection::EndUpdate() {
  if (FUpdateCount == 0) return;
  --FUpdateCount;
  Changed();
}

void TCollection::Changed() {
  if (FUpdateCount == 0) Update(nullptr);
}

void TCollection::Update(TCollectionItem*) {}

void TCollection::SetItemName(TCollectionItem*) {}

void TCollection::InsertItem(TCollectionItem* item) {
  FItems.push_back(item);
  item->FCollection = this;
  item->FID = FNextID++;
  SetItemName(item);
  Changed();
}

void TCollection::RemoveItem(TCollectionItem* item) {
  auto it = std::find(FItems.begin(), FItems.end(), item);
  if (it != FItems.end()) FItems.erase(it);
  item->FCollection = nullptr;
  Changed();
}

void TCollection::MoveItem(int from, int to) {
  if (from < 0 || from >= Count()) IndexError(from);
  if (to < 0 || to >= Count()) IndexError(to);
  TCollectionItem* item = FItems[static_cast<std::size_t>(from)];
  FItems.erase(FItems.begin() + from);
  FItems.insert(FItems.begin() + to, item);
}

void TCollection::Assign(TPersistent* source) {
  if (auto* other = dynamic_cast<TCollection*>(source)) {
    if (other == this) return;
    BeginUpdate();
    try {
      Clear();
      for (TCollectionItem* item : other->FItems) Add()->Assign(item);
    } catch (...) {
      EndUpdate();
      throw;
    }
    EndUpdate();
    return;
  }
  TPersistent::Assign(source);
}

std::string TCollection::PropName() {
  TPersistent* owner = GetOwner();
  if (!owner) return "";
  for (const TPropInfo* p : GetPropList(owner, TTypeKinds{tkClass}))
    if (p->CanRead() && GetObjectProp(owner, p) == this) return p->Name;
  return "";
}

std::string TCollection::GetNamePath() {
  TPersistent* owner = GetOwner();
  if (!owner) return ClassName();
  const std::string ownerPath = owner->GetNamePath();
  if (ownerPath.empty()) return ClassName();
  const std::string prop = PropName();
  if (prop.empty()) return ClassName();
  return ownerPath + "." + prop;
}

// ---- TCollectionItem ----------------------------------------------------------------------

TCollectionItem::TCollectionItem(TCollection* collection) { SetCollection(collection); }

TCollectionItem::~TCollectionItem() { SetCollection(nullptr); }

void TCollectionItem::SetCollection(TCollection* collection) {
  if (FCollection == collection) return;
  if (FCollection) FCollection->RemoveItem(this);
  if (collection) collection->InsertItem(this);
}

int TCollectionItem::Index() const {
  if (!FCollection) return -1;
  const auto& items = FCollection->FItems;
  auto it = std::find(items.begin(), items.end(), this);
  return it == items.end() ? -1 : static_cast<int>(it - items.begin());
}

void TCollectionItem::SetIndex(int index) {
  const int current = Index();
  if (current < 0 || current == index) return;
  FCollection->MoveItem(current, index);
  Changed(true);
}

void TCollectionItem::SetDisplayName(const std::string&) { Changed(false); }

std::string TCollectionItem::GetDisplayName() const { return ClassName(); }

std::string TCollectionItem::GetNamePath() {
  if (!FCollection) return ClassName();
  return Format("%s[%d]", FCollection->GetNamePath(), Index());
}

void TCollectionItem::Changed(bool allItems) {
  if (FCollection && FCollection->FUpdateCount == 0) FCollection->Update(allItems ? nullptr : this);
}
