#include "packages/dclqrt/QuickRpt.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ClassicDraw.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

Qt::PenStyle QtPenStyle(TPenStyle style) {
  switch (style) {
    case psDash: return Qt::DashLine;
    case psDot: return Qt::DotLine;
    case psDashDot: return Qt::DashDotLine;
    case psDashDotDot: return Qt::DashDotDotLine;
    case psClear: return Qt::NoPen;
    default: return Qt::SolidLine;
  }
}

// Reads a list of strings into `list`.
void ReadStringList(TReader& r, TStrings* list) {
  list->BeginUpdate();
  list->Clear();
  r.ReadListBegin();
  while (!r.EndOfList()) list->Add(r.ReadString());
  r.ReadListEnd();
  list->EndUpdate();
}

void WriteStringList(TWriter& w, TStrings* list) {
  w.WriteListBegin();
  for (int i = 0; i < list->Count(); ++i) w.WriteString(list->Strings(i));
  w.WriteListEnd();
}
}  // namespace

QFont DesignNoteFont() {
  TFontRequest request;
  request.Name = "Arial";
  request.Height = -9;
  return ResolveFont(request);
}

// ---------------------------------------------------------------------------------------
// TQRFrame

// Written always, as the report components wrote them.
LUMORA_CLASS_IMPL(TQRFrame) {
  c.Property("Color", &TQRFrame::FColor, &TQRFrame::FColor);
  c.Property("DrawTop", &TQRFrame::FDrawTop, &TQRFrame::FDrawTop);
  c.Property("DrawBottom", &TQRFrame::FDrawBottom, &TQRFrame::FDrawBottom);
  c.Property("DrawLeft", &TQRFrame::FDrawLeft, &TQRFrame::FDrawLeft);
  c.Property("DrawRight", &TQRFrame::FDrawRight, &TQRFrame::FDrawRight);
  c.Property("Style", &TQRFrame::FStyle, &TQRFrame::FStyle).Default(psSolid);
  c.Property("Width", &TQRFrame::FWidth, &TQRFrame::FWidth).Default(1);
}

void TQRFrame::Assign(TPersistent* source) {
  if (auto* frame = dynamic_cast<TQRFrame*>(source)) {
    FColor = frame->FColor;
    FDrawTop = frame->FDrawTop;
    FDrawBottom = frame->FDrawBottom;
    FDrawLeft = frame->FDrawLeft;
    FDrawRight = frame->FDrawRight;
    FStyle = frame->FStyle;
    FWidth = frame->FWidth;
    if (OnChange) OnChange(this);
    return;
  }
  TPersistent::Assign(source);
}

void TQRFrame::Paint(QPainter& p, const QRect& rect) const {
  if (!AnyFrame() || FStyle == psClear) return;
  const int w = std::max(1, FWidth);
  const QColor color = ColorToQColor(FColor);
  auto line = [&](const QRect& r) {
    if (FStyle == psSolid || FStyle == psInsideFrame) {
      p.fillRect(r, color);
      return;
    }
    QPen pen(color, w, QtPenStyle(FStyle));
    pen.setCapStyle(Qt::FlatCap);
    p.setPen(pen);
    const bool horizontal = r.width() > r.height();
    const double mid = horizontal ? r.top() + r.height() / 2.0 : r.left() + r.width() / 2.0;
    if (horizontal) p.drawLine(QPointF(r.left(), mid), QPointF(r.right() + 1, mid));
    else p.drawLine(QPointF(mid, r.top()), QPointF(mid, r.bottom() + 1));
  };
  if (FDrawTop) line(QRect(rect.left(), rect.top(), rect.width(), w));
  if (FDrawBottom) line(QRect(rect.left(), rect.bottom() - w + 1, rect.width(), w));
  if (FDrawLeft) line(QRect(rect.left(), rect.top(), w, rect.height()));
  if (FDrawRight) line(QRect(rect.right() - w + 1, rect.top(), w, rect.height()));
}

// ---------------------------------------------------------------------------------------
// Unit values, page, printer settings, functions

LUMORA_CLASS_IMPL(TQRUnitValues) {}

void TQRUnitValues::Assign(TPersistent* source) {
  if (auto* values = dynamic_cast<TQRUnitValues*>(source)) {
    FValues = values->FValues;
    return;
  }
  TPersistent::Assign(source);
}

void TQRUnitValues::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineProperty(
      "Values",
      [this](TReader& r) {
        std::vector<long double> values;
        r.ReadListBegin();
        while (!r.EndOfList()) values.push_back(r.ReadFloat());
        r.ReadListEnd();
        FValues = std::move(values);
      },
      [this](TWriter& w) {
        w.WriteListBegin();
        for (long double v : FValues) w.WriteFloat(v);
        w.WriteListEnd();
      },
      !FValues.empty());
}

LUMORA_CLASS_IMPL(TQRPrintableSize) {}

LUMORA_CLASS_IMPL(TQRPage) {
  c.Property("Columns", &TQRPage::FColumns, &TQRPage::FColumns);
  c.Property("Orientation", &TQRPage::FOrientation, &TQRPage::FOrientation);
  c.Property("PaperSize", &TQRPage::FPaperSize, &TQRPage::FPaperSize);
}

LUMORA_CLASS_IMPL(TQRPrinterSettings) {
  c.Property("Copies", &TQRPrinterSettings::FCopies, &TQRPrinterSettings::FCopies);
  c.Property("Duplex", &TQRPrinterSettings::FDuplex, &TQRPrinterSettings::FDuplex);
  c.Property("FirstPage", &TQRPrinterSettings::FFirstPage, &TQRPrinterSettings::FFirstPage);
  c.Property("LastPage", &TQRPrinterSettings::FLastPage, &TQRPrinterSettings::FLastPage);
  c.Property("OutputBin", &TQRPrinterSettings::FOutputBin, &TQRPrinterSettings::FOutputBin);
}

void TQRPrinterSettings::Assign(TPersistent* source) {
  if (auto* s = dynamic_cast<TQRPrinterSettings*>(source)) {
    FCopies = s->FCopies;
    FDuplex = s->FDuplex;
    FFirstPage = s->FFirstPage;
    FLastPage = s->FLastPage;
    FOutputBin = s->FOutputBin;
    return;
  }
  TPersistent::Assign(source);
}

LUMORA_CLASS_IMPL(TQRFunctions) {}

TQRFunctions::TQRFunctions() : FNames(new TStringList()), FData(new TStringList()) {}

TQRFunctions::~TQRFunctions() {
  delete FNames;
  delete FData;
}

void TQRFunctions::Assign(TPersistent* source) {
  if (auto* f = dynamic_cast<TQRFunctions*>(source)) {
    FNames->Assign(f->FNames);
    FData->Assign(f->FData);
    return;
  }
  TPersistent::Assign(source);
}

void TQRFunctions::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineProperty(
      "Strings", [this](TReader& r) { ReadStringList(r, FNames); }, [this](TWriter& w) { WriteStringList(w, FNames); },
      FNames->Count() > 0);
  filer.DefineProperty(
      "DATA", [this](TReader& r) { ReadStringList(r, FData); }, [this](TWriter& w) { WriteStringList(w, FData); },
      FData->Count() > 0);
}

// ---------------------------------------------------------------------------------------
// TQRFrameable

LUMORA_CLASS_IMPL(TQRFrameable) {}

TQRFrameable::TQRFrameable(TComponent* owner)
    : TCustomControl(owner), FFrame(new TQRFrame()), FSize(new TQRPrintableSize()) {
  FFrame->OnChange = [this](TObject*) { Invalidate(); };
  FParentColor = false;
  FColor = clWhite;
}

TQRFrameable::~TQRFrameable() {
  delete FFrame;
  delete FSize;
}

TQuickRep* TQRFrameable::ParentReport() const {
  for (TWinControl* p = Parent(); p; p = p->Parent())
    if (auto* report = dynamic_cast<TQuickRep*>(p)) return report;
  return nullptr;
}

void TQRFrameable::Notification(TComponent* component, TOperation operation) {
  TCustomControl::Notification(component, operation);
  if (operation != opRemove) return;
  for (TComponent** link : Links())
    if (*link == component) *link = nullptr;
}

// ---------------------------------------------------------------------------------------
// Bands

LUMORA_CLASS_IMPL(TQRCustomBand) {}

TQRCustomBand::TQRCustomBand(TComponent* owner) : TQRFrameable(owner) {
  FControlStyle += csAcceptsControls;
  FWidth = 200;
  FHeight = 40;
}

void TQRCustomBand::SetBandType(TQRBandType value) {
  FBandType = value;
  Invalidate();
}

std::string TQRCustomBand::BandTypeName() const {
  switch (FBandType) {
    case rbTitle: return "Title";
    case rbPageHeader: return "Page Header";
    case rbDetail: return "Detail";
    case rbPageFooter: return "Page Footer";
    case rbSummary: return "Summary";
    case rbGroupHeader: return "Group Header";
    case rbGroupFooter: return "Group Footer";
    case rbSubDetail: return "Sub Detail";
    case rbColumnHeader: return "Column Header";
    case rbOverlay: return "Overlay";
    case rbChild: return "Child";
  }
  return std::string();
}

std::vector<TComponent**> TQRCustomBand::Links() {
  return {reinterpret_cast<TComponent**>(&FLinkBand)};
}

void TQRCustomBand::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  painter.fillRect(r, ColorToQColor(FColor));
  // The designer's outline of the strip, under the band's own frame.
  QPen outline(ColorToQColor(clSilver), 1, Qt::DotLine);
  painter.setPen(outline);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(r.adjusted(0, 0, -1, -1));
  FFrame->Paint(painter, r);
  const QFont font = DesignNoteFont();
  painter.setFont(font);
  painter.setPen(ColorToQColor(clGray));
  const QFontMetrics fm(font);
  painter.drawText(QPoint(3, FHeight - fm.descent() - 2), QString::fromStdString(BandTypeName()));
}

LUMORA_CLASS_IMPL(TQRBand) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES});
  c.Property("BandType", &TQRBand::BandType, &TQRBand::SetBandType);
}

LUMORA_CLASS_IMPL(TQRChildBand) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES});
  c.Property("ParentBand", &TQRChildBand::ParentBand, &TQRChildBand::SetParentBand);
}

TQRChildBand::TQRChildBand(TComponent* owner) : TQRCustomBand(owner) { FBandType = rbChild; }

std::vector<TComponent**> TQRChildBand::Links() {
  auto links = TQRCustomBand::Links();
  links.push_back(reinterpret_cast<TComponent**>(&FParentBand));
  return links;
}

LUMORA_CLASS_IMPL(TQRControllerBand) {}

std::vector<TComponent**> TQRControllerBand::Links() {
  auto links = TQRCustomBand::Links();
  links.push_back(&FMaster);
  return links;
}

LUMORA_CLASS_IMPL(TQRGroup) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES});
  c.Property("Expression", &TQRGroup::FExpression, &TQRGroup::FExpression);
  c.Property("FooterBand", &TQRGroup::FooterBand, &TQRGroup::SetFooterBand);
  PublishReportProperties(c, {"Master"});
  c.Property("ReprintOnNewPage", &TQRGroup::FReprintOnNewPage, &TQRGroup::FReprintOnNewPage);
}

TQRGroup::TQRGroup(TComponent* owner) : TQRControllerBand(owner) { FBandType = rbGroupHeader; }

std::vector<TComponent**> TQRGroup::Links() {
  auto links = TQRControllerBand::Links();
  links.push_back(reinterpret_cast<TComponent**>(&FFooterBand));
  return links;
}

LUMORA_CLASS_IMPL(TQRSubDetail) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES, "Master"});
  c.Property("DataSet", &TQRSubDetail::DataSet, &TQRSubDetail::SetDataSet);
  c.Property("FooterBand", &TQRSubDetail::FooterBand, &TQRSubDetail::SetFooterBand);
  c.Property("HeaderBand", &TQRSubDetail::HeaderBand, &TQRSubDetail::SetHeaderBand);
  PublishReportProperties(c, {"PrintBefore", "PrintIfEmpty"});
}

TQRSubDetail::TQRSubDetail(TComponent* owner) : TQRControllerBand(owner) { FBandType = rbSubDetail; }

std::vector<TComponent**> TQRSubDetail::Links() {
  auto links = TQRControllerBand::Links();
  links.push_back(reinterpret_cast<TComponent**>(&FDataSet));
  links.push_back(reinterpret_cast<TComponent**>(&FFooterBand));
  links.push_back(reinterpret_cast<TComponent**>(&FHeaderBand));
  return links;
}

LUMORA_CLASS_IMPL(TQRStringsBand) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES, "Master"});
  c.Property("Items", &TQRStringsBand::Items, &TQRStringsBand::SetItems);
  PublishReportProperties(c, {"PrintBefore"});
}

TQRStringsBand::TQRStringsBand(TComponent* owner) : TQRControllerBand(owner), FItems(new TStringList()) {
  FBandType = rbDetail;
}

TQRStringsBand::~TQRStringsBand() { delete FItems; }

LUMORA_CLASS_IMPL(TQRLoopBand) {
  PublishReportProperties(c, {LUMORA_QR_BAND_PROPERTIES, "Master", "PrintBefore"});
  c.Property("PrintCount", &TQRLoopBand::FPrintCount, &TQRLoopBand::FPrintCount);
}

TQRLoopBand::TQRLoopBand(TComponent* owner) : TQRControllerBand(owner) { FBandType = rbDetail; }

// ---------------------------------------------------------------------------------------
// TQuickRep

LUMORA_CLASS_IMPL(TQuickRep) {
  PublishReportProperties(c, {"Frame"});
  c.Property("AfterPreview", &TQuickRep::AfterPreview, &TQuickRep::AfterPreview);
  c.Property("AfterPrint", &TQuickRep::AfterPrint, &TQuickRep::AfterPrint);
  c.Property("BeforePrint", &TQuickRep::BeforePrint, &TQuickRep::BeforePrint);
  c.Property("DataSet", &TQuickRep::DataSet, &TQuickRep::SetDataSet);
  c.Property("Description", &TQuickRep::Description, &TQuickRep::SetDescription);
  PublishReportProperties(c, {"Font"});
  c.Property("Functions", &TQuickRep::Functions, &TQuickRep::SetFunctions);
  c.Property("OnEndPage", &TQuickRep::OnEndPage, &TQuickRep::OnEndPage);
  c.Property("OnNeedData", &TQuickRep::OnNeedData, &TQuickRep::OnNeedData);
  c.Property("OnPreview", &TQuickRep::OnPreview, &TQuickRep::OnPreview);
  c.Property("OnStartPage", &TQuickRep::OnStartPage, &TQuickRep::OnStartPage);
  c.Property("Options", &TQuickRep::FOptions, &TQuickRep::FOptions);
  c.Property("Page", &TQuickRep::Page, &TQuickRep::SetPage);
  c.Property("PrinterSettings", &TQuickRep::PrinterSettings, &TQuickRep::SetPrinterSettings);
  c.Property("PrintIfEmpty", &TQuickRep::FPrintIfEmpty, &TQuickRep::FPrintIfEmpty);
  c.Property("ReportTitle", &TQuickRep::FReportTitle, &TQuickRep::FReportTitle);
  c.Property("ShowProgress", &TQuickRep::FShowProgress, &TQuickRep::FShowProgress).Default(true);
  c.Property("SnapToGrid", &TQuickRep::FSnapToGrid, &TQuickRep::FSnapToGrid);
  c.Property("Units", &TQuickRep::FUnits, &TQuickRep::FUnits);
  c.Property("Zoom", &TQuickRep::FZoom, &TQuickRep::FZoom);
}

TQuickRep::TQuickRep(TComponent* owner)
    : TQRFrameable(owner),
      FDescription(new TStringList()),
      FFunctions(new TQRFunctions()),
      FPage(new TQRPage()),
      FPrinterSettings(new TQRPrinterSettings()) {
  FControlStyle += csAcceptsControls;
  // An A4 page at 96 pixels an inch.
  FPage->SetValues({100, 2970, 100, 2100, 100, 100, 0});
  FWidth = 794;
  FHeight = 1123;
}

TQuickRep::~TQuickRep() {
  delete FDescription;
  delete FFunctions;
  delete FPage;
  delete FPrinterSettings;
}

std::vector<TComponent**> TQuickRep::Links() { return {reinterpret_cast<TComponent**>(&FDataSet)}; }

double TQuickRep::Scale() const {
  // The control is the page as drawn: its width in pixels over the paper's width.
  const long double paper = FPage->Width();
  return paper > 0 ? static_cast<double>(FWidth / paper) : 96.0 / 254.0;
}

QRect TQuickRep::MarginRect() const {
  const double s = Scale();
  const int left = static_cast<int>(std::lround(static_cast<double>(FPage->LeftMargin()) * s));
  const int right = static_cast<int>(std::lround(static_cast<double>(FPage->RightMargin()) * s));
  const int top = static_cast<int>(std::lround(static_cast<double>(FPage->TopMargin()) * s));
  const int bottom = static_cast<int>(std::lround(static_cast<double>(FPage->BottomMargin()) * s));
  return QRect(left, top, std::max(0, FWidth - left - right), std::max(0, FHeight - top - bottom));
}

void TQuickRep::Paint(QPainter& painter) {
  const QRect page(0, 0, FWidth, FHeight);
  painter.fillRect(page, Qt::white);
  painter.setPen(ColorToQColor(clGray));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(page.adjusted(0, 0, -1, -1));
  // The margins, as the designer marks them.
  const QRect margins = MarginRect();
  QPen dotted(ColorToQColor(clSilver), 1, Qt::DotLine);
  painter.setPen(dotted);
  painter.drawLine(margins.left() - 1, 0, margins.left() - 1, FHeight - 1);
  painter.drawLine(margins.right() + 1, 0, margins.right() + 1, FHeight - 1);
  painter.drawLine(0, margins.top() - 1, FWidth - 1, margins.top() - 1);
  painter.drawLine(0, margins.bottom() + 1, FWidth - 1, margins.bottom() + 1);
  FFrame->Paint(painter, margins);
}
