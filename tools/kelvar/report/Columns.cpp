#include "Columns.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <type_traits>

#include "Names.h"
#include "names.h"

namespace kelvar_tool {

namespace {

using digestio::SummaryDataKind;
using kelvar::SummaryItem;
using sitenotes::locator_t;

template <class Value>
Cell cellOf(Value value) {
  if constexpr (std::is_floating_point_v<Value>) {
    return static_cast<double>(value);
  } else if constexpr (std::is_signed_v<Value>) {
    return static_cast<std::int64_t>(value);
  } else {
    return static_cast<std::uint64_t>(value);
  }
}

Cell statusCell(kelvar::SummaryDataStatus status) {
  const auto index = static_cast<std::size_t>(status);
  return index < kelvar::kStatusNames.size() ? Cell(std::string(kelvar::kStatusNames[index])) : Cell();
}

Cell label(const Row& row, SummaryDataKind) {
  return row.item.label();
}

Cell annotationKind(const Row& row, SummaryDataKind) {
  // Functions and loops have no annotation; the kind in their details is a filler.
  if (row.item.detailKind() != digestio::kAnnotatedSite && !row.item.annotation()) return {};
  const auto kind = static_cast<std::size_t>(row.item.annotationKind());
  return kind < annotationKindNames().size() ? Cell(annotationKindNames()[kind]) : Cell();
}

/// By SummaryDetailKind. The fixed report prints other names, which are hard to search for.
constexpr std::array kDetailKindNames{"site", "hot-spot", "loop"};
static_assert(kDetailKindNames.size() == digestio::kSummaryDetailKindCount);

Cell detailKind(const Row& row, SummaryDataKind) {
  const auto kind = static_cast<std::size_t>(row.item.detailKind());
  return kind < kDetailKindNames.size() ? Cell(std::string(kDetailKindNames[kind])) : Cell();
}

Cell handle(const Row& row, SummaryDataKind) {
  return row.handle != 0 ? cellOf(row.handle) : Cell();
}

Cell itemStatus(const Row& row, SummaryDataKind) {
  return statusCell(row.item.summaryDataStatus());
}

Cell kindStatus(const Row& row, SummaryDataKind kind) {
  return statusCell(row.item.summaryDataStatus(kind));
}

Cell kindCount(const Row& row, SummaryDataKind kind) {
  return cellOf(row.item.summaryDataCount(kind));
}

const locator_t& storedPlace(const Row& row, SummaryDataKind) {
  return row.stored;
}
const locator_t& currentPlace(const Row& row, SummaryDataKind) {
  return row.current;
}
const locator_t& seenPlace(const Row& row, SummaryDataKind kind) {
  return row.seen[kind];
}

using PlaceOf = const locator_t& (*)(const Row& row, SummaryDataKind kind);

template <PlaceOf place>
Cell file(const Row& row, SummaryDataKind kind) {
  const locator_t& at = place(row, kind);
  // Analyses spell one path in several ways: `./src/a.cpp` is `src/a.cpp`.
  return at.is_null() ? Cell() : Cell(std::filesystem::path(at.get_file().get_text()).lexically_normal().native());
}

template <PlaceOf place, int (locator_t::*number)() const noexcept>
Cell numberOf(const Row& row, SummaryDataKind kind) {
  const locator_t& at = place(row, kind);
  return at.is_null() ? Cell() : cellOf((at.*number)());
}

/// The value of one operation of a typed view; `index` for those that take one.
template <auto detail, auto operation, int... index>
Cell valueOf(const Row& row, SummaryDataKind) {
  const auto* const view = (row.item.*detail)();
  return view ? cellOf((view->*operation)(index...)) : Cell();
}

struct Value {
  const char* name;
  const char* heading;
  Cell (*value)(const Row& row, SummaryDataKind kind);
  const char* unit = "";
};

struct Record {
  const char* name;   // of the record in a result's file
  const char* group;  // over its columns
  std::vector<Value> values;
};

const kelvar_2_1_7::PerKind<Record>& records() {
  using namespace digestio;
  constexpr auto kSurveyOf = &SummaryItem::surveyDetail;
  constexpr auto kVectorizationOf = &SummaryItem::surveyVectorizationDetail;
  constexpr auto kSuitabilityOf = &SummaryItem::suitabilityDetail;
  constexpr auto kCorrectnessOf = &SummaryItem::correctnessDetail;
  constexpr auto kMapOf = &SummaryItem::mapDetail;
  static const kelvar_2_1_7::PerKind<Record> all{{{
      {"survey",
       "Survey",
       {{"cpuTime", "CPU time", valueOf<kSurveyOf, &SurveyDetail::cpuTime>, "s"},
        {"priority", "Priority", valueOf<kSurveyOf, &SurveyDetail::priority>},
        {"id", "Id", valueOf<kSurveyOf, &SurveyDetail::id>}}},
      {"surveyVectorization",
       "Survey vectorization",
       {{"state", "State", valueOf<kVectorizationOf, &SurveyVectorizationDetail::state>},
        {"selfTime", "Self time", valueOf<kVectorizationOf, &SurveyVectorizationDetail::selfTime>, "s"},
        {"totalTime", "Total time", valueOf<kVectorizationOf, &SurveyVectorizationDetail::totalTime>, "s"},
        {"id", "Id", valueOf<kVectorizationOf, &SurveyVectorizationDetail::id>},
        {"priority", "Priority", valueOf<kVectorizationOf, &SurveyVectorizationDetail::priority>}}},
      {"suitability",
       "Suitability",
       {{"selfTime", "Self time", valueOf<kSuitabilityOf, &SuitabilityDetail::selfTime>, "s"},
        {"cores", "Cores", valueOf<kSuitabilityOf, &SuitabilityDetail::cores>},
        {"flags", "Flags", valueOf<kSuitabilityOf, &SuitabilityDetail::flags>},
        {"siteMaxGain", "Site gain", valueOf<kSuitabilityOf, &SuitabilityDetail::siteMaxGain>},
        {"totalMaxGain", "Total gain", valueOf<kSuitabilityOf, &SuitabilityDetail::totalMaxGain>}}},
      {"dependencies",
       "Dependencies",
       {{"errors", "Errors", valueOf<kCorrectnessOf, &CorrectnessDetail::errors>},
        {"warnings.0", "Warnings 0", valueOf<kCorrectnessOf, &CorrectnessDetail::warnings, 0>},
        {"warnings.1", "1", valueOf<kCorrectnessOf, &CorrectnessDetail::warnings, 1>}}},
      {"map",
       "Map",
       {{"strides.0", "Strides: unit", valueOf<kMapOf, &MapDetail::strides, 0>},
        {"strides.1", "constant", valueOf<kMapOf, &MapDetail::strides, 1>},
        {"strides.2", "varying", valueOf<kMapOf, &MapDetail::strides, 2>}}},
  }}};
  return all;
}

template <PlaceOf place>
void addPlace(std::vector<Column>& columns, Column column) {
  const std::string prefix = column.name + ".";
  const auto add = [&](const char* name, const char* heading, auto* value) {
    column.name = prefix + name;
    column.heading = heading;
    column.value = value;
    columns.push_back(column);
  };
  add("file", "File", file<place>);
  add("line", "Line", numberOf<place, &locator_t::get_line>);
  add("column", "Column", numberOf<place, &locator_t::get_column>);
}

void addKind(std::vector<Column>& columns, SummaryDataKind kind) {
  const Record& record = records()[kind];
  const std::string prefix = std::string(record.name) + ".";
  const auto columnOf = [&](const std::string& name, const char* heading, bool shown, auto* value) {
    return Column{prefix + name, record.group, heading, kind, true, shown, value, {}};
  };
  columns.push_back(columnOf("status", "Match", false, kindStatus));
  columns.push_back(columnOf("count", "Count", false, kindCount));
  addPlace<seenPlace>(columns, columnOf("place", "", false, kindStatus));
  for (const Value& value : record.values) {
    columns.push_back(columnOf(value.name, value.heading, true, value.value));
    columns.back().unit = value.unit;
  }
}

std::vector<Column> makeColumns() {
  constexpr auto kNoKind = digestio::kSurvey;
  std::vector<Column> columns{
      {"label", "", "Label", kNoKind, false, true, label},
      {"annotationKind", "", "Kind", kNoKind, false, true, annotationKind},
      {"detailKind", "", "Detail", kNoKind, false, true, detailKind},
      {"handle", "", "Handle", kNoKind, false, false, handle},
      {"status", "", "Status", kNoKind, false, false, itemStatus},
  };
  addPlace<storedPlace>(columns, {"storedPlace", "Stored place", "", kNoKind, false, false, nullptr});
  addPlace<currentPlace>(columns, {"currentPlace", "Current place", "", kNoKind, false, true, nullptr});
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) addKind(columns, kind);
  return columns;
}

}  // namespace

Row::Row(kelvar::SummaryItem& site)
    : item(site),
      stored(site.locator()),
      current({}, 0, 0),
      seen{{stored, stored, stored, stored, stored}} {  // placeholders, overwritten below
  site.getCurrentLocator(current, handle);
  unsigned long again = 0;
  for (const SummaryDataKind kind : kelvar_2_1_7::kAllKinds) site.getCollectionLocator(kind, seen[kind], again);
}

const std::vector<Column>& allColumns() {
  static const std::vector<Column> columns = makeColumns();
  return columns;
}

std::string_view recordName(digestio::SummaryDataKind kind) {
  return records()[kind].name;
}

}  // namespace kelvar_tool
