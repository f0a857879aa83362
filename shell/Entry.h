#pragma once
// The entry of the program, in the library so that tests run it as the program does.

#include <functional>

// Runs Lumora with the command line given; the exit status. Started, when given, runs once
// the main window is made, before the message loop (tests drive the program from there).
//   lumora [FILE]          the banner, FILE opened once the program is idle
//   lumora --relay FILE    FILE handed to the running Lumora of this session
//   lumora --help | --version
int LumoraMain(int argc, char** argv, const std::function<void()>& Started = {});
