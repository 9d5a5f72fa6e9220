#include "kelvar/SummaryDataLoader.h"

#include <array>
#include <utility>

namespace kelvar_2_1_7 {

namespace {

using Collector = SummaryDataLoader::IDataFromCollector;

// The survey comes first: its path decides as of when annotations are seen.
constexpr std::array kPathsInOrder{&Collector::surveyResultPath, &Collector::surveyVectorizationResultPath,
                                   &Collector::suitabilityResultPath, &Collector::correctnessResultPath,
                                   &Collector::mapResultPath};

}  // namespace

boost::shared_ptr<SummaryDataLoader> SummaryDataLoader::Create() {
  return boost::shared_ptr<SummaryDataLoader>(new SummaryDataLoader);
}

void SummaryDataLoader::DoTask(IFinalizeTaskContext* context) {
  const boost::shared_ptr<IDataFromCollector> collector = context->dataFromCollector();
  if (!collector) return;
  const boost::shared_ptr<SummaryData> data(new SummaryData(collector->annotationDatabase()));
  summaryData_ = data;
  for (const auto path : kPathsInOrder) {
    std::string resultPath = (*collector.*path)();
    boost::shared_ptr<sitenotes::database_t> database = collector->annotationDatabase();
    data->addSummaryData(std::move(resultPath), std::move(database));
  }
}

boost::shared_ptr<SummaryData> SummaryDataLoader::summaryData() {
  return summaryData_;
}

}  // namespace kelvar_2_1_7
