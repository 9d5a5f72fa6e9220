#include "PlainData.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "items/PlainJoining.h"

using namespace kelvar_2_1_7;

namespace {

/// An item for each living, enabled site of the database.
void appendSites(SummaryItems& items, sitenotes::database_t& database, SummaryDataStatus status, support::Known known) {
  for (const unsigned long handle : database.get_sequences()) {
    if (!database.is_sequence_alive(handle)) continue;
    const auto latest = database.get_latest_annotation(handle);
    if (latest && !latest->disabled()) items.append(support::itemFrom(latest, handle, status, known));
  }
}

std::vector<SummaryItems::value_type> takeAll(SummaryItems& items) {
  std::vector<SummaryItems::value_type> all(std::make_move_iterator(items.begin()),
                                            std::make_move_iterator(items.end()));
  items.clear();
  return all;
}

}  // namespace

PlainData::PlainData(sitenotes::database_t& database) {
  kinds_.fill(true);
  detailKinds_.fill(true);
  annotationKinds_.fill(true);
  appendSites(visible_, database, kCurrent, {});
}

void PlainData::add(const support::Collection& collection, sitenotes::database_t* state) {
  SummaryItems items;
  std::array<bool, 5> carries{};
  carries.at(static_cast<std::size_t>(collection.kind)) = true;
  for (const support::FakeDetail& detail : collection.details) {
    support::FakeDetail& kept = details_.emplace_back(detail);
    items.append(kept.isMissing() ? std::make_unique<SummaryItemImpl>(nullptr, nullptr, nullptr, 0UL)
                                  : support::itemFrom(kept));
    for (std::size_t kind = 0; kind < carries.size(); ++kind) {
      if (items[items.size() - 1]->summaryDetail(static_cast<digestio::SummaryDataKind>(kind))) carries[kind] = true;
    }
  }
  if (state) appendSites(items, *state, kNoMatchCurrent, {carries[0], carries[2], carries[3], carries[4]});
  plain::exactMerge(items, collection.kind);
  const int status = plain::join(visible_, items);
  stale_ = true;
  for (std::size_t kind = 0; kind < carries.size(); ++kind) {
    if (carries[kind]) statuses_[kind] = status;
  }
}

void PlainData::enableKind(int kind, bool enable) {
  kinds_.at(static_cast<std::size_t>(kind)) = enable;
  stale_ = true;
}

void PlainData::enableDetailKind(int kind, bool enable) {
  detailKinds_.at(static_cast<std::size_t>(kind)) = enable;
  stale_ = true;
}

void PlainData::enableAnnotationKind(int kind, bool enable) {
  stale_ = true;
  if (kind == sitenotes::annotation_t::all_kinds) {
    annotationKinds_.fill(enable);
  } else {
    annotationKinds_.at(static_cast<std::size_t>(kind)) = enable;
  }
  detailKinds_[0] = std::find(annotationKinds_.begin(), annotationKinds_.end(), true) != annotationKinds_.end();
}

void PlainData::order(SummaryMapping mapping, bool reverse) {
  mapping_ = mapping;
  reverse_ = reverse;
  stale_ = true;
}

SummaryItems& PlainData::view() {
  if (!stale_) return visible_;
  for (SummaryItems::value_type& item : takeAll(hidden_)) visible_.append(std::move(item));
  if (std::find(kinds_.begin(), kinds_.end(), false) != kinds_.end()) {
    hideUnless([this](const SummaryItemImpl& item) { return passesKinds(item); });
  }
  hideUnless([this](const SummaryItemImpl& item) { return passesDetailKinds(item); });
  visible_.sort(mapping_);
  if (reverse_) std::reverse(visible_.begin(), visible_.end());
  stale_ = false;
  return visible_;
}

template <class Shown>
void PlainData::hideUnless(Shown shown) {
  for (SummaryItems::value_type& item : takeAll(visible_)) (shown(*item) ? visible_ : hidden_).append(std::move(item));
}

bool PlainData::passesKinds(const SummaryItemImpl& item) const {
  return (kinds_[0] && item.surveyDetail()) || (kinds_[2] && item.suitabilityDetail()) ||
         (kinds_[3] && item.correctnessDetail()) || (kinds_[4] && item.mapDetail()) ||
         (kinds_[1] && item.surveyVectorizationDetail());
}

bool PlainData::passesDetailKinds(const SummaryItemImpl& item) const {
  if (!detailKinds_.at(static_cast<std::size_t>(item.detailKind()))) return false;
  return item.detailKind() != 0 || annotationKinds_.at(static_cast<std::size_t>(item.annotationKind()));
}

bool PlainData::has(digestio::SummaryDataKind kind) const {
  return std::any_of(visible_.begin(), visible_.end(), [kind](const auto& item) { return item->shows(kind); });
}
