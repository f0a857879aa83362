#include "platform/streaming/SaveFile.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SaveFileInternal.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdio.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string SystemError(int code) { return std::generic_category().message(code); }

// The temporary files being written, so that a signal handler can remove them. A file
// stream left open for writing holds one while other saves come and go.
struct TPendingName {
  char Path[4096];
  volatile std::sig_atomic_t Used;
};
TPendingName gPending[8];

void RememberTemp(const std::string& path) {
  if (path.size() >= sizeof gPending[0].Path) return;
  for (TPendingName& slot : gPending) {
    if (slot.Used) continue;
    std::memcpy(slot.Path, path.c_str(), path.size() + 1);
    std::atomic_signal_fence(std::memory_order_seq_cst);  // the name is complete before the flag says so
    slot.Used = 1;
    return;
  }
}

void ForgetTemp(const std::string& path) {
  for (TPendingName& slot : gPending) {
    if (slot.Used && path == slot.Path) {
      slot.Used = 0;
      return;
    }
  }
}

mode_t NewFileMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The temporary file as the content's writer of SaveFile sees it.
class TSaveStream : public THandleStream {
public:
  explicit TSaveStream(TPendingSave& save) : THandleStream(save.Handle()), FSave(save) {}
  std::int64_t Write(const void* buffer, std::int64_t count) override {
    if (count <= 0) return 0;
    FSave.Write(buffer, count);
    return count;
  }

private:
  TPendingSave& FSave;
};

}  // namespace

// --- TPendingSave --------------------------------------------------------------

TPendingSave::TPendingSave(const std::string& fileName, const TSaveOptions& options)
    : FFileName(fileName), FOptions(options) {
  if (FFileName.empty()) Fail("no file name", ENOENT);
  std::error_code ec;
  fs::path target(FFileName);
  // A link stays a link: the file it points to gets the new content.
  if (fs::is_symlink(target, ec)) {
    const fs::path real = fs::canonical(target, ec);
    if (!ec) target = real;
  }
  struct stat st {};
  const bool exists = ::stat(target.c_str(), &st) == 0;
  if (exists && S_ISDIR(st.st_mode)) Fail(SystemError(EISDIR), EISDIR);
  if (exists && !FOptions.Replace) Fail(SystemError(EEXIST), EEXIST);
  FMode = exists && S_ISREG(st.st_mode) ? (st.st_mode & 07777) : NewFileMode();
  FTarget = target.string();

  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::string temp = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  FHandle = ::mkstemp(temp.data());
  if (FHandle < 0) FailErrno();
  FTemp = temp;
  RememberTemp(FTemp);
}

TPendingSave::~TPendingSave() { Discard(); }

void TPendingSave::Discard() noexcept {
  if (FHandle >= 0) ::close(FHandle);
  FHandle = -1;
  if (!FTemp.empty()) {
    ::unlink(FTemp.c_str());
    ForgetTemp(FTemp);
    FTemp.clear();
  }
}

void TPendingSave::Write(const void* buffer, std::int64_t count) {
  const char* p = static_cast<const char*>(buffer);
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t n = FHandle < 0 ? -1 : ::write(FHandle, p + done, static_cast<std::size_t>(count - done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      FWriteError = FHandle < 0 ? EBADF : n < 0 ? errno : ENOSPC;
      Fail(SystemError(FWriteError), FWriteError);
    }
    done += n;
  }
}

void TPendingSave::Commit() {
  // Whatever fails from here on, the temporary file goes and the target stays.
  struct TDiscardOnFailure {
    TPendingSave& Save;
    bool Done = false;
    ~TDiscardOnFailure() {
      if (!Done) Save.Discard();
    }
  } guard{*this};
  if (FHandle < 0) Fail(SystemError(EBADF), EBADF);
  if (FWriteError) Fail(SystemError(FWriteError), FWriteError);
  if (::fchmod(FHandle, FMode) != 0) FailErrno();
  // The previous content is only given up once the new one is on disk.
  if (::fsync(FHandle) != 0) FailErrno();
  const int handle = FHandle;
  FHandle = -1;
  if (::close(handle) != 0) FailErrno();

  int result;
  if (FOptions.Replace) {
    result = ::rename(FTemp.c_str(), FTarget.c_str());
  } else {
    result = ::renameat2(AT_FDCWD, FTemp.c_str(), AT_FDCWD, FTarget.c_str(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
      // A file system without the no-replace rename: look, then rename.
      std::error_code ec;
      if (fs::exists(fs::symlink_status(FTarget, ec))) {
        errno = EEXIST;
      } else {
        result = ::rename(FTemp.c_str(), FTarget.c_str());
      }
    }
  }
  if (result != 0) FailErrno();
  ForgetTemp(FTemp);
  FTemp.clear();
  guard.Done = true;
}

void TPendingSave::Fail(const std::string& reason, int code) const { throw ESaveError(FFileName, reason, code); }

void TPendingSave::FailErrno() const {
  const int code = errno;
  Fail(SystemError(code), code);
}

// --- SaveFile ------------------------------------------------------------------

ESaveError::ESaveError(const std::string& fileName, const std::string& reason, int errorCode)
    : EFCreateError(Format(RtlConsts::SFCreateError, fileName) + ": " + reason),
      FFileName(fileName),
      FReason(reason),
      FErrorCode(errorCode) {}

void SaveFile(const std::string& fileName, std::string_view bytes, const TSaveOptions& options) {
  SaveFile(fileName, [bytes](TStream& stream) { stream.WriteBuffer(bytes); }, options);
}

void SaveFile(const std::string& fileName, const std::function<void(TStream&)>& write, const TSaveOptions& options) {
  TPendingSave save(fileName, options);
  TSaveStream stream(save);
  try {
    write(stream);
  } catch (const ESaveError&) {
    throw;
  } catch (const Exception& e) {
    save.Fail(e.Message(), 0);
  } catch (const std::bad_alloc&) {
    save.Fail("out of memory", ENOMEM);
  } catch (const std::exception& e) {
    save.Fail(e.what(), 0);
  }
  save.Commit();
}

void RemovePendingSaveTemporary() noexcept {
  for (TPendingName& slot : gPending) {
    if (slot.Used) ::unlink(slot.Path);
  }
}
