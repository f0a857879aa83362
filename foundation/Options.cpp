#include "foundation/Options.h"

#include "foundation/joLayout.h"
#include "resources/ResStrings.h"

#include <algorithm>

namespace {

TjoPackagesPageFactory& PackagesPageFactory() {
  static TjoPackagesPageFactory factory;
  return factory;
}

TFrm_Options* gOptions = nullptr;

TObject* AsObject(int code) { return reinterpret_cast<TObject*>(static_cast<std::intptr_t>(code)); }
int AsCode(TObject* object) { return static_cast<int>(reinterpret_cast<std::intptr_t>(object)); }

// The first control in tab order under Parent that takes the focus when shown.
TWinControl* FirstTabStop(TWinControl* Parent) {
  for (TWinControl* c : Parent->TabList()) {
    if (!c->Visible() || !c->Enabled()) continue;
    if (c->TabStop()) return c;
    if (TWinControl* inner = FirstTabStop(c)) return inner;
  }
  return nullptr;
}

// The lowest and highest key codes offered as hot keys.
constexpr int kFirstHotKey = 8;
constexpr int kLastHotKey = 123;

}  // namespace

void SetPackagesPageFactory(TjoPackagesPageFactory Factory) {
  PackagesPageFactory() = std::move(Factory);
}

LUMORA_CLASS_IMPL(TFrm_Options) {
  c.Field("PageControl", &TFrm_Options::PageControl);
  c.Field("ts_General", &TFrm_Options::ts_General);
  c.Field("ts_FormStyle", &TFrm_Options::ts_FormStyle);
  c.Field("ts_Packages", &TFrm_Options::ts_Packages);
  c.Field("Bevel1", &TFrm_Options::Bevel1);
  c.Field("cb_Top", &TFrm_Options::cb_Top);
  c.Field("cb_AsForm", &TFrm_Options::cb_AsForm);
  c.Field("cb_ReadOnly", &TFrm_Options::cb_ReadOnly);
  c.Field("cb_Only1VF", &TFrm_Options::cb_Only1VF);
  c.Field("cb_RemLWP", &TFrm_Options::cb_RemLWP);
  c.Field("rg_FormStyle", &TFrm_Options::rg_FormStyle);
  c.Field("gb_HotKeys", &TFrm_Options::gb_HotKeys);
  c.Field("lbl_HC_Type", &TFrm_Options::lbl_HC_Type);
  c.Field("cb_HC_Type", &TFrm_Options::cb_HC_Type);
  c.Field("lbl_HotKeys", &TFrm_Options::lbl_HotKeys);
  c.Field("cb_HotKeys", &TFrm_Options::cb_HotKeys);
  c.Field("btn_OK", &TFrm_Options::btn_OK);
  c.Field("btn_Cancel", &TFrm_Options::btn_Cancel);
  c.Method<&TFrm_Options::FormShow>("FormShow");
  c.Method<&TFrm_Options::PageControlChange>("PageControlChange");
  c.Method<&TFrm_Options::SettingChange>("SettingChange");
  c.Method<&TFrm_Options::cb_HotKeysChange>("cb_HotKeysChange");
  c.Method<&TFrm_Options::cb_HC_TypeChange>("cb_HC_TypeChange");
}

TFrm_Options::TFrm_Options(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  FillHotKeys();
  DoCreate();
}

TFrm_Options::~TFrm_Options() {
  if (gOptions == this) gOptions = nullptr;
}

TFrm_Options* OptionsDialog() { return gOptions; }

void TFrm_Options::FillHotKeys() {
  TStrings* items = cb_HotKeys->Items();
  items->BeginUpdate();
  items->Clear();
  items->AddObject(std::string(ResStr::SHotKeyNone), AsObject(0));
  for (int key = kFirstHotKey; key <= kLastHotKey; ++key) {
    const std::string text = ShortCutToText(static_cast<TShortCut>(key));
    if (!text.empty()) items->AddObject(text, AsObject(key));
  }
  items->EndUpdate();
}

void TFrm_Options::SetModified(bool Value) {
  FModified = Value;
  btn_OK->SetEnabled(Value);
}

bool TFrm_Options::Execute(int Page, IjoOptionsHost* Host) {
  if (!Host) return false;
  const TjoOptionValues values = Host->GetOptionValues();
  cb_Top->SetChecked(values.StayOnTop);
  cb_AsForm->SetChecked(values.ViewAsForm);
  cb_ReadOnly->SetChecked(values.ReadOnly);
  cb_Only1VF->SetChecked(values.Only1VF);
  rg_FormStyle->SetItemIndex(values.VV_Style);
  cb_HC_Type->Items()->SetObjects(0, AsObject(values.KeyClose));
  cb_HC_Type->Items()->SetObjects(1, AsObject(values.KeyToggle));
  cb_HC_Type->Items()->SetObjects(2, AsObject(values.KeyOI));
  cb_HC_Type->SetItemIndex(0);
  SetModified(false);

  const int page = std::clamp(Page == 0 ? 1 : Page, 1, PageControl->PageCount());
  PageControl->SetActivePageIndex(page - 1);
  PageControlChange(PageControl);
  cb_HC_TypeChange(cb_HC_Type);
  ShowModal();

  // Whatever closed the dialog, a change is applied.
  if (FModified) {
    TjoOptionValues edited = values;
    edited.StayOnTop = cb_Top->Checked();
    edited.ViewAsForm = cb_AsForm->Checked();
    edited.Only1VF = cb_Only1VF->Checked();
    edited.ReadOnly = cb_ReadOnly->Checked();
    if (rg_FormStyle->ItemIndex() >= 0) edited.VV_Style = static_cast<std::uint8_t>(rg_FormStyle->ItemIndex());
    edited.KeyClose = static_cast<TShortCut>(AsCode(cb_HC_Type->Items()->Objects(0)));
    edited.KeyToggle = static_cast<TShortCut>(AsCode(cb_HC_Type->Items()->Objects(1)));
    edited.KeyOI = static_cast<TShortCut>(AsCode(cb_HC_Type->Items()->Objects(2)));
    Host->ApplyOptionValues(edited);
  }
  return FModified;
}

void TFrm_Options::FormShow(TObject*) {}

void TFrm_Options::SettingChange(TObject*) {
  SetModified(true);
}

void TFrm_Options::cb_HC_TypeChange(TObject*) {
  const int action = cb_HC_Type->ItemIndex();
  const int code = action >= 0 ? AsCode(cb_HC_Type->Items()->Objects(action)) : 0;
  const int line = cb_HotKeys->Items()->IndexOfObject(AsObject(code));
  cb_HotKeys->SetItemIndex(line >= 0 ? line : 0);
}

void TFrm_Options::cb_HotKeysChange(TObject* Sender) {
  SettingChange(Sender);
  const int action = cb_HC_Type->ItemIndex();
  const int line = cb_HotKeys->ItemIndex();
  if (action < 0 || line < 0) return;
  cb_HC_Type->Items()->SetObjects(action, cb_HotKeys->Items()->Objects(line));
}

void TFrm_Options::PageControlChange(TObject*) {
  if (PageControl->ActivePage() != ts_Packages) return;
  if (!FPackagesPage && PackagesPageFactory()) {
    FPackagesPage = PackagesPageFactory()(this, [this] { SettingChange(this); });
    if (FPackagesPage) {
      FPackagesPage->SetParent(ts_Packages);
      // Visible first: only visible controls are aligned.
      FPackagesPage->SetVisible(true);
      FPackagesPage->SetAlign(alClient);
    }
  }
  // The focus goes to the page's first control, now or, before the dialog shows, when it does.
  if (FPackagesPage && FPackagesPage->Visible()) {
    if (TWinControl* first = FirstTabStop(FPackagesPage)) SetActiveControl(first);
  }
}

bool ShowOptions(int Page, IjoOptionsHost* Host) {
  if (!Host) Host = dynamic_cast<IjoOptionsHost*>(Application->MainForm());
  if (!Host) return false;
  if (!gOptions) gOptions = new TFrm_Options(Application);
  return gOptions->Execute(Page, Host);
}
