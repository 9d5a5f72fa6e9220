#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Annotations.h"
#include "PlatformExport.h"

namespace kelvar_platform {

/// The surroundings of a site when it was last found.
struct AnchorRow {
  std::int64_t sequence = 0;
  std::int64_t revision = 0;  ///< the edit that put the site there
  std::string rule;           ///< the rule of its marker; empty for a site placed by hand
  std::string text;
  std::string function;
  std::string before;
  std::string after;
  std::string label;  ///< the label in the source; empty if there is none
};

/// A source file as it was at the last scan.
struct SourceRow {
  std::string file;
  std::string digest;
  std::int64_t lines = 0;

  bool operator==(const SourceRow&) const = default;
};

/// A site, living or not, with its surroundings.
struct AnchoredSite {
  Site site;                  ///< as of its newest edit
  std::int64_t revision = 0;  ///< of that edit
  std::optional<AnchorRow> anchor;
  bool movedByHand = false;  ///< its place is not that of its anchor's edit
};

/// The content of an annotation database.
struct AnchoredSites {
  std::vector<AnchoredSite> sites;  ///< by sequence
  std::vector<SourceRow> sources;   ///< by file
  std::int64_t nextSequence = 1;    ///< one more than the greatest sequence so far
};

/// Edits to write, all or none.
struct AnchoredEdits {
  struct Edit {
    Site site;
    bool appends = true;              ///< false: no edit is appended, only the anchor is replaced
    bool keepsRevision = false;       ///< the anchor keeps its own revision
    std::optional<AnchorRow> anchor;  ///< its sequence, and unless keepsRevision its revision, are filled in
  };
  std::vector<Edit> edits;  ///< in the order of their revisions; a new site has a sequence from nextSequence on
  std::vector<SourceRow> sources;
  std::vector<std::string> forgottenSources;

  [[nodiscard]] bool empty() const noexcept { return edits.empty() && sources.empty() && forgottenSources.empty(); }
};

/// Reads the database at `path` within one transaction, opened read-only. Throws ReadError.
[[nodiscard]] PLATFORM_EXPORT AnchoredSites readAnchoredSites(const std::string& path);

/// Reads the database, calls `decide` for the edits, and writes them, all in one transaction. Exceptions of `decide`
/// pass through, and nothing is written. A missing file is created if there are edits. Throws ReadError.
PLATFORM_EXPORT void editAnchoredSites(const std::string& path,
                                       const std::function<AnchoredEdits(const AnchoredSites&)>& decide);

}  // namespace kelvar_platform
