#include "FortranBlocks.h"

#include <algorithm>
#include <array>

#include "Lines.h"

namespace kelvar_sources {

namespace {

std::vector<std::string_view> wordsOf(std::string_view statement) {
  constexpr std::size_t kMostWords = 12;
  std::vector<std::string_view> words;
  for (std::size_t at = 0; at < statement.size() && words.size() < kMostWords;) {
    std::size_t size = 0;
    while (at + size < statement.size() && isWordByte(statement[at + size])) ++size;
    if (size > 0) words.push_back(statement.substr(at, size));
    at += std::max<std::size_t>(size, 1);
  }
  return words;
}

/// Whether the statement is an assignment such as `x = 1`; `do i = 1, n` is none.
bool isAssignment(std::string_view statement, std::string_view first) {
  std::string_view rest = statement.substr(std::min(first.size(), statement.size()));
  while (rest.starts_with(' ')) rest.remove_prefix(1);
  return rest.starts_with('=') || rest.starts_with('%');
}

bool isProcedureWord(std::string_view word) {
  return word == "subroutine" || word == "function" || word == "program";
}

/// The name of the procedure that a statement begins; empty when it begins none.
std::string procedureName(std::string_view statement, const std::vector<std::string_view>& words) {
  if (words.size() >= 3 && words[0] == "module" && words[1] == "procedure") return std::string(words[2]);
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i] == "end") return {};
    if (!isProcedureWord(words[i])) continue;
    const auto before = static_cast<std::size_t>(words[i].data() - statement.data());
    // What comes before are types and attributes: `pure real(8) function f(x)`.
    return statement.substr(0, before).find('=') == std::string_view::npos ||
                   statement.substr(0, before).find("kind") != std::string_view::npos
               ? std::string(words[i + 1])
               : std::string();
  }
  return {};
}

}  // namespace

void FortranBlocks::open(Block block) {
  block.number = ++count_;
  openedLoop_ = block.loop;
  if (block.procedure) procedures_.push_back(open_.size());
  open_.push_back(std::move(block));
}

std::string FortranBlocks::procedure() const {
  return procedures_.empty() ? std::string() : open_[procedures_.back()].name;
}

std::vector<FortranBlocks::Block> FortranBlocks::take(std::string_view statement) {
  std::vector<Block> closed;
  openedLoop_ = false;
  const auto closeOne = [&] {
    if (!procedures_.empty() && procedures_.back() + 1 == open_.size()) procedures_.pop_back();
    closed.push_back(std::move(open_.back()));
    open_.pop_back();
  };
  std::vector<std::string_view> words = wordsOf(statement);
  if (words.empty()) return closed;
  if (isDigit(words[0].front())) {  // a statement with a label ends the loops that name that label
    const std::string label(words[0]);
    while (!open_.empty() && open_.back().label == label) closeOne();
    statement.remove_prefix(label.size());
    words.erase(words.begin());
    if (words.empty()) return closed;
    while (statement.starts_with(' ')) statement.remove_prefix(1);
  }
  if (words.size() >= 2 && statement.substr(words[0].size()).starts_with(" :") && words[1] != "select") {
    statement.remove_prefix(static_cast<std::size_t>(words[1].data() - statement.data()));
    words.erase(words.begin());
  } else if (words.size() >= 2 && statement.substr(words[0].size()).starts_with(':') &&
             !statement.substr(words[0].size()).starts_with("::")) {
    statement.remove_prefix(static_cast<std::size_t>(words[1].data() - statement.data()));
    words.erase(words.begin());
  }
  const std::string_view first = words[0];
  if (isAssignment(statement, first)) return closed;
  if (first == "end" || (first.starts_with("end") && first != "endfile" && words.size() <= 2 && first.size() > 3)) {
    const std::string_view what = first == "end" ? (words.size() > 1 ? words[1] : std::string_view()) : first.substr(3);
    if (what == "interface" || what == "type" || what == "module" || what == "submodule" || what == "enum" ||
        what == "file")
      return closed;
    const bool procedure = what.empty() || isProcedureWord(what) || what == "procedure";
    // The end of a procedure closes what was left open in it; nothing else closes a procedure.
    while (procedure && !open_.empty() && !open_.back().procedure) closeOne();
    if (!open_.empty() && open_.back().procedure == procedure) closeOne();
    return closed;
  }
  if (first == "do") {
    const bool labelled = words.size() > 1 && isDigit(words[1].front());
    open({.loop = true, .name = {}, .label = labelled ? std::string(words[1]) : std::string()});
  } else if ((first == "if" && statement.ends_with("then")) || first == "select" || first == "associate" ||
             (first == "block" && words.size() == 1)) {
    open({.name = {}, .label = {}});
  } else if ((first == "where" || first == "forall") && statement.ends_with(')')) {
    // A mask alone opens a block; a mask before an assignment does not.
    int depth = 0;
    std::size_t end = statement.find('(');
    for (; end < statement.size(); ++end) {
      if (statement[end] == '(') ++depth;
      if (statement[end] == ')' && --depth == 0) break;
    }
    if (end + 1 == statement.size()) open({.name = {}, .label = {}});
  } else if (std::string name = procedureName(statement, words); !name.empty()) {
    open({.procedure = true, .name = std::move(name), .label = {}});
  }
  return closed;
}

}  // namespace kelvar_sources
