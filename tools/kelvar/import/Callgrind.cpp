#include <unordered_map>
#include <utility>

#include "Sources.h"

namespace kelvar_import {

namespace {

/// `(ID) NAME` where a name is given first, `(ID)` from then on, or the name alone.
class Names {
 public:
  const std::string& take(std::string_view text, const Input& input) {
    if (!text.starts_with('(')) return plain_ = text;
    std::string_view rest = text.substr(1);
    const std::optional<unsigned> id = takeNumber<unsigned>(rest);
    if (!id || !takePrefix(rest, ")")) return plain_ = text;
    rest = trimmed(rest);
    if (!rest.empty()) return names_[*id] = rest;
    const auto found = names_.find(*id);
    if (found == names_.end()) input.refuse("the name of (" + std::to_string(*id) + ") before its use");
    return found->second;
  }

 private:
  std::unordered_map<unsigned, std::string> names_;
  std::string plain_;
};

/// The number of a position: absolute, `+N` and `-N` from the last one, or `*` for the same.
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
  CallgrindReader(Input& input, const Sink& sink) : input_(input), sink_(sink) { record_.stack.resize(1); }

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    if (!sawEvents_) input_.refuse("an events: line, as callgrind writes it");
    if (!sawCost_) input_.refuse("a cost line");
    // Callgrind writes the total last where it has one, and a summary first where it has none.
    if (afterCalls_) input_.refuse("the cost of the call");
    if (!sawTotal_) input_.refuse("the rest of the file: neither totals: nor summary:");
    if (summary_ > 0 && !approximatelySummed()) input_.refuse("the rest of the file: its costs are less than summary:");
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
      if (value.find("line") == std::string_view::npos) input_.refuse("positions: with lines (--dump-line=yes)");
    } else if (key == "events") {
      sawEvents_ = true;
    } else if (key == "summary" || key == "totals") {
      sawTotal_ = true;
      const auto total = takeNumber<double>(value);
      if (!total) input_.refuse("a cost");
      if (key == "summary") summary_ += *total;
    }
  }

  void readAssignment(std::string_view key, std::string_view value) {
    Place& place = record_.stack.front();
    if (key == "fn") {
      place.function = functions_.take(value, input_);
      place.file = home_;
    } else if (key == "fl") {
      home_ = files_.take(value, input_);
      place.file = home_;
    } else if (key == "fi" || key == "fe") {
      place.file = files_.take(value, input_);
    } else if (key == "cfn") {
      (void)functions_.take(value, input_);
    } else if (key == "cfi" || key == "cfl") {
      (void)files_.take(value, input_);
    } else if (key == "calls") {
      afterCalls_ = true;
    } else if (key != "ob" && key != "cob" && key != "jump" && key != "jcnd" && key != "rcalls" && key != "frfn") {
      input_.refuse("a line of a callgrind.out");
    }
  }

  void readCost(std::string_view line) {
    if (!sawEvents_) input_.refuse("an events: line before the first cost");
    if (hasAddress_ && !takeColumn(line, address_)) input_.refuse("an address, a line and a cost");
    if (!takeColumn(line, line_)) input_.refuse("a line and a cost");
    const auto cost = line.empty() ? std::optional<unsigned long long>(0) : takeNumber<unsigned long long>(line);
    if (!cost) input_.refuse("a cost");
    // What a call cost is the callee's own already: it would be counted twice.
    if (std::exchange(afterCalls_, false)) return;
    sawCost_ = true;
    summed_ += static_cast<double>(*cost);
    record_.stack.front().line = line_ > 0 && line_ <= 2147483647 ? static_cast<int>(line_) : 0;
    record_.weights[0] = static_cast<double>(*cost) / 1e6;
    sink_(record_);
  }

  static bool takeColumn(std::string_view& line, long long& position) {
    const bool taken = takePosition(line, position);
    line = trimmed(line);
    return taken;
  }

  [[nodiscard]] bool approximatelySummed() const { return summed_ >= summary_ * 0.999; }

  Input& input_;
  const Sink& sink_;
  Record record_;
  Names files_;
  Names functions_;
  std::string home_;
  long long line_ = 0;
  long long address_ = 0;
  double summary_ = 0;
  double summed_ = 0;
  bool hasAddress_ = false;
  bool afterCalls_ = false;
  bool sawEvents_ = false;
  bool sawCost_ = false;
  bool sawTotal_ = false;
};

}  // namespace

void readCallgrind(Input& input, const Sink& sink) {
  CallgrindReader(input, sink).read();
}

}  // namespace kelvar_import
