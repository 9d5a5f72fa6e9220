#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "Inputs.h"
#include "support/Damages.h"

namespace kelvar_import {
namespace {

/// Empty, foreign, cut and absurd inputs of each source: `OPTION INPUT`, where \n and \t stand for what they mean.
TEST(Damage, IsRefusedInOneSentence) {
  const Folder folder;
  for (const auto& [damage, want] : support::damages("reports.txt")) {
    const std::size_t blank = damage.find(' ');
    const std::string input = std::regex_replace(damage.substr(blank + 1), std::regex(R"(\\n)"), "\n");
    const std::string file = folder.file("in", std::regex_replace(input, std::regex(R"(\\t)"), "\t"));
    EXPECT_EQ(recordsOf(damage.substr(0, blank), file), want) << damage;
  }
}

TEST(Damage, OfAGzippedFileIsFound) {
  const std::string captured = KELVAR_SOURCE_FOLDER "/examples/captured/tsan.txt.gz";
  std::ifstream whole(captured, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(whole)), {});
  const Folder folder;
  EXPECT_EQ(recordsOf("--tsan", folder.file("cut", bytes.substr(0, bytes.size() / 2))),
            "line 1: expected the rest of the file (unexpected end of file)");
}

TEST(Damage, OfATraceOrItsBinaryIsFound) {
  const Folder folder;
  const std::string binary = KELVAR_SOURCE_FOLDER "/examples/captured/pixels.debug";
  const std::string trace = folder.file("trace", "I  00401000,3\n L 1ffe,8\n");
  EXPECT_EQ(recordsOf("--lackey", folder.file("none", ""), binary),
            "line 1: expected the trace of valgrind --tool=lackey --trace-mem=yes");
  EXPECT_EQ(recordsOf("--lackey", folder.file("odd", "I  zz\n"), binary),
            "line 1: expected an address, a comma and a size");
  EXPECT_EQ(recordsOf("--lackey", trace, trace), ": expected a program: an ELF file");
  EXPECT_EQ(recordsOf("--lackey", trace, folder.path("gone")),
            ": expected a program that can be read (No such file or directory)");
}

}  // namespace
}  // namespace kelvar_import
