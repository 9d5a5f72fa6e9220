#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Symbols.h"

namespace kelvar_readers {

/// The programs and libraries that a tool's output names. Those that the user gave are found by their file names, all
/// others at the path in the output.
class Binaries {
 public:
  /// Throws kelvar_platform::ReadError when one of the `given` cannot be read or has no line information.
  Binaries(const std::vector<std::string>& given, Frames& frames);

  /// The file that the output calls `path`, such as `/usr/bin/app` or `[vdso]`; null when it is not available.
  [[nodiscard]] Symbols* find(const std::string& path);
  /// Records the build-id of what ran as `path`. If the file there now is another build, it is not used.
  void expect(std::string_view path, std::string_view buildId);
  /// A sentence for each requested file that is another build than the one that ran.
  [[nodiscard]] const std::vector<std::string>& otherBuilds() const noexcept { return otherBuilds_; }
  /// The files that the user gave, in that order.
  [[nodiscard]] const std::vector<std::unique_ptr<Symbols>>& given() const noexcept { return given_; }
  /// For frames in files that cannot be read.
  [[nodiscard]] Frames& frames() noexcept { return frames_; }

 private:
  Symbols* open(const std::string& path);
  [[nodiscard]] bool isOtherBuild(const std::string& path, const Symbols& symbols) const;

  Frames& frames_;
  std::vector<std::string> names_;  // of given_, by index
  std::vector<std::unique_ptr<Symbols>> given_;
  std::vector<std::unique_ptr<Symbols>> found_;
  std::map<std::string, Symbols*, std::less<>> byPath_;
  std::map<std::string, std::string, std::less<>> expected_;  // build-ids by path
  std::vector<std::string> otherBuilds_;
};

}  // namespace kelvar_readers
