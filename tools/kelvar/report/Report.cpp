#include "Report.h"

#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Formats.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "PageModel.h"
#include "ProjectOptions.h"
#include "runs/AllRuns.h"

namespace kelvar_tool {

namespace {

struct Format {
  std::string_view name;
  PrintFormat print;
  bool evidence = false;  // needs the page's model, which has the evidence
};
void printText(const Loaded& loaded, const Selection& selection);
constexpr std::array kFormats{Format{"text", printText}, Format{"json", printJson}, Format{"csv", printCsv},
                              Format{"html", printHtml, true}, Format{"sarif", printSarif, true}};
constexpr const Format& kText = kFormats[0];

struct Request {
  ProjectRequest project;
  Selection selection;
  const Format* format = &kText;
  bool wide = false;
  bool evidence = false;
  bool allRuns = false;
  std::string sourceRoot = ".";
};

void printText(const Loaded& loaded, const Selection& selection) {
  loaded.data->write(selection.verbose, print);
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar report my-project                         everything in my-project\n"
    "  kelvar report my-project --verbose               with how well each result matches the annotations\n"
    "  kelvar report my-project --sort survey-cpu-time  longest first; the same as --sort 3\n"
    "  kelvar report my-project --sort label --reverse  from the last label to the first\n"
    "  kelvar report my-project --survey runs/monday    another survey, everything else from my-project\n"
    "  kelvar report my-project --survey-vectorization runs/monday/surveyvectorization\n"
    "  kelvar report --annotations notes.db --suitability s --dependencies d --map m\n"
    "                                                   pieces from anywhere, no project\n"
    "  kelvar report my-project --hide-kind map --hide-detail-kind 2 --hide-annotation-kind end-task\n"
    "  kelvar report my-project --wide --match '^src/.*solver' --sort survey-cpu-time --top 10\n"
    "  kelvar report my-project --columns label,currentPlace,survey.cpuTime\n"
    "  kelvar report my-project --format csv >sites.csv\n"
    "  kelvar report my-project --format csv --all-runs >runs.csv\n"
    "  kelvar report my-project --format json | jq '.items[] | select(.survey.cpuTime > 1) | .label'\n"
    "\n"
    "The report goes to standard output, and everything else to standard error.\n"
    "Exit status: 0 everything was read; 1 something could not be read or written, which is named with the reason;\n"
    "2 a usage error; 3 out of memory, or the system failed.";

int topIn(const std::string& text) {
  const auto top = decimal(text, std::numeric_limits<int>::max());
  if (!top || *top == 0) throw UsageError("--top: expected a number of rows from 1, not " + inQuotes(text));
  return static_cast<int>(*top);
}

void addOrder(CLI::App& report, Request& request) {
  Selection& selection = request.selection;
  addText(report, "--sort", "Order of the rows, by name or number:" + numbered(orderingNames()),
          [&](const std::string& text) { selection.ordering = orderingNamed("--sort", text); })
      .value("ORDER");
  addFlag(report, "--reverse", selection.reverse, "Reverse the sorted rows");
  addFlag(report, "--verbose", selection.verbose, "Also print match statuses and the ordering");
}

void addRows(CLI::App& report, Request& request) {
  Selection& selection = request.selection;
  addText(report, "--format",
          "text: the report; json: one object; csv: a line for each row; html: a page in one file; sarif: findings\n"
          "that editors and code hosts show at the lines of the sources",
          [&](const std::string& text) { request.format = &rowNamed("--format", text, kFormats); })
      .value("FORMAT");
  addPath(report, "--source-root", "DIR", "For html: where the sources are; the working directory if not given",
          request.sourceRoot);
  addFlag(report, "--evidence", request.evidence,
          "With --format json: also the tools' own statements behind the figures");
  addFlag(report, "--all-runs", request.allRuns,
          "With --format json or csv: every run of the project, one after the other, with the facts of the run");
  addFlag(report, "--wide", request.wide, "Text format: only the rows, with no value cut");
  addText(report, "--match", "Only the rows whose label or file matches this regular expression (RE2)",
          [&](const std::string& text) { selection.rows.pattern.emplace("--match", text); })
      .value("REGEX");
  addText(report, "--top", "Only the first N of the rows", [&](const std::string& text) {
    selection.rows.top = topIn(text);
  }).value("N");
  addText(report, "--columns",
          "Only these columns, separated by commas, by their names in csv (survey.cpuTime) or by the name of\n"
          "a group (survey). With this option, --match or --top, the text is that of --wide",
          [&](const std::string& text) { selection.columns = columnsNamed("--columns", text); })
      .value("NAMES");
}

// Scripts cut the fixed table by position, so options that choose rows or columns print the wide table.
PrintFormat printing(const Request& request) {
  if (request.format != &kText) {
    if (request.wide) throw UsageError("--wide: expected with the text format only");
    return request.format->print;
  }
  const bool chosen = !request.selection.rows.all() || !request.selection.columns.empty();
  return request.wide || chosen ? printWide : printText;
}

ExitStatus reportAll(const Request& request) {
  const bool json = request.format->print == printJson;
  if (!json && request.format->print != printCsv) throw UsageError("--all-runs: expected with --format json or csv");
  if (request.evidence) throw UsageError("--evidence: expected without --all-runs");
  return reportAllRuns(request.project, request.selection, json);
}

ExitStatus report(const Request& request) {
  const PrintFormat printReport = printing(request);
  if (request.evidence && request.format->print != printJson) {
    throw UsageError("--evidence: expected with --format json only");
  }
  if (request.allRuns) return reportAll(request);
  Selection selection = request.selection;
  selection.project = titleOf(request.project);
  const Pieces pieces = piecesOf(request.project);
  const Loaded& loaded = loadSaying(pieces, request.project);
  const auto model = request.format->evidence ? modelOf(loaded, pieces, request.sourceRoot) : nullptr;
  selection.model = model.get();
  std::vector<ResultEvidence> evidence;
  std::vector<std::string> complaints;
  if (request.evidence) {
    evidence = evidenceOf(pieces, complaints);
    selection.evidence = &evidence;
  }
  for (const std::string& complaint : complaints) say(complaint);
  loaded.data->setMapping(selection.ordering, selection.reverse);
  printReport(loaded, selection);
  return (model ? model->complaints : loaded.complaints).empty() && complaints.empty() ? kDone : kUnreadable;
}

}  // namespace

void addReport(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "report", "Print the report of a project");
  const auto request = std::make_shared<Request>();
  addPieces(app, request->project);
  addOrder(app, *request);
  addHidings(app, request->project);
  addRows(app, *request);
  setWork(
      app, kExamples, [request] { return report(*request); }, chosen);
}

}  // namespace kelvar_tool
