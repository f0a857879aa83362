#include "tools/ConvertTool.h"

#include "platform/streaming/FormFile.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/SysUtils.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <optional>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>

#ifndef LUMORA_VERSION
#define LUMORA_VERSION "unknown"
#endif

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ToolName = "lumora-convert";

// A command line that cannot be run: exit status 2.
class EUsage : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

// A file that cannot be read or written; the message already names the file.
class EFileProblem : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

// ------------------------------------------------------------------ options

enum class TAction { None, ToText, ToBinary, Check, List };

struct TArgument {
  std::string Name;
  bool IsList = false;  // @listfile
};

struct TOptions {
  TAction Action = TAction::None;
  std::optional<std::string> Output;
  bool InPlace = false;
  bool Recurse = false;
  bool Raw = false;
  bool Force = false;
  bool Verbose = false;
  bool Help = false;
  bool Version = false;
  std::vector<std::string> Extensions{".dfm"};  // lower case, "*" for every name
  std::vector<TArgument> Inputs;
};

void SetAction(TOptions& O, TAction Action) {
  if (O.Action != TAction::None && O.Action != Action) throw EUsage("choose one of -t, -b, --check and --list");
  O.Action = Action;
}

void SetExtensions(TOptions& O, const std::string& Value) {
  O.Extensions.clear();
  std::size_t Start = 0;
  while (Start <= Value.size()) {
    std::size_t Comma = Value.find(',', Start);
    if (Comma == std::string::npos) Comma = Value.size();
    std::string Ext = Trim(std::string_view(Value).substr(Start, Comma - Start));
    if (!Ext.empty()) {
      if (Ext != "*" && Ext[0] != '.') Ext.insert(0, 1, '.');
      O.Extensions.push_back(LowerCase(Ext));
    }
    Start = Comma + 1;
  }
  if (O.Extensions.empty()) throw EUsage("--ext needs at least one name ending, such as .dfm");
}

// One command-line option. New options (another output kind, say) are one more row.
struct TOptionEntry {
  char Short;              // 0 when there is no short form
  std::string_view Long;   // without the dashes
  std::string_view Value;  // name of its value in the help, empty for a flag
  std::string_view Help;
  void (*Apply)(TOptions&, const std::string& Value);
};

const TOptionEntry OptionTable[] = {
    {'t', "text", "", "convert binary forms to form text",
     [](TOptions& O, const std::string&) { SetAction(O, TAction::ToText); }},
    {'b', "binary", "", "convert form text to binary form files (resource header + stream)",
     [](TOptions& O, const std::string&) { SetAction(O, TAction::ToBinary); }},
    {0, "check", "", "check that each file converts both ways without change (see below)",
     [](TOptions& O, const std::string&) { SetAction(O, TAction::Check); }},
    {0, "list", "", "list the forms inside each program: PROGRAM:NAME, the root component and the stream's size",
     [](TOptions& O, const std::string&) { SetAction(O, TAction::List); }},
    {'o', "output", "PATH",
     "write to PATH instead of beside the input: a file, a folder when there are several "
     "inputs (created when missing), or \"-\" for standard output",
     [](TOptions& O, const std::string& V) {
       if (O.Output) throw EUsage("-o given twice");
       if (V.empty()) throw EUsage("-o needs a file name, a folder or -");
       O.Output = V;
     }},
    {'i', "in-place", "", "replace each input by its conversion (its permissions are kept)",
     [](TOptions& O, const std::string&) { O.InPlace = true; }},
    {'f', "force", "", "replace output files that already exist",
     [](TOptions& O, const std::string&) { O.Force = true; }},
    {'s', "recursive", "", "convert the forms found in the folders given, and in their sub-folders",
     [](TOptions& O, const std::string&) { O.Recurse = true; }},
    {'e', "ext", "LIST",
     "name endings to consider inside folders, comma-separated (default .dfm; * for every file); "
     "only files whose content is a form are converted",
     SetExtensions},
    {0, "raw", "", "with -b: write a bare TPF0 stream, without the resource header",
     [](TOptions& O, const std::string&) { O.Raw = true; }},
    {'v', "verbose", "", "report every file", [](TOptions& O, const std::string&) { O.Verbose = true; }},
    {'h', "help", "", "show this help and exit", [](TOptions& O, const std::string&) { O.Help = true; }},
    {'V', "version", "", "show the version and exit", [](TOptions& O, const std::string&) { O.Version = true; }},
};

const TOptionEntry* FindLong(std::string_view Name) {
  for (const auto& Entry : OptionTable)
    if (Entry.Long == Name) return &Entry;
  return nullptr;
}

const TOptionEntry* FindShort(char C) {
  for (const auto& Entry : OptionTable)
    if (Entry.Short != 0 && Entry.Short == C) return &Entry;
  return nullptr;
}

void ParseArguments(const std::vector<std::string>& Args, TOptions& O) {
  bool OptionsEnded = false;
  for (std::size_t I = 0; I < Args.size(); ++I) {
    const std::string& A = Args[I];
    if (OptionsEnded || A.size() < 2 || A[0] != '-') {
      if (!OptionsEnded && A.size() > 1 && A[0] == '@')
        O.Inputs.push_back({A.substr(1), true});
      else
        O.Inputs.push_back({A, false});
      continue;
    }
    if (A == "--") {
      OptionsEnded = true;
      continue;
    }
    if (A[1] == '-') {
      const std::size_t Eq = A.find('=');
      const std::string Name = A.substr(2, Eq == std::string::npos ? std::string::npos : Eq - 2);
      const TOptionEntry* Entry = FindLong(Name);
      if (!Entry) throw EUsage("unknown option --" + Name);
      std::string Value;
      if (!Entry->Value.empty()) {
        if (Eq != std::string::npos)
          Value = A.substr(Eq + 1);
        else if (I + 1 < Args.size())
          Value = Args[++I];
        else
          throw EUsage("--" + Name + " needs a value (" + std::string(Entry->Value) + ")");
      } else if (Eq != std::string::npos) {
        throw EUsage("--" + Name + " takes no value");
      }
      Entry->Apply(O, Value);
      continue;
    }
    // A bundle of short options ("-ts"); one that takes a value takes the rest or the next argument.
    for (std::size_t J = 1; J < A.size(); ++J) {
      const TOptionEntry* Entry = FindShort(A[J]);
      if (!Entry) throw EUsage(std::string("unknown option -") + A[J]);
      if (Entry->Value.empty()) {
        Entry->Apply(O, {});
        continue;
      }
      std::string Value;
      if (J + 1 < A.size())
        Value = A.substr(J + 1);
      else if (I + 1 < Args.size())
        Value = Args[++I];
      else
        throw EUsage(std::string("-") + A[J] + " needs a value (" + std::string(Entry->Value) + ")");
      Entry->Apply(O, Value);
      break;
    }
  }
}

// Lines of at most Width characters, the first after Indent characters already written.
void WriteWrapped(std::ostream& Out, std::string_view Text, std::size_t Indent, std::size_t Width) {
  std::size_t Column = Indent;
  bool First = true;
  std::size_t Pos = 0;
  while (Pos < Text.size()) {
    std::size_t End = Text.find(' ', Pos);
    if (End == std::string_view::npos) End = Text.size();
    const std::string_view Word = Text.substr(Pos, End - Pos);
    if (!First && Column + 1 + Word.size() > Width) {
      Out << '\n' << std::string(Indent, ' ');
      Column = Indent;
      First = true;
    }
    if (!First) {
      Out << ' ';
      ++Column;
    }
    Out << Word;
    Column += Word.size();
    First = false;
    Pos = End + 1;
  }
  Out << '\n';
}

void PrintHelp(std::ostream& Out) {
  Out << "Usage: " << ToolName << " -t|-b|--check|--list [options] FILE|FOLDER|@LIST...\n"
      << "\n"
         "Converts Delphi form files (.dfm) between the binary form and form text, and\n"
         "takes out the forms that Windows programs (.exe, .dll, .bpl) carry inside.\n"
         "The format of each input is told from its content, never from its name; an\n"
         "input already in the requested format is reported and left alone.\n"
         "\n"
         "Options:\n";
  constexpr std::size_t HelpColumn = 24;
  for (const auto& Entry : OptionTable) {
    std::string Head = "  ";
    Head += Entry.Short ? std::string("-") + Entry.Short + ", " : std::string("    ");
    Head += "--" + std::string(Entry.Long);
    if (!Entry.Value.empty()) Head += " " + std::string(Entry.Value);
    Out << Head;
    if (Head.size() + 2 > HelpColumn) {
      Out << '\n' << std::string(HelpColumn, ' ');
    } else {
      Out << std::string(HelpColumn - Head.size(), ' ');
    }
    WriteWrapped(Out, Entry.Help, HelpColumn, 79);
  }
  Out << "\n"
         "Output names: without -o or -i, the output goes beside its input as NAME.txt.EXT\n"
         "(-t) or NAME.bin.EXT (-b, also with --raw), where NAME.EXT is the input's name\n"
         "without a .bin or .txt before the extension (.dfm when there is none):\n"
         "Form1.dfm gives Form1.txt.dfm, and Form1.txt.dfm gives Form1.bin.dfm. With -o\n"
         "FOLDER each output takes its input's name, and files found with -s keep their\n"
         "path below the folder given. A file that exists is never replaced without -f\n"
         "(or -i for the input itself); every file is written under a temporary name in\n"
         "its folder and renamed when complete, so a failure leaves no partial file.\n"
         "\n"
         "Programs: PROGRAM names every form of a program, PROGRAM:NAME the one whose\n"
         "resource is NAME (without regard to case; --list shows the names). Without -o\n"
         "the forms go into the folder PROGRAM.forms beside it, as NAME.dfm; with -o\n"
         "FOLDER into that folder (below it PATH.forms for programs found with -s). A\n"
         "program is never written. With -s, give -e .exe,.dll,.bpl to find programs.\n"
         "\n"
         "Arguments: @LIST reads file and folder names from LIST, one per line. With -s,\n"
         "folders are searched for names ending in .dfm (see --ext), skipping hidden\n"
         "files and folders and not following links to folders; names given directly\n"
         "are always read.\n"
         "\n"
         "--check: a binary form must give the same bytes after binary -> text -> binary;\n"
         "form text must give the same binary after text -> binary -> text -> binary.\n"
         "Form text does not tell every value type apart (a float 1.0 reads back as the\n"
         "integer 1), so the way back takes such types from the binary it started from;\n"
         "the line notes when the text alone would give other types, and whether form\n"
         "text came back as the same text. Those notes are not failures.\n"
         "\n"
         "Exit status: 0 when every file was converted (or was already in the requested\n"
         "format), checked fine or listed, 1 when any file failed, 2 for a wrong command\n"
         "line. A program without forms is reported and skipped, not a failure.\n";
}

// ------------------------------------------------------------------ conversions

// A conversion the tool can make. Convert returns the new content, or nothing when the
// input already has the wanted format.
struct TTarget {
  std::string_view Marker;  // put before the extension of a default output name
  bool IsBinary;
  std::optional<std::string> (*Convert)(TFormFile& File);
};

std::string_view AlreadyText(TFormFileFormat Format) {
  switch (Format) {
    case TFormFileFormat::Text: return "already form text";
    case TFormFileFormat::Resource: return "already a binary form file";
    case TFormFileFormat::Stream: return "already a bare TPF0 stream";
    case TFormFileFormat::Unknown: break;
  }
  return "not a form file";
}

const TTarget TextTarget{".txt", false, [](TFormFile& File) -> std::optional<std::string> {
                           if (File.IsText()) return std::nullopt;
                           return ObjectBinaryToText(File.Stream());
                         }};

const TTarget BinaryTarget{".bin", true, [](TFormFile& File) -> std::optional<std::string> {
                             switch (File.Format()) {
                               case TFormFileFormat::Text: return ObjectTextToResource(File.Bytes());
                               case TFormFileFormat::Stream: {
                                 const std::string_view Stream = File.Stream();
                                 if (Stream.size() > UINT32_MAX) throw Exception("Stream too large for a form file");
                                 CheckObjectBinary(Stream);  // refuse a damaged stream before wrapping it
                                 return MakeResHeader(StreamRootClassName(Stream),
                                                      static_cast<std::uint32_t>(Stream.size())) +
                                        std::string(Stream);
                               }
                               default: return std::nullopt;
                             }
                           }};

const TTarget RawTarget{".bin", true, [](TFormFile& File) -> std::optional<std::string> {
                          switch (File.Format()) {
                            case TFormFileFormat::Text: return ObjectTextToBinary(File.Bytes());
                            case TFormFileFormat::Resource: {
                              const std::string_view Stream = File.Stream();
                              CheckObjectBinary(Stream);  // refuse a damaged stream before unwrapping it
                              return std::string(Stream);
                            }
                            default: return std::nullopt;
                          }
                        }};

// The message of whatever a conversion raised.
std::string ErrorText(const std::exception& E) {
  if (const auto* Ex = dynamic_cast<const Exception*>(&E)) return Ex->Message();
  if (dynamic_cast<const std::bad_alloc*>(&E)) return "out of memory";
  return E.what();
}

// ------------------------------------------------------------------ files

std::string SystemError(int Code) { return std::generic_category().message(Code); }

std::string ReadInput(const fs::path& Path, const std::string& Shown) {
  const int Fd = ::open(Path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (Fd < 0) throw EFileProblem(Shown + ": cannot read: " + SystemError(errno));
  struct stat St {};
  if (::fstat(Fd, &St) != 0 || !S_ISREG(St.st_mode)) {
    const bool IsDir = S_ISDIR(St.st_mode);
    ::close(Fd);
    throw EFileProblem(Shown + (IsDir ? ": is a folder" : ": not a regular file"));
  }
  std::string Data;
  Data.reserve(static_cast<std::size_t>(St.st_size));
  char Buffer[65536];
  for (;;) {
    const ssize_t N = ::read(Fd, Buffer, sizeof Buffer);
    if (N < 0) {
      if (errno == EINTR) continue;
      const int Code = errno;
      ::close(Fd);
      throw EFileProblem(Shown + ": cannot read: " + SystemError(Code));
    }
    if (N == 0) break;
    Data.append(Buffer, static_cast<std::size_t>(N));
  }
  ::close(Fd);
  return Data;
}

extern "C" void RemoveTempAndDie(int Signal) {
  RemovePendingSaveTemporary();
  ::signal(Signal, SIG_DFL);
  ::raise(Signal);
}

// Saves Data as Target. Without Replace an existing Target is never touched.
void WriteOutput(const fs::path& Target, std::string_view Data, bool Replace) {
  try {
    SaveFile(Target.string(), Data, TSaveOptions{Replace});
  } catch (const ESaveError& E) {
    if (E.ErrorCode() == EEXIST) throw EFileProblem(Target.string() + ": exists; use -f to replace it");
    throw EFileProblem(Target.string() + ": cannot write: " + E.Reason());
  }
}

bool EndsWithNoCase(std::string_view S, std::string_view End) {
  return S.size() >= End.size() && SameText(S.substr(S.size() - End.size()), End);
}

// NAME.txt.EXT or NAME.bin.EXT beside the input; the other marker is dropped first.
fs::path DefaultOutputPath(const fs::path& Input, const TTarget& Target) {
  std::string Stem = Input.stem().string();
  std::string Ext = Input.extension().string();
  if (Ext.empty()) Ext = ".dfm";
  const std::string_view Other = Target.Marker == ".txt" ? ".bin" : ".txt";
  if (EndsWithNoCase(Stem, Other) && Stem.size() > Other.size()) Stem.resize(Stem.size() - Other.size());
  return Input.parent_path() / (Stem + std::string(Target.Marker) + Ext);
}

// ------------------------------------------------------------------ the run

struct TInput {
  fs::path Path;
  std::string Shown;      // as the user gave it, or joined below a folder
  fs::path Base;          // the folder given with -s, empty for a file named directly
  bool FromFolder = false;
  std::string Form;       // PROGRAM:NAME names one form of a program; empty for the whole file
};

// A form of a program as a file name: its resource name, made safe for a folder.
std::string FormFileName(const TResourceId& Name) {
  std::string Result = Name.Text();
  for (char& C : Result)
    if (C == '/' || static_cast<unsigned char>(C) < 32 || C == 127) C = '_';
  if (Result == "." || Result == "..") Result = "_";
  return Result + ".dfm";
}

// First difference of two byte strings: "at byte N", or which one is longer.
std::string DescribeBinaryDifference(std::string_view Original, std::string_view Again) {
  const std::size_t Common = std::min(Original.size(), Again.size());
  std::size_t I = 0;
  while (I < Common && Original[I] == Again[I]) ++I;
  if (I < Common) return "differs at byte " + std::to_string(I);
  if (Again.size() < Original.size())
    return "is " + std::to_string(Original.size() - Again.size()) + " bytes shorter";
  return "is " + std::to_string(Again.size() - Original.size()) + " bytes longer";
}

std::vector<std::string_view> SplitLines(std::string_view Text) {
  std::vector<std::string_view> Lines;
  std::size_t Start = 0;
  for (std::size_t I = 0; I < Text.size(); ++I) {
    if (Text[I] == '\r' || Text[I] == '\n') {
      Lines.push_back(Text.substr(Start, I - Start));
      if (Text[I] == '\r' && I + 1 < Text.size() && Text[I + 1] == '\n') ++I;
      Start = I + 1;
    }
  }
  if (Start < Text.size()) Lines.push_back(Text.substr(Start));
  return Lines;
}

std::string_view TrimRight(std::string_view S) {
  while (!S.empty() && (S.back() == ' ' || S.back() == '\t')) S.remove_suffix(1);
  return S;
}

// How a text that came back differs from the original one.
std::string DescribeTextDifference(std::string_view Original, std::string_view Again) {
  const auto A = SplitLines(Original);
  const auto B = SplitLines(Again);
  if (A == B) return "text differs only in line ends";
  std::size_t Line = 0;
  const std::size_t Common = std::min(A.size(), B.size());
  bool OnlyBlanks = A.size() == B.size();
  bool FirstFound = false;
  for (std::size_t I = 0; I < std::max(A.size(), B.size()); ++I) {
    const bool Same = I < Common && A[I] == B[I];
    if (!Same && !FirstFound) {
      Line = I + 1;
      FirstFound = true;
    }
    if (I < Common && TrimRight(A[I]) != TrimRight(B[I])) OnlyBlanks = false;
  }
  if (OnlyBlanks) return "text differs only in line ends and trailing blanks";
  return "text comes back different from line " + std::to_string(Line);
}

// Messages may quote bytes of a damaged file; control characters would upset a terminal.
std::string Printable(std::string_view Text) {
  std::string Result(Text);
  for (char& C : Result)
    if (static_cast<unsigned char>(C) < 32 || C == 127) C = '?';
  return Result;
}

// What converting a text back without the original stream would change.
std::string TypesNote(std::string_view Stream, std::string_view Plain, std::size_t HeaderSize) {
  std::size_t I = 0;
  while (I < Stream.size() && I < Plain.size() && Stream[I] == Plain[I]) ++I;
  return "; but its text alone gives some values other types (first at byte " + std::to_string(I + HeaderSize) +
         ")";
}

class TConvertRun {
public:
  TConvertRun(const TOptions& O, TConvertConsole& C) : FOptions(O), FConsole(C) {}

  int Execute();

private:
  void Error(const std::string& Message);
  void Note(const std::string& Message);
  void ClearProgress();
  void ShowProgress(std::size_t Index, const std::string& Shown);

  void AddArgument(const std::string& Name);
  void AddFolder(const fs::path& Folder, const std::string& Shown);
  bool NameMatches(const fs::path& Path) const;

  fs::path OutputPathFor(const TInput& Input, const TTarget& Target) const;
  void ConvertOne(const TInput& Input, const TTarget& Target);
  void ConvertFile(const std::string& Shown, const fs::path& InputPath, TFormFile& File, const fs::path& OutPath,
                   const TTarget& Target, bool ToStdout, bool MakeFolder);
  void CheckOne(const TInput& Input);
  void CheckFile(const std::string& Shown, TFormFile& File);
  void ReportCheck(const std::string& Shown, const std::string& Verdict, bool Failed);
  void ListOne(const TInput& Input);
  void ListForm(const std::string& Shown, std::string_view Stream);

  // Programs: their forms are converted, checked and listed one by one, as PROGRAM:NAME.
  void ConvertProgram(const TInput& Input, std::string_view Image, const TTarget& Target, bool ToStdout);
  TPeImage ReadProgram(const TInput& Input, std::string_view Image);
  // The form named by the input, or every form; a program without forms is reported.
  std::vector<const TPeResource*> ProgramForms(const TInput& Input, const TPeImage& Program);
  fs::path ProgramFormPath(const TInput& Input, const TPeResource& Form) const;
  // A form name after a file that is no program is an error.
  void RefuseFormName(const TInput& Input) const;

  const TOptions& FOptions;
  TConvertConsole& FConsole;
  std::vector<TInput> FInputs;
  std::set<std::string> FSeen;                    // inputs already listed, by canonical path
  std::map<std::string, std::string> FWritten;    // outputs of this run -> their input
  bool FOutputIsFolder = false;
  bool FProgress = false;
  bool FProgressShown = false;
  std::size_t FTotal = 0;

  int FFailed = 0;
  int FConverted = 0;
  int FAlready = 0;
  int FNotForms = 0;
  int FChecked = 0;
  int FTextChanged = 0;
  int FCheckedOk = 0;
  int FTypesDiffer = 0;
  int FNoForms = 0;  // programs without forms
  bool FSeveralOutputs = false;  // a program gave several forms: the run ends with a summary
  int FListed = 0;
  int FListErrors = 0;  // failures before any file was read: missing names, unreadable lists and folders
};

void TConvertRun::ClearProgress() {
  if (FProgressShown) {
    FConsole.Err << "\r\033[K" << std::flush;
    FProgressShown = false;
  }
}

void TConvertRun::ShowProgress(std::size_t Index, const std::string& Shown) {
  if (!FProgress) return;
  std::string Name = Shown;
  constexpr std::size_t MaxName = 60;
  if (Name.size() > MaxName) Name = "..." + Name.substr(Name.size() - (MaxName - 3));
  FConsole.Err << "\r\033[K[" << Index + 1 << "/" << FTotal << "] " << Name << std::flush;
  FProgressShown = true;
}

void TConvertRun::Error(const std::string& Message) {
  ClearProgress();
  FConsole.Err << ToolName << ": " << Printable(Message) << '\n';
  ++FFailed;
}

void TConvertRun::Note(const std::string& Message) {
  ClearProgress();
  FConsole.Err << ToolName << ": " << Printable(Message) << '\n';
}

bool TConvertRun::NameMatches(const fs::path& Path) const {
  const std::string Name = Path.filename().string();
  for (const auto& Ext : FOptions.Extensions)
    if (Ext == "*" || EndsWithNoCase(Name, Ext)) return true;
  return false;
}

void TConvertRun::AddFolder(const fs::path& Folder, const std::string& Shown) {
  // Our own walk rather than a recursive iterator, so that an unreadable sub-folder is
  // reported and the rest still gets searched; symbolic links to folders are not followed.
  std::vector<TInput> Found;
  std::vector<fs::path> Pending{Folder};
  while (!Pending.empty()) {
    const fs::path Current = Pending.back();
    Pending.pop_back();
    const std::string CurrentShown =
        Current == Folder ? Shown : (fs::path(Shown) / Current.lexically_relative(Folder)).string();
    std::error_code Ec;
    fs::directory_iterator It(Current, Ec), End;
    if (Ec) {
      Error(CurrentShown + ": cannot read folder: " + Ec.message());
      continue;
    }
    for (; It != End; It.increment(Ec)) {
      const fs::path P = It->path();
      if (P.filename().string().starts_with(".")) continue;
      std::error_code StEc;
      const auto LinkStatus = It->symlink_status(StEc);
      if (fs::is_directory(LinkStatus)) {
        Pending.push_back(P);
      } else if (NameMatches(P) && fs::is_regular_file(fs::status(P, StEc))) {
        Found.push_back({P, (fs::path(Shown) / P.lexically_relative(Folder)).string(), Folder, true, {}});
      }
    }
    if (Ec) Error(CurrentShown + ": cannot read folder: " + Ec.message());
  }
  std::sort(Found.begin(), Found.end(), [](const TInput& A, const TInput& B) { return A.Shown < B.Shown; });
  for (auto& Input : Found) {
    std::error_code Ec;
    const std::string Key = fs::weakly_canonical(Input.Path, Ec).string();
    if (FSeen.insert(Ec ? Input.Path.string() : Key).second) FInputs.push_back(std::move(Input));
  }
}

void TConvertRun::AddArgument(const std::string& Name) {
  std::error_code Ec;
  if (const TFormFileName Split = SplitProgramFormName(Name); !Split.Form.empty()) {
    const fs::file_status Status = fs::status(Split.File, Ec);
    if (!fs::is_regular_file(Status)) {
      Error(Split.File + (fs::is_directory(Status) ? ": is a folder, not a program" : ": not a regular file"));
      return;
    }
    const std::string Key = fs::weakly_canonical(Split.File, Ec).string();
    if (FSeen.insert((Ec ? Split.File : Key) + ":" + UpperCase(Split.Form)).second)
      FInputs.push_back({Split.File, Split.File, {}, false, Split.Form});
    return;
  }
  const fs::path Path(Name);
  const fs::file_status Status = fs::status(Path, Ec);
  if (Ec && Ec != std::errc::no_such_file_or_directory) {
    Error(Name + ": " + Ec.message());
    return;
  }
  if (!fs::exists(Status)) {
    Error(Name + ": no such file or folder");
    return;
  }
  if (fs::is_directory(Status)) {
    if (!FOptions.Recurse) {
      Error(Name + ": is a folder; use -s to convert the forms in it");
      return;
    }
    AddFolder(Path, Name);
    return;
  }
  if (!fs::is_regular_file(Status)) {
    Error(Name + ": not a regular file");
    return;
  }
  const std::string Key = fs::weakly_canonical(Path, Ec).string();
  if (FSeen.insert(Ec ? Name : Key).second) FInputs.push_back({Path, Name, {}, false, {}});
}

fs::path TConvertRun::OutputPathFor(const TInput& Input, const TTarget& Target) const {
  if (FOptions.InPlace) {
    std::error_code Ec;
    const fs::path Real = fs::canonical(Input.Path, Ec);  // replace the file a link points to, not the link
    return Ec ? Input.Path : Real;
  }
  if (!FOptions.Output) return DefaultOutputPath(Input.Path, Target);
  if (!FOutputIsFolder) return fs::path(*FOptions.Output);
  const fs::path Folder(*FOptions.Output);
  if (Input.FromFolder) return Folder / Input.Path.lexically_relative(Input.Base);
  return Folder / Input.Path.filename();
}

void TConvertRun::ConvertOne(const TInput& Input, const TTarget& Target) {
  const bool ToStdout = FOptions.Output && *FOptions.Output == "-" && !FOptions.InPlace;
  std::string Bytes = ReadInput(Input.Path, Input.Shown);
  if (IsPeImage(Bytes)) {
    ConvertProgram(Input, Bytes, Target, ToStdout);
    return;
  }
  RefuseFormName(Input);
  TFormFile File(std::move(Bytes));
  if (File.Format() == TFormFileFormat::Unknown) {
    if (Input.FromFolder) {
      ++FNotForms;
      if (FOptions.Verbose) Note(Input.Shown + ": not a form file, passed over");
      return;
    }
    throw EFileProblem(Input.Shown + ": not a form file (neither a binary form nor form text)");
  }
  ConvertFile(Input.Shown, Input.Path, File, ToStdout ? fs::path() : OutputPathFor(Input, Target), Target, ToStdout,
              FOutputIsFolder);
}

void TConvertRun::ConvertProgram(const TInput& Input, std::string_view Image, const TTarget& Target, bool ToStdout) {
  if (FOptions.InPlace)
    throw EFileProblem(Input.Shown + ": a program is never replaced; without -i its forms go to " + Input.Shown +
                       ".forms");
  const TPeImage Program = ReadProgram(Input, Image);
  const std::vector<const TPeResource*> Forms = ProgramForms(Input, Program);
  FSeveralOutputs = FSeveralOutputs || Forms.size() > 1;
  if (Forms.empty()) return;
  if (ToStdout && Target.IsBinary && Forms.size() > 1)
    throw EFileProblem(Input.Shown + ": holds " + std::to_string(Forms.size()) +
                       " forms; binary goes to standard output one form at a time (name it as " + Input.Shown +
                       ":NAME)");
  // Every form of a program goes into a folder; -o may name one that does not exist yet.
  const bool WholeProgram = Input.Form.empty();
  if (!ToStdout && FOptions.Output && !FOutputIsFolder && WholeProgram) {
    std::error_code Ec;
    if (fs::exists(*FOptions.Output, Ec) && !fs::is_directory(*FOptions.Output, Ec))
      throw EFileProblem(*FOptions.Output + ": not a folder (-o names a folder for the forms of a program)");
  }
  for (const TPeResource* Form : Forms) {
    const std::string Shown = Input.Shown + ":" + Form->Name.Text();
    try {
      TFormFile File{std::string(Form->Bytes())};
      ConvertFile(Shown, Input.Path, File, ToStdout ? fs::path() : ProgramFormPath(Input, *Form), Target, ToStdout,
                  FOutputIsFolder || !FOptions.Output || WholeProgram);
    } catch (const EFileProblem& E) {
      Error(E.what());
    } catch (const std::exception& E) {
      Error(Shown + ": " + ErrorText(E));
    }
  }
}

TPeImage TConvertRun::ReadProgram(const TInput& Input, std::string_view Image) {
  try {
    return TPeImage(Image);
  } catch (const Exception& E) {
    throw EFileProblem(Input.Shown + ": " + E.Message());
  }
}

std::vector<const TPeResource*> TConvertRun::ProgramForms(const TInput& Input, const TPeImage& Program) {
  if (!Input.Form.empty()) {
    try {
      return {&Program.Form(Input.Form)};
    } catch (const EPeImageError& E) {
      throw EFileProblem(Input.Shown + ": " + E.Message());
    }
  }
  std::vector<const TPeResource*> Forms = Program.Forms();
  if (Forms.empty()) {
    ++FNoForms;
    Note(Input.Shown + ": a program without forms, skipped");
  }
  return Forms;
}

void TConvertRun::RefuseFormName(const TInput& Input) const {
  if (!Input.Form.empty())
    throw EFileProblem(Input.Shown + ": not a Windows program (.exe, .dll, .bpl), so it holds no form named " +
                       Input.Form);
}

fs::path TConvertRun::ProgramFormPath(const TInput& Input, const TPeResource& Form) const {
  const std::string Name = FormFileName(Form.Name);
  if (!FOptions.Output) return fs::path(Input.Path.string() + ".forms") / Name;
  const fs::path Out(*FOptions.Output);
  if (!FOutputIsFolder && !Input.Form.empty()) return Out;
  if (Input.FromFolder) return Out / (Input.Path.lexically_relative(Input.Base).string() + ".forms") / Name;
  return Out / Name;
}

void TConvertRun::ConvertFile(const std::string& Shown, const fs::path& InputPath, TFormFile& File,
                              const fs::path& OutPath, const TTarget& Target, bool ToStdout, bool MakeFolder) {
  const TFormFileFormat Format = File.Format();
  if (!ToStdout) {
    std::error_code Ec;
    const bool SameAsInput = fs::exists(OutPath, Ec) && fs::equivalent(OutPath, InputPath, Ec);
    if (SameAsInput && !FOptions.InPlace)
      throw EFileProblem(OutPath.string() + ": is the input itself; use -i to convert in place");
    const auto Written = FWritten.find(fs::absolute(OutPath, Ec).lexically_normal().string());
    if (Written != FWritten.end())
      throw EFileProblem(OutPath.string() + ": already written from " + Written->second + " in this run");
    const fs::file_status OutStatus = fs::symlink_status(OutPath, Ec);
    if (fs::is_directory(OutStatus)) throw EFileProblem(OutPath.string() + ": is a folder");
    if (fs::exists(OutStatus) && !FOptions.Force && !FOptions.InPlace)
      throw EFileProblem(OutPath.string() + ": exists; use -f to replace it");
  }

  std::optional<std::string> Result;
  try {
    Result = Target.Convert(File);
  } catch (const std::exception& E) {
    throw EFileProblem(Shown + ": " + ErrorText(E));
  }
  if (!Result) {
    ++FAlready;
    Note(Shown + ": " + std::string(AlreadyText(Format)) + ", skipped");
    return;
  }
  File = TFormFile();  // the input's memory goes before the output is written

  if (ToStdout) {
    FConsole.Out.write(Result->data(), static_cast<std::streamsize>(Result->size()));
    FConsole.Out.flush();
    if (!FConsole.Out) throw EFileProblem("cannot write to standard output");
    ++FConverted;
    return;
  }

  std::error_code Ec;
  if (MakeFolder && OutPath.has_parent_path()) {
    fs::create_directories(OutPath.parent_path(), Ec);
    if (Ec) throw EFileProblem(OutPath.parent_path().string() + ": cannot create folder: " + Ec.message());
  }
  // A replaced output keeps the permissions it had.
  WriteOutput(OutPath, *Result, FOptions.InPlace || FOptions.Force);
  FWritten[fs::absolute(OutPath, Ec).lexically_normal().string()] = Shown;
  ++FConverted;
  if (FOptions.Verbose) Note(Shown + " -> " + OutPath.string());
}

void TConvertRun::CheckOne(const TInput& Input) {
  std::string Bytes = ReadInput(Input.Path, Input.Shown);
  if (IsPeImage(Bytes)) {
    const TPeImage Program = ReadProgram(Input, Bytes);
    for (const TPeResource* Form : ProgramForms(Input, Program)) {
      const std::string Shown = Input.Shown + ":" + Form->Name.Text();
      if (Form->Damaged()) {
        ++FChecked;
        ReportCheck(Shown, "FAILED: " + Form->DamageText(), true);
        continue;
      }
      TFormFile File{std::string(Form->Data)};
      CheckFile(Shown, File);
    }
    return;
  }
  RefuseFormName(Input);
  TFormFile File(std::move(Bytes));
  if (File.Format() == TFormFileFormat::Unknown && Input.FromFolder) {
    ++FNotForms;
    if (FOptions.Verbose) Note(Input.Shown + ": not a form file, passed over");
    return;
  }
  CheckFile(Input.Shown, File);
}

void TConvertRun::ReportCheck(const std::string& Shown, const std::string& Verdict, bool Failed) {
  ClearProgress();
  FConsole.Out << Printable(Shown + ": " + Verdict) << '\n';
  if (Failed)
    ++FFailed;
  else
    ++FCheckedOk;
}

void TConvertRun::ListOne(const TInput& Input) {
  std::string Bytes = ReadInput(Input.Path, Input.Shown);
  if (IsPeImage(Bytes)) {
    const TPeImage Program = ReadProgram(Input, Bytes);
    for (const TPeResource* Form : ProgramForms(Input, Program)) {
      const std::string Shown = Input.Shown + ":" + Form->Name.Text();
      if (Form->Damaged())
        Error(Shown + ": " + Form->DamageText());
      else
        ListForm(Shown, Form->Data);
    }
    return;
  }
  RefuseFormName(Input);
  TFormFile File(std::move(Bytes));
  if (File.Format() == TFormFileFormat::Unknown) {
    if (Input.FromFolder) {
      ++FNotForms;
      if (FOptions.Verbose) Note(Input.Shown + ": neither a program nor a form file, passed over");
      return;
    }
    throw EFileProblem(Input.Shown + ": neither a Windows program nor a form file");
  }
  ListForm(Input.Shown, File.Stream());
}

void TConvertRun::ListForm(const std::string& Shown, std::string_view Stream) {
  TStreamRoot Root;
  try {
    Root = StreamRoot(Stream);
  } catch (const std::exception& E) {
    Error(Shown + ": " + ErrorText(E));
    return;
  }
  ClearProgress();
  FConsole.Out << Printable(Shown + "  " + Root.Name + ": " + Root.ClassName + "  " + std::to_string(Stream.size()) +
                            " bytes")
               << '\n';
  ++FListed;
}

void TConvertRun::CheckFile(const std::string& Shown, TFormFile& File) {
  const std::string& Data = File.Bytes();
  const TFormFileFormat Format = File.Format();
  ++FChecked;
  std::string Verdict;
  bool Failed = true;
  try {
    switch (Format) {
      case TFormFileFormat::Unknown:
        Verdict = "FAILED: not a form file (neither a binary form nor form text)";
        break;
      case TFormFileFormat::Resource:
      case TFormFileFormat::Stream: {
        // The text does not tell every value type apart (an integral float reads back as an
        // integer, an empty wide string as a short one); the check asks whether the text
        // keeps every value, so its way back may take the types from the original stream.
        // Whether the text alone gives the same types is reported beside it.
        const bool IsResource = Format == TFormFileFormat::Resource;
        const std::string_view Stream = File.Stream();
        const std::string Text = ObjectBinaryToText(Stream);
        const std::string Kept = ObjectTextToBinary(Text, Stream);
        const std::string Again =
            IsResource ? MakeResHeader(StreamRootClassName(Kept), static_cast<std::uint32_t>(Kept.size())) + Kept
                       : Kept;
        if (Again != Data) {
          Verdict = "FAILED: binary -> text -> binary " + DescribeBinaryDifference(Data, Again);
          break;
        }
        Verdict = "ok";
        Failed = false;
        const std::string Plain = ObjectTextToBinary(Text);
        if (Plain != Stream) {
          Verdict += TypesNote(Stream, Plain, IsResource ? Data.size() - Stream.size() : 0);
          ++FTypesDiffer;
        }
        break;
      }
      case TFormFileFormat::Text: {
        const std::string Binary = ObjectTextToBinary(Data);
        const std::string Text = ObjectBinaryToText(Binary);
        const std::string Again = ObjectTextToBinary(Text, Binary);
        if (Again != Binary) {
          Verdict = "FAILED: text -> binary -> text -> binary " + DescribeBinaryDifference(Binary, Again);
          break;
        }
        Failed = false;
        if (Text == Data) {
          Verdict = "ok";
        } else {
          Verdict = "ok, binary stable; " + DescribeTextDifference(Data, Text);
          ++FTextChanged;
        }
        const std::string Plain = ObjectTextToBinary(Text);
        if (Plain != Binary) {
          Verdict += TypesNote(Binary, Plain, 0);
          ++FTypesDiffer;
        }
        break;
      }
    }
  } catch (const std::exception& E) {
    Verdict = "FAILED: " + ErrorText(E);
  }
  ReportCheck(Shown, Verdict, Failed);
}

std::string Plural(int N, std::string_view One, std::string_view Many) {
  return std::to_string(N) + " " + std::string(N == 1 ? One : Many);
}

int TConvertRun::Execute() {
  for (const auto& Argument : FOptions.Inputs) {
    if (!Argument.IsList) {
      AddArgument(Argument.Name);
      continue;
    }
    std::string List;
    try {
      List = ReadInput(Argument.Name, Argument.Name);
    } catch (const EFileProblem& E) {
      Error(std::string("list file ") + E.what());
      continue;
    }
    for (std::string_view Line : SplitLines(List)) {
      const std::string Name = Trim(Line);
      if (!Name.empty()) AddArgument(Name);
    }
  }

  FListErrors = FFailed;

  const bool SeveralInputs =
      FInputs.size() > 1 ||
      std::any_of(FOptions.Inputs.begin(), FOptions.Inputs.end(), [](const TArgument& A) { return A.IsList; }) ||
      std::any_of(FInputs.begin(), FInputs.end(), [](const TInput& I) { return I.FromFolder; });
  if (FOptions.Output && *FOptions.Output != "-") {
    std::error_code Ec;
    const fs::path Out(*FOptions.Output);
    const bool NamesFolder = fs::is_directory(Out, Ec) || FOptions.Output->ends_with('/');
    FOutputIsFolder = NamesFolder || SeveralInputs;
    if (FOutputIsFolder && fs::exists(Out, Ec) && !fs::is_directory(Out, Ec)) {
      Error(*FOptions.Output + ": not a folder (-o names a folder when there are several inputs)");
      return ConvertExitFailed;
    }
  }

  if (FInputs.empty() && FFailed == 0 && FOptions.Action != TAction::Check) Note("no form files found");

  FTotal = FInputs.size();
  const bool DataOnTerminal = FOptions.Output && *FOptions.Output == "-" && FConsole.OutIsTerminal;
  FProgress = FConsole.ErrIsTerminal && FTotal > 1 && !DataOnTerminal;

  const TTarget& Target = FOptions.Action == TAction::ToText ? TextTarget : (FOptions.Raw ? RawTarget : BinaryTarget);
  for (std::size_t I = 0; I < FInputs.size(); ++I) {
    ShowProgress(I, FInputs[I].Shown);
    try {
      if (FOptions.Action == TAction::Check)
        CheckOne(FInputs[I]);
      else if (FOptions.Action == TAction::List)
        ListOne(FInputs[I]);
      else
        ConvertOne(FInputs[I], Target);
    } catch (const EFileProblem& E) {
      Error(E.what());
    } catch (const std::exception& E) {
      Error(FInputs[I].Shown + ": " + ErrorText(E));
    }
  }
  ClearProgress();

  const std::string NotForms =
      FNotForms ? "; " + Plural(FNotForms, "file was not a form", "files were not forms") : "";
  const std::string NoForms =
      FNoForms ? "; " + Plural(FNoForms, "program without forms", "programs without forms") : "";
  const int Other = FListErrors;  // names that could not even be listed
  if (FOptions.Action == TAction::List) {
    if (FTotal + static_cast<std::size_t>(Other) > 1 || FNotForms || FNoForms || FListed > 1)
      FConsole.Err << "Listed " << Plural(FListed, "form", "forms") << ", " << FFailed << " failed" << NotForms
                   << NoForms << ".\n";
  } else if (FOptions.Action == TAction::Check) {
    std::string Summary = "Checked " + Plural(FChecked, "file", "files") + ": " + std::to_string(FCheckedOk) +
                          " ok, " + std::to_string(FChecked - FCheckedOk) + " failed";
    // Names that could not be found or read are failures too, outside the files checked.
    const int Unchecked = FFailed - (FChecked - FCheckedOk);
    if (Unchecked) Summary += "; " + Plural(Unchecked, "other error", "other errors");
    if (FTextChanged) Summary += "; " + Plural(FTextChanged, "text comes", "texts come") + " back as different text";
    if (FTypesDiffer)
      Summary += "; " + Plural(FTypesDiffer, "file's text gives", "files' texts give") + " other value types alone";
    FConsole.Out << Summary << NotForms << NoForms << ".\n";
  } else if (FTotal + static_cast<std::size_t>(Other) > 1 || FNotForms || FNoForms || FSeveralOutputs) {
    std::string Summary = "Converted " + Plural(FConverted, "file", "files");
    if (FAlready) Summary += ", " + std::to_string(FAlready) + " already in the requested format";
    Summary += ", " + std::to_string(FFailed) + " failed" + NotForms + NoForms + ".";
    FConsole.Err << Summary << '\n';
  }
  FConsole.Out.flush();
  FConsole.Err.flush();
  return FFailed ? ConvertExitFailed : ConvertExitOk;
}

}  // namespace

void InstallConvertInterruptCleanup() {
  for (const int Signal : {SIGINT, SIGTERM, SIGHUP}) ::signal(Signal, RemoveTempAndDie);
}

int RunConvertTool(const std::vector<std::string>& Args, TConvertConsole& Console) {
  TOptions O;
  try {
    ParseArguments(Args, O);
    if (O.Help) {
      PrintHelp(Console.Out);
      return ConvertExitOk;
    }
    if (O.Version) {
      Console.Out << ToolName << " " << LUMORA_VERSION << '\n';
      return ConvertExitOk;
    }
    if (O.Action == TAction::None)
      throw EUsage("say what to do: -t (to text), -b (to binary), --check or --list");
    if (O.Inputs.empty()) throw EUsage("no files given");
    if (O.InPlace && O.Output) throw EUsage("-i and -o do not go together");
    if (O.Raw && O.Action != TAction::ToBinary) throw EUsage("--raw goes with -b only");
    if (O.Action == TAction::Check && (O.Output || O.InPlace || O.Force))
      throw EUsage("--check writes no files; -o, -i and -f do not apply");
    if (O.Action == TAction::List && (O.Output || O.InPlace || O.Force))
      throw EUsage("--list writes no files; -o, -i and -f do not apply");
    if (O.Action == TAction::ToBinary && O.Output && *O.Output == "-" && Console.OutIsTerminal)
      throw EUsage("binary data is not written to a terminal; redirect standard output or use -o FILE");
  } catch (const EUsage& E) {
    Console.Err << ToolName << ": " << E.what() << "\nTry '" << ToolName << " --help' for more information.\n";
    Console.Err.flush();
    return ConvertExitUsage;
  }
  TConvertRun Run(O, Console);
  return Run.Execute();
}
