#pragma once
// The relay: another program hands a file name to the running Lumora through a local
// socket of the user's session. A message carries one piece of the name, up to four
// bytes, and a last-piece flag, as the pieces of WM_PENDINGFILE that the relay window
// receives; the receiver answers each message with one byte (its result), so that the
// sender knows when the whole name arrived.
//
// A message on the socket is eight bytes: the flag as a 32-bit little-endian number
// (not zero on the last piece) and the four bytes of the piece, zero-padded.

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QLocalServer;
class QLocalSocket;

// The socket's name: in the session's runtime folder ($XDG_RUNTIME_DIR), else in the
// temporary folder with the user's id.
std::string RelaySocketName();
// Tests and a second session may choose another name; empty goes back to the default.
void SetRelaySocketName(const std::string& Name);

// One piece as it travels: the flag and the piece's four bytes, in memory order, as a
// message's word and long parameters.
struct TRelayPiece {
  std::uintptr_t Last = 0;
  std::intptr_t Chars = 0;
};
// A file name cut into pieces of four bytes; the last one carries the flag.
std::vector<TRelayPiece> RelayPieces(const std::string& FileName);
// The text of a piece's parameter: its four bytes up to the first zero.
std::string RelayPieceText(std::intptr_t Chars);

// Listens on the socket while it lives and hands each piece that arrives to OnPiece,
// whose result goes back to the sender.
class TRelayListener : public QObject {
  Q_OBJECT
public:
  explicit TRelayListener(QObject* parent = nullptr);
  ~TRelayListener() override;

  // Starts listening; false (with Error set) when another Lumora of this session listens
  // already or the socket cannot be made.
  bool Listen();
  bool Listening() const;
  const std::string& Error() const { return FError; }

  std::function<std::intptr_t(std::uintptr_t Last, std::intptr_t Chars)> OnPiece;

private:
  void Accept();
  void ReadFrom(QLocalSocket* socket);

  QLocalServer* FServer = nullptr;
  std::string FError;
};

// Hands FileName to the running Lumora: sends its pieces and waits for every answer.
// False with Error set ("no Lumora is running", a broken connection) otherwise.
bool RelaySend(const std::string& FileName, std::string& Error, int TimeoutMs = 5000);
