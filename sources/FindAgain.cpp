#include "FindAgain.h"

#include <algorithm>
#include <array>
#include <map>

#include "FileAlignment.h"
#include "UniqueKeys.h"

namespace kelvar_sources {

namespace {

constexpr std::size_t kNone = FindResult::kNone;

constexpr std::array<std::string_view, 8> kStepNames{"none",           "same-place", "full-key",  "key-without-before",
                                                     "text-and-after", "alignment",  "elsewhere", "dead-site"};

class Finder {
 public:
  Finder(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen,
         const std::vector<std::size_t>& renamed, const std::vector<bool>& unchanged)
      : known_(known), seen_(seen), renamed_(renamed), unchanged_(unchanged), partnerOfSeen_(seen.size(), kNone) {
    result_.known.resize(known.size());
    result_.contested.resize(seen.size(), false);
  }

  FindResult run() {
    groupByFile();
    for (auto& [number, file] : files_) {
      if (unchanged_[number]) file.matchUnchanged(partnerOfSeen_);
    }
    matchFiles();
    // A site found in another file splits a gap of that file.
    while (matchAcross(true, Step::elsewhere) || matchAcross(false, Step::deadSite)) matchFiles();
    return std::move(result_);
  }

 private:
  void groupByFile() {
    for (std::size_t i = 0; i < known_.size(); ++i) {
      if (known_[i].alive) fileNumbered(renamed_[known_[i].file]).known.push_back(i);
    }
    for (std::size_t i = 0; i < seen_.size(); ++i) fileNumbered(seen_[i].file).seen.push_back(i);
  }

  FileAlignment& fileNumbered(std::size_t number) {
    return files_.try_emplace(number, known_, seen_, result_).first->second;
  }

  void matchFiles() {
    for (auto& [number, file] : files_) {
      if (!unchanged_[number]) file.match(partnerOfSeen_);
    }
  }

  /// Pairs undecided sites, living or dead, whose keys are unique on both sides.
  bool matchAcross(bool alive, Step step) {
    UniqueKeys keys;
    for (std::size_t i = 0; i < known_.size(); ++i) {
      if (known_[i].alive != alive || result_.known[i].seen != kNone || result_.known[i].ambiguous) continue;
      const Fingerprint& print = known_[i].print;
      if (print.function == 0 && print.after[0] == 0) continue;  // it has no surroundings
      keys.addKnown(keyOf(print, KeyLevel::withoutBefore), i);
    }
    if (keys.empty()) return false;
    for (std::size_t i = 0; i < seen_.size(); ++i) {
      if (partnerOfSeen_[i] == kNone && !result_.contested[i])
        keys.addSeen(keyOf(seen_[i].print, KeyLevel::withoutBefore), i);
    }
    const auto pairs = keys.pairs();
    for (const auto& [one, other] : pairs) {
      result_.known[one] = {.seen = other, .step = step};
      partnerOfSeen_[other] = one;
    }
    return !pairs.empty();
  }

  const std::vector<KnownSite>& known_;
  const std::vector<SeenSite>& seen_;
  const std::vector<std::size_t>& renamed_;
  const std::vector<bool>& unchanged_;
  std::vector<std::size_t> partnerOfSeen_;
  std::map<std::size_t, FileAlignment> files_;
  FindResult result_;
};

}  // namespace

std::string_view nameOf(Step step) {
  return kStepNames[static_cast<std::size_t>(step)];
}

FindResult findAgain(const std::vector<KnownSite>& known, const std::vector<SeenSite>& seen,
                     const std::vector<std::size_t>& renamed, const std::vector<bool>& unchanged) {
  return Finder(known, seen, renamed, unchanged).run();
}

}  // namespace kelvar_sources
