#pragma once
// The main window: a small banner while no text is shown, the form-text editor filling it
// otherwise; its menus, the commands that open, view and save form files, the list of
// open documents and live forms, the settings kept between runs, and the hidden relay
// window through which another program hands over a file name.

#include "foundation/Options.h"
#include "foundation/SW_Main.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Messages.h"
#include "platform/vcl/StdCtrls.h"
#include "shell/Relay.h"

#include <memory>
#include <string>
#include <vector>

class TjoArrNamedRecords;
class TjoDesigner;
class TjoDFM_ResourceEditor;

// One open document: the file name as passed to the open step, and its designer, which
// the record frees (closing the document's live form).
struct rItem {
  std::string Name;
  TjoDesigner* Designer = nullptr;

  rItem() = default;
  rItem(rItem&& Other) noexcept;
  rItem& operator=(rItem&& Other) noexcept;
  ~rItem();
};

// Private messages; other programs may send them, so their numbers are fixed.
// To the relay window: one piece of a file name; to the main window: open PendingFileName.
constexpr std::uint32_t WM_PENDINGFILE = 9426;
// To the main window: come to the front.
constexpr std::uint32_t WM_ACTIVATEVIEWER = 9427;
// To the main window: show the window list dialog.
constexpr std::uint32_t WM_SHOWWINDOWLIST = 100;
// Within the program: a live form has gone; its document closes unless its text is shown
// (lParam: the designer). Posted, since the designer is still at work when it tells.
constexpr std::uint32_t WM_DOCUMENTCLOSED = WM_USER + 0x51;

// The size of the banner.
constexpr int kBannerWidth = 270;
constexpr int kBannerHeight = 90;
// A dropped file's name is cut to this many characters.
constexpr std::size_t kDropNameLength = 512;

// ---- Program-wide values of the main window's unit ------------------------------------

// A file waiting to be opened: from the command line, a drop or the relay.
std::string& StartFileName();
// The file handed from StartFileName to the open step.
std::string& PendingFileName();
// The characters of a file name the relay window received so far.
std::string& RelayBuffer();
// The folder the shared save dialog starts in when it is made.
std::string& SaveDialogFolder();
// The unit's end: the three names and the save folder are cleared.
void FinalizeMainUnit();

// The program's command line (without the program's own name first), as the entry
// received it; ParamStr(1) is the first argument.
void SetParams(std::vector<std::string> Params);
int ParamCount();
std::string ParamStr(int Index);

// ---- The relay window ---------------------------------------------------------------------

// Hidden; receives the pieces of a file name (from the local socket of the session) and,
// on the last one, hands the name to the main window.
class TFixForm_1245al67_9 : public TForm {
  LUMORA_CLASS(TFixForm_1245al67_9, TForm)
public:
  explicit TFixForm_1245al67_9(TComponent* AOwner);
  ~TFixForm_1245al67_9() override;

  void Dispatch(TMessage& Message) override;
  // The socket it listens on, while the program runs.
  TRelayListener* Listener() const { return FListener.get(); }

private:
  std::unique_ptr<TRelayListener> FListener;
};

// ---- The main window ----------------------------------------------------------------------

class TFrm_mLumora : public TSW_MainForm, public IjoOptionsHost {
  LUMORA_CLASS(TFrm_mLumora, TSW_MainForm)
public:
  explicit TFrm_mLumora(TComponent* AOwner);
  ~TFrm_mLumora() override;

  // ---- Components of the layout
  TLabel* Label1 = nullptr;
  TLabel* Label2 = nullptr;
  TOpenDialog* OpenDialog = nullptr;
  TSaveDialog* SaveDialog = nullptr;
  TMenuItem* mi_OpenAsForm = nullptr;
  TMenuItem* mi_OpenAsText = nullptr;
  TMenuItem* mi_FileSaveAs = nullptr;
  TMenuItem* N1 = nullptr;
  TMenuItem* mi_FileCloseEditor = nullptr;
  TMenuItem* N2 = nullptr;
  TMenuItem* bmi_View = nullptr;
  TMenuItem* mi_ViewAsForm = nullptr;
  TMenuItem* mi_ViewWindowList = nullptr;
  TMenuItem* bmi_Options = nullptr;
  TMenuItem* mi_OptionsProperties = nullptr;
  TMenuItem* mi_OptionsFormViewer = nullptr;
  TMenuItem* mi_OptionsPackages = nullptr;
  TMenuItem* bmi_WinList = nullptr;
  TMenuItem* N2_1 = nullptr;
  TMenuItem* CloseeAll = nullptr;
  // Added to the editor's menu when the editor is made.
  TMenuItem* mi_EditStrings = nullptr;

  // ---- Settings and state
  bool FViewAsForm = true;
  bool FReadOnly = true;
  std::string FAppTitle;
  bool FOptionsChanged = false;
  bool FOnly1VF = false;
  bool FStayOnTop = false;
  std::uint8_t FVV_Style = 0;
  TShortCut FKeyClose = scNone;
  TShortCut FKeyToggle = scNone;
  TShortCut FKeyOI = scNone;
  TjoIniFile* FIni = nullptr;
  bool FWinListIdle = true;
  std::string FIniFileName;
  std::string FCurrentFile;
  int FFormWidth = 640;
  int FFormHeight = 480;
  bool FEditorShown = false;
  TjoArrNamedRecords* FDocuments = nullptr;
  TjoDFM_ResourceEditor* FEditor = nullptr;

  // ---- Handlers bound by the layout
  void FormCreate(TObject* Sender);
  void FormDestroy(TObject* Sender);
  void FormActivate(TObject* Sender);
  void FormClose(TObject* Sender, TCloseAction& Action);
  void mi_ExitClick(TObject* Sender);
  void mi_OpenAsFormClick(TObject* Sender);
  void mi_OpenAsTextClick(TObject* Sender);
  void mi_ViewAsFormClick(TObject* Sender);
  void mi_FileSaveAsClick(TObject* Sender);
  void mi_FileCloseEditorClick(TObject* Sender);
  void mi_CloseAllClick(TObject* Sender);
  void mi_ViewWindowListClick(TObject* Sender);
  void mi_OptionsPropertiesClick(TObject* Sender);
  void mi_OptionsFormViewerClick(TObject* Sender);
  void mi_OptionsPackagesClick(TObject* Sender);
  void mi_HelpHelpClick(TObject* Sender);
  void mi_EditStringsClick(TObject* Sender);

  // ---- The two faces
  // The one form-text editor, made on first call.
  TjoDFM_ResourceEditor* GetEditor();
  bool EditorVisible() const;
  void ShowEditor(const std::string& FileName);
  void HideEditor();
  // Resizes the window, keeping it on the screen.
  void SetMainSize(int Width, int Height);

  // ---- Setters of the settings of the same names
  void SetOnly1VF(bool Value);
  void SetStayOnTop(bool Value);
  void SetKeyClose(TShortCut Value);
  void SetKeyToggle(TShortCut Value);
  void SetKeyOI(TShortCut Value);

  // ---- Open, view and save
  // The road of the command line, a drop and the relay: opens a form file the default way;
  // anything else is passed over without a message.
  void OpenByDefault(const std::string& FileName);
  // Finds or makes the document of the file; none when the file is no form file (the
  // record stays, empty). A form text file is converted on opening.
  TjoDesigner* OpenDocument(const std::string& FileName);
  void OpenAsForm(const std::string& FileName);
  void OpenAsText(const std::string& FileName, bool ReadOnly);
  void ShowLiveForm(TjoDesigner* Designer);
  // The text of the designer's document into the editor; false when the user cancelled
  // the question about the text shown before.
  bool OnViewAsText(TjoDesigner* Designer);
  // The designer's live form has gone.
  void OnDesignerClosed(TjoDesigner* Designer);
  // Leaves the editor after asking about unsaved changes; false when the user cancelled.
  bool CloseEditorQuery();
  bool SaveEditorIfNeeded(bool Force);
  // The save routine of Save As and of the close question.
  bool SaveEditorText(TjoDFM_ResourceEditor* Editor, bool Force);
  void CloseAll();
  // The designer whose text editor is this window's editor, or none.
  TjoDesigner* EditorDesigner() const;
  // The documents, oldest first.
  int DocumentCount() const;
  std::string DocumentName(int Index) const;
  TjoDesigner* DocumentDesigner(int Index) const;
  // The program-wide save dialog, made on first use.
  static TSaveDialog* SharedSaveDialog();

  // ---- Forms inside programs (.exe, .dll, .bpl, told by their content)
  // What Open as Form and Open as Text open for a chosen file: for a program,
  // PROGRAM:NAME of its only form or of the one the user picks in the list of its forms;
  // any other file's own name. Empty when nothing opens: the user cancelled, or the
  // program has no form that can be read (the user has been told why).
  std::string FormToOpen(const std::string& FileName);
  // Whether Save As may write `FileName` for the text shown: never the program its form
  // was taken from (the user is told).
  bool MayWriteSavedFile(const std::string& FileName);

  // ---- Window list
  void RefreshWindowMenu();
  void ShowWindowList();

  // ---- The options dialog's view of the settings
  TjoOptionValues GetOptionValues() override;
  void ApplyOptionValues(const TjoOptionValues& Values) override;

  void Dispatch(TMessage& Message) override;
  void Notification(TComponent* AComponent, TOperation Operation) override;
  // Files dropped from the desktop: the first one is taken.
  void DropFiles(const std::vector<std::string>& FileNames);
  // The relay window, while the program runs.
  TFixForm_1245al67_9* RelayWindow() const { return FRelayWindow; }

protected:
  void IdleHook(bool& Done) override;
  void FirstIdleHook() override;
  void KeyPreviewHook(Word& Key, TShiftState Shift) override;

private:
  class TWindowFilter;
  void ReadSettings();
  void WriteSettings();
  // Recomputes the enabled state of a menu from its items, bottom up.
  void UpdateMenuEnabled(TMenuItem* Menu);
  void ApplyFaceLimits();
  void SysCommand(TMessage& Message);
  void ActivateViewer();

  // Deletes a document: frees its designer and closes its live form.
  void DeleteDocument(int Index);
  int IndexOfDesigner(TjoDesigner* Designer) const;
  static bool LiveFormVisible(TjoDesigner* Designer);
  // The editor shows the designer's document; the designer holds the link (its text editor).
  void AttachEditor(TjoDesigner* Designer);
  // The editor forgets its document, which closes unless its live form shows.
  void DetachEditor(TjoDesigner* Keep = nullptr);
  void EditorCompileClick(TObject* Sender);
  void WindowMenuItemClick(TObject* Sender);

  TFixForm_1245al67_9* FRelayWindow = nullptr;
  TWindowFilter* FWindowFilter = nullptr;
  TNotifyEvent FEditorCompile;
};

// Whether the file's content is a binary form file: a resource header for RCDATA given by
// number, then "TPF0".
bool IsBinaryFormFile(const std::string& FileName);
// Whether the file's content is form text ("object", "inherited" or "inline" first).
bool IsTextFormFile(const std::string& FileName);
