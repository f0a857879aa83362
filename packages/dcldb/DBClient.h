#pragma once
// Client data sets and the providers that feed them. No server is reached: a client
// data set keeps its definitions, parameters and packed data as the form holds them.

#include "packages/dcldb/DB.h"

#include <string>

LUMORA_ENUM(TProviderOption, poFetchBlobsOnDemand, poFetchDetailsOnDemand, poIncFieldProps, poCascadeDeletes,
            poCascadeUpdates, poReadOnly, poAllowMultiRecordUpdates, poDisableInserts, poDisableEdits,
            poDisableDeletes, poNoReset, poAutoRefresh, poPropogateChanges, poAllowCommandText)
LUMORA_SET(TProviderOptions, TProviderOption)
LUMORA_ENUM(TReconcileAction, raSkip, raAbort, raMerge, raCorrect, raCancel, raRefresh)

LUMORA_EVENT(TReconcileErrorEvent, void(TObject* DataSet, EDatabaseError* E, TUpdateKind UpdateKind, TReconcileAction& Action))
LUMORA_EVENT(TProviderDataEvent, void(TObject* Sender, TObject* DataSet))
LUMORA_EVENT(TBeforeUpdateRecordEvent, void(TObject* Sender, TDataSet* SourceDS, TObject* DeltaDS, TUpdateKind UpdateKind, bool& Applied))
LUMORA_EVENT(TAfterUpdateRecordEvent, void(TObject* Sender, TDataSet* SourceDS, TObject* DeltaDS, TUpdateKind UpdateKind))
LUMORA_EVENT(TResolverErrorEvent, void(TObject* Sender, TObject* DataSet, EDatabaseError* E, TUpdateKind UpdateKind, TReconcileAction& Response))

class TClientDataSet : public TDataSet {
  LUMORA_CLASS(TClientDataSet, TDataSet)
public:
  explicit TClientDataSet(TComponent* owner);
  ~TClientDataSet() override;
  TAggregates* Aggregates() const { return FAggregates; }
  void SetAggregates(TAggregates* value) { FAggregates->Assign(value); }
  TCheckConstraints* Constraints() const { return FConstraints; }
  void SetConstraints(TCheckConstraints* value) { FConstraints->Assign(value); }
  bool HasConstraints() const { return FConstraints->Count() > 0; }
  TIndexDefs* IndexDefs() const { return FIndexDefs; }
  void SetIndexDefs(TIndexDefs* value) { FIndexDefs->Assign(value); }
  TParams* Params() const { return FParams; }
  void SetParams(TParams* value) { FParams->Assign(value); }
  TDataSource* MasterSource() const { return FMasterSource; }
  void SetMasterSource(TDataSource* value) { ReplaceComponentLink(this, FMasterSource, value); }
  TComponent* RemoteServer() const { return FRemoteServer; }
  void SetRemoteServer(TComponent* value) { ReplaceComponentLink(this, FRemoteServer, value); }
  bool IsDefsStored() const { return FStoreDefs; }
  // The records the form holds, as the packed bytes they were written in.
  const std::string& Data() const { return FData; }
  void DefineProperties(TFiler& filer) override;
  void Notification(TComponent* component, TOperation operation) override;

  bool FAggregatesActive = false;
  std::string FCommandText;
  bool FFetchOnDemand = true;
  std::string FFileName;
  std::string FIndexFieldNames;
  std::string FIndexName;
  std::string FMasterFields;
  int FPacketRecords = -1;
  std::string FProviderName;
  bool FReadOnly = false;
  bool FStoreDefs = false;
  TReconcileErrorEvent OnReconcileError;

private:
  TAggregates* FAggregates;
  TCheckConstraints* FConstraints;
  TIndexDefs* FIndexDefs;
  TParams* FParams;
  TDataSource* FMasterSource = nullptr;
  TComponent* FRemoteServer = nullptr;
  std::string FData;
};

class TBaseProvider : public TComponent {
  LUMORA_CLASS(TBaseProvider, TComponent)
public:
  explicit TBaseProvider(TComponent* owner) : TComponent(owner) {}
  TDataSet* DataSet() const { return FDataSet; }
  void SetDataSet(TDataSet* value) { ReplaceComponentLink(this, FDataSet, value); }
  void Notification(TComponent* component, TOperation operation) override;

  bool FConstraints = true;
  TProviderOptions FOptions;
  bool FResolveToDataSet = false;
  TUpdateMode FUpdateMode = upWhereAll;
  TAfterUpdateRecordEvent AfterUpdateRecord;
  TBeforeUpdateRecordEvent BeforeUpdateRecord;
  TProviderDataEvent OnGetData;
  TProviderDataEvent OnUpdateData;
  TResolverErrorEvent OnUpdateError;

private:
  TDataSet* FDataSet = nullptr;
};

class TProvider : public TBaseProvider {
  LUMORA_CLASS(TProvider, TBaseProvider)
public:
  explicit TProvider(TComponent* owner) : TBaseProvider(owner) {}
};

class TDataSetProvider : public TBaseProvider {
  LUMORA_CLASS(TDataSetProvider, TBaseProvider)
public:
  explicit TDataSetProvider(TComponent* owner) : TBaseProvider(owner) {}
};
