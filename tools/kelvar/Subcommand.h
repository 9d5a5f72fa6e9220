#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace kelvar_tool {

/// What the command ends with.
enum ExitStatus : int {
  kDone = 0,
  kUnreadable = 1,  ///< something named or found could not be read or written; the rest was done
  kUsage = 2,       ///< the command line makes no sense, or asks for nothing; nothing was done
  kExhausted = 3,   ///< memory ran out, or the system failed in a way that nobody foresaw
  kStale = 4,       ///< all was read, and matches today's annotations less well than was asked for
};

/// The work that a command line asks for. Runs once the whole line was read, and answers the exit status.
using Action = std::function<ExitStatus()>;

/// Adds one subcommand, its options and their help to `kelvar`. Being named on the command line, it leaves its work in
/// `chosen`, which outlives the parsing.
using AddSubcommand = void (*)(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
