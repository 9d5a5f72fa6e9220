#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Symbols.h"

namespace kelvar_readers {

/// The programs and libraries that a source names: those that the user gave, found by their names, and else those that
/// lie where the source says.
class Binaries {
 public:
  /// Throws kelvar_platform::ReadError where one of the `given` cannot be read or has no lines.
  Binaries(const std::vector<std::string>& given, Frames& frames);

  /// The file that the source calls `path`, such as `/usr/bin/app` or `[vdso]`; null where it is not to be had.
  [[nodiscard]] Symbols* find(const std::string& path);
  /// What ran as `path` had this build-id. A file of another build that lies there now is not used.
  void expect(std::string_view path, std::string_view buildId);
  /// A sentence for each file that was asked for, and is of another build than the one that ran.
  [[nodiscard]] const std::vector<std::string>& otherBuilds() const noexcept { return otherBuilds_; }
  /// Those that the user gave, in that order.
  [[nodiscard]] const std::vector<std::unique_ptr<Symbols>>& given() const noexcept { return given_; }
  /// For addresses of no file that can be read.
  [[nodiscard]] Frames& frames() noexcept { return frames_; }

 private:
  Symbols* open(const std::string& path);
  [[nodiscard]] bool isOtherBuild(const std::string& path, const Symbols& symbols) const;

  Frames& frames_;
  std::vector<std::string> names_;  // of the given ones
  std::vector<std::unique_ptr<Symbols>> given_;
  std::vector<std::unique_ptr<Symbols>> found_;
  std::map<std::string, Symbols*, std::less<>> byPath_;
  std::map<std::string, std::string, std::less<>> expected_;  // build-ids by path
  std::vector<std::string> otherBuilds_;
};

}  // namespace kelvar_readers
