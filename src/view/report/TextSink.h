#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace kelvar_2_1_7 {

/// Where a text goes that is written line by line: it is kept in text() as a whole, or handed on in pieces, so that a
/// text of any length takes no more memory than a piece.
class TextSink {
 public:
  using Write = std::function<void(std::string_view piece)>;

  TextSink() = default;
  /// Hands on to `write`, which must outlive the sink.
  explicit TextSink(const Write& write) : write_(&write) {}

  /// What was not handed on yet; the next line is appended to it.
  [[nodiscard]] std::string& text() noexcept { return text_; }
  /// Makes room for a text of about this length.
  void expect(std::size_t length) { text_.reserve(text_.size() + (write_ == nullptr ? length : kPiece)); }
  /// Called between lines: hands the text on once there is enough of it.
  void flushIfLarge() {
    if (write_ != nullptr && text_.size() >= kWorthIt) finish();
  }
  /// Called after the last line.
  void finish() {
    if (write_ == nullptr) return;
    (*write_)(text_);
    text_.clear();
  }

 private:
  static constexpr std::size_t kWorthIt = std::size_t{1} << 16;
  static constexpr std::size_t kPiece = kWorthIt + kWorthIt / 4;

  const Write* write_ = nullptr;
  std::string text_;
};

}  // namespace kelvar_2_1_7
