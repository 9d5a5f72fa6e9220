#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "Outcome.h"
#include "Tally.h"

namespace kelvar_readers {

/// Which functions and lines make up what a site takes, and how much of it lies on its own lines.
class SiteShares {
 public:
  SiteShares(Places& places, const Tally& tally);

  /// `function` is its number in the tally, `place` where it ran.
  void add(std::size_t site, std::size_t function, const Place& place, double weight);
  /// Appends what there is to say of the site, whose detail is the outcome's last. `time` is all that it takes,
  /// `within` what runs on its lines and in code that is inlined there, or where stacks are told all of it.
  void addTo(Outcome& outcome, std::size_t site, double time, double within) const;

 private:
  struct Key {
    std::size_t function = 0;
    std::size_t file = 0;
    int line = 0;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const noexcept {
      return (key.function * 0x9E3779B97F4A7C15ULL + key.file) * 0x9E3779B97F4A7C15ULL +
             static_cast<std::size_t>(key.line);
    }
  };
  struct Site {
    double onOwnLines = 0;
    std::unordered_map<Key, double, Hash> lines;
  };

  Places& places_;
  const Tally& tally_;
  std::vector<Site> sites_;
};

}  // namespace kelvar_readers
