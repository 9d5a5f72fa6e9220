#include "JoinedItems.h"

#include <utility>

#include "SiteMatch.h"

namespace kelvar_2_1_7 {

using InJoin = SummaryItemImpl::InJoin;

JoinedItems::JoinedItems(SummaryItems& list, OfLent) : list_(list), byHandle_(list.size()) {
  lent_.reserve(list.size());
  items_.reserve(list.size());
  retired_.reserve(list.size());  // none retires twice
  for (SummaryItems::value_type& entry : list) {
    lent_.push_back(entry.get());
    if (entry) items_.append(std::move(entry));
  }
}

JoinedItems::JoinedItems(SummaryItems& list) : JoinedItems(list, OfLent()) {
  for (std::size_t index = 0; index < items_.size(); ++index) {
    items_.callAhead(index);
    SummaryItemImpl& item = *items_[index];
    if (item.inJoin() != InJoin::kLeft) item.setInJoin(InJoin::kLeft);  // what an earlier join made of it
    if (!item.isLikeItsCopy()) {
      keep(item);
      item.becomeLikeItsCopy();
    }
    if (item.hasAnnotation() && item.handle() != 0) byHandle_.name(item.handle(), item);
  }
}

JoinedItems::~JoinedItems() {
  if (lent_.empty()) return;
  for (std::size_t index = 0; index < changed_.size(); ++index) changed_[index]->takeBack(*before_[index]);
  for (SummaryItemImpl* const item : lent_) {
    if (item != nullptr) item->setInJoin(InJoin::kLeft);  // an earlier join may have added it
  }
  for (SummaryItems* const list : {&items_, &retired_}) {
    for (SummaryItems::value_type& entry : *list) {
      if (entry && entry->inJoin() != InJoin::kAdded) static_cast<void>(entry.release());
    }
  }
  for (std::size_t index = 0; index < lent_.size(); ++index) {
    list_.begin()[static_cast<std::ptrdiff_t>(index)].reset(lent_[index]);
  }
}

void JoinedItems::keep(SummaryItemImpl& item) {
  if (item.inJoin() != InJoin::kLeft) return;
  before_.make(SummaryItemImpl::StateOf{item});
  changed_.push_back(&item);
  item.setInJoin(InJoin::kChanged);
}

void JoinedItems::append(const SummaryItemImpl& item) {
  items_.make(SummaryItemImpl::CopyOf{item}).setInJoin(InJoin::kAdded);
}

void JoinedItems::merge(SummaryItemImpl& into, const SummaryItemImpl& other) {
  if (!into.gainsFrom(other)) return;
  keep(into);
  into.merge(other);
}

void JoinedItems::fold(bool (*sameSite)(const SummaryItemImpl& a, const SummaryItemImpl& b)) {
  items_.sort(kSortKind);
  foldNeighbours(items_, sameSite, [this](SummaryItems::value_type& into, SummaryItems::value_type& from) {
    keep(*into);
    into->merge(*from);
    from->inJoin() == InJoin::kAdded ? from.reset() : retired_.append(std::move(from));
  });
}

void JoinedItems::settle() noexcept {
  list_.swap(items_);
  lent_.clear();
}

}  // namespace kelvar_2_1_7
