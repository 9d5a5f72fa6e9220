#pragma once

#include <array>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "toolbelt.h"

namespace kelvar_platform {

/// The paths that one reader has met. To ask the process for a path takes a lock, which readers on several threads
/// would pass to and fro at every value; and what is read in between drives from the cache what finding it has to look
/// at. So the texts stand here once more, each beside its path.
class KnownPaths {
 public:
  [[nodiscard]] toolbelt::path_t of(std::string_view text) {
    if (last_ != nullptr && last_->first.view() == text) return last_->second;  // neighbours mostly lie in one file
    if (text.size() > Text::kCapacity) return text;
    auto known = paths_.find(text);
    if (known == paths_.end()) known = paths_.emplace(Text(text), text).first;
    last_ = &*known;
    return last_->second;
  }

 private:
  /// Fills two cache lines with its path.
  struct Text {
    static constexpr std::size_t kCapacity = 119;
    explicit Text(std::string_view text) noexcept : size(static_cast<std::uint8_t>(text.size())) {
      text.copy(bytes.data(), kCapacity);
    }
    [[nodiscard]] std::string_view view() const noexcept { return {bytes.data(), size}; }

    std::uint8_t size;
    std::array<char, kCapacity> bytes;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
    std::size_t operator()(const Text& text) const noexcept { return (*this)(text.view()); }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(std::string_view a, const Text& b) const noexcept { return a == b.view(); }
    bool operator()(const Text& a, const Text& b) const noexcept { return a.view() == b.view(); }
  };
  using Paths = boost::unordered_flat_map<Text, toolbelt::path_t, Hash, Equal>;
  static_assert(sizeof(Paths::value_type) == 128);

  Paths paths_;
  const Paths::value_type* last_ = nullptr;  ///< until another one is added
};

}  // namespace kelvar_platform
