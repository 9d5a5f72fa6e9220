#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// What is known of one line of a source.
struct LineFigures {
  std::optional<double> time;      ///< the longest of the rows at the line, in seconds
  std::optional<double> share;     ///< the same in parts of the whole
  std::optional<double> own;       ///< seconds on this line alone, of what ran within sites
  std::vector<std::string> notes;  ///< `parallel 'solver'`, `not vectorised`, `write of a race`; each once
};

/// The figures of a file's lines, by line: those of its rows, and the places that evidence names in it.
[[nodiscard]] std::map<int, LineFigures> marginOf(const Model& model, const std::string& file);

}  // namespace kelvar_page
