// The string grid that commits each edit, and the strings editor dialog, driven with the
// keyboard and the mouse.
#include "tests/textedit/EditorTestUtil.h"

#include "textedit/StrN_Edit.h"
#include "textedit/joGrids.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <functional>

using namespace lumora::test;

namespace {

QPoint Middle(TCustomGrid* grid, int col, int row) {
  const TRect r = grid->CellRect(col, row);
  return QPoint((r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2);
}
void ClickCell(TCustomGrid* grid, int col, int row) {
  QTest::mouseClick(grid->InputWidget(), Qt::LeftButton, Qt::NoModifier, Middle(grid, col, row));
}
// Keys go where the focus is, as on a keyboard.
void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
void Typed(const QString& text) {
  for (QChar ch : text) QTest::keyClicks(QApplication::focusWidget(), QString(ch));
}

// ---- The grid ----------------------------------------------------------------------------

class StringGridTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    grid = new TjoStringGrid(form);
    grid->SetName("Grid");
    grid->SetParent(form);
    grid->SetBounds(8, 8, 300, 200);
    grid->SetFixedCols(0);
    grid->SetFixedRows(0);
    grid->SetColCount(1);
    grid->SetRowCount(4);
    grid->SetDefaultColWidth(200);
    grid->SetOptions(TGridOptions{goHorzLine, goEditing});
    for (int r = 0; r < 4; ++r) grid->SetCells(0, r, "row " + std::to_string(r));
    grid->OnChanging = [this](TObject*) { cellDuringChanging.push_back(grid->Cells(grid->Col(), grid->Row())); };
    grid->OnChangeCell = [this](TObject* sender, int col, int row, std::string& value) {
      EXPECT_EQ(sender, grid);
      commits.push_back(std::to_string(col) + "," + std::to_string(row) + "=" + value);
      if (value == "shout") value = "SHOUT";
    };
    ShowForm();
  }
  QLineEdit* EditorWidget() const { return qobject_cast<QLineEdit*>(grid->InplaceEditor()->Widget()); }
  TjoStringGrid* grid = nullptr;
  std::vector<std::string> cellDuringChanging;
  std::vector<std::string> commits;
};

TEST_F(StringGridTest, WhileACellIsEditedItKeepsItsOldText) {
  ClickCell(grid, 0, 1);
  ClickCell(grid, 0, 1);
  ASSERT_TRUE(grid->EditorMode());
  ASSERT_NE(dynamic_cast<TjoInplaceEdit*>(grid->InplaceEditor()), nullptr);
  Typed("new");
  EXPECT_EQ(EditorWidget()->text(), "new");
  EXPECT_EQ(grid->Cells(0, 1), "row 1");
  // A handler reading the cell while the user types sees the old text.
  ASSERT_EQ(cellDuringChanging.size(), 3u);
  for (const std::string& seen : cellDuringChanging) EXPECT_EQ(seen, "row 1");
  EXPECT_TRUE(commits.empty());
  Press(Qt::Key_Return);
  EXPECT_EQ(commits, std::vector<std::string>{"0,1=new"});
  EXPECT_EQ(grid->Cells(0, 1), "new");
  EXPECT_FALSE(grid->EditorMode());
}

TEST_F(StringGridTest, MovingToAnotherCellCommitsAndTheHandlerMayChangeTheValue) {
  ClickCell(grid, 0, 2);
  Press(Qt::Key_F2);
  ASSERT_TRUE(grid->EditorMode());
  EditorWidget()->selectAll();
  Typed("shout");
  ClickCell(grid, 0, 3);
  EXPECT_EQ(commits, std::vector<std::string>{"0,2=shout"});
  EXPECT_EQ(grid->Cells(0, 2), "SHOUT");
  EXPECT_EQ(grid->Row(), 3);
  // By key as well.
  Press(Qt::Key_F2);
  Typed("!");
  Press(Qt::Key_Up);
  EXPECT_EQ(grid->Cells(0, 3), "row 3!");
  EXPECT_EQ(commits.back(), "0,3=row 3!");
}

TEST_F(StringGridTest, EscapeRestoresTheTextAndRaisesNoChange) {
  grid->SetFocus();
  ASSERT_EQ(grid->Row(), 0);
  Press(Qt::Key_F2);
  Typed("xyz");
  ASSERT_EQ(EditorWidget()->text(), "row 0xyz");
  Press(Qt::Key_Escape);
  EXPECT_FALSE(grid->EditorMode());
  EXPECT_EQ(grid->Cells(0, 0), "row 0");
  EXPECT_TRUE(commits.empty());
  // Moving on afterwards commits nothing either.
  Press(Qt::Key_Down);
  EXPECT_TRUE(commits.empty());
  EXPECT_EQ(grid->Cells(0, 0), "row 0");
}

TEST_F(StringGridTest, TypingTheSameTextAgainCommitsNothing) {
  ClickCell(grid, 0, 1);
  Press(Qt::Key_F2);
  Typed("a");
  Press(Qt::Key_Backspace);
  ASSERT_EQ(EditorWidget()->text(), "row 1");
  Press(Qt::Key_Return);
  EXPECT_TRUE(commits.empty());
  EXPECT_EQ(grid->Cells(0, 1), "row 1");
}

TEST_F(StringGridTest, WithoutEditingTheCellsCannotBeChanged) {
  grid->SetOptions(TGridOptions{goHorzLine});
  ClickCell(grid, 0, 1);
  ClickCell(grid, 0, 1);
  Typed("abc");
  Press(Qt::Key_F2);
  EXPECT_FALSE(grid->EditorMode());
  EXPECT_EQ(grid->Cells(0, 1), "row 1");
  EXPECT_TRUE(commits.empty());
}

// ---- The dialog --------------------------------------------------------------------------

class StringsEditorTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    list.AddObject("first", reinterpret_cast<TObject*>(3));
    list.AddObject("second", reinterpret_cast<TObject*>(7));
    list.AddObject("third", reinterpret_cast<TObject*>(9));
  }
  // Runs the dialog; `user` acts on it while it shows and must close it.
  bool Run(const std::function<void(TFrm_StrN_Edit*)>& user, bool withChanges = true) {
    bool acted = false;
    QTimer::singleShot(0, [&] {
      TFrm_StrN_Edit* dialog = TFrm_StrN_Edit::Instance();
      ASSERT_NE(dialog, nullptr);
      acted = true;
      QApplication::setActiveWindow(dialog->Widget());
      dialog->Grid->SetFocus();
      QApplication::processEvents();
      user(dialog);
      if (dialog->Modal() && dialog->ModalResult() == mrNone) dialog->SetModalResult(mrCancel);
    });
    TStrNStringChange onChange;
    if (withChanges) {
      onChange = [this](TObject*, int row, const std::string& value) {
        changed.push_back(std::to_string(row) + "=" + value);
      };
    }
    const bool result = TFrm_StrN_Edit::Execute(
        "Strings resources", &list, onChange, [this](TObject*, int row) { selected.push_back(row); });
    EXPECT_TRUE(acted);
    EXPECT_EQ(TFrm_StrN_Edit::Instance(), nullptr);
    QApplication::processEvents();  // the released dialog goes
    return result;
  }
  TStringList list;
  std::vector<std::string> changed;
  std::vector<int> selected;
};

TEST_F(StringsEditorTest, TheDialogShowsItsLayoutAndTheList) {
  Run([](TFrm_StrN_Edit* d) {
    EXPECT_EQ(d->Caption(), "Strings resources");
    EXPECT_EQ(d->Width(), 459);
    EXPECT_EQ(d->Height(), 348);
    EXPECT_EQ(d->Position(), poScreenCenter);
    EXPECT_EQ(d->BorderIcons(), TBorderIcons{biSystemMenu});
    EXPECT_EQ(d->Font()->Name(), "MS Sans Serif");
    EXPECT_EQ(d->Panel1->Align(), alBottom);
    EXPECT_EQ(d->Panel1->Height(), 41);
    EXPECT_EQ(d->Panel2->Align(), alRight);
    EXPECT_EQ(d->Panel2->Width(), 236);
    EXPECT_EQ(d->Panel2->Parent(), d->Panel1);
    EXPECT_EQ(d->BtnOk->Parent(), d->Panel2);
    EXPECT_EQ(d->BtnOk->Caption(), "OK");
    EXPECT_EQ(d->BtnOk->ModalResult(), mrOk);
    EXPECT_EQ(d->BtnCancel->Caption(), "Cancel");
    EXPECT_EQ(d->BtnCancel->ModalResult(), mrCancel);
    EXPECT_TRUE(d->BtnCancel->Cancel());
    EXPECT_EQ(d->Panel3->Align(), alLeft);
    EXPECT_EQ(d->Panel3->Width(), 5);
    EXPECT_EQ(d->Panel4->Align(), alTop);
    EXPECT_EQ(d->Panel4->Height(), 5);
    EXPECT_EQ(d->Panel5->Align(), alRight);
    EXPECT_EQ(d->Panel5->Width(), 5);
    // The design of the list stays hidden; the working grid fills the rest.
    ASSERT_NE(d->Grid_, nullptr);
    EXPECT_FALSE(d->Grid_->Visible());
    EXPECT_EQ(d->Grid_->DefaultRowHeight(), 18);
    EXPECT_TRUE(d->Grid_->Font()->Style().Contains(fsBold));
    ASSERT_NE(d->Grid, nullptr);
    EXPECT_EQ(d->Grid->Align(), alClient);
    EXPECT_EQ(d->Grid->ColCount(), 1);
    EXPECT_EQ(d->Grid->FixedRows(), 0);
    EXPECT_EQ(d->Grid->DefaultRowHeight(), 18);
    EXPECT_EQ(d->Grid->Font()->Name(), "System");
    EXPECT_EQ(d->Grid->DefaultColWidth(), d->Grid->Width() - 4);
    EXPECT_EQ(d->Grid->Left(), 5);
    EXPECT_EQ(d->Grid->Top(), 5);
    EXPECT_EQ(d->Grid->RowCount(), 3);
    EXPECT_EQ(d->Grid->Cells(0, 1), "second");
    EXPECT_EQ(d->Grid->Objects(0, 2), reinterpret_cast<TObject*>(9));
    EXPECT_EQ(d->Grid->Row(), 0);
    EXPECT_FALSE(d->BtnOk->Enabled());
    d->Widget()->grab().save(QString::fromStdString(std::string(LUMORA_BINARY_DIR) + "/strings-editor.png"));
  });
  // The first row was reported at once.
  EXPECT_EQ(selected, std::vector<int>{0});
}

TEST_F(StringsEditorTest, OkIsEnabledOnlyAfterTheFirstCommittedChange) {
  const bool ok = Run([&](TFrm_StrN_Edit* d) {
    Press(Qt::Key_Down);
    EXPECT_EQ(selected.back(), 1);
    Press(Qt::Key_F2);
    Typed("X");
    EXPECT_FALSE(d->BtnOk->Enabled());
    Press(Qt::Key_Escape);  // editing: restores, the dialog stays
    EXPECT_EQ(d->ModalResult(), mrNone);
    EXPECT_FALSE(d->BtnOk->Enabled());
    Press(Qt::Key_F2);
    Typed("Y");
    Press(Qt::Key_Return);
    EXPECT_TRUE(d->BtnOk->Enabled());
    QTest::mouseClick(qobject_cast<QPushButton*>(d->BtnOk->Widget()), Qt::LeftButton);
  });
  EXPECT_TRUE(ok);
  EXPECT_EQ(changed, std::vector<std::string>{"1=secondY"});
  EXPECT_EQ((std::vector<int>{0, 1}), selected);
  // The dialog's own list is not read back.
  EXPECT_EQ(list.Strings(1), "second");
}

TEST_F(StringsEditorTest, EscapeWithNoCellEditedCancels) {
  const bool ok = Run([&](TFrm_StrN_Edit* d) {
    Press(Qt::Key_F2);
    Typed("Z");
    Press(Qt::Key_Return);
    ASSERT_TRUE(d->BtnOk->Enabled());
    Press(Qt::Key_Escape);
    EXPECT_EQ(d->ModalResult(), mrCancel);
  });
  EXPECT_FALSE(ok);
  EXPECT_EQ(changed, std::vector<std::string>{"0=firstZ"});
}

TEST_F(StringsEditorTest, WithoutAChangeCallbackTheListCannotBeEdited) {
  Run(
      [&](TFrm_StrN_Edit* d) {
        EXPECT_FALSE(d->Grid->Options().Contains(goEditing));
        Press(Qt::Key_F2);
        Typed("abc");
        Press(Qt::Key_Return);
        EXPECT_FALSE(d->Grid->EditorMode());
        EXPECT_EQ(d->Grid->Cells(0, 0), "first");
        EXPECT_FALSE(d->BtnOk->Enabled());
        QTest::mouseClick(qobject_cast<QPushButton*>(d->BtnCancel->Widget()), Qt::LeftButton);
      },
      false);
  EXPECT_TRUE(changed.empty());
}

TEST_F(StringsEditorTest, EachCallMakesADialogOfItsOwn) {
  TFrm_StrN_Edit* first = nullptr;
  Run([&](TFrm_StrN_Edit* d) { first = d; });
  TFrm_StrN_Edit* second = nullptr;
  Run([&](TFrm_StrN_Edit* d) {
    second = d;
    EXPECT_FALSE(d->BtnOk->Enabled());
    EXPECT_EQ(d->Grid->Cells(0, 0), "first");
  });
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
}

}  // namespace
