// Main menus and popup menus: group indexes, radio items, merging, shortcuts and the
// context menu key.
#include "platform/vcl/Menus.h"

#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class MenusTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(MenusTest, MenuGroupIndexesNeverGoDownAndRadioItemsAreExclusive) {
  auto* menu = new TMainMenu(form);
  auto* view = new TMenuItem(form);
  menu->Items()->Add(view);
  auto* a = new TMenuItem(form);
  auto* b = new TMenuItem(form);
  auto* c = new TMenuItem(form);
  a->SetGroupIndex(2);
  view->Add(a);
  view->Add(b);  // takes the group of the item before it
  EXPECT_EQ(b->GroupIndex(), 2);
  c->SetGroupIndex(1);
  view->Insert(0, c);
  for (TMenuItem* i : {a, b}) {
    i->SetRadioItem(true);
  }
  a->SetChecked(true);
  b->SetChecked(true);
  EXPECT_FALSE(a->Checked());
  EXPECT_TRUE(b->Checked());
  EXPECT_EQ(menu->FindItem(scNone), nullptr);
}

TEST_F(MenusTest, MergedMenusReplaceTheGroupsTheyHave) {
  auto* mainMenu = new TMainMenu(form);
  auto* child = new TMainMenu(form);
  auto item = [&](TMainMenu* m, const char* caption, int group) {
    auto* i = new TMenuItem(form);
    i->SetCaption(caption);
    i->SetGroupIndex(static_cast<std::uint8_t>(group));
    m->Items()->Add(i);
    return i;
  };
  item(mainMenu, "&File", 0);
  item(mainMenu, "&Edit", 1);
  item(mainMenu, "&Help", 9);
  item(child, "&Edit!", 1);
  item(child, "&Tools", 5);
  mainMenu->Merge(child);
  std::vector<std::string> captions;
  for (TMenuItem* i : mainMenu->VisibleItems()) captions.push_back(i->Caption());
  EXPECT_EQ(captions, (std::vector<std::string>{"&File", "&Edit!", "&Tools", "&Help"}));
  mainMenu->Unmerge(child);
  EXPECT_EQ(mainMenu->VisibleItems().size(), 3u);
}

TEST_F(MenusTest, PopupMenusShowOnTheContextMenuKeyAndRunTheirItems) {
  auto* popup = new TPopupMenu(form);
  auto* item = new TMenuItem(form);
  item->SetCaption("&Delete");
  item->SetShortCut(TextToShortCut("Del"));
  popup->Items()->Add(item);
  auto* list = Make<TListBox>(form, 8, 8, 100, 100);
  list->SetPopupMenu(popup);
  int deleted = 0, popups = 0;
  item->OnClick = [&](TObject*) { ++deleted; };
  popup->OnPopup = [&](TObject*) { ++popups; };
  ShowForm();
  list->SetFocus();
  // The popup menu's shortcut works while its control has the focus.
  QTest::keyClick(list->Widget(), Qt::Key_Delete);
  EXPECT_EQ(deleted, 1);
  QTimer::singleShot(0, [] {
    if (QWidget* m = QApplication::activePopupWidget()) m->close();
  });
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), list->Widget()->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(list->Widget(), &event);
  EXPECT_EQ(popups, 1);
}
