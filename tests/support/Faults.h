#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Faults on demand. A test asks what is left behind when the k-th call to a collaborator, or the k-th allocation,
/// fails, for every k:
///
///     const int faults = atEveryFault<CallFault>(
///         [] { return std::make_unique<Fixture>(); },                    // afresh each time, without faults
///         [](Fixture& fixture) { fixture.data.addSummaryData("r", {}); },  // meets the fault
///         [](Fixture& fixture) { EXPECT_EQ(rows(fixture.data), "..."); });  // after each fault that came through
///     EXPECT_GT(faults, 20);
namespace support {

/// What a fake throws.
struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// While it lives, the `call`-th call to any fake, counted from 1, throws Fault. 0: none does.
class CallFault {
 public:
  explicit CallFault(long call);
  ~CallFault();
  CallFault(const CallFault&) = delete;  // there is one count
  CallFault& operator=(const CallFault&) = delete;
  [[nodiscard]] bool struck() const;

  using Thrown = Fault;
};

/// While it lives, the `allocation`-th allocation of the process throws std::bad_alloc, or answers null where the
/// caller asked for that.
class AllocationFault {
 public:
  explicit AllocationFault(long allocation);
  ~AllocationFault();
  AllocationFault(const AllocationFault&) = delete;  // there is one count
  AllocationFault& operator=(const AllocationFault&) = delete;
  [[nodiscard]] bool struck() const;

  using Thrown = std::bad_alloc;
};

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

/// For fakes: a line for the log, of what cannot throw.
void note(std::string_view subject, std::string_view operation, std::string_view argument = {});
/// For fakes: a call, which may have to throw. Allocates nothing that an AllocationFault would count.
void called(std::string_view subject, std::string_view operation, std::string_view argument = {});

/// See above. Answers how many faults struck before `attempt` got through without one.
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

}  // namespace support
