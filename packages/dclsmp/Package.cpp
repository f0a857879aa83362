#include "platform/packages/PackageDecl.h"

LUMORA_PACKAGE("Lumora sample components", LUMORA_CONTAINS("SmpReg"))
