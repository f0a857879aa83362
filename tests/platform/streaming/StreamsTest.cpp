#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"

#include "tests/support/Errors.h"
#include "tests/support/SaveFailures.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using lumora::test::FolderEntries;
using lumora::test::MessageOf;
using lumora::test::TTempDir;

std::filesystem::path TempDir() {
  auto dir = std::filesystem::temp_directory_path() / ("lumora-streams-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  return dir;
}

TEST(MemoryStream, WritesGrowAndReadsComeBack) {
  TMemoryStream stream;
  stream.WriteBuffer("hello", 5);
  stream.WriteBuffer(std::string_view(" world"));
  EXPECT_EQ(stream.Size(), 11);
  EXPECT_EQ(stream.Position(), 11);
  stream.SetPosition(6);
  char buffer[5];
  stream.ReadBuffer(buffer, 5);
  EXPECT_EQ(std::string(buffer, 5), "world");
  EXPECT_EQ(stream.DataString(), "hello world");
}

TEST(MemoryStream, ReadPastTheEndRaisesStreamReadError) {
  TMemoryStream stream(std::string("abc"));
  char buffer[4];
  try {
    stream.ReadBuffer(buffer, 4);
    FAIL() << "no error";
  } catch (const EReadError& e) {
    EXPECT_EQ(e.Message(), "Stream read error");
  }
  stream.SetPosition(0);
  EXPECT_EQ(stream.Read(buffer, 4), 3);
  EXPECT_EQ(stream.Read(buffer, 4), 0);
}

TEST(MemoryStream, WritingPastTheEndAfterASeekFillsWithZeros) {
  TMemoryStream stream;
  stream.SetPosition(3);
  stream.WriteBuffer("x", 1);
  EXPECT_EQ(stream.DataString(), std::string("\0\0\0x", 4));
}

TEST(MemoryStream, ClearSetSizeTakeAndSet) {
  TMemoryStream stream(std::string("abcdef"));
  stream.SetSize(3);
  EXPECT_EQ(stream.DataString(), "abc");
  stream.SetPosition(3);
  stream.SetSize(1);
  EXPECT_EQ(stream.Position(), 1);
  stream.Clear();
  EXPECT_EQ(stream.Size(), 0);
  EXPECT_EQ(stream.Position(), 0);
  stream.SetData("moved");
  EXPECT_EQ(stream.TakeData(), "moved");
  EXPECT_EQ(stream.Size(), 0);
}

TEST(MemoryStream, LoadFromStreamTakesAllFromTheStart) {
  TMemoryStream source(std::string("0123456789"));
  source.SetPosition(7);
  TMemoryStream target;
  target.LoadFromStream(source);
  EXPECT_EQ(target.DataString(), "0123456789");
  EXPECT_EQ(target.Position(), 0);
}

TEST(MemoryStream, CopyFromWithZeroCopiesEverything) {
  TMemoryStream source(std::string("abcdef"));
  source.SetPosition(4);
  TMemoryStream target;
  EXPECT_EQ(target.CopyFrom(source, 0), 6);
  EXPECT_EQ(target.DataString(), "abcdef");
  source.SetPosition(2);
  TMemoryStream part;
  EXPECT_EQ(part.CopyFrom(source, 3), 3);
  EXPECT_EQ(part.DataString(), "cde");
  EXPECT_THROW(part.CopyFrom(source, 5), EReadError);
}

TEST(MemoryStream, ReadRestFromThePosition) {
  TMemoryStream stream(std::string("abcdef"));
  stream.SetPosition(2);
  EXPECT_EQ(stream.ReadRest(), "cdef");
  EXPECT_EQ(stream.ReadRest(), "");
}

TEST(CustomMemoryStream, AViewReadsButRefusesWrites) {
  const std::string bytes = "view";
  TCustomMemoryStream view(bytes);
  EXPECT_EQ(view.Size(), 4);
  char c;
  view.ReadBuffer(&c, 1);
  EXPECT_EQ(c, 'v');
  try {
    view.WriteBuffer("x", 1);
    FAIL() << "no error";
  } catch (const EWriteError& e) {
    EXPECT_EQ(e.Message(), "Stream write error");
  }
}

TEST(StringStream, ReadsAndWritesStrings) {
  TStringStream stream("abc");
  EXPECT_EQ(stream.ReadString(2), "ab");
  stream.WriteString("XYZ");
  EXPECT_EQ(stream.DataString(), "abXYZ");
}

TEST(FileStream, MissingFileRaisesCannotOpen) {
  const std::string name = (TempDir() / "missing.dfm").string();
  try {
    TFileStream file(name, fmOpenRead);
    FAIL() << "no error";
  } catch (const EFOpenError& e) {
    EXPECT_EQ(e.Message(), "Cannot open file " + name);
  }
}

TEST(FileStream, UncreatableFileRaisesCannotCreate) {
  const std::string name = (TempDir() / "no-such-folder" / "x.dfm").string();
  try {
    TFileStream file(name, fmCreate);
    FAIL() << "no error";
  } catch (const EFCreateError& e) {
    EXPECT_EQ(e.Message(), "Cannot create file " + name + ": No such file or directory");
  }
}

TEST(FileStream, CreateReplacesTheFileOnlyWhenClosed) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream(std::string("previous")).SaveToFile(name);
  ASSERT_EQ(::chmod(name.c_str(), 0640), 0);
  TFileStream file(name, fmCreate);
  file.WriteBuffer(std::string_view("new content"));
  file.SetPosition(4);
  EXPECT_EQ(file.ReadRest(), "content");
  // Until the stream is closed, whoever reads the file finds it as it was.
  EXPECT_EQ(ReadFileToString(name), "previous");
  file.Close();
  EXPECT_EQ(ReadFileToString(name), "new content");
  struct stat st {};
  ASSERT_EQ(::stat(name.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(FileStream, CreateOnAFullDeviceLosesNothing) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream(std::string("previous")).SaveToFile(name);
  const std::string big(1000, 'x');
  {
    lumora::test::TFailingDevice device(100);
    // The failing write names the file; the stream destroyed after it keeps the file.
    EXPECT_EQ(MessageOf<EFCreateError>([&] {
                TFileStream file(name, fmCreate);
                file.WriteBuffer(big);
              }),
              "Cannot create file " + name + ": File too large");
    // A write error caught by the writer still stops the file from being replaced.
    {
      TFileStream file(name, fmCreate);
      EXPECT_THROW(file.WriteBuffer(big), EFCreateError);
      EXPECT_EQ(MessageOf<EFCreateError>([&] { file.Close(); }), "Cannot create file " + name + ": File too large");
    }
    {
      TFileStream file(name, fmCreate);
      EXPECT_THROW(file.WriteBuffer(big), EFCreateError);
    }
  }
  EXPECT_EQ(ReadFileToString(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(FileStream, CreateInAReadOnlyFolderLosesNothing) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream(std::string("previous")).SaveToFile(name);
  lumora::test::MakeReadOnlyForOthers(dir.Path());
  const std::string message = lumora::test::RunAsOtherUser([&] {
    return MessageOf<EFCreateError>([&] {
      TFileStream file(name, fmCreate);
      file.WriteBuffer(std::string_view("new"));
      file.Close();
    });
  });
  EXPECT_EQ(message, "Cannot create file " + name + ": Permission denied");
  EXPECT_EQ(ReadFileToString(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(FileStream, AnErrorWhileWritingKeepsThePreviousFile) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream(std::string("previous")).SaveToFile(name);
  EXPECT_EQ(MessageOf<EConvertError>([&] {
              TFileStream file(name, fmCreate);
              file.WriteBuffer(std::string_view("half of it"));
              throw EConvertError("the rest cannot be written");
            }),
            "the rest cannot be written");
  EXPECT_EQ(ReadFileToString(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(FileStream, CreateMakesANewFileWithTheUsualPermissions) {
  TTempDir dir;
  const std::string name = dir / "new.dfm";
  const mode_t mask = ::umask(022);
  {
    TFileStream file(name, fmCreate);
    file.WriteBuffer(std::string_view("made"));
  }
  ::umask(mask);
  EXPECT_EQ(ReadFileToString(name), "made");
  struct stat st {};
  ASSERT_EQ(::stat(name.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0644u);
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"new.dfm"});
}

TEST(FileStream, AFolderIsNotAFile) {
  EXPECT_THROW(TFileStream(TempDir().string(), fmOpenRead), EFOpenError);
}

TEST(FileStream, WriteThenReadBack) {
  const std::string name = (TempDir() / "written.bin").string();
  {
    TFileStream file(name, fmCreate);
    file.WriteBuffer(std::string_view("abcdef"));
    EXPECT_EQ(file.Size(), 6);
    file.SetSize(4);
  }
  TFileStream file(name, fmOpenRead);
  EXPECT_EQ(file.Size(), 4);
  EXPECT_EQ(file.ReadRest(), "abcd");
  TMemoryStream memory;
  memory.LoadFromFile(name);
  EXPECT_EQ(memory.DataString(), "abcd");
  EXPECT_EQ(ReadFileToString(name), "abcd");
}

TEST(MemoryStream, SaveToFileReplacesOnlyWhenComplete) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream first(std::string("first"));
  first.SaveToFile(name);
  EXPECT_EQ(ReadFileToString(name), "first");
  TMemoryStream second(std::string("second"));
  second.SaveToFile(name);
  EXPECT_EQ(ReadFileToString(name), "second");

  // A device that fills up: the previous file stays, no temporary is left, the file is named.
  TMemoryStream big(std::string(1000, 'x'));
  {
    lumora::test::TFailingDevice device(100);
    EXPECT_EQ(MessageOf<EFCreateError>([&] { big.SaveToFile(name); }), "Cannot create file " + name + ": File too large");
  }
  EXPECT_EQ(ReadFileToString(name), "second");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(MemoryStream, SaveToFileInAReadOnlyFolderLosesNothing) {
  TTempDir dir;
  const std::string name = dir / "saved.dfm";
  TMemoryStream(std::string("previous")).SaveToFile(name);
  lumora::test::MakeReadOnlyForOthers(dir.Path());
  const std::string message = lumora::test::RunAsOtherUser(
      [&] { return MessageOf<EFCreateError>([&] { TMemoryStream(std::string("new")).SaveToFile(name); }); });
  EXPECT_EQ(message, "Cannot create file " + name + ": Permission denied");
  EXPECT_EQ(ReadFileToString(name), "previous");
  EXPECT_EQ(FolderEntries(dir.Path()), std::vector<std::string>{"saved.dfm"});
}

TEST(FileStream, ReadFileToStringRefusesAPipeWithoutWaiting) {
  TTempDir dir;
  const std::string pipe = dir / "pipe.dfm";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(MessageOf<EFOpenError>([&] { ReadFileToString(pipe); }), "Cannot open file " + pipe);
  EXPECT_EQ(MessageOf<EFOpenError>([&] { ReadFileToString(dir.Path().string()); }),
            "Cannot open file " + dir.Path().string());
}

TEST(FileStream, APipeIsReadToItsEnd) {
  int fds[2];
  ASSERT_EQ(::pipe(fds), 0);
  ASSERT_EQ(::write(fds[1], "piped", 5), 5);
  ::close(fds[1]);
  THandleStream pipe(fds[0]);
  EXPECT_EQ(pipe.ReadRest(), "piped");
  EXPECT_THROW(pipe.Size(), EStreamError);
  ::close(fds[0]);
}

TEST(StreamResHeader, SkipsTheHeaderAtThePosition) {
  std::string file = MakeResHeader("TForm1", 4) + "TPF0";
  TMemoryStream stream(file);
  stream.ReadResHeader();
  EXPECT_EQ(stream.Position(), 3 + 7 + 6);
  EXPECT_EQ(stream.ReadRest(), "TPF0");
}

TEST(StreamResHeader, TextIsRefused) {
  TMemoryStream stream(std::string("object Form1: TForm1\r\nend\r\n"));
  try {
    stream.ReadResHeader();
    FAIL() << "no error";
  } catch (const EInvalidImage& e) {
    EXPECT_EQ(e.Message(), "Invalid stream format");
  }
}

}  // namespace
