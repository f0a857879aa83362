// The standard actions: edit actions work on the focused edit through their shortcuts and
// enable themselves when idle; window and help actions enable themselves as this program
// can serve them.
#include "platform/vcl/StdActns.h"

#include "platform/vcl/ActnList.h"
#include "platform/vcl/Application.h"
#include "platform/vcl/Clipbrd.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class StdActnsTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    list = new TActionList(form);
    list->SetName("ActionList1");
    edit = Make<TEdit>("Edit1", form, 8, 8, 150, 21);
    other = Make<TEdit>("Edit2", form, 8, 40, 150, 21);
  }
  template <class T>
  T* Add(const char* name, const char* shortCut) {
    auto* action = new T(form);
    action->SetName(name);
    action->SetActionList(list);
    if (shortCut) action->SetShortCut(TextToShortCut(shortCut));
    return action;
  }
  void Idle() {
    bool done = false;
    Application->Idle(done);
  }
  void Select(int from, int length) {
    edit->SetSelStart(from);
    edit->SetSelLength(length);
  }
  TActionList* list = nullptr;
  TEdit* edit = nullptr;
  TEdit* other = nullptr;
};

}  // namespace

TEST_F(StdActnsTest, CutCopyAndPasteWorkOnTheFocusedEdit) {
  auto* cut = Add<TEditCut>("EditCut1", "Ctrl+Alt+X");
  auto* copy = Add<TEditCopy>("EditCopy1", "Ctrl+Alt+C");
  auto* paste = Add<TEditPaste>("EditPaste1", "Ctrl+Alt+V");
  edit->SetText("hello world");
  ShowForm();
  edit->SetFocus();
  Select(0, 5);
  Idle();
  EXPECT_TRUE(cut->Enabled());
  EXPECT_TRUE(copy->Enabled());
  QTest::keyClick(edit->Widget(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(Clipboard()->AsText(), "hello");
  EXPECT_EQ(edit->Text(), "hello world");
  Select(5, 6);
  QTest::keyClick(edit->Widget(), Qt::Key_X, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(Clipboard()->AsText(), " world");
  EXPECT_EQ(edit->Text(), "hello");
  // Into the other edit, which has the focus now.
  other->SetFocus();
  QTest::keyClick(other->Widget(), Qt::Key_V, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(other->Text(), " world");
  EXPECT_EQ(edit->Text(), "hello");
  Idle();
  EXPECT_TRUE(paste->Enabled());
}

TEST_F(StdActnsTest, WithoutASelectionCutCopyAndDeleteAreDisabled) {
  auto* cut = Add<TEditCut>("EditCut1", nullptr);
  auto* copy = Add<TEditCopy>("EditCopy1", nullptr);
  auto* del = Add<TEditDelete>("EditDelete1", nullptr);
  auto* selectAll = Add<TEditSelectAll>("EditSelectAll1", nullptr);
  edit->SetText("abc");
  ShowForm();
  edit->SetFocus();
  Select(1, 0);
  Idle();
  EXPECT_FALSE(cut->Enabled());
  EXPECT_FALSE(copy->Enabled());
  EXPECT_FALSE(del->Enabled());
  EXPECT_TRUE(selectAll->Enabled());
  // Select all, then delete, through the actions as a menu runs them.
  EXPECT_TRUE(selectAll->Execute());
  EXPECT_EQ(edit->SelLength(), 3);
  Idle();
  EXPECT_TRUE(del->Enabled());
  EXPECT_TRUE(del->Execute());
  EXPECT_EQ(edit->Text(), "");
  // A read-only edit can be copied from but not cut.
  edit->SetText("fixed");
  edit->SetReadOnly(true);
  Select(0, 5);
  Idle();
  EXPECT_TRUE(copy->Enabled());
  EXPECT_FALSE(cut->Enabled());
}

TEST_F(StdActnsTest, UndoTakesBackWhatWasTyped) {
  auto* undo = Add<TEditUndo>("EditUndo1", "Ctrl+Alt+Z");
  ShowForm();
  edit->SetFocus();
  Idle();
  EXPECT_FALSE(undo->Enabled());
  QTest::keyClicks(edit->Widget(), "typed");
  EXPECT_EQ(edit->Text(), "typed");
  Idle();
  EXPECT_TRUE(undo->Enabled());
  QTest::keyClick(edit->Widget(), Qt::Key_Z, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(edit->Text(), "");
}

TEST_F(StdActnsTest, AnActionWithItsOwnControlIgnoresTheFocus) {
  auto* copy = Add<TEditCopy>("EditCopy1", nullptr);
  copy->SetControl(other);
  other->SetText("theirs");
  edit->SetText("mine");
  ShowForm();
  edit->SetFocus();
  Select(0, 4);
  other->SetSelStart(0);
  other->SetSelLength(6);
  EXPECT_TRUE(copy->Execute());
  EXPECT_EQ(Clipboard()->AsText(), "theirs");
  // Its control freed, it falls back on the focused edit.
  delete other;
  other = nullptr;
  EXPECT_EQ(copy->Control(), nullptr);
  Select(0, 4);
  EXPECT_TRUE(copy->Execute());
  EXPECT_EQ(Clipboard()->AsText(), "mine");
}

TEST_F(StdActnsTest, WindowActionsStayDisabledAndHelpActionsNeedAHelpFile) {
  auto* cascade = Add<TWindowCascade>("WindowCascade1", nullptr);
  auto* close = Add<TWindowClose>("WindowClose1", nullptr);
  auto* contents = Add<THelpContents>("HelpContents1", nullptr);
  const std::string helpFile = Application->HelpFile();
  Application->SetHelpFile("");
  Idle();
  EXPECT_FALSE(cascade->Enabled());
  EXPECT_FALSE(close->Enabled());
  EXPECT_FALSE(contents->Enabled());
  Application->SetHelpFile("lumora.hlp");
  Idle();
  EXPECT_TRUE(contents->Enabled());
  // OnExecute and OnUpdate take over from the action's own work.
  int runs = 0;
  cascade->OnExecute = [&](TObject*) { ++runs; };
  cascade->OnUpdate = [&](TObject*) { cascade->SetEnabled(true); };
  Idle();
  EXPECT_TRUE(cascade->Enabled());
  EXPECT_TRUE(cascade->Execute());
  EXPECT_EQ(runs, 1);
  Application->SetHelpFile(helpFile);
}
