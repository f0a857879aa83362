#pragma once
// A save kept open across calls, for the file stream that writes a whole file; not for
// use outside platform/streaming (everything else saves with SaveFile).

#include "platform/streaming/SaveFile.h"

#include <cstdint>
#include <string>

// One save: the temporary file from its making to its rename or removal. Destroying it
// before Commit removes the temporary file and leaves the target as it was.
class TPendingSave {
public:
  // Makes the temporary file beside `fileName`; raises ESaveError (no name, a folder, a
  // file that exists when not replacing, a folder the user may not write to).
  TPendingSave(const std::string& fileName, const TSaveOptions& options);
  ~TPendingSave();
  TPendingSave(const TPendingSave&) = delete;
  TPendingSave& operator=(const TPendingSave&) = delete;

  // The temporary file's descriptor, open for reading and writing; -1 after Commit.
  int Handle() const { return FHandle; }
  // Writes all of `count` bytes at the descriptor's position, or raises ESaveError with
  // the system's reason (a full device, a file too large); the error is remembered.
  void Write(const void* buffer, std::int64_t count);
  // The system's error number of the write that failed; 0 while none did.
  int WriteError() const { return FWriteError; }
  // Gives the file the target's permissions, flushes it to disk and renames it over the
  // target; raises ESaveError, the temporary file being gone then.
  void Commit();
  // Raises the ESaveError of this save.
  [[noreturn]] void Fail(const std::string& reason, int code) const;

private:
  [[noreturn]] void FailErrno() const;
  void Discard() noexcept;

  std::string FFileName;
  TSaveOptions FOptions;
  std::string FTarget;  // the file the name leads to (a link's file)
  std::string FTemp;
  int FHandle = -1;
  unsigned FMode = 0;
  int FWriteError = 0;
};
