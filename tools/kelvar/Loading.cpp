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

using RefusedOfResults = kelvar_2_1_7::PerKind<std::vector<Refusal>>;

// The library's own collector, which also shows progress and files each refusal under the result that was being read:
// the loader asks for a path and then reads it.
class ShowingCollector final : public SummaryDataLoader::DataFromResult {
 public:
  ShowingCollector(const Results& results, Database database, Progress& progress)
      : DataFromResult(results[digestio::kSurvey], results[digestio::kSurveyVectorization],
                       results[digestio::kSuitability], results[digestio::kCorrectness], results[digestio::kMap],
                       std::move(database), nullptr, nullptr),
        progress_(progress) {}

  std::string surveyResultPath() override { return begin(digestio::kSurvey, DataFromResult::surveyResultPath()); }
  std::string surveyVectorizationResultPath() override {
    return begin(digestio::kSurveyVectorization, DataFromResult::surveyVectorizationResultPath());
  }
  std::string suitabilityResultPath() override {
    return begin(digestio::kSuitability, DataFromResult::suitabilityResultPath());
  }
  std::string correctnessResultPath() override {
    return begin(digestio::kCorrectness, DataFromResult::correctnessResultPath());
  }
  std::string mapResultPath() override { return begin(digestio::kMap, DataFromResult::mapResultPath()); }

  // Called after all results were read.
  [[nodiscard]] const RefusedOfResults& refused() {
    endReading();
    return refused_;
  }

 private:
  std::string begin(digestio::SummaryDataKind kind, std::string path) {
    endReading();
    reading_ = kind;
    if (!path.empty()) progress_.show("reading " + path);
    return path;
  }

  void endReading() {
    for (Refusal& refusal : kelvar_platform::takeRefusals()) refused_[reading_].push_back(std::move(refusal));
  }

  Progress& progress_;
  digestio::SummaryDataKind reading_ = digestio::kSurvey;
  RefusedOfResults refused_{};
};

class Context final : public SummaryDataLoader::IFinalizeTaskContext {
 public:
  explicit Context(boost::shared_ptr<SummaryDataLoader::IDataFromCollector> collector)
      : collector_(std::move(collector)) {}
  boost::shared_ptr<SummaryDataLoader::IDataFromCollector> dataFromCollector() override { return collector_; }

 private:
  boost::shared_ptr<SummaryDataLoader::IDataFromCollector> collector_;
};

// In the order in which the loader asks.
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

// A result of another kind than it was named as is read without a refusal.
void refuseStrangers(const kelvar::SummaryData& data, const Results& results, const RefusedOfResults& refused,
                     std::vector<Refusal>& refusals) {
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const std::string& path = results[kind];
    const bool isRead = data.summaryDataStatus(kind) != kelvar::kNotPresent;
    if (path.empty() || isRead || !refused[kind].empty()) continue;
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

  const boost::shared_ptr<ShowingCollector> collector(new ShowingCollector(pieces.results, database, progress));
  Context context(collector);
  const boost::shared_ptr<SummaryDataLoader> loader = SummaryDataLoader::Create();
  loader->DoTask(&context);

  Loaded loaded{.data = loader->summaryData(), .complaints = {}};
  for (const std::vector<Refusal>& ofResult : collector->refused()) {
    for (const Refusal& refusal : ofResult) append(refusals, refusal);
  }
  refuseStrangers(*loaded.data, pieces.results, collector->refused(), refusals);
  for (const Refusal& refusal : refusals) loaded.complaints.push_back(refusal.sentence());
  return loaded;
}

}  // namespace kelvar_tool
