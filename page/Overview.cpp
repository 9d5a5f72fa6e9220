// Regions are found file by file, with the annotations sorted by line. The first pass closes each region by the end
// annotation with its label, else with its kind, using a stack of open regions. The second pass nests the regions,
// using a stack of those that reach to the line. A region that is never closed contains nothing. The sort takes O(n log
// n), the passes O(1) for each mark unless regions overlap irregularly.
#include "Overview.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <tuple>

#include "PathTail.h"
#include "RegionKinds.h"

namespace kelvar_page {

using kelvar_2_1_7::endOf;

struct Overview::Mark {
  std::string_view file;  // lives as long as the process
  int line;
  sitenotes::annotation_t::kind_t kind;
  bool end;
  unsigned long handle;
  std::string label;
  double time;
  int lastLine = 0;
};

Overview::Overview(const kelvar::SummaryData& data, const std::function<void(const Site&)>& look) {
  std::vector<Mark> marks;
  BySpelling bySpelling;
  std::vector<kelvar::SummaryItem*>* sameFile = nullptr;  // rows come file by file, mostly
  toolbelt::path_t before;
  double functions = 0;
  double loops = 0;
  rows_ = data.num_items();
  sites_.reserve(static_cast<std::size_t>(rows_));
  for (int index = 0; index < data.num_items(); ++index) {
    const Site site = siteOf(*data.item(index));
    if (look) look(site);
    if (const toolbelt::path_t file = site.place.get_file(); !file.empty()) {
      if (!sameFile || !(before == file)) sameFile = &bySpelling[file.get_text()];
      before = file;
      sameFile->push_back(data.item(index));
    }
    if (site.handle != 0) sites_.emplace(site.handle, data.item(index));
    anyCurrent_ = anyCurrent_ || site.current;
    if (site.sort == SiteSort::function) functions += site.surveyTime.value_or(0);
    if (site.sort == SiteSort::loop) loops += site.own.value_or(0);
    const auto kind = static_cast<std::size_t>(site.kind);
    if (site.sort == SiteSort::annotated && kind < kinds_.size()) kinds_[kind] = true;
    if (site.sort != SiteSort::annotated || site.handle == 0 || site.place.get_file().empty()) continue;
    marks.push_back({.file = site.place.get_file().get_text(),
                     .line = site.place.get_line(),
                     .kind = site.kind,
                     .end = isEnd(site),
                     .handle = site.handle,
                     .label = site.label,
                     .time = site.time.value_or(0)});
  }
  uniteFiles(std::move(bySpelling));
  nest(marks);
  double outermost = 0;
  for (const Mark& mark : marks) {
    const auto region = regions_.find(mark.handle);
    if (!mark.end && (region == regions_.end() || region->second.depth == 0)) outermost += mark.time;
  }
  wholes_ = {functions, outermost, loops};
  whole_ = *std::max_element(wholes_.begin(), wholes_.end());
}

// Spellings that are tails of one longest spelling are united under it. If they are tails of two different ones, they
// stay separate.
void Overview::uniteFiles(BySpelling&& bySpelling) {
  std::unordered_map<std::string, std::vector<std::string>> byLeaf;
  std::unordered_map<std::string_view, std::string> normal;
  for (const auto& [spelling, rows] : bySpelling) {
    std::string path = std::filesystem::path(spelling).lexically_normal().native();
    std::vector<std::string>& alike = byLeaf[path.substr(path.rfind('/') + 1)];
    if (std::find(alike.begin(), alike.end(), path) == alike.end()) alike.push_back(path);
    normal.emplace(spelling, std::move(path));
  }
  constexpr std::size_t kFew = 16;  // if more files share a name, most of them are different files
  for (auto& [spelling, rows] : bySpelling) {
    const std::string& path = normal[spelling];
    const std::vector<std::string>& alike = byLeaf[path.substr(path.rfind('/') + 1)];
    const std::string* longer = nullptr;
    bool differ = false;
    for (std::size_t at = 0; at < alike.size() && alike.size() <= kFew; ++at) {
      if (alike[at] == path || !isPathTail(path, alike[at])) continue;
      if (longer && !longer->ends_with(alike[at]) && !alike[at].ends_with(*longer)) differ = true;
      if (!longer || alike[at].size() > longer->size()) longer = &alike[at];
    }
    const std::string& one = longer && !differ ? *longer : path;
    spellings_.emplace(std::string(spelling), one);
    spellings_.emplace(one, one);
    std::vector<kelvar::SummaryItem*>& all = files_[one];
    all.insert(all.end(), rows.begin(), rows.end());
  }
}

void Overview::nest(std::vector<Mark>& marks) {
  const auto place = [](const Mark& mark) { return std::tuple(mark.file, mark.line, mark.end, mark.handle); };
  std::sort(marks.begin(), marks.end(), [&](const Mark& a, const Mark& b) { return place(a) < place(b); });
  closeRegions(marks);
  nestRegions(marks);
}

void Overview::closeRegions(std::vector<Mark>& marks) {
  std::vector<Mark*> open;
  const Mark* before = nullptr;
  for (Mark& mark : marks) {
    if (before && before->file != mark.file) open.clear();
    before = &mark;
    if (!mark.end) {
      if (endOf(mark.kind)) open.push_back(&mark);
      continue;
    }
    const auto closes = [&](const Mark* one) { return endOf(one->kind) == mark.kind; };
    auto found = std::find_if(open.rbegin(), open.rend(),
                              [&](const Mark* one) { return closes(one) && one->label == mark.label; });
    if (found == open.rend()) found = std::find_if(open.rbegin(), open.rend(), closes);
    if (found == open.rend()) continue;
    (*found)->lastLine = mark.line;
    open.erase(std::prev(found.base()), open.end());
  }
}

void Overview::nestRegions(const std::vector<Mark>& marks) {
  std::vector<const Mark*> open;
  const Mark* before = nullptr;
  for (const Mark& mark : marks) {
    if (before && before->file != mark.file) open.clear();
    before = &mark;
    if (mark.end) continue;
    while (!open.empty() && open.back()->lastLine < mark.line) open.pop_back();
    if (mark.lastLine == 0 && open.empty()) continue;
    Region& region = regions_[mark.handle];
    region.lastLine = mark.lastLine;
    if (!open.empty()) {
      region.outer = open.back()->handle;
      Region& outer = regions_[open.back()->handle];
      outer.nested += mark.time;
      regions_[mark.handle].depth = outer.depth + 1;
    }
    if (mark.lastLine != 0) open.push_back(&mark);
  }
}

const std::vector<kelvar::SummaryItem*>& Overview::rowsIn(const std::string& file) const noexcept {
  static const std::vector<kelvar::SummaryItem*> kNone;
  const auto found = files_.find(spellingOf(file));
  return found != files_.end() ? found->second : kNone;
}

const std::string& Overview::spellingOf(const std::string& path) const noexcept {
  const auto spelling = spellings_.find(path);
  return spelling != spellings_.end() ? spelling->second : path;
}

kelvar::SummaryItem* Overview::itemOf(const std::string& key) const noexcept {
  unsigned long handle = 0;
  const auto [end, error] = std::from_chars(key.data() + 1, key.data() + key.size(), handle);
  const auto found = error == std::errc() && end == key.data() + key.size() ? sites_.find(handle) : sites_.end();
  return found != sites_.end() ? found->second : nullptr;
}

const Region& Overview::regionOf(const Site& site) const noexcept {
  static const Region kAlone;
  const auto found = site.handle != 0 ? regions_.find(site.handle) : regions_.end();
  return found != regions_.end() ? found->second : kAlone;
}

std::optional<double> Overview::shareOf(const Site& site) const noexcept {
  if (!site.time || whole_ <= 0) return std::nullopt;
  return *site.time / whole_;
}

std::optional<double> Overview::ownTimeOf(const Site& site) const noexcept {
  if (site.own || !site.time) return site.own;
  return std::max(0.0, *site.time - regionOf(site).nested);
}

}  // namespace kelvar_page
