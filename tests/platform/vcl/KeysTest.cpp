// Virtual key codes and Qt's keys.
#include "platform/vcl/Keys.h"

#include <gtest/gtest.h>

TEST(Keys, VirtualKeysAndQtKeysMapBothWays) {
  for (int vk : {int('A'), int('Z'), int('0'), VK_F1, VK_F12, VK_ESCAPE, VK_RETURN, VK_DELETE, VK_OEM_1, VK_OEM_7,
                 VK_NUMPAD0 + 3, VK_ADD, VK_LEFT, VK_PRIOR}) {
    bool keypad = false;
    const int qt = QtKeyFromVirtualKey(vk, &keypad);
    ASSERT_NE(qt, 0) << vk;
    EXPECT_EQ(VirtualKeyFromQt(qt, keypad ? Qt::KeypadModifier : Qt::NoModifier), vk);
  }
  EXPECT_EQ(VirtualKeyFromQt(Qt::Key_unknown, Qt::NoModifier), 0);
}
