#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

struct archive;

namespace kelvar_readers {

struct ArchiveEnd {
  void operator()(::archive* opened) const noexcept;
};

using ShowProgress = std::function<void(std::string_view activity)>;

/// A tool's output, plain or compressed by gzip, bzip2, xz or zstd. It is read line by line, or whole for a parser that
/// needs that. Every refusal is a kelvar_platform::ReadError that names the line.
class Input {
 public:
  /// `-` is the standard input. `showProgress` is called with the progress of a large file; it may be empty.
  explicit Input(std::string path, ShowProgress showProgress = {});

  /// The output of a running tool; refusals call it `name`.
  Input(int descriptor, std::string name);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Whether the unread part begins with `text`.
  [[nodiscard]] bool beginsWith(std::string_view text);
  [[nodiscard]] bool hasMore();
  /// The next line without its end; empty at the end of the file. Valid until the next call.
  [[nodiscard]] std::optional<std::string_view> nextLine();
  /// Everything that was not read yet.
  [[nodiscard]] std::string rest();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  /// The number of the line that nextLine returned last, from 1; 0 before the first.
  [[nodiscard]] std::size_t lineNumber() const noexcept { return lineNumber_; }

  /// Throws a ReadError that says what was expected, at the last line or at `place`.
  [[noreturn]] void refuse(const std::string& expected) const;
  [[noreturn]] void refuse(const std::string& place, const std::string& expected) const;

 private:
  void open(const std::string& file, int descriptor);
  [[nodiscard]] std::string reason() const;
  bool refill();
  void tellProgress();

  std::string path_;  // as it is named in refusals
  std::unique_ptr<::archive, ArchiveEnd> file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of the unread part of the buffer
  std::size_t end_ = 0;    // of the unread part of the buffer
  std::size_t lineNumber_ = 0;
  std::size_t size_ = 0;  // of the file on disk
  std::size_t toldPercent_ = 0;
  ShowProgress showProgress_;
};

/// A line as the `place` of a refusal; empty for line 0.
[[nodiscard]] std::string linePlace(std::size_t line);

/// Takes a number off the front of `text`. Empty, with nothing taken, when there is none or it is out of range.
template <class Number, class... Base>
[[nodiscard]] std::optional<Number> takeNumber(std::string_view& text, Base... base) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base...);
  if (error != std::errc{}) return std::nullopt;
  if constexpr (std::is_floating_point_v<Number>) {
    if (!std::isfinite(value)) return std::nullopt;  // "nan" and "inf" are read as numbers too
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

/// Takes `prefix` off the front of `text`; false when `text` does not begin with it.
[[nodiscard]] bool takePrefix(std::string_view& text, std::string_view prefix);
/// Takes the text before `separator` off the front, and drops the separator; takes everything when there is none.
[[nodiscard]] std::string_view takeUntil(std::string_view& text, char separator);
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace kelvar_readers
