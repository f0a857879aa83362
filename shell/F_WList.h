#pragma once
// The window list dialog: the main window and every visible live form, one line each;
// the chosen line's window comes to the front.

#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"

class TFrm_WindowList : public TForm {
  LUMORA_CLASS(TFrm_WindowList, TForm)
public:
  explicit TFrm_WindowList(TComponent* AOwner);

  TListBox* LB_List = nullptr;
  TButton* BtnOk = nullptr;
  TButton* BtnCancel = nullptr;

  // A double click on a line chooses it; below the last line it does nothing.
  void LB_ListDblClick(TObject* Sender);
};

// Shows the dialog with Items (copied) and the line Selected preselected (the first when
// Selected is out of range); the chosen line's index, or -1 when cancelled.
int ShowWindowListDialog(const std::string& Caption, TStrings* Items, int Selected);
// The dialog while it is shown, else none.
TFrm_WindowList* WindowListDialog();
