#include "ReadAhead.h"

#include <algorithm>
#include <filesystem>
#include <future>
#include <optional>
#include <system_error>
#include <utility>

#include "CollectionFile.h"
#include "CollectionReader.h"

namespace kelvar_platform {

namespace {

/// Reading a smaller file takes less time than starting a thread.
constexpr std::uintmax_t kWorthAThread = std::uintmax_t{1} << 20;

bool isWorthAThread(const std::string& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return !error && size >= kWorthAThread;
}

}  // namespace

struct ReadAhead::Impl {
  explicit Impl(std::vector<std::string> inOrder) : results(std::move(inOrder)), next(results.begin()) { readNext(); }

  std::unique_ptr<Collection> take(const std::string& result) {
    const auto asked = std::find(next, results.end(), result);
    if (asked == results.end()) return nullptr;
    std::future<std::unique_ptr<Collection>> read = std::move(reading);
    if (read.valid()) read.wait();  // the next one reuses its memory
    const bool isOfAsked = read.valid() && asked == next;
    next = asked + 1;
    readNext();
    return isOfAsked ? read.get() : nullptr;
  }

  /// Starts to read the next collection.
  void readNext() {
    if (next == results.end()) return reader.reset();
    if (!isWorthAThread(collectionFile(*next))) return;
    if (!reader) reader.emplace();
    try {
      reading = std::async(std::launch::async, [this, &result = *next] { return reader->read(result); });
    } catch (const std::system_error&) {
      reading = {};  // load will read it
    }
  }

  const std::vector<std::string> results;
  std::vector<std::string>::const_iterator next;
  std::optional<CollectionReader> reader;            ///< used by the other thread while it runs
  std::future<std::unique_ptr<Collection>> reading;  ///< of `next`; its destructor waits for the thread
};

namespace {

/// One for each thread, as refusals are.
thread_local ReadAhead* ofThisThread = nullptr;

}  // namespace

ReadAhead::ReadAhead(std::vector<std::string> results) : impl_(std::make_unique<Impl>(std::move(results))) {
  ofThisThread = this;
}

ReadAhead::~ReadAhead() {
  ofThisThread = nullptr;
}

std::unique_ptr<Collection> ReadAhead::take(const std::string& result) {
  return ofThisThread != nullptr ? ofThisThread->impl_->take(result) : nullptr;
}

}  // namespace kelvar_platform
