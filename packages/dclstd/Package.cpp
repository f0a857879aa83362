#include "platform/packages/PackageDecl.h"

LUMORA_PACKAGE("Lumora standard components", LUMORA_CONTAINS("StdReg"))
