// The About box: name and version from the program's version data, the maker's line and
// the feedback address that opens the mail program; Escape closes it.
#include "foundation/FrmAbout.h"

#include "foundation/joIniFile.h"
#include "foundation/joOpenURL.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QDesktopServices>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

std::string gModulePath;
std::string FakeModule() { return gModulePath; }

// Takes the addresses the desktop is asked to open, instead of the desktop.
class TUrlCatcher : public QObject {
  Q_OBJECT
public:
  std::vector<QUrl> Urls;
public slots:
  void Open(const QUrl& url) { Urls.push_back(url); }
};

class AboutTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    Application->SetTitle("Lumora");
    saved = joModuleFileNameProc;
    joModuleFileNameProc = &FakeModule;
    gModulePath = "/proc/self/exe";
    QDesktopServices::setUrlHandler("mailto", &catcher, "Open");
  }
  void TearDown() override {
    QDesktopServices::unsetUrlHandler("mailto");
    joModuleFileNameProc = saved;
    for (int i = Screen->CustomFormCount() - 1; i >= 0; --i)
      if (auto* box = dynamic_cast<TAboutBox*>(Screen->CustomForms(i))) delete box;
  }
  int Boxes() {
    int n = 0;
    for (int i = 0; i < Screen->CustomFormCount(); ++i)
      if (dynamic_cast<TAboutBox*>(Screen->CustomForms(i))) ++n;
    return n;
  }
  TUrlCatcher catcher;
  lumora::test::TTempDir dir;
  std::string (*saved)() = nullptr;
};

}  // namespace

TEST_F(AboutTest, ShowsNameAndVersionFromTheProgramsVersionData) {
  TAboutBox* box = ShowAbout();
  EXPECT_EQ(box->Caption(), "About \"Lumora\"");
  EXPECT_EQ(box->ProgramName->Caption(), "Lumora");
  EXPECT_EQ(box->lblVersion->Caption(), LUMORA_TEST_FILE_VERSION);
  EXPECT_EQ(box->Label1->Caption(), "Version");
  EXPECT_EQ(box->lblMaker->Caption(), "Made by the Lumora developers");
  EXPECT_EQ(box->Label10->Caption(), "Please address all feedback to ");
  EXPECT_EQ(box->Label11->Caption(), "lumora-feedback@example.org");
  EXPECT_EQ(box->Label11->Hint(), "Send E-Mail to autor");
  EXPECT_EQ(box->Label11->Cursor(), crHandPoint);
  EXPECT_EQ(box->Label11->Left(), box->Label10->Left() + box->Label10->Width());
  EXPECT_EQ(box->OKButton->Caption(), "&Ok");
  EXPECT_TRUE(box->OKButton->Default());
  EXPECT_TRUE(box->OKButton->Cancel());
  EXPECT_EQ(box->BorderStyle(), bsToolWindow);
  EXPECT_TRUE(box->Visible());
  EXPECT_FALSE(box->Modal());
}

TEST_F(AboutTest, AProgramWithoutVersionDataShowsTheTitleAndTheFormsVersion) {
  gModulePath = dir / "plain";
  lumora::test::WriteBytes(gModulePath, "#!/bin/sh\n");
  TAboutBox* box = ShowAbout();
  EXPECT_EQ(box->ProgramName->Caption(), "Lumora");
  EXPECT_EQ(box->lblVersion->Caption(), "1.0.0.0");
  Application->SetTitle("Other title");
  TAboutBox* second = ShowAbout();
  EXPECT_EQ(second->ProgramName->Caption(), "Other title");
  EXPECT_EQ(second->Caption(), "About \"Other title\"");
  Application->SetTitle("Lumora");
}

TEST_F(AboutTest, TwoBoxesAreIndependentAndEachClosesWithEscape) {
  TAboutBox* first = ShowAbout();
  TAboutBox* second = ShowAbout();
  EXPECT_NE(first, second);
  EXPECT_EQ(Boxes(), 2);
  QApplication::setActiveWindow(second->Widget());
  second->OKButton->SetFocus();
  QTest::keyClick(second->OKButton->Widget(), Qt::Key_Escape);
  QApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, 0);
  EXPECT_EQ(Boxes(), 1);
  QApplication::setActiveWindow(first->Widget());
  first->OKButton->SetFocus();
  QTest::keyClick(first->OKButton->Widget(), Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, 0);
  EXPECT_EQ(Boxes(), 0);
}

TEST_F(AboutTest, OkClosesAndFreesTheBox) {
  TAboutBox* box = ShowAbout();
  QApplication::setActiveWindow(box->Widget());
  QTest::mouseClick(box->OKButton->Widget(), Qt::LeftButton);
  QCoreApplication::sendPostedEvents(nullptr, 0);
  EXPECT_EQ(Boxes(), 0);
}

TEST_F(AboutTest, ClickingTheAddressOpensTheMailProgram) {
  TAboutBox* box = ShowAbout();
  QApplication::setActiveWindow(box->Widget());
  QTest::mouseClick(box->Label11->Widget() ? box->Label11->Widget() : box->Panel1->Widget(), Qt::LeftButton,
                    Qt::NoModifier,
                    box->Label11->Widget() ? QPoint(5, 5) : QPoint(box->Label11->Left() + 5, box->Label11->Top() + 5));
  ASSERT_EQ(catcher.Urls.size(), 1u);
  EXPECT_EQ(catcher.Urls[0].toString().toStdString(), "mailto:lumora-feedback@example.org");
}

TEST_F(AboutTest, MailToAsksTheDesktopForAMailtoAddress) {
  EXPECT_TRUE(MailTo("someone@example.org"));
  ASSERT_EQ(catcher.Urls.size(), 1u);
  EXPECT_EQ(catcher.Urls[0].scheme().toStdString(), "mailto");
  EXPECT_EQ(catcher.Urls[0].path().toStdString(), "someone@example.org");
  EXPECT_FALSE(OpenURL(""));
}

#include "FrmAboutTest.moc"
