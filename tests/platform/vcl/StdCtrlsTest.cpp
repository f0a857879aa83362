// The standard controls, buttons, menus and dialogs driven as a person drives them.
#include "platform/vcl/Buttons.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class StdCtrlsTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    form = new TForm(Application);
    form->SetBounds(0, 0, 400, 300);
  }
  void TearDown() override { delete form; }
  void ShowForm() {
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  template <class T>
  T* Make(TWinControl* parent, int left, int top, int width, int height) {
    auto* c = new T(form);
    c->SetParent(parent);
    c->SetBounds(left, top, width, height);
    return c;
  }
  TForm* form = nullptr;
};

}  // namespace

TEST_F(StdCtrlsTest, LabelsWrapAndSizeToTheirLines) {
  auto* label = Make<TLabel>(form, 8, 8, 60, 13);
  label->SetWordWrap(true);
  label->SetCaption("one two three four five six");
  EXPECT_LE(label->Width(), 60);
  EXPECT_EQ(label->Height() % 13, 0);
  EXPECT_GE(label->Height(), 26);
  label->SetAutoSize(false);
  label->SetBounds(8, 8, 30, 10);
  label->SetCaption("x");
  EXPECT_EQ(label->BoundsRect(), Bounds(8, 8, 30, 10));
}

TEST_F(StdCtrlsTest, LabelAcceleratorFocusesItsControl) {
  auto* edit = Make<TEdit>(form, 80, 8, 100, 21);
  auto* other = Make<TEdit>(form, 80, 40, 100, 21);
  auto* label = Make<TLabel>(form, 8, 8, 60, 13);
  label->SetCaption("&Name:");
  label->SetFocusControl(edit);
  ShowForm();
  other->SetFocus();
  QTest::keyClick(other->Widget(), Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(edit->Focused());
  EXPECT_EQ(other->Text(), "");
}

TEST_F(StdCtrlsTest, ButtonAcceleratorAndSpaceClick) {
  auto* edit = Make<TEdit>(form, 8, 40, 100, 21);
  auto* button = Make<TButton>(form, 8, 8, 75, 25);
  button->SetCaption("&Open");
  int clicks = 0;
  button->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::AltModifier);
  EXPECT_EQ(clicks, 1);
  EXPECT_TRUE(button->Focused());
  QTest::keyClick(button->Widget(), Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  // The accelerator is underlined but Qt does not own it as a shortcut.
  auto* qb = qobject_cast<QPushButton*>(button->Widget());
  EXPECT_EQ(qb->text(), QStringLiteral("&Open"));
  EXPECT_TRUE(qb->shortcut().isEmpty());
}

TEST_F(StdCtrlsTest, ADisabledButtonDrawsItsCaptionGrey) {
  auto* button = Make<TButton>(form, 8, 8, 75, 25);
  button->SetCaption("&OK");
  button->Font()->SetColor(clBlack);
  button->SetEnabled(false);
  ShowForm();
  const QPalette pal = button->Widget()->palette();
  EXPECT_EQ(pal.color(QPalette::Disabled, QPalette::ButtonText), ColorToQColor(clGrayText));
  EXPECT_EQ(pal.color(QPalette::Active, QPalette::ButtonText), ColorToQColor(clBlack));
  // What shows: no pixel of the caption is black.
  const QImage image = button->Widget()->grab().toImage();
  bool black = false;
  for (int y = 4; y < image.height() - 4; ++y)
    for (int x = 4; x < image.width() - 4; ++x) black = black || image.pixelColor(x, y) == QColor(Qt::black);
  EXPECT_FALSE(black);
}

TEST_F(StdCtrlsTest, EditsKeepTheirTextAsBytesOfTheFontsCodePage) {
  auto* edit = Make<TEdit>(form, 8, 8, 200, 21);
  edit->Font()->SetCharset(RUSSIAN_CHARSET);
  edit->SetText("\xcf\xf0\xe8\xe2\xe5\xf2");  // Privet in Windows-1251
  EXPECT_EQ(qobject_cast<QLineEdit*>(edit->Widget())->text(), QString::fromUtf8("Привет"));
  ShowForm();
  edit->SetFocus();
  qobject_cast<QLineEdit*>(edit->Widget())->selectAll();
  // Keys of a Russian layout: their text, as a keyboard delivers it.
  for (const QString& ch : {QString::fromUtf8("Д"), QString::fromUtf8("а")}) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, ch);
    QApplication::sendEvent(edit->Widget(), &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, ch);
    QApplication::sendEvent(edit->Widget(), &release);
  }
  EXPECT_EQ(edit->Text(), "\xc4\xe0");
  EXPECT_TRUE(edit->Modified());
}

TEST_F(StdCtrlsTest, EditOptionsLimitWhatIsTyped) {
  auto* edit = Make<TEdit>(form, 8, 8, 200, 21);
  edit->SetMaxLength(3);
  edit->SetCharCase(ecUpperCase);
  ShowForm();
  edit->SetFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("abcdef"));
  EXPECT_EQ(edit->Text(), "ABC");
  edit->SetReadOnly(true);
  QTest::keyClicks(edit->Widget(), QStringLiteral("x"));
  EXPECT_EQ(edit->Text(), "ABC");
  edit->SetPasswordChar('*');
  EXPECT_EQ(qobject_cast<QLineEdit*>(edit->Widget())->echoMode(), QLineEdit::Password);
}

TEST_F(StdCtrlsTest, MemoLinesFollowTheWidgetAndBack) {
  auto* memo = Make<TMemo>(form, 8, 8, 200, 100);
  memo->Lines()->Add("first");
  memo->Lines()->Add("second");
  auto* editor = qobject_cast<QPlainTextEdit*>(memo->Widget());
  EXPECT_EQ(editor->toPlainText(), QStringLiteral("first\nsecond"));
  EXPECT_EQ(memo->Text(), "first\r\nsecond");
  int changes = 0;
  memo->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  memo->SetFocus();
  editor->moveCursor(QTextCursor::End);
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::keyClicks(editor, QStringLiteral("third"));
  ASSERT_EQ(memo->Lines()->Count(), 3);
  EXPECT_EQ(memo->Lines()->Strings(2), "third");
  EXPECT_GT(changes, 0);
}

TEST_F(StdCtrlsTest, CheckBoxesCycleTheirStatesAndClick) {
  auto* box = Make<TCheckBox>(form, 8, 8, 97, 17);
  box->SetCaption("Grey");
  box->SetAllowGrayed(true);
  int clicks = 0;
  box->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbGrayed);
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbChecked);
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbUnchecked);
  EXPECT_EQ(clicks, 3);
  // Setting Checked in code clicks too, as the runtime does.
  box->SetChecked(true);
  EXPECT_EQ(clicks, 4);
  EXPECT_EQ(qobject_cast<QCheckBox*>(box->Widget())->checkState(), Qt::Checked);
}

TEST_F(StdCtrlsTest, RadioButtonsOfOneParentAreExclusive) {
  auto* a = Make<TRadioButton>(form, 8, 8, 100, 17);
  auto* b = Make<TRadioButton>(form, 8, 30, 100, 17);
  auto* panel = Make<TPanel>(form, 150, 8, 100, 60);
  auto* c = Make<TRadioButton>(panel, 8, 8, 80, 17);
  a->SetChecked(true);
  c->SetChecked(true);
  ShowForm();
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Checked());
  EXPECT_FALSE(a->Checked());
  EXPECT_TRUE(c->Checked());  // another parent, another group
  EXPECT_FALSE(qobject_cast<QRadioButton*>(a->Widget())->isChecked());
}

TEST_F(StdCtrlsTest, ListBoxesSelectAndClick) {
  auto* list = Make<TListBox>(form, 8, 8, 120, 100);
  list->Items()->Add("b");
  list->Items()->Add("a");
  list->SetSorted(true);
  EXPECT_EQ(list->Items()->Strings(0), "a");
  int clicks = 0;
  list->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  auto* widget = qobject_cast<QListWidget*>(list->Widget());
  ASSERT_EQ(widget->count(), 2);
  const QRect second = widget->visualItemRect(widget->item(1));
  QTest::mouseClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
  EXPECT_EQ(list->ItemIndex(), 1);
  EXPECT_EQ(clicks, 1);
  list->SetItemIndex(0);
  EXPECT_EQ(widget->currentRow(), 0);
  EXPECT_EQ(clicks, 1);  // a change in code is no click
}

TEST_F(StdCtrlsTest, ComboBoxListChoosesByTextAndReportsChanges) {
  auto* combo = Make<TComboBox>(form, 8, 8, 145, 21);
  combo->SetStyle(csDropDownList);
  combo->SetText("two");
  combo->Items()->Add("one");
  combo->Items()->Add("two");
  EXPECT_EQ(combo->ItemIndex(), 1);
  auto* widget = qobject_cast<QComboBox*>(combo->Widget());
  EXPECT_EQ(widget->currentText(), QStringLiteral("two"));
  int changes = 0;
  combo->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  combo->SetFocus();
  QTest::keyClick(widget, Qt::Key_Up);
  EXPECT_EQ(combo->ItemIndex(), 0);
  EXPECT_EQ(combo->Text(), "one");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(combo->Height(), 21);
}

TEST_F(StdCtrlsTest, AComboBoxListShowsItsColourWithAClassicArrowButton) {
  // The focus goes to the edit: a focused list shows its text highlighted instead.
  auto* edit = Make<TEdit>(form, 8, 40, 100, 21);
  auto* combo = Make<TComboBox>(form, 8, 8, 145, 21);
  combo->SetStyle(csDropDownList);
  combo->SetColor(clBlack);
  combo->Font()->SetColor(clLime);
  combo->Items()->Add("one");
  combo->SetItemIndex(0);
  ShowForm();
  edit->SetFocus();
  const QImage image = combo->Widget()->grab().toImage();
  const QRgb black = qRgb(0, 0, 0);
  const QRgb lime = qRgb(0, 255, 0);
  const QRgb face = ColorToQColor(clBtnFace).rgb();
  // The field is the control's colour, its text the font's.
  EXPECT_EQ(image.pixel(100, 10), black);
  int text = 0;
  for (int x = 0; x < 60; ++x)
    for (int y = 0; y < image.height(); ++y) text += image.pixel(x, y) == lime;
  EXPECT_GT(text, 10);
  // The arrow button is button face with a black arrow, never in the font's colour.
  int limeInButton = 0, blackInButton = 0, faceInButton = 0;
  for (int x = image.width() - 18; x < image.width() - 2; ++x) {
    for (int y = 2; y < image.height() - 2; ++y) {
      const QRgb p = image.pixel(x, y);
      limeInButton += p == lime;
      blackInButton += p == black;
      faceInButton += p == face;
    }
  }
  EXPECT_EQ(limeInButton, 0);
  EXPECT_GT(blackInButton, 5);
  EXPECT_GT(faceInButton, 100);
}

TEST_F(StdCtrlsTest, GroupBoxesKeepTheirCaptionOutOfTheClientArea) {
  auto* group = Make<TGroupBox>(form, 8, 8, 200, 100);
  auto* memo = Make<TMemo>(group, 0, 0, 10, 10);
  memo->SetAlign(alClient);
  // The caption's cell height at the top, a 2-pixel edge all round.
  EXPECT_EQ(memo->BoundsRect(), Bounds(2, 15, 196, 83));
}

TEST_F(StdCtrlsTest, RadioGroupsArrangeTheirButtonsAndReportTheChoice) {
  auto* group = Make<TRadioGroup>(form, 8, 8, 200, 100);
  group->Items()->Add("North");
  group->Items()->Add("South");
  group->Items()->Add("East");
  group->SetColumns(2);
  group->SetItemIndex(2);
  ASSERT_EQ(group->ButtonCount(), 3);
  EXPECT_TRUE(group->Buttons(2)->Checked());
  // Two columns: two buttons in the first, one in the second.
  EXPECT_EQ(group->Buttons(0)->Left(), 8);
  EXPECT_EQ(group->Buttons(2)->Left(), 8 + (200 - 10) / 2);
  int clicks = 0;
  group->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(group->Buttons(1)->Widget(), Qt::LeftButton);
  EXPECT_EQ(group->ItemIndex(), 1);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(group->Buttons(2)->Checked());
  // The buttons are the group's: a form writes none of them.
  int children = 0;
  group->GetChildren([&](TComponent*) { ++children; }, form);
  EXPECT_EQ(children, 0);
}

TEST_F(StdCtrlsTest, SplittersResizeTheControlBesideThem) {
  auto* left = Make<TPanel>(form, 0, 0, 100, 10);
  left->SetAlign(alLeft);
  auto* splitter = Make<TSplitter>(form, 100, 0, 3, 10);
  splitter->SetAlign(alLeft);
  auto* rest = Make<TPanel>(form, 0, 0, 10, 10);
  rest->SetAlign(alClient);
  EXPECT_EQ(splitter->FindControl(), left);
  ShowForm();
  QWidget* w = splitter->Widget();
  QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, QPoint(1, 50));
  QCursor::setPos(w->mapToGlobal(QPoint(1, 50)));
  QTest::mouseMove(w, QPoint(41, 50));
  QCursor::setPos(w->mapToGlobal(QPoint(41, 50)));
  QMouseEvent move(QEvent::MouseMove, QPointF(41, 50), w->mapToGlobal(QPointF(41, 50)), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(w, &move);
  QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, QPoint(41, 50));
  EXPECT_GT(left->Width(), 100);
  EXPECT_EQ(rest->Left(), left->Width() + 3);
}

TEST_F(StdCtrlsTest, TimersRunTheirEventWhileEnabled) {
  auto* timer = new TTimer(form);
  int ticks = 0;
  timer->SetInterval(5);
  timer->SetOnTimer([&](TObject*) { ++ticks; });
  QEventLoop loop;
  QTimer::singleShot(60, &loop, &QEventLoop::quit);
  loop.exec();
  EXPECT_GE(ticks, 3);
  timer->SetEnabled(false);
  const int stopped = ticks;
  QTimer::singleShot(30, &loop, &QEventLoop::quit);
  loop.exec();
  EXPECT_EQ(ticks, stopped);
}

TEST_F(StdCtrlsTest, GlyphLayoutFollowsMarginAndSpacing) {
  const QRect client(0, 0, 75, 25);
  // Centred: glyph and text together in the middle, 4 pixels apart.
  TGlyphLayout l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphLeft, -1, 4);
  EXPECT_EQ(l.Glyph.left(), (75 - 50 + 1) / 2);
  EXPECT_EQ(l.Text.left(), l.Glyph.right() + 1 + 4);
  EXPECT_EQ(l.Glyph.top(), 5);
  // A margin from the left edge.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphLeft, 2, 4);
  EXPECT_EQ(l.Glyph.left(), 2);
  // Glyph on the right.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphRight, 2, 4);
  EXPECT_EQ(l.Glyph.right(), 75 - 2 - 1);
  // No caption: no spacing, the glyph alone centred.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(), blGlyphTop, -1, 4);
  EXPECT_EQ(l.Glyph.left(), 30);
  EXPECT_EQ(l.Glyph.top(), (25 - 16 + 1) / 2);
}

TEST_F(StdCtrlsTest, SpeedButtonsOfAGroupStayDownOneAtATime) {
  auto* a = Make<TSpeedButton>(form, 8, 8, 23, 22);
  auto* b = Make<TSpeedButton>(form, 31, 8, 23, 22);
  a->SetGroupIndex(1);
  b->SetGroupIndex(1);
  int clicks = 0;
  b->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(a->Widget(), Qt::LeftButton);
  EXPECT_TRUE(a->Down());
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Down());
  EXPECT_FALSE(a->Down());
  EXPECT_EQ(clicks, 1);
  // The last one down stays down unless the group allows all up.
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Down());
  b->SetAllowAllUp(true);
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_FALSE(b->Down());
}

TEST_F(StdCtrlsTest, BitButtonKindsGiveCaptionAndModalResult) {
  auto* ok = Make<TBitBtn>(form, 8, 8, 75, 25);
  ok->SetKind(bkOK);
  EXPECT_EQ(ok->Caption(), "OK");
  EXPECT_EQ(ok->ModalResult(), mrOk);
  EXPECT_TRUE(ok->Default());
  EXPECT_FALSE(ok->IsCustomCaption());
  auto* cancel = Make<TBitBtn>(form, 90, 8, 75, 25);
  cancel->SetKind(bkCancel);
  EXPECT_TRUE(cancel->Cancel());
  QTimer::singleShot(0, [ok] { QTest::mouseClick(ok->Widget(), Qt::LeftButton); });
  EXPECT_EQ(form->ShowModal(), mrOk);
}

TEST_F(StdCtrlsTest, MenuGroupIndexesNeverGoDownAndRadioItemsAreExclusive) {
  auto* menu = new TMainMenu(form);
  auto* view = new TMenuItem(form);
  menu->Items()->Add(view);
  auto* a = new TMenuItem(form);
  auto* b = new TMenuItem(form);
  auto* c = new TMenuItem(form);
  a->SetGroupIndex(2);
  view->Add(a);
  view->Add(b);  // takes the group of the item before it
  EXPECT_EQ(b->GroupIndex(), 2);
  c->SetGroupIndex(1);
  view->Insert(0, c);
  for (TMenuItem* i : {a, b}) {
    i->SetRadioItem(true);
  }
  a->SetChecked(true);
  b->SetChecked(true);
  EXPECT_FALSE(a->Checked());
  EXPECT_TRUE(b->Checked());
  EXPECT_EQ(menu->FindItem(scNone), nullptr);
}

TEST_F(StdCtrlsTest, MergedMenusReplaceTheGroupsTheyHave) {
  auto* mainMenu = new TMainMenu(form);
  auto* child = new TMainMenu(form);
  auto item = [&](TMainMenu* m, const char* caption, int group) {
    auto* i = new TMenuItem(form);
    i->SetCaption(caption);
    i->SetGroupIndex(static_cast<std::uint8_t>(group));
    m->Items()->Add(i);
    return i;
  };
  item(mainMenu, "&File", 0);
  item(mainMenu, "&Edit", 1);
  item(mainMenu, "&Help", 9);
  item(child, "&Edit!", 1);
  item(child, "&Tools", 5);
  mainMenu->Merge(child);
  std::vector<std::string> captions;
  for (TMenuItem* i : mainMenu->VisibleItems()) captions.push_back(i->Caption());
  EXPECT_EQ(captions, (std::vector<std::string>{"&File", "&Edit!", "&Tools", "&Help"}));
  mainMenu->Unmerge(child);
  EXPECT_EQ(mainMenu->VisibleItems().size(), 3u);
}

TEST_F(StdCtrlsTest, PopupMenusShowOnTheContextMenuKeyAndRunTheirItems) {
  auto* popup = new TPopupMenu(form);
  auto* item = new TMenuItem(form);
  item->SetCaption("&Delete");
  item->SetShortCut(TextToShortCut("Del"));
  popup->Items()->Add(item);
  auto* list = Make<TListBox>(form, 8, 8, 100, 100);
  list->SetPopupMenu(popup);
  int deleted = 0, popups = 0;
  item->OnClick = [&](TObject*) { ++deleted; };
  popup->OnPopup = [&](TObject*) { ++popups; };
  ShowForm();
  list->SetFocus();
  // The popup menu's shortcut works while its control has the focus.
  QTest::keyClick(list->Widget(), Qt::Key_Delete);
  EXPECT_EQ(deleted, 1);
  QTimer::singleShot(0, [] {
    if (QWidget* m = QApplication::activePopupWidget()) m->close();
  });
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), list->Widget()->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(list->Widget(), &event);
  EXPECT_EQ(popups, 1);
}

TEST_F(StdCtrlsTest, FileDialogsTakeTheNextQueuedName) {
  auto* open = new TOpenDialog(form);
  open->SetFilter("Delphi DFM-files|*.dfm");
  PushNextFileName("/tmp/a.dfm");
  PushNextFileName("");
  EXPECT_TRUE(open->Execute());
  EXPECT_EQ(open->FileName(), "/tmp/a.dfm");
  EXPECT_EQ(open->Files()->Count(), 1);
  EXPECT_FALSE(open->Execute());
  EXPECT_EQ(open->FileName(), "/tmp/a.dfm");
  SetFileDialogHook([](TOpenDialog& d) {
    d.SetFileName(d.Saving() ? "saved.txt" : "opened.txt");
    return true;
  });
  auto* save = new TSaveDialog(form);
  EXPECT_TRUE(save->Execute());
  EXPECT_EQ(save->FileName(), "saved.txt");
  SetFileDialogHook(nullptr);
}

TEST_F(StdCtrlsTest, FindDialogRaisesOnFindWithItsOptions) {
  auto* find = new TFindDialog(form);
  find->SetFindText("needle");
  std::string found;
  TFindOptions options;
  find->OnFind = [&](TObject*) {
    found = find->FindText();
    options = find->Options();
  };
  ASSERT_TRUE(find->Execute());
  QDialog* dialog = find->Dialog();
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QCheckBox*>(QStringLiteral("MatchCase"))->setChecked(true);
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("FindNext")), Qt::LeftButton);
  EXPECT_EQ(found, "needle");
  EXPECT_TRUE(options.Contains(frMatchCase));
  EXPECT_TRUE(options.Contains(frFindNext));
  EXPECT_TRUE(options.Contains(frDown));
  QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("Cancel")), Qt::LeftButton);
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(StdCtrlsTest, ReplaceDialogRaisesOnReplace) {
  auto* replace = new TReplaceDialog(form);
  replace->SetFindText("a");
  replace->SetReplaceText("b");
  int replaced = 0;
  bool all = false;
  replace->OnReplace = [&](TObject*) {
    ++replaced;
    all = replace->Options().Contains(frReplaceAll);
  };
  replace->Execute();
  QTest::mouseClick(replace->Dialog()->findChild<QPushButton*>(QStringLiteral("ReplaceAll")), Qt::LeftButton);
  EXPECT_EQ(replaced, 1);
  EXPECT_TRUE(all);
  EXPECT_EQ(replace->ReplaceText(), "b");
}

TEST_F(StdCtrlsTest, FormsReadAtAnotherResolutionAreScaledToTheScreen) {
  // Read as a stream would set it: designed at 120 pixels per inch.
  form->IncludeState(csLoading);
  form->SetPixelsPerInch(120);
  auto* button = Make<TButton>(form, 100, 50, 75, 25);
  form->Loaded();
  button->Loaded();
  EXPECT_EQ(form->PixelsPerInch(), 96);
  EXPECT_EQ(button->BoundsRect(), Bounds(80, 40, 60, 20));
}
