// The bottom of the chain and of the diamond; it also registers a class of the platform.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

#include <cstdlib>

LUMORA_PACKAGE("Test base package", LUMORA_CONTAINS("BaseReg"))

TPKG_CLASS(TPkgBase)

namespace {
// Initialisation that a reader of the description must never run.
struct TMarkLoaded {
  TMarkLoaded() { setenv("TPK_BASE_INITIALISED", "1", 1); }
} gMarkLoaded;
}  // namespace

LUMORA_UNIT_REGISTER(Basereg) { RegisterComponents("Test", {TPkgBase::StaticClass(), TStringList::StaticClass()}); }
