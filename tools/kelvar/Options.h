#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Subcommand.h"

namespace CLI {
class Option;
}

/// The part of the parser that subcommands use. Its own header takes longer to compile than the rest of a subcommand,
/// so only Options.cpp, CommandLine.cpp and main.cpp include it.
namespace kelvar_tool {

using TakeText = std::function<void(const std::string& text)>;

/// An option or an argument of a subcommand, which the parser owns.
class Option {
 public:
  explicit Option(CLI::Option* option) noexcept : option_(option) {}

  /// What help calls its value.
  Option& value(const std::string& name);
  Option& required();
  /// Not together with `other`.
  Option& excludes(const Option& other);
  /// Taken at each mention, so that the order across options is that of the command line.
  Option& inOrder();

 private:
  CLI::Option* option_;
};

/// How many texts follow one mention of an option.
enum class Follows { one, asManyAsThereAre };

/// A subcommand of `parent`, with one line of help.
CLI::App& addSubcommand(CLI::App& parent, const std::string& name, const std::string& help);
/// The command line must name a subcommand of `app`. `examples` end the help.
void expectSubcommand(CLI::App& app, const std::string& examples);
/// `examples` end the help. If the command line chooses the subcommand, `chosen` becomes `work`.
void setWork(CLI::App& app, const std::string& examples, Action work, Action& chosen);

/// Adds an option or, without dashes, an argument; `take` is called with its text exactly as typed. The parser's own
/// conversion would accept octal and hexadecimal numbers and ignore empty texts. A second mention is a usage error.
Option addText(CLI::App& app, const std::string& name, const std::string& help, TakeText take);

/// The same for what may be repeated: `take` is called with each text.
Option addTexts(CLI::App& app, const std::string& name, const std::string& help, Follows follows, TakeText take);

/// A path, which is stored normalised. An empty one is a usage error.
Option addPath(CLI::App& app, const std::string& name, const std::string& value, const std::string& help,
               std::string& path);

/// A switch without a value.
void addFlag(CLI::App& app, const std::string& name, bool& flag, const std::string& help);
/// One that calls `take`.
void addFlag(CLI::App& app, const std::string& name, std::function<void()> take, const std::string& help);

/// Adds `--run NAME`, stored in `run`. A text that is no valid name of a run is a usage error.
void addRun(CLI::App& app, const std::string& help, std::optional<std::string>& run);

/// Adds `--format`, text or json.
void addJson(CLI::App& app, bool& json);

}  // namespace kelvar_tool
