#include <deque>
#include <map>
#include <set>
#include <utility>

#include "Analysis.h"
#include "Sources.h"
#include "Tally.h"

namespace kelvar_readers {

namespace {

class DependenciesAnalysis final : public Analysis {
 public:
  DependenciesAnalysis(Places& places, const Wishes&) : places_(places), tally_(places) {}

  /// A report comes as one record for each of its stacks, but counts once.
  void add(const Record& record) override {
    if (record.report != report_ || record.report == 0) endReport();
    report_ = record.report;
    // Copied, since the reader's frames live only during this call.
    Stack& stack = stacks_.emplace_back();
    stack.record = record;
    for (const Frame* const frame : record.stack) stack.frames.push_back(*frame);
    stack.record.stack.clear();
    for (const Frame& frame : stack.frames) stack.record.stack.push_back(&frame);
  }

  Outcome finish(const Reading&) override {
    endReport();
    Outcome outcome;
    for (std::size_t i = 0; i < tally_.sites().size(); ++i) {
      addRow(outcome, siteDetail(places_.regions()[i]), tally_.sites()[i]);
    }
    for (const FunctionRow& function : tally_.functions()) addRow(outcome, functionDetail(function), function.weights);
    addEvidence(outcome, tally_.sites().size());
    remarkPlaceless(tally_, reports_, outcome.remarks);
    return outcome;
  }

 private:
  struct Stack {
    Record record;
    std::deque<Frame> frames;
  };
  /// A finding; repeated reports of it are only counted.
  struct Found {
    kelvar_platform::Evidence evidence;
    std::set<std::size_t> sites;
    std::size_t function = kNone;
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  void endReport() {
    if (stacks_.empty()) return;
    ++reports_;
    std::set<std::size_t> sites;
    for (const Stack& stack : stacks_) {
      const auto regions = places_.regionsAt(stack.record.stack);
      sites.insert(regions.begin(), regions.end());
      (void)tally_.addToSites(stack.record);
    }
    keep(sites, sites.empty() ? addToFunction() : kNone);
    stacks_.clear();
  }

  std::size_t addToFunction() {
    for (const Stack& stack : stacks_) {
      const Place* const place = places_.ownPlace(stack.record.stack);
      if (!place) continue;
      const Frame frame{.chain = {*place}, .function = place->function};
      return tally_.addToFunction(frame, stack.record.weights);
    }
    tally_.addPlaceless(stacks_.front().record);
    return kNone;
  }

  /// Records a finding with one place of each of its stacks: the first one in a site, else the first of the project's
  /// own.
  void keep(const std::set<std::size_t>& sites, std::size_t function) {
    if (sites.empty() && function == kNone) return;
    kelvar_platform::Evidence one{.kind = kindOf(stacks_.front().record.weights)};
    for (const Stack& stack : stacks_) {
      const Words& words = stack.record.words;
      if (one.object.empty()) one.object = plainText(words.object);
      if (!words.text.empty()) one.text += (one.text.empty() ? "" : ", ") + plainText(words.text);
      if (const Place* const place = placeOf(stack.record.stack)) {
        one.places.push_back(evidencePlace(*place, places_, words.role));
      }
    }
    if (one.text.empty()) one.text = "reported by the tool";
    std::string key = std::to_string(static_cast<int>(one.kind)) + one.object;
    for (const auto& place : one.places) key += '\0' + place.role + place.file + ':' + std::to_string(place.line);
    const auto [known, isNew] = numbers_.try_emplace(key, found_.size());
    if (isNew) {
      found_.push_back({.evidence = std::move(one), .sites = sites, .function = function});
    } else {
      ++found_[known->second].evidence.count;
    }
  }

  const Place* placeOf(const std::vector<const Frame*>& stack) {
    for (const Frame* const frame : stack) {
      for (const Place& place : frame->chain) {
        if (!places_.regionsAt(place).empty()) return &place;
      }
    }
    const Place* const own = places_.ownPlace(stack);
    return own && !own->file.empty() ? own : nullptr;
  }

  static kelvar_platform::EvidenceKind kindOf(const Weights& weights) {
    if (weights[race] > 0) return kelvar_platform::EvidenceKind::race;
    return weights[lockOrder] > 0 ? kelvar_platform::EvidenceKind::lockOrder
                                  : kelvar_platform::EvidenceKind::otherFinding;
  }

  void addEvidence(Outcome& outcome, std::size_t sites) const {
    for (const Found& found : found_) {
      kelvar_platform::Evidence one = found.evidence;
      for (const std::size_t site : found.sites) {
        one.detail = static_cast<std::int32_t>(site);
        outcome.evidence.push_back(one);
      }
      if (found.function == kNone) continue;
      one.detail = static_cast<std::int32_t>(sites + found.function);
      outcome.evidence.push_back(one);
    }
  }

  static void addRow(Outcome& outcome, Detail detail, const Weights& weights) {
    detail.dependencies = {.errors = countOf(weights[race]),
                           .warnings = {countOf(weights[lockOrder]), countOf(weights[otherFinding])}};
    outcome.details.push_back(std::move(detail));
  }

  Places& places_;
  Tally tally_;
  std::deque<Stack> stacks_;  // of the current report
  std::vector<Found> found_;
  std::map<std::string, std::size_t> numbers_;
  std::size_t report_ = 0;
  std::size_t reports_ = 0;
};

}  // namespace

std::unique_ptr<Analysis> dependenciesOf(Places& places, const Wishes& wishes) {
  return std::make_unique<DependenciesAnalysis>(places, wishes);
}

}  // namespace kelvar_readers
