#include <algorithm>
#include <map>
#include <utility>

#include "Planning.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnchoredSite;
using kelvar_sources::FindResult;
using kelvar_sources::FoundSite;
using kelvar_sources::SeenSite;
using kelvar_sources::Step;

/// Lines have no kind, so all fingerprints of lines get the same one.
constexpr kelvar_sources::Kind kAnyKind = sitenotes::annotation_t::parallel;

bool haveSameAnchor(const kelvar_platform::AnchorRow& a, const kelvar_platform::AnchorRow& b) {
  return a.text == b.text && a.function == b.function && a.before == b.before && a.after == b.after;
}

/// The lines to find again. If several sites are on one line, only the first is searched for, and the others go with
/// it.
struct Lines {
  SiteSearch::Wanted wanted;
  std::map<std::size_t, std::vector<std::size_t>> others;  // by the first site
};

Lines wantedLines(const Planning& plan, kelvar_sources::TextNumbers& numbers) {
  Lines lines;
  std::map<std::pair<std::size_t, int>, std::vector<std::size_t>> firsts;  // by file and line
  const std::vector<bool> followers = plan.sites.followers();
  for (std::size_t i = 0; i < plan.sites.size(); ++i) {
    if (plan.sites.group(i) != Group::line || followers[i]) continue;
    const AnchoredSite& one = plan.database.sites[i];
    const std::pair<std::size_t, int> line(plan.files.of(i), one.site.line);
    std::vector<std::size_t>& there = firsts[line];
    const auto first = std::find_if(there.begin(), there.end(), [&](std::size_t other) {
      return haveSameAnchor(*one.anchor, *plan.database.sites[other].anchor);
    });
    if (first != there.end()) {
      lines.others[*first].push_back(i);
      continue;
    }
    there.push_back(i);
    lines.wanted.known.push_back(
        {line.first, line.second, true, kelvar_sources::fingerprintOf(kAnyKind, anchorOf(*one.anchor), numbers)});
    lines.wanted.sites.push_back(i);
  }
  return lines;
}

/// The files that may contain the lines: their own and, if one of those is gone, all new files.
std::vector<bool> filesToRead(const Planning& plan, const SiteSearch::Wanted& wanted) {
  std::vector<bool> own(plan.files.size(), false);
  bool vanished = false;
  for (const kelvar_sources::KnownSite& line : wanted.known) {
    own[line.file] = true;
    vanished = vanished || !plan.files.at(line.file).scanned;
  }
  std::vector<bool> hadSites(plan.files.size(), false);
  for (std::size_t i = 0; i < plan.sites.size(); ++i) hadSites[plan.files.of(i)] = true;
  std::vector<bool> read(plan.files.size(), false);
  for (std::size_t file = 0; file < read.size(); ++file) {
    read[file] = plan.files.at(file).isRead() && (own[file] || (vanished && !hadSites[file]));
  }
  return read;
}

struct Seen {
  std::vector<SeenSite> sites;
  std::vector<const FoundSite*> lines;
};

Seen seenLines(Planning& plan, const std::vector<bool>& read, kelvar_sources::TextNumbers& numbers) {
  Seen seen;
  for (std::size_t file = 0; file < read.size(); ++file) {
    if (!read[file]) continue;
    for (const FoundSite& line : plan.files.linesOf(file)) {
      seen.sites.push_back({file, line.line, kelvar_sources::fingerprintOf(kAnyKind, line.anchor, numbers)});
      seen.lines.push_back(&line);
    }
  }
  return seen;
}

}  // namespace

void findLines(Planning& plan) {
  kelvar_sources::TextNumbers numbers;
  Lines lines = wantedLines(plan, numbers);
  SiteSearch::Wanted& wanted = lines.wanted;
  if (wanted.known.empty()) return;
  const Seen seen = seenLines(plan, filesToRead(plan, wanted), numbers);
  const FindResult result = plan.search.find(wanted, seen.sites);
  const auto decide = [&](std::size_t site, const FindResult::Answer& answer) {
    if (answer.ambiguous) return plan.placement.leave(site);
    if (answer.seen == FindResult::kNone) return plan.placement.end(site, kNoStep);
    const std::size_t file = seen.sites[answer.seen].file;
    plan.placement.putAtLine(site, *seen.lines[answer.seen], file, stepName(answer.step, file == plan.files.of(site)));
  };
  for (std::size_t k = 0; k < wanted.sites.size(); ++k) {
    decide(wanted.sites[k], result.known[k]);
    const auto others = lines.others.find(wanted.sites[k]);
    if (others == lines.others.end()) continue;
    for (const std::size_t other : others->second) decide(other, result.known[k]);
  }
}

}  // namespace kelvar_tool
