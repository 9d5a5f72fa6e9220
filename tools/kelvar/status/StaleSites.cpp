#include "StaleSites.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "Language.h"
#include "Messages.h"
#include "Place.h"
#include "Project.h"
#include "RegionKinds.h"
#include "scan/ScanPlan.h"

namespace kelvar_tool {

namespace {

using kelvar_2_1_7::closesRegion;
using kelvar_platform::AnchoredSite;
using What = ScanEvent::What;

std::string placeText(const std::string& file, int line) {
  return text(Place{.file = file, .line = line});
}

bool isThere(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

kelvar_platform::AnchoredSites sitesOf(const std::string& database) {
  return isThere(database) ? kelvar_platform::readAnchoredSites(database) : kelvar_platform::AnchoredSites();
}

/// The source files directly in a folder.
void addFilesOf(const std::string& folder, std::vector<std::string>& files) {
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    std::error_code unknown;
    const std::string path = normalPath(entries->path().native());
    if (kelvar_sources::languageOf(path) && entries->is_regular_file(unknown)) files.push_back(path);
  }
}

/// Finds out what a scan would change, in the files with sites, or as `whole` in all the project's sources.
class SourceCheck {
 public:
  SourceCheck(const std::string& database, const std::string& sourceRoot, bool whole)
      : sites_(sitesOf(database)),
        root_(sourceRoot),
        isWhole_(whole),
        wholeRoot_(whole && isDirectory(sourceRoot) ? sourceRoot : std::string()) {}

  StaleSites run() {
    gatherFiles();
    if (files_.empty() && wholeRoot_.empty()) return {};
    chooseRoot();
    compareDigests();
    if (!files_.empty() && stale_.sources.empty()) isWhole_ = false;  // the sources are not on this machine
    if (isWhole_ || !stale_.edited.empty() || !stale_.gone.empty()) findSites();
    return std::move(stale_);
  }

 private:
  void gatherFiles() {
    for (const AnchoredSite& one : sites_.sites) {
      if (one.site.alive && one.anchor) files_[one.site.file];
    }
    for (const kelvar_platform::SourceRow& row : sites_.sources) {
      const auto file = files_.find(row.file);
      if (file != files_.end()) file->second = row.digest;
    }
  }

  /// Names may include the root already.
  void chooseRoot() {
    if (files_.empty()) return;
    const bool below =
        std::any_of(files_.begin(), files_.end(), [&](const auto& file) { return isThere(pathOf(file.first)); });
    if (!below) root_.clear();
  }

  [[nodiscard]] std::string pathOf(const std::string& name) const {
    if (root_.empty() || name.starts_with('/')) return name;
    return root_ + '/' + name;
  }

  void compareDigests() {
    for (const auto& [name, digest] : files_) {
      std::error_code error;
      if (!std::filesystem::is_regular_file(pathOf(name), error)) {
        stale_.gone.push_back(name);
        continue;
      }
      const std::vector<ScannedFile> read = scanned({{pathOf(name), name, name}}, noRules_);
      if (!read[0].complaint.empty()) {
        stale_.gone.push_back(name);
        continue;
      }
      stale_.sources.push_back({name, read[0].digest, read[0].sites.lines});
      if (!digest.empty() && digest != read[0].digest) stale_.edited.push_back(name);
    }
  }

  /// A missing file may have been renamed, so everything below the nearest existing folder above it is searched too.
  void findSites() {
    SourceRequest request{.sources = {}, .sourceRoot = root_, .excluded = {}};
    std::set<std::string> folders;
    for (const std::string& name : stale_.edited) request.sources.push_back(pathOf(name));
    const bool anyThere = !stale_.sources.empty();
    for (const std::string& name : stale_.gone) {
      std::error_code error;
      std::filesystem::path folder = std::filesystem::path(pathOf(name)).parent_path();
      while (!folder.empty() && !std::filesystem::is_directory(folder, error) && folder != folder.parent_path()) {
        folder = folder.parent_path();
      }
      if (anyThere || std::filesystem::exists(folder, error)) folders.insert(folder.empty() ? "." : folder.native());
    }
    request.sources.insert(request.sources.end(), folders.begin(), folders.end());
    if (isWhole_) addAll(request.sources);
    if (request.sources.empty()) return;
    const SourceTree tree(request);
    const kelvar_sources::RuleSet set(kelvar_sources::builtInRules());
    const std::vector<ScannedFile> read = scanned(tree.files(), set);
    // A project's own rules are only known to `scan`, so the sites that they found are checked by their lines.
    take(planOf({.tree = tree, .files = read, .rules = set, .makeNew = isWhole_, .findsOtherRules = true}, sites_));
  }

  void addAll(std::vector<std::string>& sources) {
    std::set<std::string> folders;
    for (const kelvar_platform::SourceRow& row : stale_.sources) {
      const std::string folder = std::filesystem::path(pathOf(row.file)).parent_path().native();
      folders.insert(folder.empty() ? "." : folder);
    }
    if (wholeRoot_.empty()) {
      for (const std::string& folder : folders) addFilesOf(folder, sources);
    } else {
      folders = {wholeRoot_};
      sources.push_back(wholeRoot_);
    }
    stale_.folders.assign(folders.begin(), folders.end());
    stale_.sourceRoot = root_;
  }

  void countUntaken(const ScanPlan& plan) {
    std::set<std::string> files;
    for (const ScanEvent& event : plan.events) {
      if ((event.what != What::added && event.what != What::revived) || closesRegion(event.kind)) continue;
      if (stale_.untaken.markers++ == 0) stale_.untaken.first = placeText(event.newFile, event.newLine);
      files.insert(event.newFile);
    }
    stale_.untaken.files = files.size();
  }

  void take(const ScanPlan& plan) {
    countUntaken(plan);
    std::map<std::string, std::map<std::string, std::vector<StaleSites::Stale>>> byFile;  // by old, then by new name
    for (const ScanEvent& event : plan.events) {
      if (event.what != What::moved && event.what != What::gone && event.what != What::ambiguous) continue;
      if (files_.find(event.oldFile) == files_.end()) continue;
      if (event.what == What::moved && event.oldFile == event.newFile && event.oldLine == event.newLine) continue;
      const bool known = event.what == What::moved;
      byFile[event.oldFile][known ? event.newFile : std::string()].push_back(
          {event.sequence, event.label, placeText(event.oldFile, event.oldLine),
           known ? placeText(event.newFile, event.newLine) : std::string(), closesRegion(event.kind)});
    }
    std::set<std::string> renamed;
    for (auto& [from, targets] : byFile) {
      const bool vanished = std::binary_search(stale_.gone.begin(), stale_.gone.end(), from);
      if (vanished && targets.size() == 1 && !targets.begin()->first.empty()) {
        stale_.renamed.push_back({from, targets.begin()->first, targets.begin()->second.size()});
        renamed.insert(from);
        continue;
      }
      for (auto& [to, sites] : targets) stale_.sites.insert(stale_.sites.end(), sites.begin(), sites.end());
    }
    std::erase_if(stale_.gone, [&](const std::string& file) { return renamed.count(file) != 0; });
    std::sort(stale_.sites.begin(), stale_.sites.end(),
              [](const auto& a, const auto& b) { return a.sequence < b.sequence; });
  }

  const kelvar_platform::AnchoredSites sites_;
  std::string root_;
  bool isWhole_;
  const std::string wholeRoot_;  // a folder to check completely; empty: none
  const kelvar_sources::RuleSet noRules_{std::vector<kelvar_sources::Rule>()};
  std::map<std::string, std::string> files_;  // digests by name
  StaleSites stale_;
};

}  // namespace

std::size_t StaleSites::count() const noexcept {
  std::size_t all = sites.size();
  for (const Renamed& one : renamed) all += one.sites;
  return all;
}

bool StaleSites::holds(std::int64_t sequence) const noexcept {
  return std::binary_search(sites.begin(), sites.end(),
                            Stale{.sequence = sequence, .label = {}, .place = {}, .now = {}, .isEnd = false},
                            [](const Stale& a, const Stale& b) { return a.sequence < b.sequence; });
}

StaleSites staleSites(const std::string& database, const std::string& sourceRoot) {
  constexpr bool kWhole = false;
  return SourceCheck(database, sourceRoot, kWhole).run();
}

StaleSites wholeCheck(const std::string& database, const std::string& sourceRoot) {
  constexpr bool kWhole = true;
  return SourceCheck(database, sourceRoot, kWhole).run();
}

std::vector<std::string> sentences(const StaleSites& stale, const std::string& database) {
  std::vector<std::string> all;
  for (const StaleSites::Renamed& one : stale.renamed) {
    all.push_back(escaped(one.from) + " is " + escaped(one.to) + " now, with " + counted(one.sites, "site"));
  }
  for (const StaleSites::Stale& site : stale.sites) {
    all.push_back("site " + std::to_string(site.sequence) + " '" + escaped(site.label) + "' is no longer at " +
                  escaped(site.place) +
                  (site.now.empty() ? ", nor elsewhere for certain" : ", but at " + escaped(site.now)));
  }
  for (const std::string& file : stale.edited) all.push_back(escaped(file) + " was edited since the last scan");
  for (const std::string& file : stale.gone) all.push_back(escaped(file) + " is not there");
  if (!all.empty()) all.push_back("run 'kelvar annotate " + escaped(database) + " scan' on the sources");
  return all;
}

}  // namespace kelvar_tool
