#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Loading.h"
#include "Project.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// Which project a command line asks for, and which of its sites: what every subcommand that reads one takes.
struct ProjectRequest {
  using Setting = std::function<void(kelvar::SummaryData&)>;

  std::optional<std::string> project;
  Pieces named;
  std::vector<Setting> hidings;  ///< of all three options, as they stand on the command line
};

/// PROJECT and the options that name one piece elsewhere.
void addPieces(CLI::App& app, ProjectRequest& request);
/// The options that hide sites.
void addHidings(CLI::App& app, ProjectRequest& request);

/// What is to be read. Throws UsageError where PROJECT is no directory, or there is nothing to read.
[[nodiscard]] Pieces piecesOf(const ProjectRequest& request);

/// Reads `pieces`, says what could not be read, and hides what is not asked for. What it answers stays until the
/// process ends, which frees at once what would take long to take apart.
[[nodiscard]] const Loaded& loadSaying(const Pieces& pieces, const ProjectRequest& request);

}  // namespace kelvar_tool
