#include "FileAlignment.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <unordered_map>

#include "GapAlignment.h"
#include "UniqueKeys.h"

namespace kelvar_sources {

namespace {

constexpr std::size_t kNone = FindResult::kNone;

/// A pair by its positions in the two lists of the file.
struct Pair {
  std::size_t known = 0;
  std::size_t seen = 0;
};

/// A line with a site's surroundings.
using Place = std::pair<int, Key>;

template <class Site>
Place placeOf(const Site& site) {
  return {site.line, keyOf(site.print, KeyLevel::full)};
}

/// The longest run of pairs that do not cross; `pairs` come in the order of their known sites.
std::vector<Pair> longestRun(const std::vector<Pair>& pairs) {
  std::vector<std::size_t> tails;  // by length: the pair that ends a run of that length with the lowest seen site
  std::vector<std::size_t> before(pairs.size(), kNone);
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const auto at = std::partition_point(tails.begin(), tails.end(),
                                         [&](std::size_t tail) { return pairs[tail].seen < pairs[i].seen; });
    if (at != tails.begin()) before[i] = *std::prev(at);
    if (at == tails.end()) {
      tails.push_back(i);
    } else {
      *at = i;
    }
  }
  std::vector<Pair> run;
  for (std::size_t i = tails.empty() ? kNone : tails.back(); i != kNone; i = before[i]) run.push_back(pairs[i]);
  std::reverse(run.begin(), run.end());
  return run;
}

}  // namespace

void FileAlignment::decide(std::size_t knownIndex, std::size_t seenIndex, Step step,
                           std::vector<std::size_t>& partnerOfSeen) {
  result_.known[knownIndex] = {.seen = seenIndex, .step = step};
  partnerOfSeen[seenIndex] = knownIndex;
}

void FileAlignment::matchUnchanged(std::vector<std::size_t>& partnerOfSeen) {
  std::map<Place, std::vector<std::size_t>> atPlace;  // the first one last
  const std::vector<std::size_t> backwards(seen.rbegin(), seen.rend());
  for (const std::size_t index : backwards) {
    if (partnerOfSeen[index] == kNone) atPlace[placeOf(allSeen_[index])].push_back(index);
  }
  std::vector<std::size_t> open;
  for (const std::size_t index : known) {
    const auto there = atPlace.find(placeOf(allKnown_[index]));
    if (there == atPlace.end() || there->second.empty()) {
      open.push_back(index);
      continue;
    }
    decide(index, there->second.back(), Step::samePlace, partnerOfSeen);
    there->second.pop_back();
  }
  std::vector<std::size_t> candidates;
  std::copy_if(seen.begin(), seen.end(), std::back_inserter(candidates),
               [&](std::size_t index) { return partnerOfSeen[index] == kNone; });
  leaveAmbiguous(open, candidates);
}

/// Decides for the remaining sites whether they may be one of the candidates. If there are very many, all may be.
void FileAlignment::leaveAmbiguous(const std::vector<std::size_t>& open, const std::vector<std::size_t>& candidates) {
  constexpr std::size_t kMostPairs = std::size_t{1} << 21U;
  if (open.empty() || candidates.empty()) return;
  const bool all = open.size() > kMostPairs / candidates.size();
  for (const std::size_t other : candidates) result_.contested[other] = all;
  for (const std::size_t index : open) {
    result_.known[index].ambiguous = all;
    for (std::size_t j = 0; !all && j < candidates.size(); ++j) {
      if (likeness(allKnown_[index].print, allSeen_[candidates[j]].print) < kLeastLikeness) continue;
      result_.known[index].ambiguous = true;
      result_.contested[candidates[j]] = true;
    }
  }
}

bool FileAlignment::match(std::vector<std::size_t>& partnerOfSeen) {
  bool any = false;
  if (!keysDone_) {
    keysDone_ = true;
    matchByKeys(KeyLevel::full, Step::fullKey, partnerOfSeen);
    matchByKeys(KeyLevel::withoutBefore, Step::keyWithoutBefore, partnerOfSeen);
    matchByKeys(KeyLevel::textAndAfter, Step::textAndAfter, partnerOfSeen);
    any = keepLongestRun(partnerOfSeen);
  }
  for (bool more = true; more;) {
    for (const std::size_t index : known) result_.known[index].ambiguous = false;
    for (const std::size_t index : seen) result_.contested[index] = false;
    more = matchGaps(partnerOfSeen);
    // A later scan would take such a site for a certain one, so the first of the best alignments decides.
    if (!more && !takesFirst_ && anyInPlace(partnerOfSeen)) more = takesFirst_ = true;
    any = any || more;
  }
  return any;
}

/// Whether an ambiguous site is on the line of one that it may be.
bool FileAlignment::anyInPlace(const std::vector<std::size_t>& partnerOfSeen) const {
  std::set<Place> ambiguous;
  for (const std::size_t index : known) {
    if (result_.known[index].ambiguous) ambiguous.insert(placeOf(allKnown_[index]));
  }
  return !ambiguous.empty() && std::any_of(seen.begin(), seen.end(), [&](std::size_t index) {
    return partnerOfSeen[index] == kNone && ambiguous.count(placeOf(allSeen_[index])) != 0;
  });
}

/// Undoes pairs that cross the longest run. Sites in order around them are decided first; a site without a partner
/// after that has moved, and is found by its key again.
bool FileAlignment::keepLongestRun(std::vector<std::size_t>& partnerOfSeen) {
  std::vector<std::size_t> kept;
  for (const auto& [place, other] : cuts()) kept.push_back(place);
  std::size_t next = 0;
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (next < kept.size() && kept[next] == i) {
      ++next;
    } else if (result_.known[known[i]].seen != kNone) {
      partnerOfSeen[result_.known[known[i]].seen] = kNone;
      result_.known[known[i]] = {};
    }
  }
  return !kept.empty();
}

std::vector<std::pair<std::size_t, std::size_t>> FileAlignment::cuts() const {
  std::unordered_map<std::size_t, std::size_t> placeOfSeen;
  for (std::size_t i = 0; i < seen.size(); ++i) placeOfSeen.emplace(seen[i], i);
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < known.size(); ++i) {
    const auto place = placeOfSeen.find(result_.known[known[i]].seen);
    if (place != placeOfSeen.end()) pairs.push_back({i, place->second});
  }
  std::vector<std::pair<std::size_t, std::size_t>> run;
  for (const Pair& pair : longestRun(pairs)) run.emplace_back(pair.known, pair.seen);
  return run;
}

void FileAlignment::matchByKeys(KeyLevel level, Step step, std::vector<std::size_t>& partnerOfSeen) {
  UniqueKeys keys;
  for (const std::size_t index : known) {
    if (result_.known[index].seen == kNone) keys.addKnown(keyOf(allKnown_[index].print, level), index);
  }
  if (keys.empty()) return;
  for (const std::size_t index : seen) {
    if (partnerOfSeen[index] == kNone) keys.addSeen(keyOf(allSeen_[index].print, level), index);
  }
  for (const auto& [one, other] : keys.pairs()) decide(one, other, step, partnerOfSeen);
}

bool FileAlignment::matchGaps(std::vector<std::size_t>& partnerOfSeen) {
  std::vector<std::pair<std::size_t, std::size_t>> run = cuts();
  run.emplace_back(known.size(), seen.size());
  bool any = false;
  Pair from;
  for (const auto& [knownCut, seenCut] : run) {
    any = matchGap(from.known, knownCut, from.seen, seenCut, partnerOfSeen) || any;
    from = {knownCut + 1, seenCut + 1};
  }
  return any;
}

bool FileAlignment::matchGap(std::size_t knownFrom, std::size_t knownTo, std::size_t seenFrom, std::size_t seenTo,
                             std::vector<std::size_t>& partnerOfSeen) {
  std::vector<std::size_t> open;
  std::vector<std::size_t> candidates;
  std::vector<Fingerprint> openPrints;
  std::vector<Fingerprint> candidatePrints;
  for (std::size_t i = knownFrom; i < knownTo; ++i) {
    if (result_.known[known[i]].seen != kNone) continue;
    open.push_back(known[i]);
    openPrints.push_back(allKnown_[known[i]].print);
  }
  if (open.empty()) return false;
  for (std::size_t j = seenFrom; j < seenTo; ++j) {
    if (partnerOfSeen[seen[j]] != kNone) continue;
    candidates.push_back(seen[j]);
    candidatePrints.push_back(allSeen_[seen[j]].print);
  }
  if (candidates.empty()) return false;
  GapAlignment alignment = aligned(openPrints, candidatePrints);
  if (takesFirst_) {
    alignment.partner = alignment.first;
    alignment.ambiguous.assign(alignment.ambiguous.size(), false);
    alignment.contested.assign(alignment.contested.size(), false);
  }
  bool any = false;
  for (std::size_t i = 0; i < open.size(); ++i) {
    result_.known[open[i]].ambiguous = alignment.ambiguous[i];
    if (alignment.partner[i] == GapAlignment::kNone) continue;
    decide(open[i], candidates[alignment.partner[i]], Step::alignment, partnerOfSeen);
    any = true;
  }
  for (std::size_t j = 0; j < candidates.size(); ++j) result_.contested[candidates[j]] = alignment.contested[j];
  return any;
}

}  // namespace kelvar_sources
