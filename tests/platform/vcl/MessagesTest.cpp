// Window messages posted and sent to a window, as the event loop hands them on.
#include "platform/vcl/Messages.h"

#include "platform/vcl/MessageLoop.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

// The loop's window message hook is each test's own.
class MessagesTest : public ::testing::Test {
protected:
  void SetUp() override { Loop().OnWindowMessage = nullptr; }
  void TearDown() override { Loop().OnWindowMessage = nullptr; }
  TMessageLoop& Loop() { return TMessageLoop::Instance(); }
};

}  // namespace

TEST_F(MessagesTest, PostedMessagesArriveLaterInOrder) {
  QObject target;
  std::vector<std::uint32_t> got;
  Loop().OnWindowMessage = [&](QObject* receiver, TMessage& m) {
    if (receiver != &target) return false;
    got.push_back(m.Msg);
    EXPECT_EQ(m.WParam, WPARAM(m.Msg + 1));
    EXPECT_EQ(m.LParam, LPARAM(-7));
    return true;
  };
  EXPECT_TRUE(PostMessage(&target, 9426, 9427, -7));
  EXPECT_TRUE(PostMessage(&target, 100, 101, -7));
  EXPECT_TRUE(got.empty());  // nothing happens until the loop runs
  QCoreApplication::sendPostedEvents();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0], 9426u);
  EXPECT_EQ(got[1], 100u);
  EXPECT_FALSE(PostMessage(nullptr, 1));
}

TEST_F(MessagesTest, MessagesPostedToAWindowThatIsGoneAreDropped) {
  int got = 0;
  Loop().OnWindowMessage = [&](QObject*, TMessage&) {
    ++got;
    return true;
  };
  auto target = std::make_unique<QObject>();
  PostMessage(target.get(), 14022);
  target.reset();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(got, 0);
}

TEST_F(MessagesTest, SentMessagesReturnTheirResult) {
  QObject target;
  Loop().OnWindowMessage = [&](QObject*, TMessage& m) {
    m.Result = static_cast<LRESULT>(m.WParam * 2);
    return true;
  };
  EXPECT_EQ(SendMessage(&target, WM_USER + 1, 21), 42);
  Loop().OnWindowMessage = nullptr;
  EXPECT_EQ(SendMessage(&target, WM_USER + 1, 21), 0);
}
