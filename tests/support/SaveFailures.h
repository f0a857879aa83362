#pragma once
// What a save meets when things go wrong: a device that fills up after a number of
// bytes, and a folder the user may not write to (also when the tests run as root).

#include <sys/resource.h>
#include <sys/wait.h>
#include <grp.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace lumora::test {

// While it lives, every file this process writes fails past `bytes` bytes (EFBIG), as
// on a device that is full.
class TFailingDevice {
public:
  explicit TFailingDevice(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &FOld);
    FOldHandler = ::signal(SIGXFSZ, SIG_IGN);  // the write fails instead of ending the process
    rlimit limit = FOld;
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~TFailingDevice() {
    ::setrlimit(RLIMIT_FSIZE, &FOld);
    ::signal(SIGXFSZ, FOldHandler);
  }
  TFailingDevice(const TFailingDevice&) = delete;
  TFailingDevice& operator=(const TFailingDevice&) = delete;

private:
  rlimit FOld{};
  sighandler_t FOldHandler;
};

// Runs `f` in a child process as the unprivileged user "nobody" (when the tests run as
// root; otherwise as the same user) and returns what `f` returned. The folders `f` uses
// must be open to that user.
inline std::string RunAsOtherUser(const std::function<std::string()>& f) {
  int pipe[2];
  if (::pipe(pipe) != 0) return "(no pipe)";
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(pipe[0]);
    std::string result;
    if (::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0)) {
      try {
        result = f();
      } catch (const std::exception& e) {
        result = std::string("(raised: ") + e.what() + ")";
      }
    } else {
      result = "(cannot change user)";
    }
    std::size_t done = 0;
    while (done < result.size()) {
      const ssize_t n = ::write(pipe[1], result.data() + done, result.size() - done);
      if (n <= 0) break;
      done += static_cast<std::size_t>(n);
    }
    ::_exit(0);
  }
  ::close(pipe[1]);
  std::string result;
  char buffer[4096];
  ssize_t n;
  while ((n = ::read(pipe[0], buffer, sizeof buffer)) > 0) result.append(buffer, static_cast<std::size_t>(n));
  ::close(pipe[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  return result;
}

// What a program said on standard error and how it ended.
struct TProgramRun {
  int ExitStatus = -1;  // -1: it did not exit normally
  std::string Errors;
};

// Runs the program `argv[0]` as the unprivileged user "nobody" (when the tests run as
// root; otherwise as the same user). Code that draws with Qt must run this way rather
// than inside RunAsOtherUser: a forked copy of a Qt process has lost the threads Qt's
// painting waits for.
inline TProgramRun RunProgramAsOtherUser(const std::vector<std::string>& argv) {
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  TProgramRun run;
  int pipe[2];
  if (argv.empty() || ::pipe(pipe) != 0) return run;
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(pipe[0]);
    ::dup2(pipe[1], STDERR_FILENO);
    if (::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(65534) == 0 && ::setuid(65534) == 0)) {
      ::execv(args[0], args.data());
    }
    ::_exit(127);
  }
  ::close(pipe[1]);
  char buffer[4096];
  ssize_t n;
  while ((n = ::read(pipe[0], buffer, sizeof buffer)) > 0) run.Errors.append(buffer, static_cast<std::size_t>(n));
  ::close(pipe[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) run.ExitStatus = WEXITSTATUS(status);
  return run;
}

// Opens `folder` and the folders above it up to the system's temporary folder to other
// users (read and search), and makes `folder` read-only for them.
inline void MakeReadOnlyForOthers(const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  const fs::perms open = fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                         fs::perms::others_read | fs::perms::others_exec;
  const fs::path top = fs::temp_directory_path();
  for (fs::path p = folder; !p.empty() && p != top && p != p.root_path(); p = p.parent_path()) {
    fs::permissions(p, open);
  }
}

// The names in a folder, sorted: a temporary file left behind shows here.
inline std::vector<std::string> FolderEntries(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace lumora::test
