#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as people read them: three digits at most, with the unit that suits.
namespace kelvar_page {

/// What the times of an analysis count. Seconds, unless its import noted events: an emulator counts instructions, a
/// processor misses of its cache, both in millions.
class TimeUnit {
 public:
  TimeUnit() = default;
  /// As an import notes it: `seconds`, `millions of instructions`. What it does not know is seconds.
  explicit TimeUnit(std::string_view noted);

  [[nodiscard]] bool isSeconds() const noexcept { return event_.empty(); }
  /// What is counted, in the short form that follows a number: `instr`; empty for seconds.
  [[nodiscard]] const std::string& event() const noexcept { return event_; }
  bool operator==(const TimeUnit&) const = default;

 private:
  std::string event_;
};

/// `1.04 s`, `244 ms`, `12.3 min`, `5.59 Minstr`; `-` for what is not finite.
[[nodiscard]] std::string timeText(double time, const TimeUnit& unit);
/// Of a fraction: `68%`, `8.5%`, `<0.1%`.
[[nodiscard]] std::string shareText(double share);
/// `2.05x`.
[[nodiscard]] std::string gainText(double factor);
/// `997`, `12.3k`, `4.56M`.
[[nodiscard]] std::string countText(std::int64_t count);
/// `1 race`, `3 races`.
[[nodiscard]] std::string counted(std::int64_t count, const std::string& one, const std::string& several);

}  // namespace kelvar_page
