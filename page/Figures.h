#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers for people: at most three digits, with a suitable unit.
namespace kelvar_page {

/// The unit of the times of an analysis: seconds, or millions of events, such as the instructions that an emulator
/// counts or a processor's cache misses.
class TimeUnit {
 public:
  TimeUnit() = default;
  /// From the log of an import: `seconds`, `millions of instructions`. Any other text means seconds.
  explicit TimeUnit(std::string_view noted);

  [[nodiscard]] bool isSeconds() const noexcept { return event_.empty(); }
  /// The name of the event after a number, such as `instr`; empty for seconds.
  [[nodiscard]] const std::string& event() const noexcept { return event_; }
  bool operator==(const TimeUnit&) const = default;

 private:
  std::string event_;
};

/// `1.04 s`, `244 ms`, `12.3 min`, `5.59 Minstr`; `-` if the time is not finite.
[[nodiscard]] std::string timeText(double time, const TimeUnit& unit);
/// A fraction as `68%`, `8.5%` or `<0.1%`.
[[nodiscard]] std::string shareText(double share);
/// `2.05x`.
[[nodiscard]] std::string gainText(double factor);
/// `997`, `12.3k`, `4.56M`.
[[nodiscard]] std::string countText(std::int64_t count);
/// `1 race`, `3 races`.
[[nodiscard]] std::string counted(std::int64_t count, const std::string& one, const std::string& several);

}  // namespace kelvar_page
