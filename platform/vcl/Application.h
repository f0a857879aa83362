#pragma once
// The application object (the event loop and its hooks, the title, the handling of
// errors) and the screen (the forms, the active one, the pointer, the fonts).
// Callers include platform/vcl/Forms.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/Messages.h"

#include <exception>
#include <string>
#include <vector>

class TCustomForm;
class TForm;

// (Sender, var Done) has the shape of a close query.
using TIdleEvent = TCloseQueryEvent;
LUMORA_EVENT(TMessageEvent, void(TMsg& Msg, bool& Handled))
LUMORA_EVENT(TExceptionEvent, void(TObject* Sender, Exception* E))
using TShowHintEvent = THintEvent;

// ---------------------------------------------------------------------------------------
// The application

class TApplication : public TComponent {
  LUMORA_CLASS(TApplication, TComponent)
public:
  explicit TApplication(TComponent* owner);
  ~TApplication() override;

  // Connects to Qt (a QApplication must exist by then); called by Run and on first need.
  void Initialize();
  // Shows the main form and runs the event loop until Terminate or the main form closes.
  void Run();
  // Ends Run (and any modal form's loop).
  void Terminate();
  bool Terminated() const { return FTerminated; }
  // Handles every event waiting now, without an idle pass.
  void ProcessMessages();
  // Waits for an event and handles what came (an idle pass runs when the queue drains).
  void HandleMessage();
  // Makes a form owned by the application; the first one is the main form.
  template <class T>
  void CreateForm(T*& reference) {
    T* form = new T(this);
    reference = form;
    if (!FMainForm) FMainForm = form;
  }
  TCustomForm* MainForm() const { return FMainForm; }
  void SetMainForm(TCustomForm* form) { FMainForm = form; }
  bool ShowMainForm() const { return FShowMainForm; }
  void SetShowMainForm(bool value) { FShowMainForm = value; }

  const std::string& Title() const { return FTitle; }
  void SetTitle(const std::string& value);
  // The program's file name.
  std::string ExeName() const;
  const std::string& HelpFile() const { return FHelpFile; }
  void SetHelpFile(const std::string& value) { FHelpFile = value; }
  bool ShowHint() const { return FShowHint; }
  void SetShowHint(bool value) { FShowHint = value; }
  TColor HintColor() const { return FHintColor; }
  void SetHintColor(TColor value) { FHintColor = value; }
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& value);
  bool Active() const;

  void Minimize();
  void Restore();
  void BringToFront();
  // Whether the program's windows are minimised.
  bool IsMinimized() const { return FMinimized; }

  // A message box captioned with the title when no caption is given; returns ID*.
  int MessageBox(const std::string& text, const std::string& caption = {}, unsigned flags = MB_OK);
  // Hands the exception being handled to OnException, or shows it.
  void HandleException(TObject* sender);
  // Shows an error's message in a message box.
  void ShowException(Exception* e);
  // Runs the idle processing once (OnIdle, then the actions' updates when done).
  void Idle(bool& done);

  TIdleEvent OnIdle;
  TMessageEvent OnMessage;
  TExceptionEvent OnException;
  TNotifyEvent OnActivate;
  TNotifyEvent OnDeactivate;
  TNotifyEvent OnHint;
  TShowHintEvent OnShowHint;

  // The process's application object (made on first use).
  static TApplication* Instance();
  // Frees the application object and everything it owns (forms); at the end of main.
  static void Done();

private:
  void HookQt();
  void DeliverException(std::exception_ptr error, TObject* sender);

  TCustomForm* FMainForm = nullptr;
  bool FShowMainForm = true;
  std::string FTitle;
  std::string FHelpFile;
  std::string FHint;
  bool FShowHint = true;
  TColor FHintColor = clInfoBk;
  bool FTerminated = false;
  bool FRunning = false;
  bool FMinimized = false;
  bool FHooked = false;
};

// ---------------------------------------------------------------------------------------
// The screen

class TScreen : public TComponent {
  LUMORA_CLASS(TScreen, TComponent)
public:
  explicit TScreen(TComponent* owner);
  ~TScreen() override;

  TCustomForm* ActiveCustomForm() const { return FActiveForm; }
  // The active form when it is a TForm.
  TForm* ActiveForm() const;
  TWinControl* ActiveControl() const;
  int FormCount() const;
  TForm* Forms(int index) const;
  int CustomFormCount() const { return static_cast<int>(FForms.size()); }
  TCustomForm* CustomForms(int index) const;

  // The pointer shown over every window of the program (crHourGlass while busy);
  // crDefault lets each control show its own.
  TCursor Cursor() const { return FCursor; }
  void SetCursor(TCursor value);
  int Width() const;
  int Height() const;
  int DesktopWidth() const;
  int DesktopHeight() const;
  int PixelsPerInch() const;
  // Names of the installed fonts, sorted.
  TStrings* Fonts();
  TFont* HintFont() const { return FHintFont; }
  TFont* IconFont() const { return FIconFont; }
  TFont* MenuFont() const { return FMenuFont; }

  TNotifyEvent OnActiveControlChange;
  TNotifyEvent OnActiveFormChange;

  // ---- For the layer's own use
  void AddForm(TCustomForm* form);
  void RemoveForm(TCustomForm* form);
  void SetActiveForm(TCustomForm* form);
  static TScreen* Instance();

private:
  std::vector<TCustomForm*> FForms;
  TCustomForm* FActiveForm = nullptr;
  TCursor FCursor = crDefault;
  TStringList* FFonts = nullptr;
  TFont* FHintFont;
  TFont* FIconFont;
  TFont* FMenuFont;
};

// `Application->Title`, `Screen->ActiveForm()`: the objects of the process, made on first use.
struct TApplicationRef {
  TApplication* operator->() const { return TApplication::Instance(); }
  operator TApplication*() const { return TApplication::Instance(); }
};
struct TScreenRef {
  TScreen* operator->() const { return TScreen::Instance(); }
  operator TScreen*() const { return TScreen::Instance(); }
};
inline constexpr TApplicationRef Application{};
inline constexpr TScreenRef Screen{};
