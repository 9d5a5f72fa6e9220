#include "Outcome.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "Demangle.h"
#include "Utf8.h"

namespace kelvar_readers {

Detail siteDetail(const Region& region) {
  Detail detail;
  detail.annotationKind = region.kind;
  detail.label = region.label;
  detail.file = region.file;
  detail.line = region.first;
  detail.column = region.column;
  return detail;
}

Detail functionDetail(const FunctionRow& function) {
  Detail detail;
  detail.detailKind = digestio::kHotSpot;
  detail.label = function.name;
  detail.file = function.file;
  detail.line = function.line;
  return detail;
}

std::vector<FunctionRow> weighty(std::vector<FunctionRow> functions, double percent,
                                 std::vector<std::string>& remarks) {
  double whole = 0;
  for (const FunctionRow& function : functions) whole += sum(function.weights);
  const std::size_t all = functions.size();
  std::erase_if(functions, [=](const FunctionRow& row) { return sum(row.weights) < whole * percent / 100; });
  if (const std::size_t left = all - functions.size(); left > 0) {
    remarks.push_back(std::to_string(left) + " of " + std::to_string(all) + " functions took too little to be listed");
  }
  return functions;
}

void remarkPlaceless(const Tally& tally, std::size_t records, std::vector<std::string>& remarks) {
  if (tally.placelessCount() == 0) return;
  char weight[64];
  std::snprintf(weight, sizeof weight, "%.6g", sum(tally.placeless()));
  remarks.push_back(std::to_string(tally.placelessCount()) + " of " + std::to_string(records) + kPlacelessRemark +
                    weight);
}

kelvar_platform::EvidencePlace evidencePlace(const Place& place, Places& places, const std::string& role) {
  return {.role = role,
          .file = plainText(places.pathOf(place.file)),
          .line = place.line,
          .column = place.column,
          .function = plainText(plainName(place.function))};
}

std::string plainText(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t size = kelvar_platform::characterSize(text);
    const bool breaks = size == 1 && static_cast<unsigned char>(text.front()) < 0x20;
    if (size > 0 && !breaks) {
      plain += text.substr(0, size);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(text.front())));
      plain += breaks ? " " : escape;
    }
    text.remove_prefix(std::max<std::size_t>(1, size));
  }
  return plain;
}

int countOf(double value) {
  return value < std::numeric_limits<int>::max() ? static_cast<int>(value) : std::numeric_limits<int>::max();
}

int priorityOf(double share) {
  if (share >= 0.1) return 1;
  return share >= 0.01 ? 2 : 3;
}

}  // namespace kelvar_readers
