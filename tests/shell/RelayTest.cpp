// The relay: a file name handed to the running program in pieces of four bytes over a
// local socket, each answered, the last one flagged.
#include "shell/Relay.h"

#include "resources/ResStrings.h"
#include "tests/support/TempDir.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

namespace {

class RelayTest : public ::testing::Test {
protected:
  void SetUp() override { SetRelaySocketName(dir / "relay"); }
  void TearDown() override { SetRelaySocketName(""); }

  // Sends from another thread while this one runs the event loop, as a second program would.
  bool SendWhileListening(const std::string& name, std::string& error) {
    std::atomic<bool> done{false};
    bool sent = false;
    std::thread sender([&] {
      sent = RelaySend(name, error, 3000);
      done = true;
    });
    QElapsedTimer timer;
    timer.start();
    while (!done && timer.elapsed() < 5000) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    sender.join();
    return sent;
  }
  lumora::test::TTempDir dir;
};

}  // namespace

TEST_F(RelayTest, ANameIsCutIntoPiecesOfFourWithTheLastFlagged) {
  const auto pieces = RelayPieces("C:\\ab.dfm");
  ASSERT_EQ(pieces.size(), 3u);
  EXPECT_EQ(RelayPieceText(pieces[0].Chars), "C:\\a");
  EXPECT_EQ(RelayPieceText(pieces[1].Chars), "b.df");
  EXPECT_EQ(RelayPieceText(pieces[2].Chars), "m");
  EXPECT_EQ(pieces[0].Last, 0u);
  EXPECT_EQ(pieces[1].Last, 0u);
  EXPECT_NE(pieces[2].Last, 0u);
  const auto exact = RelayPieces("abcdefgh");
  ASSERT_EQ(exact.size(), 2u);
  EXPECT_EQ(RelayPieceText(exact[1].Chars), "efgh");
  EXPECT_NE(exact[1].Last, 0u);
  const auto empty = RelayPieces("");
  ASSERT_EQ(empty.size(), 1u);
  EXPECT_EQ(RelayPieceText(empty[0].Chars), "");
  EXPECT_NE(empty[0].Last, 0u);
}

TEST_F(RelayTest, TheListenerGetsEveryPieceInOrderAndAnswersEach) {
  TRelayListener listener;
  std::vector<std::pair<std::uintptr_t, std::string>> got;
  listener.OnPiece = [&](std::uintptr_t last, std::intptr_t chars) -> std::intptr_t {
    got.emplace_back(last, RelayPieceText(chars));
    return 1;
  };
  ASSERT_TRUE(listener.Listen()) << listener.Error();
  std::string error;
  const std::string name = "/home/user/Forms/Über Form.dfm";
  EXPECT_TRUE(SendWhileListening(name, error)) << error;
  std::string joined;
  for (std::size_t i = 0; i < got.size(); ++i) {
    joined += got[i].second;
    EXPECT_EQ(got[i].first != 0, i + 1 == got.size()) << i;
  }
  EXPECT_EQ(joined, name);
  EXPECT_EQ(got.size(), (name.size() + 3) / 4);
}

TEST_F(RelayTest, WithoutARunningLumoraTheSenderSaysSo) {
  std::string error;
  EXPECT_FALSE(RelaySend("/tmp/a.dfm", error, 200));
  EXPECT_EQ(error, ResStr::SRelayNoLumora);
}

TEST_F(RelayTest, OnlyOneListenerPerSession) {
  TRelayListener first;
  ASSERT_TRUE(first.Listen());
  TRelayListener second;
  EXPECT_FALSE(second.Listen());
  EXPECT_EQ(second.Error(), ResStr::SRelayTaken);
  EXPECT_TRUE(first.Listening());
}

TEST_F(RelayTest, ASocketLeftByALumoraThatEndedIsTakenOver) {
  std::ofstream(dir / "relay") << "left over";
  TRelayListener listener;
  EXPECT_TRUE(listener.Listen()) << listener.Error();
  std::string text;
  listener.OnPiece = [&](std::uintptr_t, std::intptr_t chars) -> std::intptr_t {
    text += RelayPieceText(chars);
    return 1;
  };
  std::string error;
  EXPECT_TRUE(SendWhileListening("x.dfm", error)) << error;
  EXPECT_EQ(text, "x.dfm");
}

TEST_F(RelayTest, TheDefaultNameIsInTheSessionsRuntimeFolder) {
  SetRelaySocketName("");
  const QByteArray saved = qgetenv("XDG_RUNTIME_DIR");
  qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(dir.Path().string()));
  EXPECT_EQ(RelaySocketName(), dir / "lumora-relay");
  qunsetenv("XDG_RUNTIME_DIR");
  EXPECT_NE(RelaySocketName().find("lumora-relay-"), std::string::npos);
  if (!saved.isEmpty()) qputenv("XDG_RUNTIME_DIR", saved);
}
