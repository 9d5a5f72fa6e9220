#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// `path` made absolute and lexically normal, without a trailing slash. Symbolic links are not followed. Throws a
/// ReadError if it is relative and the process has no working directory.
[[nodiscard]] std::filesystem::path absolutePath(const std::string& path);

/// Whether this can be the name of a result in a database: a normal path that does not lead out of the folder.
[[nodiscard]] bool isStateName(std::string_view name);

/// The present name of a result that was recorded under `name`. An absolute path may be below the database's folder by
/// now, if that was moved or is opened through a link.
[[nodiscard]] std::string currentStateName(const std::string& databasePath, std::string_view name);

}  // namespace kelvar_platform
