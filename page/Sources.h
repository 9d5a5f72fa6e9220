#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelvar_page {

/// Reads source files below one folder. Never opens a file outside of it, whatever names and links say.
class Sources {
 public:
  /// If `root` does not exist, no source is found.
  explicit Sources(const std::string& root);

  /// The folder as given.
  [[nodiscard]] const std::string& root() const noexcept { return root_; }

  /// The lines of a file that a row names, without line ends. Tries the path, then ever shorter tails of it, since the
  /// sources may have been elsewhere when they were analysed. Null when there is no such file or it is larger than 16
  /// MiB. Valid until forget() or the next call.
  [[nodiscard]] const std::vector<std::string>* linesOf(const std::string& file) const;
  /// Whether there is such a file. The answer is cached until forget().
  [[nodiscard]] bool has(const std::string& file) const { return !pathOf(file).empty(); }
  void forget();

 private:
  [[nodiscard]] std::string find(const std::string& file) const;
  [[nodiscard]] const std::string& pathOf(const std::string& file) const;

  std::string root_;
  std::string resolvedRoot_;                          // links resolved; empty where there is none
  mutable std::map<std::string, std::string> paths_;  // by name; empty if there is no such file
  mutable std::map<std::string, std::optional<std::vector<std::string>>> known_;
};

}  // namespace kelvar_page
