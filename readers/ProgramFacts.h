#pragma once

#include <set>
#include <string>

namespace kelvar_readers {

/// How a program was built, as far as it decides which tools can measure it.
struct ProgramFacts {
  bool isProgram = false;         ///< an ELF file; false for a script
  bool hasLines = false;          ///< debug information with lines, in the file or in one that it refers to
  bool hasFramePointers = false;  ///< its compilers recorded -fno-omit-frame-pointer for all units
  bool hasThreadSanitizer = false;
  bool hasProgressPoints = false;  ///< of coz
  bool hasGccOpenMp = false;       ///< linked with libgomp
  bool hasClangOpenMp = false;     ///< linked with libomp, whichever name it has
  std::set<std::string> units;     ///< the compiled sources, without folder and suffix
  std::set<std::string> folders;   ///< the folders of the sources, and those they were compiled in
};

/// All facts are false or empty for a file that cannot be read.
[[nodiscard]] ProgramFacts programFacts(const std::string& program);

}  // namespace kelvar_readers
