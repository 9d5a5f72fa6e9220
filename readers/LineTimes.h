#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvar_readers {

/// The name, in a project, of the file that keeps where the time of each function went when its survey was imported. No
/// reader of results asks for it; the import of loops does.
inline constexpr const char* kLineTimesFile = "survey-lines.tsv";

/// The seconds, or whatever a survey counts, of one line of the project's own files, in one function. Its texts live as
/// long as the text is written.
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

/// Writes the file: a line holds the time, the line, the file and the function, with tabs between them. The last two
/// are left out where they are those of the line before.
class LineTimesText {
 public:
  void add(const LineTime& line);
  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  std::string text_;
  LineTime last_;
};

/// Nothing where there is no such file. Throws kelvar_platform::ReadError for one that does not fit.
[[nodiscard]] std::vector<KeptLineTime> readLineTimes(const std::string& path);

}  // namespace kelvar_readers
