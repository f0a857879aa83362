#include "platform/vcl/StdActns.h"

#include "platform/vcl/Application.h"
#include "platform/vcl/Forms.h"

#include <QLineEdit>

// ---- Edit actions

LUMORA_CLASS_IMPL(TEditAction) {}

void TEditAction::SetControl(TCustomEdit* value) {
  if (FControl) FControl->RemoveFreeNotification(this);
  FControl = value;
  if (value) value->FreeNotification(this);
}

void TEditAction::Notification(TComponent* component, TOperation operation) {
  TAction::Notification(component, operation);
  if (operation == opRemove && component == FControl) FControl = nullptr;
}

TCustomEdit* TEditAction::Target() const {
  if (FControl) return FControl;
  return dynamic_cast<TCustomEdit*>(Screen->ActiveControl());
}

bool TEditAction::Execute() {
  if (TAction::Execute()) return true;
  TCustomEdit* edit = Target();
  if (!edit) return false;
  ExecuteTarget(edit);
  return true;
}

bool TEditAction::Update() {
  if (TAction::Update()) return true;
  TCustomEdit* edit = Target();
  SetEnabled(edit && TargetEnabled(edit));
  return true;
}

namespace {
bool HasSelection(TCustomEdit* edit) { return edit->SelLength() > 0; }
}  // namespace

#define LUMORA_EDIT_ACTION_IMPL(Name, run, enabled)                                    \
  LUMORA_CLASS_IMPL(Name) {}                                                           \
  void Name::ExecuteTarget(TCustomEdit* edit) { run; }                                 \
  bool Name::TargetEnabled([[maybe_unused]] TCustomEdit* edit) const { return enabled; }

LUMORA_EDIT_ACTION_IMPL(TEditCut, edit->CutToClipboard(), HasSelection(edit) && !edit->ReadOnly())
LUMORA_EDIT_ACTION_IMPL(TEditCopy, edit->CopyToClipboard(), HasSelection(edit))
LUMORA_EDIT_ACTION_IMPL(TEditPaste, edit->PasteFromClipboard(), !edit->ReadOnly())
LUMORA_EDIT_ACTION_IMPL(TEditSelectAll, edit->SelectAll(), !edit->Text().empty())
LUMORA_EDIT_ACTION_IMPL(TEditUndo,
                        if (auto* line = qobject_cast<QLineEdit*>(edit->Handle())) line->undo(),
                        edit->Modified() && !edit->ReadOnly())
LUMORA_EDIT_ACTION_IMPL(TEditDelete, edit->ClearSelection(), HasSelection(edit) && !edit->ReadOnly())
#undef LUMORA_EDIT_ACTION_IMPL

// ---- Window actions

LUMORA_CLASS_IMPL(TWindowAction) {}

void TWindowAction::SetForm(TForm* value) {
  if (FForm) FForm->RemoveFreeNotification(this);
  FForm = value;
  if (value) value->FreeNotification(this);
}

void TWindowAction::Notification(TComponent* component, TOperation operation) {
  TAction::Notification(component, operation);
  if (operation == opRemove && component == FForm) FForm = nullptr;
}

bool TWindowAction::Update() {
  if (TAction::Update()) return true;
  SetEnabled(false);
  return true;
}

LUMORA_CLASS_IMPL(TWindowClose) {}
LUMORA_CLASS_IMPL(TWindowCascade) {}
LUMORA_CLASS_IMPL(TWindowTileHorizontal) {}
LUMORA_CLASS_IMPL(TWindowTileVertical) {}
LUMORA_CLASS_IMPL(TWindowMinimizeAll) {}
LUMORA_CLASS_IMPL(TWindowArrange) {}

// ---- Help actions

LUMORA_CLASS_IMPL(THelpAction) {}

bool THelpAction::Update() {
  if (TAction::Update()) return true;
  SetEnabled(!Application->HelpFile().empty());
  return true;
}

LUMORA_CLASS_IMPL(THelpContents) {}
LUMORA_CLASS_IMPL(THelpTopicSearch) {}
LUMORA_CLASS_IMPL(THelpOnHelp) {}
