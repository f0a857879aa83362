#include "textedit/joGrids.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/vcl/Keys.h"

LUMORA_CLASS_IMPL(TjoInplaceEdit) {}

void TjoInplaceEdit::UpdateContents() {
  TInplaceEdit::UpdateContents();
  FSavedText = Text();
}

void TjoInplaceEdit::RestoreContents() { SetText(FSavedText); }

LUMORA_CLASS_IMPL(TjoStringGrid) {
  c.Property("OnChanging", &TjoStringGrid::OnChanging, &TjoStringGrid::OnChanging);
  c.Property("OnChangeCell", &TjoStringGrid::OnChangeCell, &TjoStringGrid::OnChangeCell);
}

void TjoStringGrid::DoChanging() {
  if (OnChanging) OnChanging(this);
}

void TjoStringGrid::DoChangeCell(int ACol, int ARow, std::string& NewValue) {
  if (OnChangeCell) OnChangeCell(this, ACol, ARow, NewValue);
}

TInplaceEdit* TjoStringGrid::CreateEditor() { return new TjoInplaceEdit(this); }

void TjoStringGrid::SetEditText(int, int, const std::string&) { DoChanging(); }

void TjoStringGrid::CommitEdit() {
  auto* Editor = dynamic_cast<TjoInplaceEdit*>(InplaceEditor());
  if (!Editor || !Editor->Visible() || !Editor->TextChanged()) return;
  std::string NewValue = Editor->Text();
  DoChangeCell(Col(), Row(), NewValue);
  if (Cells(Col(), Row()) != NewValue) SetCells(Col(), Row(), NewValue);
}

bool TjoStringGrid::SelectCell(int ACol, int ARow) {
  // Before the current cell moves on.
  CommitEdit();
  return TStringGrid::SelectCell(ACol, ARow);
}

void TjoStringGrid::KeyDown(Word& Key, TShiftState Shift) {
  if (Key == VK_RETURN) CommitEdit();
  if (Key == VK_ESCAPE) {
    auto* Editor = dynamic_cast<TjoInplaceEdit*>(InplaceEditor());
    // Only while a cell is edited: otherwise Escape is the dialog's to take.
    if (Editor && Editor->Visible()) {
      Editor->RestoreContents();
      if (!Options().Contains(goAlwaysShowEditor)) HideEditor();
      Key = 0;
      return;
    }
  }
  TStringGrid::KeyDown(Key, Shift);
}

void RegisterGridClasses() { RegisterClasses({TjoInplaceEdit::StaticClass(), TjoStringGrid::StaticClass()}); }
