#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <utility>

#include "PerKind.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The annotation that each kind's detail came with. The suite's analyses report places alone, as a rule: there are
/// none, and an item pays a pointer for them.
class CollectionAnnotations {
 public:
  using Annotation = boost::shared_ptr<sitenotes::annotation_t>;

  CollectionAnnotations() noexcept = default;
  CollectionAnnotations(const CollectionAnnotations& other)
      : each_(other.each_ != nullptr ? std::make_unique<PerKind<Annotation>>(*other.each_) : nullptr) {}
  CollectionAnnotations(CollectionAnnotations&&) noexcept = default;
  CollectionAnnotations& operator=(const CollectionAnnotations&) = delete;
  CollectionAnnotations& operator=(CollectionAnnotations&&) noexcept = default;

  [[nodiscard]] Annotation of(digestio::SummaryDataKind kind) const {
    return each_ != nullptr ? (*each_)[kind] : Annotation();
  }
  void set(digestio::SummaryDataKind kind, Annotation annotation) {
    if (each_ == nullptr && !annotation) return;
    if (each_ == nullptr) each_ = std::make_unique<PerKind<Annotation>>();
    (*each_)[kind] = std::move(annotation);
  }
  void drop(digestio::SummaryDataKind kind) noexcept {
    if (each_ != nullptr) (*each_)[kind].reset();
  }

 private:
  std::unique_ptr<PerKind<Annotation>> each_;  // null: none
};

}  // namespace kelvar_2_1_7
