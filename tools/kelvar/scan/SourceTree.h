#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Language.h"

namespace kelvar_tool {

/// Which source files a command line names.
struct SourceRequest {
  std::vector<std::string> sources;   ///< files and directories
  std::string sourceRoot;             ///< what names of files in the database are below; empty: the working directory
  std::vector<std::string> excluded;  ///< patterns of names that are left out
};

struct SourceFile {
  std::string path;  ///< as it is opened
  std::string name;  ///< as the database has it, where that has none yet
  std::string key;   ///< the path from the root, normal: what tells files apart
  kelvar_sources::Language language = kelvar_sources::Language::c;
};

/// The files of a request, and what is said of it.
class SourceTree {
 public:
  /// Walks the directories; `.git`, folders with a CMakeCache.txt and links within them are left out. A file that is
  /// named itself is taken whatever its ending. Throws kelvar_platform::ReadError where a source is not there.
  explicit SourceTree(SourceRequest request);

  /// By path, each once.
  [[nodiscard]] const std::vector<SourceFile>& files() const noexcept { return files_; }
  /// Directories that could not be read, a sentence each.
  [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return complaints_; }
  /// The path from the root of a name in the database.
  [[nodiscard]] std::string keyOf(const std::string& name) const;
  /// Whether a file of this key would be among the files if it were there.
  [[nodiscard]] bool covers(const std::string& key) const;

 private:
  void add(const std::string& path, bool named);
  void walk(const std::string& directory);
  [[nodiscard]] bool isExcluded(const std::string& key) const;
  [[nodiscard]] std::string nameOf(const std::string& path, const std::string& key) const;

  SourceRequest request_;
  std::string rootKey_;
  std::vector<std::string> roots_;   // keys of the sources
  std::vector<std::string> unread_;  // keys of directories that could not be read
  std::vector<SourceFile> files_;
  std::vector<std::string> complaints_;
};

}  // namespace kelvar_tool
