// The report package's classes as a form has them: a report page with its margins,
// bands named after their type, labels, data texts showing their field names, system
// data, shapes and images; read from form text, written back and drawn as the report
// designer shows them.
#include "packages/dclqrt/QRExtra.h"
#include "packages/dcldb/DBTables.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/Forms.h"
#include "tests/packages/PackageTestUtil.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

#include <string>

namespace {

// A report on a form as Delphi 4 wrote it: an A4 page at 100%, a title, a column header,
// a detail band over the table, a group and a page footer.
const char* const kReportForm = R"(object Form1: TForm
  Left = 0
  Top = 0
  Width = 900
  Height = 700
  Caption = 'Report'
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  PixelsPerInch = 96
  TextHeight = 13
  object QuickRep1: TQuickRep
    Left = 0
    Top = 0
    Width = 794
    Height = 1123
    Frame.Color = clBlack
    Frame.DrawTop = False
    Frame.DrawBottom = False
    Frame.DrawLeft = False
    Frame.DrawRight = False
    DataSet = Table1
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clWindowText
    Font.Height = -13
    Font.Name = 'Arial'
    Font.Style = []
    Functions.Strings = (
      'PAGENUMBER'
      'COLUMNNUMBER'
      'REPORTTITLE')
    Functions.DATA = (
      '0'
      '0'
      #39#39)
    Options = [FirstPageHeader, LastPageFooter]
    Page.Columns = 1
    Page.Orientation = poPortrait
    Page.PaperSize = A4
    Page.Values = (
      100
      2970
      200
      2100
      100
      100
      0)
    PrinterSettings.Copies = 1
    PrinterSettings.Duplex = False
    PrinterSettings.FirstPage = 0
    PrinterSettings.LastPage = 0
    PrinterSettings.OutputBin = Auto
    PrintIfEmpty = True
    SnapToGrid = True
    Units = MM
    Zoom = 100
    object TitleBand1: TQRBand
      Left = 38
      Top = 76
      Width = 718
      Height = 40
      Frame.Color = clBlack
      Frame.DrawTop = False
      Frame.DrawBottom = True
      Frame.DrawLeft = False
      Frame.DrawRight = False
      AlignToBottom = False
      Color = clWhite
      ForceNewColumn = False
      ForceNewPage = False
      Size.Values = (
        105.833333333333300000
        1899.708333333333000000)
      BandType = rbTitle
      object QRLabel1: TQRLabel
        Left = 8
        Top = 8
        Width = 60
        Height = 17
        Frame.Color = clBlack
        Frame.DrawTop = False
        Frame.DrawBottom = False
        Frame.DrawLeft = False
        Frame.DrawRight = False
        Size.Values = (
          44.979166666666670000
          21.166666666666670000
          21.166666666666670000
          158.750000000000000000)
        Alignment = taLeftJustify
        AlignToBand = False
        AutoSize = True
        AutoStretch = False
        Caption = 'CustNo'
        Color = clWhite
        Transparent = False
        WordWrap = True
        FontSize = 10
      end
      object QRShape1: TQRShape
        Left = 200
        Top = 4
        Width = 100
        Height = 30
        Frame.Color = clBlack
        Frame.DrawTop = False
        Frame.DrawBottom = False
        Frame.DrawLeft = False
        Frame.DrawRight = False
        Size.Values = (
          79.375000000000000000
          529.166666666666700000
          10.583333333333330000
          264.583333333333300000)
        Shape = qrsHorLine
      end
    end
    object DetailBand1: TQRBand
      Left = 38
      Top = 116
      Width = 718
      Height = 30
      Frame.Color = clBlack
      Frame.DrawTop = False
      Frame.DrawBottom = False
      Frame.DrawLeft = False
      Frame.DrawRight = False
      AlignToBottom = False
      Color = clWhite
      ForceNewColumn = False
      ForceNewPage = False
      Size.Values = (
        79.375000000000000000
        1899.708333333333000000)
      BandType = rbDetail
      object QRDBText1: TQRDBText
        Left = 8
        Top = 8
        Width = 60
        Height = 17
        Frame.Color = clBlack
        Frame.DrawTop = False
        Frame.DrawBottom = False
        Frame.DrawLeft = False
        Frame.DrawRight = False
        Size.Values = (
          44.979166666666670000
          21.166666666666670000
          21.166666666666670000
          158.750000000000000000)
        Alignment = taLeftJustify
        AlignToBand = False
        AutoSize = True
        AutoStretch = False
        Color = clWhite
        DataSet = Table1
        DataField = 'CustNo'
        Transparent = False
        WordWrap = True
        FontSize = 10
      end
    end
    object QRGroup1: TQRGroup
      Left = 38
      Top = 146
      Width = 718
      Height = 24
      Frame.Color = clBlack
      Frame.DrawTop = False
      Frame.DrawBottom = False
      Frame.DrawLeft = False
      Frame.DrawRight = False
      AlignToBottom = False
      Color = clWhite
      ForceNewColumn = False
      ForceNewPage = False
      Size.Values = (
        63.500000000000000000
        1899.708333333333000000)
      Expression = 'Table1.Country'
      Master = QuickRep1
      ReprintOnNewPage = False
    end
    object PageFooterBand1: TQRBand
      Left = 38
      Top = 170
      Width = 718
      Height = 30
      Frame.Color = clBlack
      Frame.DrawTop = False
      Frame.DrawBottom = False
      Frame.DrawLeft = False
      Frame.DrawRight = False
      AlignToBottom = False
      Color = clWhite
      ForceNewColumn = False
      ForceNewPage = False
      Size.Values = (
        79.375000000000000000
        1899.708333333333000000)
      BandType = rbPageFooter
      object QRSysData1: TQRSysData
        Left = 600
        Top = 8
        Width = 100
        Height = 17
        Frame.Color = clBlack
        Frame.DrawTop = False
        Frame.DrawBottom = False
        Frame.DrawLeft = False
        Frame.DrawRight = False
        Size.Values = (
          44.979166666666670000
          1587.500000000000000000
          21.166666666666670000
          264.583333333333300000)
        Alignment = taRightJustify
        AlignToBand = False
        AutoSize = True
        Color = clWhite
        Data = qrsPageNumber
        Text = 'Page '
        Transparent = False
        FontSize = 10
      end
    end
  end
  object Table1: TTable
    TableName = 'customer.db'
    Left = 820
    Top = 8
  end
end
)";

class QrPackageTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { lumora::test::RegisterPackageClassesForTest(true); }
  void SetUp() override { form = new TForm(Application); }
  void TearDown() override { delete form; }
  void Read(const std::string& text) {
    const TFormLoadResult result = LoadFormFile(form, text);
    ASSERT_TRUE(result.Read);
    for (const auto& e : result.Errors) ADD_FAILURE() << e;
  }
  template <class T>
  T* Find(const char* name) {
    auto* c = dynamic_cast<T*>(form->FindComponent(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
  }
  void ShowForm() {
    form->Show();
    QApplication::processEvents();
  }
  static QImage Grab(TControl* control) { return control->Widget()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

  TForm* form = nullptr;
};

int CountColor(const QImage& image, const QRect& r, QRgb color) {
  int n = 0;
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (image.pixel(x, y) == color) ++n;
  return n;
}

// Pixels of a grey between black and white, as the designer's notes have.
int GreyPixels(const QImage& image, const QRect& r) {
  int n = 0;
  for (int y = r.top(); y <= r.bottom(); ++y) {
    for (int x = r.left(); x <= r.right(); ++x) {
      const QRgb p = image.pixel(x, y);
      if (qRed(p) == qGreen(p) && qGreen(p) == qBlue(p) && qGray(p) > 60 && qGray(p) < 200) ++n;
    }
  }
  return n;
}

// The rows of the image, within `r`, that hold a pixel darker than light grey.
int InkRows(const QImage& image, const QRect& r) {
  int rows = 0;
  for (int y = r.top(); y <= r.bottom(); ++y) {
    for (int x = r.left(); x <= r.right(); ++x) {
      if (qGray(image.pixel(x, y)) < 128) {
        ++rows;
        break;
      }
    }
  }
  return rows;
}

TEST_F(QrPackageTest, ReportReadsWithItsPageBandsAndReferences) {
  Read(kReportForm);
  auto* report = Find<TQuickRep>("QuickRep1");
  auto* table = Find<TTable>("Table1");
  ASSERT_TRUE(report && table);
  EXPECT_EQ(report->DataSet(), table);
  EXPECT_EQ(report->Page()->FPaperSize, qr::A4);
  EXPECT_EQ(report->Page()->Values().size(), 7u);
  EXPECT_EQ(report->Functions()->Names()->Count(), 3);
  EXPECT_EQ(Find<TQRBand>("TitleBand1")->BandType(), rbTitle);
  EXPECT_EQ(Find<TQRBand>("TitleBand1")->Parent(), report);
  EXPECT_EQ(Find<TQRDBText>("QRDBText1")->DataSet(), table);
  EXPECT_EQ(Find<TQRGroup>("QRGroup1")->Master(), report);
  EXPECT_EQ(Find<TQRLabel>("QRLabel1")->FFontSize, 10);
  EXPECT_EQ(Find<TQRBand>("DetailBand1")->Size()->Values().size(), 2u);
  // Margins from tenths of millimetres at the page's own scale: left 10 mm, top 20 mm.
  const QRect margins = report->MarginRect();
  EXPECT_EQ(margins.left(), 38);
  EXPECT_EQ(margins.top(), 76);
  EXPECT_EQ(margins.right(), 794 - 38 - 1);
}

TEST_F(QrPackageTest, WrittenBackAsRead) {
  Read(kReportForm);
  const std::string written = WriteComponentToText(form);
  // Booleans of frames and labels always, sizes as the floats they were, the font size.
  EXPECT_NE(written.find("Frame.DrawTop = False"), std::string::npos);
  EXPECT_NE(written.find("ForceNewPage = False"), std::string::npos);
  EXPECT_NE(written.find("FontSize = 10"), std::string::npos);
  EXPECT_NE(written.find("Page.PaperSize = A4"), std::string::npos);
  EXPECT_NE(written.find("'COLUMNNUMBER'"), std::string::npos);
  EXPECT_NE(written.find("Data = qrsPageNumber"), std::string::npos);
  EXPECT_NE(written.find("Master = QuickRep1"), std::string::npos);
  delete form;
  form = new TForm(Application);
  Read(written);
  EXPECT_EQ(WriteComponentToText(form), written);
}

TEST_F(QrPackageTest, PageIsWhiteWithDottedMarginsAndNamedBands) {
  Read(kReportForm);
  ShowForm();
  auto* report = Find<TQuickRep>("QuickRep1");
  const QImage page = Grab(report);
  EXPECT_EQ(page.pixel(10, 10), qRgb(255, 255, 255));
  // The left margin's dotted line: every other pixel silver.
  const QRect margins = report->MarginRect();
  const int silver = CountColor(page, QRect(margins.left() - 1, 0, 1, 40), ColorToQColor(clSilver).rgb());
  EXPECT_GE(silver, 10);
  EXPECT_LE(silver, 30);
  // Each band writes its type in grey at its lower left (where nothing covers it here).
  for (const char* name : {"TitleBand1", "QRGroup1", "PageFooterBand1"}) {
    SCOPED_TRACE(name);
    auto* band = Find<TQRCustomBand>(name);
    EXPECT_GT(GreyPixels(Grab(band), QRect(2, band->Height() - 12, 60, 10)), 5);
  }
  // A band without a type name would show none there.
  EXPECT_EQ(GreyPixels(page, QRect(margins.left() + 2, 2, 60, 10)), 0);
  EXPECT_EQ(Find<TQRGroup>("QRGroup1")->BandTypeName(), "Group Header");
  // The title band's frame line along its bottom.
  auto* title = Find<TQRBand>("TitleBand1");
  const QImage strip = Grab(title);
  EXPECT_EQ(strip.pixel(300, title->Height() - 1), qRgb(0, 0, 0));
}

TEST_F(QrPackageTest, DataTextShowsItsFieldNameAsALabelWouldItsCaption) {
  Read(kReportForm);
  ShowForm();
  const QImage label = Grab(Find<TQRLabel>("QRLabel1"));
  const QImage text = Grab(Find<TQRDBText>("QRDBText1"));
  EXPECT_GT(InkRows(label, label.rect()), 5);
  EXPECT_TRUE(label == text);
  EXPECT_EQ(Find<TQRSysData>("QRSysData1")->DesignText(), "Page (Page Number)");
}

TEST_F(QrPackageTest, ShapesDrawTheirLine) {
  Read(kReportForm);
  ShowForm();
  auto* shape = Find<TQRShape>("QRShape1");
  QImage image = Grab(shape);
  EXPECT_EQ(image.pixel(50, 15), qRgb(0, 0, 0));
  EXPECT_EQ(image.pixel(50, 3), qRgb(255, 255, 255));
  shape->FShape = qrsVertLine;
  shape->Invalidate();
  image = Grab(shape);
  EXPECT_EQ(image.pixel(50, 3), qRgb(0, 0, 0));
  EXPECT_EQ(image.pixel(10, 15), qRgb(255, 255, 255));
}

TEST_F(QrPackageTest, TextFollowsTheReportsZoom) {
  Read(kReportForm);
  ShowForm();
  auto* label = Find<TQRLabel>("QRLabel1");
  const int full = InkRows(Grab(label), QRect(0, 0, label->Width(), label->Height()));
  Find<TQuickRep>("QuickRep1")->FZoom = 50;
  label->Invalidate();
  const int half = InkRows(Grab(label), QRect(0, 0, label->Width(), label->Height()));
  EXPECT_GT(full, 7);
  EXPECT_LT(half, full * 3 / 4);
  EXPECT_GT(half, 0);
}

TEST_F(QrPackageTest, FreeingAReferencedComponentClearsTheReference) {
  Read(kReportForm);
  auto* report = Find<TQuickRep>("QuickRep1");
  auto* text = Find<TQRDBText>("QRDBText1");
  delete Find<TTable>("Table1");
  EXPECT_EQ(report->DataSet(), nullptr);
  EXPECT_EQ(text->DataSet(), nullptr);
  auto* group = Find<TQRGroup>("QRGroup1");
  auto* footer = Find<TQRBand>("PageFooterBand1");
  group->SetFooterBand(footer);
  delete footer;
  EXPECT_EQ(group->FooterBand(), nullptr);
}

}  // namespace
