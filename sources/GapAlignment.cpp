// Computes the best sums for all beginnings of the two lists and for all their ends. A pair is part of a best alignment
// if its likeness, the best sum before it and the best sum after it add up to the best of all. That gives all best
// alignments at once, and where they differ.
#include "GapAlignment.h"

#include <algorithm>

namespace kelvar_sources {

namespace {

constexpr std::size_t kMostCells = std::size_t{1} << 21U;

class Table {
 public:
  Table(std::size_t rows, std::size_t columns) : columns_(columns + 1), cells_((rows + 1) * (columns + 1)) {}
  int& at(std::size_t row, std::size_t column) { return cells_[row * columns_ + column]; }
  [[nodiscard]] int at(std::size_t row, std::size_t column) const { return cells_[row * columns_ + column]; }

 private:
  std::size_t columns_;
  std::vector<int> cells_;
};

int gain(const Fingerprint& a, const Fingerprint& b) {
  const int sum = likeness(a, b);
  return sum >= kLeastLikeness ? sum : 0;
}

GapAlignment alignedWhole(std::span<const Fingerprint> known, std::span<const Fingerprint> found) {
  const std::size_t n = known.size();
  const std::size_t m = found.size();
  Table before(n, m);
  Table behind(n, m);
  Table gains(n, m);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < m; ++j) {
      const int pair = gains.at(i, j) = gain(known[i], found[j]);
      before.at(i + 1, j + 1) =
          std::max({before.at(i, j + 1), before.at(i + 1, j), pair > 0 ? before.at(i, j) + pair : 0});
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t j = m; j-- > 0;) {
      const int pair = gains.at(i, j);
      behind.at(i, j) =
          std::max({behind.at(i + 1, j), behind.at(i, j + 1), pair > 0 ? behind.at(i + 1, j + 1) + pair : 0});
    }
  }
  const int best = before.at(n, m);
  GapAlignment alignment{.partner = std::vector(n, GapAlignment::kNone),
                         .first = std::vector(n, GapAlignment::kNone),
                         .ambiguous = std::vector(n, false),
                         .contested = std::vector(m, false)};
  for (std::size_t i = 0, j = 0; i < n && j < m;) {
    if (gains.at(i, j) > 0 && gains.at(i, j) + behind.at(i + 1, j + 1) == behind.at(i, j)) {
      alignment.first[i++] = j++;
    } else if (behind.at(i, j + 1) == behind.at(i, j)) {
      ++j;
    } else {
      ++i;
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t options = 0;
    for (std::size_t j = 0; j < m; ++j) {
      if (gains.at(i, j) == 0 || before.at(i, j) + gains.at(i, j) + behind.at(i + 1, j + 1) != best) continue;
      ++options;
      alignment.partner[i] = j;
    }
    bool mayBeLeftOut = false;
    for (std::size_t j = 0; j <= m && options > 0; ++j) {
      mayBeLeftOut = mayBeLeftOut || before.at(i, j) + behind.at(i + 1, j) == best;
    }
    if (options == 0 || (options == 1 && !mayBeLeftOut)) continue;
    alignment.partner[i] = GapAlignment::kNone;
    alignment.ambiguous[i] = true;
    for (std::size_t j = 0; j < m; ++j) {
      const bool option = gains.at(i, j) > 0 && before.at(i, j) + gains.at(i, j) + behind.at(i + 1, j + 1) == best;
      if (option) alignment.contested[j] = true;
    }
  }
  return alignment;
}

/// Copies the alignment of a part into that of the whole.
void put(const GapAlignment& part, std::size_t known, std::size_t found, GapAlignment& whole) {
  for (std::size_t i = 0; i < part.partner.size(); ++i) {
    if (part.partner[i] != GapAlignment::kNone) whole.partner[known + i] = found + part.partner[i];
    if (part.first[i] != GapAlignment::kNone) whole.first[known + i] = found + part.first[i];
    whole.ambiguous[known + i] = part.ambiguous[i];
  }
  for (std::size_t j = 0; j < part.contested.size(); ++j) whole.contested[found + j] = part.contested[j];
}

}  // namespace

GapAlignment aligned(std::span<const Fingerprint> known, std::span<const Fingerprint> found) {
  if (known.empty() || found.empty() || known.size() <= kMostCells / found.size()) return alignedWhole(known, found);
  GapAlignment whole{.partner = std::vector(known.size(), GapAlignment::kNone),
                     .first = std::vector(known.size(), GapAlignment::kNone),
                     .ambiguous = std::vector(known.size(), false),
                     .contested = std::vector(found.size(), false)};
  // Equal beginnings and ends are paired directly; the rest is cut into proportional parts.
  std::size_t first = 0;
  const std::size_t least = std::min(known.size(), found.size());
  while (first < least && known[first] == found[first]) {
    whole.partner[first] = whole.first[first] = first;
    ++first;
  }
  std::size_t last = 0;
  while (last < least - first && known[known.size() - 1 - last] == found[found.size() - 1 - last]) {
    whole.partner[known.size() - 1 - last] = whole.first[known.size() - 1 - last] = found.size() - 1 - last;
    ++last;
  }
  const std::size_t n = known.size() - first - last;
  const std::size_t m = found.size() - first - last;
  constexpr std::size_t kPart = 1024;
  const std::size_t parts = std::max(n, m) / kPart + 1;
  for (std::size_t part = 0; part < parts; ++part) {
    const std::size_t i = first + n * part / parts;
    const std::size_t j = first + m * part / parts;
    put(alignedWhole(known.subspan(i, first + n * (part + 1) / parts - i),
                     found.subspan(j, first + m * (part + 1) / parts - j)),
        i, j, whole);
  }
  return whole;
}

}  // namespace kelvar_sources
