#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "Analysis.h"
#include "Input.h"
#include "Places.h"

namespace kelvar_import {

/// A format of some tool, and the analysis that it serves.
struct Source {
  const char* option;  ///< on the command line
  const char* kind;    ///< the analysis, as the command line names it
  const char* help;
  void (*read)(Input& input, const std::string& binary, const Sink& sink);  ///< null: the files are none, it is a model
  std::unique_ptr<Analysis> (*analyse)(Places& places, const Wishes& wishes);
  const char* unit;  ///< of a survey's weights
};

/// All formats there are.
[[nodiscard]] std::span<const Source> sources();

/// One run of the import, whole.
struct Request {
  const Source* source = nullptr;
  std::vector<std::string> files;
  std::string binary;
  PathRules paths;
  std::set<std::int64_t> leftOut;  ///< sites that no figure is to go to
  Wishes wishes;
};

/// The directory of the result that this source makes, in its project.
[[nodiscard]] std::string resultDirectory(const Request& request);

/// Reads, analyses and writes. Answers what there is to say about it. Throws kelvar_platform::ReadError; then what
/// stood in the project stands there as before.
std::vector<std::string> runImport(const Request& request, const ShowProgress& showProgress);

}  // namespace kelvar_import
