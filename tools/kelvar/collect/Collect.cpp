#include "Collect.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <limits>
#include <memory>
#include <thread>

#include "BuildFlags.h"
#include "Descendants.h"
#include "Diagnosis.h"
#include "DryRun.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Project.h"
#include "Revision.h"
#include "RunFolder.h"
#include "Session.h"
#include "ShellText.h"
#include "SourceLook.h"
#include "StagedDirectory.h"

namespace kelvar_tool {

namespace {

constexpr int kMostCores = 1 << 20;
constexpr std::uint64_t kMapAccesses = 2'000'000;
constexpr std::array kAnalyses{"survey", "vectorization", "dependencies", "map", "suitability"};

struct Line {
  Wanted wanted;
  std::string flagsFor;
};

/// The program whose debug information gives the places: the first --binary, else the command itself. Throws UsageError
/// when the command cannot be run or a --binary does not exist.
std::string programOf(const Wanted& wanted) {
  const std::string found = foundAs(wanted.command.front());
  if (found.empty()) {
    throw UsageError("COMMAND: expected a program that can be run, not " + inQuotes(wanted.command.front()));
  }
  std::error_code error;
  for (const std::string& binary : wanted.binaries) {
    if (!std::filesystem::exists(binary, error)) throw UsageError("--binary: no file " + inQuotes(binary));
  }
  return wanted.binaries.empty() ? found : wanted.binaries.front();
}

void sayPlan(const std::vector<Recipe>& plan) {
  for (const Recipe& recipe : plan) {
    say(recipe.analysis + ": " + (recipe.obstacle.empty() ? recipe.how : "not possible: " + recipe.obstacle));
  }
}

std::string folderOf(const Wanted& wanted, const std::string& temporary) {
  if (wanted.keep.empty()) return wanted.dryRun ? std::filesystem::absolute("kelvar-tools").native() : temporary;
  return std::filesystem::absolute(wanted.keep).native();
}

/// The facts of a run describe its survey; an analysis that is added later, perhaps on a smaller input, only moves the
/// end.
kelvar_import::RunFacts extended(const std::string& directory, const kelvar_import::RunFacts& added) {
  kelvar_import::RunFacts known = kelvar_import::readRunFacts(directory);
  if (known == kelvar_import::RunFacts()) return added;
  known.endTime = std::max(known.endTime, added.endTime);
  return known;
}

ExitStatus makeAll(const std::vector<Recipe>& plan, Session::Setting setting, const std::string& folder,
                   const Guard& guard, Interrupts& interrupts) {
  kelvar_import::RunFacts facts{.command = shellText(setting.wanted.command),
                                .hostName = hostRecord().hostName.value_or(""),
                                .revision = revisionOf(setting.wanted.sourceRoot),
                                .startTime = static_cast<std::uint64_t>(std::time(nullptr))};
  const StandardInput input(folder, interrupts);
  const std::string directory = setting.directory;
  Session session(std::move(setting), input, guard, interrupts);
  bool hasSurveyed = false;
  for (const Recipe& recipe : plan) {
    if (interrupts.signal() != 0) break;
    if (!recipe.obstacle.empty()) continue;
    const std::size_t before = session.made();
    const bool goesOn = session.make(recipe);
    hasSurveyed = hasSurveyed || (recipe.analysis == "survey" && session.made() > before);
    if (!goesOn) break;
  }
  facts.endTime = static_cast<std::uint64_t>(std::time(nullptr));
  facts.exitStatus = session.programStatus();
  if (session.made() > 0) writeRunFacts(directory, hasSurveyed ? facts : extended(directory, facts));
  say(std::to_string(session.made()) + " of " + std::to_string(plan.size()) + " analyses are in " + escaped(directory));
  if (interrupts.signal() != 0) return static_cast<ExitStatus>(128 + interrupts.signal());
  if (session.programStatus() != 0) return static_cast<ExitStatus>(session.programStatus());
  return session.failed() > 0 || session.made() == 0 ? kUnreadable : kDone;
}

ExitStatus collect(Wanted wanted) {
  const std::string program = programOf(wanted);
  if (wanted.cores == 0) wanted.cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  std::string directory = wanted.project;
  if (wanted.run) directory = kelvar_import::runDirectory(wanted.project, *wanted.run);
  for (const std::string& left : removeLeftFolders()) {
    say("removed " + escaped(left) + ": the temporary files of a collect that was killed");
  }
  const TemporaryFolder temporary;
  const Guard guard(temporary.path());
  adoptOrphans();
  Interrupts interrupts;
  const Machine machine = thisMachine(temporary.path(), guard, interrupts);
  const kelvar_readers::ProgramFacts facts = kelvar_readers::programFacts(program);
  const std::string folder = folderOf(wanted, temporary.path());
  const std::string command = foundAs(wanted.command.front());
  std::error_code unknown;
  const std::vector<Recipe> plan = recipes({.wanted = wanted,
                                            .machine = machine,
                                            .facts = facts,
                                            .commandIsProgram = kelvar_readers::programFacts(command).isProgram,
                                            .startsAnother = !std::filesystem::equivalent(command, program, unknown),
                                            .program = program,
                                            .directory = directory,
                                            .folder = folder});
  sayPlan(plan);
  SourceState sources = lookAtSources(wanted, directory);
  if (wanted.dryRun) {
    print(commandText(plan, wanted, program, folder));
    return kDone;
  }
  if (!wanted.keep.empty()) kelvar_platform::makeDirectories(folder);
  // A trace of lackey does not name its program.
  if (wanted.binaries.empty() && facts.hasLines) wanted.binaries.push_back(program);
  return makeAll(plan,
                 {.wanted = wanted,
                  .directory = directory,
                  .folder = folder,
                  .leftOut = std::move(sources.stale),
                  .sources = std::move(sources.files)},
                 temporary.path(), guard, interrupts);
}

void takeAnalysis(Wanted& wanted, const std::string& text) {
  const std::vector<std::string> names(kAnalyses.begin(), kAnalyses.end());
  if (std::find(names.begin(), names.end(), text) == names.end()) {
    throw UsageError("--only: unknown analysis " + inQuotes(text) + proposal(text, names));
  }
  wanted.only.insert(text);
}

std::int64_t countIn(const char* option, const std::string& text, std::int64_t least, std::int64_t most) {
  const auto count = decimal(text, most);
  if (!count || *count < least) throw UsageError(std::string(option) + ": expected a count, not " + inQuotes(text));
  return *count;
}

void addOptions(CLI::App& app, Line& line) {
  Wanted& wanted = line.wanted;
  wanted.mapAccesses = kMapAccesses;
  addText(app, "PROJECT", "Project directory; created if it does not exist",
          [&wanted](const std::string& text) { wanted.project = normalPath(text); });
  addTexts(app, "COMMAND", "The program and its arguments, after --", Follows::asManyAsThereAre,
           [&wanted](const std::string& text) { wanted.command.push_back(text); });
  addRun(app, "Into PROJECT/runs/NAME, a run of its own with the project's annotations", wanted.run);
  addTexts(app, "--only",
           "Make only this analysis; may be repeated: survey, vectorization, dependencies, map,\nsuitability",
           Follows::one, [&wanted](const std::string& text) { takeAnalysis(wanted, text); })
      .value("ANALYSIS");
  addTexts(app, "--binary", "The program, or its debug file, if COMMAND is a script that starts it", Follows::one,
           [&wanted](const std::string& text) { wanted.binaries.push_back(text); })
      .value("FILE");
  addTexts(app, "--remarks", "Remarks of the compiler, a file or a folder, if they are not beside the program",
           Follows::one, [&wanted](const std::string& text) { wanted.remarks.push_back(text); })
      .value("PATH");
  addPath(app, "--source-root", "DIR", "Relative paths are below DIR; files outside of it are a library's",
          wanted.sourceRoot);
  addText(
      app, "--cores", "How many cores to model; those of this machine, if not given",
      [&wanted](const std::string& text) { wanted.cores = static_cast<int>(countIn("--cores", text, 1, kMostCores)); })
      .value("N");
  addText(app, "--map-accesses", "Stop the memory trace after N accesses (2000000); 0: never",
          [&wanted](const std::string& text) {
            wanted.mapAccesses = static_cast<std::uint64_t>(
                countIn("--map-accesses", text, 0, std::numeric_limits<std::int64_t>::max()));
          })
      .value("N");
  addPath(app, "--keep", "DIR", "Keep the tools' files in DIR", wanted.keep);
  addFlag(app, "--dry-run", wanted.dryRun, "Print the commands, ready to paste, and run nothing");
  addText(app, "--flags", "Print the build flags that the analyses need, for gcc or clang",
          [&line](const std::string& text) { line.flagsFor = text; })
      .value("COMPILER");
}

ExitStatus runLine(const Line& line) {
  if (!line.flagsFor.empty()) {
    print(buildFlags(line.flagsFor));
    return kDone;
  }
  if (line.wanted.project.empty()) throw UsageError("PROJECT: expected a project directory");
  if (line.wanted.command.empty()) throw UsageError("COMMAND: expected the program and its arguments behind --");
  return collect(line.wanted);
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar collect --flags clang\n"
    "  kelvar collect my-project -- build/app --size 100\n"
    "  kelvar collect my-project --run monday --only survey --only suitability -- build/app\n"
    "  kelvar collect my-project --dry-run -- build/app\n"
    "\n"
    "The program runs once for each of survey, dependencies and map. The output of its first run is passed on.\n"
    "Exit status: that of the program's first run unless it is 0; else 0 done, 1 an analysis that was possible\n"
    "failed or none was possible, 2 a usage error, 3 out of memory, or the system failed; 128 plus the signal that\n"
    "interrupted it.";

}  // namespace

void addCollect(CLI::App& kelvar, Action& chosen) {
  const auto line = std::make_shared<Line>();
  CLI::App& app =
      addSubcommand(kelvar, "collect", "Measure a program with the tools of this machine, and import the results");
  addOptions(app, *line);
  setWork(
      app, kExamples, [line] { return runLine(*line); }, chosen);
}

}  // namespace kelvar_tool
