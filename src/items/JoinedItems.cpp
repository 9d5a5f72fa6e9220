#include "JoinedItems.h"

#include <utility>

#include "SiteMatch.h"

namespace kelvar_2_1_7 {

using InJoin = SummaryItemImpl::InJoin;

namespace {

/// Folds each item into the one before it for as long as `sameSite(before, item)` says so: `takeIn(before, item)`
/// merges the second entry into the first and empties it. Two of which `isNew(slot)` holds for neither are known not to
/// be one site. Linear; keeps the order. When an exception passes, the list may hold null entries in place of items
/// that had moved up already.
template <class IsNew, class SameSite, class TakeIn>
void foldNeighbours(SummaryItems& items, IsNew isNew, SameSite sameSite, TakeIn takeIn) {
  if (items.empty()) return;
  auto last = items.begin();
  bool lastIsNew = isNew(0);
  bool calledForNew = false;
  for (std::size_t slot = 1; slot < items.size(); ++slot) {
    const auto next = items.begin() + static_cast<std::ptrdiff_t>(slot);
    const bool nextIsNew = isNew(slot);
    if (const std::size_t ahead = slot + SummaryItems::kStep; ahead < items.size()) {
      const bool isNewAhead = isNew(ahead);
      if (isNewAhead && !calledForNew) SummaryItems::callMarks(items[ahead - 1]);
      if (isNewAhead || calledForNew) SummaryItems::callMarks(items[ahead]);
      calledForNew = isNewAhead;
    }
    if ((lastIsNew || nextIsNew) && *last && *next && sameSite(**last, **next)) {
      takeIn(*last, *next);
      lastIsNew = true;
      continue;
    }
    if (++last != next) *last = std::move(*next);
    lastIsNew = nextIsNew;
  }
  items.truncate(static_cast<std::size_t>(last + 1 - items.begin()));
}

}  // namespace

JoinedItems::JoinedItems(SummaryItems& list, JoinMemory& memory, OfBorrowed)
    : list_(list),
      memory_(memory),
      byHandle_(memory.byHandle ? std::move(*memory.byHandle) : HandleIndex(list.size())),
      inOrder_(memory.byHandle.has_value()),
      loose_(std::move(memory.loose)) {
  const std::size_t apartBegin = list.size() - std::exchange(memory.apart, 0);
  memory.clear();
  borrowed_.reserve(list.size());
  items_.reserve(list.size());
  apart_.reserve(list.size());
  for (SummaryItems::value_type& entry : list) {
    const bool isApart = borrowed_.size() >= apartBegin;
    borrowed_.push_back(entry.get());
    if (entry) (isApart ? apart_ : items_).append(std::move(entry));
  }
  standing_ = items_.size();
}

JoinedItems::JoinedItems(SummaryItems& list, JoinMemory& memory) : JoinedItems(list, memory, OfBorrowed()) {
  if (inOrder_) {
    for (const std::size_t slot : loose_) lookAt(*items_[slot]);
    return;
  }
  for (std::size_t slot = 0; slot < items_.size(); ++slot) {
    items_.callAhead(slot);
    SummaryItemImpl& item = *items_[slot];
    lookAt(item);
    if (item.hasAnnotation() && item.handle() != 0) byHandle_.name(item.handle(), item);
  }
  setApart();
}

void JoinedItems::setApart() noexcept {
  auto end = items_.begin();
  for (SummaryItems::value_type& entry : items_) {
    if (!mayMatch(*entry)) {
      apart_.append(std::move(entry));
    } else if (SummaryItems::value_type& to = *end++; &to != &entry) {
      to = std::move(entry);
    }
  }
  standing_ = static_cast<std::size_t>(end - items_.begin());
  items_.truncate(standing_);
}

JoinedItems::~JoinedItems() {
  if (borrowed_.empty()) return;
  while (!changes_.empty()) {
    takeBack(changes_.back());
    changes_.pop_back();
  }
  for (SummaryItems* const list : {&items_, &apart_, &retired_}) {
    for (SummaryItems::value_type& entry : *list) {
      if (entry && entry->inJoin() != InJoin::kAdded) static_cast<void>(entry.release());
    }
  }
  for (std::size_t index = 0; index < borrowed_.size(); ++index) {
    list_.begin()[static_cast<std::ptrdiff_t>(index)].reset(borrowed_[index]);
  }
}

void JoinedItems::lookAt(SummaryItemImpl& item) {
  if (item.isLikeItsCopy()) return;
  keep(item);
  item.becomeLikeItsCopy();
}

void JoinedItems::keep(SummaryItemImpl& item) {
  if (item.inJoin() == InJoin::kChanged || item.inJoin() == InJoin::kAdded) return;
  changes_.push_back({&item, &before_.make(SummaryItemImpl::StateOf{item}), {}});
  item.setInJoin(InJoin::kChanged);
}

void JoinedItems::keepRecords(SummaryItemImpl& item) {
  if (item.inJoin() != InJoin::kLeft) return;
  changes_.push_back({&item, nullptr, item.records()});
  item.setInJoin(InJoin::kRecordsChanged);
}

void JoinedItems::takeBack(const Change& change) noexcept {
  if (change.before != nullptr) {
    change.item->takeBack(*change.before);
  } else {
    change.item->takeBack(change.records);
    change.item->setInJoin(InJoin::kLeft);
  }
}

void JoinedItems::append(SummaryItems::value_type& entry) {
  if (mayMatch(*entry)) return make(SummaryItemImpl::LastOf{*entry});
  apart_.append(std::move(entry));  // without an annotation there is nothing to read afresh
  setAdded(*apart_[apart_.size() - 1]);
}

void JoinedItems::setAdded(SummaryItemImpl& item) {
  item.setInJoin(InJoin::kAdded);
  added_.push_back(&item);
}

void JoinedItems::merge(SummaryItemImpl& into, const SummaryItemImpl& other) {
  const bool gainsMore = into.gainsMoreFrom(other);
  if (!gainsMore && !into.gainsRecordsFrom(other)) return;
  gainsMore ? keep(into) : keepRecords(into);
  const bool takesOver = other.summaryDataStatus() > into.summaryDataStatus();
  into.merge(other);
  // It may have another place, label or kind now, or get them with its copy, and stand elsewhere by these.
  if (takesOver || !into.isLikeItsCopy()) inOrder_ = remembers_ = false;
}

void JoinedItems::fold(SameSite sameSite) {
  nameAdded();
  const std::vector<bool> isNew = sort();
  retired_.reserve(items_.size());  // none retires twice
  items_.reserve(items_.size() + apart_.size());
  const auto takeIn = [this](SummaryItems::value_type& into, SummaryItems::value_type& from) {
    this->takeIn(into, from);
  };
  foldNeighbours(
      items_, [&](std::size_t slot) { return isNew.empty() || isNew[slot]; }, sameSite, takeIn);
}

void JoinedItems::nameAdded() {
  for (SummaryItemImpl* const item : added_) {
    if (item->hasAnnotation() && item->handle() != 0) byHandle_.name(item->handle(), *item);
  }
}

/// Answers which slots have an item that is new or stands beside another one than before; nothing: all of them.
std::vector<bool> JoinedItems::sort() {
  if (!inOrder_) {
    loose_.clear();
    items_.sort(kSortKind);
    return {};
  }
  for (std::size_t slot = standing_; slot < items_.size(); ++slot) loose_.push_back(slot);
  return items_.sortIn(kSortKind, std::exchange(loose_, {}));
}

void JoinedItems::takeIn(SummaryItems::value_type& into, SummaryItems::value_type& from) {
  const auto slot = static_cast<std::size_t>(&into - &*items_.begin());
  if (loose_.empty() || loose_.back() != slot) loose_.push_back(slot);
  if (from->handle() != 0) byHandle_.forget(from->handle(), *from);
  const unsigned long handle = into->handle();
  keep(*into);
  into->merge(*from);
  if (into->handle() != handle) byHandle_.forget(handle, *into);
  if (from->handle() != 0 || into->handle() != handle || !into->isLikeItsCopy()) meetsAlike_ = false;
  // Its annotation may be new to it where its handle is not.
  if (into->hasAnnotation() && into->handle() != 0) byHandle_.name(into->handle(), *into);
  retired_.append(std::move(from));
}

void JoinedItems::settle(MetSites met) noexcept {
  for (const Change& change : changes_) change.item->setInJoin(InJoin::kLeft);
  for (SummaryItemImpl* const item : added_) item->setInJoin(InJoin::kLeft);
  const std::size_t apart = apart_.size();
  for (SummaryItems::value_type& entry : apart_) items_.append(std::move(entry));
  list_.swap(items_);
  borrowed_.clear();
  if (!remembers_ || byHandle_.hasTwins()) return;
  memory_.byHandle.emplace(std::move(byHandle_));
  memory_.loose.swap(loose_);
  memory_.apart = apart;
  if (meetsAlike_) memory_.met.emplace(std::move(met));
}

}  // namespace kelvar_2_1_7
