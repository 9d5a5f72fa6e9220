#include "Input.h"

#include <archive.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "Diagnosis.h"

namespace kelvar_readers {

namespace {

constexpr std::size_t kChunk = 1U << 18U;
// No tool writes longer lines. A longer one means that the file is no text, and is not worth the memory.
constexpr std::size_t kLongestLine = 1U << 24U;
// A smaller file is read too fast for progress to be worth showing.
constexpr std::size_t kWorthShowing = 32U << 20U;

}  // namespace

void ArchiveEnd::operator()(::archive* opened) const noexcept {
  archive_read_free(opened);
}

Input::Input(std::string path, ShowProgress showProgress)
    : path_(std::move(path)), buffer_(kChunk), showProgress_(std::move(showProgress)) {
  const bool isStandard = path_ == "-";
  const std::string file = isStandard ? "/dev/stdin" : path_;
  if (isStandard) path_ = "standard input";
  struct stat status {};
  const bool found = (isStandard ? fstat(0, &status) : stat(file.c_str(), &status)) == 0;
  if (!found) refuse("", std::string("a file that can be read (") + strerror(errno) + ")");
  if (S_ISDIR(status.st_mode)) refuse("", "a file, not a directory");
  if (S_ISREG(status.st_mode)) size_ = static_cast<std::size_t>(status.st_size);
  open(isStandard ? std::string() : file, 0);
}

Input::Input(int descriptor, std::string name) : path_(std::move(name)), buffer_(kChunk) {
  open({}, descriptor);
}

Input::~Input() = default;

bool Input::beginsWith(std::string_view text) {
  while (end_ - begin_ < text.size() && refill()) continue;
  return std::string_view(buffer_.data() + begin_, end_ - begin_).starts_with(text);
}

bool Input::hasMore() {
  return begin_ < end_ || refill();
}

/// Opens `file`, or `descriptor` when `file` is empty. Compression is recognised by the first bytes.
void Input::open(const std::string& file, int descriptor) {
  file_.reset(archive_read_new());
  ::archive* const opened = file_.get();
  if (!opened) throw std::bad_alloc();
  archive_read_support_filter_gzip(opened);
  archive_read_support_filter_bzip2(opened);
  archive_read_support_filter_xz(opened);
  archive_read_support_filter_zstd(opened);
  archive_read_support_format_raw(opened);
  archive_read_support_format_empty(opened);
  const int done = file.empty() ? archive_read_open_fd(opened, descriptor, kChunk)
                                : archive_read_open_filename(opened, file.c_str(), kChunk);
  if (done != ARCHIVE_OK) {
    // A short compressed file that was cut off fails here already.
    const bool cut = reason().find("runcated") != std::string::npos;
    refuse(cut ? linePlace(1) : "", (cut ? "the rest of the file (" : "a file that can be read (") + reason() + ")");
  }
  archive_entry* entry = nullptr;
  const int header = archive_read_next_header(opened, &entry);
  if (header == ARCHIVE_EOF) {
    file_.reset();  // the file is empty
  } else if (header < ARCHIVE_WARN) {
    refuse(linePlace(1), "the rest of the file (" + reason() + ")");
  }
}

std::string Input::reason() const {
  const char* const why = archive_error_string(file_.get());
  return why ? why : strerror(errno);
}

std::optional<std::string_view> Input::nextLine() {
  std::size_t searched = begin_;
  for (;;) {
    if (const void* found = std::memchr(buffer_.data() + searched, '\n', end_ - searched)) {
      const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
      std::string_view line(buffer_.data() + begin_, at - begin_);
      begin_ = at + 1;
      ++lineNumber_;
      if (line.ends_with('\r')) line.remove_suffix(1);
      return line;
    }
    const std::size_t unread = end_ - begin_;
    if (unread > kLongestLine) refuse(linePlace(lineNumber_ + 1), "a line of text");
    if (!refill()) break;
    searched = begin_ + unread;
  }
  if (begin_ == end_) return std::nullopt;
  // Every tool ends its last line, so a line without an end was cut off.
  refuse(linePlace(lineNumber_ + 1), "the rest of the line");
}

std::string Input::rest() {
  std::string text;
  do {
    text.append(buffer_.data() + begin_, end_ - begin_);
    begin_ = end_;
  } while (refill());
  return text;
}

/// Reads more after the unread part of the buffer; false at the end of the file.
bool Input::refill() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  if (buffer_.size() - end_ < kChunk) buffer_.resize(buffer_.size() + kChunk);
  if (!file_) return false;
  const la_ssize_t count = archive_read_data(file_.get(), buffer_.data() + end_, kChunk);
  if (count < 0) refuse(linePlace(lineNumber_ + 1), "the rest of the file (" + reason() + ")");
  end_ += static_cast<std::size_t>(count);
  if (showProgress_ && size_ >= kWorthShowing) tellProgress();
  return count > 0;
}

void Input::tellProgress() {
  const std::size_t percent = static_cast<std::size_t>(archive_filter_bytes(file_.get(), -1)) * 100 / size_;
  if (percent == toldPercent_) return;
  toldPercent_ = percent;
  showProgress_("reading " + path_ + ": " + std::to_string(percent) + " %");
}

void Input::refuse(const std::string& expected) const {
  refuse(linePlace(lineNumber_), expected);
}

void Input::refuse(const std::string& place, const std::string& expected) const {
  throw kelvar_platform::ReadError({.file = path_, .place = place, .expected = expected});
}

std::string linePlace(std::size_t line) {
  return line == 0 ? std::string() : "line " + std::to_string(line);
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::string_view takeUntil(std::string_view& text, char separator) {
  const std::size_t at = text.find(separator);
  const std::string_view taken = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
  return taken;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace kelvar_readers
