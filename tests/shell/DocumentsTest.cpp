// The road of a file through the main window, driven from its menus: open as form and as
// text, the editor face, the live forms in the window list, Save As in each of its five
// kinds, the question about unsaved changes, and files that are damaged or no forms at all.
#include "tests/shell/MainWindowTestUtil.h"

#include "liveform/joDesigner.h"
#include "liveform/joObjInsp.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "textedit/DFM_ResEdit.h"
#include "textedit/StrN_Edit.h"
#include "textedit/joGrids.h"
#include "tests/support/Corpus.h"

#include <QAction>

namespace {

const char* const kFormText =
    "object Form1: TForm\n"
    "  Left = 10\n"
    "  Top = 20\n"
    "  Caption = 'First form'\n"
    "  ClientHeight = 120\n"
    "  ClientWidth = 200\n"
    "  object Button1: TButton\n"
    "    Left = 8\n"
    "    Top = 8\n"
    "    Width = 75\n"
    "    Height = 25\n"
    "    Caption = 'Go'\n"
    "  end\n"
    "end\n";

std::string BinaryFormFile(const std::string& text) {
  const std::string stream = ObjectTextToBinary(text);
  return MakeResHeader(StreamRootClassName(stream), static_cast<std::uint32_t>(stream.size())) + stream;
}

std::string FormText(const std::string& name, const std::string& caption) {
  return "object " + name + ": TForm\n  Caption = '" + caption + "'\n  ClientHeight = 80\n  ClientWidth = 120\nend\n";
}

class DocumentsTest : public MainWindowTest {
protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    // A clock that moves a second at each look, so that no key waits for the key guard.
    TjoDesigner::SetTickSource([] {
      static std::uint64_t now = 0;
      return now += 1000;
    });
  }
  void TearDown() override {
    MainWindowTest::TearDown();
    TjoDesigner::SetTickSource(nullptr);
    SetFileDialogHook(nullptr);
  }
  // A binary form file in the test's folder.
  std::string Binary(const std::string& name, const std::string& text = kFormText) {
    const std::string path = dir / name;
    lumora::test::WriteBytes(path, BinaryFormFile(text));
    return path;
  }
  std::string TextFile(const std::string& name, const std::string& text) {
    const std::string path = dir / name;
    lumora::test::WriteBytes(path, text);
    return path;
  }
  // Chooses a menu item as the menu bar does.
  static void Choose(TMenuItem* item) {
    ASSERT_NE(ActionOf(item), nullptr);
    ASSERT_TRUE(ActionOf(item)->isEnabled()) << item->Caption();
    ActionOf(item)->trigger();
    QApplication::processEvents();
  }
  // File > Open as Text, the dialog answered with `path`; the read-only box as given.
  void OpenAsTextFromMenu(const std::string& path, bool readOnly) {
    SetFileDialogHook([&](TOpenDialog& d) {
      d.SetFileName(path);
      TOpenOptions o = d.Options();
      if (readOnly) o += ofReadOnly; else o -= ofReadOnly;
      d.SetOptions(o);
      return true;
    });
    Choose(form->mi_OpenAsText);
    SetFileDialogHook(nullptr);
  }
  void OpenAsFormFromMenu(const std::string& path) {
    PushNextFileName(path);
    Choose(form->mi_OpenAsForm);
    QApplication::processEvents();
  }
  // File > Save As, the save dialog answered with `path` and the filter entry.
  void SaveAsFromMenu(const std::string& path, int entry) {
    SetFileDialogHook([path, entry](TOpenDialog& d) {
      d.SetFileName(path);
      d.SetFilterIndex(entry);
      return true;
    });
    Choose(form->mi_FileSaveAs);
    SetFileDialogHook(nullptr);
  }
  TjoDFM_ResourceEditor* Editor() { return form->FEditor; }
  // Types into the editor's text at its start, as the user would.
  void TypeIntoEditor(const std::string& text) {
    QWidget* view = Editor()->RichEdit()->Widget();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClicks(view, QString::fromStdString(text));
    QApplication::processEvents();
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
  // Runs the event loop until `ready` holds, for at most five seconds.
  static void WaitFor(const std::function<bool()>& ready) {
    for (int i = 0; i < 250 && !ready(); ++i) RunFor(20);
  }
  // Lets the deferred error report show its box (answered OK).
  void Idle() {
    SetUserQuestionHook([](const TUserQuestion&) { return int(mrOk); });
    RunFor(60);
    SetUserQuestionHook(nullptr);
  }
};

}  // namespace

// ---- Open as text and the editor face ----------------------------------------------------------

TEST_F(DocumentsTest, OpenAsTextShowsTheFormTextInTheEditorFace) {
  Start();
  const std::string path = Binary("a.dfm");
  OpenAsTextFromMenu(path, true);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_TRUE(form->FEditorShown);
  EXPECT_TRUE(Editor()->Visible());
  EXPECT_FALSE(form->Label1->Visible());
  EXPECT_EQ(form->Width(), 640);
  EXPECT_EQ(form->Height(), 480);
  EXPECT_EQ(form->FCurrentFile, path);
  EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(0), "object Form1: TForm");
  EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(3), "  Caption = 'First form'");
  EXPECT_TRUE(Editor()->ReadOnly());
  EXPECT_FALSE(form->mi_EditStrings->Enabled());
  EXPECT_EQ(form->mi_FileCloseEditor->Caption(), "&Close Editor");
  EXPECT_TRUE(ActionOf(form->mi_FileSaveAs)->isEnabled());
  EXPECT_TRUE(ActionOf(form->mi_ViewAsForm)->isEnabled());
  // The tree lists the form and its button.
  ASSERT_NE(Editor()->Tree(), nullptr);
  EXPECT_EQ(Editor()->Tree()->Items()->Count(), 2);
  EXPECT_EQ(form->DocumentCount(), 1);
  EXPECT_TRUE(Questions().empty());
}

TEST_F(DocumentsTest, TheReadOnlyBoxOfTheDialogDecidesWhenTheSettingAllowsIt) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  EXPECT_FALSE(Editor()->ReadOnly());
  EXPECT_TRUE(form->mi_EditStrings->Enabled());
}

TEST_F(DocumentsTest, EscWithUnchangedTextGoesBackToTheBannerWithoutAQuestion) {
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_EQ(form->Width(), kBannerWidth);
  EXPECT_EQ(form->Height(), kBannerHeight);
  EXPECT_TRUE(form->Label1->Visible());
  EXPECT_FALSE(Editor()->Visible());
  EXPECT_EQ(form->mi_FileCloseEditor->Caption(), "&Hide Viewer");
  EXPECT_TRUE(Questions().empty());
  // Shown nowhere any more, the document is closed.
  EXPECT_EQ(form->DocumentCount(), 0);
}

TEST_F(DocumentsTest, SaveChangesAnsweredNoLeavesTheFileAndClosesTheEditor) {
  Start();
  form->FReadOnly = false;
  const std::string path = Binary("a.dfm");
  const std::string before = ReadText(path);
  OpenAsTextFromMenu(path, false);
  TypeIntoEditor("{ note }");
  EXPECT_TRUE(Editor()->Modified());
  PushNextAnswer(mrNo);
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_EQ(ReadText(path), before);
}

TEST_F(DocumentsTest, SaveChangesCancelledKeepsTheEditorAndItsText) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  TypeIntoEditor("x");
  PushNextAnswer(mrCancel);
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_TRUE(form->FEditorShown);
  EXPECT_TRUE(Editor()->Modified());
  EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(0), "xobject Form1: TForm");
}

// ---- Save As: the filter entry decides what is written ------------------------------------------

TEST_F(DocumentsTest, SavingWithTheRcEntryWritesNothingAndClearsTheModifiedMark) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  TypeIntoEditor(" ");
  ASSERT_TRUE(Editor()->Modified());
  SaveAsFromMenu(dir / "a.rc", 2);
  EXPECT_FALSE(fs::exists(dir / "a.rc"));
  EXPECT_FALSE(Editor()->Modified());
}

TEST_F(DocumentsTest, TheTextEntryWritesPlainTextEvenIntoADfmName) {
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  const std::string out = dir / "out.dfm";
  SaveAsFromMenu(out, 3);
  const std::string written = ReadText(out);
  EXPECT_EQ(written.substr(0, 21), "object Form1: TForm\r\n");
  EXPECT_NE(written.find("Caption = 'Go'"), std::string::npos);
  EXPECT_FALSE(IsBinaryFormFile(out));
  // The save dialog starts next time in the folder chosen.
  EXPECT_EQ(TFrm_mLumora::SharedSaveDialog()->InitialDir(), dir.Path().string());
}

TEST_F(DocumentsTest, TheFormEntryWritesABinaryFormFileOfTheEditedText) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  // The caption in line 4 becomes 'Edited'.
  Editor()->RichEdit()->Lines()->SetStrings(3, "  Caption = 'Edited'");
  QApplication::processEvents();
  ASSERT_TRUE(Editor()->Modified());
  const std::string out = dir / "b";
  SaveAsFromMenu(out, 1);
  // A name typed without an extension is used as typed.
  ASSERT_TRUE(fs::exists(out));
  EXPECT_TRUE(IsBinaryFormFile(out));
  const std::string file = ReadText(out);
  const std::string text = ObjectBinaryToText(std::string_view(file).substr(file.find("TPF0")));
  EXPECT_NE(text.find("Caption = 'Edited'"), std::string::npos);
  EXPECT_FALSE(Editor()->Modified());
}

TEST_F(DocumentsTest, TheRtfEntryWritesRichTextAndTheOtherEntryPlainText) {
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  const bool plain = Editor()->RichEdit()->PlainText();
  SaveAsFromMenu(dir / "a.rtf", 4);
  EXPECT_EQ(ReadText(dir / "a.rtf").substr(0, 5), "{\\rtf");
  EXPECT_EQ(Editor()->RichEdit()->PlainText(), plain);
  SaveAsFromMenu(dir / "a.any", 5);
  EXPECT_EQ(ReadText(dir / "a.any").substr(0, 19), "object Form1: TForm");
}

TEST_F(DocumentsTest, ASaveThatCannotBeWrittenSaysSoAndDestroysNothing) {
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  // A name inside a file: no folder to write in.
  SetUserQuestionHook([](const TUserQuestion&) { return int(mrOk); });
  SaveAsFromMenu((dir.Path() / "a.dfm" / "x.txt").string(), 3);
  RunFor(50);
  ASSERT_EQ(Questions().size(), 1u);
  EXPECT_NE(Questions()[0].find("x.txt"), std::string::npos) << Questions()[0];
  EXPECT_TRUE(IsBinaryFormFile(dir / "a.dfm"));
  // A name taken by a folder: the folder and what it holds stay.
  ClearAskedQuestions();
  fs::create_directory(dir / "taken");
  lumora::test::WriteBytes((dir.Path() / "taken" / "old.txt").string(), "old");
  SaveAsFromMenu(dir / "taken", 1);
  RunFor(50);
  EXPECT_EQ(Questions().size(), 1u);
  EXPECT_EQ(ReadText((dir.Path() / "taken" / "old.txt").string()), "old");
  // The text is still there to be saved elsewhere.
  EXPECT_TRUE(form->FEditorShown);
}

// ---- Open as form, live forms and the window list -----------------------------------------------

TEST_F(DocumentsTest, OpenAsFormShowsTheLiveFormAndListsItInTheWindowMenu) {
  Start();
  const std::string path = Binary("a.dfm");
  OpenAsFormFromMenu(path);
  ASSERT_EQ(form->DocumentCount(), 1);
  TjoDesigner* designer = form->DocumentDesigner(0);
  ASSERT_NE(designer, nullptr);
  ASSERT_NE(designer->HostForm(), nullptr);
  EXPECT_TRUE(designer->HostForm()->Visible());
  EXPECT_EQ(designer->HostForm()->Caption(), "First form");
  EXPECT_EQ(WindowMenu(), (std::vector<std::string>{"&0  " + path + "  \xC2\xA4 First form", "-", "Close &All"}));
  EXPECT_TRUE(ActionOf(form->bmi_WinList)->isEnabled());
  EXPECT_TRUE(ActionOf(form->mi_ViewWindowList)->isEnabled());
  // The banner stays.
  EXPECT_FALSE(form->FEditorShown);
}

TEST_F(DocumentsTest, OpeningTheSameFileTwiceShowsTheSameLiveFormWithoutRereading) {
  Start();
  const std::string path = Binary("a.dfm");
  OpenAsFormFromMenu(path);
  TfixFormFFF* first = form->DocumentDesigner(0)->HostForm();
  Binary("a.dfm", FormText("Form1", "Changed on disk"));
  OpenAsFormFromMenu(path);
  EXPECT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm(), first);
  EXPECT_EQ(first->Caption(), "First form");
}

TEST_F(DocumentsTest, WithOnly1VFASecondFormClosesTheFirst) {
  Start();
  form->SetOnly1VF(true);
  OpenAsFormFromMenu(Binary("a.dfm", FormText("FormA", "A")));
  OpenAsFormFromMenu(Binary("b.dfm", FormText("FormB", "B")));
  ASSERT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentName(0), dir / "b.dfm");
  EXPECT_EQ(WindowMenu().size(), 3u);
}

TEST_F(DocumentsTest, CloseAllFromTheWindowMenuClosesEveryLiveForm) {
  Start();
  OpenAsFormFromMenu(Binary("a.dfm", FormText("FormA", "A")));
  OpenAsFormFromMenu(Binary("b.dfm", FormText("FormB", "B")));
  EXPECT_EQ(WindowMenu(), (std::vector<std::string>{"&0  " + std::string(dir / "a.dfm") + "  \xC2\xA4 A",
                                                    "&1  " + std::string(dir / "b.dfm") + "  \xC2\xA4 B", "-",
                                                    "Close &All"}));
  Choose(form->bmi_WinList->Items(3));
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_TRUE(WindowMenu().empty());
  EXPECT_FALSE(ActionOf(form->bmi_WinList)->isEnabled());
}

TEST_F(DocumentsTest, AnEleventhLiveFormHasTheAcceleratorA) {
  Start();
  for (int i = 0; i < 11; ++i) OpenAsFormFromMenu(Binary("f" + std::to_string(i) + ".dfm", FormText("F" + std::to_string(i), "C" + std::to_string(i))));
  ASSERT_EQ(WindowMenu().size(), 13u);
  EXPECT_EQ(WindowMenu()[9].substr(0, 3), "&9 ");
  EXPECT_EQ(WindowMenu()[10].substr(0, 3), "&A ");
}

TEST_F(DocumentsTest, EscOnALiveFormClosesItAndItsDocument) {
  Start();
  OpenAsFormFromMenu(Binary("a.dfm"));
  TfixFormFFF* live = form->DocumentDesigner(0)->HostForm();
  QApplication::setActiveWindow(live->Widget());
  QApplication::processEvents();
  QTest::keyClick(live->Widget(), Qt::Key_Escape);
  RunFor(30);
  EXPECT_EQ(form->DocumentCount(), 0);
  EXPECT_TRUE(WindowMenu().empty());
}

TEST_F(DocumentsTest, F12OnALiveFormShowsItsTextAndViewAsFormComesBack) {
  Start();
  const std::string path = Binary("a.dfm");
  OpenAsFormFromMenu(path);
  TfixFormFFF* live = form->DocumentDesigner(0)->HostForm();
  QApplication::setActiveWindow(live->Widget());
  QApplication::processEvents();
  QTest::keyClick(live->Widget(), Qt::Key_F12);
  QApplication::processEvents();
  ASSERT_TRUE(form->FEditorShown);
  EXPECT_EQ(form->EditorDesigner(), form->DocumentDesigner(0));
  EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(0), "object Form1: TForm");
  // View as Form from the main window brings the same live form.
  Activate(form);
  Choose(form->mi_ViewAsForm);
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm(), live);
  EXPECT_TRUE(live->Visible());
  // Leaving the editor keeps the document: its live form shows.
  Activate(form);
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_EQ(form->DocumentCount(), 1);
}

TEST_F(DocumentsTest, ACompiledEditShowsInTheLiveForm) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  Editor()->RichEdit()->Lines()->SetStrings(3, "  Caption = 'From the text'");
  QApplication::processEvents();
  Choose(form->mi_ViewAsForm);
  ASSERT_EQ(form->DocumentCount(), 1);
  ASSERT_NE(form->DocumentDesigner(0)->HostForm(), nullptr);
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm()->Caption(), "From the text");
}

TEST_F(DocumentsTest, TextThatDoesNotCompileKeepsTheLiveFormAwayAndSaysWhy) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  Editor()->RichEdit()->Lines()->SetStrings(3, "  Caption = 'unclosed");
  QApplication::processEvents();
  SetUserQuestionHook([](const TUserQuestion&) { return int(mrOk); });
  ActionOf(form->mi_ViewAsForm)->trigger();
  RunFor(50);
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm(), nullptr);
  ASSERT_FALSE(Questions().empty());
  EXPECT_NE(Questions().back().find("line 4"), std::string::npos) << Questions().back();
  EXPECT_TRUE(Editor()->Modified());
}

TEST_F(DocumentsTest, F12OfAnotherFormWithModifiedTextAsksFirstAndCancelKeepsTheText) {
  Start();
  form->FReadOnly = false;
  OpenAsFormFromMenu(Binary("b.dfm", FormText("FormB", "B")));
  TfixFormFFF* liveB = form->DocumentDesigner(0)->HostForm();
  Activate(form);
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  Editor()->RichEdit()->Lines()->SetStrings(3, "  Caption = 'Edited'");
  QApplication::processEvents();
  PushNextAnswer(mrCancel);
  QApplication::setActiveWindow(liveB->Widget());
  QApplication::processEvents();
  QTest::keyClick(liveB->Widget(), Qt::Key_F12);
  QApplication::processEvents();
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(3), "  Caption = 'Edited'");
  EXPECT_TRUE(Editor()->Modified());
  EXPECT_EQ(form->FCurrentFile, dir / "a.dfm");
  EXPECT_EQ(form->EditorDesigner(), form->DocumentDesigner(1));
}

// ---- Files from the command line, a drop, the relay -----------------------------------------------

TEST_F(DocumentsTest, AFormTextFileOnTheCommandLineOpensAsALiveForm) {
  const std::string path = TextFile("t.dfm", kFormText);
  Start({path});
  WaitFor([&] { return form->DocumentCount() > 0 && (form->FEditorShown || form->DocumentDesigner(0)); });
  RunFor(20);
  ASSERT_EQ(form->DocumentCount(), 1);
  ASSERT_NE(form->DocumentDesigner(0)->HostForm(), nullptr);
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm()->Caption(), "First form");
  EXPECT_TRUE(Questions().empty());
}

TEST_F(DocumentsTest, WithViewAsFormOffTheCommandLineOpensTheTextReadOnly) {
  WriteIni("[SystemSetting]\nViewAsForm=0\n");
  const std::string path = Binary("a.dfm");
  Start({path});
  WaitFor([&] { return form->DocumentCount() > 0 && (form->FEditorShown || form->DocumentDesigner(0)); });
  RunFor(20);
  ASSERT_TRUE(form->FEditorShown);
  EXPECT_TRUE(Editor()->ReadOnly());
  EXPECT_EQ(form->FCurrentFile, path);
}

TEST_F(DocumentsTest, AFileThatIsNoFormIsPassedOverInSilence) {
  Start();
  const std::string path = TextFile("notes.txt", "Just some notes\n");
  form->OpenByDefault(path);
  OpenAsFormFromMenu(path);
  RunFor(40);
  EXPECT_EQ(form->DocumentDesigner(0), nullptr);
  EXPECT_TRUE(Questions().empty());
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_TRUE(WindowMenu().empty());
}

TEST_F(DocumentsTest, AFormTextThatDoesNotParseSaysWhereAndOpensNothing) {
  Start();
  const std::string path = TextFile("bad.dfm", "object Form1: TForm\n  Caption = 'open\nend\n");
  Idle();
  ClearAskedQuestions();
  OpenAsFormFromMenu(path);
  Idle();
  ASSERT_EQ(Questions().size(), 1u);
  EXPECT_NE(Questions()[0].find("bad.dfm"), std::string::npos) << Questions()[0];
  EXPECT_NE(Questions()[0].find("line 2"), std::string::npos) << Questions()[0];
  EXPECT_TRUE(WindowMenu().empty());
}

TEST_F(DocumentsTest, ClosingTheProgramAsksAboutChangedTextAndCancelKeepsItRunning) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  TypeIntoEditor("x");
  PushNextAnswer(mrCancel);
  form->Close();
  QApplication::processEvents();
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_TRUE(form->Visible());
  EXPECT_TRUE(form->FEditorShown);
}

TEST_F(DocumentsTest, TheEditorsTreeWidthAndFontAreKeptBetweenRuns) {
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  Editor()->SetTreeWidth(222);
  Editor()->FontEditor()->SetName("DejaVu Sans Mono");
  Editor()->FontEditor()->SetSize(13);
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  Close();
  EXPECT_NE(Ini().find("Editor.TreeWidth=222"), std::string::npos) << Ini();
  Start();
  OpenAsTextFromMenu(Binary("a.dfm"), true);
  EXPECT_EQ(Editor()->TreeWidth(), 222);
  EXPECT_EQ(Editor()->FontEditor()->Name(), "DejaVu Sans Mono");
  EXPECT_EQ(Editor()->FontEditor()->Size(), 13);
}

TEST_F(DocumentsTest, ARealFormOpensBothWaysAndCloses) {
  LUMORA_REQUIRE_CORPUS();
  Start();
  SetUserQuestionHook([](const TUserQuestion&) { return int(mrOk); });
  int opened = 0;
  for (const fs::path& file : lumora::test::CorpusFiles("bin", ".dfm")) {
    if (opened == 12) break;
    form->OpenAsText(file.string(), true);
    ASSERT_TRUE(form->FEditorShown) << file;
    EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(0).substr(0, 7), "object ") << file;
    form->ShowLiveForm(form->EditorDesigner());
    QApplication::processEvents();
    Activate(form);
    QTest::keyClick(form->Widget(), Qt::Key_Escape);
    QApplication::processEvents();
    if (form->bmi_WinList->Count() > 0) Choose(form->bmi_WinList->Items(form->bmi_WinList->Count() - 1));
    EXPECT_EQ(form->DocumentCount(), 0) << file;
    ++opened;
  }
  EXPECT_EQ(opened, 12);
}

TEST_F(DocumentsTest, ClosingAllWhileAPackageCannotBeLoadedLeavesNothingHalfOpen) {
  // The package list names a package that is not there: loading it puts a message up.
  lumora::test::WriteBytes(dir / "known-packages", std::string(dir / "dclstd.so") + "\n");
  Start();
  bool closedMeanwhile = false;
  SetUserQuestionHook([&](const TUserQuestion&) {
    // Everything is closed while the message shows (as ending the program does; ending it
    // here would end every modal loop of the tests that follow).
    if (!closedMeanwhile) form->mi_CloseAllClick(nullptr);
    closedMeanwhile = true;
    return int(mrOk);
  });
  OpenAsFormFromMenu(Binary("a.dfm"));
  RunFor(30);
  EXPECT_TRUE(closedMeanwhile);
  EXPECT_EQ(form->DocumentCount(), 0);
  // No live form came up for the document that was closed.
  int liveForms = 0;
  for (int i = 0; i < Screen->CustomFormCount(); ++i)
    if (dynamic_cast<TfixFormFFF*>(Screen->CustomForms(i))) ++liveForms;
  EXPECT_EQ(liveForms, 0);
  EXPECT_TRUE(WindowMenu().empty());
}

TEST_F(DocumentsTest, EditStringsChangesTheTextsOfTheFormAndMarksTheirLines) {
  Start();
  form->FReadOnly = false;
  OpenAsTextFromMenu(Binary("a.dfm"), false);
  TjoRichEdit* rich = Editor()->RichEdit();
  rich->SetSelStart(5);
  std::vector<std::string> rows;
  std::string caption;
  int marked = -2;
  When([] { return ActiveWindow(TFrm_StrN_Edit::Instance()); }, [&] {
    TFrm_StrN_Edit* d = TFrm_StrN_Edit::Instance();
    caption = d->Caption();
    for (int i = 0; i < d->Grid->RowCount(); ++i) rows.push_back(d->Grid->Cells(0, i));
    marked = rich->HighlightedLine();
    // The second text, the button's caption, typed anew.
    QWidget* grid = d->Grid->Widget();
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_Down);
    QTest::keyClick(grid, Qt::Key_F2);
    QWidget* edit = QApplication::focusWidget();
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(edit, "Stop");
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::mouseClick(d->BtnOk->Widget(), Qt::LeftButton);
  });
  form->mi_EditStrings->Click();
  QApplication::processEvents();
  EXPECT_EQ(caption, "Strings resources");
  EXPECT_EQ(rows, (std::vector<std::string>{"First form", "Go"}));
  EXPECT_EQ(marked, 3);
  EXPECT_EQ(rich->Lines()->Strings(11), "    Caption = 'Stop'");
  EXPECT_TRUE(Editor()->Modified());
  // The caret is where it was and no line stays marked.
  EXPECT_EQ(rich->SelStart(), 5);
  EXPECT_EQ(rich->HighlightedLine(), -1);
}

TEST_F(DocumentsTest, TheWindowListFromALiveFormPreselectsItAndBringsTheChosenOne) {
  Start();
  OpenAsFormFromMenu(Binary("a.dfm", FormText("FormA", "A")));
  OpenAsFormFromMenu(Binary("b.dfm", FormText("FormB", "B")));
  TfixFormFFF* liveA = form->DocumentDesigner(0)->HostForm();
  TfixFormFFF* liveB = form->DocumentDesigner(1)->HostForm();
  liveA->Hide();
  QApplication::setActiveWindow(liveB->Widget());
  QApplication::processEvents();
  std::vector<std::string> lines;
  int preselected = -2;
  When([] { return ActiveWindow(WindowListDialog()); }, [&] {
    TFrm_WindowList* d = WindowListDialog();
    for (int i = 0; i < d->LB_List->Items()->Count(); ++i) lines.push_back(d->LB_List->Items()->Strings(i));
    preselected = d->LB_List->ItemIndex();
    // The main window's line, then OK.
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_Home);
    QTest::mouseClick(d->BtnOk->Widget(), Qt::LeftButton);
  });
  // Alt+0 from the live form: every window of the program takes it.
  QTest::keyClick(liveB->Widget(), Qt::Key_0, Qt::AltModifier);
  RunFor(40);
  // A hidden live form is not listed.
  EXPECT_EQ(lines, (std::vector<std::string>{"Main Window", dir / "b.dfm"}));
  EXPECT_EQ(preselected, 1);
  EXPECT_EQ(Screen->ActiveCustomForm(), form);
}

TEST_F(DocumentsTest, AFormTextFileDroppedOnTheBannerOpensAsALiveForm) {
  Start();
  const std::string path = TextFile("dropped.dfm", FormText("Dropped", "From a drop"));
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path)), QUrl::fromLocalFile("/forms/b.dfm")});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &enter);
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(form->Widget(), &drop);
  EXPECT_EQ(StartFileName(), path);
  WaitFor([&] { return form->DocumentCount() > 0 && (form->FEditorShown || form->DocumentDesigner(0)); });
  RunFor(20);
  ASSERT_EQ(form->DocumentCount(), 1);
  EXPECT_EQ(form->DocumentName(0), path);
  ASSERT_NE(form->DocumentDesigner(0)->HostForm(), nullptr);
  EXPECT_TRUE(form->DocumentDesigner(0)->HostForm()->Visible());
  EXPECT_EQ(form->DocumentDesigner(0)->HostForm()->Caption(), "From a drop");
  // The save dialog, when it is made, will start where the dropped file is.
  EXPECT_EQ(SaveDialogFolder(), path);
}

// ---- An edit seen as a live form is still the user's to save ------------------------------------

namespace {

class EditViewCloseTest : public DocumentsTest {
protected:
  // Opens the file as text, types " edited" at the end of its caption, F12 to the live
  // form, F12 there back to the text: the steps of a user who looks at an edit.
  void EditAndView(const std::string& path) {
    form->FReadOnly = false;
    OpenAsTextFromMenu(path, false);
    TjoRichEdit* rich = Editor()->RichEdit();
    rich->Widget()->setFocus();
    QTest::keyClick(rich->Widget(), Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < 3; ++i) QTest::keyClick(rich->Widget(), Qt::Key_Down);
    QTest::keyClick(rich->Widget(), Qt::Key_End);
    QTest::keyClick(rich->Widget(), Qt::Key_Left);
    QTest::keyClicks(rich->Widget(), " edited");
    ASSERT_EQ(rich->Lines()->Strings(3), "  Caption = 'First form edited'");
    QTest::keyClick(form->Widget(), Qt::Key_F12);
    QApplication::processEvents();
    ASSERT_EQ(form->DocumentCount(), 1);
    TfixFormFFF* live = form->DocumentDesigner(0)->HostForm();
    ASSERT_NE(live, nullptr);
    ASSERT_TRUE(live->Visible());
    EXPECT_EQ(live->Caption(), "First form edited");
    Activate(live);
    QTest::keyClick(live->Widget(), Qt::Key_F12);
    QApplication::processEvents();
    ASSERT_TRUE(form->FEditorShown);
    // The edit is in the live form, not yet in the file.
    EXPECT_TRUE(Editor()->Modified());
    EXPECT_EQ(Editor()->RichEdit()->Lines()->Strings(3), "  Caption = 'First form edited'");
  }
  void CloseEditor() {
    Activate(form);
    QTest::keyClick(form->Widget(), Qt::Key_Escape);
    QApplication::processEvents();
  }
};

}  // namespace

TEST_F(EditViewCloseTest, AnsweredNoNothingIsWritten) {
  Start();
  const std::string path = Binary("a.dfm");
  const std::string before = ReadText(path);
  EditAndView(path);
  PushNextAnswer(mrNo);
  CloseEditor();
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_FALSE(form->FEditorShown);
  EXPECT_EQ(ReadText(path), before);
}

TEST_F(EditViewCloseTest, AnsweredYesTheFileIsSavedWithTheEdit) {
  Start();
  const std::string path = Binary("a.dfm");
  EditAndView(path);
  PushNextAnswer(mrYes);
  SetFileDialogHook([path](TOpenDialog& d) {
    d.SetFileName(path);
    d.SetFilterIndex(1);
    return true;
  });
  CloseEditor();
  SetFileDialogHook(nullptr);
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_FALSE(form->FEditorShown);
  const std::string file = ReadText(path);
  ASSERT_TRUE(IsBinaryFormFile(path));
  const std::string text = ObjectBinaryToText(std::string_view(file).substr(file.find("TPF0")));
  EXPECT_NE(text.find("Caption = 'First form edited'"), std::string::npos) << text;
}

TEST_F(EditViewCloseTest, AnsweredCancelTheEditorKeepsTheText) {
  Start();
  const std::string path = Binary("a.dfm");
  const std::string before = ReadText(path);
  EditAndView(path);
  PushNextAnswer(mrCancel);
  CloseEditor();
  EXPECT_EQ(Questions(), std::vector<std::string>{"Save changes?"});
  EXPECT_TRUE(form->FEditorShown);
  EXPECT_TRUE(Editor()->Modified());
  EXPECT_EQ(ReadText(path), before);
}

TEST_F(DocumentsTest, TheMainWindowActivatedHidesALiveFormsInspectorUntilTheFormComesBack) {
  Start();
  OpenAsFormFromMenu(Binary("a.dfm"));
  TjoDesigner* designer = form->DocumentDesigner(0);
  TfixFormFFF* live = designer->HostForm();
  ASSERT_NE(live, nullptr);
  Activate(live);
  QTest::keyClick(live->Widget(), Qt::Key_F11);
  QApplication::processEvents();
  ASSERT_NE(designer->Inspector(), nullptr);
  ASSERT_TRUE(designer->Inspector()->Visible());
  // The inspector stays on top: over the main window it would hide the text.
  Activate(form);
  EXPECT_FALSE(designer->Inspector()->Visible());
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), nullptr);
  EXPECT_TRUE(live->Visible());
  Activate(live);
  EXPECT_TRUE(designer->Inspector()->Visible());
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), designer);
}
