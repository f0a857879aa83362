#pragma once
// Data access without a database: data sets, their persistent fields and field
// definitions, parameters and data sources, publishing what their Delphi 4 counterparts
// publish. Nothing is ever opened: a data set keeps the Active it was given (so that it
// is written back as read) and stays closed, which is how its controls draw.

#include "platform/rtti/Classes.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/StdCtrls.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class TDataSet;
class TDataSource;
class TField;

LUMORA_DECLARE_EXCEPTION(EDatabaseError, Exception)

LUMORA_ENUM(TFieldType, ftUnknown, ftString, ftSmallint, ftInteger, ftWord, ftBoolean, ftFloat, ftCurrency, ftBCD,
            ftDate, ftTime, ftDateTime, ftBytes, ftVarBytes, ftAutoInc, ftBlob, ftMemo, ftGraphic, ftFmtMemo,
            ftParadoxOle, ftDBaseOle, ftTypedBinary, ftCursor, ftFixedChar, ftWideString, ftLargeint, ftADT, ftArray,
            ftReference, ftDataSet)
LUMORA_ENUM(TFieldKind, fkData, fkCalculated, fkLookup, fkInternalCalc, fkAggregate)
LUMORA_ENUM(TFieldAttribute, faHiddenCol, faReadonly, faRequired, faLink, faUnNamed, faFixed)
LUMORA_SET(TFieldAttributes, TFieldAttribute)
LUMORA_ENUM(TParamType, ptUnknown, ptInput, ptOutput, ptInputOutput, ptResult)
LUMORA_ENUM(TFilterOption, foCaseInsensitive, foNoPartialCompare)
LUMORA_SET(TFilterOptions, TFilterOption)
LUMORA_ENUM(TIndexOption, ixPrimary, ixUnique, ixDescending, ixCaseInsensitive, ixExpression, ixNonMaintained)
LUMORA_SET(TIndexOptions, TIndexOption)
LUMORA_ENUM(TDataAction, daFail, daAbort, daRetry)
LUMORA_ENUM(TUpdateMode, upWhereAll, upWhereChanged, upWhereKeyOnly)
LUMORA_ENUM(TUpdateKind, ukModify, ukInsert, ukDelete)
LUMORA_ENUM(TDataSetState, dsInactive, dsBrowse, dsEdit, dsInsert, dsSetKey, dsCalcFields, dsFilter, dsNewValue,
            dsOldValue, dsCurValue, dsBlockRead, dsInternalCalc)

// The blob kinds of TFieldType (ftBlob to ftTypedBinary), a type of their own.
enum class TBlobType : std::uint8_t {};
const TTypeInfo* TypeInfoOf(TBlobType*);
constexpr TBlobType BlobTypeOf(TFieldType type) { return static_cast<TBlobType>(type - ftBlob); }
constexpr TFieldType FieldTypeOf(TBlobType type) { return static_cast<TFieldType>(static_cast<int>(type) + ftBlob); }

LUMORA_EVENT(TDataSetNotifyEvent, void(TDataSet* DataSet))
LUMORA_EVENT(TDataSetErrorEvent, void(TDataSet* DataSet, EDatabaseError* E, TDataAction& Action))
LUMORA_EVENT(TFilterRecordEvent, void(TDataSet* DataSet, bool& Accept))
LUMORA_EVENT(TUpdateErrorEvent, void(TDataSet* DataSet, EDatabaseError* E, TUpdateKind UpdateKind, TDataAction& UpdateAction))
LUMORA_EVENT(TUpdateRecordEvent, void(TDataSet* DataSet, TUpdateKind UpdateKind, TDataAction& UpdateAction))
LUMORA_EVENT(TFieldNotifyEvent, void(TField* Sender))
LUMORA_EVENT(TFieldGetTextEvent, void(TField* Sender, std::string& Text, bool DisplayText))
LUMORA_EVENT(TFieldSetTextEvent, void(TField* Sender, const std::string& Text))
LUMORA_EVENT(TDataChangeEvent, void(TObject* Sender, TField* Field))

// ---- Collections of definitions ------------------------------------------------------

// An item with a Name, as definitions and parameters have.
class TNamedItem : public TCollectionItem {
  LUMORA_CLASS(TNamedItem, TCollectionItem)
public:
  explicit TNamedItem(TCollection* collection) : TCollectionItem(collection) {}
  const std::string& Name() const { return FName; }
  void SetName(const std::string& value) { FName = value; }
  void Assign(TPersistent* source) override;

protected:
  std::string GetDisplayName() const override { return FName; }

private:
  std::string FName;
};

class TFieldDefs;

class TFieldDef : public TNamedItem {
  LUMORA_CLASS(TFieldDef, TNamedItem)
public:
  explicit TFieldDef(TCollection* collection);
  ~TFieldDef() override;
  TFieldAttributes Attributes() const { return FAttributes; }
  void SetAttributes(TFieldAttributes value) { FAttributes = value; }
  TFieldDefs* ChildDefs() const { return FChildDefs; }
  void SetChildDefs(TFieldDefs* value);
  bool HasChildDefs() const;
  TFieldType DataType() const { return FDataType; }
  void SetDataType(TFieldType value) { FDataType = value; }
  int Precision() const { return FPrecision; }
  void SetPrecision(int value) { FPrecision = value; }
  bool Required() const { return FAttributes.Contains(faRequired); }
  void SetRequired(bool value);
  int Size() const { return FSize; }
  void SetSize(int value) { FSize = value; }
  void Assign(TPersistent* source) override;

private:
  TFieldAttributes FAttributes;
  TFieldDefs* FChildDefs;
  TFieldType FDataType = ftUnknown;
  int FPrecision = 0;
  int FSize = 0;
};

class TFieldDefs : public TOwnedCollection {
  LUMORA_CLASS(TFieldDefs, TOwnedCollection)
public:
  explicit TFieldDefs(TPersistent* owner) : TOwnedCollection(owner, TFieldDef::StaticClass()) {}
  TFieldDef* Items(int index) const { return static_cast<TFieldDef*>(TCollection::Items(index)); }
  // The definition of that name (any case), or none.
  TFieldDef* Find(std::string_view name) const;
};

class TIndexDef : public TNamedItem {
  LUMORA_CLASS(TIndexDef, TNamedItem)
public:
  explicit TIndexDef(TCollection* collection) : TNamedItem(collection) {}
  std::string FCaseInsFields;
  std::string FDescFields;
  std::string FExpression;
  std::string FFields;
  TIndexOptions FOptions;
  std::string FSource;
  int FGroupingLevel = 0;
};

class TIndexDefs : public TOwnedCollection {
  LUMORA_CLASS(TIndexDefs, TOwnedCollection)
public:
  explicit TIndexDefs(TPersistent* owner) : TOwnedCollection(owner, TIndexDef::StaticClass()) {}
};

// A check a data set or a provider makes of every record.
class TCheckConstraint : public TCollectionItem {
  LUMORA_CLASS(TCheckConstraint, TCollectionItem)
public:
  explicit TCheckConstraint(TCollection* collection) : TCollectionItem(collection) {}
  std::string FCustomConstraint;
  std::string FErrorMessage;
  bool FFromDictionary = true;
  std::string FImportedConstraint;
};

class TCheckConstraints : public TOwnedCollection {
  LUMORA_CLASS(TCheckConstraints, TOwnedCollection)
public:
  explicit TCheckConstraints(TPersistent* owner) : TOwnedCollection(owner, TCheckConstraint::StaticClass()) {}
};

class TParam : public TCollectionItem {
  LUMORA_CLASS(TParam, TCollectionItem)
public:
  explicit TParam(TCollection* collection) : TCollectionItem(collection) {}
  const std::string& Name() const { return FName; }
  void Assign(TPersistent* source) override;
  std::string FName;
  TFieldType FDataType = ftUnknown;
  TParamType FParamType = ptUnknown;
  Variant FValue;

protected:
  std::string GetDisplayName() const override { return FName; }
};

class TParams : public TCollection {
  LUMORA_CLASS(TParams, TCollection)
public:
  explicit TParams(TPersistent* owner) : TCollection(TParam::StaticClass()), FOwner(owner) {}
  TPersistent* GetOwner() override { return FOwner; }
  TParam* Items(int index) const { return static_cast<TParam*>(TCollection::Items(index)); }
  TParam* FindParam(std::string_view name) const;

private:
  TPersistent* FOwner;
};

// A summary a client data set keeps of its records.
class TAggregate : public TCollectionItem {
  LUMORA_CLASS(TAggregate, TCollectionItem)
public:
  explicit TAggregate(TCollection* collection) : TCollectionItem(collection) {}
  bool FActive = false;
  std::string FAggregateName;
  std::string FExpression;
  int FGroupingLevel = 0;
  std::string FIndexName;
  bool FVisible = true;

protected:
  std::string GetDisplayName() const override { return FAggregateName; }
};

class TAggregates : public TOwnedCollection {
  LUMORA_CLASS(TAggregates, TOwnedCollection)
public:
  explicit TAggregates(TPersistent* owner) : TOwnedCollection(owner, TAggregate::StaticClass()) {}
};

// ---- Fields ----------------------------------------------------------------------------

// A persistent field of a data set: owned by the form, a child of its data set in the
// stream (its parent component).
class TField : public TComponent {
  LUMORA_CLASS(TField, TComponent)
public:
  explicit TField(TComponent* owner);
  ~TField() override;

  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value);
  TFieldType DataType() const { return FDataType; }
  int Size() const { return FSize; }
  void SetSize(int value) { FSize = value; }

  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value) { FAlignment = value; }
  const std::string& DisplayLabel() const { return FDisplayLabel; }
  void SetDisplayLabel(const std::string& value) { FDisplayLabel = value; }
  // DisplayLabel, or the field name when it has none.
  const std::string& DisplayName() const { return FDisplayLabel.empty() ? FFieldName : FDisplayLabel; }
  // The width in characters a grid gives the field: set, or the type's own.
  int DisplayWidth() const { return FDisplayWidth > 0 ? FDisplayWidth : DefaultDisplayWidth(); }
  void SetDisplayWidth(int value) { FDisplayWidth = value; }
  bool IsDisplayWidthStored() const { return FDisplayWidth > 0; }
  TFieldKind FieldKind() const { return FFieldKind; }
  void SetFieldKind(TFieldKind value) { FFieldKind = value; }
  const std::string& FieldName() const { return FFieldName; }
  void SetFieldName(const std::string& value) { FFieldName = value; }
  TDataSet* LookupDataSet() const { return FLookupDataSet; }
  void SetLookupDataSet(TDataSet* value);
  bool Calculated() const { return FFieldKind == fkCalculated; }
  bool Lookup() const { return FFieldKind == fkLookup; }
  bool Visible() const { return FVisible; }
  void SetVisible(bool value) { FVisible = value; }
  int Index() const;
  void SetIndex(int value);
  // What a closed data set's field shows: nothing.
  std::string DisplayText() const { return std::string(); }

  std::string FCustomConstraint;
  std::string FConstraintErrorMessage;
  std::string FDefaultExpression;
  std::string FImportedConstraint;
  std::string FLookupKeyFields;
  std::string FLookupResultField;
  std::string FKeyFields;
  bool FLookupCache = false;
  std::string FOrigin;
  bool FReadOnly = false;
  bool FRequired = false;
  TFieldNotifyEvent OnChange;
  TFieldGetTextEvent OnGetText;
  TFieldSetTextEvent OnSetText;
  TFieldNotifyEvent OnValidate;

  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override;
  void SetParentComponent(TComponent* parent) override;
  void Notification(TComponent* component, TOperation operation) override;
  // Calculated and Lookup, the flags of forms older than FieldKind.
  void DefineProperties(TFiler& filer) override;

protected:
  virtual int DefaultDisplayWidth() const { return 10; }
  TFieldType FDataType = ftUnknown;
  int FSize = 0;
  TAlignment FAlignment = taLeftJustify;

private:
  friend class TDataSet;
  TDataSet* FDataSet = nullptr;
  std::string FDisplayLabel;
  int FDisplayWidth = 0;
  TFieldKind FFieldKind = fkData;
  std::string FFieldName;
  TDataSet* FLookupDataSet = nullptr;
  bool FVisible = true;
};

class TStringField : public TField {
  LUMORA_CLASS(TStringField, TField)
public:
  explicit TStringField(TComponent* owner);
  std::string FEditMask;
  bool FFixedChar = false;
  bool FTransliterate = true;

protected:
  int DefaultDisplayWidth() const override { return FSize; }
};

class TWideStringField : public TStringField {
  LUMORA_CLASS(TWideStringField, TStringField)
public:
  explicit TWideStringField(TComponent* owner);
};

class TNumericField : public TField {
  LUMORA_CLASS(TNumericField, TField)
public:
  explicit TNumericField(TComponent* owner);
  std::string FDisplayFormat;
  std::string FEditFormat;
};

class TIntegerField : public TNumericField {
  LUMORA_CLASS(TIntegerField, TNumericField)
public:
  explicit TIntegerField(TComponent* owner);
  int FMaxValue = 0;
  int FMinValue = 0;

protected:
  int DefaultDisplayWidth() const override { return 11; }
};

class TSmallintField : public TIntegerField {
  LUMORA_CLASS(TSmallintField, TIntegerField)
public:
  explicit TSmallintField(TComponent* owner);

protected:
  int DefaultDisplayWidth() const override { return 6; }
};

class TWordField : public TIntegerField {
  LUMORA_CLASS(TWordField, TIntegerField)
public:
  explicit TWordField(TComponent* owner);

protected:
  int DefaultDisplayWidth() const override { return 5; }
};

class TAutoIncField : public TIntegerField {
  LUMORA_CLASS(TAutoIncField, TIntegerField)
public:
  explicit TAutoIncField(TComponent* owner);
};

class TLargeintField : public TNumericField {
  LUMORA_CLASS(TLargeintField, TNumericField)
public:
  explicit TLargeintField(TComponent* owner);
  std::int64_t FMaxValue = 0;
  std::int64_t FMinValue = 0;

protected:
  int DefaultDisplayWidth() const override { return 15; }
};

class TFloatField : public TNumericField {
  LUMORA_CLASS(TFloatField, TNumericField)
public:
  explicit TFloatField(TComponent* owner);
  bool FCurrency = false;
  double FMaxValue = 0;
  double FMinValue = 0;
  int FPrecision = 15;
};

class TCurrencyField : public TFloatField {
  LUMORA_CLASS(TCurrencyField, TFloatField)
public:
  explicit TCurrencyField(TComponent* owner);
};

class TBCDField : public TNumericField {
  LUMORA_CLASS(TBCDField, TNumericField)
public:
  explicit TBCDField(TComponent* owner);
  bool FCurrency = false;
  Currency FMaxValue;
  Currency FMinValue;
  int FPrecision = 0;
};

class TBooleanField : public TField {
  LUMORA_CLASS(TBooleanField, TField)
public:
  explicit TBooleanField(TComponent* owner);
  std::string FDisplayValues;

protected:
  int DefaultDisplayWidth() const override { return 5; }
};

class TDateTimeField : public TField {
  LUMORA_CLASS(TDateTimeField, TField)
public:
  explicit TDateTimeField(TComponent* owner);
  std::string FDisplayFormat;
  std::string FEditMask;

protected:
  int DefaultDisplayWidth() const override { return 18; }
};

class TDateField : public TDateTimeField {
  LUMORA_CLASS(TDateField, TDateTimeField)
public:
  explicit TDateField(TComponent* owner);

protected:
  int DefaultDisplayWidth() const override { return 10; }
};

class TTimeField : public TDateTimeField {
  LUMORA_CLASS(TTimeField, TDateTimeField)
public:
  explicit TTimeField(TComponent* owner);

protected:
  int DefaultDisplayWidth() const override { return 10; }
};

class TBinaryField : public TField {
  LUMORA_CLASS(TBinaryField, TField)
public:
  explicit TBinaryField(TComponent* owner);
};

class TBytesField : public TBinaryField {
  LUMORA_CLASS(TBytesField, TBinaryField)
public:
  explicit TBytesField(TComponent* owner);
};

class TVarBytesField : public TBytesField {
  LUMORA_CLASS(TVarBytesField, TBytesField)
public:
  explicit TVarBytesField(TComponent* owner);
};

class TBlobField : public TField {
  LUMORA_CLASS(TBlobField, TField)
public:
  explicit TBlobField(TComponent* owner);
  TBlobType BlobType() const { return BlobTypeOf(FDataType); }
  void SetBlobType(TBlobType value) { FDataType = FieldTypeOf(value); }
};

class TMemoField : public TBlobField {
  LUMORA_CLASS(TMemoField, TBlobField)
public:
  explicit TMemoField(TComponent* owner);
  bool FTransliterate = true;
};

class TGraphicField : public TBlobField {
  LUMORA_CLASS(TGraphicField, TBlobField)
public:
  explicit TGraphicField(TComponent* owner);
};

class TObjectField : public TField {
  LUMORA_CLASS(TObjectField, TField)
public:
  explicit TObjectField(TComponent* owner);
};

class TADTField : public TObjectField {
  LUMORA_CLASS(TADTField, TObjectField)
public:
  explicit TADTField(TComponent* owner);
};

class TArrayField : public TObjectField {
  LUMORA_CLASS(TArrayField, TObjectField)
public:
  explicit TArrayField(TComponent* owner);
};

class TDataSetField : public TObjectField {
  LUMORA_CLASS(TDataSetField, TObjectField)
public:
  explicit TDataSetField(TComponent* owner);
  bool FIncludeObjectField = false;
};

class TReferenceField : public TDataSetField {
  LUMORA_CLASS(TReferenceField, TDataSetField)
public:
  explicit TReferenceField(TComponent* owner);
  std::string FReferenceTableName;
};

class TAggregateField : public TField {
  LUMORA_CLASS(TAggregateField, TField)
public:
  explicit TAggregateField(TComponent* owner);
  bool FActive = false;
  bool FCurrency = false;
  std::string FDisplayFormat;
  std::string FExpression;
  int FGroupingLevel = 0;
  std::string FIndexName;
  int FPrecision = 15;
};

// ---- Data sets -------------------------------------------------------------------------

// What every data set has. Concrete data sets publish their own selection of it.
class TDataSet : public TComponent {
  LUMORA_CLASS(TDataSet, TComponent)
public:
  explicit TDataSet(TComponent* owner);
  ~TDataSet() override;

  // Always false: no database is opened. SetActive keeps the value a form gave.
  bool Active() const { return false; }
  bool StreamedActive() const { return FStreamedActive; }
  void SetActive(bool value) { FStreamedActive = value; }
  TDataSetState State() const { return dsInactive; }

  // The persistent fields, in their order.
  int FieldCount() const { return static_cast<int>(FFields.size()); }
  TField* Fields(int index) const { return FFields.at(static_cast<std::size_t>(index)); }
  // The persistent field of that name (any case), or none.
  TField* FindField(std::string_view fieldName) const;
  // Whether the fields are made from the table when opened (no persistent fields).
  bool DefaultFields() const { return FFields.empty(); }
  TFieldDefs* FieldDefs() const { return FFieldDefs; }
  void SetFieldDefs(TFieldDefs* value) { FFieldDefs->Assign(value); }
  TDataSetField* DataSetField() const { return FDataSetField; }
  void SetDataSetField(TDataSetField* value);

  bool FAutoCalcFields = true;
  std::string FFilter;
  bool FFiltered = false;
  TFilterOptions FFilterOptions;
  bool FObjectView = false;
  TDataSetNotifyEvent BeforeOpen, AfterOpen, BeforeClose, AfterClose, BeforeInsert, AfterInsert, BeforeEdit,
      AfterEdit, BeforePost, AfterPost, BeforeCancel, AfterCancel, BeforeDelete, AfterDelete, BeforeScroll,
      AfterScroll, OnCalcFields, OnNewRecord;
  TDataSetErrorEvent OnDeleteError, OnEditError, OnPostError;
  TFilterRecordEvent OnFilterRecord;

  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Notification(TComponent* component, TOperation operation) override;

protected:
  friend class TField;
  void AddField(TField* field);
  void RemoveField(TField* field);

private:
  bool FStreamedActive = false;
  std::vector<TField*> FFields;
  TFieldDefs* FFieldDefs;
  TDataSetField* FDataSetField = nullptr;
};

// Publishes, by name, the data set properties that the data set classes share.
template <class C>
void PublishDataSetProperties(TClassBuilder<C>& c, std::initializer_list<std::string_view> names);

// ---- Data sources ----------------------------------------------------------------------

class TDataSource : public TComponent {
  LUMORA_CLASS(TDataSource, TComponent)
public:
  explicit TDataSource(TComponent* owner);
  ~TDataSource() override;
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value);
  bool AutoEdit() const { return FAutoEdit; }
  void SetAutoEdit(bool value) { FAutoEdit = value; }
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool value) { FEnabled = value; }
  TDataSetState State() const { return dsInactive; }
  TNotifyEvent OnStateChange;
  TDataChangeEvent OnDataChange;
  TNotifyEvent OnUpdateData;
  void Notification(TComponent* component, TOperation operation) override;

private:
  TDataSet* FDataSet = nullptr;
  bool FAutoEdit = true;
  bool FEnabled = true;
};

// ---- Shared publishing -------------------------------------------------------------------

template <class C>
void PublishDataSetProperties(TClassBuilder<C>& c, std::initializer_list<std::string_view> names) {
  for (std::string_view n : names) {
    if (n == "Active") c.Property("Active", &TDataSet::StreamedActive, &TDataSet::SetActive).Default(false);
    else if (n == "AutoCalcFields") c.Property("AutoCalcFields", &TDataSet::FAutoCalcFields, &TDataSet::FAutoCalcFields).Default(true);
    else if (n == "DataSetField") c.Property("DataSetField", &TDataSet::DataSetField, &TDataSet::SetDataSetField);
    else if (n == "FieldDefs") c.Property("FieldDefs", &TDataSet::FieldDefs, &TDataSet::SetFieldDefs);
    else if (n == "Filter") c.Property("Filter", &TDataSet::FFilter, &TDataSet::FFilter);
    else if (n == "Filtered") c.Property("Filtered", &TDataSet::FFiltered, &TDataSet::FFiltered).Default(false);
    else if (n == "FilterOptions") c.Property("FilterOptions", &TDataSet::FFilterOptions, &TDataSet::FFilterOptions).Default(TFilterOptions{});
    else if (n == "ObjectView") c.Property("ObjectView", &TDataSet::FObjectView, &TDataSet::FObjectView).Default(false);
    else if (n == "BeforeOpen") c.Property("BeforeOpen", &TDataSet::BeforeOpen, &TDataSet::BeforeOpen);
    else if (n == "AfterOpen") c.Property("AfterOpen", &TDataSet::AfterOpen, &TDataSet::AfterOpen);
    else if (n == "BeforeClose") c.Property("BeforeClose", &TDataSet::BeforeClose, &TDataSet::BeforeClose);
    else if (n == "AfterClose") c.Property("AfterClose", &TDataSet::AfterClose, &TDataSet::AfterClose);
    else if (n == "BeforeInsert") c.Property("BeforeInsert", &TDataSet::BeforeInsert, &TDataSet::BeforeInsert);
    else if (n == "AfterInsert") c.Property("AfterInsert", &TDataSet::AfterInsert, &TDataSet::AfterInsert);
    else if (n == "BeforeEdit") c.Property("BeforeEdit", &TDataSet::BeforeEdit, &TDataSet::BeforeEdit);
    else if (n == "AfterEdit") c.Property("AfterEdit", &TDataSet::AfterEdit, &TDataSet::AfterEdit);
    else if (n == "BeforePost") c.Property("BeforePost", &TDataSet::BeforePost, &TDataSet::BeforePost);
    else if (n == "AfterPost") c.Property("AfterPost", &TDataSet::AfterPost, &TDataSet::AfterPost);
    else if (n == "BeforeCancel") c.Property("BeforeCancel", &TDataSet::BeforeCancel, &TDataSet::BeforeCancel);
    else if (n == "AfterCancel") c.Property("AfterCancel", &TDataSet::AfterCancel, &TDataSet::AfterCancel);
    else if (n == "BeforeDelete") c.Property("BeforeDelete", &TDataSet::BeforeDelete, &TDataSet::BeforeDelete);
    else if (n == "AfterDelete") c.Property("AfterDelete", &TDataSet::AfterDelete, &TDataSet::AfterDelete);
    else if (n == "BeforeScroll") c.Property("BeforeScroll", &TDataSet::BeforeScroll, &TDataSet::BeforeScroll);
    else if (n == "AfterScroll") c.Property("AfterScroll", &TDataSet::AfterScroll, &TDataSet::AfterScroll);
    else if (n == "OnCalcFields") c.Property("OnCalcFields", &TDataSet::OnCalcFields, &TDataSet::OnCalcFields);
    else if (n == "OnDeleteError") c.Property("OnDeleteError", &TDataSet::OnDeleteError, &TDataSet::OnDeleteError);
    else if (n == "OnEditError") c.Property("OnEditError", &TDataSet::OnEditError, &TDataSet::OnEditError);
    else if (n == "OnFilterRecord") c.Property("OnFilterRecord", &TDataSet::OnFilterRecord, &TDataSet::OnFilterRecord);
    else if (n == "OnNewRecord") c.Property("OnNewRecord", &TDataSet::OnNewRecord, &TDataSet::OnNewRecord);
    else if (n == "OnPostError") c.Property("OnPostError", &TDataSet::OnPostError, &TDataSet::OnPostError);
    else throw EPropertyError(std::string("no shared data set property ") + std::string(n));
  }
}

// The events every data set publishes, in their order.
#define LUMORA_DATASET_EVENTS "BeforeOpen", "AfterOpen", "BeforeClose", "AfterClose", "BeforeInsert", "AfterInsert", \
  "BeforeEdit", "AfterEdit", "BeforePost", "AfterPost", "BeforeCancel", "AfterCancel", "BeforeDelete",              \
  "AfterDelete", "BeforeScroll", "AfterScroll", "OnCalcFields", "OnDeleteError", "OnEditError", "OnFilterRecord",   \
  "OnNewRecord", "OnPostError"

// The data set of a data source, or none.
inline TDataSet* DataSetOf(TDataSource* source) { return source ? source->DataSet() : nullptr; }
