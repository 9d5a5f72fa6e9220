#include "Interrupts.h"

#include <signal.h>

#include <chrono>
#include <string>

#include "Descendants.h"
#include "Messages.h"

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
  saidStopped_ = false;
  // The signal may have come between the decision to start the group and its start.
  if (group_ > 0 && signal_ != 0) ::kill(-group_, SIGKILL);
}

void Interrupts::wait() {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::seconds kPatience(2);
  constexpr timespec kLook{.tv_sec = 0, .tv_nsec = 100'000'000};
  constexpr std::chrono::seconds kBetweenLooks(2);
  Clock::time_point end{};
  Clock::time_point look = Clock::now() + kBetweenLooks;
  while (!done_) {
    const int came = sigtimedwait(&taken_, nullptr, &kLook);
    if (came > 0 && signal_ == 0) {
      signal_ = came;
      end = Clock::now() + kPatience;
      endGroup(SIGTERM);
    } else if (signal_ != 0 && Clock::now() > end) {
      endGroup(SIGKILL);
    } else if (signal_ == 0 && Clock::now() > look) {
      lookForStopped();
      look = Clock::now() + kBetweenLooks;
    }
  }
}

void Interrupts::endGroup(int signal) {
  const std::lock_guard lock(mutex_);
  if (group_ <= 0) return;
  ::kill(-group_, signal);
  ::kill(-group_, SIGCONT);  // a stopped process handles no signal but SIGKILL until it continues
}

void Interrupts::lookForStopped() {
  const std::lock_guard lock(mutex_);
  if (group_ <= 0 || saidStopped_) return;
  const pid_t stopped = stoppedAmong(group_);
  if (stopped == 0) return;
  saidStopped_ = true;
  const std::string number = std::to_string(stopped);
  say("process " + number + " (" + escaped(nameOfProcess(stopped)) +
      ") is stopped by a signal, and waited for: 'kill -CONT " + number + "' lets it go on, Ctrl-C ends the run");
}

}  // namespace kelvar_tool
