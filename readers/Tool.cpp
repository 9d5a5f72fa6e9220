#include "Tool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace kelvar_readers {

namespace {

struct Actions {
  Actions() { posix_spawn_file_actions_init(&actions); }
  ~Actions() { posix_spawn_file_actions_destroy(&actions); }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;
  posix_spawn_file_actions_t actions{};
};

}  // namespace

Tool::Tool(const std::vector<std::string>& command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  output_ = kelvar_platform::FileDescriptor(ends[0]);
  const kelvar_platform::FileDescriptor writing(ends[1]);
  Actions actions;
  posix_spawn_file_actions_adddup2(&actions.actions, ends[1], 1);
  posix_spawn_file_actions_addopen(&actions.actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions.actions, 2, "/dev/null", O_WRONLY, 0);
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_t process = 0;
  if (posix_spawnp(&process, arguments[0], &actions.actions, nullptr, arguments.data(), environ) == 0) {
    process_ = process;
  }
}

Tool::~Tool() {
  output_ = {};  // a tool that still writes is ended by SIGPIPE
  (void)wait();
}

int Tool::wait() {
  if (process_ <= 0) return 127;
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
  process_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace kelvar_readers
