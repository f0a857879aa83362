// A package with units whose Register procedures the loader must never call (DDEReg,
// DBExpt), beside one it calls.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test excluded units package",
               LUMORA_CONTAINS("DDEReg") LUMORA_CONTAINS("GoodReg") LUMORA_CONTAINS("DBExpt"))

TPKG_CLASS(TPkgDde)
TPKG_CLASS(TPkgGood)
TPKG_CLASS(TPkgExpert)

LUMORA_UNIT_REGISTER(Ddereg) { RegisterComponents("Test", {TPkgDde::StaticClass()}); }
LUMORA_UNIT_REGISTER(Goodreg) { RegisterComponents("Test", {TPkgGood::StaticClass()}); }
LUMORA_UNIT_REGISTER(Dbexpt) { RegisterComponents("Test", {TPkgExpert::StaticClass()}); }
