#include "foundation/FrmAbout.h"

#include "foundation/joIniFile.h"
#include "foundation/joLayout.h"
#include "foundation/joOpenURL.h"
#include "foundation/joVerInfo.h"
#include "resources/ResStrings.h"

#include <QGuiApplication>
#include <QIcon>

LUMORA_CLASS_IMPL(TAboutBox) {
  c.Field("Panel1", &TAboutBox::Panel1);
  c.Field("ProgramIcon", &TAboutBox::ProgramIcon);
  c.Field("ProgramName", &TAboutBox::ProgramName);
  c.Field("Label1", &TAboutBox::Label1);
  c.Field("lblVersion", &TAboutBox::lblVersion);
  c.Field("lblMaker", &TAboutBox::lblMaker);
  c.Field("Label10", &TAboutBox::Label10);
  c.Field("Label11", &TAboutBox::Label11);
  c.Field("OKButton", &TAboutBox::OKButton);
  c.Method<&TAboutBox::FormCreate>("FormCreate");
  c.Method<&TAboutBox::Label11Click>("Label11Click");
  c.Method<&TAboutBox::OKButtonClick>("OKButtonClick");
  c.Method<&TAboutBox::URLClick>("URLClick");
}

TAboutBox::TAboutBox(TComponent* AOwner) : TInformationForm(AOwner, TDerived{}) {
  ReadLayouts(this);
  DoCreate();
}

void TAboutBox::FormCreate(TObject*) {
  TjoVersionInfo info(joModuleFileName());
  SetCaption(Caption() + " \"" + Application->Title() + "\"");
  const QIcon icon = QGuiApplication::windowIcon();
  if (!icon.isNull()) ProgramIcon->Picture()->Icon()->SetImage(icon.pixmap(32, 32).toImage());
  const std::string product = info.ProductName();
  ProgramName->SetCaption(product.empty() ? Application->Title() : product);
  const std::string version = info.FileVersion();
  if (!version.empty()) lblVersion->SetCaption(version);
  // The maker's line and the address are the deployer's, recorded with the version.
  lblMaker->SetCaption(info.GetString("CompanyName", lblMaker->Caption()));
  Label11->SetCaption(info.GetString("Feedback", Label11->Caption()));
  Label11->SetLeft(Label10->Left() + Label10->Width());
}

void TAboutBox::Label11Click(TObject*) {
  MailTo(Label11->Caption());
}

void TAboutBox::OKButtonClick(TObject*) {
  Close();
}

void TAboutBox::URLClick(TObject*) {}

TAboutBox* ShowAbout() {
  auto* box = new TAboutBox(Application);
  box->ShowInfo();
  return box;
}
