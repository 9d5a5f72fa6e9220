#include "InlineTree.h"

#include <dwarf.h>

#include <algorithm>
#include <iterator>
#include <limits>

#include "Demangle.h"

namespace kelvar_readers {

namespace {

// No compiler nests this deep; damaged files may.
constexpr std::size_t kDeepest = 4096;

int numberOf(Dwarf_Die* die, unsigned attribute) {
  Dwarf_Attribute found;
  Dwarf_Word value = 0;
  if (!dwarf_attr(die, attribute, &found) || dwarf_formudata(&found, &value) != 0) return 0;
  return value <= static_cast<Dwarf_Word>(std::numeric_limits<int>::max()) ? static_cast<int>(value) : 0;
}

std::string textOf(Dwarf_Die* die, unsigned attribute) {
  Dwarf_Attribute found;
  const char* const text = dwarf_formstring(dwarf_attr_integrate(die, attribute, &found));
  return text ? text : "";
}

std::string nameOf(Dwarf_Die die) {
  for (const unsigned attribute : {DW_AT_linkage_name, DW_AT_MIPS_linkage_name}) {
    if (const std::string linked = textOf(&die, attribute); !linked.empty()) return demangled(linked);
  }
  return textOf(&die, DW_AT_name);
}

bool isBlock(int tag) {
  return tag == DW_TAG_lexical_block || tag == DW_TAG_try_block || tag == DW_TAG_catch_block || tag == DW_TAG_with_stmt;
}

}  // namespace

InlineTree::InlineTree(Dwarf_Die subprogram, Dwarf_Files* files) : files_(files) {
  calls_.push_back({.parent = 0, .die = subprogram, .file = {}});
  innermost_[0] = 0;
  visit(&subprogram, 0);
}

void InlineTree::visit(Dwarf_Die* parent, std::size_t call) {
  struct Level {
    Dwarf_Die die;
    std::size_t call;
  };
  std::vector<Level> open;
  Dwarf_Die first;
  if (dwarf_child(parent, &first) == 0) open.push_back({first, call});
  while (!open.empty()) {
    Level& level = open.back();
    Dwarf_Die die = level.die;
    std::size_t within = level.call;
    if (dwarf_siblingof(&die, &level.die) != 0) open.pop_back();
    const int tag = dwarf_tag(&die);
    if (tag == DW_TAG_inlined_subroutine) {
      within = addCall(&die, within);
    } else if (!isBlock(tag)) {
      continue;
    }
    if (open.size() < kDeepest && dwarf_child(&die, &first) == 0) open.push_back({first, within});
  }
}

std::size_t InlineTree::addCall(Dwarf_Die* die, std::size_t parent) {
  Call& call = calls_.emplace_back(Call{.parent = parent, .die = *die, .file = {}});
  const auto file = static_cast<std::size_t>(numberOf(die, DW_AT_call_file));
  if (files_) {
    if (const char* const path = dwarf_filesrc(files_, file, nullptr, nullptr)) call.file = path;
  }
  call.line = numberOf(die, DW_AT_call_line);
  call.column = numberOf(die, DW_AT_call_column);
  paint(die, calls_.size() - 1);
  return calls_.size() - 1;
}

void InlineTree::paint(Dwarf_Die* die, std::size_t call) {
  Dwarf_Addr base = 0;
  Dwarf_Addr begin = 0;
  Dwarf_Addr end = 0;
  for (std::ptrdiff_t at = 0; (at = dwarf_ranges(die, at, &base, &begin, &end)) > 0;) paint(begin, end, call);
}

/// The last call painted over an address is the innermost, since outer calls are visited first.
void InlineTree::paint(std::uint64_t begin, std::uint64_t end, std::size_t call) {
  if (begin >= end) return;
  const auto behind = innermost_.upper_bound(end);
  const std::size_t after = std::prev(behind)->second;  // there is always an entry at address 0
  const auto from = innermost_.lower_bound(begin);
  innermost_.erase(from, behind);
  innermost_[begin] = call;
  innermost_[end] = after;
}

void InlineTree::appendChain(std::uint64_t address, std::vector<Place>& chain) const {
  std::size_t call = std::prev(innermost_.upper_bound(address))->second;
  for (;; call = calls_[call].parent) {
    chain.back().function = nameOf(calls_[call].die);
    if (call == 0) return;
    chain.push_back(
        {.function = {}, .file = calls_[call].file, .line = calls_[call].line, .column = calls_[call].column});
  }
}

}  // namespace kelvar_readers
