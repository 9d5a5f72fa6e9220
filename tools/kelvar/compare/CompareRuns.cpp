#include "CompareRuns.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "AnchoredSites.h"
#include "Annotations.h"
#include "Diagnosis.h"
#include "Likeness.h"
#include "Loading.h"
#include "Messages.h"
#include "Overview.h"
#include "ProcessMemory.h"
#include "Project.h"
#include "TimeSource.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::Match;
using kelvar_compare::SiteRecord;
using kelvar_page::Site;
using kelvar_page::SiteSort;

kelvar_compare::Vectorised vectorisedOf(const Site& site) {
  if (!site.vectorised) return kelvar_compare::Vectorised::unknown;
  switch (*site.vectorised) {
    case kelvar_page::Vectorised::no:
      return kelvar_compare::Vectorised::no;
    case kelvar_page::Vectorised::partly:
      return kelvar_compare::Vectorised::partly;
    default:
      return kelvar_compare::Vectorised::yes;
  }
}

Match matchOf(const Site& site) {
  Match worst = Match::absent;
  if (site.sort != SiteSort::annotated) return worst;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const kelvar::SummaryDataStatus status = site.match[kind];
    if (status == kelvar::kNotPresent) continue;
    const Match match = status == kelvar::kNoMatchCurrent            ? Match::none
                        : status == kelvar::kApproximateMatchCurrent ? Match::approximate
                                                                     : Match::exact;
    worst = worst == Match::absent ? match : std::min(worst, match);
  }
  return worst;
}

std::uint8_t bitOf(digestio::SummaryDataKind kind) {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(kind));
}

SiteRecord recordOf(const Site& site, std::uint32_t database) {
  SiteRecord record{.identity = {.label = site.label,
                                 .file = site.place.get_file(),
                                 .line = site.place.get_line(),
                                 .kind = site.kind,
                                 .sort = site.sort == SiteSort::function ? kelvar_compare::Sort::function
                                         : site.sort == SiteSort::loop   ? kelvar_compare::Sort::loop
                                                                         : kelvar_compare::Sort::annotated,
                                 .database = database,
                                 .sequence = site.handle}};
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (site.details[kind]) record.identity.analyses |= bitOf(kind);
  }
  record.time = site.time.value_or(kelvar_compare::kUnknown);
  record.gain = site.gain.value_or(kelvar_compare::kUnknown);
  record.races = site.races.value_or(-1);
  record.strides = site.strides.value_or(record.strides);
  record.vectorised = vectorisedOf(site);
  record.match = matchOf(site);
  return record;
}

std::string withoutLinks(const std::string& path) {
  std::error_code error;
  const std::filesystem::path resolved = std::filesystem::canonical(path, error);
  return error ? path : resolved.native();
}

/// Refuses a directory that is named twice: one measurement counted twice looks like two without noise.
void requireReadable(const char* argument, const std::vector<std::string>& directories) {
  std::unordered_map<std::string, std::string> seen;  // by canonical path: the path as given
  for (const std::string& directory : directories) {
    if (!isDirectory(directory)) {
      throw UsageError(std::string(argument) + ": expected a directory, not " + inQuotes(directory));
    }
    if (piecesIn(directory).none()) throw UsageError("no annotations or results in " + inQuotes(directory));
    const auto [first, isNew] = seen.try_emplace(withoutLinks(directory), directory);
    if (isNew) continue;
    throw UsageError(std::string(argument) + ": expected each directory once, not " + inQuotes(first->second) +
                     (first->second == directory ? " twice" : " again as " + inQuotes(directory)));
  }
}

}  // namespace

/// Data of an annotation database for pairing the sites that the rows of the runs leave over; read on demand.
struct ComparedRuns::Database {
  std::string path;
  bool read = false;
  kelvar_compare::Anchors anchors;
  std::unordered_set<unsigned long> living;
};

ComparedRuns::ComparedRuns() : texts_(std::make_unique<kelvar_sources::TextNumbers>()) {
  databases_.push_back(std::make_unique<Database>());
}

ComparedRuns::~ComparedRuns() = default;

std::uint32_t ComparedRuns::databaseNumber(const std::string& path) {
  if (path.empty()) return 0;
  const auto next = static_cast<std::uint32_t>(databases_.size());
  const auto [number, isNew] = numbers_.try_emplace(withoutLinks(path), next);
  if (isNew) databases_.push_back(std::make_unique<Database>(Database{.path = path, .anchors = {}, .living = {}}));
  return number->second;
}

kelvar_compare::RunRecord ComparedRuns::runIn(const std::string& directory) {
  const Pieces pieces = piecesIn(directory);
  kelvar_compare::RunRecord run{.name = directory, .sites = {}};
  const std::uint32_t database = databaseNumber(pieces.annotations);
  if (const std::string source = timeSourceOf(pieces); !source.empty()) timeSources_.insert(source);
  ofSide_.insert(database);
  const Loaded loaded = load(pieces);
  kelvar_platform::returnFreedMemory();  // that reading took
  for (const std::string& complaint : loaded.complaints) complain(complaint);
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (!pieces.results[kind].empty()) run.analyses |= bitOf(kind);
  }
  run.sites.reserve(static_cast<std::size_t>(loaded.data->num_items()));
  const kelvar_page::Overview overview(*loaded.data, [&](const Site& site) {
    if (!isEnd(site)) run.sites.push_back(recordOf(site, database));
  });
  static_assert(kelvar_compare::kAllWholes.size() == kelvar_page::kAllWholes.size());
  for (const kelvar_page::WholeOf source : kelvar_page::kAllWholes) {
    run.wholes[static_cast<std::size_t>(source)] = overview.wholeTime(source);
  }
  kelvar_platform::removeScanner();  // it holds the database
  return run;
}

kelvar_compare::Side ComparedRuns::read(const char* argument, const std::vector<std::string>& directories) {
  kelvar_compare::Side side;
  ofSide_.clear();
  timeSources_.clear();
  for (const std::string& directory : directories) {
    kelvar_compare::RunRecord run = runIn(directory);
    kelvar_platform::returnFreedMemory();  // most of what a large run took is free now
    side.add(std::move(run), anchors());
  }
  if (side.analyses() == 0) {
    complain(std::string(argument) + ": expected a result of an analysis, as 'kelvar collect' writes it, in " +
             inQuotes(directories.front()) + (directories.size() > 1 ? " or another of them" : ""));
  }
  return side;
}

ComparedRuns::Database& ComparedRuns::opened(std::uint32_t number) {
  Database& database = *databases_[number];
  if (database.read || database.path.empty()) return database;
  database.read = true;
  try {
    for (const kelvar_platform::AnchoredSite& one : kelvar_platform::readAnchoredSites(database.path).sites) {
      const auto sequence = static_cast<unsigned long>(one.site.sequence);
      if (one.site.alive) database.living.insert(sequence);
      if (!one.anchor) continue;
      const kelvar_sources::Anchor anchor{.rule = one.anchor->rule,
                                          .text = one.anchor->text,
                                          .function = one.anchor->function,
                                          .before = one.anchor->before,
                                          .after = one.anchor->after,
                                          .label = one.anchor->label};
      database.anchors.emplace(sequence, kelvar_sources::fingerprintOf(one.site.kind, anchor, *texts_));
    }
  } catch (const kelvar_platform::ReadError& error) {
    // Loading the run may have reported the same already.
    if (std::find(complaints_.begin(), complaints_.end(), error.what()) == complaints_.end()) {
      complain(error.what());
    }
  }
  return database;
}

void ComparedRuns::complain(std::string sentence) {
  say(sentence);
  complaints_.push_back(std::move(sentence));
}

kelvar_compare::AnchorsOf ComparedRuns::anchors() {
  return [this](std::uint32_t database) -> const kelvar_compare::Anchors& { return opened(database).anchors; };
}

bool ComparedRuns::lives(const kelvar_compare::Identity& site) {
  return ofSide_.contains(site.database) && opened(site.database).living.contains(site.sequence);
}

kelvar_page::TimeUnit unitOfAll(const std::set<std::string>& timeSources) {
  if (timeSources.empty()) return {};
  const kelvar_page::TimeUnit unit = unitOf(*timeSources.begin());
  const bool one = std::all_of(timeSources.begin(), timeSources.end(),
                               [&](const std::string& source) { return unitOf(source) == unit; });
  return one ? unit : kelvar_page::TimeUnit();
}

std::string joined(const std::set<std::string>& timeSources) {
  std::string text;
  for (const std::string& source : timeSources) text += (text.empty() ? "" : " and ") + source;
  return text;
}

bool hasResultOf(const kelvar_compare::Side& side, digestio::SummaryDataKind kind) noexcept {
  return (side.analyses() & bitOf(kind)) != 0;
}

ComparedSides compareRuns(const std::vector<std::string>& before, const std::vector<std::string>& after,
                          std::optional<double> threshold) {
  requireReadable("BEFORE", before);
  requireReadable("--with", after);
  ComparedRuns runs;
  ComparedSides sides{.before = runs.read("BEFORE", before), .after = {}, .comparison = {}, .complaints = {}};
  sides.timeSourcesBefore = runs.timeSources();
  sides.after = runs.read("--with", after);
  sides.timeSourcesAfter = runs.timeSources();
  sides.comparison = kelvar_compare::compared(
      sides.before, sides.after, runs.anchors(),
      {.threshold = threshold, .lives = [&](const kelvar_compare::Identity& site) { return runs.lives(site); }});
  sides.complaints = runs.complaints();
  return sides;
}

}  // namespace kelvar_tool
