#pragma once

#include <string>
#include <vector>

#include "ProgramFacts.h"

namespace kelvar_tool {

/// The files of remarks that compilers wrote while they built a program.
struct RemarkFiles {
  std::vector<std::string> files;  ///< all of one compiler, sorted
  std::string option;              ///< of `import` for them
  std::vector<std::string> left;   ///< a sentence for each that is left out
};

/// In `named`, files and folders, or where none is named, beside the program and where it was compiled: those of the
/// program's units. A file that is newer than the program, or older than the object beside it, is not of this build.
[[nodiscard]] RemarkFiles remarkFiles(const std::string& program, const kelvar_readers::ProgramFacts& facts,
                                      const std::vector<std::string>& named);

}  // namespace kelvar_tool
