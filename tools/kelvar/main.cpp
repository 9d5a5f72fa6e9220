#include <exception>
#include <new>
#include <string>
#include <vector>

#include "Annotate.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "Names.h"
#include "Output.h"
#include "Report.h"
#include "Subcommand.h"

namespace kelvar_tool {

namespace {

constexpr AddSubcommand kSubcommands[] = {addReport, addAnnotate};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar report --verbose my-project\n"
    "  kelvar annotate my-project/annotations.db add --kind parallel --label solver --at src/solver.cpp:120\n"
    "  kelvar report --help    says more of report; so with every subcommand";

// An argument `--name=` carries an empty text, which the parser would take for none, and take the next argument.
std::vector<std::string> argumentsForParser(int count, char** arguments) {
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

// The parser reports first what is missing. What it did not know is more often why.
std::string complaint(const CLI::App& kelvar, const CLI::ParseError& error) {
  const std::string leftovers = complaintOfLeftovers(kelvar);
  return leftovers.empty() ? error.what() : leftovers;
}

ExitStatus refuse(const CLI::App& app, const std::string& sentence) {
  say(sentence);
  say("try '" + fullName(app) + " --help'");
  return kUsage;
}

ExitStatus run(CLI::App& kelvar, int count, char** arguments) {
  Action chosen;
  for (const AddSubcommand add : kSubcommands) add(kelvar, chosen);
  try {
    kelvar.parse(argumentsForParser(count, arguments));
    return chosen();
  } catch (const CLI::CallForHelp&) {
    print(helpOf(innermost(kelvar)));
    return kDone;
  } catch (const CLI::CallForVersion&) {
    print("kelvar " KELVAR_VERSION "\n");
    return kDone;
  } catch (const CLI::ParseError& error) {
    return refuse(innermost(kelvar), complaint(kelvar, error));
  } catch (const UsageError& error) {
    return refuse(innermost(kelvar), error.what());
  }
}

ExitStatus run(int count, char** arguments) {
  CLI::App kelvar("Reports what analyses say of a program's source sites, and keeps the annotations of those.");
  kelvar.name("kelvar");
  kelvar.require_subcommand(1);
  kelvar.set_version_flag("--version", KELVAR_VERSION, "Print the version and exit");
  kelvar.set_help_flag("-h,--help", "Print this help and exit");
  kelvar.footer(kExamples);
  return run(kelvar, count, arguments);
}

}  // namespace

}  // namespace kelvar_tool

int main(int count, char** arguments) {
  using namespace kelvar_tool;
  holdStandardDescriptors();
  try {
    return run(count, arguments);
  } catch (const kelvar_platform::ReadError& error) {
    say(error.what());
    return kUnreadable;
  } catch (const OutputError& error) {
    say(error.what());
    return kUnreadable;
  } catch (const std::bad_alloc&) {
    say("out of memory");
  } catch (const std::exception& error) {
    say(error.what());
  }
  return kExhausted;
}
