#include <yaml.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "Demangle.h"
#include "Sources.h"
#include "Tool.h"

// One YAML document for each remark, of every pass; only a few in a hundred are about the vectorisation of a loop:
//
//   --- !Passed
//   Pass:            loop-vectorize
//   Name:            Vectorized
//   DebugLoc:        { File: 'src/pixels.cpp', Line: 31, Column: 3 }
//   Function:        _ZN12_GLOBAL__N_18brightenEPKfPfiff
//   Args:
//     - String:          'vectorized loop (vectorization width: '
//     - VectorizationFactor: '4'
//   ...
namespace kelvar_readers {

namespace {

/// Feeds the parser only the documents worth parsing, as one stream, and knows on which line of the file each begins.
class Documents {
 public:
  explicit Documents(Input& input) : input_(input) {}

  /// Fills the parser's buffer as far as possible and returns the size; 0 at the end.
  std::size_t read(unsigned char* to, std::size_t room) {
    while (given_ == document_.size()) {
      document_.clear();
      given_ = 0;
      if (!nextWanted()) return 0;
    }
    const std::size_t count = std::min(room, document_.size() - given_);
    std::copy_n(document_.data() + given_, count, to);
    given_ += count;
    return count;
  }

  /// The line in the file, from 1, of a `line` in the stream, from 0.
  [[nodiscard]] std::size_t lineOf(std::size_t line) const {
    auto after = std::upper_bound(starts_.begin(), starts_.end(), std::pair(line, static_cast<std::size_t>(-1)));
    return after == starts_.begin() ? line + 1 : std::prev(after)->second + line - std::prev(after)->first;
  }

 private:
  /// Reads on to the next document about the vectorisation of a loop; false when there is none.
  bool nextWanted() {
    while (const auto line = input_.nextLine()) {
      if (line->empty()) continue;
      if (!line->starts_with("--- !")) input_.refuse("a remark of clang: --- !Passed, --- !Missed and the like");
      const std::size_t start = input_.lineNumber();
      document_.assign(*line).append("\n");
      std::size_t lines = 1;
      if (!readDocument(lines)) continue;
      starts_.emplace_back(streamLine_, start);
      streamLine_ += lines;
      return true;
    }
    if (input_.lineNumber() == 0) input_.refuse("line 1", "the remarks of clang (-fsave-optimization-record)");
    return false;
  }

  /// Reads the rest of a document, up to its `...`; true when it is one that is wanted.
  bool readDocument(std::size_t& lines) {
    const bool reason = document_.starts_with("--- !Analysis");  // why a loop is not vectorised
    bool pass = false;
    bool name = false;
    while (const auto line = input_.nextLine()) {
      document_.append(*line).append("\n");
      ++lines;
      if (*line == "...") return pass && name;
      std::string_view value = *line;
      if (takePrefix(value, "Pass:")) {
        pass = trimmed(value) == "loop-vectorize";
        requireTexts(trimmed(value));
      }
      if (takePrefix(value, "Name:"))
        name = reason || trimmed(value) == "Vectorized" || trimmed(value) == "MissedDetails";
    }
    input_.refuse("the rest of the remark: its ... line");
  }

  /// Refuses a file whose texts are numbers that refer to a string table elsewhere: no pass has a number for a name.
  void requireTexts(std::string_view pass) const {
    if (pass.empty() || pass.find_first_not_of("0123456789") != std::string_view::npos) return;
    input_.refuse(
        "the name of a pass; what is saved as yaml-strtab has its texts in the object file: clang "
        "-fsave-optimization-record=yaml");
  }

  Input& input_;
  std::string document_;
  std::size_t given_ = 0;
  std::size_t streamLine_ = 0;
  std::vector<std::pair<std::size_t, std::size_t>> starts_;  // line of the stream, line of the file
};

struct ParserEnd {
  void operator()(yaml_parser_t* parser) const noexcept {
    yaml_parser_delete(parser);
    delete parser;
  }
};

struct Event {
  Event() = default;
  ~Event() { yaml_event_delete(&event); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  yaml_event_t event{};
};

class RemarkReader {
 public:
  RemarkReader(Input& input, const Sink& sink)
      : input_(input), sink_(sink), documents_(input), parser_(new yaml_parser_t{}) {
    if (yaml_parser_initialize(parser_.get()) == 0) throw std::bad_alloc();
    yaml_parser_set_encoding(parser_.get(), YAML_UTF8_ENCODING);
    yaml_parser_set_input(parser_.get(), feed, this);
    record_.stack.assign(1, &frame_);
  }

  void read() {
    for (bool more = true; more;) {
      Event next;
      parse(next);
      more = next.event.type != YAML_STREAM_END_EVENT;
      take(next.event);
    }
  }

 private:
  /// An exception must not pass through the parser's C code, so it is kept until the parser has returned.
  static int feed(void* self, unsigned char* to, std::size_t room, std::size_t* count) noexcept {
    auto& reader = *static_cast<RemarkReader*>(self);
    try {
      *count = reader.documents_.read(to, room);
      return 1;
    } catch (const std::exception&) {
      reader.refusal_ = std::current_exception();
      return 0;
    }
  }

  void parse(Event& next) {
    const int parsed = yaml_parser_parse(parser_.get(), &next.event);
    if (refusal_) std::rethrow_exception(refusal_);
    if (parsed != 0) return;
    if (parser_->error == YAML_MEMORY_ERROR) throw std::bad_alloc();
    refuse(parser_->problem_mark.line, std::string("YAML: ") + (parser_->problem ? parser_->problem : "no such thing"));
  }

  [[noreturn]] void refuse(std::size_t streamLine, const std::string& expected) const {
    input_.refuse(linePlace(documents_.lineOf(streamLine)), expected);
  }

  void take(const yaml_event_t& event) {
    switch (event.type) {
      case YAML_DOCUMENT_START_EVENT:
        frame_ = {.chain = {Place()}};
        record_.weights = {};
        record_.words = {};
        record_.note = "x1";
        key_.clear();
        break;
      case YAML_MAPPING_START_EVENT:
      case YAML_MAPPING_END_EVENT:
      case YAML_SEQUENCE_START_EVENT:
      case YAML_SEQUENCE_END_EVENT:
        key_.clear();
        break;
      case YAML_SCALAR_EVENT:
        takeScalar({reinterpret_cast<const char*>(event.data.scalar.value), event.data.scalar.length}, event);
        break;
      case YAML_DOCUMENT_END_EVENT:
        frame_.function = frame_.chain.front().function;
        sink_(record_);
        break;
      default:
        break;
    }
  }

  /// Keys and values alternate; a nested mapping starts with a key again.
  void takeScalar(std::string_view text, const yaml_event_t& event) {
    if (key_.empty()) {
      key_ = text;
      return;
    }
    const std::string key = std::exchange(key_, {});
    Place& place = frame_.chain.front();
    if (key == "Name") {
      if (text == "Vectorized") record_.weights[0] = 1;
      if (text == "MissedDetails") record_.weights[1] = 1;
    } else if (key == "Function") {
      place.function = demangled(std::string(text));
    } else if (key == "File") {
      place.file = text;
    } else if (key == "Line") {
      place.line = count(text, event);
    } else if (key == "Column") {
      place.column = count(text, event);
    } else if (key == "VectorizationFactor") {
      record_.note.assign(1, 'x').append(text);
    }
    const bool isHeader = key == "Name" || key == "Pass" || key == "Function" || key == "File" || key == "Line" ||
                          key == "Column" || key == "Hotness";
    if (!isHeader) record_.words.text.append(text);
  }

  int count(std::string_view text, const yaml_event_t& event) const {
    const auto value = takeNumber<int>(text);
    if (!value || *value < 0 || !text.empty()) refuse(event.start_mark.line, "a line or a column");
    return *value;
  }

  Input& input_;
  const Sink& sink_;
  Documents documents_;
  std::unique_ptr<yaml_parser_t, ParserEnd> parser_;
  std::exception_ptr refusal_;
  Record record_;
  Frame frame_;
  std::string key_;
};

}  // namespace

namespace {

/// A bitstream is converted by LLVM's own tool. Its name carries the LLVM version, and newer ones read more files.
void readBitstream(Input& input, const Sink& sink) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(input.path(), error)) input.refuse("line 1", "a bitstream that lies in a file");
  for (const char* const name :
       {"llvm-remarkutil", "llvm-remarkutil-19", "llvm-remarkutil-18", "llvm-remarkutil-17", "llvm-remarkutil-16"}) {
    Tool converter({name, "bitstream2yaml", input.path(), "-o", "-"});
    if (!converter.isRunning()) continue;
    Input text(converter.output(), input.path());
    if (text.hasMore()) RemarkReader(text, sink).read();
    if (const int ended = converter.wait(); ended != 0) {
      input.refuse("line 1", "a bitstream that " + std::string(name) + " reads (it ended with status " +
                                 std::to_string(ended) + "); clang -fsave-optimization-record=yaml needs none");
    }
    return;
  }
  input.refuse("line 1",
               "remarks as YAML (clang -fsave-optimization-record=yaml), or llvm-remarkutil within reach, to read a "
               "bitstream");
}

}  // namespace

void readClangRemarks(Input& input, Reading&, const Sink& sink) {
  if (input.beginsWith("RMRK")) return readBitstream(input, sink);
  if (input.beginsWith(std::string_view("REMARKS\0", 8))) {
    input.refuse("line 1", "remarks as YAML: clang -fsave-optimization-record=yaml");
  }
  RemarkReader(input, sink).read();
}

}  // namespace kelvar_readers
