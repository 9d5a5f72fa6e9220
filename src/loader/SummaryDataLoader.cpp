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
  summaryData_.reset(new SummaryData(collector->annotationDatabase()));
  for (const auto path : kPathsInOrder) {
    std::string resultPath = (*collector.*path)();
    summaryData_->addSummaryData(std::move(resultPath), collector->annotationDatabase());
  }
}

boost::shared_ptr<SummaryData> SummaryDataLoader::summaryData() {
  return summaryData_;
}

}  // namespace kelvar_2_1_7
