#pragma once

#include <gtest/gtest.h>

#include "Diagnosis.h"
#include "support/Scratch.h"

namespace kelvar_platform::test {

/// A folder of its own for each test, and what was refused of the files there.
class Files : public testing::Test, protected support::Scratch {
 protected:
  Files() { static_cast<void>(takeRefusals()); }

  /// A sentence about what lies in the folder, without the folder.
  [[nodiscard]] std::string local(const std::string& sentence) const {
    EXPECT_TRUE(sentence.starts_with(path(""))) << sentence;
    return sentence.substr(path("").size());
  }
  /// What `operation` was refused for; empty where it was not.
  template <class Operation>
  [[nodiscard]] std::string refused(Operation operation) const {
    try {
      operation();
    } catch (const ReadError& error) {
      return local(error.what());
    }
    return {};
  }
  /// What was noted since the last call; empty where there was nothing.
  [[nodiscard]] std::string refusal() const {
    std::string all;
    for (const Refusal& refusal : takeRefusals()) all += local(refusal.sentence());
    return all;
  }
};

}  // namespace kelvar_platform::test
