#pragma once
// What the tests of the data and report packages share: their classes registered
// directly (as the loader would, through the registration hooks), corpus forms read
// into a form and drawn.

#include "platform/vcl/FormRender.h"

#include <filesystem>
#include <string>

namespace lumora::test {

// Loads the standard package for the controls' classes and registers those of the data
// package (and of the report package when `reports`) through the hooks a package's
// Register procedure uses.
void RegisterPackageClassesForTest(bool reports);

// A corpus form read into a new form (errors accepted and listed); the caller frees it.
TCustomForm* ReadCorpusForm(const std::filesystem::path& path, TFormLoadResult* result = nullptr);

}  // namespace lumora::test
