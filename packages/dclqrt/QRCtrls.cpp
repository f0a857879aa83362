#include "packages/dclqrt/QRCtrls.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ClassicDraw.h"

#include <QPainter>

#include <algorithm>

void DrawDesignNote(QPainter& painter, const QRect& rect, const std::string& text) {
  painter.setFont(DesignNoteFont());
  painter.setPen(ColorToQColor(clGray));
  painter.drawText(rect, Qt::AlignCenter, QString::fromStdString(text));
}

// ---------------------------------------------------------------------------------------
// TQRPrintable, TQRCustomLabel

LUMORA_CLASS_IMPL(TQRPrintable) {}

TQRPrintable::TQRPrintable(TComponent* owner) : TQRFrameable(owner) {
  FWidth = 65;
  FHeight = 17;
}

LUMORA_CLASS_IMPL(TQRCustomLabel) {}

TQRCustomLabel::TQRCustomLabel(TComponent* owner) : TQRPrintable(owner) {}

void TQRCustomLabel::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  if (!FTransparent) painter.fillRect(r, ColorToQColor(FColor));
  TCaptionLayout layout;
  layout.HAlign = FAlignment == taRightJustify ? TTextHAlign::Right
                  : FAlignment == taCenter     ? TTextHAlign::Center
                                               : TTextHAlign::Left;
  layout.WordWrap = FWordWrap && !FAutoSize;
  layout.ShowAccelChar = false;
  DrawCaption(painter, r, ZoomedFont(), FFont->ToUnicode(DesignText()), layout, ColorToQColor(FFont->Color()));
  FFrame->Paint(painter, r);
}

QFont TQRCustomLabel::ZoomedFont() const {
  // A form keeps fonts at full size; the designer shows them at the report's zoom.
  const TQuickRep* report = ParentReport();
  const int zoom = report ? report->FZoom : 100;
  if (zoom == 100 || zoom <= 0) return FFont->Handle();
  TFontRequest request = FFont->Request();
  request.Height = MulDiv(request.Height, zoom, 100);
  if (request.Height == 0) request.Height = -1;
  return ResolveFont(request);
}

void TQRCustomLabel::DefineProperties(TFiler& filer) {
  TQRPrintable::DefineProperties(filer);
  filer.DefineProperty(
      "FontSize", [this](TReader& r) { FFontSize = r.ReadInteger(); },
      [this](TWriter& w) { w.WriteInteger(FFontSize); }, FFontSize != 0);
}

namespace {

// The label properties, by name.
template <class C>
void PublishLabel(TClassBuilder<C>& c, std::initializer_list<std::string_view> names) {
  for (std::string_view n : names) {
    if (n == "Alignment") c.Property("Alignment", &TQRCustomLabel::FAlignment, &TQRCustomLabel::FAlignment);
    else if (n == "AlignToBand") c.Property("AlignToBand", &TQRCustomLabel::FAlignToBand, &TQRCustomLabel::FAlignToBand);
    else if (n == "AutoSize") c.Property("AutoSize", &TQRCustomLabel::FAutoSize, &TQRCustomLabel::FAutoSize);
    else if (n == "AutoStretch") c.Property("AutoStretch", &TQRCustomLabel::FAutoStretch, &TQRCustomLabel::FAutoStretch);
    else if (n == "OnPrint") c.Property("OnPrint", &TQRCustomLabel::OnPrint, &TQRCustomLabel::OnPrint);
    else if (n == "Transparent") c.Property("Transparent", &TQRCustomLabel::FTransparent, &TQRCustomLabel::FTransparent);
    else if (n == "WordWrap") c.Property("WordWrap", &TQRCustomLabel::FWordWrap, &TQRCustomLabel::FWordWrap);
    else PublishReportProperties(c, {n});
  }
}

}  // namespace

LUMORA_CLASS_IMPL(TQRLabel) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "AutoStretch", "Caption",
                   "Color", "Font", "OnPrint", "ParentFont", "Transparent", "WordWrap"});
}

LUMORA_CLASS_IMPL(TQRDBText) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "AutoStretch", "Color"});
  c.Property("DataSet", &TQRDBText::DataSet, &TQRDBText::SetDataSet);
  c.Property("DataField", &TQRDBText::FDataField, &TQRDBText::FDataField);
  PublishLabel(c, {"Font"});
  c.Property("Mask", &TQRDBText::FMask, &TQRDBText::FMask);
  PublishLabel(c, {"OnPrint", "ParentFont", "Transparent", "WordWrap"});
}

LUMORA_CLASS_IMPL(TQRExpr) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "AutoStretch", "Font", "Color"});
  c.Property("Master", &TQRExpr::Master, &TQRExpr::SetMaster);
  PublishLabel(c, {"OnPrint", "ParentFont"});
  c.Property("ResetAfterPrint", &TQRExpr::FResetAfterPrint, &TQRExpr::FResetAfterPrint);
  PublishLabel(c, {"Transparent", "WordWrap"});
  c.Property("Expression", &TQRExpr::FExpression, &TQRExpr::FExpression);
  c.Property("Mask", &TQRExpr::FMask, &TQRExpr::FMask);
}

LUMORA_CLASS_IMPL(TQRSysData) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "Color"});
  c.Property("Data", &TQRSysData::FData, &TQRSysData::FData);
  PublishLabel(c, {"Font", "OnPrint", "ParentFont"});
  c.Property("Text", &TQRSysData::FTextPrefix, &TQRSysData::FTextPrefix);
  PublishLabel(c, {"Transparent"});
}

std::string TQRSysData::DesignText() const {
  static const char* const names[] = {"Time", "Date", "Date Time", "Page Number", "Report Title", "Detail Count",
                                      "Detail No"};
  return FTextPrefix + "(" + names[FData] + ")";
}

LUMORA_CLASS_IMPL(TQRMemo) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "AutoStretch", "Color",
                   "Font"});
  c.Property("Lines", &TQRMemo::Lines, &TQRMemo::SetLines);
  PublishLabel(c, {"ParentFont", "Transparent", "WordWrap"});
}

LUMORA_CLASS_IMPL(TQRCustomMemo) {}

TQRCustomMemo::TQRCustomMemo(TComponent* owner) : TQRCustomLabel(owner), FLines(new TStringList()) {
  FAutoSize = false;
  FHeight = 65;
  FWidth = 185;
  FLines->OnChange = [this](TObject*) { Invalidate(); };
}

TQRCustomMemo::~TQRCustomMemo() {
  FLines->OnChange = nullptr;
  delete FLines;
}

std::string TQRCustomMemo::DesignText() const {
  std::string text;
  for (int i = 0; i < FLines->Count(); ++i) {
    if (i > 0) text += '\n';
    text += FLines->Strings(i);
  }
  return text;
}

LUMORA_CLASS_IMPL(TQRExprMemo) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AlignToBand", "AutoSize", "AutoStretch", "Color",
                   "Font"});
  c.Property("Lines", &TQRExprMemo::Lines, &TQRExprMemo::SetLines);
  PublishLabel(c, {"ParentFont"});
  c.Property("RemoveBlankLines", &TQRExprMemo::FRemoveBlankLines, &TQRExprMemo::FRemoveBlankLines);
  PublishLabel(c, {"Transparent", "WordWrap"});
}

LUMORA_CLASS_IMPL(TQRRichText) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AutoStretch", "Color", "Font"});
  c.Property("Lines", &TQRRichText::Lines, &TQRRichText::SetLines);
}

LUMORA_CLASS_IMPL(TQRDBRichText) {
  PublishLabel(c, {"Enabled", "Frame", "Size", "Alignment", "AutoStretch", "Color"});
  c.Property("DataField", &TQRDBRichText::FDataField, &TQRDBRichText::FDataField);
  c.Property("DataSet", &TQRDBRichText::DataSet, &TQRDBRichText::SetDataSet);
  PublishLabel(c, {"Font"});
}

TQRDBRichText::TQRDBRichText(TComponent* owner) : TQRCustomLabel(owner) {
  FAutoSize = false;
  FHeight = 65;
  FWidth = 185;
}

// ---------------------------------------------------------------------------------------
// TQRShape

LUMORA_CLASS_IMPL(TQRShape) {
  PublishReportProperties(c, {"Enabled", "Frame", "Size"});
  c.Property("Brush", &TQRShape::Brush, &TQRShape::SetBrush);
  c.Property("Pen", &TQRShape::Pen, &TQRShape::SetPen);
  c.Property("Shape", &TQRShape::FShape, &TQRShape::FShape);
}

TQRShape::TQRShape(TComponent* owner) : TQRPrintable(owner), FBrush(new TBrush()), FPen(new TPen()) {
  FWidth = 65;
  FHeight = 65;
  FBrush->OnChange = [this](TObject*) { Invalidate(); };
  FPen->OnChange = [this](TObject*) { Invalidate(); };
}

TQRShape::~TQRShape() {
  DestroyWidget();
  delete FBrush;
  delete FPen;
}

void TQRShape::Paint(QPainter& painter) {
  const int pw = std::max(1, FPen->Width());
  QPen pen(ColorToQColor(FPen->Color()), pw);
  if (FPen->Style() == psClear) pen = Qt::NoPen;
  else if (FPen->Style() == psDot) pen.setStyle(Qt::DotLine);
  else if (FPen->Style() == psDash) pen.setStyle(Qt::DashLine);
  pen.setJoinStyle(Qt::MiterJoin);
  QBrush brush(ColorToQColor(FBrush->Color()));
  if (FBrush->Style() == bsClear) brush = Qt::NoBrush;
  painter.setPen(pen);
  painter.setBrush(brush);
  // The pen lies inside the control, as the shapes print.
  const double half = pw / 2.0;
  const QRectF box(half, half, FWidth - pw, FHeight - pw);
  const double cx = FWidth / 2.0, cy = FHeight / 2.0;
  switch (FShape) {
    case qrsRectangle: painter.drawRect(box); break;
    case qrsCircle: painter.drawEllipse(box); break;
    case qrsVertLine: painter.drawLine(QPointF(cx, 0), QPointF(cx, FHeight)); break;
    case qrsHorLine: painter.drawLine(QPointF(0, cy), QPointF(FWidth, cy)); break;
    case qrsTopAndBottom:
      painter.drawLine(QPointF(0, half), QPointF(FWidth, half));
      painter.drawLine(QPointF(0, FHeight - half), QPointF(FWidth, FHeight - half));
      break;
    case qrsRightAndLeft:
      painter.drawLine(QPointF(half, 0), QPointF(half, FHeight));
      painter.drawLine(QPointF(FWidth - half, 0), QPointF(FWidth - half, FHeight));
      break;
  }
  FFrame->Paint(painter, QRect(0, 0, FWidth, FHeight));
}

// ---------------------------------------------------------------------------------------
// Images

LUMORA_CLASS_IMPL(TQRImage) {
  PublishReportProperties(c, {"Enabled", "Frame", "Size"});
  c.Property("AutoSize", &TQRImage::FAutoSize, &TQRImage::FAutoSize);
  c.Property("Center", &TQRImage::FCenter, &TQRImage::FCenter);
  c.Property("Picture", &TQRImage::Picture, &TQRImage::SetPicture);
  c.Property("Stretch", &TQRImage::FStretch, &TQRImage::FStretch);
}

TQRImage::TQRImage(TComponent* owner) : TQRPrintable(owner), FPicture(new TPicture()) {
  FWidth = 105;
  FHeight = 105;
  FPicture->OnChange = [this](TObject*) { Invalidate(); };
}

TQRImage::~TQRImage() {
  DestroyWidget();
  FPicture->OnChange = nullptr;
  delete FPicture;
}

void TQRImage::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  TGraphic* g = FPicture->Graphic();
  const QImage image = g && !g->Empty() ? g->Image() : QImage();
  if (image.isNull()) {
    // An empty picture: the designer's outline, so that the place shows.
    QPen dotted(ColorToQColor(clGray), 1, Qt::DotLine);
    painter.setPen(dotted);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(r.adjusted(0, 0, -1, -1));
  } else {
    QRect target(0, 0, image.width(), image.height());
    if (FStretch) target = r;
    else if (FCenter) target.moveTo((FWidth - image.width()) / 2, (FHeight - image.height()) / 2);
    painter.save();
    painter.setClipRect(r);
    painter.drawImage(target, image);
    painter.restore();
  }
  FFrame->Paint(painter, r);
}

LUMORA_CLASS_IMPL(TQRDBImage) {
  PublishReportProperties(c, {"Enabled", "Frame", "Size"});
  c.Property("Center", &TQRDBImage::FCenter, &TQRDBImage::FCenter).Default(true);
  c.Property("DataField", &TQRDBImage::FDataField, &TQRDBImage::FDataField);
  c.Property("DataSet", &TQRDBImage::DataSet, &TQRDBImage::SetDataSet);
  c.Property("Stretch", &TQRDBImage::FStretch, &TQRDBImage::FStretch).Default(false);
}

TQRDBImage::TQRDBImage(TComponent* owner) : TQRPrintable(owner) {
  FWidth = 105;
  FHeight = 105;
}

void TQRDBImage::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  painter.fillRect(r, ColorToQColor(FColor));
  QPen dotted(ColorToQColor(clGray), 1, Qt::DotLine);
  painter.setPen(dotted);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(r.adjusted(0, 0, -1, -1));
  DrawDesignNote(painter, r, "(" + (FDataField.empty() ? Name() : FDataField) + ")");
  FFrame->Paint(painter, r);
}
