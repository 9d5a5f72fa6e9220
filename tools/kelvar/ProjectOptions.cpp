#include "ProjectOptions.h"

#include <filesystem>
#include <iterator>
#include <system_error>

#include "Messages.h"
#include "Names.h"
#include "Options.h"

namespace kelvar_tool {

namespace {

using Setting = ProjectRequest::Setting;

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
     "Ignore this analysis, and hide the sites that no other analysis reports: survey,\n"
     "surveyvectorization, suitability, dependencies or map; may be repeated",
     hideKind},
    {"--hide-detail-kind", "N", "Hide hot spots (1) or loops (2); may be repeated", hideDetailKind},
    {"--hide-annotation-kind", "KIND",
     "Hide the annotated sites of a kind, given by name (end-task) or number (3), or of all kinds (all);\n"
     "may be repeated",
     hideAnnotationKind},
};

}  // namespace

void addPieces(CLI::App& app, ProjectRequest& request) {
  addText(app, "PROJECT", "Project directory", [&](const std::string& text) { request.project = normalPath(text); });
  addPath(app, "--annotations", "FILE", "Annotation database, instead of PROJECT/annotations.db",
          request.named.annotations);
  for (const ResultOption& option : kResultOptions) {
    addPath(app, option.name, "DIR", option.help, request.named.results[option.kind]);
  }
}

void addHidings(CLI::App& app, ProjectRequest& request) {
  for (const HideOption& option : kHideOptions) {
    addText(app, option.name, option.help,
            [&](const std::string& text) { request.hidings.push_back(option.read(option.name, text)); })
        .value(option.value)
        .inOrder();  // at each occurrence, to keep the order across options
  }
}

std::string titleOf(const ProjectRequest& request) {
  if (!request.project) return "project";
  const std::string leaf = std::filesystem::path(*request.project).filename().native();
  if (leaf != "." && leaf != "..") return *request.project;
  std::error_code error;
  const std::filesystem::path there = std::filesystem::canonical(*request.project, error);
  return error || there.filename().empty() ? *request.project : there.filename().native();
}

Pieces piecesOf(const ProjectRequest& request) {
  if (request.project && !isDirectory(*request.project)) {
    throw UsageError("PROJECT: expected a directory, not " + inQuotes(*request.project));
  }
  Pieces pieces = overlaid(request.project ? piecesIn(*request.project) : Pieces(), request.named);
  if (!pieces.none()) return pieces;
  if (request.project) throw UsageError("no annotations or results in " + inQuotes(*request.project));
  throw UsageError("nothing to report: expected a PROJECT, or options that name its pieces");
}

const Loaded& loadSaying(const Pieces& pieces, const ProjectRequest& request) {
  static const Loaded* loaded = nullptr;
  loaded = new Loaded(load(pieces));
  for (const std::string& complaint : loaded->complaints) say(complaint);
  for (const Setting& hide : request.hidings) hide(*loaded->data);
  return *loaded;
}

}  // namespace kelvar_tool
