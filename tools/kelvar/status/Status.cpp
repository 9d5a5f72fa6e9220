#include "Status.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iomanip>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CollectedSources.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Place.h"
#include "ProjectOptions.h"
#include "SharedLeaves.h"
#include "StaleSites.h"
#include "names.h"
#include "report/Columns.h"
#include "report/Rows.h"

namespace kelvar_tool {

namespace {

using digestio::SummaryDataKind;
using kelvar_2_1_7::PerKind;

struct Threshold {
  std::string_view name;
  kelvar::SummaryDataStatus worst;  // the worst status that does not fail
};
constexpr std::array kThresholds{Threshold{"approximate", kelvar::kExactMatchCurrent},
                                 Threshold{"none", kelvar::kApproximateMatchCurrent}};

struct Request {
  ProjectRequest project;
  std::string sourceRoot;
  const Threshold* failOn = nullptr;
};

/// The number of sites of an analysis, by SummaryDataStatus.
using Counts = std::array<std::int64_t, kelvar::kSummaryDataStatusCount>;

/// The findings of a walk over the sites.
struct Freshness {
  PerKind<Counts> counts{};
  std::vector<std::string> moved;  // a line each
  SharedLeaves leaves;
};

std::string placeText(const sitenotes::locator_t& at) {
  return text(Place{.file = at.get_file().get_text(), .line = at.get_line(), .column = at.get_column()});
}

// A change of the column only is not a move, since nothing matches by columns. Neither is a change of the directory:
// only the leaf is compared.
bool hasMoved(const sitenotes::locator_t& from, const sitenotes::locator_t& to) {
  return from.get_line() != to.get_line() || from.get_file().compare_leaf(to.get_file()) != 0;
}

std::string distance(const sitenotes::locator_t& from, const sitenotes::locator_t& to) {
  if (from.get_file().compare_leaf(to.get_file()) != 0) return "another file";
  const std::int64_t lines = std::int64_t{to.get_line()} - from.get_line();
  return (lines > 0 ? "+" : "") + std::to_string(lines) + (lines == 1 || lines == -1 ? " line" : " lines");
}

// One line for each place where analyses saw the site, with their names.
void noteMoves(const Row& row, std::vector<std::string>& moved) {
  if (!row.item.annotation() || row.current.is_null()) return;
  std::vector<std::pair<std::string, std::string>> seenAt;  // the beginning of a line, and the analyses
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const sitenotes::locator_t& seen = row.seen[kind];
    if (seen.is_null() || !hasMoved(seen, row.current)) continue;
    const std::string line = escaped(row.item.label()) + '\t' + escaped(placeText(seen)) + "\t" +
                             escaped(placeText(row.current)) + '\t' + distance(seen, row.current) + '\t';
    const auto same =
        std::find_if(seenAt.begin(), seenAt.end(), [&](const auto& entry) { return entry.first == line; });
    if (same == seenAt.end()) {
      seenAt.emplace_back(line, dataKindName(kind));
    } else {
      same->second += "," + dataKindName(kind);
    }
  }
  for (const auto& [line, kinds] : seenAt) moved.push_back(line + kinds + '\n');
}

Freshness lookAt(const kelvar::SummaryData& data) {
  Freshness found;
  forEachRow(data, {}, [&](const Row& row) {
    for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
      const auto status = static_cast<std::size_t>(row.item.summaryDataStatus(kind));
      if (status < found.counts[kind].size()) ++found.counts[kind][status];
    }
    noteMoves(row, found.moved);
    found.leaves.look(row);
  });
  return found;
}

void appendKind(std::ostream& out, const kelvar::SummaryData& data, const Pieces& pieces, SummaryDataKind kind,
                const Counts& counts) {
  out << std::left << std::setw(20) << dataKindName(kind) << std::right;
  if (data.summaryDataStatus(kind) != kelvar::kNotPresent) {
    out << std::setw(10) << counts[kelvar::kExactMatchCurrent] << std::setw(14)
        << counts[kelvar::kApproximateMatchCurrent] << std::setw(10) << counts[kelvar::kNoMatchCurrent] << "  "
        << kelvar::kStatusNames[static_cast<std::size_t>(data.summaryDataStatus(kind))];
  } else {
    out << std::setw(10) << '-' << std::setw(14) << '-' << std::setw(10) << '-' << "  "
        << (pieces.results[kind].empty() ? "not there" : "could not be read: " + escaped(pieces.results[kind]));
  }
  out << '\n';
}

std::string tableOf(const kelvar::SummaryData& data, const Pieces& pieces, const Freshness& found) {
  std::ostringstream out;
  out << "Analysis                 exact   approximate      none  as a whole\n";
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    appendKind(out, data, pieces, kind, found.counts[kind]);
  }
  return out.str();
}

bool isStale(const Freshness& found, const Threshold& threshold) {
  return std::any_of(found.counts.begin(), found.counts.end(), [&](const Counts& counts) {
    return std::any_of(counts.begin() + kelvar::kNoMatchCurrent, counts.begin() + threshold.worst,
                       [](std::int64_t count) { return count != 0; });
  });
}

/// What has changed in the sources since the last scan and since the results were collected.
struct SourceChanges {
  StaleSites sites;
  std::vector<std::string> lines;  // what to print
  bool sinceCollection = false;    // a source was edited since a result was collected
  bool unreadable = false;

  [[nodiscard]] bool fails(const Threshold& threshold) const {
    const bool lost = !sites.gone.empty() || std::any_of(sites.sites.begin(), sites.sites.end(),
                                                         [](const auto& site) { return site.now.empty(); });
    if (threshold.worst == kelvar::kApproximateMatchCurrent) return lost;
    return lost || sinceCollection || sites.count() > 0 || !sites.edited.empty();
  }
};

SourceChanges lookAtSources(const Pieces& pieces, const std::string& sourceRoot) {
  SourceChanges changes;
  try {
    if (!pieces.annotations.empty()) {
      changes.sites = staleSites(pieces.annotations, sourceRoot);
      changes.lines = sentences(changes.sites, pieces.annotations);
    }
    for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
      if (pieces.results[kind].empty()) continue;
      for (const std::string& file : editedSinceCollection(pieces.results[kind], sourceRoot)) {
        changes.sinceCollection = true;
        changes.lines.push_back(escaped(file) + " was edited since " + dataKindName(kind) +
                                " was collected: collect it again");
      }
    }
  } catch (const kelvar_platform::ReadError& error) {
    say(error.what());
    changes.unreadable = true;
  }
  return changes;
}

ExitStatus status(const Request& request) {
  const Pieces pieces = piecesOf(request.project);
  const Loaded& loaded = loadSaying(pieces, request.project);
  // If the database could not be read, that was reported already.
  const SourceChanges sources = loaded.complaints.empty() ? lookAtSources(pieces, request.sourceRoot) : SourceChanges();
  const Freshness found = lookAt(*loaded.data);
  for (const std::string& warning : found.leaves.warnings()) say(warning);

  PrintedPieces out;
  out.text() = tableOf(*loaded.data, pieces, found);
  if (!found.moved.empty()) out.text() += "\nMoved since: label, from, to, by, seen by\n";
  for (const std::string& line : found.moved) {
    out.text() += line;
    out.pass();
  }
  if (!sources.lines.empty()) out.text() += "\nSources:\n";
  for (const std::string& line : sources.lines) {
    out.text() += line + '\n';
    out.pass();
  }
  out.finish();
  if (!loaded.complaints.empty() || sources.unreadable) return kUnreadable;
  const bool stale = request.failOn && (isStale(found, *request.failOn) || sources.fails(*request.failOn));
  return stale ? kStale : kDone;
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar status my-project\n"
    "  kelvar status my-project --fail-on approximate   for a build that wants every site on its line\n"
    "  kelvar status my-project --fail-on none --hide-detail-kind 1 --hide-detail-kind 2\n"
    "                                                   hot spots and loops never match an annotation\n"
    "\n"
    "The fields of a moved site are separated by tabs: label, where an analysis saw it, where it is\n"
    "now, by how many lines (or another file), and which analyses saw it there. In labels and files \\t, \\n, \\r,\n"
    "\\\\ and \\xHH are escapes of bytes that would break the line.\n"
    "Exit status: 0 everything was read; 1 something could not be read or written, which is named with the reason;\n"
    "2 a usage error; 3 out of memory, or the system failed; 4 everything was read, and --fail-on applies.";

}  // namespace

void addStatus(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "status", "Print how well results still match the annotations");
  const auto request = std::make_shared<Request>();
  addPieces(app, request->project);
  addHidings(app, request->project);
  addPath(app, "--source-root", "DIR", "File names in the database are relative to DIR", request->sourceRoot);
  addText(app, "--fail-on",
          "End with status 4 if a site matches approximately or not at all, or its source was edited\n"
          "(approximate); or if a site does not match at all, or is no longer in its source (none)",
          [&target = *request](const std::string& text) { target.failOn = &rowNamed("--fail-on", text, kThresholds); })
      .value("MATCH");
  setWork(
      app, kExamples, [request] { return status(*request); }, chosen);
}

}  // namespace kelvar_tool
