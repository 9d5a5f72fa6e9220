#include "SourceLook.h"

#include <algorithm>
#include <filesystem>

#include "Messages.h"
#include "RunFolder.h"
#include "ShellText.h"
#include "status/StaleSites.h"

namespace kelvar_tool {

namespace {

/// Names only a few: an old database may have thousands of stale sites.
constexpr std::size_t kMostNamed = 3;

/// The first few things, and how many more there are.
template <class Things, class Text>
std::string listed(const Things& things, Text text) {
  std::string list;
  for (std::size_t i = 0; i < std::min(things.size(), kMostNamed); ++i) {
    list += (i == 0 ? "" : ", ") + escaped(text(things[i]));
  }
  if (things.size() > kMostNamed) list += " and " + std::to_string(things.size() - kMostNamed) + " more";
  return list;
}

std::string staleText(const StaleSites& stale) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
  const auto asItIs = [](const std::string& name) { return name; };
  std::vector<StaleSites::Stale> sites = stale.sites;
  std::erase_if(sites, [](const StaleSites::Stale& site) { return site.isEnd; });
  if (!sites.empty()) {
    const bool one = sites.size() == 1;
    add(counted(sites.size(), "site") + (one ? " is" : " are") + " not on the " + (one ? "line" : "lines") +
        " of the last scan and " + (one ? "gets" : "get") +
        " no figures: " + listed(sites, [](const StaleSites::Stale& site) {
          return '\'' + site.label + "' (" + site.place + (site.now.empty() ? "" : ", now " + site.now) + ')';
        }));
  }
  if (!stale.renamed.empty()) {
    add(listed(stale.renamed, [](const StaleSites::Renamed& one) { return one.from + " is " + one.to + " now"; }));
  }
  if (!stale.edited.empty()) add("edited since: " + listed(stale.edited, asItIs));
  if (!stale.gone.empty()) add("not there: " + listed(stale.gone, asItIs));
  return text;
}

std::string untakenText(const StaleSites::Untaken& untaken) {
  const bool one = untaken.markers == 1;
  return counted(untaken.markers, "marker") + " in " + counted(untaken.files, "file") + (one ? " is" : " are") +
         " no site yet, " + (one ? "at " : "the first at ") + escaped(untaken.first);
}

std::string scanCommand(const std::string& database, const StaleSites& stale) {
  std::vector<std::string> words{"kelvar", "annotate", database, "scan"};
  if (stale.folders.size() > kMostNamed) return shellText(words) + " SOURCE...";
  words.insert(words.end(), stale.folders.begin(), stale.folders.end());
  if (!stale.sourceRoot.empty()) words.insert(words.end(), {"--source-root", stale.sourceRoot});
  return shellText(words);
}

}  // namespace

SourceState lookAtSources(const Wanted& wanted, const std::string& directory) {
  std::string database = kelvar_import::annotationsOf(directory);
  std::error_code error;
  const bool isThere = std::filesystem::exists(database, error);
  if (!isThere) database = kelvar_import::annotationsOf(wanted.project);  // a run shares the project's annotations
  const StaleSites stale = wholeCheck(database, wanted.sourceRoot);
  const bool anyMarker = stale.untaken.markers > 0;
  if (!isThere) {
    say("no annotations: results will name only functions" +
        (anyMarker
             ? ""
             : "; 'kelvar annotate " + shellWord(database) + " scan SOURCE...' makes sites of the markers in sources"));
  }
  if (stale.folders.empty()) return {};  // the sources are not on this machine
  const std::string behind = staleText(stale);
  if (!behind.empty()) say(behind);
  if (anyMarker) say(untakenText(stale.untaken));
  if (!behind.empty() || anyMarker) say("run: " + scanCommand(database, stale));
  SourceState found{.stale = {}, .files = stale.sources};
  for (const StaleSites::Stale& site : stale.sites) found.stale.insert(site.sequence);
  return found;
}

}  // namespace kelvar_tool
