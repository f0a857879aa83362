#include "shell/mLumora.h"

#include "foundation/ApEvent.h"
#include "foundation/joArrs.h"
#include "foundation/joIniFile.h"
#include "foundation/joLayout.h"
#include "liveform/F_PackCfg.h"
#include "liveform/PackConfig.h"
#include "liveform/joDesigner.h"
#include "platform/streaming/FormFile.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "resources/ResStrings.h"
#include "shell/CompRes.h"
#include "shell/F_PForms.h"
#include "shell/F_WList.h"
#include "textedit/DFM_ResEdit.h"
#include "textedit/StrN_Edit.h"

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

// ---- Documents ------------------------------------------------------------------------------

namespace {
void FreeDesigner(TjoDesigner* designer) {
  if (!designer) return;
  // The designer's callbacks reach a list that is changing now.
  designer->OnLiveFormGone = nullptr;
  designer->OnShowText = nullptr;
  delete designer;
}

TSaveDialog*& SaveDialogSlot() {
  static TSaveDialog* dialog = nullptr;
  return dialog;
}

// Frees the shared save dialog at the end of the program.
struct TSaveDialogEnd {
  ~TSaveDialogEnd() {
    delete SaveDialogSlot();
    SaveDialogSlot() = nullptr;
  }
} gSaveDialogEnd;
}  // namespace

rItem::rItem(rItem&& Other) noexcept : Name(std::move(Other.Name)), Designer(Other.Designer) {
  Other.Designer = nullptr;
}

rItem& rItem::operator=(rItem&& Other) noexcept {
  if (this != &Other) {
    FreeDesigner(Designer);
    Name = std::move(Other.Name);
    Designer = Other.Designer;
    Other.Designer = nullptr;
  }
  return *this;
}

rItem::~rItem() { FreeDesigner(Designer); }

TSaveDialog* TFrm_mLumora::SharedSaveDialog() {
  TSaveDialog*& dialog = SaveDialogSlot();
  if (!dialog) {
    dialog = new TSaveDialog(nullptr);
    dialog->SetFilter(std::string(ResStr::SSaveFilter));
    dialog->SetOptions(TOpenOptions{ofOverwritePrompt, ofHideReadOnly, ofPathMustExist});
    if (dialog->InitialDir().empty()) {
      // The remembered name may be the start file's own.
      std::string folder = SaveDialogFolder();
      if (FileExistsNamed(folder)) folder = FolderOf(folder);
      if (folder.empty()) folder = FolderOf(Application->ExeName());
      dialog->SetInitialDir(folder);
    }
  }
  return dialog;
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
  c.Method<&TFrm_mLumora::mi_EditStringsClick>("mi_EditStringsClick");
}

TFrm_mLumora::TFrm_mLumora(TComponent* AOwner) : TSW_MainForm(AOwner, TDerived{}) {
  // The options dialog's packages page is the packages dialog, from the layer above it.
  SetPackagesPageFactory([](TComponent* owner, std::function<void()> onChange) -> TCustomForm* {
    auto* page = new TFrm_PackCfg(owner);
    page->OnChange = [onChange](TObject*) {
      if (onChange) onChange();
    };
    return page;
  });
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
  delete FDocuments;
  FDocuments = new TjoArrNamedRecords(TypeInfoOf<rItem>("rItem"));
  FEditor = nullptr;
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
  SetKeyClose(FKeyClose);
  SetKeyToggle(FKeyToggle);
  SetKeyOI(FKeyOI);
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
  SavePackages(PackagesIniFileName(), PackagesSection());
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
  if (FEditor) {
    for (const char* path : {"TreeWidth", "FontEditor.Name", "FontEditor.Size", "FontEditor.CharSet"})
      own->SaveProperty("Editor", FEditor, path);
  }
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

void TFrm_mLumora::FormActivate(TObject*) {
  // The live forms' inspectors follow their forms: none stays over this window.
  TjoDesigner::MainFormActivated();
}

void TFrm_mLumora::FormClose(TObject*, TCloseAction& Action) {
  if (!CloseEditorQuery()) {
    Action = caNone;
    return;
  }
  CloseAll();
}

void TFrm_mLumora::mi_ExitClick(TObject*) { Close(); }

void TFrm_mLumora::mi_OpenAsFormClick(TObject*) {
  OpenDialog->SetOptions(OpenDialog->Options() + ofHideReadOnly);
  OpenDialog->SetFileName("");
  if (!OpenDialog->Execute()) return;
  const std::string name = FormToOpen(OpenDialog->FileName());
  if (!name.empty()) OpenAsForm(name);
}

void TFrm_mLumora::mi_OpenAsTextClick(TObject*) {
  OpenDialog->SetFileName("");
  TOpenOptions options = OpenDialog->Options();
  if (FReadOnly) {
    options += ofReadOnly;
    options += ofHideReadOnly;
  } else {
    options -= ofReadOnly;
    options -= ofHideReadOnly;
  }
  OpenDialog->SetOptions(options);
  if (!OpenDialog->Execute()) return;
  const std::string name = FormToOpen(OpenDialog->FileName());
  if (!name.empty()) OpenAsText(name, OpenDialog->Options().Contains(ofReadOnly));
}

void TFrm_mLumora::mi_ViewAsFormClick(TObject*) {
  if (Screen->ActiveCustomForm() != this) return;
  if (TjoDesigner* designer = EditorDesigner()) ShowLiveForm(designer);
}

void TFrm_mLumora::mi_FileSaveAsClick(TObject*) { SaveEditorIfNeeded(true); }

void TFrm_mLumora::mi_FileCloseEditorClick(TObject*) {
  if (Screen->ActiveCustomForm() != this) return;
  if (!EditorVisible()) {
    Application->Minimize();
    return;
  }
  CloseEditorQuery();
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

bool TFrm_mLumora::EditorVisible() const { return FEditor && FEditor->Visible(); }

TjoDFM_ResourceEditor* TFrm_mLumora::GetEditor() {
  if (FEditor) return FEditor;
  auto* editor = new TjoDFM_ResourceEditor(this);
  editor->SetName("Editor");
  editor->SetVisible(false);
  editor->SetParent(this);
  editor->SetAlign(alClient);
  editor->SetReadOnly(false);
  editor->SetTreeVisible(true);
  editor->SetStatusBarVisible(true);
  TPopupMenu* menu = editor->RichEdit()->Menu();
  auto* line = new TMenuItem(menu);
  line->SetCaption(cLineCaption);
  menu->Items()->Add(line);
  mi_EditStrings = new TMenuItem(menu);
  mi_EditStrings->SetName("mi_EditStrings");
  mi_EditStrings->SetCaption(std::string(ResStr::SEditStrings));
  mi_EditStrings->OnClick = MakeMethod<&TFrm_mLumora::mi_EditStringsClick>(this);
  menu->Items()->Add(mi_EditStrings);
  // "Compile" hands the stream on to the document, so a live form follows the text.
  FEditorCompile = editor->CompileItem()->OnClick;
  editor->CompileItem()->OnClick = MakeMethod<&TFrm_mLumora::EditorCompileClick>(this);
  if (FIni) FIni->LoadProperties(Name(), "Editor", editor);
  FEditor = editor;
  return FEditor;
}

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
  Label1->Hide();
  Label2->Hide();
  GetEditor()->Show();
  SelectFirst();
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::HideEditor() {
  if (EditorVisible()) {
    FFormHeight = Height();
    FFormWidth = Width();
    FEditor->Hide();
  }
  DetachEditor();
  Label1->Show();
  Label2->Show();
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
  if (!Value) return;
  while (FDocuments && FDocuments->Count() >= 2) DeleteDocument(0);
  RefreshWindowMenu();
}

void TFrm_mLumora::SetStayOnTop(bool Value) {
  FStayOnTop = Value;
  // With the editor shown the flag waits for the banner.
  if (!EditorVisible() && !FEditorShown) SetFormStyle(Value ? fsStayOnTop : fsNormal);
}

void TFrm_mLumora::SetKeyClose(TShortCut Value) {
  mi_FileCloseEditor->SetShortCut(Value);
  TjoDesigner::SetCloseShortCut(Value);
  FKeyClose = Value;
}

void TFrm_mLumora::SetKeyToggle(TShortCut Value) {
  mi_ViewAsForm->SetShortCut(Value);
  TjoDesigner::SetViewTextShortCut(Value);
  FKeyToggle = Value;
}

void TFrm_mLumora::SetKeyOI(TShortCut Value) {
  TjoDesigner::SetShowInspectorShortCut(Value);
  FKeyOI = Value;
}

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
  if (FViewAsForm)
    OpenAsForm(FileName);
  else
    OpenAsText(FileName, FReadOnly);
}

TjoDesigner* TFrm_mLumora::OpenDocument(const std::string& FileName) {
  auto* record = static_cast<rItem*>(FDocuments->FindName(FileName, true));
  // A file already open shows what is there; it is not read again.
  if (record->Designer) return record->Designer;
  auto* designer = new TjoDesigner();
  try {
    if (!IsBinaryFormFile(FileName) && IsTextFormFile(FileName)) {
      // Form text is converted on opening; text that does not parse is the user's to know.
      std::string binary;
      try {
        binary = ObjectTextToBinary(ReadFileToString(FileName));
      } catch (const Exception& e) {
        DeferError(FileName + ": " + e.Message());
        throw;
      }
      TMemoryStream stream;
      stream.WriteBuffer(binary);
      stream.SetPosition(0);
      designer->Document()->LoadFromStream(stream, false);
    } else {
      designer->Document()->LoadFromFile(FileName);
    }
    designer->SetMode(FVV_Style);
    designer->Caption = FileName;
    designer->OnLiveFormGone = [this](TjoDesigner* d) { OnDesignerClosed(d); };
    designer->OnShowText = [this](TjoDesigner* d) { OnViewAsText(d); };
  } catch (...) {
    // Not a form file: nothing is shown; the empty record waits for a later open.
    delete designer;
    return nullptr;
  }
  // The record may have moved while the file was read.
  record = static_cast<rItem*>(FDocuments->FindName(FileName, true));
  record->Designer = designer;
  return designer;
}

void TFrm_mLumora::OpenAsForm(const std::string& FileName) { ShowLiveForm(OpenDocument(FileName)); }

void TFrm_mLumora::OpenAsText(const std::string& FileName, bool ReadOnly) {
  TjoDesigner* designer = OpenDocument(FileName);
  if (!designer) return;
  if (!OnViewAsText(designer)) return;
  FEditor->SetReadOnly(ReadOnly);
  mi_EditStrings->SetEnabled(!ReadOnly);
  FCurrentFile = FileName;
}

// ---- Forms inside programs

std::string TFrm_mLumora::FormToOpen(const std::string& FileName) {
  std::vector<TProgramForm> forms;
  try {
    if (!TFormFile::ListProgram(FileName, forms)) return FileName;
  } catch (const EPeImageError& e) {
    MessageDlg(e.Message(), mtError, MsgDlgButton(mbOK));
    return {};
  } catch (const Exception&) {
    // A file that cannot be read goes the way of any other file.
    return FileName;
  }
  if (forms.empty()) {
    MessageDlg(Format(ResStr::SProgramWithoutForms, FileName), mtInformation, MsgDlgButton(mbOK));
    return {};
  }
  const int index = forms.size() == 1 ? 0 : ChooseProgramForm(FileName, forms);
  if (index < 0 || index >= static_cast<int>(forms.size())) return {};
  const TProgramForm& form = forms[static_cast<std::size_t>(index)];
  if (!form.Problem.empty()) {
    MessageDlg(Format(ResStr::SProgramFormUnreadable, FileName, form.Resource, form.Problem), mtError,
               MsgDlgButton(mbOK));
    return {};
  }
  return FileName + ":" + form.Resource;
}

bool TFrm_mLumora::MayWriteSavedFile(const std::string& FileName) {
  const TFormFileName shown = SplitProgramFormName(FCurrentFile);
  std::error_code error;
  if (shown.Form.empty() || !fs::equivalent(FileName, shown.File, error)) return true;
  MessageDlg(Format(ResStr::SProgramNotWritten, shown.File), mtError, MsgDlgButton(mbOK));
  return false;
}

bool TFrm_mLumora::LiveFormVisible(TjoDesigner* Designer) {
  return Designer && Designer->HostForm() && Designer->HostForm()->Visible();
}

int TFrm_mLumora::IndexOfDesigner(TjoDesigner* Designer) const {
  if (!Designer || !FDocuments) return -1;
  for (int i = 0; i < FDocuments->Count(); ++i)
    if (static_cast<rItem*>(FDocuments->ItemPtr(i))->Designer == Designer) return i;
  return -1;
}

int TFrm_mLumora::DocumentCount() const { return FDocuments ? FDocuments->Count() : 0; }

std::string TFrm_mLumora::DocumentName(int Index) const {
  return static_cast<rItem*>(FDocuments->ItemPtr(Index))->Name;
}

TjoDesigner* TFrm_mLumora::DocumentDesigner(int Index) const {
  return static_cast<rItem*>(FDocuments->ItemPtr(Index))->Designer;
}

void TFrm_mLumora::DeleteDocument(int Index) {
  auto* record = static_cast<rItem*>(FDocuments->ItemPtr(Index));
  if (FEditor && record->Designer && record->Designer->TextEditor() == FEditor) {
    record->Designer->SetTextEditor(nullptr);
    FEditor->Clear();
  }
  FDocuments->Delete(Index);
}

void TFrm_mLumora::ShowLiveForm(TjoDesigner* Designer) {
  if (Designer) {
    if (FOnly1VF && FDocuments->Count() > 1 && DocumentDesigner(0) != Designer) DeleteDocument(0);
    EnsurePackagesLoaded();
    // A message about the packages may have let the user close the document meanwhile.
    if (IndexOfDesigner(Designer) < 0) {
      RefreshWindowMenu();
      return;
    }
    // The designer compiles a modified text first; when it does not parse the live form waits.
    Designer->Show();
  }
  RefreshWindowMenu();
}

TjoDesigner* TFrm_mLumora::EditorDesigner() const {
  if (!FEditor) return nullptr;
  for (int i = 0; i < DocumentCount(); ++i) {
    TjoDesigner* designer = DocumentDesigner(i);
    if (designer && designer->TextEditor() == FEditor) return designer;
  }
  return nullptr;
}

void TFrm_mLumora::EditorCompileClick(TObject* Sender) {
  if (FEditorCompile) FEditorCompile(Sender);
  if (TjoDesigner* designer = EditorDesigner()) designer->CompileText();
}

void TFrm_mLumora::AttachEditor(TjoDesigner* Designer) {
  // The designer fills the editor with its document's text.
  Designer->SetTextEditor(GetEditor());
}

void TFrm_mLumora::DetachEditor(TjoDesigner* Keep) {
  TjoDesigner* designer = EditorDesigner();
  if (!designer) return;
  designer->SetTextEditor(nullptr);
  FEditor->Clear();
  // A document shown nowhere closes.
  if (designer != Keep && !LiveFormVisible(designer)) {
    const int index = IndexOfDesigner(designer);
    if (index >= 0) DeleteDocument(index);
  }
  RefreshWindowMenu();
}

bool TFrm_mLumora::OnViewAsText(TjoDesigner* Designer) {
  if (!SaveEditorIfNeeded(false)) return false;
  DetachEditor(Designer);
  const int index = IndexOfDesigner(Designer);
  ShowEditor(index >= 0 ? DocumentName(index) : Designer->Caption);
  AttachEditor(Designer);
  FEditor->SetReadOnly(FReadOnly);
  mi_EditStrings->SetEnabled(!FReadOnly);
  if (Screen->ActiveCustomForm() != this) {
    Show();
    BringToFront();
  }
  return true;
}

void TFrm_mLumora::OnDesignerClosed(TjoDesigner* Designer) {
  // The designer is still at work; its document closes once it is done.
  PostMessage(this, WM_DOCUMENTCLOSED, 0, reinterpret_cast<LPARAM>(Designer));
}

bool TFrm_mLumora::CloseEditorQuery() {
  bool answer = true;
  if (EditorVisible() && FEditor->Modified()) {
    Show();
    BringToFront();
    switch (MessageDlg(std::string(ResStr::SSaveChanges), mtConfirmation, mbYesNoCancel)) {
      case mrYes: answer = SaveEditorText(FEditor, true); break;
      case mrNo: answer = true; break;
      default: answer = false; break;
    }
  }
  if (answer) HideEditor();
  return answer;
}

bool TFrm_mLumora::SaveEditorIfNeeded(bool Force) {
  if (!EditorVisible()) return true;
  return SaveEditorText(FEditor, Force);
}

bool TFrm_mLumora::SaveEditorText(TjoDFM_ResourceEditor* Editor, bool Force) {
  if (!Editor) return false;
  if (!Editor->Modified() && !Force) return true;
  if (Editor->Modified()) {
    try {
      TjoDesigner* designer = Editor == FEditor ? EditorDesigner() : nullptr;
      if (designer)
        designer->CompileText();
      else
        Editor->Compile();
    } catch (const Exception& e) {
      // The caret is on the line the parser names; the user learns why.
      DeferError(e.Message());
      return false;
    }
    if (!Force) {
      if (TCustomForm* form = GetParentForm(Editor)) {
        form->Show();
        form->BringToFront();
      }
      switch (MessageDlg(std::string(ResStr::SSaveChanges), mtConfirmation, mbYesNoCancel)) {
        case mrYes: break;
        case mrNo: return true;
        default: return false;
      }
    }
  }
  TSaveDialog* dialog = SharedSaveDialog();
  if (!dialog->Execute()) return false;
  const std::string fileName = dialog->FileName();
  if (Editor == FEditor && !MayWriteSavedFile(fileName)) return false;
  dialog->SetInitialDir(FolderOf(fileName));
  bool result = true;
  TjoRichEdit* rich = Editor->RichEdit();
  switch (dialog->FilterIndex()) {
    case 1: result = Editor->SaveToResourceFile(fileName); break;
    case 2: break;  // offered, but there is nothing that writes it
    case 4: {
      const bool plain = rich->PlainText();
      rich->SetPlainText(false);
      try {
        SaveFile(fileName, rich->RichText());
      } catch (...) {
        rich->SetPlainText(plain);
        throw;
      }
      rich->SetPlainText(plain);
      break;
    }
    default: SaveFile(fileName, rich->Text()); break;
  }
  if (result) Editor->SetModified(false);
  return result;
}

void TFrm_mLumora::mi_EditStringsClick(TObject*) {
  if (!FEditor) return;
  TjoRichEdit* rich = FEditor->RichEdit();
  const int caret = rich->SelStart();
  TStringList list;
  bool changed = false;
  try {
    if (FEditor->CollectStrings(&list) > 0) {
      const bool confirmed = TFrm_StrN_Edit::Execute(
          std::string(ResStr::SStringsResources), &list,
          [&](TObject*, int row, const std::string& value) {
            if (row < 0 || row >= list.Count()) return;
            list.SetStrings(row, value);
            changed = true;
          },
          [&](TObject*, int row) {
            if (row < 0 || row >= list.Count()) return;
            rich->HighlightLine(static_cast<int>(reinterpret_cast<std::intptr_t>(list.Objects(row))));
          });
      if (confirmed && changed) FEditor->ApplyStrings(&list);
    }
  } catch (...) {
    rich->HighlightLine(-1);
    rich->SetSelStart(caret);
    throw;
  }
  rich->HighlightLine(-1);
  rich->SetSelStart(caret);
}

void TFrm_mLumora::CloseAll() {
  if (!FDocuments) return;
  while (FDocuments->Count() > 0) DeleteDocument(FDocuments->Count() - 1);
}

// ---- Window list

void TFrm_mLumora::RefreshWindowMenu() {
  int n = 0;
  for (int i = 0; FDocuments && i < FDocuments->Count(); ++i) {
    TjoDesigner* designer = DocumentDesigner(i);
    if (!LiveFormVisible(designer)) continue;
    TMenuItem* item;
    if (n < bmi_WinList->Count()) {
      item = bmi_WinList->Items(n);
    } else {
      item = new TMenuItem(this);
      bmi_WinList->Add(item);
    }
    const std::string digit(1, n < 10 ? char('0' + n) : char('A' + n - 10));
    item->SetCaption(Format(ResStr::SWindowMenuItem, digit, DocumentName(i), ResStr::SWindowMenuSeparator,
                            designer->HostForm()->Caption()));
    item->OnClick = MakeMethod<&TFrm_mLumora::WindowMenuItemClick>(this);
    item->SetTag(i);
    ++n;
  }
  if (n > 0) {
    auto itemAt = [&](int index) {
      if (index < bmi_WinList->Count()) return bmi_WinList->Items(index);
      auto* item = new TMenuItem(this);
      bmi_WinList->Add(item);
      return item;
    };
    TMenuItem* line = itemAt(n);
    line->SetCaption(cLineCaption);
    line->OnClick = nullptr;
    TMenuItem* closeAll = itemAt(n + 1);
    closeAll->SetCaption(std::string(ResStr::SCloseAll));
    closeAll->OnClick = MakeMethod<&TFrm_mLumora::mi_CloseAllClick>(this);
    n += 2;
  }
  while (bmi_WinList->Count() > n) {
    TMenuItem* item = bmi_WinList->Items(bmi_WinList->Count() - 1);
    bmi_WinList->Delete(bmi_WinList->Count() - 1);
    delete item;
  }
  bmi_WinList->SetEnabled(n > 0);
  mi_ViewWindowList->SetEnabled(n > 0);
  UpdateMenuEnabled(bmi_View);
}

void TFrm_mLumora::WindowMenuItemClick(TObject* Sender) {
  auto* item = dynamic_cast<TMenuItem*>(Sender);
  if (!item || item->Tag() < 0 || item->Tag() >= DocumentCount()) return;
  if (TjoDesigner* designer = DocumentDesigner(item->Tag())) designer->Show();
}

void TFrm_mLumora::ShowWindowList() {
  if (!FWinListIdle) return;
  FWinListIdle = false;
  TStringList list;
  list.Add(std::string(ResStr::SMainWindowLine));
  int selected = Screen->ActiveCustomForm() == this ? 0 : -1;
  for (int i = 0; i < DocumentCount(); ++i) {
    TjoDesigner* designer = DocumentDesigner(i);
    if (!LiveFormVisible(designer)) continue;
    list.AddObject(DocumentName(i), reinterpret_cast<TObject*>(designer));
    if (Screen->ActiveCustomForm() == designer->HostForm()) selected = list.Count() - 1;
  }
  try {
    const int chosen = ShowWindowListDialog(std::string(ResStr::SWindowListCaption), &list, selected);
    if (chosen == 0) {
      Show();
      BringToFront();
    } else if (chosen > 0) {
      auto* designer = reinterpret_cast<TjoDesigner*>(list.Objects(chosen));
      if (IndexOfDesigner(designer) >= 0) designer->Show();
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
    case WM_DOCUMENTCLOSED: {
      Message.Result = 1;
      auto* designer = reinterpret_cast<TjoDesigner*>(Message.LParam);
      const int index = IndexOfDesigner(designer);
      // A designer whose text is in the editor keeps its document.
      if (index >= 0 && !designer->TextEditor() && !LiveFormVisible(designer)) DeleteDocument(index);
      RefreshWindowMenu();
      return;
    }
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
