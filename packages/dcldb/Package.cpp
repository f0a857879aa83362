// The data package: data access, fields, data controls and data set actions.
#include "platform/packages/PackageDecl.h"

LUMORA_PACKAGE("Data Access and Data Controls", LUMORA_CONTAINS("DBReg"))
