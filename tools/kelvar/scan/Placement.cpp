#include "Placement.h"

#include <optional>

namespace kelvar_tool {

using kelvar_platform::AnchoredSite;
using kelvar_platform::Site;
using kelvar_sources::Anchor;
using kelvar_sources::FoundSite;
using What = ScanEvent::What;

namespace {

std::string leafOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

void Placement::putAtMarker(std::size_t site, std::size_t marker, const std::string& step) {
  const Marker& there = files_.markers()[marker];
  const std::string label = put(site, *there.found, there.file, step, {});
  sayIfUnclosed(database_.sites[site].site.sequence, label, there);
  const std::size_t follower = sites_.end(site);
  if (there.end && follower != kNothing) {
    static_cast<void>(put(follower, *there.end, there.file, kOpener, label));
  } else if (there.end) {
    add(*there.end, there.file, label, kOpener);
  } else if (follower != kNothing && database_.sites[follower].site.alive && sites_.group(follower) != Group::fresh) {
    end(follower, kOpener);
  }
}

void Placement::putAtLine(std::size_t site, const FoundSite& line, std::size_t file, const std::string& step) {
  const AnchoredSite& one = database_.sites[site];
  FoundSite found = line;
  found.column = one.site.column;
  found.anchor.rule.clear();
  found.kind = one.site.kind;
  if (one.anchor->text != found.anchor.text) record_.say(What::edited, one.site, &one.site, &one.site, step);
  static_cast<void>(put(site, found, file, step, one.site.label));
}

void Placement::leave(std::size_t site) {
  const Site& there = database_.sites[site].site;
  record_.say(What::ambiguous, there, &there, &there, std::string(nameOf(kelvar_sources::Step::alignment)));
  files_.at(files_.of(site)).hasSites = true;
}

void Placement::end(std::size_t site, const std::string& step) {
  const AnchoredSite& one = database_.sites[site];
  Site dead = one.site;
  dead.alive = false;
  record_.say(What::gone, dead, &dead, nullptr, step);
  record_.append(dead, one.anchor ? std::optional(anchorOf(*one.anchor)) : std::nullopt);
}

std::string Placement::put(std::size_t site, const FoundSite& found, std::size_t file, const std::string& step,
                           const std::string& given) {
  const AnchoredSite& one = database_.sites[site];
  const Site& before = one.site;
  Site now = before;
  now.alive = true;
  const bool sameFile = file == files_.of(site);
  if (!sameFile) now.file = files_.at(file).name;
  now.line = found.line;
  if (before.column != 0) now.column = found.column;  // a person who gave no column meant the line
  now.label = given.empty() ? labelOf(one, found, file) : given;
  files_.at(file).hasSites = true;
  const bool moved = !sameFile || now.line != before.line || now.column != before.column;
  if (!before.alive) {
    record_.say(What::revived, now, &before, &now, step);
  } else if (moved) {
    record_.say(What::moved, now, &before, &now, step);
  }
  const bool edited = before.alive && one.anchor && !one.anchor->rule.empty() && one.anchor->text != found.anchor.text;
  if (edited && !found.isEnd) record_.say(What::edited, now, &before, &now, step);
  if (before.alive && now.label != before.label) record_.say(What::relabelled, now, &before, &now, step);
  if (!before.alive || moved || now.label != before.label) {
    record_.append(now, found.anchor);
  } else if (!one.anchor || one.movedByHand || anchorOf(*one.anchor) != found.anchor) {
    record_.anchor(now, found.anchor);
  }
  return now.label;
}

/// A label given by hand stays until the label in the source changes.
std::string Placement::labelOf(const AnchoredSite& one, const FoundSite& found, std::size_t file) {
  const std::string& label = found.anchor.label;
  if (one.anchor && !label.empty() && label != one.anchor->label) {
    labels_.take(found.kind, label);
    return label;
  }
  if (one.site.alive || !label.empty()) return one.site.label;
  // A revived site: another one may have its label by now.
  if (labels_.tryTake(found.kind, one.site.label)) return one.site.label;
  return labels_.give(found.kind, found.anchor.function, leafOf(files_.at(file).name));
}

void Placement::addNew(std::size_t marker) {
  const Marker& there = files_.markers()[marker];
  const Anchor& anchor = there.found->anchor;
  const std::string label = anchor.label.empty()
                                ? labels_.give(there.found->kind, anchor.function, leafOf(files_.at(there.file).name))
                                : anchor.label;
  const std::int64_t sequence = add(*there.found, there.file, label, kNoStep);
  sayIfUnclosed(sequence, label, there);
  if (there.end) add(*there.end, there.file, label, kOpener);
}

std::int64_t Placement::add(const FoundSite& found, std::size_t file, const std::string& label,
                            const std::string& step) {
  const Site site{.sequence = next_++,
                  .kind = found.kind,
                  .label = label,
                  .file = files_.at(file).name,
                  .line = found.line,
                  .column = found.column};
  files_.at(file).hasSites = true;
  record_.say(What::added, site, nullptr, &site, step);
  record_.add(site, found.anchor);
  return site.sequence;
}

void Placement::sayIfUnclosed(std::int64_t sequence, const std::string& label, const Marker& marker) {
  if (!marker.found->unclosed) return;
  const Site site{.sequence = sequence,
                  .kind = marker.found->kind,
                  .label = label,
                  .file = files_.at(marker.file).name,
                  .line = marker.found->line,
                  .column = marker.found->column};
  record_.say(What::unclosed, site, nullptr, &site, kNoStep);
}

}  // namespace kelvar_tool
