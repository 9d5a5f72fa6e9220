#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "FileDescriptor.h"

namespace kelvar_tool {

/// A process that does nothing until this one has ended, however it ended. Then it kills what is still running and
/// removes the folder of temporary files. So not even SIGKILL leaves a child.
class Guard {
 public:
  /// To be made while there is one thread. An empty `folder`: nothing is removed.
  explicit Guard(const std::string& folder);
  /// Returns when all is removed.
  ~Guard();
  Guard(const Guard&) = delete;  // owns the process
  Guard& operator=(const Guard&) = delete;

  /// The process that does it.
  [[nodiscard]] pid_t process() const noexcept { return process_; }
  /// The process group that is to end with this process; 0: none.
  void watch(pid_t group) const noexcept;

 private:
  std::string folder_;
  kelvar_platform::FileDescriptor socket_;
  pid_t process_ = 0;
};

/// A new folder for temporary files, below TMPDIR or /tmp, locked as long as this object lives: so that a later collect
/// tells one that is left from one that is in use. The Guard removes it.
class TemporaryFolder {
 public:
  /// Throws a ReadError where none can be made.
  TemporaryFolder();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  kelvar_platform::FileDescriptor lock_;
};

/// Removes the folders that collects have left whose guard was killed with them; answers their paths.
std::vector<std::string> removeLeftFolders();

}  // namespace kelvar_tool
