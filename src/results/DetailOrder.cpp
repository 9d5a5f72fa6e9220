#include "DetailOrder.h"

#include <algorithm>
#include <boost/sort/spreadsort/integer_sort.hpp>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "items/PlaceOrder.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDetail;

namespace {

struct Listed {
  SummaryDetail* detail;
  std::size_t index;
};
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

std::uintptr_t addressOf(const Listed& site) noexcept {
  return reinterpret_cast<std::uintptr_t>(site.detail);
}

std::vector<Listed> listedBy(const digestio::SummaryCollection& collection) {
  std::vector<Listed> details;
  int index = 0;
  // Their number may change while they are taken.
  while (index < collection.detailCount()) {
    details.push_back({collection.detail(index), details.size()});
    ++index;
  }
  return details;
}

/// Puts details that lie side by side, all of one size, in the order of their addresses. Answers whether they do; if
/// not, nothing has changed.
bool putInMemoryOrder(std::vector<Listed>& details) {
  if (details.size() < 2) return true;
  const auto before = [](const Listed& a, const Listed& b) { return addressOf(a) < addressOf(b); };
  const auto [first, last] = std::minmax_element(details.begin(), details.end(), before);
  const std::uintptr_t begin = addressOf(*first);
  const std::uintptr_t size = (addressOf(*last) - begin) / (details.size() - 1);
  if (size == 0) return false;
  std::vector<Listed> inOrder(details.size(), Listed{nullptr, kNone});
  for (const Listed& site : details) {
    const std::uintptr_t slot = (addressOf(site) - begin) / size;
    if (slot >= inOrder.size() || inOrder[slot].index != kNone) return false;
    inOrder[slot] = site;
  }
  details.swap(inOrder);
  return true;
}

/// Who reads a collection may lay its details by place: then little is left to sort, and what a walk over them is about
/// to come to lies ahead.
std::vector<Listed> inMemory(std::vector<Listed> details) {
  if (putInMemoryOrder(details)) return details;
  const auto bitsFrom = [](const Listed& site, std::size_t offset) { return addressOf(site) >> offset; };
  const auto before = [](const Listed& a, const Listed& b) { return addressOf(a) < addressOf(b); };
  boost::sort::spreadsort::integer_sort(details.begin(), details.end(), bitsFrom, before);
  return details;
}

sitenotes::locator_t placeOf(const SummaryDetail* detail) {
  return detail != nullptr ? detail->locator() : sitenotes::locator_t(toolbelt::path_t(), 0, 0);
}

void sortByIndex(std::vector<Placed>& sites) {
  for (auto begin = sites.begin(); begin != sites.end();) {
    const auto end = std::find_if(begin, sites.end(), [begin](const Placed& site) { return site.key != begin->key; });
    std::sort(begin, end, [](const Placed& a, const Placed& b) { return a.index < b.index; });
    begin = end;
  }
}

}  // namespace

std::vector<SummaryDetail*> detailsByPlace(const digestio::SummaryCollection& collection) {
  const std::vector<Listed> details = listedBy(collection);
  std::vector<Placed> sites;
  sites.reserve(details.size());
  for (const auto& [detail, index] : inMemory(details)) sites.push_back({placeOf(detail), index});
  sortByPlace(sites);
  sortByIndex(sites);
  std::vector<SummaryDetail*> byPlace;
  byPlace.reserve(details.size());
  for (const Placed& site : sites) byPlace.push_back(details[site.index].detail);
  return byPlace;
}

}  // namespace kelvar_2_1_7
