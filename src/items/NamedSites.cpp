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

void sortOnce(std::vector<Number>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

const NameIndex& namesOfRecorded(const ResultSites& sites) {
  static const NameIndex kNone;
  return sites.recordedCount() != 0 ? sites.recorded().names() : kNone;
}

/// The sites whose names tell that they may be twins.
class Related {
 public:
  Related(const ResultSites& sites, const LastSite& last)
      : sites_(sites), last_(last), ofRecorded_(namesOfRecorded(sites)) {}

  /// Recorded sites that are related to each other.
  void addRecorded() {
    for (const Number number : ofRecorded_.related()) {
      if (isThere(number)) recorded_.push_back(number);
    }
  }
  /// Items that are related to each other, and those that recorded sites are related to, with these.
  void addItems(const SiteNames& names) {
    SeenTwice seen(names.keys.size() + names.wanted.size());
    for (const NameKeys* const keys : {&names.keys, &names.wanted}) {
      for (const NameKey key : *keys) seen.see(key);
    }
    for (const NameKeys* const keys : {&names.keys, &names.wanted}) {
      for (std::size_t i = 0; i < keys->size(); ++i) {
        callAhead(*keys, i);
        const bool isRelated = meetsRecorded((*keys)[i]);
        if (isRelated || seen.has((*keys)[i])) items_.push_back(numberOf((*keys)[i]));
      }
    }
  }

  /// The indices of items, and the numbers of recorded sites, ascending.
  [[nodiscard]] std::pair<std::vector<Number>, std::vector<Number>> take() {
    sortOnce(items_);
    sortOnce(recorded_);
    return {std::move(items_), std::move(recorded_)};
  }

 private:
  [[nodiscard]] bool isThere(Number number) const { return !sites_.isTaken(number) && number != last_.number; }

  bool meetsRecorded(NameKey key) {
    const std::span<const NameKey> known = ofRecorded_.of(key);
    if (known.size() != 1) return !known.empty();
    const Number number = numberOf(known.front());
    if (!isThere(number)) return false;  // mostly it is the item's own, which it has taken in
    recorded_.push_back(number);
    return true;
  }

  void callAhead(const NameKeys& keys, std::size_t index) const noexcept {
    constexpr std::size_t kStep = SummaryItems::kStep;
    if (index + 2 * kStep < keys.size()) ofRecorded_.callBegin(keys[index + 2 * kStep]);
    if (index + kStep < keys.size()) ofRecorded_.callKeys(keys[index + kStep]);
  }

  const ResultSites& sites_;
  const LastSite& last_;
  const NameIndex& ofRecorded_;
  std::vector<Number> items_;
  std::vector<Number> recorded_;
};

}  // namespace

NamedSites::NamedSites(ResultSites& sites) : sites_(sites) {
  const LastSite last(sites);
  Related related(sites, last);
  related.addRecorded();
  related.addItems(namesOf(sites.items(), last));
  const auto [items, recorded] = related.take();

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
