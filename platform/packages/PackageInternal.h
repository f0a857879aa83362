#pragma once
// Shared by the package runtime's sources.

#include "platform/packages/Packages.h"

#include <cstddef>

namespace packages_detail {
// The entries of a package declaration (LUMORA_PACKAGE); EPackageError when they do not
// start with the package mark or do not end.
TPackageDeclaration ParseDeclaration(const char* data, std::size_t size);
}  // namespace packages_detail
