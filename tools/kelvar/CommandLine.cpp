#include "CommandLine.h"

#include <algorithm>
#include <utility>

#include "Messages.h"
#include "Names.h"

namespace kelvar_tool {

namespace {

std::vector<std::string> optionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

std::vector<std::string> subcommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const subcommand : app.get_subcommands(nullptr)) names.push_back(subcommand->get_name());
  return names;
}

std::string unknownOption(const CLI::App& app, const std::string& name) {
  return "unknown option " + inQuotes(name) + proposal(name, optionNames(app));
}

bool isOptionOf(const CLI::App& app, const std::string& name) {
  return app.get_option_no_throw(name) != nullptr;
}

// The arguments that the parser did not use, down to the innermost subcommand.
std::string complaintOfLeftovers(const CLI::App& app) {
  const std::vector<std::string> unknown = app.remaining();
  for (const std::string& argument : unknown) {
    const std::string name = argument.substr(0, argument.find('='));
    // A known option is left over only behind `--`, as a plain argument.
    if (name.starts_with('-') && name != "--" && !isOptionOf(app, name)) return unknownOption(app, name);
  }
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  if (!chosen.empty()) return complaintOfLeftovers(*chosen.front());
  if (unknown.empty()) return {};
  const auto argument =
      std::find_if(unknown.begin(), unknown.end(), [](const std::string& text) { return text != "--"; });
  const std::vector<std::string> subcommands = subcommandNames(app);
  if (subcommands.empty()) return "unexpected argument " + inQuotes(argument != unknown.end() ? *argument : "--");
  return "unknown subcommand " + inQuotes(unknown.front()) + proposal(unknown.front(), subcommands);
}

// Whether the parser takes the next argument as the value of this one, whatever it looks like. An option name has a
// value in all subcommands or in none, so the subcommand does not matter.
bool takesNext(const CLI::App& app, const std::string& argument) {
  if (!argument.starts_with('-')) return false;
  if (const CLI::Option* const option = app.get_option_no_throw(argument)) return option->get_items_expected_min() > 0;
  const std::vector<const CLI::App*> subcommands = app.get_subcommands(nullptr);
  return std::any_of(subcommands.begin(), subcommands.end(),
                     [&](const CLI::App* subcommand) { return takesNext(*subcommand, argument); });
}

// `--name=`: an option with an empty value.
bool carriesEmptyText(const std::string& argument) {
  return argument.starts_with("--") && argument.find('=') == argument.size() - 1;
}

}  // namespace

std::vector<std::string> forParser(const CLI::App& kelvar, int count, char** arguments) {
  std::vector<std::string> forward;
  bool options = true;
  bool isValue = false;
  for (int index = 1; index < count; ++index) {
    std::string argument = arguments[index];
    options = options && (isValue || argument != "--");
    const bool empty = options && !isValue && carriesEmptyText(argument);
    if (empty) argument.pop_back();
    isValue = options && !isValue && !empty && takesNext(kelvar, argument);
    forward.push_back(std::move(argument));
    if (empty) forward.emplace_back();
  }
  return {forward.rbegin(), forward.rend()};  // the parser reads from the back
}

const CLI::App& innermost(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : innermost(*chosen.front());
}

namespace {

/// The words on the command line before the subcommand's name.
std::string wordsBefore(const CLI::App& app) {
  const CLI::App* const parent = app.get_parent();
  if (parent == nullptr) return {};
  std::string words = fullName(*parent);
  const auto isPositional = [](const CLI::Option* option) { return option->get_positional(); };
  for (const CLI::Option* const option : parent->get_options(isPositional)) words += " " + option->get_single_name();
  return words;
}

}  // namespace

std::string fullName(const CLI::App& app) {
  const std::string before = wordsBefore(app);
  return before.empty() ? app.get_name() : before + " " + app.get_name();
}

std::string helpOf(const CLI::App& app) {
  return app.help(wordsBefore(app));
}

std::string complaint(const CLI::App& kelvar, const CLI::ParseError& error) {
  const std::string leftovers = complaintOfLeftovers(kelvar);
  return leftovers.empty() ? escaped(error.what()) : leftovers;
}

}  // namespace kelvar_tool
