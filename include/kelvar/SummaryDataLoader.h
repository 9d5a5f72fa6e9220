#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>

#include "courier.h"
#include "kelvar/SummaryData.h"
#include "kelvar/SummaryTypes.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The finalization step of a collection: builds a SummaryData from the results that a collector names, and keeps it.
class KELVAR_EXPORT SummaryDataLoader {
 public:
  /// Where the results and the annotations are. A path that is empty or has no readable result adds nothing.
  class KELVAR_EXPORT IDataFromCollector {
   public:
    virtual std::string surveyResultPath() = 0;
    virtual std::string surveyVectorizationResultPath() = 0;
    virtual std::string suitabilityResultPath() = 0;
    virtual std::string correctnessResultPath() = 0;
    virtual std::string mapResultPath() = 0;
    /// Called once for the SummaryData, which is built on this first answer, and once more for each result, where the
    /// answer is ignored. May be empty.
    virtual boost::shared_ptr<sitenotes::database_t> annotationDatabase() = 0;
    virtual ~IDataFromCollector() = default;
  };

  /// What the caller runs the step with. The caller's class may have more operations after this one.
  class KELVAR_EXPORT IFinalizeTaskContext {
   public:
    /// Empty if there is nothing to load.
    virtual boost::shared_ptr<IDataFromCollector> dataFromCollector() = 0;

   protected:
    ~IFinalizeTaskContext() = default;
  };

  /// A collector that returns what it was constructed with.
  class KELVAR_EXPORT DataFromResult : public IDataFromCollector {
   public:
    /// `messenger` and `progress` are not used and may be null.
    DataFromResult(std::string surveyPath, std::string surveyVectorizationPath, std::string suitabilityPath,
                   std::string correctnessPath, std::string mapPath, boost::shared_ptr<sitenotes::database_t> database,
                   courier::IMessenger* messenger, courier::IProgress* progress);
    /// For a program without survey data: both survey paths are empty.
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

  /// Builds a new SummaryData on the collector's database, keeps it in place of the earlier one, and adds the five
  /// results: survey, survey vectorization, suitability, correctness, MAP. Without a collector nothing changes.
  /// `context` must not be null. Exceptions pass through: if the collector or the construction throws, the earlier
  /// object stays; if adding a result throws, the new object stays, with the results before it.
  void DoTask(IFinalizeTaskContext* context);

  /// The object that the last DoTask built; empty before the first. Shared with the loader.
  [[nodiscard]] boost::shared_ptr<SummaryData> summaryData();

 private:
  boost::shared_ptr<SummaryData> summaryData_;
};

}  // namespace kelvar_2_1_7
