#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// `path` as it stands from the root, lexically normal, without a trailing slash: symbolic links are not followed.
/// Throws ReadError where it is relative and the process has no working directory.
[[nodiscard]] std::filesystem::path absolutePath(const std::string& path);

/// Whether a result has this name in the database: whether it is what stateName makes of what it names. That may lie
/// below a symbolic link that the database is opened through, and be recorded by who opened it without.
[[nodiscard]] bool isStateName(const std::string& databasePath, std::string_view name);

}  // namespace kelvar_platform
