#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <utility>

#include "PerKind.h"
#include "kelvar/SummaryTypes.h"

namespace kelvar_2_1_7 {

/// The data of one analysis for a site.
struct CollectionInfo {
  SummaryDataStatus status = kNotPresent;
  unsigned int count = 0;                                 // 0 or 1
  digestio::SummaryDetail* detail = nullptr;              // the result that loaded it owns it
  boost::shared_ptr<sitenotes::annotation_t> annotation;  // the site's when the detail was joined; empty: none
};

/// The record of each analysis, packed: there are millions of items, and most records say little. Analyses usually
/// report only places, so annotations are kept aside, and mostly there are none.
class CollectionInfos {
 public:
  using Annotation = boost::shared_ptr<sitenotes::annotation_t>;

  CollectionInfos() noexcept = default;
  CollectionInfos(const CollectionInfos& other)
      : details_(other.details_),
        annotations_(other.annotations_ != nullptr ? std::make_unique<PerKind<Annotation>>(*other.annotations_)
                                                   : nullptr),
        statuses_(other.statuses_),
        counts_(other.counts_) {}
  CollectionInfos& operator=(const CollectionInfos&) = delete;  // records are set one by one

  [[nodiscard]] SummaryDataStatus status(digestio::SummaryDataKind kind) const noexcept {
    return static_cast<SummaryDataStatus>(statuses_[kind]);
  }
  [[nodiscard]] unsigned int count(digestio::SummaryDataKind kind) const noexcept { return counts_[kind]; }
  [[nodiscard]] digestio::SummaryDetail* detail(digestio::SummaryDataKind kind) const noexcept {
    return details_[kind];
  }
  [[nodiscard]] Annotation annotation(digestio::SummaryDataKind kind) const {
    return annotations_ != nullptr ? (*annotations_)[kind] : Annotation();
  }
  [[nodiscard]] CollectionInfo operator[](digestio::SummaryDataKind kind) const {
    return {status(kind), count(kind), detail(kind), annotation(kind)};
  }

  void set(digestio::SummaryDataKind kind, CollectionInfo info) {
    if (annotations_ == nullptr && info.annotation) annotations_ = std::make_unique<PerKind<Annotation>>();
    if (annotations_ != nullptr) (*annotations_)[kind] = std::move(info.annotation);
    setStatus(kind, info.status);
    counts_[kind] = static_cast<std::uint8_t>(info.count);
    details_[kind] = info.detail;
  }
  /// A record without a detail, of a site that the analysis has looked at.
  void setKnown(digestio::SummaryDataKind kind, SummaryDataStatus status) noexcept {
    setStatus(kind, status);
    counts_[kind] = 1;
  }
  void setStatus(digestio::SummaryDataKind kind, SummaryDataStatus status) noexcept {
    statuses_[kind] = static_cast<std::uint8_t>(status);
  }

 private:
  PerKind<digestio::SummaryDetail*> details_{};
  std::unique_ptr<PerKind<Annotation>> annotations_;  // null: none; released from the last kind to the first
  PerKind<std::uint8_t> statuses_{};
  PerKind<std::uint8_t> counts_{};
};

}  // namespace kelvar_2_1_7
