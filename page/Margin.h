#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Model.h"

namespace kelvar_page {

/// The figures and notes beside one line of a source.
struct LineFigures {
  std::optional<double> time;      ///< the longest of the rows at the line, in seconds
  std::optional<double> share;     ///< of that time in the whole program
  std::optional<double> own;       ///< seconds on this line alone, as far as it ran within sites
  std::vector<std::string> notes;  ///< `parallel 'solver'`, `not vectorised`, `write of a race`; each once
};

/// The figures of a file's lines, by line: those of its rows, and the places that evidence names in it.
[[nodiscard]] std::map<int, LineFigures> marginOf(const Model& model, const std::string& file);

}  // namespace kelvar_page
