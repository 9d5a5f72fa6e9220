#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>

#include "Demangle.h"
#include "Diagnosis.h"
#include "Request.h"
#include "support/Cases.h"
#include "support/Scratch.h"

namespace kelvar_readers {
namespace {

/// A line a record, `WEIGHTS NOTE | PLACES`, with ` #N` for one of several of a report, what calls cost with ` > N`,
/// and what is said in words behind it.
std::string text(const Record& record) {
  std::ostringstream out;
  out << record.weights[0] << ' ' << record.weights[1] << ' ' << record.weights[2] << ' ' << record.note;
  if (record.report != 0) out << '#' << record.report;
  if (record.callee != 0) out << "> " << record.callee;
  for (const Frame* const frame : record.stack) {
    for (const Place& place : frame->chain) {
      out << " | " << place.function << " @ " << place.file << ':' << place.line;
      if (place.column != 0) out << ':' << place.column;
    }
  }
  if (!record.words.role.empty()) out << " [" << record.words.role << ']';
  if (!record.words.text.empty()) out << " \"" << record.words.text << '"';
  if (!record.words.object.empty()) out << " of " << record.words.object;
  return out.str() + '\n';
}

/// What the source that is named as on the command line makes of the file; or the sentence that refuses it, with the
/// file's name left out.
std::string recordsOf(const std::string& option, const std::string& file, const std::string& binary = {}) {
  const auto sources = kelvar_import::sources();
  const auto source =
      std::find_if(sources.begin(), sources.end(), [&](const auto& one) { return one.option == option; });
  std::string records;
  try {
    Frames frames;
    Binaries binaries(binary.empty() ? std::vector<std::string>() : std::vector<std::string>{binary}, frames);
    Reading reading{.binaries = binaries};
    Input input(file);
    source->read(input, reading, [&records](const Record& record) { records += text(record); });
  } catch (const kelvar_platform::ReadError& error) {
    return error.refusal().place + ": expected " + error.refusal().expected;
  }
  return records;
}

/// What each format's writer writes, cut down to what a rule is about: the option, the input and its records.
TEST(Readers, TellRecordsApart) {
  const support::Scratch scratch;
  for (const auto& [rule, parts] : support::cases("readings.txt", 16)) {
    const std::string option = parts[0].substr(0, parts[0].size() - 1);
    EXPECT_EQ(recordsOf(option, scratch.write("in", parts.at(1))), parts.at(2)) << rule;
  }
}

/// Empty, foreign, cut and absurd inputs of each source: `OPTION INPUT`, where \n and \t stand for what they mean.
TEST(Readers, RefuseDamageInOneSentence) {
  const support::Scratch scratch;
  // Tools of others need not be here: these refuse all, as the real ones do.
  for (const char* const tool : {"bin/perf", "bin/llvm-remarkutil"}) {
    std::filesystem::permissions(scratch.write(tool, "#!/bin/sh\nexit 255\n"), std::filesystem::perms::owner_all);
  }
  const std::string path = std::getenv("PATH");
  setenv("PATH", (scratch.path("bin") + ":" + path).c_str(), 1);
  for (const auto& [damage, parts] : support::cases("damages.txt", 36)) {
    const std::size_t blank = parts[0].find(' ');
    const std::string input = std::regex_replace(parts[0].substr(blank + 1), std::regex(R"(\\n)"), "\n");
    const std::string file = scratch.write("in", std::regex_replace(input, std::regex(R"(\\t)"), "\t"));
    EXPECT_EQ(recordsOf(parts[0].substr(0, blank), file), parts[1]) << damage;
  }
  const std::string zipped = support::contentOf(KELVAR_SOURCE_FOLDER "/examples/captured/tsan.txt.gz");
  EXPECT_EQ(recordsOf("--tsan", scratch.write("cut", zipped.substr(0, zipped.size() / 2))),
            "line 1: expected the rest of the file (truncated gzip input)");
  setenv("PATH", path.c_str(), 1);
}

/// What tools wrote, with a byte changed, a line twice or the end cut off, in many places of each: records or a refusal
/// in one sentence come of it, and nothing else.
TEST(Readers, ReadOrRefuseDamagedCaptures) {
  const support::Scratch scratch;
  constexpr std::pair<const char*, const char*> kCaptures[] = {
      {"--perf", "perf"},
      {"--callgrind", "callgrind"},
      {"--clang-remarks", "clang_remarks"},
      {"--lackey", "lackey"},
      {"--tsan", "tsan"},
      {"--gcc-remarks", "gcc_remarks"},
      {"--helgrind", "valgrind_xml"},
  };
  const std::string binary = KELVAR_SOURCE_FOLDER "/examples/captured/pixels.debug";
  for (const auto& [option, folder] : kCaptures) {
    const std::string whole =
        support::contentOf(KELVAR_SOURCE_FOLDER "/fuzz/corpus/" + std::string(folder) + "/capture");
    ASSERT_FALSE(whole.empty()) << folder;
    std::size_t refused = 0;
    for (std::size_t i = 0; i < 40; ++i) {
      const std::size_t at = whole.size() * i / 40;
      const std::size_t line = whole.find('\n', at) + 1;
      std::string changed = whole;
      changed[at] = "\0\n\xff<9-(: "[i % 9];
      const std::string damaged[] = {changed, whole.substr(0, at),
                                     whole.substr(0, line) + whole.substr(std::min(at, line))};
      for (const std::string& input : damaged) {
        const std::string text = recordsOf(option, scratch.write("in", input), binary);
        if (text.find(": expected ") == std::string::npos) continue;
        ++refused;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
      }
    }
    EXPECT_GT(refused, 0U) << folder;
  }
}

TEST(Readers, RefuseATraceOrItsBinary) {
  const support::Scratch scratch;
  const std::string binary = KELVAR_SOURCE_FOLDER "/examples/captured/pixels.debug";
  const std::string trace = scratch.write("trace", "I  00401000,3\n L 1ffe,8\n");
  EXPECT_EQ(recordsOf("--lackey", scratch.write("none", ""), binary),
            "line 1: expected the trace of valgrind --tool=lackey --trace-mem=yes");
  EXPECT_EQ(recordsOf("--lackey", scratch.write("odd", "I  zz\n"), binary),
            "line 1: expected the trace of valgrind --tool=lackey --trace-mem=yes");
  const std::string dead =
      "==7== \n==7== Valgrind: debuginfo reader: ensure_valid failed:\n==7== Valgrind: Giving up.\n";
  EXPECT_EQ(recordsOf("--lackey", scratch.write("dead", dead), binary),
            "line 1: expected the trace of valgrind --tool=lackey --trace-mem=yes, which gave up on the debug "
            "information: -gdwarf-4 may do");
  EXPECT_EQ(recordsOf("--lackey", trace, trace), ": expected a program: an ELF file");
  EXPECT_EQ(recordsOf("--lackey", trace, scratch.path("gone")),
            ": expected a program that can be read (No such file or directory)");
}

TEST(Demangling, NamesFunctionsAsLabelsDo) {
  constexpr std::pair<const char*, const char*> kNames[] = {
      {"(anonymous namespace)::smooth(float*, int)", "smooth"},
      {"main", "main"},
      {"ns::Grid<int, 3>::at(int) const", "ns::Grid::at"},
      {"std::vector<int> make<int>(int)", "make"},
      {"ns::F::operator()(int) const", "ns::F::operator()"},
      {"main::{lambda(int)#1}::operator()(int) const", "main::{lambda#1}::operator()"},
      {"f(int)::{lambda()#1}::operator()() const", "f::{lambda#1}::operator()"},
      {"broken<", "broken<"},
  };
  for (const auto& [function, name] : kNames) EXPECT_EQ(plainName(function), name);
}

}  // namespace
}  // namespace kelvar_readers
