#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace kelvar_2_1_7 {

/// Collects a text that is written line by line. It is either kept as a whole in text(), or passed on in pieces, so
/// that a long text takes no more memory than a piece.
class TextSink {
 public:
  using Write = std::function<void(std::string_view piece)>;

  TextSink() = default;
  /// Passes pieces to `write`, which must outlive the sink.
  explicit TextSink(const Write& write) : write_(&write) {}

  /// The text that was not passed on yet; append the next line to it.
  [[nodiscard]] std::string& text() noexcept { return text_; }
  /// Makes room for a text of about this length.
  void expect(std::size_t length) { text_.reserve(text_.size() + (write_ == nullptr ? length : kPiece)); }
  /// Called between lines: passes the text on when there is enough of it.
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
