#include "Session.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "Diagnosis.h"
#include "Messages.h"
#include "Project.h"
#include "status/CollectedSources.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using kelvar_platform::ReadError;

constexpr int kPerfFailed = 255;

std::string secondsText(Clock::duration time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", std::chrono::duration<double>(time).count());
  return text;
}

const kelvar_import::Source& sourceOf(const Recipe& recipe) {
  const auto all = kelvar_import::sources();
  return *std::find_if(all.begin(), all.end(),
                       [&](const kelvar_import::Source& source) { return recipe.option == source.option; });
}

std::uint64_t secondsNow() {
  return static_cast<std::uint64_t>(std::time(nullptr));
}

ReadError cutOff(int signal) {
  return ReadError({.file = "the program",
                    .place = "",
                    .expected = "a run to its end; signal " + std::to_string(signal) + " ended it"});
}

}  // namespace

bool Session::make(const Recipe& recipe) {
  try {
    runAndImport(recipe);
    ++made_;
  } catch (const kelvar_import::Cancelled&) {
    // Reported below.
  } catch (const ReadError& error) {
    if (interrupts_.signal() == 0) {
      say(recipe.analysis + ": " + error.what());
      if (!recipe.hint.empty()) say(recipe.analysis + ": " + recipe.hint);
      if (!recipe.instead.empty() && !programDied_) {
        say(recipe.analysis + ": " + recipe.instead.front().how + " in its place");
        return make(recipe.instead.front());
      }
      ++failed_;
    }
  }
  if (interrupts_.signal() != 0) say(recipe.analysis + ": interrupted; its result is what it was before");
  return interrupts_.signal() == 0 && !programDied_;
}

void Session::runAndImport(const Recipe& recipe) {
  if (!recipe.runsProgram) {
    kelvar_import::Request request = requestFor(recipe);
    request.files = recipe.files;
    request.ran = hostRecord();
    return import(recipe, std::move(request));
  }
  return recipe.isPiped ? importPipe(recipe) : importFiles(recipe);
}

kelvar_import::Request Session::requestFor(const Recipe& recipe) const {
  kelvar_import::Request request;
  request.source = &sourceOf(recipe);
  if (request.source->hasAddresses) request.binaries = setting_.wanted.binaries;
  // An absolute root: the paths of the tools are absolute, and those of remarks become so with it.
  const std::string& root = setting_.wanted.sourceRoot;
  if (!root.empty()) request.paths.sourceRoot = normalPath(fs::absolute(root).native());
  request.leftOut = setting_.leftOut;
  request.wishes.project = setting_.directory;
  if (recipe.option == "--model") request.wishes.cores = setting_.wanted.cores;
  request.isCancelled = [this] { return interrupts_.signal() != 0; };
  return request;
}

Child::Start Session::startOf(const Recipe& recipe, int input) const {
  Child::Start start{.command = recipe.tool, .environment = recipe.environment, .input = input, .quiet = hasRun_};
  start.command.insert(start.command.end(), setting_.wanted.command.begin(), setting_.wanted.command.end());
  return start;
}

ChildEnd Session::endOf(const Recipe& recipe, Child& child) {
  const ChildEnd end = child.wait();
  if (!std::exchange(hasRun_, true)) {
    programStatus_ = end.status;
    if (end.signal == 0 && end.status != 0) {
      say(recipe.analysis + ": the program ended with status " + std::to_string(end.status));
    }
    programDied_ = end.signal != 0;
  }
  if (end.left > 0 && interrupts_.signal() == 0) {
    say(recipe.analysis + ": ended " + std::to_string(end.left) + (end.left == 1 ? " process" : " processes") +
        " that the program left running: what runs after its end is not measured; an option that keeps a daemon in the "
        "foreground would help");
  }
  if (end.signal != 0 || interrupts_.signal() != 0) throw cutOff(end.signal);
  return end;
}

void Session::importFiles(const Recipe& recipe) {
  kelvar_import::Request request = requestFor(recipe);
  request.ran = hostRecord();
  request.ran->collectionStartTime = secondsNow();
  const Clock::time_point start = Clock::now();
  const kelvar_platform::FileDescriptor input = input_.open();
  // coz would append to the file of an earlier run in a folder that is kept.
  std::error_code error;
  if (!recipe.output.ends_with('.')) fs::remove(fs::path(setting_.folder) / recipe.output, error);
  const std::set<std::string> before = outputsOf(recipe);
  Child child(startOf(recipe, input.get()), guard_, interrupts_);
  endOf(recipe, child);
  request.ran->collectionEndTime = secondsNow();
  say(recipe.analysis + ": ran for " + secondsText(Clock::now() - start));
  request.files = filesOf(recipe, child.process(), before);
  try {
    import(recipe, std::move(request));
  } catch (const ReadError&) {
    // perf itself failed, so its status says nothing about the program.
    if (recipe.option == "--perf" && programStatus_ == kPerfFailed) programStatus_ = 0;
    throw;
  }
}

void Session::importPipe(const Recipe& recipe) {
  kelvar_import::Request request = requestFor(recipe);
  request.mapAccesses = setting_.wanted.mapAccesses;
  request.ran = hostRecord();
  request.ran->collectionStartTime = secondsNow();
  request.ran->collectionEndTime = secondsNow();
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  const kelvar_platform::FileDescriptor reading(ends[0]);
  kelvar_platform::FileDescriptor writing(ends[1]);
  const kelvar_platform::FileDescriptor input = input_.open();
  Child::Start start = startOf(recipe, input.get());
  start.passed = writing.get();
  start.passedAs = kPipe;
  Child child(start, guard_, interrupts_);
  writing = {};
  request.live = {.descriptor = reading.get(), .name = recipe.tool.front(), .finish = [&] { endOf(recipe, child); }};
  import(recipe, std::move(request));
}

/// The output files that exist now, of a tool that writes one for each process.
std::set<std::string> Session::outputsOf(const Recipe& recipe) const {
  std::set<std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(setting_.folder)) {
    if (entry.path().filename().native().starts_with(recipe.output)) files.insert(entry.path().native());
  }
  return files;
}

/// The tool's output files of this run. Of callgrind, only the file of the program itself counts: forked processes are
/// separate profiles. Races count from all processes. A folder that is kept may have files `before` the run.
std::vector<std::string> Session::filesOf(const Recipe& recipe, pid_t process,
                                          const std::set<std::string>& before) const {
  const fs::path output = fs::path(setting_.folder) / recipe.output;
  if (!recipe.output.ends_with('.')) return {output.native()};
  if (recipe.option == "--callgrind") return {output.native() + std::to_string(process)};
  std::vector<std::string> files;
  for (const std::string& file : outputsOf(recipe)) {
    if (before.count(file) == 0) files.push_back(file);
  }
  if (!files.empty()) return files;
  throw ReadError({.file = output.native() + "*", .place = "", .expected = "what the tool writes"});
}

void Session::import(const Recipe& recipe, kelvar_import::Request request) {
  const Clock::time_point start = Clock::now();
  const std::vector<std::string> remarks = runImport(request, {});
  writeCollectedSources(resultDirectory(request), setting_.sources);
  for (const std::string& remark : remarks) say(recipe.analysis + ": " + escaped(remark));
  say(recipe.analysis + ": " + (recipe.isPiped ? "ran and imported in " : "imported in ") +
      secondsText(Clock::now() - start));
}

}  // namespace kelvar_tool
