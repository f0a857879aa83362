// The samples package's unit: the controls of the palette's Samples page.
#include "platform/packages/PackageDecl.h"

#include "platform/vcl/Calendar.h"
#include "platform/vcl/ColorGrid.h"
#include "platform/vcl/Gauges.h"
#include "platform/vcl/Outline.h"
#include "platform/vcl/Spin.h"

LUMORA_UNIT_REGISTER(Smpreg) {
  RegisterComponents("Samples", {TGauge::StaticClass(), TColorGrid::StaticClass(), TSpinButton::StaticClass(),
                                 TSpinEdit::StaticClass(), TDirectoryOutline::StaticClass(),
                                 TCalendar::StaticClass()});
}
