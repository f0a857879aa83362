#include "platform/vcl/ShortCuts.h"

#include "platform/vcl/Keys.h"

#include <gtest/gtest.h>

TEST(ShortCuts, TextToShortCutGivesTheSixteenBitValue) {
  EXPECT_EQ(TextToShortCut("Ctrl+C"), 0x4043);
  EXPECT_EQ(TextToShortCut("Alt+X"), 0x8058);
  EXPECT_EQ(TextToShortCut("F12"), 123);
  EXPECT_EQ(TextToShortCut("F11"), 122);
  EXPECT_EQ(TextToShortCut("Esc"), 27);
  EXPECT_EQ(TextToShortCut("Shift+Del"), 0x2000 | 46);
  EXPECT_EQ(TextToShortCut("Alt+0"), 0x8030);
  EXPECT_EQ(TextToShortCut("Ctrl+F9"), 0x4000 | 0x78);
  EXPECT_EQ(TextToShortCut("Shift+Ctrl+Alt+Z"), 0xE05A);
  EXPECT_EQ(TextToShortCut("Enter"), 13);
  EXPECT_EQ(TextToShortCut("Ins"), 45);
  EXPECT_EQ(TextToShortCut("PgDn"), 34);
}

TEST(ShortCuts, TextToShortCutIgnoresCaseAndModifierOrder) {
  EXPECT_EQ(TextToShortCut("ctrl+c"), 0x4043);
  EXPECT_EQ(TextToShortCut("ALT+SHIFT+a"), 0xA041);
  EXPECT_EQ(TextToShortCut("Ctrl+Shift+A"), TextToShortCut("Shift+Ctrl+A"));
  EXPECT_EQ(TextToShortCut("esc"), 27);
}

TEST(ShortCuts, TextThatNamesNoKeyGivesZero) {
  EXPECT_EQ(TextToShortCut(""), 0);
  EXPECT_EQ(TextToShortCut("Ctrl+"), 0);
  EXPECT_EQ(TextToShortCut("Foo"), 0);
  EXPECT_EQ(TextToShortCut("Ctrl+Foo"), 0);
  EXPECT_EQ(TextToShortCut("Ctrl C"), 0);
}

TEST(ShortCuts, ShortCutToTextNamesModifiersInFixedOrder) {
  EXPECT_EQ(ShortCutToText(TShortCut(0x4043)), "Ctrl+C");
  EXPECT_EQ(ShortCutToText(TShortCut(0x8058)), "Alt+X");
  EXPECT_EQ(ShortCutToText(TShortCut(0xE041)), "Shift+Ctrl+Alt+A");
  EXPECT_EQ(ShortCutToText(TShortCut(27)), "Esc");
  EXPECT_EQ(ShortCutToText(TShortCut(123)), "F12");
  EXPECT_EQ(ShortCutToText(TShortCut(0x202E)), "Shift+Del");
  EXPECT_EQ(ShortCutToText(TShortCut(VK_BACK)), "BkSp");
  EXPECT_EQ(ShortCutToText(TShortCut(VK_SPACE | scCtrl)), "Ctrl+Space");
  EXPECT_EQ(ShortCutToText(TShortCut(0)), "");
  EXPECT_EQ(ShortCutToText(TShortCut(0x4000)), "");
}

TEST(ShortCuts, EveryNamedKeyRoundTrips) {
  int named = 0;
  for (int key = 1; key < 256; ++key) {
    for (int mods : {0, scShift, scCtrl, scAlt, scShift | scCtrl | scAlt}) {
      const TShortCut sc = MakeShortCut(key, mods);
      const std::string text = ShortCutToText(sc);
      if (text.empty()) continue;
      ++named;
      EXPECT_EQ(TextToShortCut(text), sc) << text;
    }
  }
  EXPECT_GT(named, 5 * 80);
}

TEST(ShortCuts, QtKeySequences) {
  EXPECT_EQ(ShortCutToKeySequence(TextToShortCut("Ctrl+C")), QKeySequence(QStringLiteral("Ctrl+C")));
  EXPECT_EQ(ShortCutToKeySequence(TextToShortCut("F3")), QKeySequence(Qt::Key_F3));
  EXPECT_EQ(ShortCutToKeySequence(TextToShortCut("Alt+X")), QKeySequence(QStringLiteral("Alt+X")));
  EXPECT_TRUE(ShortCutToKeySequence(scNone).isEmpty());
}

TEST(ShortCuts, QtKeyEventsGiveShortCuts) {
  EXPECT_EQ(ShortCutFromQt(Qt::Key_C, Qt::ControlModifier), 0x4043);
  EXPECT_EQ(ShortCutFromQt(Qt::Key_0, Qt::AltModifier), 0x8030);
  EXPECT_EQ(ShortCutFromQt(Qt::Key_Escape, Qt::NoModifier), 27);
  EXPECT_EQ(ShortCutFromQt(Qt::Key_Exclam, Qt::ShiftModifier), 0x2031);
  EXPECT_EQ(ShortCutFromQt(Qt::Key_5, Qt::KeypadModifier), VK_NUMPAD0 + 5);
  EXPECT_EQ(ShortCutFromQt(Qt::Key_Backtab, Qt::ShiftModifier), 0x2009);
}
