/// Feeds stored inputs to a fuzz target: every file of the given folders, in the order of their names.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t fed = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& file : filesOf(arguments[i])) {
      std::fprintf(stderr, "%s\n", file.filename().c_str());  // the last line names the input of a crash
      const std::vector<std::uint8_t> bytes = bytesOf(file);
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++fed;
    }
  }
  return fed == 0 ? 1 : 0;
}
