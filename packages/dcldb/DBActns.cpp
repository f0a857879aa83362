#include "packages/dcldb/DBActns.h"

LUMORA_CLASS_IMPL(TDataSetAction) {
  c.Property("DataSource", &TDataSetAction::DataSource, &TDataSetAction::SetDataSource);
}

TDataSetAction::~TDataSetAction() { SetDataSource(nullptr); }

bool TDataSetAction::Update() {
  if (TAction::Update()) return true;
  SetEnabled(false);
  return true;
}

void TDataSetAction::Notification(TComponent* component, TOperation operation) {
  TAction::Notification(component, operation);
  if (operation == opRemove && component == FDataSource) FDataSource = nullptr;
}

LUMORA_CLASS_IMPL(TDataSetFirst) {}
LUMORA_CLASS_IMPL(TDataSetPrior) {}
LUMORA_CLASS_IMPL(TDataSetNext) {}
LUMORA_CLASS_IMPL(TDataSetLast) {}
LUMORA_CLASS_IMPL(TDataSetInsert) {}
LUMORA_CLASS_IMPL(TDataSetDelete) {}
LUMORA_CLASS_IMPL(TDataSetEdit) {}
LUMORA_CLASS_IMPL(TDataSetPost) {}
LUMORA_CLASS_IMPL(TDataSetCancel) {}
LUMORA_CLASS_IMPL(TDataSetRefresh) {}
