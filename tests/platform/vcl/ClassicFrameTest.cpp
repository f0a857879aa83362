// The frame the program draws for a form that asks for it: the same picture as the form
// drawn to a PNG, the caption buttons and the system menu with the window's commands,
// moving and sizing by the caption and the borders.
#include "platform/vcl/ClassicFrame.h"

#include "platform/vcl/FormRender.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/SystemMenu.h"
#include "platform/vcl/VclClasses.h"
#include "tests/support/Corpus.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

namespace {

void Settle() {
  for (int i = 0; i < 3; ++i) QApplication::processEvents();
}

QMenu* ShownSystemMenu() {
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  return menu && menu->objectName() == QLatin1String("SystemMenu") ? menu : nullptr;
}

QAction* MenuAction(QMenu* menu, WPARAM command) {
  for (QAction* a : menu->actions()) {
    if (!a->isSeparator() && a->data().toULongLong() == command) return a;
  }
  return nullptr;
}

class ClassicFrameTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    form = new TForm(Application);
    form->SetName("Framed");
    form->SetCaption("Framed window");
    form->SetBounds(40, 30, 300, 200);
    form->OnClose = [this](TObject*, TCloseAction&) { ++closes; };
    form->SetClassicFrame(true);
    frame = ClassicFrameOf(form);
  }
  void TearDown() override {
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    delete form;
    Settle();
  }
  void ShowActive() {
    form->Show();
    Settle();
    QApplication::setActiveWindow(form->Widget());
    Settle();
  }
  void Click(const QRect& r, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(frame, button, {}, r.center());
    Settle();
  }

  TForm* form = nullptr;
  TClassicFrame* frame = nullptr;
  int closes = 0;
};

}  // namespace

TEST_F(ClassicFrameTest, TheWindowIsTheWholeFormWithItsInsideBelowTheCaption) {
  ASSERT_NE(frame, nullptr);
  ShowActive();
  QWidget* window = form->Widget();
  EXPECT_TRUE(window->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_EQ(window->size(), QSize(300, 200));
  EXPECT_EQ(window->pos(), QPoint(40, 30));
  EXPECT_EQ(frame->geometry(), QRect(0, 0, 300, 200));
  EXPECT_EQ(form->ClientWidth(), 292);
  EXPECT_EQ(form->ClientHeight(), 173);
  EXPECT_EQ(form->ClientWidget()->geometry(), QRect(4, 23, 292, 173));
  const TClassicFrameLayout l = frame->Layout();
  EXPECT_EQ(l.Bar, QRect(4, 4, 292, 18));
  EXPECT_EQ(l.Icon, QRect(5, 5, 16, 16));
  EXPECT_EQ(l.CloseButton, QRect(279, 6, 16, 14));
  EXPECT_EQ(l.MaxButton, QRect(261, 6, 16, 14));
  EXPECT_EQ(l.MinButton, QRect(245, 6, 16, 14));
  EXPECT_TRUE(l.MinEnabled);
  EXPECT_TRUE(l.MaxEnabled);
  // Taking the frame away gives the window system's back, around the inside alone.
  form->SetClassicFrame(false);
  EXPECT_EQ(ClassicFrameOf(form), nullptr);
  EXPECT_FALSE(window->windowFlags() & Qt::FramelessWindowHint);
  EXPECT_EQ(window->size(), QSize(292, 173));
  EXPECT_EQ(form->ClientWidget()->geometry(), QRect(0, 0, 292, 173));
  frame = nullptr;
}

TEST_F(ClassicFrameTest, TheActiveWindowLooksAsTheFormDrawnToAPicture) {
  // Controls that take no focus, so that nothing differs but the frame's owner.
  const char* text =
      "object Pictured: TForm\r\n"
      "  Width = 260\r\n"
      "  Height = 150\r\n"
      "  BorderIcons = [biSystemMenu, biMinimize]\r\n"
      "  Caption = 'A form as a picture'\r\n"
      "  object Label1: TLabel\r\n"
      "    Left = 8\r\n"
      "    Top = 8\r\n"
      "    Caption = '&Label of the form'\r\n"
      "  end\r\n"
      "  object Panel1: TPanel\r\n"
      "    Left = 8\r\n"
      "    Top = 32\r\n"
      "    Width = 200\r\n"
      "    Height = 60\r\n"
      "    Caption = 'Panel'\r\n"
      "    TabStop = False\r\n"
      "  end\r\n"
      "end\r\n";
  auto* drawn = new TForm(Application);
  ASSERT_TRUE(LoadFormFile(drawn, text).Read);
  const QImage expected = RenderForm(drawn).convertToFormat(QImage::Format_RGB32);
  delete drawn;
  delete form;
  form = new TForm(Application);
  form->SetClassicFrame(true);
  frame = ClassicFrameOf(form);
  ASSERT_TRUE(LoadFormFile(form, text).Read);
  QCursor::setPos(-1000, -1000);
  ShowActive();
  ASSERT_TRUE(form->Widget()->isActiveWindow());
  const QImage live = form->Widget()->grab().toImage().convertToFormat(QImage::Format_RGB32);
  EXPECT_EQ(live.size(), QSize(260, 150));
  EXPECT_TRUE(live == expected);
  // Drawn to a picture, the framed window is the same too.
  EXPECT_TRUE(RenderForm(form).convertToFormat(QImage::Format_RGB32) == expected);
}

TEST_F(ClassicFrameTest, AnInactiveWindowHasTheInactiveCaption) {
  ShowActive();
  // The caption's gradient starts at its left end.
  const QPoint inBar = frame->Layout().Bar.topLeft() + QPoint(0, 2);
  EXPECT_EQ(frame->grab().toImage().pixelColor(inBar), ColorToQColor(clActiveCaption));
  auto* other = new TForm(Application);
  other->Show();
  Settle();
  QApplication::setActiveWindow(other->Widget());
  Settle();
  EXPECT_EQ(frame->grab().toImage().pixelColor(inBar), ColorToQColor(clInactiveCaption));
  delete other;
}

TEST_F(ClassicFrameTest, TheCaptionFollowsTheFormsCaptionAndBorder) {
  ShowActive();
  const QImage before = frame->grab().toImage();
  form->SetCaption("Another caption");
  EXPECT_NE(frame->grab().toImage(), before);
  form->SetBorderIcons(TBorderIcons{biSystemMenu});
  EXPECT_TRUE(frame->Layout().MinButton.isEmpty());
  EXPECT_TRUE(frame->Layout().MaxButton.isEmpty());
  EXPECT_FALSE(frame->Layout().CloseButton.isEmpty());
  form->SetBorderStyle(bsDialog);
  EXPECT_TRUE(frame->Layout().Icon.isEmpty());
  EXPECT_EQ(frame->Layout().Border, 3);
  EXPECT_EQ(form->Widget()->size(), QSize(300, 200));
  form->SetBorderStyle(bsToolWindow);
  EXPECT_EQ(frame->Layout().Caption, 16);
  EXPECT_EQ(frame->Layout().CloseButton.size(), QSize(12, 10));
  form->SetBorderStyle(bsNone);
  EXPECT_EQ(frame->Layout().Caption, 0);
  EXPECT_EQ(form->ClientWidget()->geometry(), QRect(0, 0, 300, 200));
}

TEST_F(ClassicFrameTest, TheCaptionButtonsMinimiseMaximiseAndClose) {
  ShowActive();
  Click(frame->Layout().MaxButton);
  EXPECT_EQ(form->WindowState(), wsMaximized);
  EXPECT_TRUE(form->Widget()->isMaximized());
  // The frame and the inside take the whole maximised window.
  EXPECT_EQ(frame->size(), form->Widget()->size());
  EXPECT_EQ(form->ClientWidget()->width(), form->Widget()->width() - 8);
  Click(frame->Layout().MaxButton);
  EXPECT_EQ(form->WindowState(), wsNormal);
  EXPECT_EQ(form->Widget()->size(), QSize(300, 200));
  Click(frame->Layout().MinButton);
  EXPECT_EQ(form->WindowState(), wsMinimized);
  form->SetWindowState(wsNormal);
  Settle();
  // A press that leaves the button before the release does nothing.
  QTest::mousePress(frame, Qt::LeftButton, {}, frame->Layout().CloseButton.center());
  QTest::mouseMove(frame, frame->Layout().Text.center());
  QTest::mouseRelease(frame, Qt::LeftButton, {}, frame->Layout().Text.center());
  Settle();
  EXPECT_EQ(closes, 0);
  EXPECT_TRUE(form->Visible());
  Click(frame->Layout().CloseButton);
  EXPECT_EQ(closes, 1);
  EXPECT_FALSE(form->Visible());
}

TEST_F(ClassicFrameTest, GreyedButtonsDoNothing) {
  form->SetBorderIcons(TBorderIcons{biSystemMenu, biMinimize});
  ShowActive();
  EXPECT_FALSE(frame->Layout().MaxEnabled);
  Click(frame->Layout().MaxButton);
  EXPECT_EQ(form->WindowState(), wsNormal);
  QTest::mouseDClick(frame, Qt::LeftButton, {}, frame->Layout().Text.center());
  Settle();
  EXPECT_EQ(form->WindowState(), wsNormal);
}

TEST_F(ClassicFrameTest, TheSystemMenuHoldsTheWindowsCommands) {
  ShowActive();
  Click(frame->Layout().Icon);
  QMenu* menu = ShownSystemMenu();
  ASSERT_NE(menu, nullptr);
  std::vector<std::string> texts;
  for (QAction* a : menu->actions()) texts.push_back(a->isSeparator() ? "-" : a->text().toStdString());
  EXPECT_EQ(texts, (std::vector<std::string>{"&Restore", "&Move", "&Size", "Mi&nimize", "Ma&ximize", "-",
                                             "&Close\tAlt+F4"}));
  EXPECT_FALSE(MenuAction(menu, SC_RESTORE)->isEnabled());
  // Keys work in the menu: its accelerators.
  QTest::keyClick(menu, Qt::Key_X);
  Settle();
  EXPECT_EQ(form->WindowState(), wsMaximized);
  QTest::keyClick(form->Widget(), Qt::Key_Space, Qt::AltModifier);
  menu = ShownSystemMenu();
  ASSERT_NE(menu, nullptr);
  QTest::keyClick(menu, Qt::Key_R);
  Settle();
  EXPECT_EQ(form->WindowState(), wsNormal);
  // Alt+F4 is the close command.
  QTest::keyClick(form->Widget(), Qt::Key_F4, Qt::AltModifier);
  Settle();
  EXPECT_EQ(closes, 1);
}

TEST_F(ClassicFrameTest, ADialogsMenuOffersOnlyWhatADialogCanDo) {
  form->SetBorderStyle(bsDialog);
  ShowActive();
  GetSystemMenu(form)->UpdateWindowCommands();
  TSystemMenu* menu = GetSystemMenu(form);
  EXPECT_TRUE(menu->Items(menu->IndexOf(SC_MOVE)).Enabled);
  EXPECT_FALSE(menu->Items(menu->IndexOf(SC_SIZE)).Enabled);
  EXPECT_FALSE(menu->Items(menu->IndexOf(SC_MINIMIZE)).Enabled);
  EXPECT_FALSE(menu->Items(menu->IndexOf(SC_MAXIMIZE)).Enabled);
  EXPECT_TRUE(menu->Items(menu->IndexOf(SC_CLOSE)).Enabled);
  // A right click on the caption opens it too; a right click elsewhere does not.
  Click(QRect(form->ClientWidget()->geometry().center(), QSize(1, 1)), Qt::RightButton);
  EXPECT_EQ(ShownSystemMenu(), nullptr);
  Click(frame->Layout().Text, Qt::RightButton);
  ASSERT_NE(ShownSystemMenu(), nullptr);
}

TEST_F(ClassicFrameTest, TheCaptionMovesTheWindowAndTheBordersSizeIt) {
  ShowActive();
  const QPoint start = form->Widget()->pos();
  const QPoint grip = frame->Layout().Text.center();
  QTest::mousePress(frame, Qt::LeftButton, {}, grip);
  QTest::mouseMove(frame, grip + QPoint(30, 20));
  QTest::mouseRelease(frame, Qt::LeftButton, {}, grip + QPoint(30, 20));
  Settle();
  EXPECT_EQ(form->Widget()->pos(), start + QPoint(30, 20));
  EXPECT_EQ(frame->HitTest(QPoint(299, 100)), TFrameHit::Right);
  EXPECT_EQ(frame->HitTest(QPoint(299, 199)), TFrameHit::BottomRight);
  EXPECT_EQ(frame->HitTest(QPoint(0, 0)), TFrameHit::TopLeft);
  EXPECT_EQ(frame->HitTest(QPoint(150, 1)), TFrameHit::Top);
  EXPECT_EQ(frame->HitTest(QPoint(150, 10)), TFrameHit::Caption);
  EXPECT_EQ(frame->HitTest(QPoint(150, 100)), TFrameHit::Client);
  QTest::mousePress(frame, Qt::LeftButton, {}, QPoint(298, 100));
  QTest::mouseMove(frame, QPoint(338, 100));
  QTest::mouseRelease(frame, Qt::LeftButton, {}, QPoint(338, 100));
  Settle();
  EXPECT_EQ(form->Widget()->size(), QSize(340, 200));
  EXPECT_EQ(form->Width(), 340);
  EXPECT_EQ(form->ClientWidth(), 332);
  EXPECT_EQ(frame->size(), QSize(340, 200));
  // A window of fixed size has no borders to pull.
  form->SetBorderStyle(bsSingle);
  EXPECT_EQ(frame->HitTest(QPoint(form->Width() - 1, 100)), TFrameHit::Client);
}
