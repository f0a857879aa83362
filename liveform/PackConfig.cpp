#include "liveform/PackConfig.h"

#include "foundation/joIniFile.h"
#include "platform/vcl/Forms.h"

#include <exception>

namespace {

TjoPackageLoaderSR* gLoader = nullptr;
std::string gIniFileName;
std::string gSection = "Packages";

// At exit without FinalizePackConfig, the list is still saved; the packages stay loaded
// while the process ends.
struct TSaveAtExit {
  ~TSaveAtExit() {
    try {
      if (gLoader) SavePackages(PackagesIniFileName(), PackagesSection());
    } catch (...) {
      // Nobody is left to tell at this point.
    }
  }
} gSaveAtExit;

}  // namespace

TjoPackageLoaderSR* Loader() {
  if (!gLoader) gLoader = new TjoPackageLoaderSR();
  return gLoader;
}

bool LoaderExists() { return gLoader != nullptr; }

void EnsurePackagesLoaded() {
  if (gLoader && gLoader->Count() > 0) return;
  const TCursor previous = Screen->Cursor();
  Screen->SetCursor(crHourGlass);
  try {
    Loader()->LoadFromIni(PackagesIniFileName(), PackagesSection());
  } catch (...) {
    Screen->SetCursor(previous);
    throw;
  }
  Screen->SetCursor(previous);
}

void SavePackages(const std::string& iniFileName, const std::string& section) {
  if (!gLoader || !gLoader->Dirty()) return;
  gLoader->SaveToIni(iniFileName, section);
  gLoader->SetDirty(false);
}

void SetPackagesIniFile(const std::string& iniFileName, const std::string& section) {
  gIniFileName = iniFileName;
  gSection = section;
}

std::string PackagesIniFileName() { return gIniFileName.empty() ? joResolveIniFileName("") : gIniFileName; }

std::string PackagesSection() { return gSection.empty() ? std::string("Packages") : gSection; }

void FinalizePackConfig() {
  if (!gLoader) return;
  std::exception_ptr error;
  try {
    SavePackages(PackagesIniFileName(), PackagesSection());
  } catch (...) {
    error = std::current_exception();  // a read-only INI file: said after the packages are unloaded
  }
  delete gLoader;
  gLoader = nullptr;
  if (error) std::rethrow_exception(error);
}
