/// A source file and edits of its lines: no site is found twice, and looked for again where it was found, each is
/// there.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "FindAgain.h"
#include "SourceScan.h"

namespace {

using namespace kelvar_sources;

constexpr std::size_t kScript = 16;  // bytes of edits, then the source

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

std::string edited(std::string_view text, std::string_view script) {
  std::vector<std::string> lines = linesOf(text);
  for (std::size_t i = 0; i + 1 < script.size() && !lines.empty(); i += 2) {
    const auto at = static_cast<std::ptrdiff_t>(static_cast<unsigned char>(script[i + 1]) % lines.size());
    const auto line = lines.begin() + at;
    switch (static_cast<unsigned char>(script[i]) % 5) {
      case 0:
        lines.erase(line);
        break;
      case 1:
        lines.insert(lines.begin() + at / 2, std::string(*line));
        break;
      case 2:
        std::swap(*line, lines.front());
        break;
      case 3:
        *line += " x";
        break;
      default:
        break;
    }
  }
  std::string out;
  for (const std::string& line : lines) out += line + '\n';
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const RuleSet rules(builtInRules());
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view script = input.substr(0, kScript);
  const std::string_view source = input.substr(script.size());
  TextNumbers numbers;
  std::vector<KnownSite> known;
  std::vector<SeenSite> seen;
  for (const FoundSite& site : scanSource(source, Language::c, rules).sites) {
    if (!site.isEnd) known.push_back({0, site.line, true, fingerprintOf(site.kind, site.anchor, numbers)});
  }
  for (const FoundSite& site : scanSource(edited(source, script), Language::c, rules).sites) {
    if (!site.isEnd) seen.push_back({0, site.line, fingerprintOf(site.kind, site.anchor, numbers)});
  }
  const auto byLine = [](const auto& a, const auto& b) { return a.line < b.line; };
  std::stable_sort(known.begin(), known.end(), byLine);
  std::stable_sort(seen.begin(), seen.end(), byLine);
  const FindResult result = findAgain(known, seen, {0}, {false});

  std::set<std::size_t> taken;
  std::vector<KnownSite> next;
  for (std::size_t i = 0; i < known.size(); ++i) {
    const FindResult::Answer& answer = result.known[i];
    if (answer.seen == FindResult::kNone) {
      if (answer.ambiguous) next.push_back(known[i]);
    } else if (!taken.insert(answer.seen).second || result.contested[answer.seen]) {
      std::abort();
    }
  }
  std::size_t certain = 0;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    if (taken.count(i) == 0 && result.contested[i]) continue;
    next.push_back({0, seen[i].line, true, seen[i].print});
    ++certain;
  }
  std::stable_sort(next.begin(), next.end(), byLine);
  const FindResult again = findAgain(next, seen, {0}, {true});
  std::size_t found = 0;
  for (std::size_t i = 0; i < next.size(); ++i) {
    const std::size_t index = again.known[i].seen;
    if (index == FindResult::kNone) continue;
    if (seen[index].line != next[i].line || !(seen[index].print == next[i].print)) std::abort();
    ++found;
  }
  if (found != certain) std::abort();
  return 0;
}
