#pragma once

#include <cstddef>
#include <map>
#include <memory>

namespace kelvar_bench {

/// The T of that many sites. Kept until the end, since sizes are measured in turn.
template <class T>
[[nodiscard]] T& ofSize(std::size_t sites) {
  static std::map<std::size_t, std::unique_ptr<T>> kept;
  std::unique_ptr<T>& ofSize = kept[sites];
  if (!ofSize) ofSize = std::make_unique<T>(sites);
  return *ofSize;
}

}  // namespace kelvar_bench
