#pragma once

#include <cstddef>
#include <memory>

namespace kelvar_bench {

/// The T of that many sites, which stays until one of another size is asked for.
template <class T>
[[nodiscard]] T& ofSize(std::size_t sites) {
  static std::unique_ptr<T> kept;
  static std::size_t keptSites = 0;
  if (!kept || keptSites != sites) {
    kept.reset();
    kept = std::make_unique<T>(sites);
    keptSites = sites;
  }
  return *kept;
}

}  // namespace kelvar_bench
