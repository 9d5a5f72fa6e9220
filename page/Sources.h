#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelvar_page {

/// The sources that rows name, below one folder. Nothing outside of it is opened, wherever a name or a link leads.
class Sources {
 public:
  /// `root` need not be there; then no source is.
  explicit Sources(const std::string& root);

  /// The folder, as it was given.
  [[nodiscard]] const std::string& root() const noexcept { return root_; }

  /// The lines of the file that a row names, without their ends. Looked for as it is named, then by ever shorter ends
  /// of its path, since sources may lie elsewhere than where they were analysed. Nothing where there is none below the
  /// root, where it is larger than 16 MiB, or where it is no file. Kept until forget().
  [[nodiscard]] const std::vector<std::string>* linesOf(const std::string& file) const;
  /// Whether there is such a file. Costs a look at the disk once for each name.
  [[nodiscard]] bool has(const std::string& file) const { return !pathOf(file).empty(); }
  void forget();

 private:
  [[nodiscard]] std::string find(const std::string& file) const;
  [[nodiscard]] const std::string& pathOf(const std::string& file) const;

  std::string root_;
  std::string resolvedRoot_;                          // links resolved; empty where there is none
  mutable std::map<std::string, std::string> paths_;  // by name; empty for what is not there
  mutable std::map<std::string, std::optional<std::vector<std::string>>> known_;
};

}  // namespace kelvar_page
