#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PlatformExport.h"

namespace kelvar_platform {

class Collection;

/// Reads collections before they are loaded. While this object lives, digestio::SummaryCollection::load on the thread
/// that made it returns the collection that was read for the path, while another thread reads the next one. So at most
/// one collection is ready that was not asked for yet. Each is returned once, and dropped when a later one is loaded. A
/// refusal or a lack of memory is reported by load. If no thread can be started, if the file is small or cannot be
/// examined, and for any other path, load reads the file itself.
class PLATFORM_EXPORT ReadAhead {
 public:
  /// `results` are paths as load will be called with, in that order. Requires that this thread has no other ReadAhead,
  /// and that it destroys this one.
  explicit ReadAhead(std::vector<std::string> results);
  /// Waits for the file that is being read.
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;  // load keeps a pointer to it
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// For load: the collection that was read for this path, or null. Rethrows what the reading threw.
  [[nodiscard]] static std::unique_ptr<Collection> take(const std::string& result);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_platform
