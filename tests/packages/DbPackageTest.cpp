// The data package's classes as a form has them: data sets with their persistent fields,
// data sources, data controls over a closed data set, the grid and the navigator; read
// from form text, written back, drawn, and used with the mouse and keys.
#include "packages/dcldb/DBActns.h"
#include "packages/dcldb/DBClient.h"
#include "packages/dcldb/DBCtrls.h"
#include "packages/dcldb/DBGrids.h"
#include "packages/dcldb/DBTables.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/Forms.h"
#include "tests/packages/PackageTestUtil.h"

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace {

// A Delphi 4 form: a table with persistent fields (one of them a lookup into a second
// table), a data source, a navigator, an edit, a text, a check box and a grid with two
// columns.
const char* const kOrdersForm = R"(object Form1: TForm
  Left = 0
  Top = 0
  Width = 560
  Height = 360
  Caption = 'Orders'
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  PixelsPerInch = 96
  TextHeight = 13
  object DBText1: TDBText
    Left = 264
    Top = 40
    Width = 80
    Height = 17
    DataField = 'Company'
    DataSource = DataSource1
  end
  object DBNavigator1: TDBNavigator
    Left = 8
    Top = 8
    Width = 240
    Height = 25
    DataSource = DataSource1
    TabOrder = 0
  end
  object DBEdit1: TDBEdit
    Left = 8
    Top = 40
    Width = 121
    Height = 21
    DataField = 'CustNo'
    DataSource = DataSource1
    TabOrder = 1
  end
  object DBCheckBox1: TDBCheckBox
    Left = 136
    Top = 40
    Width = 97
    Height = 17
    Caption = 'Paid'
    DataField = 'Paid'
    DataSource = DataSource1
    TabOrder = 2
    ValueChecked = 'Y'
    ValueUnchecked = 'N'
  end
  object DBGrid1: TDBGrid
    Left = 8
    Top = 72
    Width = 400
    Height = 120
    DataSource = DataSource1
    TabOrder = 3
    TitleFont.Charset = DEFAULT_CHARSET
    TitleFont.Color = clWindowText
    TitleFont.Height = -11
    TitleFont.Name = 'MS Sans Serif'
    TitleFont.Style = []
    Columns = <
      item
        FieldName = 'CustNo'
        Title.Caption = 'Customer'
        Width = 80
      end
      item
        FieldName = 'Company'
      end>
  end
  object Orders: TTable
    Active = True
    DatabaseName = 'DBDEMOS'
    TableName = 'orders.db'
    Left = 440
    Top = 8
    object OrdersCustNo: TFloatField
      FieldName = 'CustNo'
      currency = True
    end
    object OrdersCompany: TStringField
      DisplayLabel = 'Company name'
      FieldName = 'Company'
      Size = 30
    end
    object OrdersCountry: TStringField
      FieldKind = fkLookup
      FieldName = 'Country'
      LookupDataSet = Customers
      LookupKeyFields = 'CustNo'
      LookupResultField = 'Country'
      KeyFields = 'CustNo'
      Size = 20
      Lookup = True
    end
  end
  object Customers: TTable
    DatabaseName = 'DBDEMOS'
    TableName = 'customer.db'
    Left = 440
    Top = 40
  end
  object DataSource1: TDataSource
    DataSet = Orders
    Left = 472
    Top = 8
  end
end
)";

class DbPackageTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { lumora::test::RegisterPackageClassesForTest(false); }
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
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  // The control as drawn on its form.
  static QImage Grab(TControl* control) { return control->Widget()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

  TForm* form = nullptr;
};

bool IsColor(const QImage& image, int x, int y, TColor color) {
  return image.pixel(x, y) == ColorToQColor(color).rgb();
}

// Whether any pixel of the rectangle is black.
bool HasBlack(const QImage& image, const QRect& r) {
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (image.pixel(x, y) == qRgb(0, 0, 0)) return true;
  return false;
}

TEST_F(DbPackageTest, FieldsAreChildrenOfTheirDataSetAndReferencesResolve) {
  Read(kOrdersForm);
  auto* orders = Find<TTable>("Orders");
  auto* customers = Find<TTable>("Customers");
  auto* source = Find<TDataSource>("DataSource1");
  ASSERT_TRUE(orders && customers && source);
  EXPECT_EQ(source->DataSet(), orders);
  ASSERT_EQ(orders->FieldCount(), 3);
  EXPECT_EQ(orders->Fields(0)->Name(), "OrdersCustNo");
  EXPECT_EQ(orders->Fields(2)->DataSet(), orders);
  // The fields belong to the form, and stream as the table's children.
  EXPECT_EQ(orders->Fields(0)->Owner(), form);
  auto* country = Find<TStringField>("OrdersCountry");
  ASSERT_TRUE(country);
  EXPECT_EQ(country->FieldKind(), fkLookup);
  EXPECT_EQ(country->LookupDataSet(), customers);
  EXPECT_TRUE(Find<TFloatField>("OrdersCustNo")->FCurrency);
  EXPECT_EQ(Find<TDBEdit>("DBEdit1")->DataSource(), source);
  EXPECT_EQ(Find<TDBEdit>("DBEdit1")->Field(), orders->FindField("custno"));
  // No database is opened: the table stays closed, keeping the Active the form gave.
  EXPECT_FALSE(orders->Active());
  EXPECT_TRUE(orders->StreamedActive());
}

TEST_F(DbPackageTest, WrittenBackAsReadWithFieldsInsideTheirTable) {
  Read(kOrdersForm);
  const std::string written = WriteComponentToText(form);
  const auto table = written.find("object Orders: TTable");
  const auto field = written.find("object OrdersCustNo: TFloatField");
  const auto customers = written.find("object Customers: TTable");
  ASSERT_NE(table, std::string::npos);
  EXPECT_TRUE(table < field && field < customers) << written;
  EXPECT_NE(written.find("currency = True"), std::string::npos);
  EXPECT_NE(written.find("Lookup = True"), std::string::npos);
  EXPECT_NE(written.find("Active = True"), std::string::npos);
  EXPECT_NE(written.find("Title.Caption = 'Customer'"), std::string::npos);
  // The grid's columns come after its published properties, as Delphi 4 wrote them.
  EXPECT_GT(written.find("    Columns = <"), written.find("    TitleFont.Style = []"));
  EXPECT_NE(written.find("ValueChecked = 'Y'"), std::string::npos);
  // What the closed controls show is never written.
  EXPECT_EQ(written.find("  Text = "), std::string::npos);

  // Read again, it writes the same.
  delete form;
  form = new TForm(Application);
  Read(written);
  EXPECT_EQ(WriteComponentToText(form), written);
}

TEST_F(DbPackageTest, FreeingADataSetOrSourceLeavesNoDanglingReference) {
  Read(kOrdersForm);
  auto* source = Find<TDataSource>("DataSource1");
  auto* edit = Find<TDBEdit>("DBEdit1");
  auto* country = Find<TStringField>("OrdersCountry");
  delete Find<TTable>("Customers");
  EXPECT_EQ(country->LookupDataSet(), nullptr);
  delete Find<TTable>("Orders");
  EXPECT_EQ(source->DataSet(), nullptr);
  // The fields stay with the form, without a data set.
  EXPECT_EQ(country->DataSet(), nullptr);
  delete source;
  EXPECT_EQ(edit->DataSource(), nullptr);
  EXPECT_EQ(Find<TDBGrid>("DBGrid1")->DataSource(), nullptr);
}

TEST_F(DbPackageTest, GridShowsItsColumnsTitledOverOneEmptyRow) {
  Read(kOrdersForm);
  auto* grid = Find<TDBGrid>("DBGrid1");
  ASSERT_TRUE(grid);
  // Indicator, two columns; the title row and one empty row.
  EXPECT_EQ(grid->ColCount(), 3);
  EXPECT_EQ(grid->FixedCols(), 1);
  EXPECT_EQ(grid->RowCount(), 2);
  EXPECT_EQ(grid->FixedRows(), 1);
  EXPECT_EQ(grid->ColWidths(0), IndicatorWidth);
  EXPECT_EQ(grid->ColWidths(1), 80);
  // The second column has no title of its own: the field's display label.
  const auto shown = grid->ShownColumns();
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0].Title, "Customer");
  EXPECT_EQ(shown[1].Title, "Company name");
  EXPECT_GT(grid->ColWidths(2), 30 * 4);  // thirty characters wide

  ShowForm();
  const QImage image = Grab(grid);
  const TRect title = grid->CellRect(1, 0);
  const TRect cell = grid->CellRect(1, 1);
  const TRect indicator = grid->CellRect(0, 1);
  EXPECT_TRUE(IsColor(image, title.Right - 3, title.Top + 3, clBtnFace));
  EXPECT_TRUE(IsColor(image, cell.Left + 3, cell.Top + 3, clWindow));
  EXPECT_TRUE(IsColor(image, indicator.Left + 4, indicator.Top + 4, clBtnFace));
  // The title is written in the title font.
  EXPECT_TRUE(HasBlack(image, QRect(title.Left + 2, title.Top + 2, title.Width() - 4, title.Height() - 4)));
  EXPECT_FALSE(HasBlack(image, QRect(cell.Left + 1, cell.Top + 1, cell.Width() - 2, cell.Height() - 2)));
}

TEST_F(DbPackageTest, GridWithoutColumnsTakesTheFieldsOrShowsOneEmptyColumn) {
  Read(kOrdersForm);
  auto* grid = Find<TDBGrid>("DBGrid1");
  grid->Columns()->Clear();
  // The closed table's persistent fields.
  auto shown = grid->ShownColumns();
  ASSERT_EQ(shown.size(), 3u);
  EXPECT_EQ(shown[2].Title, "Country");
  EXPECT_EQ(grid->ColCount(), 4);
  Find<TField>("OrdersCountry")->SetVisible(false);
  grid->LayoutChanged();
  EXPECT_EQ(grid->ColCount(), 3);
  // No data set: one empty column of the default width.
  grid->SetDataSource(nullptr);
  shown = grid->ShownColumns();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].Title, "");
  EXPECT_EQ(grid->ColWidths(1), 64);
  // Without indicator and titles.
  grid->SetDBOptions(TDBGridOptions{dgColLines, dgRowLines});
  EXPECT_EQ(grid->ColCount(), 1);
  EXPECT_EQ(grid->FixedCols(), 0);
  EXPECT_EQ(grid->FixedRows(), 0);
  EXPECT_EQ(grid->RowCount(), 1);
}

TEST_F(DbPackageTest, NavigatorDrawsItsButtonsWithGlyphsAndReportsClicks) {
  Read(kOrdersForm);
  auto* navigator = Find<TDBNavigator>("DBNavigator1");
  ShowForm();
  const auto rects = navigator->ButtonRects();
  const QImage image = Grab(navigator);
  for (int i = 0; i < TDBNavigator::kButtonCount; ++i) {
    SCOPED_TRACE(i);
    const TRect& r = rects[static_cast<std::size_t>(i)];
    EXPECT_EQ(r.Width(), 24);
    // A raised button: light top-left edge, dark bottom-right edge, a black glyph inside.
    EXPECT_TRUE(IsColor(image, r.Left + 1, r.Top + 1, clBtnHighlight));
    EXPECT_TRUE(IsColor(image, r.Right - 1, r.Bottom - 1, cl3DDkShadow));
    EXPECT_TRUE(HasBlack(image, QRect(r.Left + 3, r.Top + 3, r.Width() - 6, r.Height() - 6)));
  }
  std::vector<TNavigateBtn> clicked;
  navigator->OnNavClick = [&](TObject*, TNavigateBtn button) { clicked.push_back(button); };
  const TRect next = rects[nbNext];
  QTest::mouseClick(navigator->Widget(), Qt::LeftButton, Qt::NoModifier,
                    QPoint((next.Left + next.Right) / 2, (next.Top + next.Bottom) / 2));
  ASSERT_EQ(clicked.size(), 1u);
  EXPECT_EQ(clicked[0], nbNext);
}

TEST_F(DbPackageTest, NavigatorWithFewerButtonsSharesItsWidthAmongThem) {
  auto* navigator = new TDBNavigator(form);
  navigator->SetParent(form);
  navigator->SetBounds(0, 0, 241, 25);
  // Not aligned, the navigator keeps whole buttons: 241 becomes 240.
  EXPECT_EQ(navigator->Width(), 240);
  navigator->SetVisibleButtons(TButtonSet{nbInsert, nbDelete});
  auto rects = navigator->ButtonRects();
  EXPECT_EQ(rects[nbFirst].Width(), 0);
  EXPECT_EQ(rects[nbInsert].Left, 0);
  EXPECT_EQ(rects[nbInsert].Width(), 120);
  EXPECT_EQ(rects[nbDelete].Left, 120);
  // Aligned, the spare pixels go to buttons in the middle.
  navigator->SetAlign(alTop);
  form->SetClientWidth(243);
  navigator->SetVisibleButtons(TButtonSet{nbFirst, nbPrior, nbNext, nbLast});
  EXPECT_EQ(navigator->Width(), 243);
  rects = navigator->ButtonRects();
  int wider = 0;
  for (TNavigateBtn b : {nbFirst, nbPrior, nbNext, nbLast}) {
    EXPECT_TRUE(rects[b].Width() == 60 || rects[b].Width() == 61);
    if (rects[b].Width() == 61) ++wider;
  }
  EXPECT_EQ(wider, 3);
  EXPECT_EQ(rects[nbLast].Right, 243);
}

TEST_F(DbPackageTest, ClosedControlsAreEmptyAndShowTheirNamesWhileDesigned) {
  Read(kOrdersForm);
  ShowForm();
  auto* edit = Find<TDBEdit>("DBEdit1");
  auto* text = Find<TDBText>("DBText1");
  auto* editor = qobject_cast<QLineEdit*>(edit->Widget());
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "");
  const QRect inside(3, 3, edit->Width() - 6, edit->Height() - 6);
  EXPECT_FALSE(HasBlack(Grab(edit), inside));

  form->SetDesignState(true);
  QApplication::processEvents();
  EXPECT_EQ(editor->text(), "DBEdit1");
  const QImage designed = Grab(text);
  EXPECT_TRUE(HasBlack(designed, QRect(0, 0, text->Width(), text->Height())));

  form->SetDesignState(false);
  QApplication::processEvents();
  EXPECT_EQ(editor->text(), "");
  EXPECT_FALSE(HasBlack(Grab(text), QRect(0, 0, text->Width(), text->Height())));
}

TEST_F(DbPackageTest, NothingTypedOrClickedReachesAClosedField) {
  Read(kOrdersForm);
  ShowForm();
  auto* edit = Find<TDBEdit>("DBEdit1");
  auto* editor = qobject_cast<QLineEdit*>(edit->Widget());
  edit->SetFocus();
  QTest::keyClicks(editor, "1234");
  EXPECT_EQ(editor->text(), "");
  EXPECT_EQ(edit->Text(), "");
  auto* check = Find<TDBCheckBox>("DBCheckBox1");
  auto* box = qobject_cast<QCheckBox*>(check->Widget());
  ASSERT_NE(box, nullptr);
  QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(6, box->height() / 2));
  EXPECT_EQ(check->State(), cbUnchecked);
  EXPECT_EQ(box->checkState(), Qt::Unchecked);
}

TEST_F(DbPackageTest, ParametersDefinitionsAndPackedDataStreamAsTheFormHasThem) {
  Read(R"(object Form1: TForm
  Left = 0
  Top = 0
  Width = 300
  Height = 200
  object Query1: TQuery
    DatabaseName = 'DBDEMOS'
    SQL.Strings = (
      'select * from orders where CustNo = :CustNo')
    Left = 8
    Top = 8
    ParamData = <
      item
        DataType = ftInteger
        Name = 'CustNo'
        ParamType = ptInput
      end>
  end
  object Table1: TTable
    FieldDefs = <
      item
        Name = 'CustNo'
        DataType = ftFloat
        Precision = 0
        Required = True
        Size = 0
      end>
    StoreDefs = True
    TableName = 'customer.db'
    Left = 40
    Top = 8
  end
  object ClientDataSet1: TClientDataSet
    Aggregates = <>
    Params = <>
    Left = 72
    Top = 8
    Data = {
      0102030405}
  end
end
)");
  auto* query = Find<TQuery>("Query1");
  ASSERT_EQ(query->Params()->Count(), 1);
  EXPECT_EQ(query->Params()->Items(0)->FName, "CustNo");
  EXPECT_EQ(query->Params()->Items(0)->FDataType, ftInteger);
  EXPECT_EQ(query->SQL()->Count(), 1);
  auto* table = Find<TTable>("Table1");
  ASSERT_EQ(table->FieldDefs()->Count(), 1);
  EXPECT_TRUE(table->FieldDefs()->Items(0)->Required());
  EXPECT_EQ(Find<TClientDataSet>("ClientDataSet1")->Data(), std::string("\x01\x02\x03\x04\x05"));
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("ParamData = <"), std::string::npos) << written;
  EXPECT_NE(written.find("Required = True"), std::string::npos);
  EXPECT_NE(written.find("Precision = 0"), std::string::npos);
  EXPECT_NE(written.find("0102030405"), std::string::npos);
}

TEST_F(DbPackageTest, DataSetActionsShowDisabledWithNothingToActOn) {
  auto* action = new TDataSetNext(form);
  EXPECT_TRUE(action->Enabled());
  action->Update();
  EXPECT_FALSE(action->Enabled());
  // An action whose form decides for itself is left to it.
  auto* own = new TDataSetPrior(form);
  bool asked = false;
  own->OnUpdate = [&](TObject*) { asked = true; };
  own->Update();
  EXPECT_TRUE(asked);
  EXPECT_TRUE(own->Enabled());
}

TEST_F(DbPackageTest, ImageShowsItsNameInParenthesesWhileDesigned) {
  auto* image = new TDBImage(form);
  image->SetName("Photo");
  image->SetParent(form);
  image->SetBounds(0, 0, 105, 105);
  ShowForm();
  const QRect inside(3, 3, 99, 99);
  EXPECT_FALSE(HasBlack(Grab(image), inside));
  form->SetDesignState(true);
  QApplication::processEvents();
  EXPECT_TRUE(HasBlack(Grab(image), inside));
}

}  // namespace
