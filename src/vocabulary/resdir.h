/// The suite's result-directory manager: when, where and on what a result was collected. A suite that has its own
/// header of this name puts it first on the include path.
#pragma once

// In brackets: a suite's own header of this name is taken, even though ours is in this folder.
#include <toolbelt.h>

#include <cstdint>
#include <string>

namespace resdir {

/// One open result directory.
class IResultDirectory {
 public:
  virtual ~IResultDirectory() = default;

  virtual const char* hostName() = 0;            ///< null if unknown; lives as long as this object
  virtual const char* operatingSystem(int) = 0;  ///< asked with 0; null if unknown; lives as long as this object
  virtual std::uint64_t collectionStartTime() = 0;
  virtual std::uint64_t collectionEndTime() = 0;  ///< 0 if none was recorded
  virtual std::uint64_t finalizationStartTime() = 0;
  virtual std::uint64_t finalizationEndTime() = 0;  ///< 0 if none was recorded
  virtual int cpuCount() = 0;
  virtual std::uint64_t cpuFrequency() = 0;
  virtual std::string applicationLogPath() = 0;
  virtual std::string collectorLogPath() = 0;
  virtual std::string commandLogPath() = 0;
};

class ResultDirectoryManager {
 public:
  /// Opens the result directory at `path`; null when it cannot be opened. The library passes false and null.
  static toolbelt::sptr_t<IResultDirectory> open(const char* path, bool, const char*);
};

}  // namespace resdir
