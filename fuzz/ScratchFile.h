#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>

/// A directory of this process, in memory if possible, with one file that each input is written to.
class ScratchFile {
 public:
  explicit ScratchFile(const char* name) {
    const bool inMemory = std::filesystem::is_directory("/dev/shm");
    std::string pattern = std::string(inMemory ? "/dev/shm" : "/tmp") + "/kelvar-fuzz-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    directory_ = pattern;
    file_ = directory_ + "/" + name;
  }
  ~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  [[nodiscard]] const std::string& directory() const { return directory_; }
  [[nodiscard]] const std::string& file() const { return file_; }

  void write(std::span<const std::uint8_t> bytes) const {
    const int file = open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) std::abort();
    if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    close(file);
  }

 private:
  std::string directory_;
  std::string file_;
};
