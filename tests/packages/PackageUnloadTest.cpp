// The data and report packages loaded and unloaded for real, as the package loader does
// it: their classes come and go with them, and unloading one while a live form uses its
// classes closes that form first (as the designer does) instead of crashing.
#include "liveform/PackLoad.h"
#include "platform/rtti/Registry.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/support/StandardPackage.h"
#include "tests/support/Corpus.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

const std::string kPackages = LUMORA_BUILT_PACKAGES;

// A form with a grid, an edit and a navigator over a table, and a report with a band
// and a label over the same table.
const char* const kLiveForm = R"(object Form1: TForm
  Left = 0
  Top = 0
  Width = 700
  Height = 500
  object DBGrid1: TDBGrid
    Left = 8
    Top = 40
    Width = 300
    Height = 120
    DataSource = DataSource1
    TabOrder = 0
  end
  object DBEdit1: TDBEdit
    Left = 8
    Top = 8
    Width = 121
    Height = 21
    DataField = 'Name'
    DataSource = DataSource1
    TabOrder = 1
  end
  object DBNavigator1: TDBNavigator
    Left = 140
    Top = 8
    Width = 240
    Height = 25
    DataSource = DataSource1
    TabOrder = 2
  end
  object QuickRep1: TQuickRep
    Left = 320
    Top = 8
    Width = 300
    Height = 400
    DataSet = Table1
    object QRBand1: TQRBand
      Left = 10
      Top = 10
      Width = 280
      Height = 40
      BandType = rbDetail
      object QRDBText1: TQRDBText
        Left = 4
        Top = 4
        Width = 80
        Height = 17
        DataSet = Table1
        DataField = 'Name'
      end
    end
  end
  object Table1: TTable
    TableName = 'people.db'
    Left = 8
    Top = 200
    object Table1Name: TStringField
      FieldName = 'Name'
    end
  end
  object DataSource1: TDataSource
    DataSet = Table1
    Left = 40
    Top = 200
  end
end
)";

class PackageUnloadTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Application->Initialize();
    lumora::test::LoadStandardPackage();
  }
  void SetUp() override {
    loader = new TjoPackageLoader();
    // As the designer does: a package about to go closes the forms built from its classes.
    unloadProc = AddModuleUnloadProc([this](HMODULE module) {
      for (TForm*& form : forms) {
        if (!form) continue;
        bool uses = false;
        for (int i = 0; i < form->ComponentCount() && !uses; ++i) uses = form->Components(i)->ClassType()->Module() == module;
        if (uses) {
          FreeAndNil(form);
          ++closed;
        }
      }
    });
  }
  void TearDown() override {
    RemoveModuleUnloadProc(unloadProc);
    for (TForm* form : forms) delete form;
    delete loader;
  }
  // A live form read from kLiveForm, its errors in `errors`; its index in `forms`.
  std::size_t Open(std::vector<std::string>* errors = nullptr) {
    auto* form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, kLiveForm);
    EXPECT_TRUE(result.Read);
    if (errors) *errors = result.Errors;
    form->Show();
    QApplication::processEvents();
    forms.push_back(form);
    return forms.size() - 1;
  }
  int AddPackage(const char* name) { return loader->Add(kPackages + "/" + name, true); }

  TjoPackageLoader* loader = nullptr;
  int unloadProc = 0;
  std::vector<TForm*> forms;
  int closed = 0;
};

TEST_F(PackageUnloadTest, LoadedPackagesBuildTheWholeForm) {
  const int db = AddPackage("dcldb.so");
  const int qr = AddPackage("dclqrt.so");
  ASSERT_TRUE(loader->IsLoaded(db));
  ASSERT_TRUE(loader->IsLoaded(qr));
  EXPECT_EQ(loader->Description(db), "Data Access and Data Controls");
  EXPECT_EQ(loader->Description(qr), "Report Components");
  std::vector<std::string> errors;
  TForm* form = forms[Open(&errors)];
  EXPECT_TRUE(errors.empty()) << errors.front();
  EXPECT_NE(form->FindComponent("QRDBText1"), nullptr);
  EXPECT_NE(form->FindComponent("Table1Name"), nullptr);
  EXPECT_NE(GetClass("TStringField"), nullptr);
}

TEST_F(PackageUnloadTest, UnloadingTheReportPackageClosesTheFormThatUsesIt) {
  const int db = AddPackage("dcldb.so");
  const int qr = AddPackage("dclqrt.so");
  const std::size_t form = Open();
  loader->SetLoaded(qr, false);
  EXPECT_EQ(forms[form], nullptr);
  EXPECT_EQ(closed, 1);
  EXPECT_EQ(GetClass("TQRLabel"), nullptr);
  EXPECT_NE(GetClass("TDBGrid"), nullptr);
  EXPECT_TRUE(loader->IsLoaded(db));
  // Without the report package the report is not built; the rest is.
  std::vector<std::string> errors;
  TForm* again = forms[Open(&errors)];
  EXPECT_NE(std::find(errors.begin(), errors.end(), "Class TQuickRep not found"), errors.end());
  EXPECT_EQ(again->FindComponent("QuickRep1"), nullptr);
  EXPECT_NE(again->FindComponent("DBGrid1"), nullptr);
}

TEST_F(PackageUnloadTest, UnloadingTheDataPackageTakesTheReportPackageAlongAndTheFormsWithThem) {
  const int db = AddPackage("dcldb.so");
  const int qr = AddPackage("dclqrt.so");
  const std::size_t first = Open();
  const std::size_t second = Open();
  loader->SetLoaded(db, false);
  EXPECT_FALSE(loader->IsLoaded(qr));
  EXPECT_FALSE(loader->IsLoaded(db));
  EXPECT_EQ(forms[first], nullptr);
  EXPECT_EQ(forms[second], nullptr);
  EXPECT_EQ(GetClass("TDBGrid"), nullptr);
  EXPECT_EQ(GetClass("TQuickRep"), nullptr);
  std::vector<std::string> errors;
  TForm* bare = forms[Open(&errors)];
  EXPECT_NE(std::find(errors.begin(), errors.end(), "Class TDBGrid not found"), errors.end());
  EXPECT_EQ(bare->ComponentCount(), 0);
  FreeAndNil(forms.back());
  // Loaded again, they build the form again.
  loader->SetLoaded(db, true);
  loader->SetLoaded(qr, true);
  TForm* whole = forms[Open(&errors)];
  EXPECT_TRUE(errors.empty()) << errors.front();
  EXPECT_NE(whole->FindComponent("QRBand1"), nullptr);
}

}  // namespace

TEST_F(PackageUnloadTest, AFormNobodyClosesKeepsWorkingAfterThePackagesGo) {
  // A program that shows forms without a designer closes nothing when a package goes.
  RemoveModuleUnloadProc(unloadProc);
  unloadProc = 0;
  const int db = AddPackage("dcldb.so");
  AddPackage("dclqrt.so");
  TForm* form = forms[Open()];
  loader->SetLoaded(db, false);
  EXPECT_EQ(closed, 0);
  EXPECT_EQ(GetClass("TDBGrid"), nullptr);
  // Drawn and read again while the classes' names are gone: the components stay what they were.
  EXPECT_FALSE(RenderForm(form).isNull());
  ASSERT_NE(form->FindComponent("DBNavigator1"), nullptr);
  EXPECT_EQ(form->FindComponent("DBNavigator1")->ClassName(), "TDBNavigator");
  QApplication::processEvents();
  FreeAndNil(forms.back());
}
