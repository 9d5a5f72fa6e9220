#include "Renames.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <tuple>
#include <unordered_map>

namespace kelvar_sources {

namespace {

/// A key that is in more files than this says nothing about any of them.
constexpr std::size_t kMostFilesOfKey = 64;

using Counts = std::map<std::size_t, int>;  // by file

class RenameFinder {
 public:
  RenameFinder(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen, const std::vector<bool>& exists)
      : hadSites_(exists.size(), false), sizes_(exists.size(), 0) {
    for (const KnownSite& site : known) {
      if (site.alive) hadSites_[site.file] = true;
    }
    for (const SeenSite& site : seen) {
      if (hadSites_[site.file]) continue;
      ++seenByKey_[keyOf(site.print, KeyLevel::textAndAfter)][site.file];
      ++sizes_[site.file];
    }
    for (const KnownSite& site : known) {
      if (!site.alive || exists[site.file]) continue;
      ++knownByFile_[site.file][keyOf(site.print, KeyLevel::textAndAfter)];
      ++sizes_[site.file];
    }
  }

  /// The most in common first.
  [[nodiscard]] std::vector<std::tuple<int, std::size_t, std::size_t>> candidates() const {
    std::vector<std::tuple<int, std::size_t, std::size_t>> all;  // minus the common keys, the old file, the new file
    for (const auto& [file, keys] : knownByFile_) {
      Counts common;
      for (const auto& [key, count] : keys) {
        const auto found = seenByKey_.find(key);
        if (found == seenByKey_.end() || found->second.size() > kMostFilesOfKey) continue;
        for (const auto& [other, seen] : found->second) common[other] += std::min(count, seen);
      }
      for (const auto& [other, count] : common) {
        if (2 * count >= std::min(sizes_[file], sizes_[other])) all.emplace_back(-count, file, other);
      }
    }
    std::sort(all.begin(), all.end());
    return all;
  }

  [[nodiscard]] bool hadSites(std::size_t file) const { return hadSites_[file]; }

 private:
  std::vector<bool> hadSites_;
  std::vector<int> sizes_;
  std::unordered_map<Key, Counts, KeyHash> seenByKey_;
  std::map<std::size_t, std::unordered_map<Key, int, KeyHash>> knownByFile_;
};

}  // namespace

std::vector<std::size_t> renamedFiles(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen,
                                      const std::vector<bool>& exists, const std::vector<std::size_t>& git) {
  std::vector<std::size_t> names(exists.size());
  std::iota(names.begin(), names.end(), std::size_t{0});
  const RenameFinder finder(known, seen, exists);
  std::vector<bool> taken(exists.size(), false);
  for (std::size_t file = 0; file < git.size(); ++file) {
    if (git[file] == file || exists[file] || finder.hadSites(git[file]) || taken[git[file]]) continue;
    names[file] = git[file];
    taken[git[file]] = true;
  }
  for (const auto& [common, file, other] : finder.candidates()) {
    if (names[file] != file || taken[other]) continue;
    names[file] = other;
    taken[other] = true;
  }
  return names;
}

}  // namespace kelvar_sources
