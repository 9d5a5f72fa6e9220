#include "AddressSpaces.h"

#include <array>
#include <iterator>
#include <optional>

namespace kelvar_readers {

void AddressSpaces::add(const PerfMapping& mapping) {
  Space& space = spaces_[mapping.process];
  const std::uint64_t end = mapping.start + mapping.size;
  auto at = space.lower_bound(mapping.start);
  if (at != space.begin() && std::prev(at)->second.end > mapping.start) --at;
  while (at != space.end() && at->first < end) at = space.erase(at);
  space[mapping.start] = {.end = end, .offset = mapping.offset, .path = std::string(mapping.path)};
}

void AddressSpaces::fork(const PerfFork& fork) {
  if (fork.process == fork.parent) return;  // a thread
  const auto parent = spaces_.find(fork.parent);
  if (parent == spaces_.end()) return;
  Space copy = parent->second;
  spaces_[fork.process] = std::move(copy);
}

const AddressSpaces::Space::value_type* AddressSpaces::mappedAt(long process, std::uint64_t address) const {
  const auto space = spaces_.find(process);
  if (space == spaces_.end()) return nullptr;
  auto after = space->second.upper_bound(address);
  if (after == space->second.begin() || std::prev(after)->second.end <= address) return nullptr;
  return &*std::prev(after);
}

/// The run-time address of a frame whose address is an offset in its file.
std::optional<std::uint64_t> AddressSpaces::mappedAddress(long process, const PerfFrame& frame) const {
  const auto space = spaces_.find(process);
  if (space == spaces_.end()) return std::nullopt;
  for (const auto& [start, mapped] : space->second) {
    const std::uint64_t size = mapped.end - start;
    if (mapped.path != frame.object || frame.address < mapped.offset || frame.address - mapped.offset >= size) continue;
    return start + frame.address - mapped.offset;
  }
  return std::nullopt;
}

Symbols* AddressSpaces::symbolsOf(const PerfFrame& frame, const Space::value_type* mapped) {
  if (frame.object.starts_with('/')) return binaries_.find(std::string(frame.object));
  if (!frame.object.empty()) return nullptr;
  if (mapped) return binaries_.find(mapped->second.path);
  // The line names no file. A binary that is not position-independent is recognised by the address alone.
  for (const auto& given : binaries_.given()) {
    if (!given->isPositionIndependent() && given->holds(frame.address)) return given.get();
  }
  return nullptr;
}

const Frame* AddressSpaces::frameAt(long process, const PerfFrame& frame, bool isCaller) {
  const Space::value_type* const mapped = mappedAt(process, frame.address);
  Symbols* const symbols = symbolsOf(frame, mapped);
  if (!symbols) return nullptr;
  // perf prints a run-time address or, in stacks, an offset in the file. The first candidate that agrees with the
  // printed offset in the function wins, else the first one that is possible.
  std::array<std::optional<std::uint64_t>, 4> candidates;
  if (mapped) candidates[0] = symbols->addressOfOffset(frame.address - mapped->first + mapped->second.offset);
  if (!symbols->isPositionIndependent() && symbols->holds(frame.address)) candidates[1] = frame.address;
  candidates[2] = symbols->addressOfOffset(frame.address);
  if (!symbols->isPositionIndependent()) candidates[3] = mappedAddress(process, frame);
  std::optional<std::uint64_t> address;
  for (const auto& candidate : candidates) {
    if (!candidate) continue;
    const auto begin = frame.offset ? symbols->functionBegin(*candidate) : std::nullopt;
    const bool agrees = begin && *candidate - *begin == *frame.offset;
    if (!address || agrees) address = candidate;
    if (agrees) break;
  }
  // Without a mapping, the only function of this name gives the address.
  if (frame.offset && !mapped) {
    const auto begin = symbols->addressOfFunction(std::string(frame.symbol));
    if (begin) address = *begin + *frame.offset;
  }
  if (!address) return nullptr;
  return &symbols->frameAt(isCaller && *address > 0 ? *address - 1 : *address);
}

}  // namespace kelvar_readers
