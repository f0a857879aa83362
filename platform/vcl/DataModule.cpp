#include "platform/vcl/DataModule.h"

LUMORA_CLASS_IMPL(TDataModule) {
  c.Property("OldCreateOrder", &TDataModule::OldCreateOrder, &TDataModule::SetOldCreateOrder);
  c.Property("OnCreate", &TDataModule::OnCreate, &TDataModule::OnCreate);
  c.Property("OnDestroy", &TDataModule::OnDestroy, &TDataModule::OnDestroy);
}

TDataModule::TDataModule(TComponent* owner) : TComponent(owner) {}

TDataModule::~TDataModule() {
  if (FCreated && OnDestroy) OnDestroy(this);
}

void TDataModule::DoCreate() {
  FCreated = true;
  if (OnCreate) OnCreate(this);
}

// Left and Top are the designer window's place, not a component's place on a form: the
// component's own pair is not defined, or both would read and write the same names.
void TDataModule::DefineProperties(TFiler& filer) {
  auto define = [&](const char* name, int TPoint::*field, TPoint TDataModule::*point) {
    filer.DefineProperty(
        name, [this, field, point](TReader& r) { (this->*point).*field = r.ReadInteger(); },
        [this, field, point](TWriter& w) { w.WriteInteger((this->*point).*field); }, true);
  };
  define("Left", &TPoint::X, &TDataModule::FDesignOffset);
  define("Top", &TPoint::Y, &TDataModule::FDesignOffset);
  define("Height", &TPoint::Y, &TDataModule::FDesignSize);
  define("Width", &TPoint::X, &TDataModule::FDesignSize);
}

void TDataModule::GetChildren(const TGetChildProc& proc, TComponent*) {
  for (int i = 0; i < ComponentCount(); ++i) {
    TComponent* c = Components(i);
    if (!c->HasParent()) proc(c);
  }
}
