#pragma once

#include <string>
#include <vector>

#include "Machine.h"
#include "ProgramFacts.h"
#include "Wanted.h"

namespace kelvar_tool {

/// How one analysis is made on this machine.
struct Recipe {
  std::string analysis = {};
  std::string how = {};                       ///< how it is made, for the user
  std::string obstacle = {};                  ///< why it cannot be made, and what would make it possible; empty: it can
  std::string hint = {};                      ///< said where it fails
  std::string option = {};                    ///< of the import
  std::vector<std::string> tool = {};         ///< the words in front of the program's command
  std::vector<std::string> environment = {};  ///< NAME=VALUE of the run
  bool runsProgram = false;
  bool isPiped = false;                 ///< the import reads it as it comes, from descriptor kPipe
  std::string output = {};              ///< in the folder of outputs: a file, or the beginning of the names of several
  std::vector<std::string> files = {};  ///< input that needs no run of the program
  std::vector<Recipe> instead = {};     ///< at most one, made where this one fails
};

/// The number under which a tool finds the pipe. Below those that tools take for themselves, above those of programs.
inline constexpr int kPipe = 9;

/// What decides.
struct Circumstances {
  const Wanted& wanted;
  const Machine& machine;
  const kelvar_readers::ProgramFacts& facts;
  bool commandIsProgram = true;  ///< no script
  bool startsAnother = false;    ///< the command is not the file that `facts` was read from: it may start that
  std::string program;           ///< the file that `facts` was read from
  std::string directory;         ///< of the project or the run
  std::string folder;            ///< of outputs, absolute
};

/// One for each analysis that is wanted, in the order in which they are made.
[[nodiscard]] std::vector<Recipe> recipes(const Circumstances& here);

}  // namespace kelvar_tool
