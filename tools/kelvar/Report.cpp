#include "Report.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Loading.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Project.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

namespace {

using Setting = std::function<void(kelvar::SummaryData&)>;

struct Request {
  std::optional<std::string> project;
  Pieces named;
  kelvar::SummaryMapping ordering = kelvar::kSortLocator;
  bool reverse = false;
  bool verbose = false;
  std::vector<Setting> hidings;  // of all three options, as they stand on the command line
};

struct ResultOption {
  const char* name;
  digestio::SummaryDataKind kind;
  const char* help;
};
constexpr ResultOption kResultOptions[] = {
    {"--survey", digestio::kSurvey, "Survey result, instead of PROJECT/survey"},
    {"--survey-vectorization", digestio::kSurveyVectorization,
     "Vectorization sub-result, instead of PROJECT/survey/surveyvectorization"},
    {"--suitability", digestio::kSuitability, "Suitability result, instead of PROJECT/suitability"},
    {"--dependencies", digestio::kCorrectness, "Dependencies result, instead of PROJECT/dependencies"},
    {"--map", digestio::kMap, "Result of the memory access patterns, instead of PROJECT/map"},
};
static_assert(std::size(kResultOptions) == digestio::kSummaryDataKindCount);

Setting hideKind(const std::string& option, const std::string& text) {
  const auto kind = dataKindNamed(option, text);
  return [kind](kelvar::SummaryData& data) { data.setSummaryKindEnable(kind, false); };
}

Setting hideDetailKind(const std::string& option, const std::string& text) {
  const auto kind = detailKindNamed(option, text);
  return [kind](kelvar::SummaryData& data) {
    data.setSummaryDetailKindFilter(false, kind, sitenotes::annotation_t::all_kinds);
  };
}

Setting hideAnnotationKind(const std::string& option, const std::string& text) {
  const auto kind = annotationKindOrAllNamed(option, text);
  return [kind](kelvar::SummaryData& data) { data.setSummaryDetailKindFilter(false, digestio::kAnnotatedSite, kind); };
}

struct HideOption {
  const char* name;
  const char* value;
  const char* help;
  Setting (*read)(const std::string& option, const std::string& text);
};
constexpr HideOption kHideOptions[] = {
    {"--hide-kind", "KIND",
     "Leave this analysis out of the question: sites that no other speaks of are hidden; survey,\n"
     "surveyvectorization, suitability, dependencies or map; may be repeated",
     hideKind},
    {"--hide-detail-kind", "N", "Hide hot spots (1) or loops (2); may be repeated", hideDetailKind},
    {"--hide-annotation-kind", "KIND",
     "Hide the annotated sites of a kind, given by name (end-task) or number (3), or of all kinds (all);\n"
     "may be repeated",
     hideAnnotationKind},
};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar report my-project                         everything that stands in my-project\n"
    "  kelvar report my-project --verbose               with how well each result matches the annotations\n"
    "  kelvar report my-project --sort survey-cpu-time  longest first; --sort 3 says the same\n"
    "  kelvar report my-project --sort label --reverse  from the last label to the first\n"
    "  kelvar report my-project --survey runs/monday    another survey, all else from my-project\n"
    "  kelvar report my-project --survey-vectorization runs/monday/surveyvectorization\n"
    "  kelvar report --annotations notes.db --suitability s --dependencies d --map m\n"
    "                                                   pieces from anywhere, no project\n"
    "  kelvar report my-project --hide-kind map --hide-detail-kind 2 --hide-annotation-kind end-task\n"
    "\n"
    "The report goes to standard output, and everything else to standard error.\n"
    "Exit status: 0 all was read; 1 something could not be read or written, and is named with its reason;\n"
    "2 a usage error; 3 out of memory, or the system failed.";

void addPieces(CLI::App& report, Request& request) {
  addText(report, "PROJECT", "Project directory: what stands in it is reported",
          [&](const std::string& text) { request.project = normalPath(text); });
  addPath(report, "--annotations", "FILE", "Annotation database, instead of PROJECT/annotations.db",
          request.named.annotations);
  for (const ResultOption& option : kResultOptions) {
    addPath(report, option.name, "DIR", option.help, request.named.results[option.kind]);
  }
}

void addView(CLI::App& report, Request& request) {
  addText(report, "--sort", "Order of the rows, by name or number:" + numbered(orderingNames()),
          [&](const std::string& text) { request.ordering = orderingNamed("--sort", text); })
      ->type_name("ORDER");
  report.add_flag("--reverse", request.reverse, "Turn the ordered rows around");
  report.add_flag("--verbose", request.verbose, "Say too how well results and rows match, and the settings");
  for (const HideOption& option : kHideOptions) {
    addText(report, option.name, option.help,
            [&](const std::string& text) { request.hidings.push_back(option.read(option.name, text)); })
        ->type_name(option.value)
        ->trigger_on_parse();  // at each occurrence, which keeps their order across options
  }
}

Pieces piecesOf(const Request& request) {
  if (request.project && !isDirectory(*request.project)) {
    throw UsageError("PROJECT: expected a directory, not " + inQuotes(*request.project));
  }
  const Pieces pieces = overlaid(request.project ? standingIn(*request.project) : Pieces(), request.named);
  if (!pieces.none()) return pieces;
  if (request.project) throw UsageError("nothing to report stands in " + inQuotes(*request.project));
  throw UsageError("nothing to report: expected a PROJECT, or options that name its pieces");
}

ExitStatus report(const Request& request) {
  const Loaded loaded = load(piecesOf(request));
  for (const std::string& complaint : loaded.complaints) say(complaint);

  loaded.data->setMapping(request.ordering, request.reverse);
  for (const Setting& hide : request.hidings) hide(*loaded.data);
  print(loaded.data->asString(request.verbose));
  return loaded.complaints.empty() ? kDone : kUnreadable;
}

}  // namespace

void addReport(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = *kelvar.add_subcommand("report", "Print the report of a project");
  const auto request = std::make_shared<Request>();
  addPieces(app, *request);
  addView(app, *request);
  app.footer(kExamples);
  app.callback([request, &chosen] { chosen = [request] { return report(*request); }; });
}

}  // namespace kelvar_tool
