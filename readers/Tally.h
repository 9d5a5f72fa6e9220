#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Places.h"
#include "Record.h"
#include "TextNumbers.h"

namespace kelvar_readers {

/// What came together at one function. Its position is where it begins; where no debug information tells, the first
/// line seen in the file that most of it lies in, the project's own files before a library's.
struct FunctionRow {
  std::string name;
  std::string file;
  int line = 0;
  Weights weights{};
};

/// Adds up records by the annotated sites and by the functions that they belong to.
class Tally {
 public:
  explicit Tally(Places& places);

  /// Adds the record to every site around the first place of its stack that lies in one; false where there is none. One
  /// report counts for a site once.
  bool addToSites(const Record& record);
  /// Adds the record to every site that its stack passes through, to each once: what is inlined or called there is a
  /// part of it. Answers those sites, until the next call.
  const std::vector<std::size_t>& addToSitesOfStack(const Record& record);
  /// Adds the weights to the frame's function and answers its number. Requires that it has one.
  std::size_t addToFunction(const Frame& frame, const Weights& weights);
  void addPlaceless(const Record& record);

  /// By index of the region.
  [[nodiscard]] const std::vector<Weights>& sites() const noexcept { return sites_; }
  /// By number.
  [[nodiscard]] std::vector<FunctionRow> functions() const;
  /// As rows name it.
  [[nodiscard]] const std::string& functionName(std::size_t number) const { return functions_[number].name; }
  /// What belongs to no site and no function.
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
  std::vector<std::size_t> lastReport_;  // of each site
  std::vector<std::size_t> lastRecord_;  // of each site
  std::size_t record_ = 0;
  std::vector<std::size_t> passed_;  // sites of the record
  TextNumbers numbers_;
  std::vector<std::size_t> ofFrames_;  // number + 1 of each frame that comes again
  std::vector<Function> functions_;
  Weights placeless_{};
  std::size_t placelessCount_ = 0;
};

[[nodiscard]] double sum(const Weights& weights);

}  // namespace kelvar_readers
