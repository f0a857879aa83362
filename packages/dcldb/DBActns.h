#pragma once
// The data set actions: first, prior, next, last, insert, delete, edit, post, cancel and
// refresh. With every data set closed, none has anything to act on: an action without
// its own OnUpdate handler shows disabled, as it would over a closed data set.

#include "packages/dcldb/DB.h"
#include "platform/vcl/ActnList.h"

class TDataSetAction : public TAction {
  LUMORA_CLASS(TDataSetAction, TAction)
public:
  explicit TDataSetAction(TComponent* owner) : TAction(owner) {}
  ~TDataSetAction() override;
  TDataSource* DataSource() const { return FDataSource; }
  void SetDataSource(TDataSource* value) { ReplaceComponentLink(this, FDataSource, value); }
  bool Update() override;
  void Notification(TComponent* component, TOperation operation) override;

private:
  TDataSource* FDataSource = nullptr;
};

#define LUMORA_DATASET_ACTION(Name)                                   \
  class Name : public TDataSetAction {                                \
    LUMORA_CLASS(Name, TDataSetAction)                                \
  public:                                                             \
    explicit Name(TComponent* owner) : TDataSetAction(owner) {}       \
  };

LUMORA_DATASET_ACTION(TDataSetFirst)
LUMORA_DATASET_ACTION(TDataSetPrior)
LUMORA_DATASET_ACTION(TDataSetNext)
LUMORA_DATASET_ACTION(TDataSetLast)
LUMORA_DATASET_ACTION(TDataSetInsert)
LUMORA_DATASET_ACTION(TDataSetDelete)
LUMORA_DATASET_ACTION(TDataSetEdit)
LUMORA_DATASET_ACTION(TDataSetPost)
LUMORA_DATASET_ACTION(TDataSetCancel)
LUMORA_DATASET_ACTION(TDataSetRefresh)
#undef LUMORA_DATASET_ACTION
