#include "JsonWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

#include "Diagnosis.h"
#include "JsonEscape.h"
#include "Utf8.h"

namespace kelvar_platform {

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 18;

}  // namespace

JsonWriter::JsonWriter(std::string path, std::string name) : path_(std::move(path)), name_(std::move(name)) {
  file_ = FileDescriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file_) refuseByErrno();
  buffer_.reserve(kBufferSize);
}

JsonWriter::~JsonWriter() {
  if (file_) ::unlink(path_.c_str());
}

void JsonWriter::beginObject(std::string_view key) {
  begin(key, '{');
}

void JsonWriter::beginList(std::string_view key) {
  begin(key, '[');
}

void JsonWriter::begin(std::string_view key, char bracket) {
  startValue(key);
  buffer_ += bracket;
  place_.enter();
  counts_[place_.depth()] = 0;
}

void JsonWriter::end(char bracket) {
  buffer_ += bracket;
  place_.leave();
}

void JsonWriter::startValue(std::string_view key) {
  if (buffer_.size() > kBufferSize / 2) flush();
  const std::size_t index = counts_[place_.depth()]++;
  if (place_.depth() == 0) return;
  if (index != 0) buffer_ += ',';
  if (place_.depth() <= 2) buffer_ += '\n';  // a line for each figure of the program and for each detail
  if (key.empty()) {
    place_.at(index);
    return;
  }
  place_.at(key);
  appendJsonText(buffer_, key);
  buffer_ += ':';
}

void JsonWriter::text(std::string_view key, std::string_view value) {
  startValue(key);
  if (!isUtf8(value)) refuse("a text in UTF-8");
  appendJsonText(buffer_, value);
}

void JsonWriter::number(std::string_view key, double value) {
  startValue(key);
  if (!std::isfinite(value)) refuse("a finite number");
  appendNumber(value);
}

void JsonWriter::unsigned64(std::string_view key, std::uint64_t value) {
  startValue(key);
  appendNumber(value);
}

void JsonWriter::integer(std::string_view key, std::int64_t value) {
  startValue(key);
  appendNumber(value);
}

void JsonWriter::integer(std::string_view key, std::int64_t value, std::int64_t min, std::int64_t max) {
  integer(key, value);
  if (value < min || value > max) refuse("an integer from " + std::to_string(min) + " to " + std::to_string(max));
}

template <class Number>
void JsonWriter::appendNumber(Number value) {
  std::array<char, 32> digits;  // a double in its shortest form takes 24
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  buffer_.append(digits.data(), end);
}

void JsonWriter::flush() {
  std::string_view rest = buffer_;
  while (!rest.empty()) {
    const ssize_t done = ::write(file_.get(), rest.data(), rest.size());
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) refuseByErrno();
    rest.remove_prefix(static_cast<std::size_t>(done));
  }
  buffer_.clear();
}

void JsonWriter::close() {
  buffer_ += '\n';
  flush();
  if (::fsync(file_.get()) != 0) refuseByErrno();
  file_ = {};
}

void JsonWriter::refuse(std::string expected) const {
  throw ReadError({.file = name_, .place = place_.text(), .expected = std::move(expected)});
}

void JsonWriter::refuseByErrno() const {
  throw ReadError({.file = name_,
                   .place = {},
                   .expected = std::string("a file that can be written (") + std::strerror(errno) + ')'});
}

}  // namespace kelvar_platform
