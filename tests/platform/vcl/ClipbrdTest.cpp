// The clipboard carries 8-bit text.
#include "platform/vcl/Clipbrd.h"

#include <QApplication>
#include <QClipboard>

#include <gtest/gtest.h>

TEST(Clipboard, TextRoundTripsAsEightBitText) {
  Clipboard()->SetAsText("Caf\xe9 \x80");
  EXPECT_TRUE(Clipboard()->HasText());
  EXPECT_EQ(Clipboard()->AsText(), "Caf\xe9 \x80");
  Clipboard()->Clear();
  EXPECT_EQ(Clipboard()->AsText(), "");
}
