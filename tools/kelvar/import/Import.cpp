#include "Import.h"

#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Request.h"
#include "RunFolder.h"
#include "status/CollectedSources.h"
#include "status/StaleSites.h"

namespace kelvar_tool {

namespace {

using kelvar_import::Request;
using kelvar_import::Source;

constexpr int kMostCores = 1 << 20;

constexpr const char* kExamples =
    "Examples:\n"
    "  perf record --call-graph dwarf build/app\n"
    "  kelvar import survey --perf perf.data --into my-project\n"
    "  kelvar import vectorization --clang-remarks *.opt.yaml --into my-project --map-path /build=src\n"
    "  kelvar import map --lackey trace.gz --binary build/app --into my-project\n"
    "  kelvar import suitability --model --cores 8 --into my-project\n"
    "\n"
    "Files may be compressed (gzip, xz, zstd, bzip2), and - is the standard input. If my-project has\n"
    "annotations.db, data within an annotated site counts for that site, and the state of the annotations is\n"
    "recorded.\n"
    "\n"
    "Exit status: 0 done; 1 a file could not be read, or the result not be written, and the project's result is\n"
    "unchanged, or only a file beside the result could not be written; 2 a usage error; 3 out of memory, or the\n"
    "system failed.";

/// The command line as read, before check() has validated it.
struct Line {
  std::string kind;
  std::optional<std::string> run;
  bool withStale = false;
  Request request;
};

void chooseSource(Line& line, const Source& source) {
  Request& request = line.request;
  if (request.source && request.source != &source) {
    throw UsageError(std::string(source.option) + ": expected one source; " + request.source->option + " is one");
  }
  request.source = &source;
}

void addSource(CLI::App& app, Line& line, const Source& source) {
  if (!source.read) {
    addFlag(
        app, source.option, [&line, &source] { chooseSource(line, source); }, source.help);
    return;
  }
  addTexts(app, source.option, source.help, Follows::asManyAsThereAre, [&line, &source](const std::string& file) {
    chooseSource(line, source);
    line.request.files.push_back(file);
  }).value("FILE...");
}

void takeMapping(Line& line, const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw UsageError("--map-path: expected OLD=NEW, not " + inQuotes(text));
  }
  line.request.paths.prefixes.emplace_back(text.substr(0, equals), text.substr(equals + 1));
}

void takePercent(Line& line, const std::string& text) {
  std::string_view rest = text;
  const auto percent = kelvar_readers::takeNumber<double>(rest);
  if (!percent || !rest.empty() || *percent < 0 || *percent > 100) {
    throw UsageError("--at-least: expected a percentage, not " + inQuotes(text));
  }
  line.request.wishes.atLeast = *percent;
}

void takeCores(Line& line, const std::string& text) {
  const auto cores = decimal(text, kMostCores);
  if (!cores || *cores == 0) throw UsageError("--cores: expected a count of cores, not " + inQuotes(text));
  line.request.wishes.cores = static_cast<int>(*cores);
}

void addOptions(CLI::App& app, Line& line) {
  addText(app, "KIND", "survey, vectorization, dependencies, map or suitability", [&line](const std::string& text) {
    line.kind = text;
  }).required();
  for (const Source& source : kelvar_import::sources()) addSource(app, line, source);
  addPath(app, "--into", "PROJECT", "The project directory that gets the result", line.request.wishes.project)
      .required();
  addRun(app, "Into PROJECT/runs/NAME, a run of its own with the project's annotations", line.run);
  addTexts(app, "--binary", "A program that ran, or its debug file, if it is not at the path in FILE", Follows::one,
           [&line](const std::string& text) { line.request.binaries.push_back(text); })
      .value("FILE");
  addText(app, "--event", "The event to import, if perf counted several", [&line](const std::string& text) {
    line.request.event = text;
  }).value("NAME");
  addFlag(app, "--allow-empty", line.request.allowEmpty, "Write the result even if it is empty");
  addText(app, "--cores", "How many cores to model", [&line](const std::string& text) {
    takeCores(line, text);
  }).value("N");
  addText(app, "--map-accesses",
          "Read at most N accesses of a memory trace, or ten\ntimes as many instructions; 0: all",
          [&line](const std::string& text) {
            const auto count = decimal(text, std::numeric_limits<std::int64_t>::max());
            if (!count) throw UsageError("--map-accesses: expected a count, not " + inQuotes(text));
            line.request.mapAccesses = static_cast<std::uint64_t>(*count);
          })
      .value("N");
  addTexts(app, "--map-path", "Paths below OLD are below NEW in the project", Follows::one,
           [&line](const std::string& text) { takeMapping(line, text); })
      .value("OLD=NEW");
  addPath(app, "--source-root", "DIR", "Relative paths are below DIR; files outside of it are a library's",
          line.request.paths.sourceRoot);
  addFlag(app, "--stale-annotations", line.withStale, "Also import into sites that are no longer on their lines");
  addText(app, "--at-least", "Leave out functions below this share of the whole", [&line](const std::string& text) {
    takePercent(line, text);
  }).value("PERCENT");
}

void check(const Line& line) {
  const Source* const source = line.request.source;
  std::vector<std::string> kinds;
  std::vector<std::string> options;
  for (const Source& one : kelvar_import::sources()) {
    kinds.emplace_back(one.kind);
    if (line.kind == one.kind) options.emplace_back(one.option);
  }
  if (options.empty()) throw UsageError("KIND: unknown analysis " + inQuotes(line.kind) + proposal(line.kind, kinds));
  std::string wanted;
  for (const std::string& option : options) wanted += (wanted.empty() ? "" : " or ") + option;
  if (!source) throw UsageError(line.kind + ": expected a source: " + wanted);
  if (line.kind != source->kind)
    throw UsageError(std::string(source->option) + ": expected " + wanted + " for " + line.kind);
  const bool hasBinaries = !line.request.binaries.empty();
  if (std::string_view(source->option) == "--lackey" && !hasBinaries) {
    throw UsageError("--lackey: expected --binary, the program that ran");
  }
  if (hasBinaries && !source->hasAddresses) {
    throw UsageError("--binary: expected with --perf, --callgrind or --lackey, and only there");
  }
  if (!line.request.event.empty() && std::string_view(source->option) != "--perf") {
    throw UsageError("--event: expected with --perf, and only there");
  }
  if (line.request.mapAccesses > 0 && std::string_view(source->option) != "--lackey") {
    throw UsageError("--map-accesses: expected with --lackey, and only there");
  }
  const bool isModel = std::string_view(source->option) == "--model";
  if (isModel != (line.request.wishes.cores > 0)) throw UsageError("--cores: expected with --model, and only there");
}

/// Reports the sites that are no longer on their lines, and leaves them out unless --stale-annotations is given: those
/// lines are other code now. Returns the present state of the sources, to be stored with the result.
std::vector<kelvar_platform::SourceRow> checkSources(Line& line) {
  const std::string database = kelvar_import::annotationsOf(line.request.wishes.project);
  std::error_code error;
  if (!std::filesystem::exists(database, error)) return {};
  const StaleSites stale = staleSites(database, line.request.paths.sourceRoot);
  if (stale.sources.empty()) return {};  // the sources are not on this machine
  for (const std::string& sentence : sentences(stale, database)) say(sentence);
  for (const StaleSites::Stale& site : stale.sites) line.request.leftOut.insert(site.sequence);
  if (line.withStale) line.request.leftOut.clear();
  if (!line.request.leftOut.empty()) {
    say("nothing was imported into these " + std::to_string(line.request.leftOut.size()) +
        " sites; --stale-annotations does it all the same");
  }
  return stale.sources;
}

ExitStatus runLine(Line& line) {
  check(line);
  if (line.run) line.request.wishes.project = kelvar_import::runDirectory(line.request.wishes.project, *line.run);
  const std::vector<kelvar_platform::SourceRow> sources = checkSources(line);
  Progress progress;
  const std::vector<std::string> remarks =
      runImport(line.request, [&progress](std::string_view activity) { progress.show(activity); });
  progress.clear();
  writeCollectedSources(resultDirectory(line.request), sources);
  for (const std::string& remark : remarks) say(escaped(remark));
  return kDone;
}

}  // namespace

void addImport(CLI::App& kelvar, Action& chosen) {
  const auto line = std::make_shared<Line>();
  CLI::App& app = addSubcommand(kelvar, "import", "Turn a performance tool's output into a result of a project");
  addOptions(app, *line);
  setWork(
      app, kExamples, [line] { return runLine(*line); }, chosen);
}

}  // namespace kelvar_tool
