#include "items/ResultSites.h"
#include "items/SummaryItems.h"
#include "support/Rows.h"

namespace support {

std::string rows(const kelvar_2_1_7::SummaryItems& items) {
  std::string text;
  for (std::size_t index = 0; index < items.size(); ++index) {
    const auto* item = items[index];
    text += (item != nullptr ? row(*item) : "null") + '\n';
  }
  return text;
}

std::string rows(kelvar_2_1_7::ResultSites& sites) {
  std::string text;
  kelvar_2_1_7::ResultSites::Number next = 0;
  const auto addRecorded = [&](kelvar_2_1_7::ResultSites::Number end) {
    for (; next < end; ++next) {
      if (!sites.isTaken(next)) text += row(sites.itemOf(next)) + '\n';
    }
  };
  for (std::size_t index = 0; index < sites.items().size(); ++index) {
    addRecorded(sites.placeOf(index));
    text += row(*sites.items()[index]) + '\n';
  }
  addRecorded(sites.recordedCount());
  return text;
}

}  // namespace support
