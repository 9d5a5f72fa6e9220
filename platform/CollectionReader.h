#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Collection.h"
#include "JsonReader.h"

namespace kelvar_platform {

/// Reads collections one after the other and reuses its memory.
class CollectionReader {
 public:
  /// The collection of the result at `result`. Throws a ReadError at the first value that does not fit.
  [[nodiscard]] std::unique_ptr<Collection> read(const std::string& result);

 private:
  JsonReader in_;
  std::vector<DetailFields> details_;  ///< of the collection that is being read, in the order of its file
};

}  // namespace kelvar_platform
