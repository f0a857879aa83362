#include "shell/Relay.h"

#include "resources/ResStrings.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <unistd.h>

#include <cstring>

namespace {

constexpr int kMessageSize = 8;

std::string& NameOverride() {
  static std::string name;
  return name;
}

void PutWord(char* at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) at[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
}

std::uint32_t GetWord(const char* at) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(at[i]);
  return value;
}

}  // namespace

std::string RelaySocketName() {
  if (!NameOverride().empty()) return NameOverride();
  const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
  if (!runtime.isEmpty() && QDir(QString::fromLocal8Bit(runtime)).exists())
    return runtime.toStdString() + "/lumora-relay";
  return QDir::tempPath().toStdString() + "/lumora-relay-" + std::to_string(getuid());
}

void SetRelaySocketName(const std::string& Name) { NameOverride() = Name; }

std::vector<TRelayPiece> RelayPieces(const std::string& FileName) {
  std::vector<TRelayPiece> pieces;
  for (std::size_t at = 0; at < FileName.size(); at += 4) {
    char bytes[4] = {0, 0, 0, 0};
    std::memcpy(bytes, FileName.data() + at, std::min<std::size_t>(4, FileName.size() - at));
    std::uint32_t chars = 0;
    std::memcpy(&chars, bytes, 4);
    pieces.push_back({0, static_cast<std::intptr_t>(chars)});
  }
  if (pieces.empty()) pieces.push_back({0, 0});
  pieces.back().Last = 1;
  return pieces;
}

std::string RelayPieceText(std::intptr_t Chars) {
  const auto word = static_cast<std::uint32_t>(Chars);
  char bytes[5] = {0, 0, 0, 0, 0};
  std::memcpy(bytes, &word, 4);
  return std::string(bytes);
}

// ---- TRelayListener ------------------------------------------------------------------

TRelayListener::TRelayListener(QObject* parent) : QObject(parent) {}

TRelayListener::~TRelayListener() {
  if (FServer) FServer->close();
}

bool TRelayListener::Listening() const { return FServer && FServer->isListening(); }

bool TRelayListener::Listen() {
  if (Listening()) return true;
  const QString name = QString::fromStdString(RelaySocketName());
  // A Lumora that answers owns the name; a socket left by one that ended is taken over.
  {
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(300)) {
      probe.disconnectFromServer();
      FError = ResStr::SRelayTaken;
      return false;
    }
  }
  QLocalServer::removeServer(name);
  delete FServer;
  FServer = new QLocalServer(this);
  FServer->setSocketOptions(QLocalServer::UserAccessOption);
  if (!FServer->listen(name)) {
    FError = FServer->errorString().toStdString();
    delete FServer;
    FServer = nullptr;
    return false;
  }
  connect(FServer, &QLocalServer::newConnection, this, &TRelayListener::Accept);
  return true;
}

void TRelayListener::Accept() {
  while (QLocalSocket* socket = FServer->nextPendingConnection()) {
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { ReadFrom(socket); });
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    ReadFrom(socket);
  }
}

void TRelayListener::ReadFrom(QLocalSocket* socket) {
  QPointer<QLocalSocket> guard(socket);
  while (guard && socket->bytesAvailable() >= kMessageSize) {
    char message[kMessageSize];
    if (socket->read(message, kMessageSize) != kMessageSize) return;
    const std::uint32_t last = GetWord(message);
    std::uint32_t chars = 0;
    std::memcpy(&chars, message + 4, 4);
    std::intptr_t result = 0;
    if (OnPiece) result = OnPiece(last, static_cast<std::intptr_t>(chars));
    if (!guard) return;
    const char answer = static_cast<char>(result & 0xFF);
    socket->write(&answer, 1);
    socket->flush();
  }
}

// ---- the sender -------------------------------------------------------------------------

bool RelaySend(const std::string& FileName, std::string& Error, int TimeoutMs) {
  QLocalSocket socket;
  socket.connectToServer(QString::fromStdString(RelaySocketName()));
  if (!socket.waitForConnected(TimeoutMs)) {
    Error = ResStr::SRelayNoLumora;
    return false;
  }
  const std::vector<TRelayPiece> pieces = RelayPieces(FileName);
  QByteArray data;
  for (const TRelayPiece& piece : pieces) {
    char message[kMessageSize];
    PutWord(message, piece.Last ? 1u : 0u);
    const auto chars = static_cast<std::uint32_t>(piece.Chars);
    std::memcpy(message + 4, &chars, 4);
    data.append(message, kMessageSize);
  }
  socket.write(data);
  if (!socket.waitForBytesWritten(TimeoutMs)) {
    Error = ResStr::SRelayNotTaken;
    return false;
  }
  qint64 answers = 0;
  while (answers < static_cast<qint64>(pieces.size())) {
    if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(TimeoutMs)) {
      Error = ResStr::SRelayNoAnswer;
      return false;
    }
    answers += socket.readAll().size();
  }
  socket.disconnectFromServer();
  return true;
}
