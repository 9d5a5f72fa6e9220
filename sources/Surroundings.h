#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lines.h"
#include "SourceScan.h"

namespace kelvar_sources {

/// Tells what is around a line. A line is significant if it has a word or a number of code: comments, lone brackets,
/// the ends of Fortran's blocks and the preprocessor's conditions come and go without the code being another.
class Surroundings {
 public:
  /// `significant` holds line numbers, ascending.
  Surroundings(const Lines& lines, std::vector<int> significant)
      : lines_(lines), significant_(std::move(significant)) {}

  [[nodiscard]] const Lines& lines() const noexcept { return lines_; }
  [[nodiscard]] const std::vector<int>& significant() const noexcept { return significant_; }
  /// Fills in what is before the line `first` and behind the line `last`.
  void describe(int first, int last, Anchor& anchor) const;

 private:
  [[nodiscard]] std::string textOf(std::size_t from, std::size_t to) const;

  const Lines& lines_;
  std::vector<int> significant_;
};

}  // namespace kelvar_sources
