#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lines.h"
#include "SourceScan.h"

namespace kelvar_sources {

/// Finds the surroundings of a line. Only significant lines count, which contain a word or number of code. Comments,
/// lone brackets, ends of Fortran blocks and preprocessor conditions may come and go without a change of the code.
class Surroundings {
 public:
  /// `significant` holds ascending line numbers.
  Surroundings(const Lines& lines, std::vector<int> significant)
      : lines_(lines), significant_(std::move(significant)) {}

  [[nodiscard]] const Lines& lines() const noexcept { return lines_; }
  [[nodiscard]] const std::vector<int>& significant() const noexcept { return significant_; }
  /// Fills in the lines before `first` and after `last`.
  void describe(int first, int last, Anchor& anchor) const;

 private:
  [[nodiscard]] std::string textOf(std::size_t from, std::size_t to) const;

  const Lines& lines_;
  std::vector<int> significant_;
};

}  // namespace kelvar_sources
