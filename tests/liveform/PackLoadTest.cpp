// The design package loader over the test packages: the list and its base-name lookup,
// loading with what a package requires, unloading dependants first, the excluded units,
// the first registration of a name winning, the INI section, the known-packages list and
// its root macro, and packages that cannot be loaded.
#include "liveform/PackConfig.h"
#include "liveform/PackLoad.h"

#include "foundation/IniFiles.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "tests/support/TempDir.h"
#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;
using lumora::test::MessageOf;
using lumora::test::TTempDir;

namespace {

std::string Pkg(const std::string& name) { return std::string(LUMORA_TEST_PACKAGES) + "/" + name + ".so"; }

std::vector<std::string> Lines(TStrings* list) {
  std::vector<std::string> out;
  for (int i = 0; i < list->Count(); ++i) out.push_back(list->Strings(i) + "#" + std::to_string(ObjectToIndex(list->Objects(i))));
  return out;
}

struct PackLoadTest : ::testing::Test {
  TTempDir Dir;
  std::vector<std::string> Unloaded;  // base names of the packages, in unloading order
  int UnloadProc = 0;

  void SetUp() override {
    FinalizePackConfig();
    SetPackagesIniFile(Dir / "lumora.ini");
    ClearAskedQuestions();
    ClearNextAnswers();
    SetUserQuestionHook([](const TUserQuestion&) { return mrOk; });
    UnloadProc = AddModuleUnloadProc([this](HMODULE m) { Unloaded.push_back(fs::path(PackageFileName(m)).stem()); });
  }
  void TearDown() override {
    FinalizePackConfig();
    RemoveModuleUnloadProc(UnloadProc);
    SetUserQuestionHook({});
    SetPackagesIniFile("");
    EXPECT_TRUE(LoadedPackages().empty());
  }
  // A known-packages list in the test's folder.
  std::string KnownList(const std::string& text) {
    lumora::test::WriteBytes(Dir / "known-packages", text);
    return Dir / "known-packages";
  }
};

}  // namespace

TEST_F(PackLoadTest, OnlyOneLoaderAtATime) {
  TjoPackageLoaderSR* loader = Loader();
  EXPECT_EQ(Loader(), loader);
  EXPECT_TRUE(LoaderExists());
  EXPECT_EQ(MessageOf<EComponentError>([] { TjoPackageLoader second; }),
            "Cannot have more than one instance 'TjoPackageLoader' per application");
  EXPECT_EQ(MessageOf<EComponentError>([] { TjoPackageLoaderSR second; }),
            "Cannot have more than one instance 'TjoPackageLoaderSR' per application");
  FinalizePackConfig();
  EXPECT_FALSE(LoaderExists());
  TjoPackageLoader plain;
  EXPECT_EQ(plain.Count(), 0);
  EXPECT_FALSE(plain.Dirty());
}

TEST_F(PackLoadTest, IndexOfFindsAnItemByItsBaseName) {
  TjoPackageLoader loader;
  loader.Add("tpk_base.so", false);
  loader.Add(Pkg("tpk_mid"), false);
  EXPECT_EQ(loader.IndexOf("TPK_BASE.SO"), 0);
  EXPECT_EQ(loader.IndexOf("/elsewhere/lib/tpk_base.so"), 0);
  EXPECT_EQ(loader.IndexOf("/elsewhere/tpk_mid.so.2"), 1);
  EXPECT_EQ(loader.IndexOf("tpk_mid"), 1);
  EXPECT_EQ(loader.IndexOf("tpk_top.so"), -1);
  EXPECT_EQ(loader.FileName(1), Pkg("tpk_mid"));
}

TEST_F(PackLoadTest, AddingAListedPathOnlyAppliesTheLoadFlag) {
  TjoPackageLoader loader;
  EXPECT_EQ(loader.Add(Pkg("tpk_base"), false), 0);
  EXPECT_TRUE(loader.Dirty());
  loader.SetDirty(false);
  EXPECT_EQ(loader.Add("/other/place/tpk_base.so", true), 0);
  EXPECT_EQ(loader.Count(), 1);
  EXPECT_TRUE(loader.IsLoaded(0));
  EXPECT_TRUE(loader.Dirty());
  EXPECT_NE(GetClass("TPkgBase"), nullptr);
  loader.SetDirty(false);
  EXPECT_EQ(loader.Add(Pkg("tpk_base"), true), 0);
  EXPECT_FALSE(loader.Dirty());
  EXPECT_EQ(loader.Add(Pkg("tpk_base"), false), 0);
  EXPECT_FALSE(loader.IsLoaded(0));
  EXPECT_EQ(GetClass("TPkgBase"), nullptr);
}

TEST_F(PackLoadTest, LoadingRegistersTheUnitsAndLoadsTheListedRequiredPackages) {
  TjoPackageLoader loader;
  loader.Add(Pkg("tpk_base"), false);
  loader.Add(Pkg("tpk_mid"), false);
  loader.Add(Pkg("tpk_top"), true);
  EXPECT_TRUE(loader.IsLoaded(2));
  EXPECT_TRUE(loader.IsLoaded(1));
  EXPECT_TRUE(loader.IsLoaded(0));
  for (const char* cls : {"TPkgTop", "TPkgMid", "TPkgBase"}) EXPECT_NE(GetClass(cls), nullptr) << cls;
  EXPECT_EQ(PackageFileName(GetClass("TPkgTop")->Module()), fs::canonical(Pkg("tpk_top")).string());
  EXPECT_EQ(loader.Description(2), "Test top package");
  EXPECT_EQ(loader.Description(0), "Test base package");

  TStringList list;
  EXPECT_EQ(loader.RequiredIndexes(2, &list), 1);
  EXPECT_EQ(Lines(&list), std::vector<std::string>{"tpk_mid#1"});
  EXPECT_EQ(loader.Dependants(0, &list), 1);
  EXPECT_EQ(Lines(&list), std::vector<std::string>{Pkg("tpk_mid") + "#1"});
  EXPECT_EQ(loader.Dependants(2, &list), 0);
}

TEST_F(PackLoadTest, ARequiredPackageNotListedIsLoadedButNotRegistered) {
  TjoPackageLoader loader;
  loader.Add(Pkg("tpk_mid"), true);
  EXPECT_EQ(loader.Count(), 1);
  EXPECT_NE(GetClass("TPkgMid"), nullptr);
  EXPECT_EQ(GetClass("TPkgBase"), nullptr);
  EXPECT_EQ(LoadedPackages().size(), 2u);
  TStringList list;
  loader.RequiredIndexes(0, &list);
  EXPECT_EQ(Lines(&list), std::vector<std::string>{"tpk_base#-1"});
}

TEST_F(PackLoadTest, UnloadingUnloadsTheDependantsFirstLastFoundFirst) {
  TjoPackageLoader loader;
  for (const char* name : {"tpk_base", "tpk_left", "tpk_right", "tpk_diamond"}) loader.Add(Pkg(name), true);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(loader.IsLoaded(i));
  TStringList list;
  loader.Dependants(0, &list);
  EXPECT_EQ(Lines(&list), (std::vector<std::string>{Pkg("tpk_left") + "#1", Pkg("tpk_right") + "#2"}));
  loader.SetDirty(false);
  loader.SetLoaded(0, false);
  EXPECT_TRUE(loader.Dirty());
  EXPECT_EQ(Unloaded, (std::vector<std::string>{"tpk_diamond", "tpk_right", "tpk_left", "tpk_base"}));
  for (int i = 0; i < 4; ++i) EXPECT_FALSE(loader.IsLoaded(i));
  EXPECT_EQ(loader.Count(), 4);
  for (const char* cls : {"TPkgBase", "TPkgLeft", "TPkgRight", "TPkgDiamond"}) EXPECT_EQ(GetClass(cls), nullptr) << cls;
}

TEST_F(PackLoadTest, DeletingUnloadsTheDependantsAndKeepsThemListed) {
  TjoPackageLoader loader;
  for (const char* name : {"tpk_base", "tpk_mid", "tpk_top"}) loader.Add(Pkg(name), true);
  EXPECT_TRUE(loader.Delete(0));
  EXPECT_EQ(Unloaded, (std::vector<std::string>{"tpk_top", "tpk_mid", "tpk_base"}));
  ASSERT_EQ(loader.Count(), 2);
  EXPECT_EQ(loader.FileName(0), Pkg("tpk_mid"));
  EXPECT_FALSE(loader.IsLoaded(0));
  EXPECT_FALSE(loader.IsLoaded(1));
  EXPECT_FALSE(loader.Delete(5));
  EXPECT_TRUE(loader.Delete(1));
  EXPECT_TRUE(loader.Delete(0));
  EXPECT_FALSE(loader.Delete(0));
}

TEST_F(PackLoadTest, ExcludedUnitsNeverRegister) {
  TjoPackageLoader loader;
  loader.Add(Pkg("tpk_excluded"), true);
  EXPECT_NE(GetClass("TPkgGood"), nullptr);
  EXPECT_EQ(GetClass("TPkgDde"), nullptr);
  EXPECT_EQ(GetClass("TPkgExpert"), nullptr);
}

TEST_F(PackLoadTest, TheFirstClassOfANameWinsWithoutAnError) {
  TjoPackageLoader loader;
  loader.Add(Pkg("tpk_base"), true);
  const TClass base = GetClass("TPkgBase");
  const HMODULE baseModule = FindClassHInstance("TStringList");
  loader.Add(Pkg("tpk_mid"), true);  // registers TStringList again
  EXPECT_EQ(FindClassHInstance("TStringList"), baseModule);
  loader.Add(Pkg("tpk_right"), true);  // a class of its own named TPkgBase
  EXPECT_EQ(GetClass("TPkgBase"), base);
  EXPECT_NE(GetClass("TPkgRight"), nullptr);
}

TEST_F(PackLoadTest, TheCurrentFolderIsThePackagesWhileItLoadsAndComesBack) {
  TTempDir other;
  for (const char* name : {"tpk_base", "tpk_mid", "tpk_failing"}) fs::copy_file(Pkg(name), other / (std::string(name) + ".so"));
  const fs::path before = fs::current_path();
  unsetenv("TPK_MID_REGISTER_CWD");
  TjoPackageLoader loader;
  loader.Add(other / "tpk_mid.so", true);
  ASSERT_NE(getenv("TPK_MID_REGISTER_CWD"), nullptr);
  EXPECT_EQ(fs::path(getenv("TPK_MID_REGISTER_CWD")), fs::canonical(other.Path()));
  EXPECT_EQ(fs::current_path(), before);
  // A Register procedure that fails: its error reaches the caller, the folder is put back,
  // and the package counts as loaded.
  EXPECT_EQ(MessageOf<EComponentError>([&] { loader.Add(other / "tpk_failing.so", true); }),
            "The failing package refuses to register");
  EXPECT_EQ(fs::current_path(), before);
  EXPECT_TRUE(loader.IsLoaded(1));
}

TEST_F(PackLoadTest, APackageThatCannotBeLoadedIsReportedAndStaysListed) {
  TjoPackageLoader loader;
  loader.Add(Pkg("tpk_plain"), false);
  EXPECT_EQ(loader.Description(0), Pkg("tpk_plain"));
  loader.SetDirty(false);
  loader.SetLoaded(0, true);
  EXPECT_TRUE(loader.Dirty());
  EXPECT_FALSE(loader.IsLoaded(0));
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].DlgType, mtError);
  EXPECT_EQ(AskedQuestions()[0].Text, "Cannot load package \"" + Pkg("tpk_plain") + "\" !!!\n\nCannot load package " +
                                          Pkg("tpk_plain") + ".\nThe file holds no package information.");
  EXPECT_EQ(loader.Add(Dir / "missing.so", true), 1);
  EXPECT_FALSE(loader.IsLoaded(1));
  EXPECT_EQ(AskedQuestions().size(), 2u);
  EXPECT_EQ(AskedQuestions()[1].Text.substr(0, AskedQuestions()[1].Text.find('\n')),
            "Cannot load package \"" + (Dir / "missing.so") + "\" !!!");
  EXPECT_EQ(loader.Description(1), Dir / "missing.so");
}

TEST_F(PackLoadTest, TheListIsSavedAsPackageAndLoadedPairs) {
  Loader()->Add(Pkg("tpk_base"), true);
  Loader()->Add(Pkg("tpk_plain"), false);
  Loader()->Add(Pkg("tpk_excluded"), false);
  SavePackages(Dir / "lumora.ini", "Packages");
  EXPECT_FALSE(Loader()->Dirty());
  TIniFile ini(Dir / "lumora.ini");
  EXPECT_EQ(ini.ReadSectionValues("Packages"),
            (std::vector<std::string>{"Package_0=" + Pkg("tpk_base"), "Loaded_0=1", "Package_1=" + Pkg("tpk_plain"),
                                      "Loaded_1=0", "Package_2=" + Pkg("tpk_excluded"), "Loaded_2=0"}));
  // Unchanged: nothing is written.
  ini.WriteString("Packages", "Package_0", "changed by hand");
  SavePackages(Dir / "lumora.ini", "Packages");
  EXPECT_EQ(ini.ReadString("Packages", "Package_0", ""), "changed by hand");
  ini.WriteString("Packages", "Package_0", Pkg("tpk_base"));

  FinalizePackConfig();
  EXPECT_TRUE(LoadedPackages().empty());
  ini.WriteString("Packages", "Package_7", Pkg("tpk_mid"));
  ini.WriteBool("Packages", "Loaded_7", true);
  ini.WriteString("Packages", "Other", "ignored");
  EnsurePackagesLoaded();
  ASSERT_EQ(Loader()->Count(), 4);
  EXPECT_TRUE(Loader()->IsLoaded(0));
  EXPECT_FALSE(Loader()->IsLoaded(1));
  EXPECT_FALSE(Loader()->IsLoaded(2));
  EXPECT_EQ(Loader()->FileName(3), Pkg("tpk_mid"));
  EXPECT_TRUE(Loader()->IsLoaded(3));
  EXPECT_TRUE(Loader()->Dirty());
  EXPECT_EQ(Screen->Cursor(), crDefault);
  // Already holding packages: nothing more is read.
  ini.WriteString("Packages", "Package_8", Pkg("tpk_top"));
  EnsurePackagesLoaded();
  EXPECT_EQ(Loader()->Count(), 4);
  FinalizePackConfig();
  EXPECT_EQ(ini.ReadString("Packages", "Package_3", ""), Pkg("tpk_mid"));
  EXPECT_EQ(ini.ReadString("Packages", "Package_8", "gone"), "gone");
}

TEST_F(PackLoadTest, AnEmptyOrAbsentSectionReadsTheKnownPackages) {
  Loader()->SetRootDir(std::string(LUMORA_TEST_PACKAGES) + "/..");
  Loader()->SetKnownPackagesFile(KnownList("$(LUMORA)/packages/tpk_excluded.so\n"
                                           "\n"
                                           "# a comment\n"
                                           "$(lumora)/packages/tpk_mid.so\r\n" +
                                           Pkg("tpk_top") + "\n"));
  lumora::test::WriteBytes(Dir / "lumora.ini", "[Packages]\n[Other]\nPackage_0=x\n");
  EXPECT_TRUE(Loader()->LoadFromIni(Dir / "lumora.ini", "Packages"));
  ASSERT_EQ(Loader()->Count(), 3);
  EXPECT_EQ(Loader()->FileName(0), std::string(LUMORA_TEST_PACKAGES) + "/../packages/tpk_excluded.so");
  EXPECT_EQ(Loader()->FileName(1), std::string(LUMORA_TEST_PACKAGES) + "/../packages/tpk_mid.so");
  EXPECT_EQ(Loader()->FileName(2), Pkg("tpk_top"));
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(Loader()->IsLoaded(i));  // only the standard package is loaded

  FinalizePackConfig();
  Loader()->SetKnownPackagesFile(KnownList("$(LUMORA)/packages/tpk_base.so\n"));
  Loader()->SetRootDir(std::string(LUMORA_TEST_PACKAGES) + "/..");
  EXPECT_TRUE(Loader()->LoadFromIni(Dir / "absent.ini", ""));
  EXPECT_EQ(Loader()->Count(), 1);
}

TEST_F(PackLoadTest, TheStandardPackageOfTheKnownListIsTheOneLoaded) {
  // A copy of a test package under the standard package's name.
  fs::create_directories(Dir.Path() / "packages");
  fs::copy_file(Pkg("tpk_base"), Dir / "packages/DCLSTD.so");
  Loader()->SetRootDir(Dir.Path().string());
  Loader()->SetKnownPackagesFile(KnownList(Pkg("tpk_excluded") + "\n$(LUMORA)/packages/DCLSTD.so\n"));
  EXPECT_TRUE(Loader()->LoadFromKnownPackages());
  ASSERT_EQ(Loader()->Count(), 2);
  EXPECT_FALSE(Loader()->IsLoaded(0));
  EXPECT_TRUE(Loader()->IsLoaded(1));
  EXPECT_EQ(Loader()->FileName(1), Dir / "packages/DCLSTD.so");
  EXPECT_TRUE(AskedQuestions().empty());
}

TEST_F(PackLoadTest, TheRootMacroLosesItsNineCharactersWhereverItStands) {
  Loader()->SetRootDir("/root-of-lumora");
  Loader()->SetKnownPackagesFile(KnownList("/opt/$(LUMORA)/x.so\n"));
  EXPECT_TRUE(Loader()->LoadFromKnownPackages());
  ASSERT_EQ(Loader()->Count(), 1);
  // "/opt/$(LU" went, not the macro.
  EXPECT_EQ(Loader()->FileName(0), "/root-of-lumoraMORA)/x.so");
}

TEST_F(PackLoadTest, WithoutAKnownListTheBareStandardPackageIsAddedLoaded) {
  Loader()->SetKnownPackagesFile(Dir / "no-such-list");
  SetPackageSearchPath({});
  EXPECT_TRUE(Loader()->LoadFromKnownPackages());
  ASSERT_EQ(Loader()->Count(), 1);
  EXPECT_EQ(Loader()->FileName(0), "dclstd.so");
  // Not found on the search path here: reported, listed, not loaded.
  EXPECT_FALSE(Loader()->IsLoaded(0));
  ASSERT_EQ(AskedQuestions().size(), 1u);
  EXPECT_EQ(AskedQuestions()[0].Text.substr(0, AskedQuestions()[0].Text.find('\n')), "Cannot load package \"dclstd.so\" !!!");
}
