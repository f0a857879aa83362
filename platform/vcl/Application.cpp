#include "platform/vcl/Application.h"
#include "platform/vcl/ApplicationInternal.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/StdCtrls.h"

#include <QApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyleFactory>
#include <QTextEdit>

#include <algorithm>
#include <vector>

TApplication* gApplication = nullptr;
TScreen* gScreen = nullptr;

// ---------------------------------------------------------------------------------------
// The key and mouse pipeline: what every input event goes through before its widget.

namespace {

bool IsDialogKeyTarget(QWidget* focus, int vk) {
  // Controls that want Enter, Esc or Tab themselves keep them.
  if (qobject_cast<QTextEdit*>(focus) || qobject_cast<QPlainTextEdit*>(focus)) {
    TControl* c = TControl::FindControl(focus);
    auto* memo = dynamic_cast<TCustomMemo*>(c);
    if (vk == VK_RETURN) return memo && !memo->WantReturns();
    if (vk == VK_TAB) return memo && !memo->WantTabs();
    return true;
  }
  return true;
}

// Presses the default or cancel button of a form: Enter and Esc in dialogs.
bool DialogKey(TCustomForm* form, int vk) {
  if (vk != VK_RETURN && vk != VK_ESCAPE) return false;
  std::function<TButton*(TWinControl*)> find = [&](TWinControl* parent) -> TButton* {
    for (int i = 0; i < parent->ControlCount(); ++i) {
      TControl* c = parent->Controls(i);
      if (auto* b = dynamic_cast<TButton*>(c)) {
        if (b->Visible() && b->Enabled() && ((vk == VK_RETURN && b->Default()) || (vk == VK_ESCAPE && b->Cancel()))) {
          return b;
        }
      }
      if (auto* wc = dynamic_cast<TWinControl*>(c); wc && wc->Visible()) {
        if (TButton* b = find(wc)) return b;
      }
    }
    return nullptr;
  };
  if (TButton* b = find(form)) {
    b->Click();
    return true;
  }
  return false;
}

// Offers an accelerator key to every shown, enabled control of the form, in order.
bool DialogChar(TWinControl* parent, Word key) {
  for (int i = 0; i < parent->ControlCount(); ++i) {
    TControl* c = parent->Controls(i);
    if (!c->Visible() || !c->Enabled()) continue;
    if (c->DialogChar(key)) return true;
    if (auto* wc = dynamic_cast<TWinControl*>(c); wc && DialogChar(wc, key)) return true;
  }
  return false;
}

// Opens the menu of the form's menu bar whose caption has the accelerator `key`.
bool MenuChar(TCustomForm* form, Word key) {
  TMainMenu* menu = form->Menu();
  QMenuBar* bar = menu ? menu->MenuBar() : nullptr;
  if (!bar) return false;
  for (TMenuItem* item : menu->VisibleItems()) {
    if (item->Visible() && item->Enabled() && IsAccel(key, item->Caption())) {
      bar->setActiveAction(item->QtAction());
      return true;
    }
  }
  return false;
}

bool InputEvent(QObject* receiver, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::KeyPress && type != QEvent::KeyRelease) {
    // Mouse input on a control being designed goes to its designer, never to the control.
    if (!receiver->isWidgetType()) return false;
    TControl* c = TControl::FindControl(receiver);
    if (!c || !c->Designing()) return false;
    switch (type) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::MouseMove:
        // The control's own filter hands these to the designer.
        return false;
      default: return true;
    }
  }

  auto* key = static_cast<QKeyEvent*>(event);
  QObject* target = receiver;
  if (receiver->isWindowType()) {
    if (QWidget* focus = QApplication::focusWidget()) target = focus;
  }
  TControl* control = TControl::FindControl(target);
  if (!control) return false;
  const bool up = type == QEvent::KeyRelease;
  const int vk = VirtualKeyOf(*key);
  const LPARAM keyData = KeyDataOf(key->modifiers(), up, key->isAutoRepeat());
  const bool alt = (key->modifiers() & Qt::AltModifier) && !(key->modifiers() & Qt::ControlModifier);

  if (control->Designing()) {
    TMessage m;
    m.Msg = up ? (alt ? WM_SYSKEYUP : WM_KEYUP) : (alt ? WM_SYSKEYDOWN : WM_KEYDOWN);
    m.WParam = static_cast<WPARAM>(vk);
    m.LParam = keyData;
    control->WndProc(m);
    if (!up && !key->text().isEmpty()) {
      TMessage ch;
      ch.Msg = alt ? WM_SYSCHAR : WM_CHAR;
      ch.WParam = key->text().at(0).unicode() & 0xFF;
      ch.LParam = keyData;
      control->WndProc(ch);
    }
    return true;
  }

  TCustomForm* form = GetParentForm(control);
  auto* winControl = dynamic_cast<TWinControl*>(control);
  const TShiftState shift = KeyDataToShiftState(keyData) + (key->modifiers() & Qt::ShiftModifier ? TShiftState{ssShift}
                                                                                                   : TShiftState{}) +
                            (key->modifiers() & Qt::ControlModifier ? TShiftState{ssCtrl} : TShiftState{});
  if (!up && vk != 0) {
    // Menu and action shortcuts of the form first, then the popup menus of the control's chain.
    if (form) {
      TWMKey msg;
      msg.Msg = alt ? WM_SYSKEYDOWN : WM_KEYDOWN;
      msg.CharCode = static_cast<Word>(vk);
      msg.KeyData = keyData;
      if (form->IsShortCut(msg)) return true;
    }
    const TShortCut sc = ShortCut(static_cast<Word>(vk), shift);
    for (TControl* c = control; c; c = c->Parent()) {
      if (TPopupMenu* menu = c->PopupMenu(); menu && menu->IsShortCut(sc)) return true;
    }
    // The form's key preview, then the control's own key handler.
    Word k = static_cast<Word>(vk);
    if (form && form != control && form->KeyPreview()) {
      form->KeyDown(k, shift);
      if (k == 0) return true;
    }
    if (winControl) {
      winControl->KeyDown(k, shift);
      if (k == 0) return true;
    }
    // Alt and a letter: an accelerator of a control, then of the menu bar. It never types.
    if (alt && ((vk >= 'A' && vk <= 'Z') || (vk >= '0' && vk <= '9'))) {
      if (form && (DialogChar(form, static_cast<Word>(vk)) || MenuChar(form, static_cast<Word>(vk)))) return true;
      return true;
    }
    // Enter and Esc press the form's default and cancel buttons.
    QWidget* focus = target->isWidgetType() ? static_cast<QWidget*>(target) : nullptr;
    if (form && (vk == VK_RETURN || vk == VK_ESCAPE) && key->modifiers() == Qt::NoModifier &&
        (!focus || IsDialogKeyTarget(focus, vk)) && !dynamic_cast<TButton*>(control) && DialogKey(form, vk)) {
      return true;
    }
    const QString text = key->text();
    if (!text.isEmpty() && text.at(0).unicode() >= 0x20 && text.at(0).unicode() != 0x7F) {
      const std::string bytes = control->Font()->FromUnicode(text.left(1));
      char ch = bytes.empty() ? '?' : bytes[0];
      const char original = ch;
      if (form && form != control && form->KeyPreview()) {
        form->KeyPress(ch);
        if (ch == 0) return true;
      }
      if (winControl) {
        winControl->KeyPress(ch);
        if (ch == 0) return true;
      }
      if (ch != original) {
        // The handler changed the character: the widget gets the new one instead.
        const QString replaced = control->Font()->ToUnicode(std::string(1, ch));
        QKeyEvent changed(QEvent::KeyPress, 0, key->modifiers(), replaced, key->isAutoRepeat());
        TMessageLoop::Instance().SendUnfiltered(target, &changed);
        return true;
      }
    } else if (!text.isEmpty() && (vk == VK_RETURN || vk == VK_ESCAPE || vk == VK_BACK || vk == VK_TAB)) {
      char ch = static_cast<char>(vk == VK_BACK ? 8 : vk == VK_TAB ? 9 : vk == VK_RETURN ? 13 : 27);
      if (form && form != control && form->KeyPreview()) {
        form->KeyPress(ch);
        if (ch == 0) return true;
      }
      if (winControl) {
        winControl->KeyPress(ch);
        if (ch == 0) return true;
      }
    }
  } else if (up && vk != 0) {
    Word k = static_cast<Word>(vk);
    if (form && form != control && form->KeyPreview()) {
      form->KeyUp(k, shift);
      if (k == 0) return true;
    }
    if (winControl) {
      winControl->KeyUp(k, shift);
      if (k == 0) return true;
    }
  }
  return false;
}

bool WindowMessage(QObject* receiver, TMessage& message) {
  TControl* c = TControl::FindControl(receiver);
  if (!c) return false;
  c->WndProc(message);
  return true;
}

QPalette ClassicPalette() {
  QPalette p;
  auto set = [&](QPalette::ColorRole role, TColor c) {
    p.setColor(QPalette::All, role, ColorToQColor(c));
  };
  set(QPalette::Window, clBtnFace);
  set(QPalette::WindowText, clWindowText);
  set(QPalette::Base, clWindow);
  set(QPalette::AlternateBase, clBtnFace);
  set(QPalette::Text, clWindowText);
  set(QPalette::Button, clBtnFace);
  set(QPalette::ButtonText, clBtnText);
  set(QPalette::Light, clBtnHighlight);
  set(QPalette::Midlight, cl3DLight);
  set(QPalette::Dark, clBtnShadow);
  set(QPalette::Mid, clBtnShadow);
  set(QPalette::Shadow, cl3DDkShadow);
  set(QPalette::Highlight, clHighlight);
  set(QPalette::HighlightedText, clHighlightText);
  set(QPalette::ToolTipBase, clInfoBk);
  set(QPalette::ToolTipText, clInfoText);
  set(QPalette::BrightText, clWhite);
  p.setColor(QPalette::Disabled, QPalette::WindowText, ColorToQColor(clGrayText));
  p.setColor(QPalette::Disabled, QPalette::Text, ColorToQColor(clGrayText));
  p.setColor(QPalette::Disabled, QPalette::ButtonText, ColorToQColor(clGrayText));
  return p;
}

// The controls a focus move leaves and enters, as their OnExit and OnEnter tell: the one
// that had the focus and its containers up to the one both share, then down from there
// to the one that has it now. Forms take no part; nor does a move into or out of the
// program's windows as a whole, or from one window to another.
void FocusMoved(QWidget* old, QWidget* now) {
  if (!old || !now) return;
  auto* from = dynamic_cast<TWinControl*>(TControl::FindControl(old));
  auto* to = dynamic_cast<TWinControl*>(TControl::FindControl(now));
  if (!from || !to || from == to || from->Designing() || to->Designing()) return;
  // Each form keeps its own focused control: going to another window leaves and enters none.
  if (GetParentForm(from) != GetParentForm(to)) return;
  auto chain = [](TWinControl* c) {
    std::vector<TWinControl*> list;
    for (; c && !dynamic_cast<TCustomForm*>(c); c = c->Parent()) list.push_back(c);
    return list;
  };
  const std::vector<TWinControl*> left = chain(from);
  const std::vector<TWinControl*> entered = chain(to);
  auto contains = [](const std::vector<TWinControl*>& list, TWinControl* c) {
    return std::find(list.begin(), list.end(), c) != list.end();
  };
  for (TWinControl* c : left)
    if (!contains(entered, c)) c->DoExit();
  for (auto it = entered.rbegin(); it != entered.rend(); ++it)
    if (!contains(left, *it)) (*it)->DoEnter();
}

}  // namespace

// ---------------------------------------------------------------------------------------
// TApplication

LUMORA_CLASS_IMPL(TApplication) {}

TApplication::TApplication(TComponent* owner) : TComponent(owner) {
  FTitle = QCoreApplication::instance() ? QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName().toStdString()
                                        : std::string();
}

TApplication::~TApplication() {
  Destroying();
  DestroyComponents();
  if (gApplication == this) gApplication = nullptr;
}

TApplication* TApplication::Instance() {
  if (!gApplication) {
    gApplication = new TApplication(nullptr);
    gApplication->SetName("Application");
  }
  if (!gApplication->FHooked && QCoreApplication::instance()) gApplication->HookQt();
  return gApplication;
}

void TApplication::Done() {
  delete gApplication;
  gApplication = nullptr;
  delete gScreen;
  gScreen = nullptr;
}

void TApplication::Initialize() { HookQt(); }

void TApplication::HookQt() {
  if (FHooked || !QCoreApplication::instance()) return;
  FHooked = true;
  RegisterClassicFonts();
  auto& loop = TMessageLoop::Instance();
  loop.OnIdle = [this](bool& done) { Idle(done); };
  loop.OnMessage = [this](TMsg& msg, bool& handled) {
    if (OnMessage) OnMessage(msg, handled);
  };
  loop.OnInput = InputEvent;
  loop.OnWindowMessage = WindowMessage;
  loop.OnException = [this](std::exception_ptr error) { DeliverException(error, this); };
  if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) {
    // The classic look for every window of the program.
    if (QStyle* style = QStyleFactory::create(QStringLiteral("Windows"))) app->setStyle(style);
    app->setPalette(ClassicPalette());
    TFontRequest request;
    app->setFont(ResolveFont(request));
    QObject::connect(app, &QApplication::focusChanged, app,
                     [](QWidget* old, QWidget* now) { Guard([&] { FocusMoved(old, now); }); });
    QObject::connect(app, &QGuiApplication::applicationStateChanged, app, [this](Qt::ApplicationState state) {
      Guard([&] {
        if (state == Qt::ApplicationActive && OnActivate) OnActivate(this);
        if (state != Qt::ApplicationActive && OnDeactivate) OnDeactivate(this);
      });
    });
  }
  SetDefaultDialogCaption(FTitle);
}

void TApplication::Idle(bool& done) {
  done = true;
  if (OnIdle) OnIdle(this, done);
  if (done) {
    for (TCustomActionList* list : AllActionLists()) list->UpdateActions();
  }
}

void TApplication::Run() {
  HookQt();
  if (FMainForm && FShowMainForm) FMainForm->Show();
  if (FTerminated) return;
  FRunning = true;
  while (!FTerminated) {
    QCoreApplication::exec();
    // exec returns when Terminate asked; a nested quit ends only this round.
  }
  FRunning = false;
}

void TApplication::Terminate() {
  FTerminated = true;
  QCoreApplication::exit(0);
}

void TApplication::ProcessMessages() {
  HookQt();
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void TApplication::HandleMessage() {
  HookQt();
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void TApplication::SetTitle(const std::string& value) {
  FTitle = value;
  SetDefaultDialogCaption(value);
}

std::string TApplication::ExeName() const {
  if (QCoreApplication::instance()) return QCoreApplication::applicationFilePath().toStdString();
  return {};
}

void TApplication::SetHint(const std::string& value) {
  if (FHint == value) return;
  FHint = value;
  if (OnHint) OnHint(this);
}

bool TApplication::Active() const { return QGuiApplication::applicationState() == Qt::ApplicationActive; }

void TApplication::Minimize() {
  FMinimized = true;
  for (int i = 0; i < Screen->CustomFormCount(); ++i) {
    TCustomForm* f = Screen->CustomForms(i);
    if (f->Widget() && f->Widget()->isVisible()) f->Widget()->showMinimized();
  }
}

void TApplication::Restore() {
  FMinimized = false;
  for (int i = 0; i < Screen->CustomFormCount(); ++i) {
    TCustomForm* f = Screen->CustomForms(i);
    if (f->Widget() && f->Widget()->isMinimized()) {
      if (f->WindowState() == wsMaximized) {
        f->Widget()->showMaximized();
      } else {
        f->Widget()->showNormal();
      }
    }
  }
}

void TApplication::BringToFront() {
  TCustomForm* f = Screen->ActiveCustomForm();
  if (!f || !f->Visible()) f = FMainForm;
  if (f && f->Visible()) f->BringToFront();
}

int TApplication::MessageBox(const std::string& text, const std::string& caption, unsigned flags) {
  return MessageBoxQuestion(text, caption.empty() ? FTitle : caption, flags);
}

void TApplication::ShowException(Exception* e) {
  std::string msg = e ? e->Message() : std::string();
  if (!msg.empty() && static_cast<unsigned char>(msg.back()) > '.') msg += '.';
  MessageBox(msg, FTitle, MB_OK | MB_ICONSTOP);
}

void TApplication::DeliverException(std::exception_ptr error, TObject* sender) {
  try {
    std::rethrow_exception(error);
  } catch (Exception& e) {
    if (OnException) {
      OnException(sender, &e);
    } else {
      ShowException(&e);
    }
  } catch (const std::exception& e) {
    Exception wrapped(e.what());
    if (OnException) {
      OnException(sender, &wrapped);
    } else {
      ShowException(&wrapped);
    }
  }
}

void TApplication::HandleException(TObject* sender) {
  std::exception_ptr error = std::current_exception();
  if (!error) return;
  try {
    DeliverException(error, sender);
  } catch (...) {
    // The error handler failed in turn; nothing is left to tell.
  }
}

// ---------------------------------------------------------------------------------------
// TScreen

LUMORA_CLASS_IMPL(TScreen) {}

TScreen::TScreen(TComponent* owner) : TComponent(owner) {
  FHintFont = new TFont();
  FIconFont = new TFont();
  FMenuFont = new TFont();
}

TScreen::~TScreen() {
  delete FFonts;
  delete FHintFont;
  delete FIconFont;
  delete FMenuFont;
  if (gScreen == this) gScreen = nullptr;
}

TScreen* TScreen::Instance() {
  if (!gScreen) {
    gScreen = new TScreen(nullptr);
    gScreen->SetName("Screen");
  }
  return gScreen;
}

TForm* TScreen::ActiveForm() const { return dynamic_cast<TForm*>(FActiveForm); }

TWinControl* TScreen::ActiveControl() const {
  TControl* c = TControl::FindControl(QApplication::focusWidget());
  return dynamic_cast<TWinControl*>(c);
}

int TScreen::FormCount() const {
  return static_cast<int>(std::count_if(FForms.begin(), FForms.end(), [](TCustomForm* f) { return dynamic_cast<TForm*>(f); }));
}

TForm* TScreen::Forms(int index) const {
  int i = 0;
  for (TCustomForm* f : FForms) {
    if (auto* form = dynamic_cast<TForm*>(f)) {
      if (i == index) return form;
      ++i;
    }
  }
  throw EListError(Format("List index out of bounds (%d)", index));
}

TCustomForm* TScreen::CustomForms(int index) const {
  if (index < 0 || index >= CustomFormCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return FForms[index];
}

void TScreen::AddForm(TCustomForm* form) { FForms.push_back(form); }

void TScreen::RemoveForm(TCustomForm* form) {
  FForms.erase(std::remove(FForms.begin(), FForms.end(), form), FForms.end());
  if (FActiveForm == form) {
    FActiveForm = nullptr;
    if (OnActiveFormChange) Guard([this] { OnActiveFormChange(this); });
  }
}

void TScreen::SetActiveForm(TCustomForm* form) {
  if (FActiveForm == form) return;
  FActiveForm = form;
  // The active form goes first in the list of forms.
  auto it = std::find(FForms.begin(), FForms.end(), form);
  if (it != FForms.end()) std::rotate(FForms.begin(), it, it + 1);
  if (OnActiveFormChange) OnActiveFormChange(this);
}

void TScreen::SetCursor(TCursor value) {
  if (FCursor == value) return;
  const bool had = FCursor != crDefault;
  FCursor = value;
  if (!QGuiApplication::instance()) return;
  if (had) QGuiApplication::restoreOverrideCursor();
  if (value != crDefault) QGuiApplication::setOverrideCursor(QCursor(CursorToQt(value)));
}

int TScreen::Width() const {
  QScreen* s = QGuiApplication::instance() ? QGuiApplication::primaryScreen() : nullptr;
  return s ? s->geometry().width() : 1024;
}

int TScreen::Height() const {
  QScreen* s = QGuiApplication::instance() ? QGuiApplication::primaryScreen() : nullptr;
  return s ? s->geometry().height() : 768;
}

int TScreen::DesktopWidth() const {
  QScreen* s = QGuiApplication::instance() ? QGuiApplication::primaryScreen() : nullptr;
  return s ? s->virtualGeometry().width() : Width();
}

int TScreen::DesktopHeight() const {
  QScreen* s = QGuiApplication::instance() ? QGuiApplication::primaryScreen() : nullptr;
  return s ? s->virtualGeometry().height() : Height();
}

int TScreen::PixelsPerInch() const {
  QScreen* s = QGuiApplication::instance() ? QGuiApplication::primaryScreen() : nullptr;
  const int dpi = s ? static_cast<int>(s->logicalDotsPerInchY() + 0.5) : 96;
  return dpi > 0 ? dpi : 96;
}

TStrings* TScreen::Fonts() {
  if (!FFonts) {
    FFonts = new TStringList();
    RegisterClassicFonts();
    for (const QString& f : QFontDatabase::families()) FFonts->Add(f.toStdString());
    FFonts->Sort();
  }
  return FFonts;
}
