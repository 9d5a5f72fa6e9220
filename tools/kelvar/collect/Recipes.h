#pragma once

#include <string>
#include <vector>

#include "Machine.h"
#include "ProgramFacts.h"
#include "Wanted.h"

namespace kelvar_tool {

/// How one analysis can be made on this machine.
struct Recipe {
  std::string analysis = {};
  std::string how = {};                       ///< how it is made, as a phrase for the user
  std::string obstacle = {};                  ///< why it cannot be made, and how to change that; empty when it can
  std::string hint = {};                      ///< printed when it fails
  std::string option = {};                    ///< of `kelvar import`, for the tool's output
  std::vector<std::string> tool = {};         ///< the words before the program's command
  std::vector<std::string> environment = {};  ///< NAME=VALUE, added for the run
  bool runsProgram = false;
  bool isPiped = false;                 ///< the import reads the tool's output while it runs, through descriptor kPipe
  std::string output = {};              ///< the file in the output folder; if it ends with `.`, a prefix of several
  std::vector<std::string> files = {};  ///< input that exists without a run of the program
  std::vector<Recipe> instead = {};     ///< at most one, tried when this one fails
};

/// The descriptor of the pipe in the tool. Below those that tools use for themselves, above those that programs use.
inline constexpr int kPipe = 9;

/// What the recipes depend on.
struct Circumstances {
  const Wanted& wanted;
  const Machine& machine;
  const kelvar_readers::ProgramFacts& facts;
  bool commandIsProgram = true;  ///< false for a script
  bool startsAnother = false;    ///< the command is not `program`, but may start it
  std::string program;           ///< the file that `facts` describes
  std::string directory;         ///< of the project or the run
  std::string folder;            ///< for the tools' output, absolute
};

/// One for each requested analysis, in the order in which they are made.
[[nodiscard]] std::vector<Recipe> recipes(const Circumstances& here);

}  // namespace kelvar_tool
