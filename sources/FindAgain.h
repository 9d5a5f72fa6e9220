#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Likeness.h"
#include "SourceScan.h"

namespace kelvar_sources {

/// What decided where a site is now.
enum class Step {
  none,
  samePlace,         ///< its file did not change
  fullKey,           ///< text, function, lines before and behind
  keyWithoutBefore,  ///< text, function, lines behind
  textAndAfter,      ///< text, lines behind
  alignment,         ///< the best alignment in order between sites that are certain
  elsewhere,         ///< text, function, lines behind, elsewhere
  deadSite,          ///< the same of a site that was gone
};
[[nodiscard]] std::string_view nameOf(Step step);

/// A site that is to be found again.
struct KnownSite {
  std::size_t file = 0;  ///< the number of the file that it was in last
  int line = 0;
  bool alive = true;
  Fingerprint print;
};

/// A site as the sources have it now.
struct SeenSite {
  std::size_t file = 0;
  int line = 0;
  Fingerprint print;
};

struct FindResult {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Answer {
    std::size_t seen = kNone;  ///< index of a seen site; kNone: gone, or ambiguous
    Step step = Step::none;
    bool ambiguous = false;
  };
  std::vector<Answer> known;
  std::vector<bool> contested;  ///< seen sites that ambiguous ones may be: none of them is a new site
};

/// Finds known sites among those seen. Both lists are in the order of their places within a file. `renamed` answers, by
/// number, which file a file is now: itself where it kept its name. In a file that is `unchanged` since its sites were
/// found, each site is where it was, and what was ambiguous stays so. No seen site is the answer for two.
[[nodiscard]] FindResult findAgain(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen,
                                   const std::vector<std::size_t>& renamed, const std::vector<bool>& unchanged);

}  // namespace kelvar_sources
