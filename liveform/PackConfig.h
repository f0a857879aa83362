#pragma once
// The process's single package loader and the entry points around it: made on first use,
// its list read from the program's INI file before a live form needs its classes, and
// written back at program end when it changed.

#include "liveform/PackLoad.h"

#include <string>

// The loader, made on first call.
TjoPackageLoaderSR* Loader();
bool LoaderExists();
// Reads the package list (and loads the packages marked loaded) unless the loader holds
// packages already; the hourglass shows meanwhile.
void EnsurePackagesLoaded();
// Writes the list when the loader exists and changed; then it counts as unchanged.
void SavePackages(const std::string& iniFileName, const std::string& section);

// The INI file and section EnsurePackagesLoaded and FinalizePackConfig use: by default
// the program's own INI file (see joResolveIniFileName) and "Packages".
void SetPackagesIniFile(const std::string& iniFileName, const std::string& section = "Packages");
std::string PackagesIniFileName();
std::string PackagesSection();

// The program's end: saves the list when it changed, then unloads every package and frees
// the loader. Tests call it to start again from nothing.
void FinalizePackConfig();
