#include <boost/make_shared.hpp>
#include <utility>

#include "Diagnosis.h"
#include "RunFile.h"
#include "resdir.h"

namespace kelvar_platform {

namespace {

const char* textOrNull(const std::optional<std::string>& text) noexcept {
  return text ? text->c_str() : nullptr;
}

class ResultDirectory final : public resdir::IResultDirectory {
 public:
  /// Throws a ReadError when the directory's result.json is invalid.
  explicit ResultDirectory(const std::string& path) : path_(path), run_(readRunFile(path + "/result.json")) {}

  const char* hostName() override { return textOrNull(run_.hostName); }
  const char* operatingSystem(int) override { return textOrNull(run_.operatingSystem); }
  std::uint64_t collectionStartTime() override { return run_.collectionStartTime; }
  std::uint64_t collectionEndTime() override { return run_.collectionEndTime; }
  std::uint64_t finalizationStartTime() override { return run_.finalizationStartTime; }
  std::uint64_t finalizationEndTime() override { return run_.finalizationEndTime; }
  int cpuCount() override { return run_.cpuCount; }
  std::uint64_t cpuFrequency() override { return run_.cpuFrequency; }
  std::string applicationLogPath() override { return logPath(run_.applicationLog); }
  std::string collectorLogPath() override { return logPath(run_.collectorLog); }
  std::string commandLogPath() override { return logPath(run_.commandLog); }

 private:
  [[nodiscard]] std::string logPath(const std::string& log) const {
    return log.starts_with('/') ? log : path_ + '/' + log;
  }

  std::string path_;  ///< as it was opened
  RunRecord run_;
};

}  // namespace

}  // namespace kelvar_platform

toolbelt::sptr_t<resdir::IResultDirectory> resdir::ResultDirectoryManager::open(const char* path, bool, const char*) {
  if (path == nullptr) return {};
  try {
    return boost::make_shared<kelvar_platform::ResultDirectory>(path);
  } catch (const kelvar_platform::ReadError& error) {
    kelvar_platform::note(error.refusal());
    return {};
  }
}
