// The other side of the diamond: requires the base too.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test right package", LUMORA_REQUIRES("tpk_base") LUMORA_CONTAINS("RightReg"))

TPKG_CLASS(TPkgRight)

LUMORA_UNIT_REGISTER(Rightreg) { RegisterNonActiveX({TPkgRight::StaticClass()}, axrComponentOnly); }
