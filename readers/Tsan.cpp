#include <cctype>

#include "Sources.h"

// ThreadSanitizer's reports come in between whatever else the program printed:
//
//   ==================
//   WARNING: ThreadSanitizer: data race (pid=17)
//     Write of size 4 at 0x7b4000000154 by thread T14:
//       #0 FUNCTION FILE:LINE:COLUMN (MODULE+0xd549d) (BuildId: ...)
//   ...
//   SUMMARY: ThreadSanitizer: data race FILE:LINE:COLUMN in FUNCTION
//   ==================
namespace kelvar_readers {

namespace {

constexpr std::string_view kWarning = "WARNING: ThreadSanitizer: ";
constexpr std::string_view kSummary = "SUMMARY: ThreadSanitizer: ";

Finding findingOf(std::string_view what) {
  if (what.starts_with("data race") || what.starts_with("heap-use-after-free (virtual call")) return race;
  return what.starts_with("lock-order-inversion") ? lockOrder : otherFinding;
}

/// Whether the stack under this heading says where the finding happened. Other stacks say where a thread, a mutex or a
/// memory block was created.
bool isWhereItHappened(std::string_view heading, Finding finding) {
  if (finding == race) {
    return !heading.starts_with("Location ") && heading.find(" of size ") != std::string_view::npos;
  }
  if (finding == lockOrder) return heading.find(" acquired here while holding ") != std::string_view::npos;
  return true;
}

/// Takes `:NUMBER` off the end of `text`.
std::optional<int> takeBackNumber(std::string_view& text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos) return std::nullopt;
  std::string_view digits = text.substr(colon + 1);
  const std::optional<int> number = takeNumber<int>(digits);
  if (!number || *number < 0 || !digits.empty()) return std::nullopt;
  text.remove_suffix(text.size() - colon);
  return number;
}

/// Splits `FUNCTION FILE`. Both may contain blanks: the file begins after the first blank outside brackets that a `/`
/// follows; a relative file is the last word.
void splitFunctionAndFile(std::string_view text, Place& place) {
  std::size_t at = std::string_view::npos;
  int depth = 0;
  for (std::size_t i = 0; i + 1 < text.size() && at == std::string_view::npos; ++i) {
    if (text[i] == '(' || text[i] == '<') ++depth;
    if (text[i] == ')' || text[i] == '>') --depth;
    if (text[i] == ' ' && text[i + 1] == '/' && depth <= 0) at = i;
  }
  if (at == std::string_view::npos) at = text.rfind(' ');
  place.function = text.substr(0, at);
  if (at != std::string_view::npos) place.file = text.substr(at + 1);
}

Place readFrame(std::string_view text) {
  Place place;
  for (const std::string_view module : {" (BuildId: ", "+0x"}) {
    const std::size_t at = text.rfind(module);
    if (at != std::string_view::npos) text = text.substr(0, module.front() == ' ' ? at : text.rfind(" (", at));
  }
  std::optional<int> last = takeBackNumber(text);
  std::optional<int> line = last ? takeBackNumber(text) : std::nullopt;
  if (!last) {
    if (text.ends_with(" <null>")) text.remove_suffix(7);
    place.function = text == "<null>" ? std::string_view() : text;
    return place;
  }
  place.line = line ? *line : *last;
  place.column = line ? *last : 0;
  splitFunctionAndFile(text, place);
  return place;
}

class TsanReader {
 public:
  TsanReader(Input& input, const Sink& sink) : input_(input), sink_(sink) {}

  void read() {
    while (const auto line = input_.nextLine()) {
      if (inReport_) {
        readReportLine(*line);
      } else if (const std::size_t at = line->find(kWarning); at != std::string_view::npos) {
        beginReport(line->substr(at + kWarning.size()));
      } else if (line->find("ThreadSanitizer") != std::string_view::npos) {
        known_ = true;
      }
    }
    if (inReport_) input_.refuse("the rest of the report: its SUMMARY: line");
    if (input_.lineNumber() > 0 && !known_)
      input_.refuse("line 1", "a report of ThreadSanitizer, or its greeting (TSAN_OPTIONS=verbosity=1)");
    if (input_.lineNumber() == 0) input_.refuse("line 1", "what a program built with ThreadSanitizer printed");
  }

 private:
  void beginReport(std::string_view what) {
    known_ = inReport_ = true;
    ++report_;
    finding_ = findingOf(what);
    what_ = what.substr(0, what.find(" (pid="));
    words_ = {.text = what_};
    object_.clear();
  }

  void readReportLine(std::string_view line) {
    std::string_view text = trimmed(line);
    if (text.starts_with(kWarning)) input_.refuse("the report's SUMMARY: line before the next report");
    if (takePrefix(text, "#")) {
      if (!takeNumber<int>(text) || !takePrefix(text, " ")) input_.refuse("a frame: #NUMBER FUNCTION FILE:LINE");
      if (wanted_) stack_.push_back(readFrame(text));
      return;
    }
    endStack();
    if (text.starts_with(kSummary)) return endReport();
    if (!text.empty()) readHeading(text);
  }

  void endStack() {
    if (stack_.empty()) return;
    Stack& stack = stacks_.emplace_back(Stack{.frame = {.chain = std::move(stack_)}, .words = words_});
    stack.frame.function = stack.frame.chain.front().function;
    stack_.clear();
  }

  void endReport() {
    Record record{.report = report_};
    record.weights[finding_] = 1;
    if (stacks_.empty()) record.words = {.text = what_, .object = object_};
    if (stacks_.empty()) sink_(record);
    for (const Stack& stack : stacks_) {
      record.stack.assign(1, &stack.frame);
      record.words = stack.words;
      record.words.object = object_;
      sink_(record);
    }
    stacks_.clear();
    inReport_ = wanted_ = false;
  }

  /// Reads the heading of the next stack: `Write of size 4 at 0x7b4000000154 by thread T14:`.
  void readHeading(std::string_view text) {
    wanted_ = isWhereItHappened(text, finding_);
    std::string_view said = text;
    if (said.ends_with(':')) said.remove_suffix(1);
    if (takePrefix(said, "Location is ")) {
      object_ = said;
      cutAddress(object_);
      if (const std::size_t by = object_.find(" allocated by "); by != std::string::npos) object_.resize(by);
      return;
    }
    if (!wanted_) return;
    words_ = {.text = std::string(said)};
    words_.text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(said.front())));
    cutAddress(words_.text);
    if (finding_ != race) return;
    const bool earlier = said.starts_with("Previous ");
    const bool writes = said.find("rite of size") != std::string_view::npos;
    words_.role = std::string(earlier ? "earlier " : "") + (writes ? "write" : "read");
  }

  /// Removes ` at 0x7b4000000154`, which differs in every run.
  static void cutAddress(std::string& text) {
    const std::size_t at = text.find(" at 0x");
    if (at == std::string::npos) return;
    const std::size_t end = text.find_first_of(" (", at + 4);
    text.erase(at, end == std::string::npos ? std::string::npos : end - at);
  }

  struct Stack {
    Frame frame;
    Words words;
  };

  Input& input_;
  const Sink& sink_;
  std::vector<Place> stack_;
  std::vector<Stack> stacks_;  // of the report
  std::string what_;
  std::string object_;
  Words words_;  // of the next stack
  std::size_t report_ = 0;
  Finding finding_ = otherFinding;
  bool known_ = false;
  bool inReport_ = false;
  bool wanted_ = false;
};

}  // namespace

void readTsan(Input& input, Reading&, const Sink& sink) {
  TsanReader(input, sink).read();
}

}  // namespace kelvar_readers
