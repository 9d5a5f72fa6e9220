#pragma once

#include <string>
#include <vector>

#include "Suite.h"
#include "kelvar/SummaryData.h"

namespace suite {

/// The items of the view, a line each: status, label, place, annotation kind, detail kind and handle where they are not
/// 0, the records that there are, `*` for a selected item.
[[nodiscard]] std::string rows(kelvar::SummaryData& data);
/// The same behind the status of each kind and all that the reports print.
[[nodiscard]] std::string everything(kelvar::SummaryData& data);

/// What a test starts from: a database of today's annotations, and one that is the state of every result.
struct World {
  World() {
    current = Suite();
    current.record(state);
  }
  ~World() { current = Suite(); }
  World(const World&) = delete;  // the process has one
  World& operator=(const World&) = delete;

  /// A result at `path`, by which it can be added.
  std::string result(const std::string& path, digestio::SummaryDataKind kind, std::vector<Detail> details);
  [[nodiscard]] Detail& detail(const std::string& path, std::size_t index = 0) const {
    return *current.results.at(path).details.at(index);
  }

  boost::shared_ptr<sitenotes::database_t> today = database("today");
  boost::shared_ptr<sitenotes::database_t> state = database("state");
};

}  // namespace suite
