#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>

#include "Sources.h"

// Lackey's --trace-mem=yes, among valgrind's own lines (==PID== ...):
//
//   I  0401ab73,5      an instruction: address, size
//    L 1fff0006e8,8    a load; S: a store; M: a modify
namespace kelvar_readers {

namespace {

// The address at which valgrind on amd64 loads a position-independent program.
constexpr std::uint64_t kValgrindBase = 0x108000;
/// For the limit of a trace, this many instructions count like one access.
constexpr std::uint64_t kInstructionsAnAccess = 10;
constexpr std::size_t kNoLine = static_cast<std::size_t>(-1);

enum Stride : std::size_t { unit, constant, none };

/// The ends of the latest accesses of one kind in a group. An unrolled loop walks an array with several instructions,
/// each of which continues where another one stopped.
struct Neighbours {
  std::array<std::uint64_t, 8> ends{};
  std::size_t next = 0;

  [[nodiscard]] bool carryOn(std::uint64_t address) const {
    return std::find(ends.begin(), ends.end(), address) != ends.end();
  }
  void add(std::uint64_t end) { ends[next++ % ends.size()] = end; }
};

/// The walk of one instruction through memory.
struct Walk {
  std::uint64_t last = 0;
  std::int64_t step = 0;
  bool started = false;
  std::size_t line = 0;  // index of its source line; kNoLine when it has none
};

/// Counts the distances between successive accesses, in bytes. Equal steps come in runs, so each run is counted at
/// once.
class Steps {
 public:
  void add(std::int64_t step) {
    if (step != last_) flush(step);
    ++run_;
  }
  /// The most frequent steps and their counts, the most frequent first.
  [[nodiscard]] std::vector<std::pair<std::int64_t, std::int64_t>> commonest() {
    flush(last_);
    std::vector<std::pair<std::int64_t, std::int64_t>> steps(counts_.begin(), counts_.end());
    std::sort(steps.begin(), steps.end(), [](const auto& a, const auto& b) {
      return std::pair(-a.second, a.first) < std::pair(-b.second, b.first);
    });
    if (steps.size() > kMostSteps) steps.resize(kMostSteps);
    return steps;
  }

 private:
  static constexpr std::size_t kMostSteps = 3;
  static constexpr std::size_t kMostKnown = 1024;  // bounds the memory for a line with irregular accesses

  void flush(std::int64_t next) {
    if (run_ > 0) {
      if (counts_.size() < kMostKnown) {
        counts_[last_] += run_;
      } else if (const auto known = counts_.find(last_); known != counts_.end()) {
        known->second += run_;
      }
    }
    last_ = next;
    run_ = 0;
  }

  std::unordered_map<std::int64_t, std::int64_t> counts_;
  std::int64_t last_ = 0;
  std::int64_t run_ = 0;
};

/// Accesses that may continue each other: those of one line, or in one function all those without a line of their own,
/// such as the body of a vectorised loop.
struct Group {
  Neighbours loads;
  Neighbours stores;
};

/// The accesses of one source line in one function, in one and the same chain of inlined calls.
struct Line {
  const Frame* frame = nullptr;
  std::size_t group = 0;
  Weights accesses{};
  Steps steps;
};

class LackeyReader {
 public:
  LackeyReader(Input& input, Reading& reading, const Sink& sink) : input_(input), reading_(reading), sink_(sink) {}

  void read() {
    while (const auto line = input_.nextLine()) {
      readLine(*line);
      if (reading_.mapAccesses == 0) continue;
      // Accesses of libraries do not count: a program starts with millions of them. Instructions are limited too: a
      // loop that computes in registers fills the trace with instructions and hardly any accesses.
      const bool isLong = instructions_ / kInstructionsAnAccess >= reading_.mapAccesses;
      if (accesses_ < reading_.mapAccesses && !isLong) continue;
      reading_.endedEarly = true;
      reading_.remark("the trace was read up to " + std::to_string(accesses_) + " accesses" +
                      (isLong ? " in " + std::to_string(instructions_) + " instructions" : std::string()) +
                      ", by --map-accesses: what the program did later is not in it: a "
                      "smaller input or a greater N reaches further");
      break;
    }
    if (!any_) {
      const std::string trace = "the trace of valgrind --tool=lackey --trace-mem=yes";
      input_.refuse("line 1", !gaveUp_ ? trace : trace + ", which gave up on the debug information: -gdwarf-4 may do");
    }
    for (Line& line : lines_) {
      sink_({.stack = {line.frame}, .weights = line.accesses, .steps = line.steps.commonest()});
    }
    if (elsewhere_ > 0) sink_({.weights = {0, 0, elsewhere_}});
  }

 private:
  /// Other lines are valgrind's own, or printed by the program: all share the standard error.
  void readLine(std::string_view text) {
    if (takePrefix(text, "I  ")) {
      ++instructions_;
      if (const auto at = take(text)) walk_ = walkAt(at->first);
    } else if (takePrefix(text, " L ")) {
      access(text, &Group::loads);
    } else if (takePrefix(text, " S ") || takePrefix(text, " M ")) {
      access(text, &Group::stores);
    } else if (!any_) {
      gaveUp_ = gaveUp_ || text.find(" Valgrind: debuginfo reader: ") != std::string_view::npos;
    }
  }

  /// `ADDRESS,SIZE`
  std::optional<std::pair<std::uint64_t, std::uint64_t>> take(std::string_view text) {
    const auto address = takeNumber<std::uint64_t>(text, 16);
    const bool comma = takePrefix(text, ",");
    const auto size = takeNumber<std::uint64_t>(text);
    if (!address || !comma || !size || !text.empty()) return std::nullopt;
    any_ = true;
    return std::pair(*address, *size);
  }

  /// Null for an instruction outside of the given binaries.
  Walk* walkAt(std::uint64_t address) {
    const auto known = walks_.find(address);
    if (known != walks_.end()) return known->second.line == kNoLine ? nullptr : &known->second;
    Walk& walk = walks_[address];
    walk.line = lineAt(address);
    return walk.line == kNoLine ? nullptr : &walk;
  }

  std::size_t lineAt(std::uint64_t address) {
    for (const auto& symbols : reading_.binaries.given()) {
      const std::uint64_t linked = symbols->isPositionIndependent() ? address - kValgrindBase : address;
      if (symbols->holds(linked)) return lineOf(symbols->frameAt(linked));
    }
    return kNoLine;
  }

  std::size_t lineOf(const Frame& frame) {
    std::string key = frame.function;
    for (const Place& place : frame.chain) key.append(1, '\0').append(place.file).append(std::to_string(place.line));
    if (frame.lineIsGuessed) key += '?';
    const auto [found, isNew] = lineOfKey_.try_emplace(key, lines_.size());
    if (isNew) lines_.push_back({.frame = &frame, .group = groupOf(frame, key), .steps = {}});
    return found->second;
  }

  std::size_t groupOf(const Frame& frame, const std::string& line) {
    const auto [found, isNew] = groupOfKey_.try_emplace(frame.lineIsGuessed ? frame.function : line, groups_.size());
    if (isNew) groups_.emplace_back();
    return found->second;
  }

  void access(std::string_view text, Neighbours Group::*neighbours) {
    const auto taken = take(text);
    if (!taken) return;
    const auto [address, size] = *taken;
    if (!walk_) {
      ++elsewhere_;
      return;
    }
    ++accesses_;
    Line& line = lines_[walk_->line];
    Neighbours& near = groups_[line.group].*neighbours;
    const auto step = static_cast<std::int64_t>(address - walk_->last);
    // The first access of an instruction makes no step.
    if (walk_->started) {
      ++line.accesses[strideOf(step, size, near, address)];
      line.steps.add(step);
    }
    walk_->started = true;
    walk_->step = step;
    walk_->last = address;
    near.add(address + size);
  }

  [[nodiscard]] Stride strideOf(std::int64_t step, std::uint64_t size, const Neighbours& near, std::uint64_t at) const {
    const auto width = static_cast<std::int64_t>(size);
    if (step == 0 || step == width || step == -width || near.carryOn(at)) return unit;
    return step == walk_->step ? constant : none;
  }

  Input& input_;
  Reading& reading_;
  const Sink& sink_;
  std::unordered_map<std::uint64_t, Walk> walks_;
  std::unordered_map<std::string, std::size_t> lineOfKey_;
  std::unordered_map<std::string, std::size_t> groupOfKey_;
  std::vector<Line> lines_;
  std::vector<Group> groups_;
  Walk* walk_ = nullptr;  // of the instruction read last; elements of the map do not move
  double elsewhere_ = 0;
  std::uint64_t accesses_ = 0;
  std::uint64_t instructions_ = 0;
  bool any_ = false;
  bool gaveUp_ = false;  // valgrind, before the program ran
};

}  // namespace

void readLackey(Input& input, Reading& reading, const Sink& sink) {
  LackeyReader(input, reading, sink).read();
}

}  // namespace kelvar_readers
