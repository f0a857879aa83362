#pragma once
// The packages dialog: the design packages of the loader, each ticked when loaded, in
// order of description. Ticking loads a package (and those it requires), unticking
// unloads it (and, after a question, those that require it); "Add ..." adds a package
// file and loads it; "Remove" takes a package out of the list. A window of its own (Esc
// and Enter close it), or placed inside another window when that window owns it (then
// it has no border; the owner parents and places it).

#include "platform/vcl/CheckLst.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"

#include <cstdint>

// Posted to the dialog when it is shown: the list is filled once the window shows.
constexpr std::uint32_t WM_PACKCFG_REFILL = 10613;

class TFrm_PackCfg : public TForm {
  LUMORA_CLASS(TFrm_PackCfg, TForm)
public:
  explicit TFrm_PackCfg(TComponent* AOwner);

  // Rebuilds the list from the loader (reading the package list first if need be).
  void Refill();

  // Raised after every change the user made to the packages (the options dialog enables
  // its OK button).
  TNotifyEvent OnChange;

  TGroupBox* GroupBox1 = nullptr;
  TPanel* Pan_Left = nullptr;
  TPanel* Pan_Right = nullptr;
  TPanel* Pan_Center = nullptr;
  TPanel* Pan_Loading = nullptr;
  TCheckListBox* CheckListBox = nullptr;
  TEdit* DPL_Name = nullptr;
  TPanel* Panel1 = nullptr;
  TPanel* Panel2 = nullptr;
  TButton* BtnPackAdd = nullptr;
  TButton* BtnPackDel = nullptr;
  TButton* BtnComponents = nullptr;
  TOpenDialog* OpenDialog = nullptr;

  void FormCreate(TObject* Sender);
  void FormShow(TObject* Sender);
  void FormKeyDown(TObject* Sender, Word& Key, TShiftState Shift);
  void CheckListBoxClick(TObject* Sender);
  void CheckListBoxClickCheck(TObject* Sender);
  void BtnPackAddClick(TObject* Sender);
  void BtnPackDelClick(TObject* Sender);

  void Dispatch(TMessage& message) override;

private:
  // The loader index of the selected entry, or -1.
  int SelectedPackage() const;
  void Changed();
};
