#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace support {

/// What is damaged, and the sentence that refuses it.
struct Damage {
  std::string input;
  std::string want;
};

/// The lines `INPUT ⇒ SENTENCE` of a file in damages/ of the test's own folder.
inline std::vector<Damage> damages(const std::string& name) {
  const std::string arrow = " ⇒ ";
  std::vector<Damage> all;
  std::ifstream file(KELVAR_TEST_FOLDER "/damages/" + name);
  for (std::string line; std::getline(file, line);) {
    const std::size_t end = line.find(arrow);
    if (end == std::string::npos) throw std::invalid_argument(name + ": no arrow in " + line);
    all.push_back({line.substr(0, end), line.substr(end + arrow.size())});
  }
  EXPECT_FALSE(all.empty()) << name;
  return all;
}

}  // namespace support
