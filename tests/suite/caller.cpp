// A caller of an installed library that was built on the suite: annotations and a result that lie in memory.
#include <iostream>

#include "Suite.h"
#include "kelvar/SummaryData.h"

int main() {
  const auto database = suite::database("today");
  database->sites = {{1, suite::annotation("second", suite::at("/src/a.cpp", 20))},
                     {2, suite::annotation("first", suite::at("/src/a.cpp", 10))}};
  suite::current.record(database);
  suite::current.results["survey"].details = {
      std::make_shared<suite::Detail>("third", suite::at("/src/b.cpp", 5), std::vector{suite::kSurvey}, 2.5)};
  kelvar::SummaryData data(database);
  data.addSummaryData("survey", {});
  data.addSummaryData("nothing", {});
  for (int index = 0; index < data.num_items(); ++index) {
    const kelvar::SummaryItem& item = *data.item(index);
    std::cout << item.label() << ' ' << item.locator().get_file().get_leaf() << ':' << item.locator().get_line()
              << (item.surveyDetail() != nullptr ? " surveyed\n" : "\n");
  }
}
