#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Annotations.h"
#include "PlatformExport.h"

namespace kelvar_platform {

/// One edit of a site: what it was from then on.
struct SiteEdit {
  std::int64_t revision = 0;
  Site site;
};

/// Every edit of the site, oldest first; empty for what is no sequence. Reads the whole database, as
/// openAnnotationDatabase does, and throws what that throws.
[[nodiscard]] PLATFORM_EXPORT std::vector<SiteEdit> siteHistory(const std::string& database, std::int64_t sequence);

}  // namespace kelvar_platform
