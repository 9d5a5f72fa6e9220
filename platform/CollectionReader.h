#pragma once

#include <memory>
#include <string>

#include "Collection.h"
#include "JsonReader.h"

namespace kelvar_platform {

/// Where a result keeps its collection.
[[nodiscard]] std::string collectionFile(const std::string& result);

/// Reads the collection of the result at `result`, in the memory of `in`. Throws a ReadError at the first value that
/// does not fit.
[[nodiscard]] std::unique_ptr<Collection> readCollection(const std::string& result, JsonReader& in);

}  // namespace kelvar_platform
