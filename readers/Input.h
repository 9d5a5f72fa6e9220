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

/// A tool's output as it is read, compressed by gzip, bzip2, xz or zstd or not: by lines where it may be of any size,
/// or whole where its parser wants that. Every refusal is a kelvar_platform::ReadError that names the line.
class Input {
 public:
  /// `-` is the standard input. `showProgress` is told how far a large file is read; it may be empty.
  explicit Input(std::string path, ShowProgress showProgress = {});

  /// What a tool that runs writes; `name` stands for it in refusals.
  Input(int descriptor, std::string name);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Whether what was not read yet begins like this.
  [[nodiscard]] bool beginsWith(std::string_view text);
  [[nodiscard]] bool hasMore();
  /// The next line without its end; empty at the end of the file. Valid until the next call.
  [[nodiscard]] std::optional<std::string_view> nextLine();
  /// All that was not read yet.
  [[nodiscard]] std::string rest();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  /// Of the line that nextLine gave last, counted from 1; 0 before the first.
  [[nodiscard]] std::size_t lineNumber() const noexcept { return lineNumber_; }

  /// What does not fit, at the line read last or another place.
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
  std::size_t begin_ = 0;  // what is read and not given out stands from here
  std::size_t end_ = 0;    // to here
  std::size_t lineNumber_ = 0;
  std::size_t size_ = 0;  // of the file on disk
  std::size_t toldPercent_ = 0;
  ShowProgress showProgress_;
};

/// `place` of a refusal for a line.
[[nodiscard]] std::string linePlace(std::size_t line);

/// Takes a number off the front of `text`; empty, and nothing taken, where none stands there or it is out of range.
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

/// Takes `prefix` off the front of `text` where it stands there.
[[nodiscard]] bool takePrefix(std::string_view& text, std::string_view prefix);
/// Takes off what stands before `separator`, and the separator; all of it where there is none.
[[nodiscard]] std::string_view takeUntil(std::string_view& text, char separator);
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace kelvar_readers
