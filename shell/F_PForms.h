#pragma once
// The forms of a program, one line each (resource name and root class): the user picks
// the one to open when a program holds several.

#include "platform/streaming/FormFile.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"

#include <functional>
#include <string>
#include <vector>

class TFrm_ProgramForms : public TForm {
  LUMORA_CLASS(TFrm_ProgramForms, TForm)
public:
  explicit TFrm_ProgramForms(TComponent* AOwner);

  TLabel* Lbl_Forms = nullptr;
  TListView* LV_Forms = nullptr;
  TButton* BtnOk = nullptr;
  TButton* BtnCancel = nullptr;

  // A double click on a line opens its form.
  void LV_FormsDblClick(TObject* Sender);
};

// Asks which form of the program `ProgramName` to open: the index into Forms, or -1
// when the user cancelled. A name queued by PushNextProgramForm answers first, then the
// hook, and only then does the dialog appear.
int ChooseProgramForm(const std::string& ProgramName, const std::vector<TProgramForm>& Forms);
// The resource name the next question answers with, compared without regard to case;
// "" (or a name not in the list) cancels it.
void PushNextProgramForm(const std::string& ResourceName);
// Forgets the names still queued.
void ClearNextProgramForms();
// Answers every question that finds no queued name: the index, or -1 to cancel. An
// empty hook removes it.
void SetProgramFormHook(std::function<int(const std::string& ProgramName, const std::vector<TProgramForm>& Forms)> Hook);
// The dialog while it is shown, else none.
TFrm_ProgramForms* ProgramFormsDialog();
