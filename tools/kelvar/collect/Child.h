#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

#include "FileDescriptor.h"
#include "Guard.h"
#include "Interrupts.h"

namespace kelvar_tool {

/// How a process ended.
struct ChildEnd {
  int status = 0;        ///< the exit status; 128 + the signal that ended it
  int signal = 0;        ///< the signal that ended it; 0: none
  std::size_t left = 0;  ///< the number of processes that it left running; they were killed
};

/// A child process in a session and process group of its own. It is killed with this object or when this process ends.
class Child {
 public:
  struct Start {
    std::vector<std::string> command;
    std::vector<std::string> environment;  ///< NAME=VALUE, added to the environment of this process
    int input = -1;                        ///< the standard input; -1: /dev/null
    bool quiet = true;                     ///< discards the output
    int passed = -1;                       ///< a descriptor of ours that the child gets as `passedAs`; -1: none
    int passedAs = -1;
  };

  /// Throws a ReadError when the command cannot be started.
  Child(const Start& start, const Guard& guard, Interrupts& interrupts);
  /// Kills what is left of the group.
  ~Child();
  Child(const Child&) = delete;  // owns the process
  Child& operator=(const Child&) = delete;

  [[nodiscard]] pid_t process() const noexcept { return process_; }
  /// Waits for the end, and kills all processes that it left running, in its group or outside.
  ChildEnd wait();

 private:
  void endGroup() noexcept;
  std::size_t endWhatIsLeft();

  const Guard& guard_;
  Interrupts& interrupts_;
  pid_t process_ = 0;
  bool ended_ = false;
};

}  // namespace kelvar_tool
