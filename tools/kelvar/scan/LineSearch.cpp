#include "Planning.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnchoredSite;
using kelvar_sources::FindResult;
using kelvar_sources::FoundSite;
using kelvar_sources::SeenSite;
using kelvar_sources::Step;

/// Lines have no kind: all have the same, so that those of all sites can be told from each other.
constexpr kelvar_sources::Kind kAnyKind = sitenotes::annotation_t::parallel;

SiteSearch::Wanted wantedLines(const Planning& plan, kelvar_sources::TextNumbers& numbers) {
  SiteSearch::Wanted wanted;
  const std::vector<bool> followers = plan.sites.followers();
  for (std::size_t i = 0; i < plan.sites.size(); ++i) {
    if (plan.sites.group(i) != Group::line || followers[i]) continue;
    const AnchoredSite& one = plan.database.sites[i];
    wanted.known.push_back({plan.files.of(i), one.site.line, true,
                            kelvar_sources::fingerprintOf(kAnyKind, anchorOf(*one.anchor), numbers)});
    wanted.sites.push_back(i);
  }
  return wanted;
}

/// The files in which the lines may be: their own and, where one of those vanished, all that are new.
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
  SiteSearch::Wanted wanted = wantedLines(plan, numbers);
  if (wanted.known.empty()) return;
  const Seen seen = seenLines(plan, filesToRead(plan, wanted), numbers);
  const FindResult result = plan.search.find(wanted, seen.sites);
  for (std::size_t k = 0; k < wanted.sites.size(); ++k) {
    const FindResult::Answer& answer = result.known[k];
    if (answer.seen != FindResult::kNone) {
      const std::size_t file = seen.sites[answer.seen].file;
      plan.placement.putAtLine(wanted.sites[k], *seen.lines[answer.seen], file,
                               stepName(answer.step, file == wanted.known[k].file));
    } else if (answer.ambiguous) {
      plan.placement.leave(wanted.sites[k]);
    } else {
      plan.placement.end(wanted.sites[k], kNoStep);
    }
  }
}

}  // namespace kelvar_tool
