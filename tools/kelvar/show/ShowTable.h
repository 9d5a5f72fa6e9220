#pragma once

#include <string>
#include <vector>

#include "Model.h"
#include "text/Terminal.h"

namespace kelvar_tool {

/// The rows of a project's table, in the order of the view: annotated sites, each after the site that it lies in; with
/// `all`, functions and loops too. End annotations have no rows.
[[nodiscard]] std::vector<kelvar_page::Site> shownRows(const kelvar_page::Model& model, bool all);

/// The table, as wide as the terminal.
[[nodiscard]] std::string tableText(const kelvar_page::Model& model, const std::vector<kelvar_page::Site>& rows,
                                    const Terminal& terminal);

/// The findings, a paragraph each, wrapped at the terminal's width.
[[nodiscard]] std::string findingsText(const kelvar_page::Model& model, const Terminal& terminal);

/// The text wrapped at blanks. The first line begins with `start`, and the others are indented by its width.
[[nodiscard]] std::string paragraph(const std::string& start, const std::string& text, const Terminal& terminal);

}  // namespace kelvar_tool
