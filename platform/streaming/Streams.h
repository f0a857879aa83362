#pragma once
// Byte streams: the abstract TStream, files, memory, and a read-only view of bytes.
// Reads and writes past what is there raise the runtime's stream errors.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// Where a seek counts from.
enum TSeekOrigin { soBeginning = 0, soCurrent = 1, soEnd = 2 };

// Open modes of TFileStream (the share bits are accepted and ignored on Linux).
inline constexpr std::uint16_t fmCreate = 0xFFFF;        // a whole new content, read and write (see TFileStream)
inline constexpr std::uint16_t fmOpenRead = 0x0000;      // existing file, read only
inline constexpr std::uint16_t fmOpenWrite = 0x0001;     // existing file, write only
inline constexpr std::uint16_t fmOpenReadWrite = 0x0002; // existing file, read and write
inline constexpr std::uint16_t fmShareExclusive = 0x0010;
inline constexpr std::uint16_t fmShareDenyWrite = 0x0020;
inline constexpr std::uint16_t fmShareDenyRead = 0x0030;
inline constexpr std::uint16_t fmShareDenyNone = 0x0040;

// A sequence of bytes with a position.
class TStream {
public:
  virtual ~TStream() = default;

  // Reads up to `count` bytes; returns how many were read (0 at the end).
  virtual std::int64_t Read(void* buffer, std::int64_t count) = 0;
  // Writes up to `count` bytes; returns how many were written.
  virtual std::int64_t Write(const void* buffer, std::int64_t count) = 0;
  // Moves the position; returns the new position.
  virtual std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) = 0;

  // The current position from the start.
  std::int64_t Position() { return Seek(0, soCurrent); }
  // Moves to an absolute position.
  void SetPosition(std::int64_t position) { Seek(position, soBeginning); }
  // The total length; the position is left where it was.
  virtual std::int64_t Size();
  // Truncates or extends; the default raises EStreamError.
  virtual void SetSize(std::int64_t size);

  // Reads exactly `count` bytes or raises EReadError "Stream read error".
  void ReadBuffer(void* buffer, std::int64_t count);
  // Writes exactly `count` bytes or raises EWriteError "Stream write error".
  void WriteBuffer(const void* buffer, std::int64_t count);
  // Writes all of `bytes` or raises EWriteError.
  void WriteBuffer(std::string_view bytes) { WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size())); }
  // Copies `count` bytes from `source`; a count of 0 copies all of it from its start. Returns the count.
  std::int64_t CopyFrom(TStream& source, std::int64_t count);
  // Everything from the position to the end, leaving the position at the end.
  virtual std::string ReadRest();

  // Skips the 16-bit resource header at the position (see ReadResHeader in ResHeader.h);
  // raises EInvalidImage "Invalid stream format" when there is none.
  void ReadResHeader();
};

// A stream over an open file descriptor; the descriptor is not closed by this class.
class THandleStream : public TStream {
public:
  // Wraps a descriptor opened elsewhere.
  explicit THandleStream(int handle) : FHandle(handle) {}
  std::int64_t Read(void* buffer, std::int64_t count) override;
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  void SetSize(std::int64_t size) override;
  // The descriptor.
  int Handle() const { return FHandle; }

protected:
  int FHandle;
};

class TPendingSave;

// A file opened by name; closed when the stream is destroyed.
//
// With fmCreate the stream writes a new content for the whole file the way SaveFile does
// (see SaveFile.h): the bytes go to a temporary file beside it, and the file only changes
// when the stream is closed after everything was written. A stream destroyed after a
// write failed, or while an exception is under way, leaves the file as it was and no
// temporary file behind. Close says whether the save worked; a destructor cannot, so
// whoever cares about the answer calls Close.
class TFileStream : public THandleStream {
public:
  // Opens `fileName` with an fm* mode; raises EFOpenError "Cannot open file %s", or for
  // fmCreate ESaveError "Cannot create file %s: REASON".
  TFileStream(const std::string& fileName, std::uint16_t mode);
  ~TFileStream() override;
  TFileStream(const TFileStream&) = delete;
  TFileStream& operator=(const TFileStream&) = delete;
  // The name the file was opened with.
  const std::string& FileName() const { return FFileName; }
  // With fmCreate, a failed write raises ESaveError naming the file and the reason.
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  // Closes the file; with fmCreate, puts the new content in place and raises ESaveError
  // when it cannot (the previous file is then kept). The stream can do nothing after.
  void Close();

private:
  std::string FFileName;
  std::unique_ptr<TPendingSave> FSave;  // fmCreate: the save under way
  int FUncaught = 0;                    // exceptions under way when the stream was made
};

// Bytes in memory read through a stream. This base class reads a block it does not own
// (a view); writing to a view raises EWriteError.
class TCustomMemoryStream : public TStream {
public:
  // An empty view.
  TCustomMemoryStream() = default;
  // A read-only view of `bytes`; the bytes must outlive the stream.
  explicit TCustomMemoryStream(std::string_view bytes) : FMemory(bytes.data()), FSize(bytes.size()) {}
  std::int64_t Read(void* buffer, std::int64_t count) override;
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(FSize); }
  std::string ReadRest() override;
  // The first byte of the block.
  const char* Memory() const { return FMemory; }
  // The whole block as a view, whatever the position.
  std::string_view View() const { return {FMemory, FSize}; }
  // Writes the whole block to `stream`.
  void SaveToStream(TStream& stream) const;
  // Saves the whole block as the file (see SaveFile.h); raises ESaveError.
  void SaveToFile(const std::string& fileName) const;

protected:
  void SetPointer(const char* memory, std::size_t size) { FMemory = memory; FSize = size; }
  const char* FMemory = "";
  std::size_t FSize = 0;
  std::size_t FPosition = 0;
};

// A growable block of bytes it owns.
class TMemoryStream : public TCustomMemoryStream {
public:
  TMemoryStream() = default;
  // Starts with a copy of `bytes`, positioned at 0.
  explicit TMemoryStream(std::string bytes);
  TMemoryStream(const TMemoryStream&) = delete;
  TMemoryStream& operator=(const TMemoryStream&) = delete;
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  void SetSize(std::int64_t size) override;
  // The bytes, writable.
  char* Memory() { return FData.data(); }
  // Empties the stream and sets the position to 0.
  void Clear();
  // Replaces the content with all of `stream` (from its start); the position becomes 0.
  void LoadFromStream(TStream& stream);
  // Replaces the content with a file's bytes; raises EFOpenError.
  void LoadFromFile(const std::string& fileName);
  // Reserves room for `size` bytes without changing the size.
  void Reserve(std::size_t size);
  // Takes `bytes` as the whole content without copying; the position becomes 0.
  void SetData(std::string bytes);
  // Gives the content away (the stream is left empty).
  std::string TakeData();
  // A copy of the content.
  std::string DataString() const { return std::string(View()); }

private:
  void Sync() { SetPointer(FData.data(), FData.size()); }
  std::string FData;
};

// A memory stream made from, and read back as, a string.
class TStringStream : public TMemoryStream {
public:
  // Starts with `data`, positioned at 0.
  explicit TStringStream(std::string data = {}) : TMemoryStream(std::move(data)) {}
  // Reads up to `count` bytes as a string.
  std::string ReadString(std::int64_t count);
  // Writes `text` at the position.
  void WriteString(std::string_view text) { WriteBuffer(text); }
};

// Reads a whole regular file into memory; raises EFOpenError "Cannot open file %s" (also
// for a folder, a pipe or a device) or EReadError.
std::string ReadFileToString(const std::string& fileName);
