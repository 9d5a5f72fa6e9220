#include "Runs.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "Diagnosis.h"
#include "Loading.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Project.h"
#include "RunFile.h"
#include "RunFolder.h"
#include "text/JsonText.h"
#include "text/Terminal.h"
#include "text/TextTable.h"

namespace kelvar_tool {

namespace {

using digestio::SummaryDataKind;

struct Request {
  std::string project;
  bool json = false;
};

/// An analysis, and how many annotated sites it matches exactly, approximately and not at all. Functions and loops
/// match no annotation, and do not count.
struct Analysis {
  SummaryDataKind kind;
  std::array<std::int64_t, kelvar::kSummaryDataStatusCount> counts{};
};

struct Run {
  std::string name;  ///< empty: the project's own results
  kelvar_import::RunFacts facts;
  std::vector<Analysis> analyses;
};

}  // namespace

void askResults(const Pieces& pieces, kelvar_import::RunFacts& facts) {
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (pieces.results[kind].empty() || kind == digestio::kSurveyVectorization) continue;
    try {
      const auto record = kelvar_platform::readRunFile(pieces.results[kind] + "/result.json");
      if (facts.hostName.empty()) facts.hostName = record.hostName.value_or("");
      if (facts.startTime == 0) facts.startTime = record.collectionStartTime;
      if (facts.endTime == 0) facts.endTime = record.collectionEndTime;
    } catch (const kelvar_platform::ReadError&) {
      continue;  // the load of the result names it
    }
  }
}

namespace {

Run runIn(const std::string& directory, const std::string& name, bool& complete) {
  Run run{.name = name, .facts = {}, .analyses = {}};
  try {
    run.facts = kelvar_import::readRunFacts(directory);
  } catch (const kelvar_platform::ReadError& error) {
    say(error.what());
    complete = false;
  }
  const Pieces pieces = piecesIn(directory);
  askResults(pieces, run.facts);
  const Loaded loaded = load(pieces);
  for (const std::string& complaint : loaded.complaints) say(complaint);
  complete = complete && loaded.complaints.empty();
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (loaded.data->summaryDataStatus(kind) != kelvar::kNotPresent) run.analyses.push_back({.kind = kind});
  }
  for (int index = 0; index < loaded.data->num_items(); ++index) {
    const kelvar::SummaryItem& item = *loaded.data->item(index);
    if (!item.annotation()) continue;
    for (Analysis& one : run.analyses) {
      const auto match = static_cast<std::size_t>(item.summaryDataStatus(one.kind));
      if (match < one.counts.size()) ++one.counts[static_cast<std::size_t>(match)];
    }
  }
  return run;
}

std::string timeText(std::uint64_t seconds) {
  const auto moment = static_cast<std::time_t>(seconds);
  std::tm parts{};
  char text[64];
  if (seconds == 0 || !localtime_r(&moment, &parts)) return {};
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

/// The analyses of a run, each with the sites that do not match exactly: `survey (2 moved, 1 without match)`.
std::string analysesText(const Run& run) {
  std::string text;
  for (const Analysis& one : run.analyses) {
    std::string doubts;
    const auto add = [&](kelvar::SummaryDataStatus match, const char* what) {
      const std::int64_t count = one.counts[static_cast<std::size_t>(match)];
      if (count > 0) doubts += (doubts.empty() ? "" : ", ") + std::to_string(count) + what;
    };
    add(kelvar::kApproximateMatchCurrent, " moved");
    add(kelvar::kNoMatchCurrent, " without match");
    text += (text.empty() ? "" : ", ") + dataKindName(one.kind) + (doubts.empty() ? "" : " (" + doubts + ")");
  }
  return text;
}

void printTable(const std::vector<Run>& runs) {
  if (runs.empty()) return print("No runs.\n");
  TextTable table({{.heading = "Run"},
                   {.heading = "Time"},
                   {.heading = "Host"},
                   {.heading = "Revision"},
                   {.heading = "Command"},
                   {.heading = "Analyses"}});
  for (const Run& run : runs) {
    table.add({{run.name.empty() ? "(project)" : visible(run.name)},
               {timeText(run.facts.startTime)},
               {visible(run.facts.hostName)},
               {visible(run.facts.revision)},
               {visible(run.facts.command)},
               {analysesText(run)}});
  }
  print(table.text(outputTerminal(Colour::automatic), {{4, 24}, {3, 12}, {4, 0}, {3, 0}}));
}

void printJson(const std::vector<Run>& runs) {
  std::string text;
  JsonText out(text);
  out.beginObject("");
  out.beginList("runs");
  const auto number = [](std::uint64_t value) { return Cell(value); };
  for (const Run& run : runs) {
    out.beginObject("");
    out.value("name", Cell(run.name));
    out.value("command", Cell(run.facts.command));
    out.value("hostName", Cell(run.facts.hostName));
    out.value("revision", Cell(run.facts.revision));
    out.value("startTime", number(run.facts.startTime));
    out.value("endTime", number(run.facts.endTime));
    out.value("exitStatus", Cell(std::int64_t{run.facts.exitStatus}));
    out.beginList("analyses");
    for (const Analysis& one : run.analyses) {
      out.beginObject("");
      out.value("kind", Cell(dataKindName(one.kind)));
      out.value("exact", Cell(one.counts[kelvar::kExactMatchCurrent]));
      out.value("approximate", Cell(one.counts[kelvar::kApproximateMatchCurrent]));
      out.value("none", Cell(one.counts[kelvar::kNoMatchCurrent]));
      out.endObject();
    }
    out.endList();
    out.endObject();
  }
  out.endList();
  out.endObject();
  print(text + '\n');
}

ExitStatus listRuns(const Request& request) {
  if (!isDirectory(request.project)) {
    throw UsageError("PROJECT: expected a directory, not " + inQuotes(request.project));
  }
  bool complete = true;
  std::vector<Run> runs;
  Run own = runIn(request.project, "", complete);
  if (!own.analyses.empty()) runs.push_back(std::move(own));
  for (const std::string& name : kelvar_import::runNames(request.project)) {
    runs.push_back(runIn(kelvar_import::runDirectory(request.project, name), name, complete));
  }
  if (request.json) {
    printJson(runs);
  } else {
    printTable(runs);
  }
  return complete ? kDone : kUnreadable;
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar runs my-project\n"
    "  kelvar show my-project/runs/monday     a run is named by its directory, wherever a project is\n"
    "\n"
    "Exit status: 0 done; 1 something could not be read, which is named; 2 a usage error; 3 out of memory, or the\n"
    "system failed.";

}  // namespace

void addRuns(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "runs", "List the runs of a project");
  const auto request = std::make_shared<Request>();
  addText(app, "PROJECT", "Project directory", [request](const std::string& text) {
    request->project = normalPath(text);
  }).required();
  addJson(app, request->json);
  setWork(
      app, kExamples, [request] { return listRuns(*request); }, chosen);
}

}  // namespace kelvar_tool
