#pragma once

#include <memory>
#include <string>

#include "Collection.h"

namespace kelvar_platform {

/// Reads a collection.json. Throws a ReadError at the first value that does not fit.
[[nodiscard]] std::unique_ptr<Collection> readCollection(const std::string& file);

}  // namespace kelvar_platform
