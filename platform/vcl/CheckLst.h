#pragma once
// Check list boxes: list boxes whose items have a check box each (checked, unchecked,
// and grayed when allowed), and may be disabled one by one. The user's click on a
// check box selects the item and raises OnClickCheck; changes made in code raise nothing.

#include "platform/rtti/Classes.h"
#include "platform/vcl/StdCtrls.h"

class TCheckListBox : public TCustomListBox {
  LUMORA_CLASS(TCheckListBox, TCustomListBox)
public:
  explicit TCheckListBox(TComponent* owner);

  bool AllowGrayed() const { return FAllowGrayed; }
  void SetAllowGrayed(bool value);
  bool Flat() const { return FFlat; }
  void SetFlat(bool value);
  // The state of item `index`; EStringListError outside the list.
  TCheckBoxState State(int index) const;
  void SetState(int index, TCheckBoxState value);
  bool Checked(int index) const { return State(index) == cbChecked; }
  void SetChecked(int index, bool value) { SetState(index, value ? cbChecked : cbUnchecked); }
  bool ItemEnabled(int index) const;
  void SetItemEnabled(int index, bool value);

  TNotifyEvent OnClickCheck;

  void CreateWidget() override;

protected:
  // The user changed the check of item `index`.
  virtual void ClickCheck();
  void FillWidget() override;
  // The widget's item shows the item's state again.
  void UpdateItem(int index);

private:
  bool FAllowGrayed = false;
  bool FFlat = true;
};
