#include "Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace kelvar_tool {

void holdStandardDescriptors() noexcept {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // open returns the lowest free number, which is the missing one. Read-only, so that printing there still fails.
    if (::fcntl(descriptor, F_GETFD) < 0) static_cast<void>(::open("/dev/null", O_RDONLY));
  }
}

int writeAll(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      pollfd room{.fd = descriptor, .events = POLLOUT, .revents = 0};
      static_cast<void>(::poll(&room, 1, -1));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

void print(std::string_view text) {
  const int error = writeAll(STDOUT_FILENO, text);
  if (error != 0 && error != EPIPE) throw OutputError("standard output: " + std::generic_category().message(error));
}

void PrintedPieces::pass() {
  constexpr std::size_t kWorthIt = std::size_t{1} << 16;
  if (text_.size() >= kWorthIt) finish();
}

void PrintedPieces::finish() {
  print(text_);
  text_.clear();
}

}  // namespace kelvar_tool
