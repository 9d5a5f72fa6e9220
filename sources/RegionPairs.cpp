#include "RegionPairs.h"

namespace kelvar_sources {

namespace {

std::string joined(const std::string& name, const std::string& key) {
  return name + '\n' + key;
}

}  // namespace

RegionPairs::Stack& RegionPairs::pruned(const std::string& key) {
  Stack& stack = stacks_[key];
  while (!stack.empty() && opens_[stack.back()].closed) stack.pop_back();
  return stack;
}

void RegionPairs::close(std::size_t index, std::size_t at) {
  opens_[index].closed = true;
  pairs_.push_back({opens_[index].site, at});
}

void RegionPairs::begin(const std::string& name, const std::string& key, std::size_t site, std::uint32_t block) {
  if (!key.empty()) {
    // A second beginning of the same name: the first region has ended on all paths.
    Stack& same = pruned(joined(name, key));
    if (!same.empty() && opens_[same.back()].tentative != kNone) close(same.back(), opens_[same.back()].tentative);
    same.push_back(opens_.size());
  }
  pruned(name).push_back(opens_.size());
  opens_.push_back({.site = site, .block = block});
}

void RegionPairs::end(const std::string& name, const std::string& key, std::size_t at, std::uint32_t block) {
  Stack& stack = pruned(key.empty() ? name : joined(name, key));
  if (stack.empty()) return;
  Open& open = opens_[stack.back()];
  if (open.block == block) {
    close(stack.back(), at);
  } else {
    open.tentative = at;
  }
}

std::vector<RegionPairs::Pair> RegionPairs::pairs() {
  for (std::size_t i = 0; i < opens_.size(); ++i) {
    if (!opens_[i].closed && opens_[i].tentative != kNone) close(i, opens_[i].tentative);
  }
  return pairs_;
}

}  // namespace kelvar_sources
