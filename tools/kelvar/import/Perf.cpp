#include <map>
#include <vector>

#include "Sources.h"

// The text of `perf script`, a block for each sample:
//
//   COMM PID/TID TIME: PERIOD EVENT:  ADDRESS SYMBOL
//     FILE:LINE
//
// or, recorded with call chains, the first line up to the event, then a line and a source line for each frame. What
// lies in no file that perf could read has no source line.
namespace kelvar_import {

namespace {

struct Sample {
  std::string thread;
  double time = 0;
  double period = 0;
  bool isTime = false;  // the period is in nanoseconds, not in cycles or the like
};

std::string_view takeWord(std::string_view& text) {
  text = trimmed(text);
  return takeUntil(text, ' ');
}

/// Drops what stands before `PID/TID TIME:`; a command's name may hold blanks, so the first such pair decides.
bool takeThreadAndTime(std::string_view& text, Sample& sample) {
  while (!text.empty()) {
    const std::string_view word = takeWord(text);
    std::string_view ids = word;
    const bool pair = takeNumber<long>(ids) && takePrefix(ids, "/") && takeNumber<long>(ids) && ids.empty();
    if (!pair) continue;
    std::string_view rest = trimmed(text);
    if (takePrefix(rest, "[")) (void)takeUntil(rest, ']');
    rest = trimmed(rest);
    const std::optional<double> time = takeNumber<double>(rest);
    if (!time || !takePrefix(rest, ":")) continue;
    sample.thread = word;
    sample.time = *time;
    text = rest;
    return true;
  }
  return false;
}

bool takeSample(std::string_view& text, Sample& sample) {
  if (!takeThreadAndTime(text, sample)) return false;
  text = trimmed(text);
  const std::optional<double> period = takeNumber<double>(text, std::chars_format::fixed);
  if (!period || *period < 0) return false;
  const std::string_view event = takeWord(text);
  if (!event.ends_with(':')) return false;
  sample.period = *period;
  sample.isTime = event.starts_with("cpu-clock") || event.starts_with("task-clock");
  return true;
}

/// `ADDRESS SYMBOL`; the symbol may be missing or `[unknown]`.
bool takeFrame(std::string_view text, Place& place) {
  std::string_view rest = trimmed(text);
  if (!takeNumber<unsigned long long>(rest, 16) || (!rest.empty() && rest.front() != ' ')) return false;
  const std::string_view symbol = trimmed(rest);
  place = {};
  if (symbol != "[unknown]") place.function = symbol;
  return true;
}

/// `  FILE:LINE`; anything else, such as `  [kernel.kallsyms][ffffffff81360092]`, names no source.
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

/// Periods that are no time are turned into it: a thread's time from its first sample to its last is shared out among
/// its samples by their periods. That takes two passes, so such records wait for the end of the file.
class Clock {
 public:
  void add(const Sample& sample, const Record& record, const Sink& sink) {
    if (sample.isTime) {
      sink(record);
      return;
    }
    Thread& thread = threads_[sample.thread];
    if (thread.waiting.empty()) thread.first = sample.time;
    thread.last = sample.time;
    thread.periods += sample.period;
    thread.waiting.push_back(record);
    thread.waiting.back().weights[0] = sample.period;
  }

  void finish(const Sink& sink) {
    for (auto& [name, thread] : threads_) {
      const double seconds = thread.periods > 0 ? (thread.last - thread.first) / thread.periods : 0;
      for (Record& record : thread.waiting) {
        record.weights[0] *= seconds;
        sink(record);
      }
    }
  }

 private:
  struct Thread {
    double first = 0;
    double last = 0;
    double periods = 0;
    std::vector<Record> waiting;
  };
  std::map<std::string, Thread> threads_;
};

class PerfReader {
 public:
  PerfReader(Input& input, const Sink& sink) : input_(input), sink_(sink) {}

  void read() {
    while (const auto line = input_.nextLine()) readLine(*line);
    give();
    if (!any_) input_.refuse("line 1", "at least one sample of perf script");
    if (!sawSource_) input_.refuse("a source line behind a sample (perf script -F +srcline)");
    clock_.finish(sink_);
  }

 private:
  void readLine(std::string_view line) {
    if (trimmed(line).empty() || line.starts_with('#')) return;
    std::string_view text = line;
    Sample sample;
    if (takeSample(text, sample)) {
      give();
      begin(sample, trimmed(text));
    } else if (Place place; any_ && takeFrame(line, place)) {
      record_.stack.push_back(std::move(place));
    } else if (any_ && line.starts_with("  ") && !record_.stack.empty()) {
      readSourceLine(line, record_.stack.back());
      sawSource_ = true;
    } else {
      refuse();
    }
  }

  [[noreturn]] void refuse() const {
    input_.refuse("a sample of perf script: command, process/thread, time, period, event, address, symbol");
  }

  /// A sample has its one frame on its own line, or the frames of its chain on lines of their own.
  void begin(const Sample& sample, std::string_view frame) {
    any_ = true;
    sample_ = sample;
    record_ = {.stack = {}, .weights = {sample.period / 1e9}, .note = {}};
    if (!frame.empty() && !takeFrame(frame, record_.stack.emplace_back())) refuse();
  }

  void give() {
    if (any_) clock_.add(sample_, record_, sink_);
  }

  Input& input_;
  const Sink& sink_;
  Clock clock_;
  Sample sample_;
  Record record_;
  bool any_ = false;
  bool sawSource_ = false;
};

}  // namespace

void readPerf(Input& input, const Sink& sink) {
  PerfReader(input, sink).read();
}

}  // namespace kelvar_import
