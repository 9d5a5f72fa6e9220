#include "PerfLine.h"

#include "Input.h"

namespace kelvar_readers {

namespace {

std::string_view takeWord(std::string_view& text) {
  text = trimmed(text);
  return takeUntil(text, ' ');
}

/// `PID/TID`, or `TID` alone.
bool isThread(std::string_view word, long& process) {
  const auto first = takeNumber<long>(word);
  if (!first || *first < -1) return false;
  if (takePrefix(word, "/") && !takeNumber<long>(word)) return false;
  if (!word.empty()) return false;
  process = *first;
  return true;
}

/// `5490.568305:`
bool isTime(std::string_view word) {
  if (!word.ends_with(':') || word.find('.') == std::string_view::npos) return false;
  const auto time = takeNumber<double>(word);
  return time && word == ":";
}

bool isEvent(std::string_view word) {
  return word.size() > 1 && word.ends_with(':') && word.find_first_not_of("0123456789.:") != std::string_view::npos;
}

/// Takes `prefix` and the `0xNUMBER` after it.
std::optional<std::uint64_t> takeHex(std::string_view& text, std::string_view prefix) {
  if (!takePrefix(text, prefix)) return std::nullopt;
  (void)takePrefix(text, "0x");  // perf writes zero as a plain 0
  return takeNumber<std::uint64_t>(text, 16);
}

/// The rest of the line after `mark`, if it contains `mark`.
std::optional<std::string_view> behind(std::string_view line, std::string_view mark) {
  const std::size_t at = line.find(mark);
  if (at == std::string_view::npos) return std::nullopt;
  return line.substr(at + mark.size());
}

}  // namespace

std::optional<PerfSample> takePerfSample(std::string_view line) {
  PerfSample sample;
  std::string_view text = line;
  bool timed = false;
  std::optional<double> number;
  // A command's name may contain blanks and numbers, so the last words before the time, or before the event, count.
  for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
    std::string_view digits = word;
    if (!timed && isTime(word)) {
      timed = true;
      number.reset();
    } else if (isEvent(word)) {
      if (!timed && sample.process < 0) continue;
      sample.event = word.substr(0, word.size() - 1);
      while (sample.event.ends_with(':')) sample.event.remove_suffix(1);
      sample.period = number && *number >= 0 ? number : std::nullopt;
      sample.rest = trimmed(text);
      return sample;
    } else if (!timed && sample.process < 0 && isThread(word, sample.process)) {
      number.reset();
    } else if (const auto value = takeNumber<double>(digits, std::chars_format::fixed); value && digits.empty()) {
      if (!timed) (void)isThread(word, sample.process);
      number = value;
    } else if (!timed) {
      (void)isThread(word, sample.process);
    }
  }
  return std::nullopt;
}

std::optional<PerfFrame> takePerfFrame(std::string_view line) {
  PerfFrame frame;
  std::string_view rest = trimmed(line);
  const auto address = takeNumber<std::uint64_t>(rest, 16);
  if (!address || (!rest.empty() && rest.front() != ' ')) return std::nullopt;
  frame.address = *address;
  rest = trimmed(rest);
  if (rest.ends_with(" (inlined)")) {
    frame.isInlined = true;
    rest.remove_suffix(10);
  }
  for (const std::string_view mark : {" (/", " ([", " (//", " (inlined)", " (anon"}) {
    const std::size_t at = rest.ends_with(')') ? rest.rfind(mark) : std::string_view::npos;
    if (at == std::string_view::npos || (mark == " (anon" && rest.substr(at).starts_with(" (anonymous namespace)"))) {
      continue;
    }
    frame.object = rest.substr(at + 2, rest.size() - at - 3);
    if (frame.object.ends_with(" (deleted)")) frame.object.remove_suffix(10);
    rest = rest.substr(0, at);
    break;
  }
  if (const std::size_t plus = rest.rfind("+0x"); plus != std::string_view::npos) {
    std::string_view digits = rest.substr(plus + 3);
    const auto offset = takeNumber<std::uint64_t>(digits, 16);
    if (offset && digits.empty()) {
      frame.offset = offset;
      rest = rest.substr(0, plus);
    }
  }
  rest = trimmed(rest);
  if (rest != "[unknown]") frame.symbol = rest;
  return frame;
}

std::optional<PerfMapping> takePerfMapping(std::string_view line) {
  auto text = behind(line, "PERF_RECORD_MMAP");
  if (!text) return std::nullopt;
  (void)takePrefix(*text, "2");
  std::string_view rest = trimmed(*text);
  const auto process = takeNumber<long>(rest);
  auto range = behind(rest, ": [");
  if (!process || !range) return std::nullopt;
  const auto start = takeHex(*range, "");
  const auto size = takeHex(*range, "(");
  const auto offset = takeHex(*range, ") @ ");
  auto kind = behind(*range, "]: ");
  if (!start || !size || !offset || !kind) return std::nullopt;
  std::string_view build = trimmed(*range);
  const std::string_view buildId = takePrefix(build, "<") ? takeUntil(build, '>') : std::string_view();
  (void)takeUntil(*kind, ' ');  // the access rights
  return PerfMapping{
      .process = *process, .start = *start, .size = *size, .offset = *offset, .path = *kind, .buildId = buildId};
}

std::optional<PerfFork> takePerfFork(std::string_view line) {
  auto text = behind(line, "PERF_RECORD_FORK(");
  if (!text) return std::nullopt;
  const auto process = takeNumber<long>(*text);
  auto from = behind(*text, ":(");
  const auto parent = from ? takeNumber<long>(*from) : std::nullopt;
  if (!process || !parent) return std::nullopt;
  return PerfFork{.process = *process, .parent = *parent};
}

}  // namespace kelvar_readers
