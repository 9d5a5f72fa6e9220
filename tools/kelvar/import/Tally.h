#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "Places.h"
#include "Record.h"

namespace kelvar_import {

/// What came together at one function. Its position is the first line seen in the file that most of it lies in, the
/// project's own files before a library's: what is inlined into a function lies elsewhere.
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

  /// Adds the record to every site around it; false where there is none. One report counts for a site once.
  bool addToSites(const Record& record);
  /// The same for a record that is a part of its function, as time and accesses are: compilers leave what they made
  /// themselves, such as the body of a vectorised loop, without a line. What a function did on no line is shared among
  /// the sites as what it did on lines is, which takes until spreadUnlined().
  bool addShareToSites(const Record& record);
  void spreadUnlined();
  /// Adds the weights to the place's function and answers its number. Requires that the place has a function.
  std::size_t addToFunction(const Place& place, const Weights& weights);
  void addPlaceless(const Record& record);

  /// By index of the region.
  [[nodiscard]] const std::vector<Weights>& sites() const noexcept { return sites_; }
  /// By number.
  [[nodiscard]] std::vector<FunctionRow> functions() const;
  /// What belongs to no site and no function.
  [[nodiscard]] const Weights& placeless() const noexcept { return placeless_; }
  [[nodiscard]] std::size_t placelessCount() const noexcept { return placelessCount_; }

 private:
  /// How a function lies in the sites.
  struct Spread {
    Weights unlined{};
    double lined = 0;
    std::vector<std::pair<std::size_t, double>> inSites;
  };
  struct InFile {
    std::size_t number = 0;
    const std::string* path = nullptr;
    bool library = false;
    int line = 0;
    double weight = 0;
  };
  struct Function {
    std::string name;
    std::vector<InFile> files;
    Weights weights{};
    Spread spread;
  };

  /// Records come in runs of one function: the one asked for last is found at once.
  std::size_t numberOf(const std::string& function);

  Places& places_;
  std::vector<Weights> sites_;
  std::vector<std::size_t> lastReport_;  // of each site
  std::unordered_map<std::string, std::size_t> numbers_;
  std::vector<Function> functions_;
  const std::string* lastName_ = nullptr;
  std::size_t lastNumber_ = 0;
  Weights placeless_{};
  std::size_t placelessCount_ = 0;
};

[[nodiscard]] double sum(const Weights& weights);

}  // namespace kelvar_import
