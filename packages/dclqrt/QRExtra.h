#pragma once
// What else the report page holds: composite reports, the preview control, the export
// filters and the chart that prints.

#include "packages/dclqrt/QRCtrls.h"

#include <string>

LUMORA_EVENT(TQRPageAvailableEvent, void(TObject* Sender, int PageNum))
// Of the same shape as the page event: (Sender, Progress).
using TQRProgressUpdateEvent = TQRPageAvailableEvent;

// Several reports printed as one.
class TQRCompositeReport : public TComponent {
  LUMORA_CLASS(TQRCompositeReport, TComponent)
public:
  explicit TQRCompositeReport(TComponent* owner);
  ~TQRCompositeReport() override;
  TQRPrinterSettings* PrinterSettings() const { return FPrinterSettings; }
  void SetPrinterSettings(TQRPrinterSettings* value) { FPrinterSettings->Assign(value); }
  TNotifyEvent OnAddReports;
  TNotifyEvent OnFinished;
  TQuickRepOptions FOptions;
  std::string FReportTitle;

private:
  TQRPrinterSettings* FPrinterSettings;
};

// Where a report's pages are previewed: with nothing printed, the empty grey area.
class TQRPreview : public TCustomControl {
  LUMORA_CLASS(TQRPreview, TCustomControl)
public:
  explicit TQRPreview(TComponent* owner);
  int FPageNumber = 1;
  int FZoom = 100;
  TQRPageAvailableEvent OnPageAvailable;
  TQRProgressUpdateEvent OnProgressUpdate;
  void Paint(QPainter& painter) override;
};

class TQRExportFilter : public TComponent {
  LUMORA_CLASS(TQRExportFilter, TComponent)
public:
  explicit TQRExportFilter(TComponent* owner) : TComponent(owner) {}
};

class TQRTextFilter : public TQRExportFilter {
  LUMORA_CLASS(TQRTextFilter, TQRExportFilter)
public:
  explicit TQRTextFilter(TComponent* owner) : TQRExportFilter(owner) {}
};

class TQRCSVFilter : public TQRExportFilter {
  LUMORA_CLASS(TQRCSVFilter, TQRExportFilter)
public:
  explicit TQRCSVFilter(TComponent* owner) : TQRExportFilter(owner) {}
  char FSeparator = ',';
};

class TQRHTMLFilter : public TQRExportFilter {
  LUMORA_CLASS(TQRHTMLFilter, TQRExportFilter)
public:
  explicit TQRHTMLFilter(TComponent* owner) : TQRExportFilter(owner) {}
};

// A chart on a report: the box it prints in (its chart is another library's).
class TQRChart : public TQRPrintable {
  LUMORA_CLASS(TQRChart, TQRPrintable)
public:
  explicit TQRChart(TComponent* owner);
  void Paint(QPainter& painter) override;
};
