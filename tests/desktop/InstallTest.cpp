// Lumora installed into a fresh prefix, as `cmake --install` puts it: every file is
// there, the launcher is valid, form files are known by name and by content, and the
// installed programs run, with the settings in the user's configuration folder.
#include "tests/support/TempDir.h"

#include <QCoreApplication>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace fs = std::filesystem;

namespace {

struct TRun {
  int Status = -1;
  std::string Out;
  std::string Err;
};

TRun RunProgram(const QString& program, const QStringList& args,
                const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment(),
         int timeoutMs = 120000) {
  QProcess p;
  p.setProcessEnvironment(env);
  p.start(program, args);
  TRun r;
  if (!p.waitForStarted(10000)) {
    r.Err = "did not start: " + program.toStdString();
    return r;
  }
  p.waitForFinished(timeoutMs);
  r.Status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
  r.Out = p.readAllStandardOutput().toStdString();
  r.Err = p.readAllStandardError().toStdString();
  return r;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// Installed once for the whole suite.
class InstallTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Dir = new lumora::test::TTempDir();
    Prefix = Dir->Path() / "prefix";
    const TRun install = RunProgram(QStringLiteral(LUMORA_CMAKE_COMMAND),
                             {"--install", LUMORA_BINARY_DIR, "--prefix", QString::fromStdString(Prefix.string())});
    InstallStatus = install.Status;
    InstallOutput = install.Out + install.Err;
  }
  static void TearDownTestSuite() {
    delete Dir;
    Dir = nullptr;
  }
  void SetUp() override { ASSERT_EQ(InstallStatus, 0) << InstallOutput; }

  static QString P(const std::string& relative) { return QString::fromStdString((Prefix / relative).string()); }
  // An environment of a user of their own: home, configuration and runtime folders.
  static QProcessEnvironment UserEnvironment(const fs::path& home) {
    fs::create_directories(home / "config");
    fs::create_directories(home / "run");
    fs::permissions(home / "run", fs::perms::owner_all, fs::perm_options::replace);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", QString::fromStdString(home.string()));
    env.insert("XDG_CONFIG_HOME", QString::fromStdString((home / "config").string()));
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString((home / "run").string()));
    env.insert("QT_QPA_PLATFORM", "offscreen");
    return env;
  }

  static lumora::test::TTempDir* Dir;
  static fs::path Prefix;
  static int InstallStatus;
  static std::string InstallOutput;
};

lumora::test::TTempDir* InstallTest::Dir = nullptr;
fs::path InstallTest::Prefix;
int InstallTest::InstallStatus = -1;
std::string InstallTest::InstallOutput;

}  // namespace

TEST_F(InstallTest, EveryFileIsWhereTheDesktopLooksForIt) {
  for (const char* file : {"bin/lumora", "bin/lumora-convert", "bin/lumora-form-png"}) {
    EXPECT_TRUE(fs::is_regular_file(Prefix / file)) << file;
    EXPECT_NE(fs::status(Prefix / file).permissions() & fs::perms::owner_exec, fs::perms::none) << file;
  }
  for (const char* file : {"share/applications/lumora.desktop", "share/mime/packages/lumora.xml",
                           "share/man/man1/lumora.1", "share/man/man1/lumora-convert.1", "share/lumora/README"})
    EXPECT_TRUE(fs::is_regular_file(Prefix / file)) << file;
  for (int size : {16, 24, 32, 48, 64, 128, 256}) {
    const std::string icon = "share/icons/hicolor/" + std::to_string(size) + "x" + std::to_string(size) + "/apps/lumora.png";
    const QImage image(P(icon));
    EXPECT_EQ(image.width(), size) << icon;
    EXPECT_EQ(image.height(), size) << icon;
  }
  // Every shared library the build makes, and every design package with its list.
  for (const auto& entry : fs::recursive_directory_iterator(LUMORA_BINARY_DIR)) {
    const std::string name = entry.path().filename().string();
    if (!entry.is_regular_file() || entry.path().extension() != ".so") continue;
    if (entry.path().parent_path().filename() == "packages" && name.rfind("lib", 0) != 0 &&
        entry.path().string().find("/tests/") == std::string::npos) {
      EXPECT_TRUE(fs::is_regular_file(Prefix / "lib/lumora/packages" / name)) << name;
    } else if (name.rfind("liblumora_", 0) == 0 && entry.path().string().find("/tests/") == std::string::npos) {
      EXPECT_TRUE(fs::is_regular_file(Prefix / "lib/lumora" / name)) << name;
    }
  }
  if (fs::exists(fs::path(LUMORA_BINARY_DIR) / "bin/known-packages"))
    EXPECT_TRUE(fs::is_regular_file(Prefix / "share/lumora/known-packages"));
  // Nothing of the tests and nothing of the build's own is installed.
  EXPECT_FALSE(fs::exists(Prefix / "bin/lumora-screenshot"));
  for (const auto& entry : fs::recursive_directory_iterator(Prefix))
    EXPECT_EQ(entry.path().string().find("Test"), std::string::npos) << entry.path();
}

TEST_F(InstallTest, TheLauncherPassesTheDesktopsValidator) {
  const TRun check = RunProgram("desktop-file-validate", {P("share/applications/lumora.desktop")});
  EXPECT_EQ(check.Status, 0) << check.Out << check.Err;
  EXPECT_EQ(check.Out + check.Err, "");
  const std::string desktop = ReadFile(Prefix / "share/applications/lumora.desktop");
  EXPECT_NE(desktop.find("Exec=lumora %f"), std::string::npos);
  EXPECT_NE(desktop.find("MimeType=application/x-delphi-form;"), std::string::npos);
  EXPECT_NE(desktop.find("Icon=lumora"), std::string::npos);
}

TEST_F(InstallTest, FormFilesAreKnownByNameAndByContent) {
  const TRun update = RunProgram("update-mime-database", {P("share/mime")});
  ASSERT_EQ(update.Status, 0) << update.Err;
  const fs::path files = Dir->Path() / "files";
  fs::create_directories(files);
  fs::copy_file(fs::path(LUMORA_SOURCE_DIR) / "samples/Sample1.dfm", files / "binary-without-name");
  fs::copy_file(fs::path(LUMORA_SOURCE_DIR) / "samples/Sample1.txt.dfm", files / "text-without-name");
  fs::copy_file(fs::path(LUMORA_SOURCE_DIR) / "samples/Sample1.dfm", files / "Unit1.dfm");
  lumora::test::WriteBytes((files / "inherited").string(), "inherited Form2: TForm2\nend\n");
  lumora::test::WriteBytes((files / "notaform").string(), std::string("\xFF\x0A\x00NAME\x00\x30\x10\x00\x00\x00\x00NOTAFORM", 23));
  lumora::test::WriteBytes((files / "notes.txt").string(), "objects are things\n");
  // What the desktop's file manager sees: the shared MIME database of this prefix and
  // of the system, read by GIO.
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("XDG_DATA_HOME", QString::fromStdString((Dir->Path() / "nodata").string()));
  env.insert("XDG_DATA_DIRS", P("share") + ":/usr/share");
  auto typeOf = [&](const char* name) {
    const TRun info = RunProgram("gio", {"info", "-a", "standard::content-type",
                                         QString::fromStdString((files / name).string())}, env);
    const std::string key = "standard::content-type: ";
    const std::size_t at = info.Out.find(key);
    if (at == std::string::npos) return info.Out + info.Err;
    std::string type = info.Out.substr(at + key.size());
    return type.substr(0, type.find('\n'));
  };
  EXPECT_EQ(typeOf("Unit1.dfm"), "application/x-delphi-form");
  EXPECT_EQ(typeOf("binary-without-name"), "application/x-delphi-form");
  EXPECT_EQ(typeOf("text-without-name"), "application/x-delphi-form");
  EXPECT_EQ(typeOf("inherited"), "application/x-delphi-form");
  EXPECT_NE(typeOf("notaform"), "application/x-delphi-form");
  EXPECT_NE(typeOf("notes.txt"), "application/x-delphi-form");
  const TRun describe = RunProgram("gio", {"mime", "application/x-delphi-form"}, env);
  EXPECT_EQ(describe.Status, 0) << describe.Err;
}

TEST_F(InstallTest, TheManualPagesRenderWithoutWarnings) {
  for (const char* page : {"share/man/man1/lumora.1", "share/man/man1/lumora-convert.1"}) {
    const TRun man = RunProgram("groff", {"-man", "-Tutf8", "-ww", "-P-cbou", P(page)});
    EXPECT_EQ(man.Status, 0) << page;
    EXPECT_EQ(man.Err, "") << page;
    EXPECT_NE(man.Out.find("SYNOPSIS"), std::string::npos) << page;
    for (const char* placeholder : {"@LUMORA_", "@CMAKE_"})
      EXPECT_EQ(man.Out.find(placeholder), std::string::npos) << page << ": a placeholder was left";
  }
}

TEST_F(InstallTest, TheInstalledProgramsRun) {
  const TRun version = RunProgram(P("bin/lumora"), {"--version"});
  EXPECT_EQ(version.Status, 0);
  EXPECT_EQ(version.Out, "lumora " LUMORA_VERSION "\n");
  const fs::path out = Dir->Path() / "out";
  fs::create_directories(out);
  const std::string sample = (fs::path(LUMORA_SOURCE_DIR) / "samples/Sample1.dfm").string();
  const TRun convert = RunProgram(P("bin/lumora-convert"), {"-t", "-o", QString::fromStdString((out / "Sample1.txt").string()),
                                                     QString::fromStdString(sample)});
  EXPECT_EQ(convert.Status, 0) << convert.Err;
  EXPECT_EQ(ReadFile(out / "Sample1.txt").rfind("object ", 0), 0u);
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  const TRun png = RunProgram(P("bin/lumora-form-png"), {QString::fromStdString((out / "Sample1.png").string()),
                                                  QString::fromStdString(sample)}, env);
  EXPECT_EQ(png.Status, 0) << png.Err;
  EXPECT_FALSE(QImage(QString::fromStdString((out / "Sample1.png").string())).isNull());
}

TEST_F(InstallTest, AnInstalledLumoraKeepsItsSettingsInTheUsersFolder) {
  const fs::path home = Dir->Path() / "home";
  QProcessEnvironment env = UserEnvironment(home);
  QProcess lumora;
  lumora.setProcessEnvironment(env);
  lumora.start(P("bin/lumora"), {});
  ASSERT_TRUE(lumora.waitForStarted(10000));
  // Up once it listens for file names.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!fs::exists(home / "run/lumora-relay") && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ASSERT_TRUE(fs::exists(home / "run/lumora-relay"));
  // The session ends: the program closes as from its close box.
  ::kill(static_cast<pid_t>(lumora.processId()), SIGTERM);
  ASSERT_TRUE(lumora.waitForFinished(30000));
  EXPECT_EQ(lumora.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(lumora.exitCode(), 0) << lumora.readAllStandardError().toStdString();
  const std::string settings = ReadFile(home / "config/lumora/lumora.ini");
  EXPECT_NE(settings.find("[SystemSetting]"), std::string::npos) << settings;
  EXPECT_NE(settings.find("KeyToggle=123"), std::string::npos) << settings;
  EXPECT_NE(settings.find("[Frm_mLumora]"), std::string::npos) << settings;
  EXPECT_FALSE(fs::exists(Prefix / "bin/lumora.ini"));
}
