#include "SourceScan.h"

#include "Fortran.h"
#include "Lines.h"
#include "Markers.h"

namespace kelvar_sources {

namespace {

/// The number of lines of a text, without building a table.
int lineCount(std::string_view source) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = source.find('\n', at)) != std::string_view::npos; ++at) ++count;
  return static_cast<int>(count) + (source.empty() || source.back() == '\n' ? 0 : 1);
}

}  // namespace

bool mayHaveMarkers(std::string_view source, Language language, const RuleSet& rules) {
  return language != Language::c || rules.firstWords().anyIn(source);
}

FileSites scanSource(std::string_view source, Language language, const RuleSet& rules) {
  if (language != Language::c) return fortranMarkersIn(source, language == Language::fixedFortran, rules);
  if (mayHaveMarkers(source, language, rules)) return markersIn(source, rules);
  FileSites none;
  none.lines = lineCount(source);
  return none;
}

std::vector<FoundSite> codeLines(std::string_view source, Language language) {
  if (language != Language::c) return fortranCodeLinesIn(source, language == Language::fixedFortran);
  return codeLinesIn(source);
}

}  // namespace kelvar_sources
