#include "packages/dclqrt/QRExtra.h"

#include "platform/vcl/ClassicDraw.h"

#include <QPainter>

LUMORA_CLASS_IMPL(TQRCompositeReport) {
  c.Property("OnAddReports", &TQRCompositeReport::OnAddReports, &TQRCompositeReport::OnAddReports);
  c.Property("OnFinished", &TQRCompositeReport::OnFinished, &TQRCompositeReport::OnFinished);
  c.Property("Options", &TQRCompositeReport::FOptions, &TQRCompositeReport::FOptions);
  c.Property("PrinterSettings", &TQRCompositeReport::PrinterSettings, &TQRCompositeReport::SetPrinterSettings);
  c.Property("ReportTitle", &TQRCompositeReport::FReportTitle, &TQRCompositeReport::FReportTitle);
}

TQRCompositeReport::TQRCompositeReport(TComponent* owner)
    : TComponent(owner), FPrinterSettings(new TQRPrinterSettings()) {}

TQRCompositeReport::~TQRCompositeReport() { delete FPrinterSettings; }

LUMORA_CLASS_IMPL(TQRPreview) {
  PublishControlProperties(c, {"Align", "Anchors", "Color", "Constraints", "DragCursor", "DragMode", "Enabled",
                               "ParentColor", "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop",
                               "Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnEnter",
                               "OnExit", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnPageAvailable", &TQRPreview::OnPageAvailable, &TQRPreview::OnPageAvailable);
  c.Property("OnProgressUpdate", &TQRPreview::OnProgressUpdate, &TQRPreview::OnProgressUpdate);
  PublishControlProperties(c, {"OnStartDrag"});
  c.Property("PageNumber", &TQRPreview::FPageNumber, &TQRPreview::FPageNumber).Default(1);
  c.Property("Zoom", &TQRPreview::FZoom, &TQRPreview::FZoom).Default(100);
  c.Property("Color").Default(clBtnShadow);
  c.Property("ParentColor").Default(false);
}

TQRPreview::TQRPreview(TComponent* owner) : TCustomControl(owner) {
  FWidth = 185;
  FHeight = 185;
  FParentColor = false;
  FColor = clBtnShadow;
}

void TQRPreview::Paint(QPainter& painter) {
  QRect r(0, 0, FWidth, FHeight);
  DrawSunkenEdge(painter, r);
  painter.fillRect(r, ColorToQColor(FColor));
}

LUMORA_CLASS_IMPL(TQRExportFilter) {}
LUMORA_CLASS_IMPL(TQRTextFilter) {}
LUMORA_CLASS_IMPL(TQRCSVFilter) {
  c.Property("Separator", &TQRCSVFilter::FSeparator, &TQRCSVFilter::FSeparator).Default(',');
}
LUMORA_CLASS_IMPL(TQRHTMLFilter) {}

LUMORA_CLASS_IMPL(TQRChart) { PublishReportProperties(c, {"Enabled", "Frame", "Size"}); }

TQRChart::TQRChart(TComponent* owner) : TQRPrintable(owner) {
  FWidth = 350;
  FHeight = 250;
}

void TQRChart::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  painter.fillRect(r, ColorToQColor(FColor));
  QPen dotted(ColorToQColor(clGray), 1, Qt::DotLine);
  painter.setPen(dotted);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(r.adjusted(0, 0, -1, -1));
  DrawDesignNote(painter, r, Name());
  FFrame->Paint(painter, r);
}
