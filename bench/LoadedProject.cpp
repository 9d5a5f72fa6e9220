#include "LoadedProject.h"

#include <boost/make_shared.hpp>
#include <string>

#include "Annotations.h"
#include "GeneratedProject.h"
#include "OfSize.h"
#include "Program.h"
#include "ProjectOnDisk.h"
#include "kelvar/SummaryDataLoader.h"
#include "support/Scratch.h"

namespace kelvar_bench {

namespace {

struct WrittenProject {
  explicit WrittenProject(std::size_t sites) {
    static const support::Scratch directory;
    path = directory.path(std::to_string(sites));
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
