#include "Compare.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CompareFormats.h"
#include "CompareRuns.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Project.h"
#include "RankTest.h"

namespace kelvar_tool {

namespace {

using kelvar_compare::SiteChange;

struct Format {
  std::string_view name;
  PrintComparison print;
};
constexpr std::array kFormats{Format{"text", printCompareText}, Format{"json", printCompareJson},
                              Format{"csv", printCompareCsv}};

struct Request {
  std::vector<std::string> before;
  std::vector<std::string> after;
  std::optional<double> threshold;
  std::vector<const Gate*> gates;
  PrintComparison print = printCompareText;
};

double thresholdIn(const std::string& text) {
  std::size_t read = 0;
  double percent = -1;
  try {
    percent = std::stod(text, &read);
  } catch (const std::exception&) {
    read = 0;
  }
  const bool plain = text.find_first_not_of("0123456789.") == std::string::npos;
  if (!plain || read == 0 || read != text.size() || percent > 1000) {
    throw UsageError("--threshold: expected a number of per cent from 0 to 1000, such as 5, not " + inQuotes(text));
  }
  return percent / 100;
}

/// Only the test or an explicit threshold can call a time slower.
void requireJudgeable(const Request& request) {
  const bool slower =
      std::any_of(request.gates.begin(), request.gates.end(), [](const Gate* gate) { return gate->name == "slower"; });
  const std::size_t least = std::min(request.before.size(), request.after.size());
  if (!slower || request.threshold || least >= kelvar_compare::kLeastRuns) return;
  throw UsageError("--fail-on slower: expected " + std::to_string(kelvar_compare::kLeastRuns) +
                   " runs a side, which a test against noise takes, or --threshold; not " +
                   std::to_string(request.before.size()) + " and " + std::to_string(request.after.size()) + " runs");
}

GateResult resultOf(const Gate& gate, const ComparedSides& sides) {
  return {.gate = &gate,
          .sites = sides.comparison.count(gate.falls),
          .whole = gate.name == "slower" && sides.comparison.whole.verdict == kelvar_compare::Verdict::slower,
          .lacks = gate.lacks ? gate.lacks(sides) : std::string()};
}

/// Prints which gate failed, and names the first few sites.
void sayFallen(const GateResult& result, const ComparedSides& sides) {
  constexpr std::size_t kNamed = 3;
  std::string sentence = "--fail-on " + std::string(result.gate->name) + ": ";
  if (result.whole) sentence += "the program as a whole is slower";
  if (result.whole && result.sites > 0) sentence += "; ";
  if (result.sites > 0) {
    sentence += std::string(result.gate->what) + " at " + std::to_string(result.sites) +
                (result.sites == 1 ? " site" : " sites");
    std::size_t count = 0;
    for (const SiteChange& site : sides.comparison.sites) {
      if (!result.gate->falls(site)) continue;
      if (count == kNamed) {
        sentence += ", ...";
        break;
      }
      const kelvar_compare::Identity& identity = identityOf(sides, site);
      sentence += (count++ == 0 ? ": " : ", ") + inQuotes(identity.label) + " (" + escaped(identity.file.get_leaf()) +
                  ":" + std::to_string(identity.line) + ")";
    }
  }
  say(sentence);
}

ExitStatus compare(const Request& request) {
  if (request.before.empty()) throw UsageError("BEFORE: expected one or more directories of projects or runs");
  if (request.after.empty()) throw UsageError("--with: expected one or more directories to compare with BEFORE");
  requireJudgeable(request);
  const ComparedSides sides = compareRuns(request.before, request.after, request.threshold);
  std::vector<GateResult> results;
  for (const Gate* const gate : request.gates) results.push_back(resultOf(*gate, sides));
  request.print(sides, results);
  bool fallen = false;
  bool measured = true;
  for (const GateResult& result : results) {
    if (result.fell()) sayFallen(result, sides);
    fallen = fallen || result.fell();
    if (result.lacks.empty()) continue;
    say("--fail-on " + std::string(result.gate->name) + ": expected " + result.lacks);
    measured = false;
  }
  if (!sides.complaints.empty() || !measured) return kUnreadable;
  return fallen ? kStale : kDone;
}

void addDirectories(CLI::App& app, const std::string& name, const char* help, std::vector<std::string>& directories) {
  addTexts(app, name, help, Follows::asManyAsThereAre, [&directories, name](const std::string& text) {
    if (text.empty()) throw UsageError(name + ": expected a path, not an empty text");
    directories.push_back(normalPath(text));
  }).value(name.starts_with('-') ? "AFTER..." : "");
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar compare my-project/runs/monday --with my-project/runs/tuesday\n"
    "  kelvar compare p/runs/a1 p/runs/a2 p/runs/a3 --with p/runs/b1 p/runs/b2 p/runs/b3\n"
    "                                               repeats: what is more than noise is called slower or faster\n"
    "  kelvar compare before --with after --threshold 10 --fail-on slower --fail-on race\n"
    "                                               for a build that guards its hot loops\n"
    "  kelvar compare before --with after --format csv >changes.csv\n"
    "\n"
    "Exit status: 0 done; 1 something could not be read or written, or --fail-on could not be decided,\n"
    "which is named with the reason; 2 a usage error; 3 out of memory, or the system failed; 4 everything was read, "
    "and\n"
    "--fail-on applies.";

}  // namespace

void addCompare(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "compare", "Compare runs or projects, and say what is more than noise");
  const auto request = std::make_shared<Request>();
  addDirectories(app, "BEFORE", "Projects or runs: repeats of one measurement", request->before);
  addDirectories(app, "--with", "The projects or runs to compare with them", request->after);
  addText(app, "--threshold",
          "Smaller changes of a time do not count; 3 if not given. With fewer than three runs on a side, which\n"
          "are too few for a test, it alone decides",
          [=](const std::string& text) { request->threshold = thresholdIn(text); })
      .value("PERCENT");
  addText(app, "--fail-on",
          "End with status 4 if a site or the program is slower, there is a race that BEFORE does not\n"
          "have (race), a loop is no longer vectorized (vectorization), a site matches the annotations\n"
          "less well (stale) or is gone with its annotation (gone); may be repeated",
          [=](const std::string& text) { request->gates.push_back(&rowNamed("--fail-on", text, gates())); })
      .value("CHANGE")
      .inOrder();
  addText(app, "--format", "text, json or csv", [=](const std::string& text) {
    request->print = rowNamed("--format", text, kFormats).print;
  }).value("FORMAT");
  setWork(
      app, kExamples, [request] { return compare(*request); }, chosen);
}

}  // namespace kelvar_tool
