#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>

#include "courier.h"
#include "kelvar/SummaryData.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The step that ends a collection: builds a SummaryData from the results that a collector names, and keeps it.
class KELVAR_EXPORT SummaryDataLoader {
 public:
  /// Where results and annotations are to be found. A path that is empty, or has nothing behind it, adds nothing.
  class KELVAR_EXPORT IDataFromCollector {
   public:
    virtual std::string surveyResultPath() = 0;
    virtual std::string surveyVectorizationResultPath() = 0;
    virtual std::string suitabilityResultPath() = 0;
    virtual std::string correctnessResultPath() = 0;
    virtual std::string mapResultPath() = 0;
    virtual boost::shared_ptr<sitenotes::database_t> annotationDatabase() = 0;
    virtual ~IDataFromCollector() = default;
  };

  /// What the caller runs the step in. More operations may follow in the caller's own class.
  class KELVAR_EXPORT IFinalizeTaskContext {
   public:
    /// Empty when there is nothing to load.
    virtual boost::shared_ptr<IDataFromCollector> dataFromCollector() = 0;

   protected:
    ~IFinalizeTaskContext() = default;
  };

  /// A collector that answers what it was given.
  class KELVAR_EXPORT DataFromResult : public IDataFromCollector {
   public:
    /// `messenger` and `progress` are not used and may be null.
    DataFromResult(std::string surveyPath, std::string surveyVectorizationPath, std::string suitabilityPath,
                   std::string correctnessPath, std::string mapPath, boost::shared_ptr<sitenotes::database_t> database,
                   courier::IMessenger* messenger, courier::IProgress* progress);
    /// For a program without survey data.
    DataFromResult(std::string suitabilityPath, std::string correctnessPath, std::string mapPath,
                   boost::shared_ptr<sitenotes::database_t> database, courier::IMessenger* messenger,
                   courier::IProgress* progress);
    ~DataFromResult() override;
    DataFromResult(const DataFromResult&) = delete;
    DataFromResult& operator=(const DataFromResult&) = delete;

    std::string surveyResultPath() override;
    std::string surveyVectorizationResultPath() override;
    std::string suitabilityResultPath() override;
    std::string correctnessResultPath() override;
    std::string mapResultPath() override;
    boost::shared_ptr<sitenotes::database_t> annotationDatabase() override;

   private:
    struct Record;
    std::unique_ptr<Record> record_;
  };

  [[nodiscard]] static boost::shared_ptr<SummaryDataLoader> Create();

  /// Builds a new SummaryData from the annotations that the context's collector names, keeps it in place of the one
  /// before, and adds the five results: survey, survey vectorization, suitability, correctness, MAP. Without a
  /// collector nothing changes. Exceptions pass through; an object that was built is kept with the results added.
  void DoTask(IFinalizeTaskContext* context);

  /// What the last DoTask built; empty before. Holders keep it alive.
  [[nodiscard]] boost::shared_ptr<SummaryData> summaryData();

 private:
  boost::shared_ptr<SummaryData> summaryData_;
};

}  // namespace kelvar_2_1_7
