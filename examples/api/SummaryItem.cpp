// For each site: where it is today, where the survey saw it, and how much time it took there.
#include "kelvar/SummaryItem.h"

#include <iostream>
#include <string>

#include "Annotations.h"
#include "kelvar/SummaryData.h"

namespace {

void print(std::ostream& out, const sitenotes::locator_t& place) {
  out << place.get_file().get_leaf() << ':' << place.get_line();
}

void print(std::ostream& out, kelvar::SummaryItem& item) {
  sitenotes::locator_t place({}, 0, 0);
  unsigned long handle = 0;
  out << item.label();
  if (item.getCurrentLocator(place, handle)) {
    out << " is at ";
    print(out, place);
  }
  if (item.getCollectionLocator(digestio::kSurvey, place, handle)) {
    out << ", was seen at ";
    print(out, place);
  }
  // A site that the survey did not report has no survey detail.
  if (const digestio::SurveyDetail* survey = item.surveyDetail()) out << ", took " << survey->cpuTime() << " s";
  if (item.summaryDataStatus(digestio::kSurvey) == kelvar::kApproximateMatchCurrent) out << ", and moved since";
  out << '\n';
}

}  // namespace

int main(int, char** argv) {
  const std::string project = argv[1];
  const auto database = kelvar_platform::openAnnotationDatabase(project + "/annotations.db");
  kelvar_platform::installDatabase(database);
  kelvar::SummaryData data(database);
  data.addSummaryData(project + "/survey", database);
  for (int index = 0; index < data.num_items(); ++index) print(std::cout, *data.item(index));
}
