// The clipboard carries 8-bit text.
#include "platform/vcl/Clipbrd.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>

#include <gtest/gtest.h>

TEST(Clipboard, TextRoundTripsAsEightBitText) {
  Clipboard()->SetAsText("Caf\xe9 \x80");
  EXPECT_TRUE(Clipboard()->HasText());
  EXPECT_EQ(Clipboard()->AsText(), "Caf\xe9 \x80");
  Clipboard()->Clear();
  EXPECT_EQ(Clipboard()->AsText(), "");
}

TEST(Clipboard, TextOfOtherProgramsComesInTheDefaultCodePage) {
  // What another program put there is Unicode; the program sees Windows-1252 bytes, and
  // '?' for what that code page cannot hold.
  QGuiApplication::clipboard()->setText(QString::fromUtf8("Grüße € \u0416"));
  EXPECT_TRUE(Clipboard()->HasText());
  EXPECT_EQ(Clipboard()->AsText(), "Gr\xfc\xdf" "e \x80 ?");
  // And what the program puts there reads as Unicode elsewhere.
  Clipboard()->SetAsText("\xabok\xbb");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("«ok»"));
}

TEST(Clipboard, APictureIsNoText) {
  auto* data = new QMimeData();
  data->setImageData(QImage(4, 4, QImage::Format_RGB32));
  QGuiApplication::clipboard()->setMimeData(data);
  EXPECT_FALSE(Clipboard()->HasText());
  EXPECT_EQ(Clipboard()->AsText(), "");
}
