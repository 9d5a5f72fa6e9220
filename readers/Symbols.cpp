#include "Symbols.h"

#include <elfutils/libdwfl.h>
#include <gelf.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

#include "DebugInfo.h"
#include "Demangle.h"
#include "Diagnosis.h"

namespace kelvar_readers {

namespace {

struct DwflEnd {
  void operator()(Dwfl* dwfl) const noexcept { dwfl_end(dwfl); }
};

struct Segment {
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
  std::uint64_t address = 0;
  std::uint64_t extent = 0;
  bool executable = false;
};

struct Function {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::string name;  // mangled
};

/// Ranks the names of one address so that the greatest is the one that other tools show: global before weak before
/// local names, then names without a leading underscore.
int rankOf(const GElf_Sym& symbol, const char* name) {
  const int binding = GELF_ST_BIND(symbol.st_info);
  const int reach = binding == STB_GLOBAL ? 2 : binding == STB_WEAK ? 1 : 0;
  return reach * 2 + (name[0] == '_' && name[1] != 'Z' ? 0 : 1);
}

}  // namespace

struct Symbols::Impl {
  Impl(const std::string& binary, Frames& all) : frames(all), path(binary) {
    std::error_code error;
    const auto status = std::filesystem::status(binary, error);
    if (error || !std::filesystem::exists(status)) refuse("a program that can be read (" + reason(error) + ")");
    if (std::filesystem::is_directory(status)) refuse("a program, not a directory");
    static const Dwfl_Callbacks kCallbacks{.find_elf = dwfl_build_id_find_elf,
                                           .find_debuginfo = dwfl_standard_find_debuginfo,
                                           .section_address = dwfl_offline_section_address,
                                           .debuginfo_path = nullptr};
    dwfl.reset(dwfl_begin(&kCallbacks));
    if (!dwfl) throw std::bad_alloc();
    dwfl_report_begin(dwfl.get());
    module = dwfl_report_offline(dwfl.get(), "", binary.c_str(), -1);
    dwfl_report_end(dwfl.get(), nullptr, nullptr);
    Elf* const elf = module ? dwfl_module_getelf(module, &bias) : nullptr;
    if (!elf) refuse("a program: an ELF file");
    readSegments(elf);
    if (std::none_of(segments.begin(), segments.end(), [](const Segment& one) { return one.executable; })) {
      refuse("a program with code that is loaded");
    }
    readBuildId();
    readFunctions();
    Dwarf_Addr dwarfBias = 0;
    if (Dwarf* const dwarf = dwfl_module_getdwarf(module, &dwarfBias)) {
      toDwarf = bias - dwarfBias;
      debug = std::make_unique<DebugInfo>(dwarf);
    }
  }

  [[noreturn]] void refuse(const std::string& expected) const {
    throw kelvar_platform::ReadError({.file = path, .place = "", .expected = expected});
  }
  static std::string reason(const std::error_code& error) {
    return error ? error.message() : std::string(std::strerror(ENOENT));
  }

  void readSegments(Elf* elf) {
    GElf_Ehdr header;
    if (!gelf_getehdr(elf, &header)) refuse("a program: an ELF file");
    positionIndependent = header.e_type == ET_DYN;
    std::size_t count = 0;
    elf_getphdrnum(elf, &count);
    for (std::size_t i = 0; i < count; ++i) {
      GElf_Phdr segment;
      if (!gelf_getphdr(elf, static_cast<int>(i), &segment) || segment.p_type != PT_LOAD) continue;
      segments.push_back({.offset = segment.p_offset,
                          .size = segment.p_filesz,
                          .address = segment.p_vaddr,
                          .extent = segment.p_memsz,
                          .executable = (segment.p_flags & PF_X) != 0});
    }
  }

  void readBuildId() {
    const unsigned char* bits = nullptr;
    GElf_Addr address = 0;
    const int size = dwfl_module_build_id(module, &bits, &address);
    constexpr const char* kDigits = "0123456789abcdef";
    for (int i = 0; i < size; ++i) {
      buildId += kDigits[bits[i] >> 4U];
      buildId += kDigits[bits[i] & 0xFU];
    }
  }

  void readFunctions() {
    struct Candidate {
      Function function;
      int rank = 0;
      std::uint64_t limit = 0;  // the end of the section, for a symbol without a size
    };
    std::vector<Candidate> all;
    const int count = dwfl_module_getsymtab(module);
    for (int i = 1; i < count; ++i) {
      GElf_Sym symbol;
      GElf_Addr address = 0;
      Elf* file = nullptr;
      const char* const name = dwfl_module_getsym_info(module, i, &symbol, &address, nullptr, &file, nullptr);
      const int type = GELF_ST_TYPE(symbol.st_info);
      if (!name || !*name || symbol.st_shndx == SHN_UNDEF) continue;
      if (type != STT_FUNC && type != STT_GNU_IFUNC) continue;
      const std::uint64_t begin = address - bias;
      const std::uint64_t end = symbol.st_size > 0 ? begin + symbol.st_size : 0;
      all.push_back({{begin, end, name}, rankOf(symbol, name), end > 0 ? 0 : endOfSection(file, symbol.st_shndx)});
    }
    std::stable_sort(all.begin(), all.end(), [](const Candidate& a, const Candidate& b) {
      return a.function.begin != b.function.begin ? a.function.begin < b.function.begin : a.rank > b.rank;
    });
    std::vector<std::uint64_t> limits;
    for (Candidate& one : all) {
      byName.emplace(one.function.name, one.function.begin);
      if (!functions.empty() && functions.back().begin == one.function.begin) {
        functions.back().end = std::max(functions.back().end, one.function.end);
        continue;
      }
      functions.push_back(std::move(one.function));
      limits.push_back(one.limit);
    }
    // A function without a size, as assemblers write it, reaches to the next function or the end of its section.
    for (std::size_t i = 0; i < functions.size(); ++i) {
      if (functions[i].end > functions[i].begin) continue;
      functions[i].end = limits[i];
      if (i + 1 < functions.size()) functions[i].end = std::min(limits[i], functions[i + 1].begin);
    }
  }

  static std::uint64_t endOfSection(Elf* file, std::size_t index) {
    GElf_Shdr header;
    Elf_Scn* const section = file ? elf_getscn(file, index) : nullptr;
    return section && gelf_getshdr(section, &header) ? header.sh_addr + header.sh_size : 0;
  }

  const Function* functionAt(std::uint64_t address) const {
    const auto after = std::upper_bound(functions.begin(), functions.end(), address,
                                        [](std::uint64_t at, const Function& one) { return at < one.begin; });
    if (after == functions.begin() || address >= std::prev(after)->end) return nullptr;
    return &*std::prev(after);
  }

  std::vector<Place> chainAt(std::uint64_t address, std::uint64_t begin, bool& isGuessed) const {
    return debug ? debug->chainAt(address + toDwarf, begin + toDwarf, isGuessed) : std::vector<Place>();
  }

  /// Where the function begins in the source; looked up once.
  const Place& beginOf(const Function& function) {
    const auto [found, isNew] = begins.try_emplace(function.begin);
    if (isNew) {
      bool isGuessed = false;
      std::vector<Place> chain = chainAt(function.begin, function.begin, isGuessed);
      if (!chain.empty()) found->second = std::move(chain.back());
      found->second.function = demangled(function.name);
    }
    return found->second;
  }

  void describe(Frame& frame, std::uint64_t address) {
    const Function* const function = functionAt(address);
    frame.chain = chainAt(address, function ? function->begin : address, frame.lineIsGuessed);
    if (function) {
      frame.begin = beginOf(*function);
      frame.function = frame.begin.function;
    } else if (!frame.chain.empty()) {
      frame.function = frame.chain.back().function;
    }
    if (frame.chain.empty()) frame.chain.push_back({.function = frame.function});
    if (frame.chain.back().function.empty()) frame.chain.back().function = frame.function;
  }

  Frames& frames;
  std::string path;
  std::unique_ptr<Dwfl, DwflEnd> dwfl;
  Dwfl_Module* module = nullptr;
  Dwarf_Addr bias = 0;        // added by libdwfl to the addresses of the file
  std::uint64_t toDwarf = 0;  // added to an address to get that of the debug information
  bool positionIndependent = false;
  std::string buildId;
  std::vector<Segment> segments;
  std::vector<Function> functions;  // by address, one for each address
  std::unordered_multimap<std::string, std::uint64_t> byName;
  bool demangledToo = false;
  std::unique_ptr<DebugInfo> debug;
  std::unordered_map<std::uint64_t, Place> begins;
  std::unordered_map<std::uint64_t, const Frame*> known;
};

Symbols::Symbols(const std::string& binary, Frames& frames) : impl_(std::make_unique<Impl>(binary, frames)) {}
Symbols::~Symbols() = default;

bool Symbols::holds(std::uint64_t address) const noexcept {
  return std::any_of(impl_->segments.begin(), impl_->segments.end(), [address](const Segment& segment) {
    return segment.executable && address >= segment.address && address - segment.address < segment.extent;
  });
}

bool Symbols::isPositionIndependent() const noexcept {
  return impl_->positionIndependent;
}

bool Symbols::hasLines() const noexcept {
  return impl_->debug && impl_->debug->hasLines();
}

const std::string& Symbols::buildId() const noexcept {
  return impl_->buildId;
}

std::optional<std::uint64_t> Symbols::addressOfOffset(std::uint64_t offset) const noexcept {
  for (const Segment& segment : impl_->segments) {
    // Segments may overlap in the file; only code is of interest.
    if (segment.executable && offset >= segment.offset && offset - segment.offset < segment.size) {
      return offset - segment.offset + segment.address;
    }
  }
  return std::nullopt;
}

std::optional<std::uint64_t> Symbols::functionBegin(std::uint64_t address) const noexcept {
  const Function* const function = impl_->functionAt(address);
  return function ? std::optional(function->begin) : std::nullopt;
}

std::optional<std::uint64_t> Symbols::addressOfFunction(const std::string& name) {
  auto& byName = impl_->byName;
  if (!std::exchange(impl_->demangledToo, true)) {
    for (const Function& function : impl_->functions) {
      if (function.name.starts_with("_Z")) byName.emplace(demangled(function.name), function.begin);
    }
  }
  const auto [first, last] = byName.equal_range(name);
  if (first == last) return std::nullopt;
  const std::uint64_t address = first->second;
  if (std::any_of(first, last, [address](const auto& one) { return one.second != address; })) return std::nullopt;
  return address;
}

const Frame& Symbols::frameAt(std::uint64_t address) {
  const auto [found, isNew] = impl_->known.try_emplace(address);
  if (isNew) {
    Frame& frame = impl_->frames.add();
    impl_->describe(frame, address);
    found->second = &frame;
  }
  return *found->second;
}

}  // namespace kelvar_readers
