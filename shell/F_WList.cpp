#include "shell/F_WList.h"

#include "foundation/joLayout.h"

#include <QCursor>

namespace {
TFrm_WindowList* gShown = nullptr;
}

LUMORA_CLASS_IMPL(TFrm_WindowList) {
  c.Field("LB_List", &TFrm_WindowList::LB_List);
  c.Field("BtnOk", &TFrm_WindowList::BtnOk);
  c.Field("BtnCancel", &TFrm_WindowList::BtnCancel);
  c.Method<&TFrm_WindowList::LB_ListDblClick>("LB_ListDblClick");
}

TFrm_WindowList::TFrm_WindowList(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  DoCreate();
}

void TFrm_WindowList::LB_ListDblClick(TObject*) {
  const QPoint global = QCursor::pos();
  const TPoint at = LB_List->ScreenToClient(Point(global.x(), global.y()));
  const int index = LB_List->ItemAtPos(at, true);
  if (index < 0) return;
  LB_List->SetItemIndex(index);
  SetModalResult(mrOk);
}

TFrm_WindowList* WindowListDialog() { return gShown; }

int ShowWindowListDialog(const std::string& Caption, TStrings* Items, int Selected) {
  auto* dialog = new TFrm_WindowList(Application);
  dialog->SetCaption(Caption);
  dialog->LB_List->Items()->Assign(Items);
  const int count = dialog->LB_List->Items()->Count();
  dialog->LB_List->SetItemIndex(Selected >= 0 && Selected < count ? Selected : 0);
  int result = -1;
  gShown = dialog;
  try {
    if (dialog->ShowModal() == mrOk) result = dialog->LB_List->ItemIndex();
  } catch (...) {
    gShown = nullptr;
    dialog->Release();
    throw;
  }
  gShown = nullptr;
  dialog->Release();
  return result;
}
