#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace kelvar_tool {

/// The exit status.
enum ExitStatus : int {
  kDone = 0,
  kUnreadable = 1,  ///< something named or found could not be read or written; the rest was done
  kUsage = 2,       ///< a fault in the command line; nothing was done
  kExhausted = 3,   ///< out of memory, or an unexpected system error
  kStale = 4,       ///< everything was read, but matches less well than --fail-on allows
};

/// The work of a subcommand. Runs after the whole command line was parsed, and returns the exit status.
using Action = std::function<ExitStatus()>;

/// Adds one subcommand, its options and their help to `kelvar`. If it is on the command line, it stores its work in
/// `chosen`, which outlives the parsing.
using AddSubcommand = void (*)(CLI::App& kelvar, Action& chosen);

}  // namespace kelvar_tool
