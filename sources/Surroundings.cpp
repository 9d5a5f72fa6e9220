#include "Surroundings.h"

#include <algorithm>

namespace kelvar_sources {

namespace {

constexpr std::size_t kLinesAround = 3;
/// Longer lines are cut: the first bytes are distinctive enough.
constexpr std::size_t kLongestLine = 400;

}  // namespace

void Surroundings::describe(int first, int last, Anchor& anchor) const {
  const auto before = std::lower_bound(significant_.begin(), significant_.end(), first);
  const auto after = std::upper_bound(before, significant_.end(), last);
  const auto begin = static_cast<std::size_t>(before - significant_.begin());
  const auto end = static_cast<std::size_t>(after - significant_.begin());
  anchor.before = textOf(begin - std::min(begin, kLinesAround), begin);
  anchor.after = textOf(end, std::min(significant_.size(), end + kLinesAround));
}

std::string Surroundings::textOf(std::size_t from, std::size_t to) const {
  std::string text;
  for (std::size_t i = from; i < to; ++i) {
    if (i > from) text += '\n';
    text += withSingleBlanks(lines_.line(significant_[i]).substr(0, kLongestLine));
  }
  return text;
}

}  // namespace kelvar_sources
