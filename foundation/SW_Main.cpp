#include "foundation/SW_Main.h"

#include "foundation/FrmAbout.h"
#include "platform/streaming/SysUtils.h"
#include "resources/ResStrings.h"

LUMORA_CLASS_IMPL(TSW_MainForm) {
  c.Field("MainMenu", &TSW_MainForm::MainMenu);
  c.Field("bmi_File", &TSW_MainForm::bmi_File);
  c.Field("mi_FileDlmN", &TSW_MainForm::mi_FileDlmN);
  c.Field("mi_FileExit", &TSW_MainForm::mi_FileExit);
  c.Field("bmi_Help", &TSW_MainForm::bmi_Help);
  c.Field("mi_HelpHelp", &TSW_MainForm::mi_HelpHelp);
  c.Field("mi_HelpDlmN", &TSW_MainForm::mi_HelpDlmN);
  c.Field("mi_HelpAbout", &TSW_MainForm::mi_HelpAbout);
  c.Method<&TSW_MainForm::FormCreate>("FormCreate");
  c.Method<&TSW_MainForm::FormDestroy>("FormDestroy");
  c.Method<&TSW_MainForm::mi_FileExitClick>("mi_FileExitClick");
  c.Method<&TSW_MainForm::mi_HelpHelpClick>("mi_HelpHelpClick");
  c.Method<&TSW_MainForm::mi_HelpShowAboutBox>("mi_HelpShowAboutBox");
}

void ShowNoHelpMessage() {
  Application->MessageBox(std::string(ResStr::SNoHelpSystem), Application->Title(), MB_OK | MB_ICONINFORMATION);
}

TSW_MainForm::TSW_MainForm(TComponent* AOwner, TDerived) : TCustomMainForm(AOwner) {}

TSW_MainForm::TSW_MainForm(TComponent* AOwner) : TCustomMainForm(AOwner) {
  CreateMainForm();
}

TSW_MainForm::~TSW_MainForm() {
  DestroyMainForm();
  delete IniFile;
  IniFile = nullptr;
}

void TSW_MainForm::LoadFormSettings(TjoIniFile* Ini) {
  Ini->LoadProperties(Name(), "", this);
  // A position read from the settings is where the user left the window: it is not
  // centred over again when it is shown.
  TStringList keys;
  if (Ini->ReadSectionNames(Name(), &keys) && (keys.IndexOf("Left") >= 0 || keys.IndexOf("Top") >= 0))
    SetPosition(poDesigned);
}

void TSW_MainForm::FormCreate(TObject*) {
  delete IniFile;
  IniFile = new TjoIniFile("");
  LoadFormSettings(IniFile);
}

void TSW_MainForm::FormDestroy(TObject*) {
  delete IniFile;
  IniFile = nullptr;
}

void TSW_MainForm::mi_FileExitClick(TObject*) {
  Close();
}

void TSW_MainForm::mi_HelpHelpClick(TObject*) {
  ShowNoHelpMessage();
}

void TSW_MainForm::mi_HelpShowAboutBox(TObject*) {
  ShowAbout();
}
