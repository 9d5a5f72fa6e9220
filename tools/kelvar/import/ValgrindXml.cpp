#include <algorithm>
#include <pugixml.hpp>

#include "Sources.h"

namespace kelvar_import {

namespace {

Finding findingOf(std::string_view kind) {
  if (kind == "Race" || kind == "ConflictingAccess") return race;
  return kind == "LockOrder" ? lockOrder : otherFinding;
}

std::vector<Place> readStack(const pugi::xml_node& node) {
  std::vector<Place> stack;
  for (const pugi::xml_node& frame : node.children("frame")) {
    Place place;
    place.function = frame.child_value("fn");
    const std::string_view directory = frame.child_value("dir");
    const std::string_view file = frame.child_value("file");
    // The directory is the one the compiler ran in where the file is named relative to it.
    if (!directory.empty() && !file.starts_with('/')) place.file.append(directory).append("/");
    place.file += file;
    place.line = std::max(0, frame.child("line").text().as_int());
    stack.push_back(std::move(place));
  }
  return stack;
}

/// Helgrind tells of the second access in a stack of its own, behind a text that says so; what else is said about an
/// error (where a block was allocated, where a lock was first seen) is no place of it.
bool saysWhereItHappened(std::string_view text, Finding finding) {
  if (finding == race) return text.find("conflicts with a previous") != std::string_view::npos;
  return finding == lockOrder && text.find("acquisition of") != std::string_view::npos;
}

void readError(const pugi::xml_node& error, std::size_t number, const Sink& sink) {
  const Finding finding = findingOf(error.child_value("kind"));
  bool wanted = true;
  bool any = false;
  for (const pugi::xml_node& child : error.children()) {
    const std::string_view name = child.name();
    if (name == "xauxwhat" || name == "auxwhat") {
      wanted = saysWhereItHappened(name == "auxwhat" ? child.child_value() : child.child_value("text"), finding);
    } else if (name == "stack" && wanted) {
      Record record{.stack = readStack(child), .weights = {}, .note = {}, .report = number};
      record.weights[finding] = 1;
      sink(record);
      any = true;
      wanted = finding == lockOrder;
    }
  }
  if (any) return;
  Record record{.stack = {}, .weights = {}, .note = {}, .report = number};
  record.weights[finding] = 1;
  sink(record);
}

std::size_t lineOf(std::string_view text, std::ptrdiff_t offset) {
  const auto end = std::min(text.size(), static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, offset)));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
}

}  // namespace

void readValgrindXml(Input& input, const Sink& sink) {
  std::string text = input.rest();
  if (trimmed(text).empty()) input.refuse("line 1", "the XML of valgrind (--xml=yes)");
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) input.refuse(linePlace(lineOf(text, parsed.offset)), std::string("XML: ") + parsed.description());
  const pugi::xml_node root = document.child("valgrindoutput");
  if (!root) input.refuse("line 1", "the XML of valgrind: a valgrindoutput");
  const std::string_view tool = root.child_value("protocoltool");
  if (tool != "helgrind" && tool != "drd") input.refuse("protocoltool", "helgrind or drd");
  std::size_t number = 0;
  for (const pugi::xml_node& error : root.children("error")) readError(error, ++number, sink);
}

}  // namespace kelvar_import
