#include "platform/streaming/SaveFile.h"

#include "tests/support/Corpus.h"
#include "tests/support/Errors.h"
#include "tests/support/SaveFailures.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace fs = std::filesystem;
using lumora::test::FolderEntries;
using lumora::test::ReadFileBytes;
using lumora::test::TTempDir;
using lumora::test::WriteBytes;

namespace {

mode_t ModeOf(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0;
}

// The message of the ESaveError that `f` raises.
template <class F>
std::string SaveErrorOf(F&& f) {
  return lumora::test::MessageOf<ESaveError>(f);
}

TEST(SaveFile, WritesANewFileWithTheUsualPermissions) {
  TTempDir dir;
  const std::string name = dir / "new.dfm";
  const mode_t mask = ::umask(022);
  SaveFile(name, "content");
  ::umask(mask);
  EXPECT_EQ(ReadFileBytes(name), "content");
  EXPECT_EQ(ModeOf(name), 0644u);
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"new.dfm"});
}

TEST(SaveFile, ReplacesAFileAndKeepsItsPermissions) {
  TTempDir dir;
  const std::string name = dir / "old.dfm";
  WriteBytes(name, "a much longer previous content");
  ::chmod(name.c_str(), 0604);
  SaveFile(name, "new");
  EXPECT_EQ(ReadFileBytes(name), "new");
  EXPECT_EQ(ModeOf(name), 0604u);
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"old.dfm"});
}

TEST(SaveFile, ThroughALinkTheFileLinkedToGetsTheContent) {
  TTempDir dir;
  fs::create_directory(dir.Path() / "real");
  const std::string real = dir / "real/Form1.dfm";
  WriteBytes(real, "old");
  fs::create_symlink(real, dir.Path() / "link.dfm");
  SaveFile(dir / "link.dfm", "new");
  EXPECT_TRUE(fs::is_symlink(dir.Path() / "link.dfm"));
  EXPECT_EQ(ReadFileBytes(real), "new");
  EXPECT_EQ(FolderEntries(dir.Path() / "real"), std::vector<std::string>{"Form1.dfm"});
}

TEST(SaveFile, TheWriterGetsAStreamOnTheNewContent) {
  TTempDir dir;
  const std::string name = dir / "streamed.txt";
  SaveFile(name, [](TStream& stream) {
    stream.WriteBuffer(std::string_view("first "));
    stream.WriteBuffer(std::string_view("second"));
  });
  EXPECT_EQ(ReadFileBytes(name), "first second");
}

TEST(SaveFile, AWriterThatFailsLeavesThePreviousFileAndNamesTheFile) {
  TTempDir dir;
  const std::string name = dir / "Form1.dfm";
  WriteBytes(name, "previous");
  EXPECT_EQ(SaveErrorOf([&] {
              SaveFile(name, [](TStream& stream) {
                stream.WriteBuffer(std::string_view("half"));
                throw EParserError("Invalid string constant on line 3");
              });
            }),
            "Cannot create file " + name + ": Invalid string constant on line 3");
  EXPECT_EQ(ReadFileBytes(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
}

TEST(SaveFile, ADeviceThatFillsUpLeavesThePreviousFileAndNoTemporary) {
  TTempDir dir;
  const std::string name = dir / "Form1.dfm";
  WriteBytes(name, "previous");
  std::string message;
  try {
    lumora::test::TFailingDevice device(100);
    SaveFile(name, std::string(1000, 'x'));
  } catch (const ESaveError& e) {
    message = e.Message();
    EXPECT_EQ(e.FileName(), name);
    EXPECT_EQ(e.ErrorCode(), EFBIG);
  }
  EXPECT_EQ(message, "Cannot create file " + name + ": File too large");
  EXPECT_EQ(ReadFileBytes(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
}

TEST(SaveFile, ADeviceThatFillsUpFailsAStreamedSaveToo) {
  TTempDir dir;
  const std::string name = dir / "Form1.dfm";
  WriteBytes(name, "previous");
  std::string message;
  {
    lumora::test::TFailingDevice device(100);
    message = SaveErrorOf([&] {
      SaveFile(name, [](TStream& stream) {
        for (int i = 0; i < 20; ++i) stream.WriteBuffer(std::string(10, 'x'));
      });
    });
  }
  EXPECT_EQ(message, "Cannot create file " + name + ": File too large");
  EXPECT_EQ(ReadFileBytes(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
}

TEST(SaveFile, AReadOnlyFolderLeavesThePreviousFileAndNamesTheFile) {
  TTempDir dir;
  const fs::path folder = dir.Path() / "ro";
  fs::create_directory(folder);
  const std::string name = (folder / "Form1.dfm").string();
  WriteBytes(name, "previous");
  ::chmod(name.c_str(), 0666);
  lumora::test::MakeReadOnlyForOthers(folder);
  const std::string message = lumora::test::RunAsOtherUser([&] { return SaveErrorOf([&] { SaveFile(name, "new"); }); });
  EXPECT_EQ(message, "Cannot create file " + name + ": Permission denied");
  EXPECT_EQ(ReadFileBytes(name), "previous");
  EXPECT_EQ(FolderEntries(folder), std::vector<std::string>{"Form1.dfm"});
}

TEST(SaveFile, AMissingFolderOrAFolderAsTargetIsNamed) {
  TTempDir dir;
  const std::string missing = dir / "no-folder/x.dfm";
  EXPECT_EQ(SaveErrorOf([&] { SaveFile(missing, "x"); }),
            "Cannot create file " + missing + ": No such file or directory");
  fs::create_directory(dir.Path() / "sub");
  const std::string folder = dir / "sub";
  EXPECT_EQ(SaveErrorOf([&] { SaveFile(folder, "x"); }), "Cannot create file " + folder + ": Is a directory");
  EXPECT_EQ(SaveErrorOf([&] { SaveFile("", "x"); }), "Cannot create file : no file name");
}

TEST(SaveFile, WithoutReplaceAnExistingFileIsNeverTouched) {
  TTempDir dir;
  const std::string name = dir / "Form1.dfm";
  WriteBytes(name, "previous");
  try {
    SaveFile(name, "new", TSaveOptions{false});
    FAIL() << "no error";
  } catch (const ESaveError& e) {
    EXPECT_EQ(e.ErrorCode(), EEXIST);
    EXPECT_EQ(e.Message(), "Cannot create file " + name + ": File exists");
  }
  EXPECT_EQ(ReadFileBytes(name), "previous");
  const std::string fresh = dir / "Form2.dfm";
  SaveFile(fresh, "new", TSaveOptions{false});
  EXPECT_EQ(ReadFileBytes(fresh), "new");
  EXPECT_EQ(FolderEntries(dir.Path()), (std::vector<std::string>{"Form1.dfm", "Form2.dfm"}));
}

TEST(SaveFile, ASignalHandlerCanRemoveTheTemporaryOfASaveUnderWay) {
  TTempDir dir;
  const std::string name = dir / "Form1.dfm";
  WriteBytes(name, "previous");
  std::vector<std::string> during;
  const std::string message = SaveErrorOf([&] {
    SaveFile(name, [&](TStream& stream) {
      stream.WriteBuffer(std::string_view("half"));
      during = FolderEntries(dir.Path());
      RemovePendingSaveTemporary();  // what the program's SIGINT handler does
    });
  });
  ASSERT_EQ(during.size(), 2u);
  EXPECT_EQ(during[0].rfind(".Form1.dfm.", 0), 0u) << during[0];
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
  EXPECT_EQ(ReadFileBytes(name), "previous");
  EXPECT_EQ(message, "Cannot create file " + name + ": No such file or directory");
}

TEST(SaveFile, ASignalHandlerRemovesTheTemporariesOfEverySaveUnderWay) {
  TTempDir dir;
  const std::string kept = dir / "Form1.dfm";
  const std::string open = dir / "Form2.dfm";
  WriteBytes(kept, "previous");
  TFileStream stream(open, fmCreate);
  stream.WriteBuffer(std::string_view("half"));
  // A save that starts and ends while the stream is open leaves the stream's save known.
  SaveFile(kept, "saved");
  const std::string message = SaveErrorOf([&] {
    SaveFile(kept, [&](TStream& other) {
      other.WriteBuffer(std::string_view("half"));
      EXPECT_EQ(FolderEntries(dir.Path()).size(), 3u);
      RemovePendingSaveTemporary();
    });
  });
  EXPECT_EQ(message, "Cannot create file " + kept + ": No such file or directory");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
  EXPECT_EQ(ReadFileBytes(kept), "saved");
  EXPECT_EQ(SaveErrorOf([&] { stream.Close(); }), "Cannot create file " + open + ": No such file or directory");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"Form1.dfm"});
}

}  // namespace
