#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "view/FormattedPiece.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

namespace {

constexpr std::size_t kPieceSize = 256;
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

bool appendSurvey(std::string& out, const SummaryItemImpl& item) {
  const digestio::SurveyDetail* const detail = item.surveyDetail();
  if (detail == nullptr) return false;
  const double cpuTime = detail->cpuTime();
  const int priority = detail->priority();
  const int id = detail->id();
  appendPiece<kPieceSize>(out, "%7.2f %1d %2d ", cpuTime, priority, id);
  return true;
}

bool appendSurveyVectorization(std::string& out, const SummaryItemImpl& item) {
  const digestio::SurveyVectorizationDetail* const detail = item.surveyVectorizationDetail();
  if (detail == nullptr) return false;
  const int state = detail->state();
  const double selfTime = detail->selfTime();
  const double totalTime = detail->totalTime();
  const int id = detail->id();
  const int priority = detail->priority();
  appendPiece<kPieceSize>(out, "%1d %7.2f %7.2f %6d %1d ", state, selfTime, totalTime, id, priority);
  return true;
}

/// The letters that bits 0 to 4 of the flags have under "STCLC": unset, set.
constexpr std::array<std::array<char, 2>, 5> kFlagLetters{{{'l', 'h'}, {'l', 'h'}, {'n', 'c'}, {'l', 'h'}, {'l', 'h'}}};

char flagLetter(std::uint32_t flags, std::size_t bit) {
  return kFlagLetters[bit][flags >> bit & 1];
}

bool appendSuitability(std::string& out, const SummaryItemImpl& item) {
  const digestio::SuitabilityDetail* const detail = item.suitabilityDetail();
  if (detail == nullptr) return false;
  const double selfTime = detail->selfTime();
  // Gains are modelled for parallel regions as a whole.
  if (item.annotationKind() != annotation_t::parallel) {
    appendPiece<kPieceSize>(out, "%6.2fs                          ", selfTime);
    return true;
  }
  const int cores = detail->cores();
  const std::uint32_t flags = detail->flags();
  const double siteMaxGain = detail->siteMaxGain();
  const double totalMaxGain = detail->totalMaxGain();
  appendPiece<kPieceSize>(out, "%6.2fs %2d %c%c%c%c%c %7.2f %7.2f ", selfTime, cores, flagLetter(flags, 0),
                          flagLetter(flags, 1), flagLetter(flags, 2), flagLetter(flags, 3), flagLetter(flags, 4),
                          siteMaxGain, totalMaxGain);
  return true;
}

bool appendCorrectness(std::string& out, const SummaryItemImpl& item) {
  const digestio::CorrectnessDetail* const detail = item.correctnessDetail();
  if (detail == nullptr) return false;
  const long errors = detail->errors();
  const long first = detail->warnings(0);
  const long second = detail->warnings(1);
  appendPiece<kPieceSize>(out, "%7ld %7ld ", errors, first + second);
  return true;
}

bool appendMap(std::string& out, const SummaryItemImpl& item) {
  const digestio::MapDetail* const detail = item.mapDetail();
  if (detail == nullptr) return false;
  const long unit = detail->strides(0);
  const long constant = detail->strides(1);
  const long varying = detail->strides(2);
  appendPiece<kPieceSize>(out, "%7ld / %7ld / %7ld ", unit, constant, varying);
  return true;
}

struct ColumnGroup {
  HeaderLines header;  // ragged, and kept so: readers cut these columns by position
  std::size_t filler;  // blanks in place of a cell; some are narrower than the cell they stand for
  bool (*appendCell)(std::string& out, const SummaryItemImpl& item);  // whether the item has one
};

constexpr PerKind<ColumnGroup> kGroups{{{
    {{"Survey      ", " CPU    P   ", " Time   r Id", "_______ _ __"}, 13, appendSurvey},
    {{"SurveyVectorization      ", " Self   Total    P   ", " Time   Time Id r", "_______ _______ ______ _"},
     20,
     appendSurveyVectorization},
    {{"         Suitability            ", " Self   Cores /   Site    Total ", " Time      STCLC MaxGain MaxGain",
      "_______ __ _____ _______ _______"},
     33,
     appendSuitability},
    {{"  Dependencies  ", "               ", "Errors  Warning", "_______ _______"}, 16, appendCorrectness},
    {{"  MAP           ", "               ", "Strides", "_______"}, 16, appendMap},
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

void appendStatus(std::string& out, SummaryDataStatus status, unsigned int count) {
  appendPiece<kPieceSize>(out, "%-1s %1d ", kStatusCharacters[static_cast<std::size_t>(status)],
                          static_cast<int>(count));
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

/// The leaf, the line and, where there is one, the column.
void readPlace(std::string& text, const sitenotes::locator_t& place) {
  text.clear();
  const toolbelt::path_t file = place.get_file();
  const std::string& leaf = file.get_leaf();
  if (leaf.empty()) return;
  const long line = place.get_line();
  const long column = place.get_column();
  if (column == 0) {
    appendPiece<kPieceSize>(text, "%s:%ld", leaf.c_str(), line);
  } else {
    appendPiece<kPieceSize>(text, "%s:%ld:%ld", leaf.c_str(), line, column);
  }
}

/// `place` is room for a text.
void appendRow(std::string& out, const Columns& columns, const SummaryItemImpl& item, std::string& place) {
  if (columns.verbose) appendStatus(out, item.summaryDataStatus(), totalCount(item));
  readPlace(place, item.place());
  appendPiece<kPieceSize>(out, "%-13.13s %-16.16s %-28.28s ", kindText(item), item.labelText().c_str(), place.c_str());
  for (const SummaryDataKind kind : kAllKinds) {
    if (!columns.shown[kind]) continue;
    if (columns.verbose) appendStatus(out, item.summaryDataStatus(kind), item.summaryDataCount(kind));
    if (!kGroups[kind].appendCell(out, item)) out.append(kGroups[kind].filler, ' ');
  }
  out += '\n';
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
  std::string place;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    callFor(columns, i + kStep < items_.size() ? items_[i + kStep].get() : nullptr);
    if (items_[i]) appendRow(out, columns, *items_[i], place);
  }
  return out;
}

}  // namespace kelvar_2_1_7
