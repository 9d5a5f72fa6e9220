#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Places.h"
#include "Record.h"
#include "TextNumbers.h"

namespace kelvar_readers {

/// The sum of a function. Its place is where it begins. Without debug information, it is the first line seen in the
/// file with most of the weight; the project's own files go before a library's.
struct FunctionRow {
  std::string name;
  std::string file;
  int line = 0;
  Weights weights{};
};

/// Adds up records by annotated site and by function.
class Tally {
 public:
  explicit Tally(Places& places);

  /// Adds the record to every site around the first place of its stack that lies in a site; false when there is none. A
  /// report counts once for each site.
  bool addToSites(const Record& record);
  /// Adds the record once to every site that its stack passes through: code inlined or called in a site is part of it.
  /// Returns these sites; the list is valid until the next call.
  const std::vector<std::size_t>& addToSitesOfStack(const Record& record);
  /// Adds the weights to the frame's function, which must have a name, and returns the function's number.
  std::size_t addToFunction(const Frame& frame, const Weights& weights);
  void addPlaceless(const Record& record);

  /// By the index of the region.
  [[nodiscard]] const std::vector<Weights>& sites() const noexcept { return sites_; }
  /// By function number.
  [[nodiscard]] std::vector<FunctionRow> functions() const;
  /// The plain name, as rows show it.
  [[nodiscard]] const std::string& functionName(std::size_t number) const { return functions_[number].name; }
  /// The sum of the records that belong to no site and no function.
  [[nodiscard]] const Weights& placeless() const noexcept { return placeless_; }
  [[nodiscard]] std::size_t placelessCount() const noexcept { return placelessCount_; }

 private:
  struct InFile {
    std::size_t number = 0;
    const std::string* path = nullptr;
    bool library = false;
    int line = 0;
    double weight = 0;
  };
  struct Function {
    std::string name;
    Place begin;
    std::vector<InFile> files;
    Weights weights{};
  };

  std::size_t numberOf(const Frame& frame);
  std::size_t numberOf(const std::string& function, const Place& begin);
  void addToFile(Function& function, const Place& place, double weight);

  Places& places_;
  std::vector<Weights> sites_;
  std::vector<std::size_t> lastReport_;  // that was added to each site
  std::vector<std::size_t> lastRecord_;  // that was added to each site
  std::size_t record_ = 0;
  std::vector<std::size_t> passed_;  // sites of the latest record
  TextNumbers numbers_;
  std::vector<std::size_t> ofFrames_;  // by frame id: the function's number + 1; 0: not looked up yet
  std::vector<Function> functions_;
  Weights placeless_{};
  std::size_t placelessCount_ = 0;
};

[[nodiscard]] double sum(const Weights& weights);

}  // namespace kelvar_readers
