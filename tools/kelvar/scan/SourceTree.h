#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Language.h"

namespace kelvar_tool {

/// The source files on a command line.
struct SourceRequest {
  std::vector<std::string> sources;   ///< files and directories
  std::string sourceRoot;             ///< file names in the database are relative to it; empty: the working directory
  std::vector<std::string> excluded;  ///< glob patterns of names to leave out
};

struct SourceFile {
  std::string path;  ///< as it is opened
  std::string name;  ///< the name for the database, if the file is new there
  std::string key;   ///< the absolute normal path, which identifies the file
  kelvar_sources::Language language = kelvar_sources::Language::c;
};

/// The files of a request.
class SourceTree {
 public:
  /// Walks the directories, except for `.git`, folders with a CMakeCache.txt, and symbolic links. A file that is named
  /// itself is taken whatever its suffix. Throws kelvar_platform::ReadError when a source does not exist.
  explicit SourceTree(SourceRequest request);

  /// By path, each once.
  [[nodiscard]] const std::vector<SourceFile>& files() const noexcept { return files_; }
  /// A sentence for each directory that could not be read.
  [[nodiscard]] const std::vector<std::string>& complaints() const noexcept { return complaints_; }
  /// The key of a file name in the database.
  [[nodiscard]] std::string keyOf(const std::string& name) const;
  /// Whether a file with this key would be among the files if it existed.
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
