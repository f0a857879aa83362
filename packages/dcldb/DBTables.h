#pragma once
// The data access page: tables, queries, stored procedures, nested tables, databases,
// sessions, batch moves and update objects. They keep what a form says of them and
// never open anything.

#include "packages/dcldb/DB.h"

#include <string>

LUMORA_ENUM(TTableType, ttDefault, ttParadox, ttDBase, ttASCII)
LUMORA_ENUM(TParamBindMode, pbByName, pbByNumber)
LUMORA_ENUM(TTransIsolation, tiDirtyRead, tiReadCommitted, tiRepeatableRead)
LUMORA_ENUM(TBatchMode, batAppend, batUpdate, batAppendUpdate, batDelete, batCopy)

LUMORA_EVENT(TLoginEvent, void(TObject* Database, TStrings* LoginParams))
// Of the same shape as the close query event.
using TPasswordEvent = TCloseQueryEvent;

class TDataSetUpdateObject : public TComponent {
  LUMORA_CLASS(TDataSetUpdateObject, TComponent)
public:
  explicit TDataSetUpdateObject(TComponent* owner) : TComponent(owner) {}
};

// What the data sets that go through a database connection share.
class TDBDataSet : public TDataSet {
  LUMORA_CLASS(TDBDataSet, TDataSet)
public:
  explicit TDBDataSet(TComponent* owner);
  ~TDBDataSet() override;
  TCheckConstraints* Constraints() const { return FConstraints; }
  void SetConstraints(TCheckConstraints* value) { FConstraints->Assign(value); }
  bool HasConstraints() const { return FConstraints->Count() > 0; }
  TDataSetUpdateObject* UpdateObject() const { return FUpdateObject; }
  void SetUpdateObject(TDataSetUpdateObject* value) { ReplaceComponentLink(this, FUpdateObject, value); }
  void Notification(TComponent* component, TOperation operation) override;

  bool FAutoRefresh = false;
  bool FCachedUpdates = false;
  std::string FDatabaseName;
  std::string FSessionName;
  TUpdateMode FUpdateMode = upWhereAll;
  TUpdateErrorEvent OnUpdateError;
  TUpdateRecordEvent OnUpdateRecord;

private:
  TCheckConstraints* FConstraints;
  TDataSetUpdateObject* FUpdateObject = nullptr;
};

class TTable : public TDBDataSet {
  LUMORA_CLASS(TTable, TDBDataSet)
public:
  explicit TTable(TComponent* owner);
  ~TTable() override;
  TIndexDefs* IndexDefs() const { return FIndexDefs; }
  void SetIndexDefs(TIndexDefs* value) { FIndexDefs->Assign(value); }
  TStrings* IndexFiles() const { return FIndexFiles; }
  void SetIndexFiles(TStrings* value) { FIndexFiles->Assign(value); }
  TDataSource* MasterSource() const { return FMasterSource; }
  void SetMasterSource(TDataSource* value) { ReplaceComponentLink(this, FMasterSource, value); }
  // Field and index definitions are written when the form keeps them.
  bool IsDefsStored() const { return FStoreDefs; }
  void Notification(TComponent* component, TOperation operation) override;

  bool FDefaultIndex = true;
  bool FExclusive = false;
  std::string FIndexFieldNames;
  std::string FIndexName;
  std::string FMasterFields;
  bool FReadOnly = false;
  bool FStoreDefs = false;
  std::string FTableName;
  TTableType FTableType = ttDefault;

private:
  TIndexDefs* FIndexDefs;
  TStringList* FIndexFiles;
  TDataSource* FMasterSource = nullptr;
};

// A data set with parameters, streamed as ParamData.
class TParamDataSet : public TDBDataSet {
  LUMORA_CLASS(TParamDataSet, TDBDataSet)
public:
  explicit TParamDataSet(TComponent* owner);
  ~TParamDataSet() override;
  TParams* Params() const { return FParams; }
  void SetParams(TParams* value) { FParams->Assign(value); }
  void DefineProperties(TFiler& filer) override;

private:
  TParams* FParams;
};

class TQuery : public TParamDataSet {
  LUMORA_CLASS(TQuery, TParamDataSet)
public:
  explicit TQuery(TComponent* owner);
  ~TQuery() override;
  TStrings* SQL() const { return FSQL; }
  void SetSQL(TStrings* value) { FSQL->Assign(value); }
  TDataSource* DataSource() const { return FDataSource; }
  void SetDataSource(TDataSource* value) { ReplaceComponentLink(this, FDataSource, value); }
  void Notification(TComponent* component, TOperation operation) override;

  bool FConstrained = false;
  bool FParamCheck = true;
  bool FRequestLive = false;
  bool FUniDirectional = false;

private:
  TStringList* FSQL;
  TDataSource* FDataSource = nullptr;
};

class TStoredProc : public TParamDataSet {
  LUMORA_CLASS(TStoredProc, TParamDataSet)
public:
  explicit TStoredProc(TComponent* owner) : TParamDataSet(owner) {}
  Word FOverload = 0;
  TParamBindMode FParamBindMode = pbByName;
  std::string FStoredProcName;
};

class TNestedTable : public TDBDataSet {
  LUMORA_CLASS(TNestedTable, TDBDataSet)
public:
  explicit TNestedTable(TComponent* owner) : TDBDataSet(owner) {}
  bool FReadOnly = false;
};

class TDatabase : public TComponent {
  LUMORA_CLASS(TDatabase, TComponent)
public:
  explicit TDatabase(TComponent* owner);
  ~TDatabase() override;
  TStrings* Params() const { return FParams; }
  void SetParams(TStrings* value) { FParams->Assign(value); }
  // Never connected; the value a form gives is kept.
  bool FConnected = false;
  std::string FAliasName;
  std::string FDatabaseName;
  std::string FDriverName;
  bool FExclusive = false;
  bool FHandleShared = false;
  bool FKeepConnection = true;
  bool FLoginPrompt = true;
  bool FReadOnly = false;
  std::string FSessionName;
  TTransIsolation FTransIsolation = tiReadCommitted;
  TLoginEvent OnLogin;

private:
  TStringList* FParams;
};

class TSession : public TComponent {
  LUMORA_CLASS(TSession, TComponent)
public:
  explicit TSession(TComponent* owner) : TComponent(owner) {}
  bool FActive = false;
  bool FAutoSessionName = false;
  bool FKeepConnections = true;
  std::string FNetFileDir;
  std::string FPrivateDir;
  std::string FSessionName;
  bool FSQLHourGlass = true;
  TPasswordEvent OnPassword;
  TNotifyEvent OnStartup;
};

class TBatchMove : public TComponent {
  LUMORA_CLASS(TBatchMove, TComponent)
public:
  explicit TBatchMove(TComponent* owner);
  ~TBatchMove() override;
  TTable* Destination() const { return FDestination; }
  void SetDestination(TTable* value) { ReplaceComponentLink(this, FDestination, value); }
  TDataSet* Source() const { return FSource; }
  void SetSource(TDataSet* value) { ReplaceComponentLink(this, FSource, value); }
  TStrings* Mappings() const { return FMappings; }
  void SetMappings(TStrings* value) { FMappings->Assign(value); }
  void Notification(TComponent* component, TOperation operation) override;

  bool FAbortOnKeyViol = true;
  bool FAbortOnProblem = true;
  std::string FChangedTableName;
  int FCommitCount = 0;
  std::string FKeyViolTableName;
  TBatchMode FMode = batAppend;
  std::string FProblemTableName;
  int FRecordCount = 0;
  bool FTransliterate = true;

private:
  TTable* FDestination = nullptr;
  TDataSet* FSource = nullptr;
  TStringList* FMappings;
};

class TUpdateSQL : public TDataSetUpdateObject {
  LUMORA_CLASS(TUpdateSQL, TDataSetUpdateObject)
public:
  explicit TUpdateSQL(TComponent* owner);
  ~TUpdateSQL() override;
  TStrings* SQL(TUpdateKind kind) const { return FSQL[kind]; }

private:
  TStringList* FSQL[3];
};
