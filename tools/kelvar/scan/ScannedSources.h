#pragma once

#include <string>
#include <vector>

#include "SourceScan.h"
#include "SourceTree.h"

namespace kelvar_tool {

/// What a scan read of one file.
struct ScannedFile {
  bool read = false;      ///< false: it was passed over, and `complaint` may say why
  std::string complaint;  ///< a sentence where it could not be read
  std::string digest;     ///< of a file that has sites, or of any where it is asked for
  kelvar_sources::FileSites sites;
};

/// Reads all files, several at a time. The answers are in the order of the files, and do not depend on the machine.
[[nodiscard]] std::vector<ScannedFile> scanned(const std::vector<SourceFile>& files,
                                               const kelvar_sources::RuleSet& rules);

/// The bytes of a file. Throws kelvar_platform::ReadError where it is no file that can be read, or is too large.
[[nodiscard]] std::string sourceBytes(const std::string& path);
/// The same of one that is to be lexed, which takes many times its size: of fewer bytes.
[[nodiscard]] std::string lexedBytes(const std::string& path);

}  // namespace kelvar_tool
