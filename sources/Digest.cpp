#include "Digest.h"

#include <xxhash.h>

#include <cinttypes>
#include <cstdio>

namespace kelvar_sources {

std::string digestOf(std::string_view bytes) {
  const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
  char text[40];
  std::snprintf(text, sizeof text, "xxh3:%016" PRIx64 "%016" PRIx64, std::uint64_t{hash.high64},
                std::uint64_t{hash.low64});
  return text;
}

}  // namespace kelvar_sources
