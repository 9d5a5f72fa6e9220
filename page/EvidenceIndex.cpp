#include "EvidenceIndex.h"

namespace kelvar_page {

void EvidenceIndex::read(kelvar::SummaryData& data, const kelvar_2_1_7::PerKind<std::string>& results,
                         std::vector<std::string>& complaints) {
  const kelvar::SummaryResult& all = *data.aggregateResult();
  for (int index = 0; index < all.resultCount(); ++index) {
    const digestio::SummaryCollection* const collection = all.result(index)->summaryCollection();
    const std::string& directory = results[collection->dataKind()];
    if (directory.empty()) continue;
    try {
      for (Evidence& line : kelvar_platform::readEvidence(directory)) {
        if (line.detail < collection->detailCount()) add(collection->detail(line.detail), std::move(line));
      }
    } catch (const kelvar_platform::ReadError& error) {
      complaints.emplace_back(error.what());
    }
  }
}

std::vector<const Evidence*> EvidenceIndex::of(const Site& site) const {
  std::vector<const Evidence*> found;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const auto lines = site.details[kind] ? lines_.find(site.details[kind]) : lines_.end();
    if (lines == lines_.end()) continue;
    for (const Evidence& line : lines->second) found.push_back(&line);
  }
  return found;
}

const Evidence* EvidenceIndex::first(const Site& site, EvidenceKind kind) const {
  const Evidence* best = nullptr;
  for (const Evidence* const line : of(site)) {
    if (line->kind == kind && (!best || line->count > best->count)) best = line;
  }
  return best;
}

std::string evidenceName(EvidenceKind kind) {
  std::string name(kelvar_platform::kEvidenceKindNames[static_cast<std::size_t>(kind)]);
  for (char& c : name) c = c == '-' ? ' ' : c;
  return name;
}

std::string placesText(const Evidence& line) {
  std::string text;
  for (const EvidencePlace& place : line.places) {
    if (!text.empty()) text += ", ";
    if (!place.role.empty()) text += place.role + " at ";
    text += shortPlace(sitenotes::locator_t(toolbelt::path_t(place.file), place.line, place.column));
  }
  return text;
}

std::string reasonText(const Evidence& line) {
  std::string_view text = line.text;
  for (const std::string_view verdict : {"loop not vectorized", "vectorized loop"}) {
    if (text.starts_with(verdict)) text.remove_prefix(verdict.size());
  }
  text.remove_prefix(std::min(text.find_first_not_of(": "), text.size()));
  return std::string(text.substr(0, text.find(". ")));
}

}  // namespace kelvar_page
