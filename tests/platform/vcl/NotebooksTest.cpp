// Notebooks, tabbed notebooks and tab sets: the page that shows, tabs clicked, pages kept
// in form text.
#include "platform/vcl/Notebooks.h"

#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class NotebooksTest : public lumora::test::TFormFixture {
protected:
  void ReadForm(const std::string& text) {
    delete form;
    form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, text);
    ASSERT_TRUE(result.Read);
    for (const auto& e : result.Errors) ADD_FAILURE() << e;
  }
  static bool Shows(TControl* c) { return c->Widget() && c->Widget()->isVisible(); }
};

constexpr const char* kNotebookForm =
    "object TestForm: TForm\n"
    "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
    "  object Notebook1: TNotebook\n    Left = 8\n    Top = 8\n    Width = 200\n    Height = 120\n"
    "    PageIndex = 1\n"
    "    object TPage\n      Left = 0\n      Top = 0\n      Caption = 'First'\n"
    "      object Label1: TLabel\n        Left = 2\n        Top = 2\n        Width = 20\n        Height = 13\n"
    "        Caption = 'One'\n      end\n    end\n"
    "    object TPage\n      Left = 0\n      Top = 0\n      Caption = 'Second'\n"
    "      object Button1: TButton\n        Left = 8\n        Top = 8\n        Width = 75\n        Height = 25\n"
    "        Caption = 'Two'\n        TabOrder = 0\n      end\n    end\n"
    "  end\n"
    "end\n";

}  // namespace

TEST_F(NotebooksTest, ANotebookShowsThePageOfItsPageIndex) {
  ReadForm(kNotebookForm);
  auto* notebook = dynamic_cast<TNotebook*>(form->FindComponent("Notebook1"));
  ASSERT_NE(notebook, nullptr);
  ShowForm();
  ASSERT_EQ(notebook->PageCount(), 2);
  EXPECT_EQ(notebook->PageIndex(), 1);
  EXPECT_EQ(notebook->ActivePage(), "Second");
  auto* button = dynamic_cast<TButton*>(form->FindComponent("Button1"));
  auto* label = dynamic_cast<TLabel*>(form->FindComponent("Label1"));
  ASSERT_NE(button, nullptr);
  ASSERT_NE(label, nullptr);
  EXPECT_TRUE(Shows(notebook->PageAt(1)));
  EXPECT_FALSE(Shows(notebook->PageAt(0)));
  EXPECT_TRUE(Shows(button));
  // Choosing the first page by its caption hides the second.
  int changes = 0;
  notebook->OnPageChanged = [&](TObject*) { ++changes; };
  notebook->SetActivePage("First");
  EXPECT_EQ(notebook->PageIndex(), 0);
  EXPECT_TRUE(Shows(notebook->PageAt(0)));
  EXPECT_FALSE(Shows(notebook->PageAt(1)));
  EXPECT_FALSE(Shows(button));
  EXPECT_EQ(changes, 1);
  // A caption no page has changes nothing.
  notebook->SetActivePage("Third");
  EXPECT_EQ(notebook->PageIndex(), 0);
}

TEST_F(NotebooksTest, PagesFillTheNotebookAndItsListMakesAndRemovesThem) {
  auto* notebook = Make<TNotebook>("Notebook1", form, 8, 8, 200, 120);
  ShowForm();
  ASSERT_EQ(notebook->PageCount(), 1);
  EXPECT_EQ(notebook->Pages()->Strings(0), "Default");
  EXPECT_EQ(notebook->PageAt(0)->Width(), 200);
  EXPECT_EQ(notebook->PageAt(0)->Height(), 120);
  notebook->Pages()->Add("More");
  ASSERT_EQ(notebook->PageCount(), 2);
  EXPECT_EQ(notebook->PageAt(1)->Caption(), "More");
  notebook->SetPageIndex(1);
  EXPECT_TRUE(Shows(notebook->PageAt(1)));
  notebook->Pages()->Delete(0);
  ASSERT_EQ(notebook->PageCount(), 1);
  EXPECT_EQ(notebook->PageAt(0)->Caption(), "More");
}

TEST_F(NotebooksTest, ANotebookIsWrittenBackWithItsPagesAndTheirControls) {
  ReadForm(kNotebookForm);
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("    PageIndex = 1\r\n"), std::string::npos) << written;
  const size_t first = written.find("object TPage");
  ASSERT_NE(first, std::string::npos) << written;
  EXPECT_NE(written.find("object TPage", first + 1), std::string::npos) << written;
  EXPECT_NE(written.find("Caption = 'Second'"), std::string::npos) << written;
  EXPECT_LT(written.find("Caption = 'Second'"), written.find("object Button1: TButton")) << written;
  EXPECT_EQ(written.find("ActivePage"), std::string::npos) << written;
}

TEST_F(NotebooksTest, ClickingATabOfATabbedNotebookShowsItsPage) {
  auto* notebook = Make<TTabbedNotebook>("TabbedNotebook1", form, 8, 8, 300, 160);
  notebook->Pages()->Clear();
  notebook->Pages()->Add("Visual");
  notebook->Pages()->Add("Data");
  notebook->Pages()->Add("Events");
  ShowForm();
  ASSERT_EQ(notebook->PageCount(), 3);
  EXPECT_EQ(notebook->PageIndex(), 0);
  const TRect tab = notebook->TabRect(2);
  QTest::mouseClick(notebook->Widget(), Qt::LeftButton, Qt::NoModifier,
                    QPoint((tab.Left + tab.Right) / 2, (tab.Top + tab.Bottom) / 2));
  EXPECT_EQ(notebook->PageIndex(), 2);
  EXPECT_EQ(notebook->ActivePage(), "Events");
  EXPECT_TRUE(Shows(notebook->PageAt(2)));
  EXPECT_FALSE(Shows(notebook->PageAt(0)));
  // OnChange may refuse the move.
  notebook->OnChange = [](TObject*, int, bool& allow) { allow = false; };
  const TRect first = notebook->TabRect(0);
  QTest::mouseClick(notebook->Widget(), Qt::LeftButton, Qt::NoModifier,
                    QPoint((first.Left + first.Right) / 2, (first.Top + first.Bottom) / 2));
  EXPECT_EQ(notebook->PageIndex(), 2);
}

TEST_F(NotebooksTest, ATabSetChangesItsTabWhenClickedUnlessRefused) {
  auto* tabs = Make<TTabSet>("TabSet1", form, 8, 200, 300, 21);
  tabs->Tabs()->Add("Alpha");
  tabs->Tabs()->Add("Beta");
  tabs->Tabs()->Add("Gamma");
  tabs->SetTabIndex(0);
  ShowForm();
  int asked = -1;
  tabs->OnChange = [&](TObject*, int newTab, bool&) { asked = newTab; };
  int x = 0;
  while (x < 300 && tabs->ItemAtPos(x, 5) != 1) ++x;
  ASSERT_LT(x, 300);
  QTest::mouseClick(tabs->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(x + 2, 5));
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(tabs->TabIndex(), 1);
  tabs->OnChange = [](TObject*, int, bool& allow) { allow = false; };
  while (x < 300 && tabs->ItemAtPos(x, 5) != 2) ++x;
  ASSERT_LT(x, 300);
  QTest::mouseClick(tabs->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(x + 2, 5));
  EXPECT_EQ(tabs->TabIndex(), 1);
}
