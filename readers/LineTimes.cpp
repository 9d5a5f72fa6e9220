#include "LineTimes.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "Input.h"

namespace kelvar_readers {

void appendLineTime(std::string& text, const LineTime& line) {
  const auto isNoField = [](std::string_view field) { return field.find_first_of("\t\n") != std::string_view::npos; };
  if (isNoField(line.file) || isNoField(line.function)) return;
  std::array<char, 64> figures;
  const auto time = std::to_chars(figures.begin(), figures.end(), line.time);
  text.append(figures.begin(), time.ptr).append("\t").append(std::to_string(line.line)).append("\t");
  text.append(line.file).append("\t").append(line.function).append("\n");
}

std::vector<KeptLineTime> readLineTimes(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return {};
  std::vector<KeptLineTime> lines;
  Input input(path);
  while (auto text = input.nextLine()) {
    KeptLineTime line;
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

}  // namespace kelvar_readers
