#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>

#include "GeneratedProject.h"
#include "ProjectOnDisk.h"

namespace {

bool readNumber(const char* text, std::uint64_t& number) {
  const char* end = text + std::strlen(text);
  return std::from_chars(text, end, number).ptr == end && end != text;
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t sites = 0;
  std::uint64_t seed = 1;
  if (argc < 3 || argc > 4 || !readNumber(argv[1], sites) || (argc == 4 && !readNumber(argv[3], seed))) {
    std::fputs("usage: kelvar_generate SITES DIR [SEED]\nWrites a made-up project of that many annotated lines.\n",
               stderr);
    return 2;
  }
  try {
    kelvar_bench::writeProject(kelvar_bench::GeneratedProject(sites, seed), argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kelvar_generate: %s\n", error.what());
    return 1;
  }
  return 0;
}
