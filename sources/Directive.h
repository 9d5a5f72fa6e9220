#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "RuleSet.h"

namespace kelvar_sources {

/// The beginning of a directive, before its clauses: the model `omp`, then the words `parallel`, `for`.
struct Directive {
  std::string model;
  std::vector<std::string> words;
  std::string brackets;  ///< the content of brackets directly after the words
  bool end = false;      ///< Fortran's `end`, which is not in the list of words
  [[nodiscard]] bool has(std::string_view word) const;
  /// The model and the words, separated by blanks.
  [[nodiscard]] std::string name() const;
};

/// Reads the text after `#pragma` or the `$` of a sentinel. Without any word the model is empty. In Fortran, letters
/// become lower case.
[[nodiscard]] Directive directiveIn(std::string_view text, bool anyCase = false);

/// The rules that match the directive; a combined directive may match several.
[[nodiscard]] std::vector<std::size_t> rulesFor(const Directive& directive, const RuleSet& rules);

}  // namespace kelvar_sources
