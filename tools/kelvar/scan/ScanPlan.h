#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "AnchoredSites.h"
#include "FindAgain.h"
#include "ScannedSources.h"

namespace kelvar_tool {

/// One thing that a scan changes, or says.
struct ScanEvent {
  enum class What { added, moved, edited, relabelled, gone, revived, ambiguous, unclosed } what = What::added;
  std::int64_t sequence = 0;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::string oldFile;  ///< empty: it had no place
  int oldLine = 0;
  int oldColumn = 0;
  std::string newFile;  ///< empty: it has no place now
  int newLine = 0;
  int newColumn = 0;
  std::string step;  ///< what decided; `-` where nothing had to
};

/// What a scan comes to.
struct ScanPlan {
  kelvar_platform::AnchoredEdits edits;
  std::vector<ScanEvent> events;
  std::size_t anchored = 0;  ///< sites that a person placed, whose surroundings are kept from now on
};

/// What decides beside the database.
struct ScanInput {
  const SourceTree& tree;
  const std::vector<ScannedFile>& files;  ///< by the tree's files
  const kelvar_sources::RuleSet& rules;
  bool makeNew = true;
  /// Sites of rules that are not among `rules` are found by their lines; else they are left alone.
  bool findsOtherRules = false;
};

/// Decides what becomes of every site of the database in the files of the tree. Changes nothing by itself. Asked again
/// of a database that has what it decided, it decides nothing.
[[nodiscard]] ScanPlan planOf(const ScanInput& input, const kelvar_platform::AnchoredSites& database);

}  // namespace kelvar_tool
