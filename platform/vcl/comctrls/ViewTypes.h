#pragma once
// What tree views and list views share: how they sort, and the state of an item that
// the program draws itself.

#include "platform/rtti/Classes.h"

LUMORA_ENUM(TSortType, stNone, stData, stText, stBoth)
LUMORA_ENUM(TCustomDrawStateItem, cdsSelected, cdsGrayed, cdsDisabled, cdsChecked, cdsFocused, cdsDefault, cdsHot,
            cdsMarked, cdsIndeterminate)
LUMORA_SET(TCustomDrawState, TCustomDrawStateItem)
