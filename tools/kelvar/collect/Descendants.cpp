#include "Descendants.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace kelvar_tool {

namespace {

std::string folderOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

/// The kernel lists children by the thread that started them.
std::vector<pid_t> childrenOf(pid_t process) {
  std::vector<pid_t> all;
  std::error_code error;
  std::filesystem::directory_iterator threads(folderOf(process) + "/task", error);
  for (; !error && threads != std::filesystem::directory_iterator(); threads.increment(error)) {
    std::ifstream children(threads->path() / "children");
    for (pid_t child = 0; children >> child;) all.push_back(child);
  }
  return all;
}

/// `R`, `S`, `T` ...; `Z` for a zombie or a process that is gone.
char stateOf(pid_t process) {
  std::string text;
  std::getline(std::ifstream(folderOf(process) + "/stat"), text);
  const std::size_t name = text.rfind(')');  // which may hold anything
  return name == std::string::npos || name + 2 >= text.size() ? 'Z' : text[name + 2];
}

bool isSpared(pid_t process, std::initializer_list<pid_t> spared) {
  return std::find(spared.begin(), spared.end(), process) != spared.end();
}

}  // namespace

void adoptOrphans() noexcept {
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

std::size_t runningChildren(std::initializer_list<pid_t> spared) {
  const std::vector<pid_t> all = childrenOf(::getpid());
  return static_cast<std::size_t>(std::count_if(
      all.begin(), all.end(), [&](pid_t child) { return !isSpared(child, spared) && stateOf(child) != 'Z'; }));
}

std::size_t endAdopted(std::initializer_list<pid_t> spared) {
  std::size_t running = 0;
  for (bool any = true; any;) {
    any = false;
    for (const pid_t child : childrenOf(::getpid())) {
      if (isSpared(child, spared)) continue;
      if (stateOf(child) != 'Z') ++running;
      ::kill(child, SIGKILL);
      while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
      any = true;  // its own children are ours now
    }
  }
  return running;
}

pid_t stoppedAmong(pid_t root) {
  std::vector<pid_t> waiting{root};
  while (!waiting.empty()) {
    const pid_t process = waiting.back();
    waiting.pop_back();
    if (stateOf(process) == 'T') return process;
    const std::vector<pid_t> children = childrenOf(process);
    waiting.insert(waiting.end(), children.begin(), children.end());
  }
  return 0;
}

std::string nameOfProcess(pid_t process) {
  std::string name;
  std::getline(std::ifstream(folderOf(process) + "/comm"), name);
  return name;
}

}  // namespace kelvar_tool
