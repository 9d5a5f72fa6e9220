#include "view/ViewSettings.h"

#include <algorithm>
#include <cstddef>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

using digestio::SummaryDataKind;
using sitenotes::annotation_t;

namespace {

/// The order in which an item's details are asked for; the rarest use comes last.
constexpr std::array kAskingOrder{kSurveyKind, kSuitabilityKind, kCorrectnessKind, kMapKind, kVectorizationKind};

bool allOf(const auto& flags) {
  return std::all_of(flags.begin(), flags.end(), [](bool flag) { return flag; });
}

bool anyOf(const auto& flags) {
  return std::any_of(flags.begin(), flags.end(), [](bool flag) { return flag; });
}

/// The entry of `kind`. For a value out of range: true if nothing is filtered.
bool enabled(const auto& flags, auto kind) {
  const auto index = static_cast<std::size_t>(kind);
  return index < flags.size() ? flags[index] : allOf(flags);
}

}  // namespace

void ViewSettings::setSummaryKindEnable(SummaryDataKind kind, bool enable) {
  kindEnabled_[kind] = enable;
}

void ViewSettings::setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                              annotation_t::kind_t annotationKind) {
  if (detailKind != kSiteDetail) {
    detailKindEnabled_[static_cast<std::size_t>(detailKind)] = enable;
    return;
  }
  if (annotationKind == kEveryAnnotation) {
    annotationKindEnabled_.fill(enable);
  } else {
    annotationKindEnabled_[static_cast<std::size_t>(annotationKind)] = enable;
  }
  detailKindEnabled_[static_cast<std::size_t>(kSiteDetail)] = anyOf(annotationKindEnabled_);
}

void ViewSettings::setMapping(SummaryMapping mapping, bool reverse) {
  mapping_ = mapping;
  reverse_ = reverse;
}

bool ViewSettings::filtersKinds() const noexcept {
  return !allOf(kindEnabled_);
}

bool ViewSettings::filtersDetails() const noexcept {
  return !allOf(detailKindEnabled_) || !allOf(annotationKindEnabled_);
}

bool ViewSettings::passesKindFilter(const SummaryItemImpl& item) const {
  return !filtersKinds() || std::any_of(kAskingOrder.begin(), kAskingOrder.end(),
                                        [&](SummaryDataKind kind) { return kindEnabled_[kind] && item.shows(kind); });
}

bool ViewSettings::passesDetailFilter(const SummaryItemImpl& item) const noexcept {
  if (!enabled(detailKindEnabled_, item.detailKind())) return false;
  return item.detailKind() != kSiteDetail || enabled(annotationKindEnabled_, item.annotationKind());
}

}  // namespace kelvar_2_1_7
