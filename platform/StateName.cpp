#include "StateName.h"

#include <system_error>

#include "Annotations.h"
#include "Diagnosis.h"

namespace kelvar_platform {

namespace fs = std::filesystem;

fs::path absolutePath(const std::string& path) {
  std::error_code error;
  fs::path whole = fs::absolute(path, error);
  if (error) throw ReadError({path, "", "a working directory to find it from (" + error.message() + ")"});
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

namespace {

bool isStateNameBy(const std::string& databasePath, std::string_view name) {
  const fs::path named = absolutePath(databasePath).parent_path() / name;  // an absolute name stands for itself
  return stateName(databasePath, named.string()) == name;
}

}  // namespace

bool isStateName(const std::string& databasePath, std::string_view name) {
  if (name.empty()) return false;
  if (isStateNameBy(databasePath, name)) return true;
  std::error_code error;
  const fs::path resolved = fs::canonical(databasePath, error);
  return !error && isStateNameBy(resolved.string(), name);
}

}  // namespace kelvar_platform
