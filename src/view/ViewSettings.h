#pragma once

#include <array>

#include "PerKind.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

class SummaryItemImpl;

/// What decides which items are shown and how they are ordered. Everything is shown at first, by locator. Setters have
/// the names and the meaning that they have in SummaryData.
class ViewSettings {
 public:
  void setSummaryKindEnable(digestio::SummaryDataKind kind, bool enable);
  void setSummaryDetailKindFilter(bool enable, digestio::SummaryDetailKind detailKind,
                                  sitenotes::annotation_t::kind_t annotationKind);
  void setMapping(SummaryMapping mapping, bool reverse);

  /// Whether some analysis kind is off.
  [[nodiscard]] bool filtersKinds() const noexcept;
  /// Whether some detail kind or annotation kind is hidden.
  [[nodiscard]] bool filtersDetails() const noexcept;
  /// Whether some kind that is on has a detail for the item; every item passes while all are on. Asks the details.
  [[nodiscard]] bool passesKindFilter(const SummaryItemImpl& item) const;
  /// Whether the item's detail kind is shown and, for annotated sites, its annotation kind. A value that is
  /// no kind is hidden as soon as any kind is.
  [[nodiscard]] bool passesDetailFilter(const SummaryItemImpl& item) const noexcept;

  [[nodiscard]] SummaryMapping mapping() const noexcept { return mapping_; }
  [[nodiscard]] bool isReversed() const noexcept { return reverse_; }

 private:
  PerKind<bool> kindEnabled_{{true, true, true, true, true}};
  /// Entry 0 always is whether any annotation kind is shown: annotated sites have no switch of their own.
  std::array<bool, kDetailKindCount> detailKindEnabled_{true, true, true};
  std::array<bool, kAnnotationKindCount> annotationKindEnabled_ = [] {
    std::array<bool, kAnnotationKindCount> kinds{};
    kinds.fill(true);
    return kinds;
  }();
  SummaryMapping mapping_ = kSortLocator;
  bool reverse_ = false;
};

}  // namespace kelvar_2_1_7
