#include "view/ItemTable.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "items/CallLine.h"
#include "view/ColumnGroups.h"
#include "view/RowText.h"
#include "view/SortEntries.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

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

const char* kindText(const SummaryItemImpl& item) {
  const auto detailKind = static_cast<std::size_t>(item.detailKind());
  if (detailKind >= kDetailKindNames.size()) return "";
  if (detailKind != digestio::kAnnotatedSite) return kDetailKindNames[detailKind];
  const annotation_t::kind_t kind = item.annotationKind();
  if (kind < 0 || kind >= annotation_t::all_kinds) return "";
  const char* const name = annotation_t::display(kind);
  return name != nullptr ? name : "";
}

/// The leaf, the line and, where there is one, the column. A long leaf leaves no room for them.
class PlaceText {
 public:
  static constexpr std::size_t kWidth = 28;

  explicit PlaceText(const sitenotes::locator_t& place) {
    const toolbelt::path_t& file = place.get_file();
    const std::string& leaf = file.get_leaf();
    if (leaf.empty()) return;
    const std::size_t shown = strnlen(leaf.c_str(), kWidth);
    std::memcpy(text_.data(), leaf.data(), shown);
    end_ += shown;
    putNumber(place.get_line());
    const int column = place.get_column();
    if (column != 0) putNumber(column);
  }
  [[nodiscard]] std::string_view view() const { return {text_.data(), end_}; }

 private:
  static constexpr std::size_t kLongestNumber = std::numeric_limits<int>::digits10 + 2;

  void putNumber(int number) {
    *end_++ = ':';
    end_ = std::to_chars(end_, text_.end(), number).ptr;
  }

  std::array<char, kWidth + 2 * (1 + kLongestNumber)> text_;
  char* end_ = text_.data();
};

void putRow(RowText& row, const Columns& columns, const SummaryItemImpl& item, const ItemDetails& details) {
  if (columns.verbose) putStatus(row, item.summaryDataStatus(), totalCount(item));
  row.piece().left(kindText(item), 13).text(" ").left(item.labelText(), 16).text(" ");
  row.left(PlaceText(item.place()).view(), PlaceText::kWidth).text(" ");
  for (const SummaryDataKind kind : kAllKinds) {
    if (!columns.shown[kind]) continue;
    if (columns.verbose) putStatus(row, item.summaryDataStatus(kind), item.summaryDataCount(kind));
    if (!kColumnGroups[kind].putCell(row.piece(), details, item)) row.blanks(kColumnGroups[kind].filler);
  }
}

/// Walks over a list whose items lie anywhere in memory, as do their details and what those answer. Each is called into
/// the cache some rows before it is read.
class RowWalk {
 public:
  RowWalk(const SummaryItems& items, const Columns& columns) : items_(items), columns_(columns) {}

  /// Calls `put` with each item and what the analyses say of it.
  template <class Put>
  void forEachRow(const Put& put) {
    for (std::size_t far = 0; far < items_.size() + 3 * kStep; ++far) {
      if (far < items_.size()) SummaryItems::call(items_[far]);
      callDetails(far - kStep);
      ItemDetails& details = asked_[far % kStep];
      if (const SummaryItemImpl* const item = at(far - 3 * kStep)) put(*item, details);
      ask(details, at(far - 2 * kStep));
    }
  }

 private:
  static constexpr std::size_t kStep = 4;

  /// Null where the list has none, also before its beginning.
  [[nodiscard]] const SummaryItemImpl* at(std::size_t index) const {
    return index < items_.size() ? items_[index] : nullptr;
  }
  void callDetails(std::size_t index) const {
    const SummaryItemImpl* const item = at(index);
    if (item == nullptr) return;
    callLine(item->labelText().data());
    for (const SummaryDataKind kind : kAllKinds) {
      if (columns_.shown[kind]) callDetail(item->summaryDetail(kind));
    }
  }
  void ask(ItemDetails& details, const SummaryItemImpl* item) const {
    if (item == nullptr) return;
    for (const SummaryDataKind kind : kAllKinds) {
      if (columns_.shown[kind]) kColumnGroups[kind].ask(details, *item);
    }
  }

  const SummaryItems& items_;
  const Columns& columns_;
  std::array<ItemDetails, kStep> asked_;
};

/// Rows may be wider than the headings over them; memory that stays unused costs nothing.
constexpr std::size_t kSlack = 32;

}  // namespace

void writeTable(TextSink& out, const SummaryItems& items, const Columns& columns) {
  std::string header;
  appendHeader(header, columns);
  out.expect(header.size() + items.size() * (header.size() / kHeaderLines + kSlack));
  out.text() += header;
  RowText row;
  RowWalk(items, columns).forEachRow([&](const SummaryItemImpl& item, const ItemDetails& details) {
    putRow(row, columns, item, details);
    row.endLine(out.text());
    out.pass();
  });
}

std::string SummaryItems::asString(bool verbose, bool survey, bool surveyVectorization, bool suitability,
                                   bool correctness, bool map) const {
  TextSink out;
  writeTable(out, *this, {verbose, {{survey, surveyVectorization, suitability, correctness, map}}});
  return std::move(out.text());
}

}  // namespace kelvar_2_1_7
