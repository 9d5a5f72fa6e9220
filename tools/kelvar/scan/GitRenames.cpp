#include "GitRenames.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <vector>

#include "FileDescriptor.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

/// Standard output of git; nothing where it did not run, or failed. Its complaints are nobody's: it is asked on the off
/// chance.
std::optional<std::string> git(const std::string& directory, const std::vector<std::string>& arguments) {
  std::vector<std::string> all{"git", "-C", directory, "-c", "core.fsmonitor=false"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(all.size() + 1);
  for (std::string& one : all) pointers.push_back(one.data());
  pointers.push_back(nullptr);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  const FileDescriptor out(ends[0]);
  FileDescriptor in(ends[1]);
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return {};
  ::posix_spawn_file_actions_adddup2(&actions, in.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  pid_t child = 0;
  const bool started = ::posix_spawnp(&child, "git", &actions, nullptr, pointers.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  if (!started) return {};
  in = FileDescriptor();
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = ::read(out.get(), buffer.data(), buffer.size())) != 0;) {
    if (got < 0 && errno != EINTR) break;
    if (got > 0) text.append(buffer.data(), static_cast<std::size_t>(got));
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return {};
  return text;
}

std::string firstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

/// In `R100 NUL OLD NUL NEW NUL ...`, the new name of `old`; empty where there is none.
std::string renamedIn(const std::string& listing, const std::string& old) {
  std::vector<std::string> fields;
  for (std::size_t at = 0; at < listing.size();) {
    const std::size_t end = std::min(listing.find('\0', at), listing.size());
    fields.push_back(listing.substr(at, end - at));
    at = end + 1;
  }
  for (std::size_t i = 0; i + 2 < fields.size(); ++i) {
    if (fields[i].starts_with('R') && fields[i + 1] == old) return fields[i + 2];
  }
  return {};
}

std::string renamedOnce(const std::string& root, const std::string& name) {
  const auto staged = git(root, {"diff", "--cached", "-M", "-z", "--name-status", "--diff-filter=R", "HEAD"});
  if (staged) {
    if (std::string found = renamedIn(*staged, name); !found.empty()) return found;
  }
  const auto commit = git(root, {"log", "-1", "--diff-filter=D", "--no-renames", "--format=%H", "--", name});
  if (!commit || firstLine(*commit).empty()) return {};
  const auto changes = git(root, {"show", "-M", "-m", "--first-parent", "-z", "--name-status", "--diff-filter=R",
                                  "--format=", firstLine(*commit)});
  return changes ? renamedIn(*changes, name) : std::string();
}

}  // namespace

std::optional<std::string> renamedByGit(const std::string& path) {
  namespace fs = std::filesystem;
  fs::path directory = fs::path(path).parent_path();
  std::error_code error;
  while (!fs::is_directory(directory, error) && directory.has_relative_path()) directory = directory.parent_path();
  const auto top = git(directory.native(), {"rev-parse", "--show-toplevel"});
  if (!top) return {};
  const std::string root = firstLine(*top);
  // Links on the way to the repository would make another path of it.
  const fs::path real = fs::weakly_canonical(path, error);
  if (error) return {};
  std::string name = real.lexically_relative(root).native();
  constexpr int kMostRenames = 16;
  for (int i = 0; i < kMostRenames && !name.empty(); ++i) {
    name = renamedOnce(root, name);
    const fs::path found = fs::path(root) / name;
    if (name.empty() || !fs::exists(found, error)) continue;
    // As it was asked for: below the same spelling of the repository's folder.
    const std::string below = real.lexically_relative(root).native();
    const std::string asked = path.ends_with(below) ? path.substr(0, path.size() - below.size()) : root + '/';
    return asked + name;
  }
  return {};
}

}  // namespace kelvar_tool
