#pragma once
// What the live form tests share: a designer over a form document, a clock the tests
// move by hand, and ways to reach the system menu and the caption of a live form.

#include "liveform/PackConfig.h"
#include "liveform/joDesigner.h"
#include "liveform/joObjInsp.h"
#include "platform/rtti/Strings.h"
#include "platform/vcl/ClassicFrame.h"
#include "platform/vcl/SystemMenu.h"
#include "tests/support/StandardPackage.h"
#include "shell/CompRes.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace livetest {

// A clock for the key guard and click-to-select that moves only when told.
struct TManualClock {
  std::uint64_t Now = 1000000;
  TManualClock() {
    TjoDesigner::SetTickSource([this] { return Now; });
  }
  ~TManualClock() { TjoDesigner::SetTickSource(nullptr); }
};

// The controls' classes for the live forms of a test. The package list is not read from
// the test program's settings: the loader holds an entry for the standard package, not
// loaded, and the classes are registered here.
inline void UseTheControls() {
  RegisterVclClasses();
  if (Loader()->Count() == 0) {
    Loader()->Add("dclstd.so", false);
    Loader()->SetDirty(false);
  }
}

// Loads form text into a designer's document.
inline void LoadText(TjoDesigner& designer, const std::string& text) {
  TStringList lines;
  lines.SetText(text);
  designer.Document()->Assign(&lines);
}

// Handles what has been posted (system commands, releases, selections).
inline void Settle() {
  for (int i = 0; i < 3; ++i) QApplication::processEvents();
}

// Makes the live form the active window, as a click on it would.
inline void Activate(TCustomForm* form) {
  // Activations asked for before (a window shown) come first.
  Settle();
  QApplication::setActiveWindow(form->Widget());
  Settle();
}

// The system menu that shows, or none.
inline QMenu* ShownSystemMenu() {
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  return menu && menu->objectName() == QLatin1String("SystemMenu") ? menu : nullptr;
}

inline QAction* MenuAction(QMenu* menu, WPARAM command) {
  for (QAction* a : menu->actions()) {
    if (!a->isSeparator() && a->data().toULongLong() == command) return a;
  }
  return nullptr;
}

// Clicks an item of a menu that shows, as the user would, and lets the command arrive.
inline void ChooseFromMenu(QMenu* menu, WPARAM command) {
  QAction* action = MenuAction(menu, command);
  ASSERT_NE(action, nullptr) << command;
  QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
  Settle();
}

// The texts of a menu's items, separators as "-".
inline std::vector<std::string> MenuTexts(QMenu* menu) {
  std::vector<std::string> texts;
  for (QAction* a : menu->actions()) texts.push_back(a->isSeparator() ? "-" : a->text().toStdString());
  return texts;
}

// Opens the system menu by clicking the icon of the drawn frame.
inline QMenu* OpenSystemMenuFromIcon(TCustomForm* form) {
  TClassicFrame* frame = ClassicFrameOf(form);
  if (!frame) return nullptr;
  QTest::mouseClick(frame, Qt::LeftButton, {}, frame->Layout().Icon.center());
  return ShownSystemMenu();
}

inline void CloseMenus() {
  while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  Settle();
}

}  // namespace livetest
