#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "RuleSet.h"

namespace kelvar_sources {

/// What a directive says before its clauses: `omp`, then `parallel`, `for`.
struct Directive {
  std::string model;
  std::vector<std::string> words;
  std::string brackets;  ///< what is in the brackets right behind the words
  bool end = false;      ///< Fortran's `end`, which is no word of the list
  [[nodiscard]] bool has(std::string_view word) const;
  /// The model and the words, a blank between two.
  [[nodiscard]] std::string name() const;
};

/// Reads what follows `#pragma` or the `$` of a sentinel. Without any word the model is empty. Letters become small in
/// Fortran, where their case says nothing.
[[nodiscard]] Directive directiveIn(std::string_view text, bool anyCase = false);

/// The rules that it fits: each of the kinds that a combined directive holds.
[[nodiscard]] std::vector<std::size_t> rulesFor(const Directive& directive, const RuleSet& rules);

}  // namespace kelvar_sources
