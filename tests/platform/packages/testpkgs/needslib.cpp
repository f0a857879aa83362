// A package linked against a library that is not there when it is loaded.
#include "platform/packages/PackageDecl.h"

int TpkGoneValue();

LUMORA_PACKAGE("Test package with a missing library", LUMORA_CONTAINS("NeedsReg"))

LUMORA_UNIT_REGISTER(Needsreg) { (void)TpkGoneValue(); }
