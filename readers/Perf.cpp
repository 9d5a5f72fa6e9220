#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>
#include <unordered_map>
#include <vector>

#include "AddressSpaces.h"
#include "Demangle.h"
#include "PerfLine.h"
#include "Sources.h"
#include "Tool.h"

// The text of `perf script` has a block for each sample. Its first line may hold a single frame; else the frames of the
// stack follow, one a line. A source line may follow each frame:
//
//   COMM PID/TID TIME: PERIOD EVENT:  ADDRESS SYMBOL+0xOFFSET (OBJECT)
//     FILE:LINE
//
// Lines of other records come in between: PERF_RECORD_MMAP2 says where an object is mapped.
namespace kelvar_readers {

namespace {

constexpr const char* kCommand = "perf script --no-inline --show-mmap-events --show-task-events -F +pid";
constexpr std::string_view kDataMagic = "PERFILE2";

bool countsTime(std::string_view event) {
  return event.starts_with("cpu-clock") || event.starts_with("task-clock");
}

/// The event `cpu-clock:u` also goes by the name `cpu-clock`.
bool isEventNamed(std::string_view event, std::string_view name) {
  return event == name || (event.starts_with(name) && event.substr(name.size()).starts_with(':'));
}

/// Reads `  FILE:LINE`; leaves `place` alone for anything else, such as `  [kernel.kallsyms][ffffffff81360092]`.
void readSourceLine(std::string_view text, Place& place) {
  const std::string_view source = trimmed(text);
  const std::size_t colon = source.rfind(':');
  if (colon == std::string_view::npos) return;
  std::string_view digits = source.substr(colon + 1);
  const std::optional<int> line = takeNumber<int>(digits);
  if (!line || *line < 0 || source.starts_with("?")) return;
  place.file = source.substr(0, colon);
  place.line = *line;
}

class PerfReader {
 public:
  PerfReader(Input& input, Reading& reading, const Sink& sink)
      : input_(input), reading_(reading), sink_(sink), spaces_(reading.binaries) {}

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    give();
    if (!any_ && skipped_ > 0) input_.refuse("", "samples of " + reading_.event);
    if (!any_) input_.refuse("line 1", "at least one sample of perf script");
    if (!sawLine_) {
      input_.refuse(
          "samples whose object or source line is given, with its debug information at hand: build with -g, and "
          "write the text by " +
          std::string(kCommand) + ", or name the program by --binary");
    }
    remarkWithoutLines();
    for (const std::string& sentence : reading_.binaries.otherBuilds()) reading_.remark(sentence);
  }

 private:
  void readLine(std::string_view line) {
    if (line.empty() || line.front() == '#') return;
    if (line.find("PERF_RECORD_") != std::string_view::npos && readRecord(line)) return;
    const bool indented = line.front() == ' ' || line.front() == '\t';
    if (inSample_ && indented && line.find(": ") == std::string_view::npos) {
      if (takeFrame(line) || readSource(line)) return;
    }
    if (const auto sample = takePerfSample(line)) {
      begin(*sample);
    } else if (inSample_ && indented && (takeFrame(line) || readSource(line))) {
      return;
    } else if (!trimmed(line).empty()) {
      input_.refuse("a sample of perf script: command, process/thread, time, period, event, address, symbol");
    }
  }

  bool readRecord(std::string_view line) {
    if (const auto mapping = takePerfMapping(line)) {
      spaces_.add(*mapping);
      if (!mapping->buildId.empty()) reading_.binaries.expect(mapping->path, mapping->buildId);
      known_.clear();
    } else if (const auto fork = takePerfFork(line)) {
      spaces_.fork(*fork);
    }
    give();
    return true;
  }

  void begin(const PerfSample& sample) {
    give();
    inSample_ = true;
    if (!choose(sample.event)) {
      ++skipped_;
      wanted_ = false;
      return;
    }
    wanted_ = any_ = true;
    process_ = sample.process;
    record_.stack.clear();
    record_.weights = {weightOf(sample)};
    if (sample.rest.empty()) return;
    // May be no frame: tracepoints print other text here.
    (void)takeFrame(sample.rest);
  }

  double weightOf(const PerfSample& sample) const {
    if (countsTime(event_)) return sample.period.value_or(0) / 1e9;
    return sample.period.value_or(1e6) / 1e6;
  }

  /// Whether samples of this event are wanted. Refuses a second event, since different events cannot be added up.
  bool choose(std::string_view event) {
    if (event == event_) return true;
    if (!reading_.event.empty() && !isEventNamed(event, reading_.event)) return false;
    if (event_.empty()) {
      event_ = event;
      const std::string unit = countsTime(event) ? kSeconds : "millions of " + event_;
      if (!reading_.unit.empty() && reading_.unit != unit) {
        input_.refuse("what the file before it counts, " + reading_.unit + ", not " + unit +
                      ": import them separately");
      }
      reading_.unit = unit;
      return true;
    }
    input_.refuse("one event, not " + event_ + " and " + std::string(event) + ": choose one by --event");
  }

  bool takeFrame(std::string_view line) {
    if (!wanted_) return takePerfFrame(line).has_value();
    const std::string_view text = trimmed(line);
    const bool isCaller = !record_.stack.empty();
    Known& known = known_[process_];
    auto& frames = isCaller ? known.callers : known.first;
    auto found = frames.find(text);
    if (found == frames.end()) {
      const auto frame = takePerfFrame(text);
      if (!frame) return false;
      found = frames.emplace(std::string(text), described(*frame, isCaller)).first;
    } else {
      open_ = nullptr;
    }
    if (found->second) record_.stack.push_back(found->second);
    return true;
  }

  /// Null for perf's own line of an inlined call when the debug information has that call too.
  const Frame* described(const PerfFrame& text, bool isCaller) {
    open_ = nullptr;
    const Frame* const frame = spaces_.frameAt(process_, text, isCaller);
    if (frame && frame->chain.front().line > 0) sawLine_ = true;
    if (frame && text.isInlined) return nullptr;
    if (frame && (!frame->function.empty() || text.symbol.empty())) return frame;
    Frame& own = reading_.binaries.frames().add();
    own.function = text.symbol;
    if (frame) {
      own.chain = frame->chain;
    } else {
      own.chain = {{.function = own.function}};
      own.begin.function = own.function;
      open_ = &own;
      objects_[own.id] = text.object;
    }
    return &own;
  }

  /// Reads the source line of the frame before it. It is ignored when the frame is known already or comes from the
  /// debug information.
  bool readSource(std::string_view line) {
    if (!line.starts_with("  ")) return false;
    if (!open_) return true;
    readSourceLine(line, open_->chain.front());
    sawLine_ = true;
    open_ = nullptr;
    return true;
  }

  void give() {
    if (std::exchange(inSample_, false) && wanted_) {
      if (record_.stack.size() > 1) reading_.hasStacks = true;
      ++samples_;
      if (!record_.stack.empty() && record_.stack.front()->chain.front().line == 0) {
        const auto object = objects_.find(record_.stack.front()->id);
        ++withoutLines_[object == objects_.end() ? std::string() : object->second];
      }
      sink_(record_);
    }
    wanted_ = false;
  }

  void remarkWithoutLines() {
    std::size_t count = 0;
    std::string most;
    for (const auto& [object, samples] : withoutLines_) {
      count += samples;
      if (most.empty() || samples > withoutLines_[most]) most = object;
    }
    if (count == 0) return;
    reading_.remark(std::to_string(count) + " of " + std::to_string(samples_) +
                    " samples lie where no lines are known" + (most.empty() ? "" : ", most of them in " + most) +
                    ": inlined code is not seen there; build with -g");
  }

  /// The same text in the same process is the same frame.
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
  };
  using ByText = std::unordered_map<std::string, const Frame*, Hash, std::equal_to<>>;
  struct Known {
    ByText first;
    ByText callers;
  };

  Input& input_;
  Reading& reading_;
  const Sink& sink_;
  AddressSpaces spaces_;
  std::unordered_map<long, Known> known_;
  std::unordered_map<std::uint64_t, std::string> objects_;  // by id, of frames without debug information
  std::map<std::string, std::size_t> withoutLines_;         // samples by object
  Record record_;
  Frame* open_ = nullptr;  // the frame that a source line may follow
  std::string event_;
  long process_ = -1;
  std::size_t samples_ = 0;
  std::size_t skipped_ = 0;
  bool inSample_ = false;
  bool wanted_ = false;
  bool any_ = false;
  bool sawLine_ = false;
};

/// perf record writes the size of its data at the end of the run. perf script reads a file without it, with no more
/// than a warning.
bool wasCutOff(const std::string& path) {
  // The size of the data in the header: after the magic, two sizes and three fields of sections.
  constexpr std::streamoff kDataSize = 48;
  std::ifstream file(path, std::ios::binary);
  std::uint64_t size = 0;
  file.seekg(kDataSize);
  file.read(reinterpret_cast<char*>(&size), sizeof size);
  return !file || size == 0;
}

/// A perf.data lists the build-ids of what ran, as `BUILD-ID PATH`. This machine may have other builds at these paths.
void expectBuilds(const std::string& path, Binaries& binaries) {
  Tool perf({"perf", "buildid-list", "-f", "-i", path});
  if (!perf.isRunning()) return;
  Input list(perf.output(), path);
  while (const auto line = list.nextLine()) {
    std::string_view file = *line;
    const std::string_view buildId = takeUntil(file, ' ');
    if (buildId.size() >= 16 && buildId.find_first_not_of("0123456789abcdef") == std::string_view::npos) {
      binaries.expect(file, buildId);
    }
  }
}

void readData(Input& input, Reading& reading, const Sink& sink) {
  struct stat status {};
  if (stat(input.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    input.refuse("", std::string("a perf.data that lies in a file, or the text of ") + kCommand);
  }
  if (wasCutOff(input.path())) input.refuse("", "a perf.data whose perf record ended well; this one was cut off");
  expectBuilds(input.path(), reading.binaries);
  Tool perf({"perf", "script", "-f", "-i", input.path(), "--no-inline", "--show-mmap-events", "--show-task-events",
             "-F", "+pid"});
  if (!perf.isRunning()) {
    input.refuse("", std::string("perf, to read a perf.data; or, written where perf is: ") + kCommand + " > perf.txt");
  }
  Input text(perf.output(), input.path());
  const bool any = text.hasMore();
  if (any) PerfReader(text, reading, sink).read();
  if (const int ended = perf.wait(); ended != 0) {
    input.refuse("", "a perf.data that perf script reads (it ended with status " + std::to_string(ended) + ")");
  }
  if (!any) input.refuse("", "samples; this perf.data has none");
}

}  // namespace

void readPerf(Input& input, Reading& reading, const Sink& sink) {
  if (input.beginsWith(kDataMagic)) return readData(input, reading, sink);
  PerfReader(input, reading, sink).read();
}

}  // namespace kelvar_readers
