#include "items/NameIndex.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace kelvar_2_1_7 {

NameIndex::NameIndex(const SiteNames& names) {
  const std::size_t count = names.keys.size() + names.wanted.size();
  if (count == 0) return;
  const unsigned bucketBits = std::max(1U, static_cast<unsigned>(std::bit_width(count)) - 1);  // one or two keys each
  shift_ = 64 - bucketBits;
  begins_.assign((std::size_t{1} << bucketBits) + 1, 0);
  keys_.resize(count);
  for (const NameKeys* const keys : {&names.keys, &names.wanted}) {
    for (const NameKey key : *keys) ++begins_[bucketOf(key) + 1];
  }
  std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
  distribute(names.keys);
  distribute(names.wanted);
  std::copy_backward(begins_.begin(), begins_.end() - 1, begins_.end());  // each had moved on to the next
  begins_.front() = 0;
  sortBuckets();
  findRelated();
}

void NameIndex::distribute(const NameKeys& keys) {
  for (const NameKey key : keys) keys_[begins_[bucketOf(key)]++] = key;
}

void NameIndex::sortBuckets() {
  for (std::size_t bucket = 0; bucket + 1 < begins_.size(); ++bucket) {
    if (begins_[bucket + 1] - begins_[bucket] > 1) {
      std::sort(keys_.begin() + begins_[bucket], keys_.begin() + begins_[bucket + 1]);
    }
  }
}

void NameIndex::findRelated() {
  bool isRelated = false;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const bool isNextAlike = i + 1 < keys_.size() && hashOf(keys_[i]) == hashOf(keys_[i + 1]);
    if (isRelated || isNextAlike) related_.push_back(numberOf(keys_[i]));
    isRelated = isNextAlike;
  }
  std::sort(related_.begin(), related_.end());
  related_.erase(std::unique(related_.begin(), related_.end()), related_.end());
}

std::span<const NameKey> NameIndex::of(NameKey key) const noexcept {
  if (begins_.empty()) return {};
  const std::span<const NameKey> bucket(keys_.data() + begins_[bucketOf(key)],
                                        keys_.data() + begins_[bucketOf(key) + 1]);
  const auto found =
      std::equal_range(bucket.begin(), bucket.end(), key, [](NameKey a, NameKey b) { return hashOf(a) < hashOf(b); });
  return {found.first, found.second};
}

}  // namespace kelvar_2_1_7
