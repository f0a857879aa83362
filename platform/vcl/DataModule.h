#pragma once
// A data module: a root that holds non-visual components (tables, queries, dialogs,
// action lists) instead of controls. Its stream keeps where its window stood while it
// was designed (Left, Top) and the window's size (Width, Height).

#include "platform/rtti/Classes.h"
#include "platform/vcl/Types.h"

class TDataModule : public TComponent {
  LUMORA_CLASS(TDataModule, TComponent)
public:
  explicit TDataModule(TComponent* owner);
  ~TDataModule() override;

  bool OldCreateOrder() const { return FOldCreateOrder; }
  void SetOldCreateOrder(bool value) { FOldCreateOrder = value; }
  // Where the designer's window stood and its size.
  TPoint DesignOffset() const { return FDesignOffset; }
  void SetDesignOffset(TPoint value) { FDesignOffset = value; }
  TPoint DesignSize() const { return FDesignSize; }
  void SetDesignSize(TPoint value) { FDesignSize = value; }

  TNotifyEvent OnCreate;
  TNotifyEvent OnDestroy;

  // Runs OnCreate (data modules of the program call it when they have read their components).
  void DoCreate();
  void DefineProperties(TFiler& filer) override;
  // Every component it owns that has no parent, in order.
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;

private:
  bool FOldCreateOrder = false;
  TPoint FDesignOffset;
  TPoint FDesignSize{215, 150};
  bool FCreated = false;
};
