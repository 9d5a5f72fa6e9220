#include "CompareRows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>

#include "Figures.h"
#include "RankTest.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::Side;
using kelvar_compare::SiteChange;
using kelvar_compare::State;
using kelvar_compare::TimeChange;
using kelvar_compare::Turn;
using kelvar_compare::Verdict;
using Cell = TextTable::Cell;

std::string percentText(double change) {
  if (std::isnan(change)) return {};
  std::array<char, 32> text{};
  const double percent = 100 * change;
  static_cast<void>(
      std::snprintf(text.data(), text.size(), std::abs(percent) < 99.95 ? "%+.1f%%" : "%+.0f%%", percent));
  return text.data();
}

std::string timeOrDash(double time, const kelvar_page::TimeUnit& unit) {
  return std::isnan(time) ? "-" : kelvar_page::timeText(time, unit);
}

std::string pText(double p) {
  std::array<char, 32> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), p < 0.001 ? "p < 0.001" : "p = %.3f", p));
  return text.data();
}

std::string arrow(const std::string& before, const std::string& after) {
  if (before == after) return before;
  return (before.empty() ? "-" : before) + " to " + (after.empty() ? "-" : after);
}

Paint paintOf(Verdict verdict) {
  return verdict == Verdict::slower ? Paint::bad : verdict == Verdict::faster ? Paint::good : Paint::plain;
}

std::string sideText(const char* name, const Side& side) {
  std::string text =
      std::string(name) + ": " + kelvar_page::counted(static_cast<std::int64_t>(side.runs()), "run", "runs");
  text += " (" + visible(side.names().front());
  if (side.runs() > 2) text += " ...";
  if (side.runs() > 1) text += " " + visible(side.names().back());
  return text + ")";
}

std::string wholeText(const ComparedSides& sides, const Terminal& terminal) {
  const TimeChange& whole = sides.comparison.whole;
  if (whole.verdict == Verdict::untimed) return "In all: not timed on both sides by the same analysis";
  std::string text = "In all: " + kelvar_page::timeText(whole.before, sides.unitBefore()) + " to " +
                     kelvar_page::timeText(whole.after, sides.unitAfter());
  if (!sides.oneUnit()) return text;
  text += ", " + percentText(whole.change) + " of BEFORE";
  if (whole.called()) text += ", " + painted(terminal, paintOf(whole.verdict), nameOf(whole.verdict));
  if (whole.verdict == Verdict::same && !std::isnan(whole.p)) text += ", no more than noise";
  if (!std::isnan(whole.p)) text += " (" + pText(whole.p) + ")";
  return text;
}

std::string countsText(const ComparedSides& sides) {
  std::string text = "Sites: ";
  for (const State state : {State::changed, State::added, State::gone, State::unchanged}) {
    const auto count = sides.comparison.count([&](const SiteChange& site) { return site.state == state; });
    if (state != State::changed) text += ", ";
    text += kelvar_page::countText(static_cast<std::int64_t>(count)) + " " + std::string(nameOf(state));
  }
  return text;
}

/// The sources of the times, with a warning if they differ: a function with half of the instructions need not take half
/// of the seconds.
std::string sourcesText(const ComparedSides& sides, const Terminal& terminal) {
  const std::string before = visible(joined(sides.timeSourcesBefore));
  const std::string after = visible(joined(sides.timeSourcesAfter));
  if (before.empty() && after.empty()) return {};
  const auto orUnknown = [](const std::string& text) { return text.empty() ? "an unknown source" : text; };
  if (before == after && sides.oneTimeSource()) return "Times by " + before;
  std::string text = "Times of BEFORE by " + orUnknown(before) + "; of AFTER by " + orUnknown(after);
  if (sides.oneTimeSource()) return text;
  return text + ": " + painted(terminal, Paint::bad, "these are not one measure, and a difference may be theirs");
}

/// Says why no time is called slower or faster, or that only the threshold decides. Empty when there was a test.
std::string noteText(const ComparedSides& sides) {
  const kelvar_compare::Comparison& comparison = sides.comparison;
  if (comparison.tested) return {};
  const std::string least = std::to_string(kelvar_compare::kLeastRuns);
  const std::size_t before = sides.before.timedRuns();
  const std::size_t after = sides.after.timedRuns();
  const bool all = before == sides.before.runs() && after == sides.after.runs();
  std::string text = "A test against noise takes " + least + " runs a side" + (all ? "" : " with times") + ": with " +
                     std::to_string(before) + " and " + std::to_string(after);
  if (!comparison.judged) return text + ", no time is called slower or faster.";
  return text + ", the threshold of " + percentText(comparison.threshold).substr(1) + " alone decides.";
}

std::string whereText(const kelvar_compare::Identity& site) {
  if (site.file.empty()) return "?";
  return visible(site.file.get_leaf()) + ":" + std::to_string(site.line);
}

Cell siteCell(const kelvar_compare::Identity& site) {
  const bool annotated = site.sort == kelvar_compare::Sort::annotated;
  return {visible(site.label.empty() ? "(no label)" : site.label), annotated ? Paint::bold : Paint::plain};
}

Cell verdictCell(const TimeChange& time) {
  if (time.called()) return {std::string(nameOf(time.verdict)), paintOf(time.verdict)};
  if (time.verdict == Verdict::untested) return {"?", Paint::dim};
  return {time.verdict == Verdict::same ? "as before" : "", Paint::dim};
}

Cell vectorCell(const ComparedSides& sides, const SiteChange& site) {
  if (site.vectorisation == Turn::none && !site.otherVectorisation) return {};
  const auto name = [](kelvar_compare::Vectorised vectorised) { return std::string(vectorisedName(vectorised)); };
  return {arrow(name(sides.before.vectorised(site.before)), name(sides.after.vectorised(site.after))),
          site.vectorisation == Turn::came   ? Paint::good
          : site.vectorisation == Turn::went ? Paint::bad
                                             : Paint::plain};
}

Cell racesCell(const ComparedSides& sides, const SiteChange& site) {
  if (site.races == Turn::none) return {};
  const auto count = [](const Side& side, std::size_t index) {
    const std::int64_t races = index == SiteChange::kNone ? -1 : side.sites()[index].races;
    return races < 0 ? std::string() : kelvar_page::countText(races);
  };
  return {arrow(count(sides.before, site.before), count(sides.after, site.after)),
          site.races == Turn::came ? Paint::bad : Paint::good};
}

std::string strideText(const ComparedSides& sides, const SiteChange& site) {
  static constexpr std::array kNames{"", "unit", "constant", "varying"};
  if (!site.stride) return {};
  return arrow(kNames[static_cast<std::size_t>(sides.before.stride(site.before)) + 1],
               kNames[static_cast<std::size_t>(sides.after.stride(site.after)) + 1]);
}

std::string gainText(const ComparedSides& sides, const SiteChange& site) {
  const double before = sides.before.gain(site.before);
  const double after = sides.after.gain(site.after);
  if (std::isnan(before) || std::isnan(after)) return {};
  return arrow(kelvar_page::gainText(before), kelvar_page::gainText(after));
}

std::string matchText(const ComparedSides& sides, const SiteChange& site) {
  static constexpr std::array kNames{"", "none", "approximate", "exact"};
  if (!site.stale) return {};
  return arrow(kNames[static_cast<std::size_t>(sides.before.sites()[site.before].match)],
               kNames[static_cast<std::size_t>(sides.after.sites()[site.after].match)]);
}

}  // namespace

std::vector<std::string> compareHead(const ComparedSides& sides, const Terminal& terminal) {
  std::vector<std::string> lines{sideText("BEFORE", sides.before), sideText("AFTER", sides.after),
                                 wholeText(sides, terminal), countsText(sides)};
  if (std::string sources = sourcesText(sides, terminal); !sources.empty()) lines.push_back(std::move(sources));
  std::string note = noteText(sides);
  if (!note.empty()) lines.push_back(std::move(note));
  return lines;
}

std::vector<TextTable::Column> changedColumns() {
  return {{.heading = "Site"},
          {.heading = "Kind"},
          {.heading = "Where", .cut = TextTable::Cut::beginning},
          {.heading = "Before", .right = true},
          {.heading = "After", .right = true},
          {.heading = "Change", .right = true},
          {.heading = "Verdict"},
          {.heading = "Vector"},
          {.heading = "Races"},
          {.heading = "Stride"},
          {.heading = "Gain"},
          {.heading = "Match"},
          {.heading = "Paired by"}};
}

std::vector<TextTable::Cell> changedCells(const ComparedSides& sides, const SiteChange& site) {
  const kelvar_compare::Identity& identity = identityOf(sides, site);
  const bool timed = site.time.verdict != Verdict::untimed;
  return {
      siteCell(identity),
      {compareKindName(identity)},
      {whereText(identity), Paint::dim},
      {timed ? timeOrDash(site.time.before, sides.unitBefore()) : ""},
      {timed ? timeOrDash(site.time.after, sides.unitAfter()) : ""},
      sides.oneUnit() ? TextTable::Cell{percentText(site.time.change), paintOf(site.time.verdict)} : TextTable::Cell{},
      sides.oneUnit() ? verdictCell(site.time) : TextTable::Cell{},
      vectorCell(sides, site),
      racesCell(sides, site),
      {strideText(sides, site)},
      {gainText(sides, site)},
      {matchText(sides, site)},
      {std::string(nameOf(site.by)), Paint::dim}};
}

std::vector<TextTable::Column> aloneColumns() {
  return {{.heading = ""},
          {.heading = "Site"},
          {.heading = "Kind"},
          {.heading = "Where", .cut = TextTable::Cut::beginning},
          {.heading = "Time", .right = true},
          {.heading = "Races"}};
}

std::vector<TextTable::Cell> aloneCells(const ComparedSides& sides, const SiteChange& site) {
  const kelvar_compare::Identity& identity = identityOf(sides, site);
  const bool gone = site.state == State::gone;
  const double time = gone ? site.time.before : site.time.after;
  return {{std::string(nameOf(site.state)), Paint::dim},
          siteCell(identity),
          {compareKindName(identity)},
          {whereText(identity), Paint::dim},
          {std::isnan(time) ? "" : kelvar_page::timeText(time, gone ? sides.unitBefore() : sides.unitAfter())},
          racesCell(sides, site)};
}

ShownSites shownSites(const ComparedSides& sides, std::size_t most) {
  ShownSites shown;
  std::size_t gone = 0;
  std::size_t added = 0;
  for (const SiteChange& site : sides.comparison.sites) {
    if (kelvar_compare::isNotable(site, sides.comparison)) {
      if (++shown.allChanged <= most) shown.changed.push_back(&site);
    } else if (site.state == State::gone || site.state == State::added) {
      ++shown.allAlone;
      if (++(site.state == State::gone ? gone : added) <= most / 2) shown.alone.push_back(&site);
    }
  }
  std::stable_partition(shown.alone.begin(), shown.alone.end(),
                        [](const SiteChange* site) { return site->state == State::gone; });
  return shown;
}

std::string leftOutText(std::size_t all, std::size_t shown) {
  if (all <= shown) return {};
  return "... and " + kelvar_page::countText(static_cast<std::int64_t>(all - shown)) +
         " more: kelvar compare --format csv and json have all of them.";
}

}  // namespace kelvar_tool
