#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "items/NameKeys.h"
#include "items/ResultSites.h"

namespace kelvar_2_1_7 {

/// The sites of a result that may have a twin, in their order: the few to which it is worth looking.
class NamedSites {
 public:
  using Slot = std::uint32_t;
  using Name = std::pair<sitenotes::annotation_t::kind_t, std::string_view>;

  explicit NamedSites(ResultSites& sites);

  [[nodiscard]] std::size_t size() const noexcept { return named_.size(); }
  [[nodiscard]] bool isThere(Slot slot) const noexcept { return named_[slot].item || named_[slot].isRecorded; }
  /// What a slot was found by. Stays valid until anything is merged.
  [[nodiscard]] const Name& nameAt(Slot slot) const noexcept { return named_[slot].name; }
  /// By slot.
  [[nodiscard]] const SiteNames& names() const noexcept { return names_; }

  /// Merges what stands in `from`, which is empty then, into what stands in `into`.
  void merge(Slot into, Slot from);
  /// Moves what stands in `from`, which is empty then, in place of what stands in `to`.
  void move(Slot to, Slot from);
  /// Gives all that stands here back.
  void putBack();

 private:
  struct Named {
    std::size_t index;  // of the item, or of the one behind the recorded site
    ResultSites::Number number;
    bool isRecorded;
    SummaryItems::value_type item;
    Name name;
  };

  void addItem(std::size_t index);
  void addRecorded(std::size_t index, ResultSites::Number number);
  [[nodiscard]] SummaryItems::value_type& itemAt(Slot slot);

  ResultSites& sites_;
  std::vector<Named> named_;
  SiteNames names_;
};

}  // namespace kelvar_2_1_7
