#pragma once
// What a design package's source writes. A package is a folder under packages/ with a
// short CMakeLists.txt and a few source files:
//
//   # packages/dclmine/CMakeLists.txt
//   lumora_add_package(dclmine SOURCES Package.cpp MineReg.cpp DEPS lumora_vcl)
//
//   // packages/dclmine/Package.cpp: the package's declaration, once per package
//   #include "platform/packages/PackageDecl.h"
//   LUMORA_PACKAGE("My components",            // the description the packages dialog shows
//                  LUMORA_REQUIRES("dclstd")   // packages it needs loaded first, in order
//                  LUMORA_CONTAINS("MineReg")) // its units, in the order they register
//
//   // packages/dclmine/MineReg.cpp: a unit and its Register procedure
//   #include "platform/packages/PackageDecl.h"
//   LUMORA_UNIT_REGISTER(Minereg) {             // the unit name: first letter upper, rest lower
//     RegisterComponents("Mine", {TMyButton::StaticClass(), TMyLabel::StaticClass()});
//   }
//
// The declaration goes into the library's section ".lumora_package", so that the
// package's description and contents can be read from the file without running it. The
// Register procedure is exported under the name RegisterProcName("MineReg") gives
// (Lumora_Minereg_Register): the loader finds it from the unit name. A unit without one
// is listed and skipped. Pieces are written one after the other, without commas.

#include "platform/packages/Packages.h"

namespace lumora_package_detail {
// Whether a unit name is written as its Register procedure is found: first letter not in
// lower case, no upper-case letter after it.
constexpr bool IsRegisterUnitName(const char* name) {
  if (!name[0] || (name[0] >= 'a' && name[0] <= 'z')) return false;
  for (const char* p = name + 1; *p; ++p)
    if (*p >= 'A' && *p <= 'Z') return false;
  return true;
}
}  // namespace lumora_package_detail

// The mark that opens a package's declaration (checked by the readers of package files).
#define LUMORA_PACKAGE_MAGIC "LUMORA-PACKAGE-1"

#define LUMORA_PACKAGE(description, ...)                                                      \
  extern "C" __attribute__((visibility("default"), used, section(".lumora_package")))         \
  const char lumora_package_info[] = LUMORA_PACKAGE_MAGIC "\0" "D" description "\0" __VA_ARGS__;

#define LUMORA_REQUIRES(package) "R" package "\0"
#define LUMORA_CONTAINS(unit) "U" unit "\0"

#define LUMORA_UNIT_REGISTER(Unit)                                                            \
  static_assert(::lumora_package_detail::IsRegisterUnitName(#Unit),                          \
                "write the unit name with its first letter in upper case and the rest in lower case"); \
  extern "C" __attribute__((visibility("default"))) void Lumora_##Unit##_Register()
