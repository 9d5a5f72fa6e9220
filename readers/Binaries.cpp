#include "Binaries.h"

#include <filesystem>

#include "Diagnosis.h"
#include "Places.h"

namespace kelvar_readers {

namespace {

/// The name that a program and its separate debug file have in common.
std::string_view stemOf(std::string_view path) {
  std::string_view leaf = leafOf(path);
  if (leaf.ends_with(".debug")) leaf.remove_suffix(6);
  return leaf;
}

}  // namespace

Binaries::Binaries(const std::vector<std::string>& given, Frames& frames) : frames_(frames), names_(given) {
  for (const std::string& path : given) {
    given_.push_back(std::make_unique<Symbols>(path, frames));
    if (given_.back()->hasLines()) continue;
    throw kelvar_platform::ReadError(
        {.file = path, .place = "", .expected = "debug information with lines: build with -g"});
  }
}

Symbols* Binaries::find(const std::string& path) {
  const auto [known, isNew] = byPath_.try_emplace(path, nullptr);
  if (isNew) known->second = open(path);
  return known->second;
}

Symbols* Binaries::open(const std::string& path) {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (stemOf(names_[i]) == stemOf(path)) return given_[i].get();
  }
  std::error_code error;
  if (!path.starts_with('/') || !std::filesystem::is_regular_file(path, error)) return nullptr;
  try {
    found_.push_back(std::make_unique<Symbols>(path, frames_));
  } catch (const kelvar_platform::ReadError&) {
    return nullptr;  // what is mapped need not be code
  }
  return found_.back().get();
}

}  // namespace kelvar_readers
