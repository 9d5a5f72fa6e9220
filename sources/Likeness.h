#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "SourceScan.h"

namespace kelvar_sources {

/// Numbers texts. Texts that differ only in blanks have the same number; 0 is the empty text.
class TextNumbers {
 public:
  [[nodiscard]] std::uint32_t of(std::string_view text);

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> numbers_;
  std::string plain_;  // the latest text without blanks, kept to reuse its memory
};

/// An anchor with its texts as numbers.
struct Fingerprint {
  static constexpr std::size_t kLines = 3;

  std::uint32_t kind = 0;
  std::uint32_t text = 0;
  std::uint32_t directive = 0;  ///< the beginning of the text: a directive without clauses, or the name of a call
  std::uint32_t function = 0;
  std::array<std::uint32_t, kLines> before{};  ///< the nearest line first
  std::array<std::uint32_t, kLines> after{};

  bool operator==(const Fingerprint&) const = default;
};

[[nodiscard]] Fingerprint fingerprintOf(Kind kind, const Anchor& anchor, TextNumbers& numbers);

/// The least likeness of two sites that may be the same.
constexpr int kLeastLikeness = 5;

/// Points: equal text 3, same directive 1, same function 3, each common line after 2 and before 1, same next line 2
/// more. 0 for different kinds.
[[nodiscard]] int likeness(const Fingerprint& a, const Fingerprint& b);

/// The keys by which fingerprints are compared, the strictest first.
enum class KeyLevel { full, withoutBefore, textAndAfter };
using Key = std::array<std::uint32_t, 9>;
[[nodiscard]] Key keyOf(const Fingerprint& fingerprint, KeyLevel level);

struct KeyHash {
  std::size_t operator()(const Key& key) const noexcept;
};

}  // namespace kelvar_sources
