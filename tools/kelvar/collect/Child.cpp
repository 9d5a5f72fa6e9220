#include "Child.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>

#include "Descendants.h"
#include "Diagnosis.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> all;
  all.reserve(texts.size() + 1);
  for (std::string& text : texts) all.push_back(text.data());
  all.push_back(nullptr);
  return all;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& own) {
  std::vector<std::string> all;
  for (char** one = environ; *one; ++one) {
    const std::string_view text = *one;
    const std::string_view name = text.substr(0, text.find('='));
    const bool replaced = std::any_of(own.begin(), own.end(), [&](const std::string& entry) {
      return entry.size() > name.size() && entry[name.size()] == '=' && entry.starts_with(name);
    });
    if (!replaced) all.emplace_back(text);
  }
  all.insert(all.end(), own.begin(), own.end());
  return all;
}

/// Runs in the child between fork and exec, so it may only call async-signal-safe functions. Returns the errno if the
/// program cannot be started.
int become(const Child::Start& start, pid_t parent, char* const* arguments, char* const* environment) {
  // In a session of its own the program has no terminal. A terminal would stop it when it reads from it in the
  // background, or writes to it under `stty tostop`.
  ::setsid();
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int null = ::open("/dev/null", O_RDWR);
  if (null < 0 || ::dup2(start.input < 0 ? null : start.input, STDIN_FILENO) < 0) return errno;
  if (start.quiet && (::dup2(null, STDOUT_FILENO) < 0 || ::dup2(null, STDERR_FILENO) < 0)) return errno;
  if (null > STDERR_FILENO) ::close(null);
  if (start.passed == start.passedAs && start.passed >= 0) ::fcntl(start.passed, F_SETFD, 0);
  if (start.passed != start.passedAs && ::dup2(start.passed, start.passedAs) < 0) return errno;
  ::execvpe(arguments[0], arguments, environment);
  return errno;
}

}  // namespace

Child::Child(const Start& start, const Guard& guard, Interrupts& interrupts) : guard_(guard), interrupts_(interrupts) {
  std::vector<std::string> command = start.command;
  std::vector<std::string> environment = environmentWith(start.environment);
  const std::vector<char*> argumentPointers = pointers(command);
  const std::vector<char*> environmentPointers = pointers(environment);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  const FileDescriptor reading(ends[0]);
  // Moved above the descriptors that the child gets.
  FileDescriptor writing(::fcntl(ends[1], F_DUPFD_CLOEXEC, 64));
  ::close(ends[1]);
  const pid_t parent = ::getpid();
  process_ = ::fork();
  if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process_ == 0) {
    const int error = become(start, parent, argumentPointers.data(), environmentPointers.data());
    static_cast<void>(!::write(writing.get(), &error, sizeof error));
    ::_exit(127);
  }
  guard_.watch(process_);
  interrupts_.watch(process_);
  writing = {};
  int error = 0;
  ssize_t got = 0;
  while ((got = ::read(reading.get(), &error, sizeof error)) < 0 && errno == EINTR) continue;
  if (got == sizeof error) {
    wait();
    throw kelvar_platform::ReadError({.file = command.front(),
                                      .place = "",
                                      .expected = std::string("a program that runs (") + strerror(error) + ")"});
  }
}

Child::~Child() {
  if (ended_) return;
  endGroup();
  wait();
}

ChildEnd Child::wait() {
  // Wait without reaping first: until it is reaped, its number cannot belong to another process when we kill the group.
  siginfo_t info{};
  while (::waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) continue;
  interrupts_.watch(0);
  const std::size_t left = endWhatIsLeft();
  guard_.watch(0);
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
  ended_ = true;
  if (WIFSIGNALED(status)) return {.status = 128 + WTERMSIG(status), .signal = WTERMSIG(status), .left = left};
  return {.status = WEXITSTATUS(status), .signal = 0, .left = left};
}

std::size_t Child::endWhatIsLeft() {
  const std::size_t inGroup = runningChildren({process_, guard_.process()});
  endGroup();
  return std::max(inGroup, endAdopted({process_, guard_.process()}));
}

void Child::endGroup() noexcept {
  ::kill(-process_, SIGKILL);
}

}  // namespace kelvar_tool
