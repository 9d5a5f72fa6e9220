#include "Browser.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "Output.h"

// POSIX wants the program to declare it.
extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace kelvar_tool {

Browser::Browser(const std::string& address) {
  const char* const folder = std::getenv("TMPDIR");
  file_ = std::string(folder && *folder ? folder : "/tmp") + "/kelvar-XXXXXX.html";
  const int descriptor = ::mkstemps(file_.data(), 5);  // readable by this user alone
  if (descriptor < 0) {
    file_.clear();
    return;
  }
  const int failed =
      writeAll(descriptor, "<!DOCTYPE html><meta http-equiv=\"refresh\" content=\"0; url=" + address + "\">\n");
  ::close(descriptor);
  if (failed != 0) return;

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
  }
  std::string program = "xdg-open";
  const std::array<char*, 3> arguments{program.data(), file_.data(), nullptr};
  pid_t child = 0;
  static_cast<void>(::posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments.data(), environ));
  ::posix_spawn_file_actions_destroy(&actions);
}

Browser::~Browser() {
  if (!file_.empty()) ::unlink(file_.c_str());
}

}  // namespace kelvar_tool
