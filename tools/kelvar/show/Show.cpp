#include "Show.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Figures.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "PageModel.h"
#include "ProjectOptions.h"
#include "ShowSite.h"
#include "ShowTable.h"

namespace kelvar_tool {

namespace {

using kelvar_page::Model;

struct Request {
  ProjectRequest project;
  std::string site;
  kelvar::SummaryMapping ordering = kelvar::kSortSurveyCpuTime;
  bool reverse = false;
  bool all = false;
  std::string sourceRoot = ".";
  Colour colour = Colour::automatic;
};

struct NamedColour {
  std::string_view name;
  Colour colour;
};
constexpr std::array kColours{NamedColour{"auto", Colour::automatic}, NamedColour{"always", Colour::always},
                              NamedColour{"never", Colour::never}};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar show my-project                  the annotated sites, longest first, and what stands out\n"
    "  kelvar show my-project --all            with functions and loops\n"
    "  kelvar show my-project solver           everything about one site: by label, number or FILE:LINE\n"
    "  kelvar show my-project src/solver.cpp   a file with the figures of its lines\n"
    "\n"
    "Gain is how much faster the whole program could be; share and own are parts of the program's time, with\n"
    "and without what lies within. What is printed is for people, and may change: 'kelvar report' is for programs.";

/// Those that left no result, where another did: why a column is not there.
std::string missingAnalyses(const Model& model) {
  std::string missing;
  bool any = false;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (model.data->summaryDataStatus(kind) != kelvar::kNotPresent) {
      any = true;
    } else {
      missing += (missing.empty() ? "" : ", ") + std::string(kelvar_page::analysisName(kind));
    }
  }
  return any ? missing : std::string();
}

std::string heading(const Model& model, std::size_t shown, const std::string& project) {
  std::string text = visible(project) + ": " + kelvar_page::counted(static_cast<std::int64_t>(shown), "row", "rows");
  const double whole = model.overview.wholeTime();
  if (whole > 0) text += ", " + kelvar_page::timeText(whole, model.units.survey) + " in all";
  const double gain = model.data->programMaxGain();
  if (gain > 1) text += ", up to " + kelvar_page::gainText(gain) + " as fast";
  if (!model.timeSource.empty()) text += ", " + visible(model.timeSource);
  const std::string missing = missingAnalyses(model);
  if (!missing.empty()) text += "; no result of " + missing;
  return text;
}

void showProject(const Model& model, const Request& request, const Terminal& terminal) {
  bool all = request.all;
  std::vector<kelvar_page::Site> rows = shownRows(model, all);
  std::string note;
  if (rows.empty() && !all) {
    rows = shownRows(model, true);
    note =
        "No site is annotated: these are functions and loops. 'kelvar annotate DATABASE scan' finds the parallel\n"
        "regions of the sources, and 'add --kind parallel --label NAME --at FILE:LINE' makes a site of any line.\n\n";
  }
  std::string head = paragraph("", heading(model, rows.size(), titleOf(request.project)), terminal);
  head.pop_back();  // its last newline
  print(painted(terminal, Paint::bold, head) + "\n\n");
  if (rows.empty()) return print("Nothing to show.\n");
  print(note + tableText(model, rows, terminal));
  const std::string findings = findingsText(model, terminal);
  if (!findings.empty()) print("\n" + findings);
}

ExitStatus show(const Request& request) {
  const Pieces pieces = piecesOf(request.project);
  const Loaded& loaded = loadSaying(pieces, request.project);
  const std::unique_ptr<Model> model = modelOf(loaded, pieces, request.sourceRoot);
  loaded.data->setMapping(request.ordering, request.reverse);
  const Terminal terminal = outputTerminal(request.colour);
  if (request.site.empty()) {
    showProject(*model, request, terminal);
  } else {
    showSite(*model, pieces, request.site, terminal);
  }
  return model->complaints.empty() ? kDone : kUnreadable;
}

}  // namespace

void addShow(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "show", "Show a project, a site or a file to people");
  const auto request = std::make_shared<Request>();
  addPieces(app, request->project);
  addText(app, "SITE", "Only this site: its label, its number or FILE:LINE; or a FILE",
          [=](const std::string& text) { request->site = text; });
  addText(app, "--sort", "Order of the rows, by name or number, as of 'report'; survey-cpu-time if not given",
          [=](const std::string& text) { request->ordering = orderingNamed("--sort", text); })
      .value("ORDER");
  addFlag(app, "--reverse", request->reverse, "Reverse the order of the rows");
  addFlag(app, "--all", request->all, "Functions and loops too");
  addPath(app, "--source-root", "DIR", "Where the sources are; the working directory if not given",
          request->sourceRoot);
  addText(app, "--color", "auto, always or never: colours and bars", [=](const std::string& text) {
    request->colour = rowNamed("--color", text, kColours).colour;
  }).value("WHEN");
  setWork(
      app, kExamples, [request] { return show(*request); }, chosen);
}

}  // namespace kelvar_tool
