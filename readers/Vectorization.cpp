#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <tuple>

#include "Analysis.h"
#include "Demangle.h"
#include "LineTimes.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

enum State : int { scalar, vectorised, both };

/// A loop in the source; inlining may have made several copies of it.
struct Loop {
  std::string file;
  int line = 0;
  int column = 0;
  std::string function;
  std::map<std::string, bool> copies;  // by function: whether the copy there was vectorised
  std::set<std::string> widths;
  std::map<std::pair<bool, std::string>, std::int64_t> words;  // count by (vectorised, message)
  int end = 0;                                                 // the line after its last one
  double self = 0;                                             // without the loops in it
  double time = 0;
  int id = 0;
  std::vector<std::size_t> regions;  // innermost first

  [[nodiscard]] State state() const {
    const auto done = std::count_if(copies.begin(), copies.end(), [](const auto& copy) { return copy.second; });
    if (done == 0) return scalar;
    return static_cast<std::size_t>(done) == copies.size() ? vectorised : both;
  }
};

auto inSource(const Loop& loop) {
  return std::tuple(leafOf(loop.file), std::string_view(loop.file), loop.line);
}

/// Lines from the first to the one before the second.
using LineRange = std::pair<int, int>;

class Times {
 public:
  explicit Times(const std::vector<KeptLineTime>& lines) {
    for (const KeptLineTime& line : lines) {
      if (line.line == 0) {
        total_ = line.time;  // no sum: with inlined calls, several lines hold the same time
      } else {
        byLeaf_[std::string(leafOf(line.file))].insert({line.line, &line});
      }
    }
  }

  /// The time of the loop without what it has in `others`.
  [[nodiscard]] double of(const Loop& loop, const std::vector<LineRange>& others) const {
    const auto lines = byLeaf_.find(std::string(leafOf(loop.file)));
    if (lines == byLeaf_.end()) return 0;
    const auto begin = lines->second.lower_bound(loop.line);
    const auto behind = lines->second.lower_bound(std::max(loop.line, loop.end));
    std::set<std::string_view> functions;  // those that contain the loop: the ones on its first line with time
    bool outlined = false;
    for (auto at = begin; at != behind && at->first == begin->first; ++at) {
      functions.insert(at->second->function);
      outlined = outlined || at->second->function.starts_with(kOutlined);
    }
    const bool wrapped = outlined && std::any_of(begin, behind, [](const auto& line) { return isBody(line.second); });
    double time = 0;
    for (auto at = begin; at != behind; ++at) {
      if (isIn(others, at->first)) continue;
      const std::string& function = at->second->function;
      const bool counts =
          wrapped && function.starts_with(kOutlined) ? isBody(at->second) : functions.contains(function);
      if (counts) time += at->second->time;
    }
    return time;
  }
  static bool isIn(const std::vector<LineRange>& ranges, int line) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [line](const LineRange& range) { return range.first <= line && line < range.second; });
  }
  [[nodiscard]] double shareOf(double time) const { return total_ > 0 ? time / total_ : 0; }
  [[nodiscard]] bool known() const { return !byLeaf_.empty(); }

 private:
  // With -g, clang puts a parallel region into one function, and another one around it that only hands on its
  // arguments: at the line of the region, that has the time of the whole region again.
  static constexpr std::string_view kOutlined = ".omp_outlined.";
  static bool isBody(const KeptLineTime* line) { return line->function.starts_with(".omp_outlined._debug__"); }

  std::map<std::string, std::multimap<int, const KeptLineTime*>, std::less<>> byLeaf_;
  double total_ = 0;
};

class VectorizationAnalysis final : public Analysis {
 public:
  VectorizationAnalysis(Places& places, const Wishes& wishes)
      : places_(places),
        lastLineOfLoop_(wishes.lastLineOfLoop),
        lines_(readLineTimes(wishes.project + "/" + kLineTimesFile)),
        times_(lines_) {}

  void add(const Record& record) override {
    const Place& place = record.stack.front()->chain.front();
    if (sum(record.weights) == 0) {
      addReason(place, record);
      return;
    }
    ++records_;
    if (place.file.empty() || place.line == 0) {
      ++placeless_;
    } else if (places_.isLibrary(place.file)) {
      ++inLibraries_;
    } else {
      addToLoop(place, record);
    }
  }

  Outcome finish(const Reading&) override {
    std::vector<Loop> loops = takeLoops();
    Outcome outcome;
    for (const Loop& loop : loops) {
      outcome.details.emplace_back(loopDetail(loop));
      addEvidence({places_.numberOf(loop.file), loop.line}, loop, outcome.details.size() - 1, outcome);
    }
    if (loops.empty()) outcome.emptiness = "no remark is about a loop of the project";
    addSites(loops, outcome);
    if (!times_.known()) {
      outcome.remarks.emplace_back(
          "the project has no survey of its lines, so the loops have no times: import one first");
    }
    if (placeless_ > 0) {
      outcome.remarks.push_back(std::to_string(placeless_) + " of " + std::to_string(records_) +
                                " remarks have no place, so they are in no row");
    }
    if (inLibraries_ > 0)
      outcome.remarks.push_back(std::to_string(inLibraries_) + " loops of libraries are not listed");
    return outcome;
  }

 private:
  void addToLoop(const Place& place, const Record& record) {
    Loop& loop = loops_[{places_.numberOf(place.file), place.line}];
    if (loop.line == 0) {
      loop.file = places_.pathOf(place.file);
      loop.line = place.line;
      loop.column = place.column;
      loop.function = plainName(place.function);
      const auto regions = places_.regionsAt(place);
      loop.regions.assign(regions.begin(), regions.end());
    }
    loop.column = std::min(loop.column, place.column);
    const bool done = record.weights[0] > 0;
    bool& copy = loop.copies[place.function];
    copy = copy || done;
    if (done) loop.widths.insert(record.note);
    if (!record.words.text.empty()) ++loop.words[{done, plainText(record.words.text)}];
  }

  /// The reason comes as a remark of its own, before the one that says that the loop is not vectorised.
  void addReason(const Place& place, const Record& record) {
    if (place.line == 0 || places_.isLibrary(place.file)) return;
    ++reasons_[{places_.numberOf(place.file), place.line}][plainText(record.words.text)];
  }

  /// The compiler's words about a loop: why it is not vectorised, or how it is.
  void addEvidence(const std::pair<std::size_t, int>& key, const Loop& loop, std::size_t detail,
                   Outcome& outcome) const {
    const auto say = [&](bool done, const std::string& text, std::int64_t count) {
      using kelvar_platform::EvidenceKind;
      outcome.evidence.push_back({.detail = static_cast<std::int32_t>(detail),
                                  .kind = done ? EvidenceKind::vectorized : EvidenceKind::missed,
                                  .text = text,
                                  .count = count,
                                  .places = {{.role = "loop",
                                              .file = plainText(loop.file),
                                              .line = loop.line,
                                              .column = loop.column,
                                              .function = plainText(loop.function)}}});
    };
    const auto reasons = loop.state() == vectorised ? reasons_.end() : reasons_.find(key);
    if (reasons != reasons_.end()) {
      for (const auto& [text, count] : reasons->second) say(false, text, count);
    }
    for (const auto& [words, count] : loop.words) {
      if (words.first || reasons == reasons_.end()) say(words.first, words.second, count);
    }
  }

  /// The loops in source order, with their times; they are numbered by time, the slowest first.
  std::vector<Loop> takeLoops() {
    std::vector<Loop> loops;
    for (auto& [key, loop] : loops_) loops.push_back(std::move(loop));
    std::sort(loops.begin(), loops.end(), [](const Loop& a, const Loop& b) { return inSource(a) < inSource(b); });
    std::vector<Loop*> byTime;
    for (std::size_t i = 0; i < loops.size(); ++i) {
      loops[i].end = endOf(loops, i);
      byTime.push_back(&loops[i]);
    }
    for (std::size_t i = 0; i < loops.size(); ++i) {
      std::vector<LineRange> inner;
      for (std::size_t j = i + 1; j < loops.size() && loops[j].file == loops[i].file && loops[j].line < loops[i].end;
           ++j) {
        inner.emplace_back(loops[j].line, loops[j].end);
      }
      loops[i].time = times_.of(loops[i], {});
      loops[i].self = times_.of(loops[i], inner);
    }
    std::stable_sort(byTime.begin(), byTime.end(), [](const Loop* a, const Loop* b) { return a->time > b->time; });
    for (std::size_t i = 0; i < byTime.size(); ++i) byTime[i]->id = static_cast<int>(i) + 1;
    return loops;
  }

  /// Remarks tell where a loop begins, not where it ends. Where its source does not tell either, it is taken to reach
  /// to the next loop of its file, and not out of the site around it.
  [[nodiscard]] int endOf(const std::vector<Loop>& loops, std::size_t index) const {
    const Loop& loop = loops[index];
    const int last = lastLineOfLoop_ ? lastLineOfLoop_(loop.file, loop.line, loop.column) : 0;
    if (last >= loop.line) return last + 1;
    int end = std::numeric_limits<int>::max();
    if (index + 1 < loops.size() && loops[index + 1].file == loop.file) end = loops[index + 1].line;
    for (const std::size_t region : loop.regions) end = std::min(end, places_.regions()[region].last + 1);
    return end;
  }

  [[nodiscard]] kelvar_platform::SurveyVectorizationRecord recordOf(const Loop& loop, State state) const {
    const int priority = state == vectorised ? 0 : 4 - priorityOf(times_.shareOf(loop.time));
    return {.selfTime = loop.self, .totalTime = loop.time, .state = state, .id = loop.id, .priority = priority};
  }

  [[nodiscard]] Detail loopDetail(const Loop& loop) const {
    Detail detail;
    detail.detailKind = digestio::kLoop;
    for (const std::string& width : loop.widths) detail.label += (detail.label.empty() ? "" : ",") + width;
    if (loop.state() != vectorised) detail.label += detail.label.empty() ? "x1" : ",x1";
    detail.label += " " + loop.function;
    detail.file = loop.file;
    detail.line = loop.line;
    detail.column = loop.column;
    detail.surveyVectorization = recordOf(loop, loop.state());
    return detail;
  }

  /// A site's row has the times and the number of its hottest loop; its state covers all its loops. Among nested sites
  /// of one kind, only the innermost gets a row: the join of the result would take two neighbouring rows of one kind,
  /// with no loop between them, for one site.
  void addSites(const std::vector<Loop>& loops, Outcome& outcome) const {
    std::map<std::size_t, std::vector<const Loop*>> bySite;
    for (const Loop& loop : loops) {
      std::set<int> kinds;
      for (const std::size_t region : loop.regions) {
        if (kinds.insert(places_.regions()[region].kind).second) bySite[region].push_back(&loop);
      }
    }
    for (const auto& [region, inSite] : bySite) {
      const Loop* const hottest = *std::max_element(inSite.begin(), inSite.end(), [](const Loop* a, const Loop* b) {
        return std::tuple(a->time, -a->id) < std::tuple(b->time, -b->id);
      });
      Detail detail = siteDetail(places_.regions()[region]);
      detail.surveyVectorization = recordOf(*hottest, stateOf(inSite));
      outcome.details.push_back(std::move(detail));
      for (const Loop* const loop : inSite) {
        addEvidence({places_.numberOf(loop->file), loop->line}, *loop, outcome.details.size() - 1, outcome);
      }
    }
  }

  static State stateOf(const std::vector<const Loop*>& loops) {
    const State first = loops.front()->state();
    const bool same = std::all_of(loops.begin(), loops.end(), [=](const Loop* loop) { return loop->state() == first; });
    return same ? first : both;
  }

  Places& places_;
  std::function<int(const std::string&, int, int)> lastLineOfLoop_;
  std::vector<KeptLineTime> lines_;
  Times times_;
  std::map<std::pair<std::size_t, int>, Loop> loops_;
  std::map<std::pair<std::size_t, int>, std::map<std::string, std::int64_t>> reasons_;  // by place
  std::size_t records_ = 0;
  std::size_t placeless_ = 0;
  std::size_t inLibraries_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> vectorizationOf(Places& places, const Wishes& wishes) {
  return std::make_unique<VectorizationAnalysis>(places, wishes);
}

}  // namespace kelvar_readers
