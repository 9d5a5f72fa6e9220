#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// `path` as it stands from the root, lexically normal, without a trailing slash: symbolic links are not followed.
/// Throws ReadError where it is relative and the process has no working directory.
[[nodiscard]] std::filesystem::path absolutePath(const std::string& path);

/// Whether a result can have this name in a database: a normal path, and none that leads out of the folder.
[[nodiscard]] bool isStateName(std::string_view name);

/// The name by which the result is found whose name was this when it was recorded. An absolute one may lie below the
/// database's folder meanwhile: that was moved, or opened through a link.
[[nodiscard]] std::string currentStateName(const std::string& databasePath, std::string_view name);

}  // namespace kelvar_platform
