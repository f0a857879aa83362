// The package runtime over the test packages: loading with what a package requires,
// counting uses, listing units and requirements, reading the description without running
// the package, finding Register procedures, the registration hooks, unloading with the
// module unload procedures told first, and every kind of file that is not a package.
#include "platform/packages/Packages.h"

#include "platform/rtti/Classes.h"
#include "tests/support/TempDir.h"
#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace fs = std::filesystem;
using lumora::test::MessageOf;

namespace {

std::string Pkg(const std::string& name) { return std::string(LUMORA_TEST_PACKAGES) + "/" + name + ".so"; }

std::string FileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

struct TInfoLine {
  std::string Name;
  TNameType Type;
};

void CollectInfo(const std::string& name, TNameType type, std::uint8_t, void* param) {
  static_cast<std::vector<TInfoLine>*>(param)->push_back({name, type});
}

std::vector<std::string> LoadedNames() {
  std::vector<std::string> names;
  for (HMODULE h : LoadedPackages()) names.push_back(fs::path(PackageFileName(h)).stem().string());
  return names;
}

// Calls every Register procedure of a loaded package under its module, with hooks that
// register the classes, as the loader does.
void RegisterUnits(HMODULE h) {
  std::vector<TInfoLine> lines;
  int flags = 0;
  GetPackageInfo(h, &lines, flags, &CollectInfo);
  for (const auto& l : lines) {
    if (l.Type != ntContainsUnit) continue;
    if (TRegisterProc proc = GetRegisterProc(h, l.Name)) {
      TModuleScope scope(h);
      proc();
    }
  }
}

struct PackagesTest : ::testing::Test {
  void SetUp() override {
    auto registerAll = [](const TComponentClasses& classes) {
      for (TClass c : classes)
        if (!GetClass(c->ClassName())) RegisterClass(c);
    };
    RegisterComponentsProc = [=](const std::string&, const TComponentClasses& classes) { registerAll(classes); };
    RegisterNoIconProc = registerAll;
    RegisterNonActiveXProc = [=](const TComponentClasses& classes, TActiveXRegType) { registerAll(classes); };
    SetPackageSearchPath({});
  }
  void TearDown() override {
    for (HMODULE h : LoadedPackages()) {
      while (IsPackageLoaded(h)) UnloadPackage(h);
    }
    RegisterComponentsProc = nullptr;
    RegisterNoIconProc = nullptr;
    RegisterNonActiveXProc = nullptr;
    SetPackageSearchPath({});
  }
};

}  // namespace

TEST_F(PackagesTest, DescriptionIsReadWithoutRunningThePackage) {
  unsetenv("TPK_BASE_INITIALISED");
  EXPECT_EQ(GetPackageDescription(Pkg("tpk_base")), "Test base package");
  EXPECT_EQ(getenv("TPK_BASE_INITIALISED"), nullptr);
  const TPackageDeclaration d = ReadPackageDeclaration(Pkg("tpk_top"));
  EXPECT_EQ(d.Description, "Test top package");
  EXPECT_EQ(d.Requires, std::vector<std::string>{"tpk_mid"});
  EXPECT_EQ(d.Contains, (std::vector<std::string>{"TopReg", "TopUtils"}));
  EXPECT_TRUE(LoadedPackages().empty());

  const HMODULE h = LoadPackage(Pkg("tpk_base"));
  EXPECT_STREQ(getenv("TPK_BASE_INITIALISED"), "1");
  UnloadPackage(h);
}

TEST_F(PackagesTest, DescriptionOfWhatIsNotAPackageIsEmpty) {
  lumora::test::TTempDir dir;
  lumora::test::WriteBytes(dir / "text.so", "just some text, long enough to be more than an ELF header ........");
  EXPECT_EQ(GetPackageDescription(dir / "text.so"), "");
  EXPECT_EQ(GetPackageDescription(dir / "absent.so"), "");
  EXPECT_EQ(GetPackageDescription(Pkg("tpk_plain")), "");
}

TEST_F(PackagesTest, LoadingAChainLoadsWhatEachRequiresFirst) {
  const HMODULE top = LoadPackage(Pkg("tpk_top"));
  EXPECT_GT(top, HMODULE(32));
  EXPECT_EQ(LoadedNames(), (std::vector<std::string>{"tpk_base", "tpk_mid", "tpk_top"}));
  EXPECT_EQ(PackageFileName(top), fs::canonical(Pkg("tpk_top")).string());

  std::vector<TInfoLine> lines;
  int flags = -1;
  GetPackageInfo(top, &lines, flags, &CollectInfo);
  EXPECT_EQ(flags, 0);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].Name, "tpk_mid");
  EXPECT_EQ(lines[0].Type, ntRequiresPackage);
  EXPECT_EQ(lines[1].Name, "TopReg");
  EXPECT_EQ(lines[1].Type, ntContainsUnit);
  EXPECT_EQ(lines[2].Name, "TopUtils");

  // The requirements were loaded, not registered: their Register procedures are the loader's to call.
  EXPECT_EQ(GetClass("TPkgBase"), nullptr);
  UnloadPackage(top);
  EXPECT_TRUE(LoadedPackages().empty());
}

TEST_F(PackagesTest, UsesAreCountedAndAPackageStaysWhileAnotherNeedsIt) {
  const HMODULE mid = LoadPackage(Pkg("tpk_mid"));
  const HMODULE top = LoadPackage(Pkg("tpk_top"));
  EXPECT_EQ(LoadPackage(Pkg("tpk_mid")), mid);
  EXPECT_EQ(LoadedNames(), (std::vector<std::string>{"tpk_base", "tpk_mid", "tpk_top"}));
  UnloadPackage(top);
  EXPECT_EQ(LoadedNames(), (std::vector<std::string>{"tpk_base", "tpk_mid"}));
  UnloadPackage(mid);
  EXPECT_TRUE(IsPackageLoaded(mid));
  UnloadPackage(mid);
  EXPECT_TRUE(LoadedPackages().empty());
  UnloadPackage(mid);  // no longer a package: ignored
  UnloadPackage(12345);
}

TEST_F(PackagesTest, ADiamondLoadsItsBaseOnce) {
  const HMODULE diamond = LoadPackage(Pkg("tpk_diamond"));
  EXPECT_EQ(LoadedNames(), (std::vector<std::string>{"tpk_base", "tpk_left", "tpk_right", "tpk_diamond"}));
  UnloadPackage(diamond);
  EXPECT_TRUE(LoadedPackages().empty());
}

TEST_F(PackagesTest, RegisterProceduresAreFoundByTheUnitName) {
  EXPECT_EQ(RegisterProcName("StdReg"), "Lumora_Stdreg_Register");
  EXPECT_EQ(RegisterProcName("dbreg"), "Lumora_Dbreg_Register");
  EXPECT_EQ(RegisterProcName("X"), "Lumora_X_Register");
  EXPECT_EQ(RegisterProcName(std::string(300, 'a')), "Lumora_A" + std::string(255, 'a') + "_Register");

  const HMODULE top = LoadPackage(Pkg("tpk_top"));
  EXPECT_NE(GetRegisterProc(top, "TopReg"), nullptr);
  EXPECT_NE(GetRegisterProc(top, "TOPREG"), nullptr);
  EXPECT_EQ(GetRegisterProc(top, "TopUtils"), nullptr);
  // The middle package's procedure is not the top package's, though the top one needs it.
  EXPECT_EQ(GetRegisterProc(top, "MidReg"), nullptr);
  // Nor is a routine of a library the package links.
  EXPECT_EQ(GetProcAddress(top, "dlopen"), nullptr);
  UnloadPackage(top);
}

TEST_F(PackagesTest, ClassesRegisteredByAPackageAreTheProgramsAndLeaveWithIt) {
  const HMODULE base = LoadPackage(Pkg("tpk_base"));
  RegisterUnits(base);
  TClass cls = GetClass("TPkgBase");
  ASSERT_NE(cls, nullptr);
  EXPECT_EQ(cls->Module(), base);
  // A class of the platform registered by the package is the one this program has.
  EXPECT_EQ(GetClass("TStringList"), TStringList::StaticClass());
  EXPECT_EQ(FindClassHInstance("TStringList"), base);

  std::vector<HMODULE> told;
  bool stillRegistered = false;
  const int id = AddModuleUnloadProc([&](HMODULE m) {
    told.push_back(m);
    stillRegistered = GetClass("TPkgBase") != nullptr;
  });
  UnloadPackage(base);
  RemoveModuleUnloadProc(id);
  EXPECT_EQ(told, std::vector<HMODULE>{base});
  EXPECT_TRUE(stillRegistered);
  EXPECT_EQ(GetClass("TPkgBase"), nullptr);
  EXPECT_EQ(GetClass("TStringList"), nullptr);
}

TEST_F(PackagesTest, AFormBuiltFromAPackagesClassesIsClosedBeforeItsCodeGoes) {
  const HMODULE base = LoadPackage(Pkg("tpk_base"));
  RegisterUnits(base);
  auto* root = new TComponent(nullptr);
  ReadComponentFromText(root,
                        "object Root: TComponent\n"
                        "  object Thing1: TPkgBase\n"
                        "    Level = 3\n"
                        "  end\n"
                        "end\n");
  ASSERT_EQ(root->ComponentCount(), 1);
  EXPECT_EQ(root->Components(0)->ClassName(), "TPkgBase");
  EXPECT_EQ(GetOrdProp(root->Components(0), "Level"), 3);
  // What a designer does: free the roots that hold a component of the module's classes.
  const int id = AddModuleUnloadProc([&](HMODULE m) {
    for (int i = 0; root && i < root->ComponentCount(); ++i)
      if (root->Components(i)->ClassType()->Module() == m) {
        FreeAndNil(root);
        break;
      }
  });
  UnloadPackage(base);
  RemoveModuleUnloadProc(id);
  EXPECT_EQ(root, nullptr);
  EXPECT_EQ(MessageOf<EClassNotFound>([] {
              TComponent again(nullptr);
              ReadComponentFromText(&again, "object Root: TComponent\n  object Thing1: TPkgBase\n  end\nend\n");
            }),
            "Class TPkgBase not found");
}

TEST_F(PackagesTest, AFailingRegisterReachesTheCallerAndThePackageStaysLoaded) {
  const HMODULE h = LoadPackage(Pkg("tpk_failing"));
  EXPECT_EQ(MessageOf<EComponentError>([&] { RegisterUnits(h); }), "The failing package refuses to register");
  EXPECT_TRUE(IsPackageLoaded(h));
  EXPECT_NE(GetClass("TPkgFailing"), nullptr);
  UnloadPackage(h);
  EXPECT_EQ(GetClass("TPkgFailing"), nullptr);
}

TEST_F(PackagesTest, RegisteringWithoutALoaderListeningIsAnError) {
  RegisterComponentsProc = nullptr;
  RegisterNoIconProc = nullptr;
  RegisterNonActiveXProc = nullptr;
  EXPECT_EQ(MessageOf<EComponentError>([] { RegisterComponents("Test", {TStringList::StaticClass()}); }),
            "Invalid component registration");
  EXPECT_EQ(MessageOf<EComponentError>([] { RegisterNoIcon({TStringList::StaticClass()}); }),
            "Invalid component registration");
  EXPECT_EQ(MessageOf<EComponentError>([] { RegisterNonActiveX({TStringList::StaticClass()}, axrIncludeDescendants); }),
            "Invalid component registration");
}

TEST_F(PackagesTest, TheHooksReceiveThePageAndTheClasses) {
  std::vector<std::string> seen;
  RegisterComponentsProc = [&](const std::string& page, const TComponentClasses& classes) {
    seen.push_back(page + ":" + classes.at(0)->ClassName() + "+" + std::to_string(classes.size() - 1));
  };
  RegisterNoIconProc = [&](const TComponentClasses& classes) { seen.push_back("noicon:" + classes.at(0)->ClassName()); };
  const HMODULE top = LoadPackage(Pkg("tpk_top"));
  RegisterUnits(top);
  EXPECT_EQ(seen, (std::vector<std::string>{"Test:TPkgTop+0", "noicon:TPkgTop"}));
  UnloadPackage(top);
}

TEST_F(PackagesTest, BareNamesAreFoundInTheCurrentFolderThenTheSearchPath) {
  EXPECT_EQ(MessageOf<EPackageError>([] { LoadPackage("tpk_base.so"); }),
            "Cannot load package tpk_base.so.\nThe file does not exist.");
  SetPackageSearchPath({"/nonexistent", LUMORA_TEST_PACKAGES});
  const HMODULE h = LoadPackage("tpk_base.so");
  EXPECT_EQ(PackageFileName(h), fs::canonical(Pkg("tpk_base")).string());
  UnloadPackage(h);

  SetPackageSearchPath({});
  const fs::path previous = fs::current_path();
  fs::current_path(LUMORA_TEST_PACKAGES);
  const HMODULE again = SafeLoadPackage("tpk_mid.so");
  fs::current_path(previous);
  EXPECT_NE(again, 0u);
  UnloadPackage(again);
}

TEST_F(PackagesTest, RequiredPackagesAreFoundBesideThePackage) {
  lumora::test::TTempDir dir;
  for (const char* name : {"tpk_base", "tpk_mid"}) fs::copy_file(Pkg(name), dir / (std::string(name) + ".so"));
  const HMODULE mid = LoadPackage(dir / "tpk_mid.so");
  const auto loaded = LoadedPackages();
  ASSERT_EQ(loaded.size(), 2u);
  EXPECT_EQ(fs::path(PackageFileName(loaded[0])).parent_path(), fs::canonical(dir.Path()));
  UnloadPackage(mid);
}

TEST_F(PackagesTest, WhatIsNotAPackageGivesAClearErrorAndLeavesNothingLoaded) {
  lumora::test::TTempDir dir;
  lumora::test::WriteBytes(dir / "text.so", std::string(100, 'x'));
  lumora::test::WriteBytes(dir / "tiny.so", "\x7f" "ELF");
  const std::string whole = FileBytes(Pkg("tpk_base"));
  lumora::test::WriteBytes(dir / "truncated.so", whole.substr(0, whole.size() / 3));
  lumora::test::WriteBytes(dir / "headonly.so", whole.substr(0, 64));

  const auto error = [](const std::string& path) { return MessageOf<EPackageError>([&] { LoadPackage(path); }); };
  EXPECT_EQ(error(dir / "absent.so"), "Cannot load package " + (dir / "absent.so") + ".\nThe file does not exist.");
  EXPECT_EQ(error(dir / "text.so"), "Cannot load package " + (dir / "text.so") + ".\nThe file is not a shared library.");
  EXPECT_EQ(error(dir / "tiny.so"), "Cannot load package " + (dir / "tiny.so") + ".\nThe file is not a shared library.");
  EXPECT_EQ(error(dir / "truncated.so"),
            "Cannot load package " + (dir / "truncated.so") + ".\nThe file is damaged or truncated.");
  EXPECT_EQ(error(dir / "headonly.so"),
            "Cannot load package " + (dir / "headonly.so") + ".\nThe file is damaged or truncated.");
  EXPECT_EQ(error(Pkg("tpk_plain")),
            "Cannot load package " + Pkg("tpk_plain") + ".\nThe file holds no package information.");
  EXPECT_EQ(error(Pkg("tpk_orphan")), "Cannot load package " + Pkg("tpk_orphan") +
                                          ".\nThe package tpk_absent that it requires cannot be loaded: The file does "
                                          "not exist.");
  const std::string missingLibrary = error(Pkg("tpk_needslib"));
  EXPECT_EQ(missingLibrary.rfind("Cannot load package " + Pkg("tpk_needslib") + ".\n", 0), 0u) << missingLibrary;
  EXPECT_NE(missingLibrary.find("libtpk_gone.so"), std::string::npos) << missingLibrary;
  EXPECT_TRUE(LoadedPackages().empty());

  std::string reason;
  EXPECT_EQ(SafeLoadPackage(dir / "text.so", &reason), 0u);
  EXPECT_EQ(reason, "Cannot load package " + (dir / "text.so") + ".\nThe file is not a shared library.");
  EXPECT_EQ(MessageOf<EPackageError>([] {
              int flags = 0;
              GetPackageInfo(999, nullptr, flags, &CollectInfo);
            }),
            "The handle is not a loaded package.");
}

TEST_F(PackagesTest, ARequiredPackageThatFailsUndoesWhatWasLoaded) {
  lumora::test::TTempDir dir;
  // The diamond's right side is missing: the base and the left side loaded for it go again.
  for (const char* name : {"tpk_base", "tpk_left", "tpk_diamond"})
    fs::copy_file(Pkg(name), dir / (std::string(name) + ".so"));
  EXPECT_EQ(MessageOf<EPackageError>([&] { LoadPackage(dir / "tpk_diamond.so"); }),
            "Cannot load package " + (dir / "tpk_diamond.so") +
                ".\nThe package tpk_right that it requires cannot be loaded: The file does not exist.");
  EXPECT_TRUE(LoadedPackages().empty());
}
