#include <gtest/gtest.h>

#include "CallGraph.h"

namespace kelvar_readers {
namespace {

constexpr std::size_t kMain = 0;

TEST(CallGraph, AddsWhatASiteCallsOnce) {
  CallGraph calls;
  const std::size_t helper = 1;
  const std::size_t walk = 2;
  calls.addSelf(kMain, 5, {0});
  calls.addSelf(helper, 7, {});
  calls.addCall(kMain, helper, 4, {0});
  calls.addCall(walk, helper, 3, {});
  EXPECT_EQ(calls.timesOfSites(1)[0], 9);

  // A site that calls its own function again holds all of it.
  calls.addSelf(walk, 6, {1});
  calls.addCall(kMain, walk, 9, {});
  calls.addCall(walk, walk, 8, {1});
  EXPECT_EQ(calls.timesOfSites(2)[1], 9);
}

/// Two sites hand bodies to one runtime, which runs half of each below main and half in a thread of its own. What the
/// runtime does with the one is not told apart from the other; its calls of the bodies are.
TEST(CallGraph, CountsABodyThatComesBackByARuntimeOnce) {
  CallGraph calls;
  const std::size_t runtime = 1;
  const std::size_t thread = 2;
  const double works[] = {9, 90};
  for (std::size_t site = 0; site < 2; ++site) {
    const std::size_t body = 3 + site;
    calls.addSelf(body, 2 * works[site], {site});
    calls.addSelf(runtime, 1, {});
    calls.addCall(kMain, runtime, works[site] + 1, {site});
    calls.addCall(runtime, body, works[site], {});
    calls.addCall(thread, body, works[site], {});
  }
  EXPECT_EQ(calls.timesOfSites(2), (std::vector<double>{19, 181}));
}

}  // namespace
}  // namespace kelvar_readers
