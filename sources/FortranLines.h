#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lines.h"

namespace kelvar_sources {

/// One statement, directive or comment of ours, with its continuations.
struct FortranLine {
  enum class What { code, directive, remark } what = What::code;
  int first = 0;     ///< the line that it begins on
  int last = 0;      ///< the line that it ends on
  int column = 1;    ///< where it begins
  std::string text;  ///< of code, in small letters, without texts in quotes; of a directive, behind the `$`
};

/// The logical lines of a text in Fortran. What `#if 0` leaves out yields none.
[[nodiscard]] std::vector<FortranLine> fortranLines(const Lines& lines, bool fixedForm);

}  // namespace kelvar_sources
