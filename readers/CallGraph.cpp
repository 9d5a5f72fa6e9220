#include "CallGraph.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace kelvar_readers {

void CallGraph::grow(std::size_t function) {
  if (function >= self_.size()) self_.resize(function + 1);
}

void CallGraph::addSelf(std::size_t function, double cost, const std::vector<std::size_t>& sites) {
  grow(function);
  self_[function] += cost;
  for (const std::size_t site : sites) {
    if (site >= sites_.size()) sites_.resize(site + 1);
    sites_[site][function].self += cost;
  }
}

void CallGraph::addCall(std::size_t caller, std::size_t callee, double cost, const std::vector<std::size_t>& sites) {
  grow(std::max(caller, callee));
  calls_.push_back({caller, callee, cost});
  for (const std::size_t site : sites) {
    if (site >= sites_.size()) sites_.resize(site + 1);
    sites_[site][caller].calls.push_back(calls_.size() - 1);
  }
}

std::vector<double> CallGraph::timesOfSites(std::size_t count) {
  findGroups();
  orderCalls();
  sites_.resize(std::max(count, sites_.size()));
  std::vector<double> times;
  for (std::size_t site = 0; site < count; ++site) times.push_back(timeOf(sites_[site]));
  return times;
}

/// Tarjan's strongly connected components. Without recursion: call graphs can be deeper than our stack.
void CallGraph::findGroups() {
  constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
  const std::size_t size = self_.size();
  std::vector<std::vector<std::size_t>> callees(size);
  for (const Call& call : calls_) callees[call.caller].push_back(call.callee);
  groups_.assign(size, kNone);
  std::vector<std::size_t> found(size, kNone);
  std::vector<std::size_t> lowest(size);
  std::vector<std::size_t> next(size);
  std::vector<std::size_t> open;
  std::vector<std::size_t> path;
  std::size_t time = 0;
  std::size_t groups = 0;
  const auto enter = [&](std::size_t function) {
    found[function] = lowest[function] = time++;
    open.push_back(function);
    path.push_back(function);
  };
  for (std::size_t root = 0; root < size; ++root) {
    if (found[root] != kNone) continue;
    enter(root);
    while (!path.empty()) {
      const std::size_t here = path.back();
      if (next[here] < callees[here].size()) {
        const std::size_t callee = callees[here][next[here]++];
        if (found[callee] == kNone) {
          enter(callee);
        } else if (groups_[callee] == kNone) {
          lowest[here] = std::min(lowest[here], found[callee]);
        }
        continue;
      }
      path.pop_back();
      if (!path.empty()) lowest[path.back()] = std::min(lowest[path.back()], lowest[here]);
      if (lowest[here] != found[here]) continue;
      for (std::size_t member = kNone; member != here;) {
        member = open.back();
        open.pop_back();
        groups_[member] = groups;
      }
      ++groups;
    }
  }
  selfOfGroup_.assign(groups, 0);
  for (std::size_t function = 0; function < size; ++function) selfOfGroup_[groups_[function]] += self_[function];
}

void CallGraph::orderCalls() {
  into_.assign(selfOfGroup_.size(), 0);
  outOfGroup_.assign(selfOfGroup_.size(), {});
  for (std::size_t i = 0; i < calls_.size(); ++i) {
    const std::size_t from = groups_[calls_[i].caller];
    const std::size_t to = groups_[calls_[i].callee];
    if (from == to) continue;
    into_[to] += calls_[i].cost;
    outOfGroup_[from].push_back(i);
  }
}

std::map<std::size_t, CallGraph::Part, std::greater<>> CallGraph::byGroup(const Parts& parts) const {
  std::map<std::size_t, Part, std::greater<>> groups;
  for (const auto& [function, part] : parts) {
    Part& whole = groups[groups_[function]];
    whole.self += part.self;
    whole.calls.insert(whole.calls.end(), part.calls.begin(), part.calls.end());
  }
  return groups;
}

bool CallGraph::isRecursive(const Part& part) const {
  return std::any_of(part.calls.begin(), part.calls.end(),
                     [this](std::size_t call) { return groups_[calls_[call].caller] == groups_[calls_[call].callee]; });
}

/// By group, the most that its calls may lead back to the site. The file does not say which calls of a shared function
/// do; but code of a site that is called from elsewhere is mostly a body that the site hands over, for example to a
/// runtime that starts threads.
std::vector<double> CallGraph::leadingBack(const std::map<std::size_t, Part, std::greater<>>& parts) const {
  std::vector<double> back(into_.size());
  const std::size_t highest = parts.begin()->first;
  for (std::size_t group = parts.rbegin()->first; group < highest; ++group) {
    if (parts.contains(group)) {
      back[group] = into_[group];
      continue;
    }
    for (const std::size_t call : outOfGroup_[group]) {
      back[group] += std::min(calls_[call].cost, back[groups_[calls_[call].callee]]);
    }
  }
  return back;
}

/// Walks from callers to callees and works out which share of each group runs on behalf of the site. That share is
/// already in the cost of the site's calls, so only the rest of the group's part in the site is added.
double CallGraph::timeOf(const Parts& parts) const {
  std::map<std::size_t, Part, std::greater<>> open = byGroup(parts);
  if (std::all_of(open.begin(), open.end(), [](const auto& one) { return one.second.calls.empty(); })) {
    double self = 0;
    for (const auto& [group, part] : open) self += part.self;
    return self;
  }
  const std::vector<double> back = leadingBack(open);
  std::map<std::size_t, double> below;  // by group: the cost of calls into it that come from the site
  double time = 0;
  while (!open.empty()) {
    const std::size_t group = open.begin()->first;
    Part part = std::move(open.begin()->second);
    open.erase(open.begin());
    const double share = back[group] > 0 ? std::min(1.0, below[group] / back[group]) : 0;
    // If the site calls its own function again, everything in that function runs below the site, except for what the
    // first call does outside of it.
    const bool recursive = isRecursive(part);
    if (recursive) part = {.self = selfOfGroup_[group], .calls = outOfGroup_[group]};
    std::sort(part.calls.begin(), part.calls.end());
    double here = part.self;
    for (const std::size_t call : outOfGroup_[group]) {
      const double cost = calls_[call].cost;
      const std::size_t callee = groups_[calls_[call].callee];
      const bool inSite = std::binary_search(part.calls.begin(), part.calls.end(), call);
      if (inSite) here += cost;
      const double reaches = inSite ? cost : share * std::min(cost, back[callee]);
      if (reaches <= 0 || back[callee] <= 0) continue;
      below[callee] += reaches;
      open.try_emplace(callee);
    }
    time += (1 - share) * here;
  }
  return time;
}

}  // namespace kelvar_readers
