#include "RunFolder.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Diagnosis.h"
#include "JsonFields.h"
#include "StagedDirectory.h"
#include "Utf8.h"

namespace kelvar_import {

namespace {

namespace fs = std::filesystem;
using kelvar_platform::json::any;

constexpr auto kFields = std::to_array<kelvar_platform::JsonField<RunFacts>>({
    kelvar_platform::json::formatVersion<RunFacts>(),
    any<&RunFacts::command>("command"),
    any<&RunFacts::hostName>("hostName"),
    any<&RunFacts::revision>("revision"),
    any<&RunFacts::startTime>("startTime"),
    any<&RunFacts::endTime>("endTime"),
    any<&RunFacts::exitStatus>("exitStatus"),
});

}  // namespace

bool isRunName(const std::string& name) {
  const bool plain = std::all_of(name.begin(), name.end(), [](char one) {
    const auto byte = static_cast<unsigned char>(one);
    return byte >= 0x20 && byte != 0x7f && one != '/';
  });
  constexpr std::size_t kLongestName = 200;  // leaves room for the suffix of temporary files
  return plain && !name.empty() && name.size() <= kLongestName && name.front() != '.' && kelvar_platform::isUtf8(name);
}

std::string runDirectory(const std::string& project, const std::string& name) {
  return (fs::path(project) / "runs" / name).native();
}

std::string annotationsOf(const std::string& directory) {
  const fs::path root = directory;
  const fs::path own = root / "annotations.db";
  std::error_code error;
  if (fs::symlink_status(own, error).type() != fs::file_type::not_found) return own.native();
  fs::path whole = fs::absolute(root, error).lexically_normal();
  if (!whole.has_filename()) whole = whole.parent_path();
  if (error || whole.parent_path().filename() != "runs") return own.native();
  const fs::path shared = (root / ".." / ".." / "annotations.db").lexically_normal();
  return fs::symlink_status(shared, error).type() == fs::file_type::not_found ? own.native() : shared.native();
}

std::vector<std::string> runNames(const std::string& project) {
  std::vector<std::string> names;
  std::error_code error;
  const fs::path folder = fs::path(project) / "runs";
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code unreadable;
    const std::string name = entry->path().filename().native();
    if (isRunName(name) && entry->is_directory(unreadable)) names.push_back(name);
  }
  if (error && error != std::errc::no_such_file_or_directory) {
    throw kelvar_platform::ReadError(
        {.file = folder.native(), .place = "", .expected = "a folder that can be read (" + error.message() + ")"});
  }
  std::sort(names.begin(), names.end());
  return names;
}

RunFacts readRunFacts(const std::string& directory) {
  RunFacts facts;
  const fs::path file = fs::path(directory) / "run.json";
  std::error_code error;
  if (fs::symlink_status(file, error).type() == fs::file_type::not_found) return facts;
  kelvar_platform::JsonReader().readDocument(file.native(), kFields, facts);
  return facts;
}

void writeRunFacts(const std::string& directory, const RunFacts& facts) {
  kelvar_platform::makeDirectories(directory);
  const fs::path target = fs::path(directory) / "run.json";
  const fs::path aside = fs::path(directory) / (".run.json." + std::to_string(::getpid()));
  {
    kelvar_platform::JsonWriter out(aside.native(), target.native());
    out.beginObject({});
    kelvar_platform::json::writeFields(out, kFields, facts);
    out.endObject();
    out.close();
  }
  kelvar_platform::moveInto(aside, target);
}

}  // namespace kelvar_import
