/// Whole runs of the command while system calls or allocations fail: the output is complete, or there is a message and
/// an exit status, and files written before are intact.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include "support/Command.h"

namespace support {
namespace {

namespace fs = std::filesystem;

/// A project that is small enough to fail at every call and allocation.
class Faults : public testing::Test {
 protected:
  Faults() { make(); }

  void make() const {
    fs::remove_all(folder());
    fs::copy(KELVAR_TEST_FOLDER "/project", folder(), fs::copy_options::recursive);
    EXPECT_EQ(shell("kelvar annotate p/annotations.db add --kind parallel --label solver --at /src/solver.cpp:118 &&"
                    "kelvar annotate p/annotations.db snapshot p/survey")
                  .status,
              0);
  }

  /// Makes the collections large enough to be read ahead on another thread.
  void enlarge() const {
    for (const char* result : {"survey", "dependencies"}) {
      std::ofstream(folder() / result / "collection.json", std::ios::app) << std::string(std::size_t{1} << 20, ' ');
    }
  }
  [[nodiscard]] fs::path folder() const { return scratch_.path("p"); }
  [[nodiscard]] Outcome shell(const std::string& line) const { return shellIn(scratch_.path(), line); }
  [[nodiscard]] std::string listed() const { return shell("kelvar annotate p/annotations.db list").out; }

  [[nodiscard]] Outcome withFault(const std::string& fault, const std::string& arguments) const {
    fs::remove(scratch_.path("struck"));
    return shell("KELVAR_FAULT='" + fault + "' LD_PRELOAD='" KELVAR_FAILING_CALLS "' kelvar " + arguments);
  }

  /// Calls `check` with the outcome of runs that fail at the first call, the second and so on, with growing steps,
  /// until a run has no fault. Returns the number of runs.
  template <class Check>
  int atFaults(const std::string& kind, const std::string& arguments, Check check) {
    for (int faults = 0, at = 1;; ++faults, at += 1 + at / 16) {
      const std::string fault = kind + ' ' + std::to_string(at);
      const Outcome outcome = withFault(fault, arguments);
      if (!fs::exists(scratch_.path("struck"))) return faults;
      SCOPED_TRACE(fault);
      EXPECT_LT(outcome.status, 124) << outcome.err;  // no crash and no hang
      EXPECT_TRUE(outcome.status == 0 || !outcome.err.empty()) << outcome.status;
      check(outcome);
    }
  }

  Scratch scratch_;
};

const std::string kAllocation = "allocation 0";
const std::string kAllocations = "allocations 0";  // memory that is gone stays gone, for what undoes a step as well
std::string call(int error) {
  return "call " + std::to_string(error);
}
std::string calls(int error) {
  return "calls " + std::to_string(error);
}

constexpr const char* kAdd = "annotate p/annotations.db add --kind task --label other --at f:1";

TEST_F(Faults, AReportIsWholeOrSaysWhatItLacks) {
  const std::string whole = shell("kelvar report p --verbose").out;
  const auto check = [&](const Outcome& outcome) {
    EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
  };
  for (const std::string& fault : {kAllocation, kAllocations}) {
    EXPECT_GT(atFaults(fault, "report p --verbose", check), 50);
  }
  for (const std::string& fault : {call(EIO), call(EMFILE), call(EINTR), calls(EIO)}) {
    EXPECT_GT(atFaults(fault, "report p --verbose", check), 20);
  }
  // Reads and writes may be partial.
  EXPECT_EQ(withFault("short", "report p --verbose").out, whole);
}

TEST_F(Faults, AReportOfWhatIsReadAheadIsWholeTooOrSaysWhatItLacks) {
  enlarge();
  const std::string whole = shell("kelvar report p --verbose").out;
  const auto check = [&](const Outcome& outcome) {
    EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
  };
  for (const std::string& fault : {kAllocation, kAllocations}) {
    EXPECT_GT(atFaults(fault, "report p --verbose", check), 50);
  }
  EXPECT_GT(atFaults(call(EIO), "report p --verbose", check), 20);
}

TEST_F(Faults, AnEditIsDoneOrNot) {
  const std::string before = listed();
  const auto check = [&](const Outcome& outcome) {
    // The rollback of an edit may fail: the next writer does it, even if its edit is refused.
    static_cast<void>(shell("kelvar annotate p/annotations.db remove 99"));
    const std::string after = listed();
    EXPECT_TRUE(outcome.status != 0 || after != before);
    EXPECT_EQ(after.substr(0, before.size()), before);
    if (after != before) make();
  };
  for (const std::string& fault : {kAllocation, kAllocations}) EXPECT_GT(atFaults(fault, kAdd, check), 50);
  for (const std::string& fault : {call(EIO), call(ENOSPC), calls(EIO)}) EXPECT_GT(atFaults(fault, kAdd, check), 20);
}

/// Without the times of collection, which imports take from the clock.
constexpr const char* kTable = "kelvar report p >report && sed '/^$/q' report";

TEST_F(Faults, AnImportReplacesAResultOrLeavesIt) {
  const std::string import = "import suitability --into p --coz p/";
  const auto reportAfter = [&](const std::string& input) {
    EXPECT_EQ(shell("kelvar " + import + input).status, 0);
    return shell(kTable).out;
  };
  const std::string fresh = reportAfter("coz600");
  const std::string old = reportAfter("coz800");
  ASSERT_NE(old, fresh);
  const auto check = [&](const Outcome& outcome) {
    const Outcome report = shell(kTable);
    EXPECT_EQ(report.status, 0) << report.err;
    EXPECT_TRUE(report.out == fresh || (report.out == old && outcome.status != 0)) << report.out;
    if (report.out != old) static_cast<void>(reportAfter("coz800"));
  };
  for (const std::string& fault : {kAllocation, kAllocations}) EXPECT_GT(atFaults(fault, import + "coz600", check), 50);
  for (const std::string& fault : {call(ENOSPC), calls(ENOSPC)}) {
    EXPECT_GT(atFaults(fault, import + "coz600", check), 20);
  }
}

TEST_F(Faults, AFileThatChangesWhileItIsReadIsRefused) {
  const std::string whole = shell("kelvar report p").out;
  int refused = 0;
  for (const char* change : {"shrink 0", "grow 0"}) {
    const int faults = atFaults(change, "report p", [&](const Outcome& outcome) {
      EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
      if (outcome.err.find("expected a file that stays as it is while it is read") != std::string::npos) ++refused;
      make();
    });
    EXPECT_GT(faults, 4);
  }
  EXPECT_EQ(refused, 8);  // four files, each in two ways
}

TEST_F(Faults, WhatMayNotBeReadIsNamed) {
  const std::string unprivileged =
      ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups --inh-caps=-all " : "";
  fs::permissions(scratch_.path(), fs::perms::all);
  for (const char* file : {"annotations.db", "survey/result.json", "survey/collection.json"}) {
    SCOPED_TRACE(file);
    const std::string path = folder() / file;
    fs::permissions(path, fs::perms::none);
    const Outcome forbidden = shell(unprivileged + "kelvar report p");
    EXPECT_EQ(forbidden.status, 1);
    EXPECT_NE(forbidden.err.find(std::string(file) + ": expected a file that can be "), std::string::npos)
        << forbidden.err;
    EXPECT_NE(forbidden.out.find("solver"), std::string::npos);  // of what could be read
    make();
  }
}

TEST_F(Faults, ADatabaseThatAWriterKeepsIsNotWaitedForWithoutEnd) {
  const std::string before = listed();
  sqlite3* writer = nullptr;
  ASSERT_EQ(sqlite3_open((folder() / "annotations.db").c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  for (const char* line : {"kelvar report p", "kelvar annotate p/annotations.db disable 1"}) {
    const Outcome outcome = shell(std::string("timeout 20 ") + line);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("expected a database that is not locked"), std::string::npos) << outcome.err;
  }
  sqlite3_close(writer);
  EXPECT_EQ(listed(), before);
}

TEST_F(Faults, AFullDeviceKeepsWhatStandsOnIt) {
  if (shell("mkdir full && mount -t tmpfs -o size=64k none full").status != 0) GTEST_SKIP() << "no device to fill";
  const Outcome filled = shell(R"(until [ "${n:=0}" -gt 2000 ]; do n=$((n + 1))
      "$1" annotate full/a.db add --kind task --label "$n, which is a longer text" --at f:1 >last || break; done)");
  const std::string all = shell("kelvar annotate full/a.db list | wc -l; tail -n 1 last").out;
  EXPECT_EQ(shell("umount full").status, 0);
  EXPECT_NE(filled.err.find("expected room for the edit"), std::string::npos) << filled.err;
  EXPECT_GT(std::atoi(all.c_str()), 100) << all;
}

TEST_F(Faults, MemoryThatDoesNotSufficeIsSaid) {
  enlarge();
  const std::string whole = shell("kelvar report p").out;
  for (int kilobytes = 8192; kilobytes < 65536; kilobytes += 4096) {
    const Outcome outcome = shell("ulimit -v " + std::to_string(kilobytes) + R"( && exec "$1" report p)");
    EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
    EXPECT_LT(outcome.status, 128);
    EXPECT_EQ(outcome.status != 0, !outcome.err.empty()) << kilobytes;
  }
}

}  // namespace
}  // namespace support
