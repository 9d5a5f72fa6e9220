#include "Revision.h"

#include <vector>

#include "Input.h"
#include "Tool.h"

namespace kelvar_tool {

namespace {

/// Empty where git is not there or refuses.
std::string git(const std::string& folder, const std::vector<std::string>& arguments) {
  std::vector<std::string> command{"git", "-C", folder, "-c", "core.fsmonitor=false"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  kelvar_readers::Tool tool(command);
  if (!tool.isRunning()) return {};
  const std::string text = kelvar_readers::Input(tool.output(), "git").rest();
  return tool.wait() == 0 ? text : std::string();
}

}  // namespace

std::string revisionOf(const std::string& folder) {
  const std::string text = git(folder.empty() ? "." : folder, {"rev-parse", "--short=12", "HEAD"});
  const std::string revision = text.substr(0, text.find('\n'));
  if (revision.empty()) return {};
  const std::string changes =
      git(folder.empty() ? "." : folder, {"status", "--porcelain", "--untracked-files=no", "--", "."});
  return changes.empty() ? revision : revision + "+";
}

}  // namespace kelvar_tool
