// The classes of the controls layer are all known by name once registered, so that
// form streams can name them.
#include "platform/vcl/VclClasses.h"

#include "platform/rtti/Classes.h"
#include "platform/vcl/Forms.h"

#include <gtest/gtest.h>

namespace {

TEST(VclClasses, EveryControlOfTheStandardPackageIsKnownByName) {
  RegisterVclClasses();
  for (const char* name :
       {"TForm", "TFrame", "TScrollBox", "TMainMenu", "TPopupMenu", "TMenuItem", "TLabel", "TEdit", "TMemo",
        "TButton", "TCheckBox", "TRadioButton", "TListBox", "TComboBox", "TGroupBox", "TScrollBar", "TStaticText",
        "TPanel", "TBevel", "TImage", "TShape", "TPaintBox", "TSplitter", "TRadioGroup", "TTimer", "TBitBtn",
        "TSpeedButton", "TImageList", "TActionList", "TAction", "TOpenDialog", "TSaveDialog", "TFontDialog",
        "TFindDialog", "TReplaceDialog", "TPageControl", "TTabSheet", "TTabControl", "TStatusBar", "TTreeView",
        "TListView", "TRichEdit", "TToolBar", "TToolButton", "TProgressBar", "TTrackBar", "TUpDown", "THotKey",
        "THeaderControl", "TDateTimePicker", "TMonthCalendar", "TAnimate", "TCoolBar", "TCheckListBox",
        "TStringGrid", "TDrawGrid", "TFont", "TPicture", "TBitmap"}) {
    EXPECT_NE(GetClass(name), nullptr) << name;
  }
  EXPECT_EQ(GetClass("TNoSuchControl"), nullptr);
}

}  // namespace
