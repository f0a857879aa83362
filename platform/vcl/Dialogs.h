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
