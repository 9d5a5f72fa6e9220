#include "PlanFiles.h"

#include <algorithm>
#include <utility>

namespace kelvar_tool {

using kelvar_platform::AnchoredSite;
using kelvar_platform::SourceRow;
using kelvar_sources::FoundSite;

PlanFiles::PlanFiles(const ScanInput& input, const kelvar_platform::AnchoredSites& database)
    : input_(input), database_(database) {
  numberFiles();
  gatherMarkers();
}

std::size_t PlanFiles::numbered(const std::string& key, const std::string& name) {
  const auto [found, isNew] = numbers_.try_emplace(key, files_.size());
  if (isNew) files_.push_back({.key = key, .name = name, .markers = {}});
  return found->second;
}

void PlanFiles::numberFiles() {
  fileOf_.reserve(database_.sites.size());
  std::unordered_map<std::string, std::size_t> byName;
  for (const AnchoredSite& one : database_.sites) {
    auto found = byName.find(one.site.file);
    if (found == byName.end()) {
      const std::size_t number = numbered(input_.tree.keyOf(one.site.file), one.site.file);
      found = byName.emplace(one.site.file, number).first;
    }
    fileOf_.push_back(found->second);
  }
  for (std::size_t i = 0; i < input_.files.size(); ++i) {
    const SourceFile& source = input_.tree.files()[i];
    File& file = files_[numbered(source.key, source.name)];
    file.source = &source;
    file.scanned = &input_.files[i];
  }
}

void PlanFiles::gatherMarkers() {
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (!files_[i].isRead()) continue;
    const std::vector<FoundSite>& sites = files_[i].scanned->sites.sites;
    for (const FoundSite& site : sites) {
      if (site.isEnd) continue;
      files_[i].markers.push_back(markers_.size());
      const bool closed = site.end != FoundSite::kNoEnd;
      markers_.push_back({i, &site, closed ? &sites[static_cast<std::size_t>(site.end)] : nullptr});
    }
    std::stable_sort(files_[i].markers.begin(), files_[i].markers.end(), [&](std::size_t a, std::size_t b) {
      return std::pair(markers_[a].found->line, markers_[a].found->column) <
             std::pair(markers_[b].found->line, markers_[b].found->column);
    });
  }
}

std::size_t PlanFiles::scannedAs(const std::string& key) const {
  const auto found = numbers_.find(key);
  return found != numbers_.end() && files_[found->second].scanned ? found->second : kNothing;
}

bool PlanFiles::isOurs(std::size_t file) const {
  return files_[file].scanned ? files_[file].scanned->read : input_.tree.covers(files_[file].key);
}

std::vector<bool> PlanFiles::exist() const {
  std::vector<bool> all;
  all.reserve(files_.size());
  for (const File& file : files_) all.push_back(file.scanned != nullptr || !input_.tree.covers(file.key));
  return all;
}

std::vector<bool> PlanFiles::areUnchanged() const {
  std::unordered_map<std::string, const std::string*> digests;  // by key
  for (const SourceRow& row : database_.sources) digests.emplace(input_.tree.keyOf(row.file), &row.digest);
  std::vector<bool> all;
  all.reserve(files_.size());
  for (const File& file : files_) {
    const auto digest = digests.find(file.key);
    all.push_back(file.scanned && digest != digests.end() && *digest->second == file.scanned->digest);
  }
  return all;
}

const std::vector<FoundSite>& PlanFiles::linesOf(std::size_t file) {
  const auto [found, isNew] = lines_.try_emplace(file);
  if (isNew) {
    const SourceFile& source = *files_[file].source;
    found->second = kelvar_sources::codeLines(lexedBytes(source.path), source.language);
  }
  return found->second;
}

void PlanFiles::record(kelvar_platform::AnchoredEdits& edits) const {
  std::unordered_map<std::string, const SourceRow*> before;
  for (const SourceRow& row : database_.sources) before.emplace(row.file, &row);
  for (std::size_t i = 0; i < files_.size(); ++i) {
    const File& file = files_[i];
    if (!isOurs(i)) continue;
    const auto had = before.find(file.name);
    if (!file.hasSites || !file.scanned) {
      if (had != before.end()) edits.forgottenSources.push_back(file.name);
      continue;
    }
    SourceRow row{file.name, file.scanned->digest, file.scanned->sites.lines};
    if (had == before.end() || !(*had->second == row)) edits.sources.push_back(std::move(row));
  }
}

}  // namespace kelvar_tool
