#pragma once

#include <atomic>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Faults on demand. A test checks the state after the k-th call to a collaborator, or the k-th allocation, has failed,
/// for every k:
///
///     const auto [calls, allocations] = atEveryFault<Fixture>(           // a Fixture for each, made without faults
///         [](Fixture& fixture) { fixture.data.addSummaryData("r", {}); },  // meets the fault
///         [](Fixture& fixture) { EXPECT_EQ(rows(fixture.data), "..."); });  // after each fault that came through
///     EXPECT_GT(calls, 20);
///     EXPECT_GT(allocations, 10);
namespace support {

/// What a fake throws.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// While it lives, the `count`-th call fails, counted from 1; 0 for none.
template <class What>
class FaultAt {
 public:
  using Thrown = What;
  explicit FaultAt(long count) { left = count; }
  ~FaultAt() { left = 0; }
  FaultAt(const FaultAt&) = delete;  // there is one count
  FaultAt& operator=(const FaultAt&) = delete;
  [[nodiscard]] bool struck() const { return left == 0; }

  /// Whether this is the one that fails. Counts on below 0, so that it fails only once.
  static bool strikes() noexcept { return left.load() > 0 && left.fetch_sub(1) == 1; }
  static inline std::atomic<long> left = 0;
};
/// Calls to any fake: one of them throws Fault.
using CallFault = FaultAt<Fault>;
/// Allocations of the process: one of them throws std::bad_alloc, or returns null from the nothrow forms.
using AllocationFault = FaultAt<std::bad_alloc>;

/// While it lives, keeps a line for each call to a fake: `database is_sequence_alive 7`.
class CallLog {
 public:
  CallLog();
  ~CallLog();
  CallLog(const CallLog&) = delete;  // the fakes write to it
  CallLog& operator=(const CallLog&) = delete;

  /// The lines that begin with `prefix`, each with its newline.
  [[nodiscard]] std::string text(std::string_view prefix = {}) const;

 private:
  friend void note(std::string_view subject, std::string_view operation, std::string_view argument);
  std::vector<std::string> lines_;
};

/// For fakes: adds a line to the log, for calls that cannot throw.
void note(std::string_view subject, std::string_view operation, std::string_view argument = {});
/// For fakes: a call that may have to throw. Allocates nothing that an AllocationFault counts.
void called(std::string_view subject, std::string_view operation, std::string_view argument = {});

/// For fakes: a call with its answer.
template <class T>
T answer(std::string_view subject, std::string_view operation, T value, std::string_view argument = {}) {
  called(subject, operation, argument);
  return value;
}

/// Faults of one type. Returns the number of failed attempts before one succeeded.
template <class Plan, class Prepare, class Attempt, class Check>
int atEveryFault(Prepare prepare, Attempt attempt, Check check) {
  for (int faults = 0;; ++faults) {
    auto fixture = prepare();
    bool thrown = false;
    bool struck = false;
    {
      const Plan plan(faults + 1);
      try {
        attempt(*fixture);
      } catch (const typename Plan::Thrown&) {
        thrown = true;
      }
      struck = plan.struck();
    }
    if (thrown) check(*fixture);
    if (!struck) return faults;
  }
}

/// See above. Returns the number of failed calls and of failed allocations.
template <class Fixture, class Attempt, class Check>
std::pair<int, int> atEveryFault(Attempt attempt, Check check) {
  const auto prepare = [] { return std::make_unique<Fixture>(); };
  return {atEveryFault<CallFault>(prepare, attempt, check), atEveryFault<AllocationFault>(prepare, attempt, check)};
}

}  // namespace support
