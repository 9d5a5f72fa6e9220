#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelvar_sources {

/// Pairs markers that begin a region with the calls or comments that end it. An end in the same block as the beginning
/// ends the region. Ends in inner blocks belong to early exits; the last of them counts if there is no other.
class RegionPairs {
 public:
  struct Pair {
    std::size_t site = 0;
    std::size_t end = 0;  ///< as given to `end`
  };

  /// `name` is the name that ends the region; `key` the label or handle that both share, which may be empty. `block`
  /// identifies the block.
  void begin(const std::string& name, const std::string& key, std::size_t site, std::uint32_t block);
  /// An end without a key ends the latest region; one with a key only a region with that key.
  void end(const std::string& name, const std::string& key, std::size_t at, std::uint32_t block);

  /// All pairs, after the last end.
  [[nodiscard]] std::vector<Pair> pairs();

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Open {
    std::size_t site = 0;
    std::uint32_t block = 0;
    std::size_t tentative = kNone;
    bool closed = false;
  };
  using Stack = std::vector<std::size_t>;  // indices of opens

  void close(std::size_t index, std::size_t at);
  Stack& pruned(const std::string& key);

  std::vector<Open> opens_;
  std::unordered_map<std::string, Stack> stacks_;  // by name alone, and by name and key
  std::vector<Pair> pairs_;
};

}  // namespace kelvar_sources
