#include "SourceTree.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "Diagnosis.h"
#include "Messages.h"
#include "Project.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;

std::string absoluteKey(const fs::path& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return normalPath((error ? path : absolute).native());
}

bool isBelow(std::string_view path, std::string_view directory) {
  if (directory == "/") return true;
  return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

/// A build folder has no sources of the project.
bool isSkipped(const fs::path& directory) {
  std::error_code error;
  return directory.filename() == ".git" || fs::exists(directory / "CMakeCache.txt", error);
}

}  // namespace

SourceTree::SourceTree(SourceRequest request) : request_(std::move(request)) {
  rootKey_ = absoluteKey(request_.sourceRoot.empty() ? fs::path(".") : fs::path(request_.sourceRoot));
  for (const std::string& source : request_.sources) {
    std::error_code error;
    const fs::file_status status = fs::status(source, error);
    if (error || !fs::exists(status)) {
      throw kelvar_platform::ReadError(
          {source, "", "a file or a directory (" + (error ? error.message() : std::string("there is none")) + ")"});
    }
    roots_.push_back(absoluteKey(source));
    if (fs::is_directory(status)) {
      walk(source);
    } else {
      add(source, true);
    }
  }
  std::sort(files_.begin(), files_.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
  files_.erase(std::unique(files_.begin(), files_.end(), [](const auto& a, const auto& b) { return a.key == b.key; }),
               files_.end());
}

void SourceTree::add(const std::string& path, bool named) {
  const auto language = kelvar_sources::languageOf(path);
  if (!language && !named) return;
  std::string key = absoluteKey(path);
  if (isExcluded(key)) return;
  std::string name = nameOf(path, key);
  files_.push_back({path, std::move(name), std::move(key), language.value_or(kelvar_sources::Language::c)});
}

void SourceTree::walk(const std::string& directory) {
  // Without recursion: folders may nest deeper than the stack.
  std::vector<std::string> waiting{directory};
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
      const fs::directory_entry& entry = *entries;
      std::error_code unknown;
      const std::string path = (folder == "." ? entry.path().filename() : entry.path()).native();
      if (entry.is_symlink(unknown)) continue;
      if (entry.is_directory(unknown)) {
        if (!isSkipped(entry.path()) && !isExcluded(absoluteKey(path))) waiting.push_back(path);
      } else if (entry.is_regular_file(unknown)) {
        add(path, false);
      }
    }
    if (!error) continue;
    unread_.push_back(absoluteKey(folder));
    complaints_.push_back(escaped(folder) + ": expected a directory that can be read (" + error.message() + ")");
  }
}

bool SourceTree::isExcluded(const std::string& key) const {
  if (request_.excluded.empty()) return false;
  const std::string below = isBelow(key, rootKey_) && key.size() > rootKey_.size()
                                ? key.substr(rootKey_.size() + (rootKey_ == "/" ? 0 : 1))
                                : key;
  const std::string leaf = key.substr(key.rfind('/') + 1);
  return std::any_of(request_.excluded.begin(), request_.excluded.end(), [&](const std::string& pattern) {
    return fnmatch(pattern.c_str(), below.c_str(), 0) == 0 || fnmatch(pattern.c_str(), leaf.c_str(), 0) == 0 ||
           fnmatch(pattern.c_str(), key.c_str(), 0) == 0;
  });
}

std::string SourceTree::nameOf(const std::string& path, const std::string& key) const {
  if (request_.sourceRoot.empty() || !isBelow(key, rootKey_)) return normalPath(path);
  return key.substr(rootKey_ == "/" ? 1 : rootKey_.size() + 1);
}

std::string SourceTree::keyOf(const std::string& name) const {
  return name.starts_with('/') ? normalPath(name) : normalPath(rootKey_ + '/' + name);
}

bool SourceTree::covers(const std::string& key) const {
  const auto holds = [&](const std::string& root) { return isBelow(key, root); };
  if (std::none_of(roots_.begin(), roots_.end(), holds) || std::any_of(unread_.begin(), unread_.end(), holds)) {
    return false;
  }
  // A file is also excluded when a folder above it is.
  for (std::size_t end = key.size(); end != std::string::npos && end > 0; end = key.rfind('/', end - 1)) {
    if (isExcluded(key.substr(0, end))) return false;
    if (std::find(roots_.begin(), roots_.end(), key.substr(0, end)) != roots_.end()) break;
  }
  return true;
}

}  // namespace kelvar_tool
