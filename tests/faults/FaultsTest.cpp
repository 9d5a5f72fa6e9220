/// Whole runs of the command while something fails under it: the answer is complete, or there is a sentence and a
/// status; what was written before is whole.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "tools/Command.h"

namespace kelvar_test {
namespace {

namespace fs = std::filesystem;

/// A project whose survey, annotations and dependencies are small enough to be read in every way they can fail.
class Faults : public testing::Test {
 protected:
  Faults() { make(); }

  void make() const {
    fs::remove_all(folder());
    const std::string result = R"({"formatVersion":1,"hostName":"node17","cpuCount":16})";
    scratch_.write("p/survey/result.json", result);
    scratch_.write("p/dependencies/result.json", result);
    scratch_.write("p/survey/collection.json",
                   R"({"formatVersion":1,"dataKind":"survey","details":[{"label":"solver","file":"/src/solver.cpp",)"
                   R"("line":118,"survey":{"cpuTime":12.5,"priority":1,"id":1}}]})");
    scratch_.write("p/dependencies/collection.json",
                   R"({"formatVersion":1,"dataKind":"dependencies","details":[{"label":"solver","line":118,)"
                   R"("file":"/src/solver.cpp","dependencies":{"errors":2,"warnings":[1,0]}}]})");
    EXPECT_EQ(shell(R"("$1" annotate p/annotations.db add --kind parallel --label solver --at /src/solver.cpp:118 &&
                       "$1" annotate p/annotations.db snapshot p/survey)")
                  .status,
              0);
  }

  [[nodiscard]] fs::path folder() const { return scratch_.path() / "p"; }
  [[nodiscard]] Outcome shell(const std::string& line) const { return shellIn(scratch_.path(), line); }
  [[nodiscard]] std::string listed() const { return shell(R"("$1" annotate p/annotations.db list)").out; }

  /// The command with a fault, or nothing where the run is over before the fault strikes.
  [[nodiscard]] std::optional<Outcome> withFault(const std::string& fault, const std::string& arguments) const {
    const fs::path mark = scratch_.path() / "struck";
    fs::remove(mark);
    Outcome outcome = shell("LD_PRELOAD='" KELVAR_FAILING_CALLS "' KELVAR_FAULT='" + fault +
                            "' KELVAR_FAULT_COUNT=struck \"$1\" " + arguments);
    if (!fs::exists(mark)) return {};
    return outcome;
  }

  /// Calls `check` with the outcome of each run in which another fault strikes: every one of the first, and from then
  /// on ever fewer, up to the end of the run. Answers how many there were.
  template <class Check>
  int atFaults(const std::string& kind, const std::string& how, const std::string& arguments, Check check) {
    int faults = 0;
    for (int at = 1;; at += 1 + at / 16) {
      const std::string fault = kind + ' ' + std::to_string(at) + ' ' + how;
      const std::optional<Outcome> outcome = withFault(fault, arguments);
      if (!outcome) break;
      SCOPED_TRACE(fault);
      // No crash and no hang. What glibc keeps for a thread it ends the program for, with a sentence of its own.
      EXPECT_TRUE(outcome->status < 124 || outcome->err.starts_with("Fatal glibc error")) << outcome->err;
      EXPECT_TRUE(outcome->status == 0 || !outcome->err.empty()) << outcome->status;
      check(*outcome);
      ++faults;
    }
    return faults;
  }

  Scratch scratch_;
};

constexpr const char* kAdd = "annotate p/annotations.db add --kind task --label other --at f:1";

TEST_F(Faults, AReportIsWholeOrSaysWhatItLacks) {
  const std::string whole = shell(R"("$1" report p --verbose)").out;
  const auto check = [&](const Outcome& outcome) {
    EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
  };
  EXPECT_GT(atFaults("allocation", "", "report p --verbose", check), 50);
  for (const int error : {EIO, EMFILE, EINTR}) {
    EXPECT_GT(atFaults("call", std::to_string(error), "report p --verbose", check), 20);
  }
}

TEST_F(Faults, AnEditIsDoneOrNot) {
  const std::string before = listed();
  const auto check = [&](const Outcome& outcome) {
    const std::string after = listed();
    EXPECT_TRUE(outcome.status != 0 || after != before);
    EXPECT_EQ(after.substr(0, before.size()), before);
    if (after != before) make();
  };
  EXPECT_GT(atFaults("allocation", "", kAdd, check), 50);
  EXPECT_GT(atFaults("call", std::to_string(EIO), kAdd, check), 20);
  EXPECT_GT(atFaults("call", std::to_string(ENOSPC), kAdd, check), 20);
}

/// Without the times of collection, which imports take from the clock.
constexpr const char* kTable = R"("$1" report p >report && sed '/^$/q' report)";

TEST_F(Faults, AnImportReplacesAResultOrLeavesIt) {
  for (const char* duration : {"600", "800"}) {
    const std::string point = "throughput-point\tname=x\tdelta=10\n";
    scratch_.write(std::string("coz") + duration,
                   "experiment\tselected=/src/solver.cpp:118\tspeedup=0.00\tduration=1000\n" + point +
                       "experiment\tselected=/src/solver.cpp:118\tspeedup=0.50\tduration=" + duration + "\n" + point);
  }
  const std::string import = "import suitability --into p --coz ";
  const auto reportAfter = [&](const std::string& input) {
    EXPECT_EQ(shell("\"$1\" " + import + input).status, 0);
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
  EXPECT_GT(atFaults("allocation", "", import + "coz600", check), 50);
  EXPECT_GT(atFaults("call", std::to_string(ENOSPC), import + "coz600", check), 20);
}

TEST_F(Faults, PartOfAReadOrWriteIsNotTheWhole) {
  const std::string whole = shell(R"("$1" report p)").out;
  const Outcome outcome = shell("LD_PRELOAD='" KELVAR_FAILING_CALLS "' KELVAR_FAULT=short \"$1\" report p");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, whole);
}

TEST_F(Faults, AFileThatChangesWhileItIsReadIsRefused) {
  const std::string whole = shell(R"("$1" report p)").out;
  int refused = 0;
  for (const char* change : {"shrink", "grow"}) {
    const int faults = atFaults(change, "", "report p", [&](const Outcome& outcome) {
      EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
      if (outcome.err.find("expected a file that stays as it is while it is read") != std::string::npos) ++refused;
      make();
    });
    EXPECT_GT(faults, 4);
  }
  EXPECT_EQ(refused, 8);  // four files, each in two ways
}

TEST_F(Faults, WhatIsNoFileOrMayNotBeReadIsNamed) {
  const std::string unprivileged =
      ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups --inh-caps=-all " : "";
  fs::permissions(scratch_.path(), fs::perms::all);
  for (const char* file : {"annotations.db", "survey/result.json", "survey/collection.json"}) {
    SCOPED_TRACE(file);
    const std::string path = folder() / file;
    fs::permissions(path, fs::perms::none);
    const Outcome forbidden = shell(unprivileged + R"("$1" report p)");
    EXPECT_EQ(forbidden.status, 1);
    EXPECT_NE(forbidden.err.find(std::string(file) + ": expected a file that can be "), std::string::npos)
        << forbidden.err;
    EXPECT_NE(forbidden.out.find("solver"), std::string::npos);  // of what could be read

    fs::remove(path);
    fs::create_directory(path);
    const Outcome directory = shell(R"("$1" report p)");
    EXPECT_EQ(directory.status, 1);
    EXPECT_NE(directory.err.find(std::string(file) + ": expected a regular file"), std::string::npos) << directory.err;
    make();
  }
}

TEST_F(Faults, ADatabaseThatAWriterKeepsIsNotWaitedForWithoutEnd) {
  const std::string before = listed();
  sqlite3* writer = nullptr;
  ASSERT_EQ(sqlite3_open((folder() / "annotations.db").c_str(), &writer), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  for (const char* line : {R"("$1" report p)", R"("$1" annotate p/annotations.db disable 1)"}) {
    const Outcome outcome = shell(std::string("timeout 20 ") + line);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("expected a database that nobody keeps locked"), std::string::npos) << outcome.err;
  }
  sqlite3_close(writer);
  EXPECT_EQ(listed(), before);
}

TEST_F(Faults, AFullDeviceKeepsWhatStandsOnIt) {
  if (shell("mkdir full && mount -t tmpfs -o size=64k none full").status != 0) GTEST_SKIP() << "no device to fill";
  const Outcome filled = shell(R"(until [ "${n:=0}" -gt 2000 ]; do n=$((n + 1))
      "$1" annotate full/a.db add --kind task --label "$n, which is a longer text" --at f:1 >last || break; done)");
  const std::string all = shell(R"("$1" annotate full/a.db list | wc -l; tail -n 1 last)").out;
  EXPECT_EQ(shell("umount full").status, 0);
  EXPECT_NE(filled.err.find("expected room for the edit"), std::string::npos) << filled.err;
  EXPECT_GT(std::atoi(all.c_str()), 100) << all;
}

TEST_F(Faults, MemoryThatDoesNotSufficeIsSaid) {
  const std::string whole = shell(R"("$1" report p)").out;
  for (int kilobytes = 8192; kilobytes < 65536; kilobytes += 4096) {
    const Outcome outcome = shell("ulimit -v " + std::to_string(kilobytes) + R"( && exec "$1" report p)");
    EXPECT_TRUE(outcome.status != 0 || outcome.out == whole) << outcome.out;
    EXPECT_LT(outcome.status, 128);
    EXPECT_EQ(outcome.status != 0, !outcome.err.empty()) << kilobytes;
  }
}

}  // namespace
}  // namespace kelvar_test
