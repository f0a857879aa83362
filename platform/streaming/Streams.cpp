#include "platform/streaming/Streams.h"

#include "platform/streaming/ResHeader.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/SaveFileInternal.h"
#include "platform/streaming/SysUtils.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void RaiseReadError() { throw EReadError(RtlConsts::SReadError); }
[[noreturn]] void RaiseWriteError() { throw EWriteError(RtlConsts::SWriteError); }

}  // namespace

// --- TStream ---------------------------------------------------------------

std::int64_t TStream::Size() {
  const std::int64_t here = Seek(0, soCurrent);
  const std::int64_t size = Seek(0, soEnd);
  Seek(here, soBeginning);
  return size;
}

void TStream::SetSize(std::int64_t) { throw EStreamError(RtlConsts::SInvalidOperation); }

void TStream::ReadBuffer(void* buffer, std::int64_t count) {
  if (count < 0) RaiseReadError();
  auto* p = static_cast<char*>(buffer);
  while (count > 0) {
    const std::int64_t n = Read(p, count);
    if (n <= 0) RaiseReadError();
    p += n;
    count -= n;
  }
}

void TStream::WriteBuffer(const void* buffer, std::int64_t count) {
  if (count < 0) RaiseWriteError();
  const auto* p = static_cast<const char*>(buffer);
  while (count > 0) {
    const std::int64_t n = Write(p, count);
    if (n <= 0) RaiseWriteError();
    p += n;
    count -= n;
  }
}

std::int64_t TStream::CopyFrom(TStream& source, std::int64_t count) {
  if (count == 0) {
    source.SetPosition(0);
    count = source.Size();
  }
  const std::int64_t total = count;
  char buffer[65536];
  while (count > 0) {
    const std::int64_t chunk = count < static_cast<std::int64_t>(sizeof buffer) ? count : static_cast<std::int64_t>(sizeof buffer);
    source.ReadBuffer(buffer, chunk);
    WriteBuffer(buffer, chunk);
    count -= chunk;
  }
  return total;
}

std::string TStream::ReadRest() {
  std::string result;
  try {
    const std::int64_t here = Position();
    const std::int64_t size = Size();
    if (size > here) result.reserve(static_cast<std::size_t>(size - here));
  } catch (const EStreamError&) {
    // A pipe has no size: read until it ends.
  }
  char buffer[65536];
  for (;;) {
    const std::int64_t n = Read(buffer, sizeof buffer);
    if (n <= 0) break;
    result.append(buffer, static_cast<std::size_t>(n));
  }
  return result;
}

void TStream::ReadResHeader() {
  // The header is at most 80 bytes; read what there is and let the common rule decide.
  const std::int64_t start = Position();
  char header[ResHeaderProbeSize];
  std::int64_t got = 0;
  while (got < static_cast<std::int64_t>(sizeof header)) {
    const std::int64_t n = Read(header + got, static_cast<std::int64_t>(sizeof header) - got);
    if (n <= 0) break;
    got += n;
  }
  const std::size_t offset = ResHeaderLength(std::string_view(header, static_cast<std::size_t>(got)));
  SetPosition(start + static_cast<std::int64_t>(offset));
}

// --- THandleStream / TFileStream -------------------------------------------

std::int64_t THandleStream::Read(void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  for (;;) {
    const ssize_t n = ::read(FHandle, buffer, static_cast<std::size_t>(count));
    if (n >= 0) return n;
    if (errno != EINTR) return 0;
  }
}

std::int64_t THandleStream::Write(const void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  for (;;) {
    const ssize_t n = ::write(FHandle, buffer, static_cast<std::size_t>(count));
    if (n >= 0) return n;
    if (errno != EINTR) return 0;
  }
}

std::int64_t THandleStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const int whence = origin == soBeginning ? SEEK_SET : origin == soCurrent ? SEEK_CUR : SEEK_END;
  const off_t result = ::lseek(FHandle, static_cast<off_t>(offset), whence);
  if (result < 0) throw EStreamError(RtlConsts::SSeekNotImplemented);
  return result;
}

void THandleStream::SetSize(std::int64_t size) {
  if (size < 0 || ::ftruncate(FHandle, static_cast<off_t>(size)) != 0) RaiseWriteError();
  if (Position() > size) SetPosition(size);
}

TFileStream::TFileStream(const std::string& fileName, std::uint16_t mode)
    : THandleStream(-1), FFileName(fileName), FUncaught(std::uncaught_exceptions()) {
  if (mode == fmCreate) {
    FSave = std::make_unique<TPendingSave>(fileName, TSaveOptions{});
    FHandle = FSave->Handle();
    return;
  }
  int flags = O_RDONLY;
  if ((mode & 3) == fmOpenWrite) flags = O_WRONLY;
  if ((mode & 3) == fmOpenReadWrite) flags = O_RDWR;
  FHandle = ::open(fileName.c_str(), flags | O_CLOEXEC);
  if (FHandle < 0) throw EFOpenError(Format(RtlConsts::SFOpenError, fileName));
  struct stat st {};
  if (::fstat(FHandle, &st) == 0 && S_ISDIR(st.st_mode)) {
    ::close(FHandle);
    FHandle = -1;
    throw EFOpenError(Format(RtlConsts::SFOpenError, fileName));
  }
}

TFileStream::~TFileStream() {
  if (FSave) {
    // Only a content written to its end replaces the file.
    if (FSave->WriteError() == 0 && std::uncaught_exceptions() <= FUncaught) {
      try {
        FSave->Commit();
      } catch (const ESaveError&) {
        // Nothing can be raised from here; the previous file is kept.
      }
    }
    return;  // the save closes or removes its temporary file
  }
  if (FHandle >= 0) ::close(FHandle);
}

std::int64_t TFileStream::Write(const void* buffer, std::int64_t count) {
  if (!FSave) return THandleStream::Write(buffer, count);
  if (count <= 0) return 0;
  FSave->Write(buffer, count);
  return count;
}

void TFileStream::Close() {
  const int handle = FHandle;
  FHandle = -1;
  if (FSave) {
    const std::unique_ptr<TPendingSave> save = std::move(FSave);
    save->Commit();
  } else if (handle >= 0) {
    ::close(handle);
  }
}

// --- memory streams ----------------------------------------------------------

std::int64_t TCustomMemoryStream::Read(void* buffer, std::int64_t count) {
  if (count <= 0 || FPosition >= FSize) return 0;
  std::size_t n = FSize - FPosition;
  if (static_cast<std::uint64_t>(count) < n) n = static_cast<std::size_t>(count);
  std::memcpy(buffer, FMemory + FPosition, n);
  FPosition += n;
  return static_cast<std::int64_t>(n);
}

std::int64_t TCustomMemoryStream::Write(const void*, std::int64_t) { RaiseWriteError(); }

std::int64_t TCustomMemoryStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  std::int64_t base = 0;
  if (origin == soCurrent) base = static_cast<std::int64_t>(FPosition);
  if (origin == soEnd) base = static_cast<std::int64_t>(FSize);
  std::int64_t target = base + offset;
  if (target < 0) target = 0;  // no position before the start
  FPosition = static_cast<std::size_t>(target);
  return target;
}

std::string TCustomMemoryStream::ReadRest() {
  if (FPosition >= FSize) return {};
  std::string result(FMemory + FPosition, FSize - FPosition);
  FPosition = FSize;
  return result;
}

void TCustomMemoryStream::SaveToStream(TStream& stream) const { stream.WriteBuffer(View()); }

void TCustomMemoryStream::SaveToFile(const std::string& fileName) const { SaveFile(fileName, View()); }

TMemoryStream::TMemoryStream(std::string bytes) : FData(std::move(bytes)) { Sync(); }

std::int64_t TMemoryStream::Write(const void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  const std::size_t end = FPosition + static_cast<std::size_t>(count);
  if (end < FPosition) throw EStreamError(RtlConsts::SMemoryStreamError);
  if (end > FData.size()) {
    if (end > FData.capacity()) FData.reserve(std::max(end, FData.capacity() * 2));
    FData.resize(end);
  }
  std::memcpy(FData.data() + FPosition, buffer, static_cast<std::size_t>(count));
  FPosition = end;
  Sync();
  return count;
}

void TMemoryStream::SetSize(std::int64_t size) {
  if (size < 0) throw EStreamError(RtlConsts::SMemoryStreamError);
  FData.resize(static_cast<std::size_t>(size));
  if (FPosition > FData.size()) FPosition = FData.size();
  Sync();
}

void TMemoryStream::Clear() {
  FData.clear();
  FPosition = 0;
  Sync();
}

void TMemoryStream::LoadFromStream(TStream& stream) {
  stream.SetPosition(0);
  SetData(stream.ReadRest());
}

void TMemoryStream::LoadFromFile(const std::string& fileName) { SetData(ReadFileToString(fileName)); }

void TMemoryStream::Reserve(std::size_t size) {
  FData.reserve(size);
  Sync();
}

void TMemoryStream::SetData(std::string bytes) {
  FData = std::move(bytes);
  FPosition = 0;
  Sync();
}

std::string TMemoryStream::TakeData() {
  std::string result = std::move(FData);
  FData = std::string();
  FPosition = 0;
  Sync();
  return result;
}

std::string TStringStream::ReadString(std::int64_t count) {
  if (count <= 0 || FPosition >= FSize) return {};
  std::size_t n = FSize - FPosition;
  if (static_cast<std::uint64_t>(count) < n) n = static_cast<std::size_t>(count);
  std::string result(FMemory + FPosition, n);
  FPosition += n;
  return result;
}

// --- whole files -------------------------------------------------------------

std::string ReadFileToString(const std::string& fileName) {
  // Without O_NONBLOCK a pipe would wait for a writer; only a regular file is read.
  const int handle = ::open(fileName.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (handle < 0) throw EFOpenError(Format(RtlConsts::SFOpenError, fileName));
  struct stat st {};
  if (::fstat(handle, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(handle);
    throw EFOpenError(Format(RtlConsts::SFOpenError, fileName));
  }
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(st.st_size));
  char buffer[65536];
  for (;;) {
    const ssize_t n = ::read(handle, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      ::close(handle);
      RaiseReadError();
    }
    if (n == 0) break;
    bytes.append(buffer, static_cast<std::size_t>(n));
  }
  ::close(handle);
  return bytes;
}
