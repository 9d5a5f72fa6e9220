#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "SourceScan.h"

namespace kelvar_sources {

/// Texts as numbers: equal texts, but for their blanks, have the same. 0 is the empty text.
class TextNumbers {
 public:
  [[nodiscard]] std::uint32_t of(std::string_view text);

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> numbers_;
  std::string plain_;  // the text that was asked for last, without its blanks; its memory is used again
};

/// An anchor as numbers.
struct Fingerprint {
  static constexpr std::size_t kLines = 3;

  std::uint32_t kind = 0;
  std::uint32_t text = 0;
  std::uint32_t directive = 0;  ///< what the text begins with: a directive without its clauses, the name of a call
  std::uint32_t function = 0;
  std::array<std::uint32_t, kLines> before{};  ///< the nearest line first
  std::array<std::uint32_t, kLines> after{};

  bool operator==(const Fingerprint&) const = default;
};

[[nodiscard]] Fingerprint fingerprintOf(Kind kind, const Anchor& anchor, TextNumbers& numbers);

/// From this on, two sites may be one.
constexpr int kLeastLikeness = 5;

/// Equal text 3, the same directive 1, the same function 3, each common line behind 2 and before 1, the same next line
/// 2 more. 0 for different kinds.
[[nodiscard]] int likeness(const Fingerprint& a, const Fingerprint& b);

/// What a fingerprint is compared by, the strictest first.
enum class KeyLevel { full, withoutBefore, textAndAfter };
using Key = std::array<std::uint32_t, 9>;
[[nodiscard]] Key keyOf(const Fingerprint& fingerprint, KeyLevel level);

struct KeyHash {
  std::size_t operator()(const Key& key) const noexcept;
};

}  // namespace kelvar_sources
