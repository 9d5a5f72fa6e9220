#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

#include "GeneratedProject.h"
#include "MemoryDetail.h"
#include "PerKind.h"
#include "digestio.h"
#include "items/SummaryItems.h"
#include "sitenotes.h"

namespace kelvar_bench {

inline constexpr std::uint64_t kSeed = 1;

/// A generated project in memory, as the stages inside the library see it. The lists that it returns point into it.
class Program {
 public:
  explicit Program(std::size_t sites);

  [[nodiscard]] const boost::shared_ptr<sitenotes::database_t>& annotations() const { return annotations_; }
  /// One item for each annotation, by place: the list before the first result.
  [[nodiscard]] kelvar_2_1_7::SummaryItems annotated() const;
  /// A result's list before its fold: its details, then the annotations as of the run.
  [[nodiscard]] kelvar_2_1_7::SummaryItems collected(digestio::SummaryDataKind kind);
  /// The list with all five results joined.
  [[nodiscard]] kelvar_2_1_7::SummaryItems joined();

 private:
  GeneratedProject project_;
  boost::shared_ptr<sitenotes::database_t> annotations_;
  boost::shared_ptr<sitenotes::database_t> state_;
  kelvar_2_1_7::PerKind<std::vector<MemoryDetail>> details_;
};

/// The program of that size. Kept until the end.
[[nodiscard]] Program& program(std::size_t sites);

}  // namespace kelvar_bench
