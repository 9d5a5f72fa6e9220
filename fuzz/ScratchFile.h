#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>

#include "support/Scratch.h"

/// A directory of this process, in memory if possible, with one file that each input is written to.
class ScratchFile {
 public:
  explicit ScratchFile(const char* name)
      : folder_(std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp"),
        directory_(folder_.path().string()),
        file_(folder_.path(name)) {}

  [[nodiscard]] const std::string& directory() const { return directory_; }
  [[nodiscard]] const std::string& file() const { return file_; }

  void write(std::span<const std::uint8_t> bytes) const {
    const int file = open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) std::abort();
    if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    close(file);
  }

 private:
  support::Scratch folder_;
  std::string directory_;
  std::string file_;
};
