#include "packages/dcldb/DB.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"

#include <algorithm>

const TTypeInfo* TypeInfoOf(TBlobType*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo(
      "TBlobType", "ftBlob, ftMemo, ftGraphic, ftFmtMemo, ftParadoxOle, ftDBaseOle, ftTypedBinary");
  return &info;
}

// ---------------------------------------------------------------------------------------
// Definitions

LUMORA_CLASS_IMPL(TNamedItem) { c.Property("Name", &TNamedItem::Name, &TNamedItem::SetName); }

void TNamedItem::Assign(TPersistent* source) {
  if (auto* item = dynamic_cast<TNamedItem*>(source)) {
    FName = item->FName;
    return;
  }
  TCollectionItem::Assign(source);
}

// Written as Delphi 4 wrote them: precision, required and size always.
LUMORA_CLASS_IMPL(TFieldDef) {
  c.Property("Attributes", &TFieldDef::Attributes, &TFieldDef::SetAttributes).Default(TFieldAttributes{});
  c.Property("ChildDefs", &TFieldDef::ChildDefs, &TFieldDef::SetChildDefs).Stored(&TFieldDef::HasChildDefs);
  c.Property("DataType", &TFieldDef::DataType, &TFieldDef::SetDataType);
  c.Property("Precision", &TFieldDef::Precision, &TFieldDef::SetPrecision);
  c.Property("Required", &TFieldDef::Required, &TFieldDef::SetRequired);
  c.Property("Size", &TFieldDef::Size, &TFieldDef::SetSize);
}

TFieldDef::TFieldDef(TCollection* collection) : TNamedItem(collection), FChildDefs(new TFieldDefs(this)) {}

TFieldDef::~TFieldDef() { delete FChildDefs; }

void TFieldDef::SetChildDefs(TFieldDefs* value) { FChildDefs->Assign(value); }

bool TFieldDef::HasChildDefs() const { return FChildDefs->Count() > 0; }

void TFieldDef::SetRequired(bool value) {
  if (value) FAttributes.Include(faRequired);
  else FAttributes.Exclude(faRequired);
}

void TFieldDef::Assign(TPersistent* source) {
  if (auto* def = dynamic_cast<TFieldDef*>(source)) {
    TNamedItem::Assign(def);
    FAttributes = def->FAttributes;
    FChildDefs->Assign(def->FChildDefs);
    FDataType = def->FDataType;
    FPrecision = def->FPrecision;
    FSize = def->FSize;
    return;
  }
  TNamedItem::Assign(source);
}

LUMORA_CLASS_IMPL(TFieldDefs) {}

TFieldDef* TFieldDefs::Find(std::string_view name) const {
  for (int i = 0; i < Count(); ++i)
    if (SameText(Items(i)->Name(), name)) return Items(i);
  return nullptr;
}

LUMORA_CLASS_IMPL(TIndexDef) {
  c.Property("CaseInsFields", &TIndexDef::FCaseInsFields, &TIndexDef::FCaseInsFields);
  c.Property("DescFields", &TIndexDef::FDescFields, &TIndexDef::FDescFields);
  c.Property("Expression", &TIndexDef::FExpression, &TIndexDef::FExpression);
  c.Property("Fields", &TIndexDef::FFields, &TIndexDef::FFields);
  c.Property("Options", &TIndexDef::FOptions, &TIndexDef::FOptions).Default(TIndexOptions{});
  c.Property("Source", &TIndexDef::FSource, &TIndexDef::FSource);
  c.Property("GroupingLevel", &TIndexDef::FGroupingLevel, &TIndexDef::FGroupingLevel).Default(0);
}

LUMORA_CLASS_IMPL(TIndexDefs) {}

LUMORA_CLASS_IMPL(TCheckConstraint) {
  c.Property("CustomConstraint", &TCheckConstraint::FCustomConstraint, &TCheckConstraint::FCustomConstraint);
  c.Property("ErrorMessage", &TCheckConstraint::FErrorMessage, &TCheckConstraint::FErrorMessage);
  c.Property("FromDictionary", &TCheckConstraint::FFromDictionary, &TCheckConstraint::FFromDictionary).Default(true);
  c.Property("ImportedConstraint", &TCheckConstraint::FImportedConstraint, &TCheckConstraint::FImportedConstraint);
}

LUMORA_CLASS_IMPL(TCheckConstraints) {}

LUMORA_CLASS_IMPL(TParam) {
  c.Property("DataType", &TParam::FDataType, &TParam::FDataType);
  c.Property("Name", &TParam::FName, &TParam::FName);
  c.Property("ParamType", &TParam::FParamType, &TParam::FParamType);
  c.Property("Value", &TParam::FValue, &TParam::FValue);
}

void TParam::Assign(TPersistent* source) {
  if (auto* param = dynamic_cast<TParam*>(source)) {
    FName = param->FName;
    FDataType = param->FDataType;
    FParamType = param->FParamType;
    FValue = param->FValue;
    return;
  }
  TCollectionItem::Assign(source);
}

LUMORA_CLASS_IMPL(TParams) {}

TParam* TParams::FindParam(std::string_view name) const {
  for (int i = 0; i < Count(); ++i)
    if (SameText(Items(i)->FName, name)) return Items(i);
  return nullptr;
}

LUMORA_CLASS_IMPL(TAggregate) {
  c.Property("Active", &TAggregate::FActive, &TAggregate::FActive).Default(false);
  c.Property("AggregateName", &TAggregate::FAggregateName, &TAggregate::FAggregateName);
  c.Property("Expression", &TAggregate::FExpression, &TAggregate::FExpression);
  c.Property("GroupingLevel", &TAggregate::FGroupingLevel, &TAggregate::FGroupingLevel).Default(0);
  c.Property("IndexName", &TAggregate::FIndexName, &TAggregate::FIndexName);
  c.Property("Visible", &TAggregate::FVisible, &TAggregate::FVisible).Default(true);
}

LUMORA_CLASS_IMPL(TAggregates) {}

// ---------------------------------------------------------------------------------------
// TField

LUMORA_CLASS_IMPL(TField) {
  c.Property("Alignment", &TField::Alignment, &TField::SetAlignment).Default(taLeftJustify);
  c.Property("CustomConstraint", &TField::FCustomConstraint, &TField::FCustomConstraint);
  c.Property("ConstraintErrorMessage", &TField::FConstraintErrorMessage, &TField::FConstraintErrorMessage);
  c.Property("DefaultExpression", &TField::FDefaultExpression, &TField::FDefaultExpression);
  c.Property("DisplayLabel", &TField::DisplayLabel, &TField::SetDisplayLabel);
  c.Property("DisplayWidth", &TField::DisplayWidth, &TField::SetDisplayWidth).Stored(&TField::IsDisplayWidthStored);
  c.Property("FieldKind", &TField::FieldKind, &TField::SetFieldKind).Default(fkData);
  c.Property("FieldName", &TField::FieldName, &TField::SetFieldName);
  c.Property("ImportedConstraint", &TField::FImportedConstraint, &TField::FImportedConstraint);
  c.Property("Index", &TField::Index, &TField::SetIndex).Stored(false);
  c.Property("LookupDataSet", &TField::LookupDataSet, &TField::SetLookupDataSet);
  c.Property("LookupKeyFields", &TField::FLookupKeyFields, &TField::FLookupKeyFields);
  c.Property("LookupResultField", &TField::FLookupResultField, &TField::FLookupResultField);
  c.Property("KeyFields", &TField::FKeyFields, &TField::FKeyFields);
  c.Property("LookupCache", &TField::FLookupCache, &TField::FLookupCache).Default(false);
  c.Property("Origin", &TField::FOrigin, &TField::FOrigin);
  c.Property("ReadOnly", &TField::FReadOnly, &TField::FReadOnly).Default(false);
  c.Property("Required", &TField::FRequired, &TField::FRequired).Default(false);
  c.Property("Visible", &TField::Visible, &TField::SetVisible).Default(true);
  c.Property("OnChange", &TField::OnChange, &TField::OnChange);
  c.Property("OnGetText", &TField::OnGetText, &TField::OnGetText);
  c.Property("OnSetText", &TField::OnSetText, &TField::OnSetText);
  c.Property("OnValidate", &TField::OnValidate, &TField::OnValidate);
}

TField::TField(TComponent* owner) : TComponent(owner) {}

TField::~TField() {
  SetDataSet(nullptr);
  SetLookupDataSet(nullptr);
}

void TField::SetDataSet(TDataSet* value) {
  if (FDataSet == value) return;
  if (FDataSet) FDataSet->RemoveField(this);
  if (value) value->AddField(this);
}

void TField::SetLookupDataSet(TDataSet* value) { ReplaceComponentLink(this, FLookupDataSet, value); }

TComponent* TField::GetParentComponent() const { return FDataSet; }

void TField::SetParentComponent(TComponent* parent) {
  if (auto* dataSet = dynamic_cast<TDataSet*>(parent)) SetDataSet(dataSet);
}

int TField::Index() const {
  if (!FDataSet) return -1;
  for (int i = 0; i < FDataSet->FieldCount(); ++i)
    if (FDataSet->Fields(i) == this) return i;
  return -1;
}

void TField::SetIndex(int value) {
  if (FDataSet) FDataSet->SetChildOrder(this, value);
}

void TField::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FLookupDataSet) FLookupDataSet = nullptr;
}

void TField::DefineProperties(TFiler& filer) {
  TComponent::DefineProperties(filer);
  filer.DefineProperty(
      "Calculated", [this](TReader& r) { if (r.ReadBoolean()) FFieldKind = fkCalculated; },
      [](TWriter& w) { w.WriteBoolean(true); }, FFieldKind == fkCalculated);
  filer.DefineProperty(
      "Lookup", [this](TReader& r) { if (r.ReadBoolean()) FFieldKind = fkLookup; },
      [](TWriter& w) { w.WriteBoolean(true); }, FFieldKind == fkLookup);
}

LUMORA_CLASS_IMPL(TStringField) {
  c.Property("EditMask", &TStringField::FEditMask, &TStringField::FEditMask);
  c.Property("FixedChar", &TStringField::FFixedChar, &TStringField::FFixedChar).Default(false);
  c.Property("Size", &TStringField::Size, &TStringField::SetSize).Default(20);
  c.Property("Transliterate", &TStringField::FTransliterate, &TStringField::FTransliterate).Default(true);
}

TStringField::TStringField(TComponent* owner) : TField(owner) {
  FDataType = ftString;
  FSize = 20;
}

LUMORA_CLASS_IMPL(TWideStringField) {}

TWideStringField::TWideStringField(TComponent* owner) : TStringField(owner) { FDataType = ftWideString; }

LUMORA_CLASS_IMPL(TNumericField) {
  c.Property("Alignment").Default(taRightJustify);
  c.Property("DisplayFormat", &TNumericField::FDisplayFormat, &TNumericField::FDisplayFormat);
  c.Property("EditFormat", &TNumericField::FEditFormat, &TNumericField::FEditFormat);
}

TNumericField::TNumericField(TComponent* owner) : TField(owner) { FAlignment = taRightJustify; }

LUMORA_CLASS_IMPL(TIntegerField) {
  c.Property("MaxValue", &TIntegerField::FMaxValue, &TIntegerField::FMaxValue).Default(0);
  c.Property("MinValue", &TIntegerField::FMinValue, &TIntegerField::FMinValue).Default(0);
}

TIntegerField::TIntegerField(TComponent* owner) : TNumericField(owner) { FDataType = ftInteger; }

LUMORA_CLASS_IMPL(TSmallintField) {}
TSmallintField::TSmallintField(TComponent* owner) : TIntegerField(owner) { FDataType = ftSmallint; }

LUMORA_CLASS_IMPL(TWordField) {}
TWordField::TWordField(TComponent* owner) : TIntegerField(owner) { FDataType = ftWord; }

LUMORA_CLASS_IMPL(TAutoIncField) {}
TAutoIncField::TAutoIncField(TComponent* owner) : TIntegerField(owner) { FDataType = ftAutoInc; }

LUMORA_CLASS_IMPL(TLargeintField) {
  c.Property("MaxValue", &TLargeintField::FMaxValue, &TLargeintField::FMaxValue);
  c.Property("MinValue", &TLargeintField::FMinValue, &TLargeintField::FMinValue);
}

TLargeintField::TLargeintField(TComponent* owner) : TNumericField(owner) { FDataType = ftLargeint; }

// The Delphi 4 name of the flag is in lower case; forms write it so.
LUMORA_CLASS_IMPL(TFloatField) {
  c.Property("currency", &TFloatField::FCurrency, &TFloatField::FCurrency).Default(false);
  c.Property("MaxValue", &TFloatField::FMaxValue, &TFloatField::FMaxValue);
  c.Property("MinValue", &TFloatField::FMinValue, &TFloatField::FMinValue);
  c.Property("Precision", &TFloatField::FPrecision, &TFloatField::FPrecision).Default(15);
}

TFloatField::TFloatField(TComponent* owner) : TNumericField(owner) { FDataType = ftFloat; }

LUMORA_CLASS_IMPL(TCurrencyField) { c.Property("currency").Default(true); }

TCurrencyField::TCurrencyField(TComponent* owner) : TFloatField(owner) {
  FDataType = ftCurrency;
  FCurrency = true;
}

LUMORA_CLASS_IMPL(TBCDField) {
  c.Property("currency", &TBCDField::FCurrency, &TBCDField::FCurrency).Default(false);
  c.Property("MaxValue", &TBCDField::FMaxValue, &TBCDField::FMaxValue);
  c.Property("MinValue", &TBCDField::FMinValue, &TBCDField::FMinValue);
  c.Property("Precision", &TBCDField::FPrecision, &TBCDField::FPrecision).Default(0);
  c.Property("Size", &TBCDField::Size, &TBCDField::SetSize).Default(4);
}

TBCDField::TBCDField(TComponent* owner) : TNumericField(owner) {
  FDataType = ftBCD;
  FSize = 4;
}

LUMORA_CLASS_IMPL(TBooleanField) {
  c.Property("DisplayValues", &TBooleanField::FDisplayValues, &TBooleanField::FDisplayValues);
}

TBooleanField::TBooleanField(TComponent* owner) : TField(owner) { FDataType = ftBoolean; }

LUMORA_CLASS_IMPL(TDateTimeField) {
  c.Property("DisplayFormat", &TDateTimeField::FDisplayFormat, &TDateTimeField::FDisplayFormat);
  c.Property("EditMask", &TDateTimeField::FEditMask, &TDateTimeField::FEditMask);
}

TDateTimeField::TDateTimeField(TComponent* owner) : TField(owner) { FDataType = ftDateTime; }

LUMORA_CLASS_IMPL(TDateField) {}
TDateField::TDateField(TComponent* owner) : TDateTimeField(owner) { FDataType = ftDate; }

LUMORA_CLASS_IMPL(TTimeField) {}
TTimeField::TTimeField(TComponent* owner) : TDateTimeField(owner) { FDataType = ftTime; }

LUMORA_CLASS_IMPL(TBinaryField) {}
TBinaryField::TBinaryField(TComponent* owner) : TField(owner) {}

LUMORA_CLASS_IMPL(TBytesField) { c.Property("Size", &TBytesField::Size, &TBytesField::SetSize).Default(16); }

TBytesField::TBytesField(TComponent* owner) : TBinaryField(owner) {
  FDataType = ftBytes;
  FSize = 16;
}

LUMORA_CLASS_IMPL(TVarBytesField) {}
TVarBytesField::TVarBytesField(TComponent* owner) : TBytesField(owner) { FDataType = ftVarBytes; }

LUMORA_CLASS_IMPL(TBlobField) {
  c.Property("BlobType", &TBlobField::BlobType, &TBlobField::SetBlobType);
  c.Property("Size", &TBlobField::Size, &TBlobField::SetSize).Default(0);
}

TBlobField::TBlobField(TComponent* owner) : TField(owner) { FDataType = ftBlob; }

LUMORA_CLASS_IMPL(TMemoField) {
  c.Property("Transliterate", &TMemoField::FTransliterate, &TMemoField::FTransliterate).Default(true);
}

TMemoField::TMemoField(TComponent* owner) : TBlobField(owner) { FDataType = ftMemo; }

LUMORA_CLASS_IMPL(TGraphicField) {}
TGraphicField::TGraphicField(TComponent* owner) : TBlobField(owner) { FDataType = ftGraphic; }

LUMORA_CLASS_IMPL(TObjectField) {}
TObjectField::TObjectField(TComponent* owner) : TField(owner) {}

LUMORA_CLASS_IMPL(TADTField) {}
TADTField::TADTField(TComponent* owner) : TObjectField(owner) { FDataType = ftADT; }

LUMORA_CLASS_IMPL(TArrayField) {}
TArrayField::TArrayField(TComponent* owner) : TObjectField(owner) { FDataType = ftArray; }

LUMORA_CLASS_IMPL(TDataSetField) {
  c.Property("IncludeObjectField", &TDataSetField::FIncludeObjectField, &TDataSetField::FIncludeObjectField)
      .Default(false);
}

TDataSetField::TDataSetField(TComponent* owner) : TObjectField(owner) { FDataType = ftDataSet; }

LUMORA_CLASS_IMPL(TReferenceField) {
  c.Property("ReferenceTableName", &TReferenceField::FReferenceTableName, &TReferenceField::FReferenceTableName);
  c.Property("Size", &TReferenceField::Size, &TReferenceField::SetSize).Default(0);
}

TReferenceField::TReferenceField(TComponent* owner) : TDataSetField(owner) { FDataType = ftReference; }

LUMORA_CLASS_IMPL(TAggregateField) {
  c.Property("Active", &TAggregateField::FActive, &TAggregateField::FActive).Default(false);
  c.Property("currency", &TAggregateField::FCurrency, &TAggregateField::FCurrency).Default(false);
  c.Property("DisplayFormat", &TAggregateField::FDisplayFormat, &TAggregateField::FDisplayFormat);
  c.Property("Expression", &TAggregateField::FExpression, &TAggregateField::FExpression);
  c.Property("GroupingLevel", &TAggregateField::FGroupingLevel, &TAggregateField::FGroupingLevel).Default(0);
  c.Property("IndexName", &TAggregateField::FIndexName, &TAggregateField::FIndexName);
  c.Property("Precision", &TAggregateField::FPrecision, &TAggregateField::FPrecision).Default(15);
}

TAggregateField::TAggregateField(TComponent* owner) : TField(owner) { SetFieldKind(fkAggregate); }

// ---------------------------------------------------------------------------------------
// TDataSet

LUMORA_CLASS_IMPL(TDataSet) {}

TDataSet::TDataSet(TComponent* owner) : TComponent(owner), FFieldDefs(new TFieldDefs(this)) {}

TDataSet::~TDataSet() {
  // The fields belong to the form: they only lose their data set.
  for (TField* field : FFields) field->FDataSet = nullptr;
  FFields.clear();
  SetDataSetField(nullptr);
  delete FFieldDefs;
}

TField* TDataSet::FindField(std::string_view fieldName) const {
  for (TField* field : FFields)
    if (SameText(field->FieldName(), fieldName)) return field;
  return nullptr;
}

void TDataSet::SetDataSetField(TDataSetField* value) { ReplaceComponentLink(this, FDataSetField, value); }

void TDataSet::AddField(TField* field) {
  FFields.push_back(field);
  field->FDataSet = this;
}

void TDataSet::RemoveField(TField* field) {
  FFields.erase(std::remove(FFields.begin(), FFields.end(), field), FFields.end());
  field->FDataSet = nullptr;
}

void TDataSet::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TField* field : std::vector<TField*>(FFields))
    if (field->Owner() == root) proc(field);
}

void TDataSet::SetChildOrder(TComponent* child, int order) {
  auto* field = dynamic_cast<TField*>(child);
  auto it = std::find(FFields.begin(), FFields.end(), field);
  if (!field || it == FFields.end()) return;
  FFields.erase(it);
  order = std::clamp(order, 0, static_cast<int>(FFields.size()));
  FFields.insert(FFields.begin() + order, field);
}

void TDataSet::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FDataSetField) FDataSetField = nullptr;
}

// ---------------------------------------------------------------------------------------
// TDataSource

LUMORA_CLASS_IMPL(TDataSource) {
  c.Property("AutoEdit", &TDataSource::AutoEdit, &TDataSource::SetAutoEdit).Default(true);
  c.Property("DataSet", &TDataSource::DataSet, &TDataSource::SetDataSet);
  c.Property("Enabled", &TDataSource::Enabled, &TDataSource::SetEnabled).Default(true);
  c.Property("OnStateChange", &TDataSource::OnStateChange, &TDataSource::OnStateChange);
  c.Property("OnDataChange", &TDataSource::OnDataChange, &TDataSource::OnDataChange);
  c.Property("OnUpdateData", &TDataSource::OnUpdateData, &TDataSource::OnUpdateData);
}

TDataSource::TDataSource(TComponent* owner) : TComponent(owner) {}

TDataSource::~TDataSource() { SetDataSet(nullptr); }

void TDataSource::SetDataSet(TDataSet* value) { ReplaceComponentLink(this, FDataSet, value); }

void TDataSource::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FDataSet) FDataSet = nullptr;
}
