#include "GitProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "FileDescriptor.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

/// Overrides user settings that would change the output.
constexpr const char* kSettings[] = {"core.fsmonitor=false", "log.follow=false", "log.showSignature=false",
                                     "diff.relative=false", "color.ui=false"};

/// Starts git and returns its process; 0 when it cannot be started.
pid_t started(std::vector<std::string> arguments, int output) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& one : arguments) pointers.push_back(one.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return 0;
  ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  pid_t child = 0;
  const bool runs = ::posix_spawnp(&child, "git", &actions, nullptr, pointers.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  return runs ? child : 0;
}

/// Passes each field to `take`. Returns false when `take` stopped it or reading failed.
bool takeFields(int output, const std::function<bool(std::string&&)>& take) {
  std::string field;
  std::array<char, 65536> buffer{};
  for (ssize_t got = 0; (got = ::read(output, buffer.data(), buffer.size())) != 0;) {
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    for (ssize_t i = 0; i < got; ++i) {
      const char byte = buffer[static_cast<std::size_t>(i)];
      if (byte != '\0') {
        field += byte;
      } else if (!take(std::exchange(field, {}))) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

bool runGit(const std::string& directory, const std::vector<std::string>& arguments,
            const std::function<bool(std::string&&)>& take) {
  std::vector<std::string> all{"git", "-C", directory, "--literal-pathspecs"};
  for (const char* const setting : kSettings) all.insert(all.end(), {"-c", setting});
  all.insert(all.end(), arguments.begin(), arguments.end());
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const FileDescriptor output(ends[0]);
  FileDescriptor input(ends[1]);
  const pid_t child = started(std::move(all), input.get());
  input = FileDescriptor();
  if (child == 0) return false;
  const bool whole = takeFields(output.get(), take);
  if (!whole) ::kill(child, SIGTERM);  // otherwise it would walk through the rest of the history
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  return whole && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace kelvar_tool
