#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Rules.h"

namespace kelvar_sources {

/// A file of rules that cannot be used. what() says where in it, and what was expected there.
class RulesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads rules from YAML: a list under `rules`, each with `name`, `pattern`, `kind`, and `label` and `end` where they
/// are not `none`, as the printed table has them. Throws RulesError; a name that `known` has already is one.
[[nodiscard]] std::vector<Rule> rulesIn(std::string_view yaml, const std::vector<Rule>& known);

}  // namespace kelvar_sources
