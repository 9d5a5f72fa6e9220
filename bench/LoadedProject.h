#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>

#include "digestio.h"
#include "kelvar/SummaryData.h"

namespace kelvar_bench {

/// The path of a generated project of that size; it exists until the program ends.
[[nodiscard]] const std::string& projectOnDisk(std::size_t sites);

/// A result in it.
[[nodiscard]] std::string collectionFile(std::size_t sites, digestio::SummaryDataKind kind);

/// Opens the annotations of a project, installs them for the scanner, and loads all five results, as the command does.
[[nodiscard]] boost::shared_ptr<kelvar::SummaryData> load(const std::string& project);

/// The project of that size with its five results, loaded once. Settings are as the last user left them.
[[nodiscard]] kelvar::SummaryData& loaded(std::size_t sites);

}  // namespace kelvar_bench
