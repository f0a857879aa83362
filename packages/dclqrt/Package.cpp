// The report package: reports, bands and printable controls.
#include "platform/packages/PackageDecl.h"

LUMORA_PACKAGE("Report Components", LUMORA_REQUIRES("dcldb") LUMORA_CONTAINS("QRReg"))
