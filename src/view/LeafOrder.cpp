#include "view/LeafOrder.h"

#include <algorithm>

namespace kelvar_2_1_7 {

std::uint32_t LeafOrder::leafOf(const sitenotes::locator_t& place) {
  const toolbelt::path_t file = place.get_file();  // a suite's own may hand out this and the leaf by value
  const std::string& leaf = file.get_leaf();
  const auto known = leaves_.find(std::string_view(leaf));
  if (known != leaves_.end()) return known->second;
  return leaves_.emplace(leaf, static_cast<std::uint32_t>(leaves_.size())).first->second;
}

void LeafOrder::rankLeaves() {
  std::vector<const std::pair<const std::string, std::uint32_t>*> inOrder;
  for (const auto& leaf : leaves_) inOrder.push_back(&leaf);
  std::sort(inOrder.begin(), inOrder.end(), [](const auto* a, const auto* b) { return a->first < b->first; });
  ranks_.resize(inOrder.size());
  std::uint32_t rank = 0;
  for (const auto* leaf : inOrder) ranks_[leaf->second] = rank++;
}

}  // namespace kelvar_2_1_7
