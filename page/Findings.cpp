#include "Findings.h"

#include <algorithm>

#include "Figures.h"

namespace kelvar_page {

namespace {

constexpr double kWorthwhile = 1.05;  // gain of the program
constexpr double kHot = 0.1;          // share of the whole
constexpr double kNoticeable = 0.01;
constexpr double kDiffers = 1.5;

std::string named(const Site& site) {
  return "'" + site.label + "' (" + shortPlace(site.place) + ")";
}

std::string andMore(std::int64_t count) {
  return count > 1 ? " The same holds for " + counted(count - 1, "other site.", "other sites.") : "";
}

bool races(const Site& site) {
  return site.races.value_or(0) > 0;
}

bool gains(const Site& site) {
  return site.gain.value_or(0) >= kWorthwhile;
}

double ratioOfTimes(const Site& site) {
  if (!site.surveyTime || !site.suitabilityTime) return 1;
  const double least = std::min(*site.surveyTime, *site.suitabilityTime);
  const double most = std::max(*site.surveyTime, *site.suitabilityTime);
  return least > 0 ? most / least : 1;
}

bool hasMoved(const Site& site) {
  return std::find(site.match.begin(), site.match.end(), kelvar::kApproximateMatchCurrent) != site.match.end();
}

std::string raceText(const Site& site, const EvidenceIndex& evidence) {
  std::string text = counted(*site.races, "race", "races");
  const Evidence* const race = evidence.first(site, EvidenceKind::race);
  if (!race) return text;
  if (!race->object.empty()) text += " on " + race->object;
  const std::string places = placesText(*race);
  return places.empty() ? text : text + " (" + places + ")";
}

std::string timePart(const Site& site, const Grounds& grounds) {
  const auto share = grounds.overview.shareOf(site);
  return share ? shareText(*share) + " of the time (" + timeText(*site.time, grounds.units.of(site)) + ")" : "";
}

Finding begin(const Site& site, const Grounds& grounds) {
  std::string text = "Begin with " + named(site) + ":";
  if (const std::string part = timePart(site, grounds); !part.empty()) text += " it takes " + part + ",";
  if (gains(site)) {
    text += " is said to make the program " + gainText(*site.gain) + " as fast";
    if (site.cores > 1) text += " on " + std::to_string(site.cores) + " cores";
    text += ",";
  }
  text += site.races ? " and has no race." : " and nobody has looked for races in it yet.";
  return {.rule = "begin", .sentence = text, .site = site};
}

Finding unannotated(const Site& site, const Grounds& grounds) {
  return {.rule = "begin",
          .sentence = "Begin with the function " + named(site) + ": it takes " + timePart(site, grounds) +
                      ". Annotate it to learn what it would gain in parallel.",
          .site = site};
}

Finding race(const Site& site, std::int64_t count, const EvidenceIndex& evidence) {
  std::string text = named(site);
  if (gains(site)) text += " is said to gain " + gainText(*site.gain) + ", but";
  text += " has " + raceText(site, evidence) + ": mend that before it runs in parallel.";
  if (count > 1) text += " " + counted(count - 1, "other site has", "other sites have") + " races as well.";
  return {.rule = "race", .sentence = text, .site = site};
}

Finding scalar(const Site& site, std::int64_t count, const Grounds& grounds) {
  std::string text = named(site) + " takes " + timePart(site, grounds) + " and is not vectorised";
  const Evidence* const missed = grounds.evidence.first(site, EvidenceKind::missed);
  if (const std::string reason = missed ? reasonText(*missed) : ""; !reason.empty()) text += ": " + reason;
  if (const auto stride = strideOf(site); stride && stride->sort != 0) {
    text +=
        "; " + shareText(stride->share) + " of its steps through memory are of " + strideName(stride->sort) + " stride";
    if (const Evidence* const line = grounds.evidence.first(site, EvidenceKind::stride))
      text += " (" + line->text + ")";
  }
  return {.rule = "scalar", .sentence = text + "." + andMore(count), .site = site};
}

}  // namespace

void Findings::Best::offer(const Site& candidate, double by) {
  ++count;
  if (site && by <= key) return;
  site = candidate;
  key = by;
}

void Findings::look(const Site& site) {
  if (isEnd(site)) return;
  const double time = site.time.value_or(0);
  const bool annotated = site.sort == SiteSort::annotated;
  const double gain = site.gain.value_or(0);
  if (site.sort == SiteSort::function && time > 0) function_.offer(site, time);
  if (annotated && !races(site)) {
    if (gains(site)) gain_.offer(site, gain);
    if (time > 0) longest_.offer(site, time);
  }
  if (annotated && races(site)) race_.offer(site, gain);
  // A site and its loop have the same time; prefer the site, which has a name and more analyses.
  if (site.vectorised == Vectorised::no && time > 0) scalar_.offer(site, annotated ? time * 1.000001 : time);
  if (annotated && races(site) && site.vectorised && site.vectorised != Vectorised::no)
    vectorisedRace_.offer(site, time);
  if (annotated && ratioOfTimes(site) > kDiffers) times_.offer(site, time);
  if (annotated && site.current && hasMoved(site)) moved_.offer(site, time);
  if (annotated && !site.current) missing_.offer(site, time);
}

std::vector<Finding> Findings::sentences(const Grounds& grounds) const {
  const auto& [overview, evidence, sources, units] = grounds;
  std::vector<Finding> all;
  const auto share = [&grounds](const Site& site) { return grounds.overview.shareOf(site).value_or(0); };
  if (gain_.site) {
    all.push_back(begin(*gain_.site, grounds));
  } else if (longest_.site && share(*longest_.site) >= kHot) {
    all.push_back(begin(*longest_.site, grounds));
  } else if (!longest_.site && function_.site && share(*function_.site) >= kHot) {
    all.push_back(unannotated(*function_.site, grounds));
  }
  const bool told = vectorisedRace_.site.has_value();  // below
  if (race_.site && (gains(*race_.site) || !told)) all.push_back(race(*race_.site, race_.count, evidence));
  if (scalar_.site && share(*scalar_.site) >= kHot) all.push_back(scalar(*scalar_.site, 1, grounds));
  if (vectorisedRace_.site) {
    const Site& site = *vectorisedRace_.site;
    all.push_back({.rule = "conflict",
                   .sentence = named(site) + " is vectorised, yet has " + raceText(site, evidence) +
                               ": one of the two results is of another build, or the vector code races." +
                               andMore(vectorisedRace_.count),
                   .site = site});
  } else if (times_.site && units.survey == units.suitability && share(*times_.site) >= kNoticeable) {
    const Site& site = *times_.site;
    all.push_back({.rule = "conflict",
                   .sentence = named(site) + " takes " + timeText(*site.surveyTime, units.survey) +
                               " by the survey and " + timeText(*site.suitabilityTime, units.suitability) +
                               " by the suitability analysis: collect both anew." + andMore(times_.count),
                   .site = site});
  }
  const Best& stale = moved_.site && (!missing_.site || moved_.key >= missing_.key) ? moved_ : missing_;
  if (stale.site && overview.anyCurrent()) {
    const std::int64_t others = moved_.count + missing_.count - 1;
    if (const auto why = stalenessOf(*stale.site, overview, sources)) {
      std::string text = named(*stale.site) + " is stale: " + why->why;
      if (others > 0) text += (others == 1 ? "; so is " : "; so are ") + counted(others, "other site", "other sites");
      all.push_back({.rule = "stale", .sentence = text + ". Collect again.", .site = *stale.site});
    }
  }
  return all;
}

}  // namespace kelvar_page
