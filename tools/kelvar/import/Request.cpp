#include "Request.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>
#include <utility>

#include "Annotations.h"
#include "Diagnosis.h"
#include "LineTimes.h"
#include "LoopEnds.h"
#include "ResultWriter.h"
#include "RunFolder.h"
#include "Sources.h"

namespace kelvar_import {

namespace {

namespace fs = std::filesystem;
using namespace kelvar_readers;

constexpr std::array kSources{
    Source{"--perf", "survey", "perf.data, or the text of perf script", readPerf, surveyOf, true},
    Source{"--callgrind", "survey",
           "callgrind.out of valgrind --tool=callgrind --dump-instr=yes; counts instructions, not time", readCallgrind,
           surveyOf, true},
    Source{"--clang-remarks", "vectorization", "YAML of clang -fsave-optimization-record", readClangRemarks,
           vectorizationOf, false},
    Source{"--gcc-remarks", "vectorization", "JSON of gcc -fsave-optimization-record", readGccRemarks, vectorizationOf,
           false},
    Source{"--tsan", "dependencies", "Text that a program built with -fsanitize=thread printed", readTsan,
           dependenciesOf, false},
    Source{"--helgrind", "dependencies", "XML of valgrind --tool=helgrind --xml=yes", readValgrindXml, dependenciesOf,
           false},
    Source{"--drd", "dependencies", "XML of valgrind --tool=drd --xml=yes", readValgrindXml, dependenciesOf, false},
    Source{"--lackey", "map", "Trace of valgrind --tool=lackey --trace-mem=yes; wants --binary", readLackey, mapOf,
           true},
    Source{"--coz", "suitability", "profile.coz", readCoz, suitabilityOf, false},
    Source{"--model", "suitability", "Amdahl's law over the project's own survey; wants --cores", nullptr, modelOf,
           false},
};

/// The directory of an analysis in a project.
struct ResultPath {
  const char* kind;
  const char* path;
  digestio::SummaryDataKind dataKind;
};
constexpr std::array kResultPaths{
    ResultPath{"survey", "survey", digestio::kSurvey},
    ResultPath{"vectorization", "survey/surveyvectorization", digestio::kSurveyVectorization},
    ResultPath{"suitability", "suitability", digestio::kSuitability},
    ResultPath{"dependencies", "dependencies", digestio::kCorrectness},
    ResultPath{"map", "map", digestio::kMap},
};

const ResultPath& resultPathOf(const Source& source) {
  return *std::find_if(kResultPaths.begin(), kResultPaths.end(),
                       [&](const ResultPath& result) { return std::string_view(result.kind) == source.kind; });
}

/// The living sites of the annotation database; none if there is no database.
std::vector<kelvar_platform::Site> annotatedSites(const fs::path& database) {
  if (!fs::exists(database)) return {};
  return kelvar_platform::AnnotationEditor(database.native(), kelvar_platform::AnnotationEditor::Open::existing)
      .list(false);
}

/// The current time, or SOURCE_DATE_EPOCH if it is set, for reproducible builds.
std::uint64_t now() {
  const char* const told = std::getenv("SOURCE_DATE_EPOCH");
  std::string_view text = told ? told : "";
  const auto moment = takeNumber<std::uint64_t>(text);
  return moment && text.empty() ? *moment : static_cast<std::uint64_t>(std::time(nullptr));
}

/// Tools do not record when they ran, so the times of their files are taken.
void timeOfCollection(const std::vector<std::string>& files, kelvar_platform::RunRecord& run) {
  std::uint64_t first = std::numeric_limits<std::uint64_t>::max();
  for (const std::string& file : files) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0 || status.st_mtime < 0) continue;
    const std::uint64_t time = std::min(now(), static_cast<std::uint64_t>(status.st_mtime));
    first = std::min(first, time);
    run.collectionEndTime = std::max(run.collectionEndTime, time);
  }
  if (run.collectionEndTime > 0) run.collectionStartTime = first;
}

void writeFile(const fs::path& path, const std::string& text) {
  const fs::path aside = path.native() + ".new";
  std::ofstream file(aside, std::ios::binary);
  file << text;
  file.close();
  std::error_code error;
  if (file) fs::rename(aside, path, error);
  if (!file || error) {
    const std::string why = error ? error.message() : strerror(errno);
    fs::remove(aside, error);
    throw kelvar_platform::ReadError(
        {.file = path.native(), .place = "", .expected = "a file to write to (" + why + ")"});
  }
}

/// Compilers write an empty file for a unit without remarks, so an empty file among others is skipped. If all files are
/// empty, that is more likely a mistake.
bool isUnitWithoutRemarks(const Request& request, const std::string& file) {
  const auto isEmpty = [](const std::string& path) {
    std::error_code error;
    return fs::file_size(path, error) == 0 && !error;
  };
  return std::string_view(request.source->kind) == "vectorization" && isEmpty(file) &&
         !std::all_of(request.files.begin(), request.files.end(), isEmpty);
}

/// Refuses a file that is named twice: its figures would count twice.
void requireEachOnce(const std::vector<std::string>& files) {
  std::set<std::pair<dev_t, ino_t>> known;
  for (const std::string& file : files) {
    struct stat status {};
    if (file == "-" ? fstat(0, &status) != 0 : stat(file.c_str(), &status) != 0) continue;
    if (known.emplace(status.st_dev, status.st_ino).second) continue;
    throw kelvar_platform::ReadError({.file = file, .place = "", .expected = "a file that is named once"});
  }
}

/// Passes the records of all files to the analysis. Each file numbers its reports from 1, so those of later files are
/// renumbered.
void readFiles(const Request& request, const ShowProgress& showProgress, Reading& reading, Analysis& analysis) {
  std::size_t before = 0;
  std::size_t greatest = 0;
  Record renumbered;
  const Sink sink = [&](const Record& record) {
    if (record.report == 0 || before == 0) return analysis.add(record);
    renumbered = record;
    renumbered.report += before;
    analysis.add(renumbered);
  };
  const Sink counting = [&](const Record& record) {
    if (request.isCancelled && request.isCancelled()) throw Cancelled();
    greatest = std::max(greatest, record.report);
    sink(record);
  };
  if (request.live) {
    Input input(request.live->descriptor, request.live->name);
    request.source->read(input, reading, counting);
    if (!reading.endedEarly) request.live->finish();
    return;
  }
  for (const std::string& file : request.files) {
    if (isUnitWithoutRemarks(request, file)) continue;
    Input input(file, showProgress);
    request.source->read(input, reading, counting);
    before += greatest;
    greatest = 0;
  }
}

std::string logText(const Request& request, const std::vector<std::string>& remarks) {
  std::string text = std::string("imported by kelvar as ") + request.source->kind + " from " + request.source->option;
  for (const std::string& file : request.files) text.append(" ").append(leafOf(file));
  text += "\n";
  for (const std::string& remark : remarks) text += remark + "\n";
  return text;
}

void write(const Request& request, const Outcome& outcome, kelvar_platform::RunRecord run, const fs::path& directory) {
  const digestio::SummaryDataKind dataKind = resultPathOf(*request.source).dataKind;
  const bool isSub = dataKind == digestio::kSurveyVectorization;
  kelvar_platform::ProgramRecord program{.dataKind = dataKind, .programMaxGain = outcome.programMaxGain};
  program.processors = request.wishes.cores;
  run.finalizationEndTime = now();
  kelvar_platform::ResultWriter writer(directory, isSub ? std::nullopt : std::optional(run), program);
  for (const Detail& detail : outcome.details) writer.add(detail);
  for (const kelvar_platform::Evidence& evidence : outcome.evidence) writer.add(evidence);
  writer.finish();
  // A sub-result has no result.json of its own and uses that of its result.
  if (isSub && !fs::exists(directory.parent_path() / "result.json")) writeRun(directory.parent_path(), run);
  if (dataKind == digestio::kSurvey) {
    writeFile(fs::path(request.wishes.project) / kLineTimesFile, outcome.lineTimes);
  }
  writeFile(directory / "collector.log", logText(request, outcome.remarks));
}

/// An empty result must not replace an existing one unasked.
void requireContent(const Request& request, const Outcome& outcome) {
  if (outcome.emptiness.empty() || request.allowEmpty) return;
  const std::string file = request.files.empty() ? std::string(request.source->option) : request.files.front();
  throw kelvar_platform::ReadError({.file = file,
                                    .place = "",
                                    .expected = std::string("a result that is not empty (") + outcome.emptiness +
                                                "); --allow-empty writes the empty result all the same"});
}

/// A sentence for each site without an end annotation.
std::vector<std::string> unclosed(const Places& places) {
  std::vector<std::string> remarks;
  for (const Region& region : places.regions()) {
    if (region.last > 0) continue;
    remarks.push_back(std::string(sitenotes::annotation_t::display(region.kind)) + " '" + region.label + "' at " +
                      region.file + ":" + std::to_string(region.first) +
                      " has no end annotation of its label in its file: nothing lies in it");
  }
  return remarks;
}

}  // namespace

std::span<const Source> sources() {
  return kSources;
}

std::string resultDirectory(const Request& request) {
  return (fs::path(request.wishes.project) / resultPathOf(*request.source).path).native();
}

std::vector<std::string> runImport(const Request& request, const ShowProgress& showProgress) {
  const fs::path project = request.wishes.project;
  const fs::path database = annotationsOf(project.native());
  kelvar_platform::RunRecord run = request.ran.value_or(kelvar_platform::RunRecord());
  run.finalizationStartTime = now();
  if (run.collectionStartTime == 0) timeOfCollection(request.files, run);
  requireEachOnce(request.files);
  std::vector<kelvar_platform::Site> sites = annotatedSites(database);
  std::erase_if(sites, [&](const kelvar_platform::Site& site) { return request.leftOut.count(site.sequence) > 0; });
  Places places(sites, request.paths);
  Frames frames;
  Binaries binaries(request.binaries, frames);
  Reading reading{.binaries = binaries, .event = request.event, .mapAccesses = request.mapAccesses};
  LoopEnds ends;
  Wishes wishes = request.wishes;
  wishes.lastLineOfLoop = [&ends](const std::string& file, int line, int column) {
    return ends.lastLine(file, line, column);
  };
  const std::unique_ptr<Analysis> analysis = request.source->analyse(places, wishes);
  readFiles(request, showProgress, reading, *analysis);
  Outcome outcome = analysis->finish(reading);
  requireContent(request, outcome);
  outcome.remarks.insert(outcome.remarks.end(), reading.remarks.begin(), reading.remarks.end());
  const std::vector<std::string> open = unclosed(places);
  outcome.remarks.insert(outcome.remarks.end(), open.begin(), open.end());
  if (request.isCancelled && request.isCancelled()) throw Cancelled();
  const fs::path directory = resultDirectory(request);
  write(request, outcome, run, directory);
  if (fs::exists(database)) {
    kelvar_platform::AnnotationEditor(database.native(), kelvar_platform::AnnotationEditor::Open::existing)
        .snapshot(directory.native());
  }
  outcome.remarks.push_back(std::to_string(outcome.details.size()) + " rows written to " + directory.native());
  return outcome.remarks;
}

}  // namespace kelvar_import
