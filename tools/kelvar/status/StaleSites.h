#pragma once

#include <string>
#include <vector>

#include "AnchoredSites.h"

namespace kelvar_tool {

/// How the sources have changed since the last scan of a database. Until the next scan, the database has the old lines,
/// and a figure measured on the new sources could go to a wrong site.
struct StaleSites {
  struct Stale {
    std::int64_t sequence = 0;
    std::string label;
    std::string place;   ///< FILE:LINE in the database
    std::string now;     ///< FILE:LINE in today's sources; empty when it is gone or uncertain
    bool isEnd = false;  ///< the end of a region, with the region's label
  };
  struct Renamed {
    std::string from;
    std::string to;
    std::size_t sites = 0;
  };

  /// Markers in the sources that are no sites yet.
  struct Untaken {
    std::size_t markers = 0;
    std::size_t files = 0;
    std::string first;  ///< FILE:LINE
  };

  std::vector<Stale> sites;                         ///< moved or gone, by sequence; not those of renamed files
  std::vector<std::string> edited;                  ///< files with sites that were edited since the last scan
  std::vector<std::string> gone;                    ///< files with sites that do not exist
  std::vector<Renamed> renamed;                     ///< files that were renamed with all their sites
  std::vector<kelvar_platform::SourceRow> sources;  ///< the existing files with sites, as they are now
  Untaken untaken;                                  ///< filled by wholeCheck only
  std::vector<std::string> folders;                 ///< of wholeCheck: the folders to scan
  std::string sourceRoot;                           ///< of wholeCheck: the --source-root for that scan; may be empty

  /// The number of sites that are no longer where the database has them.
  [[nodiscard]] std::size_t count() const noexcept;
  /// Whether `sites` has this one.
  [[nodiscard]] bool holds(std::int64_t sequence) const noexcept;
};

/// Compares the source files of scanned sites with their state at the last scan. File names in the database are
/// relative to `sourceRoot`, or to the working directory if that is empty. If none of the files exists, the sources are
/// taken to be on another machine: `gone` lists all of them, and no site is stale. Throws kelvar_platform::ReadError
/// when the database cannot be read.
[[nodiscard]] StaleSites staleSites(const std::string& database, const std::string& sourceRoot);

/// The same, and also finds new markers: in everything below `sourceRoot`, or if that is empty, in the folders of files
/// with sites but not in their subfolders, since such a folder may be a home directory. The database need not exist.
[[nodiscard]] StaleSites wholeCheck(const std::string& database, const std::string& sourceRoot);

/// A sentence for each change, and last the command that updates `database`; empty when nothing changed.
[[nodiscard]] std::vector<std::string> sentences(const StaleSites& stale, const std::string& database);

}  // namespace kelvar_tool
