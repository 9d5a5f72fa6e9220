#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include "CommandLine.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "Output.h"
#include "ProcessMemory.h"
#include "Subcommand.h"
#include "annotate/Annotate.h"
#include "collect/Collect.h"
#include "compare/Compare.h"
#include "import/Import.h"
#include "report/Report.h"
#include "runs/Runs.h"
#include "show/Show.h"
#include "status/Status.h"
#include "view/View.h"

namespace kelvar_tool {

namespace {

constexpr AddSubcommand kSubcommands[] = {addReport, addShow,     addView,   addCompare, addStatus,
                                          addRuns,   addAnnotate, addImport, addCollect};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar report --verbose my-project\n"
    "  kelvar annotate my-project/annotations.db add --kind parallel --label solver --at src/solver.cpp:120\n"
    "  kelvar report --help    explains report, as for every subcommand";

ExitStatus refuse(const CLI::App& app, const std::string& sentence) {
  say(sentence);
  say("try '" + fullName(app) + " --help'");
  return kUsage;
}

ExitStatus run(CLI::App& kelvar, int count, char** arguments) {
  Action chosen;
  for (const AddSubcommand add : kSubcommands) add(kelvar, chosen);
  try {
    kelvar.parse(forParser(kelvar, count, arguments));
    return chosen();
  } catch (const CLI::CallForHelp&) {
    print(helpOf(innermost(kelvar)));
    return kDone;
  } catch (const CLI::CallForVersion&) {
    print("kelvar " KELVAR_VERSION "\n");
    return kDone;
  } catch (const CLI::ParseError& error) {
    return refuse(innermost(kelvar), complaint(kelvar, error));
  } catch (const UsageError& error) {
    return refuse(innermost(kelvar), error.what());
  }
}

ExitStatus run(int count, char** arguments) {
  CLI::App kelvar("Reports what performance analyses found at annotated source sites, and edits the annotations.");
  kelvar.name("kelvar");
  kelvar.require_subcommand(1);
  kelvar.set_version_flag("--version", KELVAR_VERSION, "Print the version and exit");
  kelvar.set_help_flag("-h,--help", "Print this help and exit");
  kelvar.footer(kExamples);
  return run(kelvar, count, arguments);
}

/// Without memory to build a sentence.
void sayOutOfMemory() noexcept {
  static_cast<void>(writeAll(STDERR_FILENO, "kelvar: out of memory\n"));
}

std::atomic<bool> memoryRanOut = false;  // on whichever thread

/// Libraries allocate in functions that must not throw. That would terminate the program silently, so we print the
/// usual message.
void sayWhyItEnds() {
  std::set_new_handler([] {
    memoryRanOut = true;
    throw std::bad_alloc();
  });
  std::set_terminate([] {
    if (!memoryRanOut) std::abort();
    sayOutOfMemory();
    ::_exit(kExhausted);
  });
}

}  // namespace

}  // namespace kelvar_tool

int main(int count, char** arguments) {
  using namespace kelvar_tool;
  holdStandardDescriptors();
  kelvar_platform::expectLargeLists();
  sayWhyItEnds();
  try {
    return run(count, arguments);
  } catch (const kelvar_platform::ReadError& error) {
    say(error.what());
    return kUnreadable;
  } catch (const OutputError& error) {
    say(error.what());
    return kUnreadable;
  } catch (const std::bad_alloc&) {
    sayOutOfMemory();
  } catch (const std::exception& error) {
    say(escaped(error.what()));
  }
  return kExhausted;
}
