#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "Outcome.h"
#include "Tally.h"

namespace kelvar_readers {

/// Which functions and lines make up the time of each site, and how much of it is spent on the site's own lines.
class SiteShares {
 public:
  SiteShares(Places& places, const Tally& tally);

  /// Adds `weight` at `place`, in the function with this number in the tally, to a site.
  void add(std::size_t site, std::size_t function, const Place& place, double weight);
  /// Appends the evidence of the site; its detail must be the outcome's last. `time` is the site's inclusive time,
  /// `within` the part on its lines and in code inlined there. With stacks, `within` is all of it.
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
