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

/// Where an analysis stands in a project.
struct Standing {
  const char* kind;
  const char* path;
  digestio::SummaryDataKind dataKind;
};
constexpr std::array kStandings{
    Standing{"survey", "survey", digestio::kSurvey},
    Standing{"vectorization", "survey/surveyvectorization", digestio::kSurveyVectorization},
    Standing{"suitability", "suitability", digestio::kSuitability},
    Standing{"dependencies", "dependencies", digestio::kCorrectness},
    Standing{"map", "map", digestio::kMap},
};

const Standing& standingOf(const Source& source) {
  return *std::find_if(kStandings.begin(), kStandings.end(),
                       [&](const Standing& standing) { return std::string_view(standing.kind) == source.kind; });
}

/// The sites as the annotation database says now; none where there is no database.
std::vector<kelvar_platform::Site> annotatedSites(const fs::path& database) {
  if (!fs::exists(database)) return {};
  return kelvar_platform::AnnotationEditor(database.native(), kelvar_platform::AnnotationEditor::Open::existing)
      .list(false);
}

/// Now, or the moment that builds which are to be reproduced are told to take for it.
std::uint64_t now() {
  const char* const told = std::getenv("SOURCE_DATE_EPOCH");
  std::string_view text = told ? told : "";
  const auto moment = takeNumber<std::uint64_t>(text);
  return moment && text.empty() ? *moment : static_cast<std::uint64_t>(std::time(nullptr));
}

/// The tools do not say when they ran: their files were written while they did.
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

/// Compilers write an empty file for a unit that they have nothing to say about. Where others are named with it, it is
/// one of these; alone, or among empty ones alone, it is more likely a mistake.
bool isUnitWithoutRemarks(const Request& request, const std::string& file) {
  const auto isEmpty = [](const std::string& path) {
    std::error_code error;
    return fs::file_size(path, error) == 0 && !error;
  };
  return std::string_view(request.source->kind) == "vectorization" && isEmpty(file) &&
         !std::all_of(request.files.begin(), request.files.end(), isEmpty);
}

/// What was measured once counts once.
void requireEachOnce(const std::vector<std::string>& files) {
  std::set<std::pair<dev_t, ino_t>> known;
  for (const std::string& file : files) {
    struct stat status {};
    if (file == "-" ? fstat(0, &status) != 0 : stat(file.c_str(), &status) != 0) continue;
    if (known.emplace(status.st_dev, status.st_ino).second) continue;
    throw kelvar_platform::ReadError({.file = file, .place = "", .expected = "a file that is named once"});
  }
}

/// Hands the records of all files on; the reports of each file are numbered behind those of the one before.
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
  const Standing& standing = standingOf(*request.source);
  const bool isSub = standing.dataKind == digestio::kSurveyVectorization;
  kelvar_platform::ProgramRecord program{.dataKind = standing.dataKind, .programMaxGain = outcome.programMaxGain};
  program.processors = request.wishes.cores;
  run.finalizationEndTime = now();
  kelvar_platform::ResultWriter writer(directory, isSub ? std::nullopt : std::optional(run), program);
  for (const Detail& detail : outcome.details) writer.add(detail);
  for (const kelvar_platform::Evidence& evidence : outcome.evidence) writer.add(evidence);
  writer.finish();
  // A sub-result is read through its result's own file.
  if (isSub && !fs::exists(directory.parent_path() / "result.json")) writeRun(directory.parent_path(), run);
  if (standing.dataKind == digestio::kSurvey) {
    writeFile(fs::path(request.wishes.project) / kLineTimesFile, outcome.lineTimes);
  }
  writeFile(directory / "collector.log", logText(request, outcome.remarks));
}

/// A result that says nothing of the program does not take the place of one that may say much.
void requireContent(const Request& request, const Outcome& outcome) {
  if (outcome.emptiness.empty() || request.allowEmpty) return;
  const std::string file = request.files.empty() ? std::string(request.source->option) : request.files.front();
  throw kelvar_platform::ReadError({.file = file,
                                    .place = "",
                                    .expected = std::string("something to say of the program (") + outcome.emptiness +
                                                "); --allow-empty writes the empty result all the same"});
}

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
  return (fs::path(request.wishes.project) / standingOf(*request.source).path).native();
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
  const std::unique_ptr<Analysis> analysis = request.source->analyse(places, request.wishes);
  readFiles(request, showProgress, reading, *analysis);
  Outcome outcome = analysis->finish(reading);
  requireContent(request, outcome);
  outcome.remarks.insert(outcome.remarks.end(), reading.remarks.begin(), reading.remarks.end());
  const std::vector<std::string> open = unclosed(places);
  outcome.remarks.insert(outcome.remarks.end(), open.begin(), open.end());
  if (request.isCancelled && request.isCancelled()) throw Cancelled();
  const fs::path directory = project / standingOf(*request.source).path;
  write(request, outcome, run, directory);
  if (fs::exists(database)) {
    kelvar_platform::AnnotationEditor(database.native(), kelvar_platform::AnnotationEditor::Open::existing)
        .snapshot(directory.native());
  }
  outcome.remarks.push_back(std::to_string(outcome.details.size()) + " rows written to " + directory.native());
  return outcome.remarks;
}

}  // namespace kelvar_import
