#pragma once

#include <cstddef>
#include <map>
#include <vector>

namespace kelvar_readers {

/// The time of sites including what they call. For tools that report the cost of each function itself and of the calls
/// from each place, but no stacks. What a site's calls lead back to is counted once.
class CallGraph {
 public:
  /// Functions are numbered from 0; `sites` are those that the code lies in.
  void addSelf(std::size_t function, double cost, const std::vector<std::size_t>& sites);
  void addCall(std::size_t caller, std::size_t callee, double cost, const std::vector<std::size_t>& sites);

  /// The inclusive time of each site with an index below `count`.
  [[nodiscard]] std::vector<double> timesOfSites(std::size_t count);

 private:
  struct Call {
    std::size_t caller = 0;
    std::size_t callee = 0;
    double cost = 0;
  };
  /// The part of a site that lies in one function.
  struct Part {
    double self = 0;
    std::vector<std::size_t> calls;  // their indices
  };
  using Parts = std::map<std::size_t, Part>;  // by function

  void grow(std::size_t function);
  void findGroups();
  void orderCalls();
  [[nodiscard]] std::vector<double> leadingBack(const std::map<std::size_t, Part, std::greater<>>& parts) const;
  [[nodiscard]] double timeOf(const Parts& parts) const;
  [[nodiscard]] std::map<std::size_t, Part, std::greater<>> byGroup(const Parts& parts) const;
  [[nodiscard]] bool isRecursive(const Part& part) const;

  std::vector<double> self_;
  std::vector<Call> calls_;
  std::vector<Parts> sites_;
  // Functions that call each other in a cycle form one group. A group's number is greater than those of the groups that
  // it calls.
  std::vector<std::size_t> groups_;
  std::vector<double> selfOfGroup_;
  std::vector<double> into_;                          // by group: the cost of calls from other groups
  std::vector<std::vector<std::size_t>> outOfGroup_;  // indices of its calls to other groups
};

}  // namespace kelvar_readers
