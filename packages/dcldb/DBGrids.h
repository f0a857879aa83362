#pragma once
// The data grid: a title row and an indicator column around one column per field. Its
// columns are the form's own (Columns), else the data set's persistent fields (a closed
// data set still has those), else one empty column. With the data set closed the grid
// shows a single empty row under the titles.

#include "packages/dcldb/DBCtrls.h"
#include "platform/vcl/Grids.h"

#include <string>

class TCustomDBGrid;
class TDBGridColumns;

LUMORA_ENUM(TDBGridOption, dgEditing, dgAlwaysShowEditor, dgTitles, dgIndicator, dgColumnResize, dgColLines,
            dgRowLines, dgTabs, dgRowSelect, dgAlwaysShowSelection, dgConfirmDelete, dgCancelOnExit, dgMultiSelect)
LUMORA_SET(TDBGridOptions, TDBGridOption)
LUMORA_ENUM(TColumnButtonStyle, cbsAuto, cbsEllipsis, cbsNone)

class TColumn;
LUMORA_EVENT(TDrawDataCellEvent, void(TObject* Sender, const TRect& Rect, TField* Field, TGridDrawState State))
LUMORA_EVENT(TDrawColumnCellEvent, void(TObject* Sender, const TRect& Rect, int DataCol, TColumn* Column, TGridDrawState State))
LUMORA_EVENT(TDBGridClickEvent, void(TColumn* Column))

// The width of the indicator column.
inline constexpr int IndicatorWidth = 11;

class TColumnTitle : public TPersistent {
  LUMORA_CLASS(TColumnTitle, TPersistent)
public:
  explicit TColumnTitle(TColumn* column);
  ~TColumnTitle() override;
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  // Set, or the field's display name, or the column's field name.
  std::string Caption() const;
  void SetCaption(const std::string& value);
  bool IsCaptionStored() const { return FCaptionSet; }
  TColor Color() const;
  void SetColor(TColor value);
  bool IsColorStored() const { return FColorSet; }
  TFont* Font() const;
  void SetFont(TFont* value);
  bool IsFontStored() const { return FFontSet; }
  void Assign(TPersistent* source) override;
  TPersistent* GetOwner() override;

private:
  friend class TColumn;
  TColumn* FColumn;
  TAlignment FAlignment = taLeftJustify;
  std::string FCaption;
  bool FCaptionSet = false;
  TColor FColor = clBtnFace;
  bool FColorSet = false;
  TFont* FFont;
  bool FFontSet = false;
  bool FFontSyncing = false;
};

class TColumn : public TCollectionItem {
  LUMORA_CLASS(TColumn, TCollectionItem)
public:
  explicit TColumn(TCollection* collection);
  ~TColumn() override;

  TCustomDBGrid* Grid() const;
  // The persistent field of the column's name, or none.
  TField* Field() const;
  TAlignment Alignment() const;
  void SetAlignment(TAlignment value);
  bool IsAlignmentStored() const { return FAlignmentSet; }
  TColor Color() const;
  void SetColor(TColor value);
  bool IsColorStored() const { return FColorSet; }
  const std::string& FieldName() const { return FFieldName; }
  void SetFieldName(const std::string& value);
  TFont* Font() const;
  void SetFont(TFont* value);
  bool IsFontStored() const { return FFontSet; }
  TStrings* PickList() const { return FPickList; }
  void SetPickList(TStrings* value) { FPickList->Assign(value); }
  bool HasPickList() const { return FPickList->Count() > 0; }
  TPopupMenu* PopupMenu() const { return FPopupMenu; }
  void SetPopupMenu(TPopupMenu* value) { FPopupMenu = value; }
  TColumnTitle* Title() const { return FTitle; }
  void SetTitle(TColumnTitle* value) { FTitle->Assign(value); }
  // Set, or what the field's display width gives, or the grid's default.
  int Width() const;
  void SetWidth(int value);
  bool IsWidthStored() const { return FWidthSet; }
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);

  TColumnButtonStyle FButtonStyle = cbsAuto;
  int FDropDownRows = 7;
  bool FExpanded = true;
  TImeMode FImeMode = imDontCare;
  TImeName FImeName;
  bool FReadOnly = false;

  void Assign(TPersistent* source) override;

protected:
  std::string GetDisplayName() const override;

private:
  friend class TColumnTitle;
  TAlignment FAlignment = taLeftJustify;
  bool FAlignmentSet = false;
  TColor FColor = clWindow;
  bool FColorSet = false;
  std::string FFieldName;
  TFont* FFont;
  bool FFontSet = false;
  bool FFontSyncing = false;
  TStringList* FPickList;
  TPopupMenu* FPopupMenu = nullptr;
  TColumnTitle* FTitle;
  int FWidth = 0;
  bool FWidthSet = false;
  bool FVisible = true;
};

class TDBGridColumns : public TCollection {
  LUMORA_CLASS(TDBGridColumns, TCollection)
public:
  TDBGridColumns(TCustomDBGrid* grid, TClass columnClass);
  TCustomDBGrid* Grid() const { return FGrid; }
  TColumn* Items(int index) const { return static_cast<TColumn*>(TCollection::Items(index)); }
  TColumn* Add() { return static_cast<TColumn*>(TCollection::Add()); }
  TPersistent* GetOwner() override;

protected:
  void Update(TCollectionItem* item) override;

private:
  TCustomDBGrid* FGrid;
};

class TCustomDBGrid : public TCustomGrid, public TDataAware {
  LUMORA_CLASS(TCustomDBGrid, TCustomGrid)
public:
  explicit TCustomDBGrid(TComponent* owner);
  ~TCustomDBGrid() override;

  TDBGridColumns* Columns() const { return FColumns; }
  void SetColumns(TDBGridColumns* value) { FColumns->Assign(value); }
  bool IsColumnsStored() const { return FColumns->Count() > 0; }
  TDBGridOptions DBOptions() const { return FDBOptions; }
  void SetDBOptions(TDBGridOptions value);
  TFont* TitleFont() const { return FTitleFont; }
  void SetTitleFont(TFont* value);
  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool value) { FReadOnly = value; }

  // What the grid shows as columns: the form's columns, else one per visible persistent
  // field of the data set, else one empty column.
  struct TShownColumn {
    std::string Title;
    TAlignment TitleAlignment = taLeftJustify;
    TFont* TitleFont = nullptr;
    TColor TitleColor = clBtnFace;
    TColor Color = clWindow;
    int Width = 64;
  };
  std::vector<TShownColumn> ShownColumns() const;
  // Lays the grid out again: columns, widths, row heights.
  void LayoutChanged();

  TDrawDataCellEvent OnDrawDataCell;
  TDrawColumnCellEvent OnDrawColumnCell;
  TDBGridClickEvent OnCellClick;
  TNotifyEvent OnColEnter;
  TNotifyEvent OnColExit;
  TNotifyEvent OnEditButtonClick;
  TDBGridClickEvent OnTitleClick;

  void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) override;
  bool CanEditShow() override { return false; }
  void Loaded() override;
  void Notification(TComponent* component, TOperation operation) override;
  void DefineProperties(TFiler& filer) override;

protected:
  void DataDisplayChanged() override { LayoutChanged(); }
  void FontChanged() override;

private:
  TDBGridColumns* FColumns;
  TDBGridOptions FDBOptions;
  TFont* FTitleFont;
  bool FTitleFontSet = false;
  bool FTitleFontSyncing = false;
  bool FReadOnly = false;
  bool FLayingOut = false;
  std::vector<TShownColumn> FShown;
};

class TDBGrid : public TCustomDBGrid {
  LUMORA_CLASS(TDBGrid, TCustomDBGrid)
public:
  explicit TDBGrid(TComponent* owner) : TCustomDBGrid(owner) {}
};
