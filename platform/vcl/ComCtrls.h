#pragma once
// The common controls: tab controls and page controls, status bars, tree views, rich
// edits, list views, tool bars, progress bars, track bars, up-down buttons, header
// controls, date-time pickers, animations, hot keys and cool bars. Each publishes what
// its Delphi 4 counterpart publishes, with the same defaults, and streams the data its
// counterpart streams itself (tree nodes and list items as binary Data).
//
// Controls whose look depends on the classic metrics (tabs, status panels, tool bars,
// headers) paint themselves; the others stand on a Qt widget of their kind (tree
// widget, text edit, progress bar, slider, ...).
//
// Each family has its own pair in comctrls/; this header is the one callers include.

#include "platform/vcl/comctrls/TabControls.h"
#include "platform/vcl/comctrls/StatusBars.h"
#include "platform/vcl/comctrls/TreeViews.h"
#include "platform/vcl/comctrls/RichEdits.h"
#include "platform/vcl/comctrls/ListViews.h"
#include "platform/vcl/comctrls/ToolBars.h"
#include "platform/vcl/comctrls/SmallBars.h"
#include "platform/vcl/comctrls/DateTime.h"
#include "platform/vcl/comctrls/Animate.h"

// Registers the classes of this unit.
void RegisterComCtrlsClasses();
