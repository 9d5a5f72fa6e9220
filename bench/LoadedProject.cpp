#include "LoadedProject.h"

#include <unistd.h>

#include <boost/make_shared.hpp>
#include <filesystem>
#include <string>
#include <system_error>

#include "Annotations.h"
#include "GeneratedProject.h"
#include "OfSize.h"
#include "Program.h"
#include "ProjectOnDisk.h"
#include "kelvar/SummaryDataLoader.h"

namespace kelvar_bench {

namespace {

/// A temporary directory, removed with this object.
class Directory {
 public:
  Directory() : path_(std::filesystem::temp_directory_path() / ("kelvar_bench." + std::to_string(getpid()))) {}
  ~Directory() {
    std::error_code ignored;  // nowhere to report it
    std::filesystem::remove_all(path_, ignored);
  }
  Directory(const Directory&) = delete;  // it is removed once
  Directory& operator=(const Directory&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

struct WrittenProject {
  explicit WrittenProject(std::size_t sites) {
    static const Directory directory;
    path = directory.path() + '/' + std::to_string(sites);
    writeProject(GeneratedProject(sites, kSeed), path);
  }
  std::string path;
};

struct Loaded {
  explicit Loaded(std::size_t sites) : data(load(projectOnDisk(sites))) {}
  boost::shared_ptr<kelvar::SummaryData> data;
};

using Loader = kelvar::SummaryDataLoader;

struct Context final : Loader::IFinalizeTaskContext {
  boost::shared_ptr<Loader::IDataFromCollector> dataFromCollector() override { return collector; }
  boost::shared_ptr<Loader::IDataFromCollector> collector;
};

}  // namespace

const std::string& projectOnDisk(std::size_t sites) {
  return ofSize<WrittenProject>(sites).path;
}

std::string collectionFile(std::size_t sites, digestio::SummaryDataKind kind) {
  return projectOnDisk(sites) + '/' + resultPath(kind) + "/collection.json";
}

boost::shared_ptr<kelvar::SummaryData> load(const std::string& project) {
  const auto database = kelvar_platform::openAnnotationDatabase(project + "/annotations.db");
  kelvar_platform::installDatabase(database);
  const auto path = [&](digestio::SummaryDataKind kind) { return project + '/' + resultPath(kind); };
  Context context;
  context.collector = boost::make_shared<Loader::DataFromResult>(
      path(digestio::kSurvey), path(digestio::kSurveyVectorization), path(digestio::kSuitability),
      path(digestio::kCorrectness), path(digestio::kMap), database, nullptr, nullptr);
  const boost::shared_ptr<Loader> loader = Loader::Create();
  loader->DoTask(&context);
  return loader->summaryData();
}

kelvar::SummaryData& loaded(std::size_t sites) {
  return *ofSize<Loaded>(sites).data;
}

}  // namespace kelvar_bench
