#include "Guard.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "Diagnosis.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

[[noreturn]] void stand(int pipe, const std::string& folder) {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
  ::setsid();  // the terminal's signals are not for it
  // It holds nothing open that somebody may wait for.
  const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int standard = 0; standard < 3; ++standard) ::dup2(null, standard);
  ::dup2(pipe, 3);
  ::close_range(4, ~0U, 0);
  pid_t group = 0;
  for (pid_t next = 0;;) {
    const ssize_t got = ::read(3, &next, sizeof next);
    if (got < 0 && errno == EINTR) continue;
    if (got != sizeof next) break;
    group = next;
  }
  if (group > 0) ::kill(-group, SIGKILL);
  std::error_code error;
  if (!folder.empty()) std::filesystem::remove_all(folder, error);
  ::_exit(0);
}

}  // namespace

Guard::Guard(const std::string& folder) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  const FileDescriptor reading(ends[0]);
  pipe_ = FileDescriptor(ends[1]);
  process_ = ::fork();
  if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process_ == 0) stand(reading.get(), folder);
}

Guard::~Guard() {
  pipe_ = {};
  while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

void Guard::watch(pid_t group) const noexcept {
  while (::write(pipe_.get(), &group, sizeof group) < 0 && errno == EINTR) continue;
}

std::string makeTemporaryFolder() {
  const char* const told = ::getenv("TMPDIR");
  std::string folder = (told && *told ? std::string(told) : std::string("/tmp")) + "/kelvar-collect-XXXXXX";
  if (::mkdtemp(folder.data())) return std::filesystem::absolute(folder).native();
  throw kelvar_platform::ReadError(
      {.file = folder, .place = "", .expected = std::string("a folder to write to (") + strerror(errno) + ")"});
}

}  // namespace kelvar_tool
