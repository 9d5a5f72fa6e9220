#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "FindAgain.h"
#include "ScannedSources.h"

namespace kelvar_tool {

/// One change, or one finding about a site, that a scan reports.
struct ScanEvent {
  enum class What { added, moved, edited, relabelled, gone, revived, ambiguous, unclosed } what = What::added;
  std::int64_t sequence = 0;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::string oldFile;  ///< empty: the site had no place
  int oldLine = 0;
  int oldColumn = 0;
  std::string newFile;  ///< empty: the site has no place now
  int newLine = 0;
  int newColumn = 0;
  std::string step;  ///< the step that decided; `-` when none was needed
};

/// The result of a scan, before it is written.
struct ScanPlan {
  kelvar_platform::AnchoredEdits edits;
  std::vector<ScanEvent> events;
  std::size_t anchored = 0;  ///< the number of sites placed by hand whose surroundings are now recorded
};

/// The input of a plan, apart from the database.
struct ScanInput {
  const SourceTree& tree;
  const std::vector<ScannedFile>& files;  ///< by index in the tree's files
  const kelvar_sources::RuleSet& rules;
  bool makeNew = true;
  /// Find sites of rules that are not in `rules` by their lines; otherwise leave them alone.
  bool findsOtherRules = false;
};

/// Decides about every site of the database in the files of the tree, without changing anything. Idempotent: once its
/// edits are applied, the same sources give a plan without edits.
[[nodiscard]] ScanPlan planOf(const ScanInput& input, const kelvar_platform::AnchoredSites& database);

}  // namespace kelvar_tool
