#include "GitRenames.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <unordered_set>
#include <utility>

#include "GitProcess.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;
using Renames = std::map<std::string, std::string>;  // new names by old ones

/// Names in a repository never begin with a slash, so a field that does is a commit.
constexpr const char* kCommitFormat = "--format=/%H";
/// Git's own default. A user's setting may be too low to find anything.
constexpr const char* kRenameLimit = "-l1000";

/// Reads `/COMMIT NUL LF FIELD NUL FIELD NUL ... /COMMIT NUL LF ...`.
class CommitFields {
 public:
  /// Returns whether the field belongs to the current commit; if not, it begins the next one.
  bool take(std::string& field) {
    if (field.starts_with('/')) {
      commit = field.substr(1);
      first_ = true;
      return false;
    }
    if (first_ && field.starts_with('\n')) field.erase(0, 1);
    first_ = false;
    return true;
  }

  std::string commit;

 private:
  bool first_ = false;
};

/// Parses records of the form `R100 NUL OLD NUL NEW NUL`; git is asked for renames only.
class RenameFields {
 public:
  void take(std::string&& field, Renames& renames) {
    if (++count_ == 2)
      old_ = std::move(field);
    else if (count_ == 3)
      renames.emplace(std::move(old_), std::move(field));
    if (count_ == 3) count_ = 0;
  }

 private:
  int count_ = 0;
  std::string old_;
};

Renames stagedRenames(const std::string& root) {
  Renames renames;
  RenameFields fields;
  static_cast<void>(runGit(root,
                           {"diff", "--cached", "-M", kRenameLimit, "-z", "--name-status", "--diff-filter=R", "HEAD"},
                           [&](std::string&& field) {
                             fields.take(std::move(field), renames);
                             return true;
                           }));
  return renames;
}

/// Calls `run` with pieces of the list that fit into a command line.
void inPieces(const Names& all, const std::function<void(const Names&)>& run) {
  constexpr std::size_t kMostBytes = 100000;
  Names piece;
  std::size_t bytes = 0;
  for (const std::string& one : all) {
    piece.push_back(one);
    bytes += one.size() + 1;
    if (bytes < kMostBytes) continue;
    run(piece);
    piece.clear();
    bytes = 0;
  }
  if (!piece.empty()) run(piece);
}

/// The newest commit that removed each file.
std::map<std::string, std::string> removals(const std::string& root, const Names& names) {
  std::map<std::string, std::string> commits;
  inPieces(names, [&](const Names& piece) {
    std::unordered_set<std::string> missing(piece.begin(), piece.end());
    Names arguments{"log", "--no-renames", "--diff-filter=D", "-z", "--name-only", kCommitFormat, "--"};
    arguments.insert(arguments.end(), piece.begin(), piece.end());
    CommitFields fields;
    static_cast<void>(runGit(root, arguments, [&](std::string&& field) {
      if (fields.take(field) && missing.erase(field) != 0) commits.emplace(std::move(field), fields.commit);
      return !missing.empty();
    }));
  });
  return commits;
}

/// The renames in each of the commits.
std::map<std::string, Renames> renamesOf(const std::string& root, const Names& commits) {
  std::map<std::string, Renames> all;
  inPieces(commits, [&](const Names& piece) {
    Names arguments{"show",       "-M", kRenameLimit, "-m", "--first-parent", "-z", "--name-status", "--diff-filter=R",
                    kCommitFormat};
    arguments.insert(arguments.end(), piece.begin(), piece.end());
    CommitFields fields;
    RenameFields entries;
    static_cast<void>(runGit(root, arguments, [&](std::string&& field) {
      if (fields.take(field)) entries.take(std::move(field), all[fields.commit]);
      return true;
    }));
  });
  return all;
}

/// The direct renames of these files, staged or committed.
Renames renamedOnce(const std::string& root, const Renames& staged, const Names& names) {
  Renames found;
  Names unstaged;
  for (const std::string& name : names) {
    const auto there = staged.find(name);
    if (there != staged.end())
      found.insert(*there);
    else
      unstaged.push_back(name);
  }
  if (unstaged.empty()) return found;
  const auto commits = removals(root, unstaged);
  std::set<std::string> distinct;
  for (const auto& [name, commit] : commits) distinct.insert(commit);
  const auto renames = renamesOf(root, Names(distinct.begin(), distinct.end()));
  for (const auto& [name, commit] : commits) {
    const auto of = renames.find(commit);
    if (of == renames.end()) continue;
    const auto there = of->second.find(name);
    if (there != of->second.end()) found.insert(*there);
  }
  return found;
}

/// The present names of missing files of a repository, followed through several renames. Names are relative to `root`.
Renames renamedIn(const std::string& root, const Names& names) {
  Renames result;
  std::map<std::string, Names> asked;  // by the name that is followed: what was asked for
  for (const std::string& name : names) asked[name].push_back(name);
  const Renames staged = stagedRenames(root);
  constexpr int kMostRenames = 16;
  for (int i = 0; i < kMostRenames && !asked.empty(); ++i) {
    Names followed;
    for (const auto& [name, origins] : asked) followed.push_back(name);
    std::map<std::string, Names> next;
    for (const auto& [from, to] : renamedOnce(root, staged, followed)) {
      std::error_code error;
      const bool there = fs::exists(fs::path(root) / to, error);
      for (const std::string& origin : asked[from]) {
        if (there)
          result.emplace(origin, to);
        else
          next[to].push_back(origin);
      }
    }
    asked = std::move(next);
  }
  return result;
}

/// The innermost git work tree around a path.
std::optional<fs::path> repositoryOf(const fs::path& path) {
  std::error_code error;
  for (fs::path folder = path.parent_path();; folder = folder.parent_path()) {
    if (fs::exists(folder / ".git", error)) return folder;
    if (!folder.has_relative_path()) return {};
  }
}

}  // namespace

std::unordered_map<std::string, std::string> renamedByGit(const std::vector<std::string>& paths) {
  struct Asked {
    std::string path;
    std::string prefix;  // the repository's folder, spelled as in `path`
  };
  std::map<std::string, std::map<std::string, Asked>> byRepository;  // then by name within it
  for (const std::string& path : paths) {
    std::error_code error;
    // Resolve links: otherwise one repository could have several paths.
    const fs::path real = fs::weakly_canonical(path, error);
    const auto root = error ? std::nullopt : repositoryOf(real);
    if (!root) continue;
    const std::string name = real.lexically_relative(*root).native();
    const std::string prefix = path.ends_with(name) ? path.substr(0, path.size() - name.size()) : root->native() + '/';
    byRepository[root->native()].emplace(name, Asked{path, prefix});
  }
  std::unordered_map<std::string, std::string> all;
  for (const auto& [root, asked] : byRepository) {
    Names names;
    for (const auto& [name, one] : asked) names.push_back(name);
    for (const auto& [name, renamed] : renamedIn(root, names)) {
      const Asked& one = asked.at(name);
      all.emplace(one.path, one.prefix + renamed);
    }
  }
  return all;
}

}  // namespace kelvar_tool
