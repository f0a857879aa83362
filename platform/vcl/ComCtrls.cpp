#include "platform/vcl/ComCtrls.h"

void RegisterComCtrlsClasses() {
  RegisterClasses({TTabControl::StaticClass(), TPageControl::StaticClass(), TTabSheet::StaticClass(),
                   TStatusBar::StaticClass(), TTreeView::StaticClass(), TRichEdit::StaticClass(), TListView::StaticClass(),
                   TToolBar::StaticClass(), TToolButton::StaticClass(), TProgressBar::StaticClass(),
                   TTrackBar::StaticClass(), TUpDown::StaticClass(), THotKey::StaticClass(),
                   THeaderControl::StaticClass(), TDateTimePicker::StaticClass(), TMonthCalendar::StaticClass(),
                   TAnimate::StaticClass(), TCoolBar::StaticClass()});
}
