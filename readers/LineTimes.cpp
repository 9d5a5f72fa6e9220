#include "LineTimes.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "Input.h"

namespace kelvar_readers {

void LineTimesText::add(const LineTime& line) {
  const auto isNoField = [](std::string_view field) { return field.find_first_of("\t\n") != std::string_view::npos; };
  const bool isSame = line.file == last_.file && line.function == last_.function && !text_.empty();
  if (!isSame && (isNoField(line.file) || isNoField(line.function))) return;
  std::array<char, 64> figures;
  char* end = std::to_chars(figures.begin(), figures.end(), line.time).ptr;
  *end++ = '\t';
  end = std::to_chars(end, figures.end(), line.line).ptr;
  text_.append(figures.begin(), end);
  if (!isSame) text_.append("\t").append(line.file).append("\t").append(line.function);
  text_ += '\n';
  last_ = line;
}

std::vector<KeptLineTime> readLineTimes(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return {};
  std::vector<KeptLineTime> lines;
  Input input(path);
  while (auto text = input.nextLine()) {
    const auto time = takeNumber<double>(*text);
    const bool tab = takePrefix(*text, "\t");
    const auto number = takeNumber<int>(*text);
    const bool isSame = text->empty() && !lines.empty();
    if (!time || !tab || !number || (!isSame && !takePrefix(*text, "\t"))) {
      input.refuse("a time, a line, a file and a function");
    }
    KeptLineTime line;
    line.time = *time;
    line.line = *number;
    if (isSame) {
      line.file = lines.back().file;
      line.function = lines.back().function;
    } else {
      line.file = takeUntil(*text, '\t');
      line.function = *text;
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace kelvar_readers
