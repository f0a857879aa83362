// The form-text editor driven as a user drives it: loading, the tree, the keywords, the
// status bar panel by panel, compiling, saving, the font command, the strings of a form
// and its settings.
#include "tests/support/Corpus.h"
#include "tests/textedit/EditorTestUtil.h"

#include "foundation/ApEvent.h"
#include "foundation/joIniFile.h"
#include "foundation/joPropPath.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/Values.h"
#include "platform/vcl/Keys.h"
#include "tests/support/TempDir.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>
#include <QTreeWidget>

#include <filesystem>
#include <fstream>

using namespace lumora::test;
namespace fs = std::filesystem;

namespace {

std::string FileIn(const TTempDir& dir, const std::string& name) { return dir / name; }

// Errors queued for the idle report so far.
int DeferredErrorCount() { return DeferredErrors() ? DeferredErrors()->Count() : 0; }

const char* const SmallForm =
    "object Form1: TForm1\r\n"
    "  Left = 10\r\n"
    "  Caption = 'Hello'\r\n"
    "  object Button1: TButton\r\n"
    "    Caption = 'OK'\r\n"
    "  end\r\n"
    "  object ListView1: TListView\r\n"
    "    Columns = <\r\n"
    "      item\r\n"
    "        Caption = 'Name'\r\n"
    "      end>\r\n"
    "  end\r\n"
    "end\r\n";

class ResEditTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    editor = new TjoDFM_ResourceEditor(form);
    editor->SetName("Editor");
    editor->SetParent(form);
    editor->SetAlign(alClient);
    editor->OnChange = [this](TObject* sender) {
      EXPECT_EQ(sender, editor);
      ++changes;
    };
  }
  void Load(const std::string& text) {
    TStringList lines;
    lines.SetText(text);
    editor->LoadLines(&lines);
  }
  TjoRichEdit* Edit() const { return editor->RichEdit(); }
  std::string Panel(int index) const {
    TStatusPanels* panels = editor->StatusBar()->Panels();
    return index < panels->Count() ? panels->Items(index)->Text() : "<no panel>";
  }
  int PanelCount() const { return editor->StatusBar()->Panels()->Count(); }
  // The position of a line's first non-blank character.
  int LineStart(int line) const {
    std::string buffer;
    const std::string_view text = Edit()->LineBytes(line, buffer);
    return Edit()->LineIndex(line) + static_cast<int>(text.find_first_not_of(" \t"));
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) { QTest::keyClick(View(Edit()), key, modifiers); }
  std::string Line(int index) const { return Edit()->Lines()->Strings(index); }

  TjoDFM_ResourceEditor* editor = nullptr;
  int changes = 0;
};

// ---- Construction -------------------------------------------------------------------

TEST_F(ResEditTest, ANewEditorIsAReadOnlyPlainTextInCourierNew) {
  TjoDFM_ResourceEditor fresh(nullptr);
  EXPECT_EQ(fresh.Width(), 300);
  EXPECT_EQ(fresh.Height(), 300);
  EXPECT_EQ(fresh.TreeWidth(), 180);
  EXPECT_TRUE(fresh.ReadOnly());
  EXPECT_FALSE(fresh.TreeVisible());
  EXPECT_FALSE(fresh.StatusBarVisible());
  EXPECT_EQ(fresh.Caption(), "");
  EXPECT_FALSE(fresh.Updating());
  TjoRichEdit* edit = fresh.RichEdit();
  EXPECT_EQ(edit->Owner(), &fresh);
  EXPECT_EQ(edit->Parent(), &fresh);
  EXPECT_EQ(edit->Align(), alClient);
  EXPECT_TRUE(edit->ReadOnly());
  EXPECT_TRUE(edit->PlainText());
  EXPECT_EQ(edit->ScrollBars(), ssBoth);
  EXPECT_FALSE(edit->WordWrap());
  EXPECT_FALSE(edit->ParentFont());
  EXPECT_EQ(edit->Font()->Name(), "Courier New");
  EXPECT_EQ(edit->Font()->Size(), 11);
  EXPECT_EQ(edit->Font()->Charset(), DEFAULT_CHARSET);
  // The rich edit's twelve entries, then the editor's own.
  TMenuItem* items = edit->Menu()->Items();
  ASSERT_EQ(items->Count(), 16);
  EXPECT_TRUE(items->Items(12)->IsLine());
  EXPECT_EQ(items->Items(13), fresh.CompileItem());
  EXPECT_EQ(fresh.CompileItem()->Caption(), "Compile");
  EXPECT_EQ(ShortCutToText(fresh.CompileItem()->ShortCut()), "Ctrl+F9");
  EXPECT_TRUE(items->Items(14)->IsLine());
  EXPECT_EQ(items->Items(15), fresh.FontItem());
  EXPECT_EQ(fresh.FontItem()->Caption(), "&Font");
  EXPECT_EQ(fresh.FontItem()->ShortCut(), scNone);
}

// ---- The state table, panel by panel --------------------------------------------------

TEST_F(ResEditTest, AfterConstructionClearOrLoadLinesNothingIsModified) {
  editor->SetStatusBarVisible(true);
  ASSERT_EQ(PanelCount(), 3);
  EXPECT_EQ(editor->StatusBar()->Panels()->Items(0)->Width(), 60);
  EXPECT_EQ(editor->StatusBar()->Panels()->Items(1)->Width(), 60);
  EXPECT_EQ(editor->StatusBar()->Panels()->Items(2)->Width(), 70);
  EXPECT_FALSE(editor->StatusBar()->SizeGrip());
  auto expectUnmodified = [&] {
    EXPECT_FALSE(editor->Modified());
    EXPECT_TRUE(editor->Compiled());
    EXPECT_FALSE(editor->CompileItem()->Enabled());
    EXPECT_EQ(Panel(1), "");
    EXPECT_EQ(Panel(2), "Read only");
  };
  expectUnmodified();
  Load(SmallForm);
  expectUnmodified();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(Edit()->Lines()->Text(), SmallForm);
  editor->Clear();
  expectUnmodified();
  EXPECT_EQ(Edit()->Lines()->Count(), 0);
  editor->LoadLines(nullptr);
  expectUnmodified();
  EXPECT_EQ(Edit()->Lines()->Count(), 0);
}

TEST_F(ResEditTest, TheFirstEditMarksTheTextModifiedOnce) {
  editor->SetStatusBarVisible(true);
  editor->SetReadOnly(false);
  EXPECT_EQ(Panel(2), "");
  ShowForm();
  Load(SmallForm);
  Edit()->SetFocus();
  changes = 0;
  Edit()->SetSelStart(Edit()->LineIndex(1) + 11);  // after "  Left = 10"
  Key(Qt::Key_1);
  EXPECT_TRUE(editor->Modified());
  EXPECT_EQ(changes, 1);
  EXPECT_FALSE(editor->Compiled());
  EXPECT_TRUE(editor->CompileItem()->Enabled());
  EXPECT_EQ(Panel(1), "Modified");
  Key(Qt::Key_2);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(Line(1), "  Left = 1012");
}

TEST_F(ResEditTest, ASuccessfulCompileShowsTheConvertersTextStillModified) {
  editor->SetStatusBarVisible(true);
  editor->SetReadOnly(false);
  ShowForm();
  Load("object Form1: TForm1\r\n\tLeft   =   $10\r\n  Caption = 'a''b'\r\nend\r\n");
  Edit()->SetFocus();
  Edit()->SetSelStart(Edit()->LineIndex(2) + 16);  // before the b
  Key(Qt::Key_C);
  changes = 0;
  Key(Qt::Key_F9, Qt::ControlModifier);
  EXPECT_EQ(Edit()->Lines()->Text(), "object Form1: TForm1\r\n  Left = 16\r\n  Caption = 'a'#39'cb'\r\nend\r\n");
  EXPECT_TRUE(editor->Modified());
  EXPECT_EQ(changes, 2);
  EXPECT_TRUE(editor->Compiled());
  EXPECT_FALSE(editor->CompileItem()->Enabled());
  EXPECT_EQ(Panel(1), "Modified");
  EXPECT_TRUE(Edit()->IsBold(0));
  EXPECT_FALSE(Edit()->CanUndo());
  EXPECT_EQ(editor->SourceStream(), ObjectTextToBinary(Edit()->Lines()->Text()));
  // Nothing to compile now.
  changes = 0;
  EXPECT_TRUE(editor->Compile());
  EXPECT_EQ(changes, 0);
}

TEST_F(ResEditTest, AFailedCompileKeepsTheTextAndPutsTheCaretOnTheNamedLine) {
  editor->SetStatusBarVisible(true);
  editor->SetReadOnly(false);
  ShowForm();
  Load(SmallForm);
  Edit()->SetFocus();
  Edit()->SetSelStart(Edit()->LineIndex(4) + 16);  // between O and K
  Key(Qt::Key_Return);  // breaks the string constant
  const std::string typed = Edit()->Lines()->Text();
  try {
    editor->Compile();
    FAIL() << "the broken text compiled";
  } catch (const EParserError& e) {
    EXPECT_EQ(e.Message(), "Invalid string constant on line 5");
  }
  EXPECT_EQ(Edit()->Lines()->Text(), typed);
  EXPECT_EQ(Edit()->SelStart(), Edit()->LineIndex(4));
  EXPECT_EQ(Edit()->SelLength(), 0);
  EXPECT_TRUE(editor->Modified());
  EXPECT_FALSE(editor->Compiled());
  EXPECT_TRUE(editor->CompileItem()->Enabled());
  EXPECT_EQ(Panel(1), "Modified");
  EXPECT_FALSE(Edit()->CanUndo());
  EXPECT_TRUE(Edit()->IsBold(0));
  // Through the shortcut, the application hears of the error.
  std::string reported;
  Application->OnException = [&](TObject*, Exception* e) { reported = e->Message(); };
  Key(Qt::Key_F9, Qt::ControlModifier);
  Application->OnException = nullptr;
  EXPECT_EQ(reported, "Invalid string constant on line 5");
}

TEST_F(ResEditTest, SetModifiedFalseClearsThePanelAndLeavesCompileAlone) {
  editor->SetStatusBarVisible(true);
  editor->SetReadOnly(false);
  ShowForm();
  Load(SmallForm);
  Edit()->SetFocus();
  Key(Qt::Key_Space);
  ASSERT_FALSE(editor->Compiled());
  editor->SetModified(false);
  EXPECT_FALSE(editor->Modified());
  EXPECT_FALSE(editor->Compiled());
  EXPECT_TRUE(editor->CompileItem()->Enabled());
  EXPECT_EQ(Panel(1), "");
  EXPECT_FALSE(Edit()->Modified());
  EXPECT_FALSE(Edit()->CanUndo());
  // The next edit marks it again.
  changes = 0;
  Key(Qt::Key_Space);
  EXPECT_TRUE(editor->Modified());
  EXPECT_EQ(changes, 1);
}

// ---- Keywords -----------------------------------------------------------------------

TEST_F(ResEditTest, OnlyLowerCaseKeywordsFollowedByABlankAnEndOrAnAngleAreBold) {
  Load("object Form1: TForm1\r\n"
       "  Object Panel1: TPanel\r\n"
       "  end\r\n"
       "\tobject Tabbed: TLabel\r\n"
       "  end\r\n"
       "  objectName = 1\r\n"
       "  ending = 2\r\n"
       "  Items = <\r\n"
       "    item\r\n"
       "      Width = 3\r\n"
       "    end>\r\n"
       "  inherited Frame1: TFrame1\r\n"
       "  end\r\n"
       "  object\tX: TX\r\n"
       "  end\r\n"
       "end");
  EXPECT_TRUE(Edit()->IsBold(0));
  EXPECT_TRUE(Edit()->IsBold(5));
  EXPECT_FALSE(Edit()->IsBold(6));
  EXPECT_FALSE(Edit()->IsBold(LineStart(1)));    // Object
  EXPECT_TRUE(Edit()->IsBold(LineStart(2)));     // end
  EXPECT_FALSE(Edit()->IsBold(LineStart(3)));    // a tab before it
  EXPECT_FALSE(Edit()->IsBold(LineStart(5)));    // objectName
  EXPECT_FALSE(Edit()->IsBold(LineStart(6)));    // ending
  EXPECT_TRUE(Edit()->IsBold(LineStart(8)));     // item
  EXPECT_TRUE(Edit()->IsBold(LineStart(10)));    // end>
  EXPECT_TRUE(Edit()->IsBold(LineStart(10) + 2));
  EXPECT_FALSE(Edit()->IsBold(LineStart(10) + 3));  // the ">"
  EXPECT_TRUE(Edit()->IsBold(LineStart(11)));    // inherited
  EXPECT_FALSE(Edit()->IsBold(LineStart(13)));   // a tab after it
  EXPECT_TRUE(Edit()->IsBold(LineStart(15)));    // the last line: end alone
  EXPECT_FALSE(editor->Modified());
  EXPECT_FALSE(Edit()->CanUndo());
  // The tree still finds the blocks the emphasis leaves plain.
  editor->SetTreeVisible(true);
  TTreeNode* root = editor->Tree()->Items()->GetFirstNode();
  ASSERT_NE(root, nullptr);
  std::vector<std::string> children;
  for (TTreeNode* n = root->GetFirstChild(); n; n = n->GetNextSibling()) children.push_back(n->Text());
  EXPECT_EQ(children, (std::vector<std::string>{"object Panel1: TPanel", "object Tabbed: TLabel", "item",
                                                "inherited Frame1: TFrame1", "object X: TX"}));
}

// ---- The tree ---------------------------------------------------------------------------

TEST_F(ResEditTest, TheTreeMirrorsTheBlocksWithTheirLines) {
  editor->SetTreeVisible(true);
  ASSERT_NE(editor->Tree(), nullptr);
  ASSERT_NE(editor->Splitter(), nullptr);
  Load(SmallForm);
  TTreeNodes* nodes = editor->Tree()->Items();
  ASSERT_EQ(nodes->Count(), 4);
  EXPECT_EQ(nodes->Item(0)->Text(), "object Form1: TForm1");
  EXPECT_EQ(nodes->Item(1)->Text(), "object Button1: TButton");
  EXPECT_EQ(nodes->Item(2)->Text(), "object ListView1: TListView");
  EXPECT_EQ(nodes->Item(3)->Text(), "item");
  EXPECT_EQ(nodes->Item(3)->Parent(), nodes->Item(2));
  EXPECT_EQ(FormTreeNodeLine(nodes->Item(0)), 0);
  EXPECT_EQ(FormTreeNodeLine(nodes->Item(1)), 3);
  EXPECT_EQ(FormTreeNodeLine(nodes->Item(3)), 8);
  EXPECT_EQ(editor->Tree()->Selected(), nodes->Item(0));
  EXPECT_TRUE(nodes->Item(0)->Expanded());
  EXPECT_FALSE(nodes->Item(2)->Expanded());
  EXPECT_TRUE(editor->Tree()->ReadOnly());
  EXPECT_FALSE(editor->Tree()->HideSelection());
  EXPECT_EQ(editor->Tree()->Align(), alLeft);
  EXPECT_EQ(editor->Splitter()->Width(), 5);
  EXPECT_FALSE(editor->Splitter()->Beveled());
}

TEST_F(ResEditTest, ClickingANodeScrollsItsLineToTheTopButNotTheOtherWay) {
  editor->SetTreeVisible(true);
  ShowForm();
  std::string text = "object Form1: TForm1\r\n";
  for (int i = 0; i < 60; ++i) text += "  object Label" + std::to_string(i) + ": TLabel\r\n    Tag = 1\r\n  end\r\n";
  text += "end\r\n";
  Load(text);
  QTreeWidget* tree = editor->Tree()->TreeWidget();
  TTreeNode* node = editor->Tree()->Items()->GetFirstNode()->Item(20);
  const QRect r = tree->visualItemRect(node->WidgetItem());
  ASSERT_TRUE(r.isValid());
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, r.center());
  EXPECT_EQ(editor->Tree()->Selected(), node);
  EXPECT_EQ(Edit()->FirstVisibleLine(), 61);
  EXPECT_EQ(Edit()->SelStart(), Edit()->LineIndex(61));
  EXPECT_EQ(Edit()->SelLength(), 0);
  // The caret moving in the text leaves the tree alone.
  Edit()->GotoLine(5);
  EXPECT_EQ(editor->Tree()->Selected(), node);
}

TEST_F(ResEditTest, ANodeNearTheEndScrollsAsFarAsTheTextAllows) {
  editor->SetTreeVisible(true);
  ShowForm();
  std::string text = "object Form1: TForm1\r\n";
  for (int i = 0; i < 80; ++i) text += "  Tag" + std::to_string(i) + " = 1\r\n";
  text += "  object Last: TLabel\r\n  end\r\nend\r\n";
  Load(text);
  TTreeNode* last = editor->Tree()->Items()->Item(1);
  editor->Tree()->SetSelected(last);
  const int lines = Edit()->Lines()->Count();
  EXPECT_LT(Edit()->FirstVisibleLine(), 81);
  EXPECT_GE(Edit()->FirstVisibleLine() + Edit()->VisibleLineCount(), lines - 1);
  EXPECT_EQ(Edit()->SelStart(), Edit()->LineIndex(81));
  const int first = Edit()->FirstVisibleLine();
  Edit()->LineScroll(10);
  EXPECT_EQ(Edit()->FirstVisibleLine(), first);
}

TEST_F(ResEditTest, EveryRebuildSelectsTheFirstNodeAndACompileErrorMovesOnToItsLine) {
  editor->SetTreeVisible(true);
  editor->SetReadOnly(false);
  ShowForm();
  // The first block stands far down: the text scrolls to it and the caret goes there.
  std::string text;
  for (int i = 0; i < 40; ++i) text += "\r\n";
  text += "object Form1: TForm1\r\n  Tag = 1\r\n";
  for (int i = 0; i < 40; ++i) text += "  Top = " + std::to_string(i) + "\r\n";
  text += "end\r\n";
  Load(text);
  EXPECT_EQ(Edit()->FirstVisibleLine(), 40);
  EXPECT_EQ(Edit()->SelStart(), Edit()->LineIndex(40));
  // Compiling rebuilds the tree: the first object line is the first line now.
  Edit()->SetSelStart(Edit()->LineIndex(41) + 8);
  Type(View(Edit()), "2");
  ASSERT_TRUE(editor->Compile());
  EXPECT_EQ(Edit()->Lines()->Strings(0), "object Form1: TForm1");
  EXPECT_EQ(Edit()->Lines()->Strings(1), "  Tag = 21");
  EXPECT_EQ(Edit()->SelStart(), 0);
  EXPECT_EQ(editor->Tree()->Selected(), editor->Tree()->Items()->GetFirstNode());
  // A text that does not compile: the tree goes to its first node, then the caret to the error.
  Edit()->SetSelStart(Edit()->LineIndex(1) + 2);
  Type(View(Edit()), "=");
  EXPECT_THROW(editor->Compile(), EParserError);
  EXPECT_EQ(Edit()->LineFromChar(Edit()->SelStart()), 1);
  EXPECT_EQ(Edit()->SelStart(), Edit()->LineIndex(1));
}

TEST_F(ResEditTest, HidingAndShowingTheTreeKeepsItsWidth) {
  editor->SetTreeVisible(true);
  ShowForm();
  editor->Tree()->SetWidth(222);
  EXPECT_EQ(editor->TreeWidth(), 222);
  editor->SetTreeVisible(false);
  EXPECT_EQ(editor->Tree(), nullptr);
  EXPECT_EQ(editor->Splitter(), nullptr);
  EXPECT_EQ(editor->TreeWidth(), 222);
  editor->SetTreeVisible(true);
  EXPECT_EQ(editor->Tree()->Width(), 222);
  editor->SetTreeVisible(false);
  editor->SetTreeWidth(140);  // while hidden: taken when shown
  EXPECT_EQ(editor->TreeWidth(), 140);
  editor->SetTreeVisible(true);
  EXPECT_EQ(editor->Tree()->Width(), 140);
  // The tree, then the splitter, then the text.
  EXPECT_EQ(editor->Tree()->Left(), 0);
  EXPECT_EQ(editor->Splitter()->Left(), 140);
  EXPECT_EQ(Edit()->Left(), 145);
  // Dragging the splitter is what the next hide keeps.
  editor->SetTreeWidth(190);
  editor->SetTreeVisible(false);
  EXPECT_EQ(editor->TreeWidth(), 190);
}

// ---- The status bar --------------------------------------------------------------------

TEST_F(ResEditTest, TheCaptionPanelComesAndGoesWithANonBlankCaption) {
  editor->SetStatusBarVisible(true);
  EXPECT_EQ(PanelCount(), 3);
  editor->SetCaption("Unit1.dfm");
  ASSERT_EQ(PanelCount(), 4);
  EXPECT_EQ(Panel(3), "Unit1.dfm");
  editor->SetCaption("   ");
  EXPECT_EQ(PanelCount(), 3);
  editor->SetCaption("Other.dfm");
  ASSERT_EQ(PanelCount(), 4);
  EXPECT_EQ(Panel(3), "Other.dfm");
  editor->SetCaption("");
  EXPECT_EQ(PanelCount(), 3);
  // Set while the bar is hidden, shown when it comes.
  editor->SetStatusBarVisible(false);
  EXPECT_EQ(editor->StatusBar(), nullptr);
  editor->SetCaption("Later.dfm");
  editor->SetStatusBarVisible(true);
  ASSERT_EQ(PanelCount(), 4);
  EXPECT_EQ(Panel(3), "Later.dfm");
}

TEST_F(ResEditTest, TheFirstPanelShowsTheCaretWhileTheTextHasTheFocus) {
  editor->SetStatusBarVisible(true);
  editor->SetReadOnly(false);
  auto* other = new TjoRichEdit(form);
  other->SetParent(form);
  other->SetAlign(alTop);
  ShowForm();
  Load(SmallForm);
  other->SetFocus();
  QApplication::processEvents();
  EXPECT_EQ(Panel(0), "");
  Edit()->SetFocus();
  QApplication::processEvents();
  EXPECT_EQ(Panel(0), "     1:   1");
  Key(Qt::Key_Down);
  Key(Qt::Key_End);
  EXPECT_EQ(Panel(0), "     2:  12");
  Type(View(Edit()), "\nab");
  EXPECT_EQ(Panel(0), "     3:   3");
  other->SetFocus();
  QApplication::processEvents();
  EXPECT_EQ(Panel(0), "");
  Key(Qt::Key_Down);
  // Bulk work shows itself.
  editor->BeginUpdate();
  EXPECT_EQ(Panel(0), "Processing ...");
  EXPECT_TRUE(editor->Updating());
  editor->EndUpdate();
  EXPECT_EQ(Panel(0), "");
  EXPECT_FALSE(editor->Updating());
}

TEST_F(ResEditTest, EditsDuringBulkWorkMarkNothingUntilTheEnd) {
  editor->SetReadOnly(false);
  Load(SmallForm);
  changes = 0;
  editor->BeginUpdate();
  editor->BeginUpdate();
  Edit()->Lines()->Add("  object Late: TLabel");
  Edit()->Lines()->Add("  end");
  EXPECT_FALSE(editor->Modified());
  editor->EndUpdate();
  EXPECT_EQ(editor->UpdateCount(), 1);
  editor->EndUpdate();
  EXPECT_EQ(editor->UpdateCount(), 0);
  EXPECT_FALSE(editor->Modified());
  EXPECT_EQ(changes, 0);
  EXPECT_TRUE(editor->Compiled());
}

// ---- Compile keeps what was not touched ------------------------------------------------

std::string LooselyTypedStream() {
  std::string out;
  TValueWriter w(out);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TForm1", "Form1");
  w.WriteShortString("Left");
  w.WriteValue(vaInt16);
  w.WriteInt16Raw(5);
  w.WriteShortString("Scale");
  w.WriteExtended(1.0L);
  w.WriteShortString("Caption");
  w.WriteWideString(u"");
  w.WriteShortString("Tag");
  w.WriteValue(vaInt32);
  w.WriteInt32Raw(7);
  w.WriteListEnd();
  w.WriteListEnd();
  return out;
}

TEST_F(ResEditTest, CompilingAnEditChangesOnlyItsOwnBytes) {
  editor->SetReadOnly(false);
  ShowForm();
  const std::string stream = LooselyTypedStream();
  TStringList lines;
  lines.SetText(ObjectBinaryToText(stream));
  editor->LoadLines(&lines, stream);
  EXPECT_EQ(editor->SourceStream(), stream);
  const int tag = lines.IndexOf("  Tag = 7");
  ASSERT_GE(tag, 0);
  Edit()->SetSelStart(Edit()->LineIndex(tag) + 9);  // after the 7
  Key(Qt::Key_Backspace);
  Type(View(Edit()), "8");
  ASSERT_TRUE(editor->Compile());
  std::string expected = stream;
  const std::size_t at = expected.find(std::string("\x03Tag", 4));
  ASSERT_NE(at, std::string::npos);
  expected.replace(at + 4, 5, std::string("\x02\x08", 2));
  EXPECT_EQ(editor->SourceStream(), expected);
  // And the file written is that stream behind its header.
  TTempDir dir;
  const std::string file = FileIn(dir, "Form1.dfm");
  ASSERT_TRUE(editor->SaveToResourceFile(file));
  EXPECT_EQ(ReadFileBytes(file), MakeResHeader("TForm1", static_cast<std::uint32_t>(expected.size())) + expected);
  // A text loaded without its stream is written as the converter writes it.
  editor->LoadLines(&lines);
  EXPECT_EQ(editor->SourceStream(), "");
  ASSERT_TRUE(editor->SaveToResourceFile(file));
  EXPECT_EQ(ReadFileBytes(file).substr(ReadResHeader(ReadFileBytes(file))), ObjectTextToBinary(lines.Text()));
}

TEST_F(ResEditTest, AFormOpenedCompiledAndSavedWithoutEditsIsTheSameFile) {
  LUMORA_REQUIRE_CORPUS();
  editor->SetReadOnly(false);
  editor->SetTreeVisible(true);
  ShowForm();
  const fs::path original = CorpusDir() / "bin" / "1201.dfm";
  const std::string bytes = ReadFileBytes(original);
  const std::string stream = bytes.substr(ReadResHeader(bytes));
  TStringList lines;
  lines.SetText(ObjectBinaryToText(stream));
  editor->LoadLines(&lines, stream);
  // An edit undone by hand: the text is the same, but it is compiled again.
  Type(View(Edit()), " ");
  Key(Qt::Key_Backspace);
  ASSERT_FALSE(editor->Compiled());
  ASSERT_TRUE(editor->Compile());
  EXPECT_EQ(editor->SourceStream(), stream);
  TTempDir dir;
  ASSERT_TRUE(editor->SaveToResourceFile(FileIn(dir, "1201.dfm")));
  EXPECT_EQ(ReadFileBytes(FileIn(dir, "1201.dfm")), bytes);
}

// ---- Saving ---------------------------------------------------------------------------

TEST_F(ResEditTest, AFileThatCannotBeWrittenLeavesNothingBehind) {
  Load(SmallForm);
  TTempDir dir;
  FinalizeApEvent();
  // A folder that does not exist, and one that is a file.
  EXPECT_FALSE(editor->SaveToResourceFile((dir.Path() / "missing" / "Form1.dfm").string()));
  EXPECT_FALSE(fs::exists(dir.Path() / "missing"));
  WriteBytes(dir / "plain", "not a folder");
  EXPECT_FALSE(editor->SaveToResourceFile((dir.Path() / "plain" / "Form1.dfm").string()));
  // A name taken by a folder: the folder stays as it was.
  fs::create_directory(dir.Path() / "Form1.dfm");
  WriteBytes((dir.Path() / "Form1.dfm" / "inside").string(), "kept");
  EXPECT_FALSE(editor->SaveToResourceFile(dir / "Form1.dfm"));
  EXPECT_TRUE(fs::is_directory(dir.Path() / "Form1.dfm"));
  EXPECT_EQ(ReadFileBytes(dir.Path() / "Form1.dfm" / "inside"), "kept");
  // Nothing half-written anywhere, and the reasons wait for the error report.
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.Path()), fs::directory_iterator()), 2);
  EXPECT_EQ(DeferredErrorCount(), 3);
  FinalizeApEvent();
}

TEST_F(ResEditTest, ATextThatDoesNotCompileLeavesAnExistingFileUntouched) {
  editor->SetReadOnly(false);
  ShowForm();
  Load(SmallForm);
  TTempDir dir;
  const std::string target = FileIn(dir, "Form1.dfm");
  { std::ofstream(target, std::ios::binary) << "previous content"; }
  Edit()->SetSelStart(Edit()->LineIndex(2) + 2);
  Type(View(Edit()), "=");
  FinalizeApEvent();
  EXPECT_FALSE(editor->SaveToResourceFile(target));
  EXPECT_EQ(ReadFileBytes(target), "previous content");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.Path()), fs::directory_iterator()), 1);
  EXPECT_EQ(Edit()->LineFromChar(Edit()->SelStart()), 2);  // the caret on the line the parser names
  EXPECT_EQ(DeferredErrorCount(), 1);
  FinalizeApEvent();
}

// ---- Compile errors without a line ---------------------------------------------------

class TFailingEditor : public TjoDFM_ResourceEditor {
public:
  explicit TFailingEditor(TComponent* owner) : TjoDFM_ResourceEditor(owner) {}

protected:
  std::string TextToBinary(const std::string&) const override { throw EOutOfResources("Out of system resources"); }
};

TEST_F(ResEditTest, ACompileErrorWithoutALineLeavesTheCaretWhereItWas) {
  auto* failing = new TFailingEditor(form);
  failing->SetParent(form);
  failing->SetAlign(alRight);
  failing->SetReadOnly(false);
  ShowForm();
  TStringList lines;
  lines.SetText(SmallForm);
  failing->LoadLines(&lines);
  TjoRichEdit* edit = failing->RichEdit();
  edit->SetSelStart(edit->LineIndex(6) + 3);
  QTest::keyClick(View(edit), Qt::Key_Space);
  const int caret = edit->SelStart();
  EXPECT_THROW(failing->Compile(), EOutOfResources);
  EXPECT_EQ(edit->SelStart(), caret);
  EXPECT_TRUE(failing->Modified());
  EXPECT_FALSE(failing->Compiled());
}

// ---- Font -----------------------------------------------------------------------------

TEST_F(ResEditTest, TheFontCommandShowsAllTextInTheChosenFont) {
  editor->SetReadOnly(false);
  ShowForm();
  Load(SmallForm);
  Type(View(Edit()), " ");
  ASSERT_TRUE(editor->Modified());
  int shown = 0;
  SetFontDialogHook([&](TFontDialog& dialog) {
    ++shown;
    EXPECT_EQ(dialog.Font()->Name(), "Courier New");
    dialog.Font()->SetName("DejaVu Sans Mono");
    dialog.Font()->SetSize(14);
    return true;
  });
  changes = 0;
  editor->FontItem()->Click();
  SetFontDialogHook({});
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(editor->FontEditor()->Name(), "DejaVu Sans Mono");
  EXPECT_EQ(editor->FontEditor()->Size(), 14);
  EXPECT_EQ(Line(0), " object Form1: TForm1");
  EXPECT_TRUE(Edit()->IsBold(LineStart(3)));
  EXPECT_TRUE(editor->Modified());  // unchanged
  EXPECT_EQ(changes, 0);
  // Cancelled: nothing changes.
  SetFontDialogHook([](TFontDialog& dialog) {
    dialog.Font()->SetName("Liberation Serif");
    return false;
  });
  editor->FontCommand(nullptr);
  SetFontDialogHook({});
  EXPECT_EQ(editor->FontEditor()->Name(), "DejaVu Sans Mono");
}

TEST_F(ResEditTest, DestroyingAnyEditorFreesTheSharedFontDialog) {
  SetFontDialogHook([](TFontDialog& dialog) {
    dialog.SetMinFontSize(9);
    return false;
  });
  editor->FontCommand(nullptr);
  ASSERT_NE(TjoDFM_ResourceEditor::SharedFontDialog(), nullptr);
  EXPECT_EQ(TjoDFM_ResourceEditor::SharedFontDialog()->MinFontSize(), 9);
  delete new TjoDFM_ResourceEditor(nullptr);
  EXPECT_EQ(TjoDFM_ResourceEditor::SharedFontDialog(), nullptr);
  SetFontDialogHook([](TFontDialog&) { return false; });
  editor->FontCommand(nullptr);
  SetFontDialogHook({});
  ASSERT_NE(TjoDFM_ResourceEditor::SharedFontDialog(), nullptr);
  EXPECT_EQ(TjoDFM_ResourceEditor::SharedFontDialog()->MinFontSize(), 0);  // its settings are gone
}

// ---- Strings --------------------------------------------------------------------------

TEST_F(ResEditTest, CollectStringsFindsEveryConstantWithItsLine) {
  Load("object Form1: TForm1\r\n"
       "  Caption = 'it''s'\r\n"
       "  Hint = 'a'#13#10'b'\r\n"
       "  Tag = 1\r\n"
       "  Items.Strings = (\r\n"
       "    'one'\r\n"
       "    #65'x')\r\n"
       "end\r\n");
  TStringList list;
  EXPECT_EQ(editor->CollectStrings(&list), 4);
  ASSERT_EQ(list.Count(), 4);
  EXPECT_EQ(list.Strings(0), "it's");
  EXPECT_EQ(list.Objects(0), reinterpret_cast<TObject*>(1));
  EXPECT_EQ(list.Strings(1), "a\r\nb");
  EXPECT_EQ(list.Objects(1), reinterpret_cast<TObject*>(2));
  EXPECT_EQ(list.Strings(2), "one");
  EXPECT_EQ(list.Strings(3), "x");  // the quote is searched first: the code before it is lost
  EXPECT_EQ(list.Objects(3), reinterpret_cast<TObject*>(6));
}

TEST_F(ResEditTest, ApplyStringsWritesEachStringBackIntoItsLine) {
  editor->SetReadOnly(false);
  Load("object Form1: TForm1 'zero'\r\n"
       "  Caption = 'abc'#13#10'def' + \r\n"
       "  Hint = 'x'\r\n"
       "end\r\n");
  TStringList list;
  list.AddObject("it's\r\nnew", reinterpret_cast<TObject*>(1));
  list.AddObject("never", reinterpret_cast<TObject*>(0));
  list.AddObject("", reinterpret_cast<TObject*>(2));
  changes = 0;
  editor->ApplyStrings(&list);
  EXPECT_EQ(Line(0), "object Form1: TForm1 'zero'");
  EXPECT_EQ(Line(1), "  Caption = 'it'#39's'#13#10'new' + ");
  EXPECT_EQ(Line(2), "  Hint = ");
  EXPECT_TRUE(editor->Modified());
  EXPECT_EQ(changes, 1);
  // Read-only: nothing.
  editor->SetReadOnly(true);
  list.Clear();
  list.AddObject("more", reinterpret_cast<TObject*>(1));
  editor->ApplyStrings(&list);
  EXPECT_EQ(Line(1), "  Caption = 'it'#39's'#13#10'new' + ");
}

TEST(FindStringLiteral, ScansQuotedRunsAndCodesAsOneConstant) {
  int start = 0, length = 0;
  ASSERT_TRUE(FindStringLiteral("  Caption = 'abc'#13#10'def' + x", start, length));
  EXPECT_EQ(start, 13);
  EXPECT_EQ(length, 16);
  ASSERT_TRUE(FindStringLiteral("  A = 'it''s' ", start, length));
  EXPECT_EQ(length, 7);
  ASSERT_TRUE(FindStringLiteral("  A = #9#65", start, length));
  EXPECT_EQ(start, 7);
  EXPECT_EQ(length, 5);
  ASSERT_TRUE(FindStringLiteral("  A = 'open", start, length));
  EXPECT_EQ(length, 5);
  EXPECT_FALSE(FindStringLiteral("  Tag = 1", start, length));
  EXPECT_EQ(start, 0);
}

// ---- Settings reach the editor by property path -----------------------------------------

TEST_F(ResEditTest, TheSettingsFileLoadsTheEditorsPublishedProperties) {
  EXPECT_TRUE(SetValueByPath(form, "Editor.TreeWidth", Variant(250)));
  EXPECT_EQ(editor->TreeWidth(), 250);
  EXPECT_TRUE(SetValueByPath(form, "Editor.FontEditor.Name", Variant(std::string("DejaVu Sans Mono"))));
  EXPECT_EQ(Edit()->Font()->Name(), "DejaVu Sans Mono");
  TTempDir dir;
  const std::string ini = FileIn(dir, "lumora.ini");
  {
    std::ofstream out(ini);
    out << "[Frm_Main]\nEditor.TreeWidth=210\nEditor.FontEditor.Name=Liberation Mono\n"
           "Editor.FontEditor.Size=13\nEditor.FontEditor.CharSet=204\nEditor.TreeVisible=1\n";
  }
  TjoIniFile settings(ini);
  settings.LoadProperties("Frm_Main", "", form);
  EXPECT_EQ(editor->TreeWidth(), 210);
  EXPECT_EQ(editor->FontEditor()->Name(), "Liberation Mono");
  EXPECT_EQ(editor->FontEditor()->Size(), 13);
  EXPECT_EQ(editor->FontEditor()->Charset(), RUSSIAN_CHARSET);
  EXPECT_TRUE(editor->TreeVisible());
  // The text follows its font's code page.
  TStringList lines;
  lines.Add("  Caption = '\xCF\xF0\xE8\xE2\xE5\xF2'");
  editor->LoadLines(&lines);
  EXPECT_EQ(Edit()->Lines()->Strings(0), lines.Strings(0));
  EXPECT_EQ(QString::fromUtf8(std::string(Edit()->DocumentText()).c_str()), QString::fromUtf8("  Caption = 'Привет'\n"));
  Variant width;
  ASSERT_TRUE(GetValueByPath(form, "Editor.TreeWidth", Variant(0), width));
  EXPECT_EQ(VarToStr(width), "210");
}

// ---- A look at it --------------------------------------------------------------------------

TEST_F(ResEditTest, ALargeCorpusFormShowsWithTreeKeywordsAndStatusBar) {
  LUMORA_REQUIRE_CORPUS();
  const std::string resource = ReadFileBytes(CorpusDir() / "bin" / "1201.dfm");
  TStringList lines;
  lines.SetText(ObjectResourceToText(resource));
  editor->SetTreeVisible(true);
  editor->SetStatusBarVisible(true);
  editor->SetCaption("1201.dfm");
  ShowForm();
  editor->LoadLines(&lines);
  Edit()->SetFocus();
  QApplication::processEvents();
  EXPECT_GT(editor->Tree()->Items()->Count(), 1);
  EXPECT_TRUE(Edit()->IsBold(0));
  // Loading ends with the first panel empty; the caret's place shows once it moves.
  EXPECT_EQ(Panel(0), "");
  QTest::keyClick(View(Edit()), Qt::Key_Down);
  EXPECT_EQ(Panel(0), "     2:   1");
  EXPECT_EQ(Panel(2), "Read only");
  EXPECT_EQ(Panel(3), "1201.dfm");
  const QImage picture = form->Widget()->grab().toImage();
  picture.save(QString::fromStdString(std::string(LUMORA_BINARY_DIR) + "/editor-look.png"));
  EXPECT_FALSE(picture.isNull());
}

}  // namespace
