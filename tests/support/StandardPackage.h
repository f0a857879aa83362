#pragma once
// Tests that read forms need the controls' classes, which only design packages register:
// this loads the standard package (build/packages/dclstd.so) through the package runtime
// and calls its Register procedures, once per test program. The package stays loaded.

namespace lumora::test {
// Loads and registers the standard package (again after UnloadStandardPackage).
void LoadStandardPackage();
// Unloads it: its classes leave the registry.
void UnloadStandardPackage();
}  // namespace lumora::test

// The name the tests of the controls used before the classes moved into the package.
inline void RegisterVclClasses() { lumora::test::LoadStandardPackage(); }
