#pragma once

#include <array>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "toolbelt.h"

namespace kelvar_platform {

/// A reader's own cache of paths. Looking a path up in the process-wide pool takes a lock, which readers on several
/// threads would contend for at every value, and touches memory that the reading evicts from the cache. So the texts
/// are copied here, each beside its path.
class KnownPaths {
 public:
  [[nodiscard]] toolbelt::path_t of(std::string_view text) {
    if (last_ != nullptr && last_->first.view() == text)
      return last_->second;  // neighbours are mostly in the same file
    if (text.size() > Text::kCapacity) return text;
    auto known = paths_.find(text);
    if (known == paths_.end()) known = paths_.emplace(Text(text), text).first;
    last_ = &*known;
    return last_->second;
  }

 private:
  /// With its path, two cache lines.
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
  const Paths::value_type* last_ = nullptr;  ///< valid until the next insertion
};

}  // namespace kelvar_platform
