#include "FileText.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "Diagnosis.h"
#include "FileDescriptor.h"
#include "JsonParser.h"

namespace kelvar_platform {

namespace {

/// The kernel clears a huge page at once; small pages cost a page fault each.
constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::align_val_t kAlignment{kHugePage};

[[noreturn]] void refuse(const std::string& file, std::string expected) {
  throw ReadError({.file = file, .place = {}, .expected = std::move(expected)});
}

[[noreturn]] void refuseByErrno(const std::string& file) {
  refuse(file, std::string("a file that can be read (") + std::strerror(errno) + ')');
}

/// Non-blocking, so that a pipe is refused rather than waited for.
FileDescriptor openForReading(const std::string& file) {
  FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!opened) refuseByErrno(file);
  return opened;
}

std::size_t sizeOf(const FileDescriptor& opened, const std::string& file) {
  struct stat status {};
  if (::fstat(opened.get(), &status) != 0) refuseByErrno(file);
  if (!S_ISREG(status.st_mode)) refuse(file, "a regular file");
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > FileText::kMaxSize) refuse(file, "a file of at most " + std::to_string(FileText::kMaxSize) + " bytes");
  return size;
}

/// The bytes read: fewer than asked for only at the end of the file.
std::size_t readUpTo(char* out, std::size_t size, const FileDescriptor& opened, const std::string& file) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::read(opened.get(), out + done, size - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuseByErrno(file);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

}  // namespace

void FileText::Free::operator()(char* memory) const noexcept {
  ::operator delete(memory, kAlignment);
}

void FileText::makeRoom(std::size_t size) {
  size += simdjson::SIMDJSON_PADDING;
  if (size <= allocated_) return;
  allocated_ = 0;
  memory_.reset();  // first, so that the old and the new memory are never held at once
  memory_.reset(static_cast<char*>(::operator new(size, kAlignment)));
  allocated_ = size;
  // Without huge pages, small ones are used.
  if (size >= kHugePage) ::madvise(memory_.get(), size, MADV_HUGEPAGE);
}

void FileText::read(const std::string& file) {
  size_ = 0;
  const FileDescriptor opened = openForReading(file);
  const std::size_t size = sizeOf(opened, file);
  makeRoom(size);
  // Asks for one byte more than the size, to notice a file that grew as well as one that shrank.
  if (readUpTo(memory_.get(), size + 1, opened, file) != size)
    refuse(file, "a file that stays as it is while it is read");
  std::fill_n(memory_.get() + size, simdjson::SIMDJSON_PADDING, '\0');
  size_ = size;
}

void FileText::take(std::string_view text) {
  size_ = 0;
  makeRoom(text.size());
  std::copy(text.begin(), text.end(), memory_.get());
  std::fill_n(memory_.get() + text.size(), simdjson::SIMDJSON_PADDING, '\0');
  size_ = text.size();
}

}  // namespace kelvar_platform
