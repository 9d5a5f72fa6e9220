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
  int status = 0;  ///< its exit status; 128 and the signal where one ended it
  int signal = 0;
  std::size_t left = 0;  ///< processes that it left running, which were ended
};

/// A process in a session and a group of its own, which ends with this object, and with this process.
class Child {
 public:
  struct Start {
    std::vector<std::string> command;
    std::vector<std::string> environment;  ///< NAME=VALUE, beside what this process has
    int input = -1;                        ///< its standard input; -1: nothing to read
    bool quiet = true;                     ///< its output goes nowhere
    int passed = -1;                       ///< a descriptor that it finds open as `passedAs`
    int passedAs = -1;
  };

  /// Throws a ReadError where it cannot be started.
  Child(const Start& start, const Guard& guard, Interrupts& interrupts);
  /// Kills what is left of the group.
  ~Child();
  Child(const Child&) = delete;  // owns the process
  Child& operator=(const Child&) = delete;

  [[nodiscard]] pid_t process() const noexcept { return process_; }
  /// Waits for its end, and kills what it left behind, in its group or outside.
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
