#pragma once

#include <cstddef>
#include <map>
#include <vector>

namespace kelvar_readers {

/// What sites take with all that they call, where a tool tells what each function took itself and what the calls from
/// each place cost, but not which calls led there. What a site's calls come back to is counted once.
class CallGraph {
 public:
  /// Functions are numbered from 0.
  void addSelf(std::size_t function, double cost, const std::vector<std::size_t>& sites);
  void addCall(std::size_t caller, std::size_t callee, double cost, const std::vector<std::size_t>& sites);

  /// Of the sites below `count`, each with all that runs inside it.
  [[nodiscard]] std::vector<double> timesOfSites(std::size_t count);

 private:
  struct Call {
    std::size_t caller = 0;
    std::size_t callee = 0;
    double cost = 0;
  };
  /// What of a site lies in one function.
  struct Part {
    double self = 0;
    std::vector<std::size_t> calls;  // their indices
  };
  using Parts = std::map<std::size_t, Part>;  // by function

  void grow(std::size_t function);
  void findGroups();
  void orderCalls();
  [[nodiscard]] double timeOf(const Parts& parts) const;
  [[nodiscard]] std::map<std::size_t, Part, std::greater<>> byGroup(const Parts& parts) const;
  [[nodiscard]] bool isRecursive(const Part& part) const;

  std::vector<double> self_;
  std::vector<Call> calls_;
  std::vector<Parts> sites_;
  // Functions that call each other around in circles are one group; a group's number is greater than those it calls.
  std::vector<std::size_t> groups_;
  std::vector<double> selfOfGroup_;
  std::vector<double> into_;                          // what calls of a group from others cost
  std::vector<std::vector<std::size_t>> outOfGroup_;  // indices of its calls to other groups
};

}  // namespace kelvar_readers
