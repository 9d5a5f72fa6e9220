#include "Places.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

#include "Diagnosis.h"

namespace kelvar_readers {

namespace {

using Kind = sitenotes::annotation_t;

/// The annotation kinds that begin and end a site. A task loop is ended like a task.
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

/// The components of a path, without `.` and `..`.
std::vector<std::string> componentsOf(const std::string& path) {
  std::vector<std::string> components;
  for (const std::filesystem::path& component : std::filesystem::path(path).lexically_normal()) {
    if (!component.empty() && component != "/" && component != ".") components.push_back(component.native());
  }
  return components;
}

/// The number of equal components at the ends of two paths.
std::size_t commonTail(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  const auto [at, other] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  return static_cast<std::size_t>(at - a.rbegin());
}

}  // namespace

std::string_view leafOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

Places::Places(const std::vector<kelvar_platform::Site>& sites, PathRules rules) : rules_(std::move(rules)) {
  if (!rules_.sourceRoot.empty()) {
    fullRoot_ = std::filesystem::absolute(rules_.sourceRoot).lexically_normal().native();
  }
  pairUp(sites);
  cutIntoSegments();
}

/// Within a file, an end annotation closes the latest site of its label that is still open.
void Places::pairUp(const std::vector<kelvar_platform::Site>& sites) {
  std::vector<const kelvar_platform::Site*> ordered;
  for (const kelvar_platform::Site& site : sites) {
    if (site.alive && !site.disabled) ordered.push_back(&site);
  }
  // On one line, beginnings come before ends: a site may consist of a single line.
  const auto key = [](const kelvar_platform::Site* site) {
    return std::tuple(leafOf(site->file), std::string_view(site->file), site->line, !begins(site->kind), site->column,
                      site->sequence);
  };
  std::sort(ordered.begin(), ordered.end(), [key](const auto* a, const auto* b) { return key(a) < key(b); });
  std::map<std::pair<std::string_view, std::string_view>, std::vector<std::size_t>> open;  // by file and label
  for (const kelvar_platform::Site* site : ordered) {
    // cppcheck-suppress iterators3; both iterators are of the same list
    std::vector<std::size_t>& waiting = open[{site->file, site->label}];
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
  std::map<std::string, std::vector<std::size_t>> byFile;
  for (std::size_t i = 0; i < regions_.size(); ++i) {
    if (regions_[i].last > 0) byFile[regions_[i].file].push_back(i);
  }
  for (const auto& [file, inFile] : byFile) {
    Annotated annotated{.path = file, .components = componentsOf(file), .segments = {}};
    std::set<std::int64_t> borders;
    for (const std::size_t region : inFile)
      borders.insert({regions_[region].first, std::int64_t{regions_[region].last} + 1});
    std::vector<std::size_t> active;
    auto next = inFile.begin();
    for (const std::int64_t line : borders) {
      std::erase_if(active, [&](std::size_t region) { return regions_[region].last < line; });
      for (; next != inFile.end() && regions_[*next].first <= line; ++next) active.push_back(*next);
      annotated.segments.push_back({line, {active.rbegin(), active.rend()}});
    }
    byLeaf_[std::string(leafOf(file))].push_back(std::move(annotated));
  }
}

/// The segments of the annotated file that the path refers to; null when it refers to none.
const Places::Segments* Places::segmentsOf(const std::string& path) const {
  const auto found = byLeaf_.find(std::string(leafOf(path)));
  if (found == byLeaf_.end()) return nullptr;
  const std::vector<std::string> components = componentsOf(path);
  const Annotated* best = nullptr;
  const Annotated* second = nullptr;
  std::size_t longest = 0;
  for (const Annotated& one : found->second) {
    const std::size_t tail = commonTail(components, one.components);
    if (tail == 0) continue;
    // With several annotated files of this name, the name alone is not enough: a folder must match too, unless one path
    // is a tail of the other.
    const bool bothKnowMore = tail < components.size() && tail < one.components.size();
    if (bothKnowMore && tail == 1 && found->second.size() > 1) continue;
    if (tail > longest) {
      best = &one;
      second = nullptr;
      longest = tail;
    } else if (tail == longest) {
      second = &one;
    }
  }
  if (second) {
    throw kelvar_platform::ReadError({.file = path,
                                      .place = "",
                                      .expected = "one annotated file of this name: it may be " + best->path + " or " +
                                                  second->path + "; tell them apart by --map-path"});
  }
  return best ? &best->segments : nullptr;
}

std::span<const std::size_t> Places::regionsAt(const Place& place) {
  return place.line > 0 ? regionsIn(fileNamed(place.file).segments, place.line) : std::span<const std::size_t>();
}

std::span<const std::size_t> Places::regionsAround(std::size_t region) const {
  if (regions_[region].last == 0) return {};
  const auto inLeaf = byLeaf_.find(std::string(leafOf(regions_[region].file)));
  if (inLeaf == byLeaf_.end()) return {};
  for (const Annotated& one : inLeaf->second) {
    if (one.path == regions_[region].file) return regionsIn(&one.segments, regions_[region].first);
  }
  return {};
}

std::span<const std::size_t> Places::regionsIn(const Segments* segments, int line) {
  if (!segments) return {};
  const auto after = std::upper_bound(segments->begin(), segments->end(), line,
                                      [](std::int64_t at, const Segment& segment) { return at < segment.line; });
  if (after == segments->begin()) return {};
  return std::prev(after)->regions;
}

std::span<const std::size_t> Places::regionsAt(const std::vector<const Frame*>& stack) {
  for (const Frame* const frame : stack) {
    if (frame->id != 0 && regionsOf(*frame).empty()) continue;
    for (const Place& place : frame->chain) {
      if (const auto regions = regionsAt(place); !regions.empty()) return regions;
    }
  }
  return {};
}

const std::vector<std::size_t>& Places::regionsOf(const Frame& frame) {
  if (frame.id >= ofFrames_.size()) ofFrames_.resize(std::max<std::size_t>(frame.id + 1, 2 * ofFrames_.size()));
  Known& known = ofFrames_[frame.id];
  if (known.asked && frame.id != 0) return known.regions;
  known.asked = true;
  known.regions.clear();
  for (const Place& place : frame.chain) {
    for (const std::size_t region : regionsAt(place)) {
      const auto& all = known.regions;
      if (std::find(all.begin(), all.end(), region) == all.end()) known.regions.push_back(region);
    }
  }
  return known.regions;
}

const Place* Places::ownPlace(const std::vector<const Frame*>& stack) {
  const Place* first = nullptr;
  for (const Frame* const frame : stack) {
    for (const Place& place : frame->chain) {
      if (place.function.empty()) continue;
      if (!place.file.empty() && !isLibrary(place.file)) return &place;
      if (!first) first = &place;
    }
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
    file.library = rules_.sourceRoot.empty() ? isSystemPath(file.path) : !isBelowRoot(file.path);
  }
  if (!file.library) file.segments = segmentsOf(file.path);
  return file;
}

/// The root may be relative while debug information has full paths, so both forms are compared.
bool Places::isBelowRoot(const std::string& path) const {
  if (isBelow(path, rules_.sourceRoot)) return true;
  const std::filesystem::path full = std::filesystem::absolute(path).lexically_normal();
  return isBelow(full.native(), fullRoot_);
}

std::string Places::mapped(const std::string& name) const {
  for (const auto& [from, to] : rules_.prefixes) {
    if (!isBelow(name, from)) continue;
    const std::size_t rest = name.find_first_not_of('/', std::min(name.size(), from.size()));
    if (rest == std::string::npos) return to;
    return (std::filesystem::path(to) / name.substr(rest)).lexically_normal().native();
  }
  if (!name.empty() && name.front() != '/' && !rules_.sourceRoot.empty()) {
    return (std::filesystem::path(rules_.sourceRoot) / name).lexically_normal().native();
  }
  return name.find("/.") == std::string::npos && !name.starts_with("./")
             ? name
             : std::filesystem::path(name).lexically_normal().native();
}

}  // namespace kelvar_readers
