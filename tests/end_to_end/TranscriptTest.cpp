// The output of the command: the files in transcripts/, each run in its own copy of inputs/. A line `$ COMMAND` is run;
// after it comes its output, with ` ! ` before lines of standard error, and ` = STATUS` unless that is 0. With
// KELVAR_UPDATE_GOLDEN set in the environment, the transcripts are rewritten, for review as a diff.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "support/Command.h"

namespace support {
namespace {

namespace fs = std::filesystem;

const fs::path kData = KELVAR_TEST_FOLDER;

std::string marked(const std::string& mark, const std::string& text) {
  std::string all;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) all += mark + line + (lines.eof() ? " (no end of line)\n" : "\n");
  return all;
}

std::string printedBy(const Outcome& outcome) {
  const std::string printed = marked("  ", outcome.out) + marked(" ! ", outcome.err);
  return printed + (outcome.status != 0 ? " = " + std::to_string(outcome.status) + '\n' : "");
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, IsWhatTheCommandsPrint) {
  const Scratch scratch;
  fs::copy(kData / "inputs", scratch.path(), fs::copy_options::recursive);
  ::setenv("SOURCE", KELVAR_SOURCE_FOLDER, 1);
  const fs::path file = kData / "transcripts" / (GetParam() + ".txt");
  const std::string want = contentOf(file);
  std::string got;
  std::istringstream lines(want);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(' ')) continue;  // what a command printed
    got += line + '\n';
    if (line.starts_with("$ ")) got += printedBy(shellIn(scratch.path(), line.substr(2)));
  }
  if (std::getenv("KELVAR_UPDATE_GOLDEN")) std::ofstream(file, std::ios::binary) << got;
  EXPECT_EQ(got, want);
}

std::vector<std::string> names() {
  std::vector<std::string> names;
  for (const auto& file : fs::directory_iterator(kData / "transcripts")) names.push_back(file.path().stem());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Command, Transcript, testing::ValuesIn(names()), [](const auto& one) { return one.param; });

}  // namespace
}  // namespace support
