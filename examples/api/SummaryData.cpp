#include "kelvar/SummaryData.h"

#include <iostream>
#include <string>

#include "Annotations.h"

int main(int, char** argv) {
  const std::string project = argv[1];
  const auto database = kelvar_platform::openAnnotationDatabase(project + "/annotations.db");
  kelvar_platform::installDatabase(database);  // results find the states they were collected on through the scanner
  kelvar::SummaryData data(database);
  data.addSummaryData(project + "/survey", database);
  data.setMapping(kelvar::kSortSurveyCpuTime, false);
  for (int index = 0; index < data.num_items(); ++index) std::cout << data.item(index)->label() << '\n';
}
