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

/// All that a record says: texts, and the expressions and statements among them.
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

/// Only a record whose message is one of these says how a loop fared. An epilogue that stays scalar is told like a loop
/// of its own: the loop counts as vectorised all the same, at its first and greatest width.
bool readRecord(const object& record, Record& loop) {
  std::string_view message = messageOf(record);
  loop.words.text = wholeMessageOf(record);
  if (takePrefix(message, "loop vectorized using ")) {
    loop.weights = {1, 0, 0};
    loop.note = std::string(takeUntil(message, ' ')) + "B";
  } else if (message.starts_with("couldn't vectorize loop")) {
    loop.weights = {0, 1, 0};
    loop.note = "x1";
  } else if (message.starts_with("not vectorized")) {
    loop.weights = {};  // why the loop that was told of before it is not
  } else {
    return false;
  }
  return true;
}

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
  Place last;  // of the loop that was told of last: reasons name a statement of it
  for (const element entry : records) {
    object record;
    if (entry.get(record) != simdjson::SUCCESS) refuse(input, "[2]", "records that are objects");
    if (!readRecord(record, loop)) continue;
    Frame frame{.chain = {placeOf(record)}};
    const bool isReason = sum(loop.weights) == 0;
    if (isReason && last.function != frame.chain.front().function) continue;
    if (isReason) frame.chain.front() = last;
    last = frame.chain.front();
    frame.function = last.function;
    loop.stack.assign(1, &frame);
    sink(loop);
  }
}

}  // namespace kelvar_readers
