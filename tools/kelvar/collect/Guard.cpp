#include "Guard.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "Diagnosis.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

constexpr const char* kFolderName = "kelvar-collect-";

std::string temporaryRoot() {
  const char* const told = ::getenv("TMPDIR");
  return told && *told ? told : "/tmp";
}

/// Empty when another process holds the lock.
FileDescriptor lockedFolder(const std::string& path) {
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder || ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) return {};
  return folder;
}

/// Whether this is a folder of this user that is too old to be one that was created but not locked yet.
bool isLeft(const std::string& path) {
  constexpr std::time_t kJustMade = 10;
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid()) return false;
  return status.st_mtim.tv_sec + kJustMade < std::time(nullptr);
}

void remove(const std::string& folder) {
  std::error_code error;
  if (!folder.empty()) std::filesystem::remove_all(folder, error);
}

/// The guard process: waits until the other end of the socket is closed.
[[noreturn]] void runGuard(int socket, const std::string& folder) {
  ::prctl(PR_SET_NAME, "collect-guard");  // so that `killall kelvar` spares it
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
  ::setsid();  // no signals from the terminal
  // Keep no descriptor open whose end somebody may wait for.
  const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int standard = 0; standard < 3; ++standard) ::dup2(null, standard);
  ::dup2(socket, 3);
  ::close_range(4, ~0U, 0);
  pid_t group = 0;
  for (pid_t next = 0;;) {
    const ssize_t got = ::read(3, &next, sizeof next);
    if (got < 0 && errno == EINTR) continue;
    if (got != sizeof next) break;
    group = next;
  }
  if (group > 0) ::kill(-group, SIGKILL);
  remove(folder);
  ::_exit(0);
}

}  // namespace

Guard::Guard(const std::string& folder) : folder_(folder) {
  std::array<int, 2> ends{};
  // A socket and no pipe: writing to it raises no signal if the guard was killed.
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  const FileDescriptor reading(ends[0]);
  socket_ = FileDescriptor(ends[1]);
  process_ = ::fork();
  if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process_ == 0) runGuard(reading.get(), folder);
}

Guard::~Guard() {
  socket_ = {};
  while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  remove(folder_);  // it is still there if the guard was killed
}

void Guard::watch(pid_t group) const noexcept {
  while (::send(socket_.get(), &group, sizeof group, MSG_NOSIGNAL) < 0 && errno == EINTR) continue;
}

TemporaryFolder::TemporaryFolder() : path_(temporaryRoot() + '/' + kFolderName + "XXXXXX") {
  if (::mkdtemp(path_.data())) {
    path_ = std::filesystem::absolute(path_).native();
    lock_ = lockedFolder(path_);
    return;
  }
  throw kelvar_platform::ReadError(
      {.file = path_, .place = "", .expected = std::string("a folder to write to (") + strerror(errno) + ")"});
}

std::vector<std::string> removeLeftFolders() {
  std::vector<std::string> removed;
  std::error_code error;
  std::filesystem::directory_iterator entries(temporaryRoot(), error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    const std::string path = entries->path().native();
    if (!entries->path().filename().native().starts_with(kFolderName) || !isLeft(path)) continue;
    // Locked until it is removed, so that two collects at the same time do not both report it.
    const FileDescriptor lock = lockedFolder(path);
    std::error_code failure;
    if (lock && std::filesystem::remove_all(path, failure) != static_cast<std::uintmax_t>(-1)) removed.push_back(path);
  }
  return removed;
}

}  // namespace kelvar_tool
