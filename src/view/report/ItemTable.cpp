#include "view/report/ItemTable.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "declarations.h"
#include "items/Prefetch.h"
#include "view/report/ColumnGroups.h"
#include "view/report/RowText.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;

namespace {

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

void appendHeader(std::string& out, const Columns& columns) {
  for (std::size_t line = 0; line < kHeaderLines; ++line) {
    if (columns.verbose) out += kLinePrefix[line];
    out += kSourceHeader[line];
    for (const SummaryDataKind kind : kAllKinds) {
      if (!columns.shown[kind]) continue;
      out += '|';
      if (columns.verbose) out += kGroupPrefix[line];
      out += kColumnGroups[kind].header[line];
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

std::string kindText(const SummaryItemImpl& item) {
  const auto detailKind = static_cast<std::size_t>(item.detailKind());
  if (detailKind >= kDetailKindNames.size()) return "";
  if (item.detailKind() != kSiteDetail) return kDetailKindNames[detailKind];
  const auto kind = static_cast<std::size_t>(item.annotationKind());
  return kind < kAnnotationKindCount ? textOf(sitenotes::annotation_t::display(item.annotationKind())) : "";
}

/// The leaf, the line and, where there is one, the column. A long leaf leaves no room for them.
void putPlace(RowText& row, const sitenotes::locator_t& place) {
  constexpr std::size_t kWidth = 28;
  RowText::Field field(row, kWidth);
  withLeaf(place, [&](std::string_view leaf) {
    if (leaf.empty()) return;
    field.text(leaf.substr(0, leaf.find('\0'))).text(":").integer(place.get_line());
    if (place.get_column() != 0) field.text(":").integer(place.get_column());
  });
}

void putRow(RowText& row, const Columns& columns, const SummaryItemImpl& item) {
  if (columns.verbose) putStatus(row, item.summaryDataStatus(), totalCount(item));
  row.piece().left(kindText(item), 13).text(" ").left(item.labelText(), 16).text(" ");
  putPlace(row, item.place());
  row.text(" ");
  for (const SummaryDataKind kind : kAllKinds) {
    if (!columns.shown[kind]) continue;
    if (columns.verbose) putStatus(row, item.summaryDataStatus(kind), item.summaryDataCount(kind));
    if (!kColumnGroups[kind].putCell(row.piece(), item)) row.blanks(kColumnGroups[kind].filler);
  }
}

void prefetchDetails(const SummaryItems& items, const Columns& columns, std::size_t index) {
  if (index >= items.size() || items[index] == nullptr) return;
  for (const SummaryDataKind kind : kAllKinds) {
    if (columns.shown[kind]) prefetchBeginning(items[index]->summaryDetail(kind));
  }
}

/// Rows may be wider than the headings over them; memory that stays unused costs nothing.
constexpr std::size_t kSlack = 32;

}  // namespace

void writeTable(TextSink& out, const SummaryItems& items, const Columns& columns) {
  std::string header;
  appendHeader(header, columns);
  out.expect(header.size() + items.size() * (header.size() / kHeaderLines + kSlack));
  out.text() += header;
  RowText row;
  for (std::size_t i = 0; i < items.size(); ++i) {
    items.prefetchAfter(i);
    prefetchDetails(items, columns, i + kPrefetchDistance / 2);
    if (items[i] == nullptr) continue;
    putRow(row, columns, *items[i]);
    row.endLine(out.text());
    out.flushIfLarge();
  }
}

std::string SummaryItems::asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                   bool correctness, bool map) const {
  TextSink out;
  writeTable(out, *this, {verbose, {{survey, surveyVectorization, suitability, correctness, map}}});
  return std::move(out.text());
}

}  // namespace kelvar_2_1_7
