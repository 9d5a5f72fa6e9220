#include "Symbols.h"

#include <elfutils/libdw.h>
#include <fcntl.h>
#include <gelf.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "Demangle.h"
#include "Diagnosis.h"

namespace kelvar_import {

namespace {

// Where valgrind on amd64 puts what was linked to begin at 0.
constexpr std::uint64_t kValgrindBase = 0x108000;

struct Descriptor {
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() {
    if (number >= 0) close(number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number;
};
struct ElfEnd {
  void operator()(Elf* elf) const noexcept { elf_end(elf); }
};
struct DwarfEnd {
  void operator()(Dwarf* dwarf) const noexcept { dwarf_end(dwarf); }
};

struct Range {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};
struct Row {
  std::uint64_t address = 0;
  std::size_t file = 0;
  int line = 0;
  int column = 0;
  bool ends = false;  // no instruction of the sequence stands here or behind
};
struct Function {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::string name;
};

/// The last of the sorted `rows` at or before `address`; null where all are behind it.
template <class Table, class Key>
const typename Table::value_type* lastUpTo(const Table& rows, std::uint64_t address, Key key) {
  const auto after = std::upper_bound(rows.begin(), rows.end(), address,
                                      [key](std::uint64_t value, const auto& row) { return value < row.*key; });
  return after == rows.begin() ? nullptr : &*std::prev(after);
}

}  // namespace

struct Symbols::Tables {
  std::uint64_t bias = 0;
  std::vector<Range> code;
  std::vector<std::string> files;
  std::vector<Row> rows;
  std::vector<Function> functions;

  void readCode(Elf* elf) {
    std::size_t count = 0;
    elf_getphdrnum(elf, &count);
    for (std::size_t i = 0; i < count; ++i) {
      GElf_Phdr header;
      if (!gelf_getphdr(elf, static_cast<int>(i), &header)) continue;
      if (header.p_type == PT_LOAD && (header.p_flags & PF_X) != 0) {
        code.push_back({header.p_vaddr, header.p_vaddr + header.p_memsz});
      }
    }
  }

  void readFunctions(Elf* elf) {
    for (Elf_Scn* section = elf_nextscn(elf, nullptr); section; section = elf_nextscn(elf, section)) {
      GElf_Shdr header;
      if (!gelf_getshdr(section, &header) || header.sh_type != SHT_SYMTAB || header.sh_entsize == 0) continue;
      Elf_Data* const data = elf_getdata(section, nullptr);
      if (!data) continue;
      for (std::size_t i = 0; i < header.sh_size / header.sh_entsize; ++i) {
        GElf_Sym symbol;
        if (!gelf_getsym(data, static_cast<int>(i), &symbol)) break;
        const char* const name = elf_strptr(elf, header.sh_link, symbol.st_name);
        if (GELF_ST_TYPE(symbol.st_info) != STT_FUNC || symbol.st_size == 0 || !name) continue;
        functions.push_back({symbol.st_value, symbol.st_value + symbol.st_size, demangled(name)});
      }
    }
    std::sort(functions.begin(), functions.end(),
              [](const Function& a, const Function& b) { return a.begin < b.begin; });
  }

  void readLines(Dwarf* dwarf) {
    Dwarf_Off offset = 0;
    Dwarf_Off next = 0;
    std::size_t headerSize = 0;
    while (dwarf_nextcu(dwarf, offset, &next, &headerSize, nullptr, nullptr, nullptr) == 0) {
      Dwarf_Die unit;
      Dwarf_Lines* lines = nullptr;
      std::size_t count = 0;
      if (dwarf_offdie(dwarf, offset + headerSize, &unit) && dwarf_getsrclines(&unit, &lines, &count) == 0) {
        for (std::size_t i = 0; i < count; ++i) addRow(dwarf_onesrcline(lines, i));
      }
      offset = next;
    }
    // Where one sequence ends and another begins, what begins counts.
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
      return a.address != b.address ? a.address < b.address : a.ends && !b.ends;
    });
  }

  void addRow(Dwarf_Line* line) {
    Row row;
    Dwarf_Addr address = 0;
    if (!line || dwarf_lineaddr(line, &address) != 0) return;
    row.address = address;
    dwarf_lineno(line, &row.line);
    dwarf_linecol(line, &row.column);
    dwarf_lineendsequence(line, &row.ends);
    const char* const file = dwarf_linesrc(line, nullptr, nullptr);
    const std::string_view name = file ? file : "";
    if (files.empty() || files.back() != name) files.emplace_back(name);
    row.file = files.size() - 1;
    rows.push_back(row);
  }
};

Symbols::Symbols(const std::string& binary) : tables_(std::make_unique<Tables>()) {
  const auto refuse = [&binary](const std::string& expected) {
    throw kelvar_platform::ReadError({.file = binary, .place = "", .expected = expected});
  };
  const Descriptor descriptor(open(binary.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor.number < 0) refuse(std::string("a program that can be read (") + strerror(errno) + ")");
  elf_version(EV_CURRENT);
  const std::unique_ptr<Elf, ElfEnd> elf(elf_begin(descriptor.number, ELF_C_READ, nullptr));
  GElf_Ehdr header;
  if (!elf || elf_kind(elf.get()) != ELF_K_ELF || !gelf_getehdr(elf.get(), &header)) refuse("a program: an ELF file");
  if (header.e_type == ET_DYN) tables_->bias = kValgrindBase;
  tables_->readCode(elf.get());
  if (tables_->code.empty()) refuse("a program with code that is loaded");
  tables_->readFunctions(elf.get());
  const std::unique_ptr<Dwarf, DwarfEnd> dwarf(dwarf_begin_elf(elf.get(), DWARF_C_READ, nullptr));
  if (dwarf) tables_->readLines(dwarf.get());
  if (tables_->rows.empty()) refuse("debug information with lines: build with -g");
}

Symbols::~Symbols() = default;

bool Symbols::holds(std::uint64_t address) const noexcept {
  const std::uint64_t linked = address - tables_->bias;
  return std::any_of(tables_->code.begin(), tables_->code.end(),
                     [linked](const Range& range) { return linked >= range.begin && linked < range.end; });
}

Place Symbols::placeOf(std::uint64_t address) const {
  const std::uint64_t linked = address - tables_->bias;
  Place place;
  const Function* const function = lastUpTo(tables_->functions, linked, &Function::begin);
  if (function && linked < function->end) place.function = function->name;
  const Row* const row = lastUpTo(tables_->rows, linked, &Row::address);
  if (row && !row->ends && row->line > 0) {
    place.file = tables_->files[row->file];
    place.line = row->line;
    place.column = std::max(0, row->column);
  }
  return place;
}

}  // namespace kelvar_import
