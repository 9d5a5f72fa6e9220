#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>

#include "Sources.h"
#include "Symbols.h"

// Lackey's --trace-mem=yes, among valgrind's own lines (==PID== ...):
//
//   I  0401ab73,5      an instruction: address, size
//    L 1fff0006e8,8    what it loads; S: what it stores; M: what it modifies
namespace kelvar_import {

namespace {

enum Stride : std::size_t { unit, constant, none };

/// The accesses of one kind by the instructions of one source line, newest last: a loop that was unrolled walks an
/// array with several instructions, each of which carries on where another one stopped.
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
  std::size_t line = 0;  // which line of the source it belongs to
};

struct Line {
  Place place;
  Neighbours loads;
  Neighbours stores;
  Weights accesses{};
};

class LackeyReader {
 public:
  LackeyReader(Input& input, const std::string& binary, const Sink& sink)
      : input_(input), symbols_(binary), sink_(sink) {}

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    if (!any_) input_.refuse("line 1", "the trace of valgrind --tool=lackey --trace-mem=yes");
    for (const auto& line : lines_) sink_({.stack = {line.place}, .weights = line.accesses, .note = {}});
    if (elsewhere_ > 0) sink_({.stack = {}, .weights = {0, 0, elsewhere_}, .note = {}});
  }

 private:
  void readLine(std::string_view text) {
    if (text.starts_with("==") || text.starts_with("--") || text.starts_with("**") || text.starts_with("##")) return;
    if (takePrefix(text, "I  ")) {
      walk_ = walkAt(take(text).first);
    } else if (takePrefix(text, " L ")) {
      access(text, &Line::loads);
    } else if (takePrefix(text, " S ") || takePrefix(text, " M ")) {
      access(text, &Line::stores);
    } else if (!any_ || !isOutput(text)) {
      input_.refuse("a line of lackey's trace: I, L, S or M, an address and a size");
    }
  }

  /// What valgrind's core prints without its prefix; it never looks like a part of the trace.
  static bool isOutput(std::string_view text) { return text.empty() || text.starts_with("get_Form_szB"); }

  std::pair<std::uint64_t, std::uint64_t> take(std::string_view text) {
    const auto address = takeNumber<std::uint64_t>(text, 16);
    const bool comma = takePrefix(text, ",");
    const auto size = takeNumber<std::uint64_t>(text);
    if (!address || !comma || !size || !text.empty()) input_.refuse("an address, a comma and a size");
    any_ = true;
    return {*address, *size};
  }

  /// Null for an instruction that is not the binary's own.
  Walk* walkAt(std::uint64_t address) {
    if (!symbols_.holds(address)) return nullptr;
    const auto [found, isNew] = walks_.try_emplace(address);
    if (isNew) found->second.line = lineAt(address);
    return &found->second;
  }

  std::size_t lineAt(std::uint64_t address) {
    const Place place = symbols_.placeOf(address);
    const std::string key = place.function + '\0' + place.file + '\0' + std::to_string(place.line);
    const auto [found, isNew] = lineOfKey_.try_emplace(key, lines_.size());
    if (isNew) lines_.push_back({.place = place, .loads = {}, .stores = {}});
    return found->second;
  }

  void access(std::string_view text, Neighbours Line::*neighbours) {
    const auto [address, size] = take(text);
    if (!walk_) {
      ++elsewhere_;
      return;
    }
    Line& line = lines_[walk_->line];
    const auto step = static_cast<std::int64_t>(address - walk_->last);
    // What an instruction touches first is no step yet.
    if (walk_->started) ++line.accesses[strideOf(step, size, line.*neighbours, address)];
    walk_->started = true;
    walk_->step = step;
    walk_->last = address;
    (line.*neighbours).add(address + size);
  }

  [[nodiscard]] Stride strideOf(std::int64_t step, std::uint64_t size, const Neighbours& near, std::uint64_t at) const {
    const auto width = static_cast<std::int64_t>(size);
    if (step == 0 || step == width || step == -width || near.carryOn(at)) return unit;
    return step == walk_->step ? constant : none;
  }

  Input& input_;
  Symbols symbols_;
  const Sink& sink_;
  std::unordered_map<std::uint64_t, Walk> walks_;
  std::unordered_map<std::string, std::size_t> lineOfKey_;
  std::vector<Line> lines_;
  Walk* walk_ = nullptr;  // of the instruction read last; nodes of a map stay where they are
  double elsewhere_ = 0;
  bool any_ = false;
};

}  // namespace

void readLackey(Input& input, const std::string& binary, const Sink& sink) {
  LackeyReader(input, binary, sink).read();
}

}  // namespace kelvar_import
