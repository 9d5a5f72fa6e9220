#pragma once

#include <string>
#include <vector>

#include "SourceScan.h"
#include "SourceTree.h"

namespace kelvar_tool {

/// What a scan read of one file.
struct ScannedFile {
  bool read = false;      ///< false for a binary file or one with a complaint
  std::string complaint;  ///< a sentence if the file could not be read, else empty
  std::string digest;     ///< of the bytes; empty unless `read`
  kelvar_sources::FileSites sites;
};

/// Reads and scans all files, several at a time. The results are in the order of `files`.
[[nodiscard]] std::vector<ScannedFile> scanned(const std::vector<SourceFile>& files,
                                               const kelvar_sources::RuleSet& rules);

/// The bytes of a file. Throws kelvar_platform::ReadError when it cannot be read, keeps changing, or is larger than
/// 4 GiB.
[[nodiscard]] std::string sourceBytes(const std::string& path);
/// The same for a file to be lexed, which takes many times its size: the limit is 64 MiB.
[[nodiscard]] std::string lexedBytes(const std::string& path);

}  // namespace kelvar_tool
