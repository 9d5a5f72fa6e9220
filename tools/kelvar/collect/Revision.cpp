#include "Revision.h"

#include <optional>
#include <vector>

#include "Input.h"
#include "Tool.h"

namespace kelvar_tool {

namespace {

/// The output of git; nothing when git is missing or fails.
std::optional<std::string> git(const std::string& folder, const std::vector<std::string>& arguments) {
  std::vector<std::string> command{"git", "-C", folder, "-c", "core.fsmonitor=false"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  kelvar_readers::Tool tool(command);
  if (!tool.isRunning()) return std::nullopt;
  std::string text = kelvar_readers::Input(tool.output(), "git").rest();
  if (tool.wait() != 0) return std::nullopt;
  return text;
}

}  // namespace

std::string revisionOf(const std::string& folder) {
  const std::string place = folder.empty() ? "." : folder;
  const std::optional<std::string> head = git(place, {"rev-parse", "--short=12", "HEAD"});
  if (!head) return {};
  // Of the whole tree: files outside of the folder may be part of the program too.
  const std::optional<std::string> changes = git(place, {"status", "--porcelain", "--untracked-files=no"});
  if (!changes) return {};
  return head->substr(0, head->find('\n')) + (changes->empty() ? "" : "+");
}

}  // namespace kelvar_tool
