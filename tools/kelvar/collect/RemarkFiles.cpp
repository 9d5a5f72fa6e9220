#include "RemarkFiles.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>

#include "Diagnosis.h"
#include "Messages.h"

namespace kelvar_tool {

namespace {

namespace fs = std::filesystem;

constexpr int kDeepest = 8;

bool endsWithAny(std::string_view name, std::initializer_list<std::string_view> suffixes) {
  return std::any_of(suffixes.begin(), suffixes.end(), [&](std::string_view suffix) { return name.ends_with(suffix); });
}
bool isClangs(std::string_view name) {
  return endsWithAny(name, {".opt.yaml", ".opt.yaml.gz", ".yaml", ".yaml.gz", ".yml"});
}
bool isGccs(std::string_view name) {
  return endsWithAny(name, {".opt-record.json.gz", ".opt-record.json"});
}
/// By the names that compilers give: a folder may hold other YAML and JSON files.
bool isRemarks(std::string_view name) {
  return isGccs(name) || endsWithAny(name, {".opt.yaml", ".opt.yaml.gz"});
}

/// Whether the file belongs to the program: `pixels.cpp.opt.yaml`, `app-pixels.opt.yaml` or `app.opt.yaml` for a
/// program `app` with the unit `pixels`.
bool isOf(const kelvar_readers::ProgramFacts& facts, const std::string& program, const std::string& name) {
  const std::string stem = name.substr(0, name.find('.'));
  const auto fits = [&](const std::string& unit) { return stem == unit || stem.ends_with("-" + unit); };
  return std::any_of(facts.units.begin(), facts.units.end(), fits) || stem == fs::path(program).stem().native();
}

template <class Take>
void walk(const fs::path& folder, int deepest, Take take) {
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code unreadable;
    if (entry.depth() >= deepest || entry->path().filename() == ".git") entry.disable_recursion_pending();
    if (entry->is_regular_file(unreadable)) take(entry->path());
  }
}

std::set<fs::path> namedFiles(const std::vector<std::string>& named) {
  std::set<fs::path> found;
  for (const std::string& one : named) {
    std::error_code error;
    if (fs::is_directory(one, error)) {
      walk(one, kDeepest, [&](const fs::path& file) {
        if (isRemarks(file.filename().native())) found.insert(file);
      });
    } else if (fs::exists(one, error)) {
      found.insert(one);
    } else {
      throw kelvar_platform::ReadError({.file = one, .place = "", .expected = "a file or a folder of remarks"});
    }
  }
  return found;
}

std::set<fs::path> filesAround(const std::string& program, const kelvar_readers::ProgramFacts& facts) {
  std::set<fs::path> found;
  const auto take = [&](const fs::path& file) {
    const std::string name = file.filename().native();
    std::error_code error;
    if (isRemarks(name) && isOf(facts, program, name)) found.insert(fs::weakly_canonical(file, error));
  };
  walk(fs::absolute(program).parent_path(), kDeepest, take);
  for (const std::string& folder : facts.folders) {
    if (!folder.empty()) walk(folder, 0, take);
  }
  return found;
}

/// Why the file seems to belong to another build; empty when it does not.
std::string otherBuild(const fs::path& file, const std::string& program) {
  constexpr std::chrono::seconds kTolerance(2);  // for coarse file times, and the time to write both files
  std::error_code error;
  const auto written = fs::last_write_time(file, error);
  const auto linked = fs::last_write_time(program, error);
  if (error) return {};
  if (written > linked + kTolerance) return "it is newer than " + program + ": link that again";
  std::string object = file.native();
  for (const std::string_view suffix : {".gz", ".yaml", ".json", ".opt", ".opt-record"}) {
    if (object.ends_with(suffix)) object.resize(object.size() - suffix.size());
  }
  const auto compiled = fs::last_write_time(object + ".o", error);
  if (!error && compiled > written + kTolerance) return "it is older than " + object + ".o: compile with remarks again";
  return {};
}

}  // namespace

RemarkFiles remarkFiles(const std::string& program, const kelvar_readers::ProgramFacts& facts,
                        const std::vector<std::string>& named) {
  RemarkFiles remarks;
  std::vector<std::string> clangs;
  std::vector<std::string> gccs;
  for (const fs::path& file : named.empty() ? filesAround(program, facts) : namedFiles(named)) {
    const std::string why = otherBuild(file, program);
    if (!why.empty()) {
      remarks.left.push_back(escaped(file.native()) + " is left out: " + escaped(why));
    } else if (isClangs(file.filename().native())) {
      clangs.push_back(file.native());
    } else {
      gccs.push_back(file.native());
    }
  }
  const bool areClangs = clangs.size() >= gccs.size();
  const std::vector<std::string>& others = areClangs ? gccs : clangs;
  if (!others.empty()) {
    remarks.left.push_back("remarks of another compiler are left out: " + escaped(others.front()) +
                           (others.size() > 1 ? " and " + std::to_string(others.size() - 1) + " more" : ""));
  }
  remarks.option = areClangs ? "--clang-remarks" : "--gcc-remarks";
  remarks.files = areClangs ? clangs : gccs;
  return remarks;
}

}  // namespace kelvar_tool
