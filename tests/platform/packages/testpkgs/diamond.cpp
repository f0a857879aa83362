// The top of the diamond: requires both sides, which both require the base.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test diamond package",
               LUMORA_REQUIRES("tpk_left") LUMORA_REQUIRES("tpk_right") LUMORA_CONTAINS("DiamondReg"))

TPKG_CLASS(TPkgDiamond)

LUMORA_UNIT_REGISTER(Diamondreg) { RegisterComponents("Test", {TPkgDiamond::StaticClass()}); }
