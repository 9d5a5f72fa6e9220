#include "Comparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "FamilyTest.h"
#include "RankTest.h"

namespace kelvar_compare {

namespace {

std::vector<double> known(std::vector<double> values) {
  std::erase_if(values, [](double one) { return std::isnan(one); });
  return values;
}

/// Runs that did not time a site say nothing of it, so that only the others count.
bool areEnough(const std::vector<double>& before, const std::vector<double>& after) {
  return before.size() >= kLeastRuns && after.size() >= kLeastRuns;
}

class Comparer {
 public:
  Comparer(const Side& before, const Side& after, const Settings& settings)
      : before_(before), after_(after), settings_(settings) {
    result_.tested = before.timedRuns() >= kLeastRuns && after.timedRuns() >= kLeastRuns;
    result_.judged = result_.tested || settings.threshold;
    result_.threshold = settings.threshold.value_or(Settings::kUsualThreshold);
  }

  Comparison run(const AnchorsOf& anchorsOf) {
    pair(anchorsOf);
    judgeWhole();
    judgeSites();
    for (SiteChange& site : result_.sites) describe(site);
    order();
    return std::move(result_);
  }

 private:
  void pair(const AnchorsOf& anchorsOf) {
    const auto identities = [](const Side& side) {
      std::vector<const Identity*> all;
      for (const SideSite& site : side.sites()) all.push_back(&site.identity);
      return all;
    };
    const std::vector<const Identity*> ours = identities(before_);
    const std::vector<Partner> partners = pairSites(ours, identities(after_), anchorsOf);
    std::vector<bool> found(ours.size(), false);
    result_.sites.reserve(partners.size());
    for (std::size_t after = 0; after < partners.size(); ++after) {
      result_.sites.push_back({.before = partners[after].before, .after = after, .by = partners[after].by, .time = {}});
      if (partners[after].before != Partner::kNone) found[partners[after].before] = true;
    }
    for (std::size_t before = 0; before < ours.size(); ++before) {
      if (!found[before]) result_.sites.push_back({.before = before, .time = {}});
    }
  }

  /// Without a test: by the threshold, if there is one.
  [[nodiscard]] Verdict byThreshold(double change) const {
    if (!settings_.threshold) return Verdict::untested;
    if (std::isnan(change) || std::abs(change) < *settings_.threshold || change == 0) return Verdict::same;
    return change > 0 ? Verdict::slower : Verdict::faster;
  }

  static double changeFrom(double before, double after) { return before > 0 ? after / before - 1 : kUnknown; }

  /// What most runs of both sides tell, of these the greatest; none where both sides have none in common: functions of
  /// one and loops of the other are different times.
  [[nodiscard]] std::optional<WholeOf> commonSource() const {
    std::optional<WholeOf> best;
    std::pair<std::size_t, double> most;
    for (const WholeOf source : kAllWholes) {
      const std::vector<double> before = known(before_.wholes(source));
      const std::vector<double> after = known(after_.wholes(source));
      const std::size_t runs = std::min(before.size(), after.size());
      if (runs == 0) continue;
      const std::pair one(runs, std::max(median(before), median(after)));
      if (best && one <= most) continue;
      best = source;
      most = one;
    }
    return best;
  }

  void judgeWhole() {
    TimeChange& whole = result_.whole;
    result_.wholeOf = commonSource();
    whole.before = median(before_.wholes(result_.wholeOf));
    whole.after = median(after_.wholes(result_.wholeOf));
    if (!result_.wholeOf) return;
    whole.change = changeFrom(whole.before, whole.after);
    whole.verdict = byThreshold(whole.change);
    const std::vector<double> before = known(before_.wholes(result_.wholeOf));
    const std::vector<double> after = known(after_.wholes(result_.wholeOf));
    if (!areEnough(before, after)) return;
    whole.p = rankTest(before, after);
    const bool more =
        whole.p <= familyLevelFor(before.size(), after.size()) && std::abs(whole.change) >= result_.threshold;
    whole.verdict = !more ? Verdict::same : whole.change > 0 ? Verdict::slower : Verdict::faster;
  }

  /// The part of the whole that matters is that of either side.
  [[nodiscard]] bool matters(const TimeChange& time) const {
    const auto share = [](double part, double whole) { return whole > 0 ? part / whole : 1; };
    return share(time.before, result_.whole.before) >= Settings::kLeastShare ||
           share(time.after, result_.whole.after) >= Settings::kLeastShare;
  }

  /// Takes out the runs that timed none of the sites: they would make the family's test ask for more than the others
  /// can show.
  static void dropUntimed(Family& family) {
    std::vector<bool> timed(family.before + family.after, false);
    for (const std::vector<double>& site : family.seconds) {
      for (std::size_t run = 0; run < site.size(); ++run) timed[run] = timed[run] || !std::isnan(site[run]);
    }
    for (std::vector<double>& site : family.seconds) {
      std::size_t kept = 0;
      for (std::size_t run = 0; run < site.size(); ++run) {
        if (timed[run]) site[kept++] = site[run];
      }
      site.resize(kept);
    }
    const auto middle = timed.begin() + static_cast<std::ptrdiff_t>(family.before);
    family.before = static_cast<std::size_t>(std::count(timed.begin(), middle, true));
    family.after = static_cast<std::size_t>(std::count(middle, timed.end(), true));
  }

  void judgeSites() {
    Family family{.before = before_.runs(), .after = after_.runs(), .seconds = {}};
    std::vector<SiteChange*> judged;
    for (SiteChange& site : result_.sites) {
      std::vector<double> times = site.before == SiteChange::kNone ? std::vector<double>() : before_.times(site.before);
      std::vector<double> later = site.after == SiteChange::kNone ? std::vector<double>() : after_.times(site.after);
      site.time.before = median(times);
      site.time.after = median(later);
      site.time.change = changeFrom(site.time.before, site.time.after);
      if (std::isnan(site.time.seconds())) continue;
      site.time.verdict = Verdict::small;
      if (!matters(site.time)) continue;
      site.time.verdict = byThreshold(site.time.change);
      if (!areEnough(known(times), known(later))) continue;
      times.insert(times.end(), later.begin(), later.end());
      family.seconds.push_back(std::move(times));
      judged.push_back(&site);
    }
    dropUntimed(family);
    const std::vector<SiteVerdict> verdicts = judge(family);
    for (std::size_t at = 0; at < judged.size(); ++at) {
      TimeChange& time = judged[at]->time;
      time.p = verdicts[at].p;
      time.amongAll = verdicts[at].familyP;
      const bool more = isCall(verdicts[at], family, result_.threshold);
      time.verdict = !more ? Verdict::same : time.change > 0 ? Verdict::slower : Verdict::faster;
    }
  }

  void describe(SiteChange& site) const {
    const bool isNew = site.before == SiteChange::kNone;
    if (site.after == SiteChange::kNone) {
      site.state = State::gone;
      const SideSite& known = before_.sites()[site.before];
      site.lost = known.identity.sort == Sort::annotated && known.identity.sequence != 0 &&
                  known.runs == before_.runs() && !(settings_.lives && settings_.lives(known.identity));
      return;
    }
    const SideSite& now = after_.sites()[site.after];
    const std::int64_t racesBefore = isNew ? -1 : before_.sites()[site.before].races;
    if (now.races > 0 && racesBefore <= 0) site.races = Turn::came;
    if (now.races == 0 && racesBefore > 0) site.races = Turn::went;
    if (isNew) {
      site.state = State::added;
      site.stale = now.match == Match::none;
      return;
    }
    const SideSite& known = before_.sites()[site.before];
    const Vectorised then = before_.vectorised(site.before);
    const Vectorised today = after_.vectorised(site.after);
    if (then != today && then != Vectorised::unknown && today != Vectorised::unknown) {
      site.vectorisation = then == Vectorised::no ? Turn::came : today == Vectorised::no ? Turn::went : Turn::none;
      site.otherVectorisation = site.vectorisation == Turn::none;
    }
    const int stride = before_.stride(site.before);
    const int strideNow = after_.stride(site.after);
    site.stride = stride >= 0 && strideNow >= 0 && stride != strideNow;
    site.stale = known.match != Match::absent && now.match != Match::absent && now.match < known.match;
    const bool differs = site.time.called() || site.vectorisation != Turn::none || site.races != Turn::none ||
                         site.otherVectorisation || site.stride || site.stale;
    site.state = differs ? State::changed : State::unchanged;
  }

  void order() {
    const auto size = [](const SiteChange& site) {
      const double one = site.state == State::gone    ? site.time.before
                         : site.state == State::added ? site.time.after
                                                      : site.time.seconds();
      return std::isnan(one) ? -1 : std::abs(one);
    };
    std::stable_sort(result_.sites.begin(), result_.sites.end(), [&](const SiteChange& a, const SiteChange& b) {
      const auto group = [&](const SiteChange& one) { return isNotable(one, result_) ? State::changed : one.state; };
      return std::tuple(group(a), -size(a)) < std::tuple(group(b), -size(b));
    });
  }

  const Side& before_;
  const Side& after_;
  const Settings& settings_;
  Comparison result_;
};

}  // namespace

std::string_view nameOf(State state) noexcept {
  static constexpr std::array<std::string_view, 4> kNames{"changed", "unchanged", "new", "gone"};
  return kNames[static_cast<std::size_t>(state)];
}

std::string_view nameOf(Verdict verdict) noexcept {
  static constexpr std::array<std::string_view, 6> kNames{"untimed", "small", "untested", "same", "slower", "faster"};
  return kNames[static_cast<std::size_t>(verdict)];
}

std::string_view nameOf(WholeOf source) noexcept {
  static constexpr std::array<std::string_view, kAllWholes.size()> kNames{"functions", "sites", "loops"};
  return kNames[static_cast<std::size_t>(source)];
}

bool isNotable(const SiteChange& site, const Comparison& comparison) noexcept {
  if (site.state == State::changed) return true;
  return site.time.verdict == Verdict::untested && std::abs(site.time.change) >= comparison.threshold;
}

std::size_t Comparison::count(const std::function<bool(const SiteChange&)>& is) const {
  return static_cast<std::size_t>(std::count_if(sites.begin(), sites.end(), is));
}

Comparison compared(const Side& before, const Side& after, const AnchorsOf& anchorsOf, const Settings& settings) {
  return Comparer(before, after, settings).run(anchorsOf);
}

}  // namespace kelvar_compare
