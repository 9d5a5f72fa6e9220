#include "StagedDirectory.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

#include "Diagnosis.h"

namespace kelvar_platform {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& file, std::string expected) {
  throw ReadError({.file = file.string(), .place = {}, .expected = std::move(expected)});
}

[[noreturn]] void refuse(const fs::path& file, const char* expected, const std::error_code& error) {
  refuse(file, std::string(expected) + " (" + error.message() + ')');
}

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// The entries of a result directory. A folder with anything else in it is not ours, and is not replaced.
void requireResult(const fs::path& directory) {
  constexpr std::array<std::string_view, 8> kNames{"result.json",    "collection.json", "application.log",
                                                   "collector.log",  "command.log",     "surveyvectorization",
                                                   "evidence.jsonl", "sources.txt"};
  std::error_code error;
  for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (std::find(kNames.begin(), kNames.end(), name) == kNames.end()) {
      refuse(directory, "a result directory; " + name + " does not belong in one");
    }
    if (entry->symlink_status(error).type() == fs::file_type::directory) requireResult(entry->path());
  }
  if (error) refuse(directory, "a folder that can be read", error);
}

void requireReplaceable(const fs::path& target) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (status.type() == fs::file_type::not_found) return;
  if (error) refuse(target, "a folder that can be read", error);
  if (!fs::is_directory(status)) refuse(target, "a result directory, or nothing");
  requireResult(target);
}

/// Without a trailing slash, so that it has a name and a folder above.
fs::path named(const fs::path& target) {
  const fs::path normal = target.lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

fs::path makeBeside(const fs::path& target) {
  static std::atomic<unsigned> count = 0;
  for (;;) {
    const std::string suffix = '.' + std::to_string(::getpid()) + '.' + std::to_string(count++);
    fs::path beside = target.parent_path() / ('.' + target.filename().string() + suffix);
    if (::mkdir(beside.c_str(), 0777) == 0) return beside;
    if (errno != EEXIST) refuse(target, "a folder that can be created", lastError());
  }
}

}  // namespace

void makeDirectories(const fs::path& directory) {
  std::error_code error;
  fs::create_directories(directory, error);
  if (error) refuse(directory, "a folder that can be created", error);
}

void moveInto(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::rename(from, to, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(from, ignored);
  refuse(to, "a place that can be written to", error);
}

StagedDirectory::StagedDirectory(const fs::path& target) : target_(named(target)) {
  requireReplaceable(target_);
  if (target_.has_parent_path()) makeDirectories(target_.parent_path());
  staged_ = makeBeside(target_);
}

StagedDirectory::~StagedDirectory() {
  std::error_code ignored;  // a folder that cannot be removed stays under its hidden name
  fs::remove_all(staged_, ignored);
}

void StagedDirectory::install() {
  requireReplaceable(target_);
  if (::renameat2(AT_FDCWD, staged_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0) return;
  if (errno == EEXIST) {
    if (::renameat2(AT_FDCWD, staged_.c_str(), AT_FDCWD, target_.c_str(), RENAME_EXCHANGE) == 0) return;
  }
  exchange();
}

/// For file systems that cannot do it in one step.
void StagedDirectory::exchange() const {
  std::error_code error;
  const fs::path old = makeBeside(target_);
  fs::rename(target_, old, error);
  const bool replaces = !error;
  fs::rename(staged_, target_, error);
  if (!error) {
    fs::remove_all(old, error);
    return;
  }
  const std::error_code reason = error;
  if (replaces) fs::rename(old, target_, error);
  fs::remove(old, error);
  refuse(target_, "a place that can be written to", reason);
}

}  // namespace kelvar_platform
