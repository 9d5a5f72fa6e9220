#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Annotations.h"
#include "PlatformExport.h"

namespace kelvar_platform {

/// One edit of a site, and the site from then on.
struct SiteEdit {
  std::int64_t revision = 0;
  Site site;
};

/// All edits of a site, oldest first; empty if there is no such sequence. Reads the whole database, and throws the same
/// errors as openAnnotationDatabase.
[[nodiscard]] PLATFORM_EXPORT std::vector<SiteEdit> siteHistory(const std::string& database, std::int64_t sequence);

}  // namespace kelvar_platform
