#include "packages/dclqrt/DclQrt.h"

#include "packages/dclqrt/QRExtra.h"
#include "platform/packages/Packages.h"

std::vector<TPalettePage> QrPalette() {
  return {
      {"QReport",
       {TQuickRep::StaticClass(), TQRSubDetail::StaticClass(), TQRBand::StaticClass(), TQRChildBand::StaticClass(),
        TQRGroup::StaticClass(), TQRLabel::StaticClass(), TQRDBText::StaticClass(), TQRExpr::StaticClass(),
        TQRSysData::StaticClass(), TQRMemo::StaticClass(), TQRExprMemo::StaticClass(), TQRRichText::StaticClass(),
        TQRDBRichText::StaticClass(), TQRShape::StaticClass(), TQRImage::StaticClass(), TQRDBImage::StaticClass(),
        TQRCompositeReport::StaticClass(), TQRPreview::StaticClass(), TQRTextFilter::StaticClass(),
        TQRCSVFilter::StaticClass(), TQRHTMLFilter::StaticClass(), TQRChart::StaticClass()}},
      {"", {TQRStringsBand::StaticClass(), TQRLoopBand::StaticClass()}},
  };
}

void RegisterQrClasses() {
  for (const TPalettePage& page : QrPalette()) {
    if (page.Page.empty()) {
      for (TClass cls : page.Classes) RegisterNoIcon({cls});
    } else {
      RegisterComponents(page.Page, page.Classes);
    }
  }
}
