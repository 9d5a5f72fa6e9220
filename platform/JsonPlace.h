#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// The position of a walk through a JSON document: the open containers, and the current key or index in each. It is
/// updated at every value, which costs one store, and turned into text only for a refusal.
class JsonPlace {
 public:
  static constexpr std::size_t kMaxDepth = 64;

  [[nodiscard]] std::size_t depth() const noexcept { return depth_; }
  /// Opens a container. Requires: depth() < kMaxDepth.
  void enter() noexcept { steps_[depth_++] = {}; }
  void leave() noexcept { --depth_; }
  /// The current value is that of this key, whose text must stay valid.
  void at(std::string_view key) noexcept { steps_[depth_ - 1] = {.key = key, .index = 0, .inList = false}; }
  /// The current value is the element of this index.
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
