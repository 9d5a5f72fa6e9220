#pragma once

#include <filesystem>

namespace kelvar_platform {

/// A result directory in the making: beside its place, under a hidden name, until it is installed. What is not
/// installed goes with this object. Every operation throws a ReadError where the disk refuses.
class StagedDirectory {
 public:
  /// Makes the folders above `target` as well. Refuses a place where something else than a result directory stands.
  explicit StagedDirectory(const std::filesystem::path& target);
  ~StagedDirectory();
  StagedDirectory(const StagedDirectory&) = delete;  // owns what is on the disk
  StagedDirectory& operator=(const StagedDirectory&) = delete;

  /// Where to write.
  [[nodiscard]] const std::filesystem::path& path() const noexcept { return staged_; }
  /// Where it is going to stand.
  [[nodiscard]] const std::filesystem::path& target() const noexcept { return target_; }
  /// Takes the place: in one step where the file system can exchange two names, else with a moment between.
  void install();

 private:
  void exchange() const;

  std::filesystem::path target_;
  std::filesystem::path staged_;
};

/// Makes a folder and those above it. Throws a ReadError where that fails.
void makeDirectories(const std::filesystem::path& directory);
/// Renames a file over another. Throws a ReadError where that fails, and removes `from` then.
void moveInto(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kelvar_platform
