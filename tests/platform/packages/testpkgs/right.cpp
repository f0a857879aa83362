// The other side of the diamond: requires the base too, and has a class of its own that
// calls itself TPkgBase, as a second package might.
#include "platform/packages/PackageDecl.h"
#include "tests/platform/packages/testpkgs/TestPackageClass.h"

LUMORA_PACKAGE("Test right package", LUMORA_REQUIRES("tpk_base") LUMORA_CONTAINS("RightReg"))

TPKG_CLASS(TPkgRight)

class TPkgBaseOfRight : public TComponent {
  LUMORA_CLASS(TPkgBaseOfRight, TComponent)
public:
  explicit TPkgBaseOfRight(TComponent* owner) : TComponent(owner) {}
};

TClass TPkgBaseOfRight::StaticClass() {
  static const TClassDesc desc{::rtti_detail::TDescTag<TPkgBaseOfRight>{}, "TPkgBase"};
  return &desc;
}
void TPkgBaseOfRight::DescribeClass(TClassBuilder<TPkgBaseOfRight>&) {}

LUMORA_UNIT_REGISTER(Rightreg) {
  RegisterNonActiveX({TPkgRight::StaticClass(), TPkgBaseOfRight::StaticClass()}, axrComponentOnly);
}
