#include "DebugInfo.h"

#include <dwarf.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "InlineTree.h"

namespace kelvar_readers {

namespace {

struct Row {
  std::uint64_t address = 0;
  const char* file = nullptr;  // the debug information keeps it
  int line = 0;
  int column = 0;
  bool ends = false;  // the sequence of instructions ends before this address
};

struct Function {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  Dwarf_Die die{};
  std::shared_ptr<InlineTree> tree;  // built on demand, and only for the first piece of a function
  std::size_t whole = 0;             // the index of that first piece
};

/// The index of the last of the sorted `rows` at or before `address`; rows.size() when all are after it.
template <class Rows, class Key>
std::size_t lastUpTo(const Rows& rows, std::uint64_t address, Key key) {
  const auto after = std::upper_bound(rows.begin(), rows.end(), address,
                                      [key](std::uint64_t value, const auto& row) { return value < row.*key; });
  return after == rows.begin() ? rows.size() : static_cast<std::size_t>(std::prev(after) - rows.begin());
}

/// Calls `take` with each address range of the entry. Code that the linker dropped has address 0 and is skipped.
template <class Take>
void eachRange(Dwarf_Die* die, Take take) {
  Dwarf_Addr base = 0;
  Dwarf_Addr begin = 0;
  Dwarf_Addr end = 0;
  for (std::ptrdiff_t at = 0; (at = dwarf_ranges(die, at, &base, &begin, &end)) > 0;) {
    if (begin > 0 && begin < end) take(begin, end);
  }
}

}  // namespace

/// A compilation unit; its lines and functions are read on demand.
struct DebugInfo::Unit {
  Unit(Dwarf_Die entry, Dwarf_Die inside) : die(entry), full(inside) {}

  void readLines() {
    Dwarf_Lines* lines = nullptr;
    std::size_t count = 0;
    linesRead = true;
    if (dwarf_getsrclines(&die, &lines, &count) != 0) return;
    rows.reserve(count);
    for (std::size_t i = 0; i < count; ++i) addRow(dwarf_onesrcline(lines, i));
  }

  void addRow(Dwarf_Line* line) {
    Dwarf_Addr address = 0;
    if (!line || dwarf_lineaddr(line, &address) != 0 || address == 0) return;
    Row row{.address = address, .file = dwarf_linesrc(line, nullptr, nullptr)};
    dwarf_lineno(line, &row.line);
    dwarf_linecol(line, &row.column);
    dwarf_lineendsequence(line, &row.ends);
    row.line = std::max(0, row.line);
    row.column = std::max(0, row.column);
    rows.push_back(row);
  }

  /// Reads the functions in the unit and its namespaces; with `everywhere`, also those nested in other entries.
  void readFunctions(bool everywhere) {
    functions.clear();
    functionsRead = true;
    deepRead = everywhere;
    collect(&full, everywhere);
    std::sort(functions.begin(), functions.end(),
              [](const Function& a, const Function& b) { return a.begin < b.begin; });
    std::vector<std::pair<const void*, std::size_t>> first;
    for (std::size_t i = 0; i < functions.size(); ++i) first.emplace_back(functions[i].die.addr, i);
    std::sort(first.begin(), first.end());
    for (std::size_t i = 0; i < first.size(); ++i) {
      const bool again = i > 0 && first[i - 1].first == first[i].first;
      functions[first[i].second].whole = again ? functions[first[i - 1].second].whole : first[i].second;
    }
  }

  void collect(Dwarf_Die* parent, bool everywhere) {
    std::vector<Dwarf_Die> open;
    Dwarf_Die child;
    if (dwarf_child(parent, &child) == 0) open.push_back(child);
    while (!open.empty()) {
      Dwarf_Die here = open.back();
      if (dwarf_siblingof(&here, &open.back()) != 0) open.pop_back();
      const int tag = dwarf_tag(&here);
      if (tag == DW_TAG_subprogram) {
        eachRange(&here, [&](Dwarf_Addr begin, Dwarf_Addr end) {
          functions.push_back({.begin = begin, .end = end, .die = here, .tree = nullptr});
        });
      }
      const bool opens = tag == DW_TAG_namespace || tag == DW_TAG_module || everywhere;
      if (opens && dwarf_child(&here, &child) == 0) open.push_back(child);
    }
  }

  Function* functionAt(std::uint64_t address) {
    if (!functionsRead) readFunctions(false);
    Function* found = search(address);
    if (found || deepRead) return found;
    readFunctions(true);
    return search(address);
  }

  Function* search(std::uint64_t address) {
    std::size_t at = lastUpTo(functions, address, &Function::begin);
    if (at == functions.size()) return nullptr;
    if (address < functions[at].end) return &functions[at];
    return nullptr;
  }

  const InlineTree& treeOf(Function& function) {
    std::shared_ptr<InlineTree>& tree = functions[function.whole].tree;
    if (!tree) {
      Dwarf_Files* files = nullptr;
      std::size_t count = 0;
      if (dwarf_getsrcfiles(&full, &files, &count) != 0) files = nullptr;
      tree = std::make_shared<InlineTree>(function.die, files);
    }
    return *tree;
  }

  Dwarf_Die die;   // has the address ranges and the lines
  Dwarf_Die full;  // has the functions: the same entry, or the one in the split debug file
  bool linesRead = false;
  bool functionsRead = false;
  bool deepRead = false;
  std::vector<Row> rows;
  std::vector<Function> functions;
};

DebugInfo::DebugInfo(Dwarf* dwarf) {
  Dwarf_CU* unit = nullptr;
  Dwarf_Die die;
  Dwarf_Die split;
  std::uint8_t type = 0;
  while (dwarf_get_units(dwarf, unit, &unit, nullptr, &type, &die, &split) == 0) {
    if (type != DW_UT_compile && type != DW_UT_skeleton && type != DW_UT_partial) continue;
    if (dwarf_tag(&die) == DW_TAG_partial_unit) continue;
    addUnit(die, type == DW_UT_skeleton && split.addr ? split : die);
  }
  std::sort(ranges_.begin(), ranges_.end(), [](const Range& a, const Range& b) { return a.begin < b.begin; });
}

DebugInfo::~DebugInfo() = default;

void DebugInfo::addUnit(Dwarf_Die die, Dwarf_Die functions) {
  const std::size_t before = ranges_.size();
  units_.push_back(std::make_unique<Unit>(die, functions));
  const std::size_t number = units_.size() - 1;
  eachRange(&die, [&](Dwarf_Addr begin, Dwarf_Addr end) { ranges_.push_back({begin, end, number}); });
  if (ranges_.size() != before) return;
  // Some assemblers write no address ranges for a unit: take them from its lines.
  Unit& unit = *units_.back();
  unit.readLines();
  std::optional<std::uint64_t> begin;
  for (const Row& row : unit.rows) {
    if (!begin && !row.ends) begin = row.address;
    if (!begin || !row.ends) continue;
    ranges_.push_back({*begin, row.address, number});
    begin.reset();
  }
}

bool DebugInfo::hasLines() const noexcept {
  return !ranges_.empty();
}

DebugInfo::Unit* DebugInfo::unitAt(std::uint64_t address) {
  const std::size_t at = lastUpTo(ranges_, address, &Range::begin);
  if (at == ranges_.size() || address >= ranges_[at].end) return nullptr;
  Unit& unit = *units_[ranges_[at].unit];
  if (!unit.linesRead) unit.readLines();
  return &unit;
}

std::vector<Place> DebugInfo::chainAt(std::uint64_t address, std::uint64_t begin, bool& isGuessed) {
  Unit* const unit = unitAt(address);
  if (!unit) return {};
  const std::vector<Row>& rows = unit->rows;
  std::size_t at = lastUpTo(rows, address, &Row::address);
  if (at == rows.size() || rows[at].ends) return {};
  std::vector<Place> chain(1);
  if (rows[at].file) chain[0].file = rows[at].file;
  // Go back to the nearest instruction that has a line.
  std::uint64_t lined = address;
  while (rows[at].line == 0 && rows[at].address > begin) {
    const std::size_t before = lastUpTo(rows, rows[at].address - 1, &Row::address);
    if (before == rows.size() || rows[before].ends) break;
    lined = rows[at].address - 1;
    at = before;
  }
  isGuessed = lined != address;
  if (rows[at].line > 0) {
    address = lined;
    chain[0] = {.file = rows[at].file ? rows[at].file : "", .line = rows[at].line, .column = rows[at].column};
  }
  if (Function* const function = unit->functionAt(address)) unit->treeOf(*function).appendChain(address, chain);
  return chain;
}

}  // namespace kelvar_readers
