#include "Diagnosis.h"

#include <pthread.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "Utf8.h"

namespace kelvar_platform {

namespace {

/// U+0080 to U+009F are control characters too. They begin with this byte.
constexpr char kTwoByteControlLead = '\xC2';

bool isControl(std::string_view character) {
  const auto last = static_cast<unsigned char>(character.back());
  if (character.size() == 1) return last < 0x20 || last == 0x7F;
  return character.size() == 2 && character.front() == kTwoByteControlLead && last < 0xA0;
}

void appendEscaped(std::string& out, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]};
  }
}

/// File names and texts from files go to a terminal: they must not move its cursor or set its title.
void appendPrintable(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = characterSize(text);
    const std::string_view piece = text.substr(0, std::max<std::size_t>(size, 1));
    if (size == 0 || isControl(piece)) {
      appendEscaped(out, piece);
    } else {
      out += piece;
    }
    text.remove_prefix(piece.size());
  }
}

using Refusals = std::vector<Refusal>;

/// What each thread has noted, until it takes it or ends. Not a thread_local: if there is no memory to register its
/// destructor, the C library aborts the program.
class NotedByThreads {
 public:
  NotedByThreads() {
    if (::pthread_key_create(&key_, discard) != 0) throw std::bad_alloc();
  }
  ~NotedByThreads() {
    discard(::pthread_getspecific(key_));  // of the thread that ends the program, which has no other destructor
    ::pthread_key_delete(key_);
  }
  NotedByThreads(const NotedByThreads&) = delete;  // there is one key
  NotedByThreads& operator=(const NotedByThreads&) = delete;

  [[nodiscard]] Refusals& ofThisThread() const {
    if (void* const kept = ::pthread_getspecific(key_)) return *static_cast<Refusals*>(kept);
    auto made = std::make_unique<Refusals>();
    if (::pthread_setspecific(key_, made.get()) != 0) throw std::bad_alloc();
    return *made.release();
  }
  /// Null if this thread has noted none.
  [[nodiscard]] std::unique_ptr<Refusals> take() const noexcept {
    std::unique_ptr<Refusals> taken(static_cast<Refusals*>(::pthread_getspecific(key_)));
    if (taken) ::pthread_setspecific(key_, nullptr);
    return taken;
  }

 private:
  static void discard(void* refusals) { delete static_cast<Refusals*>(refusals); }

  pthread_key_t key_{};
};

const NotedByThreads& noted() {
  static const NotedByThreads noted;
  return noted;
}

}  // namespace

std::string Refusal::sentence() const {
  std::string out;
  appendPrintable(out, file);
  out += ": ";
  if (!place.empty()) {
    appendPrintable(out, place);
    out += ": ";
  }
  if (problem.empty()) out += "expected ";
  appendPrintable(out, problem.empty() ? expected : problem);
  return out;
}

ReadError::ReadError(Refusal refusal) : std::runtime_error(refusal.sentence()), refusal_(std::move(refusal)) {}

void note(Refusal refusal) {
  Refusals& refusals = noted().ofThisThread();
  if (std::find(refusals.begin(), refusals.end(), refusal) == refusals.end()) refusals.push_back(std::move(refusal));
}

std::vector<Refusal> takeRefusals() {
  const std::unique_ptr<Refusals> taken = noted().take();
  return taken ? std::move(*taken) : Refusals();
}

}  // namespace kelvar_platform
