#pragma once

#include <filesystem>
#include <string>

namespace kelvar_platform {

/// `path` as it stands from the root, lexically normal, without a trailing slash: symbolic links are not followed.
/// Throws ReadError where it is relative and the process has no working directory.
[[nodiscard]] std::filesystem::path absolutePath(const std::string& path);

}  // namespace kelvar_platform
