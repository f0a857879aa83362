// Forms inside Windows programs opened from the main window's menus: a program with one
// form opens it, one with several asks which in the list of its forms, the document is
// named PROGRAM:NAME, saving never writes the program, and programs without forms or
// damaged ones say so.
#include "tests/shell/MainWindowTestUtil.h"

#include "liveform/joDesigner.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "shell/F_PForms.h"
#include "textedit/DFM_ResEdit.h"
#include "tests/support/Corpus.h"
#include "tests/support/PeBuilder.h"

#include <QAction>
#include <QCursor>
#include <QHeaderView>
#include <QTreeWidget>

namespace {

// The resource names of a program's forms, read straight from the program.
std::vector<std::string> ResourcesOf(const fs::path& program) {
  const std::string bytes = lumora::test::ReadFileBytes(program);
  const TPeImage image(bytes);
  std::vector<std::string> names;
  for (const TPeResource* form : image.Forms()) names.push_back(form->Name.Text());
  return names;
}

fs::path CorpusProgram(const std::string& id) { return lumora::test::CorpusDir() / "pe" / id; }

const char* const kText =
    "object Form1: TForm\n"
    "  Caption = 'Inside'\n"
    "  ClientHeight = 80\n"
    "  ClientWidth = 120\n"
    "end\n";

class ProgramFormsTest : public MainWindowTest {
protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    TjoDesigner::SetTickSource([] {
      static std::uint64_t now = 0;
      return now += 1000;
    });
    // Every list of forms shown is counted; tests that answer it say how.
    SetProgramFormHook([this](const std::string& program, const std::vector<TProgramForm>& forms) {
      asked.push_back({program, forms});
      return answer(forms);
    });
  }
  void TearDown() override {
    SetProgramFormHook(nullptr);
    ClearNextProgramForms();
    SetFileDialogHook(nullptr);
    MainWindowTest::TearDown();
    TjoDesigner::SetTickSource(nullptr);
  }
  // Chooses File > Open as Form or Open as Text, the file dialog answered with `path`;
  // the text opens read-only as the dialog's box says.
  void OpenFromMenu(TMenuItem* item, const std::string& path, bool readOnly = true) {
    SetFileDialogHook([&](TOpenDialog& d) {
      filter = d.Filter();
      d.SetFileName(path);
      TOpenOptions o = d.Options();
      if (readOnly) o += ofReadOnly; else o -= ofReadOnly;
      d.SetOptions(o);
      return true;
    });
    ASSERT_TRUE(ActionOf(item)->isEnabled());
    ActionOf(item)->trigger();
    QApplication::processEvents();
    SetFileDialogHook(nullptr);
  }
  void SaveAsFromMenu(const std::string& path, int entry) {
    SetFileDialogHook([path, entry](TOpenDialog& d) {
      d.SetFileName(path);
      d.SetFilterIndex(entry);
      return true;
    });
    ActionOf(form->mi_FileSaveAs)->trigger();
    QApplication::processEvents();
    SetFileDialogHook(nullptr);
  }
  std::vector<std::string> Questions() {
    std::vector<std::string> texts;
    for (const TUserQuestion& q : AskedQuestions()) texts.push_back(q.Text);
    return texts;
  }
  std::vector<std::string> WindowMenu() {
    std::vector<std::string> captions;
    for (int i = 0; i < form->bmi_WinList->Count(); ++i) captions.push_back(form->bmi_WinList->Items(i)->Caption());
    return captions;
  }
  // A list still up two seconds after a test's last click is cancelled, so that a test
  // whose clicks did not close it fails instead of waiting for ever.
  static void CancelIfStillShown(TFrm_ProgramForms* d) {
    QTimer::singleShot(2000, [d] {
      if (ProgramFormsDialog() == d) d->BtnCancel->Click();
    });
  }
  // The live forms there are.
  static int LiveForms() {
    int count = 0;
    for (int i = 0; i < Screen->CustomFormCount(); ++i)
      if (dynamic_cast<TfixFormFFF*>(Screen->CustomForms(i))) ++count;
    return count;
  }
  TjoDFM_ResourceEditor* Editor() { return form->FEditor; }
  std::string Line(int i) { return Editor()->RichEdit()->Lines()->Strings(i); }
  // Leaves the editor with Esc, as the user does.
  void LeaveEditor() {
    Activate(form);
    QTest::keyClick(form->Widget(), Qt::Key_Escape);
    QApplication::processEvents();
  }
  // A program of the test's own folder holding `resources`.
  std::string Program(const std::string& name, const std::vector<lumora::test::TBuiltResource>& resources) {
    const std::string path = dir / name;
    lumora::test::WriteBytes(path, lumora::test::BuildPeImage(resources).Bytes);
    return path;
  }

  struct TAsked {
    std::string Program;
    std::vector<TProgramForm> Forms;
  };
  std::vector<TAsked> asked;
  std::function<int(const std::vector<TProgramForm>&)> answer = [](const std::vector<TProgramForm>&) { return -1; };
  std::string filter;
};

}  // namespace

TEST_F(ProgramFormsTest, TheOpenDialogOffersPrograms) {
  Start();
  OpenFromMenu(form->mi_OpenAsForm, "");
  EXPECT_NE(filter.find("|*.exe;*.dll;*.bpl"), std::string::npos) << filter;
}

TEST_F(ProgramFormsTest, AProgramWithOneFormOpensItAsALiveFormNamedAfterTheProgram) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  const std::string program = CorpusProgram("0004.exe");
  const std::vector<std::string> resources = ResourcesOf(program);
  ASSERT_EQ(resources.size(), 1u);
  OpenFromMenu(form->mi_OpenAsForm, program);
  // Nothing to choose: no list, no question.
  EXPECT_TRUE(asked.empty());
  EXPECT_TRUE(Questions().empty());
  const std::string name = program + ":" + resources[0];
  ASSERT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentName(0), name);
  TjoDesigner* designer = form->DocumentDesigner(0);
  ASSERT_NE(designer, nullptr);
  ASSERT_NE(designer->HostForm(), nullptr);
  EXPECT_TRUE(designer->HostForm()->Visible());
  const std::string caption = designer->HostForm()->Caption();
  EXPECT_EQ(WindowMenu(), (std::vector<std::string>{"&0  " + name + "  \xC2\xA4 " + caption, "-", "Close &All"}));
  // F12 on the live form: its text, under the same name.
  QApplication::setActiveWindow(designer->HostForm()->Widget());
  QApplication::processEvents();
  QTest::keyClick(designer->HostForm()->Widget(), Qt::Key_F12);
  QApplication::processEvents();
  ASSERT_TRUE(form->FEditorShown);
  EXPECT_EQ(form->FCurrentFile, name);
  // The caption the text editor is given.
  EXPECT_EQ(form->EditorDesigner()->Caption, name);
  EXPECT_EQ(Editor()->Text(), name);
  EXPECT_EQ(Line(0).substr(0, 7), "object ");
}

TEST_F(ProgramFormsTest, AProgramWithSeveralFormsListsThemAndOpensTheOnePicked) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  const std::string program = CorpusProgram("0003.exe");
  const std::vector<std::string> resources = ResourcesOf(program);
  ASSERT_EQ(static_cast<int>(resources.size()), lumora::test::CorpusProgramCounts().at("0003.exe").Forms);
  SetProgramFormHook(nullptr);
  // The real list: what it shows, then the third line clicked and OK.
  std::string caption, label;
  std::vector<std::string> headers;
  std::vector<std::pair<std::string, std::string>> lines;
  int preselected = -2;
  When([] { return ActiveWindow(ProgramFormsDialog()); }, [&] {
    TFrm_ProgramForms* d = ProgramFormsDialog();
    caption = d->Caption();
    label = d->Lbl_Forms->Caption();
    for (int i = 0; i < d->LV_Forms->Columns()->Count(); ++i) headers.push_back(d->LV_Forms->Column(i)->Caption());
    for (int i = 0; i < d->LV_Forms->Items()->Count(); ++i) {
      TListItem* item = d->LV_Forms->Items()->Item(i);
      lines.emplace_back(item->Caption(), item->SubItems()->Count() > 0 ? item->SubItems()->Strings(0) : "");
    }
    preselected = d->LV_Forms->Selected() ? d->LV_Forms->Selected()->Index() : -1;
    QTreeWidget* list = d->LV_Forms->ListWidget();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(2)).center());
    QTest::mouseClick(d->BtnOk->Widget(), Qt::LeftButton);
    CancelIfStillShown(d);
  });
  OpenFromMenu(form->mi_OpenAsText, program);
  EXPECT_EQ(caption, "Forms of 0003.exe");
  EXPECT_EQ(label, "The program holds several forms. Open which one?");
  EXPECT_EQ(headers, (std::vector<std::string>{"Resource", "Class"}));
  ASSERT_EQ(lines.size(), resources.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].first, resources[i]);
    // A class name, as the resource is named after it.
    EXPECT_TRUE(SameText(lines[i].second, resources[i])) << lines[i].second;
  }
  EXPECT_EQ(preselected, 0);
  // The third form, as text, under PROGRAM:NAME.
  const std::string name = program + ":" + resources[2];
  ASSERT_TRUE(form->FEditorShown);
  EXPECT_EQ(form->FCurrentFile, name);
  // The caption the text editor is given.
  EXPECT_EQ(form->EditorDesigner()->Caption, name);
  EXPECT_EQ(Editor()->Text(), name);
  const std::string first = Line(0);
  EXPECT_EQ(first.substr(first.size() - lines[2].second.size() - 2), ": " + lines[2].second) << first;
  EXPECT_TRUE(Editor()->ReadOnly());
  ASSERT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentName(0), name);
  EXPECT_TRUE(Questions().empty());
}

TEST_F(ProgramFormsTest, ADoubleClickOnALineOpensItsFormAndBelowTheLinesNothing) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  const std::string program = CorpusProgram("0010.dll");
  const std::vector<std::string> resources = ResourcesOf(program);
  ASSERT_EQ(resources.size(), 2u);
  SetProgramFormHook(nullptr);
  bool stillShown = false;
  When([] { return ActiveWindow(ProgramFormsDialog()); }, [&] {
    TFrm_ProgramForms* d = ProgramFormsDialog();
    QTreeWidget* list = d->LV_Forms->ListWidget();
    const QRect last = list->visualItemRect(list->topLevelItem(1));
    // The pointer goes where the clicks are, as a hand would move it.
    auto doubleClick = [list](QPoint at) {
      QCursor::setPos(list->viewport()->mapToGlobal(at));
      QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    };
    doubleClick(QPoint(last.center().x(), last.bottom() + 40));
    QApplication::processEvents();
    stillShown = ProgramFormsDialog() != nullptr && d->Visible();
    doubleClick(last.center());
    CancelIfStillShown(d);
  });
  OpenFromMenu(form->mi_OpenAsForm, program);
  EXPECT_TRUE(stillShown);
  ASSERT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentName(0), program + ":" + resources[1]);
  ASSERT_NE(form->DocumentDesigner(0)->HostForm(), nullptr);
  EXPECT_TRUE(form->DocumentDesigner(0)->HostForm()->Visible());
}

TEST_F(ProgramFormsTest, CancelInTheListOpensNothing) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  const std::string program = CorpusProgram("0006.exe");
  // The seam's way: an empty name cancels.
  PushNextProgramForm("");
  OpenFromMenu(form->mi_OpenAsText, program);
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_FALSE(form->FEditorShown);
  // The dialog's way: its Cancel button.
  SetProgramFormHook(nullptr);
  bool shown = false;
  When([] { return ActiveWindow(ProgramFormsDialog()); }, [&] {
    shown = true;
    QTest::mouseClick(ProgramFormsDialog()->BtnCancel->Widget(), Qt::LeftButton);
    CancelIfStillShown(ProgramFormsDialog());
  });
  OpenFromMenu(form->mi_OpenAsForm, program);
  EXPECT_TRUE(shown);
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_EQ(LiveForms(), 0);
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_TRUE(Questions().empty());
}

TEST_F(ProgramFormsTest, AProgramWithoutFormsSaysSoNamingIt) {
  Start();
  const std::string program = Program("tool.dll", {{"#10", "PACKAGEINFO", 0, std::string("\0\0\0\0", 4)}});
  PushNextAnswer(mrOk);
  OpenFromMenu(form->mi_OpenAsForm, program);
  EXPECT_EQ(Questions(),
            std::vector<std::string>{program + " holds no forms: none of its resources is a Delphi form."});
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_EQ(LiveForms(), 0);
}

TEST_F(ProgramFormsTest, ADamagedProgramOrFormSaysWhatIsWrongAndOpensNothing) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  // A real program cut inside its resource tree.
  const std::string bytes = lumora::test::ReadFileBytes(CorpusProgram("0007.exe"));
  const std::size_t tree = static_cast<std::size_t>(TPeImage(bytes).ResourceTableOffset());
  const std::string cut = dir / "cut.exe";
  lumora::test::WriteBytes(cut, bytes.substr(0, tree + 20));
  PushNextAnswer(mrOk);
  OpenFromMenu(form->mi_OpenAsText, cut);
  ASSERT_EQ(Questions().size(), 1u);
  EXPECT_EQ(Questions()[0].rfind(cut + ": ", 0), 0u) << Questions()[0];
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_FALSE(form->FEditorShown);

  // A program whose only form lost its end: listed with what became of it, and said so.
  ClearAskedQuestions();
  const lumora::test::TBuiltImage built = lumora::test::BuildPeImage({{"#10", "TFORM1", 0, ObjectTextToBinary(kText)}});
  const std::string shortForm = dir / "short.exe";
  lumora::test::WriteBytes(shortForm, built.Bytes.substr(0, built.ResourceOffset + built.ResourceSize - 4));
  PushNextAnswer(mrOk);
  OpenFromMenu(form->mi_OpenAsForm, shortForm);
  ASSERT_EQ(Questions().size(), 1u);
  EXPECT_EQ(Questions()[0].rfind(shortForm + ":TFORM1 cannot be opened: Resource TFORM1", 0), 0u) << Questions()[0];
  EXPECT_NE(Questions()[0].find("past the end of the file"), std::string::npos) << Questions()[0];
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_EQ(LiveForms(), 0);
}

TEST_F(ProgramFormsTest, SavingAProgramsFormAsksForAFileAndNeverWritesTheProgram) {
  Start();
  form->FReadOnly = false;
  const std::string program = Program("app.exe", {{"#10", "TFORM1", 0, ObjectTextToBinary(kText)},
                                                  {"#10", "TABOUT", 0, ObjectTextToBinary("object About: TAbout\nend\n")}});
  const std::string before = ReadText(program);
  PushNextProgramForm("tform1");
  OpenFromMenu(form->mi_OpenAsText, program, false);
  ASSERT_TRUE(form->FEditorShown);
  ASSERT_EQ(asked.size(), 0u);
  EXPECT_EQ(form->FCurrentFile, program + ":TFORM1");
  EXPECT_EQ(Line(1), "  Caption = 'Inside'");
  Editor()->RichEdit()->Lines()->SetStrings(1, "  Caption = 'Edited'");
  QApplication::processEvents();
  ASSERT_TRUE(Editor()->Modified());

  // Save As onto the program itself: refused, said, nothing written.
  PushNextAnswer(mrOk);
  SaveAsFromMenu(program, 1);
  EXPECT_EQ(Questions(), std::vector<std::string>{program +
                                                  " is the program the form was taken from and is never written; "
                                                  "save the form under another name."});
  EXPECT_EQ(ReadText(program), before);
  EXPECT_TRUE(Editor()->Modified());

  // Leaving the edited text: Save changes? Yes asks for a file name, and a form file is written.
  ClearAskedQuestions();
  const std::string out = dir / "Form1.dfm";
  PushNextAnswer(mrYes);
  std::vector<std::string> proposed;
  SetFileDialogHook([&](TOpenDialog& d) {
    proposed.push_back(d.FileName());
    d.SetFileName(out);
    d.SetFilterIndex(1);
    return true;
  });
  LeaveEditor();
  SetFileDialogHook(nullptr);
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_EQ(proposed.size(), 1u);
  EXPECT_FALSE(form->FEditorShown);
  ASSERT_TRUE(IsBinaryFormFile(out));
  const std::string written = ReadText(out);
  EXPECT_NE(ObjectBinaryToText(std::string_view(written).substr(written.find("TPF0"))).find("Caption = 'Edited'"),
            std::string::npos);
  EXPECT_EQ(ReadText(program), before);
}

TEST_F(ProgramFormsTest, ATextSavedFromAProgramsFormIsPlainFormText) {
  Start();
  const std::string program = Program("one.bpl", {{"#10", "TFORM1", 0, ObjectTextToBinary(kText)}});
  OpenFromMenu(form->mi_OpenAsText, program);
  ASSERT_TRUE(form->FEditorShown);
  const std::string out = dir / "Form1.txt";
  SaveAsFromMenu(out, 3);
  EXPECT_EQ(ReadText(out), "object Form1: TForm\r\n  Caption = 'Inside'\r\n  ClientHeight = 80\r\n  ClientWidth = 120\r\nend\r\n");
  EXPECT_TRUE(Questions().empty());
}

TEST_F(ProgramFormsTest, EveryFormOfTheRealProgramsOpensAsTextFromTheMenu) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  const auto manifest = lumora::test::CorpusProgramCounts();
  int opened = 0;
  for (const fs::path& file : lumora::test::CorpusFiles("pe")) {
    const std::string id = file.filename().string();
    if (id == "manifest.tsv") continue;
    const int forms = manifest.at(id).Forms;
    for (int i = 0; i < forms; ++i) {
      asked.clear();
      answer = [i](const std::vector<TProgramForm>&) { return i; };
      OpenFromMenu(form->mi_OpenAsText, file.string());
      // The list appears exactly when there is something to choose, with every form.
      if (forms > 1) {
        ASSERT_EQ(asked.size(), 1u) << id;
        EXPECT_EQ(asked[0].Program, file.string());
        ASSERT_EQ(static_cast<int>(asked[0].Forms.size()), forms) << id;
      } else {
        EXPECT_TRUE(asked.empty()) << id;
      }
      const std::string resource = forms > 1 ? asked[0].Forms[static_cast<std::size_t>(i)].Resource : "";
      ASSERT_TRUE(form->FEditorShown) << id << " " << i;
      EXPECT_EQ(form->FCurrentFile.rfind(file.string() + ":" + resource, 0), 0u) << form->FCurrentFile;
      const std::string first = Line(0);
      EXPECT_TRUE(first.rfind("object ", 0) == 0 || first.rfind("inherited ", 0) == 0) << id << ": " << first;
      LeaveEditor();
      EXPECT_EQ(form->DocumentCount(), 0) << id;
      ++opened;
    }
  }
  EXPECT_EQ(opened, 64);
  EXPECT_TRUE(Questions().empty());
}

TEST_F(ProgramFormsTest, EveryFormOfTheRealProgramsOpensAsALiveForm) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  SetUserQuestionHook([](const TUserQuestion&) { return int(mrOk); });
  int shown = 0;
  for (const fs::path& file : lumora::test::CorpusFiles("pe")) {
    const std::string id = file.filename().string();
    if (id == "manifest.tsv") continue;
    const std::vector<std::string> resources = ResourcesOf(file);
    for (std::size_t i = 0; i < resources.size(); ++i) {
      if (resources.size() > 1) PushNextProgramForm(resources[i]);
      OpenFromMenu(form->mi_OpenAsForm, file.string());
      const std::string name = file.string() + ":" + resources[i];
      ASSERT_EQ(form->DocumentCount(), 1) << name;
      EXPECT_EQ(form->DocumentName(0), name);
      TjoDesigner* designer = form->DocumentDesigner(0);
      ASSERT_NE(designer, nullptr) << name;
      ASSERT_NE(designer->HostForm(), nullptr) << name;
      if (designer->HostForm()->Visible()) ++shown;
      form->mi_CloseAllClick(nullptr);
      QApplication::processEvents();
    }
  }
  EXPECT_EQ(shown, 64);
}
