#include "Project.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "RunFolder.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;

bool mayExist(const fs::path& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

std::string pathIfExists(const fs::path& path) {
  return mayExist(path) ? normalPath(path.native()) : std::string();
}

}  // namespace

bool Pieces::none() const noexcept {
  return annotations.empty() &&
         std::all_of(results.begin(), results.end(), [](const auto& path) { return path.empty(); });
}

std::string normalPath(const std::string& path) {
  std::string normal = fs::path(path).lexically_normal().native();
  if (normal.size() > 1 && normal.back() == '/') normal.pop_back();
  return normal;
}

bool isDirectory(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

Pieces piecesIn(const std::string& project) {
  const fs::path root = project;
  const fs::path survey = root / "survey";
  const fs::path vectorization = survey / "surveyvectorization";
  Pieces pieces;
  pieces.annotations = pathIfExists(kelvar_import::annotationsOf(project));
  pieces.results[digestio::kSurvey] = pathIfExists(survey);
  pieces.results[digestio::kSurveyVectorization] = pathIfExists(vectorization);
  pieces.results[digestio::kSuitability] = pathIfExists(root / "suitability");
  pieces.results[digestio::kCorrectness] = pathIfExists(root / "dependencies");
  pieces.results[digestio::kMap] = pathIfExists(root / "map");
  if (mayExist(vectorization) && !mayExist(survey / "collection.json")) pieces.results[digestio::kSurvey].clear();
  return pieces;
}

Pieces overlaid(Pieces project, const Pieces& named) {
  if (!named.annotations.empty()) project.annotations = named.annotations;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    if (!named.results[kind].empty()) project.results[kind] = named.results[kind];
  }
  return project;
}

}  // namespace kelvar_tool
