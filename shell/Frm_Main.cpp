#include "shell/Frm_Main.h"

#include "foundation/ApEvent.h"
#include "foundation/joLayout.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Keys.h"
#include "resources/ResStrings.h"

#include <algorithm>
#include <vector>

namespace {
// The main forms alive now, to refuse a second one of the same class.
std::vector<TCustomMainForm*>& LiveMainForms() {
  static std::vector<TCustomMainForm*> forms;
  return forms;
}
}  // namespace

LUMORA_CLASS_IMPL(TCustomMainForm) {}

void ShowMainFormErrors(const std::string& Text) {
  Application->MessageBox(Text, Application->Title(), MB_OK | MB_ICONSTOP);
}

TCustomMainForm::TCustomMainForm(TComponent* AOwner) : TForm(AOwner) {
  FCloseOnEsc = false;
  FFirstIdle = true;
  TApplication* app = Application;
  FOldOnException = app->OnException;
  FOldOnMessage = app->OnMessage;
  FOldOnIdle = app->OnIdle;
  app->OnException = MakeMethod<&TCustomMainForm::AppException>(this);
  app->OnMessage = MakeMethod<&TCustomMainForm::AppMessage>(this);
  app->OnIdle = MakeMethod<&TCustomMainForm::AppIdle>(this);
  ShowErrorHook = &ShowMainFormErrors;
  LiveMainForms().push_back(this);
}

TCustomMainForm::~TCustomMainForm() {
  DestroyMainForm();
  auto& live = LiveMainForms();
  live.erase(std::remove(live.begin(), live.end(), this), live.end());
  // The events go back to what they were, unless someone took them over since.
  if (TApplication* app = TApplication::Instance()) {
    if (app->OnException == MakeMethod<&TCustomMainForm::AppException>(this)) app->OnException = FOldOnException;
    if (app->OnMessage == MakeMethod<&TCustomMainForm::AppMessage>(this)) app->OnMessage = FOldOnMessage;
    if (app->OnIdle == MakeMethod<&TCustomMainForm::AppIdle>(this)) app->OnIdle = FOldOnIdle;
  }
  if (live.empty()) ShowErrorHook = nullptr;
}

void TCustomMainForm::CreateMainForm() {
  for (TCustomMainForm* other : LiveMainForms()) {
    if (other != this && other->ClassType() == ClassType())
      throw EComponentError(Format(ResStr::SMainFormInstanceTwice, std::string(ClassName())));
  }
  ReadLayouts(this);
  DoCreate();
}

void TCustomMainForm::DestroyMainForm() {
  if (FDestroyDone) return;
  FDestroyDone = true;
  DoDestroy();
}

void TCustomMainForm::IdleHook(bool&) {}

void TCustomMainForm::FirstIdleHook() {}

void TCustomMainForm::KeyPreviewHook(Word&, TShiftState) {}

void TCustomMainForm::KeyDown(Word& Key, TShiftState Shift) {
  if (FCloseOnEsc && Key == VK_ESCAPE) {
    Key = 0;
    Close();
  } else if (Key != 0) {
    TForm::KeyDown(Key, Shift);
  }
}

void TCustomMainForm::AppException(TObject*, Exception* E) {
  DeferError(E ? E->Message() : std::string());
}

void TCustomMainForm::AppMessage(TMsg& Msg, bool& Handled) {
  if (Msg.message < WM_KEYFIRST || Msg.message > WM_KEYLAST) return;
  Word key = static_cast<Word>(Msg.wParam);
  KeyPreviewHook(key, KeyDataToShiftState(Msg.lParam));
  Handled = key == 0;
  // Key presses go on to the active form's shortcuts (its menu first), so that the menu
  // of a live form or of the editor works although every key comes here first. Typed
  // characters do not: their codes would read as the virtual keys of other shortcuts.
  if (!Handled && (Msg.message == WM_KEYDOWN || Msg.message == WM_SYSKEYDOWN)) {
    if (TCustomForm* form = Screen->ActiveCustomForm()) {
      TWMKey keyMsg;
      keyMsg.Msg = Msg.message;
      keyMsg.CharCode = key;
      keyMsg.KeyData = Msg.lParam;
      Handled = form->IsShortCut(keyMsg);
    }
  }
}

void TCustomMainForm::AppIdle(TObject*, bool& Done) {
  if (FFirstIdle) {
    FFirstIdle = false;
    FirstIdleHook();
  }
  DoApplicationIdle();
  IdleHook(Done);
  // Queued errors are shown at the next idle pass, not at the next input, which may be long.
  if (TStringList* errors = DeferredErrors(); errors && errors->Count() > 0) Done = false;
}
