#pragma once

#include <gtest/gtest.h>

#include "Diagnosis.h"
#include "support/Scratch.h"

namespace kelvar_platform::test {

/// A folder for each test, and the refusals of files in it.
class Files : public testing::Test, protected support::Scratch {
 protected:
  Files() { static_cast<void>(takeRefusals()); }

  /// The sentence without the path of the folder.
  [[nodiscard]] std::string local(const std::string& sentence) const {
    EXPECT_TRUE(sentence.starts_with(path(""))) << sentence;
    return sentence.substr(path("").size());
  }
  /// The refusal of `operation`; empty if there is none.
  template <class Operation>
  [[nodiscard]] std::string refused(Operation operation) const {
    try {
      operation();
    } catch (const ReadError& error) {
      return local(error.what());
    }
    return {};
  }
  /// The refusals since the last call; empty if there were none.
  [[nodiscard]] std::string refusal() const {
    std::string all;
    for (const Refusal& refusal : takeRefusals()) all += local(refusal.sentence());
    return all;
  }
};

}  // namespace kelvar_platform::test
