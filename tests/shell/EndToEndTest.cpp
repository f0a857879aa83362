// Lumora in a real process: started, driven, ended and started again, its settings kept
// in between; a file handed over by a second process.
#include "tests/support/TempDir.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace fs = std::filesystem;

namespace {

struct TRun {
  int Status = -1;
  std::vector<std::string> Lines;
  std::string Err;
  bool Has(const std::string& line) const { return std::find(Lines.begin(), Lines.end(), line) != Lines.end(); }
  // The rest of the first line that starts with `key` and a blank.
  std::string Value(const std::string& key) const {
    for (const std::string& l : Lines)
      if (l.rfind(key + " ", 0) == 0) return l.substr(key.size() + 1);
    return "<no " + key + ">";
  }
};

class EndToEndTest : public ::testing::Test {
protected:
  void SetUp() override {
    // A copy of the program of its own, so that its settings file (beside it) is this test's.
    program = dir / "lumora";
    fs::copy_file(LUMORA_E2E_DRIVER, program);
    fs::permissions(program, fs::perms::owner_all, fs::perm_options::add);
    fs::create_directories(dir / "run");
    fs::permissions(dir / "run", fs::perms::owner_all, fs::perm_options::replace);
    env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString(dir / "run"));
    env.insert("XDG_CONFIG_HOME", QString::fromStdString(dir / "config"));
  }
  TRun Run(const std::string& scenario, const QStringList& programArgs = {}, const QStringList& scenarioArgs = {}) {
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(QString::fromStdString(program), QStringList{QString::fromStdString(scenario)} + scenarioArgs +
                                                 QStringList{"--"} + programArgs);
    TRun r;
    EXPECT_TRUE(p.waitForStarted(10000));
    EXPECT_TRUE(p.waitForFinished(60000)) << scenario;
    r.Status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
    std::stringstream out(p.readAllStandardOutput().toStdString());
    for (std::string line; std::getline(out, line);) r.Lines.push_back(line);
    r.Err = p.readAllStandardError().toStdString();
    return r;
  }
  lumora::test::TTempDir dir;
  std::string program;
  QProcessEnvironment env;
};

}  // namespace

TEST_F(EndToEndTest, TheBannerComesUpAndTheProgramEndsByItsMenu) {
  const TRun r = Run("banner");
  EXPECT_EQ(r.Status, 0) << r.Err;
  EXPECT_EQ(r.Value("size"), "270x90");
  EXPECT_NE(r.Value("banner-shown"), "<no banner-shown>");
  EXPECT_TRUE(r.Has("exit 0"));
  EXPECT_TRUE(fs::exists(dir / "lumora.ini"));
}

TEST_F(EndToEndTest, TheWindowAndTheOptionsAreAsTheyWereLeft) {
  const TRun first = Run("settings-leave");
  ASSERT_EQ(first.Status, 0) << first.Err;
  EXPECT_EQ(first.Value("options-changed"), "1");
  const TRun second = Run("settings-report");
  ASSERT_EQ(second.Status, 0) << second.Err;
  EXPECT_EQ(second.Value("position"), "123,77");
  EXPECT_EQ(second.Value("only1vf"), "1");
  EXPECT_EQ(second.Value("keys"), "Esc F12 F11");
}

TEST_F(EndToEndTest, ADamagedSettingsFileStartsWithDefaultsAndLosesNoOtherKey) {
  lumora::test::WriteBytes(dir / "lumora.ini",
                           "[Frm_mLumora]\nLeft=oops\nTop=40\n[SystemSetting]\nOnly1VF=yes please\nKeyToggle=120\n"
                           "[Packages]\nPackage_0=/somewhere/dclstd.so\n");
  const TRun r = Run("settings-report");
  ASSERT_EQ(r.Status, 0) << r.Err;
  EXPECT_EQ(r.Value("only1vf"), "0");
  EXPECT_EQ(r.Value("keys"), "Esc F9 F11");
  EXPECT_NE(r.Value("question").find("Only1VF=yes please"), std::string::npos) << r.Value("question");
  std::ifstream in(dir / "lumora.ini");
  std::stringstream kept;
  kept << in.rdbuf();
  EXPECT_NE(kept.str().find("Package_0=/somewhere/dclstd.so"), std::string::npos) << kept.str();
  EXPECT_NE(kept.str().find("Only1VF=0"), std::string::npos) << kept.str();
}

TEST_F(EndToEndTest, AFileHandedOverByASecondProcessArrives) {
  QProcess lumora;
  lumora.setProcessEnvironment(env);
  lumora.start(QString::fromStdString(program), {"relay", "--"});
  ASSERT_TRUE(lumora.waitForStarted(10000));
  // Ready once it says so.
  std::string seen;
  while (seen.find("ready") == std::string::npos && lumora.waitForReadyRead(30000))
    seen += lumora.readAllStandardOutput().toStdString();
  ASSERT_NE(seen.find("ready"), std::string::npos);
  QProcess sender;
  sender.setProcessEnvironment(env);
  sender.start(QString::fromStdString(LUMORA_PROGRAM), {"--relay", "C:\\ab.dfm"});
  ASSERT_TRUE(sender.waitForFinished(30000));
  EXPECT_EQ(sender.exitCode(), 0) << sender.readAllStandardError().toStdString();
  ASSERT_TRUE(lumora.waitForFinished(30000));
  seen += lumora.readAllStandardOutput().toStdString();
  EXPECT_NE(seen.find("start-file C:\\ab.dfm"), std::string::npos) << seen;
  EXPECT_EQ(lumora.exitCode(), 0);
}

TEST_F(EndToEndTest, TheRelayWithoutARunningLumoraSaysSo) {
  QProcess sender;
  sender.setProcessEnvironment(env);
  sender.start(QString::fromStdString(LUMORA_PROGRAM), {"--relay", "/tmp/a.dfm"});
  ASSERT_TRUE(sender.waitForFinished(30000));
  EXPECT_EQ(sender.exitCode(), 1);
  EXPECT_EQ(sender.readAllStandardError().toStdString(), "lumora: No Lumora is running to take the file\n");
}

TEST_F(EndToEndTest, AFormOpenedAsTextIsEditedSavedInThreeKindsViewedAsFormAndLeft) {
  // A form of the user's, as form text; the program opens files as text and writable.
  lumora::test::WriteBytes(dir / "form.dfm", "object Form1: TForm\n  Caption = 'Plain'\n  ClientHeight = 90\n"
                                             "  ClientWidth = 160\nend\n");
  lumora::test::WriteBytes(dir / "lumora.ini", "[SystemSetting]\nViewAsForm=0\nReadOnly=0\n");
  // No design packages to load: the form needs none.
  lumora::test::WriteBytes(dir / "known-packages", "");
  const std::string out = dir / "out";
  const TRun r = Run("text-session", {QString::fromStdString(dir / "form.dfm")}, {QString::fromStdString(out)});
  ASSERT_EQ(r.Status, 0) << r.Err;
  EXPECT_EQ(r.Value("editor-shown"), dir / "form.dfm");
  EXPECT_EQ(r.Value("read-only"), "0");
  EXPECT_EQ(r.Value("line0"), "object Form1: TForm");
  EXPECT_EQ(r.Value("modified"), "1");
  EXPECT_EQ(r.Value("live-form"), "Plain edited");
  EXPECT_EQ(r.Value("window-list"), "&0  " + std::string(dir / "form.dfm") + "  \xC2\xA4 Plain edited");
  EXPECT_EQ(r.Value("banner"), "1 270x90");
  EXPECT_EQ(r.Value("question"), "<no question>");
  EXPECT_TRUE(r.Has("exit 0"));
  // The three files, each of its kind; the user's own file is untouched.
  std::ifstream dfm(out + ".dfm", std::ios::binary);
  std::stringstream bytes;
  bytes << dfm.rdbuf();
  EXPECT_EQ(bytes.str().substr(0, 2), "\xFF\x0A");
  EXPECT_NE(bytes.str().find("TPF0"), std::string::npos);
  EXPECT_NE(bytes.str().find("Plain edited"), std::string::npos);
  std::ifstream txt(out + ".txt", std::ios::binary);
  std::stringstream text;
  text << txt.rdbuf();
  EXPECT_EQ(text.str().substr(0, 21), "object Form1: TForm\r\n");
  std::ifstream rtf(out + ".rtf", std::ios::binary);
  std::stringstream rich;
  rich << rtf.rdbuf();
  EXPECT_EQ(rich.str().substr(0, 5), "{\\rtf");
  std::ifstream original(dir / "form.dfm");
  std::stringstream kept;
  kept << original.rdbuf();
  EXPECT_EQ(kept.str().find("edited"), std::string::npos);
  // The editor's tree width and font size are kept for the next run.
  std::ifstream ini(dir / "lumora.ini");
  std::stringstream settings;
  settings << ini.rdbuf();
  EXPECT_NE(settings.str().find("Editor.TreeWidth=210"), std::string::npos) << settings.str();
  EXPECT_NE(settings.str().find("Editor.FontEditor.Size=12"), std::string::npos) << settings.str();
}

namespace {

// A form text file edited as text, looked at as a live form and back, then the program
// left by its menu with "Save changes?" answered as given.
class EditViewExitTest : public EndToEndTest {
protected:
  TRun EditViewExit(const std::string& answer) {
    lumora::test::WriteBytes(dir / "form.dfm", kOriginal);
    lumora::test::WriteBytes(dir / "lumora.ini", "[SystemSetting]\nViewAsForm=0\nReadOnly=0\n");
    lumora::test::WriteBytes(dir / "known-packages", "");
    return Run("edit-view-exit", {QString::fromStdString(dir / "form.dfm")}, {QString::fromStdString(answer)});
  }
  std::string File() {
    std::ifstream in(dir / "form.dfm", std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  const std::string kOriginal = "object Form1: TForm\n  Caption = 'Plain'\n  ClientHeight = 90\n  ClientWidth = 160\nend\n";
};

}  // namespace

TEST_F(EditViewExitTest, AnsweredNoTheFileStaysAsItWas) {
  const TRun r = EditViewExit("no");
  ASSERT_EQ(r.Status, 0) << r.Err;
  EXPECT_EQ(r.Value("live-form"), "Plain edited");
  EXPECT_EQ(r.Value("back"), "1 modified 1");
  EXPECT_EQ(r.Value("question"), "Save changes?");
  EXPECT_TRUE(r.Has("exit 0"));
  EXPECT_EQ(File(), kOriginal);
}

TEST_F(EditViewExitTest, AnsweredYesTheFileHoldsTheEdit) {
  const TRun r = EditViewExit("yes");
  ASSERT_EQ(r.Status, 0) << r.Err;
  EXPECT_EQ(r.Value("question"), "Save changes?");
  EXPECT_TRUE(r.Has("exit 0"));
  const std::string file = File();
  EXPECT_EQ(file.substr(0, 2), "\xFF\x0A");
  EXPECT_NE(file.find("TPF0"), std::string::npos);
  EXPECT_NE(file.find("Plain edited"), std::string::npos);
}
