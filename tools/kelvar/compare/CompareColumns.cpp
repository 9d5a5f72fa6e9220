#include "CompareColumns.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <string>

#include "RankTest.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::Identity;
using kelvar_compare::Side;
using kelvar_compare::SideSite;
using kelvar_compare::SiteChange;
using kelvar_compare::Turn;

/// Whether a time of the program or of a site was judged.
std::string lacksTimes(const ComparedSides& sides) {
  const auto judged = [](const kelvar_compare::TimeChange& time) {
    return time.called() || time.verdict == kelvar_compare::Verdict::same;
  };
  if (judged(sides.comparison.whole)) return {};
  if (sides.comparison.count([&](const SiteChange& site) { return judged(site.time); }) > 0) return {};
  return "times on both sides, of " + std::to_string(kelvar_compare::kLeastRuns) +
         " runs a side or with --threshold; no time could be judged";
}

std::string lacksRaces(const ComparedSides& sides) {
  return hasResultOf(sides.after, kelvar_2_1_7::kCorrectnessKind)
             ? std::string()
             : "a result of the dependencies analysis in AFTER; no run of it looked for races";
}

std::string lacksVectorization(const ComparedSides& sides) {
  const bool before = hasResultOf(sides.before, kelvar_2_1_7::kVectorizationKind);
  if (before && hasResultOf(sides.after, kelvar_2_1_7::kVectorizationKind)) return {};
  return std::string("a result of the vectorization analysis on both sides; no run of ") +
         (before ? "AFTER" : "BEFORE") + " has one";
}

Cell textCell(std::string_view text) {
  return text.empty() ? Cell() : Cell(std::string(text));
}

Cell numberCell(double number) {
  return std::isnan(number) ? Cell() : Cell(number);
}

Cell turnCell(Turn turn, const char* came, const char* went) {
  return turn == Turn::came ? textCell(came) : turn == Turn::went ? textCell(went) : Cell();
}

/// A value of one side; none where that side lacks the site.
template <Cell (*value)(const Side& side, std::size_t site)>
Cell before(const ComparedSides& sides, const SiteChange& site) {
  return site.before == SiteChange::kNone ? Cell() : value(sides.before, site.before);
}
template <Cell (*value)(const Side& side, std::size_t site)>
Cell after(const ComparedSides& sides, const SiteChange& site) {
  return site.after == SiteChange::kNone ? Cell() : value(sides.after, site.after);
}

Cell sequence(const Side& side, std::size_t site) {
  const unsigned long number = side.sites()[site].identity.sequence;
  return number == 0 ? Cell() : Cell(std::uint64_t{number});
}

Cell file(const Side& side, std::size_t site) {
  return textCell(std::filesystem::path(side.sites()[site].identity.file.get_text()).lexically_normal().native());
}

Cell line(const Side& side, std::size_t site) {
  const int number = side.sites()[site].identity.line;
  return number == 0 ? Cell() : Cell(std::int64_t{number});
}

Cell runs(const Side& side, std::size_t site) {
  return std::int64_t{side.sites()[site].runs};
}

Cell time(const Side& side, std::size_t site) {
  return numberCell(kelvar_compare::median(side.times(site)));
}

Cell vectorised(const Side& side, std::size_t site) {
  return textCell(vectorisedName(side.vectorised(site)));
}

Cell races(const Side& side, std::size_t site) {
  const std::int64_t count = side.sites()[site].races;
  return count < 0 ? Cell() : Cell(count);
}

Cell stride(const Side& side, std::size_t site) {
  static constexpr std::array<std::string_view, 4> kNames{"", "unit", "constant", "varying"};
  return textCell(kNames[static_cast<std::size_t>(side.stride(site)) + 1]);
}

Cell strideShare(const Side& side, std::size_t site) {
  return numberCell(side.strideShare(site));
}

Cell gain(const Side& side, std::size_t site) {
  return numberCell(side.gain(site));
}

Cell match(const Side& side, std::size_t site) {
  static constexpr std::array<std::string_view, 4> kNames{"", "none", "approximate", "exact"};
  return textCell(kNames[static_cast<std::size_t>(side.sites()[site].match)]);
}

std::vector<CompareColumn> makeColumns() {
  std::vector<CompareColumn> columns{
      {"state", [](const ComparedSides&, const SiteChange& site) { return textCell(nameOf(site.state)); }},
      {"label", [](const ComparedSides& sides, const SiteChange& site) { return Cell(identityOf(sides, site).label); }},
      {"kind", [](const ComparedSides& sides,
                  const SiteChange& site) { return Cell(compareKindName(identityOf(sides, site))); }},
      {"pairedBy", [](const ComparedSides&, const SiteChange& site) { return textCell(nameOf(site.by)); }},
      {"time.verdict",
       [](const ComparedSides&, const SiteChange& site) { return textCell(nameOf(site.time.verdict)); }},
      {"time.changePercent",
       [](const ComparedSides&, const SiteChange& site) { return numberCell(100 * site.time.change); }},
      {"time.p", [](const ComparedSides&, const SiteChange& site) { return numberCell(site.time.p); }},
      {"time.pAmongAll", [](const ComparedSides&, const SiteChange& site) { return numberCell(site.time.amongAll); }},
      {"vectorization",
       [](const ComparedSides&, const SiteChange& site) {
         return site.otherVectorisation ? textCell("other") : turnCell(site.vectorisation, "became", "ceased");
       }},
      {"races", [](const ComparedSides&, const SiteChange& site) { return turnCell(site.races, "came", "went"); }},
      {"strideChanged", [](const ComparedSides&, const SiteChange& site) { return Cell(site.stride); }},
      {"becameStale", [](const ComparedSides&, const SiteChange& site) { return Cell(site.stale); }},
      {"annotationGone", [](const ComparedSides&, const SiteChange& site) { return Cell(site.lost); }},
  };
  const std::vector<CompareColumn> ofSides{
      {"before.sequence", before<sequence>},
      {"before.file", before<file>},
      {"before.line", before<line>},
      {"before.runs", before<runs>},
      {"before.time", before<time>},
      {"before.vectorized", before<vectorised>},
      {"before.races", before<races>},
      {"before.stride", before<stride>},
      {"before.strideShare", before<strideShare>},
      {"before.gain", before<gain>},
      {"before.match", before<match>},
      {"after.sequence", after<sequence>},
      {"after.file", after<file>},
      {"after.line", after<line>},
      {"after.runs", after<runs>},
      {"after.time", after<time>},
      {"after.vectorized", after<vectorised>},
      {"after.races", after<races>},
      {"after.stride", after<stride>},
      {"after.strideShare", after<strideShare>},
      {"after.gain", after<gain>},
      {"after.match", after<match>},
      {"timeSources.before",
       [](const ComparedSides& sides, const SiteChange&) { return textCell(joined(sides.timeSourcesBefore)); }},
      {"timeSources.after",
       [](const ComparedSides& sides, const SiteChange&) { return textCell(joined(sides.timeSourcesAfter)); }},
  };
  columns.insert(columns.end(), ofSides.begin(), ofSides.end());
  return columns;
}

}  // namespace

const std::vector<CompareColumn>& compareColumns() {
  static const std::vector<CompareColumn> columns = makeColumns();
  return columns;
}

std::string_view vectorisedName(kelvar_compare::Vectorised vectorised) noexcept {
  static constexpr std::array<std::string_view, 4> kNames{"", "no", "partly", "yes"};
  return kNames[static_cast<std::size_t>(vectorised) + 1];
}

std::string compareKindName(const Identity& site) {
  if (site.sort == kelvar_compare::Sort::function) return "function";
  if (site.sort == kelvar_compare::Sort::loop) return "loop";
  return sitenotes::annotation_t::display(site.kind);
}

const Identity& identityOf(const ComparedSides& sides, const SiteChange& site) {
  return site.after != SiteChange::kNone ? sides.after.sites()[site.after].identity
                                         : sides.before.sites()[site.before].identity;
}

const std::vector<Gate>& gates() {
  static const std::vector<Gate> all{
      {"slower", "a longer time",
       [](const SiteChange& site) { return site.time.verdict == kelvar_compare::Verdict::slower; }, lacksTimes},
      {"race", "a race that BEFORE does not have", [](const SiteChange& site) { return site.races == Turn::came; },
       lacksRaces},
      {"vectorization", "no longer vectorized", [](const SiteChange& site) { return site.vectorisation == Turn::went; },
       lacksVectorization},
      {"stale", "a worse match with the annotations", [](const SiteChange& site) { return site.stale; }},
      {"gone", "no annotation any more", [](const SiteChange& site) { return site.lost; }},
  };
  return all;
}

}  // namespace kelvar_tool
