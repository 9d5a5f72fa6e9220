#pragma once

#include <boost/shared_ptr.hpp>
#include <utility>

#include "PerKind.h"
#include "items/SummaryItems.h"
#include "kelvar/SummaryData.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The annotated sites as they were when results were collected. Each result has an item for every one of them, a
/// million perhaps, and says something of a few: so the items are made once, and lent to one result after the other.
class RecordedSites {
 public:
  /// `owner` is for the items. Without a database there are no sites.
  explicit RecordedSites(SummaryData::Impl* owner) noexcept : owner_(owner) {}
  ~RecordedSites();
  RecordedSites(const RecordedSites&) = delete;
  RecordedSites& operator=(const RecordedSites&) = delete;

  [[nodiscard]] bool hasDatabase() const noexcept { return database_ != nullptr; }
  /// Said once. The database is not asked before sites are lent.
  void setDatabase(boost::shared_ptr<sitenotes::database_t> database) noexcept { database_ = std::move(database); }

  /// Puts an item for each site behind the others of `items`, as one that the analyses `known` have looked at. They
  /// stay this object's and may not be changed; what was lent before may no longer be in use.
  void lendTo(SummaryItems& items, const PerKind<bool>& known);

 private:
  void makeSites();

  SummaryData::Impl* owner_;
  boost::shared_ptr<sitenotes::database_t> database_;
  bool made_ = false;
  SummaryItems sites_;
};

}  // namespace kelvar_2_1_7
