#include "packages/dcldb/DclDb.h"

#include "packages/dcldb/DBActns.h"
#include "packages/dcldb/DBCGrids.h"
#include "packages/dcldb/DBClient.h"
#include "packages/dcldb/DBCtrls.h"
#include "packages/dcldb/DBGrids.h"
#include "packages/dcldb/DBLookup.h"
#include "packages/dcldb/DBTables.h"
#include "platform/packages/Packages.h"

std::vector<TPalettePage> DbPalette() {
  return {
      {"Data Access",
       {TDataSource::StaticClass(), TTable::StaticClass(), TQuery::StaticClass(), TStoredProc::StaticClass(),
        TDatabase::StaticClass(), TSession::StaticClass(), TBatchMove::StaticClass(), TUpdateSQL::StaticClass(),
        TNestedTable::StaticClass()}},
      {"Data Controls",
       {TDBGrid::StaticClass(), TDBNavigator::StaticClass(), TDBText::StaticClass(), TDBEdit::StaticClass(),
        TDBMemo::StaticClass(), TDBImage::StaticClass(), TDBListBox::StaticClass(), TDBComboBox::StaticClass(),
        TDBCheckBox::StaticClass(), TDBRadioGroup::StaticClass(), TDBLookupListBox::StaticClass(),
        TDBLookupComboBox::StaticClass(), TDBRichEdit::StaticClass(), TDBCtrlGrid::StaticClass()}},
      {"Midas", {TClientDataSet::StaticClass(), TProvider::StaticClass(), TDataSetProvider::StaticClass()}},
      {"Win 3.1", {TDBLookupList::StaticClass(), TDBLookupCombo::StaticClass()}},
      {"",
       {TStringField::StaticClass(), TIntegerField::StaticClass(), TSmallintField::StaticClass(),
        TWordField::StaticClass(), TAutoIncField::StaticClass(), TFloatField::StaticClass(),
        TCurrencyField::StaticClass(), TBCDField::StaticClass(), TBooleanField::StaticClass(),
        TDateField::StaticClass(), TTimeField::StaticClass(), TDateTimeField::StaticClass(),
        TBytesField::StaticClass(), TVarBytesField::StaticClass(), TBlobField::StaticClass(),
        TMemoField::StaticClass(), TGraphicField::StaticClass(), TLargeintField::StaticClass(),
        TWideStringField::StaticClass(), TADTField::StaticClass(), TArrayField::StaticClass(),
        TDataSetField::StaticClass(), TReferenceField::StaticClass(), TAggregateField::StaticClass(),
        TDataSetFirst::StaticClass(), TDataSetPrior::StaticClass(), TDataSetNext::StaticClass(),
        TDataSetLast::StaticClass(), TDataSetInsert::StaticClass(), TDataSetDelete::StaticClass(),
        TDataSetEdit::StaticClass(), TDataSetPost::StaticClass(), TDataSetCancel::StaticClass(),
        TDataSetRefresh::StaticClass()}},
  };
}

void RegisterDbClasses() {
  for (const TPalettePage& page : DbPalette()) {
    if (page.Page.empty()) {
      for (TClass cls : page.Classes) RegisterNoIcon({cls});
    } else {
      RegisterComponents(page.Page, page.Classes);
    }
  }
}
