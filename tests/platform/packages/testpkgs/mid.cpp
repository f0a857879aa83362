// The middle of the chain: requires the base. Its Register notes the current folder, and
// registers a class of the platform that the base registers too.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

#include <unistd.h>

#include <cstdlib>

LUMORA_PACKAGE("Test middle package", LUMORA_REQUIRES("tpk_base") LUMORA_CONTAINS("MidReg"))

TPKG_CLASS(TPkgMid)

LUMORA_UNIT_REGISTER(Midreg) {
  char folder[4096];
  if (getcwd(folder, sizeof folder)) setenv("TPK_MID_REGISTER_CWD", folder, 1);
  RegisterComponents("Test", {TPkgMid::StaticClass(), TStringList::StaticClass()});
}
