#pragma once

#include <string>
#include <vector>

#include "ProgramFacts.h"

namespace kelvar_tool {

/// The compilers' optimisation remarks of a program.
struct RemarkFiles {
  std::vector<std::string> files;  ///< all of one compiler, sorted
  std::string option;              ///< the option of `kelvar import` that reads them
  std::vector<std::string> left;   ///< a phrase for each file that is left out
};

/// Looks in `named`, files and folders. If that is empty, looks for files of the program's units beside the program and
/// where it was compiled. A file that is newer than the program, or older than the object file beside it, belongs to
/// another build and is left out. Throws a ReadError when a named file does not exist.
[[nodiscard]] RemarkFiles remarkFiles(const std::string& program, const kelvar_readers::ProgramFacts& facts,
                                      const std::vector<std::string>& named);

}  // namespace kelvar_tool
