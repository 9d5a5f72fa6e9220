#include "Loading.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "Annotations.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "Names.h"
#include "ReadAhead.h"
#include "kelvar/SummaryDataLoader.h"

namespace kelvar_tool {

namespace {

using kelvar::SummaryDataLoader;
using kelvar_platform::Refusal;
using Database = boost::shared_ptr<sitenotes::database_t>;
using Results = kelvar_2_1_7::PerKind<std::string>;

// The suite's own collector, which also shows what is being read.
class ShowingCollector final : public SummaryDataLoader::DataFromResult {
 public:
  ShowingCollector(const Results& results, Database database, Progress& progress)
      : DataFromResult(results[digestio::kSurvey], results[digestio::kSurveyVectorization],
                       results[digestio::kSuitability], results[digestio::kCorrectness], results[digestio::kMap],
                       std::move(database), nullptr, nullptr),
        progress_(progress) {}

  std::string surveyResultPath() override { return shown(DataFromResult::surveyResultPath()); }
  std::string surveyVectorizationResultPath() override {
    return shown(DataFromResult::surveyVectorizationResultPath());
  }
  std::string suitabilityResultPath() override { return shown(DataFromResult::suitabilityResultPath()); }
  std::string correctnessResultPath() override { return shown(DataFromResult::correctnessResultPath()); }
  std::string mapResultPath() override { return shown(DataFromResult::mapResultPath()); }

 private:
  std::string shown(std::string path) {
    if (!path.empty()) progress_.show("reading " + path);
    return path;
  }

  Progress& progress_;
};

class Context final : public SummaryDataLoader::IFinalizeTaskContext {
 public:
  explicit Context(boost::shared_ptr<SummaryDataLoader::IDataFromCollector> collector)
      : collector_(std::move(collector)) {}
  boost::shared_ptr<SummaryDataLoader::IDataFromCollector> dataFromCollector() override { return collector_; }

 private:
  boost::shared_ptr<SummaryDataLoader::IDataFromCollector> collector_;
};

// As the loader asks for them.
std::vector<std::string> inOrder(const Results& results) {
  std::vector<std::string> paths;
  std::copy_if(results.begin(), results.end(), std::back_inserter(paths),
               [](const auto& path) { return !path.empty(); });
  return paths;
}

void append(std::vector<Refusal>& refusals, const Refusal& refusal) {
  if (std::find(refusals.begin(), refusals.end(), refusal) == refusals.end()) refusals.push_back(refusal);
}

Database openAnnotations(const std::string& path, std::vector<Refusal>& refusals) {
  if (path.empty()) return {};
  try {
    Database database = kelvar_platform::openAnnotationDatabase(path);
    kelvar_platform::installDatabase(database);
    return database;
  } catch (const kelvar_platform::ReadError& error) {
    append(refusals, error.refusal());
    return {};
  }
}

// A sub-result is opened through the directory around it, so that its refusal may lie there.
std::string openedDirectory(const std::string& path, digestio::SummaryDataKind kind) {
  const std::size_t slash = path.rfind('/');
  const bool around = kind == digestio::kSurveyVectorization && slash != std::string::npos;
  return around ? path.substr(0, slash) : path;
}

// Whether the refusal is of one of the two files that the result is read from.
bool concerns(const Refusal& refusal, const std::string& path, digestio::SummaryDataKind kind) {
  return refusal.file == openedDirectory(path, kind) + "/result.json" || refusal.file == path + "/collection.json";
}

// A result that was read, but as something other than what it was named as, leaves no refusal.
void refuseStrangers(const kelvar::SummaryData& data, const Results& results, std::vector<Refusal>& refusals) {
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const std::string& path = results[kind];
    if (path.empty() || data.summaryDataStatus(kind) != kelvar::kNotPresent) continue;
    const auto explains = [&](const Refusal& refusal) { return concerns(refusal, path, kind); };
    if (std::any_of(refusals.begin(), refusals.end(), explains)) continue;
    append(refusals, {.file = path, .place = "", .expected = "a result of kind " + dataKindName(kind)});
  }
}

}  // namespace

Loaded load(const Pieces& pieces) {
  Progress progress;
  std::vector<Refusal> refusals;
  const kelvar_platform::ReadAhead readAhead(inOrder(pieces.results));
  if (!pieces.annotations.empty()) progress.show("reading " + pieces.annotations);
  const Database database = openAnnotations(pieces.annotations, refusals);

  Context context(boost::shared_ptr<SummaryDataLoader::IDataFromCollector>(
      new ShowingCollector(pieces.results, database, progress)));
  const boost::shared_ptr<SummaryDataLoader> loader = SummaryDataLoader::Create();
  loader->DoTask(&context);

  Loaded loaded{.data = loader->summaryData(), .complaints = {}};
  for (const Refusal& refusal : kelvar_platform::takeRefusals()) append(refusals, refusal);
  refuseStrangers(*loaded.data, pieces.results, refusals);
  for (const Refusal& refusal : refusals) loaded.complaints.push_back(refusal.sentence());
  return loaded;
}

}  // namespace kelvar_tool
