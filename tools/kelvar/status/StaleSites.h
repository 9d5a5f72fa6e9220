#pragma once

#include <string>
#include <vector>

#include "AnchoredSites.h"

namespace kelvar_tool {

/// How the sources of a database's sites have changed since the last scan. A scan of the same files would find the
/// sites at their new lines; until then, a figure of today's sources goes to the site that its line had then.
struct StaleSites {
  struct Stale {
    std::int64_t sequence = 0;
    std::string label;
    std::string place;   ///< FILE:LINE, as the database has it
    std::string now;     ///< FILE:LINE, where it is in today's sources; empty: nowhere, or it cannot be told
    bool isEnd = false;  ///< of a region; it has the label of that
  };
  struct Renamed {
    std::string from;
    std::string to;
    std::size_t sites = 0;
  };

  /// Markers that no scan has made sites of.
  struct Untaken {
    std::size_t markers = 0;
    std::size_t files = 0;
    std::string first;  ///< FILE:LINE
  };

  std::vector<Stale> sites;                         ///< by sequence: not on their lines, without those of renamed files
  std::vector<std::string> edited;                  ///< files with sites that are not as they were at the last scan
  std::vector<std::string> gone;                    ///< files with sites that are not there
  std::vector<Renamed> renamed;                     ///< files all of whose sites moved along
  std::vector<kelvar_platform::SourceRow> sources;  ///< the files with sites that are there, as they are now
  Untaken untaken;                                  ///< found by wholeCheck alone
  std::vector<std::string> folders;                 ///< what a scan is to be made of, where wholeCheck looked
  std::string sourceRoot;                           ///< and what names are below then; empty: the working directory

  /// How many sites are not where the database has them.
  [[nodiscard]] std::size_t count() const noexcept;
  /// Whether a site is among those.
  [[nodiscard]] bool holds(std::int64_t sequence) const noexcept;
};

/// Looks at the source files of the sites that a scan has found. Names of files in the database are below `sourceRoot`,
/// or below the working directory where that is empty. A database without anchors has none that are stale; neither has
/// one of whose files not one is there: the sources are elsewhere then, and `gone` has them all.
[[nodiscard]] StaleSites staleSites(const std::string& database, const std::string& sourceRoot);

/// The same, and what else a whole scan would find: in all that is below `sourceRoot`; where that is empty, in the
/// files beside those with sites, but not below them, since they may lie in a home directory. The database need not be
/// there.
[[nodiscard]] StaleSites wholeCheck(const std::string& database, const std::string& sourceRoot);

/// A sentence each: what changed, and what to run. `scan` is the command that puts it right.
[[nodiscard]] std::vector<std::string> sentences(const StaleSites& stale, const std::string& database);

}  // namespace kelvar_tool
