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

// Three significant digits. What rounds up to the next power of ten has that one's form.
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
constexpr std::array kCountUnits{Unit{1e12, "T"}, Unit{1e9, "G"}, Unit{1e6, "M"}, Unit{1e3, "k"}};

}  // namespace

std::string timeText(double seconds) {
  if (!std::isfinite(seconds)) return "-";
  const double size = std::abs(seconds);
  if (size == 0) return "0 s";
  if (size >= 60 && size < 600) return printed("%.0f s", seconds);  // up to ten minutes, seconds say more
  for (const Unit& unit : kTimeUnits) {
    if (size >= unit.size * 0.9995) return threeDigits(seconds / unit.size) + unit.name;
  }
  return threeDigits(seconds / 1e-9) + " ns";
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
  const auto size = std::abs(static_cast<double>(count));
  for (const Unit& unit : kCountUnits) {
    if (size >= unit.size * 0.9995 && size >= 1000)
      return threeDigits(static_cast<double>(count) / unit.size) + unit.name;
  }
  return std::to_string(count);
}

std::string counted(std::int64_t count, const std::string& one, const std::string& several) {
  return countText(count) + " " + (count == 1 ? one : several);
}

}  // namespace kelvar_page
