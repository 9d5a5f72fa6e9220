#include "Places.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

namespace kelvar_import {

namespace {

using Kind = sitenotes::annotation_t;

/// What begins a site, and what ends it. A task loop is a task to its end.
struct Pair {
  Kind::kind_t begin;
  Kind::kind_t end;
};
constexpr std::array kPairs{Pair{Kind::parallel, Kind::end_parallel}, Pair{Kind::task, Kind::end_task},
                            Pair{Kind::taskloop, Kind::end_task}, Pair{Kind::critical, Kind::end_critical}};

bool begins(Kind::kind_t kind) {
  return std::any_of(kPairs.begin(), kPairs.end(), [kind](const Pair& pair) { return pair.begin == kind; });
}

bool closes(Kind::kind_t end, Kind::kind_t begin) {
  return std::any_of(kPairs.begin(), kPairs.end(),
                     [=](const Pair& pair) { return pair.begin == begin && pair.end == end; });
}

bool isBelow(std::string_view path, std::string_view directory) {
  if (directory.ends_with('/')) directory.remove_suffix(1);
  return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

bool isSystemPath(std::string_view path) {
  constexpr std::array kSystem{"/usr", "/lib", "/lib64"};
  return std::any_of(kSystem.begin(), kSystem.end(), [path](const char* root) { return isBelow(path, root); });
}

}  // namespace

std::string_view leafOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

Places::Places(const std::vector<kelvar_platform::Site>& sites, PathRules rules) : rules_(std::move(rules)) {
  pairUp(sites);
  cutIntoSegments();
}

/// Within a file, an end closes the last site of its label that is still open.
void Places::pairUp(const std::vector<kelvar_platform::Site>& sites) {
  std::vector<const kelvar_platform::Site*> ordered;
  for (const kelvar_platform::Site& site : sites) {
    if (site.alive && !site.disabled) ordered.push_back(&site);
  }
  // At one line a site begins before it ends: the line may be all there is of it.
  const auto key = [](const kelvar_platform::Site* site) {
    return std::tuple(leafOf(site->file), site->line, !begins(site->kind), site->column, site->sequence);
  };
  std::sort(ordered.begin(), ordered.end(), [key](const auto* a, const auto* b) { return key(a) < key(b); });
  std::map<std::pair<std::string_view, std::string_view>, std::vector<std::size_t>> open;  // by leaf and label
  for (const kelvar_platform::Site* site : ordered) {
    // cppcheck-suppress iterators3; one list, found once
    std::vector<std::size_t>& waiting = open[{leafOf(site->file), site->label}];
    if (begins(site->kind)) {
      waiting.push_back(regions_.size());
      regions_.push_back({site->kind, site->label, site->file, site->line, 0, site->column});
      continue;
    }
    const auto closed = std::find_if(waiting.rbegin(), waiting.rend(),
                                     [&](std::size_t region) { return closes(site->kind, regions_[region].kind); });
    if (closed == waiting.rend()) continue;
    regions_[*closed].last = site->line;
    waiting.erase(std::next(closed).base());
  }
}

void Places::cutIntoSegments() {
  std::unordered_map<std::string, std::vector<std::size_t>> byLeaf;
  for (std::size_t i = 0; i < regions_.size(); ++i) {
    if (regions_[i].last > 0) byLeaf[std::string(leafOf(regions_[i].file))].push_back(i);
  }
  for (const auto& [leaf, inFile] : byLeaf) {
    std::set<std::int64_t> borders;
    for (const std::size_t region : inFile)
      borders.insert({regions_[region].first, std::int64_t{regions_[region].last} + 1});
    Segments& segments = segmentsByLeaf_[leaf];
    std::vector<std::size_t> active;
    auto next = inFile.begin();
    for (const std::int64_t line : borders) {
      std::erase_if(active, [&](std::size_t region) { return regions_[region].last < line; });
      for (; next != inFile.end() && regions_[*next].first <= line; ++next) active.push_back(*next);
      segments.push_back({line, {active.rbegin(), active.rend()}});
    }
  }
}

std::span<const std::size_t> Places::regionsAt(const Place& place) {
  return place.line > 0 ? regionsIn(fileNamed(place.file).segments, place.line) : std::span<const std::size_t>();
}

std::span<const std::size_t> Places::regionsAround(std::size_t region) const {
  const auto segments = segmentsByLeaf_.find(std::string(leafOf(regions_[region].file)));
  if (segments == segmentsByLeaf_.end() || regions_[region].last == 0) return {};
  return regionsIn(&segments->second, regions_[region].first);
}

std::span<const std::size_t> Places::regionsIn(const Segments* segments, int line) {
  if (!segments) return {};
  const auto after = std::upper_bound(segments->begin(), segments->end(), line,
                                      [](std::int64_t at, const Segment& segment) { return at < segment.line; });
  if (after == segments->begin()) return {};
  return std::prev(after)->regions;
}

std::span<const std::size_t> Places::regionsAt(const std::vector<Place>& stack) {
  for (const Place& place : stack) {
    if (const auto regions = regionsAt(place); !regions.empty()) return regions;
  }
  return {};
}

const Place* Places::ownPlace(const std::vector<Place>& stack) {
  const Place* first = nullptr;
  for (const Place& place : stack) {
    if (place.function.empty()) continue;
    if (!place.file.empty() && !isLibrary(place.file)) return &place;
    if (!first) first = &place;
  }
  return first;
}

const std::string& Places::pathOf(const std::string& file) {
  return fileNamed(file).path;
}

std::size_t Places::numberOf(const std::string& file) {
  return fileNamed(file).number;
}

bool Places::isLibrary(const std::string& file) {
  return fileNamed(file).library;
}

const Places::File& Places::fileNamed(const std::string& name) {
  if (last_ && *lastName_ == name) return *last_;
  auto found = files_.find(name);
  if (found == files_.end()) found = files_.emplace(name, described(name)).first;
  lastName_ = &found->first;
  last_ = &found->second;
  return *last_;
}

Places::File Places::described(const std::string& name) {
  File file{.path = mapped(name)};
  const auto [numbered, isNew] = numbers_.try_emplace(file.path, numbers_.size());
  if (isNew) paths_.push_back(&numbered->first);
  file.number = numbered->second;
  if (!name.empty()) {
    file.library = rules_.sourceRoot.empty() ? isSystemPath(file.path) : !isBelow(file.path, rules_.sourceRoot);
  }
  const auto segments = segmentsByLeaf_.find(std::string(leafOf(file.path)));
  if (segments != segmentsByLeaf_.end() && !file.library) file.segments = &segments->second;
  return file;
}

std::string Places::mapped(const std::string& name) const {
  for (const auto& [from, to] : rules_.prefixes) {
    if (!isBelow(name, from)) continue;
    const std::string rest = name.substr(from.ends_with('/') ? from.size() - 1 : from.size());
    return std::filesystem::path(to + rest).lexically_normal().native();
  }
  if (!name.empty() && name.front() != '/' && !rules_.sourceRoot.empty()) {
    return (std::filesystem::path(rules_.sourceRoot) / name).lexically_normal().native();
  }
  return name;
}

}  // namespace kelvar_import
