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

void Binaries::expect(std::string_view path, std::string_view buildId) {
  expected_.insert_or_assign(std::string(path), std::string(buildId));
}

/// False when either has no build-id: nothing contradicts it then.
bool Binaries::isOtherBuild(const std::string& path, const Symbols& symbols) const {
  const auto expected = expected_.find(path);
  return expected != expected_.end() && !symbols.buildId().empty() && symbols.buildId() != expected->second;
}

Symbols* Binaries::open(const std::string& path) {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (stemOf(names_[i]) != stemOf(path)) continue;
    // The user named this file, so it is used in spite of the mismatch.
    if (isOtherBuild(path, *given_[i])) {
      otherBuilds_.push_back(names_[i] + " is of another build than the " + path +
                             " that ran: its places may be wrong");
    }
    return given_[i].get();
  }
  std::error_code error;
  if (!path.starts_with('/') || !std::filesystem::is_regular_file(path, error)) return nullptr;
  try {
    found_.push_back(std::make_unique<Symbols>(path, frames_));
  } catch (const kelvar_platform::ReadError&) {
    return nullptr;  // what is mapped need not be code
  }
  if (isOtherBuild(path, *found_.back())) {
    found_.pop_back();
    otherBuilds_.push_back(path +
                           " here is of another build than the one that ran, so its lines are not known: "
                           "name the one that ran by --binary");
    return nullptr;
  }
  return found_.back().get();
}

}  // namespace kelvar_readers
