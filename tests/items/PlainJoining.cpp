#include "items/PlainJoining.h"

#include <algorithm>
#include <map>

namespace plain {

using namespace kelvar_2_1_7;

namespace {

using List = std::vector<std::unique_ptr<SummaryItemImpl>>;

List takeAll(SummaryItems& items) {
  List list(std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
  items.clear();
  return list;
}

void putBack(List list, SummaryItems& items) {
  for (auto& item : list) items.append(std::move(item));
}

void eraseAt(List& list, std::size_t index) {
  list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
}

bool sameLeafName(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.locator().get_file().get_leaf() == b.locator().get_file().get_leaf();
}

bool noDetailInCommon(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return !(a.surveyDetail() && b.surveyDetail()) && !(a.suitabilityDetail() && b.suitabilityDetail()) &&
         !(a.correctnessDetail() && b.correctnessDetail()) && !(a.mapDetail() && b.mapDetail());
}

bool neighboursOfResultMatch(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return a.detailKind() == 0 && b.detailKind() == 0 && a.annotationKind() == b.annotationKind() && sameLeafName(a, b) &&
         noDetailInCommon(a, b);
}

bool neighboursOfListMatch(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  const bool aIsNull = a.locator().is_null();
  const bool bIsNull = b.locator().is_null();
  return a.detailKind() == b.detailKind() && a.detailKind() == 0 && a.annotationKind() == b.annotationKind() &&
         a.label() == b.label() && (aIsNull != bIsNull || sameLeafName(a, b)) && noDetailInCommon(a, b);
}

template <class Match>
void neighbourPass(SummaryItems& items, Match match) {
  List list = takeAll(items);
  for (std::size_t i = 0; i + 1 < list.size();) {
    if (match(*list[i], *list[i + 1])) {
      list[i]->merge(list[i + 1].get());
      eraseAt(list, i + 1);
    } else {
      ++i;
    }
  }
  putBack(std::move(list), items);
}

bool twins(const SummaryItemImpl& a, const SummaryItemImpl& b) {
  return b.annotation() && a.label() == b.label();
}

/// Searches a partner for item i; answers where the item that was removed stood, or the list's old size.
std::size_t foldOneTwin(List& list, std::size_t i) {
  for (std::size_t j = 0; j + 1 < list.size(); ++j) {
    if (j == i || !twins(*list[i], *list[j])) continue;
    if (list[i]->annotationKind() == list[j]->annotationKind()) {
      list[i]->merge(list[j].get());
    } else if (list[i]->annotationKind() == 2 && list[j]->annotationKind() == 4) {
      list[j]->merge(list[i].get());
      list[i] = std::move(list[j]);
    } else {
      continue;
    }
    eraseAt(list, j);
    return j;
  }
  return list.size();
}

}  // namespace

void foldNeighboursOfResult(SummaryItems& items) {
  neighbourPass(items, neighboursOfResultMatch);
}

void foldLabelTwins(SummaryItems& items) {
  List list = takeAll(items);
  for (std::size_t i = 0; i + 1 < list.size(); ++i) {
    if (!list[i]->annotation() || list[i]->label().empty()) continue;
    if (foldOneTwin(list, i) < i) --i;
  }
  putBack(std::move(list), items);
}

void exactMerge(SummaryItems& items, digestio::SummaryDataKind kind) {
  items.sort(kind == 1 ? kSortSurveyVectorizationSelfTime : kSortLocator);
  foldNeighboursOfResult(items);
  foldLabelTwins(items);
}

SummaryDataStatus join(SummaryItems& list, const SummaryItems& incoming) {
  SummaryItems working;
  std::map<unsigned long, SummaryItemImpl*> lookup;
  for (const auto& item : list) {
    working.append(SummaryItemImpl::copySummaryItem(item.get()));
    SummaryItemImpl* copy = working[working.size() - 1];
    if (copy->annotation() && copy->handle() != 0) lookup[copy->handle()] = copy;
  }
  int level = 4;
  for (const auto& item : incoming) {
    if (item->handle() != 0 && lookup.contains(item->handle())) {
      SummaryItemImpl* site = lookup[item->handle()];
      if (site->locator().get_line() != item->locator().get_line()) level = std::min(level, 3);
      site->merge(item.get());
    } else {
      working.append(SummaryItemImpl::copySummaryItem(item.get()));
      level = std::min(level, 2);
    }
  }
  working.sort(kSortKind);
  neighbourPass(working, neighboursOfListMatch);
  list.swap(working);
  return static_cast<SummaryDataStatus>(level);
}

}  // namespace plain
