#pragma once

#include <cstdint>
#include <string>

/// Numbers as people read them: three digits at most, with the unit that suits.
namespace kelvar_page {

/// `1.04 s`, `244 ms`, `12.3 min`; `-` for what is not finite.
[[nodiscard]] std::string timeText(double seconds);
/// Of a fraction: `68%`, `8.5%`, `<0.1%`.
[[nodiscard]] std::string shareText(double share);
/// `2.05x`.
[[nodiscard]] std::string gainText(double factor);
/// `997`, `12.3k`, `4.56M`.
[[nodiscard]] std::string countText(std::int64_t count);
/// `1 race`, `3 races`.
[[nodiscard]] std::string counted(std::int64_t count, const std::string& one, const std::string& several);

}  // namespace kelvar_page
