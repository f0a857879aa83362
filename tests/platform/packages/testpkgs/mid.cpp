// The middle of the chain: requires the base.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test middle package", LUMORA_REQUIRES("tpk_base") LUMORA_CONTAINS("MidReg"))

TPKG_CLASS(TPkgMid)

LUMORA_UNIT_REGISTER(Midreg) { RegisterComponents("Test", {TPkgMid::StaticClass()}); }
