#pragma once
// The About box: the program's icon, name and version as its version data gives them,
// the maker's line and the feedback address, which opens the user's mail program.

#include "foundation/Frm_utl.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/StdCtrls.h"

class TAboutBox : public TInformationForm {
  LUMORA_CLASS(TAboutBox, TInformationForm)
public:
  explicit TAboutBox(TComponent* AOwner);

  TPanel* Panel1 = nullptr;
  TImage* ProgramIcon = nullptr;
  TLabel* ProgramName = nullptr;
  TLabel* Label1 = nullptr;      // "Version"
  TLabel* lblVersion = nullptr;
  TLabel* lblMaker = nullptr;
  TLabel* Label10 = nullptr;     // "Please address all feedback to "
  TLabel* Label11 = nullptr;     // the address
  TButton* OKButton = nullptr;

  void FormCreate(TObject* Sender);
  void Label11Click(TObject* Sender);
  void OKButtonClick(TObject* Sender);
  void URLClick(TObject* Sender);
};

// Opens a new About box (each call makes another), which frees itself when closed.
TAboutBox* ShowAbout();
