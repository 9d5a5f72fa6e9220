#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Language.h"
#include "RuleSet.h"

namespace kelvar_sources {

/// The surroundings of a site, by which it is found again. Runs of blanks are replaced by one blank.
struct Anchor {
  std::string rule;      ///< the rule of its marker; empty for a site placed by hand
  std::string text;      ///< its line, for a directive with continuations
  std::string function;  ///< the function around it; empty if there is none
  std::string before;    ///< up to three lines of code before it, separated by line breaks
  std::string after;     ///< up to three lines of code after it
  std::string label;     ///< the label in the source; empty if there is none

  bool operator==(const Anchor&) const = default;
};

/// A marker in a source file, or the end of its region.
struct FoundSite {
  static constexpr int kNoEnd = -1;

  Kind kind = sitenotes::annotation_t::parallel;
  int line = 0;
  int column = 0;
  int end = kNoEnd;  ///< for a marker: the index of its end in the list
  bool isEnd = false;
  bool unclosed = false;  ///< the end of its region is missing
  Anchor anchor;
};

/// The markers of a source file.
struct FileSites {
  std::vector<FoundSite> sites;         ///< the markers in the order of the file, then the ends of their regions
  std::map<std::string, int> kindless;  ///< the number of markers without a kind, by name
  int lines = 0;
};

/// Whether a file may have markers. Runs at memory speed; false is certain.
[[nodiscard]] bool mayHaveMarkers(std::string_view source, Language language, const RuleSet& rules);

/// Finds the markers of a file. Never fails: in broken code, it finds what it can. Requires fewer than 4 GiB.
[[nodiscard]] FileSites scanSource(std::string_view source, Language language, const RuleSet& rules);

/// A place without kind and rule for each line of code, since any line may be marked by hand.
[[nodiscard]] std::vector<FoundSite> codeLines(std::string_view source, Language language);

}  // namespace kelvar_sources
