// A package whose Register procedure fails half-way: the first class is registered, the
// error reaches whoever called it.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test failing package", LUMORA_CONTAINS("FailReg"))

TPKG_CLASS(TPkgFailing)

LUMORA_UNIT_REGISTER(Failreg) {
  RegisterComponents("Test", {TPkgFailing::StaticClass()});
  throw EComponentError("The failing package refuses to register");
}
