#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Outcome.h"
#include "Places.h"
#include "Record.h"
#include "Sources.h"

namespace kelvar_readers {

/// The options of an import, apart from its files.
struct Wishes {
  std::string project;
  int cores = 0;       ///< that the model assumes
  double atLeast = 0;  ///< percent of the total; a function below it gets no row
  /// The last line of the loop at a line and column of a file; 0 if the source does not tell. May be empty.
  std::function<int(const std::string&, int, int)> lastLineOfLoop = {};
};

/// Turns records into the details of one kind of analysis. Records come one by one, and are not kept unless the kind
/// needs them together.
class Analysis {
 public:
  virtual ~Analysis() = default;
  virtual void add(const Record& record) = 0;
  /// Called once, after the last record; `reading` holds what the readers found out apart from the records.
  [[nodiscard]] virtual Outcome finish(const Reading& reading) = 0;
};

[[nodiscard]] std::unique_ptr<Analysis> surveyOf(Places& places, const Wishes& wishes);
[[nodiscard]] std::unique_ptr<Analysis> vectorizationOf(Places& places, const Wishes& wishes);
[[nodiscard]] std::unique_ptr<Analysis> dependenciesOf(Places& places, const Wishes& wishes);
[[nodiscard]] std::unique_ptr<Analysis> mapOf(Places& places, const Wishes& wishes);
/// From the experiments of coz.
[[nodiscard]] std::unique_ptr<Analysis> suitabilityOf(Places& places, const Wishes& wishes);
/// From the project's survey, by Amdahl's law; takes no records.
[[nodiscard]] std::unique_ptr<Analysis> modelOf(Places& places, const Wishes& wishes);

}  // namespace kelvar_readers
