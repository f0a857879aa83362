#pragma once
// The printable controls of a report: labels, data texts, expressions, system data,
// memos, rich texts, shapes and images. In the designer each shows what it will print
// where that is known (a label's caption, a shape, a picture) and otherwise what it
// stands for (a data text's field name, an expression, the kind of system data).

#include "packages/dclqrt/QuickRpt.h"

#include <string>

LUMORA_ENUM(TQRSysDataType, qrsTime, qrsDate, qrsDateTime, qrsPageNumber, qrsReportTitle, qrsDetailCount, qrsDetailNo)
LUMORA_ENUM(TQRShapeType, qrsRectangle, qrsCircle, qrsVertLine, qrsHorLine, qrsTopAndBottom, qrsRightAndLeft)
LUMORA_EVENT(TQRLabelOnPrintEvent, void(TObject* Sender, std::string& Value))

// A piece of the report that prints.
class TQRPrintable : public TQRFrameable {
  LUMORA_CLASS(TQRPrintable, TQRFrameable)
public:
  explicit TQRPrintable(TComponent* owner);
};

// Text that prints: a caption, a field, an expression, lines.
class TQRCustomLabel : public TQRPrintable {
  LUMORA_CLASS(TQRCustomLabel, TQRPrintable)
public:
  explicit TQRCustomLabel(TComponent* owner);
  TAlignment FAlignment = taLeftJustify;
  bool FAlignToBand = false;
  bool FAutoSize = true;
  bool FAutoStretch = false;
  bool FTransparent = false;
  bool FWordWrap = true;
  int FFontSize = 0;
  TQRLabelOnPrintEvent OnPrint;
  // What the designer shows in the control.
  virtual std::string DesignText() const { return FText; }
  // The font as the designer shows it: at the report's zoom.
  QFont ZoomedFont() const;
  void Paint(QPainter& painter) override;
  // FontSize, the font's size in points at a zoom of 100%.
  void DefineProperties(TFiler& filer) override;
};

class TQRLabel : public TQRCustomLabel {
  LUMORA_CLASS(TQRLabel, TQRCustomLabel)
public:
  explicit TQRLabel(TComponent* owner) : TQRCustomLabel(owner) {}
};

class TQRDBText : public TQRCustomLabel {
  LUMORA_CLASS(TQRDBText, TQRCustomLabel)
public:
  explicit TQRDBText(TComponent* owner) : TQRCustomLabel(owner) {}
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { Link(FDataSet, value); }
  std::string FDataField;
  std::string FMask;
  std::string DesignText() const override { return FDataField.empty() ? Name() : FDataField; }

protected:
  std::vector<TComponent**> Links() override { return {reinterpret_cast<TComponent**>(&FDataSet)}; }

private:
  TDataSet* FDataSet = nullptr;
};

class TQRExpr : public TQRCustomLabel {
  LUMORA_CLASS(TQRExpr, TQRCustomLabel)
public:
  explicit TQRExpr(TComponent* owner) : TQRCustomLabel(owner) {}
  TComponent* Master() const { return FMaster; }
  void SetMaster(TComponent* value) { Link(FMaster, value); }
  std::string FExpression;
  std::string FMask;
  bool FResetAfterPrint = false;
  std::string DesignText() const override { return FExpression.empty() ? Name() : FExpression; }

protected:
  std::vector<TComponent**> Links() override { return {&FMaster}; }

private:
  TComponent* FMaster = nullptr;
};

class TQRSysData : public TQRCustomLabel {
  LUMORA_CLASS(TQRSysData, TQRCustomLabel)
public:
  explicit TQRSysData(TComponent* owner) : TQRCustomLabel(owner) {}
  TQRSysDataType FData = qrsTime;
  // The text printed before the data.
  std::string FTextPrefix;
  std::string DesignText() const override;
};

// Text of several lines.
class TQRCustomMemo : public TQRCustomLabel {
  LUMORA_CLASS(TQRCustomMemo, TQRCustomLabel)
public:
  explicit TQRCustomMemo(TComponent* owner);
  ~TQRCustomMemo() override;
  TStrings* Lines() const { return FLines; }
  void SetLines(TStrings* value) { FLines->Assign(value); }
  std::string DesignText() const override;

protected:
  TStringList* FLines;
};

class TQRMemo : public TQRCustomMemo {
  LUMORA_CLASS(TQRMemo, TQRCustomMemo)
public:
  explicit TQRMemo(TComponent* owner) : TQRCustomMemo(owner) {}
};

class TQRExprMemo : public TQRCustomMemo {
  LUMORA_CLASS(TQRExprMemo, TQRCustomMemo)
public:
  explicit TQRExprMemo(TComponent* owner) : TQRCustomMemo(owner) {}
  bool FRemoveBlankLines = false;
};

class TQRRichText : public TQRCustomMemo {
  LUMORA_CLASS(TQRRichText, TQRCustomMemo)
public:
  explicit TQRRichText(TComponent* owner) : TQRCustomMemo(owner) {}
};

class TQRDBRichText : public TQRCustomLabel {
  LUMORA_CLASS(TQRDBRichText, TQRCustomLabel)
public:
  explicit TQRDBRichText(TComponent* owner);
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { Link(FDataSet, value); }
  std::string FDataField;
  std::string DesignText() const override { return FDataField.empty() ? Name() : FDataField; }

protected:
  std::vector<TComponent**> Links() override { return {reinterpret_cast<TComponent**>(&FDataSet)}; }

private:
  TDataSet* FDataSet = nullptr;
};

class TQRShape : public TQRPrintable {
  LUMORA_CLASS(TQRShape, TQRPrintable)
public:
  explicit TQRShape(TComponent* owner);
  ~TQRShape() override;
  TBrush* Brush() const { return FBrush; }
  void SetBrush(TBrush* value) { FBrush->Assign(value); }
  TPen* Pen() const { return FPen; }
  void SetPen(TPen* value) { FPen->Assign(value); }
  TQRShapeType FShape = qrsRectangle;
  void Paint(QPainter& painter) override;

private:
  TBrush* FBrush;
  TPen* FPen;
};

class TQRImage : public TQRPrintable {
  LUMORA_CLASS(TQRImage, TQRPrintable)
public:
  explicit TQRImage(TComponent* owner);
  ~TQRImage() override;
  TPicture* Picture() const { return FPicture; }
  void SetPicture(TPicture* value) { FPicture->Assign(value); }
  bool FAutoSize = false;
  bool FCenter = false;
  bool FStretch = false;
  void Paint(QPainter& painter) override;

private:
  TPicture* FPicture;
};

class TQRDBImage : public TQRPrintable {
  LUMORA_CLASS(TQRDBImage, TQRPrintable)
public:
  explicit TQRDBImage(TComponent* owner);
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { Link(FDataSet, value); }
  bool FCenter = true;
  std::string FDataField;
  bool FStretch = false;
  void Paint(QPainter& painter) override;

protected:
  std::vector<TComponent**> Links() override { return {reinterpret_cast<TComponent**>(&FDataSet)}; }

private:
  TDataSet* FDataSet = nullptr;
};

// Draws a design note (a name where nothing else would show) centred in `rect`.
void DrawDesignNote(QPainter& painter, const QRect& rect, const std::string& text);
