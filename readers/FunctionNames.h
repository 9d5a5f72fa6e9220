#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "Demangle.h"

namespace kelvar_readers {

/// Numbers the names of functions, as rows show them.
class FunctionNames {
 public:
  [[nodiscard]] std::size_t numberOf(const std::string& function) {
    if (last_ && *last_ == function) return lastNumber_;
    auto found = numbers_.find(function);
    if (found == numbers_.end()) {
      const auto [plain, isNew] = plain_.try_emplace(plainName(function), names_.size());
      if (isNew) names_.push_back(&plain->first);
      found = numbers_.emplace(function, plain->second).first;
    }
    last_ = &found->first;
    lastNumber_ = found->second;
    return lastNumber_;
  }
  [[nodiscard]] const std::string& nameNumbered(std::size_t number) const { return *names_[number]; }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
  std::unordered_map<std::string, std::size_t> plain_;
  std::vector<const std::string*> names_;
  const std::string* last_ = nullptr;  // they come in runs of one
  std::size_t lastNumber_ = 0;
};

}  // namespace kelvar_readers
