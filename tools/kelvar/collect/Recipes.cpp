#include "Recipes.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "LineTimes.h"
#include "Messages.h"
#include "RemarkFiles.h"

namespace kelvar_tool {

namespace {

constexpr const char* kNoValgrind = "valgrind is not installed (Debian's package valgrind)";

constexpr const char* kKnown = "clang's -fopenmp -fsanitize=thread knows them";

/// Why valgrind cannot measure the program; empty when it can.
std::string noValgrind(const Circumstances& here) {
  if (!here.commandIsProgram) {
    return inQuotes(here.wanted.command.front()) +
           " is a script: name the program that it runs as COMMAND, since valgrind would measure the interpreter";
  }
  if (here.facts.hasThreadSanitizer) {
    return "a program built with -fsanitize=thread does not run under valgrind: collect this analysis from a build "
           "without it";
  }
  return here.machine.hasValgrind ? std::string() : kNoValgrind;
}

std::string noLines(const Circumstances& here) {
  if (!here.facts.isProgram || here.facts.hasLines) return {};
  return inQuotes(here.program) + " has no debug information: build with -g";
}

/// A folder for an option of valgrind, where `%p` would stand for the process number.
std::string forValgrind(const std::string& folder) {
  std::string text;
  for (const char one : folder) text += one == '%' ? "%%" : std::string(1, one);
  return text;
}

/// Our options come last, since the last of two options with the same name counts.
std::string tsanOptions(const std::string& own) {
  const char* const told = std::getenv("TSAN_OPTIONS");
  return "TSAN_OPTIONS=" + (told ? std::string(told) + " " : std::string()) + own;
}

Recipe survey(const Circumstances& here) {
  Recipe recipe{.analysis = "survey", .obstacle = noLines(here), .option = "--perf"};
  recipe.runsProgram = true;
  if (!recipe.obstacle.empty()) return recipe;
  if (here.machine.noPerf.empty()) {
    const bool pointers = here.facts.hasFramePointers;
    recipe.output = "perf.data";
    recipe.how = std::string("by perf record, stacks by ") +
                 (pointers ? "frame pointers" : "DWARF (-fno-omit-frame-pointer would make them cheaper)");
    if (here.facts.hasThreadSanitizer) {
      recipe.how += "; its times are those of a build with ThreadSanitizer";
      recipe.environment = {tsanOptions("report_bugs=0 exitcode=0")};
    }
    recipe.tool = {"perf",
                   "record",
                   "-q",
                   "-N",
                   "-e",
                   "cpu-clock:u",
                   "-F",
                   pointers ? "1999" : "199",
                   "--call-graph",
                   pointers ? "fp" : "dwarf,8192",
                   "-o",
                   here.folder + "/perf.data",
                   "--"};
    return recipe;
  }
  recipe.option = "--callgrind";
  recipe.obstacle = noValgrind(here);
  if (!recipe.obstacle.empty()) {
    recipe.obstacle = here.machine.noPerf + ", and " + recipe.obstacle;
    return recipe;
  }
  recipe.output = "callgrind.out.";
  recipe.how = "by valgrind's callgrind, which counts instructions: " + here.machine.noPerf;
  recipe.tool = {"valgrind",
                 "--quiet",
                 "--vgdb=no",
                 "--tool=callgrind",
                 "--dump-instr=yes",
                 "--log-file=" + forValgrind(here.folder) + "/callgrind.log",
                 "--callgrind-out-file=" + forValgrind(here.folder) + "/callgrind.out.%p"};
  return recipe;
}

Recipe vectorization(const Circumstances& here) {
  Recipe recipe{.analysis = "vectorization"};
  const RemarkFiles remarks = remarkFiles(here.program, here.facts, here.wanted.remarks);
  recipe.option = remarks.option;
  recipe.files = remarks.files;
  std::string left;
  for (const std::string& sentence : remarks.left) left += "; " + sentence;
  if (recipe.files.empty()) {
    recipe.obstacle = "no remarks beside " + inQuotes(here.program) +
                      ": build with -fsave-optimization-record, or name them by --remarks" + left;
  }
  recipe.how = "from " + std::to_string(recipe.files.size()) + (recipe.files.size() == 1 ? " file" : " files") +
               " of remarks" + left;
  return recipe;
}

Recipe dependencies(const Circumstances& here) {
  Recipe recipe{.analysis = "dependencies", .option = "--tsan"};
  recipe.runsProgram = true;
  if (here.facts.hasThreadSanitizer) {
    recipe.how = "by the program's own ThreadSanitizer";
    recipe.output = "tsan.";
    std::string options = "verbosity=1 exitcode=0 log_path='" + here.folder + "/tsan'";
    // Accesses inside the OpenMP library are no races; its tool Archer makes its barriers known.
    if (here.facts.hasClangOpenMp) options += " ignore_noninstrumented_modules=1";
    if (here.facts.hasGccOpenMp) {
      recipe.how += "; it does not know the barriers of gcc's OpenMP, and reports races where there are none: ";
      recipe.how += kKnown;
    }
    recipe.environment = {tsanOptions(options)};
    return recipe;
  }
  recipe.option = "--helgrind";
  recipe.output = "helgrind.xml.";
  if (!here.machine.hasValgrind) {
    recipe.obstacle = std::string(kNoValgrind) + ", and the program was not built with -fsanitize=thread";
  }
  recipe.how = "by valgrind's helgrind (a build with -fsanitize=thread is faster, and knows more kinds of locks)";
  if (here.facts.hasGccOpenMp || here.facts.hasClangOpenMp) {
    const std::string untrue =
        "valgrind does not know the barriers of OpenMP, and reports races where there are none: ";
    const bool isAskedFor = here.wanted.only.count(recipe.analysis) > 0;
    recipe.how = "by valgrind's helgrind; " + untrue + kKnown;
    if (!isAskedFor && recipe.obstacle.empty()) {
      recipe.obstacle = untrue + kKnown + " (--only dependencies makes it all the same)";
    }
  }
  recipe.tool = {"valgrind",
                 "--quiet",
                 "--vgdb=no",
                 "--tool=helgrind",
                 "--xml=yes",
                 "--child-silent-after-fork=yes",
                 "--xml-file=" + forValgrind(here.folder) + "/helgrind.xml.%p",
                 "--log-file=" + forValgrind(here.folder) + "/helgrind.log"};
  // Otherwise a program that is started by env, timeout or a script would not be checked, and seem free of races.
  if (!here.commandIsProgram || here.startsAnother) recipe.tool.emplace_back("--trace-children=yes");
  return recipe;
}

Recipe map(const Circumstances& here) {
  Recipe recipe{.analysis = "map", .obstacle = noValgrind(here), .option = "--lackey"};
  recipe.runsProgram = recipe.isPiped = true;
  if (recipe.obstacle.empty()) recipe.obstacle = noLines(here);
  if (here.startsAnother) {
    recipe.hint = "lackey traces " + inQuotes(here.wanted.command.front()) +
                  " alone, and nothing that it starts: if it starts the program, name that as COMMAND";
  }
  recipe.how = "by valgrind's lackey, ";
  recipe.how += here.wanted.mapAccesses == 0
                    ? "all accesses"
                    : "the first " + std::to_string(here.wanted.mapAccesses) + " accesses (--map-accesses)";
  recipe.tool = {"valgrind",
                 "--quiet",
                 "--vgdb=no",
                 "--tool=lackey",
                 "--trace-mem=yes",
                 "--child-silent-after-fork=yes",
                 "--log-fd=" + std::to_string(kPipe)};
  return recipe;
}

Recipe model(const Circumstances& here, bool hasSurvey) {
  Recipe recipe{.analysis = "suitability", .option = "--model"};
  recipe.how = "by a model of " + std::to_string(here.wanted.cores) + " cores over the survey";
  if (here.facts.hasProgressPoints && !here.machine.hasCoz) {
    recipe.how += " (the program has progress points; coz would measure)";
  }
  if (!hasSurvey) recipe.obstacle = "it is computed from a survey, and there is none";
  return recipe;
}

Recipe suitability(const Circumstances& here, bool hasSurvey) {
  Recipe byModel = model(here, hasSurvey);
  if (!here.machine.hasCoz || !here.facts.hasProgressPoints) return byModel;
  Recipe recipe{.analysis = "suitability", .option = "--coz"};
  recipe.how = "by coz's experiments";
  recipe.hint = "coz reads only DWARF 4: build with -gdwarf-4, with gcc also -gno-variable-location-views";
  recipe.output = "profile.coz";
  recipe.runsProgram = true;
  recipe.tool = {"coz", "run", "--output", here.folder + "/profile.coz", "---"};
  if (hasSurvey) recipe.instead.push_back(std::move(byModel));
  return recipe;
}

}  // namespace

std::vector<Recipe> recipes(const Circumstances& here) {
  std::vector<Recipe> all;
  const auto isWanted = [&](const char* analysis) {
    return here.wanted.only.empty() || here.wanted.only.count(analysis) > 0;
  };
  if (isWanted("survey")) all.push_back(survey(here));
  std::error_code error;
  const bool hasSurvey =
      all.empty()
          ? std::filesystem::exists(std::filesystem::path(here.directory) / kelvar_readers::kLineTimesFile, error)
          : all.front().obstacle.empty();
  if (isWanted("vectorization")) all.push_back(vectorization(here));
  if (isWanted("dependencies")) all.push_back(dependencies(here));
  if (isWanted("map")) all.push_back(map(here));
  if (isWanted("suitability")) all.push_back(suitability(here, hasSurvey));
  return all;
}

}  // namespace kelvar_tool
