#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "FileDescriptor.h"

namespace kelvar_tool {

/// A process that waits for the end of this one, however that comes about. Then it kills the watched group and removes
/// the temporary folder. So nothing is left behind even after SIGKILL.
class Guard {
 public:
  /// Requires that the process has a single thread. Nothing is removed if `folder` is empty.
  explicit Guard(const std::string& folder);
  /// Returns when the folder is removed.
  ~Guard();
  Guard(const Guard&) = delete;  // owns the process
  Guard& operator=(const Guard&) = delete;

  /// The guard process.
  [[nodiscard]] pid_t process() const noexcept { return process_; }
  /// Sets the process group to kill at the end; 0: none.
  void watch(pid_t group) const noexcept;

 private:
  std::string folder_;
  kelvar_platform::FileDescriptor socket_;
  pid_t process_ = 0;
};

/// A new folder for temporary files below TMPDIR or /tmp. It is locked as long as this object lives, so that a later
/// collect can tell a folder in use from one that was left behind. The Guard removes it.
class TemporaryFolder {
 public:
  /// Throws a ReadError when the folder cannot be created.
  TemporaryFolder();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  kelvar_platform::FileDescriptor lock_;
};

/// Removes folders left by earlier collects that were killed together with their guard. Returns their paths.
std::vector<std::string> removeLeftFolders();

}  // namespace kelvar_tool
