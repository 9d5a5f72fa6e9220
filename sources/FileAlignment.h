#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "FindAgain.h"

namespace kelvar_sources {

/// Decides about the known and seen sites of one file.
class FileAlignment {
 public:
  /// Takes indices into the two lists of findAgain, in the order of places.
  FileAlignment(const std::vector<KnownSite>& allKnown, const std::vector<SeenSite>& allSeen, FindResult& result)
      : allKnown_(allKnown), allSeen_(allSeen), result_(result) {}

  std::vector<std::size_t> known;
  std::vector<std::size_t> seen;

  /// Decides everything for an unchanged file: each site is on its line, or as ambiguous as before.
  void matchUnchanged(std::vector<std::size_t>& partnerOfSeen);
  /// Decides what can be decided within the file. Returns whether anything was.
  bool match(std::vector<std::size_t>& partnerOfSeen);

 private:
  void leaveAmbiguous(const std::vector<std::size_t>& open, const std::vector<std::size_t>& candidates);
  void matchByKeys(KeyLevel level, Step step, std::vector<std::size_t>& partnerOfSeen);
  bool keepLongestRun(std::vector<std::size_t>& partnerOfSeen);
  /// The longest run of pairs that do not cross, by their positions in the two lists.
  [[nodiscard]] std::vector<std::pair<std::size_t, std::size_t>> cuts() const;
  [[nodiscard]] bool anyInPlace(const std::vector<std::size_t>& partnerOfSeen) const;
  bool matchGaps(std::vector<std::size_t>& partnerOfSeen);
  bool matchGap(std::size_t knownFrom, std::size_t knownTo, std::size_t seenFrom, std::size_t seenTo,
                std::vector<std::size_t>& partnerOfSeen);
  void decide(std::size_t knownIndex, std::size_t seenIndex, Step step, std::vector<std::size_t>& partnerOfSeen);

  const std::vector<KnownSite>& allKnown_;
  const std::vector<SeenSite>& allSeen_;
  FindResult& result_;
  bool keysDone_ = false;
  bool takesFirst_ = false;
};

}  // namespace kelvar_sources
