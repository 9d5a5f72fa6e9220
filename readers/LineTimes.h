#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvar_readers {

/// The file in a project that keeps the time of each line of each function, written by the import of a survey. It is no
/// part of a result: the import of vectorisation remarks reads it, to give loops their times.
inline constexpr const char* kLineTimesFile = "survey-lines.tsv";

/// The time of one line of the project's own files, in one function: in seconds, or in the survey's unit. Its texts
/// must live until the writer is done.
struct LineTime {
  std::string_view file;
  int line = 0;
  std::string_view function;
  double time = 0;
};
struct KeptLineTime {
  std::string file;
  int line = 0;
  std::string function;
  double time = 0;
};

/// Builds the file's text. A line holds the time, the line number, the file and the function, separated by tabs. File
/// and function are left out when they are those of the line before.
class LineTimesText {
 public:
  void add(const LineTime& line);
  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  std::string text_;
  LineTime last_;
};

/// Empty when there is no such file. Throws kelvar_platform::ReadError for a malformed one.
[[nodiscard]] std::vector<KeptLineTime> readLineTimes(const std::string& path);

}  // namespace kelvar_readers
