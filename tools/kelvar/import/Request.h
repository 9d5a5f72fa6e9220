#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "Analysis.h"
#include "Input.h"
#include "Places.h"
#include "ResultRecords.h"

namespace kelvar_import {

/// A format of a tool's output, and the analysis that it is imported as.
struct Source {
  const char* option;  ///< on the command line
  const char* kind;    ///< the analysis, as the command line names it
  const char* help;
  void (*read)(kelvar_readers::Input& input, kelvar_readers::Reading& reading,
               const kelvar_readers::Sink& sink);  ///< null for a model, which reads no files
  std::unique_ptr<kelvar_readers::Analysis> (*analyse)(kelvar_readers::Places& places,
                                                       const kelvar_readers::Wishes& wishes);
  bool hasAddresses;  ///< it has addresses, whose places come from the programs' debug information
};

/// All formats, in the order of the help.
[[nodiscard]] std::span<const Source> sources();

/// The output of a tool that is still running.
struct LiveInput {
  int descriptor = -1;
  std::string name;              ///< for error messages
  std::function<void()> finish;  ///< called at the end of the output; throws a ReadError if the tool was cut off
};

/// Thrown by runImport when isCancelled says so; nothing was written.
struct Cancelled : std::exception {
  [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// The options of one import.
struct Request {
  const Source* source = nullptr;
  std::vector<std::string> files;
  std::vector<std::string> binaries;
  std::string event;        ///< the one to import, if perf counted several
  bool allowEmpty = false;  ///< write an empty result as well
  kelvar_readers::PathRules paths;
  std::set<std::int64_t> leftOut;  ///< sites that get no figures
  kelvar_readers::Wishes wishes;
  std::uint64_t mapAccesses = 0;                       ///< the most accesses to read of a memory trace; 0: all
  std::optional<LiveInput> live = {};                  ///< read in place of files
  std::optional<kelvar_platform::RunRecord> ran = {};  ///< host and times of the run, if known
  std::function<bool()> isCancelled = {};              ///< called for each record; may be empty
};

/// The directory of the result.
[[nodiscard]] std::string resultDirectory(const Request& request);

/// Reads, analyses and writes. Returns remarks for the user. Throws kelvar_platform::ReadError or Cancelled, and leaves
/// the project's result as it was.
std::vector<std::string> runImport(const Request& request, const kelvar_readers::ShowProgress& showProgress);

}  // namespace kelvar_import
