// The window list dialog, driven through its list and buttons.
#include "shell/F_WList.h"

#include <QApplication>
#include <QCursor>
#include <QListWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace {

class WListTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    items.Add("Main Window");
    items.Add("/forms/a.dfm");
    items.Add("/forms/b.dfm");
  }
  int Run(int selected, const std::function<void(TFrm_WindowList*)>& during, TStrings* list = nullptr) {
    bool ran = false;
    QTimer::singleShot(0, [&] {
      TFrm_WindowList* d = WindowListDialog();
      ASSERT_NE(d, nullptr);
      QApplication::setActiveWindow(d->Widget());
      QApplication::processEvents();
      during(d);
      ran = true;
      if (WindowListDialog() && d->ModalResult() == mrNone) QTest::keyClick(d->LB_List->Widget(), Qt::Key_Escape);
    });
    const int result = ShowWindowListDialog("  Window List", list ? list : &items, selected);
    EXPECT_TRUE(ran);
    return result;
  }
  static int Dialogs() {
    QCoreApplication::sendPostedEvents(nullptr, 0);
    int n = 0;
    for (int i = 0; i < Screen->CustomFormCount(); ++i)
      if (dynamic_cast<TFrm_WindowList*>(Screen->CustomForms(i))) ++n;
    return n;
  }
  // Double-clicks the list at a point of its own, with the mouse pointer there.
  static void DoubleClickAt(TFrm_WindowList* d, QPoint at) {
    auto* list = qobject_cast<QListWidget*>(d->LB_List->Widget());
    QWidget* target = list ? list->viewport() : d->LB_List->Widget();
    QCursor::setPos(target->mapToGlobal(at));
    QTest::mouseDClick(target, Qt::LeftButton, Qt::NoModifier, at);
  }
  TStringList items;
};

}  // namespace

TEST_F(WListTest, ShowsTheLinesWithTheChosenOnePreselected) {
  const int result = Run(1, [](TFrm_WindowList* d) {
    EXPECT_EQ(d->Caption(), "  Window List");
    EXPECT_EQ(d->ClientWidth(), 307);
    EXPECT_EQ(d->ClientHeight(), 207);
    EXPECT_EQ(d->BorderStyle(), bsToolWindow);
    EXPECT_EQ(d->FormStyle(), fsStayOnTop);
    ASSERT_EQ(d->LB_List->Items()->Count(), 3);
    EXPECT_EQ(d->LB_List->Items()->Strings(0), "Main Window");
    EXPECT_EQ(d->LB_List->Items()->Strings(2), "/forms/b.dfm");
    EXPECT_EQ(d->LB_List->ItemIndex(), 1);
    EXPECT_EQ(d->BtnOk->Caption(), "OK");
    EXPECT_EQ(d->BtnCancel->Caption(), "Cancel");
    EXPECT_EQ(Screen->ActiveControl(), d->LB_List);
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_Down);
    QTest::keyClick(d->LB_List->Widget(), Qt::Key_Return);
  });
  EXPECT_EQ(result, 2);
  EXPECT_EQ(Dialogs(), 0);
}

TEST_F(WListTest, OkButtonGivesTheSelection) {
  EXPECT_EQ(Run(0, [](TFrm_WindowList* d) { QTest::mouseClick(d->BtnOk->Widget(), Qt::LeftButton); }), 0);
}

TEST_F(WListTest, ASelectionOutOfRangeStartsOnTheFirstLine) {
  Run(-1, [](TFrm_WindowList* d) { EXPECT_EQ(d->LB_List->ItemIndex(), 0); });
  Run(3, [](TFrm_WindowList* d) { EXPECT_EQ(d->LB_List->ItemIndex(), 0); });
}

TEST_F(WListTest, CancelOrEscChangesNothing) {
  EXPECT_EQ(Run(2, [](TFrm_WindowList* d) { QTest::mouseClick(d->BtnCancel->Widget(), Qt::LeftButton); }), -1);
  EXPECT_EQ(Run(2, [](TFrm_WindowList* d) { QTest::keyClick(d->LB_List->Widget(), Qt::Key_Escape); }), -1);
  EXPECT_EQ(Dialogs(), 0);
}

TEST_F(WListTest, ADoubleClickOnALineChoosesIt) {
  const int result = Run(0, [](TFrm_WindowList* d) {
    auto* list = qobject_cast<QListWidget*>(d->LB_List->Widget());
    ASSERT_NE(list, nullptr);
    const QRect line = list->visualItemRect(list->item(2));
    DoubleClickAt(d, line.center());
  });
  EXPECT_EQ(result, 2);
}

TEST_F(WListTest, ADoubleClickBelowTheLastLineDoesNothing) {
  const int result = Run(1, [](TFrm_WindowList* d) {
    DoubleClickAt(d, QPoint(20, d->LB_List->ClientHeight() - 10));
    QApplication::processEvents();
    EXPECT_EQ(WindowListDialog(), d);
    EXPECT_EQ(d->LB_List->ItemIndex(), 1);
  });
  EXPECT_EQ(result, -1);
}

TEST_F(WListTest, TheListIsACopy) {
  Run(0, [&](TFrm_WindowList* d) {
    d->LB_List->Items()->Add("added in the dialog");
    EXPECT_EQ(items.Count(), 3);
  });
}
