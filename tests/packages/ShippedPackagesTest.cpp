// The packages Lumora ships, loaded through the loader as the program loads them: with no
// package loaded a form's controls are unknown; the standard package makes them known
// and takes them away again when unloaded, also while a form built from them is open.
#include "liveform/F_PackCfg.h"
#include "liveform/PackConfig.h"

#include "foundation/ApEvent.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/foundation/TempDir.h"

#include <QApplication>
#include <QListWidget>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

namespace {

std::string Shipped(const std::string& name) { return std::string(LUMORA_SHIPPED_PACKAGES) + "/" + name + ".so"; }

constexpr const char* kButtonForm =
    "object Form1: TForm1\n"
    "  Left = 0\n  Top = 0\n  Width = 200\n  Height = 120\n"
    "  object Button1: TButton\n    Left = 8\n    Top = 8\n    Width = 75\n    Height = 25\n    Caption = 'OK'\n  end\n"
    "  object Button2: TButton\n    Left = 8\n    Top = 40\n    Width = 75\n    Height = 25\n    Caption = 'Cancel'\n  end\n"
    "end\n";

constexpr const char* kDataForm =
    "object Form1: TForm1\n"
    "  Left = 0\n  Top = 0\n  Width = 300\n  Height = 200\n"
    "  object DBGrid1: TDBGrid\n    Left = 8\n    Top = 8\n    Width = 200\n    Height = 100\n  end\n"
    "  object QRLabel1: TQRLabel\n    Left = 8\n    Top = 120\n    Width = 60\n    Height = 17\n"
    "    Caption = 'Total'\n  end\n"
    "end\n";

struct ShippedPackagesTest : ::testing::Test {
  lumora::test::TTempDir Dir;
  static void SetUpTestSuite() { Application->Initialize(); }
  void SetUp() override {
    FinalizePackConfig();
    SetPackagesIniFile(Dir / "lumora.ini");
    SetUserQuestionHook([](const TUserQuestion& q) {
      ADD_FAILURE() << "unexpected question: " << q.Text;
      return mrOk;
    });
  }
  void TearDown() override {
    FinalizePackConfig();
    SetPackagesIniFile("");
    SetUserQuestionHook({});
    FinalizeApEvent();
  }
};

}  // namespace

TEST_F(ShippedPackagesTest, AFormReadsItsControlsOnlyWhileTheStandardPackageIsLoaded) {
  ASSERT_EQ(GetClass("TButton"), nullptr);
  auto* form = new TForm(Application);
  TFormLoadResult result = LoadFormFile(form, kButtonForm);
  EXPECT_TRUE(result.Read);
  // Two buttons, one report.
  EXPECT_EQ(result.Errors, std::vector<std::string>{"Class TButton not found"});
  for (const auto& e : result.Errors) DeferError(e);
  ASSERT_NE(DeferredErrors(), nullptr);
  EXPECT_EQ(DeferredErrors()->Count(), 1);
  EXPECT_EQ(form->ComponentCount(), 0);
  delete form;

  const int index = Loader()->Add(Shipped("dclstd"), true);
  ASSERT_TRUE(Loader()->IsLoaded(index));
  EXPECT_EQ(Loader()->Description(index), "Lumora standard components");
  form = new TForm(Application);
  result = LoadFormFile(form, kButtonForm);
  EXPECT_TRUE(result.Errors.empty()) << result.Errors.front();
  ASSERT_EQ(form->ComponentCount(), 2);
  auto* button = dynamic_cast<TButton*>(form->FindComponent("Button2"));
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->Caption(), "Cancel");
  // The class the package registered is the program's own.
  EXPECT_EQ(GetClass("TButton"), TButton::StaticClass());
  delete form;

  Loader()->SetLoaded(index, false);
  EXPECT_EQ(GetClass("TButton"), nullptr);
  form = new TForm(Application);
  result = LoadFormFile(form, kButtonForm);
  EXPECT_EQ(result.Errors, std::vector<std::string>{"Class TButton not found"});
  delete form;
}

TEST_F(ShippedPackagesTest, UnloadingTheStandardPackageTellsWhoeverClosesTheFormsBuiltFromIt) {
  const int index = Loader()->Add(Shipped("dclstd"), true);
  const HMODULE module = GetClass("TButton")->Module();
  QPointer<QWidget> window;
  auto* form = new TForm(Application);
  ASSERT_TRUE(LoadFormFile(form, kButtonForm).Errors.empty());
  form->Show();
  window = form->Widget();
  // What a designer does with the forms it shows.
  const int id = AddModuleUnloadProc([&](HMODULE m) {
    if (!form) return;
    for (int i = 0; i < form->ComponentCount(); ++i) {
      if (form->Components(i)->ClassType()->Module() == m) {
        FreeAndNil(form);
        return;
      }
    }
  });
  Loader()->SetLoaded(index, false);
  RemoveModuleUnloadProc(id);
  EXPECT_EQ(form, nullptr);
  EXPECT_TRUE(window.isNull());
  EXPECT_NE(module, 0u);
  EXPECT_EQ(GetClass("TButton"), nullptr);
}

TEST_F(ShippedPackagesTest, AFormLeftOpenKeepsWorkingAfterThePackageGoes) {
  // The controls live in the platform's libraries: unloading the package takes their
  // names out of the registry, not their code.
  const int index = Loader()->Add(Shipped("dclstd"), true);
  auto* form = new TForm(Application);
  ASSERT_TRUE(LoadFormFile(form, kButtonForm).Errors.empty());
  form->Show();
  Loader()->SetLoaded(index, false);
  auto* button = dynamic_cast<TButton*>(form->FindComponent("Button1"));
  ASSERT_NE(button, nullptr);
  button->SetCaption("Still here");
  EXPECT_FALSE(RenderForm(form).isNull());
  delete form;
}

TEST_F(ShippedPackagesTest, AtFirstUseOnlyTheStandardPackageIsLoadedAndTheDialogOffersTheDataAndReportPackages) {
  // No INI file yet: the list the build ships is read.
  Loader()->SetKnownPackagesFile(LUMORA_KNOWN_PACKAGES);
  Loader()->SetRootDir(LUMORA_BUILD_ROOT);
  EnsurePackagesLoaded();
  ASSERT_EQ(Loader()->Count(), 3);
  EXPECT_NE(GetClass("TButton"), nullptr);
  EXPECT_EQ(GetClass("TDBGrid"), nullptr);
  EXPECT_EQ(GetClass("TQRLabel"), nullptr);
  auto* form = new TForm(Application);
  TFormLoadResult result = LoadFormFile(form, kDataForm);
  EXPECT_EQ(result.Errors, (std::vector<std::string>{"Class TDBGrid not found", "Class TQRLabel not found"}));
  delete form;

  auto* dialog = new TFrm_PackCfg(Application);
  dialog->Show();
  QApplication::setActiveWindow(dialog->Widget());
  QApplication::processEvents();  // the list is filled once the window shows
  auto shown = [dialog] {
    std::vector<std::string> out;
    TStrings* items = dialog->CheckListBox->Items();
    for (int i = 0; i < items->Count(); ++i)
      out.push_back((dialog->CheckListBox->Checked(i) ? "[x] " : "[ ] ") + items->Strings(i));
    return out;
  };
  EXPECT_EQ(shown(), (std::vector<std::string>{"[ ] Data Access and Data Controls", "[x] Lumora standard components",
                                               "[ ] Report Components"}));

  // The user ticks the report package with the keyboard: the data package it requires
  // comes along.
  auto* list = qobject_cast<QListWidget*>(dialog->CheckListBox->Widget());
  ASSERT_NE(list, nullptr);
  const int row = dialog->CheckListBox->Items()->IndexOf("Report Components");
  ASSERT_GE(row, 0);
  list->setFocus();
  list->setCurrentRow(row);
  QTest::keyClick(list, Qt::Key_Space);
  QApplication::processEvents();
  EXPECT_EQ(shown(), (std::vector<std::string>{"[x] Data Access and Data Controls", "[x] Lumora standard components",
                                               "[x] Report Components"}));
  delete dialog;

  form = new TForm(Application);
  result = LoadFormFile(form, kDataForm);
  EXPECT_TRUE(result.Errors.empty()) << result.Errors.front();
  EXPECT_NE(form->FindComponent("DBGrid1"), nullptr);
  EXPECT_NE(form->FindComponent("QRLabel1"), nullptr);
  delete form;
}
