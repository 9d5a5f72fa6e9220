#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "PerKind.h"
#include "digestio.h"
#include "sitenotes.h"

namespace kelvar_bench {

/// A source position; the file is an index into the project's files.
struct Place {
  std::uint32_t file = 0;
  int line = 0;
  int column = 0;
};

/// One row of the annotation database.
struct Edit {
  std::uint64_t sequence = 0;
  bool alive = true;
  bool disabled = false;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::uint32_t label = 0;
  Place place;
};

/// What an analysis reports for one place. The collection's kind decides which values are used.
struct Detail {
  digestio::SummaryDetailKind detailKind = digestio::kAnnotatedSite;
  sitenotes::annotation_t::kind_t annotationKind = sitenotes::annotation_t::parallel;
  std::uint32_t label = 0;
  Place place;
  double selfTime = 0;
  double totalTime = 0;
  double siteGain = 0;
  double programGain = 0;
  std::uint32_t bits = 0;  ///< the source of the small numbers: priority, cores, flags, errors, warnings, strides
};

/// A generated program of any size: its annotations, their edits after the analyses, and the results of five analyses.
/// Deterministic: the same for the same arguments on any machine.
///
/// Annotations are in regions of a few lines. Consecutive lines have different kinds, since neighbours of one kind
/// fold. Files have about two hundred sites; every second leaf name exists in four directories.
class GeneratedProject {
 public:
  GeneratedProject(std::size_t sites, std::uint64_t seed);

  /// In the order of their revisions, from 1.
  [[nodiscard]] const std::vector<Edit>& edits() const noexcept { return edits_; }
  /// The revision at which the analyses ran: some sites were added, moved and removed later.
  [[nodiscard]] std::size_t recordedRevision() const noexcept { return recorded_; }
  /// In random order, as an analysis may list them.
  [[nodiscard]] const std::vector<Detail>& details(digestio::SummaryDataKind kind) const { return details_[kind]; }

  [[nodiscard]] std::size_t files() const noexcept { return files_.size(); }
  [[nodiscard]] const std::string& file(std::uint32_t index) const { return files_[index]; }
  [[nodiscard]] static std::string label(std::uint32_t number);

 private:
  void annotate(std::size_t sites);
  void editSince();
  void analyse();
  void addSites(digestio::SummaryDataKind kind, double share);
  void addLoops(digestio::SummaryDataKind kind, double share, digestio::SummaryDetailKind detailKind);
  [[nodiscard]] Detail measured();

  [[nodiscard]] std::uint64_t below(std::uint64_t bound) { return engine_() % bound; }
  [[nodiscard]] bool chance(double share) { return static_cast<double>(below(1'000'000)) < share * 1e6; }
  template <class T>
  void shuffle(std::vector<T>& values);

  std::mt19937_64 engine_;
  std::vector<std::string> files_;
  std::vector<Edit> edits_;
  std::size_t recorded_ = 0;
  kelvar_2_1_7::PerKind<std::vector<Detail>> details_;
};

}  // namespace kelvar_bench
