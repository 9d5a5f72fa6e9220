#include <gtest/gtest.h>

#include "Demangle.h"
#include "Inputs.h"

namespace kelvar_import {
namespace {

struct Reading {
  const char* name;
  const char* option;
  const char* input;
  const char* records;
};

// What each format's writer writes, cut down to what a rule is about.
const Reading kReadings[] = {
    {"a sample's time is its period", "--perf",
     "  my app 7/8  5.25:  250000 cpu-clock:u:   401fd5 smooth(float*, int)\n  /src/a b.cpp:40\n",
     "0.00025 0 0  | smooth(float*, int) @ /src/a b.cpp:40\n"},
    {"what perf cannot place has a function alone, or nothing", "--perf",
     "a 7/7 1.0: 1000000 cpu-clock: ffff8 [unknown]\n"
     "a 7/7 [003] 1.1: 1000000 cpu-clock: ffff8 irq\n  [kernel.kallsyms][ffff8]\n",
     "0.001 0 0  |  @ :0\n0.001 0 0  | irq @ :0\n"},
    {"a chain's frames stand on lines of their own", "--perf",
     "a 7/7 1.0: 2000000 task-clock: \n\t  401 memcpy\n  /usr/s.h:3\n\t  402 main\n  m.cpp:9\n\n",
     "0.002 0 0  | memcpy @ /usr/s.h:3 | main @ m.cpp:9\n"},
    {"cycles share out the time between a thread's samples", "--perf",
     "a 7/7 1.0: 100 cycles: 401 f\n  m.c:1\na 7/7 3.0: 300 cycles: 402 g\n  m.c:2\n",
     "0.5 0 0  | f @ m.c:1\n1.5 0 0  | g @ m.c:2\n"},
    {"what a call costs is the callee's", "--callgrind",
     "events: Ir\nfl=(1) a.cpp\nfn=(1) f\n10 1000000\ncfn=(2) g\ncalls=1 20\n* 9000000\n+2 2000000\n"
     "fi=(2) i.h\n5 1000000\nfe=(1)\n-1 3000000\nfn=(2)\n20 9000000\ntotals: 16000000\n",
     "1 0 0  | f @ a.cpp:10\n2 0 0  | f @ a.cpp:12\n1 0 0  | f @ i.h:5\n3 0 0  | f @ a.cpp:4\n9 0 0  | g @ a.cpp:20\n"},
    {"positions may hold addresses", "--callgrind",
     "positions: instr line\nevents: Ir Dr\nfn=main\n0x401 7 1000000 5\n+3 * 1000000\nsummary: 2000000\n",
     "1 0 0  | main @ :7\n1 0 0  | main @ :7\n"},
    {"only how a loop fared is told", "--clang-remarks",
     "--- !Passed\nPass:            inline\nName:            Inlined\nFunction:        f\n...\n"
     "--- !Passed\nPass:            loop-vectorize\nName:            Vectorized\n"
     "DebugLoc:        { File: 'a b.cpp', \n                   Line: 31, Column: 3 }\nFunction:        _Z1fPf\nArgs:\n"
     "  - String:          'vectorized loop (vectorization width: '\n  - VectorizationFactor: '4'\n...\n"
     "--- !Missed\nPass:            loop-vectorize\nName:            MissedDetails\nFunction:        main\n...\n",
     "1 0 0 x4 | f(float*) @ a b.cpp:31:3\n0 1 0 x1 | main @ :0\n"},
    {"gcc tells widths in bytes", "--gcc-remarks",
     R"([{"format":"1"},[],[{"kind":"success","message":["loop vectorized using 16 byte vectors\n"],)"
     R"("function":"_Z1fPf.constprop.0","location":{"file":"a.cpp","line":3,"column":9}},)"
     R"({"kind":"scope","message":[{"expr":"x"},"=== analyze ==="]},)"
     R"({"kind":"failure","message":["couldn't vectorize loop\n"],"function":"g"}]])",
     "1 0 0 16B | f(float*) @ a.cpp:3:9\n0 1 0 x1 | g @ :0\n"},
    {"a race has the stacks of its accesses, not those of its threads and blocks", "--tsan",
     "computing...\n==================\nWARNING: ThreadSanitizer: data race (pid=1)\n  Write of size 4 at 0x7 by "
     "thread T1:\n"
     "    #0 f(int, char const*) /my src/a.cpp:57:5 (app+0x1) (BuildId: 8c)\n    #1 <null> <null> (libx.so+0x2)\n\n"
     "  Previous read of size 4 at 0x7 by main thread:\n    #0 g a.cpp:7 (app+0x3)\n\n"
     "  Location is heap block of size 256 at 0x7 allocated by main thread:\n    #0 operator new(unsigned long) <null> "
     "(app+0x4)\n\nSUMMARY: ThreadSanitizer: data race\n==================\n",
     "1 0 0 #1 | f(int, char const*) @ /my src/a.cpp:57:5 |  @ :0\n1 0 0 #1 | g @ a.cpp:7\n"},
    {"lock order is the first warning, the rest the second", "--tsan",
     "WARNING: ThreadSanitizer: lock-order-inversion (potential deadlock) (pid=1)\n"
     "  Mutex M2 acquired here while holding mutex M1 in main thread:\n    #0 f a.c:1 (x+0x1)\n"
     "SUMMARY: ThreadSanitizer: lock-order-inversion\n"
     "WARNING: ThreadSanitizer: thread leak (pid=1)\nSUMMARY: ThreadSanitizer: thread leak\n",
     "0 1 0 #1 | f @ a.c:1\n0 0 1 #2\n"},
    {"a run that found nothing has its greeting", "--tsan", "***** Running under ThreadSanitizer v3 (pid 5) *****\n",
     ""},
    {"an error has its stack and the conflicting one", "--helgrind",
     "<valgrindoutput><protocoltool>helgrind</protocoltool><error><kind>Race</kind><stack><frame><fn>f</fn>"
     "<dir>/b</dir><file>s/a.c</file><line>5</line></frame></stack><xauxwhat><text>This conflicts with a previous write"
     "</text></xauxwhat><stack><frame><fn>g</fn></frame></stack><auxwhat>Block was alloc'd</auxwhat><stack><frame>"
     "<fn>malloc</fn></frame></stack></error><error><kind>UnlockUnlocked</kind></error></valgrindoutput>",
     "1 0 0 #1 | f @ /b/s/a.c:5\n1 0 0 #1 | g @ :0\n0 0 1 #2\n"},
    {"a gain is that of the greatest speed-up short of all", "--coz",
     "startup\ttime=1\nexperiment\tselected=a.cpp:9\tspeedup=0.00\tduration=1000\tselected-samples=1\n"
     "throughput-point\tname=x\tdelta=10\nexperiment\tselected=a.cpp:9\tspeedup=0.50\tduration=800\n"
     "throughput-point\tname=x\tdelta=10\nexperiment\tselected=a.cpp:9\tspeedup=1.00\tduration=1\n"
     "throughput-point\tname=x\tdelta=10\nsamples\tlocation=a.cpp:9\tcount=250\nsamples\tlocation=b.cpp:2\tcount=4\n",
     "0.25 2 1.25  |  @ a.cpp:9\n0.004 0 0  |  @ b.cpp:2\n"},
};

TEST(Readers, TellRecordsApart) {
  for (const Reading& reading : kReadings) {
    const Folder folder;
    EXPECT_EQ(recordsOf(reading.option, folder.file("in", reading.input)), reading.records) << reading.name;
  }
}

TEST(Demangling, NamesFunctionsAsLabelsDo) {
  const std::pair<const char*, const char*> names[] = {
      {"(anonymous namespace)::smooth(float*, int)", "smooth"},
      {"main", "main"},
      {"ns::Grid<int, 3>::at(int) const", "ns::Grid::at"},
      {"std::vector<int> make<int>(int)", "make"},
      {"ns::F::operator()(int) const", "ns::F::operator()"},
      {"main::{lambda(int)#1}::operator()(int) const", "main::{lambda#1}::operator()"},
      {"f(int)::{lambda()#1}::operator()() const", "f::{lambda#1}::operator()"},
      {"broken<", "broken<"},
  };
  for (const auto& [function, name] : names) EXPECT_EQ(plainName(function), name);
}

}  // namespace
}  // namespace kelvar_import
