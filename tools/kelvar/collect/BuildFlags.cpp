#include "BuildFlags.h"

#include "Messages.h"

namespace kelvar_tool {

std::string buildFlags(const std::string& compiler) {
  if (compiler != "gcc" && compiler != "clang") {
    throw UsageError("--flags: expected gcc or clang, not " + inQuotes(compiler));
  }
  // Clang records none of its options by itself, and the frame pointers are only used where they are recorded. Of what
  // it writes as DWARF 5, valgrind gives up on some.
  const std::string record = compiler == "clang" ? " -gdwarf-4 -grecord-command-line" : "";
  return "# one build for survey, vectorization, map and suitability, beside the project's own optimisation:\n"
         "-g" +
         record +
         " -fno-omit-frame-pointer -fsave-optimization-record\n"
         "# another for dependencies, also to be linked with -fsanitize=thread; without it, valgrind checks the "
         "first:\n"
         "-g -O1 -fsanitize=thread\n";
}

}  // namespace kelvar_tool
