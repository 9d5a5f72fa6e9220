// The finalization step: the caller's context names the results, and the loader joins them.
#include "kelvar/SummaryDataLoader.h"

#include <iostream>
#include <string>

#include "Annotations.h"

namespace {

class FinishedCollection : public kelvar::SummaryDataLoader::IFinalizeTaskContext {
 public:
  explicit FinishedCollection(const std::string& project) {
    const auto database = kelvar_platform::openAnnotationDatabase(project + "/annotations.db");
    kelvar_platform::installDatabase(database);
    collector_.reset(new kelvar::SummaryDataLoader::DataFromResult(
        project + "/survey", "", "", project + "/dependencies", "", database, nullptr, nullptr));
  }
  boost::shared_ptr<kelvar::SummaryDataLoader::IDataFromCollector> dataFromCollector() override { return collector_; }

 private:
  boost::shared_ptr<kelvar::SummaryDataLoader::IDataFromCollector> collector_;
};

}  // namespace

int main(int, char** argv) {
  FinishedCollection context(argv[1]);
  const auto loader = kelvar::SummaryDataLoader::Create();
  loader->DoTask(&context);
  // The object is shared, and may outlive the loader.
  const boost::shared_ptr<kelvar::SummaryData> data = loader->summaryData();
  std::cout << data->num_items() << " sites, " << data->aggregateResult()->resultCount() << " results\n";
}
