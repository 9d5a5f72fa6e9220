#include <gtest/gtest.h>

#include <fstream>

#include "Inputs.h"

namespace kelvar_import {
namespace {

struct Damage {
  const char* option;
  const char* input;
  const char* sentence;
};

// Empty, foreign, cut and absurd inputs of each source. The sentence names the line.
const Damage kDamages[] = {
    {"--perf", "", "line 1: expected at least one sample of perf script"},
    {"--perf", "hello\n",
     "line 1: expected a sample of perf script: command, process/thread, time, period, event, address, symbol"},
    {"--perf", "a 7/7 1.0: 5 cpu-clock: 40", "line 1: expected the rest of the line"},
    {"--perf", "a 7/7 1.0: 5 cpu-clock: 401 f\n",
     "line 1: expected a source line behind a sample (perf script -F +srcline)"},
    {"--perf", "a 7/7 1.0: nan cpu-clock: 401 f\n",
     "line 1: expected a sample of perf script: command, process/thread, time, period, event, address, symbol"},
    {"--callgrind", "", ": expected an events: line, as callgrind writes it"},
    {"--callgrind", "hello\n", "line 1: expected a line of a callgrind.out"},
    {"--callgrind", "events: Ir\nfn=(1) f\n3 5\n",
     "line 3: expected the rest of the file: neither totals: nor summary:"},
    {"--callgrind", "events: Ir\nsummary: 90\nfn=(1) f\n3 5\n",
     "line 4: expected the rest of the file: its costs are less than summary:"},
    {"--callgrind", "events: Ir\nfn=(9)\n", "line 2: expected the name of (9) before its use"},
    {"--callgrind", "events: Ir\nfn=(1) f\n3 -5\n", "line 3: expected a cost"},
    {"--callgrind", "events: Ir\nfn=(1) f\n99999999999999999999 5\n", "line 3: expected a line and a cost"},
    {"--callgrind", "events: Ir\nfn=(1) f\ncalls=1 2\n", "line 3: expected a cost line"},
    {"--clang-remarks", "", "line 1: expected the remarks of clang (-fsave-optimization-record)"},
    {"--clang-remarks", "key: value\n", "line 1: expected a remark of clang: --- !Passed, --- !Missed and the like"},
    {"--clang-remarks", "--- !Missed\nPass: inline\n", "line 2: expected the rest of the remark: its ... line"},
    {"--clang-remarks",
     "--- !Missed\nPass: inline\n...\n--- !Missed\nPass: loop-vectorize\nName: MissedDetails\n"
     "DebugLoc: { File: a, Line: -3 }\n...\n",
     "line 7: expected a line or a column"},
    {"--clang-remarks", "--- !Missed\nPass: loop-vectorize\nName: MissedDetails\nArgs: [\n...\n",
     "line 5: expected YAML: did not find expected node content"},
    {"--gcc-remarks", "", "line 1: expected JSON: Empty: no JSON found"},
    {"--gcc-remarks", "[{\"format\":\"2\"},[],[]]",
     "[0].format: expected \"1\", as gcc -fsave-optimization-record writes it"},
    {"--gcc-remarks", "{}", "line 1: expected an array of three parts, as gcc -fsave-optimization-record writes it"},
    {"--tsan", "", "line 1: expected what a program built with ThreadSanitizer printed"},
    {"--tsan", "hello\n", "line 1: expected a report of ThreadSanitizer, or its greeting (TSAN_OPTIONS=verbosity=1)"},
    {"--tsan", "WARNING: ThreadSanitizer: data race (pid=1)\n  Write of size 4 by thread T1:\n",
     "line 2: expected the rest of the report: its SUMMARY: line"},
    {"--helgrind", "", "line 1: expected the XML of valgrind (--xml=yes)"},
    {"--helgrind", "<valgrindoutput>\n<error>\n", "line 2: expected XML: Start-end tags mismatch"},
    {"--drd", "<html></html>", "line 1: expected the XML of valgrind: a valgrindoutput"},
    {"--drd", "<valgrindoutput><protocoltool>memcheck</protocoltool></valgrindoutput>",
     "protocoltool: expected helgrind or drd"},
    {"--coz", "", "line 1: expected a line of a profile.coz"},
    {"--coz", "startup\ttime=1\nexperiment\tselected=a:1\tspeedup=2\tduration=1\n",
     "line 2: expected speedup= and a number from 0 to 1"},
    {"--coz", "throughput-point\tname=x\tdelta=1\n", "line 1: expected an experiment before its progress points"},
};

TEST(Damage, IsRefusedInOneSentence) {
  for (const Damage& damage : kDamages) {
    const Folder folder;
    EXPECT_EQ(recordsOf(damage.option, folder.file("in", damage.input)), damage.sentence)
        << damage.option << " of " << damage.input;
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
