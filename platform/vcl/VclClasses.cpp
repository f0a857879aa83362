#include "platform/vcl/VclClasses.h"

#include "platform/vcl/ActnList.h"
#include "platform/vcl/CheckLst.h"
#include "platform/vcl/Buttons.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Grids.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

void RegisterVclClasses() {
  RegisterClasses({TFont::StaticClass(), TBrush::StaticClass(), TPen::StaticClass(), TPicture::StaticClass(),
                   TBitmap::StaticClass(), TIcon::StaticClass(), TJPEGImage::StaticClass(), TMetafile::StaticClass()});
  RegisterControlsClasses();
  RegisterFormsClasses();
  RegisterMenusClasses();
  RegisterStdCtrlsClasses();
  RegisterExtCtrlsClasses();
  RegisterButtonsClasses();
  RegisterImgListClasses();
  RegisterActnListClasses();
  RegisterDialogsClasses();
  RegisterComCtrlsClasses();
  RegisterCheckLstClasses();
  RegisterGridsClasses();
}
