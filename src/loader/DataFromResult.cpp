#include <utility>

#include "kelvar/SummaryDataLoader.h"

namespace kelvar_2_1_7 {

struct SummaryDataLoader::DataFromResult::Record {
  std::string surveyPath;
  std::string surveyVectorizationPath;
  std::string suitabilityPath;
  std::string correctnessPath;
  std::string mapPath;
  boost::shared_ptr<sitenotes::database_t> database;
};

SummaryDataLoader::DataFromResult::DataFromResult(std::string surveyPath, std::string surveyVectorizationPath,
                                                  std::string suitabilityPath, std::string correctnessPath,
                                                  std::string mapPath,
                                                  boost::shared_ptr<sitenotes::database_t> database,
                                                  courier::IMessenger*, courier::IProgress*)
    : record_(new Record{std::move(surveyPath), std::move(surveyVectorizationPath), std::move(suitabilityPath),
                         std::move(correctnessPath), std::move(mapPath), std::move(database)}) {}

SummaryDataLoader::DataFromResult::DataFromResult(std::string suitabilityPath, std::string correctnessPath,
                                                  std::string mapPath,
                                                  boost::shared_ptr<sitenotes::database_t> database,
                                                  courier::IMessenger* messenger, courier::IProgress* progress)
    : DataFromResult(std::string(), std::string(), std::move(suitabilityPath), std::move(correctnessPath),
                     std::move(mapPath), std::move(database), messenger, progress) {}

SummaryDataLoader::DataFromResult::~DataFromResult() = default;

std::string SummaryDataLoader::DataFromResult::surveyResultPath() {
  return record_->surveyPath;
}

std::string SummaryDataLoader::DataFromResult::surveyVectorizationResultPath() {
  return record_->surveyVectorizationPath;
}

std::string SummaryDataLoader::DataFromResult::suitabilityResultPath() {
  return record_->suitabilityPath;
}

std::string SummaryDataLoader::DataFromResult::correctnessResultPath() {
  return record_->correctnessPath;
}

std::string SummaryDataLoader::DataFromResult::mapResultPath() {
  return record_->mapPath;
}

boost::shared_ptr<sitenotes::database_t> SummaryDataLoader::DataFromResult::annotationDatabase() {
  return record_->database;
}

}  // namespace kelvar_2_1_7
