#pragma once
// The event types every layer shares: notify, keys, mouse, closing. Each is a typed
// method pointer (Methods.h) with type information, so it can be published.

#include "platform/rtti/SystemTypes.h"
#include "platform/rtti/TypInfo.h"

LUMORA_ENUM(TShiftStateItem, ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble)
LUMORA_SET(TShiftState, TShiftStateItem)
LUMORA_ENUM(TMouseButton, mbLeft, mbRight, mbMiddle)
LUMORA_ENUM(TCloseAction, caNone, caHide, caFree, caMinimize)

// TNotifyEvent (Sender) is declared with TObject in TypInfo.h.
LUMORA_EVENT(TKeyEvent, void(TObject* Sender, Word& Key, TShiftState Shift))
LUMORA_EVENT(TKeyPressEvent, void(TObject* Sender, char& Key))
LUMORA_EVENT(TMouseEvent, void(TObject* Sender, TMouseButton Button, TShiftState Shift, int X, int Y))
LUMORA_EVENT(TMouseMoveEvent, void(TObject* Sender, TShiftState Shift, int X, int Y))
LUMORA_EVENT(TCloseEvent, void(TObject* Sender, TCloseAction& Action))
LUMORA_EVENT(TCloseQueryEvent, void(TObject* Sender, bool& CanClose))
LUMORA_EVENT(TGetStrProc, void(const std::string& S))
