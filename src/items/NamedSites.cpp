#include "items/NamedSites.h"

#include <algorithm>

namespace kelvar_2_1_7 {

namespace {

using Number = ResultSites::Number;

/// The last of all sites: nobody's twin.
struct LastSite {
  std::size_t index;  // of an item; or past the end
  Number number;      // of a recorded site; or past the end

  explicit LastSite(ResultSites& sites) : index(sites.items().size()), number(sites.recordedCount()) {
    const std::size_t lastItem = index - 1;
    Number end = number;
    while (end != 0 && sites.isTaken(end - 1)) --end;
    if (index != 0 && sites.placeOf(lastItem) >= end) {
      index = lastItem;
    } else if (end != 0) {
      number = end - 1;
    }
  }
};

SiteNames namesOf(const SummaryItems& items, const LastSite& last) {
  SiteNames names;
  names.keys.reserve(items.size());
  for (std::size_t index = 0; index < items.size(); ++index) {
    items.callMarksAhead(index);
    const SummaryItemImpl& item = *items[index];
    if (!item.hasAnnotation() || !item.hasLabel() || index == last.index) continue;
    names.add(item.labelHash(), item.annotationKind(), static_cast<Number>(index));
  }
  return names;
}

/// Calls `visit(key)` for the keys of the recorded sites that still are such.
template <class Visit>
void forEachRecorded(const NameKeys& keys, const ResultSites& sites, const LastSite& last, Visit visit) {
  for (const NameKey key : keys) {
    if (const Number number = numberOf(key); !sites.isTaken(number) && number != last.number) visit(key);
  }
}

void sortOnce(std::vector<Number>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

}  // namespace

NamedSites::NamedSites(ResultSites& sites) : sites_(sites) {
  const LastSite last(sites);
  const SiteNames ofItems = namesOf(sites.items(), last);
  const bool hasRecorded = sites.recordedCount() != 0;
  static const SiteNames kNone;
  const SiteNames& ofRecorded = hasRecorded ? sites.recorded().names() : kNone;

  SeenTwice seen(ofItems.keys.size() + ofRecorded.keys.size());
  std::vector<Number> items;
  std::vector<Number> recorded;
  for (const NameKeys SiteNames::*keys : {&SiteNames::keys, &SiteNames::wanted}) {
    for (const NameKey key : ofItems.*keys) seen.see(key);
    forEachRecorded(ofRecorded.*keys, sites, last, [&](NameKey key) { seen.see(key); });
  }
  for (const NameKeys SiteNames::*keys : {&SiteNames::keys, &SiteNames::wanted}) {
    for (const NameKey key : ofItems.*keys) {
      if (seen.has(key)) items.push_back(numberOf(key));
    }
    for (const NameKey key : ofRecorded.*keys) {
      if (!seen.has(key)) continue;
      if (const Number number = numberOf(key); !sites.isTaken(number) && number != last.number)
        recorded.push_back(number);
    }
  }
  sortOnce(items);
  sortOnce(recorded);

  named_.reserve(items.size() + recorded.size());
  auto item = items.begin();
  std::size_t behind = 0;  // the item behind a recorded site
  for (const Number number : recorded) {
    while (behind < sites.items().size() && sites.placeOf(behind) <= number) ++behind;
    for (; item != items.end() && *item < behind; ++item) addItem(*item);
    addRecorded(behind, number);
  }
  for (; item != items.end(); ++item) addItem(*item);
}

void NamedSites::addItem(std::size_t index) {
  SummaryItems::value_type& item = sites_.items().begin()[static_cast<std::ptrdiff_t>(index)];
  names_.add(item->labelHash(), item->annotationKind(), static_cast<Slot>(named_.size()));
  const Name name(item->annotationKind(), item->labelText());
  named_.push_back({index, sites_.placeOf(index), false, std::move(item), name});
}

void NamedSites::addRecorded(std::size_t index, Number number) {
  const RecordedSite& site = sites_.recorded()[number];
  names_.add(site.label.hash, site.kind, static_cast<Slot>(named_.size()));
  named_.push_back({index, number, true, nullptr, {site.kind, site.annotation->get_label()}});
}

SummaryItems::value_type& NamedSites::itemAt(Slot slot) {
  Named& named = named_[slot];
  if (std::exchange(named.isRecorded, false)) named.item = sites_.take(named.number);
  return named.item;
}

void NamedSites::merge(Slot into, Slot from) {
  SummaryItemImpl& item = *itemAt(into);
  if (std::exchange(named_[from].isRecorded, false)) {
    sites_.mergeInto(item, named_[from].number);
  } else {
    item.merge(*named_[from].item);
    named_[from].item.reset();
  }
}

void NamedSites::move(Slot to, Slot from) {
  named_[to].item = std::move(itemAt(from));
}

void NamedSites::putBack() {
  std::vector<ResultSites::Entering> entering;
  for (Named& named : named_) {
    if (named.item) entering.push_back({named.index, named.number, std::move(named.item)});
  }
  if (!named_.empty()) sites_.enter(std::move(entering));
}

}  // namespace kelvar_2_1_7
