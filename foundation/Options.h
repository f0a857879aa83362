#pragma once
// The options dialog, "Lumora properties": the main window's general flags, the style of
// live forms, three hot keys, and on its last page the list of design packages. It edits
// the main window's settings through IjoOptionsHost and applies them when anything was
// changed, whichever button closed it.

#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/ShortCuts.h"
#include "platform/vcl/StdCtrls.h"

#include <functional>

// The settings the dialog edits.
struct TjoOptionValues {
  bool StayOnTop = false;
  bool ViewAsForm = true;
  bool ReadOnly = true;
  bool Only1VF = false;
  std::uint8_t VV_Style = 0;
  TShortCut KeyClose = scNone;
  TShortCut KeyToggle = scNone;
  TShortCut KeyOI = scNone;
};

// What owns the settings: the main window.
class IjoOptionsHost {
public:
  virtual ~IjoOptionsHost() = default;
  virtual TjoOptionValues GetOptionValues() = 0;
  // Stores edited values: stay-on-top, open-as-form, only one visible form, read-only,
  // form style and the three hot keys, in that order, each through its setter.
  virtual void ApplyOptionValues(const TjoOptionValues& Values) = 0;
};

// The packages page's contents come from a higher layer (the packages dialog): a form
// owned by Owner, which the options dialog places on its page; OnChange is to be called
// whenever the user changes the packages.
using TjoPackagesPageFactory = std::function<TCustomForm*(TComponent* Owner, std::function<void()> OnChange)>;
void SetPackagesPageFactory(TjoPackagesPageFactory Factory);

class TFrm_Options : public TForm {
  LUMORA_CLASS(TFrm_Options, TForm)
public:
  explicit TFrm_Options(TComponent* AOwner);
  ~TFrm_Options() override;

  TPageControl* PageControl = nullptr;
  TTabSheet* ts_General = nullptr;
  TTabSheet* ts_FormStyle = nullptr;
  TTabSheet* ts_Packages = nullptr;
  TBevel* Bevel1 = nullptr;
  TCheckBox* cb_Top = nullptr;
  TCheckBox* cb_AsForm = nullptr;
  TCheckBox* cb_ReadOnly = nullptr;
  TCheckBox* cb_Only1VF = nullptr;
  TCheckBox* cb_RemLWP = nullptr;
  TRadioGroup* rg_FormStyle = nullptr;
  TGroupBox* gb_HotKeys = nullptr;
  TLabel* lbl_HC_Type = nullptr;
  TComboBox* cb_HC_Type = nullptr;
  TLabel* lbl_HotKeys = nullptr;
  TComboBox* cb_HotKeys = nullptr;
  TButton* btn_OK = nullptr;
  TButton* btn_Cancel = nullptr;

  // True once the user changed anything in this showing; OK is enabled exactly then.
  bool Modified() const { return FModified; }
  // The packages page's contents, once it was first visited.
  TCustomForm* PackagesPage() const { return FPackagesPage; }

  // Shows the dialog on Page (1 General, 2 Form Style, 3 Packages; 0 is 1) and applies
  // what was changed to Host; returns Modified.
  bool Execute(int Page, IjoOptionsHost* Host);

  void FormShow(TObject* Sender);
  void PageControlChange(TObject* Sender);
  void SettingChange(TObject* Sender);
  void cb_HotKeysChange(TObject* Sender);
  void cb_HC_TypeChange(TObject* Sender);

private:
  void FillHotKeys();
  void SetModified(bool Value);
  bool FModified = false;
  TCustomForm* FPackagesPage = nullptr;
};

// The dialog of this run, made on first use (owned by the application), shown on Page for
// the main window (or Host when given); whether anything was changed.
bool ShowOptions(int Page, IjoOptionsHost* Host = nullptr);
// The dialog when it was made, else none.
TFrm_Options* OptionsDialog();
