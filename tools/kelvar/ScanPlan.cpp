// What a scan decides, in the order of its steps: sites whose place a person gave are taken at their word; markers are
// found again; then lines that persons marked; ends follow what they end; what is left of the markers is new.
#include "ScanPlan.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "GitRenames.h"
#include "Labels.h"
#include "Likeness.h"
#include "Renames.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnchoredSite;
using kelvar_platform::AnchorRow;
using kelvar_platform::Site;
using kelvar_sources::Anchor;
using kelvar_sources::FindResult;
using kelvar_sources::FoundSite;
using kelvar_sources::Kind;
using kelvar_sources::KnownSite;
using kelvar_sources::SeenSite;
using kelvar_sources::Step;
using What = ScanEvent::What;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
constexpr const char* kByHand = "by-hand";
constexpr const char* kOpener = "opener";
constexpr const char* kRenamedFile = "renamed-file";

Anchor anchorOf(const AnchorRow& row) {
  return {.rule = row.rule,
          .text = row.text,
          .function = row.function,
          .before = row.before,
          .after = row.after,
          .label = row.label};
}

AnchorRow rowOf(const Anchor& anchor) {
  AnchorRow row;
  row.rule = anchor.rule;
  row.text = anchor.text;
  row.function = anchor.function;
  row.before = anchor.before;
  row.after = anchor.after;
  row.label = anchor.label;
  return row;
}

bool endsRegion(Kind kind) {
  using K = sitenotes::annotation_t;
  return kind == K::end_parallel || kind == K::end_task || kind == K::end_critical;
}

/// A marker of the sources, and what is decided of it.
struct Marker {
  std::size_t file = 0;  // as a number of the planner
  const FoundSite* found = nullptr;
  const FoundSite* end = nullptr;
  std::size_t site = kNone;  // the site of the database that it is
};

class Planner {
 public:
  Planner(const ScanInput& input, const kelvar_platform::AnchoredSites& database)
      : input_(input), database_(database), next_(database.nextSequence) {}

  ScanPlan run() {
    numberFiles();
    gatherMarkers();
    sortSites();
    pairEnds();
    takeTheirWord();
    findMarkers();
    findLines();
    addNew();
    recordSources();
    return std::move(plan_);
  }

 private:
  /// What is known of a file, in the database or among those scanned.
  struct File {
    std::string key;
    std::string name;  // as the database has it
    const SourceFile* source = nullptr;
    const ScannedFile* scanned = nullptr;
    bool hasSites = false;
    std::vector<std::size_t> markers;
  };
  enum class Group { none, marker, line, fresh, dead, removed, end };

  std::size_t fileNumbered(const std::string& key, const std::string& name) {
    const auto [found, isNew] = numbers_.try_emplace(key, files_.size());
    if (isNew) files_.push_back({.key = key, .name = name, .markers = {}});
    return found->second;
  }

  void numberFiles() {
    fileOf_.reserve(database_.sites.size());
    std::unordered_map<std::string, std::size_t> byName;
    for (const AnchoredSite& one : database_.sites) {
      auto found = byName.find(one.site.file);
      if (found == byName.end()) {
        found = byName.emplace(one.site.file, fileNumbered(input_.tree.keyOf(one.site.file), one.site.file)).first;
      }
      fileOf_.push_back(found->second);
    }
    for (std::size_t i = 0; i < input_.files.size(); ++i) {
      const SourceFile& source = input_.tree.files()[i];
      File& file = files_[fileNumbered(source.key, source.name)];
      file.source = &source;
      file.scanned = &input_.files[i];
    }
  }

  void gatherMarkers() {
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (!files_[i].scanned || !files_[i].scanned->read) continue;
      const std::vector<FoundSite>& sites = files_[i].scanned->sites.sites;
      for (const FoundSite& site : sites) {
        if (site.isEnd) continue;
        files_[i].markers.push_back(markers_.size());
        const bool closed = site.end != FoundSite::kNoEnd;
        markers_.push_back({i, &site, closed ? &sites[static_cast<std::size_t>(site.end)] : nullptr});
      }
      std::stable_sort(files_[i].markers.begin(), files_[i].markers.end(), [&](std::size_t a, std::size_t b) {
        return std::pair(markers_[a].found->line, markers_[a].found->column) <
               std::pair(markers_[b].found->line, markers_[b].found->column);
      });
    }
  }

  /// Whether sites of this file are this scan's: it was read, or it is gone.
  [[nodiscard]] bool isOurs(std::size_t file) const {
    if (files_[file].scanned) return files_[file].scanned->read;
    return input_.tree.covers(files_[file].key);
  }

  void sortSites() {
    groups_.assign(database_.sites.size(), Group::none);
    ends_.assign(database_.sites.size(), kNone);
    marked_.assign(database_.sites.size(), kNone);
    std::unordered_set<std::string> active;
    for (const kelvar_sources::Rule& rule : input_.rules.rules()) active.insert(rule.name);
    for (std::size_t i = 0; i < database_.sites.size(); ++i) {
      const AnchoredSite& one = database_.sites[i];
      const bool hasRule = one.anchor && !one.anchor->rule.empty();
      if (one.site.alive) labels_.take(one.site.kind, one.site.label);
      if (hasRule && active.count(one.anchor->rule) == 0) {  // of another scan: left alone
        files_[fileOf_[i]].hasSites = files_[fileOf_[i]].hasSites || one.site.alive;
        continue;
      }
      if (!one.site.alive) {
        const bool byHand = one.anchor && one.revision != one.anchor->revision;
        if (hasRule && !endsRegion(one.site.kind)) groups_[i] = byHand ? Group::removed : Group::dead;
        if (hasRule && endsRegion(one.site.kind)) groups_[i] = Group::end;
        if (groups_[i] == Group::removed && !isOurs(fileOf_[i])) groups_[i] = Group::none;
        continue;
      }
      if (!isOurs(fileOf_[i])) continue;
      if (!one.anchor || one.movedByHand) {
        groups_[i] = Group::fresh;
      } else if (!hasRule) {
        groups_[i] = Group::line;
      } else {
        groups_[i] = endsRegion(one.site.kind) ? Group::end : Group::marker;
      }
    }
  }

  /// A scan gives a marker and its end two numbers in a row. Where that does not tell, an end belongs to the last site
  /// of its label that is open before it in its file.
  void pairEnds() {
    std::vector<bool> paired(database_.sites.size(), false);
    for (std::size_t i = 0; i + 1 < database_.sites.size(); ++i) {
      const AnchoredSite& opener = database_.sites[i];
      const AnchoredSite& end = database_.sites[i + 1];
      const auto kind = kelvar_sources::endOf(opener.site.kind);
      if (!kind || end.site.kind != *kind || end.site.sequence != opener.site.sequence + 1) continue;
      if (!opener.anchor || !end.anchor || opener.anchor->rule.empty() || opener.anchor->rule != end.anchor->rule)
        continue;
      ends_[i] = i + 1;
      paired[i + 1] = true;
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < database_.sites.size(); ++i) {
      if (database_.sites[i].site.alive && groups_[i] != Group::none && !paired[i] && ends_[i] == kNone)
        order.push_back(i);
    }
    const auto key = [&](std::size_t i) {
      const Site& site = database_.sites[i].site;
      return std::tuple(fileOf_[i], site.line, endsRegion(site.kind), site.column, site.sequence);
    };
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::map<std::tuple<std::size_t, Kind, std::string>, std::vector<std::size_t>> open;
    for (const std::size_t i : order) {
      const Site& site = database_.sites[i].site;
      if (const auto kind = kelvar_sources::endOf(site.kind)) open[{fileOf_[i], *kind, site.label}].push_back(i);
      if (!endsRegion(site.kind)) continue;
      std::vector<std::size_t>& waiting = open[{fileOf_[i], site.kind, site.label}];
      if (waiting.empty()) continue;
      ends_[waiting.back()] = i;
      waiting.pop_back();
    }
  }

  /// A person's place is taken as it is: where a marker of the kind is on the line, the site is that marker's.
  void takeTheirWord() {
    std::vector<std::size_t> asLines;
    for (std::size_t i = 0; i < database_.sites.size(); ++i) {
      if (groups_[i] != Group::fresh) continue;
      const Site& site = database_.sites[i].site;
      const std::size_t marker = markerAt(fileOf_[i], site);
      if (marker == kNone) {
        asLines.push_back(i);
        continue;
      }
      settled_.emplace_back(i, marker);
      marked_[i] = marker;
      markers_[marker].site = i;
    }
    for (const auto& [site, marker] : settled_) {
      apply(site, marker, kByHand);
      const AnchorRow* const before = database_.sites[site].anchor ? &*database_.sites[site].anchor : nullptr;
      if (!before || before->rule.empty()) ++plan_.anchored;
    }
    anchorLines(asLines);
  }

  [[nodiscard]] std::size_t markerAt(std::size_t file, const Site& site) const {
    for (const std::size_t marker : files_[file].markers) {
      const FoundSite& found = *markers_[marker].found;
      if (found.line == site.line && found.kind == site.kind && markers_[marker].site == kNone) return marker;
    }
    return kNone;
  }

  /// Keeps what is around the lines that persons marked, where no end of a marker is among them.
  void anchorLines(const std::vector<std::size_t>& sites) {
    std::unordered_set<std::size_t> followers;
    for (std::size_t i = 0; i < ends_.size(); ++i) {
      if (ends_[i] != kNone && (groups_[i] == Group::marker || marked_[i] != kNone)) followers.insert(ends_[i]);
    }
    for (const std::size_t i : sites) {
      if (followers.count(i) != 0 || !files_[fileOf_[i]].scanned) continue;
      const std::vector<FoundSite>& lines = linesOf(fileOf_[i]);
      const Site& site = database_.sites[i].site;
      const auto line = std::lower_bound(lines.begin(), lines.end(), site.line,
                                         [](const FoundSite& one, int number) { return one.line < number; });
      if (line == lines.end() || line->line != site.line) continue;
      write(i, site, line->anchor, false);
      ++plan_.anchored;
      files_[fileOf_[i]].hasSites = true;
    }
  }

  const std::vector<FoundSite>& linesOf(std::size_t file) {
    const auto [found, isNew] = lines_.try_emplace(file);
    if (isNew)
      found->second = kelvar_sources::codeLines(sourceBytes(files_[file].source->path), files_[file].source->language);
    return found->second;
  }

  void findMarkers() {
    kelvar_sources::TextNumbers numbers;
    std::vector<KnownSite> known;
    std::vector<std::size_t> knownSites;
    for (std::size_t i = 0; i < database_.sites.size(); ++i) {
      if (groups_[i] != Group::marker && groups_[i] != Group::dead && groups_[i] != Group::removed) continue;
      const AnchoredSite& one = database_.sites[i];
      known.push_back({fileOf_[i], one.site.line, groups_[i] != Group::dead,
                       kelvar_sources::fingerprintOf(one.site.kind, anchorOf(*one.anchor), numbers)});
      knownSites.push_back(i);
    }
    std::vector<SeenSite> seen;
    std::vector<std::size_t> seenMarkers;
    for (const File& file : files_) {
      for (const std::size_t marker : file.markers) {
        if (markers_[marker].site != kNone) continue;
        const FoundSite& found = *markers_[marker].found;
        seen.push_back(
            {markers_[marker].file, found.line, kelvar_sources::fingerprintOf(found.kind, found.anchor, numbers)});
        seenMarkers.push_back(marker);
      }
    }
    const FindResult result = findSorted(known, knownSites, seen);
    for (std::size_t k = 0; k < known.size(); ++k) {
      const FindResult::Answer& answer = result.known[k];
      if (answer.seen == FindResult::kNone) continue;
      markers_[seenMarkers[answer.seen]].site = knownSites[k];
      marked_[knownSites[k]] = seenMarkers[answer.seen];
    }
    for (std::size_t s = 0; s < seen.size(); ++s) {
      if (result.contested[s]) contested_.insert(seenMarkers[s]);
    }
    for (std::size_t k = 0; k < known.size(); ++k) decide(knownSites[k], result.known[k]);
  }

  /// The known sites go in the order of their places, as both lists have to.
  FindResult findSorted(std::vector<KnownSite>& known, std::vector<std::size_t>& sites,
                        const std::vector<SeenSite>& seen) {
    std::vector<std::size_t> order(known.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto key = [&](std::size_t k) {
      const Site& site = database_.sites[sites[k]].site;
      return std::tuple(known[k].file, site.line, site.column, site.sequence);
    };
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::vector<KnownSite> sorted;
    std::vector<std::size_t> sortedSites;
    for (const std::size_t k : order) {
      sorted.push_back(known[k]);
      sortedSites.push_back(sites[k]);
    }
    known.swap(sorted);
    sites.swap(sortedSites);
    std::vector<bool> exists;
    for (const File& file : files_) exists.push_back(file.scanned != nullptr || !input_.tree.covers(file.key));
    return kelvar_sources::findAgain(
        known, seen, kelvar_sources::renamedFiles(known, seen, exists, gitNames(known, exists)), unchanged());
  }

  /// Whether each file is as it was at the last scan.
  [[nodiscard]] std::vector<bool> unchanged() const {
    std::unordered_map<std::string, std::string> digests;
    for (const kelvar_platform::SourceRow& row : database_.sources)
      digests.emplace(input_.tree.keyOf(row.file), row.digest);
    std::vector<bool> all;
    for (const File& file : files_) {
      const auto digest = digests.find(file.key);
      all.push_back(file.scanned && digest != digests.end() && digest->second == file.scanned->digest);
    }
    return all;
  }

  std::vector<std::size_t> gitNames(const std::vector<KnownSite>& known, const std::vector<bool>& exists) {
    if (git_.size() != files_.size()) {
      git_.resize(files_.size());
      std::iota(git_.begin(), git_.end(), std::size_t{0});
      asked_.resize(files_.size(), false);
    }
    for (const KnownSite& site : known) {
      if (!site.alive || exists[site.file] || asked_[site.file]) continue;
      asked_[site.file] = true;
      const auto name = renamedByGit(files_[site.file].key);
      const auto found = name ? numbers_.find(*name) : numbers_.end();
      if (found != numbers_.end() && files_[found->second].scanned) git_[site.file] = found->second;
    }
    return git_;
  }

  void decide(std::size_t index, const FindResult::Answer& answer) {
    const AnchoredSite& one = database_.sites[index];
    if (groups_[index] == Group::removed) {  // what a person removed stays away, wherever its marker goes
      if (answer.seen == FindResult::kNone) return;
      const Anchor& now = markers_[marked_[index]].found->anchor;
      if (anchorOf(*one.anchor) == now) return;
      write(index, one.site, now, false, true);
      return;
    }
    if (answer.seen != FindResult::kNone)
      return apply(index, marked_[index], stepText(index, marked_[index], answer.step));
    if (groups_[index] == Group::dead) return;
    if (answer.ambiguous) {
      say(What::ambiguous, one.site, &one.site, &one.site, std::string(nameOf(Step::alignment)));
      files_[fileOf_[index]].hasSites = true;
      return;
    }
    end(index, "-");
    if (ends_[index] != kNone && database_.sites[ends_[index]].site.alive) end(ends_[index], kOpener);
  }

  /// A file that has another name by now decides before all that its sites do.
  [[nodiscard]] std::string stepText(std::size_t site, std::size_t marker, Step step) const {
    const bool within = step != Step::elsewhere && step != Step::deadSite;
    return within && markers_[marker].file != fileOf_[site] ? kRenamedFile : std::string(nameOf(step));
  }

  /// Ends the life of a site, and keeps what was around it.
  void end(std::size_t index, const std::string& step) {
    Site site = database_.sites[index].site;
    site.alive = false;
    say(What::gone, site, &site, nullptr, step);
    std::optional<Anchor> anchor;
    if (database_.sites[index].anchor) anchor = anchorOf(*database_.sites[index].anchor);
    write(index, site, anchor, true);
  }

  /// The site is this marker's from now on.
  void apply(std::size_t index, std::size_t marker, const std::string& step) {
    const Marker& there = markers_[marker];
    const std::string label = place(index, *there.found, there.file, step, {});
    if (there.found->unclosed) sayUnclosed(database_.sites[index].site.sequence, label, there);
    const std::size_t end = ends_[index];
    if (there.end && end != kNone) {
      static_cast<void>(place(end, *there.end, there.file, kOpener, label));
    } else if (there.end) {
      addSite(*there.end, there.file, label, kOpener);
    } else if (end != kNone && database_.sites[end].site.alive && groups_[end] != Group::fresh) {
      this->end(end, kOpener);
    }
  }

  /// Puts a site where it was found; answers its label. `given` is the label that it has to have; empty: its own.
  std::string place(std::size_t index, const FoundSite& found, std::size_t file, const std::string& step,
                    const std::string& given) {
    const AnchoredSite& one = database_.sites[index];
    const Site& before = one.site;
    Site now = before;
    now.alive = true;
    const bool sameFile = files_[file].key == files_[fileOf_[index]].key;
    if (!sameFile) now.file = files_[file].name;
    now.line = found.line;
    if (before.column != 0) now.column = found.column;  // a person who gave no column meant the line
    now.label = given.empty() ? labelOf(one, found, file) : given;
    files_[file].hasSites = true;
    const bool moved = !sameFile || now.line != before.line || now.column != before.column;
    if (!before.alive) {
      say(What::revived, now, &before, &now, step);
    } else if (moved) {
      say(What::moved, now, &before, &now, step);
    }
    const bool edited =
        before.alive && one.anchor && !one.anchor->rule.empty() && one.anchor->text != found.anchor.text;
    if (edited && !found.isEnd) say(What::edited, now, &before, &now, step);
    if (before.alive && now.label != before.label) say(What::relabelled, now, &before, &now, step);
    const bool appends = !before.alive || moved || now.label != before.label;
    const bool fresh = one.anchor && !one.movedByHand && anchorOf(*one.anchor) == found.anchor;
    if (appends || !fresh) write(index, now, found.anchor, appends);
    return now.label;
  }

  /// A person's label wins until the source's own changes.
  std::string labelOf(const AnchoredSite& one, const FoundSite& found, std::size_t file) {
    const std::string source = one.anchor ? one.anchor->label : std::string();
    const bool changed = one.anchor && !found.anchor.label.empty() && found.anchor.label != source;
    if (changed) {
      labels_.take(found.kind, found.anchor.label);
      return found.anchor.label;
    }
    if (one.site.alive || !found.anchor.label.empty()) return one.site.label;
    // It lives again: another site may have its label by now.
    return labels_.tryTake(found.kind, one.site.label)
               ? one.site.label
               : labels_.give(found.kind, found.anchor.function, leafOf(files_[file].name));
  }

  static std::string leafOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

  /// Lines that persons marked, and that no marker is on.
  void findLines() {
    kelvar_sources::TextNumbers numbers;
    std::vector<KnownSite> known;
    std::vector<std::size_t> sites;
    std::vector<bool> wanted(files_.size(), false);
    bool vanished = false;
    for (std::size_t i = 0; i < database_.sites.size(); ++i) {
      if (groups_[i] != Group::line || follows(i)) continue;
      const AnchoredSite& one = database_.sites[i];
      known.push_back(
          {fileOf_[i], one.site.line, true,
           kelvar_sources::fingerprintOf(sitenotes::annotation_t::parallel, anchorOf(*one.anchor), numbers)});
      sites.push_back(i);
      wanted[fileOf_[i]] = true;
      vanished = vanished || !files_[fileOf_[i]].scanned;
    }
    if (known.empty()) return;
    std::vector<SeenSite> seen;
    std::vector<const FoundSite*> places;
    std::vector<bool> hadSites(files_.size(), false);
    for (const std::size_t file : fileOf_) hadSites[file] = true;
    for (std::size_t file = 0; file < files_.size(); ++file) {
      // A file that vanished may be any file that is new.
      const bool readable = files_[file].scanned && files_[file].scanned->read;
      if (!readable || !(wanted[file] || (vanished && !hadSites[file]))) continue;
      for (const FoundSite& line : linesOf(file)) {
        seen.push_back(
            {file, line.line, kelvar_sources::fingerprintOf(sitenotes::annotation_t::parallel, line.anchor, numbers)});
        places.push_back(&line);
      }
    }
    const FindResult result = findSorted(known, sites, seen);
    for (std::size_t k = 0; k < known.size(); ++k) {
      const FindResult::Answer& answer = result.known[k];
      const Site& site = database_.sites[sites[k]].site;
      if (answer.seen != FindResult::kNone) {
        const bool renamed = seen[answer.seen].file != known[k].file && answer.step != Step::elsewhere;
        placeLine(sites[k], *places[answer.seen], seen[answer.seen].file,
                  renamed ? kRenamedFile : std::string(nameOf(answer.step)));
      } else if (answer.ambiguous) {
        say(What::ambiguous, site, &site, &site, std::string(nameOf(Step::alignment)));
        files_[fileOf_[sites[k]]].hasSites = true;
      } else {
        end(sites[k], "-");
      }
    }
  }

  /// Whether the site is the end of one that a marker has.
  [[nodiscard]] bool follows(std::size_t index) {
    if (!followersKnown_) {
      for (std::size_t i = 0; i < ends_.size(); ++i) {
        if (ends_[i] != kNone && marked_[i] != kNone) followers_.insert(ends_[i]);
      }
      followersKnown_ = true;
    }
    return followers_.count(index) != 0;
  }

  void placeLine(std::size_t index, const FoundSite& line, std::size_t file, const std::string& step) {
    FoundSite found = line;
    found.column = database_.sites[index].site.column;
    found.anchor.rule.clear();
    found.kind = database_.sites[index].site.kind;
    const AnchoredSite& one = database_.sites[index];
    if (one.anchor->text != found.anchor.text) say(What::edited, one.site, &one.site, &one.site, step);
    static_cast<void>(place(index, found, file, step, one.site.label));
  }

  void addNew() {
    for (const File& file : files_) {
      for (const std::size_t marker : file.markers) {
        const Marker& there = markers_[marker];
        if (there.site != kNone || contested_.count(marker) != 0 || !input_.makeNew) continue;
        const std::string given = there.found->anchor.label.empty()
                                      ? labels_.give(there.found->kind, there.found->anchor.function, leafOf(file.name))
                                      : there.found->anchor.label;
        const std::int64_t sequence = addSite(*there.found, there.file, given, "-");
        if (there.found->unclosed) sayUnclosed(sequence, given, there);
        if (there.end) addSite(*there.end, there.file, given, kOpener);
      }
    }
  }

  std::int64_t addSite(const FoundSite& found, std::size_t file, const std::string& label, const std::string& step) {
    const Site site{.sequence = next_++,
                    .kind = found.kind,
                    .label = label,
                    .file = files_[file].name,
                    .line = found.line,
                    .column = found.column};
    files_[file].hasSites = true;
    say(What::added, site, nullptr, &site, step);
    plan_.edits.edits.push_back({.site = site, .anchor = rowOf(found.anchor)});
    return site.sequence;
  }

  void write(std::size_t index, const Site& site, const std::optional<Anchor>& anchor, bool appends,
             bool keeps = false) {
    kelvar_platform::AnchoredEdits::Edit edit{.site = site, .appends = appends, .keepsRevision = keeps, .anchor = {}};
    if (anchor) edit.anchor = rowOf(*anchor);
    if (edit.anchor && keeps) edit.anchor->revision = database_.sites[index].anchor->revision;
    plan_.edits.edits.push_back(std::move(edit));
  }

  void say(What what, const Site& site, const Site* before, const Site* now, const std::string& step) {
    ScanEvent event{.what = what,
                    .sequence = site.sequence,
                    .kind = site.kind,
                    .label = site.label,
                    .oldFile = {},
                    .newFile = {},
                    .step = step};
    if (before) {
      event.oldFile = before->file;
      event.oldLine = before->line;
      event.oldColumn = before->column;
    }
    if (now) {
      event.newFile = now->file;
      event.newLine = now->line;
      event.newColumn = now->column;
    }
    plan_.events.push_back(std::move(event));
  }

  void sayUnclosed(std::int64_t sequence, const std::string& label, const Marker& marker) {
    const Site site{.sequence = sequence,
                    .kind = marker.found->kind,
                    .label = label,
                    .file = files_[marker.file].name,
                    .line = marker.found->line,
                    .column = marker.found->column};
    say(What::unclosed, site, nullptr, &site, "-");
  }

  /// The files that have sites, as they are now.
  void recordSources() {
    std::map<std::string, const kelvar_platform::SourceRow*> before;
    for (const kelvar_platform::SourceRow& row : database_.sources) before.emplace(row.file, &row);
    for (const File& file : files_) {
      const auto had = before.find(file.name);
      const bool ours = file.scanned ? file.scanned->read : input_.tree.covers(file.key);
      if (!ours) continue;
      if (!file.hasSites || !file.scanned) {
        if (had != before.end()) plan_.edits.forgottenSources.push_back(file.name);
        continue;
      }
      kelvar_platform::SourceRow row{file.name, file.scanned->digest, file.scanned->sites.lines};
      if (had == before.end() || !(*had->second == row)) plan_.edits.sources.push_back(std::move(row));
    }
  }

  const ScanInput& input_;
  const kelvar_platform::AnchoredSites& database_;
  std::int64_t next_;
  std::unordered_map<std::string, std::size_t> numbers_;  // of files, by key
  std::vector<File> files_;
  std::vector<std::size_t> fileOf_;  // by site
  std::vector<Marker> markers_;
  std::vector<Group> groups_;        // by site
  std::vector<std::size_t> ends_;    // by site: the site that ends it
  std::vector<std::size_t> marked_;  // by site: its marker
  std::vector<std::pair<std::size_t, std::size_t>> settled_;
  std::unordered_set<std::size_t> contested_;  // markers
  std::unordered_set<std::size_t> followers_;
  bool followersKnown_ = false;
  std::map<std::size_t, std::vector<FoundSite>> lines_;  // by file
  std::vector<std::size_t> git_;
  std::vector<bool> asked_;
  kelvar_sources::Labels labels_;
  ScanPlan plan_;
};

}  // namespace

ScanPlan planOf(const ScanInput& input, const kelvar_platform::AnchoredSites& database) {
  return Planner(input, database).run();
}

}  // namespace kelvar_tool
