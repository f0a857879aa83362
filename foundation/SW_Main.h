#pragma once
// The base of the program's main window: a settings store of its own, a File menu with
// Exit and a Help menu with Help Topics and About. The main window adds its commands to
// these menus in its own layout, which inherits this one.

#include "foundation/joIniFile.h"
#include "platform/vcl/Menus.h"
#include "shell/Frm_Main.h"

class TSW_MainForm : public TCustomMainForm {
  LUMORA_CLASS(TSW_MainForm, TCustomMainForm)
public:
  explicit TSW_MainForm(TComponent* AOwner);
  ~TSW_MainForm() override;

  // The form's settings store (the program's settings file), while the form lives.
  TjoIniFile* IniFile = nullptr;

  TMainMenu* MainMenu = nullptr;
  TMenuItem* bmi_File = nullptr;
  TMenuItem* mi_FileDlmN = nullptr;
  TMenuItem* mi_FileExit = nullptr;
  TMenuItem* bmi_Help = nullptr;
  TMenuItem* mi_HelpHelp = nullptr;
  TMenuItem* mi_HelpDlmN = nullptr;
  TMenuItem* mi_HelpAbout = nullptr;

  // Makes the settings store and restores the form's own published properties (Left,
  // Top, ...) from the section named after the form.
  void FormCreate(TObject* Sender);
  void FormDestroy(TObject* Sender);
  void mi_FileExitClick(TObject* Sender);
  void mi_HelpHelpClick(TObject* Sender);
  void mi_HelpShowAboutBox(TObject* Sender);

protected:
  // For derived main windows, whose own constructor reads the layouts.
  struct TDerived {};
  TSW_MainForm(TComponent* AOwner, TDerived);
  // Loads the form's section into its properties; a stored position wins over centring.
  void LoadFormSettings(TjoIniFile* Ini);
};

// "Sorry!!!\rHelp system in work...": there is no help system.
void ShowNoHelpMessage();
