/// Preloaded into a program, makes one of its calls to the system fail. KELVAR_FAULT names which and how:
///
///     allocation 0 K   the K-th allocation returns null; allocations 0 K: all from the K-th on
///     call ERRNO K     the K-th call on a file fails; calls ERRNO K: all from the K-th on
///     short            every read and write gets only part of what it asked for
///     shrink 0 K       the file whose size is asked for the K-th time is another one right after; grow 0 K alike
///
/// Counts from the beginning of main, and on its own ends a program that hangs. Where the fault struck, the file
/// `struck` is in the working directory.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}

namespace {

char kind[16] = "";  // what fails from here on
int error = 0;
long strikes = 0;
std::atomic<long> count = 0;

template <class Function>
Function* real(const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// In the plural, a fault stays.
bool struck(const char* asked) {
  const std::size_t length = std::strlen(asked);
  if (std::strncmp(kind, asked, length) != 0) return false;
  const long at = ++count;
  const bool stays = std::strcmp(kind + length, "s") == 0;
  if (at == strikes) real("close", ::close)(real("open", ::open)("struck", O_WRONLY | O_CREAT, 0600));
  return at == strikes || (stays && at > strikes);
}
bool fails() {
  if (!struck("call")) return false;
  errno = error;
  return true;
}
/// The size of a cut read or write: half of it, at least one byte.
std::size_t part(std::size_t size) {
  return std::strcmp(kind, "short") == 0 ? (size + 1) / 2 : size;
}

/// Another program changed the file in between.
void change(int descriptor, const struct stat& status) {
  const bool shrinks = struck("shrink");
  if (!S_ISREG(status.st_mode) || (!shrinks && !struck("grow"))) return;
  char name[64];
  std::snprintf(name, sizeof name, "/proc/self/fd/%d", descriptor);
  const int file = real("open", ::open)(name, O_WRONLY | O_APPEND);
  if (shrinks) static_cast<void>(ftruncate(file, status.st_size / 2));
  if (!shrinks) static_cast<void>(!real("write", ::write)(file, "   ", 3));
  real("close", ::close)(file);
}

int (*realMain)(int, char**, char**) = nullptr;

int mainWithFault(int argumentCount, char** arguments, char** environment) {
  const char* fault = std::getenv("KELVAR_FAULT");
  alarm(30);
  static_cast<void>(std::sscanf(fault != nullptr ? fault : "", "%15s %d %ld", kind, &error, &strikes));
  const int status = realMain(argumentCount, arguments, environment);
  kind[0] = 0;
  return status;
}

}  // namespace

extern "C" {

int __libc_start_main(int (*main)(int, char**, char**), int argumentCount, char** arguments, void (*initialise)(),
                      void (*finish)(), void (*unload)(), void* stackEnd) {
  realMain = main;
  return real("__libc_start_main", __libc_start_main)(mainWithFault, argumentCount, arguments, initialise, finish,
                                                      unload, stackEnd);
}

void* malloc(std::size_t size) {
  return struck("allocation") ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t number, std::size_t size) {
  return struck("allocation") ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* old, std::size_t size) {
  return struck("allocation") ? nullptr : __libc_realloc(old, size);
}

int open(const char* path, int flags, ...) {
  std::va_list more;
  va_start(more, flags);
  const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
  va_end(more);
  return fails() ? -1 : real("open", ::open)(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

#define KELVAR_MAY_FAIL(result, name, parameters, ...)      \
  result name parameters {                                  \
    return fails() ? -1 : real(#name, ::name)(__VA_ARGS__); \
  }

KELVAR_MAY_FAIL(ssize_t, read, (int file, void* out, std::size_t size), file, out, part(size))
KELVAR_MAY_FAIL(ssize_t, pread64, (int file, void* out, std::size_t size, off64_t at), file, out, part(size), at)
KELVAR_MAY_FAIL(ssize_t, pwrite64, (int file, const void* in, std::size_t size, off64_t at), file, in, part(size), at)
KELVAR_MAY_FAIL(int, fsync, (int file), file)
KELVAR_MAY_FAIL(int, fdatasync, (int file), file)
KELVAR_MAY_FAIL(int, unlink, (const char* path), path)
KELVAR_MAY_FAIL(int, rename, (const char* from, const char* to), from, to)

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  // The message about the fault itself is not affected.
  if (descriptor != STDERR_FILENO && fails()) return -1;
  return real("write", ::write)(descriptor, bytes, part(size));
}
int fstat(int descriptor, struct stat* status) {
  if (fails()) return -1;
  const int result = real("fstat", ::fstat)(descriptor, status);
  if (result == 0) change(descriptor, *status);
  return result;
}
int fstat64(int descriptor, struct stat64* status) __attribute__((alias("fstat")));
}
