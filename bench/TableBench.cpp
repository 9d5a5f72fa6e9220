#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Measure.h"
#include "PerKind.h"
#include "Program.h"
#include "items/SummaryItems.h"

namespace kelvar_bench {

namespace {

using kelvar_2_1_7::SummaryItemImpl;
using kelvar_2_1_7::SummaryItems;

/// The program's list with all results joined, made once for each size.
const SummaryItems& joinedList(std::size_t sites) {
  static SummaryItems kept;
  static std::size_t keptSites = 0;
  if (keptSites != sites) {
    kept.clear();
    kept = program(sites).joined();
    keptSites = sites;
  }
  return kept;
}

/// All values that a row of the table prints, read beforehand.
struct Row {
  std::string kind;
  std::string label;
  std::string leaf;
  int line;
  int column;
  bool parallel;
  kelvar_2_1_7::PerKind<bool> shows;
  std::array<double, 6> numbers;
  std::array<int, 8> counts;
  std::array<long, 3> strides;
};

Row readRow(const SummaryItemImpl& item) {
  const sitenotes::locator_t& place = item.place();
  Row row{.kind = item.detailKind() == 0   ? sitenotes::annotation_t::display(item.annotationKind())
                  : item.detailKind() == 1 ? "HotSpotHotSpotVectorization"
                                           : "(null)",
          .label = item.label(),
          .leaf = place.get_file().get_leaf(),
          .line = place.get_line(),
          .column = place.get_column(),
          .parallel = item.annotationKind() == 0,
          .shows = {},
          .numbers = {},
          .counts = {},
          .strides = {}};
  for (const auto kind : kelvar_2_1_7::kAllKinds) row.shows[kind] = item.shows(kind);
  if (const auto* survey = item.surveyDetail()) {
    row.numbers[0] = survey->cpuTime();
    row.counts[0] = survey->priority();
    row.counts[1] = survey->id();
  }
  if (const auto* vectorization = item.surveyVectorizationDetail()) {
    row.numbers[1] = vectorization->selfTime();
    row.numbers[2] = vectorization->totalTime();
    row.counts[2] = vectorization->state();
    row.counts[3] = vectorization->id();
    row.counts[4] = vectorization->priority();
  }
  if (const auto* suitability = item.suitabilityDetail()) {
    row.numbers[3] = suitability->selfTime();
    row.numbers[4] = suitability->siteMaxGain();
    row.numbers[5] = suitability->totalMaxGain();
    row.counts[5] = suitability->cores();
  }
  if (const auto* correctness = item.correctnessDetail()) {
    row.counts[6] = correctness->errors();
    row.counts[7] = correctness->warnings(0) + correctness->warnings(1);
  }
  if (const auto* map = item.mapDetail()) row.strides = {map->strides(0), map->strides(1), map->strides(2)};
  return row;
}

/// Formats into a buffer and appends, as the table does.
template <class... Values>
void cell(std::string& out, const char* format, Values... values) {
  std::array<char, 256> buffer;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  const int size = std::snprintf(buffer.data(), buffer.size(), format, values...);
#pragma GCC diagnostic pop
  out.append(buffer.data(), std::min(static_cast<std::size_t>(size), buffer.size() - 1));
}

void formatRow(std::string& out, const Row& row) {
  std::array<char, 256> place;
  std::snprintf(place.data(), place.size(), "%s:%d:%d", row.leaf.c_str(), row.line, row.column);
  cell(out, "%-13.13s %-16.16s %-28.28s ", row.kind.c_str(), row.label.c_str(), place.data());
  if (row.shows[digestio::kSurvey])
    cell(out, "%7.2f %1d %2d ", row.numbers[0], row.counts[0], row.counts[1]);
  else
    out.append(13, ' ');
  if (row.shows[digestio::kSurveyVectorization])
    cell(out, "%1d %7.2f %7.2f %6d %1d ", row.counts[2], row.numbers[1], row.numbers[2], row.counts[3], row.counts[4]);
  else
    out.append(20, ' ');
  if (!row.shows[digestio::kSuitability])
    out.append(33, ' ');
  else if (row.parallel)
    cell(out, "%6.2fs %2d %c%c%c%c%c %7.2f %7.2f ", row.numbers[3], row.counts[5], 'h', 'l', 'c', 'h', 'l',
         row.numbers[4], row.numbers[5]);
  else
    cell(out, "%6.2fs                          ", row.numbers[3]);
  if (row.shows[digestio::kCorrectness])
    cell(out, "%7d %7d ", row.counts[6], row.counts[7]);
  else
    out.append(16, ' ');
  if (row.shows[digestio::kMap])
    cell(out, "%7ld / %7ld / %7ld ", row.strides[0], row.strides[1], row.strides[2]);
  else
    out.append(16, ' ');
  out += '\n';
}

std::string table(const SummaryItems& list) {
  return list.asString(false, true, true, true, true, true);
}

}  // namespace

void registerTable(std::size_t sites) {
  const auto items = [=] { return joinedList(sites).size(); };
  measure(
      "table", sites, items, [=] { return &joinedList(sites); }, [](const auto* list) { return table(*list); });
  measure(
      "table-memcpy", sites, items, [=] { return table(joinedList(sites)); },
      [](const std::string& text) {
        auto copy = std::make_unique_for_overwrite<char[]>(text.size());
        std::memcpy(copy.get(), text.data(), text.size());
        return copy;
      });
  measure(
      "table-snprintf", sites, items,
      [=] {
        std::vector<Row> rows;
        for (const auto& item : joinedList(sites)) rows.push_back(readRow(*item));
        return rows;
      },
      [](const std::vector<Row>& rows) {
        std::string out;
        for (const Row& row : rows) formatRow(out, row);
        return out;
      });
}

}  // namespace kelvar_bench
