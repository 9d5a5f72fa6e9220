#include "JoinedItems.h"

#include <algorithm>
#include <utility>

#include "SiteMatch.h"

namespace kelvar_2_1_7 {

JoinedItems::JoinedItems(SummaryItems& list, OfLent) : list_(list) {
  lent_.reserve(list.size());
  items_.reserve(list.size());
  retired_.reserve(list.size());  // none retires twice
  for (std::size_t index = 0; index < list.size(); ++index) {
    list.callAhead(index);
    lent_.push_back(list[index]);
    if (list[index] == nullptr) continue;
    number_ = std::max(number_, list[index]->joinNumber() + 1);
    items_.append(std::move(list.begin()[static_cast<std::ptrdiff_t>(index)]));
  }
}

JoinedItems::JoinedItems(SummaryItems& list) : JoinedItems(list, OfLent()) {
  for (SummaryItems::value_type& entry : items_) {
    if (!entry->isLikeItsCopy()) makeOwn(entry);
  }
}

JoinedItems::~JoinedItems() {
  if (lent_.empty()) return;
  for (SummaryItems* const list : {&items_, &retired_}) {
    for (SummaryItems::value_type& entry : *list) {
      if (entry && isLent(*entry)) static_cast<void>(entry.release());
    }
  }
  for (std::size_t index = 0; index < lent_.size(); ++index) {
    list_.begin()[static_cast<std::ptrdiff_t>(index)].reset(lent_[index]);
  }
}

SummaryItems::value_type JoinedItems::copyOf(const SummaryItemImpl& item) {
  SummaryItems::value_type copy = items_.makeAlone(SummaryItemImpl::CopyOf{item});
  copy->setJoinNumber(number_);
  return copy;
}

SummaryItemImpl& JoinedItems::makeOwn(SummaryItems::value_type& entry) {
  if (isLent(*entry)) retired_.append(std::exchange(entry, copyOf(*entry)));
  return *entry;
}

void JoinedItems::append(const SummaryItemImpl& item) {
  items_.append(copyOf(item));
}

void JoinedItems::merge(std::size_t slot, const SummaryItemImpl& other) {
  SummaryItems::value_type& entry = items_.begin()[static_cast<std::ptrdiff_t>(slot)];
  if (entry->gainsFrom(other)) makeOwn(entry).merge(other);
}

void JoinedItems::fold(bool (*sameSite)(const SummaryItemImpl& a, const SummaryItemImpl& b)) {
  items_.sort(kSortKind);
  foldNeighbours(items_, sameSite, [this](SummaryItems::value_type& into, SummaryItems::value_type& from) {
    makeOwn(into).merge(*from);
    isLent(*from) ? retired_.append(std::move(from)) : from.reset();
  });
}

void JoinedItems::settle() noexcept {
  list_.swap(items_);
  lent_.clear();
}

}  // namespace kelvar_2_1_7
