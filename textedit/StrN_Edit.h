#pragma once
// The strings editor: a modal dialog listing strings one per row in a single-column grid,
// editable in place, that reports each selected row and each committed change to its
// caller. Its layout is resources/TFrm_StrN_Edit.dfm.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Grids.h"
#include "platform/vcl/StdCtrls.h"
#include "textedit/joGrids.h"

#include <string>

// (Sender, Row): a row was selected.
LUMORA_EVENT(TStrNRowSelect, void(TObject* Sender, int Row))
// (Sender, Row, NewValue): the string of a row was changed.
LUMORA_EVENT(TStrNStringChange, void(TObject* Sender, int Row, const std::string& NewValue))

class TFrm_StrN_Edit : public TForm {
  LUMORA_CLASS(TFrm_StrN_Edit, TForm)
public:
  explicit TFrm_StrN_Edit(TComponent* AOwner);

  // Shows List (strings with their objects) under Title; true when the user confirmed.
  // Without OnStringChange the list cannot be edited; OnRowSelect hears of row 0 at once.
  // Each call makes a dialog of its own and releases it afterwards.
  static bool Execute(const std::string& Title, TStrings* List, const TStrNStringChange& OnStringChange,
                      const TStrNRowSelect& OnRowSelect);
  // The dialog Execute is showing, or none.
  static TFrm_StrN_Edit* Instance();

  // From a string list: one row per string, the string's object as the cell's object.
  void Assign(TPersistent* Source) override;

  // ---- The layout
  TPanel* Panel1 = nullptr;
  TPanel* Panel2 = nullptr;
  TButton* BtnOk = nullptr;
  TButton* BtnCancel = nullptr;
  TPanel* Panel3 = nullptr;
  TPanel* Panel4 = nullptr;
  TPanel* Panel5 = nullptr;
  // The design of the list, kept hidden; the working grid is Grid.
  TStringGrid* Grid_ = nullptr;
  TjoStringGrid* Grid = nullptr;

  TStrNRowSelect OnRowSelect;
  TStrNStringChange OnStringChange;

  // ---- Handlers
  void FormCreate(TObject* Sender);
  void FormResize(TObject* Sender);
  void Grid_SelectCell(TObject* Sender, long ACol, long ARow, bool& CanSelect);
  void GridChangeCell(TObject* Sender, int ACol, int ARow, std::string& NewValue);
};
