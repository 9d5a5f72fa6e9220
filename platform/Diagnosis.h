#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "PlatformExport.h"

/// Our stand-ins for the suite's own libraries. What stands here beyond the collaborators' interfaces is for the
/// command alone: the library knows nothing of it.
namespace kelvar_platform {

/// Why a file could not be read or written: one sentence in three parts.
struct Refusal {
  std::string file;      ///< as it was named
  std::string place;     ///< where in it: `details[3].survey.cpuTime`, `byte 17`, `edit, revision 5`; may be empty
  std::string expected;  ///< what was expected there, in a few words: `a finite number`, `kind from 0 to 18`

  bool operator==(const Refusal&) const = default;
  /// `FILE: PLACE: expected EXPECTED`, without the place where there is none. What a terminal would obey, and what is
  /// no UTF-8, is escaped as `\xNN`.
  [[nodiscard]] PLATFORM_EXPORT std::string sentence() const;
};

/// What the platform's own operations throw; what() is the sentence. Never reaches the library: where that asks for
/// a result or a directory, the refusal is noted and the answer is null.
class PLATFORM_EXPORT ReadError : public std::runtime_error {
 public:
  explicit ReadError(Refusal refusal);
  [[nodiscard]] const Refusal& refusal() const noexcept { return refusal_; }

 private:
  Refusal refusal_;
};

/// Notes a refusal for this thread, to be asked for later.
PLATFORM_EXPORT void note(Refusal refusal);
/// This thread's refusals since the last call, in the order in which they came, each once.
[[nodiscard]] PLATFORM_EXPORT std::vector<Refusal> takeRefusals();

}  // namespace kelvar_platform
