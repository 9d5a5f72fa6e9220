#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvar_readers {

/// The name, in a project, of the file that keeps where the time of each function went when its survey was imported. No
/// reader of results asks for it; the import of loops does.
inline constexpr const char* kLineTimesFile = "survey-lines.tsv";

/// The seconds, or whatever a survey counts, of one line of the project's own files, in one function.
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

/// Appends a line of the file: the time, the line, the file, the function, with tabs between them.
void appendLineTime(std::string& text, const LineTime& line);
/// Nothing where there is no such file. Throws kelvar_platform::ReadError for one that does not fit.
[[nodiscard]] std::vector<KeptLineTime> readLineTimes(const std::string& path);

}  // namespace kelvar_readers
