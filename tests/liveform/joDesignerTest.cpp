// The designer and its host form, driven through the live window: making the window from
// the document, the two modes, the key guard, closing and releasing, click to select, the
// system menu with the designer's items, and several live forms at once.
#include "liveform/joDesigner.h"

#include "foundation/ApEvent.h"
#include "platform/vcl/Keys.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/StdCtrls.h"
#include "textedit/DFM_ResEdit.h"
#include "tests/liveform/LiveFormTestUtil.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace livetest;

namespace {

const char* kSample =
    "object Form1: TForm1\r\n"
    "  Left = 100\r\n"
    "  Top = 80\r\n"
    "  Width = 320\r\n"
    "  Height = 240\r\n"
    "  Caption = 'Live sample'\r\n"
    "  object Button1: TButton\r\n"
    "    Left = 8\r\n"
    "    Top = 8\r\n"
    "    Width = 75\r\n"
    "    Height = 25\r\n"
    "    Caption = 'Press'\r\n"
    "    TabOrder = 0\r\n"
    "    OnClick = Button1Click\r\n"
    "  end\r\n"
    "  object Edit1: TEdit\r\n"
    "    Left = 8\r\n"
    "    Top = 40\r\n"
    "    Width = 121\r\n"
    "    Height = 21\r\n"
    "    TabOrder = 1\r\n"
    "  end\r\n"
    "  object Panel1: TPanel\r\n"
    "    Left = 8\r\n"
    "    Top = 72\r\n"
    "    Width = 185\r\n"
    "    Height = 41\r\n"
    "    Caption = 'Panel'\r\n"
    "    TabOrder = 2\r\n"
    "    object CheckBox1: TCheckBox\r\n"
    "      Left = 8\r\n"
    "      Top = 12\r\n"
    "      Width = 97\r\n"
    "      Height = 17\r\n"
    "      Caption = 'Check'\r\n"
    "      TabOrder = 0\r\n"
    "    end\r\n"
    "  end\r\n"
    "  object Label1: TLabel\r\n"
    "    Left = 200\r\n"
    "    Top = 8\r\n"
    "    Width = 60\r\n"
    "    Height = 13\r\n"
    "    Caption = 'Disabled'\r\n"
    "    Enabled = False\r\n"
    "  end\r\n"
    "end\r\n";

class DesignerTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    UseTheControls();
    FinalizeApEvent();
    designer = std::make_unique<TjoDesigner>();
    LoadText(*designer, kSample);
  }
  void TearDown() override {
    CloseMenus();
    designer.reset();
    second.reset();
    Settle();
    FinalizeApEvent();
  }

  // Shows the live form, activates it and lets the key guard pass.
  TfixFormFFF* ShowActive(TjoDesigner& d) {
    d.Show();
    Activate(d.HostForm());
    clock.Now += 300;
    return d.HostForm();
  }
  template <class T>
  T* Find(TjoDesigner& d, const char* name) {
    return dynamic_cast<T*>(d.HostForm()->FindComponent(name));
  }
  int CountClicks(TjoDesigner& d, const char* name) {
    auto* c = Find<TControl>(d, name);
    c->OnClick = [this](TObject*) { ++clicks; };
    return 0;
  }
  // A left click in the middle of a control, as the user makes it.
  void ClickOn(TControl* c) {
    QTest::mouseClick(c->Widget(), Qt::LeftButton, {}, c->Widget()->rect().center());
    Settle();
  }
  std::string SelectedNode(TjoDesigner& d) {
    TTreeNode* n = d.Inspector() ? d.Inspector()->CompTree->Selected() : nullptr;
    return n ? n->Text() : std::string();
  }

  TManualClock clock;
  std::unique_ptr<TjoDesigner> designer;
  std::unique_ptr<TjoDesigner> second;
  int clicks = 0;
};

}  // namespace

TEST_F(DesignerTest, TheLiveFormIsMadeOnFirstShowFromTheDocument) {
  EXPECT_EQ(designer->HostForm(), nullptr);
  EXPECT_TRUE(designer->NeedsReload);
  EXPECT_EQ(designer->Mode(), jdmLiveForm);
  designer->Show();
  TfixFormFFF* form = designer->HostForm();
  ASSERT_NE(form, nullptr);
  EXPECT_FALSE(designer->NeedsReload);
  EXPECT_EQ(form->Owner(), static_cast<TComponent*>(Application));
  EXPECT_EQ(form->LiveDesigner(), designer.get());
  EXPECT_EQ(form->Name(), "Form1");
  EXPECT_EQ(form->Caption(), "Live sample");
  EXPECT_TRUE(form->Visible());
  EXPECT_TRUE(form->Widget()->isVisible());
  // The window is the whole form: its own frame, with the caption bar drawn.
  EXPECT_TRUE(form->ClassicFrame());
  EXPECT_TRUE(form->Widget()->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_EQ(form->Widget()->size(), QSize(320, 240));
  EXPECT_EQ(form->ClientWidget()->geometry(), QRect(4, 23, 312, 213));
  ASSERT_NE(ClassicFrameOf(form), nullptr);
  EXPECT_EQ(form->Widget()->findChild<QPushButton*>("Button1")->text(), "Press");
  // Event bindings of the stream are dropped: the live form has no handlers.
  EXPECT_FALSE(Find<TButton>(*designer, "Button1")->OnClick);
  EXPECT_EQ(form->FormStyle(), fsNormal);
}

TEST_F(DesignerTest, ReadingErrorsAreDeferredAndTheFormKeepsWhatWasRead) {
  LoadText(*designer,
           "object Form1: TForm1\r\n"
           "  object Button1: TButton\r\n"
           "    Caption = 'Kept'\r\n"
           "    NoSuchProperty = 5\r\n"
           "  end\r\n"
           "  object Gadget1: TNoSuchGadget\r\n"
           "  end\r\n"
           "  object Edit1: TEdit\r\n"
           "  end\r\n"
           "end\r\n");
  designer->Show();
  TfixFormFFF* form = designer->HostForm();
  ASSERT_NE(Find<TButton>(*designer, "Button1"), nullptr);
  EXPECT_EQ(Find<TButton>(*designer, "Button1")->Caption(), "Kept");
  EXPECT_NE(Find<TEdit>(*designer, "Edit1"), nullptr);
  EXPECT_EQ(form->FindComponent("Gadget1"), nullptr);
  ASSERT_NE(DeferredErrors(), nullptr);
  const std::string errors = DeferredErrors()->Text();
  EXPECT_NE(errors.find("Class TNoSuchGadget not found"), std::string::npos) << errors;
  EXPECT_NE(errors.find("NoSuchProperty"), std::string::npos) << errors;
}

TEST_F(DesignerTest, EscWithin300MsOfActivationDoesNothing) {
  TfixFormFFF* form = designer->Form();
  designer->Show();
  clock.Now = 5000;
  Activate(form);
  EXPECT_EQ(form->KeyGuardUntil, 5300u);
  int gone = 0;
  designer->OnLiveFormGone = [&](TjoDesigner* d) {
    EXPECT_EQ(d, designer.get());
    ++gone;
  };
  clock.Now = 5299;
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_Escape);
  Settle();
  ASSERT_EQ(designer->HostForm(), form);
  EXPECT_EQ(gone, 0);
  // The key that came during the guard did not reach the form either.
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_A);
  EXPECT_EQ(Find<TEdit>(*designer, "Edit1")->Text(), "");
  clock.Now = 5300;
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_B);
  EXPECT_EQ(Find<TEdit>(*designer, "Edit1")->Text(), "b");
  EXPECT_EQ(form->KeyGuardUntil, 0u);
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(designer->HostForm(), nullptr);
  EXPECT_EQ(gone, 1);
}

TEST_F(DesignerTest, DeactivationGuardsKeysUntilTheFormIsActivatedAgain) {
  TfixFormFFF* form = ShowActive(*designer);
  auto* other = new TForm(Application);
  other->Show();
  clock.Now = 10000;
  Activate(other);
  EXPECT_EQ(form->KeyGuardUntil, 10000u + 500000u);
  clock.Now = 20000;
  Activate(form);
  EXPECT_EQ(form->KeyGuardUntil, 20300u);
  delete other;
}

TEST_F(DesignerTest, DeadFormStopsButtonsAndEditsThatLiveFormLetsWork) {
  ShowActive(*designer);
  CountClicks(*designer, "Button1");
  auto* button = Find<TButton>(*designer, "Button1");
  auto* edit = Find<TEdit>(*designer, "Edit1");
  auto* check = Find<TCheckBox>(*designer, "CheckBox1");
  ClickOn(button);
  EXPECT_EQ(clicks, 1);
  QTest::keyClicks(edit->Widget(), "ab");
  EXPECT_EQ(edit->Text(), "ab");
  button->Widget()->setFocus();
  QTest::keyClick(button->Widget(), Qt::Key_Space);
  EXPECT_EQ(clicks, 2);

  designer->SetMode(jdmDeadForm);
  EXPECT_EQ(designer->HostForm()->Designer(), designer.get());
  EXPECT_TRUE(button->Designing());
  ClickOn(button);
  ClickOn(check);
  EXPECT_EQ(clicks, 2);
  EXPECT_FALSE(check->Checked());
  edit->Widget()->setFocus();
  QTest::keyClicks(edit->Widget(), "cd");
  EXPECT_EQ(edit->Text(), "ab");
  QTest::keyClick(button->Widget(), Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  QTest::mouseDClick(edit->Widget(), Qt::LeftButton, {}, edit->Widget()->rect().center());
  EXPECT_FALSE(static_cast<QLineEdit*>(edit->Widget())->hasSelectedText());

  designer->SetMode(jdmLiveForm);
  EXPECT_EQ(designer->HostForm()->Designer(), nullptr);
  EXPECT_FALSE(button->Designing());
  ClickOn(button);
  EXPECT_EQ(clicks, 3);
  ClickOn(check);
  EXPECT_TRUE(check->Checked());
  edit->Widget()->setFocus();
  // (Entering the edit selected its text, as AutoSelect does.)
  QTest::keyClick(edit->Widget(), Qt::Key_End);
  QTest::keyClicks(edit->Widget(), "e");
  EXPECT_EQ(edit->Text(), "abe");
}

TEST_F(DesignerTest, DeadFormStillAnswersTheDesignersKeys) {
  TfixFormFFF* form = ShowActive(*designer);
  designer->SetMode(jdmDeadForm);
  auto* edit = Find<TEdit>(*designer, "Edit1");
  int shown = 0;
  designer->OnShowText = [&](TjoDesigner*) { ++shown; };
  QTest::keyClick(edit->Widget(), Qt::Key_F12);
  EXPECT_EQ(shown, 1);
  QTest::keyClick(edit->Widget(), Qt::Key_F11);
  ASSERT_NE(designer->Inspector(), nullptr);
  EXPECT_TRUE(designer->Inspector()->Visible());
  Activate(form);
  clock.Now += 300;
  QTest::keyClick(edit->Widget(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(designer->HostForm(), nullptr);
}

TEST_F(DesignerTest, WithTheInspectorShowingAClickSelectsAndASecondWithin200MsReachesTheControl) {
  TfixFormFFF* form = ShowActive(*designer);
  CountClicks(*designer, "Button1");
  designer->ShowInspector();
  Activate(form);
  ASSERT_TRUE(TjoDesigner::ClickWatchInstalled());
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
  auto* button = Find<TButton>(*designer, "Button1");
  clock.Now += 1000;
  ClickOn(button);
  EXPECT_EQ(SelectedNode(*designer), "Button1: TButton");
  EXPECT_EQ(clicks, 0);
  clock.Now += 199;
  ClickOn(button);
  EXPECT_EQ(clicks, 1);
  // Once the time has passed, the next click selects again, a control in a panel too.
  clock.Now += 1;
  ClickOn(Find<TCheckBox>(*designer, "CheckBox1"));
  EXPECT_EQ(SelectedNode(*designer), "CheckBox1: TCheckBox");
  EXPECT_FALSE(Find<TCheckBox>(*designer, "CheckBox1")->Checked());
  // Disabled controls are found as well; the form's own background selects the form.
  clock.Now += 200;
  ClickOn(Find<TLabel>(*designer, "Label1"));
  EXPECT_EQ(SelectedNode(*designer), "Label1: TLabel");
  clock.Now += 200;
  QTest::mouseClick(form->ClientWidget(), Qt::LeftButton, {}, QPoint(300, 200));
  Settle();
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
  // Right clicks are not looked at.
  clock.Now += 200;
  QTest::mouseClick(button->Widget(), Qt::RightButton, {}, button->Widget()->rect().center());
  Settle();
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
}

TEST_F(DesignerTest, ClickToSelectWorksInDeadFormToo) {
  TfixFormFFF* form = ShowActive(*designer);
  designer->ShowInspector();
  Activate(form);
  designer->SetMode(jdmDeadForm);
  clock.Now += 1000;
  ClickOn(Find<TEdit>(*designer, "Edit1"));
  EXPECT_EQ(SelectedNode(*designer), "Edit1: TEdit");
}

TEST_F(DesignerTest, WithoutAVisibleInspectorClicksReachTheControls) {
  TfixFormFFF* form = ShowActive(*designer);
  CountClicks(*designer, "Button1");
  designer->ShowInspector();
  Activate(form);
  designer->Inspector()->Close();
  EXPECT_FALSE(designer->Inspector()->Visible());
  clock.Now += 1000;
  ClickOn(Find<TButton>(*designer, "Button1"));
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
}

TEST_F(DesignerTest, TheTitleBarsCloseHidesTheFormAndEscFreesIt) {
  TfixFormFFF* form = ShowActive(*designer);
  TClassicFrame* frame = ClassicFrameOf(form);
  ASSERT_NE(frame, nullptr);
  QTest::mouseClick(frame, Qt::LeftButton, {}, frame->Layout().CloseButton.center());
  Settle();
  ASSERT_EQ(designer->HostForm(), form);
  EXPECT_FALSE(form->Visible());
  EXPECT_FALSE(form->Widget()->isVisible());
  // Shown again, it is the same window.
  designer->Show();
  EXPECT_EQ(designer->HostForm(), form);
  EXPECT_TRUE(form->Widget()->isVisible());
  Activate(form);
  clock.Now += 300;
  QTest::keyClick(form->Widget(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(designer->HostForm(), nullptr);
}

TEST_F(DesignerTest, ACloseRequestReleasesTheForm) {
  TfixFormFFF* form = ShowActive(*designer);
  form->Widget()->close();
  Settle();
  EXPECT_EQ(designer->HostForm(), nullptr);
}

TEST_F(DesignerTest, LosingTheHostFormDetachesItAndTheNextShowMakesANewOne) {
  ShowActive(*designer);
  designer->ShowInspector();
  std::vector<TCustomForm*> seen;
  designer->OnLiveFormGone = [&](TjoDesigner* d) { seen.push_back(d->HostForm()); };
  designer->SetMode(jdmDeadForm);
  delete designer->HostForm();
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0], nullptr);
  EXPECT_EQ(designer->HostForm(), nullptr);
  EXPECT_FALSE(designer->Inspector()->Visible());
  designer->Show();
  ASSERT_NE(designer->HostForm(), nullptr);
  EXPECT_NE(designer->HostForm()->FindComponent("Button1"), nullptr);
  // The mode stays; the new form takes it.
  EXPECT_EQ(designer->Mode(), jdmDeadForm);
  EXPECT_TRUE(Find<TButton>(*designer, "Button1")->Designing());
}

TEST_F(DesignerTest, AChangedDocumentIsReadAgainIntoTheShownForm) {
  ShowActive(*designer);
  designer->ShowInspector();
  LoadText(*designer,
           "object Form1: TForm1\r\n"
           "  Caption = 'Changed'\r\n"
           "  object Memo1: TMemo\r\n"
           "  end\r\n"
           "end\r\n");
  EXPECT_FALSE(designer->NeedsReload);
  EXPECT_EQ(designer->HostForm()->Caption(), "Changed");
  EXPECT_EQ(designer->HostForm()->FindComponent("Button1"), nullptr);
  EXPECT_NE(designer->HostForm()->FindComponent("Memo1"), nullptr);
  EXPECT_NE(designer->Inspector()->CompTree->Items()->GetFirstNode()->GetFirstChild(), nullptr);
  EXPECT_EQ(designer->Inspector()->CompTree->Items()->GetFirstNode()->GetFirstChild()->Text(), "Memo1: TMemo");
  // A hidden form waits for its next showing.
  designer->HostForm()->Hide();
  LoadText(*designer, kSample);
  EXPECT_TRUE(designer->NeedsReload);
  EXPECT_EQ(designer->HostForm()->Caption(), "Changed");
  designer->Show();
  EXPECT_EQ(designer->HostForm()->Caption(), "Live sample");
}

TEST_F(DesignerTest, TwoLiveFormsSwapTheirInspectors) {
  second = std::make_unique<TjoDesigner>();
  LoadText(*second,
           "object Other: TForm\r\n"
           "  Left = 450\r\n"
           "  object Edit9: TEdit\r\n"
           "  end\r\n"
           "end\r\n");
  TfixFormFFF* first = ShowActive(*designer);
  designer->ShowInspector();
  Activate(first);
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), designer.get());
  TfixFormFFF* other = ShowActive(*second);
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), second.get());
  // The first form's inspector went; the second has none yet.
  EXPECT_FALSE(designer->Inspector()->Visible());
  EXPECT_TRUE(designer->InspectorWanted);
  EXPECT_EQ(second->Inspector(), nullptr);
  second->ShowInspector();
  Activate(other);
  EXPECT_TRUE(second->Inspector()->Visible());
  Activate(first);
  EXPECT_TRUE(designer->Inspector()->Visible());
  EXPECT_FALSE(second->Inspector()->Visible());
  // The inspector came back without taking the activation from its form.
  EXPECT_TRUE(first->Active());
  Activate(other);
  EXPECT_FALSE(designer->Inspector()->Visible());
  EXPECT_TRUE(second->Inspector()->Visible());
  // A click on a control of the other form activates it and selects there.
  clock.Now += 1000;
  ClickOn(Find<TButton>(*designer, "Button1"));
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), designer.get());
  EXPECT_TRUE(designer->Inspector()->Visible());
  EXPECT_EQ(SelectedNode(*designer), "Button1: TButton");
}

TEST_F(DesignerTest, TheDesignersAreListedAndFreeWhatTheyOwn) {
  const int before = TjoDesigner::DesignerCount();
  second = std::make_unique<TjoDesigner>();
  EXPECT_EQ(TjoDesigner::DesignerCount(), before + 1);
  EXPECT_EQ(TjoDesigner::Designers(before), second.get());
  LoadText(*second, kSample);
  ShowActive(*second);
  second->ShowInspector();
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), second.get());
  QPointer<QWidget> window = second->HostForm()->Widget();
  QPointer<QWidget> inspector = second->Inspector()->Widget();
  int destroyed = 0;
  second->OnDestroy = [&](TObject*) { ++destroyed; };
  second.reset();
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(TjoDesigner::DesignerCount(), before);
  EXPECT_EQ(TjoDesigner::ActiveDesigner(), nullptr);
  EXPECT_TRUE(window.isNull());
  EXPECT_TRUE(inspector.isNull());
}

TEST_F(DesignerTest, ADesignerThatDoesNotOwnItsFormLeavesIt) {
  designer->Show();
  TfixFormFFF* form = designer->HostForm();
  designer->OwnsForm = false;
  designer.reset();
  EXPECT_EQ(form->LiveDesigner(), nullptr);
  EXPECT_EQ(form->Designer(), nullptr);
  delete form;
}

TEST_F(DesignerTest, TheMessageHookSeesMessagesFirstAndSelectionIsTakenInEveryMode) {
  TfixFormFFF* form = ShowActive(*designer);
  designer->ShowInspector();
  std::vector<std::uint32_t> seen;
  designer->OnMessage = [&](TjoDesigner* d, TCustomForm* f, bool& handled, TMessage& m) {
    EXPECT_EQ(d, designer.get());
    EXPECT_EQ(f, form);
    seen.push_back(m.Msg);
    handled = m.Msg == WM_USER + 1;
  };
  for (std::uint8_t mode : {jdmLiveForm, jdmDeadForm, jdmDesignForm}) {
    designer->SetMode(mode);
    TComponent* edit = form->FindComponent("Edit1");
    PostMessage(form, WM_JO_SELECTCOMPONENT, 0, reinterpret_cast<LPARAM>(edit));
    Settle();
    EXPECT_EQ(SelectedNode(*designer), "Edit1: TEdit") << int(mode);
    designer->Inspector()->SelectComponent("Form1", "");
  }
  EXPECT_NE(std::find(seen.begin(), seen.end(), WM_JO_SELECTCOMPONENT), seen.end());
  // A message the owner takes goes no further.
  seen.clear();
  form->Perform(WM_USER + 1);
  EXPECT_EQ(seen, std::vector<std::uint32_t>{WM_USER + 1});
  // A selection posted for a component that has gone meanwhile changes nothing.
  designer->SetMode(jdmLiveForm);
  TComponent* button = form->FindComponent("Button1");
  PostMessage(form, WM_JO_SELECTCOMPONENT, 0, reinterpret_cast<LPARAM>(button));
  delete button;
  Settle();
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
}

TEST_F(DesignerTest, TheSecondDesignModeBlocksNothingInTheFilter) {
  TfixFormFFF* form = ShowActive(*designer);
  form->Perform(WM_SYSCOMMAND, SC_JO_DESIGNFORM);
  EXPECT_EQ(designer->Mode(), jdmDesignForm);
  EXPECT_TRUE(Find<TButton>(*designer, "Button1")->Designing());
  TMessage key;
  key.Msg = WM_KEYDOWN;
  key.WParam = 'A';
  EXPECT_FALSE(designer->IsDesignMsg(Find<TButton>(*designer, "Button1"), key));
  TMessage mouse;
  mouse.Msg = WM_LBUTTONDOWN;
  EXPECT_FALSE(designer->IsDesignMsg(Find<TButton>(*designer, "Button1"), mouse));
  designer->SetMode(jdmDeadForm);
  EXPECT_TRUE(designer->IsDesignMsg(Find<TButton>(*designer, "Button1"), key));
  EXPECT_TRUE(designer->IsDesignMsg(Find<TButton>(*designer, "Button1"), mouse));
}

// ---- The system menu

TEST_F(DesignerTest, TheSystemMenuOpensFromTheIconFromAltSpaceAndFromTheCaption) {
  TfixFormFFF* form = ShowActive(*designer);
  QMenu* menu = OpenSystemMenuFromIcon(form);
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(MenuTexts(menu), (std::vector<std::string>{"&Restore", "&Move", "&Size", "Mi&nimize", "Ma&ximize", "-",
                                                       "&Close\tAlt+F4", "-", "Live Form", "Dead Form", "-",
                                                       "View As Text\tF12", "Show Object Inspector\tF11"}));
  // Below the icon, at the caption's bottom edge.
  TClassicFrame* frame = ClassicFrameOf(form);
  EXPECT_EQ(menu->pos(), frame->mapToGlobal(QPoint(frame->Layout().Icon.left(), frame->Layout().Bar.bottom() + 1)));
  EXPECT_TRUE(MenuAction(menu, SC_CLOSE)->font().bold());
  CloseMenus();

  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_Space, Qt::AltModifier);
  ASSERT_NE(ShownSystemMenu(), nullptr);
  CloseMenus();
  // Alt+Space in Dead Form too: the frame is the window's, not the form's.
  designer->SetMode(jdmDeadForm);
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_Space, Qt::AltModifier);
  ASSERT_NE(ShownSystemMenu(), nullptr);
  CloseMenus();

  const QPoint onCaption(frame->Layout().Text.center());
  QTest::mouseClick(frame, Qt::RightButton, {}, onCaption);
  menu = ShownSystemMenu();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->pos(), frame->mapToGlobal(onCaption));
}

TEST_F(DesignerTest, TheRadioMarkFollowsTheMode) {
  TfixFormFFF* form = ShowActive(*designer);
  QMenu* menu = OpenSystemMenuFromIcon(form);
  ASSERT_NE(menu, nullptr);
  EXPECT_TRUE(MenuAction(menu, SC_JO_LIVEFORM)->isChecked());
  EXPECT_FALSE(MenuAction(menu, SC_JO_DEADFORM)->isChecked());
  EXPECT_TRUE(MenuAction(menu, SC_JO_LIVEFORM)->actionGroup() && MenuAction(menu, SC_JO_LIVEFORM)->actionGroup()->isExclusive());
  ChooseFromMenu(menu, SC_JO_DEADFORM);
  EXPECT_EQ(designer->Mode(), jdmDeadForm);
  EXPECT_TRUE(Find<TButton>(*designer, "Button1")->Designing());
  menu = OpenSystemMenuFromIcon(form);
  ASSERT_NE(menu, nullptr);
  EXPECT_FALSE(MenuAction(menu, SC_JO_LIVEFORM)->isChecked());
  EXPECT_TRUE(MenuAction(menu, SC_JO_DEADFORM)->isChecked());
  ChooseFromMenu(menu, SC_JO_LIVEFORM);
  EXPECT_EQ(designer->Mode(), jdmLiveForm);
  EXPECT_FALSE(Find<TButton>(*designer, "Button1")->Designing());
  // The second design mode is marked by a command the menu does not hold: neither item.
  form->Perform(WM_SYSCOMMAND, SC_JO_DESIGNFORM);
  menu = OpenSystemMenuFromIcon(form);
  ASSERT_NE(menu, nullptr);
  EXPECT_FALSE(MenuAction(menu, SC_JO_LIVEFORM)->isChecked());
  EXPECT_FALSE(MenuAction(menu, SC_JO_DEADFORM)->isChecked());
  EXPECT_EQ(GetSystemMenu(form)->RadioChecked(SC_JO_LIVEFORM, SC_JO_DEADFORM), 0u);
}

TEST_F(DesignerTest, TheDesignersItemsDoWhatTheySay) {
  TfixFormFFF* form = ShowActive(*designer);
  int textShown = 0;
  designer->OnShowText = [&](TjoDesigner*) { ++textShown; };
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_JO_VIEWASTEXT);
  EXPECT_EQ(textShown, 1);
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_JO_SHOWINSPECTOR);
  ASSERT_NE(designer->Inspector(), nullptr);
  EXPECT_TRUE(designer->Inspector()->Visible());
  EXPECT_TRUE(designer->InspectorWanted);
  EXPECT_EQ(SelectedNode(*designer), "Form1: TForm1");
  // "Close" hides, as the title bar's button does.
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_CLOSE);
  EXPECT_EQ(designer->HostForm(), form);
  EXPECT_FALSE(form->Visible());
}

TEST_F(DesignerTest, TheWindowCommandsMinimizeMaximizeAndRestore) {
  TfixFormFFF* form = ShowActive(*designer);
  QMenu* menu = OpenSystemMenuFromIcon(form);
  EXPECT_FALSE(MenuAction(menu, SC_RESTORE)->isEnabled());
  EXPECT_TRUE(MenuAction(menu, SC_MAXIMIZE)->isEnabled());
  EXPECT_TRUE(MenuAction(menu, SC_SIZE)->isEnabled());
  ChooseFromMenu(menu, SC_MAXIMIZE);
  EXPECT_EQ(form->WindowState(), wsMaximized);
  EXPECT_TRUE(form->Widget()->isMaximized());
  menu = OpenSystemMenuFromIcon(form);
  EXPECT_TRUE(MenuAction(menu, SC_RESTORE)->isEnabled());
  EXPECT_FALSE(MenuAction(menu, SC_MAXIMIZE)->isEnabled());
  EXPECT_FALSE(MenuAction(menu, SC_MOVE)->isEnabled());
  EXPECT_FALSE(MenuAction(menu, SC_SIZE)->isEnabled());
  ChooseFromMenu(menu, SC_RESTORE);
  EXPECT_EQ(form->WindowState(), wsNormal);
  EXPECT_FALSE(form->Widget()->isMaximized());
  EXPECT_EQ(form->Widget()->size(), QSize(320, 240));
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_MINIMIZE);
  EXPECT_EQ(form->WindowState(), wsMinimized);
  EXPECT_TRUE(form->Widget()->isMinimized());
  // Showing the live form again restores it.
  designer->Show();
  EXPECT_EQ(form->WindowState(), wsNormal);
  EXPECT_FALSE(form->Widget()->isMinimized());
}

TEST_F(DesignerTest, MoveAndSizeFromTheMenuFollowTheKeys) {
  TfixFormFFF* form = ShowActive(*designer);
  const QPoint start = form->Widget()->pos();
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_MOVE);
  QWidget* grabber = QWidget::keyboardGrabber();
  ASSERT_NE(grabber, nullptr);
  QTest::keyClick(grabber, Qt::Key_Right);
  QTest::keyClick(grabber, Qt::Key_Down);
  QTest::keyClick(grabber, Qt::Key_Return);
  EXPECT_EQ(form->Widget()->pos(), start + QPoint(8, 8));
  EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_SIZE);
  grabber = QWidget::keyboardGrabber();
  ASSERT_NE(grabber, nullptr);
  QTest::keyClick(grabber, Qt::Key_Right);
  QTest::keyClick(grabber, Qt::Key_Return);
  Settle();
  EXPECT_EQ(form->Widget()->size(), QSize(328, 240));
  EXPECT_EQ(form->Width(), 328);
  // Esc puts the window back where it was.
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_MOVE);
  grabber = QWidget::keyboardGrabber();
  ASSERT_NE(grabber, nullptr);
  QTest::keyClick(grabber, Qt::Key_Left);
  QTest::keyClick(grabber, Qt::Key_Escape);
  EXPECT_EQ(form->Widget()->pos(), start + QPoint(8, 8));
  // The Esc of the move did not reach the form.
  Settle();
  EXPECT_EQ(designer->HostForm(), form);
}

TEST_F(DesignerTest, ADoubleClickOnTheCaptionMaximisesAndRestores) {
  TfixFormFFF* form = ShowActive(*designer);
  TClassicFrame* frame = ClassicFrameOf(form);
  QTest::mouseDClick(frame, Qt::LeftButton, {}, frame->Layout().Text.center());
  Settle();
  EXPECT_EQ(form->WindowState(), wsMaximized);
  QTest::mouseDClick(frame, Qt::LeftButton, {}, frame->Layout().Text.center());
  Settle();
  EXPECT_EQ(form->WindowState(), wsNormal);
  EXPECT_EQ(form->Widget()->size(), QSize(320, 240));
}

TEST_F(DesignerTest, ChangingTheShortcutsRewritesTheMenuTextOfEveryLiveForm) {
  second = std::make_unique<TjoDesigner>();
  LoadText(*second, kSample);
  TfixFormFFF* first = ShowActive(*designer);
  TfixFormFFF* other = ShowActive(*second);
  const TShortCut oldText = TjoDesigner::ViewTextShortCut();
  const TShortCut oldInspector = TjoDesigner::ShowInspectorShortCut();
  TjoDesigner::SetViewTextShortCut(TextToShortCut("Ctrl+T"));
  TjoDesigner::SetShowInspectorShortCut(TextToShortCut("Shift+F11"));
  for (TfixFormFFF* f : {first, other}) {
    QMenu* menu = OpenSystemMenuFromIcon(f);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(MenuAction(menu, SC_JO_VIEWASTEXT)->text().toStdString(), "View As Text\tCtrl+T");
    EXPECT_EQ(MenuAction(menu, SC_JO_SHOWINSPECTOR)->text().toStdString(), "Show Object Inspector\tShift+F11");
    CloseMenus();
  }
  // The keys themselves changed with their texts.
  int shown = 0;
  second->OnShowText = [&](TjoDesigner*) { ++shown; };
  Activate(other);
  clock.Now += 300;
  QTest::keyClick(Find<TEdit>(*second, "Edit1")->Widget(), Qt::Key_F12);
  EXPECT_EQ(shown, 0);
  QTest::keyClick(Find<TEdit>(*second, "Edit1")->Widget(), Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(shown, 1);
  // An item whose text has no tab gets no shortcut text.
  GetSystemMenu(first)->SetItemText(SC_JO_VIEWASTEXT, "View As Text");
  TjoDesigner::SetViewTextShortCut(oldText);
  EXPECT_EQ(GetSystemMenu(first)->ItemText(SC_JO_VIEWASTEXT), "View As Text");
  EXPECT_EQ(GetSystemMenu(other)->ItemText(SC_JO_VIEWASTEXT), "View As Text\tF12");
  TjoDesigner::SetShowInspectorShortCut(oldInspector);
  // A live form made later shows the keys of its time.
  EXPECT_EQ(GetSystemMenu(other)->ItemText(SC_JO_SHOWINSPECTOR), "Show Object Inspector\tF11");
}

// ---- The text view

namespace {

class DesignerTextTest : public DesignerTest {
protected:
  void SetUp() override {
    DesignerTest::SetUp();
    window = new TForm(Application);
    window->SetBounds(0, 0, 500, 400);
    editor = new TjoDFM_ResourceEditor(window);
    editor->SetName("Editor");
    editor->SetParent(window);
    editor->SetAlign(alClient);
    editor->SetReadOnly(false);
    editor->SetStatusBarVisible(true);
  }
  void TearDown() override {
    DesignerTest::TearDown();
    delete window;
  }
  // The line of the editor's text that starts with `start` (blanks skipped).
  int LineOf(const std::string& start) {
    TStrings* lines = editor->RichEdit()->Lines();
    for (int i = 0; i < lines->Count(); ++i) {
      if (Trim(lines->Strings(i)).rfind(start, 0) == 0) return i;
    }
    return -1;
  }
  // Changes a line as the user would: the text becomes modified.
  void Edit(const std::string& start, const std::string& line) {
    const int i = LineOf(start);
    ASSERT_GE(i, 0) << start;
    editor->RichEdit()->Lines()->SetStrings(i, line);
    ASSERT_TRUE(editor->Modified());
  }

  TForm* window = nullptr;
  TjoDFM_ResourceEditor* editor = nullptr;
};

}  // namespace

TEST_F(DesignerTextTest, ViewAsTextLoadsTheAttachedEditorOnceAndBringsItForward) {
  designer->Caption = "sample.dfm";
  designer->SetTextEditor(editor);
  TfixFormFFF* form = ShowActive(*designer);
  QTest::keyClick(Find<TEdit>(*designer, "Edit1")->Widget(), Qt::Key_F12);
  EXPECT_EQ(editor->RichEdit()->Lines()->Strings(0), "object Form1: TForm1");
  EXPECT_EQ(editor->SourceStream(), std::string(designer->Document()->Data()));
  EXPECT_FALSE(editor->Modified());
  ASSERT_NE(editor->StatusBar(), nullptr);
  ASSERT_EQ(editor->StatusBar()->Panels()->Count(), 4);
  EXPECT_EQ(editor->StatusBar()->Panels()->Items(3)->Text(), "sample.dfm");
  EXPECT_TRUE(window->Visible());
  // Loaded once: what the user typed since stays.
  Edit("Caption = 'Live sample'", "  Caption = 'Typed'");
  ChooseFromMenu(OpenSystemMenuFromIcon(form), SC_JO_VIEWASTEXT);
  EXPECT_GE(LineOf("Caption = 'Typed'"), 0);
  // Without an editor, the owner is asked to make one.
  int asked = 0;
  designer->OnShowText = [&](TjoDesigner* d) {
    ++asked;
    d->SetTextEditor(editor);
  };
  designer->SetTextEditor(nullptr);
  designer->ShowText();
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(designer->TextEditor(), editor);
}

TEST_F(DesignerTextTest, AttachingAnEditorFillsItWithTheDocumentsText) {
  designer->Caption = "sample.dfm";
  designer->SetTextEditor(editor);
  EXPECT_EQ(editor->RichEdit()->Lines()->Strings(0), "object Form1: TForm1");
  EXPECT_GE(LineOf("Caption = 'Live sample'"), 0);
  EXPECT_FALSE(editor->Modified());
  EXPECT_EQ(editor->StatusBar()->Panels()->Items(3)->Text(), "sample.dfm");
  // The owner's View As Text attaches a cleared editor: F12 shows it filled.
  designer->SetTextEditor(nullptr);
  editor->Clear();
  designer->OnShowText = [&](TjoDesigner* d) {
    editor->Clear();
    d->SetTextEditor(editor);
  };
  TfixFormFFF* form = ShowActive(*designer);
  QTest::keyClick(form->Widget(), Qt::Key_F12);
  EXPECT_EQ(editor->RichEdit()->Lines()->Strings(0), "object Form1: TForm1");
  EXPECT_TRUE(window->Visible());
}

TEST_F(DesignerTextTest, ModifiedTextThatDoesNotCompileShowsNothing) {
  designer->SetTextEditor(editor);
  designer->ShowText();
  Edit("Caption = 'Live sample'", "  Caption = 'never closed");
  EXPECT_THROW(designer->Show(), EParserError);
  EXPECT_EQ(designer->HostForm(), nullptr);
  EXPECT_TRUE(editor->Modified());
  // A live form already shown stays as it was.
  Edit("Caption = 'never closed", "  Caption = 'Live sample'");
  designer->Show();
  TfixFormFFF* form = designer->HostForm();
  ASSERT_NE(form, nullptr);
  form->Hide();
  Edit("Caption = 'Live sample'", "  Caption = 'again never closed");
  EXPECT_THROW(designer->Show(), EParserError);
  EXPECT_FALSE(form->Visible());
  EXPECT_EQ(form->Caption(), "Live sample");
}

TEST_F(DesignerTextTest, ModifiedTextThatCompilesIsWhatTheLiveFormShows) {
  designer->SetTextEditor(editor);
  designer->ShowText();
  designer->ShowInspector();
  Edit("Caption = 'Live sample'", "  Caption = 'Edited in the text'");
  designer->Show();
  ASSERT_NE(designer->HostForm(), nullptr);
  EXPECT_EQ(designer->HostForm()->Caption(), "Edited in the text");
  // The edit is in the document, not yet in a file: the text still shows it as modified.
  EXPECT_TRUE(editor->Modified());
  EXPECT_GE(LineOf("Caption = 'Edited in the text'"), 0);
  EXPECT_EQ(std::string(designer->Document()->Data()), editor->SourceStream());
  // The inspector shows the new text as well.
  ASSERT_TRUE(designer->Inspector()->SelectComponent("Form1", ""));
  const TStrings* props = designer->Inspector()->Propertyes->Lines();
  bool found = false;
  for (int i = 0; i < props->Count(); ++i) found = found || props->Strings(i) == "  Caption = 'Edited in the text'";
  EXPECT_TRUE(found);
  // A change of the shown live form's document is followed by both views.
  Edit("Caption = 'Edited in the text'", "  Caption = 'Second edit'");
  designer->Show();
  EXPECT_EQ(designer->HostForm()->Caption(), "Second edit");
}

TEST_F(DesignerTextTest, ANewDocumentStateReloadsTheAttachedText) {
  designer->SetTextEditor(editor);
  designer->ShowText();
  LoadText(*designer, "object Other: TForm\r\n  Caption = 'Reloaded'\r\nend\r\n");
  EXPECT_EQ(editor->RichEdit()->Lines()->Strings(0), "object Other: TForm");
  EXPECT_FALSE(editor->Modified());
}

TEST_F(DesignerTextTest, TheDesignerForgetsAnEditorThatIsDestroyed) {
  designer->SetTextEditor(editor);
  delete editor;
  editor = nullptr;
  EXPECT_EQ(designer->TextEditor(), nullptr);
  int asked = 0;
  designer->OnShowText = [&](TjoDesigner*) { ++asked; };
  designer->ShowText();
  EXPECT_EQ(asked, 1);
}

// ---- Packages

TEST_F(DesignerTest, UnloadingAPackageClosesTheLiveFormsBuiltWithItsClassesFirst) {
  const std::string package = std::string(LUMORA_TEST_PACKAGES) + "/tpk_base.so";
  const int index = Loader()->Add(package, true);
  ASSERT_TRUE(Loader()->IsLoaded(index));
  LoadText(*designer,
           "object Form1: TForm1\r\n"
           "  object Thing1: TPkgBase\r\n"
           "    Level = 3\r\n"
           "  end\r\n"
           "end\r\n");
  second = std::make_unique<TjoDesigner>();
  LoadText(*second, kSample);
  ShowActive(*designer);
  ShowActive(*second);
  ASSERT_NE(designer->HostForm()->FindComponent("Thing1"), nullptr);
  int gone = 0;
  designer->OnLiveFormGone = [&](TjoDesigner*) { ++gone; };
  Loader()->SetLoaded(index, false);
  EXPECT_EQ(gone, 1);
  EXPECT_EQ(designer->HostForm(), nullptr);
  // A live form without the package's classes stays.
  EXPECT_NE(second->HostForm(), nullptr);
  // Shown again, the form is read without the class that left.
  designer->Show();
  EXPECT_EQ(designer->HostForm()->FindComponent("Thing1"), nullptr);
  ASSERT_NE(DeferredErrors(), nullptr);
  EXPECT_NE(DeferredErrors()->Text().find("Class TPkgBase not found"), std::string::npos);
  Loader()->Delete(index);
  Loader()->SetDirty(false);
}
