#include "liveform/joDesigner.h"

#include "liveform/PackConfig.h"
#include "liveform/joObjInsp.h"
#include "platform/vcl/ClassicFrame.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/SystemMenu.h"
#include "resources/ResStrings.h"
#include "shell/CompRes.h"
#include "textedit/DFM_ResEdit.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

std::vector<TjoDesigner*> AllDesigners;
// Host forms activated while their inspector showed: clicks are watched while there is one.
std::vector<TfixFormFFF*> ActiveList;
TjoDesigner* TheActiveDesigner = nullptr;
TShortCut CloseKey = TextToShortCut("Esc");
TShortCut ViewTextKey = TextToShortCut("F12");
TShortCut ShowInspectorKey = TextToShortCut("F11");
std::function<std::uint64_t()> TickSource;

constexpr std::uint64_t KeyGuardOnActivate = 300;
constexpr std::uint64_t KeyGuardOnDeactivate = 500000;
constexpr std::uint64_t ClickInterval = 200;

std::string MenuText(std::string_view Text, TShortCut Key) {
  std::string s(Text);
  const std::string keyText = ShortCutToText(Key);
  if (!keyText.empty()) s += '\t' + keyText;
  return s;
}

// Rewrites the text after the tab of one item in every live form's system menu.
void RewriteShortCutText(WPARAM Command, TShortCut Key) {
  for (int i = 0; i < TjoDesigner::DesignerCount(); ++i) {
    TfixFormFFF* form = TjoDesigner::Designers(i)->HostForm();
    TSystemMenu* menu = form ? GetSystemMenu(form) : nullptr;
    if (!menu) continue;
    const std::string text = menu->ItemText(Command);
    const size_t tab = text.find('\t');
    if (tab == std::string::npos) continue;
    menu->SetItemText(Command, text.substr(0, tab + 1) + ShortCutToText(Key));
  }
}

bool InList(TfixFormFFF* Form) { return std::find(ActiveList.begin(), ActiveList.end(), Form) != ActiveList.end(); }

// Hears when the designer's text editor is destroyed (the designer is no component).
class TjoEditorLink : public TComponent {
public:
  TjoEditorLink(std::function<void()> Gone) : TComponent(nullptr), FGone(std::move(Gone)) {}
  void Notification(TComponent* Component, TOperation Operation) override {
    TComponent::Notification(Component, Operation);
    if (Operation == opRemove && Component == FWatched) {
      FWatched = nullptr;
      FGone();
    }
  }
  void Watch(TComponent* Component) {
    if (FWatched) RemoveFreeNotification(FWatched);
    FWatched = Component;
    if (Component) FreeNotification(Component);
  }

private:
  std::function<void()> FGone;
  TComponent* FWatched = nullptr;
};

bool TextIsEmpty(TjoDFM_ResourceEditor* Editor) {
  TStrings* lines = Editor->RichEdit()->Lines();
  return lines->Count() == 0 || (lines->Count() == 1 && lines->Strings(0).empty());
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Click to select: an application-wide look at left button presses, standing for a mouse
// hook of the thread. Installed while a live form was activated with its inspector shown.

class TjoClickWatch : public QObject {
public:
  static TjoClickWatch* Instance;
  // The time before which a further click passes untouched.
  static std::uint64_t NextClick;

  static void Install() {
    if (Instance) return;
    Instance = new TjoClickWatch(QCoreApplication::instance());
    // Installed last, it looks first: before the controls' own look at input.
    QCoreApplication::instance()->installEventFilter(Instance);
  }
  static void Remove() {
    delete Instance;
    Instance = nullptr;
  }

protected:
  explicit TjoClickWatch(QObject* Parent) : QObject(Parent) {}

  bool eventFilter(QObject* Watched, QEvent* Event) override {
    const QEvent::Type type = Event->type();
    if (type == QEvent::MouseButtonRelease && FSwallowRelease && Watched->isWidgetType() &&
        static_cast<QMouseEvent*>(Event)->button() == Qt::LeftButton) {
      // The release of a press that selected: the control never saw the press.
      FSwallowRelease = false;
      return true;
    }
    if (type != QEvent::MouseButtonPress || !Watched->isWidgetType()) return false;
    auto* mouse = static_cast<QMouseEvent*>(Event);
    if (mouse->button() != Qt::LeftButton) return false;
    // One press travels up the parents when a widget ignores it: it is one click.
    if (Event == FLastEvent && mouse->timestamp() == FLastTimestamp) return false;
    FLastEvent = Event;
    FLastTimestamp = mouse->timestamp();
    bool taken = false;
    TMessageLoop::Instance().Guarded([&] { taken = Click(static_cast<QWidget*>(Watched)); });
    if (taken) FSwallowRelease = true;
    return taken;
  }

private:
  static bool Click(QWidget* Target) {
    // A press on another live form activates it first, as the window system does
    // before the click reaches a window.
    for (int i = 0; i < TjoDesigner::DesignerCount(); ++i) {
      TjoDesigner* d = TjoDesigner::Designers(i);
      TfixFormFFF* f = d->HostForm();
      if (f && d != TheActiveDesigner && f->Widget() == Target->window()) d->FormActivated();
    }
    TjoDesigner* designer = TheActiveDesigner;
    TfixFormFFF* form = designer ? designer->HostForm() : nullptr;
    if (!form || !form->Showing()) return false;
    const std::uint64_t now = TjoDesigner::TickCount();
    if (now < NextClick) return false;
    TFrm_DFM_OI* inspector = designer->Inspector();
    if (!inspector || !inspector->Visible()) return false;
    // Only clicks on the form's client area: the frame, caption and menu bar are the window's.
    QWidget* client = form->ClientWidget();
    if (Target->window() != form->Widget() || !client || !(client == Target || client->isAncestorOf(Target))) {
      return false;
    }
    // The control under the pointer, disabled ones included: the one the press went to
    // (another window of the program may lie over the spot and is not what was clicked).
    TControl* control = TControl::FindControl(Target);
    if (!control || GetParentForm(control) != form) return false;
    TComponent* component = control;
    if (component != form) {
      while (component->Owner() && component->Owner() != form) component = component->Owner();
      if (component->Owner() != form) return false;
    }
    NextClick = now + ClickInterval;
    PostMessage(form, WM_JO_SELECTCOMPONENT, 0, reinterpret_cast<LPARAM>(component));
    return true;
  }

  const QEvent* FLastEvent = nullptr;
  quint64 FLastTimestamp = 0;
  bool FSwallowRelease = false;
};

TjoClickWatch* TjoClickWatch::Instance = nullptr;
std::uint64_t TjoClickWatch::NextClick = 0;

// ---------------------------------------------------------------------------------------
// TfixFormFFF

LUMORA_CLASS_IMPL(TfixFormFFF) {}

TfixFormFFF::TfixFormFFF(TComponent* AOwner) : TForm(AOwner) {
  SetFormStyle(fsNormal);
  SetClassicFrame(true);
  if (TSystemMenu* menu = GetSystemMenu(this)) {
    auto item = [](WPARAM Command, std::string Text) {
      TSystemMenuItem i;
      i.Command = Command;
      i.Text = std::move(Text);
      return i;
    };
    TSystemMenuItem separator;
    separator.Separator = true;
    menu->Append(separator);
    menu->Append(item(SC_JO_LIVEFORM, std::string(ResStr::SLiveForm)));
    menu->Append(item(SC_JO_DEADFORM, std::string(ResStr::SDeadForm)));
    menu->Append(separator);
    menu->Append(item(SC_JO_VIEWASTEXT, MenuText(ResStr::SViewAsText, ViewTextKey)));
    menu->Append(item(SC_JO_SHOWINSPECTOR, MenuText(ResStr::SShowObjectInspector, ShowInspectorKey)));
    menu->CheckRadioItem(SC_JO_LIVEFORM, SC_JO_DEADFORM, SC_JO_LIVEFORM);
  }
}

TfixFormFFF::~TfixFormFFF() {
  if (TjoDesigner* designer = FLiveDesigner) designer->FormDestroyed(this);
  ActiveList.erase(std::remove(ActiveList.begin(), ActiveList.end(), this), ActiveList.end());
  if (ActiveList.empty()) TjoClickWatch::Remove();
}

bool TfixFormFFF::KeyGuarded() {
  if (KeyGuardUntil == 0) return false;
  if (TjoDesigner::TickCount() < KeyGuardUntil) return true;
  KeyGuardUntil = 0;
  return false;
}

bool TfixFormFFF::IsShortCut(TWMKey& Message) {
  if (KeyGuarded()) return true;
  if (FLiveDesigner) {
    TShiftState shift = KeyDataToShiftState(Message.KeyData);
    if (FLiveDesigner->HostKey(Message.CharCode, shift)) return true;
  }
  return TForm::IsShortCut(Message);
}

void TfixFormFFF::WndProc(TMessage& Message) {
  if (FLiveDesigner && FLiveDesigner->IsDesignMsg(this, Message)) return;
  TForm::WndProc(Message);
}

void TfixFormFFF::Activate() {
  KeyGuardUntil = TjoDesigner::TickCount() + KeyGuardOnActivate;
  if (FLiveDesigner) FLiveDesigner->FormActivated();
  TForm::Activate();
}

void TfixFormFFF::Deactivate() {
  KeyGuardUntil = TjoDesigner::TickCount() + KeyGuardOnDeactivate;
  TForm::Deactivate();
}

// ---------------------------------------------------------------------------------------
// TjoDesigner

LUMORA_CLASS_IMPL(TjoDesigner) {}

TjoDesigner::TjoDesigner() {
  static const int unloadHook = AddModuleUnloadProc([](HMODULE Module) { PackageUnloading(Module); });
  (void)unloadHook;
  AllDesigners.push_back(this);
}

TjoDesigner::~TjoDesigner() {
  if (TheActiveDesigner == this) TheActiveDesigner = nullptr;
  delete FEditorLink;
  FEditorLink = nullptr;
  FTextEditor = nullptr;
  if (FInspector) {
    TFrm_DFM_OI* inspector = FInspector;
    FInspector = nullptr;
    inspector->OnFormDestroyed = nullptr;
    delete inspector;
  }
  if (TfixFormFFF* form = FForm) {
    FForm = nullptr;
    form->FLiveDesigner = nullptr;
    form->SetDesigner(nullptr);
    if (OwnsForm) delete form;
  }
  if (FDocument) {
    TjoComponentResource* document = FDocument;
    document->OnChange = nullptr;
    FDocument = nullptr;
    delete document;
  }
  if (OnDestroy) OnDestroy(this);
  AllDesigners.erase(std::remove(AllDesigners.begin(), AllDesigners.end(), this), AllDesigners.end());
}

TjoComponentResource* TjoDesigner::Document() {
  if (!FDocument) {
    FDocument = new TjoComponentResource(nullptr);
    FDocument->OnChange = MakeMethod<&TjoDesigner::DocumentChanged>(this);
  }
  return FDocument;
}

TfixFormFFF* TjoDesigner::Form() {
  if (!FForm) {
    // Every class a form can name comes from the loaded packages.
    EnsurePackagesLoaded();
    FForm = new TfixFormFFF(Application);
    FForm->FLiveDesigner = this;
    NeedsReload = true;
  }
  if (NeedsReload) {
    NeedsReload = false;
    // A shown window is painted once, when everything has been read into it.
    QWidget* window = FForm->Widget();
    const bool paints = window && window->updatesEnabled();
    if (paints) window->setUpdatesEnabled(false);
    try {
      Document()->AssignTo(FForm);
    } catch (...) {
      if (paints) window->setUpdatesEnabled(true);
      throw;
    }
    if (paints) window->setUpdatesEnabled(true);
    // Components read in take the state of the mode.
    if (FMode != jdmLiveForm) ApplyMode();
  }
  return FForm;
}

void TjoDesigner::DocumentChanged(TObject*) {
  NeedsReload = true;
  // The text view follows a new state of the document; a state that came from the text
  // itself leaves it as the user has it (still to be saved).
  if (FTextEditor && std::string_view(FTextEditor->SourceStream()) != FDocument->Data()) LoadTextEditor();
  if (FInspector && !FInspector->IsEmpty()) FInspector->Assign(FDocument);
  if (FForm && FForm->Showing()) Form();
}

void TjoDesigner::CompileText() {
  if (!FTextEditor) return;
  // A parser error leaves here, with the caret on the line it names.
  FTextEditor->Compile();
  const std::string& stream = FTextEditor->SourceStream();
  if (stream.empty() || Document()->Data() == std::string_view(stream)) return;
  TMemoryStream compiled(stream);
  Document()->LoadFromStream(compiled, false);
}

void TjoDesigner::Show() {
  // The live form is not shown while the text has errors. The text stays marked
  // modified: it is in the document now, not yet in a file.
  if (FTextEditor && FTextEditor->Modified()) CompileText();
  TfixFormFFF* form = Form();
  if (form->WindowState() == wsMinimized) form->SetWindowState(wsNormal);
  form->Show();
  ApplyMode();
}

void TjoDesigner::SetMode(std::uint8_t Value) {
  if (FMode == Value) return;
  FMode = Value;
  ApplyMode();
  NeedsRepaint = true;
  Repaint();
}

void TjoDesigner::ApplyMode() {
  TfixFormFFF* form = FForm;
  if (!form) return;
  if (FMode == jdmLiveForm) {
    form->SetDesigner(nullptr);
    form->SetDesignState(false);
  } else {
    form->SetDesigner(this);
    form->SetDesignState(true);
  }
  if (TSystemMenu* menu = GetSystemMenu(form)) {
    const WPARAM check = FMode == jdmLiveForm ? SC_JO_LIVEFORM : FMode == jdmDeadForm ? SC_JO_DEADFORM : SC_JO_DESIGNFORM;
    menu->CheckRadioItem(SC_JO_LIVEFORM, SC_JO_DEADFORM, check);
  }
}

void TjoDesigner::Repaint() {
  // Every control repaints in the new state; the window keeps its place, size, order
  // and activation.
  QWidget* window = FForm ? FForm->Widget() : nullptr;
  if (!window) return;
  window->update();
  for (QWidget* w : window->findChildren<QWidget*>()) w->update();
  NeedsRepaint = false;
}

void TjoDesigner::SetTextEditor(TjoDFM_ResourceEditor* Value) {
  if (FTextEditor == Value) return;
  FTextEditor = Value;
  if (!FEditorLink) FEditorLink = new TjoEditorLink([this] { TextEditorGone(); });
  static_cast<TjoEditorLink*>(FEditorLink)->Watch(Value);
  if (FTextEditor) LoadTextEditor();
}

void TjoDesigner::LoadTextEditor() {
  TStringList text;
  Document()->AssignTo(&text);
  FTextEditor->LoadLines(&text, Document()->Data());
  FTextEditor->SetText(Caption);
}

void TjoDesigner::TextEditorGone() { FTextEditor = nullptr; }

void TjoDesigner::ShowText() {
  if (FTextEditor && TextIsEmpty(FTextEditor)) {
    LoadTextEditor();
  } else if (!FTextEditor && OnShowText) {
    OnShowText(this);
  }
  if (!FTextEditor) return;
  FTextEditor->SetVisible(true);
  if (TCustomForm* window = GetParentForm(FTextEditor)) {
    window->Show();
    window->BringToFront();
  }
}

bool TjoDesigner::UsesModule(HMODULE Module) const {
  if (!FForm) return false;
  std::function<bool(const TComponent*)> uses = [&](const TComponent* Owner) {
    for (int i = 0; i < Owner->ComponentCount(); ++i) {
      const TComponent* c = Owner->Components(i);
      if (c->ClassType()->Module() == Module || uses(c)) return true;
    }
    return false;
  };
  return uses(FForm);
}

void TjoDesigner::PackageUnloading(HMODULE Module) {
  // The classes' code goes with the package: the forms built from them go before.
  // (A designer told of its lost form may go too: the list is taken first.)
  const std::vector<TjoDesigner*> designers = AllDesigners;
  for (TjoDesigner* designer : designers) {
    const bool alive = std::find(AllDesigners.begin(), AllDesigners.end(), designer) != AllDesigners.end();
    if (alive && designer->UsesModule(Module)) delete designer->FForm;
  }
}

void TjoDesigner::ShowInspector() {
  if (!FInspector) {
    FInspector = new TFrm_DFM_OI(Application);
    FInspector->OnFormDestroyed = [this](TObject*) { InspectorDestroyed(); };
    FInspector->OnSelectComponent = [](TObject*, const std::string&, const std::string&) {};
  }
  if (FInspector->IsEmpty()) FInspector->Assign(Document());
  FInspector->Show();
  FInspector->BringToFront();
  InspectorWanted = true;
  if (TheActiveDesigner == this) WatchClicks();
}

void TjoDesigner::InspectorDestroyed() { FInspector = nullptr; }

void TjoDesigner::WatchClicks() {
  if (!FForm) return;
  if (!InList(FForm)) ActiveList.push_back(FForm);
  TjoClickWatch::Install();
}

void TjoDesigner::FormActivated() {
  if (TheActiveDesigner != this) {
    if (TjoDesigner* previous = TheActiveDesigner) {
      if (previous->FInspector && previous->FInspector->Visible()) {
        previous->FInspector->Hide();
        previous->InspectorWanted = true;
      }
    }
    TheActiveDesigner = this;
    if (InspectorWanted && FInspector && !FInspector->Visible()) {
      // Shown beside the form without taking the activation from it.
      if (QWidget* w = FInspector->Handle()) w->setAttribute(Qt::WA_ShowWithoutActivating, true);
      FInspector->SetVisible(true);
      if (QWidget* w = FInspector->Widget()) w->setAttribute(Qt::WA_ShowWithoutActivating, false);
    }
  }
  if (FInspector && FInspector->Visible()) WatchClicks();
}

void TjoDesigner::FormDestroyed(TfixFormFFF* AForm) {
  if (AForm != FForm) return;
  AForm->FLiveDesigner = nullptr;
  AForm->SetDesigner(nullptr);
  FForm = nullptr;
  NeedsReload = true;
  if (FInspector) FInspector->Hide();
  DoLiveFormGone();
}

void TjoDesigner::DoLiveFormGone() {
  if (OnLiveFormGone) OnLiveFormGone(this);
}

void TjoDesigner::DoNotify2() {
  if (OnNotify2) OnNotify2(this);
}

void TjoDesigner::DoNotify3() {
  if (OnNotify3) OnNotify3(this);
}

bool TjoDesigner::HostKey(Word Key, TShiftState Shift) {
  const TShortCut key = ShortCut(Key, Shift);
  if (key == scNone) return false;
  if (key == CloseKey) {
    if (FForm) FForm->Release();
    return true;
  }
  if (key == ViewTextKey) {
    ShowText();
    return true;
  }
  if (key == ShowInspectorKey) {
    ShowInspector();
    return true;
  }
  return false;
}

void TjoDesigner::SelectInInspector(TComponent* Component) {
  if (!FForm || !FInspector || !Component) return;
  // The component may have gone since the click was posted.
  bool owned = Component == FForm;
  for (int i = 0; !owned && i < FForm->ComponentCount(); ++i) owned = FForm->Components(i) == Component;
  if (!owned) return;
  FInspector->SelectComponent(Component->Name(), Component->ClassName());
}

TCustomForm* TjoDesigner::GetCustomForm() { return FForm; }

void TjoDesigner::SetCustomForm(TCustomForm* Value) { FForm = dynamic_cast<TfixFormFFF*>(Value); }

bool TjoDesigner::GetIsControl() { return FForm ? FForm->IsControl() : false; }

void TjoDesigner::SetIsControl(bool Value) {
  if (FForm) FForm->SetIsControl(Value);
}

bool TjoDesigner::IsDesignMsg(TControl* Sender, TMessage& Message) {
  TfixFormFFF* form = FForm;
  if (form && Sender == form) {
    if (Message.Msg == WM_SYSCOMMAND) {
      switch (Message.WParam) {
        case SC_JO_LIVEFORM: SetMode(jdmLiveForm); return true;
        case SC_JO_DEADFORM: SetMode(jdmDeadForm); return true;
        case SC_JO_DESIGNFORM: SetMode(jdmDesignForm); return true;
        case SC_JO_VIEWASTEXT: ShowText(); return true;
        case SC_JO_SHOWINSPECTOR: ShowInspector(); return true;
        default: break;
      }
      if ((Message.WParam & 0xFFF0) == SC_CLOSE) {
        form->Hide();
        return true;
      }
    } else if (Message.Msg == WM_CLOSE) {
      form->Release();
      return true;
    }
  }
  if (OnMessage) {
    bool handled = false;
    OnMessage(this, form, handled, Message);
    if (handled) return true;
  }
  if (Message.Msg == WM_JO_SELECTCOMPONENT) {
    SelectInInspector(reinterpret_cast<TComponent*>(Message.LParam));
    return true;
  }
  if (FMode != jdmDeadForm) return false;
  if (Message.Msg >= WM_KEYFIRST && Message.Msg <= WM_KEYLAST) {
    // The form's own key handling: its shortcuts and the designer's keys.
    if (form && (Message.Msg == WM_KEYDOWN || Message.Msg == WM_SYSKEYDOWN)) {
      TWMKey key;
      key.Msg = Message.Msg;
      key.CharCode = static_cast<Word>(Message.WParam);
      key.KeyData = Message.LParam;
      form->IsShortCut(key);
    }
    return true;
  }
  return Message.Msg >= WM_MOUSEFIRST && Message.Msg <= WM_MOUSELAST;
}

// ---- Process-wide

int TjoDesigner::DesignerCount() { return static_cast<int>(AllDesigners.size()); }

TjoDesigner* TjoDesigner::Designers(int Index) { return AllDesigners.at(static_cast<size_t>(Index)); }

TjoDesigner* TjoDesigner::ActiveDesigner() { return TheActiveDesigner; }

void TjoDesigner::MainFormActivated() {
  TjoDesigner* previous = TheActiveDesigner;
  TheActiveDesigner = nullptr;
  if (previous && previous->FInspector && previous->FInspector->Visible()) {
    previous->FInspector->Hide();
    previous->InspectorWanted = true;
  }
}

TShortCut TjoDesigner::CloseShortCut() { return CloseKey; }

void TjoDesigner::SetCloseShortCut(TShortCut Value) { CloseKey = Value; }

TShortCut TjoDesigner::ViewTextShortCut() { return ViewTextKey; }

void TjoDesigner::SetViewTextShortCut(TShortCut Value) {
  ViewTextKey = Value;
  RewriteShortCutText(SC_JO_VIEWASTEXT, Value);
}

TShortCut TjoDesigner::ShowInspectorShortCut() { return ShowInspectorKey; }

void TjoDesigner::SetShowInspectorShortCut(TShortCut Value) {
  ShowInspectorKey = Value;
  RewriteShortCutText(SC_JO_SHOWINSPECTOR, Value);
}

std::uint64_t TjoDesigner::TickCount() {
  if (TickSource) return TickSource();
  using namespace std::chrono;
  return static_cast<std::uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void TjoDesigner::SetTickSource(std::function<std::uint64_t()> Source) {
  TickSource = std::move(Source);
  // Times taken from another clock mean nothing to this one.
  TjoClickWatch::NextClick = 0;
}

bool TjoDesigner::ClickWatchInstalled() { return TjoClickWatch::Instance != nullptr; }
