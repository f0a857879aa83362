// The packages Lumora ships, loaded through the loader as the program loads them: with no
// package loaded a form's controls are unknown; the standard package makes them known
// and takes them away again when unloaded, also while a form built from them is open.
#include "liveform/F_PackCfg.h"
#include "liveform/PackConfig.h"

#include "foundation/ApEvent.h"
#include "platform/vcl/DataModule.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Gauges.h"
#include "platform/vcl/Mask.h"
#include "platform/vcl/Notebooks.h"
#include "platform/vcl/Spin.h"
#include "platform/vcl/StdActns.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
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
  ASSERT_EQ(Loader()->Count(), 4);
  EXPECT_NE(GetClass("TButton"), nullptr);
  EXPECT_EQ(GetClass("TSpinEdit"), nullptr);
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
  EXPECT_EQ(shown(), (std::vector<std::string>{"[ ] Data Access and Data Controls", "[ ] Lumora sample components",
                                               "[x] Lumora standard components", "[ ] Report Components"}));

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
  EXPECT_EQ(shown(), (std::vector<std::string>{"[x] Data Access and Data Controls", "[ ] Lumora sample components",
                                               "[x] Lumora standard components", "[x] Report Components"}));
  delete dialog;

  form = new TForm(Application);
  result = LoadFormFile(form, kDataForm);
  EXPECT_TRUE(result.Errors.empty()) << result.Errors.front();
  EXPECT_NE(form->FindComponent("DBGrid1"), nullptr);
  EXPECT_NE(form->FindComponent("QRLabel1"), nullptr);
  delete form;
}

TEST_F(ShippedPackagesTest, TheStandardPackageBuildsTheOlderAndRarerControlsRealFormsUse) {
  constexpr const char* kForm =
      "object Form1: TForm1\n"
      "  Width = 400\n  Height = 300\n"
      "  object MaskEdit1: TMaskEdit\n    Left = 8\n    Top = 8\n    Width = 80\n    Height = 21\n"
      "    EditMask = '!99/99/0000;1;_'\n    MaxLength = 10\n    TabOrder = 0\n    Text = '01/02/1999'\n  end\n"
      "  object Notebook1: TNotebook\n    Left = 8\n    Top = 40\n    Width = 100\n    Height = 60\n"
      "    object TPage\n      Left = 0\n      Top = 0\n      Caption = 'First'\n"
      "      object Label1: TLabel\n        Left = 2\n        Top = 2\n        Width = 20\n        Height = 13\n"
      "        Caption = 'One'\n      end\n    end\n"
      "    object TPage\n      Left = 0\n      Top = 0\n      Caption = 'Second'\n    end\n  end\n"
      "  object TabbedNotebook1: TTabbedNotebook\n    Left = 120\n    Top = 40\n    Width = 200\n    Height = 100\n"
      "    TabFont.Charset = DEFAULT_CHARSET\n    TabFont.Color = clBtnText\n    TabFont.Height = -11\n"
      "    TabFont.Name = 'MS Sans Serif'\n    TabFont.Style = []\n    TabOrder = 1\n"
      "    object TTabPage\n      Left = 4\n      Top = 24\n      Caption = 'Visual'\n    end\n"
      "    object TTabPage\n      Left = 4\n      Top = 24\n      Caption = 'Data'\n    end\n  end\n"
      "  object TabSet1: TTabSet\n    Left = 8\n    Top = 150\n    Width = 200\n    Height = 21\n"
      "    Tabs.Strings = (\n      'A'\n      'B')\n    TabIndex = 1\n  end\n"
      "  object Header1: THeader\n    Left = 8\n    Top = 180\n    Width = 200\n    Height = 20\n"
      "    Sections.Sections = (\n      #0'48'#0'Name'\n      #0'64'#0'Size')\n  end\n"
      "  object FileListBox1: TFileListBox\n    Left = 220\n    Top = 150\n    Width = 80\n    Height = 40\n"
      "    ItemHeight = 13\n    Mask = '*.dfm'\n    TabOrder = 2\n  end\n"
      "  object DirectoryListBox1: TDirectoryListBox\n    Left = 300\n    Top = 150\n    Width = 80\n    Height = 40\n"
      "    ItemHeight = 16\n    TabOrder = 3\n  end\n"
      "  object DriveComboBox1: TDriveComboBox\n    Left = 220\n    Top = 200\n    Width = 80\n    Height = 19\n"
      "    TabOrder = 4\n  end\n"
      "  object FilterComboBox1: TFilterComboBox\n    Left = 300\n    Top = 200\n    Width = 80\n    Height = 21\n"
      "    Filter = 'All files (*.*)|*.*'\n    TabOrder = 5\n  end\n"
      "  object ControlBar1: TControlBar\n    Left = 8\n    Top = 210\n    Width = 200\n    Height = 30\n"
      "    TabOrder = 6\n  end\n"
      "  object PageScroller1: TPageScroller\n    Left = 8\n    Top = 245\n    Width = 100\n    Height = 20\n"
      "    TabOrder = 7\n  end\n"
      "  object MediaPlayer1: TMediaPlayer\n    Left = 120\n    Top = 245\n    Width = 253\n    Height = 30\n"
      "    TabOrder = 8\n  end\n"
      "  object OpenPictureDialog1: TOpenPictureDialog\n    Left = 8\n    Top = 8\n  end\n"
      "  object SavePictureDialog1: TSavePictureDialog\n    Left = 40\n    Top = 8\n  end\n"
      "  object ColorDialog1: TColorDialog\n    Ctl3D = True\n    Left = 72\n    Top = 8\n  end\n"
      "  object PrintDialog1: TPrintDialog\n    Left = 104\n    Top = 8\n  end\n"
      "  object PrinterSetupDialog1: TPrinterSetupDialog\n    Left = 136\n    Top = 8\n  end\n"
      "  object ActionList1: TActionList\n    Left = 168\n    Top = 8\n"
      "    object EditCut1: TEditCut\n      Category = 'Edit'\n      Caption = 'Cu&t'\n      ShortCut = 16472\n    end\n"
      "    object EditCopy1: TEditCopy\n      Category = 'Edit'\n      Caption = '&Copy'\n    end\n"
      "    object EditPaste1: TEditPaste\n      Category = 'Edit'\n      Caption = '&Paste'\n    end\n"
      "    object EditSelectAll1: TEditSelectAll\n      Category = 'Edit'\n    end\n"
      "    object EditUndo1: TEditUndo\n      Category = 'Edit'\n    end\n"
      "    object EditDelete1: TEditDelete\n      Category = 'Edit'\n    end\n"
      "    object WindowClose1: TWindowClose\n      Category = 'Window'\n    end\n"
      "    object WindowCascade1: TWindowCascade\n      Category = 'Window'\n    end\n"
      "    object WindowTileHorizontal1: TWindowTileHorizontal\n      Category = 'Window'\n    end\n"
      "    object WindowTileVertical1: TWindowTileVertical\n      Category = 'Window'\n    end\n"
      "    object WindowMinimizeAll1: TWindowMinimizeAll\n      Category = 'Window'\n    end\n"
      "    object WindowArrange1: TWindowArrange\n      Category = 'Window'\n    end\n"
      "    object HelpContents1: THelpContents\n      Category = 'Help'\n    end\n"
      "    object HelpTopicSearch1: THelpTopicSearch\n      Category = 'Help'\n    end\n"
      "    object HelpOnHelp1: THelpOnHelp\n      Category = 'Help'\n    end\n"
      "  end\n"
      "end\n";
  Loader()->Add(Shipped("dclstd"), true);
  auto* form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, kForm);
  EXPECT_TRUE(result.Errors.empty()) << result.Errors.front();
  auto* mask = dynamic_cast<TMaskEdit*>(form->FindComponent("MaskEdit1"));
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(mask->EditText(), "01/02/1999");
  auto* notebook = dynamic_cast<TNotebook*>(form->FindComponent("Notebook1"));
  ASSERT_NE(notebook, nullptr);
  ASSERT_EQ(notebook->PageCount(), 2);
  EXPECT_EQ(notebook->PageAt(1)->Caption(), "Second");
  // The label on the first page belongs to the form.
  ASSERT_NE(form->FindComponent("Label1"), nullptr);
  EXPECT_EQ(dynamic_cast<TControl*>(form->FindComponent("Label1"))->Parent(), notebook->PageAt(0));
  EXPECT_NE(dynamic_cast<TEditCut*>(form->FindComponent("EditCut1")), nullptr);
  EXPECT_NE(dynamic_cast<THelpOnHelp*>(form->FindComponent("HelpOnHelp1")), nullptr);
  form->Show();
  EXPECT_FALSE(RenderForm(form).isNull());
  delete form;
}

TEST_F(ShippedPackagesTest, ADataModuleIsARootTheStandardPackageKnows) {
  Loader()->Add(Shipped("dclstd"), true);
  TClass cls = GetClass("TDataModule");
  ASSERT_NE(cls, nullptr);
  EXPECT_EQ(cls, TDataModule::StaticClass());
}

TEST_F(ShippedPackagesTest, EveryControlOfTheStandardPackageIsKnownByNameWhileItIsLoaded) {
  const std::vector<std::string> names = {
      "TForm", "TScrollBox", "TMainMenu", "TPopupMenu", "TMenuItem", "TLabel", "TEdit", "TMemo", "TButton",
      "TCheckBox", "TRadioButton", "TListBox", "TComboBox", "TGroupBox", "TScrollBar", "TStaticText", "TPanel",
      "TBevel", "TImage", "TShape", "TPaintBox", "TSplitter", "TRadioGroup", "TTimer", "TBitBtn", "TSpeedButton",
      "TImageList", "TActionList", "TAction", "TOpenDialog", "TSaveDialog", "TFontDialog", "TFindDialog",
      "TReplaceDialog", "TPageControl", "TTabSheet", "TTabControl", "TStatusBar", "TTreeView", "TListView",
      "TRichEdit", "TToolBar", "TToolButton", "TProgressBar", "TTrackBar", "TUpDown", "THotKey", "THeaderControl",
      "TDateTimePicker", "TMonthCalendar", "TAnimate", "TCoolBar", "TCheckListBox", "TStringGrid", "TDrawGrid",
      "TMaskEdit", "TNotebook", "TPage", "TTabbedNotebook", "TTabPage", "TTabSet", "THeader", "TFileListBox",
      "TDirectoryListBox", "TDriveComboBox", "TFilterComboBox", "TControlBar", "TPageScroller", "TMediaPlayer",
      "TColorDialog", "TOpenPictureDialog", "TSavePictureDialog", "TPrintDialog", "TPrinterSetupDialog",
      "TDataModule", "TEditCut", "TEditCopy", "TEditPaste", "TEditSelectAll", "TEditUndo", "TEditDelete",
      "TWindowClose", "TWindowCascade", "TWindowTileHorizontal", "TWindowTileVertical", "TWindowMinimizeAll",
      "TWindowArrange", "THelpContents", "THelpTopicSearch", "THelpOnHelp", "TOutline"};
  for (const auto& name : names) EXPECT_EQ(GetClass(name), nullptr) << name;
  const int index = Loader()->Add(Shipped("dclstd"), true);
  for (const auto& name : names) EXPECT_NE(GetClass(name), nullptr) << name;
  EXPECT_EQ(GetClass("TNoSuchControl"), nullptr);
  Loader()->SetLoaded(index, false);
  for (const auto& name : names) EXPECT_EQ(GetClass(name), nullptr) << name;
}

TEST_F(ShippedPackagesTest, TheSamplesPackageBuildsSpinEditsAndGaugesThatWork) {
  constexpr const char* kForm =
      "object Form1: TForm1\n"
      "  Width = 300\n  Height = 200\n"
      "  object SE_FrameRate: TSpinEdit\n    Left = 8\n    Top = 8\n    Width = 60\n    Height = 22\n"
      "    MaxValue = 30\n    MinValue = 1\n    TabOrder = 0\n    Value = 29\n  end\n"
      "  object SpinButton1: TSpinButton\n    Left = 80\n    Top = 8\n    Width = 20\n    Height = 25\n"
      "    FocusControl = SE_FrameRate\n    TabOrder = 1\n  end\n"
      "  object Gauge1: TGauge\n    Left = 8\n    Top = 40\n    Width = 200\n    Height = 20\n"
      "    ForeColor = 33023\n    Progress = 25\n  end\n"
      "end\n";
  auto* form = new TForm(Application);
  EXPECT_EQ(LoadFormFile(form, kForm).Errors,
            (std::vector<std::string>{"Class TSpinEdit not found", "Class TSpinButton not found", "Class TGauge not found"}));
  delete form;

  const int index = Loader()->Add(Shipped("dclsmp"), true);
  ASSERT_TRUE(Loader()->IsLoaded(index));
  EXPECT_EQ(Loader()->Description(index), "Lumora sample components");
  for (const char* name : {"TSpinEdit", "TSpinButton", "TGauge", "TColorGrid", "TCalendar", "TDirectoryOutline"})
    EXPECT_NE(GetClass(name), nullptr) << name;
  form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, kForm);
  EXPECT_TRUE(result.Errors.empty()) << result.Errors.front();
  auto* spin = dynamic_cast<TSpinEdit*>(form->FindComponent("SE_FrameRate"));
  ASSERT_NE(spin, nullptr);
  EXPECT_EQ(spin->Value(), 29);
  form->Show();
  auto* line = qobject_cast<QLineEdit*>(spin->Widget());
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->text(), "29");
  // The up key steps the number; it stops at MaxValue.
  line->setFocus();
  QTest::keyClick(line, Qt::Key_Up);
  EXPECT_EQ(line->text(), "30");
  QTest::keyClick(line, Qt::Key_Up);
  EXPECT_EQ(line->text(), "30");
  // The lower of the buttons inside the edit steps it down.
  auto* buttons = line->findChild<QWidget*>("SpinButtons");
  ASSERT_NE(buttons, nullptr);
  EXPECT_EQ(buttons->geometry().right(), line->width() - 4);
  QTest::mouseClick(buttons, Qt::LeftButton, {}, QPoint(buttons->width() / 2, buttons->height() - 3));
  EXPECT_EQ(line->text(), "29");
  // Letters are not typed into it.
  QTest::keyClicks(line, "x");
  EXPECT_EQ(line->text(), "29");

  auto* gauge = dynamic_cast<TGauge*>(form->FindComponent("Gauge1"));
  ASSERT_NE(gauge, nullptr);
  EXPECT_EQ(gauge->PercentDone(), 25);
  EXPECT_FALSE(RenderForm(form).isNull());
  QImage image(gauge->Width(), gauge->Height(), QImage::Format_RGB32);
  {
    QPainter painter(&image);
    gauge->Paint(painter);
  }
  // A black frame, the first quarter in the fore colour ($0080FF: red 255, green 128),
  // the rest in white.
  EXPECT_EQ(image.pixelColor(0, 0), QColor(0, 0, 0));
  EXPECT_EQ(image.pixelColor(10, 10), QColor(255, 128, 0));
  EXPECT_EQ(image.pixelColor(60, 10), QColor(255, 255, 255));
  delete form;
  Loader()->SetLoaded(index, false);
  EXPECT_EQ(GetClass("TSpinEdit"), nullptr);
}
