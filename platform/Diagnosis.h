#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "PlatformExport.h"

/// Stand-ins for the suite's own libraries. What this folder declares beyond the collaborators' interfaces is for the
/// command; the library does not use it.
namespace kelvar_platform {

/// Why a file could not be read or written: the parts of one sentence.
struct Refusal {
  std::string file;          ///< as it was named
  std::string place;         ///< where in it: `details[3].survey.cpuTime`, `byte 17`, `edit, revision 5`; may be empty
  std::string expected;      ///< what was expected there, in a few words: `a finite number`, `kind from 0 to 18`
  std::string problem = {};  ///< instead of `expected`, what is wrong there: `duplicate key`

  bool operator==(const Refusal&) const = default;
  /// `FILE: PLACE: expected EXPECTED` or `FILE: PLACE: PROBLEM`, without the place if it is empty. Control characters
  /// and bytes that are not UTF-8 are escaped as `\xNN`.
  [[nodiscard]] PLATFORM_EXPORT std::string sentence() const;
};

/// What the platform's own operations throw; what() is the sentence. It never reaches the library: when the library
/// asks for a result or a directory, the refusal is noted and the answer is null.
class PLATFORM_EXPORT ReadError : public std::runtime_error {
 public:
  explicit ReadError(Refusal refusal);
  [[nodiscard]] const Refusal& refusal() const noexcept { return refusal_; }

 private:
  Refusal refusal_;
};

/// Notes a refusal for this thread, for takeRefusals.
PLATFORM_EXPORT void note(Refusal refusal);
/// This thread's refusals since the last call, in order, without duplicates.
[[nodiscard]] PLATFORM_EXPORT std::vector<Refusal> takeRefusals();

}  // namespace kelvar_platform
