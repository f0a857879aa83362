#include "tests/packages/PackageTestUtil.h"

#include "packages/dcldb/DclDb.h"
#include "packages/dclqrt/DclQrt.h"
#include "platform/packages/Packages.h"
#include "platform/vcl/VclClasses.h"
#include "tests/support/Corpus.h"

namespace lumora::test {

void RegisterPackageClassesForTest(bool reports) {
  Application->Initialize();
  RegisterVclClasses();
  RegisterComponentsProc = [](const std::string&, const TComponentClasses& classes) {
    for (TClass cls : classes) RegisterClass(cls);
  };
  RegisterNoIconProc = [](const TComponentClasses& classes) {
    for (TClass cls : classes) RegisterClass(cls);
  };
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
