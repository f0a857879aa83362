#pragma once
// The older lookup list and combo box, kept for forms of the first versions.

#include "packages/dcldb/DBCtrls.h"

LUMORA_ENUM(TDBLookupListOption, loColLines, loRowLines, loTitles)
LUMORA_SET(TDBLookupListOptions, TDBLookupListOption)

// The old combo box's styles have the names of the standard combo box's first and third.
enum class TDBLookupComboStyle : std::uint8_t {};
const TTypeInfo* TypeInfoOf(TDBLookupComboStyle*);

class TDBLookupList : public TDBLookupControl {
  LUMORA_CLASS(TDBLookupList, TDBLookupControl)
public:
  explicit TDBLookupList(TComponent* owner);
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  std::string FLookupDisplay;
  std::string FLookupField;
  TDBLookupListOptions FOptions;
  int FrameSize() const override;
  void Paint(QPainter& painter) override { PaintList(painter, FBorderStyle); }
};

class TDBLookupCombo : public TDBLookupControl {
  LUMORA_CLASS(TDBLookupCombo, TDBLookupControl)
public:
  explicit TDBLookupCombo(TComponent* owner);
  int FDropDownCount = 8;
  int FDropDownWidth = 0;
  std::string FLookupDisplay;
  std::string FLookupField;
  TDBLookupListOptions FOptions;
  TDBLookupComboStyle FStyle{};
  TNotifyEvent OnChange;
  TNotifyEvent OnDropDown;
  void Paint(QPainter& painter) override { PaintCombo(painter); }
};
