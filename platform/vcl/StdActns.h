#pragma once
// The standard actions an action list may hold: edit actions that work on the focused
// edit (cut, copy, paste, select all, undo, delete), window actions for the windows of a
// form, and help actions. Each runs its own work unless OnExecute is set, and enables
// itself when idle unless OnUpdate is set.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/StdCtrls.h"

class TForm;

// Works on its Control, or on the focused edit when it has none.
class TEditAction : public TAction {
  LUMORA_CLASS(TEditAction, TAction)
public:
  explicit TEditAction(TComponent* owner) : TAction(owner) {}
  TCustomEdit* Control() const { return FControl; }
  void SetControl(TCustomEdit* value);
  // The edit the action works on now, or none.
  TCustomEdit* Target() const;
  bool Execute() override;
  bool Update() override;
  void Notification(TComponent* component, TOperation operation) override;

protected:
  virtual void ExecuteTarget(TCustomEdit* edit) = 0;
  virtual bool TargetEnabled(TCustomEdit* edit) const = 0;

private:
  TCustomEdit* FControl = nullptr;
};

#define LUMORA_EDIT_ACTION(Name)                                  \
  class Name : public TEditAction {                               \
    LUMORA_CLASS(Name, TEditAction)                               \
  public:                                                         \
    explicit Name(TComponent* owner) : TEditAction(owner) {}      \
                                                                  \
  protected:                                                      \
    void ExecuteTarget(TCustomEdit* edit) override;               \
    bool TargetEnabled(TCustomEdit* edit) const override;         \
  };

LUMORA_EDIT_ACTION(TEditCut)
LUMORA_EDIT_ACTION(TEditCopy)
LUMORA_EDIT_ACTION(TEditPaste)
LUMORA_EDIT_ACTION(TEditSelectAll)
LUMORA_EDIT_ACTION(TEditUndo)
LUMORA_EDIT_ACTION(TEditDelete)
#undef LUMORA_EDIT_ACTION

// Arranges the windows a form holds. This program's forms hold no child windows: the
// actions stay disabled unless OnExecute is set.
class TWindowAction : public TAction {
  LUMORA_CLASS(TWindowAction, TAction)
public:
  explicit TWindowAction(TComponent* owner) : TAction(owner) {}
  TForm* Form() const { return FForm; }
  void SetForm(TForm* value);
  bool Update() override;
  void Notification(TComponent* component, TOperation operation) override;

private:
  TForm* FForm = nullptr;
};

#define LUMORA_WINDOW_ACTION(Name)                                \
  class Name : public TWindowAction {                             \
    LUMORA_CLASS(Name, TWindowAction)                             \
  public:                                                         \
    explicit Name(TComponent* owner) : TWindowAction(owner) {}    \
  };

LUMORA_WINDOW_ACTION(TWindowClose)
LUMORA_WINDOW_ACTION(TWindowCascade)
LUMORA_WINDOW_ACTION(TWindowTileHorizontal)
LUMORA_WINDOW_ACTION(TWindowTileVertical)
LUMORA_WINDOW_ACTION(TWindowMinimizeAll)
LUMORA_WINDOW_ACTION(TWindowArrange)
#undef LUMORA_WINDOW_ACTION

// Opens the program's help file; enabled when the program has one.
class THelpAction : public TAction {
  LUMORA_CLASS(THelpAction, TAction)
public:
  explicit THelpAction(TComponent* owner) : TAction(owner) {}
  bool Update() override;
};

#define LUMORA_HELP_ACTION(Name)                                  \
  class Name : public THelpAction {                               \
    LUMORA_CLASS(Name, THelpAction)                               \
  public:                                                         \
    explicit Name(TComponent* owner) : THelpAction(owner) {}      \
  };

LUMORA_HELP_ACTION(THelpContents)
LUMORA_HELP_ACTION(THelpTopicSearch)
LUMORA_HELP_ACTION(THelpOnHelp)
#undef LUMORA_HELP_ACTION
