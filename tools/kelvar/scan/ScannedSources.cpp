#include "ScannedSources.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>

#include "Diagnosis.h"
#include "Digest.h"
#include "FileDescriptor.h"
#include "Language.h"

namespace kelvar_tool {

namespace {

/// The reach of 32-bit offsets, with room for the lexer to look ahead.
constexpr std::size_t kMostBytes = std::size_t{0xFFFFFFFF} - 4096;

/// Bounds the memory of the lexer, whose tokens take many times the size of the file.
constexpr std::size_t kMostLexedBytes = std::size_t{64} << 20U;
constexpr const char* kTooLarge = "a source file of at most 64 MiB, where it may have markers";

/// Larger files are read one at a time, so that the memory of a scan does not grow with the threads.
constexpr std::size_t kLargeFile = std::size_t{8} << 20U;

[[noreturn]] void refuse(const std::string& path, const std::string& expected) {
  throw kelvar_platform::ReadError({path, "", expected});
}

struct stat statusOf(const kelvar_platform::FileDescriptor& file, const std::string& path) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) refuse(path, "a regular file");
  if (static_cast<std::size_t>(status.st_size) > kMostBytes) refuse(path, "a source file of less than 4 GiB");
  return status;
}

/// Returns false when the file changed while it was read: sites in a part that was cut off would be taken for gone.
bool readOnce(const kelvar_platform::FileDescriptor& file, const std::string& path, std::string& bytes) {
  const struct stat before = statusOf(file, path);
  const auto size = static_cast<std::size_t>(before.st_size);
  bytes.resize(size);
  std::size_t had = 0;
  while (had < size) {
    const ssize_t got = ::pread(file.get(), bytes.data() + had, size - had, static_cast<off_t>(had));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuse(path, std::string("a file that can be read (") + std::strerror(errno) + ")");
    if (got == 0) return false;
    had += static_cast<std::size_t>(got);
  }
  const struct stat after = statusOf(file, path);
  return after.st_size == before.st_size && after.st_mtim.tv_sec == before.st_mtim.tv_sec &&
         after.st_mtim.tv_nsec == before.st_mtim.tv_nsec;
}

/// Reads the file into `bytes`, whose memory is reused from file to file.
void readInto(const std::string& path, std::string& bytes) {
  const kelvar_platform::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) refuse(path, std::string("a file that can be read (") + std::strerror(errno) + ")");
  constexpr int kMostTimes = 3;
  for (int i = 0; i < kMostTimes; ++i) {
    if (readOnce(file, path, bytes)) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // time for an editor to finish
  }
  refuse(path, "a file that nobody writes to meanwhile");
}

bool isLarge(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return !error && size > kLargeFile;
}

ScannedFile scannedFile(const SourceFile& file, const kelvar_sources::RuleSet& rules, std::string& bytes) {
  ScannedFile result;
  try {
    readInto(file.path, bytes);
  } catch (const kelvar_platform::ReadError& error) {
    result.complaint = error.what();
    return result;
  }
  if (kelvar_sources::isBinary(bytes)) return result;
  if (bytes.size() > kMostLexedBytes && kelvar_sources::mayHaveMarkers(bytes, file.language, rules)) {
    result.complaint = kelvar_platform::ReadError({file.path, "", kTooLarge}).what();
    return result;
  }
  result.read = true;
  result.sites = kelvar_sources::scanSource(bytes, file.language, rules);
  result.digest = kelvar_sources::digestOf(bytes);
  return result;
}

}  // namespace

std::string lexedBytes(const std::string& path) {
  std::string bytes = sourceBytes(path);
  if (bytes.size() > kMostLexedBytes) refuse(path, kTooLarge);
  return bytes;
}

std::string sourceBytes(const std::string& path) {
  std::string bytes;
  readInto(path, bytes);
  return bytes;
}

std::vector<ScannedFile> scanned(const std::vector<SourceFile>& files, const kelvar_sources::RuleSet& rules) {
  std::vector<ScannedFile> results(files.size());
  std::atomic<std::size_t> next = 0;
  std::mutex mutex;
  std::mutex large;
  std::exception_ptr failure;
  const auto work = [&] {
    try {
      std::string bytes;
      for (std::size_t i = next++; i < files.size(); i = next++) {
        if (!isLarge(files[i].path)) {
          results[i] = scannedFile(files[i], rules, bytes);
          continue;
        }
        const std::lock_guard lock(large);
        std::string whole;
        results[i] = scannedFile(files[i], rules, whole);
      }
    } catch (...) {
      const std::lock_guard lock(mutex);
      failure = std::current_exception();
    }
  };
  const std::size_t most = std::max(1U, std::thread::hardware_concurrency());
  std::vector<std::jthread> threads;
  for (std::size_t i = 1; i < std::min(most, files.size()); ++i) threads.emplace_back(work);
  work();
  threads.clear();  // joins
  if (failure) std::rethrow_exception(failure);
  return results;
}

}  // namespace kelvar_tool
