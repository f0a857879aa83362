#include "platform/vcl/MessageLoop.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Keys.h"

#include <QEventLoop>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

// Resets the hooks of the process-wide loop around each test.
class MessageLoopTest : public ::testing::Test {
protected:
  void SetUp() override { Reset(); }
  void TearDown() override { Reset(); }
  static void Reset() {
    auto& loop = TMessageLoop::Instance();
    loop.OnIdle = nullptr;
    loop.OnMessage = nullptr;
    loop.OnInput = nullptr;
    loop.OnWindowMessage = nullptr;
    loop.OnException = nullptr;
  }

  // Runs the event loop until `ms` milliseconds have passed.
  static void RunFor(int ms) {
    QEventLoop local;
    QTimer::singleShot(ms, &local, &QEventLoop::quit);
    local.exec();
  }

  TMessageLoop& Loop() { return TMessageLoop::Instance(); }
};

// A window with an edit line and a button, shown on the offscreen screen.
struct TestWindow {
  QWidget window;
  QLineEdit* edit;
  QPushButton* button;
  TestWindow() {
    auto* layout = new QVBoxLayout(&window);
    edit = new QLineEdit(&window);
    button = new QPushButton(QStringLiteral("OK"), &window);
    layout->addWidget(edit);
    layout->addWidget(button);
    window.show();
    window.activateWindow();
    edit->setFocus();
    QCoreApplication::processEvents();
  }
};

}  // namespace

TEST_F(MessageLoopTest, IdleRunsOnceWhenTheQueueHasDrained) {
  int idles = 0;
  std::vector<int> idleSeenByEvent;
  Loop().OnIdle = [&](bool& done) {
    ++idles;
    done = true;
  };
  QObject receiver;
  // Five events queued together are handled in one pass: no idle call between them.
  for (int i = 0; i < 5; ++i) {
    QTimer::singleShot(0, &receiver, [&] { idleSeenByEvent.push_back(idles); });
  }
  RunFor(60);
  ASSERT_EQ(idleSeenByEvent.size(), 5u);
  for (int seen : idleSeenByEvent) EXPECT_EQ(seen, idleSeenByEvent.front());
  // The loop went idle after them and then slept until the end timer: a handful of
  // passes, not one per spin.
  EXPECT_GE(idles, 1);
  EXPECT_LE(idles, 4);
}

TEST_F(MessageLoopTest, IdleThatIsNotDoneIsCalledAgainSoon) {
  int idles = 0;
  Loop().OnIdle = [&](bool& done) {
    ++idles;
    done = idles >= 50;
  };
  RunFor(200);
  EXPECT_GE(idles, 50);
  EXPECT_LE(idles, 55);
}

TEST_F(MessageLoopTest, ProcessingEventsByHandIsNotAnIdlePass) {
  int idles = 0;
  Loop().OnIdle = [&](bool&) { ++idles; };
  QObject receiver;
  bool ran = false;
  QTimer::singleShot(0, &receiver, [&] { ran = true; });
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
  EXPECT_EQ(idles, 0);
  RunFor(20);
  EXPECT_TRUE(ran);
  EXPECT_GE(idles, 1);
}

TEST_F(MessageLoopTest, MessageHookSeesEveryKeyBeforeTheWidget) {
  TestWindow w;
  std::vector<TMsg> seen;
  QString textAtKeyDown = QStringLiteral("unset");
  Loop().OnMessage = [&](TMsg& msg, bool&) {
    seen.push_back(msg);
    if (msg.message == WM_KEYDOWN) textAtKeyDown = w.edit->text();
  };
  QTest::keyClick(w.edit, Qt::Key_A);
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(seen[0].message, WM_KEYDOWN);
  EXPECT_EQ(seen[0].wParam, WPARAM('A'));
  EXPECT_EQ(seen[0].hwnd, w.edit);
  EXPECT_EQ(seen[1].message, WM_CHAR);
  EXPECT_EQ(seen[1].wParam, WPARAM('a'));
  EXPECT_EQ(seen[2].message, WM_KEYUP);
  EXPECT_TRUE(textAtKeyDown.isEmpty());  // the edit had not seen the key yet
  EXPECT_EQ(w.edit->text(), QStringLiteral("a"));
}

TEST_F(MessageLoopTest, MessageHookCanSwallowAKey) {
  TestWindow w;
  Loop().OnMessage = [&](TMsg& msg, bool& handled) {
    if (msg.message == WM_KEYDOWN && msg.wParam == 'X') handled = true;
  };
  QTest::keyClicks(w.edit, QStringLiteral("axb"));
  EXPECT_EQ(w.edit->text(), QStringLiteral("ab"));
}

TEST_F(MessageLoopTest, AltKeysComeAsSystemKeysWithTheAltBit) {
  TestWindow w;
  std::vector<TMsg> seen;
  Loop().OnMessage = [&](TMsg& msg, bool&) { seen.push_back(msg); };
  QTest::keyClick(w.edit, Qt::Key_0, Qt::AltModifier);
  // The Alt key itself comes first, as it does from a keyboard.
  ASSERT_GE(seen.size(), 2u);
  EXPECT_EQ(seen[0].message, WM_SYSKEYDOWN);
  EXPECT_EQ(seen[0].wParam, WPARAM(VK_MENU));
  const auto zero = std::find_if(seen.begin(), seen.end(), [](const TMsg& m) { return m.wParam == '0'; });
  ASSERT_NE(zero, seen.end());
  EXPECT_EQ(zero->message, WM_SYSKEYDOWN);
  EXPECT_TRUE(zero->lParam & KF_ALTDOWN_BIT);
}

TEST_F(MessageLoopTest, KeysSentThroughTheWindowAreSeenOnce) {
  TestWindow w;
  int downs = 0;
  Loop().OnMessage = [&](TMsg& msg, bool&) {
    if (msg.message == WM_KEYDOWN) ++downs;
  };
  // Through the window system, as a person's key press arrives.
  QTest::keyClick(w.window.windowHandle(), Qt::Key_B);
  QCoreApplication::processEvents();
  EXPECT_EQ(downs, 1);
  EXPECT_EQ(w.edit->text(), QStringLiteral("b"));
}

TEST_F(MessageLoopTest, ExceptionInAClickHandlerReachesTheExceptionHook) {
  TestWindow w;
  std::string caught;
  Loop().OnException = [&](std::exception_ptr e) {
    try {
      std::rethrow_exception(e);
    } catch (const Exception& ex) {
      caught = ex.Message();
    }
  };
  QObject::connect(w.button, &QPushButton::clicked, [&] {
    TMessageLoop::Instance().Guarded([] { throw EConvertError("'x' is not a valid integer value"); });
  });
  QTest::mouseClick(w.button, Qt::LeftButton);
  EXPECT_EQ(caught, "'x' is not a valid integer value");
}

TEST_F(MessageLoopTest, ExceptionsInHooksNeverEscape) {
  TestWindow w;
  int caught = 0;
  Loop().OnException = [&](std::exception_ptr) { ++caught; };
  Loop().OnMessage = [&](TMsg&, bool&) { throw EListError("List index out of bounds (5)"); };
  Loop().OnIdle = [&](bool&) { throw EListError("idle"); };
  QTest::keyClick(w.edit, Qt::Key_Q);
  RunFor(20);
  EXPECT_GE(caught, 2);
  // An exception hook that throws itself does not bring the loop down either.
  Loop().OnException = [&](std::exception_ptr) { throw Exception("again"); };
  QTest::keyClick(w.edit, Qt::Key_Q);
  RunFor(10);
}

TEST_F(MessageLoopTest, InputHookCanKeepMouseAndKeysFromAWidget) {
  TestWindow w;
  int clicks = 0;
  QObject::connect(w.button, &QPushButton::clicked, [&] { ++clicks; });
  bool blocked = true;
  Loop().OnInput = [&](QObject* receiver, QEvent*) {
    return blocked && (receiver == w.button || receiver == w.edit);
  };
  QTest::mouseClick(w.button, Qt::LeftButton);
  QTest::keyClicks(w.edit, QStringLiteral("abc"));
  EXPECT_EQ(clicks, 0);
  EXPECT_TRUE(w.edit->text().isEmpty());
  blocked = false;
  QTest::mouseClick(w.button, Qt::LeftButton);
  QTest::keyClicks(w.edit, QStringLiteral("abc"));
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(w.edit->text(), QStringLiteral("abc"));
}
