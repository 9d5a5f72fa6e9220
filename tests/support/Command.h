#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Scratch.h"

namespace support {

struct Outcome {
  int status = 0;  ///< the exit status; for a process that a signal ended, 128 and the signal
  std::string out;
  std::string err;
};

/// Runs a line of shell in `folder`, in which "$1" is the command and `kelvar` runs it.
inline Outcome shellIn(const std::filesystem::path& folder, const std::string& line) {
  const Scratch caught;
  const std::string out = caught.path("out");
  const std::string err = caught.path("err");
  const std::string script = "PATH=${1%/*}:$PATH\n" + line;
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    if (::chdir(folder.c_str()) == 0) ::execl("/bin/sh", "sh", "-c", script.c_str(), "sh", KELVAR_COMMAND, nullptr);
    ::_exit(127);
  }
  int ended = 0;
  if (child < 0 || ::waitpid(child, &ended, 0) != child) throw std::runtime_error("no process");
  return {WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended), contentOf(out), contentOf(err)};
}

}  // namespace support
