#include "foundation/joIniFile.h"
#include "foundation/joPropPath.h"

#include "tests/foundation/FoundTestObjects.h"
#include "tests/support/TempDir.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace foundtest;
using lumora::test::ReadFileBytes;
using lumora::test::TTempDir;
using lumora::test::WriteBytes;

namespace {

std::string FakeExe;
std::string FakeModuleFileName() { return FakeExe; }

// The program "lives" in <temp>/Apps/Tool.exe and the user's configuration is <temp>/config.
class joIniFileTest : public ::testing::Test {
protected:
  void SetUp() override {
    fs::create_directories(Dir.Path() / "Apps");
    FakeExe = Dir / "Apps/Tool.exe";
    FSavedProc = joModuleFileNameProc;
    joModuleFileNameProc = &FakeModuleFileName;
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    FHadXdg = xdg != nullptr;
    if (xdg) FSavedXdg = xdg;
    ::setenv("XDG_CONFIG_HOME", (Dir / "config").c_str(), 1);
  }
  void TearDown() override {
    joModuleFileNameProc = FSavedProc;
    if (FHadXdg)
      ::setenv("XDG_CONFIG_HOME", FSavedXdg.c_str(), 1);
    else
      ::unsetenv("XDG_CONFIG_HOME");
  }
  std::string File(const std::string& name) const { return Dir / name; }

  TTempDir Dir;

private:
  std::string (*FSavedProc)() = nullptr;
  bool FHadXdg = false;
  std::string FSavedXdg;
};

std::string Text(const Variant& v) { return VarToStr(v); }

}  // namespace

// ---- file name ------------------------------------------------------------------

TEST_F(joIniFileTest, AnEmptyNameUsesTheProgramsNameWithIni) {
  TjoIniFile ini("");
  EXPECT_EQ(ini.FileName(), File("Apps/Tool.ini"));
  TjoIniFile blank(" \t\x01");
  EXPECT_EQ(blank.FileName(), File("Apps/Tool.ini"));
  // A program without an extension gets one; a dot in a folder name is not an extension.
  fs::create_directories(Dir.Path() / "my.app");
  FakeExe = File("my.app/lumora");
  TjoIniFile plain("");
  EXPECT_EQ(plain.FileName(), File("my.app/lumora.ini"));
}

TEST_F(joIniFileTest, AnInstalledProgramKeepsItsSettingsInTheConfigurationFolder) {
  fs::create_directories(Dir.Path() / "usr/bin");
  FakeExe = File("usr/bin/lumora");
  ::chmod(File("usr/bin").c_str(), 0555);
  TjoIniFile ini("");
  EXPECT_EQ(ini.FileName(), File("config/lumora/lumora.ini"));
  EXPECT_FALSE(fs::exists(File("config")));
  EXPECT_TRUE(ini.WriteValue("SystemSetting", "Only1VF", Variant(true)));
  EXPECT_EQ(ReadFileBytes(File("config/lumora/lumora.ini")), "[SystemSetting]\nOnly1VF=1\n");
  // A default file that is already beside the program is used where it is.
  ::chmod(File("usr/bin").c_str(), 0755);
  WriteBytes(File("usr/bin/lumora.ini"), "[SystemSetting]\nOnly1VF=0\n");
  ::chmod(File("usr/bin").c_str(), 0555);
  TjoIniFile beside("");
  EXPECT_EQ(beside.FileName(), File("usr/bin/lumora.ini"));
  EXPECT_EQ(Text(beside.ReadValueDef("SystemSetting", "Only1VF", Variant())), "0");
}

TEST_F(joIniFileTest, AnInstalledProgramUsesTheConfigurationFolderAlsoWhereItCouldWrite) {
  fs::create_directories(Dir.Path() / "prefix/bin");
  fs::create_directories(Dir.Path() / "prefix/share/lumora");
  FakeExe = File("prefix/bin/lumora");
  TjoIniFile ini("");
  EXPECT_EQ(ini.FileName(), File("config/lumora/lumora.ini"));
  // The same program copied elsewhere, without its data folder, is a portable copy.
  fs::create_directories(Dir.Path() / "copy/bin");
  FakeExe = File("copy/bin/lumora");
  TjoIniFile portable("");
  EXPECT_EQ(portable.FileName(), File("copy/bin/lumora.ini"));
}

TEST_F(joIniFileTest, ARelativeNameIsLookedForBesideTheProgramThenInTheConfigurationFolder) {
  fs::create_directories(Dir.Path() / "config/lumora");
  WriteBytes(File("config/lumora/Shared.ini"), "[A]\nK=config\n");
  TjoIniFile inConfig("Shared.ini");
  EXPECT_EQ(inConfig.FileName(), File("config/lumora/Shared.ini"));
  WriteBytes(File("Apps/Shared.ini"), "[A]\nK=apps\n");
  TjoIniFile besideProgram("Shared.ini");
  EXPECT_EQ(besideProgram.FileName(), File("Apps/Shared.ini"));
  TjoIniFile nowhere("New.ini");
  EXPECT_EQ(nowhere.FileName(), File("Apps/New.ini"));
  TjoIniFile absolute(File("elsewhere/Abs.ini"));
  EXPECT_EQ(absolute.FileName(), File("elsewhere/Abs.ini"));
}

TEST_F(joIniFileTest, ANameThatExistsAsGivenIsExpandedToAFullPath) {
  fs::create_directories(Dir.Path() / "work");
  WriteBytes(File("work/Here.ini"), "[A]\nK=here\n");
  WriteBytes(File("Apps/Here.ini"), "[A]\nK=apps\n");
  fs::path saved = fs::current_path();
  fs::current_path(Dir.Path() / "work");
  TjoIniFile ini("../work/./Here.ini");
  fs::current_path(saved);
  EXPECT_EQ(ini.FileName(), File("work/Here.ini"));
  EXPECT_EQ(Text(ini.ReadValueDef("A", "K", Variant())), "here");
}

TEST_F(joIniFileTest, ChangingTheFileNameDropsTheIniObject) {
  TjoIniFile ini("");
  TIniFile* first = ini.IniFile();
  EXPECT_EQ(first->FileName(), File("Apps/Tool.ini"));
  ini.SetFileName(File("Apps/Tool.ini"));  // the same name: nothing happens
  EXPECT_EQ(ini.IniFile(), first);
  ini.SetFileName(File("Other.ini"));
  EXPECT_EQ(ini.FileName(), File("Other.ini"));
  EXPECT_EQ(ini.IniFile()->FileName(), File("Other.ini"));
}

// ---- sections -------------------------------------------------------------------

TEST_F(joIniFileTest, SectionsAreHandlesComparedExactly) {
  TjoIniFile ini("");
  TjoIniFileSection* main = ini.GetSection("Main");
  TjoIniFileSection* upper = ini.GetSection("MAIN");
  EXPECT_NE(main, upper);
  EXPECT_EQ(ini.GetSection("Main"), main);
  EXPECT_EQ(ini.SectionCount(), 2);
  EXPECT_EQ(main->Owner(), &ini);
  EXPECT_EQ(main->Name(), "Main");
  EXPECT_FALSE(fs::exists(ini.FileName()));  // a handle reads and writes nothing by itself
  // Both address the same section of the file.
  EXPECT_TRUE(main->SetValue("Left", Variant(12)));
  Variant v;
  EXPECT_TRUE(upper->GetValue("left", v));
  EXPECT_EQ(Text(v), "12");
  EXPECT_FALSE(upper->GetValue("Top", v));
  EXPECT_TRUE(v.IsNull());
}

TEST_F(joIniFileTest, ASectionMovesBetweenOwnersAndLeavesWhenDestroyed) {
  TjoIniFile a(File("a.ini")), b(File("b.ini"));
  TjoIniFileSection* s = a.GetSection("S");
  a.GetSection("T");
  s->SetOwner(&b);
  EXPECT_EQ(a.SectionCount(), 1);
  EXPECT_EQ(b.SectionCount(), 1);
  EXPECT_EQ(b.Sections(0), s);
  EXPECT_EQ(b.GetSection("S"), s);
  s->SetOwner(&b);
  EXPECT_EQ(b.SectionCount(), 1);
  EXPECT_TRUE(s->SetValue("K", Variant("v")));
  EXPECT_EQ(ReadFileBytes(File("b.ini")), "[S]\nK=v\n");
  delete s;
  EXPECT_EQ(b.SectionCount(), 0);
  // Without an owner a section answers False to everything.
  auto* loose = new TjoIniFileSection("Loose", nullptr);
  Variant v;
  TTestEditor editor(nullptr);
  EXPECT_FALSE(loose->SetValue("K", Variant(1)));
  EXPECT_FALSE(loose->GetValue("K", v));
  EXPECT_FALSE(loose->SaveProperty("", &editor, "TreeWidth"));
  loose->SetOwner(&a);  // the store frees it
  EXPECT_EQ(a.SectionCount(), 2);
}

// ---- values ---------------------------------------------------------------------

TEST_F(joIniFileTest, WriteValueStoresIntegersBooleansAndStringsOnly) {
  TjoIniFile ini("");
  EXPECT_FALSE(ini.WriteValue("S", "Double", Variant(2.5)));
  EXPECT_FALSE(ini.WriteValue("S", "Date", Variant(TDateTime(45000.5))));
  EXPECT_FALSE(ini.WriteValue("S", "Empty", Variant()));
  EXPECT_FALSE(ini.WriteValue("S", "Null", Null()));
  EXPECT_FALSE(ini.WriteValue("S", "Currency", Variant(Currency::FromValue(1.5))));
  EXPECT_FALSE(ini.WriteValue("S", "Int64", Variant(5LL)));
  EXPECT_FALSE(ini.WriteValue("S", "Byte", Variant(static_cast<unsigned char>(5))));
  EXPECT_FALSE(fs::exists(ini.FileName()));  // nothing was written
  EXPECT_TRUE(ini.WriteValue("S", "Single", Variant(2.7f)));
  EXPECT_TRUE(ini.WriteValue("S", "Small", Variant(short(-3))));
  EXPECT_TRUE(ini.WriteValue("S", "Integer", Variant(640)));
  EXPECT_TRUE(ini.WriteValue("S", "True", Variant(true)));
  EXPECT_TRUE(ini.WriteValue("S", "False", Variant(false)));
  EXPECT_TRUE(ini.WriteValue("S", "String", Variant("MS Sans Serif")));
  EXPECT_EQ(ReadFileBytes(ini.FileName()),
            "[S]\nSingle=3\nSmall=-3\nInteger=640\nTrue=1\nFalse=0\nString=MS Sans Serif\n");
}

TEST_F(joIniFileTest, ValuesAreReadBackAsText) {
  WriteBytes(File("Apps/Tool.ini"), "[Main]\nTreeWidth=180\nOdd=@35h{\nEmpty=\n");
  TjoIniFile ini("");
  Variant v;
  EXPECT_TRUE(ini.ReadValue("main", "TREEWIDTH", v));
  EXPECT_EQ(v.VarType(), varString);
  EXPECT_EQ(Text(v), "180");
  EXPECT_EQ(v.AsInteger(), 180);
  // The fall-back text itself reads as absent.
  EXPECT_FALSE(ini.ReadValue("Main", "Odd", v));
  EXPECT_TRUE(v.IsNull());
  EXPECT_FALSE(ini.ReadValue("Main", "Absent", v));
  EXPECT_FALSE(ini.ReadValue("Nowhere", "TreeWidth", v));
  EXPECT_TRUE(ini.ReadValue("Main", "Empty", v));
  EXPECT_EQ(Text(v), "");
  EXPECT_EQ(ini.ReadValueDef("Main", "Absent", Variant(640)).AsInteger(), 640);
  EXPECT_EQ(ini.ReadValueDef("Main", "Odd", Variant(true)).VarType(), varBoolean);
  EXPECT_EQ(Text(ini.ReadValueDef("Main", "TreeWidth", Variant(640))), "180");
  // A written sentinel also reads as absent.
  ini.WriteValue("Main", "Again", Variant(SjoIniNoValue));
  EXPECT_FALSE(ini.ReadValue("Main", "Again", v));
}

TEST_F(joIniFileTest, SectionListsFillTheGivenStrings) {
  WriteBytes(File("Apps/Tool.ini"), "[Packages]\nA=1\nB=2\n[Empty]\n");
  TjoIniFile ini("");
  TStringList list;
  list.Add("old");
  EXPECT_TRUE(ini.ReadSectionNames("packages", &list));
  EXPECT_EQ(list.Text(), "A\r\nB\r\n");
  EXPECT_TRUE(ini.ReadSectionValues("Packages", &list));
  EXPECT_EQ(list.Text(), "A=1\r\nB=2\r\n");
  EXPECT_FALSE(ini.ReadSectionValues("Empty", &list));
  EXPECT_EQ(list.Count(), 0);
  EXPECT_FALSE(ini.ReadSectionNames("Absent", &list));
  EXPECT_FALSE(ini.ReadSectionNames("Packages", nullptr));
}

TEST_F(joIniFileTest, TheAbstractStoreHasNothing) {
  TjoCustomIniFile store;
  TStringList list;
  Variant v;
  EXPECT_FALSE(store.ReadSectionNames("S", &list));
  EXPECT_FALSE(store.ReadSectionValues("S", &list));
  EXPECT_FALSE(store.WriteValue("S", "K", Variant(1)));
  EXPECT_FALSE(store.ReadValue("S", "K", v));
  EXPECT_EQ(store.ReadValueDef("S", "K", Variant("def")).AsString(), "def");
  TTestEditor editor(nullptr);
  store.LoadProperties("S", "", &editor);
  EXPECT_EQ(editor.FSetCount, 0);
}

TEST_F(joIniFileTest, TwoStoresOnOneFileSeeEachOthersWrites) {
  TjoIniFile a(""), b("");
  a.WriteValue("S", "K", Variant(1));
  EXPECT_EQ(Text(b.ReadValueDef("S", "K", Variant())), "1");
  b.WriteValue("S", "K", Variant(2));
  EXPECT_EQ(Text(a.ReadValueDef("S", "K", Variant())), "2");
}

// ---- loading and saving properties ----------------------------------------------

TEST_F(joIniFileTest, APrefixedLineSetsThePropertyFromItsText) {
  WriteBytes(File("Apps/Tool.ini"),
             "[Frm_mLumora]\nLeft=10\nTop=20\nEditor.TreeWidth=180\nEditor.FontEditor.Name=Courier New\n");
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  ini.LoadProperties("Frm_mLumora", "Editor", &editor);
  EXPECT_EQ(editor.FTreeWidth, 180);
  EXPECT_EQ(editor.FontEditor()->FName, "Courier New");
  TTestForm form(nullptr);
  ini.LoadProperties("Frm_mLumora", "", &form);
  EXPECT_EQ(form.FLeft, 10);
  EXPECT_EQ(form.FTop, 20);
}

TEST_F(joIniFileTest, ThePrefixMatchesWithoutRegardToCase) {
  WriteBytes(File("Apps/Tool.ini"), "[Main]\nEDITOR.treewidth=190\n");
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  ini.LoadProperties("Main", "editor", &editor);
  EXPECT_EQ(editor.FTreeWidth, 190);
}

TEST_F(joIniFileTest, ALineThatDoesNotMatchGoesOnWithTheNameBeforeIt) {
  WriteBytes(File("Apps/Tool.ini"),
             "[Main]\nFirst=1\nEditor.TreeWidth=180\nSomethingLong=5\nLeft=12\nTop=1\n");
  TjoIniFile ini("");
  TTestValues values(nullptr);
  ini.LoadProperties("Main", "Editor", &values);
  // "First" comes before any matching line: its name is blank and it is skipped.
  // "SomethingLong=5" keeps the name "TreeWidth", cut at the line's own "=" (position 14,
  // less the prefix): the path "TreeWi" and the text "th".
  // "Left=12" keeps "TreeWi"; cut at position 5 it leaves a blank path and the text
  // "TreeWi", which sets the object as a whole. "Top=1" then has a blank name.
  EXPECT_EQ(values.Stored.Text(), "TreeWidth=180\r\nTreeWi=th\r\n");
  EXPECT_EQ(values.WholeValue, "TreeWi");
}

TEST_F(joIniFileTest, ALineWithoutEqualsReadsTheKeyNamedByTheWholeLine) {
  WriteBytes(File("Apps/Tool.ini"), "[Main]\nCaption\nEditor.TreeWidth\nTreeWidth=175\n");
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  editor.FCaption = "before";
  ini.LoadProperties("Main", "", &editor);
  // "Caption" reads as an empty value; "Editor.TreeWidth" is no property; "TreeWidth" loads.
  EXPECT_EQ(editor.FCaption, "");
  EXPECT_EQ(editor.FTreeWidth, 175);
  EXPECT_EQ(editor.FSetCount, 1);
  // With a prefix, the key read is the name after the prefix: "TreeWidth", which the file
  // has. The line after it does not match and is cut to the path "Tr": nothing there.
  TTestEditor other(nullptr);
  ini.LoadProperties("Main", "Editor", &other);
  EXPECT_EQ(other.FTreeWidth, 175);
  EXPECT_EQ(other.FSetCount, 1);
  EXPECT_EQ(other.FCaption, "");
}

TEST_F(joIniFileTest, ValuesThatDoNotConvertArePassedOverAndTheRestLoads) {
  WriteBytes(File("Apps/Tool.ini"),
             "[Main]\nTreeWidth=wide\nReadOnly=0\nKind=tkOdd\nNoSuch=1\nFontEditor=x\nCaption=ok\n=5\n");
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  ini.LoadProperties("Main", "", &editor);
  EXPECT_EQ(editor.FSetCount, 0);
  EXPECT_FALSE(editor.FReadOnly);
  EXPECT_EQ(editor.FKind, tkOdd);
  EXPECT_EQ(editor.FCaption, "ok");
  ini.LoadProperties("Absent", "", &editor);
  ini.LoadProperties("Main", "", nullptr);
}

TEST_F(joIniFileTest, SavePropertyWritesUnderThePrefixedKey) {
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  editor.FTreeWidth = 180;
  editor.FontEditor()->FName = "Courier New";
  editor.FontEditor()->FSize = 10;
  editor.FontEditor()->FCharSet = 204;
  TTestForm form(nullptr);
  form.FLeft = 33;
  form.FTop = -4;
  TjoIniFileSection* section = ini.GetSection("Frm_mLumora");
  EXPECT_TRUE(section->SaveProperty("", &form, "Left"));
  EXPECT_TRUE(section->SaveProperty("", &form, "Top"));
  EXPECT_TRUE(section->SaveProperty("Editor", &editor, "TreeWidth"));
  EXPECT_TRUE(section->SaveProperty("Editor", &editor, "FontEditor.Name"));
  EXPECT_TRUE(section->SaveProperty("Editor", &editor, "FontEditor.Size"));
  EXPECT_TRUE(section->SaveProperty("Editor", &editor, "FontEditor.CharSet"));
  EXPECT_EQ(ReadFileBytes(ini.FileName()),
            "[Frm_mLumora]\nLeft=33\nTop=-4\nEditor.TreeWidth=180\nEditor.FontEditor.Name=Courier New\n"
            "Editor.FontEditor.Size=10\nEditor.FontEditor.CharSet=204\n");
  // Objects, doubles and unknown paths are not written.
  EXPECT_FALSE(section->SaveProperty("Editor", &editor, "FontEditor"));
  EXPECT_FALSE(section->SaveProperty("Editor", &editor, "Ratio"));
  EXPECT_FALSE(section->SaveProperty("Editor", &editor, "NoSuch"));
  EXPECT_FALSE(section->SaveProperty("Editor", &editor, "OnChange"));
  EXPECT_EQ(ReadFileBytes(ini.FileName()).find("Ratio"), std::string::npos);
}

TEST_F(joIniFileTest, SavedPropertiesLoadBack) {
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  editor.FTreeWidth = 222;
  editor.FReadOnly = false;
  editor.FKind = tkFancy;
  editor.FCaption = "A caption = with equals";
  editor.FScale = 2.7f;
  editor.FontEditor()->FName = "Lucida Console";
  editor.FontEditor()->FStyle = TTestStyles{tsItalic};
  TjoIniFileSection* s = ini.GetSection("Main");
  for (const char* path : {"TreeWidth", "ReadOnly", "Kind", "Caption", "Scale", "FontEditor.Name", "FontEditor.Style"})
    EXPECT_TRUE(s->SaveProperty("Editor", &editor, path)) << path;
  TTestEditor loaded(nullptr);
  ini.LoadProperties("Main", "Editor", &loaded);
  EXPECT_EQ(loaded.FTreeWidth, 222);
  EXPECT_FALSE(loaded.FReadOnly);
  EXPECT_EQ(loaded.FKind, tkFancy);
  EXPECT_EQ(loaded.FCaption, "A caption = with equals");
  EXPECT_FLOAT_EQ(loaded.FScale, 3.0f);  // a single is stored as a whole number
  EXPECT_EQ(loaded.FontEditor()->FName, "Lucida Console");
  EXPECT_EQ(loaded.FontEditor()->FStyle, TTestStyles{tsItalic});
}

TEST_F(joIniFileTest, ASectionStandsWhereAnObjectWithValuesIsExpected) {
  TjoIniFile ini("");
  TjoIniFileSection* s = ini.GetSection("SystemSetting");
  EXPECT_TRUE(SetValueByPath(s, "FormWidth", Variant(800)));
  Variant v;
  EXPECT_TRUE(GetValueByPath(s, "FormWidth", Variant(), v));
  EXPECT_EQ(Text(v), "800");
  EXPECT_FALSE(GetValueByPath(s, "FormHeight", Variant(480), v));
  EXPECT_EQ(v.AsInteger(), 480);
  EXPECT_EQ(ReadFileBytes(ini.FileName()), "[SystemSetting]\nFormWidth=800\n");
}

// ---- damaged files --------------------------------------------------------------

TEST_F(joIniFileTest, AHandDamagedFileLoadsWhatItCanAndKeepsTheRest) {
  std::string junk = std::string("\x00\x01\xFF\xFE", 4) + "garbage without equals";
  std::string bytes = "TreeWidth=99\r\n" + junk + "\r\n[Main]\r\n" + junk + "\r\nTreeWidth=181\r\n" +
                      std::string("\x00=\x00", 3) + "\r\n[Other]\r\nKeep=me\r\n";
  WriteBytes(File("Apps/Tool.ini"), bytes);
  TjoIniFile ini("");
  TTestEditor editor(nullptr);
  ini.LoadProperties("Main", "", &editor);
  EXPECT_EQ(editor.FTreeWidth, 181);
  EXPECT_TRUE(ini.GetSection("Main")->SaveProperty("", &editor, "Caption"));
  std::string after = ReadFileBytes(ini.FileName());
  EXPECT_EQ(after, "TreeWidth=99\r\n" + junk + "\r\n[Main]\r\n" + junk + "\r\nTreeWidth=181\r\n" +
                       std::string("\x00=\x00", 3) + "\r\nCaption=\r\n[Other]\r\nKeep=me\r\n");
  EXPECT_EQ(Text(ini.ReadValueDef("Other", "Keep", Variant())), "me");
}

TEST_F(joIniFileTest, AFileThatCannotBeWrittenRaisesAndLosesNothing) {
  WriteBytes(File("Apps/Tool.ini"), "[SystemSetting]\nViewAsForm=1\nFormWidth=640\n");
  ::chmod(File("Apps/Tool.ini").c_str(), 0444);
  TjoIniFile ini("");
  try {
    ini.WriteValue("SystemSetting", "FormWidth", Variant(800));
    FAIL() << "the write went through";
  } catch (const EIniFileException& e) {
    EXPECT_EQ(e.Message(), "Cannot write the settings file \"" + File("Apps/Tool.ini") + "\": the file is read-only");
  }
  EXPECT_EQ(ReadFileBytes(File("Apps/Tool.ini")), "[SystemSetting]\nViewAsForm=1\nFormWidth=640\n");
  EXPECT_EQ(Text(ini.ReadValueDef("SystemSetting", "FormWidth", Variant())), "640");
  // Doubles are refused before the file is touched.
  EXPECT_FALSE(ini.WriteValue("SystemSetting", "Ratio", Variant(0.5)));
}
