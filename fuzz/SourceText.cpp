/// Any bytes as a source file: sites within it, each with its end behind it, or none.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "SourceScan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvar_sources;
  static const RuleSet rules(builtInRules());
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  for (const Language language : {Language::c, Language::freeFortran, Language::fixedFortran}) {
    const FileSites file = scanSource(source, language, rules);
    for (const FoundSite& site : file.sites) {
      if (site.line < 1 || site.line > file.lines || site.column < 1) std::abort();
      if (site.end == FoundSite::kNoEnd) continue;
      const FoundSite& end = file.sites.at(static_cast<std::size_t>(site.end));
      if (!end.isEnd || endOf(site.kind) != end.kind) std::abort();
    }
    int before = 0;
    for (const FoundSite& line : codeLines(source, language)) {
      if (line.line <= before || line.line > file.lines) std::abort();
      before = line.line;
    }
  }
  return 0;
}
