// Walks over the places of a file in the order of lines, with a stack of the open ones. A place is added to the node
// around it when it closes, since only then everything inside it is known. O(n log n) for the sort.
#include "TimeTree.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace kelvar_page {

namespace {

// Deeper regions are counted in the last one that is shown. This also bounds recursive walks over the tree.
constexpr std::size_t kDeepest = 16;

struct Open {
  TimeNode node;
  int last = 0;
  bool function = false;
};

void longestFirst(std::vector<TimeNode>& nodes) {
  std::stable_sort(nodes.begin(), nodes.end(), [](const TimeNode& a, const TimeNode& b) { return a.time > b.time; });
}

// With times of two analyses, or with truncated stacks, the parts inside may have more time than the outer place.
void sumUp(TimeNode& node) {
  double inner = 0;
  for (const TimeNode& one : node.within) inner += one.time;
  node.own = std::max(0.0, node.time - inner);
  node.time = std::max(node.time, inner);
  longestFirst(node.within);
}

class Nesting {
 public:
  void add(TimedPlace&& place) {
    closeBefore(place.first);
    if (place.function && !open_.empty() && open_.back().function) close();
    if (open_.size() >= kDeepest) return;
    const int end = place.function ? std::numeric_limits<int>::max() : std::max(place.first, place.last);
    open_.push_back({.node = {.key = std::move(place.key),
                              .label = std::move(place.label),
                              .time = place.time,
                              .races = place.races},
                     .last = end,
                     .function = place.function});
  }

  [[nodiscard]] std::vector<TimeNode> finished() {
    while (!open_.empty()) close();
    longestFirst(outermost_);
    return std::move(outermost_);
  }

 private:
  void closeBefore(int line) {
    const auto ended = std::find_if(open_.begin(), open_.end(), [&](const Open& one) { return one.last < line; });
    const auto kept = static_cast<std::size_t>(ended - open_.begin());
    while (open_.size() > kept) close();
  }

  void close() {
    TimeNode node = std::move(open_.back().node);
    open_.pop_back();
    sumUp(node);
    if (node.time <= 0) return;
    (open_.empty() ? outermost_ : open_.back().node.within).push_back(std::move(node));
  }

  std::vector<Open> open_;
  std::vector<TimeNode> outermost_;
};

// Loops are part of functions, which have rows of their own; end annotations have no time.
bool isPlace(const Site& site) {
  return site.sort != SiteSort::loop && !isEnd(site) && site.time.has_value();
}

}  // namespace

std::vector<TimeNode> nestedPlaces(std::vector<TimedPlace> places) {
  // On one line, a function comes before a region, and a longer region before a shorter one.
  std::stable_sort(places.begin(), places.end(), [](const TimedPlace& a, const TimedPlace& b) {
    return std::tuple(a.first, !a.function, -a.last) < std::tuple(b.first, !b.function, -b.last);
  });
  Nesting nesting;
  for (TimedPlace& place : places) nesting.add(std::move(place));
  return nesting.finished();
}

std::vector<TimeFile> timeTreeOf(const Overview& overview) {
  std::vector<TimeFile> files;
  for (const auto& [name, rows] : overview.files()) {
    std::vector<TimedPlace> places;
    for (kelvar::SummaryItem* const item : rows) {
      const Site site = siteOf(*item);
      if (!isPlace(site)) continue;
      places.push_back({.key = keyOf(site),
                        .label = site.label,
                        .time = *site.time,
                        .first = site.place.get_line(),
                        .last = overview.regionOf(site).lastLine,
                        .function = site.sort == SiteSort::function,
                        .races = site.races.value_or(0) > 0});
    }
    TimeFile file{.file = name, .time = 0, .nodes = nestedPlaces(std::move(places))};
    for (const TimeNode& node : file.nodes) file.time += node.time;
    if (file.time > 0) files.push_back(std::move(file));
  }
  std::stable_sort(files.begin(), files.end(), [](const TimeFile& a, const TimeFile& b) { return a.time > b.time; });
  return files;
}

}  // namespace kelvar_page
