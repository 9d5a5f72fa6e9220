#include "view/RandomItems.h"

#include <array>
#include <limits>

using namespace kelvar_2_1_7;

double RandomItems::number() {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr std::array kNumbers{0.0, -0.0, -1.0, -2.0, 1.5, 2.5, 1e300, kInfinity, kNaN, -kNaN};
  return kNumbers[static_cast<std::size_t>(below(numbersOnly_ ? 8 : 10))];
}

std::unique_ptr<SummaryItemImpl> RandomItems::item() {
  // Labels that differ before, in and after the words that they are compared by, also by their length alone.
  static const std::array<std::string, 7> kLabels{"",
                                                  "a",
                                                  std::string("a\0", 2),
                                                  "\xff",
                                                  std::string(24, 'x'),
                                                  std::string(24, 'x') + "b",
                                                  std::string(24, 'x') + "a"};
  static const std::array<std::string, 4> kPlaces{"", "x/a.cpp:3", "y/a.cpp:3", "b.cpp:1:2"};
  constexpr std::array kCounts{-1, 0, 1, 2147483647, -2147483647 - 1};
  const auto count = [&] { return kCounts[static_cast<std::size_t>(below(5))]; };
  constexpr std::array kNoKinds{-1, 255, 259};  // which in a byte would be others
  const int kind = oneKind_ ? 3 : below(23);

  support::FakeDetail& detail =
      details_.emplace_back(kLabels[static_cast<std::size_t>(below(7))], kPlaces[static_cast<std::size_t>(below(4))]);
  detail.kind(static_cast<digestio::SummaryDetailKind>(oneKind_ ? 0 : below(4)));
  detail.reports(static_cast<support::Kind>(kind < 20 ? kind : kNoKinds[static_cast<std::size_t>(kind - 20)]));
  if (below(2) == 0) detail.survey({.cpuTime = number(), .priority = count(), .id = count()});
  if (below(2) == 0) detail.vectorization({.selfTime = number(), .totalTime = number(), .priority = count()});
  if (below(2) == 0) detail.suitability({.selfTime = number(), .siteMaxGain = number(), .totalMaxGain = number()});
  if (below(2) == 0) detail.correctness({.errors = count(), .warnings = {count(), count()}});
  if (below(3) == 0) detail.map({{below(2), 0, 0}});
  return support::itemFrom(detail, {}, static_cast<unsigned long>(below(2)));
}

SummaryItems RandomItems::list(std::size_t size) {
  SummaryItems items;
  while (items.size() < size) items.append(below(20) == 0 ? nullptr : item());
  return items;
}
