#include "foundation/IniFiles.h"

#include "tests/support/SaveFailures.h"
#include "tests/support/TempDir.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace fs = std::filesystem;
using lumora::test::ReadFileBytes;
using lumora::test::TTempDir;
using lumora::test::WriteBytes;
using Lines = std::vector<std::string>;

namespace {

std::string WriteError(const std::function<void()>& f) {
  try {
    f();
  } catch (const EIniFileException& e) {
    return e.Message();
  }
  return "(no error)";
}

}  // namespace

TEST(IniFiles, MissingFileReadsAsEmpty) {
  TTempDir dir;
  TIniFile ini(dir / "absent.ini");
  EXPECT_EQ(ini.ReadString("Main", "Left", "def"), "def");
  EXPECT_EQ(ini.ReadInteger("Main", "Left", 7), 7);
  EXPECT_TRUE(ini.ReadBool("Main", "Flag", true));
  EXPECT_TRUE(ini.ReadSection("Main").empty());
  EXPECT_TRUE(ini.ReadSectionValues("Main").empty());
  EXPECT_TRUE(ini.ReadSections().empty());
  EXPECT_FALSE(ini.SectionExists("Main"));
  EXPECT_FALSE(fs::exists(dir / "absent.ini"));
}

TEST(IniFiles, WritesGoStraightToTheFile) {
  TTempDir dir;
  TIniFile ini(dir / "a.ini");
  ini.WriteInteger("Main", "Left", 10);
  EXPECT_EQ(ReadFileBytes(dir / "a.ini"), "[Main]\nLeft=10\n");
  ini.WriteString("Main", "Caption", "Lumora viewer");
  ini.WriteBool("SystemSetting", "ViewAsForm", true);
  ini.WriteBool("SystemSetting", "Only1VF", false);
  EXPECT_EQ(ReadFileBytes(dir / "a.ini"),
            "[Main]\nLeft=10\nCaption=Lumora viewer\n\n[SystemSetting]\nViewAsForm=1\nOnly1VF=0\n");
  // A second object on the same file sees every write at once.
  TIniFile other(dir / "a.ini");
  EXPECT_EQ(other.ReadString("Main", "Caption", ""), "Lumora viewer");
  other.WriteInteger("Main", "Left", -5);
  EXPECT_EQ(ini.ReadInteger("Main", "Left", 0), -5);
  EXPECT_EQ(ini.ReadString("Main", "Left", ""), "-5");
  // No temporary file is left behind.
  int files = 0;
  for ([[maybe_unused]] auto& e : fs::directory_iterator(dir.Path())) ++files;
  EXPECT_EQ(files, 1);
}

TEST(IniFiles, SectionsAndKeysMatchWithoutRegardToCase) {
  TTempDir dir;
  TIniFile ini(dir / "a.ini");
  ini.WriteInteger("Frm_mLumora", "Left", 10);
  ini.WriteInteger("FRM_MLUMORA", "LEFT", 20);
  EXPECT_EQ(ReadFileBytes(dir / "a.ini"), "[Frm_mLumora]\nLEFT=20\n");
  EXPECT_EQ(ini.ReadInteger("frm_mlumora", "left", 0), 20);
  EXPECT_TRUE(ini.ValueExists("frm_mLumora", "Left"));
  EXPECT_TRUE(ini.SectionExists("FRM_mlumora"));
}

TEST(IniFiles, NumbersAndBooleans) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[S]\nHex=$1F\nText=abc\nBig=99999999999\nTwo=2\nZero=0\nYes=yes\nEmpty=\n");
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadInteger("S", "Hex", 0), 31);
  EXPECT_EQ(ini.ReadInteger("S", "Text", 4), 4);
  EXPECT_EQ(ini.ReadInteger("S", "Big", 4), 4);
  EXPECT_EQ(ini.ReadInteger("S", "Empty", 4), 4);
  EXPECT_TRUE(ini.ReadBool("S", "Two", false));
  EXPECT_FALSE(ini.ReadBool("S", "Zero", true));
  EXPECT_TRUE(ini.ReadBool("S", "Yes", true));
  EXPECT_FALSE(ini.ReadBool("S", "Yes", false));
  EXPECT_EQ(ini.ReadString("S", "Empty", "def"), "");
  ini.WriteInteger("S", "Min", -2147483647 - 1);
  EXPECT_EQ(ini.ReadString("S", "Min", ""), "-2147483648");
  EXPECT_EQ(ini.ReadInteger("S", "Min", 0), -2147483647 - 1);
}

TEST(IniFiles, KeyNamesAndLinesOfASection) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "; settings\n[A]\n  One = 1 \n; comment=x\nTwo=2\n\n[B]\nThree=3\n[A]\nFour=4\n");
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadSection("a"), (Lines{"One", "Two"}));
  EXPECT_EQ(ini.ReadSectionValues("A"), (Lines{"One=1", "Two=2"}));
  EXPECT_EQ(ini.ReadSections(), (Lines{"A", "B", "A"}));
  EXPECT_EQ(ini.ReadString("A", "one", ""), "1");
  EXPECT_EQ(ini.ReadString("A", "Four", "none"), "none");  // only the first section of a name counts
  EXPECT_EQ(ini.ReadString("A", "; comment", "none"), "none");
}

TEST(IniFiles, EraseSectionAndDeleteKey) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Packages]\nA=1\nB=2\n\n[Main]\nLeft=3\n");
  TIniFile ini(name);
  ini.EraseSection("PACKAGES");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=3\n");
  EXPECT_TRUE(ini.ReadSection("Packages").empty());
  ini.WriteInteger("Packages", "C", 1);
  ini.DeleteKey("main", "left");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\n\n[Packages]\nC=1\n");
  // Nothing to erase: the file is not touched, not even when it cannot be written.
  ::chmod(name.c_str(), 0444);
  ini.EraseSection("Absent");
  ini.DeleteKey("Main", "Absent");
}

TEST(IniFiles, AFileWithoutSectionsKeepsItsLines) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "Left=1\nloose line\n");
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadString("", "Left", "none"), "none");
  EXPECT_TRUE(ini.ReadSections().empty());
  ini.WriteInteger("Main", "Left", 2);
  EXPECT_EQ(ReadFileBytes(name), "Left=1\nloose line\n\n[Main]\nLeft=2\n");
  EXPECT_EQ(ini.ReadInteger("Main", "Left", 0), 2);
}

TEST(IniFiles, LinesWithoutEqualsAreKeysWithAnEmptyValue) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Main]\nLeft=5\nEditor.TreeWidth\nTop=6\n");
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadSectionValues("Main"), (Lines{"Left=5", "Editor.TreeWidth", "Top=6"}));
  EXPECT_EQ(ini.ReadSection("Main"), (Lines{"Left", "Editor.TreeWidth", "Top"}));
  EXPECT_EQ(ini.ReadString("Main", "Editor.TreeWidth", "none"), "");
  ini.WriteInteger("Main", "Editor.TreeWidth", 180);
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\nEditor.TreeWidth=180\nTop=6\n");
}

TEST(IniFiles, BinaryJunkIsReadPastAndKeptByteForByte) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  std::string junk("\x00\xFF\xFE\x01garbage\x00=\x7F\x80", 15);
  std::string bytes = "[Main]\n" + junk + "\nLeft=5\n" + std::string("\x00\x00\x00", 3) + "\n[Other]\nX=1";
  WriteBytes(name, bytes);
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadInteger("Main", "Left", 0), 5);
  EXPECT_EQ(ini.ReadString("Other", "X", ""), "1");
  ini.WriteInteger("Main", "Top", 9);
  // A line of control characters counts as blank, so the new key goes before it.
  EXPECT_EQ(ReadFileBytes(name), "[Main]\n" + junk + "\nLeft=5\nTop=9\n" + std::string("\x00\x00\x00", 3) +
                                     "\n[Other]\nX=1");
  ini.WriteInteger("Other", "Y", 2);
  EXPECT_EQ(ReadFileBytes(name), "[Main]\n" + junk + "\nLeft=5\nTop=9\n" + std::string("\x00\x00\x00", 3) +
                                     "\n[Other]\nX=1\nY=2\n");
}

TEST(IniFiles, CrLfFilesStayCrLf) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "\xEF\xBB\xBF[Main]\r\nLeft=5\r\n\r\n[B]\r\nC=1\r\n");
  TIniFile ini(name);
  EXPECT_EQ(ini.ReadString("Main", "Left", ""), "5");
  EXPECT_EQ(ini.ReadSectionValues("B"), (Lines{"C=1"}));
  ini.WriteInteger("Main", "Top", 6);
  ini.WriteInteger("New", "K", 1);
  EXPECT_EQ(ReadFileBytes(name),
            "\xEF\xBB\xBF[Main]\r\nLeft=5\r\nTop=6\r\n\r\n[B]\r\nC=1\r\n\r\n[New]\r\nK=1\r\n");
}

TEST(IniFiles, ALastLineWithoutItsEndIsEndedBeforeAppending) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Main]\nLeft=5");
  TIniFile ini(name);
  ini.WriteInteger("Main", "Left", 6);
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=6");
  ini.WriteInteger("Main", "Top", 7);
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=6\nTop=7\n");
}

TEST(IniFiles, AReadOnlyFileGivesAClearErrorAndLosesNothing) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Main]\nLeft=5\n");
  ::chmod(name.c_str(), 0444);
  TIniFile ini(name);
  EXPECT_EQ(WriteError([&] { ini.WriteInteger("Main", "Left", 6); }),
            "Cannot write the settings file \"" + name + "\": the file is read-only");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\n");
  EXPECT_EQ(ini.ReadInteger("Main", "Left", 0), 5);
}

TEST(IniFiles, AReadOnlyFolderGivesAClearErrorAndLosesNothing) {
  TTempDir dir;
  fs::create_directory(dir.Path() / "ro");
  std::string name = dir / "ro/a.ini";
  WriteBytes(name, "[Main]\nLeft=5\n");
  ::chmod((dir / "ro").c_str(), 0555);
  TIniFile ini(name);
  EXPECT_EQ(WriteError([&] { ini.WriteBool("Main", "Flag", true); }),
            "Cannot write the settings file \"" + name + "\": its folder is read-only");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\n");
}

TEST(IniFiles, AFullDeviceGivesAClearErrorAndLosesNothing) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Main]\nLeft=5\n");
  TIniFile ini(name);
  {
    lumora::test::TFailingDevice device(20);
    EXPECT_EQ(WriteError([&] { ini.WriteString("Main", "Caption", "a value longer than the device takes"); }),
              "Cannot write the settings file \"" + name + "\": File too large");
  }
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\n");
  EXPECT_EQ(lumora::test::FolderEntries(dir.Path()), Lines{"a.ini"});
}

TEST(IniFiles, AFolderClosedToTheUserGivesAClearErrorAndLosesNothing) {
  TTempDir dir;
  fs::create_directory(dir.Path() / "ro");
  std::string name = dir / "ro/a.ini";
  WriteBytes(name, "[Main]\nLeft=5\n");
  ::chmod(name.c_str(), 0666);
  // Write permission for its owner only, and the user is another one.
  lumora::test::MakeReadOnlyForOthers(dir.Path() / "ro");
  const std::string message =
      lumora::test::RunAsOtherUser([&] { return WriteError([&] { TIniFile(name).WriteInteger("Main", "Left", 6); }); });
  EXPECT_EQ(message, "Cannot write the settings file \"" + name + "\": its folder is read-only");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\n");
  EXPECT_EQ(lumora::test::FolderEntries(dir.Path() / "ro"), Lines{"a.ini"});
}

TEST(IniFiles, UnwritablePlacesGiveClearErrors) {
  TTempDir dir;
  WriteBytes(dir / "plain", "x");
  TIniFile underFile(dir / "plain/a.ini");
  EXPECT_EQ(underFile.ReadString("Main", "Left", "def"), "def");
  EXPECT_NE(WriteError([&] { underFile.WriteInteger("Main", "Left", 1); }).find("Cannot write the settings file"),
            std::string::npos);
  fs::create_directory(dir.Path() / "folder.ini");
  TIniFile folder(dir / "folder.ini");
  EXPECT_EQ(folder.ReadString("Main", "Left", "def"), "def");
  EXPECT_EQ(WriteError([&] { folder.WriteInteger("Main", "Left", 1); }),
            "Cannot write the settings file \"" + (dir / "folder.ini") + "\": it is a folder");
  TIniFile unnamed("");
  EXPECT_EQ(unnamed.ReadString("Main", "Left", "def"), "def");
  EXPECT_EQ(WriteError([&] { unnamed.WriteInteger("Main", "Left", 1); }),
            "Cannot write the settings file \"\": no file name");
}

TEST(IniFiles, MissingFoldersAreCreatedOnFirstWrite) {
  TTempDir dir;
  std::string name = dir / "config/lumora/lumora.ini";
  TIniFile ini(name);
  ini.WriteInteger("Main", "Left", 1);
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=1\n");
}

TEST(IniFiles, NamesAndValuesThatCannotBeStoredAreRefused) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[Main]\nLeft=5\n");
  TIniFile ini(name);
  std::string prefix = "Cannot write the settings file \"" + name + "\": ";
  EXPECT_EQ(WriteError([&] { ini.WriteString("Main", "a=b", "1"); }), prefix + "the key name \"a=b\" cannot be stored");
  EXPECT_EQ(WriteError([&] { ini.WriteString("Main", " ", "1"); }), prefix + "the key name \" \" cannot be stored");
  EXPECT_EQ(WriteError([&] { ini.WriteString("Ma]in", "k", "1"); }),
            prefix + "the section name \"Ma]in\" cannot be stored");
  EXPECT_EQ(WriteError([&] { ini.WriteString("Main", "k", "two\nlines"); }),
            prefix + "the value of \"k\" holds a line break");
  EXPECT_EQ(ReadFileBytes(name), "[Main]\nLeft=5\n");
}

TEST(IniFiles, BlankLinesBeforeTheNextSectionStayThere) {
  TTempDir dir;
  std::string name = dir / "a.ini";
  WriteBytes(name, "[A]\nK=1\n\n\n[B]\nL=2\n");
  TIniFile ini(name);
  ini.WriteString("A", "M", "x y ");
  EXPECT_EQ(ReadFileBytes(name), "[A]\nK=1\nM=x y \n\n\n[B]\nL=2\n");
  EXPECT_EQ(ini.ReadString("A", "M", ""), "x y");  // values are read trimmed
}

TEST(IniFiles, WritingThroughALinkKeepsTheLinkAndTheFileMode) {
  TTempDir dir;
  std::string real = dir / "real.ini";
  WriteBytes(real, "[Main]\nLeft=1\n");
  ::chmod(real.c_str(), 0600);
  fs::create_symlink(real, dir.Path() / "link.ini");
  TIniFile ini(dir / "link.ini");
  ini.WriteInteger("Main", "Left", 2);
  EXPECT_TRUE(fs::is_symlink(dir.Path() / "link.ini"));
  EXPECT_EQ(ReadFileBytes(real), "[Main]\nLeft=2\n");
  struct stat st {};
  ASSERT_EQ(::stat(real.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}
