#include "Interrupts.h"

#include <signal.h>

#include <chrono>

namespace kelvar_tool {

Interrupts::Interrupts() {
  sigemptyset(&taken_);
  for (const int one : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(one, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) sigaddset(&taken_, one);
  }
  pthread_sigmask(SIG_BLOCK, &taken_, &before_);
  thread_ = std::thread([this] { wait(); });
}

Interrupts::~Interrupts() {
  done_ = true;
  thread_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interrupts::watch(pid_t group) {
  const std::lock_guard lock(mutex_);
  group_ = group;
  // It may have come between the decision to start and the start.
  if (group_ > 0 && signal_ != 0) ::kill(-group_, SIGKILL);
}

void Interrupts::wait() {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::seconds kPatience(2);
  constexpr timespec kLook{.tv_sec = 0, .tv_nsec = 100'000'000};
  Clock::time_point end{};
  while (!done_) {
    const int came = sigtimedwait(&taken_, nullptr, &kLook);
    if (came > 0 && signal_ == 0) {
      signal_ = came;
      end = Clock::now() + kPatience;
      endGroup(SIGTERM);
    } else if (signal_ != 0 && Clock::now() > end) {
      endGroup(SIGKILL);
    }
  }
}

void Interrupts::endGroup(int signal) {
  const std::lock_guard lock(mutex_);
  if (group_ <= 0) return;
  ::kill(-group_, signal);
  ::kill(-group_, SIGCONT);  // what is stopped takes no signal but SIGKILL until it goes on
}

}  // namespace kelvar_tool
