#include "liveform/F_PackCfg.h"

#include "foundation/joLayout.h"
#include "liveform/PackConfig.h"
#include "platform/vcl/Keys.h"
#include "resources/ResStrings.h"

namespace {

// The hourglass while the loader works, the previous pointer back however it ends.
class THourGlass {
public:
  THourGlass() : FPrevious(Screen->Cursor()) { Screen->SetCursor(crHourGlass); }
  ~THourGlass() { Screen->SetCursor(FPrevious); }
  THourGlass(const THourGlass&) = delete;
  THourGlass& operator=(const THourGlass&) = delete;

private:
  TCursor FPrevious;
};

}  // namespace

TFrm_PackCfg::TFrm_PackCfg(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  DoCreate();
}

void TFrm_PackCfg::FormCreate(TObject*) {
  if (Owner() && Owner() != static_cast<TComponent*>(Application)) {
    // Placed inside another window, which parents and places it.
    SetBorderIcons(TBorderIcons());
    SetBorderStyle(bsNone);
    SetPosition(poDesigned);
  } else {
    SetKeyPreview(true);
    OnKeyDown = MakeMethod<&TFrm_PackCfg::FormKeyDown>(this);
  }
}

void TFrm_PackCfg::FormKeyDown(TObject*, Word& Key, TShiftState) {
  if (Key == VK_ESCAPE || Key == VK_RETURN) Close();
}

void TFrm_PackCfg::FormShow(TObject*) { PostMessage(this, WM_PACKCFG_REFILL); }

void TFrm_PackCfg::Dispatch(TMessage& message) {
  if (message.Msg == WM_PACKCFG_REFILL) {
    Refill();
    return;
  }
  TForm::Dispatch(message);
}

void TFrm_PackCfg::Refill() {
  const int topIndex = CheckListBox->TopIndex();
  int itemIndex = CheckListBox->ItemIndex();
  CheckListBox->SetVisible(false);
  {
    THourGlass hourGlass;
    Application->ProcessMessages();
    struct TShowAgain {
      TCheckListBox* List;
      ~TShowAgain() { List->SetVisible(true); }
    } showAgain{CheckListBox};
    EnsurePackagesLoaded();
    TjoPackageLoaderSR* loader = Loader();
    TStrings* items = CheckListBox->Items();
    items->BeginUpdate();
    try {
      items->Clear();
      for (int i = 0; i < loader->Count(); ++i) {
        const int at = items->AddObject(loader->Description(i), IndexToObject(i));
        CheckListBox->SetChecked(at, loader->IsLoaded(i));
      }
    } catch (...) {
      items->EndUpdate();
      throw;
    }
    items->EndUpdate();
  }
  const int count = CheckListBox->Items()->Count();
  if (itemIndex < 0) itemIndex = 0;
  if (itemIndex >= count) itemIndex = count - 1;
  CheckListBox->SetItemIndex(itemIndex);
  CheckListBox->SetTopIndex(topIndex < 0 ? 0 : topIndex);
  BtnPackDel->SetEnabled(count > 0);
  BtnComponents->SetEnabled(false);
  CheckListBoxClick(CheckListBox);
}

int TFrm_PackCfg::SelectedPackage() const {
  const int at = CheckListBox->ItemIndex();
  if (at < 0 || at >= CheckListBox->Items()->Count()) return -1;
  return ObjectToIndex(CheckListBox->Items()->Objects(at));
}

void TFrm_PackCfg::CheckListBoxClick(TObject*) {
  if (CheckListBox->ItemIndex() < 0 && CheckListBox->Items()->Count() > 0) CheckListBox->SetItemIndex(0);
  const int index = SelectedPackage();
  DPL_Name->SetText(" " + (index >= 0 && LoaderExists() ? Loader()->FileName(index) : std::string()));
}

void TFrm_PackCfg::CheckListBoxClickCheck(TObject*) {
  CheckListBoxClick(CheckListBox);
  const int at = CheckListBox->ItemIndex();
  const int index = SelectedPackage();
  if (at < 0 || index < 0) return;
  const bool load = CheckListBox->Checked(at);
  TjoPackageLoaderSR* loader = Loader();
  bool cancelled = false;
  if (!load) {
    TStringList dependants;
    if (loader->Dependants(index, &dependants) > 0) {
      std::string names;
      for (int i = 0; i < dependants.Count(); ++i) {
        if (i > 0) names += ", ";
        names += "\"" + dependants.Strings(i) + "\"";
      }
      cancelled = MessageDlg(Format(ResStr::SUninstallDependants, names, loader->FileName(index)), mtConfirmation,
                             MsgDlgButton(mbYes) | MsgDlgButton(mbNo)) != mrYes;
    }
  }
  if (cancelled) {
    CheckListBox->SetChecked(at, !load);
    return;
  }
  {
    THourGlass hourGlass;
    try {
      loader->SetLoaded(index, load);
    } catch (...) {
      // A Register procedure that failed: the list shows what is loaded now all the same.
      Refill();
      Changed();
      throw;
    }
    Refill();
  }
  Changed();
}

void TFrm_PackCfg::BtnPackAddClick(TObject*) {
  const std::string ext(ResStr::SPackageExt);
  OpenDialog->SetFilter(Format(ResStr::SPackageFilter, ext, ext));
  OpenDialog->SetDefaultExt(ext);
  if (!OpenDialog->Execute()) return;
  {
    THourGlass hourGlass;
    try {
      Loader()->Add(OpenDialog->FileName(), true);
    } catch (...) {
      Refill();
      Changed();
      throw;
    }
    Refill();
  }
  Changed();
}

void TFrm_PackCfg::BtnPackDelClick(TObject*) {
  const int index = SelectedPackage();
  if (index < 0) return;
  TjoPackageLoaderSR* loader = Loader();
  if (MessageDlg(Format(ResStr::SRemovePackage, loader->FileName(index)), mtConfirmation,
                 MsgDlgButton(mbYes) | MsgDlgButton(mbNo)) != mrYes)
    return;
  {
    THourGlass hourGlass;
    loader->Delete(index);
    Refill();
  }
  Changed();
}

void TFrm_PackCfg::Changed() {
  if (OnChange) OnChange(this);
}

LUMORA_CLASS_IMPL(TFrm_PackCfg) {
  c.Field("GroupBox1", &TFrm_PackCfg::GroupBox1);
  c.Field("Pan_Left", &TFrm_PackCfg::Pan_Left);
  c.Field("Pan_Right", &TFrm_PackCfg::Pan_Right);
  c.Field("Pan_Center", &TFrm_PackCfg::Pan_Center);
  c.Field("Pan_Loading", &TFrm_PackCfg::Pan_Loading);
  c.Field("CheckListBox", &TFrm_PackCfg::CheckListBox);
  c.Field("DPL_Name", &TFrm_PackCfg::DPL_Name);
  c.Field("Panel1", &TFrm_PackCfg::Panel1);
  c.Field("Panel2", &TFrm_PackCfg::Panel2);
  c.Field("BtnPackAdd", &TFrm_PackCfg::BtnPackAdd);
  c.Field("BtnPackDel", &TFrm_PackCfg::BtnPackDel);
  c.Field("BtnComponents", &TFrm_PackCfg::BtnComponents);
  c.Field("OpenDialog", &TFrm_PackCfg::OpenDialog);
  c.Method<&TFrm_PackCfg::FormCreate>("FormCreate");
  c.Method<&TFrm_PackCfg::FormShow>("FormShow");
  c.Method<&TFrm_PackCfg::CheckListBoxClick>("CheckListBoxClick");
  c.Method<&TFrm_PackCfg::CheckListBoxClickCheck>("CheckListBoxClickCheck");
  c.Method<&TFrm_PackCfg::BtnPackAddClick>("BtnPackAddClick");
  c.Method<&TFrm_PackCfg::BtnPackDelClick>("BtnPackDelClick");
}
