// The runs: first the aggregate, which answers the values on which its results agree, then each result.
#include "kelvar/SummaryResult.h"

#include <iostream>
#include <string>

#include "kelvar/SummaryData.h"

namespace {

void print(std::ostream& out, const kelvar::SummaryResult& result) {
  const std::string host = result.hostName();
  out << (host.empty() ? "unknown host" : host) << ", " << result.cpuCount() << " processors, "
      << result.collectionDuration() << " s\n";
}

}  // namespace

int main(int, char** argv) {
  const std::string project = argv[1];
  kelvar::SummaryData data(boost::shared_ptr<sitenotes::database_t>{});  // results alone, no annotations
  for (const char* directory : {"/survey", "/dependencies"}) data.addSummaryData(project + directory, {});

  const kelvar::SummaryResult& all = *data.aggregateResult();
  std::cout << "all agree on ";  // 0 and an empty text say that they do not
  print(std::cout, all);
  for (int index = 0; index < all.resultCount(); ++index) print(std::cout, *all.result(index));
}
