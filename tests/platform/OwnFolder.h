#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "Diagnosis.h"

namespace kelvar_platform::test {

/// A folder of its own for each test; goes with it.
class OwnFolder : public testing::Test {
 protected:
  OwnFolder() : folder_(testing::TempDir() + "kelvar-XXXXXX") { mkdtemp(folder_.data()); }
  ~OwnFolder() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ + '/' + name; }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
  }
  [[nodiscard]] std::string contents(const std::string& name) const {
    std::ostringstream out;
    out << std::ifstream(path(name), std::ios::binary).rdbuf();
    return out.str();
  }

  /// A sentence about what lies in the folder, without the folder.
  [[nodiscard]] std::string local(const std::string& sentence) const {
    EXPECT_EQ(sentence.rfind(folder_ + '/', 0), 0U) << sentence;
    return sentence.substr(folder_.size() + 1);
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

  std::string folder_;
};

}  // namespace kelvar_platform::test
