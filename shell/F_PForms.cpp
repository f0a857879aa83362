#include "shell/F_PForms.h"

#include "foundation/joLayout.h"
#include "platform/streaming/SysUtils.h"
#include "resources/ResStrings.h"

#include <QCursor>
#include <QTreeWidget>

#include <deque>
#include <filesystem>

namespace {

TFrm_ProgramForms* gShown = nullptr;

std::deque<std::string>& NextNames() {
  static std::deque<std::string> names;
  return names;
}

std::function<int(const std::string&, const std::vector<TProgramForm>&)>& Hook() {
  static std::function<int(const std::string&, const std::vector<TProgramForm>&)> hook;
  return hook;
}

int ShowDialog(const std::string& ProgramName, const std::vector<TProgramForm>& Forms) {
  auto* dialog = new TFrm_ProgramForms(Application);
  dialog->SetCaption(Format(ResStr::SProgramFormsCaption, std::filesystem::path(ProgramName).filename().string()));
  TListItems* items = dialog->LV_Forms->Items();
  for (const TProgramForm& form : Forms) {
    TListItem* item = items->Add();
    item->SetCaption(form.Resource);
    item->SubItems()->Add(form.Problem.empty() ? form.ClassName : form.Problem);
  }
  if (items->Count() > 0) dialog->LV_Forms->SetSelected(items->Item(0));
  int result = -1;
  gShown = dialog;
  try {
    if (dialog->ShowModal() == mrOk && dialog->LV_Forms->Selected()) result = dialog->LV_Forms->Selected()->Index();
  } catch (...) {
    gShown = nullptr;
    dialog->Release();
    throw;
  }
  gShown = nullptr;
  dialog->Release();
  return result;
}

}  // namespace

LUMORA_CLASS_IMPL(TFrm_ProgramForms) {
  c.Field("Lbl_Forms", &TFrm_ProgramForms::Lbl_Forms);
  c.Field("LV_Forms", &TFrm_ProgramForms::LV_Forms);
  c.Field("BtnOk", &TFrm_ProgramForms::BtnOk);
  c.Field("BtnCancel", &TFrm_ProgramForms::BtnCancel);
  c.Method<&TFrm_ProgramForms::LV_FormsDblClick>("LV_FormsDblClick");
}

TFrm_ProgramForms::TFrm_ProgramForms(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  DoCreate();
}

void TFrm_ProgramForms::LV_FormsDblClick(TObject*) {
  QTreeWidget* list = LV_Forms->ListWidget();
  if (!list) return;
  const QPoint at = list->viewport()->mapFromGlobal(QCursor::pos());
  // Below the last line nothing is chosen.
  TListItem* item = LV_Forms->GetItemAt(at.x(), at.y());
  if (!item) return;
  LV_Forms->SetSelected(item);
  SetModalResult(mrOk);
}

TFrm_ProgramForms* ProgramFormsDialog() { return gShown; }

void PushNextProgramForm(const std::string& ResourceName) { NextNames().push_back(ResourceName); }
void ClearNextProgramForms() { NextNames().clear(); }

void SetProgramFormHook(std::function<int(const std::string&, const std::vector<TProgramForm>&)> Hook_) {
  Hook() = std::move(Hook_);
}

int ChooseProgramForm(const std::string& ProgramName, const std::vector<TProgramForm>& Forms) {
  if (!NextNames().empty()) {
    const std::string name = NextNames().front();
    NextNames().pop_front();
    for (std::size_t i = 0; i < Forms.size(); ++i)
      if (!name.empty() && SameText(Forms[i].Resource, name)) return static_cast<int>(i);
    return -1;
  }
  if (Hook()) return Hook()(ProgramName, Forms);
  return ShowDialog(ProgramName, Forms);
}
