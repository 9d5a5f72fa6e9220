#include "CollectedSources.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "Diagnosis.h"
#include "Digest.h"
#include "Messages.h"
#include "scan/ScannedSources.h"

namespace kelvar_tool {

namespace {

constexpr const char* kFile = "/sources.txt";
constexpr const char* kExpected = "a digest, a count of lines and the name of a file, a tab between each two";

kelvar_platform::SourceRow rowIn(const std::string& file, std::string_view line, std::size_t number) {
  const std::size_t first = line.find('\t');
  const std::size_t second = first == std::string_view::npos ? first : line.find('\t', first + 1);
  kelvar_platform::SourceRow row;
  const auto refuse = [&] { throw kelvar_platform::ReadError({file, "line " + std::to_string(number), kExpected}); };
  if (second == std::string_view::npos || first == 0 || second + 1 == line.size()) refuse();
  const std::string_view count = line.substr(first + 1, second - first - 1);
  const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), row.lines);
  if (error != std::errc() || end != count.data() + count.size() || row.lines < 0) refuse();
  row.digest = line.substr(0, first);
  row.file = line.substr(second + 1);
  return row;
}

}  // namespace

void writeCollectedSources(const std::string& result, const std::vector<kelvar_platform::SourceRow>& sources) {
  const std::string file = result + kFile;
  std::error_code ignored;
  if (sources.empty()) {  // a file from an earlier import would describe another collection
    std::filesystem::remove(file, ignored);
    return;
  }
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  for (const kelvar_platform::SourceRow& row : sources) {
    if (row.file.find('\n') != std::string::npos) continue;  // a line holds no such name
    out << row.digest << '\t' << row.lines << '\t' << row.file << '\n';
  }
  out.close();
  if (!out)
    throw kelvar_platform::ReadError({file, "", std::string("a file to write to (") + std::strerror(errno) + ")"});
}

std::vector<std::string> editedSinceCollection(const std::string& result, const std::string& sourceRoot) {
  const std::string file = result + kFile;
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return {};
  const std::string text = sourceBytes(file);
  std::vector<std::string> edited;
  std::size_t number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const kelvar_platform::SourceRow row = rowIn(file, std::string_view(text).substr(at, end - at), ++number);
    at = end + 1;
    const bool below = !sourceRoot.empty() && !row.file.starts_with('/');
    const std::string path = below ? sourceRoot + '/' + row.file : row.file;
    // staleSites() reports missing files.
    if (!std::filesystem::is_regular_file(path, error)) continue;
    if (kelvar_sources::digestOf(sourceBytes(path)) != row.digest) edited.push_back(row.file);
  }
  return edited;
}

}  // namespace kelvar_tool
