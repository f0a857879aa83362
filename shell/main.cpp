// The program: starts Lumora with its banner (opening the file named first on the command
// line), or, with --relay, hands a file name to the Lumora already running.
#include "shell/Entry.h"

int main(int argc, char** argv) { return LumoraMain(argc, argv); }
