#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// A rule, and the texts of its cases.
struct Case {
  std::string name;
  std::vector<std::string> parts;
};

/// The cases of a file in the test's folder: `# NAME`, then parts separated by a line `+` or `=>`; or one case per
/// line, `INPUT ⇒ SENTENCE`. Fails if there are fewer than `least`.
inline std::vector<Case> cases(const std::string& name, std::size_t least) {
  constexpr std::string_view kArrow = " ⇒ ";
  std::vector<Case> cases;
  std::ifstream file(KELVAR_TEST_FOLDER "/" + name);
  for (std::string line; std::getline(file, line);) {
    const std::size_t arrow = line.find(kArrow);
    if (arrow != std::string::npos) {
      cases.push_back({line, {line.substr(0, arrow), line.substr(arrow + kArrow.size())}});
    } else if (line.starts_with("# ")) {
      cases.push_back({line.substr(2), {""}});
    } else if (line == "+" || line == "=>") {
      cases.back().parts.emplace_back();
    } else {
      cases.back().parts.back() += line + '\n';
    }
  }
  // The empty line between two cases.
  for (Case& each : cases) {
    if (("\n" + each.parts.back()).ends_with("\n\n")) each.parts.back().pop_back();
  }
  EXPECT_GE(cases.size(), least) << name;
  return cases;
}

}  // namespace support
