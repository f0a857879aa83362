#include "tools/ConvertTool.h"

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "tests/support/Corpus.h"
#include "tests/support/PeBuilder.h"
#include "tests/support/SaveFailures.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using lumora::test::ReadFileBytes;

namespace {

struct TToolResult {
  int Status = -1;
  std::string Out;
  std::string Err;
};

TToolResult RunTool(const std::vector<std::string>& Args, bool OutIsTerminal = false, bool ErrIsTerminal = false) {
  std::ostringstream Out, Err;
  TConvertConsole Console{Out, Err, OutIsTerminal, ErrIsTerminal};
  TToolResult R;
  R.Status = RunConvertTool(Args, Console);
  R.Out = Out.str();
  R.Err = Err.str();
  return R;
}

// Runs the tool as an unprivileged user, so that permissions are enforced even when the
// tests run as root.
TToolResult RunToolAsUser(const std::vector<std::string>& Args) {
  const std::string Message = lumora::test::RunAsOtherUser([&] {
    const TToolResult R = RunTool(Args);
    return std::to_string(R.Status) + "\n" + std::to_string(R.Out.size()) + "\n" + R.Out + R.Err;
  });
  TToolResult R;
  std::istringstream In(Message);
  std::size_t OutSize = 0;
  In >> R.Status >> OutSize;
  In.get();
  R.Out.resize(OutSize);
  In.read(R.Out.data(), static_cast<std::streamsize>(OutSize));
  R.Err.assign(std::istreambuf_iterator<char>(In), std::istreambuf_iterator<char>());
  return R;
}

const char* const FormText =
    "object Form1: TForm1\r\n"
    "  Left = 192\r\n"
    "  Top = 107\r\n"
    "  Caption = 'Form1'\r\n"
    "  object Button1: TButton\r\n"
    "    Left = 8\r\n"
    "    Caption = 'OK'\r\n"
    "  end\r\n"
    "end\r\n";

const char* const OtherText =
    "object Other: TOtherForm\r\n"
    "  Caption = 'Other'\r\n"
    "end\r\n";

// The text is missing its closing quote on line 3.
const char* const BrokenText =
    "object Form1: TForm1\r\n"
    "  Left = 192\r\n"
    "  Caption = 'unfinished\r\n"
    "end\r\n";

class ConvertTool : public ::testing::Test {
protected:
  void SetUp() override {
    std::string Template = (fs::temp_directory_path() / "lumora-convert-test-XXXXXX").string();
    ASSERT_NE(::mkdtemp(Template.data()), nullptr);
    FDir = Template;
    FOldCwd = fs::current_path();
  }
  void TearDown() override {
    fs::current_path(FOldCwd);
    std::error_code Ec;
    // Give back permissions taken away by a test, so that everything can be removed.
    for (auto It = fs::recursive_directory_iterator(FDir, Ec); !Ec && It != fs::recursive_directory_iterator();
         It.increment(Ec))
      fs::permissions(It->path(), fs::perms::owner_all, fs::perm_options::add, Ec);
    fs::remove_all(FDir, Ec);
  }

  fs::path P(const std::string& Name) const { return FDir / Name; }
  std::string S(const std::string& Name) const { return P(Name).string(); }

  void Write(const std::string& Name, const std::string& Data) {
    fs::create_directories(P(Name).parent_path());
    std::ofstream F(P(Name), std::ios::binary);
    F << Data;
  }
  std::string Read(const std::string& Name) const { return ReadFileBytes(P(Name)); }
  bool Exists(const std::string& Name) const { return fs::exists(fs::symlink_status(P(Name))); }

  // Names in a folder, to see that no temporary file was left behind.
  std::vector<std::string> Names(const std::string& Folder = "") const {
    return lumora::test::FolderEntries(Folder.empty() ? FDir : P(Folder));
  }

  static std::string Binary(const char* Text = FormText) { return ObjectTextToResource(Text); }
  static std::string CanonicalText(const char* Text = FormText) { return ObjectResourceToText(Binary(Text)); }

  fs::path FDir;
  fs::path FOldCwd;
};

// ------------------------------------------------------------------ help, version, usage

TEST_F(ConvertTool, HelpListsEveryOptionAndTheOutputNames) {
  const auto R = RunTool({"--help"});
  EXPECT_EQ(R.Status, 0);
  EXPECT_EQ(R.Err, "");
  for (const char* Option : {"-t, --text", "-b, --binary", "--check", "-o, --output PATH", "-i, --in-place",
                             "-f, --force", "-s, --recursive", "-e, --ext LIST", "--raw", "-v, --verbose",
                             "-h, --help", "-V, --version", "@LIST", "--list", "PROGRAM:NAME", "PROGRAM.forms"})
    EXPECT_NE(R.Out.find(Option), std::string::npos) << Option;
  EXPECT_NE(R.Out.find("Form1.dfm gives Form1.txt.dfm"), std::string::npos);
  EXPECT_NE(R.Out.find("default .dfm"), std::string::npos);
  EXPECT_EQ(RunTool({"-h"}).Out, R.Out);
}

TEST_F(ConvertTool, Version) {
  const auto R = RunTool({"--version"});
  EXPECT_EQ(R.Status, 0);
  // "lumora-convert 1.2.3"
  const std::string Prefix = "lumora-convert ";
  ASSERT_EQ(R.Out.rfind(Prefix, 0), 0u) << R.Out;
  ASSERT_EQ(R.Out.back(), '\n');
  const std::string Number = R.Out.substr(Prefix.size(), R.Out.size() - Prefix.size() - 1);
  EXPECT_EQ(std::count(Number.begin(), Number.end(), '.'), 2) << Number;
  EXPECT_EQ(Number.find_first_not_of("0123456789."), std::string::npos) << Number;
  EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(Number.front())) && std::isdigit(static_cast<unsigned char>(Number.back())))
      << Number;
  EXPECT_EQ(RunTool({"-V"}).Out, R.Out);
}

TEST_F(ConvertTool, WrongCommandLinesAreUsageErrors) {
  Write("a.dfm", Binary());
  const std::string A = S("a.dfm");
  const std::vector<std::pair<std::vector<std::string>, std::string>> Cases = {
      {{}, "say what to do: -t (to text), -b (to binary), --check or --list"},
      {{A}, "say what to do"},
      {{"-t"}, "no files given"},
      {{"-t", "-b", A}, "choose one of -t, -b, --check and --list"},
      {{"--check", "-t", A}, "choose one of -t, -b, --check and --list"},
      {{"-x", A}, "unknown option -x"},
      {{"--frobnicate", A}, "unknown option --frobnicate"},
      {{"-t", "-i", "-o", "out.dfm", A}, "-i and -o do not go together"},
      {{"-t", "--raw", A}, "--raw goes with -b only"},
      {{"--check", "-o", "x", A}, "--check writes no files"},
      {{"--check", "-i", A}, "--check writes no files"},
      {{"-t", A, "-o"}, "-o needs a value (PATH)"},
      {{"-t", A, "--output"}, "--output needs a value (PATH)"},
      {{"-t", "-o", "x", "-o", "y", A}, "-o given twice"},
      {{"-t", "--output=", A}, "-o needs a file name"},
      {{"-t", "--ext=,", A}, "--ext needs at least one name ending"},
      {{"--text=yes", A}, "--text takes no value"},
  };
  for (const auto& [Args, Message] : Cases) {
    const auto R = RunTool(Args);
    std::string Shown;
    for (const auto& A2 : Args) Shown += A2 + " ";
    EXPECT_EQ(R.Status, ConvertExitUsage) << Shown;
    EXPECT_NE(R.Err.find("lumora-convert: " + Message), std::string::npos) << Shown << "\n" << R.Err;
    EXPECT_NE(R.Err.find("Try 'lumora-convert --help'"), std::string::npos) << Shown;
    EXPECT_EQ(R.Out, "") << Shown;
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"a.dfm"});
}

TEST_F(ConvertTool, BinaryIsNotWrittenToATerminal) {
  Write("a.txt.dfm", FormText);
  const auto R = RunTool({"-b", "-o", "-", S("a.txt.dfm")}, /*OutIsTerminal=*/true);
  EXPECT_EQ(R.Status, ConvertExitUsage);
  EXPECT_NE(R.Err.find("binary data is not written to a terminal"), std::string::npos);
  EXPECT_EQ(R.Out, "");
  // Text to a terminal is fine.
  Write("b.dfm", Binary());
  const auto T = RunTool({"-t", "-o", "-", S("b.dfm")}, true);
  EXPECT_EQ(T.Status, 0);
  EXPECT_EQ(T.Out, CanonicalText());
}

// ------------------------------------------------------------------ -t and -b

TEST_F(ConvertTool, ToTextWritesBesideTheInput) {
  Write("Form1.dfm", Binary());
  const auto R = RunTool({"-t", S("Form1.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(R.Err, "");
  EXPECT_EQ(R.Out, "");
  EXPECT_EQ(Read("Form1.txt.dfm"), ObjectResourceToText(Binary()));
  EXPECT_EQ(Read("Form1.dfm"), Binary());
  EXPECT_EQ(Names(), (std::vector<std::string>{"Form1.dfm", "Form1.txt.dfm"}));
}

TEST_F(ConvertTool, ToBinaryWritesAResourceFileBesideTheInput) {
  Write("Form1.txt.dfm", FormText);
  const auto R = RunTool({"--binary", S("Form1.txt.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  const std::string Out = Read("Form1.bin.dfm");
  EXPECT_EQ(Out, ObjectTextToResource(FormText));
  EXPECT_EQ(DetectFormFileFormat(Out), TFormFileFormat::Resource);
  EXPECT_EQ(Out.substr(ReadResHeader(Out), 4), "TPF0");
  EXPECT_EQ(Read("Form1.txt.dfm"), FormText);

  // Back again: Form1.bin.dfm gives Form1.txt.dfm, which exists.
  const auto Back = RunTool({"-t", S("Form1.bin.dfm")});
  EXPECT_EQ(Back.Status, 1);
  EXPECT_NE(Back.Err.find(S("Form1.txt.dfm") + ": exists; use -f to replace it"), std::string::npos) << Back.Err;
}

TEST_F(ConvertTool, OutputNamesDropTheOtherMarkerAndKeepTheExtension) {
  Write("One.bin.dfm", Binary());
  Write("Two.lfm", Binary());
  Write("Three", Binary());
  Write("Four.TXT.dfm", FormText);
  Write("Five.txt.dfm", Binary());  // misnamed: binary content
  ASSERT_EQ(RunTool({"-t", S("One.bin.dfm"), S("Two.lfm"), S("Three"), S("Five.txt.dfm")}).Status, 0);
  ASSERT_EQ(RunTool({"-b", S("Four.TXT.dfm")}).Status, 0);
  EXPECT_TRUE(Exists("One.txt.dfm"));
  EXPECT_TRUE(Exists("Two.txt.lfm"));
  EXPECT_TRUE(Exists("Three.txt.dfm"));
  EXPECT_TRUE(Exists("Four.bin.dfm"));
  EXPECT_TRUE(Exists("Five.txt.txt.dfm"));
  EXPECT_EQ(Read("Five.txt.dfm"), Binary());
}

TEST_F(ConvertTool, FormatIsToldByContentNotByName) {
  Write("Looks.bin.dfm", FormText);   // text under a binary-looking name
  Write("Looks.txt", Binary());       // binary under a text-looking name
  const auto T = RunTool({"-t", S("Looks.bin.dfm")});
  EXPECT_EQ(T.Status, 0);
  EXPECT_NE(T.Err.find(S("Looks.bin.dfm") + ": already form text, skipped"), std::string::npos) << T.Err;
  EXPECT_FALSE(Exists("Looks.txt.dfm"));

  const auto B = RunTool({"-b", S("Looks.txt")});
  EXPECT_EQ(B.Status, 0);
  EXPECT_NE(B.Err.find(S("Looks.txt") + ": already a binary form file, skipped"), std::string::npos) << B.Err;

  const auto C = RunTool({"-t", "-o", "-", S("Looks.txt")});
  EXPECT_EQ(C.Status, 0);
  EXPECT_EQ(C.Out, CanonicalText());
  EXPECT_EQ(Names(), (std::vector<std::string>{"Looks.bin.dfm", "Looks.txt"}));
}

TEST_F(ConvertTool, ExistingOutputIsRefusedUnlessForced) {
  Write("Form1.dfm", Binary());
  Write("Form1.txt.dfm", "my own notes");
  const auto R = RunTool({"-t", S("Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("Form1.txt.dfm") + ": exists; use -f to replace it"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("Form1.txt.dfm"), "my own notes");

  ::chmod(P("Form1.txt.dfm").c_str(), 0640);
  const auto F = RunTool({"-t", "-f", S("Form1.dfm")});
  EXPECT_EQ(F.Status, 0) << F.Err;
  EXPECT_EQ(Read("Form1.txt.dfm"), CanonicalText());
  struct stat St {};
  ASSERT_EQ(::stat(P("Form1.txt.dfm").c_str(), &St), 0);
  EXPECT_EQ(St.st_mode & 07777, 0640u);
  EXPECT_EQ(Names(), (std::vector<std::string>{"Form1.dfm", "Form1.txt.dfm"}));
}

TEST_F(ConvertTool, NewFilesFollowTheUmask) {
  Write("Form1.dfm", Binary());
  const mode_t Old = ::umask(027);
  const auto R = RunTool({"-t", S("Form1.dfm")});
  ::umask(Old);
  EXPECT_EQ(R.Status, 0);
  struct stat St {};
  ASSERT_EQ(::stat(P("Form1.txt.dfm").c_str(), &St), 0);
  EXPECT_EQ(St.st_mode & 07777, 0640u);
}

// ------------------------------------------------------------------ -o

TEST_F(ConvertTool, OutputToAFile) {
  Write("Form1.dfm", Binary());
  const auto R = RunTool({"-t", "-o", S("chosen.txt"), S("Form1.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("chosen.txt"), CanonicalText());
  EXPECT_FALSE(Exists("Form1.txt.dfm"));

  // Attached and long forms of the option.
  EXPECT_EQ(RunTool({"-t", "-o" + S("second.txt"), S("Form1.dfm")}).Status, 0);
  EXPECT_EQ(RunTool({"-t", "--output=" + S("third.txt"), S("Form1.dfm")}).Status, 0);
  EXPECT_EQ(Read("second.txt"), CanonicalText());
  EXPECT_EQ(Read("third.txt"), CanonicalText());
}

TEST_F(ConvertTool, OutputToStandardOutput) {
  Write("Form1.dfm", Binary());
  Write("Other.dfm", Binary(OtherText));
  const auto R = RunTool({"-t", "-o", "-", S("Form1.dfm")});
  EXPECT_EQ(R.Status, 0);
  EXPECT_EQ(R.Out, CanonicalText());
  EXPECT_EQ(R.Err, "");

  // Several inputs follow each other.
  const auto Two = RunTool({"-t", "-o", "-", S("Form1.dfm"), S("Other.dfm")});
  EXPECT_EQ(Two.Status, 0);
  EXPECT_EQ(Two.Out, CanonicalText() + CanonicalText(OtherText));

  Write("Form1.txt.dfm", FormText);
  const auto B = RunTool({"-b", "-o", "-", S("Form1.txt.dfm")});
  EXPECT_EQ(B.Status, 0);
  EXPECT_EQ(B.Out, Binary());
  EXPECT_EQ(Names(), (std::vector<std::string>{"Form1.dfm", "Form1.txt.dfm", "Other.dfm"}));
}

TEST_F(ConvertTool, OutputFolderForSeveralInputs) {
  Write("Form1.dfm", Binary());
  Write("Other.dfm", Binary(OtherText));
  const auto R = RunTool({"-t", "-o", S("out"), S("Form1.dfm"), S("Other.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("out/Form1.dfm"), CanonicalText());
  EXPECT_EQ(Read("out/Other.dfm"), CanonicalText(OtherText));
  EXPECT_NE(R.Err.find("Converted 2 files, 0 failed."), std::string::npos) << R.Err;

  // One input into an existing folder, named with or without a trailing slash.
  fs::create_directory(P("one"));
  EXPECT_EQ(RunTool({"-t", "-o", S("one"), S("Form1.dfm")}).Status, 0);
  EXPECT_EQ(Read("one/Form1.dfm"), CanonicalText());
  EXPECT_EQ(RunTool({"-t", "-o", S("two") + "/", S("Other.dfm")}).Status, 0);
  EXPECT_EQ(Read("two/Other.dfm"), CanonicalText(OtherText));
}

TEST_F(ConvertTool, OutputFolderThatIsAFile) {
  Write("Form1.dfm", Binary());
  Write("Other.dfm", Binary(OtherText));
  Write("plain", "x");
  const auto R = RunTool({"-t", "-o", S("plain"), S("Form1.dfm"), S("Other.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("plain") + ": not a folder"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("plain"), "x");
}

TEST_F(ConvertTool, OutputOverTheInputNeedsInPlace) {
  Write("Form1.dfm", Binary());
  const auto R = RunTool({"-t", "-f", "-o", S("Form1.dfm"), S("Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("Form1.dfm") + ": is the input itself; use -i to convert in place"), std::string::npos)
      << R.Err;
  EXPECT_EQ(Read("Form1.dfm"), Binary());

  // Also when -o names the input's own folder.
  Write("Other.dfm", Binary(OtherText));
  const auto D = RunTool({"-t", "-o", FDir.string(), S("Form1.dfm"), S("Other.dfm")});
  EXPECT_EQ(D.Status, 1);
  EXPECT_EQ(Read("Form1.dfm"), Binary());
  EXPECT_EQ(Read("Other.dfm"), Binary(OtherText));
}

TEST_F(ConvertTool, TwoInputsOfTheSameNameIntoOneFolder) {
  Write("a/Form1.dfm", Binary());
  Write("b/Form1.dfm", Binary(OtherText));
  const auto R = RunTool({"-t", "-o", S("out"), S("a/Form1.dfm"), S("b/Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_EQ(Read("out/Form1.dfm"), CanonicalText());
  EXPECT_NE(R.Err.find("already written from " + S("a/Form1.dfm") + " in this run"), std::string::npos) << R.Err;
  EXPECT_NE(R.Err.find("Converted 1 file, 1 failed."), std::string::npos) << R.Err;
}

TEST_F(ConvertTool, TheSameInputTwiceIsConvertedOnce) {
  Write("Form1.dfm", Binary());
  fs::current_path(FDir);
  const auto R = RunTool({"-t", "Form1.dfm", S("Form1.dfm"), "./Form1.dfm"});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("Form1.txt.dfm"), CanonicalText());
}

// ------------------------------------------------------------------ -i

TEST_F(ConvertTool, InPlaceKeepsPermissionsAndLeavesNoTemporaryFile) {
  Write("Form1.dfm", Binary());
  ::chmod(P("Form1.dfm").c_str(), 0604);
  const auto R = RunTool({"-t", "-i", S("Form1.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("Form1.dfm"), CanonicalText());
  struct stat St {};
  ASSERT_EQ(::stat(P("Form1.dfm").c_str(), &St), 0);
  EXPECT_EQ(St.st_mode & 07777, 0604u);
  EXPECT_EQ(Names(), std::vector<std::string>{"Form1.dfm"});

  // And back to binary, through the long option.
  EXPECT_EQ(RunTool({"-b", "--in-place", S("Form1.dfm")}).Status, 0);
  EXPECT_EQ(Read("Form1.dfm"), Binary());
  EXPECT_EQ(Names(), std::vector<std::string>{"Form1.dfm"});
}

TEST_F(ConvertTool, InPlaceThroughALinkReplacesTheFileLinkedTo) {
  Write("real/Form1.dfm", Binary());
  fs::create_symlink(P("real/Form1.dfm"), P("link.dfm"));
  const auto R = RunTool({"-t", "-i", S("link.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_TRUE(fs::is_symlink(P("link.dfm")));
  EXPECT_EQ(Read("real/Form1.dfm"), CanonicalText());
}

TEST_F(ConvertTool, AFailedConversionLeavesTheFileAsItWas) {
  Write("Bad.dfm", BrokenText);
  const auto R = RunTool({"-b", "-i", S("Bad.dfm")});
  EXPECT_EQ(R.Status, 1);
  // The message names the file and the line.
  EXPECT_NE(R.Err.find("lumora-convert: " + S("Bad.dfm") + ": "), std::string::npos) << R.Err;
  EXPECT_NE(R.Err.find(" on line 3"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("Bad.dfm"), BrokenText);
  EXPECT_EQ(Names(), std::vector<std::string>{"Bad.dfm"});

  // Nor does it touch an output that exists, even when forced.
  Write("Bad.bin.dfm", "previous");
  const auto F = RunTool({"-b", "-f", S("Bad.dfm")});
  EXPECT_EQ(F.Status, 1);
  EXPECT_EQ(Read("Bad.bin.dfm"), "previous");
  EXPECT_EQ(Names(), (std::vector<std::string>{"Bad.bin.dfm", "Bad.dfm"}));
}

TEST_F(ConvertTool, DamagedBinaryIsReportedWithItsFileName) {
  std::string Damaged = Binary();
  Damaged.resize(Damaged.size() - 12);
  Write("Cut.dfm", Damaged);
  const auto R = RunTool({"-t", S("Cut.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find("lumora-convert: " + S("Cut.dfm") + ": "), std::string::npos) << R.Err;
  EXPECT_FALSE(Exists("Cut.txt.dfm"));
  EXPECT_EQ(Names(), std::vector<std::string>{"Cut.dfm"});
}

TEST_F(ConvertTool, ControlCharactersOfADamagedFileAreNotPrinted) {
  // A property name holding an escape character, followed by a value type that does not exist.
  std::string Stream = "TPF0";
  Stream += "\x06TForm1\x05" "Form1";
  Stream += std::string("\x04L\x1b[2", 5);
  Stream += std::string("\x54\x00\x00", 3);
  Write("Esc.dfm", Stream);
  const auto R = RunTool({"-t", S("Esc.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find("lumora-convert: " + S("Esc.dfm") + ": "), std::string::npos) << R.Err;
  EXPECT_EQ(R.Err.find('\x1b'), std::string::npos) << R.Err;
  const auto C = RunTool({"--check", S("Esc.dfm")});
  EXPECT_EQ(C.Status, 1);
  EXPECT_NE(C.Out.find(S("Esc.dfm") + ": FAILED: "), std::string::npos) << C.Out;
  EXPECT_EQ(C.Out.find('\x1b'), std::string::npos) << C.Out;
}

// ------------------------------------------------------------------ -s, --ext, @list

TEST_F(ConvertTool, RecursionFindsFormsByNameAndContent) {
  Write("proj/Main.dfm", Binary());
  Write("proj/units/About.DFM", Binary(OtherText));
  Write("proj/units/Done.dfm", FormText);          // already text
  Write("proj/units/Unit1.pas", Binary());         // not a form name
  Write("proj/units/Notes.dfm", "just some notes");  // a form name, not a form
  Write("proj/.history/Main.dfm", Binary());       // hidden folders are left alone
  Write("proj/.Hidden.dfm", Binary());
  const auto R = RunTool({"-t", "-s", S("proj")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("proj/Main.txt.dfm"), CanonicalText());
  EXPECT_EQ(Read("proj/units/About.txt.DFM"), CanonicalText(OtherText));
  EXPECT_FALSE(Exists("proj/units/Done.txt.dfm"));
  EXPECT_FALSE(Exists("proj/units/Unit1.txt.pas"));
  EXPECT_FALSE(Exists("proj/units/Notes.txt.dfm"));
  EXPECT_FALSE(Exists("proj/.history/Main.txt.dfm"));
  EXPECT_FALSE(Exists("proj/.Hidden.txt.dfm"));
  EXPECT_NE(R.Err.find(S("proj") + "/units/Done.dfm: already form text, skipped"), std::string::npos) << R.Err;
  EXPECT_EQ(R.Err.find("Notes.dfm"), std::string::npos) << R.Err;
  EXPECT_NE(R.Err.find("Converted 2 files, 1 already in the requested format, 0 failed; 1 file was not a form."),
            std::string::npos)
      << R.Err;

  // With -v the passed-over file and each conversion are named.
  const auto V = RunTool({"-t", "-s", "-v", "-o", S("copy"), S("proj")});
  EXPECT_EQ(V.Status, 0) << V.Err;
  EXPECT_NE(V.Err.find("Notes.dfm: not a form file, passed over"), std::string::npos) << V.Err;
  EXPECT_NE(V.Err.find(S("proj") + "/Main.dfm -> " + S("copy") + "/Main.dfm"), std::string::npos) << V.Err;
  // Outputs keep their path below the folder given.
  EXPECT_EQ(Read("copy/units/About.DFM"), CanonicalText(OtherText));
  EXPECT_EQ(Read("copy/Main.dfm"), CanonicalText());
}

TEST_F(ConvertTool, RecursionWithOtherNameEndings) {
  Write("p/A.lfm", Binary());
  Write("p/B.xfm", Binary(OtherText));
  Write("p/C.dfm", Binary());
  Write("p/D.res", Binary());
  EXPECT_EQ(RunTool({"-t", "-s", "--ext", "lfm,.XFM", S("p")}).Status, 0);
  EXPECT_TRUE(Exists("p/A.txt.lfm"));
  EXPECT_TRUE(Exists("p/B.txt.xfm"));
  EXPECT_FALSE(Exists("p/C.txt.dfm"));
  EXPECT_FALSE(Exists("p/D.txt.res"));

  EXPECT_EQ(RunTool({"-t", "-s", "-f", "-e", "*", S("p")}).Status, 0);
  EXPECT_TRUE(Exists("p/C.txt.dfm"));
  EXPECT_TRUE(Exists("p/D.txt.res"));
}

TEST_F(ConvertTool, AFolderWithoutRecursionIsAnError) {
  Write("proj/Main.dfm", Binary());
  const auto R = RunTool({"-t", S("proj")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("proj") + ": is a folder; use -s to convert the forms in it"), std::string::npos) << R.Err;
  EXPECT_FALSE(Exists("proj/Main.txt.dfm"));
}

TEST_F(ConvertTool, ListFilesNameTheInputs) {
  Write("Form1.dfm", Binary());
  Write("sub/Other.dfm", Binary(OtherText));
  Write("list.txt", "  " + S("Form1.dfm") + "  \r\n\r\n" + S("sub/Other.dfm") + "\n");
  const auto R = RunTool({"-t", "@" + S("list.txt")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("Form1.txt.dfm"), CanonicalText());
  EXPECT_EQ(Read("sub/Other.txt.dfm"), CanonicalText(OtherText));

  // After "--" a name starting with "@" or "-" is a file.
  Write("@odd.dfm", Binary());
  Write("-dash.dfm", Binary());
  fs::current_path(FDir);
  EXPECT_EQ(RunTool({"-t", "--", "@odd.dfm", "-dash.dfm"}).Status, 0);
  EXPECT_TRUE(Exists("@odd.txt.dfm"));
  EXPECT_TRUE(Exists("-dash.txt.dfm"));

  const auto Missing = RunTool({"-t", "@" + S("nolist.txt")});
  EXPECT_EQ(Missing.Status, 1);
  EXPECT_NE(Missing.Err.find("list file " + S("nolist.txt") + ": cannot read: No such file or directory"),
            std::string::npos)
      << Missing.Err;
}

// ------------------------------------------------------------------ --raw and bare streams

TEST_F(ConvertTool, RawWritesABareStream) {
  Write("Form1.txt.dfm", FormText);
  EXPECT_EQ(RunTool({"-b", "--raw", S("Form1.txt.dfm")}).Status, 0);
  const std::string Raw = Read("Form1.bin.dfm");
  EXPECT_EQ(Raw.substr(0, 4), "TPF0");
  EXPECT_EQ(Raw, ObjectTextToBinary(FormText));

  // A bare stream converts to text, and -b wraps it in a resource header.
  const auto T = RunTool({"-t", "-o", "-", S("Form1.bin.dfm")});
  EXPECT_EQ(T.Status, 0);
  EXPECT_EQ(T.Out, CanonicalText());
  EXPECT_EQ(RunTool({"-b", "-o", S("wrapped.dfm"), S("Form1.bin.dfm")}).Status, 0);
  EXPECT_EQ(Read("wrapped.dfm"), Binary());

  // A resource file loses its header; a bare stream is already raw.
  EXPECT_EQ(RunTool({"-b", "--raw", "-o", S("unwrapped"), S("wrapped.dfm")}).Status, 0);
  EXPECT_EQ(Read("unwrapped"), Raw);
  const auto Again = RunTool({"-b", "--raw", S("unwrapped")});
  EXPECT_EQ(Again.Status, 0);
  EXPECT_NE(Again.Err.find("already a bare TPF0 stream, skipped"), std::string::npos) << Again.Err;
}

// ------------------------------------------------------------------ files that cannot be used

TEST_F(ConvertTool, MissingAndOddInputs) {
  Write("Form1.dfm", Binary());
  Write("notes.txt", "nothing to see here");
  ASSERT_EQ(::mkfifo(P("pipe.dfm").c_str(), 0600), 0);
  const auto R = RunTool({"-t", S("none.dfm"), S("notes.txt"), S("pipe.dfm"), S("Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("none.dfm") + ": no such file or folder"), std::string::npos) << R.Err;
  EXPECT_NE(R.Err.find(S("notes.txt") + ": not a form file (neither a binary form nor form text)"),
            std::string::npos)
      << R.Err;
  EXPECT_NE(R.Err.find(S("pipe.dfm") + ": not a regular file"), std::string::npos) << R.Err;
  // The good file is still converted, and the summary counts all of them.
  EXPECT_EQ(Read("Form1.txt.dfm"), CanonicalText());
  EXPECT_NE(R.Err.find("Converted 1 file, 3 failed."), std::string::npos) << R.Err;
}

TEST_F(ConvertTool, OutputWhereNoFileCanBeCreated) {
  Write("Form1.dfm", Binary());
  Write("plain", "x");
  const auto R = RunTool({"-t", "-o", S("plain") + "/out.txt", S("Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("plain") + "/out.txt: cannot write: Not a directory"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("plain"), "x");

  fs::create_directory(P("dir.txt.dfm"));
  Write("dir.dfm", Binary());
  const auto D = RunTool({"-t", "-f", S("dir.dfm")});
  EXPECT_EQ(D.Status, 1);
  EXPECT_NE(D.Err.find(S("dir.txt.dfm") + ": is a folder"), std::string::npos) << D.Err;
}

TEST_F(ConvertTool, UnreadableFileAndReadOnlyFolder) {
  fs::permissions(FDir, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                            fs::perms::others_read | fs::perms::others_exec);
  Write("locked/Form1.dfm", Binary());
  Write("open/Form2.dfm", Binary(OtherText));
  fs::permissions(P("locked/Form1.dfm"), fs::perms::none);
  fs::permissions(P("locked"), fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                   fs::perms::others_read | fs::perms::others_exec);
  fs::permissions(P("open"), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec |
                                 fs::perms::group_read | fs::perms::group_exec);

  // The other user reaches this folder at all (the temporary folder must be open to it).
  const auto Probe = RunToolAsUser({"--check", S("open/Form2.dfm")});
  ASSERT_EQ(Probe.Status, 0) << "the unprivileged user cannot use " << FDir << ": " << Probe.Out << Probe.Err;

  const auto R = RunToolAsUser({"-t", S("locked/Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("locked/Form1.dfm") + ": cannot read: Permission denied"), std::string::npos) << R.Err;

  // Form2.dfm can be read, but its folder is not writable for that user.
  const auto W = RunToolAsUser({"-t", S("open/Form2.dfm")});
  EXPECT_EQ(W.Status, 1);
  EXPECT_NE(W.Err.find(S("open/Form2.txt.dfm") + ": cannot write: Permission denied"), std::string::npos) << W.Err;
  EXPECT_EQ(Names("open"), std::vector<std::string>{"Form2.dfm"});

  // A file that cannot be read is an error of --check too, counted beside the files checked.
  const auto C = RunToolAsUser({"--check", S("locked/Form1.dfm"), S("open/Form2.dfm")});
  EXPECT_EQ(C.Status, 1);
  EXPECT_NE(C.Err.find(S("locked/Form1.dfm") + ": cannot read: Permission denied"), std::string::npos) << C.Err;
  EXPECT_NE(C.Out.find("Checked 1 file: 1 ok, 0 failed; 1 other error.\n"), std::string::npos) << C.Out;

  // An unreadable folder met while recursing is reported; the others are still searched.
  Write("tree/a/A.dfm", Binary());
  Write("tree/b/B.dfm", Binary());
  fs::permissions(P("tree"), fs::perms::owner_all | fs::perms::others_all | fs::perms::group_all);
  fs::permissions(P("tree/a"), fs::perms::owner_all | fs::perms::others_all | fs::perms::group_all);
  fs::permissions(P("tree/b"), fs::perms::owner_all);
  const auto T = RunToolAsUser({"-t", "-s", S("tree")});
  EXPECT_EQ(T.Status, 1);
  EXPECT_NE(T.Err.find(S("tree") + "/b: cannot read folder: Permission denied"), std::string::npos) << T.Err;
  EXPECT_TRUE(Exists("tree/a/A.txt.dfm"));
}

TEST_F(ConvertTool, AFullDeviceLeavesTheFileAsItWasAndNoTemporary) {
  Write("Form1.dfm", Binary());
  TToolResult R;
  {
    lumora::test::TFailingDevice Device(100);
    R = RunTool({"-t", "-i", S("Form1.dfm")});
  }
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("Form1.dfm") + ": cannot write: File too large"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("Form1.dfm"), Binary());
  EXPECT_EQ(Names(), std::vector<std::string>{"Form1.dfm"});
}

TEST_F(ConvertTool, AReadOnlyFolderLeavesAReplacedOutputAsItWas) {
  Write("open/Form1.dfm", Binary());
  Write("open/Form1.txt.dfm", "previous");
  fs::permissions(P("open/Form1.txt.dfm"), fs::perms::all);
  lumora::test::MakeReadOnlyForOthers(P("open"));
  const auto R = RunToolAsUser({"-t", "-f", S("open/Form1.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("open/Form1.txt.dfm") + ": cannot write: Permission denied"), std::string::npos) << R.Err;
  EXPECT_EQ(Read("open/Form1.txt.dfm"), "previous");
  EXPECT_EQ(Names("open"), (std::vector<std::string>{"Form1.dfm", "Form1.txt.dfm"}));
}

// ------------------------------------------------------------------ --check

TEST_F(ConvertTool, CheckReportsEachFileAndASummary) {
  Write("Good.dfm", Binary());
  Write("Good.txt.dfm", CanonicalText());
  std::string LfText = CanonicalText();
  for (std::size_t I; (I = LfText.find("\r\n")) != std::string::npos;) LfText.erase(I, 1);
  Write("Unix.txt.dfm", LfText);
  Write("Spaced.txt.dfm", "object Form1: TForm1\r\n  Left =    192\r\nend\r\n");
  Write("Bad.txt.dfm", BrokenText);
  Write("Notes.dfm", "notes");
  Write("Float.txt.dfm", "object Form1: TForm1\r\n  Scale = 1.000000000000000000\r\nend\r\n");

  const auto R = RunTool({"--check", S("Good.dfm"), S("Good.txt.dfm"), S("Unix.txt.dfm"), S("Spaced.txt.dfm"),
                          S("Bad.txt.dfm"), S("Notes.dfm"), S("Float.txt.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Out.find(S("Good.dfm") + ": ok\n"), std::string::npos) << R.Out;
  EXPECT_NE(R.Out.find(S("Good.txt.dfm") + ": ok\n"), std::string::npos) << R.Out;
  EXPECT_NE(R.Out.find(S("Unix.txt.dfm") + ": ok, binary stable; text differs only in line ends\n"),
            std::string::npos)
      << R.Out;
  EXPECT_NE(R.Out.find(S("Spaced.txt.dfm") + ": ok, binary stable; text comes back different from line 2\n"),
            std::string::npos)
      << R.Out;
  EXPECT_NE(R.Out.find(S("Bad.txt.dfm") + ": FAILED: "), std::string::npos) << R.Out;
  EXPECT_NE(R.Out.find(" on line 3\n"), std::string::npos) << R.Out;
  EXPECT_NE(R.Out.find(S("Notes.dfm") + ": FAILED: not a form file"), std::string::npos) << R.Out;
  // An integral float reads back as an integer when the text stands alone.
  EXPECT_NE(R.Out.find(S("Float.txt.dfm") + ": ok, binary stable; text comes back different from line 2; but its "
                       "text alone gives some values other types (first at byte 23)\n"),
            std::string::npos)
      << R.Out;
  EXPECT_NE(R.Out.find("Checked 7 files: 5 ok, 2 failed; 3 texts come back as different text; 1 file's text gives "
                       "other value types alone.\n"),
            std::string::npos)
      << R.Out;
  // One line per file and the summary.
  EXPECT_EQ(std::count(R.Out.begin(), R.Out.end(), '\n'), 8);
  // Nothing is written.
  EXPECT_EQ(Names().size(), 7u);

  const auto Ok = RunTool({"--check", S("Good.dfm"), S("Good.txt.dfm")});
  EXPECT_EQ(Ok.Status, 0);
  EXPECT_NE(Ok.Out.find("Checked 2 files: 2 ok, 0 failed.\n"), std::string::npos) << Ok.Out;
}

TEST_F(ConvertTool, CheckNotesValueTypesTheTextDoesNotKeep) {
  // Left = 5 stored as a 32-bit integer: the text says 5, which alone comes back as one byte.
  std::string Stream = "TPF0";
  Stream += "\x06TForm1\x05" "Form1";
  Stream += "\x04Left";
  Stream += std::string("\x04\x05\x00\x00\x00", 5);
  Stream += std::string("\x00\x00", 2);
  Write("Wide.dfm", Stream);
  const auto R = RunTool({"--check", S("Wide.dfm")});
  EXPECT_EQ(R.Status, 0);
  EXPECT_EQ(R.Out, S("Wide.dfm") + ": ok; but its text alone gives some values other types (first at byte 22)\n"
                   "Checked 1 file: 1 ok, 0 failed; 1 file's text gives other value types alone.\n");

  // In a resource file the position counts from the start of the file.
  Write("Wide.res.dfm", MakeResHeader("TForm1", static_cast<std::uint32_t>(Stream.size())) + Stream);
  const auto Res = RunTool({"--check", S("Wide.res.dfm")});
  EXPECT_EQ(Res.Status, 0);
  EXPECT_NE(Res.Out.find(": ok; but its text alone gives some values other types (first at byte 38)\n"),
            std::string::npos)
      << Res.Out;
}

TEST_F(ConvertTool, CheckFindsABinaryThatDoesNotComeBack) {
  // Memory flags other than the ones written by the converter do not survive the trip.
  std::string Odd = Binary();
  ASSERT_EQ(Odd.substr(3, 7), std::string("TFORM1\0", 7));
  Odd[10] = 0;
  Odd[11] = 0;
  Write("Flags.dfm", Odd);
  const auto R = RunTool({"--check", S("Flags.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_EQ(R.Out, S("Flags.dfm") + ": FAILED: binary -> text -> binary differs at byte 10\n"
                   "Checked 1 file: 0 ok, 1 failed.\n");
}

TEST_F(ConvertTool, CheckRecursesAndCountsOtherErrors) {
  Write("p/A.dfm", Binary());
  Write("p/B.dfm", Binary(OtherText));
  Write("p/readme.dfm", "not a form");
  const auto R = RunTool({"--check", "-s", S("p"), S("missing.dfm")});
  EXPECT_EQ(R.Status, 1);
  EXPECT_NE(R.Err.find(S("missing.dfm") + ": no such file or folder"), std::string::npos) << R.Err;
  EXPECT_NE(R.Out.find("Checked 2 files: 2 ok, 0 failed; 1 other error; 1 file was not a form.\n"),
            std::string::npos)
      << R.Out;
}

TEST_F(ConvertTool, CheckOnRealFiles) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<std::string> Args{"--check"};
  for (const auto& Folder : {"bin", "text"}) {
    const auto Files = lumora::test::CorpusFiles(Folder);
    ASSERT_GE(Files.size(), 3u);
    for (std::size_t I = 0; I < 3; ++I) Args.push_back(Files[I * Files.size() / 3].string());
  }
  const auto Pairs = lumora::test::CorpusFiles("pairs", ".bin.dfm");
  ASSERT_FALSE(Pairs.empty());
  Args.push_back(Pairs.front().string());
  const auto R = RunTool(Args);
  EXPECT_EQ(R.Status, 0) << R.Out << R.Err;
  for (std::size_t I = 1; I < Args.size(); ++I) EXPECT_NE(R.Out.find(Args[I] + ": ok"), std::string::npos) << R.Out;
  EXPECT_NE(R.Out.find("Checked 7 files: 7 ok, 0 failed"), std::string::npos) << R.Out;
}

// ------------------------------------------------------------------ programs

// A program holding the forms of these texts, each in an RCDATA resource named after its
// root's class in upper case, beside an RCDATA resource that is no form.
std::string Program(const std::vector<const char*>& Texts) {
  std::vector<lumora::test::TBuiltResource> Resources{{"#10", "DVCLAL", 0, std::string(16, '\x01')}};
  for (const char* Text : Texts) {
    const std::string Stream = ObjectTextToBinary(Text);
    Resources.push_back({"#10", UpperCase(StreamRootClassName(Stream)), 0, Stream});
  }
  return lumora::test::BuildPeImage(Resources).Bytes;
}

std::string StreamOf(const char* Text) { return ObjectTextToBinary(Text); }

TEST_F(ConvertTool, ListShowsEveryFormOfAProgram) {
  Write("Project1.exe", Program({FormText, OtherText}));
  Write("Form1.dfm", Binary());
  const auto R = RunTool({"--list", S("Project1.exe"), S("Form1.dfm")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(R.Out, S("Project1.exe") + ":TFORM1  Form1: TForm1  " + std::to_string(StreamOf(FormText).size()) +
                       " bytes\n" + S("Project1.exe") + ":TOTHERFORM  Other: TOtherForm  " +
                       std::to_string(StreamOf(OtherText).size()) + " bytes\n" + S("Form1.dfm") +
                       "  Form1: TForm1  " + std::to_string(StreamOf(FormText).size()) + " bytes\n");
  EXPECT_EQ(R.Err, "Listed 3 forms, 0 failed.\n");
  // One form by name, without regard to case.
  const auto One = RunTool({"--list", S("Project1.exe") + ":tOtherForm"});
  EXPECT_EQ(One.Status, 0) << One.Err;
  EXPECT_EQ(One.Out, S("Project1.exe") + ":TOTHERFORM  Other: TOtherForm  " +
                         std::to_string(StreamOf(OtherText).size()) + " bytes\n");
  EXPECT_EQ(One.Err, "");
  EXPECT_EQ(RunTool({"--list", "-o", S("out"), S("Project1.exe")}).Status, ConvertExitUsage);
}

TEST_F(ConvertTool, ToTextWritesEveryFormOfAProgramIntoAFolderBesideIt) {
  const std::string Bytes = Program({FormText, OtherText});
  Write("bin/Project1.exe", Bytes);
  const auto R = RunTool({"-t", S("bin/Project1.exe")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Names("bin/Project1.exe.forms"), (std::vector<std::string>{"TFORM1.dfm", "TOTHERFORM.dfm"}));
  EXPECT_EQ(Read("bin/Project1.exe.forms/TFORM1.dfm"), CanonicalText());
  EXPECT_EQ(Read("bin/Project1.exe.forms/TOTHERFORM.dfm"), CanonicalText(OtherText));
  EXPECT_EQ(Read("bin/Project1.exe"), Bytes);  // the program is never written
  EXPECT_EQ(R.Err, "Converted 2 files, 0 failed.\n");

  // Again: the forms are there, and are not replaced without -f.
  const auto Again = RunTool({"-t", S("bin/Project1.exe")});
  EXPECT_EQ(Again.Status, 1);
  EXPECT_NE(Again.Err.find(S("bin/Project1.exe.forms/TFORM1.dfm") + ": exists; use -f to replace it"),
            std::string::npos)
      << Again.Err;
  EXPECT_EQ(RunTool({"-t", "-f", S("bin/Project1.exe")}).Status, 0);

  // The form text goes back to a binary form file as any text does.
  const auto Back = RunTool({"-b", S("bin/Project1.exe.forms/TOTHERFORM.dfm")});
  EXPECT_EQ(Back.Status, 0) << Back.Err;
  EXPECT_EQ(Read("bin/Project1.exe.forms/TOTHERFORM.bin.dfm"), Binary(OtherText));
}

TEST_F(ConvertTool, OneFormOfAProgramByName) {
  Write("Project1.exe", Program({FormText, OtherText}));
  const auto R = RunTool({"-t", S("Project1.exe") + ":tform1"});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Names("Project1.exe.forms"), (std::vector<std::string>{"TFORM1.dfm"}));
  EXPECT_EQ(Read("Project1.exe.forms/TFORM1.dfm"), CanonicalText());
  EXPECT_EQ(R.Err, "");

  // To a file, to standard output, and as a binary form file.
  EXPECT_EQ(RunTool({"-t", "-o", S("Other.dfm"), S("Project1.exe") + ":TOtherForm"}).Status, 0);
  EXPECT_EQ(Read("Other.dfm"), CanonicalText(OtherText));
  const auto Out = RunTool({"-t", "-o", "-", S("Project1.exe") + ":TOTHERFORM"});
  EXPECT_EQ(Out.Status, 0) << Out.Err;
  EXPECT_EQ(Out.Out, CanonicalText(OtherText));
  EXPECT_EQ(RunTool({"-b", "-o", S("Other.bin.dfm"), S("Project1.exe") + ":TOtherForm"}).Status, 0);
  EXPECT_EQ(Read("Other.bin.dfm"), Binary(OtherText));
  // A bare stream is what the program holds already.
  const auto Raw = RunTool({"-b", "--raw", "-o", S("Other.raw"), S("Project1.exe") + ":TOtherForm"});
  EXPECT_EQ(Raw.Status, 0) << Raw.Err;
  EXPECT_NE(Raw.Err.find(S("Project1.exe") + ":TOTHERFORM: already a bare TPF0 stream, skipped"), std::string::npos)
      << Raw.Err;
  EXPECT_FALSE(Exists("Other.raw"));
}

TEST_F(ConvertTool, TheFormsOfProgramsIntoTheOutputFolder) {
  Write("Project1.exe", Program({FormText}));
  Write("Tools.dll", Program({OtherText}));
  const auto R = RunTool({"-t", "-o", S("forms"), S("Project1.exe"), S("Tools.dll")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Names("forms"), (std::vector<std::string>{"TFORM1.dfm", "TOTHERFORM.dfm"}));
  EXPECT_EQ(Read("forms/TOTHERFORM.dfm"), CanonicalText(OtherText));
  // One program into a folder that does not exist yet.
  EXPECT_EQ(RunTool({"-t", "-o", S("one"), S("Tools.dll")}).Status, 0);
  EXPECT_EQ(Read("one/TOTHERFORM.dfm"), CanonicalText(OtherText));
  // Two forms of one name from two programs: the second is refused, not written over the first.
  Write("Copy.exe", Program({FormText}));
  const auto Twice = RunTool({"-t", "-o", S("two"), S("Project1.exe"), S("Copy.exe")});
  EXPECT_EQ(Twice.Status, 1);
  EXPECT_NE(Twice.Err.find(S("two/TFORM1.dfm") + ": already written from " + S("Project1.exe") +
                           ":TFORM1 in this run"),
            std::string::npos)
      << Twice.Err;
}

TEST_F(ConvertTool, CheckRoundTripsEveryFormOfAProgram) {
  Write("Project1.exe", Program({FormText, OtherText}));
  const auto R = RunTool({"--check", S("Project1.exe")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(R.Out, S("Project1.exe") + ":TFORM1: ok\n" + S("Project1.exe") + ":TOTHERFORM: ok\n" +
                       "Checked 2 files: 2 ok, 0 failed.\n");
}

TEST_F(ConvertTool, RecursionFindsProgramsByTheirNameEndings) {
  Write("apps/Project1.exe", Program({FormText}));
  Write("apps/lib/Tools.dll", Program({OtherText}));
  Write("apps/lib/Empty.bpl", Program({}));
  Write("apps/readme.exe", "not a program");
  Write("apps/Main.dfm", Binary());  // not among the name endings asked for
  const auto R = RunTool({"-t", "-s", "-e", ".exe,.dll,.bpl", S("apps")});
  EXPECT_EQ(R.Status, 0) << R.Err;
  EXPECT_EQ(Read("apps/Project1.exe.forms/TFORM1.dfm"), CanonicalText());
  EXPECT_EQ(Read("apps/lib/Tools.dll.forms/TOTHERFORM.dfm"), CanonicalText(OtherText));
  EXPECT_FALSE(Exists("apps/lib/Empty.bpl.forms"));
  EXPECT_FALSE(Exists("apps/Main.txt.dfm"));
  EXPECT_NE(R.Err.find(S("apps") + "/lib/Empty.bpl: a program without forms, skipped"), std::string::npos) << R.Err;
  EXPECT_NE(R.Err.find("Converted 2 files, 0 failed; 1 file was not a form; 1 program without forms."),
            std::string::npos)
      << R.Err;

  // With -o the forms keep their program's path below the folder.
  EXPECT_EQ(RunTool({"-t", "-s", "-e", "exe,dll,bpl", "-o", S("out"), S("apps")}).Status, 0);
  EXPECT_EQ(Read("out/lib/Tools.dll.forms/TOTHERFORM.dfm"), CanonicalText(OtherText));
  EXPECT_EQ(Read("out/Project1.exe.forms/TFORM1.dfm"), CanonicalText());

  const auto L = RunTool({"--list", "-s", "-e", ".exe,.dll,.bpl", S("apps")});
  EXPECT_EQ(L.Status, 0) << L.Err;
  EXPECT_EQ(L.Out, S("apps") + "/Project1.exe:TFORM1  Form1: TForm1  " + std::to_string(StreamOf(FormText).size()) +
                       " bytes\n" + S("apps") + "/lib/Tools.dll:TOTHERFORM  Other: TOtherForm  " +
                       std::to_string(StreamOf(OtherText).size()) + " bytes\n");
  EXPECT_NE(L.Err.find("Listed 2 forms, 0 failed; 1 file was not a form; 1 program without forms."),
            std::string::npos)
      << L.Err;
}

TEST_F(ConvertTool, ProgramsThatCannotGiveTheirForms) {
  Write("Project1.exe", Program({FormText, OtherText}));
  Write("Form1.dfm", Binary());
  const auto Missing = RunTool({"-t", S("Project1.exe") + ":TMainForm"});
  EXPECT_EQ(Missing.Status, 1);
  EXPECT_EQ(Missing.Err, "lumora-convert: " + S("Project1.exe") +
                             ": No form named TMainForm in the program; its forms are TFORM1, TOTHERFORM\n");
  EXPECT_FALSE(Exists("Project1.exe.forms"));

  const auto NotProgram = RunTool({"--list", S("Form1.dfm") + ":TForm1"});
  EXPECT_EQ(NotProgram.Status, 1);
  EXPECT_EQ(NotProgram.Err, "lumora-convert: " + S("Form1.dfm") +
                                ": not a Windows program (.exe, .dll, .bpl), so it holds no form named TForm1\n");

  // A program is never replaced, and -o for a whole program is a folder.
  const auto InPlace = RunTool({"-t", "-i", S("Project1.exe")});
  EXPECT_EQ(InPlace.Status, 1);
  EXPECT_NE(InPlace.Err.find(S("Project1.exe") + ": a program is never replaced"), std::string::npos) << InPlace.Err;
  const auto ToFile = RunTool({"-t", "-f", "-o", S("Form1.dfm"), S("Project1.exe")});
  EXPECT_EQ(ToFile.Status, 1);
  EXPECT_NE(ToFile.Err.find(S("Form1.dfm") + ": not a folder"), std::string::npos) << ToFile.Err;
  EXPECT_EQ(Read("Form1.dfm"), Binary());
  const auto Binaries = RunTool({"-b", "-o", "-", S("Project1.exe")});
  EXPECT_EQ(Binaries.Status, 1);
  EXPECT_NE(Binaries.Err.find("holds 2 forms; binary goes to standard output one form at a time"), std::string::npos)
      << Binaries.Err;
  EXPECT_EQ(Binaries.Out, "");

  // A program cut short: the form whose data is lost is named, the others still come out.
  const lumora::test::TBuiltImage Built = lumora::test::BuildPeImage(
      {{"#10", "TFORM1", 0, StreamOf(FormText)}, {"#10", "TOTHERFORM", 0, StreamOf(OtherText)}});
  Write("Cut.exe", Built.Bytes.substr(0, Built.ResourceOffset + Built.ResourceSize - 4));
  const auto Cut = RunTool({"-t", S("Cut.exe")});
  EXPECT_EQ(Cut.Status, 1);
  EXPECT_NE(Cut.Err.find(S("Cut.exe") + ":TOTHERFORM: Resource TOTHERFORM of type #10"), std::string::npos) << Cut.Err;
  EXPECT_NE(Cut.Err.find("run past the end of the file, which is cut short"), std::string::npos) << Cut.Err;
  EXPECT_EQ(Read("Cut.exe.forms/TFORM1.dfm"), CanonicalText());
  EXPECT_FALSE(Exists("Cut.exe.forms/TOTHERFORM.dfm"));
  const auto CutCheck = RunTool({"--check", S("Cut.exe")});
  EXPECT_EQ(CutCheck.Status, 1);
  EXPECT_NE(CutCheck.Out.find(S("Cut.exe") + ":TOTHERFORM: FAILED: Resource TOTHERFORM"), std::string::npos)
      << CutCheck.Out;

  // Headers damaged beyond reading: the program is named with what is wrong.
  Write("Damaged.exe", Built.Bytes.substr(0, Built.ResourceOffset + 4));
  const auto Bad = RunTool({"--list", S("Damaged.exe")});
  EXPECT_EQ(Bad.Status, 1);
  EXPECT_EQ(Bad.Err.rfind("lumora-convert: " + S("Damaged.exe") + ": Resource directory (16 bytes at offset 0x600) runs past the end of the file", 0), 0u)
      << Bad.Err;
  EXPECT_EQ(Bad.Out, "");
  // Too short to be a program at all.
  Write("Stub.exe", Built.Bytes.substr(0, 0x40));
  const auto Stub = RunTool({"--list", S("Stub.exe")});
  EXPECT_EQ(Stub.Status, 1);
  EXPECT_EQ(Stub.Err, "lumora-convert: " + S("Stub.exe") + ": neither a Windows program nor a form file\n");
}

TEST_F(ConvertTool, TheRealPrograms) {
  LUMORA_REQUIRE_CORPUS();
  const std::string Folder = (lumora::test::CorpusDir() / "pe").string();
  const auto Counts = lumora::test::CorpusProgramCounts();

  // Every form is listed, as many per program as the manifest says.
  const auto L = RunTool({"--list", "-s", "-e", ".exe,.dll,.bpl", Folder});
  EXPECT_EQ(L.Status, 0) << L.Err;
  std::map<std::string, int> Listed;
  std::istringstream Lines(L.Out);
  for (std::string Line; std::getline(Lines, Line);) {
    const std::string Program = Line.substr(0, Line.find(':', Folder.size()));
    ++Listed[fs::path(Program).filename().string()];
  }
  ASSERT_EQ(Listed.size(), Counts.size()) << L.Out;
  for (const auto& [Id, Row] : Counts) EXPECT_EQ(Listed[Id], Row.Forms) << Id;
  EXPECT_NE(L.Err.find("Listed 64 forms, 0 failed."), std::string::npos) << L.Err;

  // Every form comes back through its text to the same bytes.
  const auto C = RunTool({"--check", "-s", "-e", ".exe,.dll,.bpl", Folder});
  EXPECT_EQ(C.Status, 0) << C.Out << C.Err;
  EXPECT_NE(C.Out.find("Checked 64 files: 64 ok, 0 failed"), std::string::npos) << C.Out;

  // And every form comes out as text, beside each other in one folder per program.
  const auto T = RunTool({"-t", "-s", "-e", ".exe,.dll,.bpl", "-o", S("forms"), Folder});
  EXPECT_EQ(T.Status, 0) << T.Err;
  EXPECT_NE(T.Err.find("Converted 64 files, 0 failed."), std::string::npos) << T.Err;
  EXPECT_EQ(Names("forms/0003.exe.forms"), (std::vector<std::string>{"TFORM1.dfm", "TFRMPROGRESS.dfm",
                                                                     "TLOGINDIALOG.dfm", "TPASSWORDDIALOG.dfm"}));
  EXPECT_EQ(Read("forms/0003.exe.forms/TPASSWORDDIALOG.dfm").rfind("object PasswordDialog: TPasswordDialog\r\n", 0),
            0u);
}

// ------------------------------------------------------------------ progress

TEST_F(ConvertTool, ProgressLineOnlyOnATerminal) {
  for (const char* Name : {"A.dfm", "B.dfm", "C.dfm"}) Write(std::string("p/") + Name, Binary());
  const auto T = RunTool({"-t", "-s", S("p")}, false, /*ErrIsTerminal=*/true);
  EXPECT_EQ(T.Status, 0);
  EXPECT_NE(T.Err.find("\r\033[K[1/3] " + S("p") + "/A.dfm"), std::string::npos) << T.Err;
  EXPECT_NE(T.Err.find("\r\033[K[3/3] " + S("p") + "/C.dfm"), std::string::npos) << T.Err;
  // The line is cleared before the summary.
  EXPECT_NE(T.Err.find("\r\033[KConverted 3 files, 0 failed."), std::string::npos) << T.Err;

  for (const char* Name : {"A.dfm", "B.dfm", "C.dfm"}) Write(std::string("q/") + Name, Binary());
  const auto N = RunTool({"-t", "-s", S("q")});
  EXPECT_EQ(N.Status, 0);
  EXPECT_EQ(N.Err.find('\r'), std::string::npos) << N.Err;
  EXPECT_EQ(N.Err, "Converted 3 files, 0 failed.\n");

  // No progress for a single file.
  const auto One = RunTool({"-t", "-f", S("p/A.dfm")}, false, true);
  EXPECT_EQ(One.Err, "");
}

// ------------------------------------------------------------------ the program itself

TEST(ConvertProgram, RunsFromTheCommandLine) {
  const fs::path Program = fs::path(LUMORA_BINARY_DIR) / "bin" / "lumora-convert";
  ASSERT_TRUE(fs::exists(Program)) << Program;
  const fs::path Sample = lumora::test::SourceDir() / "samples" / "Sample1.dfm";
  const std::string Command = Program.string() + " -t -o - '" + Sample.string() + "' 2>&1";
  FILE* Pipe = ::popen(Command.c_str(), "r");
  ASSERT_NE(Pipe, nullptr);
  std::string Out;
  char Buffer[4096];
  std::size_t N;
  while ((N = std::fread(Buffer, 1, sizeof Buffer, Pipe)) > 0) Out.append(Buffer, N);
  const int Status = ::pclose(Pipe);
  EXPECT_TRUE(WIFEXITED(Status));
  EXPECT_EQ(WEXITSTATUS(Status), 0);
  EXPECT_EQ(Out, ReadFileBytes(lumora::test::SourceDir() / "samples" / "Sample1.txt.dfm"));

  FILE* Bad = ::popen((Program.string() + " --bogus 2>&1").c_str(), "r");
  ASSERT_NE(Bad, nullptr);
  std::string BadOut;
  while ((N = std::fread(Buffer, 1, sizeof Buffer, Bad)) > 0) BadOut.append(Buffer, N);
  const int BadStatus = ::pclose(Bad);
  EXPECT_EQ(WEXITSTATUS(BadStatus), 2);
  EXPECT_NE(BadOut.find("unknown option --bogus"), std::string::npos) << BadOut;
}

}  // namespace
