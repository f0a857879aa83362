// One side of the diamond: requires the base.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test left package", LUMORA_REQUIRES("tpk_base") LUMORA_CONTAINS("LeftReg"))

TPKG_CLASS(TPkgLeft)

LUMORA_UNIT_REGISTER(Leftreg) { RegisterComponents("Test", {TPkgLeft::StaticClass()}); }
