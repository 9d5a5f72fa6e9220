#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Likeness.h"
#include "SourceScan.h"

namespace kelvar_sources {

/// The step that found a site.
enum class Step {
  none,
  samePlace,         ///< its file did not change
  fullKey,           ///< same text, function, lines before and after
  keyWithoutBefore,  ///< same text, function, lines after
  textAndAfter,      ///< same text, lines after
  alignment,         ///< the best alignment between two certain sites
  elsewhere,         ///< same text, function, lines after, in another place
  deadSite,          ///< the same for a site that was gone
};
[[nodiscard]] std::string_view nameOf(Step step);

/// A site to find again.
struct KnownSite {
  std::size_t file = 0;  ///< the number of the file in which it was last
  int line = 0;
  bool alive = true;
  Fingerprint print;
};

/// A site in the present sources.
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
  std::vector<bool> contested;  ///< seen sites that may be an ambiguous known one, and so are not new
};

/// Finds known sites among those seen. Both lists must be in the order of places within each file. `renamed` holds for
/// each file the number of the file that it is now, its own if it was not renamed. In a file that is `unchanged`, each
/// site is where it was, and ambiguous sites stay so. No seen site is found twice.
[[nodiscard]] FindResult findAgain(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen,
                                   const std::vector<std::size_t>& renamed, const std::vector<bool>& unchanged);

}  // namespace kelvar_sources
