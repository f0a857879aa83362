#include "packages/dcldb/DBClient.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/Streams.h"

// ---------------------------------------------------------------------------------------
// TClientDataSet

LUMORA_CLASS_IMPL(TClientDataSet) {
  PublishDataSetProperties(c, {"Active"});
  c.Property("Aggregates", &TClientDataSet::Aggregates, &TClientDataSet::SetAggregates);
  c.Property("AggregatesActive", &TClientDataSet::FAggregatesActive, &TClientDataSet::FAggregatesActive).Default(false);
  PublishDataSetProperties(c, {"AutoCalcFields"});
  c.Property("CommandText", &TClientDataSet::FCommandText, &TClientDataSet::FCommandText);
  c.Property("Constraints", &TClientDataSet::Constraints, &TClientDataSet::SetConstraints)
      .Stored(&TClientDataSet::HasConstraints);
  PublishDataSetProperties(c, {"DataSetField"});
  c.Property("FetchOnDemand", &TClientDataSet::FFetchOnDemand, &TClientDataSet::FFetchOnDemand).Default(true);
  PublishDataSetProperties(c, {"FieldDefs"});
  c.Property("FieldDefs").Stored(&TClientDataSet::IsDefsStored);
  c.Property("FileName", &TClientDataSet::FFileName, &TClientDataSet::FFileName);
  PublishDataSetProperties(c, {"Filter", "Filtered", "FilterOptions"});
  c.Property("IndexDefs", &TClientDataSet::IndexDefs, &TClientDataSet::SetIndexDefs).Stored(&TClientDataSet::IsDefsStored);
  c.Property("IndexFieldNames", &TClientDataSet::FIndexFieldNames, &TClientDataSet::FIndexFieldNames);
  c.Property("IndexName", &TClientDataSet::FIndexName, &TClientDataSet::FIndexName);
  c.Property("MasterFields", &TClientDataSet::FMasterFields, &TClientDataSet::FMasterFields);
  c.Property("MasterSource", &TClientDataSet::MasterSource, &TClientDataSet::SetMasterSource);
  PublishDataSetProperties(c, {"ObjectView"});
  c.Property("PacketRecords", &TClientDataSet::FPacketRecords, &TClientDataSet::FPacketRecords).Default(-1);
  c.Property("Params", &TClientDataSet::Params, &TClientDataSet::SetParams);
  c.Property("ProviderName", &TClientDataSet::FProviderName, &TClientDataSet::FProviderName);
  c.Property("ReadOnly", &TClientDataSet::FReadOnly, &TClientDataSet::FReadOnly).Default(false);
  c.Property("RemoteServer", &TClientDataSet::RemoteServer, &TClientDataSet::SetRemoteServer);
  c.Property("StoreDefs", &TClientDataSet::FStoreDefs, &TClientDataSet::FStoreDefs).Default(false);
  PublishDataSetProperties(c, {LUMORA_DATASET_EVENTS});
  c.Property("OnReconcileError", &TClientDataSet::OnReconcileError, &TClientDataSet::OnReconcileError);
}

TClientDataSet::TClientDataSet(TComponent* owner)
    : TDataSet(owner),
      FAggregates(new TAggregates(this)),
      FConstraints(new TCheckConstraints(this)),
      FIndexDefs(new TIndexDefs(this)),
      FParams(new TParams(this)) {}

TClientDataSet::~TClientDataSet() {
  SetMasterSource(nullptr);
  SetRemoteServer(nullptr);
  delete FAggregates;
  delete FConstraints;
  delete FIndexDefs;
  delete FParams;
}

void TClientDataSet::DefineProperties(TFiler& filer) {
  TDataSet::DefineProperties(filer);
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) {
        FData.resize(static_cast<std::size_t>(s.Size() - s.Position()));
        if (!FData.empty()) s.ReadBuffer(FData.data(), static_cast<std::int64_t>(FData.size()));
      },
      [this](TStream& s) { s.WriteBuffer(FData.data(), static_cast<std::int64_t>(FData.size())); }, !FData.empty());
}

void TClientDataSet::Notification(TComponent* component, TOperation operation) {
  TDataSet::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FMasterSource) FMasterSource = nullptr;
  if (component == FRemoteServer) FRemoteServer = nullptr;
}

// ---------------------------------------------------------------------------------------
// Providers

LUMORA_CLASS_IMPL(TBaseProvider) {}

void TBaseProvider::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FDataSet) FDataSet = nullptr;
}

namespace {
template <class C>
void PublishProvider(TClassBuilder<C>& c) {
  c.Property("Constraints", &TBaseProvider::FConstraints, &TBaseProvider::FConstraints).Default(true);
  c.Property("DataSet", &TBaseProvider::DataSet, &TBaseProvider::SetDataSet);
  c.Property("Options", &TBaseProvider::FOptions, &TBaseProvider::FOptions).Default(TProviderOptions{});
  c.Property("ResolveToDataSet", &TBaseProvider::FResolveToDataSet, &TBaseProvider::FResolveToDataSet).Default(false);
  c.Property("UpdateMode", &TBaseProvider::FUpdateMode, &TBaseProvider::FUpdateMode).Default(upWhereAll);
  c.Property("AfterUpdateRecord", &TBaseProvider::AfterUpdateRecord, &TBaseProvider::AfterUpdateRecord);
  c.Property("BeforeUpdateRecord", &TBaseProvider::BeforeUpdateRecord, &TBaseProvider::BeforeUpdateRecord);
  c.Property("OnGetData", &TBaseProvider::OnGetData, &TBaseProvider::OnGetData);
  c.Property("OnUpdateData", &TBaseProvider::OnUpdateData, &TBaseProvider::OnUpdateData);
  c.Property("OnUpdateError", &TBaseProvider::OnUpdateError, &TBaseProvider::OnUpdateError);
}
}  // namespace

LUMORA_CLASS_IMPL(TProvider) { PublishProvider(c); }
LUMORA_CLASS_IMPL(TDataSetProvider) { PublishProvider(c); }
