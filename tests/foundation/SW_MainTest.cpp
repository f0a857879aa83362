// The base main form: its menus, its settings store and the position it restores, the
// Help and About commands.
#include "foundation/SW_Main.h"

#include "foundation/ApEvent.h"
#include "foundation/FrmAbout.h"
#include "platform/vcl/Dialogs.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace {

std::string gModulePath;
std::string FakeModule() { return gModulePath; }

class SWMainTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    Application->SetTitle("Lumora");
    saved = joModuleFileNameProc;
    gModulePath = dir / "lumora";
    joModuleFileNameProc = &FakeModule;
    ClearAskedQuestions();
    ClearNextAnswers();
  }
  void TearDown() override {
    delete form;
    joModuleFileNameProc = saved;
    SetUserQuestionHook(nullptr);
    ClearAskedQuestions();
    FinalizeApEvent();
    // About boxes left open by a test.
    for (int i = Screen->CustomFormCount() - 1; i >= 0; --i)
      if (auto* box = dynamic_cast<TAboutBox*>(Screen->CustomForms(i))) delete box;
  }
  void Make() {
    form = new TSW_MainForm(Application);
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  int AboutBoxes() {
    int n = 0;
    for (int i = 0; i < Screen->CustomFormCount(); ++i)
      if (dynamic_cast<TAboutBox*>(Screen->CustomForms(i))) ++n;
    return n;
  }
  lumora::test::TTempDir dir;
  std::string (*saved)() = nullptr;
  TSW_MainForm* form = nullptr;
};

}  // namespace

TEST_F(SWMainTest, MenusAreFileWithExitAndHelpWithTopicsAndAbout) {
  Make();
  EXPECT_EQ(form->Caption(), ".");
  EXPECT_EQ(form->Menu(), form->MainMenu);
  ASSERT_EQ(form->MainMenu->Items()->Count(), 2);
  EXPECT_EQ(form->bmi_File->Caption(), "&File  ");
  EXPECT_EQ(form->bmi_Help->Caption(), "&Help  ");
  ASSERT_EQ(form->bmi_File->Count(), 2);
  EXPECT_TRUE(form->mi_FileDlmN->IsLine());
  EXPECT_EQ(form->mi_FileExit->Caption(), "E&xit");
  EXPECT_EQ(ShortCutToText(form->mi_FileExit->ShortCut()), "Alt+X");
  ASSERT_EQ(form->bmi_Help->Count(), 3);
  EXPECT_EQ(form->mi_HelpHelp->Caption(), "&Help Topics");
  EXPECT_TRUE(form->mi_HelpDlmN->IsLine());
  EXPECT_EQ(form->mi_HelpAbout->Caption(), "&About");
  EXPECT_EQ(form->Color(), clBtnFace);
}

TEST_F(SWMainTest, WithoutSettingsTheFormOpensCentredAtItsDesignedSize) {
  Make();
  EXPECT_NE(form->IniFile, nullptr);
  EXPECT_EQ(form->IniFile->FileName(), dir / "lumora.ini");
  EXPECT_EQ(form->Width(), 320);
  EXPECT_EQ(form->Height(), 160);
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_EQ(form->Left(), area.x() + (area.width() - 320) / 2);
  EXPECT_EQ(form->Top(), area.y() + (area.height() - 160) / 2);
}

TEST_F(SWMainTest, AStoredPositionIsWhereTheFormOpens) {
  lumora::test::WriteBytes(dir / "lumora.ini", "[SW_MainForm]\nLeft=10\nTop=20\n");
  Make();
  EXPECT_EQ(form->Left(), 10);
  EXPECT_EQ(form->Top(), 20);
  EXPECT_EQ(form->Widget()->pos(), QPoint(10, 20));
}

TEST_F(SWMainTest, HelpTopicsSaysThereIsNoHelpYet) {
  Make();
  PushNextAnswer(IDOK);
  form->mi_HelpHelp->Click();
  ASSERT_EQ(AskedQuestions().size(), 1u);
  const TUserQuestion& q = AskedQuestions()[0];
  EXPECT_TRUE(q.IsMessageBox);
  EXPECT_EQ(q.Text, "Sorry!!!\rHelp system in work...");
  EXPECT_EQ(q.Caption, "Lumora");
  EXPECT_EQ(q.Flags, MB_OK | MB_ICONINFORMATION);
}

TEST_F(SWMainTest, AboutOpensANewAboutBoxEachTime) {
  Make();
  form->mi_HelpAbout->Click();
  form->mi_HelpAbout->Click();
  EXPECT_EQ(AboutBoxes(), 2);
}

TEST_F(SWMainTest, AltXClosesTheForm) {
  Make();
  int closes = 0;
  form->OnClose = [&](TObject*, TCloseAction& action) {
    ++closes;
    action = caNone;
  };
  QTest::keyClick(form->Widget(), Qt::Key_X, Qt::AltModifier);
  EXPECT_EQ(closes, 1);
}

TEST_F(SWMainTest, TheStoreLivesAsLongAsTheForm) {
  Make();
  ASSERT_NE(form->IniFile, nullptr);
  form->IniFile->WriteValue("SW_MainForm", "Left", Variant(33));
  delete form;
  form = nullptr;
  Make();
  EXPECT_EQ(form->Left(), 33);
}
