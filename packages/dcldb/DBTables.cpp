#include "packages/dcldb/DBTables.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"

// ---------------------------------------------------------------------------------------
// TDBDataSet

LUMORA_CLASS_IMPL(TDataSetUpdateObject) {}

LUMORA_CLASS_IMPL(TDBDataSet) {}

TDBDataSet::TDBDataSet(TComponent* owner) : TDataSet(owner), FConstraints(new TCheckConstraints(this)) {}

TDBDataSet::~TDBDataSet() {
  SetUpdateObject(nullptr);
  delete FConstraints;
}

void TDBDataSet::Notification(TComponent* component, TOperation operation) {
  TDataSet::Notification(component, operation);
  if (operation == opRemove && component == FUpdateObject) FUpdateObject = nullptr;
}

namespace {

// The properties of a data set that goes through a database, by name.
template <class C>
void PublishDBDataSet(TClassBuilder<C>& c, std::initializer_list<std::string_view> names) {
  for (std::string_view n : names) {
    if (n == "AutoRefresh") c.Property("AutoRefresh", &TDBDataSet::FAutoRefresh, &TDBDataSet::FAutoRefresh).Default(false);
    else if (n == "CachedUpdates") c.Property("CachedUpdates", &TDBDataSet::FCachedUpdates, &TDBDataSet::FCachedUpdates).Default(false);
    else if (n == "Constraints") c.Property("Constraints", &TDBDataSet::Constraints, &TDBDataSet::SetConstraints).Stored(&TDBDataSet::HasConstraints);
    else if (n == "DatabaseName") c.Property("DatabaseName", &TDBDataSet::FDatabaseName, &TDBDataSet::FDatabaseName);
    else if (n == "SessionName") c.Property("SessionName", &TDBDataSet::FSessionName, &TDBDataSet::FSessionName);
    else if (n == "UpdateMode") c.Property("UpdateMode", &TDBDataSet::FUpdateMode, &TDBDataSet::FUpdateMode).Default(upWhereAll);
    else if (n == "UpdateObject") c.Property("UpdateObject", &TDBDataSet::UpdateObject, &TDBDataSet::SetUpdateObject);
    else if (n == "OnUpdateError") c.Property("OnUpdateError", &TDBDataSet::OnUpdateError, &TDBDataSet::OnUpdateError);
    else if (n == "OnUpdateRecord") c.Property("OnUpdateRecord", &TDBDataSet::OnUpdateRecord, &TDBDataSet::OnUpdateRecord);
    else PublishDataSetProperties(c, {n});
  }
}

}  // namespace

// ---------------------------------------------------------------------------------------
// TTable

LUMORA_CLASS_IMPL(TTable) {
  PublishDBDataSet(c, {"Active", "AutoCalcFields", "AutoRefresh", "CachedUpdates", "Constraints", "DatabaseName"});
  c.Property("DefaultIndex", &TTable::FDefaultIndex, &TTable::FDefaultIndex).Default(true);
  c.Property("Exclusive", &TTable::FExclusive, &TTable::FExclusive).Default(false);
  PublishDBDataSet(c, {"FieldDefs"});
  c.Property("FieldDefs").Stored(&TTable::IsDefsStored);
  PublishDBDataSet(c, {"Filter", "Filtered", "FilterOptions"});
  c.Property("IndexDefs", &TTable::IndexDefs, &TTable::SetIndexDefs).Stored(&TTable::IsDefsStored);
  c.Property("IndexFieldNames", &TTable::FIndexFieldNames, &TTable::FIndexFieldNames);
  c.Property("IndexFiles", &TTable::IndexFiles, &TTable::SetIndexFiles);
  c.Property("IndexName", &TTable::FIndexName, &TTable::FIndexName);
  c.Property("MasterFields", &TTable::FMasterFields, &TTable::FMasterFields);
  c.Property("MasterSource", &TTable::MasterSource, &TTable::SetMasterSource);
  PublishDBDataSet(c, {"ObjectView"});
  c.Property("ReadOnly", &TTable::FReadOnly, &TTable::FReadOnly).Default(false);
  PublishDBDataSet(c, {"SessionName"});
  c.Property("StoreDefs", &TTable::FStoreDefs, &TTable::FStoreDefs).Default(false);
  c.Property("TableName", &TTable::FTableName, &TTable::FTableName);
  c.Property("TableType", &TTable::FTableType, &TTable::FTableType).Default(ttDefault);
  PublishDBDataSet(c, {"UpdateMode", "UpdateObject", LUMORA_DATASET_EVENTS, "OnUpdateError", "OnUpdateRecord"});
}

TTable::TTable(TComponent* owner)
    : TDBDataSet(owner), FIndexDefs(new TIndexDefs(this)), FIndexFiles(new TStringList()) {}

TTable::~TTable() {
  SetMasterSource(nullptr);
  delete FIndexDefs;
  delete FIndexFiles;
}

void TTable::Notification(TComponent* component, TOperation operation) {
  TDBDataSet::Notification(component, operation);
  if (operation == opRemove && component == FMasterSource) FMasterSource = nullptr;
}

// ---------------------------------------------------------------------------------------
// TParamDataSet, TQuery, TStoredProc

LUMORA_CLASS_IMPL(TParamDataSet) {}

TParamDataSet::TParamDataSet(TComponent* owner) : TDBDataSet(owner), FParams(new TParams(this)) {}

TParamDataSet::~TParamDataSet() { delete FParams; }

void TParamDataSet::DefineProperties(TFiler& filer) {
  TDBDataSet::DefineProperties(filer);
  filer.DefineProperty(
      "ParamData",
      [this](TReader& r) {
        if (r.ReadValue() != vaCollection) TValueReader::InvalidValue();
        r.ReadCollection(FParams);
      },
      [this](TWriter& w) { w.WriteCollection(FParams); }, FParams->Count() > 0);
}

LUMORA_CLASS_IMPL(TQuery) {
  PublishDBDataSet(c, {"Active", "AutoCalcFields", "AutoRefresh", "CachedUpdates"});
  c.Property("Constrained", &TQuery::FConstrained, &TQuery::FConstrained).Default(false);
  PublishDBDataSet(c, {"Constraints", "DatabaseName"});
  c.Property("DataSource", &TQuery::DataSource, &TQuery::SetDataSource);
  PublishDBDataSet(c, {"Filter", "Filtered", "FilterOptions", "ObjectView"});
  c.Property("ParamCheck", &TQuery::FParamCheck, &TQuery::FParamCheck).Default(true);
  c.Property("Params", &TQuery::Params, &TQuery::SetParams).Stored(false);
  c.Property("RequestLive", &TQuery::FRequestLive, &TQuery::FRequestLive).Default(false);
  PublishDBDataSet(c, {"SessionName"});
  c.Property("SQL", &TQuery::SQL, &TQuery::SetSQL);
  c.Property("UniDirectional", &TQuery::FUniDirectional, &TQuery::FUniDirectional).Default(false);
  PublishDBDataSet(c, {"UpdateMode", "UpdateObject", LUMORA_DATASET_EVENTS, "OnUpdateError", "OnUpdateRecord"});
}

TQuery::TQuery(TComponent* owner) : TParamDataSet(owner), FSQL(new TStringList()) {}

TQuery::~TQuery() {
  SetDataSource(nullptr);
  delete FSQL;
}

void TQuery::Notification(TComponent* component, TOperation operation) {
  TParamDataSet::Notification(component, operation);
  if (operation == opRemove && component == FDataSource) FDataSource = nullptr;
}

LUMORA_CLASS_IMPL(TStoredProc) {
  PublishDBDataSet(c, {"Active", "AutoCalcFields", "CachedUpdates", "DatabaseName", "Filter", "Filtered",
                       "FilterOptions", "ObjectView"});
  c.Property("Overload", &TStoredProc::FOverload, &TStoredProc::FOverload).Default(0);
  c.Property("ParamBindMode", &TStoredProc::FParamBindMode, &TStoredProc::FParamBindMode).Default(pbByName);
  c.Property("Params", &TStoredProc::Params, &TStoredProc::SetParams).Stored(false);
  PublishDBDataSet(c, {"SessionName"});
  c.Property("StoredProcName", &TStoredProc::FStoredProcName, &TStoredProc::FStoredProcName);
  PublishDBDataSet(c, {"UpdateObject", LUMORA_DATASET_EVENTS, "OnUpdateError", "OnUpdateRecord"});
}

LUMORA_CLASS_IMPL(TNestedTable) {
  PublishDBDataSet(c, {"Active", "AutoCalcFields", "CachedUpdates", "DataSetField", "Filter", "Filtered",
                       "FilterOptions", "ObjectView"});
  c.Property("ReadOnly", &TNestedTable::FReadOnly, &TNestedTable::FReadOnly).Default(false);
  PublishDBDataSet(c, {"UpdateObject", LUMORA_DATASET_EVENTS, "OnUpdateError", "OnUpdateRecord"});
}

// ---------------------------------------------------------------------------------------
// TDatabase, TSession

LUMORA_CLASS_IMPL(TDatabase) {
  c.Property("AliasName", &TDatabase::FAliasName, &TDatabase::FAliasName);
  c.Property("Connected", &TDatabase::FConnected, &TDatabase::FConnected).Default(false);
  c.Property("DatabaseName", &TDatabase::FDatabaseName, &TDatabase::FDatabaseName);
  c.Property("DriverName", &TDatabase::FDriverName, &TDatabase::FDriverName);
  c.Property("Exclusive", &TDatabase::FExclusive, &TDatabase::FExclusive).Default(false);
  c.Property("HandleShared", &TDatabase::FHandleShared, &TDatabase::FHandleShared).Default(false);
  c.Property("KeepConnection", &TDatabase::FKeepConnection, &TDatabase::FKeepConnection).Default(true);
  c.Property("LoginPrompt", &TDatabase::FLoginPrompt, &TDatabase::FLoginPrompt).Default(true);
  c.Property("Params", &TDatabase::Params, &TDatabase::SetParams);
  c.Property("ReadOnly", &TDatabase::FReadOnly, &TDatabase::FReadOnly).Default(false);
  c.Property("SessionName", &TDatabase::FSessionName, &TDatabase::FSessionName);
  c.Property("TransIsolation", &TDatabase::FTransIsolation, &TDatabase::FTransIsolation).Default(tiReadCommitted);
  c.Property("OnLogin", &TDatabase::OnLogin, &TDatabase::OnLogin);
}

TDatabase::TDatabase(TComponent* owner) : TComponent(owner), FParams(new TStringList()) {}

TDatabase::~TDatabase() { delete FParams; }

LUMORA_CLASS_IMPL(TSession) {
  c.Property("Active", &TSession::FActive, &TSession::FActive).Default(false);
  c.Property("AutoSessionName", &TSession::FAutoSessionName, &TSession::FAutoSessionName).Default(false);
  c.Property("KeepConnections", &TSession::FKeepConnections, &TSession::FKeepConnections).Default(true);
  c.Property("NetFileDir", &TSession::FNetFileDir, &TSession::FNetFileDir);
  c.Property("PrivateDir", &TSession::FPrivateDir, &TSession::FPrivateDir);
  c.Property("SessionName", &TSession::FSessionName, &TSession::FSessionName);
  c.Property("SQLHourGlass", &TSession::FSQLHourGlass, &TSession::FSQLHourGlass).Default(true);
  c.Property("OnPassword", &TSession::OnPassword, &TSession::OnPassword);
  c.Property("OnStartup", &TSession::OnStartup, &TSession::OnStartup);
}

// ---------------------------------------------------------------------------------------
// TBatchMove, TUpdateSQL

LUMORA_CLASS_IMPL(TBatchMove) {
  c.Property("AbortOnKeyViol", &TBatchMove::FAbortOnKeyViol, &TBatchMove::FAbortOnKeyViol).Default(true);
  c.Property("AbortOnProblem", &TBatchMove::FAbortOnProblem, &TBatchMove::FAbortOnProblem).Default(true);
  c.Property("ChangedTableName", &TBatchMove::FChangedTableName, &TBatchMove::FChangedTableName);
  c.Property("CommitCount", &TBatchMove::FCommitCount, &TBatchMove::FCommitCount).Default(0);
  c.Property("Destination", &TBatchMove::Destination, &TBatchMove::SetDestination);
  c.Property("KeyViolTableName", &TBatchMove::FKeyViolTableName, &TBatchMove::FKeyViolTableName);
  c.Property("Mappings", &TBatchMove::Mappings, &TBatchMove::SetMappings);
  c.Property("Mode", &TBatchMove::FMode, &TBatchMove::FMode).Default(batAppend);
  c.Property("ProblemTableName", &TBatchMove::FProblemTableName, &TBatchMove::FProblemTableName);
  c.Property("RecordCount", &TBatchMove::FRecordCount, &TBatchMove::FRecordCount).Default(0);
  c.Property("Source", &TBatchMove::Source, &TBatchMove::SetSource);
  c.Property("Transliterate", &TBatchMove::FTransliterate, &TBatchMove::FTransliterate).Default(true);
}

TBatchMove::TBatchMove(TComponent* owner) : TComponent(owner), FMappings(new TStringList()) {}

TBatchMove::~TBatchMove() {
  SetDestination(nullptr);
  SetSource(nullptr);
  delete FMappings;
}

void TBatchMove::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FDestination) FDestination = nullptr;
  if (component == FSource) FSource = nullptr;
}

LUMORA_CLASS_IMPL(TUpdateSQL) {
  auto sql = [&c](const char* name, TUpdateKind kind) {
    c.Property(
        name, [kind](TUpdateSQL* u) { return static_cast<TStrings*>(u->SQL(kind)); },
        [kind](TUpdateSQL* u, TStrings* value) { u->SQL(kind)->Assign(value); });
  };
  sql("DeleteSQL", ukDelete);
  sql("InsertSQL", ukInsert);
  sql("ModifySQL", ukModify);
}

TUpdateSQL::TUpdateSQL(TComponent* owner) : TDataSetUpdateObject(owner) {
  for (auto& list : FSQL) list = new TStringList();
}

TUpdateSQL::~TUpdateSQL() {
  for (auto* list : FSQL) delete list;
}
