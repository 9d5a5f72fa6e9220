#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "Inputs.h"

// The command as it is shipped, on what the tools wrote of the sample.
namespace kelvar_import {
namespace {

struct Ended {
  std::string output;
  int status = 0;
};

Ended run(const std::string& command) {
  Ended run;
  FILE* const pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  std::array<char, 4096> piece;
  for (std::size_t count = 1; count > 0;) {
    count = std::fread(piece.data(), 1, piece.size(), pipe);
    run.output.append(piece.data(), count);
  }
  run.status = WEXITSTATUS(pclose(pipe));
  return run;
}

/// The first line of `report` that begins with `start`.
std::string rowOf(const std::string& report, const std::string& start) {
  std::istringstream lines(report);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(start)) return line;
  }
  return "no row of " + start;
}

const std::string kExamples = KELVAR_SOURCE_FOLDER "/examples";
const std::string kKelvar = KELVAR_COMMAND;

TEST(Sample, ShowsTheRaceTheMissedLoopAndTheLongStride) {
  const Folder folder;
  const Ended sample = run(kExamples + "/run.sh " + kKelvar + " " + folder.path("project") + " >/dev/null");
  ASSERT_EQ(sample.status, 0) << sample.output;
  const std::string report = run(kKelvar + " report " + folder.path("project")).output;
  const auto cells = [&report](const char* label) {
    std::string row = rowOf(report, label).substr(59);
    struct Figures {
      double time, self, total, alone, gain, programGain;
      int priority, id, state, loop, urgency, cores;
      long errors, warnings, unit, constant, none;
    } figures{};
    std::array<char, 6> flags{};
    const int count = std::sscanf(row.c_str(), "%lf %d %d %d %lf %lf %d %d %lfs %d %5c %lf %lf %ld %ld %ld / %ld / %ld",
                                  &figures.time, &figures.priority, &figures.id, &figures.state, &figures.self,
                                  &figures.total, &figures.loop, &figures.urgency, &figures.alone, &figures.cores,
                                  flags.data(), &figures.gain, &figures.programGain, &figures.errors, &figures.warnings,
                                  &figures.unit, &figures.constant, &figures.none);
    EXPECT_EQ(count, 18) << "every analysis has its cell in one row: " << row;
    return figures;
  };
  const auto brighten = cells("parallel      brighten");
  const auto smooth = cells("parallel      smooth");
  const auto columnMean = cells("parallel      column mean");
  const auto countShades = cells("parallel      count shades");
  EXPECT_GT(countShades.errors, 0);
  EXPECT_EQ(brighten.errors + smooth.errors + columnMean.errors, 0);
  EXPECT_EQ(brighten.state, 1);
  EXPECT_EQ(smooth.state, 0);
  EXPECT_GT(columnMean.constant, 4 * (columnMean.unit + columnMean.none));
  EXPECT_GT(brighten.unit, 100 * (brighten.constant + brighten.none));
  EXPECT_GT(columnMean.time, brighten.time);
  EXPECT_GT(columnMean.programGain, brighten.programGain);
}

TEST(Import, RecordsTheStateSoThatAMoveShows) {
  const Folder folder;
  const std::string database = folder.path("annotations.db");
  const std::string profile = folder.file("perf", "a 7/7 1.0: 2000000000 cpu-clock: 401 f\n  m.c:6\n");
  const std::string report = kKelvar + " report --verbose " + folder.path("");
  ASSERT_EQ(run(kKelvar + " annotate " + database + " add --kind task --label step --at m.c:5 && " + kKelvar +
                " annotate " + database + " add --kind end-task --label step --at m.c:8 && " + kKelvar +
                " import survey --perf " + profile + " --into " + folder.path(""))
                .status,
            0);
  EXPECT_NE(run(report).output.find("m.c:5                        = 1    2.00 1  1"), std::string::npos)
      << run(report).output;
  ASSERT_EQ(run(kKelvar + " annotate " + database + " move 1 --at m.c:4").status, 0);
  EXPECT_NE(run(report).output.find("m.c:4                        ~ 1    2.00 1  1"), std::string::npos)
      << run(report).output;
}

TEST(Import, LeavesWhatStoodThereWhenItIsRefused) {
  const Folder folder;
  const std::string into = " --into " + folder.path("project");
  const std::string good = folder.file("good", "a 7/7 1.0: 2000000000 cpu-clock: 401 f\n  m.c:6\n");
  const std::string bad = folder.file("bad", "a 7/7 1.0: 2000000000 cpu-clock: 401 f\n  m.c:6\na 7/7");
  const std::string contents = "cd " + folder.path("project") + " && find . -type f -exec cat {} + | cksum";
  EXPECT_EQ(run(kKelvar + " import survey --perf " + bad + into).status, 1);
  EXPECT_FALSE(std::filesystem::exists(folder.path("project/survey")));
  ASSERT_EQ(run(kKelvar + " import survey --perf " + good + into).status, 0);
  const std::string before = run(contents).output;
  const Ended refused = run(kKelvar + " import survey --perf " + good + " " + bad + into);
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.output, "kelvar: " + bad + ": line 3: expected the rest of the line\n");
  EXPECT_EQ(run(contents).output, before);
}

TEST(Import, ExplainsAUsageError) {
  const std::pair<const char*, const char*> lines[] = {
      {"surve --model --cores 2", "KIND: unknown analysis 'surve'; did you mean 'survey'?"},
      {"survey", "survey: expected a source: --perf or --callgrind"},
      {"survey --tsan x", "--tsan: expected --perf or --callgrind for survey"},
      {"map --lackey x", "--binary: expected with --lackey, and only there"},
      {"suitability --model", "--cores: expected with --model, and only there"},
      {"dependencies --tsan x --drd y", "expected one source"},
      {"survey --perf x --map-path y", "--map-path: expected OLD=NEW, not 'y'"},
  };
  for (const auto& [line, sentence] : lines) {
    const Ended usage = run(kKelvar + " import " + line + " --into p");
    EXPECT_EQ(usage.status, 2) << line;
    EXPECT_NE(usage.output.find(sentence), std::string::npos) << usage.output;
  }
}

}  // namespace
}  // namespace kelvar_import
