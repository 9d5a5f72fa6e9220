#include "RowQuery.h"

#include <algorithm>
#include <charconv>

#include "RegionKinds.h"

namespace kelvar_page {

namespace {

using sitenotes::annotation_t;

std::optional<int> smallNumber(const std::string& text, int least, int greatest) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > greatest)
    return std::nullopt;
  return number;
}

char lower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool holds(const std::string& text, const std::string& wantedLower) {
  return std::search(text.begin(), text.end(), wantedLower.begin(), wantedLower.end(),
                     [](char a, char b) { return lower(a) == b; }) != text.end();
}

bool matches(const kelvar::SummaryItem& item, const std::string& match) {
  bool exact = false;
  bool moved = false;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    exact = exact || item.summaryDataStatus(kind) == kelvar::kExactMatchCurrent;
    moved = moved || item.summaryDataStatus(kind) == kelvar::kApproximateMatchCurrent;
  }
  if (match == "exact") return exact && !moved;
  if (match == "moved") return moved;
  return !exact && !moved;
}

bool isAnnotationKind(const std::string& name) {
  for (int kind = 0; kind < annotation_t::all_kinds; ++kind) {
    if (name == annotation_t::display(static_cast<annotation_t::kind_t>(kind))) return true;
  }
  return false;
}

}  // namespace

bool setField(RowQuery& query, const std::string& key, const std::string& value) {
  constexpr std::size_t kLongestText = 1000;
  if (key == "sort") {
    const auto ordering = smallNumber(value, 0, kelvar::kSummaryMappingCount - 1);
    if (ordering) query.ordering = static_cast<kelvar::SummaryMapping>(*ordering);
    return ordering.has_value();
  }
  if (key == "reverse") {
    query.reverse = value == "1";
    return value == "0" || value == "1";
  }
  if (key == "analysis") {
    const auto analysis = smallNumber(value, -1, digestio::kSummaryDataKindCount - 1);
    if (analysis) query.analysis = *analysis;
    return analysis.has_value();
  }
  if (key == "kind") {
    query.kind = value;
    return value == "all" || value == "site" || value == "function" || value == "loop" || isAnnotationKind(value);
  }
  if (key == "match") {
    query.match = value;
    return value == "all" || value == "exact" || value == "moved" || value == "none";
  }
  if (key != "text" || value.size() > kLongestText) return false;
  query.text = value;
  return true;
}

void RowView::setSettings(const RowQuery& query) {
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    data_.setSummaryKindEnable(kind, query.analysis < 0 || query.analysis == kind);
  }
  const bool all = query.kind == "all";
  data_.setSummaryDetailKindFilter(all || query.kind == "function", digestio::kHotSpot, annotation_t::all_kinds);
  data_.setSummaryDetailKindFilter(all || query.kind == "loop", digestio::kLoop, annotation_t::all_kinds);
  for (int kind = 0; kind < annotation_t::all_kinds; ++kind) {
    const auto one = static_cast<annotation_t::kind_t>(kind);
    const bool isSite = !kelvar_2_1_7::closesRegion(one);
    const bool shown = ((all || query.kind == "site") && isSite) || query.kind == annotation_t::display(one);
    data_.setSummaryDetailKindFilter(shown, digestio::kAnnotatedSite, one);
  }
  data_.setMapping(query.ordering, query.reverse);
}

void RowView::set(const RowQuery& query) {
  if (set_ && query == query_) return;
  set_ = false;
  setSettings(query);
  left_.clear();
  chosen_ = !query.text.empty() || query.match != "all";
  std::string wanted = query.text;
  std::transform(wanted.begin(), wanted.end(), wanted.begin(), lower);
  const int count = chosen_ ? data_.num_items() : 0;
  for (int index = 0; index < count; ++index) {
    const kelvar::SummaryItem& item = *data_.item(index);
    if (query.match != "all" && !matches(item, query.match)) continue;
    if (!wanted.empty() && !holds(item.label(), wanted) && !holds(item.locator().get_file().get_text(), wanted))
      continue;
    left_.push_back(index);
  }
  query_ = query;
  set_ = true;
}

int RowView::size() const {
  return chosen_ ? static_cast<int>(left_.size()) : data_.num_items();
}

kelvar::SummaryItem& RowView::row(int index) const {
  return *data_.item(chosen_ ? left_[static_cast<std::size_t>(index)] : index);
}

}  // namespace kelvar_page
