// Action lists and their actions: read from form text, taken over by the buttons and
// menu items linked to them, run by clicks and shortcuts, refreshed when idle.
#include "platform/vcl/ActnList.h"

#include "platform/rtti/Writer.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/FormFixture.h"

#include <QAction>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

class ActnListTest : public TFormFixture {
protected:
  void Read(std::string_view text) {
    for (const std::string& e : ReadFormText(form, text)) ADD_FAILURE() << e;
  }
  template <class T>
  T* Find(const char* name) {
    auto* c = dynamic_cast<T*>(form->FindComponent(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
  }
};

const char* const ActionsForm = R"(object Form1: TForm1
  Left = 200
  Top = 100
  Width = 300
  Height = 200
  Caption = 'Form1'
  Menu = MainMenu1
  object Button1: TButton
    Left = 8
    Top = 8
    Width = 75
    Height = 25
    Action = act_Save
    TabOrder = 0
  end
  object MainMenu1: TMainMenu
    object mi_File: TMenuItem
      Caption = '&File'
      object mi_Save: TMenuItem
        Action = act_Save
      end
    end
  end
  object ActionList1: TActionList
    object act_Open: TAction
      Category = 'File'
      Caption = '&Open...'
      ShortCut = 16463
    end
    object act_Save: TAction
      Category = 'File'
      Caption = '&Save'
      Hint = 'Save the form'
      ShortCut = 16467
    end
  end
end
)";

TEST_F(ActnListTest, AnActionListReadFromFormTextHoldsItsActionsInOrder) {
  Read(ActionsForm);
  auto* list = Find<TActionList>("ActionList1");
  ASSERT_EQ(list->ActionCount(), 2);
  EXPECT_EQ(list->Actions(0)->Name(), "act_Open");
  EXPECT_EQ(list->Actions(1)->Name(), "act_Save");
  EXPECT_EQ(list->Actions(1)->Category(), "File");
  EXPECT_EQ(list->Actions(1)->Index(), 1);
  EXPECT_THROW(list->Actions(2), EListError);
  // The actions are written inside their list, as they were read.
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "ActionList1"), ObjectBlock(Crlf(ActionsForm), "ActionList1"));
}

TEST_F(ActnListTest, LinkedButtonsAndMenuItemsTakeTheActionsValues) {
  Read(ActionsForm);
  auto* save = Find<TAction>("act_Save");
  auto* button = Find<TButton>("Button1");
  auto* item = Find<TMenuItem>("mi_Save");
  EXPECT_EQ(button->Caption(), "&Save");
  EXPECT_EQ(button->Hint(), "Save the form");
  EXPECT_EQ(item->Caption(), "&Save");
  EXPECT_EQ(item->ShortCut(), TextToShortCut("Ctrl+S"));
  ShowForm();
  auto* push = qobject_cast<QPushButton*>(button->Widget());
  ASSERT_NE(push, nullptr);
  EXPECT_EQ(push->text(), QStringLiteral("&Save"));

  // A change of the action reaches every client.
  save->SetCaption("Save &As...");
  save->SetEnabled(false);
  EXPECT_EQ(push->text(), QStringLiteral("Save &As..."));
  EXPECT_FALSE(push->isEnabled());
  EXPECT_EQ(item->QtAction()->text(), QStringLiteral("Save &As...\tCtrl+S"));
  EXPECT_FALSE(item->QtAction()->isEnabled());
}

TEST_F(ActnListTest, ClickingALinkedButtonRunsTheAction) {
  auto* list = new TActionList(form);
  auto* action = new TAction(form);
  action->SetActionList(list);
  int runs = 0;
  action->OnExecute = [&](TObject*) { ++runs; };
  action->SetCaption("Run");
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  button->SetAction(action);
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  EXPECT_EQ(runs, 1);
}

TEST_F(ActnListTest, TheShortcutOfAnEnabledActionRunsItAndTheListSeesItFirst) {
  Read(ActionsForm);
  auto* list = Find<TActionList>("ActionList1");
  auto* open = Find<TAction>("act_Open");
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  int opened = 0;
  open->OnExecute = [&](TObject* sender) {
    EXPECT_EQ(sender, open);
    ++opened;
  };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(edit->Text(), "");
  // A disabled action's shortcut does nothing.
  open->SetEnabled(false);
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  // The list's OnExecute may take the action over.
  open->SetEnabled(true);
  std::vector<std::string> seen;
  list->OnExecute = [&](TBasicAction* action, bool& handled) {
    seen.push_back(action->Name());
    handled = true;
  };
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(seen, std::vector<std::string>{"act_Open"});
}

TEST_F(ActnListTest, AnIdlePassLetsEveryActionUpdateItself) {
  Read(ActionsForm);
  auto* save = Find<TAction>("act_Save");
  auto* button = Find<TButton>("Button1");
  bool modified = false;
  save->OnUpdate = [&](TObject*) { save->SetEnabled(modified); };
  bool done = false;
  Application->Idle(done);
  EXPECT_TRUE(done);
  EXPECT_FALSE(button->Enabled());
  modified = true;
  Application->Idle(done);
  EXPECT_TRUE(button->Enabled());
  // An OnIdle that is not done holds the updates back.
  modified = false;
  Application->OnIdle = [](TObject*, bool& d) { d = false; };
  Application->Idle(done);
  EXPECT_TRUE(button->Enabled());
}

TEST_F(ActnListTest, FreeingAnActionUnlinksItsClientsAndLeavesTheList) {
  Read(ActionsForm);
  auto* list = Find<TActionList>("ActionList1");
  auto* save = Find<TAction>("act_Save");
  auto* button = Find<TButton>("Button1");
  auto* item = Find<TMenuItem>("mi_Save");
  int changes = 0;
  list->OnChange = [&](TObject*) { ++changes; };
  delete save;
  EXPECT_EQ(button->Action(), nullptr);
  EXPECT_EQ(item->Action(), nullptr);
  ASSERT_EQ(list->ActionCount(), 1);
  EXPECT_EQ(list->Actions(0)->Name(), "act_Open");
  EXPECT_EQ(changes, 1);
  // The control keeps what it had taken over.
  EXPECT_EQ(button->Caption(), "&Save");
}

TEST_F(ActnListTest, AnImageListFreedIsForgotten) {
  auto* list = new TActionList(form);
  auto* images = new TImageList(form);
  list->SetImages(images);
  EXPECT_EQ(list->Images(), images);
  delete images;
  EXPECT_EQ(list->Images(), nullptr);
}

TEST_F(ActnListTest, ActionsMoveBetweenListsAndChangeTheirOrder) {
  auto* first = new TActionList(form);
  auto* second = new TActionList(form);
  auto* a = new TAction(form);
  auto* b = new TAction(form);
  a->SetName("a");
  b->SetName("b");
  a->SetActionList(first);
  b->SetActionList(first);
  b->SetIndex(0);
  EXPECT_EQ(first->Actions(0), b);
  EXPECT_EQ(a->Index(), 1);
  a->SetActionList(second);
  EXPECT_EQ(first->ActionCount(), 1);
  EXPECT_EQ(second->Actions(0), a);
  EXPECT_EQ(a->GetParentComponent(), second);
  delete first;
  EXPECT_EQ(b->ActionList(), nullptr);
  EXPECT_EQ(b->Index(), -1);
}

}  // namespace
