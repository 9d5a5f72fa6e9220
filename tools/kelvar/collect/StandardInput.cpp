#include "StandardInput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include "Diagnosis.h"
#include "Messages.h"
#include "Output.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::FileDescriptor;

[[noreturn]] void refuse(const std::string& file, const char* expected, int error) {
  throw kelvar_platform::ReadError(
      {.file = file, .place = "", .expected = std::string(expected) + " (" + strerror(error) + ")"});
}

void copyInto(const std::string& file, const Interrupts& interrupts) {
  const FileDescriptor out(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!out) refuse(file, "a file to write to", errno);
  std::vector<char> buffer(1U << 16U);
  constexpr int kLook = 100;  // milliseconds
  while (interrupts.signal() == 0) {
    pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    if (::poll(&input, 1, kLook) == 0) continue;
    const ssize_t got = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (got == 0) return;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuse("standard input", "what can be read", errno);
    const int error = writeAll(out.get(), std::string_view(buffer.data(), static_cast<std::size_t>(got)));
    if (error != 0) refuse(file, "a file to write to", error);
  }
}

}  // namespace

StandardInput::StandardInput(const std::string& folder, const Interrupts& interrupts) : file_("/dev/null") {
  struct stat status {};
  if (::isatty(STDIN_FILENO) == 1) {
    say("the program gets no standard input, since every run must get the same: give it a file or a pipe");
  } else if (::fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode)) {
    file_ = "/proc/self/fd/0";
    offset_ = std::max<off_t>(0, ::lseek(STDIN_FILENO, 0, SEEK_CUR));
  } else if (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)) {
    say("reading the standard input to its end, since every run must get the same (</dev/null: none)");
    file_ = folder + "/standard-input";
    copyInto(file_, interrupts);
  }
}

FileDescriptor StandardInput::open() const {
  FileDescriptor file(::open(file_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file || (offset_ > 0 && ::lseek(file.get(), offset_, SEEK_SET) < 0)) {
    refuse("standard input", "what can be read again", errno);
  }
  return file;
}

}  // namespace kelvar_tool
