#pragma once

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace kelvar_readers {

/// Numbers distinct texts from 0. Texts are stored in blocks: a program has hundreds of thousands of names, and
/// allocating each by itself took a third of the import's time.
class TextNumbers {
 public:
  [[nodiscard]] std::size_t numberOf(std::string_view text) {
    if (last_ < texts_.size() && texts_[last_] == text) return last_;  // equal texts often come in a row
    const auto found = numbers_.find(text);
    last_ = found != numbers_.end() ? found->second : add(text);
    return last_;
  }
  /// Valid as long as this object.
  [[nodiscard]] std::string_view textNumbered(std::size_t number) const { return texts_[number]; }
  [[nodiscard]] std::size_t size() const noexcept { return texts_.size(); }

 private:
  std::size_t add(std::string_view text) {
    std::pmr::polymorphic_allocator<char> allocator(&memory_);
    char* const kept = allocator.allocate(text.size());
    std::copy(text.begin(), text.end(), kept);
    texts_.emplace_back(kept, text.size());
    numbers_.emplace(texts_.back(), texts_.size() - 1);
    return texts_.size() - 1;
  }

  std::pmr::monotonic_buffer_resource memory_;
  boost::unordered_flat_map<std::string_view, std::size_t> numbers_;
  std::vector<std::string_view> texts_;
  std::size_t last_ = 0;
};

}  // namespace kelvar_readers
