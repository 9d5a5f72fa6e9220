#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Rules.h"

namespace kelvar_sources {

/// Thrown for an invalid file of rules. what() says where, and what was expected there.
class RulesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads rules from YAML: a list under `rules`, each with `name`, `pattern`, `kind`, and optionally `label` and `end`,
/// as in the printed table. Throws RulesError, also for a name that is in `known` already.
[[nodiscard]] std::vector<Rule> rulesIn(std::string_view yaml, const std::vector<Rule>& known);

}  // namespace kelvar_sources
