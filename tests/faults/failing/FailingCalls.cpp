/// Preloaded into a program, makes one of its calls to the system fail. KELVAR_FAULT names which and how:
///
///     allocation K     the K-th allocation answers null
///     call K ERRNO     the K-th call on a file fails
///     short            every read and write gets only part of what it asked for
///     shrink K, grow K the file whose size is asked for the K-th time is another one right after
///
/// Counts from the beginning of main, and on its own ends a program that hangs. KELVAR_FAULT_COUNT names a file that
/// gets a byte where the fault struck.
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

enum class Kind { none, allocation, call, cut, shrink, grow };

Kind kind = Kind::none;
long strikes = 0;
int error = EIO;
std::atomic<long> count = 0;

template <class Function>
Function* real(const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool struck(Kind asked) {
  if (kind != asked || ++count != strikes) return false;
  if (const char* file = std::getenv("KELVAR_FAULT_COUNT")) {
    const int mark = real("open", ::open)(file, O_WRONLY | O_CREAT, 0600);
    real("close", ::close)(mark);
  }
  return true;
}
bool fails() {
  if (!struck(Kind::call)) return false;
  errno = error;
  return true;
}
/// Of a read or a write that is cut: half of it, and at least a byte.
std::size_t part(std::size_t size) {
  return kind == Kind::cut ? (size + 1) / 2 : size;
}

/// Another program got at the file in between.
void change(int descriptor, const struct stat& status) {
  const bool shrinks = struck(Kind::shrink);
  if (!S_ISREG(status.st_mode) || (!shrinks && !struck(Kind::grow))) return;
  char name[64];
  std::snprintf(name, sizeof name, "/proc/self/fd/%d", descriptor);
  const int file = real("open", ::open)(name, O_WRONLY | O_APPEND);
  if (shrinks) static_cast<void>(ftruncate(file, status.st_size / 2));
  if (!shrinks) static_cast<void>(!real("write", ::write)(file, "   ", 3));
  real("close", ::close)(file);
}

int (*realMain)(int, char**, char**) = nullptr;

int mainWithFault(int argumentCount, char** arguments, char** environment) {
  char name[16] = "";
  const char* fault = std::getenv("KELVAR_FAULT");
  static_cast<void>(std::sscanf(fault != nullptr ? fault : "", "%15s %ld %d", name, &strikes, &error));
  alarm(30);
  constexpr const char* kNames[] = {"none", "allocation", "call", "short", "shrink", "grow"};
  for (int i = 1; i < 6; ++i) {
    if (std::strcmp(name, kNames[i]) == 0) kind = static_cast<Kind>(i);
  }
  const int status = realMain(argumentCount, arguments, environment);
  kind = Kind::none;
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
  return struck(Kind::allocation) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t number, std::size_t size) {
  return struck(Kind::allocation) ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* old, std::size_t size) {
  return struck(Kind::allocation) ? nullptr : __libc_realloc(old, size);
}

int open(const char* path, int flags, ...) {
  std::va_list more;
  va_start(more, flags);
  const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
  va_end(more);
  return fails() ? -1 : real("open", ::open)(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));
ssize_t read(int descriptor, void* out, std::size_t size) {
  return fails() ? -1 : real("read", ::read)(descriptor, out, part(size));
}
ssize_t pread64(int descriptor, void* out, std::size_t size, off64_t offset) {
  return fails() ? -1 : real("pread64", ::pread64)(descriptor, out, part(size), offset);
}
ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  // What is said of the fault itself is let through.
  if (descriptor != STDERR_FILENO && fails()) return -1;
  return real("write", ::write)(descriptor, bytes, part(size));
}
ssize_t pwrite64(int descriptor, const void* bytes, std::size_t size, off64_t offset) {
  return fails() ? -1 : real("pwrite64", ::pwrite64)(descriptor, bytes, part(size), offset);
}
int fsync(int descriptor) {
  return fails() ? -1 : real("fsync", ::fsync)(descriptor);
}
int fdatasync(int descriptor) {
  return fails() ? -1 : real("fdatasync", ::fdatasync)(descriptor);
}
int unlink(const char* path) {
  return fails() ? -1 : real("unlink", ::unlink)(path);
}
int rename(const char* from, const char* to) {
  return fails() ? -1 : real("rename", ::rename)(from, to);
}
int fstat(int descriptor, struct stat* status) {
  if (fails()) return -1;
  const int result = real("fstat", ::fstat)(descriptor, status);
  if (result == 0) change(descriptor, *status);
  return result;
}
int fstat64(int descriptor, struct stat64* status) __attribute__((alias("fstat")));
}
