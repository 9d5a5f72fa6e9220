#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Loading.h"
#include "Project.h"
#include "Subcommand.h"
#include "kelvar/SummaryData.h"

namespace kelvar_tool {

/// The project and the hidden sites of a command line, for every subcommand that reads a project.
struct ProjectRequest {
  using Setting = std::function<void(kelvar::SummaryData&)>;

  std::optional<std::string> project;
  Pieces named;
  std::vector<Setting> hidings;  ///< of all three options, in the order of the command line
};

/// PROJECT and the options that give one piece another path.
void addPieces(CLI::App& app, ProjectRequest& request);
/// The options that hide sites.
void addHidings(CLI::App& app, ProjectRequest& request);

/// What to call the project before readers: as it was named, and a folder by its name where that was `.`.
[[nodiscard]] std::string titleOf(const ProjectRequest& request);

/// The pieces to read. Throws UsageError if PROJECT is not a directory or there is nothing to read.
[[nodiscard]] Pieces piecesOf(const ProjectRequest& request);

/// Reads `pieces`, prints what could not be read, and applies the hidings. The data is never destroyed: the end of the
/// process frees it faster.
[[nodiscard]] const Loaded& loadSaying(const Pieces& pieces, const ProjectRequest& request);

}  // namespace kelvar_tool
