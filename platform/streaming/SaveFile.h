#pragma once
// Saving a whole file. The content goes to a unique temporary file in the target's
// folder, is flushed to disk, and is renamed over the target only once all of it was
// written. The file keeps its permissions (a new one gets 0666 less the umask); a name
// that is a link saves into the file linked to. On any failure the previous file stays
// as it was and the temporary file is removed. Every file the program writes goes
// through here, a file stream made with fmCreate included.

#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"

#include <functional>
#include <string>
#include <string_view>

// A file could not be saved: "Cannot create file NAME: REASON".
class ESaveError : public EFCreateError {
public:
  ESaveError(const std::string& fileName, const std::string& reason, int errorCode);
  // The file as it was named to the save.
  const std::string& FileName() const { return FFileName; }
  // Why, in words ("Permission denied", "No space left on device", or the message of
  // what the content's writer raised).
  const std::string& Reason() const { return FReason; }
  // The system's error number (EACCES, ENOSPC, EEXIST, ...); 0 when the content's
  // writer failed for another cause.
  int ErrorCode() const { return FErrorCode; }

private:
  std::string FFileName;
  std::string FReason;
  int FErrorCode;
};

struct TSaveOptions {
  // False: an existing file is never touched; the save fails with EEXIST instead.
  bool Replace = true;
};

// Saves `bytes` as the whole content of `fileName`; raises ESaveError.
void SaveFile(const std::string& fileName, std::string_view bytes, const TSaveOptions& options = {});

// Saves what `write` puts into the stream it is given (the stream writes to the
// temporary file, and is only good during the call). Anything `write` raises fails the
// save as an ESaveError whose reason is that error's message.
void SaveFile(const std::string& fileName, const std::function<void(TStream&)>& write,
              const TSaveOptions& options = {});

// Removes the temporary files of the saves under way, if there are any. Safe in a signal
// handler: a program stopped by SIGINT or SIGTERM in the middle of a save calls it so
// that nothing is left behind.
void RemovePendingSaveTemporary() noexcept;
