// The object inspector: its window as designed, the tree and property text of a form
// document, selecting a component, copying a node, and the keys that hide it.
#include "liveform/joObjInsp.h"

#include "liveform/joDesigner.h"
#include "platform/rtti/Strings.h"
#include "platform/vcl/Clipbrd.h"
#include "tests/support/StandardPackage.h"
#include "shell/CompRes.h"
#include "tests/support/Errors.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

const char* kFormText =
    "object Form1: TForm1\r\n"
    "  Left = 10\r\n"
    "  Caption = 'Sample'\r\n"
    "  object Panel1: TPanel\r\n"
    "    Left = 8\r\n"
    "    Caption = 'Outer'\r\n"
    "    Width = 100\r\n"
    "    object Button1: TButton\r\n"
    "      Caption = 'OK'\r\n"
    "      Hint = 'first line'#13#10 +\r\n"
    "        'second line'\r\n"
    "    end\r\n"
    "    object TLabel\r\n"
    "      Caption = 'nameless'\r\n"
    "    end\r\n"
    "  end\r\n"
    "  object Image1: TImage\r\n"
    "    Picture.Data = {\r\n"
    "      0A544269746D6170AABBCCDD00112233445566778899AABBCCDDEEFF0011\r\n"
    "      2233}\r\n"
    "  end\r\n"
    "  object Header1: THeaderControl\r\n"
    "    Sections = <\r\n"
    "      item\r\n"
    "        Text = 'A'\r\n"
    "      end>\r\n"
    "  end\r\n"
    "end\r\n";

class ObjInspectorTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    document = std::make_unique<TjoComponentResource>(nullptr);
    TStringList text;
    text.SetText(kFormText);
    document->Assign(&text);
    inspector = new TFrm_DFM_OI(Application);
  }
  void TearDown() override { delete inspector; }

  std::vector<std::string> Memo() const {
    std::vector<std::string> lines;
    TStrings* l = inspector->Propertyes->Lines();
    for (int i = 0; i < l->Count(); ++i) lines.push_back(l->Strings(i));
    return lines;
  }
  QTreeWidget* TreeWidget() const { return qobject_cast<QTreeWidget*>(inspector->CompTree->Widget()); }
  TTreeNode* Node(const std::string& text) const {
    for (TTreeNode* n = inspector->CompTree->Items()->GetFirstNode(); n; n = n->GetNext()) {
      if (n->Text() == text) return n;
    }
    return nullptr;
  }

  std::unique_ptr<TjoComponentResource> document;
  TFrm_DFM_OI* inspector = nullptr;
};

}  // namespace

TEST_F(ObjInspectorTest, TheWindowIsLaidOutAsDesigned) {
  EXPECT_EQ(inspector->Name(), "Frm_DFM_OI");
  EXPECT_EQ(inspector->Widget()->objectName(), "Frm_DFM_OI");
  EXPECT_EQ(inspector->Caption(), "Object Inspector");
  EXPECT_EQ(inspector->Left(), 266);
  EXPECT_EQ(inspector->Top(), 102);
  EXPECT_EQ(inspector->Width(), 266);
  EXPECT_EQ(inspector->Height(), 375);
  EXPECT_EQ(inspector->BorderIcons(), TBorderIcons{biSystemMenu});
  EXPECT_EQ(inspector->BorderStyle(), bsSizeToolWin);
  EXPECT_EQ(inspector->FormStyle(), fsStayOnTop);
  EXPECT_EQ(inspector->Panel1->Align(), alTop);
  EXPECT_EQ(inspector->Panel1->Height(), 41);
  EXPECT_EQ(inspector->Pan_FrmName->Parent(), inspector->Panel1);
  EXPECT_EQ(inspector->Pan_FrmName->Height(), 25);
  EXPECT_EQ(inspector->Pan_FrmName->BevelInner(), bvLowered);
  EXPECT_TRUE(inspector->Pan_FrmName->Font()->Style().Contains(fsBold));
  EXPECT_EQ(inspector->Pan_FrmName->Font()->Height(), -13);
  EXPECT_EQ(inspector->Label1->Caption(), "   Components");
  EXPECT_EQ(inspector->Label1->Align(), alLeft);
  EXPECT_EQ(inspector->CompTree->Height(), 184);
  EXPECT_TRUE(inspector->CompTree->ReadOnly());
  EXPECT_FALSE(inspector->CompTree->HideSelection());
  EXPECT_EQ(inspector->CompTree->Indent(), 19);
  EXPECT_EQ(inspector->Splitter->Height(), 3);
  EXPECT_EQ(inspector->Splitter->Align(), alTop);
  EXPECT_EQ(inspector->Panel2->Height(), 13);
  EXPECT_EQ(inspector->Panel2->Caption(), "   Propertyes");
  EXPECT_EQ(inspector->Propertyes->Align(), alClient);
  EXPECT_TRUE(inspector->Propertyes->ReadOnly());
  EXPECT_EQ(inspector->Propertyes->ScrollBars(), ssBoth);
  EXPECT_EQ(inspector->Propertyes->Font()->Name(), "Courier New");
  EXPECT_EQ(inspector->Propertyes->Font()->Height(), -11);
  // The parts stack from the top, the property list taking the rest.
  EXPECT_EQ(inspector->CompTree->Top(), 41);
  EXPECT_EQ(inspector->Splitter->Top(), 225);
  EXPECT_EQ(inspector->Panel2->Top(), 228);
  EXPECT_EQ(inspector->Propertyes->Top(), 241);
  EXPECT_EQ(inspector->Propertyes->Top() + inspector->Propertyes->Height(), inspector->ClientHeight());
  EXPECT_TRUE(inspector->IsEmpty());
}

TEST_F(ObjInspectorTest, LoadingListsTheComponentsAndSelectsTheForm) {
  inspector->Assign(document.get());
  EXPECT_FALSE(inspector->IsEmpty());
  EXPECT_EQ(inspector->Pan_FrmName->Caption(), "object Form1: TForm1");
  TTreeNodes* nodes = inspector->CompTree->Items();
  ASSERT_EQ(nodes->RootCount(), 1);
  TTreeNode* form = nodes->GetFirstNode();
  EXPECT_EQ(form->Text(), "Form1: TForm1");
  ASSERT_EQ(form->Count(), 3);
  EXPECT_EQ(form->Item(0)->Text(), "Panel1: TPanel");
  EXPECT_EQ(form->Item(1)->Text(), "Image1: TImage");
  EXPECT_EQ(form->Item(2)->Text(), "Header1: THeaderControl");
  ASSERT_EQ(form->Item(0)->Count(), 2);
  EXPECT_EQ(form->Item(0)->Item(0)->Text(), "Button1: TButton");
  EXPECT_EQ(form->Item(0)->Item(1)->Text(), "TLabel");
  // Collection items are no components.
  EXPECT_EQ(form->Item(2)->Count(), 0);
  // The form's node is selected and open one level.
  EXPECT_EQ(inspector->CompTree->Selected(), form);
  EXPECT_TRUE(form->Expanded());
  EXPECT_FALSE(form->Item(0)->Expanded());
  ASSERT_FALSE(Memo().empty());
  EXPECT_EQ(Memo().front(), "object Form1: TForm1");
  EXPECT_EQ(Memo().back(), "end");
  // The tree view shows the same.
  QTreeWidget* tree = TreeWidget();
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->objectName(), "CompTree");
  ASSERT_EQ(tree->topLevelItemCount(), 1);
  EXPECT_EQ(tree->topLevelItem(0)->text(0), "Form1: TForm1");
}

TEST_F(ObjInspectorTest, BinaryDataIsNeverShown) {
  inspector->Assign(document.get());
  const TStringList* text = inspector->FormText();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->IndexOf("    Picture.Data = { BINARY DATA SUPPRESSED }"), 16);
  for (int i = 0; i < text->Count(); ++i) EXPECT_EQ(text->Strings(i).find("0A5442"), std::string::npos);
  ASSERT_TRUE(inspector->SelectComponent("Image1", ""));
  EXPECT_EQ(Memo(), (std::vector<std::string>{"object Image1: TImage", "  Picture.Data = { BINARY DATA SUPPRESSED }",
                                              "end"}));
}

TEST_F(ObjInspectorTest, ABlockWithNestedComponentsListsTheirPropertyLinesWithoutTheirHeadings) {
  inspector->Assign(document.get());
  ASSERT_TRUE(inspector->SelectComponent("Panel1", "TPanel"));
  EXPECT_EQ(Memo(), (std::vector<std::string>{"object Panel1: TPanel", "  Left = 8", "  Caption = 'Outer'",
                                              "  Width = 100", "  Caption = 'OK'", "  Hint = 'first line'#13#10'second line'",
                                              "  Caption = 'nameless'", "end"}));
  ASSERT_TRUE(inspector->SelectComponent("Header1", ""));
  EXPECT_EQ(Memo(), (std::vector<std::string>{"object Header1: THeaderControl", "  Sections = <", "  Text = 'A'", "end"}));
}

TEST_F(ObjInspectorTest, SelectingANodeTellsItsNameAndClass) {
  inspector->Assign(document.get());
  std::vector<std::pair<std::string, std::string>> told;
  inspector->OnSelectComponent = [&](TObject* sender, const std::string& name, const std::string& cls) {
    EXPECT_EQ(sender, inspector);
    told.emplace_back(name, cls);
  };
  inspector->Show();
  QTreeWidget* tree = TreeWidget();
  tree->expandAll();
  QApplication::processEvents();
  TTreeNode* button = Node("Button1: TButton");
  ASSERT_NE(button, nullptr);
  const QRect r = tree->visualItemRect(button->WidgetItem());
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, r.center());
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0], std::make_pair(std::string("Button1"), std::string("TButton")));
  EXPECT_EQ(Memo().front(), "object Button1: TButton");
  // A node without a colon: the whole text is the name, the class is empty.
  TTreeNode* nameless = Node("TLabel");
  ASSERT_NE(nameless, nullptr);
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(nameless->WidgetItem()).center());
  ASSERT_EQ(told.size(), 2u);
  EXPECT_EQ(told[1], std::make_pair(std::string("TLabel"), std::string()));
  EXPECT_EQ(Memo(), (std::vector<std::string>{"object TLabel", "  Caption = 'nameless'", "end"}));
}

TEST_F(ObjInspectorTest, SelectComponentFindsByNameThenByNameAndClassThenByClass) {
  inspector->Assign(document.get());
  EXPECT_TRUE(inspector->SelectComponent("button1", "TWhatever"));
  EXPECT_EQ(inspector->CompTree->Selected()->Text(), "Button1: TButton");
  EXPECT_TRUE(inspector->SelectComponent("", "TLabel"));
  EXPECT_EQ(inspector->CompTree->Selected()->Text(), "TLabel");
  EXPECT_TRUE(inspector->SelectComponent("Form1", "TfixFormFFF"));
  EXPECT_EQ(inspector->CompTree->Selected()->Text(), "Form1: TForm1");
  // Not in the tree: false, and nothing changes.
  const std::vector<std::string> before = Memo();
  EXPECT_FALSE(inspector->SelectComponent("Missing", "TButton"));
  EXPECT_FALSE(inspector->SelectComponent("", "TMissing"));
  EXPECT_FALSE(inspector->SelectComponent("", ""));
  EXPECT_EQ(inspector->CompTree->Selected()->Text(), "Form1: TForm1");
  EXPECT_EQ(Memo(), before);
}

TEST_F(ObjInspectorTest, CtrlInsertAndCtrlCCopyTheNodeText) {
  inspector->Assign(document.get());
  inspector->Show();
  ASSERT_TRUE(inspector->SelectComponent("Button1", ""));
  QWidget* tree = TreeWidget();
  tree->setFocus();
  Clipboard()->SetAsText("before");
  QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClick(tree, Qt::Key_C, Qt::AltModifier);
  QTest::keyClick(tree, Qt::Key_Insert, Qt::ShiftModifier);
  EXPECT_EQ(Clipboard()->AsText(), "before");
  QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "Button1: TButton");
  ASSERT_TRUE(inspector->SelectComponent("Panel1", ""));
  QTest::keyClick(tree, Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "Panel1: TPanel");
}

TEST_F(ObjInspectorTest, CtrlCWithNoNodeSelectedDoesNothing) {
  inspector->Show();
  QWidget* tree = TreeWidget();
  tree->setFocus();
  Clipboard()->SetAsText("untouched");
  ASSERT_EQ(inspector->CompTree->Selected(), nullptr);
  QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
  QTest::keyClick(tree, Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(Clipboard()->AsText(), "untouched");
}

TEST_F(ObjInspectorTest, TheCloseAndShowInspectorKeysHideTheWindow) {
  inspector->Assign(document.get());
  inspector->Show();
  QWidget* tree = TreeWidget();
  tree->setFocus();
  QTest::keyClick(tree, Qt::Key_Escape);
  EXPECT_FALSE(inspector->Visible());
  EXPECT_FALSE(inspector->Widget()->isVisible());
  inspector->Show();
  QTest::keyClick(tree, Qt::Key_F11);
  EXPECT_FALSE(inspector->Visible());
  // Closed, never freed: it shows again with what it held.
  inspector->Show();
  EXPECT_FALSE(inspector->IsEmpty());
  // The keys follow the program's settings; the handler may be the application's own.
  const TShortCut oldClose = TjoDesigner::CloseShortCut();
  TjoDesigner::SetCloseShortCut(TextToShortCut("Ctrl+W"));
  QTest::keyClick(tree, Qt::Key_Escape);
  EXPECT_TRUE(inspector->Visible());
  QTest::keyClick(tree, Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(inspector->Visible());
  TjoDesigner::SetCloseShortCut(oldClose);
  inspector->Show();
  int handled = 0;
  const auto oldHandler = TFrm_DFM_OI::ShowInspectorKeyHandler;
  TFrm_DFM_OI::ShowInspectorKeyHandler = [&](TFrm_DFM_OI* w) {
    EXPECT_EQ(w, inspector);
    ++handled;
  };
  QTest::keyClick(tree, Qt::Key_F11);
  TFrm_DFM_OI::ShowInspectorKeyHandler = oldHandler;
  EXPECT_EQ(handled, 1);
  EXPECT_TRUE(inspector->Visible());
}

TEST_F(ObjInspectorTest, NoneClearsAndOtherSourcesAreRefused) {
  inspector->Assign(document.get());
  inspector->Assign(nullptr);
  EXPECT_TRUE(inspector->IsEmpty());
  EXPECT_EQ(inspector->CompTree->Items()->Count(), 0);
  EXPECT_TRUE(Memo().empty());
  TStringList other;
  EXPECT_EQ(lumora::test::MessageOf<EConvertError>([&] { inspector->Assign(&other); }),
            "Cannot assign a TStringList to a TFrm_DFM_OI");
  // A document that is empty leaves an empty window.
  TjoComponentResource empty(nullptr);
  inspector->Assign(&empty);
  EXPECT_TRUE(inspector->IsEmpty());
  EXPECT_EQ(inspector->CompTree->Items()->Count(), 0);
}

TEST_F(ObjInspectorTest, TheDesignerHearsWhenTheWindowIsDestroyed) {
  int told = 0;
  inspector->OnFormDestroyed = [&](TObject*) { ++told; };
  delete inspector;
  inspector = nullptr;
  EXPECT_EQ(told, 1);
}
