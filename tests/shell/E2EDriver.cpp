// lumora-e2e: the real program (the entry of lumora, its windows and settings) with a
// scenario that drives it from inside as a user would: keys, clicks, menus, and the file
// dialogs and questions answered through the seams. What it sees is printed, one fact a
// line, for the test that started it; the program then ends as it always does.
//
//   lumora-e2e SCENARIO [ARG...] -- [lumora arguments...]
#include "foundation/Options.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Keys.h"
#include "shell/Entry.h"
#include "liveform/joDesigner.h"
#include "shell/mLumora.h"
#include "textedit/DFM_ResEdit.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

QElapsedTimer gClock;
int gStepInterval = 20;  // milliseconds between looks at whether the next step may run
std::vector<std::string> gArgs;  // the scenario's own arguments

void Say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

TFrm_mLumora* Main() { return dynamic_cast<TFrm_mLumora*>(Application->MainForm()); }

// The steps of a scenario, each run when the one before has finished and the program is
// idle again; a step may wait for a condition before it counts as run.
class TScript {
public:
  void Then(std::function<void()> step) { FSteps.push_back({nullptr, std::move(step)}); }
  void When(std::function<bool()> ready, std::function<void()> step) { FSteps.push_back({std::move(ready), std::move(step)}); }
  void Start() {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [this, timer] {
      // A step that shows a modal dialog runs an event loop of its own: no other step
      // starts before it has returned.
      if (FRunning) return;
      if (FSteps.empty()) {
        timer->stop();
        return;
      }
      TStep& next = FSteps.front();
      if (next.Ready && !next.Ready()) return;
      TStep step = std::move(next);
      FSteps.pop_front();
      FRunning = true;
      step.Run();
      FRunning = false;
    });
    timer->start(gStepInterval);
  }

private:
  struct TStep {
    std::function<bool()> Ready;
    std::function<void()> Run;
  };
  std::deque<TStep> FSteps;
  bool FRunning = false;
};

TScript gScript;

bool ProgramIdle() {
  TFrm_mLumora* main = Main();
  return main && main->Visible() && !main->FirstIdle();
}

void Activate(TCustomForm* form) {
  QApplication::setActiveWindow(form->Widget());
  form->BringToFront();
  QApplication::processEvents();
}

// Leaves the program through its File menu, as a user does.
void ExitByMenu() {
  gScript.Then([] {
    Activate(Main());
    QTest::keyClick(Main()->Widget(), Qt::Key_X, Qt::AltModifier);
  });
}

// Puts the caret before the closing quote of the editor's caption line and types `text`.
void TypeAtCaptionEnd(const std::string& text) {
  TjoRichEdit* rich = Main()->FEditor->RichEdit();
  for (int i = 0; i < rich->Lines()->Count(); ++i) {
    if (rich->Lines()->Strings(i).find("Caption = '") == std::string::npos) continue;
    rich->SetSelStart(rich->LineIndex(i) + rich->LineLength(i) - 1);
    break;
  }
  rich->Widget()->setFocus();
  QTest::keyClicks(rich->Widget(), QString::fromStdString(text));
}

// ---- Scenarios -------------------------------------------------------------------------

// The banner is up: how long it took, then the end.
void BannerScenario() {
  gScript.When(ProgramIdle, [] {
    Say("banner-shown " + std::to_string(gClock.elapsed()));
    Say("size " + std::to_string(Main()->Width()) + "x" + std::to_string(Main()->Height()));
  });
  ExitByMenu();
}

// Whether a document's live form is on the screen.
bool LiveFormShown() {
  for (int i = 0; i < Main()->DocumentCount(); ++i) {
    TjoDesigner* designer = Main()->DocumentDesigner(i);
    if (designer && designer->HostForm() && designer->HostForm()->Visible()) return true;
  }
  return false;
}

// Whether the editor face shows the text of a file.
bool TextShown() {
  return Main()->FEditorShown && !Main()->FCurrentFile.empty() && Main()->FEditor->RichEdit()->Lines()->Count() > 0;
}

// For the start-up benchmark: says "shown" once the banner is up, then ends at once. With
// the argument "form" or "text" the file of the command line is opened that way (the
// setting a user picks in the options), and "shown" waits for its live form or its text.
void StartupScenario() {
  const std::string view = gArgs.empty() ? std::string() : gArgs.front();
  if (view == "form" || view == "text") Main()->FViewAsForm = view == "form";
  // The moment is seen within a few milliseconds.
  gStepInterval = 2;
  gScript.When(
      [view] {
        if (!ProgramIdle()) return false;
        if (view == "form") return LiveFormShown();
        if (view == "text") return TextShown();
        return true;
      },
      [view] {
        Say("shown " + std::to_string(gClock.elapsed()));
        if (view == "text") Say("lines " + std::to_string(Main()->FEditor->RichEdit()->Lines()->Count()));
        Application->Terminate();
      });
}

// Leaves the window where it was moved and the options as they were changed.
void SettingsLeaveScenario() {
  gScript.When(ProgramIdle, [] {
    TFrm_mLumora* main = Main();
    main->SetBounds(123, 77, main->Width(), main->Height());
    // The options dialog, General page: "Only 1 visible form" ticked, then OK.
    QTimer::singleShot(0, [] {
      TFrm_Options* d = OptionsDialog();
      QTest::mouseClick(d->cb_Only1VF->Widget(), Qt::LeftButton);
      QTest::mouseClick(d->btn_OK->Widget(), Qt::LeftButton);
    });
    main->mi_OptionsProperties->Click();
    Say("options-changed " + std::to_string(main->FOptionsChanged));
  });
  ExitByMenu();
}

// Tells what the window found at start.
void SettingsReportScenario() {
  gScript.When(ProgramIdle, [] {
    TFrm_mLumora* main = Main();
    Say("position " + std::to_string(main->Left()) + "," + std::to_string(main->Top()));
    Say("only1vf " + std::to_string(main->FOnly1VF));
    Say("editor-size " + std::to_string(main->FFormWidth) + "x" + std::to_string(main->FFormHeight));
    Say("keys " + ShortCutToText(main->FKeyClose) + " " + ShortCutToText(main->FKeyToggle) + " " +
        ShortCutToText(main->FKeyOI));
  });
  ExitByMenu();
}

// Waits for a file handed over by another program and tells what arrived.
void RelayScenario() {
  gScript.When(ProgramIdle, [] { Say("ready"); });
  // A start file, once taken for opening, leaves its name as the save dialog's folder.
  gScript.When([] { return !SaveDialogFolder().empty(); }, [] { Say("start-file " + SaveDialogFolder()); });
  ExitByMenu();
}

// The file of the command line as text: edited, compiled, saved in three kinds (the names
// are the scenario's argument with .dfm, .txt and .rtf), shown as a live form and back,
// the editor's tree and font changed, the editor left with Esc.
void TextSessionScenario() {
  auto editor = [] { return Main()->FEditor; };
  gScript.When([] { return ProgramIdle() && Main()->FEditorShown; }, [editor] {
    Say("editor-shown " + Main()->FCurrentFile);
    Say("read-only " + std::to_string(editor()->ReadOnly()));
    Say("line0 " + editor()->RichEdit()->Lines()->Strings(0));
  });
  gScript.Then([editor] {
    TypeAtCaptionEnd(" edited");
    editor()->CompileItem()->Click();
    Say("modified " + std::to_string(editor()->Modified()));
  });
  auto saveAs = [](const std::string& suffix, int entry) {
    gScript.Then([suffix, entry] {
      const std::string name = gArgs.at(0) + suffix;
      SetFileDialogHook([name, entry](TOpenDialog& d) {
        d.SetFileName(name);
        d.SetFilterIndex(entry);
        return true;
      });
      Activate(Main());
      Main()->mi_FileSaveAs->Click();
      SetFileDialogHook(nullptr);
      Say("saved" + suffix);
    });
  };
  saveAs(".dfm", 1);
  saveAs(".txt", 3);
  saveAs(".rtf", 4);
  gScript.Then([] {
    Activate(Main());
    QTest::keyClick(Main()->Widget(), Qt::Key_F12);
  });
  gScript.When([] { return Main()->EditorDesigner() && Main()->EditorDesigner()->HostForm(); }, [] {
    TfixFormFFF* live = Main()->EditorDesigner()->HostForm();
    Say("live-form " + live->Caption());
    // F12 on the live form: back to its text.
    Activate(live);
    QTest::keyClick(live->Widget(), Qt::Key_F12);
    Say("window-list " + Main()->bmi_WinList->Items(0)->Caption());
  });
  gScript.Then([editor] {
    editor()->SetTreeWidth(210);
    editor()->FontEditor()->SetSize(12);
    Activate(Main());
    QTest::keyClick(Main()->Widget(), Qt::Key_Escape);
    Say("banner " + std::to_string(!Main()->FEditorShown) + " " + std::to_string(Main()->Width()) + "x" +
        std::to_string(Main()->Height()));
  });
  ExitByMenu();
}

// The file of the command line as text: a word typed into its caption, F12 to the live
// form and F12 back, then the program left by its menu. "Save changes?" is answered with
// the scenario's first argument (yes or no); yes saves over the file as a binary form.
void EditViewExitScenario() {
  gScript.When([] { return ProgramIdle() && Main()->FEditorShown; }, [] {
    TypeAtCaptionEnd(" edited");
    Activate(Main());
    QTest::keyClick(Main()->Widget(), Qt::Key_F12);
  });
  gScript.When([] { return Main()->EditorDesigner() && Main()->EditorDesigner()->HostForm(); }, [] {
    TfixFormFFF* live = Main()->EditorDesigner()->HostForm();
    Say("live-form " + live->Caption());
    Activate(live);
    QTest::keyClick(live->Widget(), Qt::Key_F12);
  });
  gScript.Then([] {
    Say("back " + std::to_string(Main()->FEditorShown) + " modified " + std::to_string(Main()->FEditor->Modified()));
    const bool yes = gArgs.at(0) == "yes";
    SetUserQuestionHook([yes](const TUserQuestion& q) {
      Say("question " + q.Text);
      return q.IsMessageBox ? IDOK : yes ? mrYes : mrNo;
    });
    SetFileDialogHook([](TOpenDialog& d) {
      d.SetFileName(Main()->FCurrentFile);
      d.SetFilterIndex(1);
      return true;
    });
  });
  ExitByMenu();
}

const std::map<std::string, std::function<void()>>& Scenarios() {
  static const std::map<std::string, std::function<void()>> scenarios = {
      {"banner", BannerScenario},
      {"startup", StartupScenario},
      {"settings-leave", SettingsLeaveScenario},
      {"settings-report", SettingsReportScenario},
      {"relay", RelayScenario},
      {"text-session", TextSessionScenario},
      {"edit-view-exit", EditViewExitScenario},
  };
  return scenarios;
}

}  // namespace

int main(int argc, char** argv) {
  gClock.start();
  if (argc < 2 || !Scenarios().count(argv[1])) {
    std::fprintf(stderr, "Usage: lumora-e2e SCENARIO [ARG...] -- [lumora arguments...]\n");
    return 2;
  }
  const std::function<void()> scenario = Scenarios().at(argv[1]);
  // The scenario's arguments, then the program's own.
  std::vector<char*> programArgs = {argv[0]};
  int i = 2;
  for (; i < argc && std::string(argv[i]) != "--"; ++i) gArgs.push_back(argv[i]);
  for (++i; i < argc; ++i) programArgs.push_back(argv[i]);
  programArgs.push_back(nullptr);
  int programArgc = static_cast<int>(programArgs.size()) - 1;
  // Every question is answered by the scenario; one it did not expect is told and
  // answered with the first button, so the program never waits for a person.
  SetUserQuestionHook([](const TUserQuestion& q) {
    Say("question " + q.Text);
    return q.IsMessageBox ? IDOK : mrOk;
  });
  const int status = LumoraMain(programArgc, programArgs.data(), [&] {
    scenario();
    gScript.Start();
  });
  Say("exit " + std::to_string(status));
  return status;
}
