#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kelvar_import {

/// A place in the source as a tool names it. What the tool does not know is empty or 0.
struct Place {
  std::string function;
  std::string file;
  int line = 0;
  int column = 0;

  bool operator==(const Place&) const = default;
};

/// What a tool counted at a place; each kind of analysis says what its weights mean.
using Weights = std::array<double, 3>;

/// One thing that a tool says, whatever the format it says it in.
struct Record {
  std::vector<Place> stack;  ///< where: the place itself first, then what was inlined around it or called it
  Weights weights{};
  std::string note;        ///< in the tool's own words, where a kind shows them: the width of a loop
  std::size_t report = 0;  ///< records with one number are one finding seen from several stacks; 0: on its own
};

using Sink = std::function<void(const Record&)>;

}  // namespace kelvar_import
