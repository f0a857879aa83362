#include "platform/rtti/Persistent.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

LUMORA_CLASS_IMPL(TPersistent) {}

void TPersistent::Assign(TPersistent* source) {
  if (source) source->AssignTo(this);
  else AssignError(nullptr);
}

void TPersistent::AssignTo(TPersistent* dest) {
  if (!dest) throw EConvertError(Format(RtlConsts::SAssignError, ClassName(), "nil"));
  dest->AssignError(this);
}

void TPersistent::AssignError(TPersistent* source) {
  const std::string sourceName = source ? source->ClassName() : std::string("nil");
  throw EConvertError(Format(RtlConsts::SAssignError, sourceName, ClassName()));
}

TPersistent* TPersistent::GetOwner() { return nullptr; }

std::string TPersistent::GetNamePath() {
  std::string result = ClassName();
  if (TPersistent* owner = GetOwner()) {
    const std::string ownerPath = owner->GetNamePath();
    if (!ownerPath.empty()) result = ownerPath + "." + result;
  }
  return result;
}

void TPersistent::DefineProperties(TFiler&) {}
