#include "EvidenceIndex.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <tuple>
#include <unordered_set>

#include "PathTail.h"

namespace kelvar_page {

namespace {

constexpr double kCountsOfASecond = 1e6;  // counts of shares are microseconds

std::string normalPath(const std::string& path) {
  return std::filesystem::path(path).lexically_normal().native();
}

/// Orders details so that those which the library may have folded into one row are neighbours. Folders do not count.
using Order = std::tuple<int, int, int, std::string, int>;  // analysis, detail kind, annotation kind, leaf, line

int analysisOf(const digestio::SummaryDetail& detail) {
  if (detail.surveyView()) return digestio::kSurvey;
  if (detail.surveyVectorizationView()) return digestio::kSurveyVectorization;
  if (detail.suitabilityView()) return digestio::kSuitability;
  return detail.correctnessView() ? digestio::kCorrectness : digestio::kMap;
}

Order orderOf(const digestio::SummaryDetail& detail) {
  const sitenotes::locator_t place = detail.locator();
  return {analysisOf(detail), detail.detailKind(), detail.annotationKind(), place.get_file().get_leaf(),
          place.get_line()};
}

bool inOneFile(const Order& a, const Order& b) {
  return std::tie(std::get<0>(a), std::get<1>(a), std::get<2>(a), std::get<3>(a)) ==
         std::tie(std::get<0>(b), std::get<1>(b), std::get<2>(b), std::get<3>(b));
}

// A text that is equal for details that fold by label: they are of one kind, except that tasks fold into task loops.
std::string twinOf(const digestio::SummaryDetail& detail) {
  const auto kind = detail.annotationKind();
  const bool loop = kind == sitenotes::annotation_t::taskloop;
  return std::to_string(analysisOf(detail)) + " " + std::to_string(detail.detailKind()) + " " +
         std::to_string(static_cast<int>(loop ? sitenotes::annotation_t::task : kind)) + " " + detail.label();
}

/// Finds the row into which the library folded a detail: the row of the same analysis on its line, else with its label,
/// else the nearest one before it in its file.
class RowsOfDetails {
 public:
  explicit RowsOfDetails(const std::vector<const digestio::SummaryDetail*>& inRows) {
    for (const digestio::SummaryDetail* const detail : inRows) {
      byPlace_.emplace(orderOf(*detail), detail);
      if (!detail->label().empty()) byLabel_.emplace(twinOf(*detail), detail);
    }
  }

  [[nodiscard]] const digestio::SummaryDetail* of(const digestio::SummaryDetail& detail) const {
    const Order order = orderOf(detail);
    auto after = byPlace_.upper_bound(order);
    const auto before = after != byPlace_.begin() ? std::prev(after) : byPlace_.end();
    const bool near = before != byPlace_.end() && inOneFile(before->first, order);
    if (near && before->first == order) return before->second;
    const auto alike = detail.label().empty() ? byLabel_.end() : byLabel_.find(twinOf(detail));
    if (alike != byLabel_.end()) return alike->second;
    return near && detail.detailKind() == digestio::kAnnotatedSite ? before->second : nullptr;
  }

 private:
  std::map<Order, const digestio::SummaryDetail*> byPlace_;
  std::map<std::string, const digestio::SummaryDetail*> byLabel_;
};

}  // namespace

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
  adopt(data);
}

void EvidenceIndex::add(const digestio::SummaryDetail* detail, Evidence line) {
  if (line.kind == EvidenceKind::share) {
    for (const EvidencePlace& place : line.places) {
      if (place.role != "line" || place.line == 0) continue;
      const toolbelt::path_t file(place.file);
      double& time = times_[file.get_leaf()][normalPath(place.file)][{place.line, place.function}];
      time = std::max(time, static_cast<double>(line.count) / kCountsOfASecond);
    }
  }
  lines_[detail].push_back(std::move(line));
}

std::map<int, double> EvidenceIndex::lineTimesIn(const toolbelt::path_t& file) const {
  std::map<int, double> lines;
  const auto alike = times_.find(file.get_leaf());
  if (alike == times_.end()) return lines;
  const std::string path = normalPath(file.get_text());
  for (const auto& [spelling, times] : alike->second) {
    if (!isPathTail(spelling, path) && !isPathTail(path, spelling)) continue;
    for (const auto& [line, time] : times) lines[line.first] += time;
  }
  return lines;
}

// Folded details are on one line or have the same label. The same line is the better hint.
void EvidenceIndex::adopt(const kelvar::SummaryData& data) {
  std::vector<const digestio::SummaryDetail*> inRows;
  const int count = lines_.empty() ? 0 : data.num_items();
  for (int index = 0; index < count; ++index) {
    for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
      if (const auto* const detail = data.item(index)->summaryDetail(kind)) inRows.push_back(detail);
    }
  }
  const std::unordered_set<const digestio::SummaryDetail*> known(inRows.begin(), inRows.end());
  std::vector<const digestio::SummaryDetail*> alone;
  for (const auto& [detail, lines] : lines_) {
    if (!known.contains(detail)) alone.push_back(detail);
  }
  if (alone.empty()) return;

  // By their first line of evidence, so that the order does not depend on addresses.
  std::sort(alone.begin(), alone.end(),
            [&](const auto* a, const auto* b) { return lines_.at(a).front().detail < lines_.at(b).front().detail; });
  const RowsOfDetails rows(inRows);
  for (const digestio::SummaryDetail* const detail : alone) {
    const digestio::SummaryDetail* const row = rows.of(*detail);
    if (!row) continue;
    std::vector<Evidence> lines = std::move(lines_.at(detail));
    lines_.erase(detail);
    std::vector<Evidence>& all = lines_[row];
    std::move(lines.begin(), lines.end(), std::back_inserter(all));
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

std::string countText(const Evidence& line, const TimeUnit& unit) {
  if (line.kind == EvidenceKind::share) return timeText(static_cast<double>(line.count) / kCountsOfASecond, unit);
  return line.count > 1 ? counted(line.count, "time", "times") : std::string();
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
  for (const std::string_view verdict :
       {"loop not vectorized", "not vectorized", "couldn't vectorize loop", "vectorized loop"}) {
    if (text.starts_with(verdict)) text.remove_prefix(verdict.size());
  }
  text.remove_prefix(std::min(text.find_first_not_of(": "), text.size()));
  text = text.substr(0, text.find(". "));
  if (text.ends_with('.')) text.remove_suffix(1);
  if (text.starts_with('(') && text.ends_with(')')) text = text.substr(1, text.size() - 2);
  return std::string(text);
}

}  // namespace kelvar_page
