#include "tests/support/StandardPackage.h"

#include "platform/packages/Packages.h"

#include <stdexcept>

namespace {

HMODULE gStandard = 0;

void RegisterFirstOfEachName(const TComponentClasses& classes) {
  for (TClass c : classes)
    if (!GetClass(c->ClassName())) RegisterClass(c);
}

void RegisterUnit(const std::string& name, TNameType type, std::uint8_t, void*) {
  if (type != ntContainsUnit) return;
  if (TRegisterProc proc = GetRegisterProc(gStandard, name)) {
    TModuleScope scope(gStandard);
    proc();
  }
}

}  // namespace

namespace lumora::test {

void LoadStandardPackage() {
  if (gStandard) return;
  if (!RegisterComponentsProc)
    RegisterComponentsProc = [](const std::string&, const TComponentClasses& c) { RegisterFirstOfEachName(c); };
  if (!RegisterNoIconProc) RegisterNoIconProc = [](const TComponentClasses& c) { RegisterFirstOfEachName(c); };
  if (!RegisterNonActiveXProc)
    RegisterNonActiveXProc = [](const TComponentClasses& c, TActiveXRegType) { RegisterFirstOfEachName(c); };
  gStandard = LoadPackage(LUMORA_BINARY_DIR "/packages/dclstd.so");
  int flags = 0;
  GetPackageInfo(gStandard, nullptr, flags, &RegisterUnit);
}

void UnloadStandardPackage() {
  if (!gStandard) return;
  const HMODULE h = gStandard;
  gStandard = 0;
  UnRegisterModuleClasses(h);
  UnloadPackage(h);
}

}  // namespace lumora::test
