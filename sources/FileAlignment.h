#pragma once

#include <cstddef>
#include <vector>

#include "FindAgain.h"

namespace kelvar_sources {

/// The sites of one file, known and seen, and what is decided of them.
class FileAlignment {
 public:
  /// Indices into the two lists of findAgain, in the order of their places.
  FileAlignment(const std::vector<KnownSite>& allKnown, const std::vector<SeenSite>& allSeen, FindResult& result)
      : allKnown_(allKnown), allSeen_(allSeen), result_(result) {}

  std::vector<std::size_t> known;
  std::vector<std::size_t> seen;

  /// Decides all of a file that did not change: a site is on its line, or it is as ambiguous as it was.
  void matchUnchanged(std::vector<std::size_t>& partnerOfSeen);
  /// Decides all that the file alone can decide; answers whether anything was.
  bool match(std::vector<std::size_t>& partnerOfSeen);

 private:
  bool matchByKeys(KeyLevel level, Step step, std::vector<std::size_t>& partnerOfSeen);
  bool matchGaps(std::vector<std::size_t>& partnerOfSeen);
  bool matchGap(std::size_t knownFrom, std::size_t knownTo, std::size_t seenFrom, std::size_t seenTo,
                std::vector<std::size_t>& partnerOfSeen);
  void decide(std::size_t knownIndex, std::size_t seenIndex, Step step, std::vector<std::size_t>& partnerOfSeen);

  const std::vector<KnownSite>& allKnown_;
  const std::vector<SeenSite>& allSeen_;
  FindResult& result_;
};

}  // namespace kelvar_sources
