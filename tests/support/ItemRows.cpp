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

}  // namespace support
