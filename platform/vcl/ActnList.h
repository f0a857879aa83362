#pragma once
// Actions and action lists: commands with a caption, shortcut, enabled and checked
// state that menu items and controls take over, run by OnExecute and refreshed by
// OnUpdate when the program is idle.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ShortCuts.h"

#include <string>
#include <vector>

class TCustomActionList;
class TCustomImageList;

LUMORA_EVENT(THintEvent, void(std::string& HintStr, bool& CanShow))
LUMORA_EVENT(TActionEvent, void(TBasicAction* Action, bool& Handled))

class TContainedAction : public TBasicAction {
  LUMORA_CLASS(TContainedAction, TBasicAction)
public:
  explicit TContainedAction(TComponent* owner);
  ~TContainedAction() override;
  TCustomActionList* ActionList() const { return FActionList; }
  void SetActionList(TCustomActionList* value);
  const std::string& Category() const { return FCategory; }
  void SetCategory(const std::string& value) { FCategory = value; }
  int Index() const;
  void SetIndex(int value);
  // Runs the list's OnExecute first, then the action's own.
  bool Execute() override;
  bool Update() override;

  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override;
  void SetParentComponent(TComponent* value) override;

private:
  friend class TCustomActionList;
  TCustomActionList* FActionList = nullptr;
  std::string FCategory;
};

class TCustomAction : public TContainedAction {
  LUMORA_CLASS(TCustomAction, TContainedAction)
public:
  explicit TCustomAction(TComponent* owner);
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& value);
  bool Checked() const { return FChecked; }
  void SetChecked(bool value);
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool value);
  int HelpContext() const { return FHelpContext; }
  void SetHelpContext(int value) { FHelpContext = value; }
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& value);
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  TShortCut ShortCut() const { return FShortCut; }
  void SetShortCut(TShortCut value);
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);
  THintEvent OnHint;

private:
  std::string FCaption;
  bool FChecked = false;
  bool FEnabled = true;
  int FHelpContext = 0;
  std::string FHint;
  int FImageIndex = -1;
  TShortCut FShortCut = scNone;
  bool FVisible = true;
};

class TAction : public TCustomAction {
  LUMORA_CLASS(TAction, TCustomAction)
public:
  explicit TAction(TComponent* owner) : TCustomAction(owner) {}
};

class TCustomActionList : public TComponent {
  LUMORA_CLASS(TCustomActionList, TComponent)
public:
  explicit TCustomActionList(TComponent* owner);
  ~TCustomActionList() override;
  int ActionCount() const { return static_cast<int>(FActions.size()); }
  TContainedAction* Actions(int index) const;
  void AddAction(TContainedAction* action);
  void RemoveAction(TContainedAction* action);
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  // Runs the enabled action whose shortcut this is.
  bool IsShortCut(TShortCut shortCut);
  // Lets every action refresh itself (OnUpdate), as the program does when idle.
  void UpdateActions();

  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Notification(TComponent* component, TOperation operation) override;

  TNotifyEvent OnChange;
  TActionEvent OnExecute;
  TActionEvent OnUpdate;

private:
  friend class TContainedAction;
  std::vector<TContainedAction*> FActions;
  TCustomImageList* FImages = nullptr;
};

class TActionList : public TCustomActionList {
  LUMORA_CLASS(TActionList, TCustomActionList)
public:
  explicit TActionList(TComponent* owner) : TCustomActionList(owner) {}
};

// Every action list that exists, for the idle update.
const std::vector<TCustomActionList*>& AllActionLists();
