// The report package's Register unit.
#include "packages/dclqrt/DclQrt.h"
#include "platform/packages/PackageDecl.h"

LUMORA_UNIT_REGISTER(Qrreg) { RegisterQrClasses(); }
