#include "LineTimes.h"

#include <cstdio>
#include <filesystem>

#include "Input.h"

namespace kelvar_import {

std::string lineTimesText(const std::vector<LineTime>& lines) {
  std::string text;
  for (const LineTime& line : lines) {
    if ((line.file + line.function).find_first_of("\t\n") != std::string::npos) continue;
    char figures[64];
    std::snprintf(figures, sizeof figures, "%.9g\t%d\t", line.time, line.line);
    text.append(figures).append(line.file).append("\t").append(line.function).append("\n");
  }
  return text;
}

std::vector<LineTime> readLineTimes(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return {};
  std::vector<LineTime> lines;
  Input input(path);
  while (auto text = input.nextLine()) {
    LineTime line;
    const auto time = takeNumber<double>(*text);
    const bool tab = takePrefix(*text, "\t");
    const auto number = takeNumber<int>(*text);
    if (!time || !tab || !number || !takePrefix(*text, "\t")) input.refuse("a time, a line, a file and a function");
    line.time = *time;
    line.line = *number;
    line.file = takeUntil(*text, '\t');
    line.function = *text;
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace kelvar_import
