#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Lines.h"

namespace kelvar_sources {

/// One statement, directive or `kelvar:` comment, with its continuations.
struct FortranLine {
  enum class What { code, directive, remark } what = What::code;
  int first = 0;     ///< the line that it begins on
  int last = 0;      ///< the line that it ends on
  int column = 1;    ///< where it begins
  std::string text;  ///< of code, in lower case, without the content of quotes; of a directive, after the `$`
};

/// The logical lines of a Fortran text. Code left out by `#if 0` yields none.
[[nodiscard]] std::vector<FortranLine> fortranLines(const Lines& lines, bool fixedForm);

}  // namespace kelvar_sources
