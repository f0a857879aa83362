// The top of the chain: requires the middle, which requires the base. Two units, the
// second without a Register procedure.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test top package", LUMORA_REQUIRES("tpk_mid") LUMORA_CONTAINS("TopReg") LUMORA_CONTAINS("TopUtils"))

TPKG_CLASS(TPkgTop)

LUMORA_UNIT_REGISTER(Topreg) {
  RegisterComponents("Test", {TPkgTop::StaticClass()});
  RegisterNoIcon({TPkgTop::StaticClass()});
}
