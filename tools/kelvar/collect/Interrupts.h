#pragma once

#include <sys/types.h>

#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>

namespace kelvar_tool {

/// Handles SIGINT, SIGTERM and SIGHUP as long as it lives: ends the watched process group by SIGTERM, and by SIGKILL if
/// that is not enough. A signal that was ignored stays ignored. Also reports when a watched process is stopped, since
/// that looks like one that is still working.
class Interrupts {
 public:
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;  // a thread refers to it
  Interrupts& operator=(const Interrupts&) = delete;

  /// The first signal received; 0: none.
  [[nodiscard]] int signal() const noexcept { return signal_; }
  /// Sets the process group that a signal ends; 0: none.
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
