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

/// A format of some tool, and the analysis that it serves.
struct Source {
  const char* option;  ///< on the command line
  const char* kind;    ///< the analysis, as the command line names it
  const char* help;
  void (*read)(kelvar_readers::Input& input, kelvar_readers::Reading& reading,
               const kelvar_readers::Sink& sink);  ///< null: the files are none, it is a model
  std::unique_ptr<kelvar_readers::Analysis> (*analyse)(kelvar_readers::Places& places,
                                                       const kelvar_readers::Wishes& wishes);
  bool hasAddresses;  ///< which programs tell the places of
};

/// All formats there are.
[[nodiscard]] std::span<const Source> sources();

/// What a tool that still runs writes.
struct LiveInput {
  int descriptor = -1;
  std::string name;              ///< stands for it in refusals
  std::function<void()> finish;  ///< called at its end; throws a ReadError where the tool was cut off
};

/// Thrown by runImport where it was told to stop; nothing was written.
struct Cancelled : std::exception {
  [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// One run of the import, whole.
struct Request {
  const Source* source = nullptr;
  std::vector<std::string> files;
  std::vector<std::string> binaries;
  std::string event;        ///< of several that were counted, the one that is meant
  bool allowEmpty = false;  ///< whether a result that says nothing may take the place of another
  kelvar_readers::PathRules paths;
  std::set<std::int64_t> leftOut;  ///< sites that no figure is to go to
  kelvar_readers::Wishes wishes;
  std::uint64_t mapAccesses = 0;                       ///< of a trace of memory, how many are read; 0: all
  std::optional<LiveInput> live = {};                  ///< read in place of files
  std::optional<kelvar_platform::RunRecord> ran = {};  ///< where and when, where somebody was there
  std::function<bool()> isCancelled = {};              ///< asked again and again; may be empty
};

/// The directory of the result that this source makes, in its project.
[[nodiscard]] std::string resultDirectory(const Request& request);

/// Reads, analyses and writes. Answers what there is to say about it. Throws kelvar_platform::ReadError; then what
/// stood in the project stands there as before.
std::vector<std::string> runImport(const Request& request, const kelvar_readers::ShowProgress& showProgress);

}  // namespace kelvar_import
