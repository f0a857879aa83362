#pragma once
// Message dialogs and the test seam through which their questions can be answered
// without a person: answers queued in advance are taken first, then a hook, and only
// then does a real modal dialog appear.

#include "platform/vcl/Messages.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

enum TMsgDlgType : std::uint8_t { mtWarning, mtError, mtInformation, mtConfirmation, mtCustom };
enum TMsgDlgBtn : std::uint8_t { mbYes, mbNo, mbOK, mbCancel, mbAbort, mbRetry, mbIgnore, mbAll, mbNoToAll, mbYesToAll, mbHelp };
using TMsgDlgButtons = std::uint16_t;  // 1 << TMsgDlgBtn
constexpr TMsgDlgButtons MsgDlgButton(TMsgDlgBtn b) { return static_cast<TMsgDlgButtons>(1u << b); }
constexpr TMsgDlgButtons mbYesNoCancel = MsgDlgButton(mbYes) | MsgDlgButton(mbNo) | MsgDlgButton(mbCancel);
constexpr TMsgDlgButtons mbOKCancel = MsgDlgButton(mbOK) | MsgDlgButton(mbCancel);
constexpr TMsgDlgButtons mbAbortRetryIgnore = MsgDlgButton(mbAbort) | MsgDlgButton(mbRetry) | MsgDlgButton(mbIgnore);

// One question put to the user, as a hook sees it.
struct TUserQuestion {
  bool IsMessageBox = false;  // Application->MessageBox (flags, ID* answers) or MessageDlg (mr* answers)
  std::string Caption;
  std::string Text;
  TMsgDlgType DlgType = mtInformation;
  TMsgDlgButtons Buttons = 0;
  unsigned Flags = 0;  // MB_* of a message box
};

using TUserQuestionHook = std::function<int(const TUserQuestion&)>;

// The answer for the next question, and the one after; each question takes one.
void PushNextAnswer(int answer);
// Answers still queued.
int PendingAnswers();
void ClearNextAnswers();
// Answers every question that finds no queued answer; an empty hook removes it.
void SetUserQuestionHook(TUserQuestionHook hook);
// The questions asked so far (oldest first), and forgetting them.
const std::vector<TUserQuestion>& AskedQuestions();
void ClearAskedQuestions();

// Puts a question: a queued answer, else the hook, else a modal dialog.
int AskUser(const TUserQuestion& question);

// A message dialog of the given kind with the given buttons; returns the mr* result.
int MessageDlg(const std::string& msg, TMsgDlgType type, TMsgDlgButtons buttons, int helpCtx = 0);
// A message dialog with an explicit caption.
int MessageDlgCaption(const std::string& caption, const std::string& msg, TMsgDlgType type, TMsgDlgButtons buttons);
// An information box with an OK button, captioned with the application title.
void ShowMessage(const std::string& msg);
// A message box with MB_* flags; returns the ID* answer.
int MessageBoxQuestion(const std::string& text, const std::string& caption, unsigned flags);

// The title used when a dialog has no caption of its own (the application's title).
void SetDefaultDialogCaption(const std::string& caption);
const std::string& DefaultDialogCaption();

// ---------------------------------------------------------------------------------------
// The common dialogs as components

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"

class QDialog;
class TOpenDialog;
class TFontDialog;
class TFindDialog;

class TCommonDialog : public TComponent {
  LUMORA_CLASS(TCommonDialog, TComponent)
public:
  explicit TCommonDialog(TComponent* owner);
  bool Ctl3D() const { return FCtl3D; }
  void SetCtl3D(bool value) { FCtl3D = value; }
  int HelpContext() const { return FHelpContext; }
  void SetHelpContext(int value) { FHelpContext = value; }
  TNotifyEvent OnClose;
  TNotifyEvent OnShow;
  // Runs the dialog; true when the user confirmed.
  virtual bool Execute() = 0;

protected:
  bool FCtl3D = true;
  int FHelpContext = 0;
};

LUMORA_ENUM(TOpenOption, ofReadOnly, ofOverwritePrompt, ofHideReadOnly, ofNoChangeDir, ofShowHelp, ofNoValidate,
            ofAllowMultiSelect, ofExtensionDifferent, ofPathMustExist, ofFileMustExist, ofCreatePrompt, ofShareAware,
            ofNoReadOnlyReturn, ofNoTestFileCreate, ofNoNetworkButton, ofNoLongNames, ofOldStyleDialog,
            ofNoDereferenceLinks, ofEnableIncludeNotify, ofEnableSizing)
LUMORA_SET(TOpenOptions, TOpenOption)
LUMORA_ENUM(TFileEditStyle, fsEdit, fsComboBox)
using TCloseQueryDialogEvent = TCloseQueryEvent;
LUMORA_EVENT(TIncludeItemEvent, void(void* OFN, bool& Include))

class TOpenDialog : public TCommonDialog {
  LUMORA_CLASS(TOpenDialog, TCommonDialog)
public:
  explicit TOpenDialog(TComponent* owner);
  ~TOpenDialog() override;
  const std::string& DefaultExt() const { return FDefaultExt; }
  void SetDefaultExt(const std::string& value) { FDefaultExt = value; }
  TFileEditStyle FileEditStyle() const { return FFileEditStyle; }
  void SetFileEditStyle(TFileEditStyle value) { FFileEditStyle = value; }
  const std::string& FileName() const { return FFileName; }
  void SetFileName(const std::string& value) { FFileName = value; }
  // All chosen files (more than one with ofAllowMultiSelect).
  TStrings* Files() const { return FFiles; }
  // "Text files|*.txt|All files|*.*": description and pattern pairs.
  const std::string& Filter() const { return FFilter; }
  void SetFilter(const std::string& value) { FFilter = value; }
  int FilterIndex() const { return FFilterIndex; }
  void SetFilterIndex(int value) { FFilterIndex = value; }
  TStrings* HistoryList() const { return FHistoryList; }
  void SetHistoryList(TStrings* value) { FHistoryList->Assign(value); }
  const std::string& InitialDir() const { return FInitialDir; }
  void SetInitialDir(const std::string& value) { FInitialDir = value; }
  TOpenOptions Options() const { return FOptions; }
  void SetOptions(TOpenOptions value) { FOptions = value; }
  const std::string& Title() const { return FTitle; }
  void SetTitle(const std::string& value) { FTitle = value; }
  TCloseQueryDialogEvent OnCanClose;
  TNotifyEvent OnFolderChange;
  TNotifyEvent OnSelectionChange;
  TNotifyEvent OnTypeChange;
  TIncludeItemEvent OnIncludeItem;
  bool Execute() override;
  // Whether this is a save dialog.
  virtual bool Saving() const { return false; }

protected:
  std::string FDefaultExt;
  TFileEditStyle FFileEditStyle = fsEdit;
  std::string FFileName;
  TStringList* FFiles;
  std::string FFilter;
  int FFilterIndex = 1;
  TStringList* FHistoryList;
  std::string FInitialDir;
  TOpenOptions FOptions{ofHideReadOnly};
  std::string FTitle;
};

class TSaveDialog : public TOpenDialog {
  LUMORA_CLASS(TSaveDialog, TOpenDialog)
public:
  explicit TSaveDialog(TComponent* owner) : TOpenDialog(owner) {}
  bool Saving() const override { return true; }
};

// The file name the next file dialog gives without showing itself ("" cancels it).
void PushNextFileName(const std::string& fileName);
// Answers every file dialog that finds no queued name: return false to cancel, or set
// the dialog's FileName and return true.
void SetFileDialogHook(std::function<bool(TOpenDialog&)> hook);

LUMORA_ENUM(TFontDialogDevice, fdScreen, fdPrinter, fdBoth)
LUMORA_ENUM(TFontDialogOption, fdAnsiOnly, fdTrueTypeOnly, fdEffects, fdFixedPitchOnly, fdForceFontExist,
            fdNoFaceSel, fdNoOEMFonts, fdNoSimulations, fdNoSizeSel, fdNoStyleSel, fdNoVectorFonts, fdShowHelp,
            fdWysiwyg, fdLimitSize, fdScalableOnly, fdApplyButton)
LUMORA_SET(TFontDialogOptions, TFontDialogOption)
LUMORA_EVENT(TFDApplyEvent, void(TObject* Sender, void* Wnd))

class TFontDialog : public TCommonDialog {
  LUMORA_CLASS(TFontDialog, TCommonDialog)
public:
  explicit TFontDialog(TComponent* owner);
  ~TFontDialog() override;
  TFont* Font() const { return FFont; }
  void SetFont(TFont* value) { FFont->Assign(value); }
  TFontDialogDevice Device() const { return FDevice; }
  void SetDevice(TFontDialogDevice value) { FDevice = value; }
  int MinFontSize() const { return FMinFontSize; }
  void SetMinFontSize(int value) { FMinFontSize = value; }
  int MaxFontSize() const { return FMaxFontSize; }
  void SetMaxFontSize(int value) { FMaxFontSize = value; }
  TFontDialogOptions Options() const { return FOptions; }
  void SetOptions(TFontDialogOptions value) { FOptions = value; }
  TFDApplyEvent OnApply;
  bool Execute() override;

private:
  TFont* FFont;
  TFontDialogDevice FDevice = fdScreen;
  int FMinFontSize = 0;
  int FMaxFontSize = 0;
  TFontDialogOptions FOptions{fdEffects};
};

// Answers every font dialog: return false to cancel, or change the dialog's Font and
// return true.
void SetFontDialogHook(std::function<bool(TFontDialog&)> hook);

LUMORA_ENUM(TColorDialogOption, cdFullOpen, cdPreventFullOpen, cdShowHelp, cdSolidColor, cdAnyColor)
LUMORA_SET(TColorDialogOptions, TColorDialogOption)

class TColorDialog : public TCommonDialog {
  LUMORA_CLASS(TColorDialog, TCommonDialog)
public:
  explicit TColorDialog(TComponent* owner);
  ~TColorDialog() override;
  TColor Color() const { return FColor; }
  void SetColor(TColor value) { FColor = value; }
  TStrings* CustomColors() const { return FCustomColors; }
  void SetCustomColors(TStrings* value) { FCustomColors->Assign(value); }
  TColorDialogOptions Options() const { return FOptions; }
  void SetOptions(TColorDialogOptions value) { FOptions = value; }
  bool Execute() override;

private:
  TColor FColor = clBlack;
  TStringList* FCustomColors;
  TColorDialogOptions FOptions;
};

LUMORA_ENUM(TPrintRange, prAllPages, prSelection, prPageNums)
LUMORA_ENUM(TPrintDialogOption, poPrintToFile, poPageNums, poSelection, poWarning, poHelp, poDisablePrintToFile)
LUMORA_SET(TPrintDialogOptions, TPrintDialogOption)

// Printing is not offered on this platform: the print dialogs stream and answer "no".
class TPrintDialog : public TCommonDialog {
  LUMORA_CLASS(TPrintDialog, TCommonDialog)
public:
  explicit TPrintDialog(TComponent* owner) : TCommonDialog(owner) {}
  bool Collate() const { return FCollate; }
  void SetCollate(bool value) { FCollate = value; }
  int Copies() const { return FCopies; }
  void SetCopies(int value) { FCopies = value; }
  int FromPage() const { return FFromPage; }
  void SetFromPage(int value) { FFromPage = value; }
  int MinPage() const { return FMinPage; }
  void SetMinPage(int value) { FMinPage = value; }
  int MaxPage() const { return FMaxPage; }
  void SetMaxPage(int value) { FMaxPage = value; }
  TPrintDialogOptions Options() const { return FOptions; }
  void SetOptions(TPrintDialogOptions value) { FOptions = value; }
  bool PrintToFile() const { return FPrintToFile; }
  void SetPrintToFile(bool value) { FPrintToFile = value; }
  TPrintRange PrintRange() const { return FPrintRange; }
  void SetPrintRange(TPrintRange value) { FPrintRange = value; }
  int ToPage() const { return FToPage; }
  void SetToPage(int value) { FToPage = value; }
  bool Execute() override { return false; }

private:
  bool FCollate = false;
  int FCopies = 0;
  int FFromPage = 0;
  int FMinPage = 0;
  int FMaxPage = 0;
  TPrintDialogOptions FOptions;
  bool FPrintToFile = false;
  TPrintRange FPrintRange = prAllPages;
  int FToPage = 0;
};

class TPrinterSetupDialog : public TCommonDialog {
  LUMORA_CLASS(TPrinterSetupDialog, TCommonDialog)
public:
  explicit TPrinterSetupDialog(TComponent* owner) : TCommonDialog(owner) {}
  bool Execute() override { return false; }
};

LUMORA_ENUM(TFindOption, frDown, frFindNext, frHideMatchCase, frHideWholeWord, frHideUpDown, frMatchCase,
            frDisableMatchCase, frDisableUpDown, frDisableWholeWord, frReplace, frReplaceAll, frWholeWord, frShowHelp)
LUMORA_SET(TFindOptions, TFindOption)

// A modeless search dialog: Find Next raises OnFind with the options set.
class TFindDialog : public TCommonDialog {
  LUMORA_CLASS(TFindDialog, TCommonDialog)
public:
  explicit TFindDialog(TComponent* owner);
  ~TFindDialog() override;
  const std::string& FindText() const { return FFindText; }
  void SetFindText(const std::string& value);
  TFindOptions Options() const { return FOptions; }
  void SetOptions(TFindOptions value);
  // Where the dialog shows (screen coordinates of its top-left corner).
  TPoint Position() const { return FPosition; }
  void SetPosition(TPoint value);
  int Left() const { return FPosition.X; }
  void SetLeft(int value) { SetPosition(Point(value, FPosition.Y)); }
  int Top() const { return FPosition.Y; }
  void SetTop(int value) { SetPosition(Point(FPosition.X, value)); }
  TNotifyEvent OnFind;
  // Shows the dialog (it stays open beside its owner's window); true.
  bool Execute() override;
  void CloseDialog();
  // The dialog window while it exists (its widgets are named for tests: "FindText",
  // "FindNext", "MatchCase", "WholeWord", "Down", "Cancel", ...).
  QDialog* Dialog() const { return FDialog; }

protected:
  virtual void BuildDialog();
  void ReadOptionsFromDialog();
  std::string FFindText;
  TFindOptions FOptions{frDown};
  TPoint FPosition{-1, -1};
  QDialog* FDialog = nullptr;
};

// The search dialog with a replacement: Replace and Replace All raise OnReplace.
class TReplaceDialog : public TFindDialog {
  LUMORA_CLASS(TReplaceDialog, TFindDialog)
public:
  explicit TReplaceDialog(TComponent* owner) : TFindDialog(owner) {}
  const std::string& ReplaceText() const { return FReplaceText; }
  void SetReplaceText(const std::string& value);
  TNotifyEvent OnReplace;

protected:
  void BuildDialog() override;

private:
  std::string FReplaceText;
};
