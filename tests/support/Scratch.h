#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace support {

[[nodiscard]] inline std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A temporary folder, removed with this object.
class Scratch {
 public:
  explicit Scratch(const std::filesystem::path& above = std::filesystem::temp_directory_path()) {
    std::string name = (above / "kelvar-XXXXXX").native();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no scratch folder");
    path_ = name;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::string path(const std::string& name) const { return path_ / name; }
  /// Writes `text` to a file, creating its folders, and returns the path.
  std::string write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace support
