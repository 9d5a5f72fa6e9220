#include "StateName.h"

#include <system_error>

#include "Annotations.h"
#include "Diagnosis.h"

namespace kelvar_platform {

namespace fs = std::filesystem;

fs::path absolutePath(const std::string& path) {
  std::error_code error;
  fs::path whole = fs::absolute(path, error);
  if (error) throw ReadError({path, "", "a working directory (" + error.message() + ")"});
  whole = whole.lexically_normal();
  return whole.has_filename() || !whole.has_relative_path() ? whole : whole.parent_path();
}

std::string stateName(const std::string& databasePath, const std::string& resultPath) {
  if (resultPath.empty()) return {};
  const fs::path result = absolutePath(resultPath);
  const fs::path below = result.lexically_relative(absolutePath(databasePath).parent_path());
  const bool liesBelow = !below.empty() && *below.begin() != ".." && below != ".";
  return liesBelow ? below.string() : result.string();
}

bool isStateName(std::string_view name) {
  const fs::path path(name);
  const bool endsInSlash = !path.has_filename() && path.has_relative_path();
  return !name.empty() && !endsInSlash && path.lexically_normal().native() == name && path != "." &&
         *path.begin() != "..";
}

std::string currentStateName(const std::string& databasePath, std::string_view name) {
  std::string known(name);
  return fs::path(known).is_absolute() ? stateName(databasePath, known) : known;
}

}  // namespace kelvar_platform
