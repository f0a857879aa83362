// The data package's Register unit.
#include "packages/dcldb/DclDb.h"
#include "platform/packages/PackageDecl.h"

LUMORA_UNIT_REGISTER(Dbreg) { RegisterDbClasses(); }
