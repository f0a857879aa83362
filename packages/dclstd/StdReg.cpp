// The standard package's unit: the controls of the palette's Standard, Additional, Win32,
// System, Dialogs and Win 3.1 pages, the classes the designer makes without an icon
// (menu items, tab sheets, tool buttons, actions), and the roots a form file may have.
#include "platform/packages/PackageDecl.h"

#include "platform/vcl/ActnList.h"
#include "platform/vcl/Buttons.h"
#include "platform/vcl/CheckLst.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/ControlBar.h"
#include "platform/vcl/DataModule.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/ExtDlgs.h"
#include "platform/vcl/FileCtrl.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Grids.h"
#include "platform/vcl/Header.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/MPlayer.h"
#include "platform/vcl/Mask.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/Notebooks.h"
#include "platform/vcl/Outline.h"
#include "platform/vcl/StdActns.h"
#include "platform/vcl/StdCtrls.h"

LUMORA_UNIT_REGISTER(Stdreg) {
  RegisterComponents("Standard",
                     {TMainMenu::StaticClass(), TPopupMenu::StaticClass(), TLabel::StaticClass(), TEdit::StaticClass(),
                      TMemo::StaticClass(), TButton::StaticClass(), TCheckBox::StaticClass(),
                      TRadioButton::StaticClass(), TListBox::StaticClass(), TComboBox::StaticClass(),
                      TScrollBar::StaticClass(), TGroupBox::StaticClass(), TRadioGroup::StaticClass(),
                      TPanel::StaticClass(), TActionList::StaticClass()});
  RegisterComponents("Additional",
                     {TBitBtn::StaticClass(), TSpeedButton::StaticClass(), TMaskEdit::StaticClass(), TStringGrid::StaticClass(),
                      TDrawGrid::StaticClass(), TImage::StaticClass(), TShape::StaticClass(), TBevel::StaticClass(),
                      TScrollBox::StaticClass(), TCheckListBox::StaticClass(), TSplitter::StaticClass(),
                      TStaticText::StaticClass(), TControlBar::StaticClass()});
  RegisterComponents("Win32",
                     {TTabControl::StaticClass(), TPageControl::StaticClass(), TImageList::StaticClass(),
                      TRichEdit::StaticClass(), TTrackBar::StaticClass(), TProgressBar::StaticClass(),
                      TUpDown::StaticClass(), THotKey::StaticClass(), TAnimate::StaticClass(),
                      TDateTimePicker::StaticClass(), TMonthCalendar::StaticClass(), TTreeView::StaticClass(),
                      TListView::StaticClass(), THeaderControl::StaticClass(), TStatusBar::StaticClass(),
                      TToolBar::StaticClass(), TCoolBar::StaticClass(), TPageScroller::StaticClass()});
  RegisterComponents("System", {TTimer::StaticClass(), TPaintBox::StaticClass(), TMediaPlayer::StaticClass()});
  RegisterComponents("Dialogs",
                     {TOpenDialog::StaticClass(), TSaveDialog::StaticClass(), TOpenPictureDialog::StaticClass(),
                      TSavePictureDialog::StaticClass(), TFontDialog::StaticClass(),
                      TColorDialog::StaticClass(), TPrintDialog::StaticClass(), TPrinterSetupDialog::StaticClass(),
                      TFindDialog::StaticClass(), TReplaceDialog::StaticClass()});
  RegisterComponents("Win 3.1",
                     {TTabSet::StaticClass(), TOutline::StaticClass(), TTabbedNotebook::StaticClass(),
                      TNotebook::StaticClass(), THeader::StaticClass(), TFileListBox::StaticClass(), TDirectoryListBox::StaticClass(),
                      TDriveComboBox::StaticClass(), TFilterComboBox::StaticClass()});
  RegisterNoIcon({TMenuItem::StaticClass(), TTabSheet::StaticClass(), TToolButton::StaticClass(),
                  TAction::StaticClass(), TPage::StaticClass(), TTabPage::StaticClass()});
  // The standard actions an action list may hold.
  RegisterNoIcon({TEditCut::StaticClass(), TEditCopy::StaticClass(), TEditPaste::StaticClass(),
                  TEditSelectAll::StaticClass(), TEditUndo::StaticClass(), TEditDelete::StaticClass(),
                  TWindowClose::StaticClass(), TWindowCascade::StaticClass(), TWindowTileHorizontal::StaticClass(),
                  TWindowTileVertical::StaticClass(), TWindowMinimizeAll::StaticClass(),
                  TWindowArrange::StaticClass(), THelpContents::StaticClass(), THelpTopicSearch::StaticClass(),
                  THelpOnHelp::StaticClass()});
  // Roots a form file may name.
  RegisterNoIcon({TForm::StaticClass(), TDataModule::StaticClass()});
}
