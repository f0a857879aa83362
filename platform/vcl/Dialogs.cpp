#include "platform/vcl/Dialogs.h"

#include "platform/vcl/Charsets.h"
#include "platform/vcl/ControlWidgets.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <deque>

namespace {

std::deque<int>& Answers() {
  static std::deque<int> answers;
  return answers;
}

TUserQuestionHook& Hook() {
  static TUserQuestionHook hook;
  return hook;
}

std::vector<TUserQuestion>& Asked() {
  static std::vector<TUserQuestion> asked;
  return asked;
}

std::string& DefaultCaption() {
  static std::string caption;
  return caption;
}

struct ButtonSpec {
  const char* Caption;
  int Result;
};

// The caption and answer of each dialog button.
constexpr ButtonSpec kDlgButtons[] = {
    {"&Yes", mrYes},     {"&No", mrNo},           {"OK", mrOk},
    {"Cancel", mrCancel}, {"&Abort", mrAbort},    {"&Retry", mrRetry},
    {"&Ignore", mrIgnore}, {"&All", mrAll},       {"N&o to All", mrNoToAll},
    {"Yes to &All", mrYesToAll}, {"&Help", mrNone},
};

const char* const kDlgCaptions[] = {"Warning", "Error", "Information", "Confirm"};

int RunDialog(const TUserQuestion& q) {
  if (!QApplication::instance()) return q.IsMessageBox ? IDCANCEL : mrCancel;
  QMessageBox box;
  box.setObjectName(QStringLiteral("MessageDlg"));
  box.setWindowTitle(AnsiToUnicode(q.Caption));
  box.setText(AnsiToUnicode(q.Text));
  std::vector<std::pair<QAbstractButton*, int>> buttons;
  auto add = [&](const char* caption, int result) {
    QPushButton* b = box.addButton(QString::fromLatin1(caption), QMessageBox::ActionRole);
    buttons.emplace_back(b, result);
    return b;
  };
  QAbstractButton* cancel = nullptr;
  QAbstractButton* first = nullptr;
  if (q.IsMessageBox) {
    switch (q.Flags & MB_ICONMASK) {
      case MB_ICONHAND: box.setIcon(QMessageBox::Critical); break;
      case MB_ICONQUESTION: box.setIcon(QMessageBox::Question); break;
      case MB_ICONEXCLAMATION: box.setIcon(QMessageBox::Warning); break;
      case MB_ICONASTERISK: box.setIcon(QMessageBox::Information); break;
      default: break;
    }
    switch (q.Flags & MB_TYPEMASK) {
      case MB_OKCANCEL:
        first = add("OK", IDOK);
        cancel = add("Cancel", IDCANCEL);
        break;
      case MB_ABORTRETRYIGNORE:
        first = add("&Abort", IDABORT);
        add("&Retry", IDRETRY);
        add("&Ignore", IDIGNORE);
        break;
      case MB_YESNOCANCEL:
        first = add("&Yes", IDYES);
        add("&No", IDNO);
        cancel = add("Cancel", IDCANCEL);
        break;
      case MB_YESNO:
        first = add("&Yes", IDYES);
        add("&No", IDNO);
        break;
      case MB_RETRYCANCEL:
        first = add("&Retry", IDRETRY);
        cancel = add("Cancel", IDCANCEL);
        break;
      default:
        first = cancel = add("OK", IDOK);
        break;
    }
    const unsigned def = (q.Flags & MB_DEFMASK) >> 8;
    if (def < buttons.size()) first = buttons[def].first;
  } else {
    switch (q.DlgType) {
      case mtWarning: box.setIcon(QMessageBox::Warning); break;
      case mtError: box.setIcon(QMessageBox::Critical); break;
      case mtInformation: box.setIcon(QMessageBox::Information); break;
      case mtConfirmation: box.setIcon(QMessageBox::Question); break;
      default: break;
    }
    for (int b = mbYes; b <= mbHelp; ++b) {
      if (!(q.Buttons & MsgDlgButton(static_cast<TMsgDlgBtn>(b)))) continue;
      QAbstractButton* button = add(kDlgButtons[b].Caption, kDlgButtons[b].Result);
      if (!first) first = button;
      if (b == mbCancel || (b == mbOK && !cancel)) cancel = button;
    }
  }
  if (first) box.setDefaultButton(static_cast<QPushButton*>(first));
  if (cancel) box.setEscapeButton(cancel);
  box.exec();
  for (const auto& [button, result] : buttons) {
    if (box.clickedButton() == button) return result;
  }
  return q.IsMessageBox ? IDCANCEL : mrCancel;
}

}  // namespace

void PushNextAnswer(int answer) { Answers().push_back(answer); }
int PendingAnswers() { return static_cast<int>(Answers().size()); }
void ClearNextAnswers() { Answers().clear(); }
void SetUserQuestionHook(TUserQuestionHook hook) { Hook() = std::move(hook); }
const std::vector<TUserQuestion>& AskedQuestions() { return Asked(); }
void ClearAskedQuestions() { Asked().clear(); }
void SetDefaultDialogCaption(const std::string& caption) { DefaultCaption() = caption; }
const std::string& DefaultDialogCaption() { return DefaultCaption(); }

int AskUser(const TUserQuestion& question) {
  Asked().push_back(question);
  if (!Answers().empty()) {
    const int answer = Answers().front();
    Answers().pop_front();
    return answer;
  }
  if (Hook()) return Hook()(question);
  return RunDialog(question);
}

int MessageDlgCaption(const std::string& caption, const std::string& msg, TMsgDlgType type, TMsgDlgButtons buttons) {
  TUserQuestion q;
  q.Caption = caption;
  q.Text = msg;
  q.DlgType = type;
  q.Buttons = buttons;
  return AskUser(q);
}

int MessageDlg(const std::string& msg, TMsgDlgType type, TMsgDlgButtons buttons, int /*helpCtx*/) {
  const std::string caption = type < mtCustom ? kDlgCaptions[type] : DefaultCaption();
  return MessageDlgCaption(caption, msg, type, buttons);
}

void ShowMessage(const std::string& msg) {
  MessageDlgCaption(DefaultCaption(), msg, mtCustom, MsgDlgButton(mbOK));
}

int MessageBoxQuestion(const std::string& text, const std::string& caption, unsigned flags) {
  TUserQuestion q;
  q.IsMessageBox = true;
  q.Caption = caption;
  q.Text = text;
  q.Flags = flags;
  return AskUser(q);
}

// ---------------------------------------------------------------------------------------
// The common dialogs as components

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/MessageLoop.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

std::deque<std::string>& NextFileNames() {
  static std::deque<std::string> names;
  return names;
}

std::function<bool(TOpenDialog&)>& FileHook() {
  static std::function<bool(TOpenDialog&)> hook;
  return hook;
}

std::function<bool(TFontDialog&)>& FontHook() {
  static std::function<bool(TFontDialog&)> hook;
  return hook;
}

// "Text files|*.txt|All|*.*" as Qt's "Text files (*.txt);;All (*.*)".
QString QtFilter(const std::string& filter, QStringList* list = nullptr) {
  const QStringList parts = AnsiToUnicode(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns = parts[i + 1];
    patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
    filters << parts[i] + QStringLiteral(" (") + patterns + QLatin1Char(')');
  }
  if (list) *list = filters;
  return filters.join(QStringLiteral(";;"));
}

}  // namespace

void PushNextFileName(const std::string& fileName) { NextFileNames().push_back(fileName); }
void SetFileDialogHook(std::function<bool(TOpenDialog&)> hook) { FileHook() = std::move(hook); }
void SetFontDialogHook(std::function<bool(TFontDialog&)> hook) { FontHook() = std::move(hook); }

LUMORA_CLASS_IMPL(TCommonDialog) {
  c.Property("Ctl3D", &TCommonDialog::Ctl3D, &TCommonDialog::SetCtl3D).Default(true);
  c.Property("HelpContext", &TCommonDialog::HelpContext, &TCommonDialog::SetHelpContext).Default(0);
}

TCommonDialog::TCommonDialog(TComponent* owner) : TComponent(owner) {}

// ---- TOpenDialog, TSaveDialog

LUMORA_CLASS_IMPL(TOpenDialog) {
  c.Property("DefaultExt", &TOpenDialog::DefaultExt, &TOpenDialog::SetDefaultExt);
  c.Property("FileEditStyle", &TOpenDialog::FileEditStyle, &TOpenDialog::SetFileEditStyle).Default(fsEdit);
  c.Property("FileName", &TOpenDialog::FileName, &TOpenDialog::SetFileName);
  c.Property("Filter", &TOpenDialog::Filter, &TOpenDialog::SetFilter);
  c.Property("FilterIndex", &TOpenDialog::FilterIndex, &TOpenDialog::SetFilterIndex).Default(1);
  c.Property("HistoryList", &TOpenDialog::HistoryList, &TOpenDialog::SetHistoryList);
  c.Property("InitialDir", &TOpenDialog::InitialDir, &TOpenDialog::SetInitialDir);
  c.Property("Options", &TOpenDialog::Options, &TOpenDialog::SetOptions).Default(TOpenOptions{ofHideReadOnly});
  c.Property("Title", &TOpenDialog::Title, &TOpenDialog::SetTitle);
  c.Property("OnCanClose", &TOpenDialog::OnCanClose, &TOpenDialog::OnCanClose);
  c.Property("OnFolderChange", &TOpenDialog::OnFolderChange, &TOpenDialog::OnFolderChange);
  c.Property("OnSelectionChange", &TOpenDialog::OnSelectionChange, &TOpenDialog::OnSelectionChange);
  c.Property("OnTypeChange", &TOpenDialog::OnTypeChange, &TOpenDialog::OnTypeChange);
  c.Property("OnIncludeItem", &TOpenDialog::OnIncludeItem, &TOpenDialog::OnIncludeItem);
}

TOpenDialog::TOpenDialog(TComponent* owner) : TCommonDialog(owner) {
  FFiles = new TStringList();
  FHistoryList = new TStringList();
}

TOpenDialog::~TOpenDialog() {
  delete FFiles;
  delete FHistoryList;
}

bool TOpenDialog::Execute() {
  FFiles->Clear();
  bool ok = false;
  if (!NextFileNames().empty()) {
    const std::string name = NextFileNames().front();
    NextFileNames().pop_front();
    ok = !name.empty();
    if (ok) FFileName = name;
  } else if (FileHook()) {
    ok = FileHook()(*this);
  } else if (QApplication::instance()) {
    QStringList filters;
    const QString filter = QtFilter(FFilter, &filters);
    QFileDialog dialog(nullptr, AnsiToUnicode(FTitle), AnsiToUnicode(FInitialDir), filter);
    dialog.setObjectName(QStringLiteral("FileDialog"));
    dialog.setAcceptMode(Saving() ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    if (FOptions.Contains(ofAllowMultiSelect)) {
      dialog.setFileMode(QFileDialog::ExistingFiles);
    } else if (!Saving() && FOptions.Contains(ofFileMustExist)) {
      dialog.setFileMode(QFileDialog::ExistingFile);
    } else {
      dialog.setFileMode(QFileDialog::AnyFile);
    }
    if (!Saving() || !FOptions.Contains(ofOverwritePrompt)) dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!FDefaultExt.empty()) dialog.setDefaultSuffix(AnsiToUnicode(FDefaultExt));
    if (FFilterIndex >= 1 && FFilterIndex <= filters.size()) dialog.selectNameFilter(filters[FFilterIndex - 1]);
    if (!FFileName.empty()) dialog.selectFile(AnsiToUnicode(FFileName));
    if (OnShow) OnShow(this);
    ok = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    if (ok) {
      for (const QString& f : dialog.selectedFiles()) FFiles->Add(UnicodeToAnsi(f));
      FFileName = FFiles->Strings(0);
      FFilterIndex = static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1;
    }
    if (OnClose) OnClose(this);
  }
  if (ok && FFiles->Count() == 0) FFiles->Add(FFileName);
  return ok;
}

LUMORA_CLASS_IMPL(TSaveDialog) {}

// ---- TFontDialog

LUMORA_CLASS_IMPL(TFontDialog) {
  c.Property("Font", &TFontDialog::Font, &TFontDialog::SetFont);
  c.Property("Device", &TFontDialog::Device, &TFontDialog::SetDevice).Default(fdScreen);
  c.Property("MinFontSize", &TFontDialog::MinFontSize, &TFontDialog::SetMinFontSize).Default(0);
  c.Property("MaxFontSize", &TFontDialog::MaxFontSize, &TFontDialog::SetMaxFontSize).Default(0);
  c.Property("Options", &TFontDialog::Options, &TFontDialog::SetOptions).Default(TFontDialogOptions{fdEffects});
  c.Property("OnApply", &TFontDialog::OnApply, &TFontDialog::OnApply);
}

TFontDialog::TFontDialog(TComponent* owner) : TCommonDialog(owner) { FFont = new TFont(); }

TFontDialog::~TFontDialog() { delete FFont; }

bool TFontDialog::Execute() {
  if (FontHook()) return FontHook()(*this);
  if (!QApplication::instance()) return false;
  bool ok = false;
  QFont initial(ClassicFontFamily(FFont->Name(), -FFont->Height()));
  initial.setPointSize(std::max(1, FFont->Size()));
  initial.setBold(FFont->Style().Contains(fsBold));
  initial.setItalic(FFont->Style().Contains(fsItalic));
  initial.setUnderline(FFont->Style().Contains(fsUnderline));
  initial.setStrikeOut(FFont->Style().Contains(fsStrikeOut));
  if (OnShow) OnShow(this);
  const QFont chosen = QFontDialog::getFont(&ok, initial);
  if (ok) {
    FFont->SetName(chosen.family().toStdString());
    FFont->SetSize(chosen.pointSize() > 0 ? chosen.pointSize() : 8);
    TFontStyles style;
    if (chosen.bold()) style += fsBold;
    if (chosen.italic()) style += fsItalic;
    if (chosen.underline()) style += fsUnderline;
    if (chosen.strikeOut()) style += fsStrikeOut;
    FFont->SetStyle(style);
  }
  if (OnClose) OnClose(this);
  return ok;
}

// ---- TColorDialog

LUMORA_CLASS_IMPL(TColorDialog) {
  c.Property("Color", &TColorDialog::Color, &TColorDialog::SetColor).Default(clBlack);
  c.Property("CustomColors", &TColorDialog::CustomColors, &TColorDialog::SetCustomColors);
  c.Property("Options", &TColorDialog::Options, &TColorDialog::SetOptions).Default(TColorDialogOptions{});
}

TColorDialog::TColorDialog(TComponent* owner) : TCommonDialog(owner) { FCustomColors = new TStringList(); }

TColorDialog::~TColorDialog() { delete FCustomColors; }

bool TColorDialog::Execute() {
  if (!QApplication::instance()) return false;
  if (OnShow) OnShow(this);
  const QColor chosen = QColorDialog::getColor(ColorToQColor(FColor));
  if (OnClose) OnClose(this);
  if (!chosen.isValid()) return false;
  FColor = QColorToColor(chosen);
  return true;
}

// ---- Print dialogs

LUMORA_CLASS_IMPL(TPrintDialog) {
  c.Property("Collate", &TPrintDialog::Collate, &TPrintDialog::SetCollate).Default(false);
  c.Property("Copies", &TPrintDialog::Copies, &TPrintDialog::SetCopies).Default(0);
  c.Property("FromPage", &TPrintDialog::FromPage, &TPrintDialog::SetFromPage).Default(0);
  c.Property("MinPage", &TPrintDialog::MinPage, &TPrintDialog::SetMinPage).Default(0);
  c.Property("MaxPage", &TPrintDialog::MaxPage, &TPrintDialog::SetMaxPage).Default(0);
  c.Property("Options", &TPrintDialog::Options, &TPrintDialog::SetOptions).Default(TPrintDialogOptions{});
  c.Property("PrintToFile", &TPrintDialog::PrintToFile, &TPrintDialog::SetPrintToFile).Default(false);
  c.Property("PrintRange", &TPrintDialog::PrintRange, &TPrintDialog::SetPrintRange).Default(prAllPages);
  c.Property("ToPage", &TPrintDialog::ToPage, &TPrintDialog::SetToPage).Default(0);
}

LUMORA_CLASS_IMPL(TPrinterSetupDialog) {}

// ---- TFindDialog, TReplaceDialog

LUMORA_CLASS_IMPL(TFindDialog) {
  c.Property("FindText", &TFindDialog::FindText, &TFindDialog::SetFindText);
  c.Property("Options", &TFindDialog::Options, &TFindDialog::SetOptions).Default(TFindOptions{frDown});
  c.Property("OnFind", &TFindDialog::OnFind, &TFindDialog::OnFind);
}

TFindDialog::TFindDialog(TComponent* owner) : TCommonDialog(owner) {}

TFindDialog::~TFindDialog() { delete FDialog; }

void TFindDialog::SetFindText(const std::string& value) {
  FFindText = value;
  if (FDialog) {
    if (auto* e = FDialog->findChild<QLineEdit*>(QStringLiteral("FindText"))) e->setText(AnsiToUnicode(value));
  }
}

void TFindDialog::SetOptions(TFindOptions value) {
  FOptions = value;
  if (!FDialog) return;
  if (auto* b = FDialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))) b->setChecked(value.Contains(frMatchCase));
  if (auto* b = FDialog->findChild<QCheckBox*>(QStringLiteral("WholeWord"))) b->setChecked(value.Contains(frWholeWord));
  if (auto* b = FDialog->findChild<QRadioButton*>(QStringLiteral("Down"))) b->setChecked(value.Contains(frDown));
  if (auto* b = FDialog->findChild<QRadioButton*>(QStringLiteral("Up"))) b->setChecked(!value.Contains(frDown));
}

void TFindDialog::SetPosition(TPoint value) {
  FPosition = value;
  if (FDialog && value.X >= 0) FDialog->move(value.X, value.Y);
}

void TFindDialog::ReadOptionsFromDialog() {
  if (!FDialog) return;
  if (auto* e = FDialog->findChild<QLineEdit*>(QStringLiteral("FindText"))) FFindText = UnicodeToAnsi(e->text());
  auto set = [&](TFindOption o, bool on) {
    if (on) {
      FOptions += o;
    } else {
      FOptions -= o;
    }
  };
  if (auto* b = FDialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))) set(frMatchCase, b->isChecked());
  if (auto* b = FDialog->findChild<QCheckBox*>(QStringLiteral("WholeWord"))) set(frWholeWord, b->isChecked());
  if (auto* b = FDialog->findChild<QRadioButton*>(QStringLiteral("Down"))) set(frDown, b->isChecked());
}

void TFindDialog::BuildDialog() {
  FDialog = new QDialog(nullptr, Qt::Dialog | Qt::WindowCloseButtonHint | Qt::WindowTitleHint);
  FDialog->setObjectName(QStringLiteral("FindDialog"));
  FDialog->setWindowTitle(QStringLiteral("Find"));
  auto* grid = new QGridLayout(FDialog);
  auto* label = new QLabel(QStringLiteral("Fi&nd what:"), FDialog);
  auto* edit = new QLineEdit(FDialog);
  edit->setObjectName(QStringLiteral("FindText"));
  label->setBuddy(edit);
  grid->addWidget(label, 0, 0);
  grid->addWidget(edit, 0, 1);
  auto* wholeWord = new QCheckBox(QStringLiteral("Match &whole word only"), FDialog);
  wholeWord->setObjectName(QStringLiteral("WholeWord"));
  auto* matchCase = new QCheckBox(QStringLiteral("Match &case"), FDialog);
  matchCase->setObjectName(QStringLiteral("MatchCase"));
  grid->addWidget(wholeWord, 1, 0, 1, 2);
  grid->addWidget(matchCase, 2, 0, 1, 2);
  auto* direction = new QGroupBox(QStringLiteral("Direction"), FDialog);
  auto* dirLayout = new QHBoxLayout(direction);
  auto* up = new QRadioButton(QStringLiteral("&Up"), direction);
  up->setObjectName(QStringLiteral("Up"));
  auto* down = new QRadioButton(QStringLiteral("&Down"), direction);
  down->setObjectName(QStringLiteral("Down"));
  dirLayout->addWidget(up);
  dirLayout->addWidget(down);
  grid->addWidget(direction, 1, 2, 2, 1);
  wholeWord->setVisible(!FOptions.Contains(frHideWholeWord));
  matchCase->setVisible(!FOptions.Contains(frHideMatchCase));
  direction->setVisible(!FOptions.Contains(frHideUpDown));
  wholeWord->setEnabled(!FOptions.Contains(frDisableWholeWord));
  matchCase->setEnabled(!FOptions.Contains(frDisableMatchCase));
  direction->setEnabled(!FOptions.Contains(frDisableUpDown));
  auto* findNext = new QPushButton(QStringLiteral("&Find Next"), FDialog);
  findNext->setObjectName(QStringLiteral("FindNext"));
  findNext->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), FDialog);
  cancel->setObjectName(QStringLiteral("Cancel"));
  grid->addWidget(findNext, 0, 3);
  grid->addWidget(cancel, 1, 3);
  QObject::connect(findNext, &QPushButton::clicked, FDialog, [this] {
    Guard([this] {
      ReadOptionsFromDialog();
      FOptions += frFindNext;
      FOptions -= frReplace;
      FOptions -= frReplaceAll;
      if (OnFind) OnFind(this);
    });
  });
  QObject::connect(cancel, &QPushButton::clicked, FDialog, [this] { Guard([this] { CloseDialog(); }); });
}

bool TFindDialog::Execute() {
  if (!QApplication::instance()) return false;
  if (!FDialog) BuildDialog();
  SetFindText(FFindText);
  SetOptions(FOptions);
  if (FPosition.X >= 0) FDialog->move(FPosition.X, FPosition.Y);
  if (OnShow) OnShow(this);
  FDialog->show();
  FDialog->raise();
  FDialog->activateWindow();
  return true;
}

void TFindDialog::CloseDialog() {
  if (!FDialog) return;
  FDialog->hide();
  if (OnClose) OnClose(this);
}

LUMORA_CLASS_IMPL(TReplaceDialog) {
  c.Property("ReplaceText", &TReplaceDialog::ReplaceText, &TReplaceDialog::SetReplaceText);
  c.Property("OnReplace", &TReplaceDialog::OnReplace, &TReplaceDialog::OnReplace);
}

void TReplaceDialog::SetReplaceText(const std::string& value) {
  FReplaceText = value;
  if (FDialog) {
    if (auto* e = FDialog->findChild<QLineEdit*>(QStringLiteral("ReplaceText"))) e->setText(AnsiToUnicode(value));
  }
}

void TReplaceDialog::BuildDialog() {
  TFindDialog::BuildDialog();
  FDialog->setObjectName(QStringLiteral("ReplaceDialog"));
  FDialog->setWindowTitle(QStringLiteral("Replace"));
  auto* grid = static_cast<QGridLayout*>(FDialog->layout());
  auto* label = new QLabel(QStringLiteral("Re&place with:"), FDialog);
  auto* edit = new QLineEdit(AnsiToUnicode(FReplaceText), FDialog);
  edit->setObjectName(QStringLiteral("ReplaceText"));
  label->setBuddy(edit);
  grid->addWidget(label, 3, 0);
  grid->addWidget(edit, 3, 1);
  auto* replace = new QPushButton(QStringLiteral("&Replace"), FDialog);
  replace->setObjectName(QStringLiteral("Replace"));
  auto* replaceAll = new QPushButton(QStringLiteral("Replace &All"), FDialog);
  replaceAll->setObjectName(QStringLiteral("ReplaceAll"));
  grid->addWidget(replace, 2, 3);
  grid->addWidget(replaceAll, 3, 3);
  auto fire = [this](bool all) {
    Guard([this, all] {
      ReadOptionsFromDialog();
      if (auto* e = FDialog->findChild<QLineEdit*>(QStringLiteral("ReplaceText"))) FReplaceText = UnicodeToAnsi(e->text());
      FOptions -= frFindNext;
      FOptions -= all ? frReplace : frReplaceAll;
      FOptions += all ? frReplaceAll : frReplace;
      if (OnReplace) OnReplace(this);
    });
  };
  QObject::connect(replace, &QPushButton::clicked, FDialog, [fire] { fire(false); });
  QObject::connect(replaceAll, &QPushButton::clicked, FDialog, [fire] { fire(true); });
}

void RegisterDialogsClasses() {
  RegisterClasses({TCommonDialog::StaticClass(), TOpenDialog::StaticClass(), TSaveDialog::StaticClass(),
                   TFontDialog::StaticClass(), TColorDialog::StaticClass(), TPrintDialog::StaticClass(),
                   TPrinterSetupDialog::StaticClass(), TFindDialog::StaticClass(), TReplaceDialog::StaticClass()});
}
