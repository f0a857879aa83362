#include "platform/vcl/ActnList.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ImgList.h"

#include <algorithm>

namespace {
std::vector<TCustomActionList*>& Lists() {
  static std::vector<TCustomActionList*> lists;
  return lists;
}
}  // namespace

const std::vector<TCustomActionList*>& AllActionLists() { return Lists(); }

// ---- TContainedAction

LUMORA_CLASS_IMPL(TContainedAction) {
  c.Property("Category", &TContainedAction::Category, &TContainedAction::SetCategory);
}

TContainedAction::TContainedAction(TComponent* owner) : TBasicAction(owner) {}

TContainedAction::~TContainedAction() {
  if (FActionList) FActionList->RemoveAction(this);
}

void TContainedAction::SetActionList(TCustomActionList* value) {
  if (FActionList == value) return;
  if (FActionList) FActionList->RemoveAction(this);
  if (value) value->AddAction(this);
}

int TContainedAction::Index() const {
  if (!FActionList) return -1;
  const auto& list = FActionList->FActions;
  auto it = std::find(list.begin(), list.end(), this);
  return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

void TContainedAction::SetIndex(int value) {
  if (!FActionList) return;
  auto& list = FActionList->FActions;
  const int current = Index();
  if (current < 0) return;
  list.erase(list.begin() + current);
  value = std::clamp(value, 0, static_cast<int>(list.size()));
  list.insert(list.begin() + value, this);
}

bool TContainedAction::Execute() {
  if (FActionList && FActionList->OnExecute) {
    bool handled = false;
    FActionList->OnExecute(this, handled);
    if (handled) return true;
  }
  return TBasicAction::Execute();
}

bool TContainedAction::Update() {
  if (FActionList && FActionList->OnUpdate) {
    bool handled = false;
    FActionList->OnUpdate(this, handled);
    if (handled) return true;
  }
  return TBasicAction::Update();
}

TComponent* TContainedAction::GetParentComponent() const { return FActionList; }

void TContainedAction::SetParentComponent(TComponent* value) {
  if (auto* list = dynamic_cast<TCustomActionList*>(value)) SetActionList(list);
}

// ---- TCustomAction

LUMORA_CLASS_IMPL(TCustomAction) {}

TCustomAction::TCustomAction(TComponent* owner) : TContainedAction(owner) {}

void TCustomAction::SetCaption(const std::string& value) {
  if (FCaption == value) return;
  FCaption = value;
  Change();
}

void TCustomAction::SetChecked(bool value) {
  if (FChecked == value) return;
  FChecked = value;
  Change();
}

void TCustomAction::SetEnabled(bool value) {
  if (FEnabled == value) return;
  FEnabled = value;
  Change();
}

void TCustomAction::SetHint(const std::string& value) {
  if (FHint == value) return;
  FHint = value;
  Change();
}

void TCustomAction::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  Change();
}

void TCustomAction::SetShortCut(TShortCut value) {
  if (FShortCut == value) return;
  FShortCut = value;
  Change();
}

void TCustomAction::SetVisible(bool value) {
  if (FVisible == value) return;
  FVisible = value;
  Change();
}

LUMORA_CLASS_IMPL(TAction) {
  c.Property("Caption", &TAction::Caption, &TAction::SetCaption);
  c.Property("Checked", &TAction::Checked, &TAction::SetChecked).Default(false);
  c.Property("Enabled", &TAction::Enabled, &TAction::SetEnabled).Default(true);
  c.Property("HelpContext", &TAction::HelpContext, &TAction::SetHelpContext).Default(0);
  c.Property("Hint", &TAction::Hint, &TAction::SetHint);
  c.Property("ImageIndex", &TAction::ImageIndex, &TAction::SetImageIndex).Default(-1);
  c.Property("ShortCut", &TAction::ShortCut, &TAction::SetShortCut).Default(0);
  c.Property("Visible", &TAction::Visible, &TAction::SetVisible).Default(true);
  c.Property("OnExecute", &TAction::OnExecute, &TAction::OnExecute);
  c.Property("OnHint", &TAction::OnHint, &TAction::OnHint);
  c.Property("OnUpdate", &TAction::OnUpdate, &TAction::OnUpdate);
}

// ---- TCustomActionList

LUMORA_CLASS_IMPL(TCustomActionList) {}

TCustomActionList::TCustomActionList(TComponent* owner) : TComponent(owner) { Lists().push_back(this); }

TCustomActionList::~TCustomActionList() {
  Lists().erase(std::remove(Lists().begin(), Lists().end(), this), Lists().end());
  for (TContainedAction* a : FActions) a->FActionList = nullptr;
}

TContainedAction* TCustomActionList::Actions(int index) const {
  if (index < 0 || index >= ActionCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return FActions[index];
}

void TCustomActionList::AddAction(TContainedAction* action) {
  if (!action || action->FActionList == this) return;
  if (action->FActionList) action->FActionList->RemoveAction(action);
  FActions.push_back(action);
  action->FActionList = this;
  action->FreeNotification(this);
  if (OnChange) OnChange(this);
}

void TCustomActionList::RemoveAction(TContainedAction* action) {
  auto it = std::find(FActions.begin(), FActions.end(), action);
  if (it == FActions.end()) return;
  FActions.erase(it);
  action->FActionList = nullptr;
  if (OnChange && !ComponentState().Contains(csDestroying)) OnChange(this);
}

void TCustomActionList::SetImages(TCustomImageList* value) {
  FImages = value;
  if (value) value->FreeNotification(this);
}

void TCustomActionList::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FImages) FImages = nullptr;
  if (auto* a = dynamic_cast<TContainedAction*>(component)) RemoveAction(a);
}

bool TCustomActionList::IsShortCut(TShortCut shortCut) {
  if (shortCut == scNone) return false;
  for (TContainedAction* a : FActions) {
    auto* ca = dynamic_cast<TCustomAction*>(a);
    if (!ca || ca->ShortCut() != shortCut) continue;
    ca->Update();
    if (!ca->Enabled()) return false;
    ca->Execute();
    return true;
  }
  return false;
}

void TCustomActionList::UpdateActions() {
  const auto actions = FActions;
  for (TContainedAction* a : actions) a->Update();
}

void TCustomActionList::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TContainedAction* a : FActions) {
    if (a->Owner() == root) proc(a);
  }
}

void TCustomActionList::SetChildOrder(TComponent* child, int order) {
  if (auto* a = dynamic_cast<TContainedAction*>(child); a && a->ActionList() == this) a->SetIndex(order);
}

LUMORA_CLASS_IMPL(TActionList) {
  c.Property("Images", &TActionList::Images, &TActionList::SetImages);
  c.Property("OnChange", &TActionList::OnChange, &TActionList::OnChange);
  c.Property("OnExecute", &TActionList::OnExecute, &TActionList::OnExecute);
  c.Property("OnUpdate", &TActionList::OnUpdate, &TActionList::OnUpdate);
}
