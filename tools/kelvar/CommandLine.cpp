#include "CommandLine.h"

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

// What the parser left over on its way to the innermost subcommand; empty where it used all it was given.
std::string complaintOfLeftovers(const CLI::App& app) {
  const std::vector<std::string> unknown = app.remaining();
  for (const std::string& argument : unknown) {
    const std::string name = argument.substr(0, argument.find('='));
    if (name.starts_with('-') && name != "--") return unknownOption(app, name);
  }
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  if (!chosen.empty()) return complaintOfLeftovers(*chosen.front());
  if (unknown.empty()) return {};
  const std::vector<std::string> subcommands = subcommandNames(app);
  if (subcommands.empty()) return "unexpected argument " + inQuotes(unknown.front());
  return "unknown subcommand " + inQuotes(unknown.front()) + proposal(unknown.front(), subcommands);
}

}  // namespace

std::vector<std::string> forParser(int count, char** arguments) {
  std::vector<std::string> forward;
  bool options = true;
  for (int index = 1; index < count; ++index) {
    std::string argument = arguments[index];
    options = options && argument != "--";
    const bool empty = options && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
    if (empty) argument.pop_back();
    forward.push_back(std::move(argument));
    if (empty) forward.emplace_back();
  }
  return {forward.rbegin(), forward.rend()};  // the parser reads from the back
}

const CLI::App& innermost(const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  return chosen.empty() ? app : innermost(*chosen.front());
}

std::string fullName(const CLI::App& app) {
  return app.get_parent() ? fullName(*app.get_parent()) + " " + app.get_name() : app.get_name();
}

std::string helpOf(const CLI::App& app) {
  return app.help(app.get_parent() ? fullName(*app.get_parent()) : std::string());
}

std::string complaint(const CLI::App& kelvar, const CLI::ParseError& error) {
  const std::string leftovers = complaintOfLeftovers(kelvar);
  return leftovers.empty() ? escaped(error.what()) : leftovers;
}

}  // namespace kelvar_tool
