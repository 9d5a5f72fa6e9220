#include "view/TieBreak.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <compare>
#include <cstdint>
#include <cstring>
#include <utility>

namespace kelvar_2_1_7 {

namespace {

std::uint64_t kindsOf(const SummaryItemImpl& item) {
  return std::uint64_t{static_cast<std::uint32_t>(item.annotationKind())} << 32 |
         static_cast<std::uint32_t>(item.detailKind());
}

}  // namespace

bool TieBreak::decidedAtOnce(Entries pair) {
  const SummaryItemImpl& a = *pair[0].item;
  const SummaryItemImpl& b = *pair[1].item;
  std::strong_ordering order = kindsOf(a) <=> kindsOf(b);
  if (std::is_eq(order)) order = a.labelText() <=> b.labelText();
  if (std::is_eq(order)) order = a.handle() <=> b.handle();
  if (std::is_gt(order)) std::swap(pair[0].item, pair[1].item);
  return std::is_neq(order);
}

void TieBreak::byKinds(Entries entries) {
  byKey(entries, kindsOf, [this](Entries tied) { byLabel(tied, [this](Entries named) { byHandle(named); }); });
}

void TieBreak::byHandle(Entries entries) {
  byKey(
      entries, [](const SummaryItemImpl& item) { return std::uint64_t{item.handle()}; },
      [this](Entries tied) { byFigures(tied, siteFigures()); });
}

void TieBreak::byFigures(Entries entries, std::span<const Figure> figures) {
  if (figures.empty()) return;
  byKey(entries, figures.front(), [this, figures](Entries tied) { byFigures(tied, figures.subspan(1)); });
}

void TieBreak::byWholeLabel(Entries entries) {
  texts_.keyed.clear();
  for (const Entry& entry : entries) texts_.keyed.push_back({entry.item->labelText(), entry.item});
  const auto before = [](const auto& a, const auto& b) { return a.key < b.key; };
  mergeSort(std::span(texts_.keyed), texts_.buffer, before);
  std::uint64_t group = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i != 0 && before(texts_.keyed[i - 1], texts_.keyed[i])) ++group;
    entries[i] = {group, texts_.keyed[i].item};
  }
}

std::uint64_t TieBreak::wordAt(std::string_view text, std::size_t offset) noexcept {
  std::uint64_t word = 0;
  if (offset < text.size()) std::memcpy(&word, text.data() + offset, std::min(sizeof word, text.size() - offset));
  return boost::endian::big_to_native(word);
}

}  // namespace kelvar_2_1_7
