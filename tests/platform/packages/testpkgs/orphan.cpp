// A package that requires a package nobody built.
#include "platform/packages/PackageDecl.h"

LUMORA_PACKAGE("Test orphan package", LUMORA_REQUIRES("tpk_absent") LUMORA_CONTAINS("OrphanReg"))

LUMORA_UNIT_REGISTER(Orphanreg) {}
