#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// Where a walk through a JSON document stands: the containers that are open, and what is looked at in each. Followed
/// at every value and put into words only where one is refused, so following it costs a store.
class JsonPlace {
 public:
  static constexpr std::size_t kMaxDepth = 64;

  [[nodiscard]] std::size_t depth() const noexcept { return depth_; }
  /// Opens a container. Requires: depth() < kMaxDepth.
  void enter() noexcept { steps_[depth_++] = {}; }
  void leave() noexcept { --depth_; }
  /// The value of this key is looked at; the text must stay where it is.
  void at(std::string_view key) noexcept { steps_[depth_ - 1] = {.key = key, .index = 0, .inList = false}; }
  /// The element of this index is looked at.
  void at(std::size_t index) noexcept { steps_[depth_ - 1] = {.key = {}, .index = index, .inList = true}; }

  /// Such as `details[3].survey.cpuTime`; empty outside of every container.
  [[nodiscard]] std::string text() const;

 private:
  struct Step {
    std::string_view key;
    std::size_t index = 0;
    bool inList = false;
  };

  std::size_t depth_ = 0;
  std::array<Step, kMaxDepth> steps_;
};

}  // namespace kelvar_platform
