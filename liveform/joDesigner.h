#pragma once
// A form file opened "as Form": the designer links one form document to its live window
// (the host form, into which the form stream is read), its object inspector and, while it
// is open, its text view. The window is either "Live Form" (the controls work as in the
// user's program) or "Dead Form" (the form is in design state and takes no input); its
// system menu carries the designer's commands, and a click on a control while the
// inspector shows selects that control's component there.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Forms.h"

#include <cstdint>
#include <functional>
#include <string>

class TjoComponentResource;
class TjoDesigner;
class TjoDFM_ResourceEditor;
class TFrm_DFM_OI;

LUMORA_EVENT(TjoDesignerEvent, void(TjoDesigner* Sender))
LUMORA_EVENT(TjoDesignerMessageEvent, void(TjoDesigner* Sender, TCustomForm* Form, bool& Handled, TMessage& Message))

// Posted to a live form: select the component in lParam in the form's inspector.
constexpr std::uint32_t WM_JO_SELECTCOMPONENT = 14022;
// System-menu commands of a live form.
constexpr WPARAM SC_JO_LIVEFORM = 13898;
constexpr WPARAM SC_JO_DESIGNFORM = 13899;  // a second design mode, not in the menu
constexpr WPARAM SC_JO_DEADFORM = 13900;
constexpr WPARAM SC_JO_VIEWASTEXT = 13901;
constexpr WPARAM SC_JO_SHOWINSPECTOR = 13902;

// Modes of a live form.
constexpr std::uint8_t jdmLiveForm = 0;
constexpr std::uint8_t jdmDeadForm = 1;
constexpr std::uint8_t jdmDesignForm = 2;

// The host form: made without a form resource of its own (the document's stream is read
// into it), with the classic frame whose system menu carries the designer's commands.
class TfixFormFFF : public TForm {
  LUMORA_CLASS(TfixFormFFF, TForm)
public:
  explicit TfixFormFFF(TComponent* AOwner);
  ~TfixFormFFF() override;

  TjoDesigner* LiveDesigner() const { return FLiveDesigner; }
  // A tick count before which keys are ignored (0: none).
  std::uint64_t KeyGuardUntil = 0;

  // The designer's keys first (close, view as text, show inspector), unless the key
  // guard holds; then the form's own shortcuts.
  bool IsShortCut(TWMKey& Message) override;
  // Every message passes the designer's filter first, in every mode.
  void WndProc(TMessage& Message) override;

protected:
  void Activate() override;
  void Deactivate() override;

private:
  friend class TjoDesigner;
  // Whether the key guard holds now; a key at or after its time ends it.
  bool KeyGuarded();
  TjoDesigner* FLiveDesigner = nullptr;
};

class TjoDesigner : public TObject, public IDesigner {
  LUMORA_CLASS(TjoDesigner, TObject)
public:
  TjoDesigner();
  ~TjoDesigner() override;

  // ---- Fields
  // The designer frees the host form when it is destroyed.
  bool OwnsForm = true;
  // The form stream must be read into the host form again before showing.
  bool NeedsReload = true;
  // Caption given to the text editor.
  std::string Caption;
  // Set by a mode change; cleared once the window has repainted in the new state.
  bool NeedsRepaint = false;
  // The inspector was shown for this designer and is to follow it.
  bool InspectorWanted = false;
  // Called to make the text view when F12 is used and none exists.
  TjoDesignerEvent OnShowText;
  // The "as Text" view of the same document, or none; the designer does not own it (and
  // forgets it when it is destroyed). An editor attached is filled with the document's
  // text, and the caption goes to its status bar.
  TjoDFM_ResourceEditor* TextEditor() const { return FTextEditor; }
  void SetTextEditor(TjoDFM_ResourceEditor* Value);
  // Raised after the host form was destroyed and detached from the designer.
  TjoDesignerEvent OnLiveFormGone;
  // Two more notifications of the same shape, raised by their virtual operations.
  TjoDesignerEvent OnNotify2;
  TjoDesignerEvent OnNotify3;
  // Sees every message of the host form first.
  TjoDesignerMessageEvent OnMessage;
  TNotifyEvent OnDestroy;

  std::uint8_t Mode() const { return FMode; }
  // When the mode differs: stores it, applies it and repaints the window.
  void SetMode(std::uint8_t Value);
  // The form document, made on first need.
  TjoComponentResource* Document();
  bool HasDocument() const { return FDocument != nullptr; }
  // The host form, made and read from the document on demand.
  TfixFormFFF* Form();
  // The host form as it is now, or none.
  TfixFormFFF* HostForm() const { return FForm; }
  TFrm_DFM_OI* Inspector() const { return FInspector; }

  // ---- Commands
  // Shows the live form. A modified text view is compiled first and its stream becomes
  // the document's; when it does not compile, the parser's error is raised and nothing
  // is shown. The text keeps its modified mark (it is not saved anywhere yet).
  void Show();
  // The text view's text into the document: compiled when it needs it, its stream handed
  // to the document when it differs. Raises the parser's error when it does not compile.
  void CompileText();
  // F12: the text view of the document.
  void ShowText();
  // F11: the object inspector.
  void ShowInspector();

  // ---- The designer interface, handed to the form in the design modes
  void Modified() override {}
  void Notification(TPersistent*, TOperation) override {}
  TCustomForm* GetCustomForm() override;
  void SetCustomForm(TCustomForm* Value) override;
  bool GetIsControl() override;
  void SetIsControl(bool Value) override;
  bool IsDesignMsg(TControl* Sender, TMessage& Message) override;
  void PaintGrid() override {}
  void ValidateRename(TComponent*, const std::string&, const std::string&) override {}

  // ---- Process-wide
  static int DesignerCount();
  static TjoDesigner* Designers(int Index);
  // The designer whose host form was activated last, or none.
  static TjoDesigner* ActiveDesigner();
  // The program's main window became active: no designer is active any more, and the
  // inspector of the one that was hides until its form is activated again.
  static void MainFormActivated();
  // The close (Esc), view-as-text (F12) and show-inspector (F11) shortcuts. Setting the
  // last two rewrites the text after the tab of their items in every live form's menu.
  static TShortCut CloseShortCut();
  static void SetCloseShortCut(TShortCut Value);
  static TShortCut ViewTextShortCut();
  static void SetViewTextShortCut(TShortCut Value);
  static TShortCut ShowInspectorShortCut();
  static void SetShowInspectorShortCut(TShortCut Value);
  // The milliseconds clock of the key guard and of click-to-select (tests set their own;
  // an empty function restores the real one).
  static std::uint64_t TickCount();
  static void SetTickSource(std::function<std::uint64_t()> Source);
  // Whether clicks on live forms are being watched (the inspector of an activated form shows).
  static bool ClickWatchInstalled();

protected:
  // The host form was lost: raises OnLiveFormGone.
  virtual void DoLiveFormGone();
  virtual void DoNotify2();
  virtual void DoNotify3();

private:
  friend class TfixFormFFF;
  friend class TjoClickWatch;
  void ApplyMode();
  void Repaint();
  void DocumentChanged(TObject* Sender);
  // The host form was activated.
  void FormActivated();
  // The host form is being destroyed: forget it.
  void FormDestroyed(TfixFormFFF* AForm);
  // Selects a component of the host form in the inspector.
  void SelectInInspector(TComponent* Component);
  // The designer's own keys on the host form; true when the key was taken.
  bool HostKey(Word Key, TShiftState Shift);
  void InspectorDestroyed();
  // Enters the host form in the list of forms whose clicks are watched.
  void WatchClicks();

  // Every live form built with a class of a package that is being unloaded closes first.
  static void PackageUnloading(HMODULE Module);
  bool UsesModule(HMODULE Module) const;
  void TextEditorGone();
  void LoadTextEditor();

  std::uint8_t FMode = jdmLiveForm;
  TjoDFM_ResourceEditor* FTextEditor = nullptr;
  TComponent* FEditorLink = nullptr;
  TjoComponentResource* FDocument = nullptr;
  TFrm_DFM_OI* FInspector = nullptr;
  TfixFormFFF* FForm = nullptr;
};
