#pragma once
// Reports on forms, as the report designer shows them: the report is the white page at
// its scale with its margins; its bands are strips named after their type, holding the
// printable controls (QRCtrls.h). Nothing is printed or previewed: a report keeps what
// its form says of it.
//
// Positions and sizes are the pixels the form holds (the report's zoom already applied);
// Size.Values and Page.Values keep the same in tenths of millimetres, as they were read.

#include "packages/dcldb/DB.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/Publish.h"

#include <string>
#include <vector>

class TQuickRep;
class TQRCustomBand;

// The report's enumerations have plain names (Letter, A4, MM, Auto): they live in a
// namespace of their own.
namespace qr {
LUMORA_ENUM(TQRPaperSize, Default, Letter, LetterSmall, Tabloid, Ledger, Legal, Statement, Executive, A3, A4, A4Small,
            A5, B4, B5, Folio, Quarto, qr10X14, qr11X17, Note, Env9, Env10, Env11, Env12, Env14, CSheet, DSheet,
            ESheet, Custom)
LUMORA_ENUM(TQRUnit, MM, Inches, Pixels, Characters, Native)
LUMORA_ENUM(TQRBin, First, Upper, Lower, Middle, Manual, Envelope, EnvManual, Auto, Tractor, SmallFormat,
            LargeFormat, LargeCapacity, Cassette, Last)
LUMORA_ENUM(TQuickRepOption, FirstPageHeader, LastPageFooter, Compression)
LUMORA_SET(TQuickRepOptions, TQuickRepOption)
}  // namespace qr
using qr::TQRBin;
using qr::TQRPaperSize;
using qr::TQRUnit;
using qr::TQuickRepOption;
using qr::TQuickRepOptions;

LUMORA_ENUM(TPrinterOrientation, poPortrait, poLandscape)
LUMORA_ENUM(TQRBandType, rbTitle, rbPageHeader, rbDetail, rbPageFooter, rbSummary, rbGroupHeader, rbGroupFooter,
            rbSubDetail, rbColumnHeader, rbOverlay, rbChild)

LUMORA_EVENT(TQRBandBeforePrintEvent, void(TQRCustomBand* Sender, bool& PrintBand))
LUMORA_EVENT(TQRBandAfterPrintEvent, void(TQRCustomBand* Sender, bool BandPrinted))
LUMORA_EVENT(TQRReportBeforePrintEvent, void(TQuickRep* Sender, bool& PrintReport))
LUMORA_EVENT(TQRNotifyOperationEvent, void(TQuickRep* Sender))
// Of the same shape as the close query event: (Sender, var MoreData).
using TQROnNeedDataEvent = TCloseQueryEvent;

// The lines a report item draws along its edges.
class TQRFrame : public TPersistent {
  LUMORA_CLASS(TQRFrame, TPersistent)
public:
  TColor FColor = clBlack;
  bool FDrawTop = false;
  bool FDrawBottom = false;
  bool FDrawLeft = false;
  bool FDrawRight = false;
  TPenStyle FStyle = psSolid;
  int FWidth = 1;
  TNotifyEvent OnChange;
  bool AnyFrame() const { return FDrawTop || FDrawBottom || FDrawLeft || FDrawRight; }
  void Assign(TPersistent* source) override;
  // Draws the lines that are on inside the rectangle.
  void Paint(QPainter& painter, const QRect& rect) const;
};

// Sizes in report units, kept as read ("Values": a list of numbers).
class TQRUnitValues : public TPersistent {
  LUMORA_CLASS(TQRUnitValues, TPersistent)
public:
  const std::vector<long double>& Values() const { return FValues; }
  void SetValues(std::vector<long double> values) { FValues = std::move(values); }
  // The value at `index`, or `fallback` when there are fewer.
  long double Value(std::size_t index, long double fallback = 0) const {
    return index < FValues.size() ? FValues[index] : fallback;
  }
  void Assign(TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;

protected:
  std::vector<long double> FValues;
};

// The size of a report item in report units.
class TQRPrintableSize : public TQRUnitValues {
  LUMORA_CLASS(TQRPrintableSize, TQRUnitValues)
};

// The paper: size, orientation, columns and margins (Values: bottom margin, length, top
// margin, width, left margin, right margin, column space, in tenths of millimetres).
class TQRPage : public TQRUnitValues {
  LUMORA_CLASS(TQRPage, TQRUnitValues)
public:
  int FColumns = 1;
  TPrinterOrientation FOrientation = poPortrait;
  TQRPaperSize FPaperSize = qr::A4;
  long double BottomMargin() const { return Value(0); }
  long double Length() const { return Value(1, 2970); }
  long double TopMargin() const { return Value(2); }
  long double Width() const { return Value(3, 2100); }
  long double LeftMargin() const { return Value(4); }
  long double RightMargin() const { return Value(5); }
};

class TQRPrinterSettings : public TPersistent {
  LUMORA_CLASS(TQRPrinterSettings, TPersistent)
public:
  int FCopies = 1;
  bool FDuplex = false;
  int FFirstPage = 0;
  int FLastPage = 0;
  TQRBin FOutputBin = qr::Auto;
  void Assign(TPersistent* source) override;
};

// The functions of a report's expressions, with the values they start from.
class TQRFunctions : public TPersistent {
  LUMORA_CLASS(TQRFunctions, TPersistent)
public:
  TQRFunctions();
  ~TQRFunctions() override;
  TStrings* Names() const { return FNames; }
  TStrings* Data() const { return FData; }
  void Assign(TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;

private:
  TStringList* FNames;
  TStringList* FData;
};

// What report pieces share: a frame, a size in report units, and the components they
// refer to, forgotten when those go.
class TQRFrameable : public TCustomControl {
  LUMORA_CLASS(TQRFrameable, TCustomControl)
public:
  explicit TQRFrameable(TComponent* owner);
  ~TQRFrameable() override;
  TQRFrame* Frame() const { return FFrame; }
  void SetFrame(TQRFrame* value) { FFrame->Assign(value); }
  TQRPrintableSize* Size() const { return FSize; }
  void SetSize(TQRPrintableSize* value) { FSize->Assign(value); }
  // The report this piece belongs to, or none.
  TQuickRep* ParentReport() const;
  void Notification(TComponent* component, TOperation operation) override;

protected:
  // Points a reference at `value` and asks to hear of its destruction.
  template <class T>
  void Link(T*& field, T* value) {
    ReplaceComponentLink(this, field, value);
    Invalidate();
  }
  // Every reference this piece holds, to forget those that go.
  virtual std::vector<TComponent**> Links() { return {}; }

  TQRFrame* FFrame;
  TQRPrintableSize* FSize;
};

// A band: a strip of the report for one of its parts, holding printable controls.
class TQRCustomBand : public TQRFrameable {
  LUMORA_CLASS(TQRCustomBand, TQRFrameable)
public:
  explicit TQRCustomBand(TComponent* owner);
  TQRBandType BandType() const { return FBandType; }
  void SetBandType(TQRBandType value);
  TQRCustomBand* LinkBand() const { return FLinkBand; }
  void SetLinkBand(TQRCustomBand* value) { Link(FLinkBand, value); }
  // What the designer writes on the band.
  virtual std::string BandTypeName() const;
  bool FAlignToBottom = false;
  bool FForceNewColumn = false;
  bool FForceNewPage = false;
  TQRBandBeforePrintEvent BeforePrint;
  TQRBandAfterPrintEvent AfterPrint;
  void Paint(QPainter& painter) override;

protected:
  std::vector<TComponent**> Links() override;
  TQRBandType FBandType = rbTitle;
  TQRCustomBand* FLinkBand = nullptr;
};

class TQRBand : public TQRCustomBand {
  LUMORA_CLASS(TQRBand, TQRCustomBand)
public:
  explicit TQRBand(TComponent* owner) : TQRCustomBand(owner) {}
};

class TQRChildBand : public TQRCustomBand {
  LUMORA_CLASS(TQRChildBand, TQRCustomBand)
public:
  explicit TQRChildBand(TComponent* owner);
  TQRCustomBand* ParentBand() const { return FParentBand; }
  void SetParentBand(TQRCustomBand* value) { Link(FParentBand, value); }

protected:
  std::vector<TComponent**> Links() override;

private:
  TQRCustomBand* FParentBand = nullptr;
};

// Bands that stand for a part run over other data: groups, sub-details, strings, loops.
class TQRControllerBand : public TQRCustomBand {
  LUMORA_CLASS(TQRControllerBand, TQRCustomBand)
public:
  explicit TQRControllerBand(TComponent* owner) : TQRCustomBand(owner) {}
  TComponent* Master() const { return FMaster; }
  void SetMaster(TComponent* value) { Link(FMaster, value); }
  bool FPrintBefore = false;
  bool FPrintIfEmpty = true;

protected:
  std::vector<TComponent**> Links() override;

private:
  TComponent* FMaster = nullptr;
};

class TQRGroup : public TQRControllerBand {
  LUMORA_CLASS(TQRGroup, TQRControllerBand)
public:
  explicit TQRGroup(TComponent* owner);
  TQRCustomBand* FooterBand() const { return FFooterBand; }
  void SetFooterBand(TQRCustomBand* value) { Link(FFooterBand, value); }
  std::string FExpression;
  bool FReprintOnNewPage = false;

protected:
  std::vector<TComponent**> Links() override;

private:
  TQRCustomBand* FFooterBand = nullptr;
};

class TQRSubDetail : public TQRControllerBand {
  LUMORA_CLASS(TQRSubDetail, TQRControllerBand)
public:
  explicit TQRSubDetail(TComponent* owner);
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { Link(FDataSet, value); }
  TQRCustomBand* FooterBand() const { return FFooterBand; }
  void SetFooterBand(TQRCustomBand* value) { Link(FFooterBand, value); }
  TQRCustomBand* HeaderBand() const { return FHeaderBand; }
  void SetHeaderBand(TQRCustomBand* value) { Link(FHeaderBand, value); }

protected:
  std::vector<TComponent**> Links() override;

private:
  TDataSet* FDataSet = nullptr;
  TQRCustomBand* FFooterBand = nullptr;
  TQRCustomBand* FHeaderBand = nullptr;
};

class TQRStringsBand : public TQRControllerBand {
  LUMORA_CLASS(TQRStringsBand, TQRControllerBand)
public:
  explicit TQRStringsBand(TComponent* owner);
  ~TQRStringsBand() override;
  TStrings* Items() const { return FItems; }
  void SetItems(TStrings* value) { FItems->Assign(value); }
  std::string BandTypeName() const override { return "Strings"; }

private:
  TStringList* FItems;
};

class TQRLoopBand : public TQRControllerBand {
  LUMORA_CLASS(TQRLoopBand, TQRControllerBand)
public:
  explicit TQRLoopBand(TComponent* owner);
  int FPrintCount = 0;
  std::string BandTypeName() const override { return "Loop"; }
};

// The report: a page of paper at the report's zoom, with its margins.
class TQuickRep : public TQRFrameable {
  LUMORA_CLASS(TQuickRep, TQRFrameable)
public:
  explicit TQuickRep(TComponent* owner);
  ~TQuickRep() override;
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { Link(FDataSet, value); }
  TStrings* Description() const { return FDescription; }
  void SetDescription(TStrings* value) { FDescription->Assign(value); }
  TQRFunctions* Functions() const { return FFunctions; }
  void SetFunctions(TQRFunctions* value) { FFunctions->Assign(value); }
  TQRPage* Page() const { return FPage; }
  void SetPage(TQRPage* value) { FPage->Assign(value); }
  TQRPrinterSettings* PrinterSettings() const { return FPrinterSettings; }
  void SetPrinterSettings(TQRPrinterSettings* value) { FPrinterSettings->Assign(value); }
  // Pixels per tenth of a millimetre on the page as drawn.
  double Scale() const;
  // The margins as drawn: the page less its margins, in pixels.
  QRect MarginRect() const;

  TQuickRepOptions FOptions{qr::FirstPageHeader, qr::LastPageFooter};
  bool FPrintIfEmpty = true;
  std::string FReportTitle;
  bool FShowProgress = true;
  bool FSnapToGrid = true;
  TQRUnit FUnits = qr::MM;
  int FZoom = 100;
  TNotifyEvent AfterPreview;
  TNotifyEvent AfterPrint;
  TQRReportBeforePrintEvent BeforePrint;
  TQRNotifyOperationEvent OnEndPage;
  TQROnNeedDataEvent OnNeedData;
  TNotifyEvent OnPreview;
  TQRNotifyOperationEvent OnStartPage;

  void Paint(QPainter& painter) override;

protected:
  std::vector<TComponent**> Links() override;

private:
  TDataSet* FDataSet = nullptr;
  TStringList* FDescription;
  TQRFunctions* FFunctions;
  TQRPage* FPage;
  TQRPrinterSettings* FPrinterSettings;
};

// The small grey type the designer writes names in (band types, empty items).
QFont DesignNoteFont();

// Publishes, by name, what report pieces share.
template <class C>
void PublishReportProperties(TClassBuilder<C>& c, std::initializer_list<std::string_view> names);

template <class C>
void PublishReportProperties(TClassBuilder<C>& c, std::initializer_list<std::string_view> names) {
  for (std::string_view n : names) {
    if (n == "Frame") c.Property("Frame", &TQRFrameable::Frame, &TQRFrameable::SetFrame);
    else if (n == "Size") c.Property("Size", &TQRFrameable::Size, &TQRFrameable::SetSize);
    // Report pieces write their colour always; they never take their parent's.
    else if (n == "Color") c.Property("Color", &TControl::Color, &TControl::SetColor);
    else if constexpr (std::is_base_of_v<TQRCustomBand, C>) {
      if (n == "AfterPrint") c.Property("AfterPrint", &TQRCustomBand::AfterPrint, &TQRCustomBand::AfterPrint);
      else if (n == "AlignToBottom") c.Property("AlignToBottom", &TQRCustomBand::FAlignToBottom, &TQRCustomBand::FAlignToBottom);
      else if (n == "BeforePrint") c.Property("BeforePrint", &TQRCustomBand::BeforePrint, &TQRCustomBand::BeforePrint);
      else if (n == "ForceNewColumn") c.Property("ForceNewColumn", &TQRCustomBand::FForceNewColumn, &TQRCustomBand::FForceNewColumn);
      else if (n == "ForceNewPage") c.Property("ForceNewPage", &TQRCustomBand::FForceNewPage, &TQRCustomBand::FForceNewPage);
      else if (n == "LinkBand") c.Property("LinkBand", &TQRCustomBand::LinkBand, &TQRCustomBand::SetLinkBand);
      else if constexpr (std::is_base_of_v<TQRControllerBand, C>) {
        if (n == "Master") c.Property("Master", &TQRControllerBand::Master, &TQRControllerBand::SetMaster);
        else if (n == "PrintBefore") c.Property("PrintBefore", &TQRControllerBand::FPrintBefore, &TQRControllerBand::FPrintBefore);
        else if (n == "PrintIfEmpty") c.Property("PrintIfEmpty", &TQRControllerBand::FPrintIfEmpty, &TQRControllerBand::FPrintIfEmpty);
        else PublishControlProperties(c, {n});
      } else {
        PublishControlProperties(c, {n});
      }
    } else {
      PublishControlProperties(c, {n});
    }
  }
}

// The band properties every band publishes before its own.
#define LUMORA_QR_BAND_PROPERTIES "Frame", "AfterPrint", "AlignToBottom", "BeforePrint", "Color", "Enabled", "Font", \
  "ForceNewColumn", "ForceNewPage", "LinkBand", "ParentFont", "Size"
