// The packages dialog driven through its widgets: the list in order of description with
// the loaded packages ticked, ticking and unticking (with the question about the packages
// that require one), adding and removing package files, the questions answered through
// the seams, and the dialog as a window of its own or placed inside another window.
#include "liveform/F_PackCfg.h"

#include "liveform/PackConfig.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;
using lumora::test::TTempDir;

namespace {

std::string Pkg(const std::string& name) { return std::string(LUMORA_TEST_PACKAGES) + "/" + name + ".so"; }

struct F_PackCfgTest : ::testing::Test {
  TTempDir Dir;
  TFrm_PackCfg* Dialog = nullptr;
  int Changes = 0;

  static void SetUpTestSuite() { Application->Initialize(); }
  void SetUp() override {
    FinalizePackConfig();
    SetPackagesIniFile(Dir / "lumora.ini");
    ClearAskedQuestions();
    ClearNextAnswers();
    SetUserQuestionHook([](const TUserQuestion& q) {
      ADD_FAILURE() << "unexpected question: " << q.Text;
      return mrCancel;
    });
  }
  void TearDown() override {
    delete Dialog;
    FinalizePackConfig();
    SetPackagesIniFile("");
    SetUserQuestionHook({});
    EXPECT_EQ(PendingAnswers(), 0);
    ClearNextAnswers();
  }
  // The list the dialog shows: base, mid and top of the chain (top requires mid requires
  // base), a library that is not a package, and the excluded-units package.
  void ListChain(bool loaded = true) {
    for (const char* name : {"tpk_top", "tpk_base", "tpk_mid"}) Loader()->Add(Pkg(name), loaded);
    Loader()->Add(Pkg("tpk_plain"), false);
    Loader()->Add(Pkg("tpk_excluded"), false);
  }
  void Open(TComponent* owner = nullptr) {
    Dialog = new TFrm_PackCfg(owner ? owner : static_cast<TComponent*>(Application));
    Dialog->OnChange = [this](TObject*) { ++Changes; };
    Dialog->Show();
    QApplication::setActiveWindow(Dialog->Widget());
    QApplication::processEvents();  // the refill posted when shown
  }
  QListWidget* List() const { return qobject_cast<QListWidget*>(Dialog->CheckListBox->Widget()); }
  std::vector<std::string> Shown() const {
    std::vector<std::string> out;
    TStrings* items = Dialog->CheckListBox->Items();
    for (int i = 0; i < items->Count(); ++i)
      out.push_back((Dialog->CheckListBox->Checked(i) ? "[x] " : "[ ] ") + items->Strings(i));
    return out;
  }
  int Row(const std::string& description) const { return Dialog->CheckListBox->Items()->IndexOf(description); }
  // The user clicks the check box of the row showing `description`.
  void ClickCheck(const std::string& description) {
    QListWidget* w = List();
    const int row = Row(description);
    ASSERT_GE(row, 0) << description;
    QStyleOptionViewItem option;
    option.initFrom(w);
    option.rect = w->visualItemRect(w->item(row));
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    const QPoint at = w->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, w).center();
    QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QApplication::processEvents();
  }
  void ClickRow(const std::string& description) {
    QListWidget* w = List();
    const int row = Row(description);
    ASSERT_GE(row, 0) << description;
    QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, w->visualItemRect(w->item(row)).center());
    QApplication::processEvents();
  }
  void ClickButton(TButton* button) {
    QTest::mouseClick(button->Widget(), Qt::LeftButton);
    QApplication::processEvents();
  }
  int LoaderIndex(const std::string& name) const { return Loader()->IndexOf(Pkg(name)); }
};

}  // namespace

TEST_F(F_PackCfgTest, TheDialogAsItIsLaidOut) {
  ListChain();
  Open();
  EXPECT_EQ(Dialog->Caption(), "Packages configuration ...");
  EXPECT_EQ(Dialog->ClientWidth(), 340);
  EXPECT_EQ(Dialog->ClientHeight(), 195);
  EXPECT_EQ(Dialog->BorderStyle(), bsToolWindow);
  EXPECT_EQ(Dialog->BorderIcons(), TBorderIcons{biSystemMenu});
  EXPECT_EQ(Dialog->GroupBox1->Caption(), " Design packages ");
  EXPECT_EQ(Dialog->Pan_Loading->Caption(), "Loading packages info ...");
  EXPECT_EQ(Dialog->BtnPackAdd->Caption(), "Add ...");
  EXPECT_EQ(Dialog->BtnPackDel->Caption(), "Remove");
  EXPECT_EQ(Dialog->BtnComponents->Caption(), "Components");
  EXPECT_FALSE(Dialog->BtnComponents->Enabled());
  EXPECT_TRUE(Dialog->BtnPackDel->Enabled());
  EXPECT_TRUE(Dialog->CheckListBox->Sorted());
  EXPECT_EQ(Dialog->CheckListBox->ItemHeight(), 13);
  EXPECT_TRUE(Dialog->DPL_Name->ReadOnly());
  EXPECT_FALSE(Dialog->DPL_Name->TabStop());
  EXPECT_EQ(Dialog->Pan_Left->Width(), 5);
  EXPECT_EQ(Dialog->Pan_Right->Width(), 5);
  for (const char* name : {"GroupBox1", "CheckListBox", "DPL_Name", "BtnPackAdd", "BtnPackDel", "BtnComponents"})
    EXPECT_NE(Dialog->Widget()->findChild<QWidget*>(name), nullptr) << name;
  EXPECT_EQ(Dialog->Widget()->objectName(), "Frm_PackCfg");
}

TEST_F(F_PackCfgTest, TheListIsFilledAfterTheWindowShowsSortedWithTheLoadedTicked) {
  ListChain();
  Loader()->SetLoaded(LoaderIndex("tpk_top"), false);
  Dialog = new TFrm_PackCfg(Application);
  Dialog->Show();
  // Shown, not yet filled: the refill waits in the queue.
  EXPECT_EQ(Dialog->CheckListBox->Items()->Count(), 0);
  QApplication::processEvents();
  EXPECT_TRUE(Dialog->CheckListBox->Visible());
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[ ] " + Pkg("tpk_plain"), "[x] Test base package",
                                               "[ ] Test excluded units package", "[x] Test middle package",
                                               "[ ] Test top package"}));
  // Each entry carries its loader index.
  TStrings* items = Dialog->CheckListBox->Items();
  for (int i = 0; i < items->Count(); ++i)
    EXPECT_EQ(Loader()->Description(ObjectToIndex(items->Objects(i))), items->Strings(i));
  EXPECT_EQ(Dialog->CheckListBox->ItemIndex(), 0);
  EXPECT_EQ(Dialog->DPL_Name->Text(), " " + Pkg("tpk_plain"));
  ClickRow("Test middle package");
  EXPECT_EQ(Dialog->DPL_Name->Text(), " " + Pkg("tpk_mid"));
}

TEST_F(F_PackCfgTest, AnEmptyLoaderReadsThePackageListFirst) {
  lumora::test::WriteBytes(Dir / "lumora.ini", "[Packages]\nPackage_0=" + Pkg("tpk_base") + "\nLoaded_0=1\nPackage_1=" +
                                                   Pkg("tpk_left") + "\nLoaded_1=0\n");
  Open();
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[x] Test base package", "[ ] Test left package"}));
}

TEST_F(F_PackCfgTest, UntickingAPackageThatNothingRequiresAsksNothing) {
  ListChain();
  Open();
  ClickCheck("Test top package");
  EXPECT_TRUE(AskedQuestions().empty());
  EXPECT_FALSE(Loader()->IsLoaded(LoaderIndex("tpk_top")));
  EXPECT_TRUE(Loader()->IsLoaded(LoaderIndex("tpk_mid")));
  EXPECT_EQ(GetClass("TPkgTop"), nullptr);
  EXPECT_EQ(Shown()[4], "[ ] Test top package");
  EXPECT_EQ(Dialog->CheckListBox->ItemIndex(), Row("Test top package"));
  EXPECT_EQ(Changes, 1);
}

TEST_F(F_PackCfgTest, UntickingAPackageOthersRequireAsksAndNoKeepsEverything) {
  ListChain();
  Open();
  PushNextAnswer(mrNo);
  ClickCheck("Test base package");
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].DlgType, mtConfirmation);
  EXPECT_EQ(AskedQuestions()[0].Buttons, MsgDlgButton(mbYes) | MsgDlgButton(mbNo));
  EXPECT_EQ(AskedQuestions()[0].Text, "Package(s) \"" + Pkg("tpk_mid") +
                                          "\" will also be uninstalled because they require package \"" +
                                          Pkg("tpk_base") + "\". Continue uninstall?");
  EXPECT_TRUE(Loader()->IsLoaded(LoaderIndex("tpk_base")));
  EXPECT_EQ(Shown()[1], "[x] Test base package");
  EXPECT_EQ(Changes, 0);

  // The middle package: the top one requires it.
  PushNextAnswer(mrYes);
  ClickCheck("Test middle package");
  ASSERT_EQ(AskedQuestions().size(), 2u);
  EXPECT_EQ(AskedQuestions()[1].Text, "Package(s) \"" + Pkg("tpk_top") +
                                          "\" will also be uninstalled because they require package \"" +
                                          Pkg("tpk_mid") + "\". Continue uninstall?");
  EXPECT_FALSE(Loader()->IsLoaded(LoaderIndex("tpk_mid")));
  EXPECT_FALSE(Loader()->IsLoaded(LoaderIndex("tpk_top")));
  EXPECT_TRUE(Loader()->IsLoaded(LoaderIndex("tpk_base")));
  EXPECT_EQ(Shown()[3], "[ ] Test middle package");
  EXPECT_EQ(Shown()[4], "[ ] Test top package");
  EXPECT_EQ(Changes, 1);
}

TEST_F(F_PackCfgTest, TheQuestionNamesEveryDependant) {
  for (const char* name : {"tpk_base", "tpk_left", "tpk_right", "tpk_diamond"}) Loader()->Add(Pkg(name), true);
  Open();
  PushNextAnswer(mrYes);
  ClickCheck("Test base package");
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text, "Package(s) \"" + Pkg("tpk_left") + "\", \"" + Pkg("tpk_right") +
                                          "\" will also be uninstalled because they require package \"" +
                                          Pkg("tpk_base") + "\". Continue uninstall?");
  for (const std::string& line : Shown()) EXPECT_EQ(line.substr(0, 4), "[ ] ") << line;
}

TEST_F(F_PackCfgTest, TickingLoadsThePackageAndWhatItRequires) {
  ListChain(false);
  Open();
  ClickCheck("Test top package");
  EXPECT_TRUE(AskedQuestions().empty());
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[ ] " + Pkg("tpk_plain"), "[x] Test base package",
                                               "[ ] Test excluded units package", "[x] Test middle package",
                                               "[x] Test top package"}));
  EXPECT_NE(GetClass("TPkgBase"), nullptr);
  EXPECT_EQ(Changes, 1);
}

TEST_F(F_PackCfgTest, APackageThatCannotBeLoadedIsReportedAndShowsUnticked) {
  ListChain();
  Open();
  PushNextAnswer(mrOk);
  ClickCheck(Pkg("tpk_plain"));
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].DlgType, mtError);
  EXPECT_EQ(AskedQuestions()[0].Text.substr(0, AskedQuestions()[0].Text.find('\n')),
            "Cannot load package \"" + Pkg("tpk_plain") + "\" !!!");
  EXPECT_EQ(Shown()[0], "[ ] " + Pkg("tpk_plain"));
}

TEST_F(F_PackCfgTest, RemovingAPackageOthersRequireUnloadsThemWithoutAskingAndKeepsThemListed) {
  ListChain();
  Open();
  ClickRow("Test base package");
  PushNextAnswer(mrYes);
  ClickButton(Dialog->BtnPackDel);
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text, "Remove \"" + Pkg("tpk_base") + "\" from the design package list ?");
  EXPECT_EQ(Loader()->IndexOf(Pkg("tpk_base")), -1);
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[ ] " + Pkg("tpk_plain"), "[ ] Test excluded units package",
                                               "[ ] Test middle package", "[ ] Test top package"}));
  EXPECT_EQ(Dialog->CheckListBox->ItemIndex(), 1);
  EXPECT_EQ(Changes, 1);
}

TEST_F(F_PackCfgTest, NoToRemovingKeepsThePackage) {
  ListChain();
  Open();
  ClickRow("Test top package");
  PushNextAnswer(mrNo);
  ClickButton(Dialog->BtnPackDel);
  EXPECT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(Shown().size(), 5u);
  EXPECT_TRUE(Loader()->IsLoaded(LoaderIndex("tpk_top")));
  EXPECT_EQ(Changes, 0);
}

TEST_F(F_PackCfgTest, RemovingTheLastEntrySelectsTheOneBeforeAndAnEmptyListDisablesRemove) {
  // An empty list is read again, from the known packages when the INI file has none: here none.
  lumora::test::WriteBytes(Dir / "known-packages", "");
  Loader()->SetKnownPackagesFile(Dir / "known-packages");
  Loader()->Add(Pkg("tpk_left"), false);
  Loader()->Add(Pkg("tpk_right"), false);
  Open();
  ClickRow("Test right package");
  PushNextAnswer(mrYes);
  ClickButton(Dialog->BtnPackDel);
  EXPECT_EQ(Shown(), std::vector<std::string>{"[ ] Test left package"});
  EXPECT_EQ(Dialog->CheckListBox->ItemIndex(), 0);
  EXPECT_EQ(Dialog->DPL_Name->Text(), " " + Pkg("tpk_left"));
  PushNextAnswer(mrYes);
  ClickButton(Dialog->BtnPackDel);
  EXPECT_TRUE(Shown().empty());
  EXPECT_FALSE(Dialog->BtnPackDel->Enabled());
  EXPECT_EQ(Dialog->DPL_Name->Text(), " ");
}

TEST_F(F_PackCfgTest, RemovingEveryPackageBringsBackTheKnownPackages) {
  lumora::test::WriteBytes(Dir / "known-packages", Pkg("tpk_right") + "\n" + Pkg("tpk_mid") + "\n");
  Loader()->SetKnownPackagesFile(Dir / "known-packages");
  Loader()->Add(Pkg("tpk_left"), true);
  Open();
  PushNextAnswer(mrYes);
  ClickButton(Dialog->BtnPackDel);
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[ ] Test middle package", "[ ] Test right package"}));
}

TEST_F(F_PackCfgTest, AddingAPackageFileListsAndLoadsIt) {
  Loader()->Add(Pkg("tpk_base"), false);
  Open();
  PushNextFileName(Pkg("tpk_left"));
  ClickButton(Dialog->BtnPackAdd);
  EXPECT_EQ(Dialog->OpenDialog->Filter(), "Package library (*.so)|*.so");
  EXPECT_EQ(Dialog->OpenDialog->DefaultExt(), "so");
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[x] Test base package", "[x] Test left package"}));
  EXPECT_EQ(Changes, 1);
}

TEST_F(F_PackCfgTest, AddingAFileAlreadyListedMakesNoSecondEntryButLoadsIt) {
  TTempDir other;
  fs::copy_file(Pkg("tpk_base"), other / "tpk_base.so");
  Loader()->Add(Pkg("tpk_base"), false);
  Loader()->Add(Pkg("tpk_left"), false);
  Open();
  PushNextFileName(Pkg("tpk_left"));
  ClickButton(Dialog->BtnPackAdd);
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[x] Test base package", "[x] Test left package"}));
  // Another path with the same base name is the listed package.
  Loader()->SetLoaded(0, false);
  Loader()->SetLoaded(1, false);
  PushNextFileName(other / "tpk_base.so");
  ClickButton(Dialog->BtnPackAdd);
  EXPECT_EQ(Loader()->Count(), 2);
  EXPECT_EQ(Loader()->FileName(0), Pkg("tpk_base"));
  EXPECT_EQ(Shown(), (std::vector<std::string>{"[x] Test base package", "[ ] Test left package"}));
}

TEST_F(F_PackCfgTest, CancellingTheFileDialogChangesNothing) {
  Loader()->Add(Pkg("tpk_base"), false);
  Open();
  SetFileDialogHook([](TOpenDialog&) { return false; });
  ClickButton(Dialog->BtnPackAdd);
  SetFileDialogHook({});
  EXPECT_EQ(Shown(), std::vector<std::string>{"[ ] Test base package"});
  EXPECT_EQ(Changes, 0);
}

TEST_F(F_PackCfgTest, EscapeAndEnterCloseTheWindow) {
  ListChain();
  Open();
  EXPECT_TRUE(Dialog->KeyPreview());
  QTest::keyClick(List(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_FALSE(Dialog->Visible());
  Dialog->Show();
  QApplication::processEvents();
  QTest::keyClick(List(), Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_FALSE(Dialog->Visible());
}

TEST_F(F_PackCfgTest, OwnedByAnotherWindowItHasNoBorder) {
  ListChain();
  auto* host = new TForm(Application);
  host->SetBounds(100, 100, 400, 300);
  Dialog = new TFrm_PackCfg(host);
  EXPECT_EQ(Dialog->BorderStyle(), bsNone);
  EXPECT_EQ(Dialog->BorderIcons(), TBorderIcons());
  EXPECT_EQ(Dialog->Position(), poDesigned);
  EXPECT_FALSE(Dialog->KeyPreview());
  // The host places it on one of its panels, filling it, as the options dialog does on its page.
  auto* page = new TPanel(host);
  page->SetParent(host);
  page->SetBounds(10, 10, 360, 220);
  Dialog->SetParent(page);
  Dialog->SetAlign(alClient);
  host->Show();
  QApplication::processEvents();
  QWidget* w = Dialog->Widget();
  EXPECT_FALSE(w->isVisible());  // until it is shown itself
  Dialog->Show();
  QApplication::processEvents();
  EXPECT_FALSE(w->isWindow());
  EXPECT_TRUE(w->isVisible());
  EXPECT_EQ(w->window(), host->Widget());
  EXPECT_EQ(w->geometry(), QRect(1, 1, page->ClientWidth() - 2, page->ClientHeight() - 2));  // inside the bevel
  EXPECT_EQ(Dialog->GroupBox1->Width(), page->ClientWidth() - 2);
  // The list is there, and follows the size it was given.
  EXPECT_EQ(Shown().size(), 5u);
  EXPECT_EQ(Dialog->Pan_Loading->Top() + Dialog->Pan_Loading->Height() + 2, Dialog->DPL_Name->Top());
  EXPECT_GT(Dialog->Pan_Loading->Height(), 121);
  // Keys go to the host's controls, not to a handler closing the page.
  QTest::keyClick(List(), Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_TRUE(w->isVisible());
  Dialog = nullptr;  // the host owns it
  delete host;
}

