#include "platform/streaming/SaveFile.h"

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

// The temporary file being written, so that a signal handler can remove it.
char gPendingTemp[4096];
volatile std::sig_atomic_t gHasPendingTemp = 0;

void RememberTemp(const std::string& path) {
  gHasPendingTemp = 0;
  if (path.size() >= sizeof gPendingTemp) return;
  std::memcpy(gPendingTemp, path.c_str(), path.size() + 1);
  std::atomic_signal_fence(std::memory_order_seq_cst);  // the name is complete before the flag says so
  gHasPendingTemp = 1;
}

void ForgetTemp() { gHasPendingTemp = 0; }

mode_t NewFileMode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The temporary file as the content's writer sees it: every write goes all the way or
// raises, and the system's reason is kept for the error.
class TSaveStream : public THandleStream {
public:
  explicit TSaveStream(int handle) : THandleStream(handle) {}
  std::int64_t Write(const void* buffer, std::int64_t count) override {
    const char* p = static_cast<const char*>(buffer);
    std::int64_t done = 0;
    while (done < count) {
      const ssize_t n = ::write(FHandle, p + done, static_cast<std::size_t>(count - done));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        FError = n < 0 ? errno : ENOSPC;
        break;
      }
      done += n;
    }
    return done;
  }
  int Error() const { return FError; }

private:
  int FError = 0;
};

// One save: the temporary file from its making to its rename or removal.
class TSave {
public:
  TSave(const std::string& fileName, const TSaveOptions& options) : FFileName(fileName), FOptions(options) {}
  ~TSave() {
    if (FHandle >= 0) ::close(FHandle);
    if (!FTemp.empty()) {
      ::unlink(FTemp.c_str());
      ForgetTemp();
    }
  }
  TSave(const TSave&) = delete;
  TSave& operator=(const TSave&) = delete;

  void Run(const std::function<void(TStream&)>& write) {
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
    const mode_t mode = exists && S_ISREG(st.st_mode) ? (st.st_mode & 07777) : NewFileMode();

    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::string temp = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    ForgetTemp();
    FHandle = ::mkstemp(temp.data());
    if (FHandle < 0) FailErrno();
    FTemp = temp;
    RememberTemp(FTemp);

    TSaveStream stream(FHandle);
    try {
      write(stream);
    } catch (const Exception& e) {
      Fail(stream.Error() ? SystemError(stream.Error()) : e.Message(), stream.Error());
    } catch (const std::bad_alloc&) {
      Fail("out of memory", ENOMEM);
    } catch (const std::exception& e) {
      Fail(stream.Error() ? SystemError(stream.Error()) : std::string(e.what()), stream.Error());
    }
    if (::fchmod(FHandle, mode) != 0) FailErrno();
    // The previous content is only given up once the new one is on disk.
    if (::fsync(FHandle) != 0) FailErrno();
    const int handle = FHandle;
    FHandle = -1;
    if (::close(handle) != 0) FailErrno();

    int result;
    if (FOptions.Replace) {
      result = ::rename(FTemp.c_str(), target.c_str());
    } else {
      result = ::renameat2(AT_FDCWD, FTemp.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
      if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
        // A file system without the no-replace rename: look, then rename.
        if (fs::exists(fs::symlink_status(target, ec))) {
          errno = EEXIST;
        } else {
          result = ::rename(FTemp.c_str(), target.c_str());
        }
      }
    }
    if (result != 0) FailErrno();
    FTemp.clear();
    ForgetTemp();
  }

private:
  [[noreturn]] void Fail(const std::string& reason, int code) { throw ESaveError(FFileName, reason, code); }
  [[noreturn]] void FailErrno() {
    const int code = errno;
    Fail(SystemError(code), code);
  }

  std::string FFileName;
  TSaveOptions FOptions;
  std::string FTemp;
  int FHandle = -1;
};

}  // namespace

ESaveError::ESaveError(const std::string& fileName, const std::string& reason, int errorCode)
    : EFCreateError(Format("Cannot create file %s: %s", fileName, reason)),
      FFileName(fileName),
      FReason(reason),
      FErrorCode(errorCode) {}

void SaveFile(const std::string& fileName, std::string_view bytes, const TSaveOptions& options) {
  SaveFile(fileName, [bytes](TStream& stream) { stream.WriteBuffer(bytes); }, options);
}

void SaveFile(const std::string& fileName, const std::function<void(TStream&)>& write, const TSaveOptions& options) {
  TSave save(fileName, options);
  save.Run(write);
}

void RemovePendingSaveTemporary() noexcept {
  if (gHasPendingTemp) ::unlink(gPendingTemp);
}
