#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "PlatformExport.h"

/// What a tool said of a site beyond its figures: `evidence.jsonl`, beside a collection.json.
namespace kelvar_platform {

enum class EvidenceKind { race, lockOrder, otherFinding, vectorized, missed, stride, share };
/// The kinds as the file names them, by their value.
inline constexpr std::array<std::string_view, 7> kEvidenceKindNames{
    "race", "lock-order", "other-finding", "vectorized", "missed", "stride", "share"};

/// Where something of it happened. What the tool does not know is empty or 0; the file is never unknown.
struct EvidencePlace {
  std::string role = {};  ///< what happened there: `write`, `read`, `own lines`; empty where the text says it all
  std::string file = {};
  std::int32_t line = 0;  ///< not negative, as the column
  std::int32_t column = 0;
  std::string function = {};

  bool operator==(const EvidencePlace&) const = default;
};

/// One thing that a tool said. Texts are UTF-8.
struct Evidence {
  std::int32_t detail = 0;  ///< the index of the detail in its collection, from 0
  EvidenceKind kind = EvidenceKind::otherFinding;
  std::string text = {};    ///< in the tool's words, in one line
  std::string object = {};  ///< what it happened to, such as a variable; empty where the tool does not say
  std::int64_t count = 1;   ///< how often; at least 1
  std::vector<EvidencePlace> places = {};

  bool operator==(const Evidence&) const = default;
};

/// Its name, beside the collection.
inline constexpr const char* kEvidenceFile = "evidence.jsonl";

/// A detail has no more evidence than this on disk.
inline constexpr std::size_t kMostEvidence = 64;

/// The evidence beside the collection in `directory`, in the order of the file; empty where there is no file. Throws a
/// ReadError that names the line where the file is damaged.
[[nodiscard]] PLATFORM_EXPORT std::vector<Evidence> readEvidence(const std::filesystem::path& directory);

/// Writes `directory`/evidence.jsonl, in place of one that stands there: by detail, for each the greatest counts first
/// and what ties as it came. Of more than kMostEvidence for one detail, the last line says how many are left out.
/// Writes no file where there is no evidence, and removes the old one. Throws a ReadError where the disk refuses, or
/// where a value could not be read back.
PLATFORM_EXPORT void writeEvidence(const std::filesystem::path& directory, std::vector<Evidence> evidence);

}  // namespace kelvar_platform
