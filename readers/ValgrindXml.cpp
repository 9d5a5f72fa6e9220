#include <algorithm>
#include <pugixml.hpp>

#include "Sources.h"

namespace kelvar_readers {

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
    // A relative file name is relative to the directory that the compiler ran in.
    if (!directory.empty() && !file.starts_with('/')) place.file.append(directory).append("/");
    place.file += file;
    place.line = std::max(0, frame.child("line").text().as_int());
    stack.push_back(std::move(place));
  }
  return stack;
}

/// Whether the stack after this text says where the error happened. Helgrind gives the second access a stack of its own
/// after such a text. Other texts say where a block was allocated or where a lock was first seen.
bool saysWhereItHappened(std::string_view text, Finding finding) {
  if (finding == race) return text.find("conflicts with a previous") != std::string_view::npos;
  return finding == lockOrder && text.find("acquisition of") != std::string_view::npos;
}

/// The variable or block that the error is about: from `Location 0x... is 0 bytes inside global var "bins"`, or from a
/// text on the block that an address lies in.
std::string objectOf(const pugi::xml_node& error) {
  for (const pugi::xml_node& child : error.children()) {
    const std::string_view name = child.name();
    if (name != "xauxwhat" && name != "auxwhat") continue;
    const std::string_view text = name == "auxwhat" ? child.child_value() : child.child_value("text");
    for (const std::string_view mark : {" inside ", " is "}) {
      const std::size_t at = text.find(mark);
      const bool isPlace = text.starts_with("Location ") || text.starts_with("Address ");
      if (isPlace && at != std::string_view::npos) return std::string(text.substr(at + mark.size()));
    }
  }
  return {};
}

std::string roleOf(std::string_view text, Finding finding) {
  if (finding != race) return {};
  const bool writes = text.find("write") != std::string_view::npos || text.find("store") != std::string_view::npos;
  return std::string(text.find("previous") != std::string_view::npos ? "earlier " : "") + (writes ? "write" : "read");
}

/// Removes ` at 0x...`, which differs in every run.
std::string withoutAddress(std::string_view text) {
  const std::size_t at = text.find(" at 0x");
  if (at == std::string_view::npos) return std::string(text);
  const std::size_t end = text.find(' ', at + 4);
  return std::string(text.substr(0, at)) + std::string(end == std::string_view::npos ? "" : text.substr(end));
}

void readError(const pugi::xml_node& error, std::size_t number, const Sink& sink) {
  const Finding finding = findingOf(error.child_value("kind"));
  Record record{.report = number};
  record.weights[finding] = 1;
  record.words.object = objectOf(error);
  std::string_view text = error.child("xwhat").child_value("text");
  if (text.empty()) text = error.child_value("what");
  bool wanted = true;
  bool any = false;
  for (const pugi::xml_node& child : error.children()) {
    const std::string_view name = child.name();
    if (name == "xauxwhat" || name == "auxwhat") {
      text = name == "auxwhat" ? child.child_value() : child.child_value("text");
      wanted = saysWhereItHappened(text, finding);
    } else if (name == "stack" && wanted) {
      Frame frame{.chain = readStack(child)};
      if (frame.chain.empty()) continue;
      frame.function = frame.chain.front().function;
      record.stack.assign(1, &frame);
      record.words.text = withoutAddress(text);
      record.words.role = roleOf(text, finding);
      sink(record);
      any = true;
      wanted = finding == lockOrder;
    }
  }
  if (any) return;
  record.stack.clear();
  record.words.text = withoutAddress(text);
  sink(record);
}

std::size_t lineOf(std::string_view text, std::ptrdiff_t offset) {
  const auto end = std::min(text.size(), static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, offset)));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
}

}  // namespace

void readValgrindXml(Input& input, Reading&, const Sink& sink) {
  std::string text = input.rest();
  if (trimmed(text).empty()) input.refuse("line 1", "the XML of valgrind (--xml=yes)");
  constexpr std::string_view kEnd = "</valgrindoutput>";
  const std::size_t end = text.find(kEnd);
  if (end != std::string::npos && text.find(kEnd, end + kEnd.size()) != std::string::npos) {
    input.refuse(linePlace(lineOf(text, static_cast<std::ptrdiff_t>(end))),
                 "the XML of one process: this is that of a program that forked, and of two processes in one file; "
                 "--xml-file=helgrind.%p.xml keeps them apart");
  }
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) {
    const std::string cutOff =
        "XML to its end: the run was cut off, or the program replaced itself by another one (exec), which "
        "--trace-children=yes follows";
    input.refuse(linePlace(lineOf(text, parsed.offset)),
                 end == std::string::npos ? cutOff : std::string("XML: ") + parsed.description());
  }
  const pugi::xml_node root = document.child("valgrindoutput");
  if (!root) input.refuse("line 1", "the XML of valgrind: a valgrindoutput");
  const std::string_view tool = root.child_value("protocoltool");
  if (tool != "helgrind" && tool != "drd") input.refuse("protocoltool", "helgrind or drd");
  std::size_t number = 0;
  for (const pugi::xml_node& error : root.children("error")) readError(error, ++number, sink);
}

}  // namespace kelvar_readers
