#include "tools/ConvertTool.h"

#include <unistd.h>

#include <iostream>

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  InstallConvertInterruptCleanup();
  const std::vector<std::string> Args(argv + 1, argv + argc);
  TConvertConsole Console{std::cout, std::cerr, ::isatty(STDOUT_FILENO) == 1, ::isatty(STDERR_FILENO) == 1};
  return RunConvertTool(Args, Console);
}
