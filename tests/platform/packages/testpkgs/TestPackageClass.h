#pragma once
// The component class each test package defines in its own code: a class of the package,
// not of the platform, so that unloading the package really takes its code away.

#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Classes.h"

// TPKG_CLASS(TChainBase): a component class with one published integer, Level.
#define TPKG_CLASS(Cls)                                                  \
  class Cls : public TComponent {                                        \
    LUMORA_CLASS(Cls, TComponent)                                        \
  public:                                                                \
    explicit Cls(TComponent* owner) : TComponent(owner) {}               \
    int FLevel = 0;                                                      \
  };                                                                     \
  LUMORA_CLASS_IMPL(Cls) { c.Property("Level", &Cls::FLevel, &Cls::FLevel).Default(0); }
