#include "DryRun.h"

#include <algorithm>
#include <filesystem>

#include "Project.h"
#include "Request.h"
#include "ShellText.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;

bool hasAddresses(const Recipe& recipe) {
  const auto all = kelvar_import::sources();
  return std::any_of(all.begin(), all.end(), [&](const kelvar_import::Source& source) {
    return recipe.option == source.option && source.hasAddresses;
  });
}

/// The command that imports `files`, which are quoted for the shell already.
std::string importText(const Recipe& recipe, const Wanted& wanted, const std::string& program,
                       const std::string& files) {
  std::vector<std::string> words{"kelvar", "import", recipe.analysis, recipe.option};
  std::string text = shellText(words) + (files.empty() ? "" : " " + files);
  words.clear();
  if (recipe.option == "--model") words.insert(words.end(), {"--cores", std::to_string(wanted.cores)});
  if (hasAddresses(recipe)) {
    for (const std::string& binary : wanted.binaries) words.insert(words.end(), {"--binary", binary});
    if (recipe.isPiped && wanted.binaries.empty()) words.insert(words.end(), {"--binary", program});
  }
  if (recipe.isPiped && wanted.mapAccesses > 0) {
    words.insert(words.end(), {"--map-accesses", std::to_string(wanted.mapAccesses)});
  }
  if (!wanted.sourceRoot.empty()) {
    words.insert(words.end(), {"--source-root", normalPath(fs::absolute(wanted.sourceRoot).native())});
  }
  words.insert(words.end(), {"--into", wanted.project});
  if (wanted.run) words.insert(words.end(), {"--run", *wanted.run});
  return text + " " + shellText(words);
}

}  // namespace

std::string commandText(const std::vector<Recipe>& plan, const Wanted& wanted, const std::string& program,
                        const std::string& folder) {
  std::string text = "mkdir -p " + shellWord(folder) + "\n";
  for (const Recipe& recipe : plan) {
    if (!recipe.obstacle.empty()) continue;
    std::vector<std::string> words = recipe.tool;
    words.insert(words.end(), wanted.command.begin(), wanted.command.end());
    std::string command;
    for (const std::string& variable : recipe.environment) {
      const std::size_t value = variable.find('=') + 1;
      command += variable.substr(0, value) + shellWord(variable.substr(value)) + " ";
    }
    command += shellText(words);
    if (recipe.isPiped) {
      const std::string pipe = std::to_string(kPipe);
      text += command.append(" ").append(pipe).append(">&1 >/dev/null 2>&1 | ");
      text += importText(recipe, wanted, program, "-") + "\n";
      continue;
    }
    if (recipe.runsProgram) text += command + "\n";
    std::string files = shellText(recipe.files);
    if (!recipe.output.empty()) {
      files = shellWord(folder + "/" + recipe.output) + (recipe.output.ends_with('.') ? "*" : "");
    }
    text += importText(recipe, wanted, program, files) + "\n";
  }
  return text;
}

}  // namespace kelvar_tool
