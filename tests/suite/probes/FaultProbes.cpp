/// What is left when a suite's libraries, its paths or memory fail under an operation: once, or for as long as it
/// takes, so that whatever undoes the operation meets failures too.
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <tuple>

#include "World.h"
#include "support/Faults.h"

namespace suite {
namespace {

using kelvar::SummaryData;

/// Sites that are folded, joined by handle, joined as neighbours, hidden and selected, and two results of them.
struct Project : World {
  Project() {
    today->sites = {{1, annotation("solver", at("src/a.cpp", 10))},
                    {2, annotation("untouched", at("src/b.cpp", 5), 4)},
                    {3, annotation("twin", at("src/c.cpp", 1), 4)},
                    {4, annotation("hidden", at("src/d.cpp", 9), 7)},
                    {7, annotation("", at("", 0))},
                    {8, annotation("recursion", at("src/g.cpp", 2))}};
    state->sites = {
        {1, annotation("solver", at("old/a.cpp", 12))}, {3, annotation("twin", at("old/c.cpp", 1), 4)},
        {5, annotation("twin", at("old/c.cpp", 7), 2)}, {6, annotation("gone", at("old/e.cpp", 2))},
        {7, annotation("named", at("old/f.cpp", 4))},   {8, annotation("__too deep__", at("old/g.cpp", 2))}};
    result(
        "survey", kSurvey,
        {{"loop", at("old/a.cpp", 14), {kSurvey}, 1}, {"bare", at("old/x.cpp", 3), {kSurvey, kVectorization}, 2, 0}});
    result("deps", kDependencies,
           {{"bare", at("old/x.cpp", 4), {kDependencies}, 3, 0},
            {"loop", at("old/a.cpp", 13), {kDependencies, kMap}, 4},
            {"spot", at("old/y.cpp", 8), {kSuitability}, 5, 0, 1},
            {"mute", at("old/z.cpp", 8), {}, 0, 0, 2}});
    data = std::make_unique<SummaryData>(today);
  }
  std::unique_ptr<SummaryData> data;
};

struct Surveyed : Project {
  Surveyed() {
    data->addSummaryData("survey", {});
    data->setSummaryDetailKindFilter(false, digestio::SummaryDetailKind{0}, sitenotes::annotation_t::kind_t{7});
    data->setMapping(kelvar::kSortLabel, true);
    data->item(data->num_items() - 1)->setSelected(true);
    today->sites[0].latest->place = at("src/a.cpp", 12);
    today->sites[0].latest->label = "moved";
  }
};

enum class What { kCalls, kPathCopies, kAllocations };

struct Failed : std::runtime_error {
  Failed() : std::runtime_error("failed") {}
};

/// While it lives, the `count`-th of what it counts fails; if it `stays`, all calls and copies fail from then on.
class Failure {
 public:
  Failure(What what, long count, bool stays) : left_(what == What::kAllocations ? 0 : count), stays_(stays) {
    current.called = [this, what](auto...) { strike(what == What::kCalls); };
    current.copies_a_path = [this, what] { strike(what == What::kPathCopies); };
    if (what == What::kAllocations) allocation_.emplace(count);
  }
  ~Failure() {
    current.called = nullptr;
    current.copies_a_path = nullptr;
  }
  Failure(const Failure&) = delete;  // the suite calls it
  Failure& operator=(const Failure&) = delete;

  [[nodiscard]] bool struck() const { return struck_ || (allocation_ && allocation_->struck()); }

 private:
  void strike(bool counts) {
    if (struck() ? !stays_ : !counts || --left_ != 0) return;
    struck_ = true;
    support::AllocationFault::left = 0;
    throw Failed();
  }
  long left_;
  bool stays_;
  bool struck_ = false;
  std::optional<support::AllocationFault> allocation_;
};

/// Runs `attempt` once for each possible failure. Where one comes through, the data are as before, and a second attempt
/// succeeds. Returns how many failures there were.
template <class Start, class Attempt>
int atEveryFailure(What what, bool stays, Attempt attempt) {
  std::string before;
  std::string after;
  {
    Start start;
    before = everything(*start.data);
    attempt(*start.data);
    after = everything(*start.data);
  }
  EXPECT_NE(before, after);
  for (int failures = 0;; ++failures) {
    SCOPED_TRACE(failures + 1);
    Start start;
    EXPECT_EQ(everything(*start.data), before);
    bool thrown = false;
    bool struck = false;
    {
      const Failure failure(what, failures + 1, stays);
      try {
        attempt(*start.data);
      } catch (const std::exception&) {
        thrown = true;
      }
      struck = failure.struck();
    }
    if (thrown) {
      EXPECT_EQ(everything(*start.data), before);
      attempt(*start.data);
    }
    EXPECT_EQ(everything(*start.data), after);
    if (!struck || testing::Test::HasFailure()) return failures;
  }
}

class Failures : public testing::TestWithParam<std::tuple<What, bool>> {
 protected:
  template <class Start, class Attempt>
  static int atEach(Attempt attempt) {
    return atEveryFailure<Start>(std::get<0>(GetParam()), std::get<1>(GetParam()), attempt);
  }
};

TEST_P(Failures, LeaveTheFirstAddUndone) {
  EXPECT_GT(atEach<Project>([](SummaryData& data) { data.addSummaryData("survey", {}); }), 20);
}

TEST_P(Failures, LeaveALaterAddUndone) {
  EXPECT_GT(atEach<Surveyed>([](SummaryData& data) { data.addSummaryData("deps", {}); }), 20);
}

/// A view that an add and two settings have made stale.
struct Stale : Surveyed {
  Stale() {
    data->addSummaryData("deps", {});
    data->setSummaryKindEnable(kVectorization, false);
    data->setMapping(kelvar::kSortSurveyCpuTime, false);
  }
};

TEST_P(Failures, LeaveAViewThatTheNextReadBuilds) {
  const std::string whole = rows(*Stale().data);
  int failures = 0;
  for (bool struck = true; struck; ++failures) {
    SCOPED_TRACE(failures + 1);
    Stale world;
    {
      const Failure failure(std::get<0>(GetParam()), failures + 1, std::get<1>(GetParam()));
      try {
        static_cast<void>(world.data->num_items());
      } catch (const std::exception&) {
        EXPECT_TRUE(failure.struck());
      }
      struck = failure.struck();
    }
    ASSERT_EQ(rows(*world.data), whole);
  }
  EXPECT_GT(failures, std::get<0>(GetParam()) == What::kCalls ? 5 : 0);
}

TEST_P(Failures, LetNoObjectBeBuiltInPart) {
  World world;
  world.today->sites = {{1, annotation("solver", at("", 10))}, {2, annotation("other", at("b.cpp", 1))}};
  int failures = 0;
  for (bool struck = true; struck; ++failures) {
    const Failure failure(std::get<0>(GetParam()), failures + 1, std::get<1>(GetParam()));
    try {
      const SummaryData data(world.today);
    } catch (const std::exception&) {
      EXPECT_TRUE(failure.struck());
    }
    struck = failure.struck();
  }
  EXPECT_GT(failures, 2);
}

std::string nameOf(const testing::TestParamInfo<std::tuple<What, bool>>& info) {
  constexpr const char* kNames[] = {"Calls", "PathCopies", "Allocations"};
  return std::string(kNames[static_cast<int>(std::get<0>(info.param))]) + (std::get<1>(info.param) ? "FromThenOn" : "");
}
INSTANTIATE_TEST_SUITE_P(Of, Failures,
                         testing::Combine(testing::Values(What::kCalls, What::kPathCopies, What::kAllocations),
                                          testing::Bool()),
                         nameOf);

}  // namespace
}  // namespace suite
