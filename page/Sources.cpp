#include "Sources.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace kelvar_page {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargest = std::uintmax_t{16} << 20;
constexpr std::size_t kMostKept = 64;  // files in memory at a time

// Whether `path`, links resolved, lies below `root`.
bool liesBelow(const fs::path& path, const fs::path& root) {
  const auto rest = path.lexically_relative(root);
  return !rest.empty() && *rest.begin() != "..";
}

std::vector<std::string> linesIn(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    const bool carriage = end > start && text[end - 1] == '\r';
    lines.push_back(text.substr(start, end - start - (carriage ? 1 : 0)));
    start = end + 1;
  }
  return lines;
}

}  // namespace

Sources::Sources(const std::string& root) : root_(root) {
  std::error_code error;
  const fs::path resolved = fs::canonical(root, error);
  if (!error && fs::is_directory(resolved, error)) resolvedRoot_ = resolved.native();
}

// Names with `..` are refused. A file is opened by its resolved path, so that a symbolic link that is replaced
// meanwhile leads nowhere else.
std::string Sources::find(const std::string& file) const {
  if (resolvedRoot_.empty() || file.empty() || file.find('\0') != std::string::npos) return {};
  const fs::path named = fs::path(file).lexically_normal();
  if (named.is_absolute()) {
    std::error_code error;
    const fs::path there = fs::canonical(named, error);
    if (!error && liesBelow(there, resolvedRoot_) && fs::is_regular_file(there, error)) return there.native();
  }
  const fs::path relative = named.relative_path();
  for (auto part = relative.begin(); part != relative.end(); ++part) {
    fs::path end = resolvedRoot_;
    bool climbs = false;
    for (auto rest = part; rest != relative.end(); ++rest) {
      climbs = climbs || *rest == "..";
      end /= *rest;
    }
    std::error_code error;
    const fs::path there = climbs ? fs::path() : fs::canonical(end, error);
    if (!there.empty() && !error && liesBelow(there, resolvedRoot_) && fs::is_regular_file(there, error)) {
      return there.native();
    }
  }
  return {};
}

const std::string& Sources::pathOf(const std::string& file) const {
  const auto known = paths_.find(file);
  return known != paths_.end() ? known->second : paths_.emplace(file, find(file)).first->second;
}

void Sources::forget() {
  paths_.clear();
  known_.clear();
}

const std::vector<std::string>* Sources::linesOf(const std::string& file) const {
  auto known = known_.find(file);
  if (known == known_.end()) {
    if (known_.size() >= kMostKept) known_.clear();
    known = known_.emplace(file, std::nullopt).first;
    const std::string& path = pathOf(file);
    std::error_code error;
    if (!path.empty() && fs::file_size(path, error) <= kLargest && !error) {
      std::ifstream in(path, std::ios::binary);
      const std::string text{std::istreambuf_iterator<char>(in), {}};
      if (in) known->second = linesIn(text);
    }
  }
  return known->second ? &*known->second : nullptr;
}

}  // namespace kelvar_page
