#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "ViewPages.h"

namespace kelvar_page {

/// An HTTP server on the loopback interface. It answers one request at a time; the number of connections, and the time
/// and size of a request, are limited.
class ViewServer {
 public:
  /// Listens on the port; 0: any free one. Throws std::system_error when the port is not available.
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
