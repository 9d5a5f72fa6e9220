#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "Side.h"

namespace kelvar_compare {

enum class State : std::uint8_t { changed, unchanged, added, gone };
[[nodiscard]] std::string_view nameOf(State state) noexcept;

/// What is said of a time.
enum class Verdict : std::uint8_t {
  untimed,   ///< a side has no time
  small,     ///< below the part of the whole from which sites are judged
  untested,  ///< too few runs, and no threshold was given
  same,      ///< no more than noise, or less than the threshold
  slower,
  faster,
};
[[nodiscard]] std::string_view nameOf(Verdict verdict) noexcept;
[[nodiscard]] std::string_view nameOf(WholeOf source) noexcept;

enum class Turn : std::uint8_t { none, came, went };

struct TimeChange {
  Verdict verdict = Verdict::untimed;
  double before = kUnknown;    ///< the median of BEFORE's runs, in seconds
  double after = kUnknown;     ///< the same of AFTER
  double change = kUnknown;    ///< AFTER over BEFORE less 1
  double p = kUnknown;         ///< of the site's rank test; NaN where it was not tested
  double amongAll = kUnknown;  ///< how often chance makes any of the sites differ as clearly

  [[nodiscard]] double seconds() const noexcept { return after - before; }
  [[nodiscard]] bool called() const noexcept { return verdict == Verdict::slower || verdict == Verdict::faster; }
};

/// A site of either side, or of both.
struct SiteChange {
  static constexpr std::size_t kNone = Partner::kNone;

  std::size_t before = kNone;  ///< an index of BEFORE's sites
  std::size_t after = kNone;   ///< the same of AFTER
  PairedBy by = PairedBy::nothing;
  State state = State::unchanged;
  TimeChange time;
  Turn vectorisation = Turn::none;  ///< the loop became vectorised, or ceased to be
  Turn races = Turn::none;          ///< came: AFTER found some, and BEFORE found none or did not look
  bool otherVectorisation = false;  ///< wholly or partly: that changed
  bool stride = false;              ///< another sort of stride is the common one
  bool stale = false;               ///< AFTER's figures match the annotations less well than BEFORE's
  bool lost = false;                ///< every run of BEFORE has it, and its annotation no longer lives
};

struct Settings {
  static constexpr double kUsualThreshold = 0.03;
  static constexpr double kLeastShare = 0.01;  ///< of the whole; a smaller site is not judged

  /// The least change that counts, 0.05 for 5 %. Where too few runs are there for a test, it decides alone.
  std::optional<double> threshold;
  /// Whether the annotation lives, for a site that is gone; it may be disabled.
  std::function<bool(const Identity& site)> lives;
};

struct Comparison {
  bool tested = false;             ///< enough runs of either side timed something
  bool judged = false;             ///< by the test or by a threshold that somebody chose
  double threshold = 0;            ///< that was used
  TimeChange whole;                ///< of the program
  std::optional<WholeOf> wholeOf;  ///< its source; none: no source is on both sides, and each has its own
  std::vector<SiteChange> sites;   ///< changed sites first; within a state, the greatest difference first

  [[nodiscard]] std::size_t count(const std::function<bool(const SiteChange&)>& is) const;
};

[[nodiscard]] Comparison compared(const Side& before, const Side& after, const AnchorsOf& anchorsOf,
                                  const Settings& settings);

/// Whether people want to see it among what changed: it did, or its time differs and could not be tested.
[[nodiscard]] bool isNotable(const SiteChange& site, const Comparison& comparison) noexcept;

}  // namespace kelvar_compare
