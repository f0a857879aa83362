#include "platform/rtti/Component.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>

LUMORA_CLASS_IMPL(TComponent) {
  c.Property("Name", &TComponent::FName, &TComponent::SetName).Stored(false);
  c.Property("Tag", &TComponent::FTag, &TComponent::SetTag).Default(0);
}

bool IsValidIdent(std::string_view name) {
  if (name.empty()) return false;
  auto alpha = [](char ch) { return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') || ch == '_'; };
  if (!alpha(name[0])) return false;
  for (char ch : name.substr(1))
    if (!alpha(ch) && !(ch >= '0' && ch <= '9')) return false;
  return true;
}

TComponent::TComponent(TComponent* owner) {
  if (owner) owner->InsertComponent(this);
}

TComponent::~TComponent() {
  Destroying();
  // Everyone who asked hears of it; their lists lose this component first, so a
  // Notification override that forgets the base cannot leave a dangling entry.
  while (!FFreeNotifies.empty()) {
    TComponent* other = FFreeNotifies.back();
    FFreeNotifies.pop_back();
    auto& theirs = other->FFreeNotifies;
    theirs.erase(std::remove(theirs.begin(), theirs.end(), this), theirs.end());
    if (theirs.empty()) other->FComponentState.Exclude(csFreeNotification);
    other->Notification(this, opRemove);
  }
  DestroyComponents();
  if (FOwner) FOwner->RemoveComponent(this);
}

TComponent* TComponent::Components(int index) const {
  if (index < 0 || index >= ComponentCount()) throw EListError(Format(RtlConsts::SListIndexError, index));
  return FComponents[static_cast<std::size_t>(index)];
}

int TComponent::ComponentIndex() const {
  if (!FOwner) return -1;
  const auto& list = FOwner->FComponents;
  auto it = std::find(list.begin(), list.end(), this);
  return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

void TComponent::SetComponentIndex(int index) {
  if (!FOwner) return;
  auto& list = FOwner->FComponents;
  const int current = ComponentIndex();
  if (current < 0) return;
  const int last = static_cast<int>(list.size()) - 1;
  index = std::clamp(index, 0, last);
  if (index == current) return;
  list.erase(list.begin() + current);
  list.insert(list.begin() + index, this);
}

TComponent* TComponent::FindComponent(std::string_view name) const {
  if (name.empty()) return nullptr;
  for (TComponent* c : FComponents)
    if (SameText(c->FName, name)) return c;
  return nullptr;
}

void TComponent::Insert(TComponent* component) {
  FComponents.push_back(component);
  component->FOwner = this;
}

void TComponent::Remove(TComponent* component) {
  auto it = std::find(FComponents.begin(), FComponents.end(), component);
  if (it != FComponents.end()) FComponents.erase(it);
  component->FOwner = nullptr;
}

void TComponent::InsertComponent(TComponent* component) {
  if (!component || component->FOwner == this) return;
  ValidateRename(component, "", component->FName);
  if (component->FOwner) component->FOwner->RemoveComponent(component);
  Insert(component);
  component->SetReference(true);
  if (FComponentState.Contains(csDesigning)) component->SetDesigning(true);
  Notification(component, opInsert);
}

void TComponent::RemoveComponent(TComponent* component) {
  if (!component || component->FOwner != this) return;
  Notification(component, opRemove);
  component->SetReference(false);
  Remove(component);
}

void TComponent::DestroyComponents() {
  while (!FComponents.empty()) {
    TComponent* instance = FComponents.back();
    if (!FComponentState.Contains(csDestroying)) Notification(instance, opRemove);
    // A notification handler may have taken it out (or freed it) already.
    if (std::find(FComponents.begin(), FComponents.end(), instance) == FComponents.end()) continue;
    instance->SetReference(false);
    Remove(instance);
    delete instance;
  }
}

void TComponent::Destroying() {
  if (FComponentState.Contains(csDestroying)) return;
  FComponentState.Include(csDestroying);
  for (TComponent* c : FComponents) c->Destroying();
}

void TComponent::FreeNotification(TComponent* component) {
  if (!component || component == this) return;
  if (std::find(FFreeNotifies.begin(), FFreeNotifies.end(), component) == FFreeNotifies.end()) {
    FFreeNotifies.push_back(component);
    component->FreeNotification(this);
  }
  FComponentState.Include(csFreeNotification);
}

void TComponent::RemoveFreeNotification(TComponent* component) {
  if (!component) return;
  auto it = std::find(FFreeNotifies.begin(), FFreeNotifies.end(), component);
  if (it == FFreeNotifies.end()) return;
  FFreeNotifies.erase(it);
  component->RemoveFreeNotification(this);
  if (FFreeNotifies.empty()) FComponentState.Exclude(csFreeNotification);
}

void TComponent::Notification(TComponent* component, TOperation operation) {
  if (operation == opRemove && component) RemoveFreeNotification(component);
  // The list may shrink while the news goes round.
  for (std::size_t i = 0; i < FComponents.size(); ++i) FComponents[i]->Notification(component, operation);
}

void TComponent::SetName(const std::string& name) {
  if (FName == name) return;
  if (!name.empty() && !IsValidIdent(name)) throw EComponentError(Format(RtlConsts::SInvalidName, name));
  if (FOwner) FOwner->ValidateRename(this, FName, name);
  else ValidateRename(nullptr, FName, name);
  SetReference(false);
  ChangeName(name);
  SetReference(true);
}

void TComponent::ChangeName(const std::string& name) { FName = name; }

void TComponent::ValidateRename(TComponent* component, const std::string& currentName, const std::string& newName) {
  if (component && !SameText(currentName, newName)) {
    TComponent* existing = FindComponent(newName);
    if (existing && existing != component) throw EComponentError(Format(RtlConsts::SDuplicateName, newName));
  }
  if (FComponentState.Contains(csDesigning) && FOwner) FOwner->ValidateRename(component, currentName, newName);
}

void TComponent::SetReference(bool enable) {
  if (!FOwner || FName.empty()) return;
  const TFieldInfo* field = FOwner->ClassType()->FindField(FName);
  if (!field) return;
  if (enable) field->Set(FOwner, this);
  else if (field->Get(FOwner) == this) field->Set(FOwner, nullptr);
}

void TComponent::SetDesigning(bool value, bool setChildren) {
  if (value) FComponentState.Include(csDesigning);
  else FComponentState.Exclude(csDesigning);
  if (setChildren)
    for (TComponent* c : FComponents) c->SetDesigning(value, true);
}

void TComponent::SetAncestor(bool value) {
  if (value) FComponentState.Include(csAncestor);
  else FComponentState.Exclude(csAncestor);
  for (TComponent* c : FComponents) c->SetAncestor(value);
}

void TComponent::SetInline(bool value) {
  if (value) FComponentState.Include(csInline);
  else FComponentState.Exclude(csInline);
}

void TComponent::Updating() { FComponentState.Include(csUpdating); }
void TComponent::Updated() { FComponentState.Exclude(csUpdating); }
void TComponent::Loaded() { FComponentState.Exclude(csLoading); }

void TComponent::ReadState(TReader& reader) { reader.ReadData(this); }

void TComponent::WriteState(TWriter& writer) { writer.WriteData(this); }

void TComponent::DefineProperties(TFiler& filer) {
  std::int32_t ancestorInfo = 0;
  if (auto* ancestor = dynamic_cast<TComponent*>(filer.Ancestor())) ancestorInfo = ancestor->FDesignInfo;
  // The halves are 16-bit words, as the designer stores them.
  auto low = [](std::int32_t v) { return static_cast<std::uint16_t>(v & 0xFFFF); };
  auto high = [](std::int32_t v) { return static_cast<std::uint16_t>((static_cast<std::uint32_t>(v) >> 16) & 0xFFFF); };
  filer.DefineProperty(
      "Left", [this, high](TReader& r) { FDesignInfo = static_cast<std::int32_t>((std::uint32_t{high(FDesignInfo)} << 16) | static_cast<std::uint16_t>(r.ReadInteger())); },
      [this, low](TWriter& w) { w.WriteInteger(low(FDesignInfo)); }, low(FDesignInfo) != low(ancestorInfo));
  filer.DefineProperty(
      "Top", [this, low](TReader& r) { FDesignInfo = static_cast<std::int32_t>((static_cast<std::uint32_t>(static_cast<std::uint16_t>(r.ReadInteger())) << 16) | low(FDesignInfo)); },
      [this, high](TWriter& w) { w.WriteInteger(high(FDesignInfo)); }, high(FDesignInfo) != high(ancestorInfo));
}

bool TComponent::HasParent() const { return false; }
TComponent* TComponent::GetParentComponent() const { return nullptr; }
void TComponent::SetParentComponent(TComponent*) {}
void TComponent::GetChildren(const TGetChildProc& proc, TComponent* root) {
  if (root != this) return;
  for (std::size_t i = 0; i < FComponents.size(); ++i)
    if (!FComponents[i]->HasParent()) proc(FComponents[i]);
}
TComponent* TComponent::GetChildOwner() { return nullptr; }
TComponent* TComponent::GetChildParent() { return this; }
void TComponent::SetChildOrder(TComponent*, int) {}

TPersistent* TComponent::GetOwner() { return FOwner; }
std::string TComponent::GetNamePath() { return FName; }
