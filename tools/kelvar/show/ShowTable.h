#pragma once

#include <string>
#include <vector>

#include "Model.h"
#include "text/Terminal.h"

namespace kelvar_tool {

/// The rows that a table of the project shows, in the order of the view: annotated sites, each below the one that it
/// lies in, and with `all` the functions and loops too. End annotations have none.
[[nodiscard]] std::vector<kelvar_page::Site> shownRows(const kelvar_page::Model& model, bool all);

/// The table, as wide as the terminal.
[[nodiscard]] std::string tableText(const kelvar_page::Model& model, const std::vector<kelvar_page::Site>& rows,
                                    const Terminal& terminal);

/// What stands out, a paragraph each, broken at the terminal's width.
[[nodiscard]] std::string findingsText(const kelvar_page::Model& model, const Terminal& terminal);

/// The text broken at blanks, every line behind `indent` blanks; its first one begins with `start`.
[[nodiscard]] std::string paragraph(const std::string& start, const std::string& text, const Terminal& terminal);

}  // namespace kelvar_tool
