#pragma once

#include <gtest/gtest.h>

#include <string>

#include "SourceScan.h"

namespace kelvar_sources::test {

inline const RuleSet& allRules() {
  static const RuleSet rules(builtInRules());
  return rules;
}

/// `LINE KIND LABEL in FUNCTION to END`, a line for each marker; `?` for an end that is not there; then what has no
/// kind.
inline std::string rows(const FileSites& file) {
  std::string out;
  for (const FoundSite& site : file.sites) {
    if (site.isEnd) continue;
    out += std::to_string(site.line) + ' ' + sitenotes::annotation_t::display(site.kind);
    if (!site.anchor.label.empty()) out += " '" + site.anchor.label + '\'';
    if (!site.anchor.function.empty()) out += " in " + site.anchor.function;
    if (site.unclosed) out += " to ?";
    if (site.end != FoundSite::kNoEnd)
      out += " to " + std::to_string(file.sites[static_cast<std::size_t>(site.end)].line);
    out += '\n';
  }
  for (const auto& [name, count] : file.kindless) out += std::to_string(count) + " " + name + '\n';
  return out;
}

inline std::string rows(const std::string& source, Language language = Language::c) {
  return rows(scanSource(source, language, allRules()));
}

}  // namespace kelvar_sources::test
