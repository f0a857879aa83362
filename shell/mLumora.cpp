#include "shell/mLumora.h"

#include "foundation/ApEvent.h"
#include "foundation/joArrs.h"
#include "foundation/joLayout.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "resources/ResStrings.h"
#include "shell/F_WList.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <QWindowStateChangeEvent>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

// ---- Program-wide values ---------------------------------------------------------------

namespace {

struct TUnitValues {
  std::string StartFileName;
  std::string PendingFileName;
  std::string RelayBuffer;
  std::string SaveDialogFolder;
  std::vector<std::string> Params;
};

TUnitValues& Unit() {
  static TUnitValues values;
  return values;
}

const char* const kSystemSetting = "SystemSetting";

bool FileExistsNamed(const std::string& name) {
  std::error_code error;
  return !name.empty() && fs::is_regular_file(name, error);
}

std::string FolderOf(const std::string& name) {
  const fs::path folder = fs::path(name).parent_path();
  return folder.empty() ? std::string() : folder.string();
}

}  // namespace

std::string& StartFileName() { return Unit().StartFileName; }
std::string& PendingFileName() { return Unit().PendingFileName; }
std::string& RelayBuffer() { return Unit().RelayBuffer; }
std::string& SaveDialogFolder() { return Unit().SaveDialogFolder; }

void FinalizeMainUnit() {
  Unit().StartFileName.clear();
  Unit().PendingFileName.clear();
  Unit().RelayBuffer.clear();
  Unit().SaveDialogFolder.clear();
}

void SetParams(std::vector<std::string> Params) { Unit().Params = std::move(Params); }
int ParamCount() { return static_cast<int>(Unit().Params.size()); }
std::string ParamStr(int Index) {
  if (Index < 1 || Index > ParamCount()) return {};
  return Unit().Params[static_cast<std::size_t>(Index - 1)];
}

// ---- Telling form files ---------------------------------------------------------------------

bool IsBinaryFormFile(const std::string& FileName) {
  std::ifstream in(FileName, std::ios::binary);
  if (!in) return false;
  // At most 79 bytes are looked at, in a zeroed buffer of 80.
  char buffer[80] = {};
  in.read(buffer, 79);
  const auto* b = reinterpret_cast<const unsigned char*>(buffer);
  if (b[0] != 0xFF || b[1] != 0x0A) return false;
  const std::size_t nameLength = std::strlen(buffer + 3);
  const std::size_t at = nameLength + 10;
  return at + 4 <= sizeof buffer && std::memcmp(buffer + at, "TPF0", 4) == 0;
}

bool IsTextFormFile(const std::string& FileName) {
  std::ifstream in(FileName, std::ios::binary);
  if (!in) return false;
  char buffer[64] = {};
  in.read(buffer, sizeof buffer - 1);
  std::string_view head(buffer, static_cast<std::size_t>(in.gcount()));
  if (head.substr(0, 3) == "\xEF\xBB\xBF") head.remove_prefix(3);
  while (!head.empty() && (head.front() == ' ' || head.front() == '\t' || head.front() == '\r' || head.front() == '\n'))
    head.remove_prefix(1);
  for (std::string_view keyword : {"object", "inherited", "inline"}) {
    if (head.size() > keyword.size() && head.substr(0, keyword.size()) == keyword &&
        (head[keyword.size()] == ' ' || head[keyword.size()] == '\t'))
      return true;
  }
  return false;
}

// ---- The relay window ------------------------------------------------------------------------

LUMORA_CLASS_IMPL(TFixForm_1245al67_9) {}

TFixForm_1245al67_9::TFixForm_1245al67_9(TComponent* AOwner) : TForm(AOwner) {
  FListener = std::make_unique<TRelayListener>();
  FListener->OnPiece = [this](std::uintptr_t last, std::intptr_t chars) -> std::intptr_t {
    return SendMessage(this, WM_PENDINGFILE, last, chars);
  };
  // A second Lumora of the session leaves the relay to the first one.
  FListener->Listen();
}

TFixForm_1245al67_9::~TFixForm_1245al67_9() = default;

void TFixForm_1245al67_9::Dispatch(TMessage& Message) {
  if (Message.Msg != WM_PENDINGFILE) {
    TForm::Dispatch(Message);
    return;
  }
  if (Message.LParam != 0) RelayBuffer() += RelayPieceText(Message.LParam);
  if (Message.WParam != 0) {
    StartFileName() = RelayBuffer();
    RelayBuffer().clear();
    if (auto* main = dynamic_cast<TWinControl*>(Application->MainForm())) PostMessage(main, WM_ACTIVATEVIEWER);
  }
  Message.Result = 1;
}

// ---- What the window system does to the main window ---------------------------------------

// Files dropped on the window, and the window's state changed from its title bar.
class TFrm_mLumora::TWindowFilter : public QObject {
public:
  explicit TWindowFilter(TFrm_mLumora* form) : FForm(form) {}
  bool Reverting = false;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::DragEnter:
      case QEvent::DragMove: {
        auto* drag = static_cast<QDropEvent*>(event);
        if (drag->mimeData() && drag->mimeData()->hasUrls()) {
          drag->acceptProposedAction();
          return true;
        }
        return false;
      }
      case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        std::vector<std::string> names;
        if (drop->mimeData()) {
          for (const QUrl& url : drop->mimeData()->urls())
            if (url.isLocalFile()) names.push_back(url.toLocalFile().left(kDropNameLength).toStdString());
        }
        drop->acceptProposedAction();
        TMessageLoop::Instance().Guarded([&] { FForm->DropFiles(names); });
        return true;
      }
      case QEvent::WindowStateChange: {
        auto* w = static_cast<QWidget*>(watched);
        if (Reverting || !w->isMaximized()) return false;
        // Maximised from the title bar: the same command as from the window's menu.
        TMessage m;
        m.Msg = WM_SYSCOMMAND;
        m.WParam = SC_MAXIMIZE;
        TMessageLoop::Instance().Guarded([&] { FForm->WndProc(m); });
        if (!FForm->FEditorShown) {
          Reverting = true;
          w->showNormal();
          Reverting = false;
        }
        return false;
      }
      default: return false;
    }
  }

private:
  TFrm_mLumora* FForm;
};

// ---- The main window --------------------------------------------------------------------------

LUMORA_CLASS_IMPL(TFrm_mLumora) {
  c.Field("Label1", &TFrm_mLumora::Label1);
  c.Field("Label2", &TFrm_mLumora::Label2);
  c.Field("OpenDialog", &TFrm_mLumora::OpenDialog);
  c.Field("SaveDialog", &TFrm_mLumora::SaveDialog);
  c.Field("mi_OpenAsForm", &TFrm_mLumora::mi_OpenAsForm);
  c.Field("mi_OpenAsText", &TFrm_mLumora::mi_OpenAsText);
  c.Field("mi_FileSaveAs", &TFrm_mLumora::mi_FileSaveAs);
  c.Field("N1", &TFrm_mLumora::N1);
  c.Field("mi_FileCloseEditor", &TFrm_mLumora::mi_FileCloseEditor);
  c.Field("N2", &TFrm_mLumora::N2);
  c.Field("bmi_View", &TFrm_mLumora::bmi_View);
  c.Field("mi_ViewAsForm", &TFrm_mLumora::mi_ViewAsForm);
  c.Field("mi_ViewWindowList", &TFrm_mLumora::mi_ViewWindowList);
  c.Field("bmi_Options", &TFrm_mLumora::bmi_Options);
  c.Field("mi_OptionsProperties", &TFrm_mLumora::mi_OptionsProperties);
  c.Field("mi_OptionsFormViewer", &TFrm_mLumora::mi_OptionsFormViewer);
  c.Field("mi_OptionsPackages", &TFrm_mLumora::mi_OptionsPackages);
  c.Field("bmi_WinList", &TFrm_mLumora::bmi_WinList);
  c.Field("N2_1", &TFrm_mLumora::N2_1);
  c.Field("CloseeAll", &TFrm_mLumora::CloseeAll);
  c.Method<&TFrm_mLumora::FormCreate>("FormCreate");
  c.Method<&TFrm_mLumora::FormDestroy>("FormDestroy");
  c.Method<&TFrm_mLumora::FormActivate>("FormActivate");
  c.Method<&TFrm_mLumora::FormClose>("FormClose");
  c.Method<&TFrm_mLumora::mi_ExitClick>("mi_ExitClick");
  c.Method<&TFrm_mLumora::mi_OpenAsFormClick>("mi_OpenAsFormClick");
  c.Method<&TFrm_mLumora::mi_OpenAsTextClick>("mi_OpenAsTextClick");
  c.Method<&TFrm_mLumora::mi_ViewAsFormClick>("mi_ViewAsFormClick");
  c.Method<&TFrm_mLumora::mi_FileSaveAsClick>("mi_FileSaveAsClick");
  c.Method<&TFrm_mLumora::mi_FileCloseEditorClick>("mi_FileCloseEditorClick");
  c.Method<&TFrm_mLumora::mi_CloseAllClick>("mi_CloseAllClick");
  c.Method<&TFrm_mLumora::mi_ViewWindowListClick>("mi_ViewWindowListClick");
  c.Method<&TFrm_mLumora::mi_OptionsPropertiesClick>("mi_OptionsPropertiesClick");
  c.Method<&TFrm_mLumora::mi_OptionsFormViewerClick>("mi_OptionsFormViewerClick");
  c.Method<&TFrm_mLumora::mi_OptionsPackagesClick>("mi_OptionsPackagesClick");
  c.Method<&TFrm_mLumora::mi_HelpHelpClick>("mi_HelpHelpClick");
}

TFrm_mLumora::TFrm_mLumora(TComponent* AOwner) : TSW_MainForm(AOwner, TDerived{}) {
  CreateMainForm();
  if (QWidget* w = Widget()) {
    FWindowFilter = new TWindowFilter(this);
    w->installEventFilter(FWindowFilter);
    w->setAcceptDrops(true);
  }
}

TFrm_mLumora::~TFrm_mLumora() {
  DestroyMainForm();
  if (QWidget* w = Widget(); w && FWindowFilter) w->removeEventFilter(FWindowFilter);
  delete FWindowFilter;
  FWindowFilter = nullptr;
  delete FRelayWindow;
  FRelayWindow = nullptr;
}

void TFrm_mLumora::FormCreate(TObject*) {
  // Takes the place of the base main form's creation: this window makes its own store.
  FEditorShown = false;
  FAppTitle = Caption();
  FOptionsChanged = false;
  FWinListIdle = true;
  delete FIni;
  FIni = new TjoIniFile("");
  FIniFileName = FIni->FileName();

  FRelayWindow = new TFixForm_1245al67_9(Application);
  FRelayWindow->FreeNotification(this);
  FRelayWindow->SetName("WOW");
  FRelayWindow->SetCaption(FAppTitle);
  Application->SetTitle(FAppTitle);

  StartFileName() = ParamCount() >= 1 ? ParamStr(1) : std::string();

  FViewAsForm = true;
  FOnly1VF = false;
  FStayOnTop = false;
  FReadOnly = true;
  FFormWidth = 640;
  FFormHeight = 480;
  FVV_Style = 0;
  FKeyClose = TextToShortCut("Esc");
  FKeyToggle = TextToShortCut("F12");
  FKeyOI = TextToShortCut("F11");
  ReadSettings();
  LoadFormSettings(FIni);
  HideEditor();
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::Notification(TComponent* AComponent, TOperation Operation) {
  TSW_MainForm::Notification(AComponent, Operation);
  if (Operation == opRemove && AComponent == FRelayWindow) FRelayWindow = nullptr;
}

void TFrm_mLumora::ReadSettings() {
  // A value that does not convert keeps the default and is reported once the program is idle.
  auto bad = [&](const char* key, const Variant& value) {
    DeferError(Format(ResStr::SBadSetting, key, VarToStr(value), FIni->FileName()));
  };
  auto readBool = [&](const char* key, bool current) {
    const Variant value = FIni->ReadValueDef(kSystemSetting, key, Variant(current));
    try {
      return value.AsBoolean();
    } catch (const Exception&) {
      bad(key, value);
      return current;
    }
  };
  auto readInt = [&](const char* key, int current) {
    const Variant value = FIni->ReadValueDef(kSystemSetting, key, Variant(current));
    try {
      return value.AsInteger();
    } catch (const Exception&) {
      bad(key, value);
      return current;
    }
  };
  FViewAsForm = readBool("ViewAsForm", FViewAsForm);
  SetOnly1VF(readBool("Only1VF", FOnly1VF));
  SetStayOnTop(readBool("StayOnTop", FStayOnTop));
  FReadOnly = readBool("ReadOnly", FReadOnly);
  FFormWidth = readInt("FormWidth", FFormWidth);
  FFormHeight = readInt("FormHeight", FFormHeight);
  FVV_Style = static_cast<std::uint8_t>(readInt("VV_Style", FVV_Style));
  SetKeyClose(static_cast<TShortCut>(readInt("KeyClose", FKeyClose)));
  SetKeyToggle(static_cast<TShortCut>(readInt("KeyToggle", FKeyToggle)));
  SetKeyOI(static_cast<TShortCut>(readInt("KeyOI", FKeyOI)));
}

void TFrm_mLumora::FormDestroy(TObject*) {
  CloseAll();
  if (!FIni) return;
  try {
    WriteSettings();
  } catch (const Exception& e) {
    // The rest of the settings is not written; the user learns why.
    Application->MessageBox(Format(ResStr::SSettingsNotSaved, e.Message()), Application->Title(), MB_OK | MB_ICONSTOP);
  }
  delete FIni;
  FIni = nullptr;
  delete FDocuments;
  FDocuments = nullptr;
}

void TFrm_mLumora::WriteSettings() {
  TjoIniFileSection* own = FIni->GetSection(Name());
  own->SaveProperty("", this, "Left");
  own->SaveProperty("", this, "Top");
  FIni->WriteValue(kSystemSetting, "ViewAsForm", Variant(FViewAsForm));
  FIni->WriteValue(kSystemSetting, "Only1VF", Variant(FOnly1VF));
  FIni->WriteValue(kSystemSetting, "StayOnTop", Variant(FStayOnTop));
  FIni->WriteValue(kSystemSetting, "ReadOnly", Variant(FReadOnly));
  FIni->WriteValue(kSystemSetting, "FormWidth", Variant(FFormWidth));
  FIni->WriteValue(kSystemSetting, "FormHeight", Variant(FFormHeight));
  FIni->WriteValue(kSystemSetting, "VV_Style", Variant(int(FVV_Style)));
  FIni->WriteValue(kSystemSetting, "KeyClose", Variant(int(FKeyClose)));
  FIni->WriteValue(kSystemSetting, "KeyToggle", Variant(int(FKeyToggle)));
  FIni->WriteValue(kSystemSetting, "KeyOI", Variant(int(FKeyOI)));
}

void TFrm_mLumora::FormActivate(TObject*) {}

void TFrm_mLumora::FormClose(TObject*, TCloseAction& Action) {
  CloseAll();
  (void)Action;
}

void TFrm_mLumora::mi_ExitClick(TObject*) { Close(); }

void TFrm_mLumora::mi_OpenAsFormClick(TObject*) {}

void TFrm_mLumora::mi_OpenAsTextClick(TObject*) {}

void TFrm_mLumora::mi_ViewAsFormClick(TObject*) {}

void TFrm_mLumora::mi_FileSaveAsClick(TObject*) {}

void TFrm_mLumora::mi_FileCloseEditorClick(TObject*) {
  if (Screen->ActiveCustomForm() != this) return;
  if (!EditorVisible()) Application->Minimize();
}

void TFrm_mLumora::mi_CloseAllClick(TObject*) {
  CloseAll();
  RefreshWindowMenu();
}

void TFrm_mLumora::mi_ViewWindowListClick(TObject*) { ShowWindowList(); }

void TFrm_mLumora::mi_OptionsPropertiesClick(TObject*) {
  if (ShowOptions(1, this)) FOptionsChanged = true;
}

void TFrm_mLumora::mi_OptionsFormViewerClick(TObject*) {
  if (ShowOptions(2, this)) FOptionsChanged = true;
}

void TFrm_mLumora::mi_OptionsPackagesClick(TObject*) {
  if (ShowOptions(3, this)) FOptionsChanged = true;
}

void TFrm_mLumora::mi_HelpHelpClick(TObject*) { ShowNoHelpMessage(); }

// ---- The two faces

bool TFrm_mLumora::EditorVisible() const { return false; }

void TFrm_mLumora::ApplyFaceLimits() {
  // The banner cannot be resized: its smallest and largest size are its size.
  TSizeConstraints* limits = Constraints();
  if (FEditorShown) {
    limits->SetMinWidth(0);
    limits->SetMinHeight(0);
    limits->SetMaxWidth(0);
    limits->SetMaxHeight(0);
  } else {
    limits->SetMaxWidth(kBannerWidth);
    limits->SetMaxHeight(kBannerHeight);
    limits->SetMinWidth(kBannerWidth);
    limits->SetMinHeight(kBannerHeight);
  }
}

void TFrm_mLumora::ShowEditor(const std::string& FileName) {
  FCurrentFile = FileName;
  FEditorShown = true;
  SetFormStyle(fsNormal);
  ApplyFaceLimits();
  SetMainSize(FFormWidth, FFormHeight);
  mi_FileSaveAs->SetEnabled(true);
  mi_ViewAsForm->SetEnabled(true);
  mi_FileCloseEditor->SetCaption(std::string(ResStr::SCloseEditor));
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::HideEditor() {
  if (EditorVisible()) {
    FFormHeight = Height();
    FFormWidth = Width();
  }
  FCurrentFile.clear();
  if (WindowState() != wsNormal) SetWindowState(wsNormal);
  FEditorShown = false;
  ApplyFaceLimits();
  SetMainSize(kBannerWidth, kBannerHeight);
  mi_FileSaveAs->SetEnabled(false);
  mi_ViewAsForm->SetEnabled(false);
  mi_FileCloseEditor->SetCaption(std::string(ResStr::SHideViewer));
  SetStayOnTop(FStayOnTop);
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::SetMainSize(int Width, int Height) {
  int x = Left(), y = Top();
  const int sw = Screen->Width(), sh = Screen->Height();
  auto fit = [](int& pos, int& size, int screen) {
    if (pos + size > screen) pos = screen - size;
    if (pos < 0) pos = 0;
    if (pos + size > screen) size = screen;
  };
  fit(x, Width, sw);
  fit(y, Height, sh);
  SetBounds(x, y, Width, Height);
}

void TFrm_mLumora::UpdateMenuEnabled(TMenuItem* Menu) {
  if (!Menu || Menu->Count() == 0) return;
  bool any = false;
  for (int i = 0; i < Menu->Count(); ++i) {
    TMenuItem* item = Menu->Items(i);
    UpdateMenuEnabled(item);
    any = any || (item->Visible() && item->Enabled());
  }
  Menu->SetEnabled(any);
}

// ---- Setters

void TFrm_mLumora::SetOnly1VF(bool Value) {
  FOnly1VF = Value;
  if (Value) RefreshWindowMenu();
}

void TFrm_mLumora::SetStayOnTop(bool Value) {
  FStayOnTop = Value;
  // With the editor shown the flag waits for the banner.
  if (!EditorVisible() && !FEditorShown) SetFormStyle(Value ? fsStayOnTop : fsNormal);
}

void TFrm_mLumora::SetKeyClose(TShortCut Value) {
  mi_FileCloseEditor->SetShortCut(Value);
  FKeyClose = Value;
}

void TFrm_mLumora::SetKeyToggle(TShortCut Value) {
  mi_ViewAsForm->SetShortCut(Value);
  FKeyToggle = Value;
}

void TFrm_mLumora::SetKeyOI(TShortCut Value) { FKeyOI = Value; }

// ---- Options

TjoOptionValues TFrm_mLumora::GetOptionValues() {
  TjoOptionValues v;
  v.StayOnTop = FStayOnTop;
  v.ViewAsForm = FViewAsForm;
  v.ReadOnly = FReadOnly;
  v.Only1VF = FOnly1VF;
  v.VV_Style = FVV_Style;
  v.KeyClose = FKeyClose;
  v.KeyToggle = FKeyToggle;
  v.KeyOI = FKeyOI;
  return v;
}

void TFrm_mLumora::ApplyOptionValues(const TjoOptionValues& Values) {
  SetStayOnTop(Values.StayOnTop);
  FViewAsForm = Values.ViewAsForm;
  SetOnly1VF(Values.Only1VF);
  FReadOnly = Values.ReadOnly;
  FVV_Style = Values.VV_Style;
  SetKeyClose(Values.KeyClose);
  SetKeyToggle(Values.KeyToggle);
  SetKeyOI(Values.KeyOI);
}

// ---- Open

void TFrm_mLumora::OpenByDefault(const std::string& FileName) {
  if (!FileExistsNamed(FileName)) return;
  if (!IsBinaryFormFile(FileName) && !IsTextFormFile(FileName)) return;
}

void TFrm_mLumora::CloseAll() {}

// ---- Window list

void TFrm_mLumora::RefreshWindowMenu() {
  int n = 0;
  while (bmi_WinList->Count() > n) {
    TMenuItem* item = bmi_WinList->Items(bmi_WinList->Count() - 1);
    bmi_WinList->Delete(bmi_WinList->Count() - 1);
    delete item;
  }
  bmi_WinList->SetEnabled(n > 0);
  mi_ViewWindowList->SetEnabled(n > 0);
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::ShowWindowList() {
  if (!FWinListIdle) return;
  FWinListIdle = false;
  TStringList list;
  list.Add(std::string(ResStr::SMainWindowLine));
  const int selected = Screen->ActiveCustomForm() == this ? 0 : -1;
  try {
    const int chosen = ShowWindowListDialog(std::string(ResStr::SWindowListCaption), &list, selected);
    if (chosen == 0) {
      Show();
      BringToFront();
    }
  } catch (...) {
    FWinListIdle = true;
    throw;
  }
  FWinListIdle = true;
}

// ---- Messages and hooks

void TFrm_mLumora::Dispatch(TMessage& Message) {
  switch (Message.Msg) {
    case WM_PENDINGFILE: {
      Message.Result = 1;
      if (!PendingFileName().empty()) {
        const std::string name = PendingFileName();
        PendingFileName().clear();
        OpenByDefault(name);
      }
      return;
    }
    case WM_ACTIVATEVIEWER: ActivateViewer(); Message.Result = 1; return;
    case WM_SHOWWINDOWLIST: Message.Result = 1; ShowWindowList(); return;
    case WM_SYSCOMMAND: SysCommand(Message); return;
    default: TSW_MainForm::Dispatch(Message);
  }
}

void TFrm_mLumora::SysCommand(TMessage& Message) {
  const WPARAM command = Message.WParam & 0xFFF0;
  if (!FEditorShown && (command == SC_MAXIMIZE || command == SC_RESTORE)) {
    Message.Result = 0;
    return;
  }
  switch (command) {
    case SC_MAXIMIZE: SetWindowState(wsMaximized); break;
    case SC_MINIMIZE: SetWindowState(wsMinimized); break;
    case SC_RESTORE: SetWindowState(wsNormal); break;
    case SC_CLOSE: Close(); break;
    default: break;
  }
  Message.Result = 0;
}

void TFrm_mLumora::ActivateViewer() {
  if (Application->IsMinimized()) Application->Restore();
  if (TCustomForm* active = Screen->ActiveCustomForm()) active->BringToFront();
  Application->BringToFront();
  Application->ProcessMessages();
}

void TFrm_mLumora::DropFiles(const std::vector<std::string>& FileNames) {
  if (FileNames.empty()) return;
  StartFileName() = FileNames.front();
  PostMessage(this, WM_ACTIVATEVIEWER);
}

void TFrm_mLumora::FirstIdleHook() {
  TSW_MainForm::FirstIdleHook();
  PendingFileName() = StartFileName();
}

void TFrm_mLumora::IdleHook(bool& Done) {
  TSW_MainForm::IdleHook(Done);
  if (FirstIdle() || StartFileName().empty()) return;
  PendingFileName() = StartFileName();
  StartFileName().clear();
  PostMessage(this, WM_PENDINGFILE);
  SaveDialogFolder() = PendingFileName();
  if (OpenDialog->InitialDir().empty()) OpenDialog->SetInitialDir(FolderOf(PendingFileName()));
}

void TFrm_mLumora::KeyPreviewHook(Word& Key, TShiftState Shift) {
  TSW_MainForm::KeyPreviewHook(Key, Shift);
  if (Key == '0' && Shift == TShiftState{ssAlt}) {
    PostMessage(this, WM_SHOWWINDOWLIST);
    Key = 0;
  }
}
