// The rich edit driven as a person drives it: its context menu, the caret report, search
// and replace on the shared dialogs, line marking and the clipboard keys.
#include "tests/textedit/EditorTestUtil.h"

#include "platform/vcl/Clipbrd.h"
#include "resources/ResStrings.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

#include <functional>

using namespace lumora::test;

namespace {

class RichEditTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    edit = new TjoRichEdit(form);
    edit->SetParent(form);
    edit->SetAlign(alClient);
    edit->SetWordWrap(false);
    edit->SetScrollBars(ssBoth);
    ShowForm();
    edit->SetFocus();
    QApplication::processEvents();
  }
  void SetLines(std::initializer_list<const char*> lines) {
    TStringList list;
    for (const char* l : lines) list.Add(l);
    edit->Lines()->Assign(&list);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) { QTest::keyClick(View(edit), key, modifiers); }

  // Opens the context menu with the mouse and hands it over while it shows.
  void WithContextMenu(const std::function<void(QMenu*)>& inspect) {
    QWidget* viewport = View(edit)->viewport();
    bool seen = false;
    QTimer::singleShot(0, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (!menu) return;
      seen = true;
      inspect(menu);
      if (menu->isVisible()) menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20), viewport->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(viewport, &event);
    ASSERT_TRUE(seen) << "the context menu did not open";
  }
  static QAction* Action(QMenu* menu, const QString& caption) {
    for (QAction* a : menu->actions()) {
      if (a->text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&')) == caption) return a;
    }
    return nullptr;
  }
  static void ClickAction(QMenu* menu, const QString& caption) {
    QAction* a = Action(menu, caption);
    ASSERT_NE(a, nullptr) << caption.toStdString();
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(a).center());
  }
  // The enabled states of the menu's items by caption, as the open menu shows them.
  std::map<std::string, bool> MenuStates() {
    std::map<std::string, bool> states;
    WithContextMenu([&](QMenu* menu) {
      for (QAction* a : menu->actions()) {
        if (a->isSeparator()) continue;
        states[a->text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&')).toStdString()] = a->isEnabled();
      }
    });
    return states;
  }
  static QDialog* DialogNamed(const char* name) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* d = qobject_cast<QDialog*>(w); d && d->objectName() == QLatin1String(name) && d->isVisible()) return d;
    }
    return nullptr;
  }
  // Searches with the find dialog as a person does: Ctrl+F, the text, Find Next.
  void FindWithDialog(const QString& text, bool matchCase = false) {
    Key(Qt::Key_F, Qt::ControlModifier);
    QDialog* dialog = DialogNamed("FindDialog");
    ASSERT_NE(dialog, nullptr);
    auto* field = dialog->findChild<QLineEdit*>(QStringLiteral("FindText"));
    field->clear();
    QTest::keyClicks(field, text);
    dialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))->setChecked(matchCase);
    QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("FindNext")), Qt::LeftButton);
  }
  TjoRichEdit* edit = nullptr;
};

TEST_F(RichEditTest, TheContextMenuHasItsTwelveEntriesWithShortcuts) {
  TMenuItem* items = edit->Menu()->Items();
  ASSERT_EQ(items->Count(), 12);
  const char* captions[] = {"&Undo", "-", "Cu&t", "&Copy", "&Paste", "&Delete", "-", "Se&lect All", "-",
                            "&Find", "&Replace", "&Search Again"};
  const char* keys[] = {"Ctrl+Z", "", "Ctrl+X", "Ctrl+C", "Ctrl+V", "Ctrl+Del", "", "Ctrl+A", "", "Ctrl+F", "Ctrl+R", "F3"};
  for (int i = 0; i < 12; ++i) {
    EXPECT_EQ(items->Items(i)->Caption(), captions[i]);
    EXPECT_EQ(ShortCutToText(items->Items(i)->ShortCut()), keys[i]);
  }
  EXPECT_EQ(edit->PopupMenu(), edit->Menu());
}

TEST_F(RichEditTest, TheMenuEnablesWhatCanBeDone) {
  SetLines({"first line", "second line"});
  Clipboard()->SetAsText("clip");
  auto states = MenuStates();
  EXPECT_FALSE(states["Undo"]);
  EXPECT_FALSE(states["Cut"]);
  EXPECT_FALSE(states["Copy"]);
  EXPECT_TRUE(states["Paste"]);
  EXPECT_FALSE(states["Delete"]);
  EXPECT_TRUE(states["Select All"]);
  EXPECT_TRUE(states["Find"]);
  EXPECT_TRUE(states["Replace"]);
  EXPECT_FALSE(states["Search Again"]);  // no find dialog yet
  Key(Qt::Key_End);
  Key(Qt::Key_Left, Qt::ShiftModifier);
  Key(Qt::Key_X);
  states = MenuStates();
  EXPECT_TRUE(states["Undo"]);
  Key(Qt::Key_Left, Qt::ShiftModifier);
  states = MenuStates();
  EXPECT_TRUE(states["Cut"]);
  EXPECT_TRUE(states["Copy"]);
  EXPECT_TRUE(states["Delete"]);
}

TEST_F(RichEditTest, AReadOnlyControlOffersOnlyCopySelectAllFindAndSearchAgain) {
  SetLines({"abc abc"});
  edit->SetReadOnly(true);
  Clipboard()->SetAsText("clip");
  FindWithDialog("abc");
  ASSERT_EQ(edit->SelLength(), 3);
  const auto states = MenuStates();
  EXPECT_FALSE(states.at("Cut"));
  EXPECT_FALSE(states.at("Paste"));
  EXPECT_FALSE(states.at("Delete"));
  EXPECT_FALSE(states.at("Replace"));
  EXPECT_TRUE(states.at("Copy"));
  EXPECT_TRUE(states.at("Select All"));
  EXPECT_TRUE(states.at("Find"));
  EXPECT_TRUE(states.at("Search Again"));
  // And the text cannot be typed into.
  Key(Qt::Key_Z);
  EXPECT_EQ(edit->Lines()->Strings(0), "abc abc");
}

TEST_F(RichEditTest, MenuCommandsEditTheText) {
  SetLines({"hello world"});
  WithContextMenu([](QMenu* menu) { ClickAction(menu, "Select All"); });
  EXPECT_EQ(edit->SelText(), "hello world\r\n");
  edit->SetSelection(0, 5);
  WithContextMenu([](QMenu* menu) { ClickAction(menu, "Cut"); });
  EXPECT_EQ(Clipboard()->AsText(), "hello");
  EXPECT_EQ(edit->Lines()->Strings(0), " world");
  edit->SetSelection(6, 0);
  WithContextMenu([](QMenu* menu) { ClickAction(menu, "Paste"); });
  EXPECT_EQ(edit->Lines()->Strings(0), " worldhello");
  edit->SetSelection(0, 1);
  WithContextMenu([](QMenu* menu) { ClickAction(menu, "Delete"); });
  EXPECT_EQ(edit->Lines()->Strings(0), "worldhello");
  WithContextMenu([](QMenu* menu) { ClickAction(menu, "Undo"); });
  EXPECT_EQ(edit->Lines()->Strings(0), " worldhello");
}

TEST_F(RichEditTest, ShortcutsWorkWithoutTheMenuOpen) {
  SetLines({"one two"});
  Key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(edit->SelLength(), 8);
  edit->SetSelection(0, 3);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "one");
  edit->SetSelection(0, 3);
  Key(Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(edit->Lines()->Strings(0), " two");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(edit->Lines()->Strings(0), "one two");
}

TEST_F(RichEditTest, TypingReportsTheCaretLineAndColumnAfterEachKey) {
  std::vector<std::pair<int, int>> reports;
  edit->SetOnCursorPosChange([&](TObject* sender, int line, int col) {
    EXPECT_EQ(sender, edit);
    reports.emplace_back(line, col);
  });
  // A new listener hears the position at once.
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0], std::make_pair(0, 0));
  reports.clear();
  Type(View(edit), "ab\ncd");
  const std::vector<std::pair<int, int>> expected{{0, 1}, {0, 2}, {1, 0}, {1, 1}, {1, 2}};
  EXPECT_EQ(reports, expected);
  reports.clear();
  Key(Qt::Key_Up);
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.back(), std::make_pair(0, 2));
  // Assigning nothing reports nothing.
  edit->SetOnCursorPosChange(nullptr);
  Key(Qt::Key_Down);
}

TEST_F(RichEditTest, EveryKeyThatChangesTheTextRaisesOnChangeOnceAfterTheChange) {
  SetLines({"abc"});
  int changes = 0;
  std::vector<std::string> seen;
  edit->OnChange = [&](TObject*) {
    ++changes;
    seen.push_back(edit->Lines()->Strings(0));
  };
  Key(Qt::Key_End);
  EXPECT_EQ(changes, 0);
  Key(Qt::Key_D);
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Z, Qt::ControlModifier);
  Key(Qt::Key_Right);
  const std::vector<std::string> expected{"abcd", "abc", "abcd"};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(changes, 3);
  // Read-only: keys change nothing and raise nothing.
  edit->SetReadOnly(true);
  Key(Qt::Key_X);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(edit->Lines()->Strings(0), "abcd");
}

TEST_F(RichEditTest, AssistiveToolsReadTheTextTheCaretAndTheSelection) {
  SetLines({"object \xC9t\xE9: TForm", "end"});  // Windows-1252
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(View(edit));
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->role(), QAccessible::EditableText);
  QAccessibleTextInterface* text = face->textInterface();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->characterCount(), 22);
  EXPECT_EQ(text->text(7, 10), QString::fromUtf8("Été"));
  EXPECT_EQ(face->text(QAccessible::Value), QString::fromUtf8("object Été: TForm\nend\n"));
  Key(Qt::Key_Down);
  Key(Qt::Key_End);
  EXPECT_EQ(text->cursorPosition(), 21);
  text->setSelection(0, 7, 10);
  EXPECT_EQ(edit->SelText(), "\xC9t\xE9");
  int start = -1;
  int end = -1;
  text->selection(0, &start, &end);
  EXPECT_EQ(std::make_pair(start, end), std::make_pair(7, 10));
  EXPECT_EQ(text->selectionCount(), 1);
  text->setCursorPosition(3);
  EXPECT_EQ(edit->SelStart(), 3);
  EXPECT_EQ(text->selectionCount(), 0);
}

TEST_F(RichEditTest, TheColumnCountsCharactersBeyondAscii) {
  SetLines({"\xE9t\xE9 caf\xE9"});  // in Windows-1252
  int column = -1;
  edit->SetOnCursorPosChange([&](TObject*, int, int col) { column = col; });
  Key(Qt::Key_End);
  EXPECT_EQ(column, 8);
  EXPECT_EQ(edit->Lines()->Strings(0), "\xE9t\xE9 caf\xE9");
}

TEST_F(RichEditTest, SearchingForTextOnlyBeforeTheCaretReportsNotFound) {
  SetLines({"needle here", "nothing after"});
  edit->GotoLine(1);
  FindWithDialog("needle");
  EXPECT_EQ(edit->SelLength(), 0);
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text, "Search string 'needle' not found");
  EXPECT_EQ(AskedQuestions()[0].DlgType, mtInformation);
  EXPECT_EQ(AskedQuestions()[0].Buttons, MsgDlgButton(mbOK));
  // Find Next closed the dialog before searching.
  EXPECT_EQ(DialogNamed("FindDialog"), nullptr);
}

TEST_F(RichEditTest, F3FindsTheNextOccurrenceAndSkipsAMatchAtTheSelectionStart) {
  SetLines({"abab ab", "ab"});
  // A match that begins at the caret itself is skipped.
  FindWithDialog("ab");
  EXPECT_EQ(edit->SelStart(), 2);
  EXPECT_EQ(edit->SelText(), "ab");
  Key(Qt::Key_F3);
  EXPECT_EQ(edit->SelStart(), 5);
  Key(Qt::Key_F3);
  EXPECT_EQ(edit->SelStart(), 8);
  EXPECT_TRUE(AskedQuestions().empty());
  Key(Qt::Key_F3);
  EXPECT_EQ(edit->SelStart(), 8);
  EXPECT_EQ(QuestionTexts(), std::vector<std::string>{"Search string 'ab' not found"});
}

TEST_F(RichEditTest, SearchOptionsMatchCaseAndWholeWords) {
  SetLines({"Abc abcd ABC abc"});
  FindWithDialog("abc", true);
  EXPECT_EQ(edit->SelStart(), 4);
  edit->SetSelStart(0);
  TFindDialog* dialog = TjoRichEdit::SharedFindDialog();
  dialog->SetOptions(dialog->Options() - frMatchCase + frWholeWord);
  ASSERT_TRUE(edit->SearchNext(dialog));
  EXPECT_EQ(edit->SelStart(), 9);  // "ABC" is a whole word; case does not count now
  dialog->SetOptions(dialog->Options() + frMatchCase);
  ASSERT_TRUE(edit->SearchNext(dialog));
  EXPECT_EQ(edit->SelStart(), 13);
}

TEST_F(RichEditTest, ABlankSearchTextIsNeverSearchedAndReportedAsNotFound) {
  SetLines({"   x"});
  Key(Qt::Key_F3);  // the find dialog is made, empty
  ASSERT_NE(TjoRichEdit::SharedFindDialog(), nullptr);
  EXPECT_EQ(QuestionTexts(), std::vector<std::string>{"Search string '' not found"});
  TjoRichEdit::SharedFindDialog()->SetFindText("  ");
  EXPECT_FALSE(edit->SearchNext(TjoRichEdit::SharedFindDialog()));
  EXPECT_EQ(edit->SelLength(), 0);
}

TEST_F(RichEditTest, ReplaceComparesTheSelectionExactlyThenSearches) {
  SetLines({"ABC x abc"});
  Key(Qt::Key_R, Qt::ControlModifier);
  QDialog* dialog = DialogNamed("ReplaceDialog");
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(edit->HideSelection());  // the found text stays visible beside the dialog
  dialog->findChild<QLineEdit*>(QStringLiteral("FindText"))->clear();
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("FindText")), "abc");
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("ReplaceText")), "def");
  dialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))->setChecked(true);
  edit->SetSelection(0, 3);  // "ABC"
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Replace")), Qt::LeftButton);
  EXPECT_EQ(edit->Lines()->Strings(0), "ABC x def");
  // The caret stays behind the inserted text; the next match is not searched.
  EXPECT_EQ(edit->SelStart(), 9);
  EXPECT_EQ(edit->SelLength(), 0);
  // Nothing more to find: the message, and nothing replaced.
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Replace")), Qt::LeftButton);
  EXPECT_EQ(edit->Lines()->Strings(0), "ABC x def");
  EXPECT_EQ(QuestionTexts(), std::vector<std::string>{"Search string 'abc' not found"});
  // A selection equal to the find text is replaced at once.
  edit->SetSelection(0, 3);
  dialog->findChild<QLineEdit*>(QStringLiteral("FindText"))->setText("ABC");
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Replace")), Qt::LeftButton);
  EXPECT_EQ(edit->Lines()->Strings(0), "def x def");
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Cancel")), Qt::LeftButton);
  EXPECT_TRUE(edit->HideSelection());
}

TEST_F(RichEditTest, ReplaceAllReplacesFromTheSelectionOnwardsWithoutAMessage) {
  SetLines({"cat cat", "cat dog cat"});
  // The search starts one character after the caret: the "cat" right at the caret stays.
  edit->SetSelStart(0);
  Key(Qt::Key_R, Qt::ControlModifier);
  QDialog* dialog = DialogNamed("ReplaceDialog");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QLineEdit*>(QStringLiteral("FindText"))->clear();
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("FindText")), "cat");
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("ReplaceText")), "bird");
  int changes = 0;
  edit->OnChange = [&](TObject*) { ++changes; };
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("ReplaceAll")), Qt::LeftButton);
  EXPECT_EQ(edit->Lines()->Strings(0), "cat bird");
  EXPECT_EQ(edit->Lines()->Strings(1), "bird dog bird");
  EXPECT_TRUE(AskedQuestions().empty());
  EXPECT_EQ(DialogNamed("ReplaceDialog"), nullptr);
  EXPECT_GE(changes, 1);
  // One step to undo.
  edit->Undo();
  EXPECT_EQ(edit->Lines()->Strings(1), "cat dog cat");
}

TEST_F(RichEditTest, ReplaceAllSkipsAMatchRightAfterTheOneReplaced) {
  SetLines({"aaaa"});
  edit->SetSelection(0, 1);  // "a" selected: replaced first
  Key(Qt::Key_R, Qt::ControlModifier);
  QDialog* dialog = DialogNamed("ReplaceDialog");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QLineEdit*>(QStringLiteral("FindText"))->clear();
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("FindText")), "a");
  QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("ReplaceText")), "b");
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("ReplaceAll")), Qt::LeftButton);
  // Each search starts one character after the caret, which stands behind the text put in.
  EXPECT_EQ(edit->Lines()->Strings(0), "baba");
  EXPECT_EQ(edit->SelStart(), 3);
}

TEST_F(RichEditTest, LosingTheFocusClosesTheReplaceDialog) {
  auto* other = new TjoRichEdit(form);
  other->SetParent(form);
  other->SetBounds(0, 0, 50, 50);
  other->SetAlign(alTop);
  edit->SetFocus();
  Key(Qt::Key_R, Qt::ControlModifier);
  ASSERT_NE(DialogNamed("ReplaceDialog"), nullptr);
  // The user comes back to the window and clicks into another control.
  QApplication::processEvents();
  QApplication::setActiveWindow(form->Widget());
  QApplication::processEvents();
  ASSERT_TRUE(edit->Focused());
  ASSERT_NE(DialogNamed("ReplaceDialog"), nullptr);
  other->SetFocus();
  QApplication::processEvents();
  EXPECT_EQ(DialogNamed("ReplaceDialog"), nullptr);
}

TEST_F(RichEditTest, TheSharedDialogsGoWithAnyRichEdit) {
  FindWithDialog("zzz");
  ASSERT_NE(TjoRichEdit::SharedFindDialog(), nullptr);
  EXPECT_EQ(TjoRichEdit::SharedFindDialog()->FindText(), "zzz");
  delete new TjoRichEdit(nullptr);
  EXPECT_EQ(TjoRichEdit::SharedFindDialog(), nullptr);
  EXPECT_EQ(TjoRichEdit::SharedReplaceDialog(), nullptr);
  // The next use makes a new one, without the earlier text.
  Key(Qt::Key_F, Qt::ControlModifier);
  ASSERT_NE(TjoRichEdit::SharedFindDialog(), nullptr);
  EXPECT_EQ(TjoRichEdit::SharedFindDialog()->FindText(), "");
  EXPECT_TRUE(TjoRichEdit::SharedFindDialog()->Options().Contains(frHideUpDown));
  TjoRichEdit::SharedFindDialog()->CloseDialog();
}

TEST_F(RichEditTest, MarkingLineFiveThenNineLeavesFiveBlackAndNineRed) {
  TStringList lines;
  for (int i = 0; i < 100; ++i) lines.Add("line " + std::to_string(i));
  edit->Lines()->Assign(&lines);
  int changes = 0;
  edit->OnChange = [&](TObject*) { ++changes; };
  edit->HighlightLine(5);
  EXPECT_EQ(edit->TextColorAt(edit->LineIndex(5)), clRed);
  EXPECT_EQ(edit->HighlightedLine(), 5);
  edit->HighlightLine(9);
  EXPECT_EQ(edit->TextColorAt(edit->LineIndex(5)), edit->Font()->Color());
  EXPECT_EQ(edit->TextColorAt(edit->LineIndex(9) + 3), clRed);
  EXPECT_EQ(edit->TextColorAt(edit->LineIndex(10)), edit->Font()->Color());
  EXPECT_EQ(edit->SelStart(), edit->LineIndex(9));
  EXPECT_EQ(edit->SelLength(), 0);
  EXPECT_EQ(changes, 0);  // marking is no change of the text
  // A line far down is centred.
  edit->HighlightLine(60);
  const int first = edit->FirstVisibleLine();
  const int visible = edit->VisibleLineCount();
  EXPECT_LE(first, 60);
  EXPECT_GT(first + visible, 60);
  EXPECT_LE(std::abs((60 - first) - visible / 2), 2);
  edit->HighlightLine(-1);
  EXPECT_EQ(edit->TextColorAt(edit->LineIndex(60)), edit->Font()->Color());
  EXPECT_EQ(edit->HighlightedLine(), -1);
}

TEST_F(RichEditTest, CtrlInsertCopiesOnlyASelectionAndOnlyWithCtrlAlone) {
  SetLines({"copy me"});
  Clipboard()->SetAsText("before");
  Key(Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "before");
  edit->SetSelection(0, 4);
  Key(Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Clipboard()->AsText(), "before");
  Key(Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "copy");
  // No key-down event of its own.
  int keyDowns = 0;
  edit->OnKeyDown = [&](TObject*, Word&, TShiftState) { ++keyDowns; };
  Key(Qt::Key_Right);
  EXPECT_EQ(keyDowns, 0);
}

TEST_F(RichEditTest, LockChangeKeepsChangesQuiet) {
  int changes = 0;
  edit->OnChange = [&](TObject*) { ++changes; };
  Type(View(edit), "a");
  EXPECT_EQ(changes, 1);
  edit->LockChange = true;
  Type(View(edit), "b");
  EXPECT_EQ(changes, 1);
  edit->LockChange = false;
  EXPECT_EQ(edit->Lines()->Strings(0), "ab");
  EXPECT_TRUE(edit->Modified());
  edit->ResetModified(false);
  EXPECT_FALSE(edit->Modified());
  EXPECT_FALSE(edit->CanUndo());
}

TEST_F(RichEditTest, ScrollToLinePutsTheLineAtTheTopAsFarAsTheTextAllows) {
  TStringList lines;
  for (int i = 0; i < 200; ++i) lines.Add("line " + std::to_string(i));
  edit->Lines()->Assign(&lines);
  edit->ScrollToLine(50);
  EXPECT_EQ(edit->FirstVisibleLine(), 50);
  EXPECT_EQ(edit->SelStart(), edit->LineIndex(50));
  EXPECT_EQ(edit->SelLength(), 0);
  edit->ScrollToLine(199);
  const int last = edit->FirstVisibleLine();
  EXPECT_GT(last, 150);
  EXPECT_LE(last, 199);
  EXPECT_EQ(edit->SelStart(), edit->LineIndex(199));
  edit->LineScroll(5);
  EXPECT_EQ(edit->FirstVisibleLine(), last);  // no further
  edit->GotoLine(3);
  EXPECT_EQ(edit->LineFromChar(edit->SelStart()), 3);
  edit->GotoLine(-1);  // the caret's own line
  EXPECT_EQ(edit->SelStart(), edit->LineIndex(3));
}

TEST_F(RichEditTest, LinesKeepEveryByteOfTheCodePage) {
  std::string all;
  for (int c = 32; c < 256; ++c) all += static_cast<char>(c);
  for (const TFontCharset charset : {DEFAULT_CHARSET, RUSSIAN_CHARSET, GB2312_CHARSET, SHIFTJIS_CHARSET}) {
    SCOPED_TRACE(static_cast<int>(charset));
    edit->Font()->SetCharset(charset);
    TStringList lines;
    lines.Add(all);
    lines.Add("\xC4\xE3\xBA\xC3 \x81\x40\xFF");
    edit->Lines()->Assign(&lines);
    EXPECT_EQ(edit->Lines()->Text(), lines.Text());
    // A change of code page reads the same bytes again.
    edit->Font()->SetCharset(EASTEUROPE_CHARSET);
    EXPECT_EQ(edit->Lines()->Text(), lines.Text());
  }
}

TEST_F(RichEditTest, TheLinesFaceAddsInsertsAndDeletes) {
  TStrings* lines = edit->Lines();
  EXPECT_EQ(lines->Count(), 0);
  lines->Add("one");
  lines->Add("three");
  lines->Insert(1, "two");
  EXPECT_EQ(lines->Count(), 3);
  EXPECT_EQ(lines->Text(), "one\r\ntwo\r\nthree\r\n");
  lines->SetStrings(2, "THREE");
  lines->Delete(0);
  EXPECT_EQ(lines->Text(), "two\r\nTHREE\r\n");
  lines->Delete(1);
  EXPECT_EQ(lines->Text(), "two\r\n");
  lines->Clear();
  EXPECT_EQ(lines->Count(), 0);
  EXPECT_THROW(lines->Delete(0), EStringListError);
  edit->SetText("a\r\nb");
  EXPECT_EQ(lines->Count(), 2);
  EXPECT_EQ(lines->Strings(1), "b");
}

}  // namespace
