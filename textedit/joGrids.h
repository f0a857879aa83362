#pragma once
// A string grid with an explicit commit of each edited cell: while the user types, the
// cell keeps its old text and OnChanging is raised; Enter, or moving to another cell,
// commits the edit through OnChangeCell, whose handler may change the value the cell
// receives. Escape gives the editor back the text it started with.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Grids.h"

#include <string>

// (Sender, Col, Row, NewValue): an edited cell is committed; NewValue may be changed.
LUMORA_EVENT(TChangeCell, void(TObject* Sender, int Col, int Row, std::string& NewValue))

// The in-place editor of TjoStringGrid: it remembers the text it took from the grid.
class TjoInplaceEdit : public TInplaceEdit {
  LUMORA_CLASS(TjoInplaceEdit, TInplaceEdit)
public:
  explicit TjoInplaceEdit(TComponent* AOwner) : TInplaceEdit(AOwner) {}
  // Takes the cell's text, and remembers it.
  void UpdateContents() override;
  // The text as it was when the editor took it from the grid.
  const std::string& SavedText() const { return FSavedText; }
  // Puts that text back.
  void RestoreContents();
  // Whether the text differs from it.
  bool TextChanged() const { return Text() != FSavedText; }

private:
  std::string FSavedText;
};

class TjoStringGrid : public TStringGrid {
  LUMORA_CLASS(TjoStringGrid, TStringGrid)
public:
  explicit TjoStringGrid(TComponent* AOwner) : TStringGrid(AOwner) {}

  // Raised each time the in-place editor hands its text to the grid while the user types;
  // the cell still holds its old text.
  TNotifyEvent OnChanging;
  // Raised when an edited cell is committed.
  TChangeCell OnChangeCell;

  virtual void DoChanging();
  virtual void DoChangeCell(int ACol, int ARow, std::string& NewValue);
  // Commits the in-place editor's text when it shows and differs from what it started with.
  void CommitEdit();

  TInplaceEdit* CreateEditor() override;
  // The editor's text never goes into the cell before it is committed.
  void SetEditText(int ACol, int ARow, const std::string& Value) override;
  bool SelectCell(int ACol, int ARow) override;
  void KeyDown(Word& Key, TShiftState Shift) override;
};

void RegisterGridClasses();
