#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Annotations.h"
#include "PlatformExport.h"

namespace kelvar_platform {

/// What was around a site when it was last found.
struct AnchorRow {
  std::int64_t sequence = 0;
  std::int64_t revision = 0;  ///< the edit that put the site there
  std::string rule;           ///< the marker that it was found by; empty: a person placed it
  std::string text;
  std::string function;
  std::string before;
  std::string after;
  std::string label;  ///< the label in the source; empty: it has none of its own
};

/// A source file as it was at the last scan.
struct SourceRow {
  std::string file;
  std::string digest;
  std::int64_t lines = 0;

  bool operator==(const SourceRow&) const = default;
};

/// A site, dead ones too, with what is known of its surroundings.
struct AnchoredSite {
  Site site;                  ///< as the newest edit has it
  std::int64_t revision = 0;  ///< of that edit
  std::optional<AnchorRow> anchor;
  bool movedByHand = false;  ///< it is elsewhere than its anchor's edit put it
};

/// One moment of an annotation database.
struct AnchoredSites {
  std::vector<AnchoredSite> sites;  ///< by sequence
  std::vector<SourceRow> sources;   ///< by file
  std::int64_t nextSequence = 1;    ///< one past the greatest there ever was
};

/// What is to be written: everything, or nothing.
struct AnchoredEdits {
  struct Edit {
    Site site;
    bool appends = true;              ///< false: the edits stay as they are, and only the anchor is renewed
    bool keepsRevision = false;       ///< the anchor goes on naming the edit that it named
    std::optional<AnchorRow> anchor;  ///< its sequence and revision are those of the site and its newest edit
  };
  std::vector<Edit> edits;  ///< in the order of their revisions; a new site has a sequence from nextSequence on
  std::vector<SourceRow> sources;
  std::vector<std::string> forgottenSources;

  [[nodiscard]] bool empty() const noexcept { return edits.empty() && sources.empty() && forgottenSources.empty(); }
};

/// Reads the database at `path` within one transaction, opened read-only. Throws ReadError.
[[nodiscard]] PLATFORM_EXPORT AnchoredSites readAnchoredSites(const std::string& path);

/// Reads the database, asks `decide` what to write, and writes that, all in one transaction. What `decide` throws
/// passes through, and nothing is written. A file that is not there is made when there is something to write.
PLATFORM_EXPORT void editAnchoredSites(const std::string& path,
                                       const std::function<AnchoredEdits(const AnchoredSites&)>& decide);

}  // namespace kelvar_platform
