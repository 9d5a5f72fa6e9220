#include "SiteSearch.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

#include "GitRenames.h"
#include "Renames.h"

namespace kelvar_tool {

using kelvar_sources::FindResult;
using kelvar_sources::KnownSite;
using kelvar_sources::SeenSite;

SiteSearch::SiteSearch(const kelvar_platform::AnchoredSites& database, const PlanFiles& files)
    : database_(database),
      files_(files),
      exist_(files.exist()),
      unchanged_(files.areUnchanged()),
      git_(files.size()),
      asked_(files.size(), false) {
  std::iota(git_.begin(), git_.end(), std::size_t{0});
}

FindResult SiteSearch::find(Wanted& wanted, const std::vector<SeenSite>& seen) {
  sort(wanted);
  askGit(wanted.known);
  return kelvar_sources::findAgain(wanted.known, seen, kelvar_sources::renamedFiles(wanted.known, seen, exist_, git_),
                                   unchanged_);
}

void SiteSearch::sort(Wanted& wanted) const {
  std::vector<std::size_t> order(wanted.known.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto key = [&](std::size_t k) {
    const kelvar_platform::Site& site = database_.sites[wanted.sites[k]].site;
    return std::tuple(wanted.known[k].file, site.line, site.column, site.sequence);
  };
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
  Wanted sorted;
  for (const std::size_t k : order) {
    sorted.known.push_back(wanted.known[k]);
    sorted.sites.push_back(wanted.sites[k]);
  }
  std::swap(wanted, sorted);
}

void SiteSearch::askGit(const std::vector<KnownSite>& known) {
  std::vector<std::size_t> vanished;
  std::vector<std::string> keys;
  for (const KnownSite& site : known) {
    if (!site.alive || exist_[site.file] || asked_[site.file]) continue;
    asked_[site.file] = true;
    vanished.push_back(site.file);
    keys.push_back(files_.at(site.file).key);
  }
  if (keys.empty()) return;
  const auto renamed = renamedByGit(keys);
  for (const std::size_t file : vanished) {
    const auto key = renamed.find(files_.at(file).key);
    const std::size_t found = key == renamed.end() ? kNothing : files_.scannedAs(key->second);
    if (found != kNothing) git_[file] = found;
  }
}

}  // namespace kelvar_tool
