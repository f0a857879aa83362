#pragma once
// Every class of the report package, and a way to register them all at once (the
// package's Register procedure does it through the loader's hooks).

#include "packages/dcldb/DclDb.h"

// The report package's classes as it registers them.
std::vector<TPalettePage> QrPalette();

// Hands every class to RegisterComponents / RegisterNoIcon.
void RegisterQrClasses();
