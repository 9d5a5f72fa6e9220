/// A suite's result directories.
#pragma once

#include <toolbelt.h>

#include <cstdint>
#include <string>

namespace resdir {

class IResultDirectory {
 public:
  virtual ~IResultDirectory() = default;
  virtual const char* hostName() SUITE_CONST = 0;
  virtual const char* userName() SUITE_CONST = 0;
  virtual const char* operatingSystem(int which) SUITE_CONST = 0;
  virtual std::uint64_t collectionStartTime() SUITE_CONST = 0;
  virtual std::uint64_t collectionEndTime() SUITE_CONST = 0;
  virtual std::uint64_t finalizationStartTime() SUITE_CONST = 0;
  virtual std::uint64_t finalizationEndTime() SUITE_CONST = 0;
  virtual int cpuCount() SUITE_CONST = 0;
  virtual std::uint64_t cpuFrequency() SUITE_CONST = 0;
  virtual std::string applicationLogPath() SUITE_CONST = 0;
  virtual std::string collectorLogPath() SUITE_CONST = 0;
  virtual std::string commandLogPath() SUITE_CONST = 0;
};

class ResultDirectoryManager {
 public:
  static toolbelt::sptr_t<IResultDirectory> open(const char* path, bool, const char*);
};

}  // namespace resdir
