#include "ProgramFacts.h"

#include <dwarf.h>
#include <elfutils/libdw.h>
#include <fcntl.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "Diagnosis.h"
#include "FileDescriptor.h"
#include "Symbols.h"

namespace kelvar_readers {

namespace {

std::string_view textOf(Dwarf_Die& die, unsigned name) {
  Dwarf_Attribute attribute;
  const char* const text = dwarf_formstring(dwarf_attr_integrate(&die, name, &attribute));
  return text ? text : "";
}

/// Searches the whole file for names of symbols and libraries that tell how it was built.
void findNames(const std::string& program, ProgramFacts& facts) {
  constexpr std::string_view kTsan = "__tsan_init";
  constexpr std::string_view kCoz = "_coz_get_counter";
  constexpr std::size_t kOverlap = kCoz.size();
  std::ifstream file(program, std::ios::binary);
  std::string text;
  std::string chunk(1U << 20U, '\0');
  while (file) {
    file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    text.append(chunk, 0, static_cast<std::size_t>(file.gcount()));
    if (text.starts_with("\x7f"
                         "ELF"))
      facts.isProgram = true;
    if (!facts.isProgram) return;
    if (text.find(kTsan) != std::string::npos) facts.hasThreadSanitizer = true;
    if (text.find(kCoz) != std::string::npos) facts.hasProgressPoints = true;
    if (text.find("libgomp.so") != std::string::npos) facts.hasGccOpenMp = true;
    for (const char* const name : {"libomp.so", "libiomp5.so", "libomp5.so"}) {
      if (text.find(name) != std::string::npos) facts.hasClangOpenMp = true;
    }
    text.erase(0, text.size() - std::min(text.size(), kOverlap));
  }
}

void readUnits(Dwarf* dwarf, ProgramFacts& facts) {
  std::size_t compiled = 0;
  std::size_t withPointers = 0;
  Dwarf_CU* unit = nullptr;
  Dwarf_Die die{};
  while (dwarf_get_units(dwarf, unit, &unit, nullptr, nullptr, &die, nullptr) == 0) {
    if (dwarf_tag(&die) != DW_TAG_compile_unit && dwarf_tag(&die) != DW_TAG_skeleton_unit) continue;
    const std::string_view producer = textOf(die, DW_AT_producer);
    if (producer.starts_with("GNU AS")) continue;
    ++compiled;
    if (producer.find("-fno-omit-frame-pointer") != std::string_view::npos) ++withPointers;
    const std::filesystem::path name = textOf(die, DW_AT_name);
    const std::filesystem::path folder = textOf(die, DW_AT_comp_dir);
    facts.units.insert(name.stem().native());
    facts.folders.insert(folder.native());
    facts.folders.insert((folder / name).lexically_normal().parent_path().native());
  }
  facts.hasFramePointers = compiled > 0 && withPointers == compiled;
}

struct EndDwarf {
  void operator()(Dwarf* dwarf) const noexcept { dwarf_end(dwarf); }
};

}  // namespace

ProgramFacts programFacts(const std::string& program) {
  ProgramFacts facts;
  findNames(program, facts);
  if (!facts.isProgram) return facts;
  try {
    Frames frames;
    facts.hasLines = Symbols(program, frames).hasLines();
  } catch (const kelvar_platform::ReadError&) {
    return facts;  // what cannot be read has no lines
  }
  const kelvar_platform::FileDescriptor file(::open(program.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return facts;
  const std::unique_ptr<Dwarf, EndDwarf> dwarf(dwarf_begin(file.get(), DWARF_C_READ));
  if (dwarf) readUnits(dwarf.get(), facts);
  return facts;
}

}  // namespace kelvar_readers
