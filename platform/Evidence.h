#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "PlatformExport.h"

/// Statements of tools about a site beyond its figures: `evidence.jsonl`, beside a collection.json.
namespace kelvar_platform {

enum class EvidenceKind { race, lockOrder, otherFinding, vectorized, missed, stride, share };
/// The names of the kinds in the file, by value.
inline constexpr std::array<std::string_view, 7> kEvidenceKindNames{
    "race", "lock-order", "other-finding", "vectorized", "missed", "stride", "share"};

/// A place of a statement. A field that the tool does not know is empty or 0, except for the file.
struct EvidencePlace {
  std::string role = {};  ///< what happened there: `write`, `read`, `own lines`; may be empty
  std::string file = {};
  std::int32_t line = 0;  ///< not negative, like the column
  std::int32_t column = 0;
  std::string function = {};

  bool operator==(const EvidencePlace&) const = default;
};

/// One statement of a tool. Texts are UTF-8.
struct Evidence {
  std::int32_t detail = 0;  ///< the index of the detail in its collection, from 0
  EvidenceKind kind = EvidenceKind::otherFinding;
  std::string text = {};    ///< in the tool's words, on one line
  std::string object = {};  ///< the variable or memory block concerned; empty if unknown
  std::int64_t count = 1;   ///< how often; at least 1
  std::vector<EvidencePlace> places = {};

  bool operator==(const Evidence&) const = default;
};

/// The name of the file, beside the collection.
inline constexpr const char* kEvidenceFile = "evidence.jsonl";

/// The most statements for one detail in the file.
inline constexpr std::size_t kMostEvidence = 64;

/// The evidence beside the collection in `directory`, in the order of the file; empty if there is no file. Throws a
/// ReadError that names the damaged line.
[[nodiscard]] PLATFORM_EXPORT std::vector<Evidence> readEvidence(const std::filesystem::path& directory);

/// Replaces `directory`/evidence.jsonl. Statements are sorted by detail, then by count, the greatest first; ties keep
/// their order. If a detail has more than kMostEvidence, its last line says how many are left out. Without evidence, an
/// existing file is removed. Throws a ReadError when writing fails or a value could not be read back.
PLATFORM_EXPORT void writeEvidence(const std::filesystem::path& directory, std::vector<Evidence> evidence);

}  // namespace kelvar_platform
