#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "Sources.h"
#include "TextNumbers.h"

namespace kelvar_readers {

namespace {

/// `(ID) NAME` where a name comes first, `(ID)` from then on, or the name alone. Names are numbered from 1.
class Names {
 public:
  struct Name {
    std::string_view text;
    std::size_t number = 0;
  };

  Name take(std::string_view text, const Input& input) {
    std::string_view rest = text;
    const bool opens = takePrefix(rest, "(");
    const std::optional<unsigned> id = opens ? takeNumber<unsigned>(rest) : std::nullopt;
    if (!id || !takePrefix(rest, ")")) return numbered(names_.numberOf(text));
    rest = trimmed(rest);
    if (!rest.empty()) return numbered(byId_[*id] = names_.numberOf(rest));
    const auto found = byId_.find(*id);
    if (found == byId_.end()) input.refuse("the name of (" + std::to_string(*id) + ") before its use");
    return numbered(found->second);
  }

 private:
  Name numbered(std::size_t number) const { return {names_.textNumbered(number), number + 1}; }

  TextNumbers names_;
  std::unordered_map<unsigned, std::size_t> byId_;
};

/// A position: absolute, `+N` or `-N` relative to the last one, or `*` for the same.
bool takePosition(std::string_view& text, long long& position) {
  if (takePrefix(text, "*")) return true;
  if (takePrefix(text, "0x")) {
    const auto address = takeNumber<unsigned long long>(text, 16);
    if (address) position = static_cast<long long>(*address);
    return address.has_value();
  }
  const bool forward = takePrefix(text, "+");
  const bool back = !forward && takePrefix(text, "-");
  const auto number = takeNumber<long long>(text);
  if (!number || *number < 0 || *number > (1LL << 62U)) return false;
  if (forward) {
    if (position > (1LL << 62U)) return false;
    position += *number;
  } else {
    position = back ? position - *number : *number;
  }
  return true;
}

class CallgrindReader {
 public:
  CallgrindReader(Input& input, Reading& reading, const Sink& sink) : input_(input), reading_(reading), sink_(sink) {
    told_.chain.resize(1);
  }

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    if (!sawEvents_) input_.refuse("an events: line, as callgrind writes it");
    if (!sawCost_) input_.refuse("a cost line");
    // Callgrind writes either a total at the end or a summary at the beginning.
    if (afterCalls_) input_.refuse("the cost of the call");
    if (!sawTotal_) input_.refuse("the rest of the file: neither totals: nor summary:");
    if (summary_ > 0 && !approximatelySummed()) input_.refuse("the rest of the file: its costs are less than summary:");
    remarkInlined();
  }

 private:
  void readLine(std::string_view line) {
    if (line.empty() || line.front() == '#') return;
    const char first = line.front();
    if ((first >= '0' && first <= '9') || first == '+' || first == '-' || first == '*') return readCost(line);
    const std::size_t separator = line.find_first_of("=:");
    if (separator == std::string_view::npos) input_.refuse("a line of a callgrind.out");
    const std::string_view key = line.substr(0, separator);
    const std::string_view value = trimmed(line.substr(separator + 1));
    line[separator] == '=' ? readAssignment(key, value) : readHeader(key, value);
  }

  void readHeader(std::string_view key, std::string_view value) {
    if (key == "positions") {
      hasAddress_ = value.find("instr") != std::string_view::npos;
      hasLine_ = value.find("line") != std::string_view::npos;
      if (!hasLine_ && !hasAddress_) input_.refuse("positions: with lines (--dump-line=yes)");
    } else if (key == "events") {
      sawEvents_ = true;
      readUnit(takeUntil(value, ' '));
    } else if (key == "pid" || key == "part" || key == "thread") {
      (key == "pid" ? process_ : key == "part" ? part_ : thread_) = value;
      if (key == "pid") requireOneProcess();
    } else if (key == "summary" || key == "totals") {
      sawTotal_ = true;
      const auto total = takeNumber<double>(value);
      if (!total) input_.refuse("a cost");
      if (key == "summary") summary_ += *total;
    }
    if (key == "positions" && !process_.empty()) requireNewPart();
  }

  void readUnit(std::string_view event) {
    const std::string unit = "millions of " + (event == "Ir" ? "instructions" : std::string(event));
    if (!reading_.unit.empty() && reading_.unit != unit) {
      input_.refuse("what the file before it counts, " + reading_.unit + ", not " + unit + ": import them separately");
    }
    reading_.unit = unit;
  }

  void requireOneProcess() {
    const std::string known = "callgrind pid ";
    for (const std::string& seen : reading_.seen) {
      if (!seen.starts_with(known) || seen == known + process_) continue;
      input_.refuse("one process: this is " + process_ + ", and a file before it " + seen.substr(known.size()) +
                    ", whose costs it may hold as well where one forked the other; import them separately");
    }
    reading_.seen.insert(known + process_);
  }

  void requireNewPart() {
    const std::string key = "callgrind part " + process_ + ' ' + part_ + ' ' + thread_;
    if (!reading_.seen.insert(key).second) input_.refuse("a part of the run that no file before it holds");
  }

  void readAssignment(std::string_view key, std::string_view value) {
    Place& place = told_.chain.front();
    if (key == "fn") {
      const Names::Name name = functions_.take(value, input_);
      told_.function = place.function = name.text;
      record_.function = name.number;
      place.file = home_;
      lined_ = 0;
    } else if (key == "fl") {
      home_ = files_.take(value, input_).text;
      place.file = home_;
    } else if (key == "fi" || key == "fe") {
      place.file = files_.take(value, input_).text;
    } else if (key == "ob") {
      symbols_ = reading_.binaries.find(std::string(objects_.take(value, input_).text));
    } else if (key == "cfn") {
      callee_ = functions_.take(value, input_).number;
    } else if (key == "cfi" || key == "cfl") {
      (void)files_.take(value, input_);
    } else if (key == "cob") {
      (void)objects_.take(value, input_);
    } else if (key == "calls") {
      afterCalls_ = true;
    } else if (key == "jump" || key == "jcnd") {
      afterJump_ = true;
    } else if (key != "rcalls" && key != "frfn") {
      input_.refuse("a line of a callgrind.out");
    }
  }

  void readCost(std::string_view line) {
    if (!sawEvents_) input_.refuse("an events: line before the first cost");
    if (hasAddress_ && !takeColumn(line, address_)) input_.refuse("an address, a line and a cost");
    if (hasLine_ && !takeColumn(line, line_)) input_.refuse("a line and a cost");
    const auto cost = line.empty() ? std::optional<unsigned long long>(0) : takeNumber<unsigned long long>(line);
    if (!cost) input_.refuse("a cost");
    if (std::exchange(afterJump_, false)) return;  // the cost line of a jump has no cost
    record_.weights[0] = static_cast<double>(*cost) / 1e6;
    record_.stack.assign(1, &frameHere());
    if (std::exchange(afterCalls_, false)) {
      record_.callee = callee_;
      reading_.hasCalls = true;
    } else {
      record_.callee = 0;
      sawCost_ = true;
      summed_ += static_cast<double>(*cost);
      if (!hasAddress_ || record_.stack.front() == &told_) toldCost_ += record_.weights[0];
    }
    sink_(record_);
  }

  /// From the debug information of the address; without it, the line that the file itself gives.
  const Frame& frameHere() {
    const auto address = static_cast<std::uint64_t>(address_);
    if (hasAddress_ && symbols_ && symbols_->hasLines() && symbols_->holds(address)) {
      const Frame& frame = symbols_->frameAt(address);
      if (!frame.function.empty() && frame.chain.front().line > 0) return frame;
    }
    // Code without a line counts for the line before it.
    if (line_ > 0 && line_ <= 2147483647) lined_ = static_cast<int>(line_);
    told_.chain.front().line = lined_;
    return told_;
  }

  void remarkInlined() const {
    if (!hasAddress_) {
      reading_.remark(
          "without addresses, inlined code counts where it was written, not for the sites that call it: record with "
          "valgrind --tool=callgrind --dump-instr=yes");
    } else if (toldCost_ > 0 && toldCost_ * 1e6 >= summed_ * 0.5) {
      reading_.remark(
          "most instructions are in programs whose debug information was not found, so inlined code is not seen there: "
          "build with -g, and name the program by --binary");
    }
  }

  static bool takeColumn(std::string_view& line, long long& position) {
    const bool taken = takePosition(line, position);
    line = trimmed(line);
    return taken;
  }

  [[nodiscard]] bool approximatelySummed() const { return summed_ >= summary_ * 0.999; }

  Input& input_;
  Reading& reading_;
  const Sink& sink_;
  Record record_;
  Frame told_;  // the place of the costs according to the file itself
  Names files_;
  Names functions_;
  Names objects_;
  Symbols* symbols_ = nullptr;  // of the object whose costs are read
  std::string home_;
  std::string process_;
  std::string part_;
  std::string thread_;
  std::size_t callee_ = 0;
  int lined_ = 0;  // the last line given in this function
  long long line_ = 0;
  long long address_ = 0;
  double summary_ = 0;
  double summed_ = 0;
  double toldCost_ = 0;
  bool hasAddress_ = false;
  bool hasLine_ = true;
  bool afterCalls_ = false;
  bool afterJump_ = false;
  bool sawEvents_ = false;
  bool sawCost_ = false;
  bool sawTotal_ = false;
};

}  // namespace

void readCallgrind(Input& input, Reading& reading, const Sink& sink) {
  CallgrindReader(input, reading, sink).read();
}

}  // namespace kelvar_readers
