#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "ViewPages.h"

namespace kelvar_page {

/// Serves pages on the loopback interface, one request after the other, to as many connections as there are up to a
/// limit. Each request has a time and a size that it must keep.
class ViewServer {
 public:
  /// Takes the port, or any free one for 0. Throws std::system_error where it cannot be had.
  explicit ViewServer(std::uint16_t port);
  ~ViewServer();

  [[nodiscard]] std::uint16_t port() const;
  /// Answers with `pages` until SIGINT, SIGTERM or SIGHUP.
  void run(ViewPages& pages);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kelvar_page
