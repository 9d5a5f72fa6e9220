#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kelvar_readers {

/// A place in the source as a tool names it. What the tool does not know is empty or 0.
struct Place {
  std::string function = {};
  std::string file = {};
  int line = 0;
  int column = 0;

  bool operator==(const Place&) const = default;
};

/// One call on a stack: what runs in one of the linker's functions, with all that was inlined there. Where a tool tells
/// places and no addresses, a frame is one such place, or a stack as the tool shows it.
struct Frame {
  std::vector<Place> chain = {};  ///< the place itself first, then the calls that were inlined around it
  std::string function = {};      ///< the function that the linker knows; empty where nobody does
  Place begin = {};               ///< where that function begins; without a line where nobody knows
  bool lineIsGuessed = false;     ///< the place has no line of its own, and stands at the nearest before it
  std::uint64_t id = 0;           ///< from 1 for a frame that comes again and again; 0 for one that is told once
};

/// Frames that come again, each once. They stay where they are.
class Frames {
 public:
  [[nodiscard]] Frame& add() {
    Frame& frame = frames_.emplace_back();
    frame.id = frames_.size();
    return frame;
  }

 private:
  std::deque<Frame> frames_;
};

/// What a tool counted at a place; each kind of analysis says what its weights mean.
using Weights = std::array<double, 3>;

/// What a tool says of one thing in words, beyond its weights.
struct Words {
  std::string text = {};
  std::string object = {};  ///< the variable or the block that it is about
  std::string role = {};    ///< what the place of the record did: `write`, `read`
};

/// One thing that a tool says, whatever the format it says it in.
struct Record {
  std::vector<const Frame*> stack = {};  ///< where: the innermost call first. They live as long as the sink looks at it
  Weights weights{};
  std::string note = {};   ///< in the tool's own words, where a kind shows them: the width of a loop
  std::size_t report = 0;  ///< records with one number are one finding seen from several stacks; 0: on its own
  Words words = {};
  std::vector<std::pair<std::int64_t, std::int64_t>> steps = {};  ///< of accesses: bytes, and how often
  std::size_t function = 0;  ///< the number of the function that it lies in, from 1, where the tool tells calls
  std::size_t callee = 0;    ///< where it is what calls from its place cost: the number of the one called; else 0
};

using Sink = std::function<void(const Record&)>;

}  // namespace kelvar_readers
