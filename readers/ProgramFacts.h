#pragma once

#include <set>
#include <string>

namespace kelvar_readers {

/// What a program tells of how it was built, as far as it decides how it can be measured.
struct ProgramFacts {
  bool isProgram = false;         ///< an ELF file; false for a script
  bool hasLines = false;          ///< debug information, in it or in a file that it leads to
  bool hasFramePointers = false;  ///< its compilers recorded -fno-omit-frame-pointer for all units
  bool hasThreadSanitizer = false;
  bool hasProgressPoints = false;  ///< of coz
  bool hasGccOpenMp = false;       ///< linked with libgomp
  bool hasClangOpenMp = false;     ///< linked with libomp, whichever name it has
  std::set<std::string> units;     ///< the sources that were compiled, without folder and suffix
  std::set<std::string> folders;   ///< where they lay and were compiled
};

/// Nothing is known of a file that cannot be read.
[[nodiscard]] ProgramFacts programFacts(const std::string& program);

}  // namespace kelvar_readers
