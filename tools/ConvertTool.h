#pragma once
// lumora-convert: converts Delphi form files between the binary form and form text, and
// checks that files survive the round trip. The whole tool is this one function so that
// tests can run it in-process; main.cpp only hands it the command line and the console.

#include <iosfwd>
#include <string>
#include <vector>

// Where the tool writes, and whether those are terminals (a progress line is shown on a
// terminal only; binary data is never written to one).
struct TConvertConsole {
  std::ostream& Out;
  std::ostream& Err;
  bool OutIsTerminal = false;
  bool ErrIsTerminal = false;
};

// Exit statuses.
constexpr int ConvertExitOk = 0;      // every file converted, skipped as already done, or checked fine
constexpr int ConvertExitFailed = 1;  // at least one file failed
constexpr int ConvertExitUsage = 2;   // the command line itself is wrong

// Makes an interrupt (Ctrl+C, SIGTERM, SIGHUP) remove the temporary file being written
// before the program ends. For the program's main only.
void InstallConvertInterruptCleanup();

// Runs the tool on the arguments that follow the program name.
int RunConvertTool(const std::vector<std::string>& Args, TConvertConsole& Console);
