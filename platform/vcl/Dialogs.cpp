#include "platform/vcl/Dialogs.h"

#include "platform/vcl/Charsets.h"

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
