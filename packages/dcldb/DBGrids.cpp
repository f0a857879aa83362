#include "packages/dcldb/DBGrids.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/Publish.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {


// A column's width for a field of `displayWidth` characters, at least its title's.
int FieldColumnWidth(const QFont& font, int displayWidth, const QFont& titleFont, const QString& title, bool titles) {
  // The average width of a character, as the font's metrics give it on the classic desktop.
  static const QString sample = QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
  const QFontMetrics fm(font);
  const int average = (fm.horizontalAdvance(sample) + static_cast<int>(sample.size()) / 2) / static_cast<int>(sample.size());
  int width = displayWidth * average + 4;
  if (titles) width = std::max(width, QFontMetrics(titleFont).horizontalAdvance(title) + 4);
  return width;
}

TTextHAlign HAlignOf(TAlignment a) {
  return a == taRightJustify ? TTextHAlign::Right : a == taCenter ? TTextHAlign::Center : TTextHAlign::Left;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// TColumnTitle

LUMORA_CLASS_IMPL(TColumnTitle) {
  c.Property("Alignment", &TColumnTitle::Alignment, &TColumnTitle::SetAlignment).Default(taLeftJustify);
  c.Property("Caption", &TColumnTitle::Caption, &TColumnTitle::SetCaption).Stored(&TColumnTitle::IsCaptionStored);
  c.Property("Color", &TColumnTitle::Color, &TColumnTitle::SetColor).Stored(&TColumnTitle::IsColorStored);
  c.Property("Font", &TColumnTitle::Font, &TColumnTitle::SetFont).Stored(&TColumnTitle::IsFontStored);
}

TColumnTitle::TColumnTitle(TColumn* column) : FColumn(column), FFont(new TFont()) {
  FFont->OnChange = [this](TObject*) {
    if (FFontSyncing) return;
    FFontSet = true;
    if (TCustomDBGrid* grid = FColumn->Grid()) grid->LayoutChanged();
  };
}

TColumnTitle::~TColumnTitle() {
  FFont->OnChange = nullptr;
  delete FFont;
}

void TColumnTitle::SetAlignment(TAlignment value) {
  FAlignment = value;
  if (TCustomDBGrid* grid = FColumn->Grid()) grid->Invalidate();
}

std::string TColumnTitle::Caption() const {
  if (FCaptionSet) return FCaption;
  if (TField* field = FColumn->Field()) return field->DisplayName();
  return FColumn->FieldName();
}

void TColumnTitle::SetCaption(const std::string& value) {
  FCaption = value;
  FCaptionSet = true;
  if (TCustomDBGrid* grid = FColumn->Grid()) grid->LayoutChanged();
}

TColor TColumnTitle::Color() const {
  if (FColorSet) return FColor;
  TCustomDBGrid* grid = FColumn->Grid();
  return grid ? grid->FixedColor() : clBtnFace;
}

void TColumnTitle::SetColor(TColor value) {
  FColor = value;
  FColorSet = true;
  if (TCustomDBGrid* grid = FColumn->Grid()) grid->Invalidate();
}

TFont* TColumnTitle::Font() const {
  // Unset, the title's font follows the grid's title font.
  if (!FFontSet) {
    if (TCustomDBGrid* grid = FColumn->Grid()) {
      auto* self = const_cast<TColumnTitle*>(this);
      self->FFontSyncing = true;
      self->FFont->Assign(grid->TitleFont());
      self->FFontSyncing = false;
    }
  }
  return FFont;
}

void TColumnTitle::SetFont(TFont* value) { FFont->Assign(value); }

void TColumnTitle::Assign(TPersistent* source) {
  if (auto* title = dynamic_cast<TColumnTitle*>(source)) {
    FAlignment = title->FAlignment;
    FCaption = title->FCaption;
    FCaptionSet = title->FCaptionSet;
    FColor = title->FColor;
    FColorSet = title->FColorSet;
    if (title->FFontSet) SetFont(title->FFont);
    return;
  }
  TPersistent::Assign(source);
}

TPersistent* TColumnTitle::GetOwner() { return FColumn; }

// ---------------------------------------------------------------------------------------
// TColumn

LUMORA_CLASS_IMPL(TColumn) {
  c.Property("Alignment", &TColumn::Alignment, &TColumn::SetAlignment).Stored(&TColumn::IsAlignmentStored);
  c.Property("ButtonStyle", &TColumn::FButtonStyle, &TColumn::FButtonStyle).Default(cbsAuto);
  c.Property("Color", &TColumn::Color, &TColumn::SetColor).Stored(&TColumn::IsColorStored);
  c.Property("DropDownRows", &TColumn::FDropDownRows, &TColumn::FDropDownRows).Default(7);
  c.Property("Expanded", &TColumn::FExpanded, &TColumn::FExpanded).Default(true);
  c.Property("FieldName", &TColumn::FieldName, &TColumn::SetFieldName);
  c.Property("Font", &TColumn::Font, &TColumn::SetFont).Stored(&TColumn::IsFontStored);
  c.Property("ImeMode", &TColumn::FImeMode, &TColumn::FImeMode).Default(imDontCare);
  c.Property("ImeName", &TColumn::FImeName, &TColumn::FImeName);
  c.Property("PickList", &TColumn::PickList, &TColumn::SetPickList).Stored(&TColumn::HasPickList);
  c.Property("PopupMenu", &TColumn::PopupMenu, &TColumn::SetPopupMenu);
  c.Property("ReadOnly", &TColumn::FReadOnly, &TColumn::FReadOnly).Default(false);
  c.Property("Title", &TColumn::Title, &TColumn::SetTitle);
  c.Property("Width", &TColumn::Width, &TColumn::SetWidth).Stored(&TColumn::IsWidthStored);
  c.Property("Visible", &TColumn::Visible, &TColumn::SetVisible).Default(true);
}

TColumn::TColumn(TCollection* collection)
    : TCollectionItem(collection), FFont(new TFont()), FPickList(new TStringList()), FTitle(new TColumnTitle(this)) {
  FFont->OnChange = [this](TObject*) {
    if (FFontSyncing) return;
    FFontSet = true;
    Changed(false);
  };
}

TColumn::~TColumn() {
  FFont->OnChange = nullptr;
  delete FTitle;
  delete FPickList;
  delete FFont;
}

TCustomDBGrid* TColumn::Grid() const {
  auto* columns = dynamic_cast<TDBGridColumns*>(Collection());
  return columns ? columns->Grid() : nullptr;
}

TField* TColumn::Field() const {
  TCustomDBGrid* grid = Grid();
  TDataSet* dataSet = grid ? DataSetOf(grid->DataSource()) : nullptr;
  return dataSet && !FFieldName.empty() ? dataSet->FindField(FFieldName) : nullptr;
}

TAlignment TColumn::Alignment() const {
  if (FAlignmentSet) return FAlignment;
  TField* field = Field();
  return field ? field->Alignment() : taLeftJustify;
}

void TColumn::SetAlignment(TAlignment value) {
  FAlignment = value;
  FAlignmentSet = true;
  Changed(false);
}

TColor TColumn::Color() const {
  if (FColorSet) return FColor;
  TCustomDBGrid* grid = Grid();
  return grid ? grid->Color() : clWindow;
}

void TColumn::SetColor(TColor value) {
  FColor = value;
  FColorSet = true;
  Changed(false);
}

void TColumn::SetFieldName(const std::string& value) {
  FFieldName = value;
  Changed(false);
}

TFont* TColumn::Font() const {
  if (!FFontSet) {
    if (TCustomDBGrid* grid = Grid()) {
      auto* self = const_cast<TColumn*>(this);
      self->FFontSyncing = true;
      self->FFont->Assign(grid->Font());
      self->FFontSyncing = false;
    }
  }
  return FFont;
}

void TColumn::SetFont(TFont* value) { FFont->Assign(value); }

int TColumn::Width() const {
  if (FWidthSet) return FWidth;
  TCustomDBGrid* grid = Grid();
  if (!grid) return 64;
  if (TField* field = Field()) {
    return FieldColumnWidth(Font()->Handle(), field->DisplayWidth(), FTitle->Font()->Handle(),
                            FTitle->Font()->ToUnicode(FTitle->Caption()), grid->DBOptions().Contains(dgTitles));
  }
  return grid->DefaultColWidth();
}

void TColumn::SetWidth(int value) {
  FWidth = value;
  FWidthSet = true;
  Changed(false);
}

void TColumn::SetVisible(bool value) {
  FVisible = value;
  Changed(false);
}

void TColumn::Assign(TPersistent* source) {
  if (auto* column = dynamic_cast<TColumn*>(source)) {
    FAlignment = column->FAlignment;
    FAlignmentSet = column->FAlignmentSet;
    FButtonStyle = column->FButtonStyle;
    FColor = column->FColor;
    FColorSet = column->FColorSet;
    FDropDownRows = column->FDropDownRows;
    FExpanded = column->FExpanded;
    FFieldName = column->FFieldName;
    if (column->FFontSet) SetFont(column->FFont);
    FImeMode = column->FImeMode;
    FImeName = column->FImeName;
    FPickList->Assign(column->FPickList);
    FPopupMenu = column->FPopupMenu;
    FReadOnly = column->FReadOnly;
    FTitle->Assign(column->FTitle);
    FWidth = column->FWidth;
    FWidthSet = column->FWidthSet;
    FVisible = column->FVisible;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string TColumn::GetDisplayName() const {
  return FFieldName.empty() ? TCollectionItem::GetDisplayName() : FFieldName;
}

// ---------------------------------------------------------------------------------------
// TDBGridColumns

LUMORA_CLASS_IMPL(TDBGridColumns) {}

TDBGridColumns::TDBGridColumns(TCustomDBGrid* grid, TClass columnClass) : TCollection(columnClass), FGrid(grid) {}

TPersistent* TDBGridColumns::GetOwner() { return FGrid; }

void TDBGridColumns::Update(TCollectionItem*) {
  if (FGrid) FGrid->LayoutChanged();
}

// ---------------------------------------------------------------------------------------
// TCustomDBGrid

LUMORA_CLASS_IMPL(TCustomDBGrid) {}

TCustomDBGrid::TCustomDBGrid(TComponent* owner)
    : TCustomGrid(owner),
      TDataAware(this),
      FColumns(new TDBGridColumns(this, TColumn::StaticClass())),
      FDBOptions{dgEditing, dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs, dgConfirmDelete,
                 dgCancelOnExit},
      FTitleFont(new TFont()) {
  FWidth = 320;
  FHeight = 120;
  FTitleFont->OnChange = [this](TObject*) {
    if (FTitleFontSyncing) return;
    FTitleFontSet = true;
    LayoutChanged();
  };
  LayoutChanged();
}

TCustomDBGrid::~TCustomDBGrid() {
  FTitleFont->OnChange = nullptr;
  delete FColumns;
  FColumns = nullptr;
  delete FTitleFont;
}

void TCustomDBGrid::SetDBOptions(TDBGridOptions value) {
  if (value.Contains(dgRowSelect)) {
    value.Exclude(dgAlwaysShowEditor);
    value.Exclude(dgEditing);
  }
  FDBOptions = value;
  LayoutChanged();
}

void TCustomDBGrid::SetTitleFont(TFont* value) { FTitleFont->Assign(value); }

void TCustomDBGrid::FontChanged() {
  TCustomGrid::FontChanged();
  // The titles take the grid's font until they are given their own.
  if (!FTitleFontSet && FTitleFont) {
    FTitleFontSyncing = true;
    FTitleFont->Assign(FFont);
    FTitleFontSyncing = false;
  }
  LayoutChanged();
}

std::vector<TCustomDBGrid::TShownColumn> TCustomDBGrid::ShownColumns() const {
  std::vector<TShownColumn> shown;
  const bool titles = FDBOptions.Contains(dgTitles);
  if (FColumns && FColumns->Count() > 0) {
    for (int i = 0; i < FColumns->Count(); ++i) {
      TColumn* column = FColumns->Items(i);
      if (!column->Visible()) continue;
      TShownColumn s;
      s.Title = column->Title()->Caption();
      s.TitleAlignment = column->Title()->Alignment();
      s.TitleFont = column->Title()->Font();
      s.TitleColor = column->Title()->Color();
      s.Color = column->Color();
      s.Width = column->Width();
      shown.push_back(s);
    }
    return shown;
  }
  if (TDataSet* dataSet = DataSetOf(DataSource())) {
    for (int i = 0; i < dataSet->FieldCount(); ++i) {
      TField* field = dataSet->Fields(i);
      if (!field->Visible()) continue;
      TShownColumn s;
      s.Title = field->DisplayName();
      s.TitleFont = FTitleFont;
      s.TitleColor = FFixedColor;
      s.Color = FColor;
      s.Width = FieldColumnWidth(FFont->Handle(), field->DisplayWidth(), FTitleFont->Handle(),
                                 FTitleFont->ToUnicode(s.Title), titles);
      shown.push_back(s);
    }
  }
  if (shown.empty()) {
    TShownColumn s;
    s.TitleFont = FTitleFont;
    s.TitleColor = FFixedColor;
    s.Color = FColor;
    s.Width = FDefaultColWidth;
    shown.push_back(s);
  }
  return shown;
}

void TCustomDBGrid::LayoutChanged() {
  if (!FColumns || !FTitleFont || Loading(this) || FLayingOut) return;
  FLayingOut = true;
  FShown = ShownColumns();
  TGridOptions options{goDrawFocusSelected};
  if (FDBOptions.Contains(dgColLines)) options += TGridOptions{goFixedVertLine, goVertLine};
  if (FDBOptions.Contains(dgRowLines)) options += TGridOptions{goFixedHorzLine, goHorzLine};
  if (FDBOptions.Contains(dgColumnResize)) options += TGridOptions{goColSizing};
  if (FDBOptions.Contains(dgTabs)) options.Include(goTabs);
  if (FDBOptions.Contains(dgRowSelect)) options.Include(goRowSelect);
  SetOptions(options);
  const int indicator = FDBOptions.Contains(dgIndicator) ? 1 : 0;
  const int titles = FDBOptions.Contains(dgTitles) ? 1 : 0;
  ChangeSize(indicator + static_cast<int>(FShown.size()), titles + 1);
  SetFixedCols(indicator);
  SetFixedRows(titles);
  if (indicator) SetColWidths(0, IndicatorWidth);
  for (std::size_t i = 0; i < FShown.size(); ++i) SetColWidths(indicator + static_cast<int>(i), FShown[i].Width);
  const int lines = FDBOptions.Contains(dgRowLines) ? FGridLineWidth : 0;
  SetDefaultRowHeight(FontCellHeight(FFont->Handle()) + 3 + lines);
  if (titles) SetRowHeights(0, FontCellHeight(FTitleFont->Handle()) + 4);
  FLayingOut = false;
  InvalidateGrid();
}

void TCustomDBGrid::DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) {
  const int indicator = FDBOptions.Contains(dgIndicator) ? 1 : 0;
  const int titles = FDBOptions.Contains(dgTitles) ? 1 : 0;
  const int index = aCol - indicator;
  const QRect r(rect.Left, rect.Top, rect.Width(), rect.Height());
  if (index < 0 || index >= static_cast<int>(FShown.size())) return;  // the indicator: no record to point at
  const TShownColumn& column = FShown[static_cast<std::size_t>(index)];
  if (aRow < titles) {
    if (column.TitleColor != FFixedColor) painter.fillRect(r.adjusted(1, 1, -1, -1), ColorToQColor(column.TitleColor));
    TCaptionLayout layout;
    layout.HAlign = HAlignOf(column.TitleAlignment);
    layout.ShowAccelChar = false;
    TFont* font = column.TitleFont ? column.TitleFont : FTitleFont;
    DrawCaption(painter, r.adjusted(2, 2, -2, 0), font->Handle(), font->ToUnicode(column.Title), layout,
                ColorToQColor(font->Color()));
    return;
  }
  // The one empty row of a closed data set: the column's colour, never a selection.
  (void)state;
  painter.fillRect(r, ColorToQColor(column.Color));
}

void TCustomDBGrid::Loaded() {
  TCustomGrid::Loaded();
  LayoutChanged();
}

void TCustomDBGrid::Notification(TComponent* component, TOperation operation) {
  TCustomGrid::Notification(component, operation);
  DataNotification(component, operation);
  if (operation == opRemove && FColumns) {
    for (int i = 0; i < FColumns->Count(); ++i)
      if (FColumns->Items(i)->PopupMenu() == component) FColumns->Items(i)->SetPopupMenu(nullptr);
  }
}

// The columns say how wide they are; the grid's own column widths are not streamed. The
// columns are written after the published properties, as the original wrote them.
void TCustomDBGrid::DefineProperties(TFiler& filer) {
  TCustomControl::DefineProperties(filer);
  filer.DefineProperty(
      "Columns",
      [this](TReader& r) {
        if (r.ReadValue() != vaCollection) TValueReader::InvalidValue();
        r.ReadCollection(FColumns);
      },
      [this](TWriter& w) { w.WriteCollection(FColumns); }, IsColumnsStored());
}

LUMORA_CLASS_IMPL(TDBGrid) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TDBGrid::BorderStyle, &TDBGrid::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color"});
  c.Property("Columns", &TDBGrid::Columns, &TDBGrid::SetColumns).Stored(false);
  PublishControlProperties(c, {"Constraints", "Ctl3D"});
  PublishDataLink(c, "DataSource");
  c.Property("DefaultDrawing", &TDBGrid::DefaultDrawing, &TDBGrid::SetDefaultDrawing).Default(true);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("FixedColor", &TDBGrid::FixedColor, &TDBGrid::SetFixedColor).Default(clBtnFace);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("Options", &TDBGrid::DBOptions, &TDBGrid::SetDBOptions)
      .Default(TDBGridOptions{dgEditing, dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines, dgTabs,
                              dgConfirmDelete, dgCancelOnExit});
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TDBGrid::ReadOnly, &TDBGrid::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("TitleFont", &TDBGrid::TitleFont, &TDBGrid::SetTitleFont);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnCellClick", &TDBGrid::OnCellClick, &TDBGrid::OnCellClick);
  c.Property("OnColEnter", &TDBGrid::OnColEnter, &TDBGrid::OnColEnter);
  c.Property("OnColExit", &TDBGrid::OnColExit, &TDBGrid::OnColExit);
  c.Property("OnColumnMoved", &TDBGrid::OnColumnMoved, &TDBGrid::OnColumnMoved);
  c.Property("OnDrawDataCell", &TDBGrid::OnDrawDataCell, &TDBGrid::OnDrawDataCell);
  c.Property("OnDrawColumnCell", &TDBGrid::OnDrawColumnCell, &TDBGrid::OnDrawColumnCell);
  PublishControlProperties(c, {"OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnEditButtonClick", &TDBGrid::OnEditButtonClick, &TDBGrid::OnEditButtonClick);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp",
                               "OnStartDock", "OnStartDrag"});
  c.Property("OnTitleClick", &TDBGrid::OnTitleClick, &TDBGrid::OnTitleClick);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}
