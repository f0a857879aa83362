#include "textedit/StrN_Edit.h"

#include "foundation/joLayout.h"
#include "platform/rtti/ClassBuilder.h"

#include <QMenuBar>

namespace {
TFrm_StrN_Edit* GInstance = nullptr;
}

LUMORA_CLASS_IMPL(TFrm_StrN_Edit) {
  c.Field("Panel1", &TFrm_StrN_Edit::Panel1);
  c.Field("Panel2", &TFrm_StrN_Edit::Panel2);
  c.Field("BtnOk", &TFrm_StrN_Edit::BtnOk);
  c.Field("BtnCancel", &TFrm_StrN_Edit::BtnCancel);
  c.Field("Panel3", &TFrm_StrN_Edit::Panel3);
  c.Field("Panel4", &TFrm_StrN_Edit::Panel4);
  c.Field("Panel5", &TFrm_StrN_Edit::Panel5);
  c.Field("Grid_", &TFrm_StrN_Edit::Grid_);
  c.Field("Grid", &TFrm_StrN_Edit::Grid);
  c.Method<&TFrm_StrN_Edit::FormCreate>("FormCreate");
  c.Method<&TFrm_StrN_Edit::FormResize>("FormResize");
  c.Method<&TFrm_StrN_Edit::Grid_SelectCell>("Grid_SelectCell");
  c.Method<&TFrm_StrN_Edit::GridChangeCell>("GridChangeCell");
}

TFrm_StrN_Edit::TFrm_StrN_Edit(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  DoCreate();
}

TFrm_StrN_Edit* TFrm_StrN_Edit::Instance() { return GInstance; }

void TFrm_StrN_Edit::FormCreate(TObject*) {
  Grid = new TjoStringGrid(this);
  Grid->SetName("Grid");
  Grid->SetParent(this);
  Grid->SetOptions(TGridOptions{goFixedVertLine, goFixedHorzLine, goHorzLine, goDrawFocusSelected, goThumbTracking});
  Grid->SetDefaultRowHeight(18);
  Grid->Font()->SetName("System");
  Grid->SetFixedCols(0);
  Grid->SetFixedRows(0);
  Grid->SetAlign(alClient);
  Grid->SetColCount(1);
  Grid->SetTabOrder(0);
  Grid->SetScrollBars(ssBoth);
  Grid->OnSelectCell = MakeMethod<&TFrm_StrN_Edit::Grid_SelectCell>(this);
  Grid->OnChangeCell = MakeMethod<&TFrm_StrN_Edit::GridChangeCell>(this);
  // The form has its size already: the column fills the grid from the start.
  FormResize(this);
}

void TFrm_StrN_Edit::FormResize(TObject*) {
  // The single column always fills the grid.
  if (Grid) Grid->SetDefaultColWidth(Grid->Width() - 4);
}

void TFrm_StrN_Edit::Grid_SelectCell(TObject*, long, long ARow, bool&) {
  if (OnRowSelect) OnRowSelect(this, static_cast<int>(ARow));
}

void TFrm_StrN_Edit::GridChangeCell(TObject*, int, int ARow, std::string& NewValue) {
  BtnOk->SetEnabled(true);
  if (OnStringChange) OnStringChange(this, ARow, NewValue);
}

void TFrm_StrN_Edit::Assign(TPersistent* Source) {
  if (auto* List = dynamic_cast<TStrings*>(Source)) {
    Grid->SetRowCount(List->Count());
    for (int I = 0; I < List->Count(); ++I) {
      Grid->SetCells(0, I, List->Strings(I));
      Grid->SetObjects(0, I, List->Objects(I));
    }
    return;
  }
  TForm::Assign(Source);
}

bool TFrm_StrN_Edit::Execute(const std::string& Title, TStrings* List, const TStrNStringChange& OnStringChange,
                             const TStrNRowSelect& OnRowSelect) {
  if (!GInstance) GInstance = new TFrm_StrN_Edit(Application);
  TFrm_StrN_Edit* Dialog = GInstance;
  bool Result = false;
  try {
    Dialog->Assign(List);
    Dialog->SetCaption(Title);
    Dialog->Grid->SetRow(0);
    if (OnRowSelect) OnRowSelect(Dialog, 0);
    Dialog->OnRowSelect = OnRowSelect;
    Dialog->BtnOk->SetEnabled(false);
    Dialog->OnStringChange = OnStringChange;
    TGridOptions Options = Dialog->Grid->Options();
    if (OnStringChange) {
      Options += goEditing;
    } else {
      Options -= goEditing;
    }
    Dialog->Grid->SetOptions(Options);
    Result = Dialog->ShowModal() == mrOk;
  } catch (...) {
    GInstance = nullptr;
    Dialog->Release();
    throw;
  }
  GInstance = nullptr;
  Dialog->Release();
  return Result;
}
