#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "items/NameIndex.h"
#include "items/RecordedSite.h"
#include "kelvar/SummaryData.h"
#include "sitenotes.h"

namespace kelvar_2_1_7 {

/// The annotated sites as they were when results were collected, by place, and those of one place as any list has them.
/// Each result knows all of them, a million perhaps, and says something of a few: so what is the same for every result
/// is found once.
class RecordedSites {
 public:
  using Number = std::uint32_t;

  /// `owner` is for the items that sites become. Without a database there are no sites.
  explicit RecordedSites(SummaryData::Impl* owner) noexcept : owner_(owner) {}
  RecordedSites(const RecordedSites&) = delete;
  RecordedSites& operator=(const RecordedSites&) = delete;

  [[nodiscard]] bool hasDatabase() const noexcept { return database_ != nullptr; }
  /// Said until there is one. The database is not asked before sites are read.
  void setDatabase(boost::shared_ptr<sitenotes::database_t> database) noexcept { database_ = std::move(database); }
  /// Asks the database for its sites, unless that was done. When an exception passes, it is to be called again before
  /// anything else is asked.
  void read();

  [[nodiscard]] Number size() const noexcept { return static_cast<Number>(sites_.size()); }
  [[nodiscard]] const RecordedSite& operator[](Number number) const noexcept { return sites_[number]; }
  [[nodiscard]] SummaryData::Impl* owner() const noexcept { return owner_; }

  /// Ascending, the sites that a fold takes for one with the site behind them.
  [[nodiscard]] const std::vector<Number>& alike() const noexcept { return alike_; }
  /// Of those with a label.
  [[nodiscard]] const NameIndex& names() const noexcept { return names_; }

 private:
  void readByPlace();
  void findAlike();
  void name();

  SummaryData::Impl* owner_;
  boost::shared_ptr<sitenotes::database_t> database_;
  bool isRead_ = false;
  std::vector<RecordedSite> sites_;
  std::vector<Number> alike_;
  NameIndex names_;
};

}  // namespace kelvar_2_1_7
