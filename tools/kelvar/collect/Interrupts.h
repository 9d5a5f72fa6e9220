#pragma once

#include <sys/types.h>

#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>

namespace kelvar_tool {

/// Takes SIGINT, SIGTERM and SIGHUP as long as it lives, and ends the process group that is being waited for: by
/// SIGTERM, and by SIGKILL if that does not end it. A signal that was ignored stays ignored. Says where a process that
/// is waited for is stopped, which looks like one that works on.
class Interrupts {
 public:
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;  // a thread refers to it
  Interrupts& operator=(const Interrupts&) = delete;

  /// The signal that came first; 0: none.
  [[nodiscard]] int signal() const noexcept { return signal_; }
  /// The process group that a signal ends; 0: none.
  void watch(pid_t group);

 private:
  void wait();
  void endGroup(int signal);
  void lookForStopped();

  sigset_t taken_{};
  sigset_t before_{};
  std::mutex mutex_;
  pid_t group_ = 0;
  bool saidStopped_ = false;  // of this group
  std::atomic<int> signal_ = 0;
  std::atomic<bool> done_ = false;
  std::thread thread_;
};

}  // namespace kelvar_tool
