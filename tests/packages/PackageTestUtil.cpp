#include "tests/packages/PackageTestUtil.h"

#include "packages/dcldb/DclDb.h"
#include "packages/dclqrt/DclQrt.h"
#include "platform/packages/Packages.h"
#include "tests/support/Corpus.h"
#include "tests/support/StandardPackage.h"

namespace lumora::test {

void RegisterPackageClassesForTest(bool reports) {
  Application->Initialize();
  // The standard package, loaded; its hooks register what the other packages hand them.
  LoadStandardPackage();
  RegisterDbClasses();
  if (reports) RegisterQrClasses();
}

TCustomForm* ReadCorpusForm(const std::filesystem::path& path, TFormLoadResult* result) {
  auto* form = new TForm(Application);
  const TFormLoadResult loaded = LoadFormFile(form, ReadFileBytes(path));
  if (result) *result = loaded;
  return form;
}

}  // namespace lumora::test
