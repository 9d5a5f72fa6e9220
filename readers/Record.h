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

/// A place in the source as a tool names it. A field that the tool does not know is empty or 0.
struct Place {
  std::string function = {};
  std::string file = {};
  int line = 0;
  int column = 0;

  bool operator==(const Place&) const = default;
};

/// One call on a stack: an address in a linker's function, with all calls inlined there. For a tool that reports places
/// and no addresses, a frame holds one place, or a whole stack of the tool.
struct Frame {
  std::vector<Place> chain = {};  ///< the place itself first, then the inlined calls around it; never empty
  std::string function = {};      ///< the linker's function; empty when unknown
  Place begin = {};               ///< where that function begins; without a line when unknown
  bool lineIsGuessed = false;     ///< the address has no line of its own; the place has the nearest line before it
  std::uint64_t id = 0;           ///< from 1 for a frame in Frames; 0 for one that is used once
};

/// Owns the frames that records refer to again and again. Their addresses stay valid.
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

/// What a tool counted at a place; the readers say what their weights mean.
using Weights = std::array<double, 3>;

/// What a tool says in words about one record.
struct Words {
  std::string text = {};
  std::string object = {};  ///< the variable or the memory block that it is about
  std::string role = {};    ///< what happened at the record's place: `write`, `read`
};

/// One observation of a tool, independent of its format.
struct Record {
  std::vector<const Frame*> stack =
      {};  ///< the innermost call first; frames with id 0 live only during the sink's call
  Weights weights{};
  std::string note = {};   ///< of a loop: its width, in the tool's own words
  std::size_t report = 0;  ///< records with the same number are the stacks of one finding; 0: a finding by itself
  Words words = {};
  std::vector<std::pair<std::int64_t, std::int64_t>> steps = {};  ///< between accesses: bytes and count
  std::size_t function = 0;  ///< the number of the enclosing function, from 1, if the tool reports calls; else 0
  std::size_t callee = 0;    ///< not 0: the weight is the cost of calls from this place to the function of this number
};

using Sink = std::function<void(const Record&)>;

}  // namespace kelvar_readers
