#include "Figures.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kelvar_page {

namespace {

std::string printed(const char* format, double value) {
  std::array<char, 32> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), format, value));
  return text.data();
}

// Three significant digits. A value that rounds up to the next power of ten is printed like that power.
std::string threeDigits(double value) {
  const double size = std::abs(value);
  if (size < 9.995) return printed("%.2f", value);
  if (size < 99.95) return printed("%.1f", value);
  if (size < 1e9) return printed("%.0f", value);
  return printed("%.2e", value);
}

struct Unit {
  double size;
  const char* name;
};
constexpr std::array kTimeUnits{Unit{3600, " h"}, Unit{60, " min"}, Unit{1, " s"}, Unit{1e-3, " ms"},
                                Unit{1e-6, " us"}};
constexpr std::string_view kMillions = "millions of ";
constexpr double kMillion = 1e6;
constexpr std::array kCountUnits{Unit{1e12, "T"}, Unit{1e9, "G"}, Unit{1e6, "M"}, Unit{1e3, "k"}};

// In the greatest unit that leaves a digit before the point; empty when the value is smaller than all units.
template <std::size_t count>
std::string scaled(double value, const std::array<Unit, count>& units) {
  for (const Unit& unit : units) {
    if (std::abs(value) >= unit.size * 0.9995) return threeDigits(value / unit.size) + unit.name;
  }
  return {};
}

std::string eventsText(double events, const std::string& event) {
  constexpr std::array kPrefixes{Unit{1e12, " T"}, Unit{1e9, " G"}, Unit{1e6, " M"}, Unit{1e3, " k"}};
  const std::string text = scaled(events, kPrefixes);
  return (text.empty() ? printed("%.0f ", events) : text) + event;
}

std::string secondsText(double seconds) {
  const double size = std::abs(seconds);
  if (size == 0) return "0 s";
  if (size >= 60 && size < 600) return printed("%.0f s", seconds);  // up to ten minutes, seconds are easier to read
  const std::string text = scaled(seconds, kTimeUnits);
  return text.empty() ? threeDigits(seconds / 1e-9) + " ns" : text;
}

}  // namespace

TimeUnit::TimeUnit(std::string_view noted) {
  if (!noted.starts_with(kMillions)) return;
  noted.remove_prefix(kMillions.size());
  event_ = noted == "instructions" ? "instr" : noted;
}

std::string timeText(double time, const TimeUnit& unit) {
  if (!std::isfinite(time)) return "-";
  return unit.isSeconds() ? secondsText(time) : eventsText(time * kMillion, unit.event());
}

std::string shareText(double share) {
  if (!std::isfinite(share)) return "-";
  const double percent = 100 * share;
  if (percent == 0) return "0%";
  if (percent < 0.1) return "<0.1%";
  return printed(percent < 9.95 ? "%.1f%%" : "%.0f%%", percent);
}

std::string gainText(double factor) {
  return std::isfinite(factor) ? threeDigits(factor) + "x" : "-";
}

std::string countText(std::int64_t count) {
  if (count > -1000 && count < 1000) return std::to_string(count);
  return scaled(static_cast<double>(count), kCountUnits);
}

std::string counted(std::int64_t count, const std::string& one, const std::string& several) {
  return countText(count) + " " + (count == 1 ? one : several);
}

}  // namespace kelvar_page
