#include <limits>
#include <map>

#include "Demangle.h"
#include "JsonParser.h"
#include "Sources.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::object;

/// The text of the first part of a record's message.
std::string_view messageOf(const object& record) {
  array message;
  if (record["message"].get(message) != simdjson::SUCCESS) return {};
  std::string_view text;
  for (const element part : message) {
    if (part.get(text) == simdjson::SUCCESS) return text;
  }
  return {};
}

/// The whole message of a record: its texts, and the expressions and statements among them.
std::string wholeMessageOf(const object& record) {
  std::string whole;
  array message;
  if (record["message"].get(message) != simdjson::SUCCESS) return whole;
  for (const element part : message) {
    std::string_view text;
    object named;
    if (part.get(text) == simdjson::SUCCESS) whole += text;
    if (part.get(named) != simdjson::SUCCESS) continue;
    for (const char* const key : {"expr", "stmt", "symtab_node"}) {
      if (named[key].get(text) == simdjson::SUCCESS) whole += text;
    }
  }
  while (whole.ends_with('\n') || whole.ends_with(' ')) whole.pop_back();
  return whole;
}

std::string textOf(const object& record, const char* key) {
  std::string_view text;
  return record[key].get(text) == simdjson::SUCCESS ? std::string(text) : std::string();
}

int countOf(const object& from, const char* key) {
  std::int64_t value = 0;
  if (from[key].get(value) != simdjson::SUCCESS || value < 0) return 0;
  return value <= std::numeric_limits<int>::max() ? static_cast<int>(value) : 0;
}

Place placeOf(const object& record) {
  Place place;
  std::string_view text;
  if (record["function"].get(text) == simdjson::SUCCESS) {
    // A clone is the function it is cloned from: "smooth.constprop.0".
    place.function = demangled(std::string(text.substr(0, text.find('.'))));
  }
  object location;
  if (record["location"].get(location) != simdjson::SUCCESS) return place;
  if (location["file"].get(text) == simdjson::SUCCESS) place.file = text;
  place.line = countOf(location, "line");
  place.column = countOf(location, "column");
  return place;
}

/// Only records with these messages say whether a loop was vectorised. gcc reports a scalar epilogue like a loop of its
/// own; the loop counts as vectorised all the same, at its first and greatest width.
bool readVerdict(const object& record, Record& loop) {
  std::string_view message = messageOf(record);
  std::string_view first = message;
  loop.words.text = std::string(takeUntil(first, '\n'));  // gcc may continue with its next loop in the same record
  if (takePrefix(message, "loop vectorized using ")) {
    loop.weights = {1, 0, 0};
    loop.note = std::string(takeUntil(message, ' ')) + "B";
  } else if (message.starts_with("couldn't vectorize loop")) {
    loop.weights = {0, 1, 0};
    loop.note = "x1";
  } else {
    return false;
  }
  return true;
}

/// Why a loop is not vectorised: the last failure in its function and pass before gcc gives up on the loop. The record
/// is at a statement of the loop, or at one inlined into it, and need not say "not vectorized". Failures of other
/// passes, such as the one over basic blocks, are not about the loop.
struct Failure {
  std::string function;
  std::string pass;
  std::string text;
};

[[noreturn]] void refuse(const Input& input, const char* place, const char* expected) {
  input.refuse(place, std::string(expected) + ", as gcc -fsave-optimization-record writes it");
}

}  // namespace

void readGccRemarks(Input& input, Reading&, const Sink& sink) {
  const std::string text = input.rest();
  simdjson::dom::parser parser;
  element document;
  if (const auto error = parser.parse(text).get(document)) {
    input.refuse("line 1", std::string("JSON: ") + simdjson::error_message(error));
  }
  array parts;
  if (document.get(parts) != simdjson::SUCCESS || parts.size() != 3) refuse(input, "line 1", "an array of three parts");
  std::string_view format;
  if (parts.at(0)["format"].get(format) != simdjson::SUCCESS || format != "1") refuse(input, "[0].format", "\"1\"");
  array records;
  if (parts.at(2).get(records) != simdjson::SUCCESS) refuse(input, "[2]", "an array of records");
  Record loop;
  Failure failure;
  for (const element entry : records) {
    object record;
    if (entry.get(record) != simdjson::SUCCESS) refuse(input, "[2]", "records that are objects");
    Failure now{.function = textOf(record, "function"), .pass = textOf(record, "pass"), .text = {}};
    if (!readVerdict(record, loop)) {
      if (textOf(record, "kind") != "failure") continue;
      now.text = wholeMessageOf(record);
      failure = std::move(now);
      continue;
    }
    Frame frame{.chain = {placeOf(record)}};
    frame.function = frame.chain.front().function;
    loop.stack.assign(1, &frame);
    sink(loop);
    const bool missed = loop.weights[1] > 0;
    if (missed && !failure.text.empty() && failure.function == now.function && failure.pass == now.pass) {
      loop.weights = {};
      loop.words.text = failure.text;
      sink(loop);
    }
    failure = {};
  }
}

}  // namespace kelvar_readers
