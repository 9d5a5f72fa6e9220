#include "GeneratedProject.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelvar_bench {

namespace {

using Annotation = sitenotes::annotation_t;
using Kind = Annotation::kind_t;

/// The annotations of one region, top to bottom. No two neighbours have the same kind, also across regions, whichever
/// of the last line of one and the first of the next comes first.
using Region = std::array<Kind, 4>;
constexpr std::array<Region, 5> kRegions{{
    {Annotation::parallel, Annotation::taskloop, Annotation::barrier, Annotation::end_parallel},
    {Annotation::task, Annotation::critical, Annotation::end_critical, Annotation::end_task},
    {Annotation::parallel, Annotation::reduction, Annotation::atomic, Annotation::end_parallel},
    {Annotation::pause, Annotation::shared, Annotation::private_, Annotation::resume},
    {Annotation::taskwait, Annotation::ordered, Annotation::firstprivate, Annotation::flush},
}};

constexpr std::size_t kSitesPerLeaf = 200;
constexpr std::uint32_t kDirectoriesOfSharedLeaf = 4;

constexpr std::array kWords{"solver",  "pressure",        "advect", "assemble_matrix", "smooth", "halo_exchange",
                            "project", "restrict_coarse", "flux",   "limiter",         "norm",   "gather_particles"};
constexpr std::uint32_t kWordCount = kWords.size();

/// Hot spots and loops have other columns than annotations, so that places are distinct.
constexpr int kLoopColumn = 40;

std::string leafName(std::size_t number) {
  return std::string(kWords[number % kWordCount]) + '_' + std::to_string(number / kWordCount) + ".cpp";
}

}  // namespace

GeneratedProject::GeneratedProject(std::size_t sites, std::uint64_t seed) : engine_(seed) {
  annotate(sites);
  editSince();
  analyse();
}

std::string GeneratedProject::label(std::uint32_t number) {
  return std::string(kWords[number % kWordCount]) + '_' + std::to_string(number);
}

void GeneratedProject::annotate(std::size_t sites) {
  edits_.reserve(sites + sites / 8);
  std::uint32_t region = 0;
  for (std::size_t leaf = 0; edits_.size() < sites; ++leaf) {
    const std::uint32_t directories = leaf % 2 == 0 ? 1 : kDirectoriesOfSharedLeaf;
    const auto firstFile = static_cast<std::uint32_t>(files_.size());
    for (std::uint32_t i = 0; i < directories; ++i)
      files_.push_back("/home/build/project/src/module" + std::to_string((leaf * 7 + i) % 23) + "/unit" +
                       std::to_string(i) + '/' + leafName(leaf));
    int line = 20;
    const std::size_t end = std::min(edits_.size() + kSitesPerLeaf * directories, sites);
    for (; edits_.size() < end; ++region) {
      // Some tasks have the label of the task loop before them: label twins, which fold.
      const std::uint32_t label = region % 50 == 1 ? region - 1 : region;
      const std::uint32_t file = firstFile + region % directories;
      if (directories > 1 && chance(0.3)) line -= 5;  // files with the same leaf may be annotated on the same line
      for (const Kind kind : kRegions[region % kRegions.size()]) {
        if (edits_.size() == end) break;
        line += 1 + static_cast<int>(below(6));
        edits_.push_back({.sequence = edits_.size() + 1, .kind = kind, .label = label, .place = {file, line, 5}});
      }
      line += 4;
    }
  }
}

/// A project under development: the analyses saw all but the newest sites, and a tenth of those have changed since.
void GeneratedProject::editSince() {
  const std::size_t sites = edits_.size();
  recorded_ = sites - sites / 50;
  for (std::size_t site = 0; site < sites; ++site) {
    Edit edit = edits_[site];
    const std::uint64_t lot = below(1000);
    if (lot < 60) {
      edit.place.line += 1 + static_cast<int>(below(3));
    } else if (lot < 75) {
      edit.label += 1'000'000;
    } else if (lot < 85) {
      edit.disabled = true;
    } else if (lot < 95) {
      edit.alive = false;
    } else {
      continue;
    }
    edits_.push_back(edit);
  }
}

void GeneratedProject::analyse() {
  addSites(digestio::kSurvey, 0.30);
  addLoops(digestio::kSurvey, 0.20, digestio::kHotSpot);
  addSites(digestio::kSurveyVectorization, 0.15);
  addLoops(digestio::kSurveyVectorization, 0.25, digestio::kLoop);
  addSites(digestio::kSuitability, 0.40);
  addSites(digestio::kCorrectness, 0.40);
  addSites(digestio::kMap, 0.20);
  addLoops(digestio::kMap, 0.10, digestio::kLoop);
  for (std::vector<Detail>& details : details_) shuffle(details);
}

void GeneratedProject::addSites(digestio::SummaryDataKind kind, double share) {
  for (std::size_t site = 0; site < recorded_; ++site) {
    if (!chance(share)) continue;
    Detail detail = measured();
    detail.annotationKind = edits_[site].kind;
    detail.label = edits_[site].label;
    detail.place = edits_[site].place;
    details_[kind].push_back(detail);
  }
}

void GeneratedProject::addLoops(digestio::SummaryDataKind kind, double share, digestio::SummaryDetailKind detailKind) {
  for (std::size_t site = 0; site < recorded_; ++site) {
    if (!chance(share)) continue;
    Detail detail = measured();
    detail.detailKind = detailKind;
    detail.label = 2'000'000 + static_cast<std::uint32_t>(site);
    detail.place = {edits_[site].place.file, edits_[site].place.line + static_cast<int>(below(4)),
                    kLoopColumn + static_cast<int>(kind)};
    details_[kind].push_back(detail);
  }
}

Detail GeneratedProject::measured() {
  // Most times are near zero, in whole microseconds; gains are below 100.
  const double share = static_cast<double>(below(1'000'000)) / 1e6;
  const double micros = static_cast<double>(static_cast<std::int64_t>(share * share * share * 9e7) + 1);
  Detail detail;
  detail.selfTime = micros / 1e6;
  detail.totalTime = (micros + static_cast<double>(below(10'000'000))) / 1e6;
  detail.siteGain = static_cast<double>(100 + below(3200)) / 100;
  detail.programGain = static_cast<double>(100 + below(400)) / 100;
  detail.bits = static_cast<std::uint32_t>(engine_());
  return detail;
}

template <class T>
void GeneratedProject::shuffle(std::vector<T>& values) {
  for (std::size_t left = values.size(); left > 1; --left) std::swap(values[left - 1], values[below(left)]);
}

}  // namespace kelvar_bench
