#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelvar_test {

/// A folder of the test's own, gone when it ends.
class Scratch {
 public:
  Scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "kelvar-XXXXXX").native();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no scratch folder");
    path_ = name;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  void write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
  }

 private:
  std::filesystem::path path_;
};

inline std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

struct Outcome {
  int status = 0;  ///< the exit status; for a process that a signal ended, 128 and the signal
  std::string out;
  std::string err;
};

/// Runs a program in `folder` and waits for it.
inline Outcome runProgram(const std::filesystem::path& folder, std::vector<std::string> arguments) {
  const Scratch caught;
  const std::string out = caught.path() / "out";
  const std::string err = caught.path() / "err";
  std::vector<char*> raw;
  for (std::string& argument : arguments) raw.push_back(argument.data());
  raw.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    if (::chdir(folder.c_str()) == 0) ::execv(raw[0], raw.data());
    ::_exit(127);
  }
  int ended = 0;
  if (child < 0 || ::waitpid(child, &ended, 0) != child) throw std::runtime_error("no process");
  return {WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended), contentOf(out), contentOf(err)};
}

/// Runs the command in `folder`.
inline Outcome kelvarIn(const std::filesystem::path& folder, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), KELVAR_COMMAND);
  return runProgram(folder, std::move(arguments));
}

/// Runs a line of shell in `folder`, in which "$1" is the command.
inline Outcome shellIn(const std::filesystem::path& folder, const std::string& line) {
  return runProgram(folder, {"/bin/sh", "-c", line, "sh", KELVAR_COMMAND});
}

}  // namespace kelvar_test
