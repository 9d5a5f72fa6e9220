#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "view/RowText.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

namespace {

constexpr std::size_t kHeaderLines = 4;
using HeaderLines = std::array<std::string_view, kHeaderLines>;

/// What a verbose table puts before each line, and again before each group of it.
constexpr HeaderLines kLinePrefix{"    ", "C   ", "S # ", "_ _ "};
constexpr HeaderLines kGroupPrefix{"    ", "R   ", "S # ", "_ _ "};

constexpr HeaderLines kSourceHeader{
    "                        Source                             ",
    "                                                           ",
    "    Kind           Label               File/line           ",
    "_____________ ________________ ____________________________",
};
static_assert(kSourceHeader[0].size() == 59 && kSourceHeader[1].size() == 59 && kSourceHeader[2].size() == 59 &&
              kSourceHeader[3].size() == 59);

/// By SummaryDataStatus.
constexpr std::array kStatusCharacters{"-", "!", "?", "~", "=", "+"};
static_assert(kStatusCharacters.size() == kSummaryDataStatusCount);

/// By SummaryDetailKind, for other items than annotated sites. The first is two names run together, of which the column
/// shows the beginning; loops have none, which the C library has always printed like this.
constexpr std::array kDetailKindNames{"Annotation", "HotSpotHotSpotVectorization", "(null)"};

bool putSurvey(RowText& row, const SummaryItemImpl& item) {
  const digestio::SurveyDetail* const detail = item.surveyDetail();
  if (detail == nullptr) return false;
  const double cpuTime = detail->cpuTime();
  const int priority = detail->priority();
  const int id = detail->id();
  row.fixed(cpuTime, 7).text(" ").integer(priority, 1).text(" ").integer(id, 2).text(" ");
  return true;
}

bool putSurveyVectorization(RowText& row, const SummaryItemImpl& item) {
  const digestio::SurveyVectorizationDetail* const detail = item.surveyVectorizationDetail();
  if (detail == nullptr) return false;
  const int state = detail->state();
  const double selfTime = detail->selfTime();
  const double totalTime = detail->totalTime();
  const int id = detail->id();
  const int priority = detail->priority();
  row.integer(state, 1).text(" ").fixed(selfTime, 7).text(" ").fixed(totalTime, 7).text(" ");
  row.integer(id, 6).text(" ").integer(priority, 1).text(" ");
  return true;
}

/// The letters that bits 0 to 4 of the flags have under "STCLC": unset, set.
constexpr std::array<std::array<char, 2>, 5> kFlagLetters{{{'l', 'h'}, {'l', 'h'}, {'n', 'c'}, {'l', 'h'}, {'l', 'h'}}};

using FlagLetters = std::array<char, kFlagLetters.size()>;

FlagLetters lettersOf(std::uint32_t flags) {
  FlagLetters letters;
  for (std::size_t bit = 0; bit < letters.size(); ++bit) letters[bit] = kFlagLetters[bit][flags >> bit & 1];
  return letters;
}

bool putSuitability(RowText& row, const SummaryItemImpl& item) {
  const digestio::SuitabilityDetail* const detail = item.suitabilityDetail();
  if (detail == nullptr) return false;
  const double selfTime = detail->selfTime();
  // Gains are modelled for parallel regions as a whole.
  if (item.annotationKind() != annotation_t::parallel) {
    row.fixed(selfTime, 6).text("s                          ");
    return true;
  }
  const int cores = detail->cores();
  const std::uint32_t flags = detail->flags();
  const double siteMaxGain = detail->siteMaxGain();
  const double totalMaxGain = detail->totalMaxGain();
  const FlagLetters letters = lettersOf(flags);
  row.fixed(selfTime, 6).text("s ").integer(cores, 2).text(" ").text({letters.data(), letters.size()}).text(" ");
  row.fixed(siteMaxGain, 7).text(" ").fixed(totalMaxGain, 7).text(" ");
  return true;
}

bool putCorrectness(RowText& row, const SummaryItemImpl& item) {
  const digestio::CorrectnessDetail* const detail = item.correctnessDetail();
  if (detail == nullptr) return false;
  const long errors = detail->errors();
  const long first = detail->warnings(0);
  const long second = detail->warnings(1);
  row.integer(errors, 7).text(" ").integer(first + second, 7).text(" ");
  return true;
}

bool putMap(RowText& row, const SummaryItemImpl& item) {
  const digestio::MapDetail* const detail = item.mapDetail();
  if (detail == nullptr) return false;
  const long unit = detail->strides(0);
  const long constant = detail->strides(1);
  const long varying = detail->strides(2);
  row.integer(unit, 7).text(" / ").integer(constant, 7).text(" / ").integer(varying, 7).text(" ");
  return true;
}

struct ColumnGroup {
  HeaderLines header;  // ragged, and kept so: readers cut these columns by position
  std::size_t filler;  // blanks in place of a cell; some are narrower than the cell they stand for
  bool (*putCell)(RowText& row, const SummaryItemImpl& item);  // whether the item has one
};

constexpr PerKind<ColumnGroup> kGroups{{{
    {{"Survey      ", " CPU    P   ", " Time   r Id", "_______ _ __"}, 13, putSurvey},
    {{"SurveyVectorization      ", " Self   Total    P   ", " Time   Time Id r", "_______ _______ ______ _"},
     20,
     putSurveyVectorization},
    {{"         Suitability            ", " Self   Cores /   Site    Total ", " Time      STCLC MaxGain MaxGain",
      "_______ __ _____ _______ _______"},
     33,
     putSuitability},
    {{"  Dependencies  ", "               ", "Errors  Warning", "_______ _______"}, 16, putCorrectness},
    {{"  MAP           ", "               ", "Strides", "_______"}, 16, putMap},
}}};

constexpr bool hasWidths(SummaryDataKind kind, const std::array<std::size_t, kHeaderLines>& widths) {
  for (std::size_t line = 0; line < kHeaderLines; ++line) {
    if (kGroups[kind].header[line].size() != widths[line]) return false;
  }
  return true;
}
static_assert(hasWidths(digestio::kSurvey, {12, 12, 12, 12}));
static_assert(hasWidths(digestio::kSurveyVectorization, {25, 21, 17, 24}));
static_assert(hasWidths(digestio::kSuitability, {32, 32, 32, 32}));
static_assert(hasWidths(digestio::kCorrectness, {16, 15, 15, 15}));
static_assert(hasWidths(digestio::kMap, {16, 15, 7, 7}));

/// What a table shows of each item.
struct Columns {
  bool verbose;
  PerKind<bool> shown;
};

void appendHeader(std::string& out, const Columns& columns) {
  for (std::size_t line = 0; line < kHeaderLines; ++line) {
    if (columns.verbose) out += kLinePrefix[line];
    out += kSourceHeader[line];
    for (const SummaryDataKind kind : kAllKinds) {
      if (!columns.shown[kind]) continue;
      out += '|';
      if (columns.verbose) out += kGroupPrefix[line];
      out += kGroups[kind].header[line];
    }
    out += '\n';
  }
}

void putStatus(RowText& row, SummaryDataStatus status, unsigned int count) {
  row.piece().text(kStatusCharacters[static_cast<std::size_t>(status)]).text(" ");
  row.integer(static_cast<int>(count), 1).text(" ");
}

unsigned int totalCount(const SummaryItemImpl& item) {
  unsigned int total = 0;
  for (const SummaryDataKind kind : kAllKinds) total += item.summaryDataCount(kind);
  return total;
}

const char* kindText(const SummaryItemImpl& item) {
  const auto detailKind = static_cast<std::size_t>(item.detailKind());
  if (detailKind >= kDetailKindNames.size()) return "";
  if (detailKind != digestio::kAnnotatedSite) return kDetailKindNames[detailKind];
  const annotation_t::kind_t kind = item.annotationKind();
  if (kind < 0 || kind >= annotation_t::all_kinds) return "";
  const char* const name = annotation_t::display(kind);
  return name != nullptr ? name : "";
}

constexpr std::size_t kPlaceWidth = 28;

/// The leaf, the line and, where there is one, the column. A long leaf leaves no room for them.
void readPlace(std::string& text, const sitenotes::locator_t& place) {
  text.clear();
  const toolbelt::path_t file = place.get_file();
  const std::string& leaf = file.get_leaf();
  if (leaf.empty()) return;
  text.append(leaf.c_str(), strnlen(leaf.c_str(), kPlaceWidth));
  text += ':';
  text += std::to_string(place.get_line());
  const int column = place.get_column();
  if (column != 0) text.append(":").append(std::to_string(column));
}

/// `place` is room for a text.
void putRow(RowText& row, const Columns& columns, const SummaryItemImpl& item, std::string& place) {
  if (columns.verbose) putStatus(row, item.summaryDataStatus(), totalCount(item));
  readPlace(place, item.place());
  row.piece().left(kindText(item), 13).text(" ").left(item.labelText(), 16).text(" ");
  row.left(place, kPlaceWidth).text(" ");
  for (const SummaryDataKind kind : kAllKinds) {
    if (!columns.shown[kind]) continue;
    if (columns.verbose) putStatus(row, item.summaryDataStatus(kind), item.summaryDataCount(kind));
    if (!kGroups[kind].putCell(row.piece(), item)) row.blanks(kGroups[kind].filler);
  }
}

/// The details of an item lie anywhere in memory: they are called for some rows ahead.
void callFor(const Columns& columns, const SummaryItemImpl* item) {
  if (item == nullptr) return;
  for (const SummaryDataKind kind : kAllKinds) {
    if (columns.shown[kind]) __builtin_prefetch(item->summaryDetail(kind));
  }
}
constexpr std::size_t kSlack = 32;

}  // namespace

std::string SummaryItems::asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                   bool correctness, bool map) const {
  const Columns columns{verbose, {{survey, surveyVectorization, suitability, correctness, map}}};
  std::string out;
  appendHeader(out, columns);
  // Rows may be wider than the header over them; memory that stays unused costs nothing.
  out.reserve(out.size() + items_.size() * (out.size() / kHeaderLines + kSlack));
  RowText row;
  std::string place;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    callFor(columns, i + kStep < items_.size() ? items_[i + kStep].get() : nullptr);
    if (items_[i] == nullptr) continue;
    putRow(row, columns, *items_[i], place);
    row.endLine(out);
  }
  return out;
}

}  // namespace kelvar_2_1_7
