#pragma once

#include <filesystem>

namespace kelvar_platform {

/// A result directory that is being written: under a hidden name beside its final one, until it is installed. If it is
/// not installed, the destructor removes it. Every operation throws a ReadError if the file system refuses.
class StagedDirectory {
 public:
  /// Creates missing parent folders of `target`. Refuses a `target` that exists and is not a result directory.
  explicit StagedDirectory(const std::filesystem::path& target);
  ~StagedDirectory();
  StagedDirectory(const StagedDirectory&) = delete;  // owns the folder
  StagedDirectory& operator=(const StagedDirectory&) = delete;

  /// Where to write.
  [[nodiscard]] const std::filesystem::path& path() const noexcept { return staged_; }
  /// The final path.
  [[nodiscard]] const std::filesystem::path& target() const noexcept { return target_; }
  /// Moves the folder to its final path: atomically if the file system can exchange two names, else with a short gap.
  void install();

 private:
  void exchange() const;

  std::filesystem::path target_;
  std::filesystem::path staged_;
};

/// Creates a folder and its parents. Throws a ReadError if that fails.
void makeDirectories(const std::filesystem::path& directory);
/// Renames a file over another. If that fails, removes `from` and throws a ReadError.
void moveInto(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kelvar_platform
