#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PlatformExport.h"

namespace kelvar_platform {

class Collection;

/// Collections that are read before they are asked for. While this object lives, digestio::SummaryCollection::load,
/// called on the thread that made it, hands out what was read for the path, and the next one is read meanwhile, on a
/// thread of its own. So no more than one lies ready that nobody asked for.
/// Nothing else changes. What was read is handed out once, and dropped when a later one is asked for. A refusal, or
/// that memory does not suffice, becomes known when the collection is asked for. Where no thread can be had, where the
/// file is small or cannot be looked at, and for any other path, load reads.
class PLATFORM_EXPORT ReadAhead {
 public:
  /// `results` are paths as load will be given them, in that order. Requires: this thread has no other one, and this
  /// one goes on it too.
  explicit ReadAhead(std::vector<std::string> results);
  /// Waits for the file that is being read.
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;  // load finds it where it is
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// For load: what was read for this path; null where nothing was. Throws what reading came to.
  [[nodiscard]] static std::unique_ptr<Collection> take(const std::string& result);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_platform
