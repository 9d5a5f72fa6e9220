#include "AllRuns.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "Annotations.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "RunFolder.h"
#include "Runs.h"
#include "text/CsvText.h"

namespace kelvar_tool {

namespace {

using kelvar_import::RunFacts;

struct Run {
  std::string project;  ///< as given on the command line
  std::string name;     ///< empty: the project's own results
  std::string directory;
};

struct RunColumn {
  std::string_view name;
  Cell (*value)(const Run& run, const RunFacts& facts);
};

Cell textCell(const std::string& text) {
  return text.empty() ? Cell() : Cell(text);
}

Cell momentCell(std::uint64_t seconds) {
  return seconds == 0 ? Cell() : Cell(seconds);
}

constexpr RunColumn kRunColumns[] = {
    {"project", [](const Run& run, const RunFacts&) { return textCell(run.project); }},
    {"name", [](const Run& run, const RunFacts&) { return textCell(run.name); }},
    {"startTime", [](const Run&, const RunFacts& facts) { return momentCell(facts.startTime); }},
    {"endTime", [](const Run&, const RunFacts& facts) { return momentCell(facts.endTime); }},
    {"hostName", [](const Run&, const RunFacts& facts) { return textCell(facts.hostName); }},
    {"revision", [](const Run&, const RunFacts& facts) { return textCell(facts.revision); }},
    {"command", [](const Run&, const RunFacts& facts) { return textCell(facts.command); }},
    {"exitStatus",
     [](const Run&, const RunFacts& facts) {
       return facts.command.empty() ? Cell() : Cell(std::int64_t{facts.exitStatus});
     }},
};

bool hasResults(const Pieces& pieces) {
  return std::any_of(pieces.results.begin(), pieces.results.end(), [](const auto& path) { return !path.empty(); });
}

std::vector<Run> runsOf(const std::string& project) {
  std::vector<Run> runs;
  if (hasResults(piecesIn(project))) runs.push_back({.project = project, .name = {}, .directory = project});
  for (const std::string& name : kelvar_import::runNames(project)) {
    runs.push_back({.project = project, .name = name, .directory = kelvar_import::runDirectory(project, name)});
  }
  return runs;
}

using Take = std::function<void(const Run& run, const RunFacts& facts, const Loaded& loaded)>;

/// Reads one run after the other. Returns whether everything could be read.
bool forEachRun(const std::vector<Run>& runs, const ProjectRequest& request, const Selection& selection,
                const Take& take) {
  bool complete = true;
  for (const Run& run : runs) {
    RunFacts facts;
    try {
      facts = kelvar_import::readRunFacts(run.directory);
    } catch (const kelvar_platform::ReadError& error) {
      say(error.what());
      complete = false;
    }
    const Pieces pieces = piecesIn(run.directory);
    askResults(pieces, facts);
    const Loaded loaded = load(pieces);
    for (const std::string& complaint : loaded.complaints) say(complaint);
    complete = complete && loaded.complaints.empty();
    for (const ProjectRequest::Setting& hide : request.hidings) hide(*loaded.data);
    loaded.data->setMapping(selection.ordering, selection.reverse);
    take(run, facts, loaded);
    kelvar_platform::removeScanner();  // it holds the database
  }
  return complete;
}

bool printCsvRuns(const std::vector<Run>& runs, const ProjectRequest& request, const Selection& selection) {
  PrintedPieces pieces;
  std::string& out = pieces.text();
  for (const RunColumn& column : kRunColumns) {
    if (!out.empty()) out += ',';
    out += "run." + std::string(column.name);
  }
  for (const Column* const column : csvColumns(selection)) out += ',' + column->name;
  out += kCsvLineEnd;
  const bool complete =
      forEachRun(runs, request, selection, [&](const Run& run, const RunFacts& facts, const Loaded& loaded) {
        std::string before;
        for (const RunColumn& column : kRunColumns) {
          appendField(before, column.value(run, facts));
          before += ',';
        }
        printCsvRows(pieces, loaded, selection, before);
      });
  pieces.finish();
  return complete;
}

bool printJsonRuns(const std::vector<Run>& runs, const ProjectRequest& request, const Selection& selection) {
  PrintedPieces pieces;
  JsonText json(pieces.text());
  json.beginObject({});
  json.value("schemaVersion", std::int64_t{1});
  json.beginList("runs");
  const bool complete =
      forEachRun(runs, request, selection, [&](const Run& run, const RunFacts& facts, const Loaded& loaded) {
        json.beginObject({});
        json.beginObject("run");
        for (const RunColumn& column : kRunColumns) json.value(column.name, column.value(run, facts));
        json.endObject();
        writeReport(json, pieces, loaded, selection);
        json.endObject();
        pieces.pass();
      });
  json.endList();
  json.endObject();
  pieces.text() += '\n';
  pieces.finish();
  return complete;
}

}  // namespace

ExitStatus reportAllRuns(const ProjectRequest& request, const Selection& selection, bool json) {
  if (!request.project || !request.named.none()) {
    throw UsageError("--all-runs: expected a PROJECT, and no option that gives a piece another path");
  }
  if (!isDirectory(*request.project)) {
    throw UsageError("PROJECT: expected a directory, not " + inQuotes(*request.project));
  }
  const std::vector<Run> runs = runsOf(*request.project);
  if (runs.empty()) throw UsageError("no runs or results in " + inQuotes(*request.project));
  const bool complete = json ? printJsonRuns(runs, request, selection) : printCsvRuns(runs, request, selection);
  return complete ? kDone : kUnreadable;
}

}  // namespace kelvar_tool
