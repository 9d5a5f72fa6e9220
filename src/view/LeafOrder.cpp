#include "view/LeafOrder.h"

#include <algorithm>

#include "view/KeySort.h"

namespace kelvar_2_1_7 {

namespace {

constexpr int kLineBits = 32;

/// Orders as lines do.
std::uint32_t bitsOf(int line) noexcept {
  constexpr std::uint32_t kLeast = std::uint32_t{1} << (kLineBits - 1);
  return static_cast<std::uint32_t>(line) ^ kLeast;
}

}  // namespace

void LeafOrder::add(const sitenotes::locator_t& place) {
  const toolbelt::path_t file = place.get_file();  // a suite's own may hand out this and the leaf by value
  const std::uint64_t leaf = numberOf(file.get_leaf());
  places_.push_back({leaf << kLineBits | bitsOf(place.get_line()), places_.size()});
}

std::uint32_t LeafOrder::numberOf(const std::string& leaf) {
  // Neighbours mostly are of one file.
  if (last_ != nullptr && last_->first == leaf) return last_->second;
  auto known = leaves_.find(std::string_view(leaf));
  if (known == leaves_.end()) known = leaves_.emplace(leaf, static_cast<std::uint32_t>(leaves_.size())).first;
  last_ = &*known;
  return known->second;
}

void LeafOrder::rankLeaves() {
  if (ranks_.size() == leaves_.size()) return;
  std::vector<const Leaves::value_type*> inOrder;
  for (const auto& leaf : leaves_) inOrder.push_back(&leaf);
  std::sort(inOrder.begin(), inOrder.end(), [](const auto* a, const auto* b) { return a->first < b->first; });
  ranks_.resize(inOrder.size());
  std::uint32_t rank = 0;
  for (const auto* leaf : inOrder) ranks_[leaf->second] = rank++;
}

std::span<const NumberedKey> LeafOrder::sorted() {
  rankLeaves();
  for (NumberedKey& place : places_) {
    const std::uint64_t rank = ranks_[place.key >> kLineBits];
    place.key = rank << kLineBits | static_cast<std::uint32_t>(place.key);
  }
  sortByKey(std::span(places_), buffer_);
  return places_;
}

}  // namespace kelvar_2_1_7
